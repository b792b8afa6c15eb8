#pragma once

#include "core/providers/browstreeprovider.h"

/** The browsing tree of a local database: one tree, whose nodes may be linked to folders. */
class SqliteBrowsTreeProvider : public BrowsTreeProvider
{
    Q_OBJECT

public:
    explicit SqliteBrowsTreeProvider(const AbstractQueryConstructor *constructor, QObject *parent = nullptr);

    void loadAutolinks() override;
    bool addAutolink(const QString &path, const QString &relPath, const QString &linkId) override;
    bool addAutolinkToNode(const QString &linkId, qint64 nodeId) override;
    bool removeAutolinkFromNode(const QString &linkId, qint64 nodeId) override;
    bool removeAutolink(const QString &linkId) override;
    bool updateAutolink(const QString &linkId, const QString &absPath, const QString &relPath) override;
};
