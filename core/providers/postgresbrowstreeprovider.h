#pragma once

#include "core/providers/browstreeprovider.h"

/**
 * The browsing trees of a server database: several named ones, of which the current one is read and written.
 * Until one is made current, and for the id 0, that is the default tree, which cannot be removed.
 */
class PostgresBrowsTreeProvider : public BrowsTreeProvider
{
    Q_OBJECT

public:
    static constexpr qint64 defaultTree = 1;

    explicit PostgresBrowsTreeProvider(const AbstractQueryConstructor *constructor,
                                       QObject *parent = nullptr);

    void loadAllNodes() override;

    void loadAllTrees() override;
    qint64 addTree(const QString &name) override;
    bool removeTree(qint64 id) override;
    bool updateTree(qint64 id, const QString &column, const QString &value) override;
    qint64 currentTree() const override { return m_currentTree; }
    void setCurrentTree(qint64 id) override;

protected:
    QStringList nodeColumns() const override;
    QString linkInsertText(qint64 parentId, qint64 childId) const override;
    bool insertNodes(const QVector<qint64> &tagIds, bool trOption, bool inverted,
                     QVector<qint64> &ids) override;

    QString treeInsertText(const QString &name) const;
    QString treeUpdateText(qint64 id, const QString &column, const QString &value) const;

private:
    qint64 m_currentTree = defaultTree;
};
