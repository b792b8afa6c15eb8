#include "core/records/trnode.h"

#include "core/records/childruns.h"
#include "core/records/treewalk.h"

#include <algorithm>

TRnode::TRnode(qint64 id, const QString &name, TRnode *parentNode, QObject *parent)
    : QObject(parent), m_id(id), m_name(name), m_parentNode(parentNode)
{
}

int TRnode::indexOf(const TRnode *child) const
{
    return m_children.indexOf(const_cast<TRnode *>(child));
}

bool TRnode::addChild(TRnode *child)
{
    // A child has this node as its parent, which spares the look through the list for one that comes new.
    if (!child || (child->m_parentNode == this && m_children.contains(child)))
        return false;
    const QList<TRnode *> added{child};
    emit aboutToAddchildren(added, this);
    child->m_parentNode = this;
    m_children.append(child);
    emit childrenNodesAdded(added);
    return true;
}

void TRnode::addChildren(const QList<TRnode *> &children)
{
    for (TRnode *child : children)
        addChild(child);
}

bool TRnode::removeChild(TRnode *child)
{
    if (!child || !m_children.contains(child))
        return false;
    const QList<TRnode *> removed{child};
    emit aboutToRemoveNodes(removed, this);
    child->m_parentNode = nullptr;
    m_children.removeAll(child);
    emit childrenNodesRemoved(removed);
    return true;
}

void TRnode::removeChildren(const QSet<TRnode *> &going)
{
    const auto runs = ChildRuns::of(m_children, going);
    for (const auto &run : runs) {
        emit aboutToRemoveNodes(run.nodes, this);
        for (TRnode *child : run.nodes)
            child->m_parentNode = nullptr;
        ChildRuns::take(m_children, run);
        emit childrenNodesRemoved(run.nodes);
    }
}

void TRnode::removeAllChildren()
{
    // Models turn the signals into ranges of rows, and a range of no rows is an error there.
    if (m_children.isEmpty())
        return;
    const QList<TRnode *> removed = m_children;
    emit aboutToRemoveNodes(removed, this);
    for (TRnode *child : removed)
        child->m_parentNode = nullptr;
    m_children.clear();
    emit childrenNodesRemoved(removed);
}

QVector<qint64> TRnode::ancestorIds() const
{
    QVector<qint64> ids;
    // The root of all trees has the id 0 and is no tag.
    for (const TRnode *node = m_parentNode; node && node->m_id > 0; node = node->m_parentNode)
        ids.append(node->m_id);
    std::reverse(ids.begin(), ids.end());
    return ids;
}

QVector<qint64> TRnode::descendantIds() const
{
    const QVector<const TRnode *> nodes = TreeWalk::branch(this);
    QVector<qint64> ids;
    ids.reserve(nodes.size());
    for (auto node = nodes.crbegin(); *node != this; ++node)
        ids.append((*node)->m_id);
    return ids;
}

QStringList TRnode::descendantNames() const
{
    const QVector<const TRnode *> nodes = TreeWalk::branch(this);
    QStringList names;
    names.reserve(nodes.size());
    for (auto node = nodes.crbegin(); *node != this; ++node)
        names.append((*node)->m_name);
    return names;
}

bool TRnode::hasAncestorIn(const QVector<qint64> &ids) const
{
    for (const TRnode *node = m_parentNode; node; node = node->m_parentNode) {
        if (ids.contains(node->m_id))
            return true;
    }
    return false;
}

bool TRnode::hasDescendantIn(const QVector<qint64> &ids) const
{
    const QVector<const TRnode *> nodes = TreeWalk::branch(this);
    return std::any_of(nodes.cbegin() + 1, nodes.cend(),
                       [&ids](const TRnode *node) { return ids.contains(node->m_id); });
}
