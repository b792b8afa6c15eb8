#pragma once

#include "core/records/nodestep.h"
#include "db/sql/basedbprovider.h"

/**
 * The statements of the browsing trees that both back-ends share. GUI thread, default connection; each
 * operation is over, and its signal out, when it returns. The auto link operations are a local database's,
 * the operations over trees a server's: here both do nothing.
 */
class BrowsTreeProvider : public BaseDBProvider
{
    Q_OBJECT

public:
    explicit BrowsTreeProvider(const AbstractQueryConstructor *constructor, QObject *parent = nullptr);

    virtual void loadAllNodes();
    virtual void loadNodes(const QVector<qint64> &ids);
    /**
     * Appends the rows of those that are there, of any tree; the holder of `rows` owns them, also after a
     * failure.
     */
    bool readNodes(const QVector<qint64> &ids, TableData &rows);
    /** loadNodes() of these comes when the edit that goes on is through. */
    void expectNodes(const QVector<qint64> &ids);

    /**
     * Inserts a node with its link below a parent (0 the top level), both or neither, and emits nodesAdded;
     * gives its id, 0 on failure.
     */
    virtual qint64 addNode(qint64 tagId, bool trOption, bool inverted, qint64 parentId);
    /** The same between a child and its parent: nodesAdded comes first, then nodeParentUpdated. */
    virtual qint64 addNodeAbove(qint64 tagId, bool trOption, bool inverted, qint64 parentId, qint64 childId);
    virtual bool addLink(qint64 parentId, qint64 childId);
    /**
     * Inserts one node for each tag below a parent, all or none, without loading them. Gives the ids in the
     * order of the tags, nothing on failure.
     */
    QVector<qint64> addNodes(const QVector<qint64> &tagIds, bool trOption, bool inverted, qint64 parentId);
    /** The same as a chain below a parent. */
    QVector<qint64> addPath(const QVector<NodeStep> &steps, qint64 parentId);
    /** The same as a chain between a child and its parent, the first tag at the top. */
    QVector<qint64> addNodesAbove(const QVector<qint64> &tagIds, bool trOption, bool inverted,
                                  qint64 parentId, qint64 childId);

    /** Removes the rows of the nodes alone; NodeRemover takes along what belongs to them. False on failure.
     */
    virtual bool removeNodes(const QVector<qint64> &ids);
    virtual bool updateNode(qint64 id, const QString &column, const QString &value);
    /** Parents with the nodes that move below them; all or none only within a transaction. */
    virtual bool updateParents(const QVector<QPair<qint64, QVector<qint64>>> &moves);

    virtual void loadAutolinks();
    virtual bool addAutolink(const QString &path, const QString &relPath, const QString &linkId);
    virtual bool addAutolinkToNode(const QString &linkId, qint64 nodeId);
    virtual bool removeAutolinkFromNode(const QString &linkId, qint64 nodeId);
    virtual bool removeAutolink(const QString &linkId);
    virtual bool updateAutolink(const QString &linkId, const QString &absPath, const QString &relPath);

    virtual void loadAllTrees();
    /** Gives the id of the new tree, 0 on failure. */
    virtual qint64 addTree(const QString &name);
    virtual bool removeTree(qint64 id);
    /** False also when there is no such tree any more. */
    virtual bool updateTree(qint64 id, const QString &column, const QString &value);
    /** 0 where there is only one. */
    virtual qint64 currentTree() const { return 0; }
    virtual void setCurrentTree(qint64 id);

    virtual void loadNode(qint64 id);
    virtual bool removeLinks(const QVector<qint64> &childIds);

signals:
    void gotAllNodesInfo(bool ok, const TableData &table);
    void gotNodesInfo(bool ok, const TableData &table);
    void nodesAdded(bool ok, const TableData &table);
    void nodesRemoved(const QVector<qint64> &ids);
    void nodeValueUpdated(qlonglong id, const QString &column, const QString &value);
    void nodeParentUpdated(const QVector<qint64> &ids, qlonglong parentId);
    void gotAllAutolinksInfo(bool ok, const TableData &table);
    void addedNewAutolink(const QString &path, const QString &relPath, const QString &linkId);
    void addedAutolinkToNode(bool ok, const QString &linkId, qlonglong nodeId);
    void removedAutolinkFromNode(bool ok, const QString &linkId, qlonglong nodeId);
    void removedAutolink(bool ok, const QString &linkId);
    void updatedAutolink(bool ok, const QString &linkId, const QString &absPath, const QString &relPath);
    void gotAllBrowsTreesInfo(bool ok, const TableData &table);
    void addedNewBrowsingTree(qlonglong id, const QString &name);
    void removedBrowsingTree(qlonglong id);
    void updatedBrowsingTree(qlonglong id, const QString &name);

protected:
    /** The columns of the shared select, in the order of the statement. */
    virtual QStringList nodeColumns() const;
    QString selectText() const;
    /** The insert of a node without its end, so that a dialect may add to it. */
    QString insertText(const QVector<qint64> &tagIds, bool trOption, bool inverted) const;
    virtual QString linkInsertText(qint64 parentId, qint64 childId) const;
    /** Runs the insert of a node and gives its id, 0 on failure. */
    /** One for each tag, in their order. */
    virtual bool insertNodes(const QVector<qint64> &tagIds, bool trOption, bool inverted,
                             QVector<qint64> &ids);

private:
    QString nodesText(const QVector<qint64> &ids) const;
    bool writeParent(const QVector<qint64> &ids, qint64 parentId);
    /** Fills %1 of a statement without values with the ids and runs it, all of them or none. */
    bool runForIds(const QString &statement, const QVector<qint64> &ids);
};
