#include "core/merging/mergednodes.h"

#include "db/sql/sqltext.h"

#include <algorithm>

namespace {
const QString nodeColumn = QStringLiteral("node_id");
const QString tagColumn = QStringLiteral("tag_id");
const QString childColumn = QStringLiteral("child_id");
const QString parentColumn = QStringLiteral("parent_id");
} // namespace

qint64 MergedNodes::value(const Node &node, const QString &column) const
{
    if (column == tagColumn) {
        // The merge is only being thought out: rows still hold the tags of before.
        const qint64 tag = node.row.value(m_nodeColumns.indexOf(column)).toLongLong();
        return m_others.contains(tag) ? m_target : tag;
    }
    return node.row.value(m_nodeColumns.indexOf(column)).toLongLong();
}

bool MergedNodes::readNodes(const QString &column, const QVector<qint64> &values)
{
    RowImages rows;
    if (!m_reader.read(UndoTable::Nodes, column, SqlText::idTexts(values), rows))
        return false;
    if (!rows.columns.isEmpty())
        m_nodeColumns = rows.columns;
    for (const RowImage &row : qAsConst(rows.rows)) {
        Node &node = m_nodes[row.value(m_nodeColumns.indexOf(nodeColumn)).toLongLong()];
        node.row = row;
        node.isChanged = m_others.contains(row.value(m_nodeColumns.indexOf(tagColumn)).toLongLong());
    }
    return true;
}

bool MergedNodes::readChildren(const QVector<qint64> &parents)
{
    QVector<qint64> unread;
    for (const qint64 parent : parents) {
        if (!m_readParents.contains(parent))
            unread.append(parent);
        m_readParents.insert(parent);
    }
    RowImages links;
    if (!m_reader.read(UndoTable::NodeLinks, parentColumn, SqlText::idTexts(unread), links))
        return false;
    if (links.rows.isEmpty())
        return true;
    m_linkColumns = links.columns;
    const int treeColumn = m_linkColumns.indexOf(QStringLiteral("browsing_tree_id"));
    QVector<qint64> unknown;
    for (const RowImage &link : qAsConst(links.rows)) {
        const qint64 child = link.value(m_linkColumns.indexOf(childColumn)).toLongLong();
        const qint64 parent = link.value(m_linkColumns.indexOf(parentColumn)).toLongLong();
        // A damaged row, which stands nowhere.
        if (child == parent)
            continue;
        if (!m_nodes.contains(child))
            unknown.append(child);
        Node &node = m_nodes[child];
        node.link = link;
        node.place = {parent, link.value(treeColumn).toLongLong()};
        m_children[node.place].append(child);
    }
    return readNodes(nodeColumn, unknown);
}

bool MergedNodes::read(qint64 target, const QVector<qint64> &others)
{
    m_target = target;
    m_others = QSet<qint64>(others.cbegin(), others.cend());
    QSet<Place> places;
    if (!readNodes(tagColumn, others) || !readPlaces(places))
        return false;
    // Nodes that become one bring their children beside each other, where twins may meet again: level by
    // level, until no place has got any more.
    while (!places.isEmpty()) {
        QVector<qint64> gone;
        for (const Place &place : qAsConst(places))
            merge(place, gone);
        places.clear();
        if (!lift(gone, places))
            return false;
    }
    return readFolders();
}

bool MergedNodes::readPlaces(QSet<Place> &places)
{
    const QVector<qint64> changed = m_nodes.keys().toVector();
    RowImages links;
    if (!m_reader.read(UndoTable::NodeLinks, childColumn, SqlText::idTexts(changed), links))
        return false;
    QSet<qint64> parents;
    for (const RowImage &link : qAsConst(links.rows))
        parents.insert(link.value(links.columns.indexOf(parentColumn)).toLongLong());
    if (!readChildren(parents.values().toVector()))
        return false;
    for (const qint64 nodeId : changed) {
        if (!m_nodes.value(nodeId).link.isEmpty())
            places.insert(m_nodes.value(nodeId).place);
    }
    return true;
}

