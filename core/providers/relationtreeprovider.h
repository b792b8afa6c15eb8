#pragma once

#include "db/sql/basedbprovider.h"

#include <QStringList>

/**
 * The statements of the tag relationships. GUI thread, default connection; each operation is over, and its
 * signal out, when it returns. An empty list runs nothing and emits nothing.
 */
class RelationTreeProvider : public BaseDBProvider
{
    Q_OBJECT

public:
    explicit RelationTreeProvider(const AbstractQueryConstructor *constructor, QObject *parent = nullptr);

    virtual void loadAllNodes();
    /** Appends those of the paths that are there. */
    bool readPaths(const QStringList &paths, QStringList &found);

    /** Puts tags below a path, at the top level for an empty one: all of them or none. */
    virtual bool addPaths(const QString &parentPath, const QVector<qint64> &tagIds);

    /** Removes every place of the tags with all below; affectedPaths is what the caller knows of them. */
    virtual bool removeByTags(const QVector<qint64> &tagIds, const QStringList &affectedPaths);

    virtual bool removePaths(const QStringList &paths);

    /** The condition that hits every path with one of the tags as a whole piece. */
    static QString tagCondition(const QVector<qint64> &tagIds);

signals:
    void gotAllNodesInfo(bool ok, const TableData &table);
    void nodesAdded(bool ok, const QStringList &paths);
    void nodesRemoved(bool ok, const QStringList &paths);

private:
    /** Reads all paths and removes those with one of the tags. */
    bool removeByWalk(const QVector<qint64> &tagIds);
    bool deletePaths(const QStringList &paths);
    /** Runs text(piece) for the pieces of a list in one transaction. */
    template <class List, class Text>
    bool runInPieces(const List &list, int size, Text text);
};
