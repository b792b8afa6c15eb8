#pragma once

#include "core/records/map.h"
#include "db/sql/tabledata.h"

#include <QHash>
#include <QPair>
#include <QSet>
#include <QString>
#include <QVector>

class TBnode;

/**
 * The nodes of the browsing tree by id, owned, linked to each other. The parent of a top-level node stays
 * null until a model attaches it to the node that it shows at the top. GUI thread.
 */
class NodeCache
{
public:
    NodeCache() = default;
    ~NodeCache();
    NodeCache(const NodeCache &) = delete;
    NodeCache &operator=(const NodeCache &) = delete;

    Map<qint64, TBnode *> &map() { return m_nodes; }
    const Map<qint64, TBnode *> &map() const { return m_nodes; }

    /** Makes new nodes of the rows, which stay the caller's, and gives the old ones for deletion. */
    QList<TBnode *> replaceAll(const TableData &rows);

    /** Takes in rows, which stay the caller's: known nodes get the new values. Gives all nodes of the rows.
     */
    Map<qint64, TBnode *> merge(const TableData &rows);

    /** Puts nodes below another parent, 0 or an unknown one being the top level. Gives the moved nodes. */
    Map<qint64, TBnode *> move(const QVector<qint64> &nodeIds, qint64 parentId);

    struct Removal
    {
        QList<TBnode *> removed;        ///< out of tree and map, for deletion
        Map<qint64, TBnode *> orphaned; ///< children that stayed, at the top level now
    };
    Removal take(const QVector<qint64> &nodeIds);

    /** Writes one column, "inverted" or "tr_options"; others do nothing. */
    void setValue(qint64 nodeId, const QString &column, const QString &value);

    /** Gives every node of these tags the new name of its tag. */
    void renameTags(const QHash<qint64, QString> &namesByTag);

private:
    struct Row;
    /** Takes nodes from their parents, those of one parent together. */
    static void detach(const QSet<TBnode *> &nodes);
    TBnode *parentFor(qint64 nodeId, qint64 parentId) const;
    void place(const QVector<QPair<TBnode *, qint64>> &placements, const QSet<TBnode *> &fresh);

    Map<qint64, TBnode *> m_nodes;
};