void MergedNodes::merge(const Place &place, QVector<qint64> &gone)
{
    // By tag and whether they are inverted.
    QMap<QPair<qint64, qint64>, QVector<qint64>> twins;
    for (const qint64 nodeId : m_children.value(place)) {
        const Node &node = m_nodes[nodeId];
        if (node.into == 0 && node.place == place && !node.row.isEmpty())
            twins[{value(node, tagColumn), value(node, QStringLiteral("inverted"))}].append(nodeId);
    }
    for (QVector<qint64> &nodes : twins) {
        // Those that were there before come first, then by their ids.
        std::sort(nodes.begin(), nodes.end(), [this](qint64 left, qint64 right) {
            const bool isLeftChanged = m_nodes.value(left).isChanged;
            return isLeftChanged != m_nodes.value(right).isChanged ? !isLeftChanged : left < right;
        });
        // Twins that nobody brought here were there before the merge, and stay two.
        for (int i = 1; i < nodes.size(); ++i) {
            if (!m_nodes.value(nodes.at(i)).isChanged)
                continue;
            m_nodes[nodes.at(i)].into = twinOf(nodes.at(i), nodes);
            gone.append(nodes.at(i));
        }
    }
}

qint64 MergedNodes::twinOf(qint64 nodeId, const QVector<qint64> &before) const
{
    // Of several that were there, the one that shows the same.
    const QString option = QStringLiteral("tr_options");
    for (const qint64 other : before) {
        const Node node = m_nodes.value(other);
        if (node.isChanged)
            break;
        if (value(node, option) == value(m_nodes.value(nodeId), option))
            return other;
    }
    return before.constFirst();
}

bool MergedNodes::lift(const QVector<qint64> &gone, QSet<Place> &grown)
{
    QVector<qint64> parents = gone;
    for (const qint64 nodeId : gone)
        parents.append(m_nodes.value(nodeId).into);
    if (!readChildren(parents))
        return false;
    for (const qint64 nodeId : gone) {
        const Node node = m_nodes.value(nodeId);
        // What moves stays in its tree.
        const Place place{node.into, node.place.second};
        const QVector<qint64> moving = m_children.take({nodeId, node.place.second});
        for (const qint64 child : moving) {
            m_nodes[child].place = place;
            m_nodes[child].isChanged = true;
        }
        m_children[place] += moving;
        grown.insert(place);
    }
    return true;
}

bool MergedNodes::readFolders()
{
    QVector<qint64> linked;
    for (auto node = m_nodes.cbegin(); node != m_nodes.cend(); ++node) {
        if (node->into > 0)
            linked += {node.key(), survivor(node.key())};
    }
    return m_reader.read(UndoTable::NodeAutoLinks, nodeColumn, SqlText::idTexts(linked), m_folders);
}

qint64 MergedNodes::survivor(qint64 nodeId) const
{
    // A node that took another one in may go itself, when its place gets more children.
    qint64 id = nodeId;
    while (m_nodes.value(id).into > 0)
        id = m_nodes.value(id).into;
    return id;
}

void MergedNodes::addTo(ChangeSet &set) const
{
    for (const Node &node : m_nodes) {
        RowImage row = node.row;
        RowImage link = node.link;
        if (node.into > 0) {
            row.clear();
            link.clear();
        } else {
            if (!row.isEmpty())
                row[m_nodeColumns.indexOf(tagColumn)] = value(node, tagColumn);
            if (!link.isEmpty())
                link[m_linkColumns.indexOf(parentColumn)] = node.place.first;
        }
        if (row != node.row)
            set.rows.append({UndoTable::Nodes, m_nodeColumns, node.row, row});
        if (link != node.link)
            set.rows.append({UndoTable::NodeLinks, m_linkColumns, node.link, link});
    }
    addFoldersTo(set);
}

void MergedNodes::addFoldersTo(ChangeSet &set) const
{
    const int column = m_folders.columns.indexOf(nodeColumn);
    QSet<QString> there(m_folders.rows.keyBegin(), m_folders.rows.keyEnd());
    for (const RowImage &row : m_folders.rows) {
        const qint64 nodeId = row.value(column).toLongLong();
        if (m_nodes.value(nodeId).into == 0)
            continue;
        set.rows.append({UndoTable::NodeAutoLinks, m_folders.columns, row, {}});
        RowImage moved = row;
        moved[column] = survivor(nodeId);
        const QString key = RowReader::keyOf(UndoTable::NodeAutoLinks, m_folders.columns, moved);
        if (!there.contains(key))
            set.rows.append({UndoTable::NodeAutoLinks, m_folders.columns, {}, moved});
        there.insert(key);
    }
}
