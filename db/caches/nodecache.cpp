#include "db/caches/nodecache.h"

#include "core/records/tbnode.h"
#include "db/sql/longtext.h"

#include <QDebug>
#include <QSet>

/** The values of one row of the select of nodes. */
struct NodeCache::Row
{
    explicit Row(const TableRowData &row)
        : id(row.value(QStringLiteral("node_id")).toLongLong()),
          parentId(row.value(QStringLiteral("node_parent_id")).toLongLong()),
          tagId(row.value(QStringLiteral("tag_id")).toLongLong()),
          treeId(row.value(QStringLiteral("browsing_tree_id")).toLongLong()),
          name(LongText::kept(row.value(QStringLiteral("node_name")).toString())),
          inverted(row.value(QStringLiteral("inverted")).toInt() != 0),
          trOption(row.value(QStringLiteral("tr_options")).toInt() != 0)
    {
    }

    TBnode *makeNode() const
    {
        return new TBnode(nullptr, tagId, id, inverted, trOption, treeId, name, TagNode);
    }

    qint64 id;
    qint64 parentId;
    qint64 tagId;
    qint64 treeId;
    QString name;
    bool inverted;
    bool trOption;
};

namespace {
using ChildLists = QHash<TBnode *, QList<TBnode *>>;
using ParentHash = QHash<TBnode *, TBnode *>;

void attachAll(const ChildLists &childrenByParent)
{
    for (auto it = childrenByParent.cbegin(); it != childrenByParent.cend(); ++it)
        it.key()->addChildren(it.value());
}

/** The parent as the database knows it: what a model attached is none. */
TBnode *tagParent(const TBnode *node)
{
    TBnode *parent = node->parentNode();
    return parent && parent->nodeType() == TagNode ? parent : nullptr;
}

/** Damaged rows may name each other as parents, which would send every walk through the tree round for ever.
 */
void breakCircles(ParentHash &parents, const QVector<TBnode *> &nodes)
{
    QSet<TBnode *> safe;
    for (TBnode *start : nodes) {
        QSet<TBnode *> way;
        for (TBnode *node = start; node && !safe.contains(node); node = parents.value(node)) {
            if (way.contains(node)) {
                parents.remove(node);
                break;
            }
            way.insert(node);
        }
        // Each node is walked over once, however long the chains are.
        safe.unite(way);
    }
}

/** Whether nodes stand above one, which they must not go below. */
class Ancestors
{
public:
    explicit Ancestors(const TBnode *node) : m_node(node) {}

    /** True for the node itself, too. */
    bool contains(const TBnode *other)
    {
        // What stands below the node cannot be above it. A node that is lifted finds it within a few levels,
        // where the way up to the top may be long, and each of a long chain would go it.
        const TBnode *above = m_node ? other->parentNode() : nullptr;
        for (int level = 0; above && level < nearLevels; ++level, above = above->parentNode()) {
            if (above == m_node)
                return false;
        }
        if (m_found.isEmpty()) {
            for (const TBnode *node = m_node; node; node = node->parentNode())
                m_found.insert(node);
        }
        return m_found.contains(other);
    }

private:
    static constexpr int nearLevels = 50;

    const TBnode *m_node;
    QSet<const TBnode *> m_found;
};
} // namespace

NodeCache::~NodeCache()
{
    qDeleteAll(m_nodes.items());
}

TBnode *NodeCache::parentFor(qint64 nodeId, qint64 parentId) const
{
    return parentId > 0 && parentId != nodeId ? m_nodes.value(parentId) : nullptr;
}

QList<TBnode *> NodeCache::replaceAll(const TableData &rows)
{
    Map<qint64, TBnode *> old;
    old.swap(m_nodes);
    // Into an empty map: with the old nodes there every one of them would be taken for a move.
    merge(rows);
    return old.values();
}

Map<qint64, TBnode *> NodeCache::merge(const TableData &rows)
{
    Map<qint64, TBnode *> merged;
    QSet<TBnode *> fresh;
    QVector<QPair<TBnode *, qint64>> placements;
    for (const TableRowData *data : rows) {
        const Row row(*data);
        if (row.id <= 0) // a tag without a node
            continue;
        TBnode *node = m_nodes.value(row.id);
        if (node) {
            node->setTag(row.tagId);
            node->setName(row.name);
            node->setInverted(row.inverted);
            node->setTrOption(row.trOption);
        } else {
            node = row.makeNode();
            m_nodes.insert(row.id, node);
            fresh.insert(node);
        }
        merged.insert(row.id, node);
        placements.append({node, row.parentId});
    }
    place(placements, fresh);
    return merged;
}

