#pragma once

#include "db/undo/rowreader.h"

#include <QHash>
#include <QMap>
#include <QPair>
#include <QSet>

/**
 * What becomes of the nodes of all browsing trees when tags become one of them: the nodes get that tag, and
 * those that bear it beside each other then, both inverted or both not, become one, with what stands below
 * them and the folders that are linked to them. Nodes that bore it before stay what they are. Lives for one
 * merge, on the stack.
 */
class MergedNodes
{
public:
    explicit MergedNodes(RowReader &reader) : m_reader(reader) {}

    /** Reads what it needs, level by level; false when that failed. */
    bool read(qint64 target, const QVector<qint64> &others);
    void addTo(ChangeSet &set) const;

private:
    /** A parent, with its tree, which tells top levels apart. */
    using Place = QPair<qint64, qint64>;
    struct Node
    {
        RowImage row;
        RowImage link;
        Place place;
        bool isChanged = false; ///< it has another tag, or came here with its parent
        qint64 into = 0;        ///< the node that it has become
    };

    bool readNodes(const QString &column, const QVector<qint64> &values);
    bool readChildren(const QVector<qint64> &parents);
    /** The places where nodes stand that have another tag. */
    bool readPlaces(QSet<Place> &places);
    /** Merges what stands there; adds the nodes that go by that. */
    void merge(const Place &place, QVector<qint64> &gone);
    qint64 twinOf(qint64 nodeId, const QVector<qint64> &before) const;
    /** What stands below nodes that went goes to those that they became, whose places it adds. */
    bool lift(const QVector<qint64> &gone, QSet<Place> &grown);
    bool readFolders();
    qint64 survivor(qint64 nodeId) const;
    qint64 value(const Node &node, const QString &column) const;
    void addFoldersTo(ChangeSet &set) const;

    RowReader &m_reader;
    qint64 m_target = 0;
    QSet<qint64> m_others;
    QStringList m_nodeColumns;
    QStringList m_linkColumns;
    QMap<qint64, Node> m_nodes;
    QHash<Place, QVector<qint64>> m_children;
    QSet<qint64> m_readParents;
    RowImages m_folders;
};
