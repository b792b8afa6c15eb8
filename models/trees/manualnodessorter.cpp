#include "models/trees/manualnodessorter.h"

#include "app/settings/liststream.h"
#include "app/settings/specialnodes.h"
#include "core/records/tbnode.h"
#include "core/records/treewalk.h"

#include <algorithm>

namespace {

const TBnode *findNode(const TBnode *top, qint64 id)
{
    if (!top || id < 0)
        return nullptr;
    const QVector<const TBnode *> nodes = TreeWalk::branch(top);
    const auto found =
        std::find_if(nodes.cbegin(), nodes.cend(), [id](const TBnode *node) { return node->id() == id; });
    return found == nodes.cend() ? nullptr : *found;
}

} // namespace

bool ManualNodesSorter::lessThan(qint64 parentId, qint64 leftId, qint64 rightId) const
{
    if (!m_order.contains(parentId))
        return leftId < rightId;
    const QHash<qint64, int> &places = positions(parentId);
    const int left = places.value(leftId, -1);
    const int right = places.value(rightId, -1);
    // Nodes without a place, as others have added them, stand behind all that have one.
    if (left < 0 && right < 0)
        return leftId < rightId;
    if (left < 0 || right < 0)
        return right < 0;
    return left < right;
}

void ManualNodesSorter::moveNode(qint64 parentId, qint64 nodeId, qint64 siblingId, bool before)
{
    if (nodeId == siblingId)
        return;
    // A stored list may know only a part of the children; a place counts only among all of them.
    QList<qint64> &list = completeList(parentId, nodeId);
    list.removeAll(nodeId);
    const int at = list.indexOf(siblingId);
    list.insert(at < 0 ? list.size() : at + (before ? 0 : 1), nodeId);
    m_positions.remove(parentId);
}

void ManualNodesSorter::moveToRow(qint64 parentId, qint64 nodeId, int row)
{
    QList<qint64> &list = completeList(parentId, nodeId);
    const int place = parentId == 0 ? row - SpecialNodes::shortTexts().size() : row;
    const int present = list.indexOf(nodeId);
    // A place behind the node's own moves up by one when the node is taken out.
    const int target = present >= 0 && place > present ? place - 1 : place;
    list.removeAll(nodeId);
    list.insert(qBound(0, target, list.size()), nodeId);
    m_positions.remove(parentId);
}

void ManualNodesSorter::nodeAdded(qint64 parentId, qint64 nodeId)
{
    const auto list = m_order.find(parentId);
    // Children without a stored order go by their ids, which puts a new one last by itself.
    if (list == m_order.end() || list->contains(nodeId))
        return;
    list->append(nodeId);
    m_positions.remove(parentId);
}

void ManualNodesSorter::nodeRemoved(qint64 parentId, qint64 nodeId)
{
    const auto list = m_order.find(parentId);
    if (list != m_order.end())
        list->removeAll(nodeId);
    m_order.remove(nodeId);
    m_positions.remove(parentId);
    m_positions.remove(nodeId);
}

void ManualNodesSorter::load(const QMap<qint64, QList<qint64>> &order)
{
    m_order = order;
    m_positions.clear();
}

void ManualNodesSorter::save(QMap<qint64, QList<qint64>> &order) const
{
    order = m_order;
}

void ManualNodesSorter::setTree(TBnode *root)
{
    m_root = root;
}

void ManualNodesSorter::fixOrder(qint64 parentId, qint64 nodeId)
{
    completeList(parentId, nodeId);
}

void ManualNodesSorter::replaceNode(qint64 parentId, qint64 nodeId, qint64 newId)
{
    QList<qint64> &list = m_order[parentId];
    // Added at the end when its rows came in.
    list.removeAll(newId);
    const int at = list.indexOf(nodeId);
    if (at < 0)
        list.append(newId);
    else
        list[at] = newId;
    m_positions.remove(parentId);
}

void ManualNodesSorter::liftChildren(const TBnode &parent, const QSet<qint64> &removed)
{
    const QList<const TBnode *> children = orderedChildren(parent);
    QList<qint64> list;
    for (const TBnode *child : children) {
        list.append(child->id());
        if (removed.contains(child->id()))
            appendLifted(*child, removed, list);
    }
    // Nothing was lifted: without a stored order there is none to write.
    if (list.size() == children.size())
        return;
    m_order.insert(parent.id(), list);
    m_positions.remove(parent.id());
}

void ManualNodesSorter::appendLifted(const TBnode &removedNode, const QSet<qint64> &removed,
                                     QList<qint64> &list) const
{
    // A stack instead of recursion, the last child first, so that the first one is taken next.
    QList<const TBnode *> open = orderedChildren(removedNode);
    std::reverse(open.begin(), open.end());
    while (!open.isEmpty()) {
        const TBnode *node = open.takeLast();
        if (!removed.contains(node->id())) {
            list.append(node->id());
            continue;
        }
        const QList<const TBnode *> children = orderedChildren(*node);
        std::copy(children.crbegin(), children.crend(), std::back_inserter(open));
    }
}

QList<const TBnode *> ManualNodesSorter::orderedChildren(const TBnode &parent) const
{
    QList<const TBnode *> children;
    for (const TBnode *child : parent.children()) {
        if (child->nodeType() == TagNode)
            children.append(child);
    }
    std::sort(children.begin(), children.end(), [this, &parent](const TBnode *left, const TBnode *right) {
        return lessThan(parent.id(), left->id(), right->id());
    });
    return children;
}

QList<qint64> &ManualNodesSorter::completeList(qint64 parentId, qint64 nodeId)
{
    QList<qint64> children;
    const TBnode *parent = findNode(m_root, parentId);
    const TBnode *moved = findNode(parent, nodeId);
    if (moved) {
        for (const TBnode *child : parent->children()) {
            if (child->nodeType() == TagNode && child->treeId() == moved->treeId())
                children.append(child->id());
        }
    }
    std::sort(children.begin(), children.end(),
              [this, parentId](qint64 left, qint64 right) { return lessThan(parentId, left, right); });
    // Rows count what is shown; nodes of other trees at the top keep their order behind it.
    QList<qint64> &list = m_order[parentId];
    const QSet<qint64> shown(children.cbegin(), children.cend());
    for (const qint64 id : qAsConst(list)) {
        if (!shown.contains(id))
            children.append(id);
    }
    list = children;
    m_positions.remove(parentId);
    return list;
}

const QHash<qint64, int> &ManualNodesSorter::positions(qint64 parentId) const
{
    auto places = m_positions.find(parentId);
    if (places == m_positions.end()) {
        // Made on the first comparison after a change: sorting asks for the same list thousands of times.
        places = m_positions.insert(parentId, {});
        const QList<qint64> list = m_order.value(parentId);
        for (int i = 0; i < list.size(); ++i)
            places->insert(list.at(i), i);
    }
    return *places;
}

QDataStream &operator<<(QDataStream &stream, const ManualNodesSorter &sorter)
{
    QMap<qint64, QList<qint64>> order;
    sorter.save(order);
    return stream << order;
}

QDataStream &operator>>(QDataStream &stream, ManualNodesSorter &sorter)
{
    QMap<qint64, QList<qint64>> order;
    // By hand and not by the toolkit's operator, which makes room for any count that a damaged store tells.
    quint32 count = 0;
    stream >> count;
    for (quint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        qint64 parentId = 0;
        stream >> parentId;
        readList(stream, order[parentId]);
    }
    sorter.load(order);
    return stream;
}