void NodeCache::place(const QVector<QPair<TBnode *, qint64>> &placements, const QSet<TBnode *> &fresh)
{
    ParentHash parents;
    QVector<TBnode *> order;
    for (const auto &[node, parentId] : placements) {
        TBnode *parent = parentFor(node->id(), parentId);
        if (fresh.contains(node)) {
            if (parent && !parents.contains(node))
                order.append(node);
            if (parent)
                parents.insert(node, parent);
        } else if (parent != tagParent(node)) {
            move({node->id()}, parent ? parent->id() : 0);
        }
    }
    breakCircles(parents, order);
    // New nodes come together first, so that a model learns of a new branch as a whole and only once.
    ChildLists amongNew;
    ChildLists belowKnown;
    for (TBnode *node : qAsConst(order)) {
        TBnode *parent = parents.value(node);
        if (parent)
            (fresh.contains(parent) ? amongNew : belowKnown)[parent].append(node);
    }
    attachAll(amongNew);
    attachAll(belowKnown);
}

Map<qint64, TBnode *> NodeCache::move(const QVector<qint64> &nodeIds, qint64 parentId)
{
    TBnode *parent = parentId > 0 ? m_nodes.value(parentId) : nullptr;
    if (parentId > 0 && !parent)
        qDebug("Failed to update nodes parent id=%s", qPrintable(QString::number(parentId)));
    // A node below itself would send every walk through the tree round for ever.
    Ancestors unmovable(parent);
    Map<qint64, TBnode *> moved;
    QList<TBnode *> newChildren;
    QSet<TBnode *> leaving;
    for (const qint64 nodeId : nodeIds) {
        TBnode *node = m_nodes.value(nodeId);
        if (!node || unmovable.contains(node)) {
            qDebug("Failed to update nodes parent id=%s", qPrintable(QString::number(nodeId)));
            continue;
        }
        if (moved.contains(nodeId))
            continue;
        leaving.insert(node);
        // In the order that was asked for, which the new siblings keep.
        newChildren.append(node);
        moved.insert(nodeId, node);
    }
    detach(leaving);
    if (parent)
        parent->addChildren(newChildren);
    return moved;
}

NodeCache::Removal NodeCache::take(const QVector<qint64> &nodeIds)
{
    Removal removal;
    QSet<TBnode *> gone;
    for (const qint64 nodeId : nodeIds) {
        TBnode *node = m_nodes.value(nodeId);
        if (node)
            gone.insert(node);
    }
    // Children that stay leave first; then the branches that go.
    QSet<TBnode *> staying;
    QSet<TBnode *> tops;
    for (TBnode *node : qAsConst(gone)) {
        for (TBnode *child : node->children()) {
            if (gone.contains(child))
                continue;
            staying.insert(child);
            removal.orphaned.insert(child->id(), child);
        }
        // A branch leaves by its top alone; one signal for each node of it would take models minutes.
        if (!gone.contains(node->parentNode()))
            tops.insert(node);
    }
    detach(staying);
    detach(tops);
    for (TBnode *node : qAsConst(gone)) {
        m_nodes.remove(node->id());
        removal.removed.append(node);
    }
    return removal;
}

void NodeCache::setValue(qint64 nodeId, const QString &column, const QString &value)
{
    TBnode *node = m_nodes.value(nodeId);
    if (!node)
        return;
    if (column == QLatin1String("inverted"))
        node->setInverted(value.toLongLong() != 0);
    else if (column == QLatin1String("tr_options"))
        node->setTrOption(value.toLongLong() != 0);
}

void NodeCache::renameTags(const QHash<qint64, QString> &namesByTag)
{
    for (TBnode *node : qAsConst(m_nodes)) {
        const auto found = namesByTag.constFind(node->tagId());
        if (found != namesByTag.constEnd())
            node->setName(found.value());
    }
}

void NodeCache::detach(const QSet<TBnode *> &nodes)
{
    QSet<TBnode *> parents;
    for (const TBnode *node : nodes) {
        if (node->parentNode())
            parents.insert(node->parentNode());
    }
    for (TBnode *parent : qAsConst(parents))
        parent->removeChildren(nodes);
}
