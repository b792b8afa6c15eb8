#pragma once

#include "core/providers/browstreeprovider.h"

/** The browsing tree of a local database: one tree, whose nodes may be linked to folders. */
class SqliteBrowsTreeProvider : public BrowsTreeProvider
{
    Q_OBJECT

public:
    explicit SqliteBrowsTreeProvider(const AbstractQueryConstructor *constructor, QObject *parent = nullptr);

    void loadAutolinks() override;
    void addAutolink(const QString &path, const QString &relPath, const QString &linkId) override;
    void addAutolinkToNode(const QString &linkId, qint64 nodeId) override;
    void removeAutolinkFromNode(const QString &linkId, qint64 nodeId) override;
    void removeAutolink(const QString &linkId) override;
    void updateAutolink(const QString &linkId, const QString &absPath, const QString &relPath) override;
};
