#include "fileops/importing/nodeimporter.h"

#include "fileops/importing/importrun.h"

#include <QDebug>

#include <algorithm>

void NodeImporter::importNodes()
{
    qDebug("Importing TB nodes.");
    if (!m_run.source.has({QStringLiteral("tb_nodes"), QStringLiteral("tb_node_links")}))
        return;
    m_nextId = m_run.statements.nextId(QStringLiteral("tb_nodes"), QStringLiteral("node_id"));
    readSource();
    readExisting();
    walkFrom(0, 0);
    // What nothing leads to from the top: nodes without a parent, and then those that lead in a circle.
    QVector<qint64> rest;
    for (auto node = m_nodes.cbegin(); node != m_nodes.cend(); ++node) {
        if (!m_settled.contains(node.key()))
            rest.append(node.key());
    }
    std::sort(rest.begin(), rest.end());
    for (const bool areRoots : {true, false}) {
        for (const qint64 id : qAsConst(rest)) {
            if (!m_settled.contains(id) && (!areRoots || !m_nodes.contains(m_parents.value(id))))
                walkFrom(id, 0);
        }
    }
    qDebug() << "Imported nodes" << m_run.report.counted(ImportReport::Nodes);
}

void NodeImporter::readSource()
{
    m_run.statements.each(
        QStringLiteral("SELECT n.node_id, t.new_tag_id, n.tr_options, n.inverted "
                       "FROM fileSource.tb_nodes AS n "
                       "LEFT JOIN migrationDB_tags AS t ON t.old_tag_id=n.tag_id"),
        [this](const ImportStatements::Row &row) {
            Node node;
            qint64 inverted = 0;
            if (!row.readNumber(2, node.options) || !row.readNumber(3, inverted) || row.number(0) <= 0) {
                m_run.report.leaveOut(tr("Browsing nodes with values that are no numbers: %1"), 1);
                return;
            }
            node.tagId = row.number(1);
            node.isInverted = inverted != 0;
            m_nodes.insert(row.number(0), node);
        });
    m_run.statements.each(
        QStringLiteral("SELECT parent_id, child_id FROM fileSource.tb_node_links ORDER BY child_id"),
        [this](const ImportStatements::Row &row) {
            qint64 parent = 0;
            qint64 child = 0;
            if (!row.readNumber(0, parent) || !row.readNumber(1, child) || m_parents.contains(child))
                return;
            m_parents.insert(child, parent);
            m_children[parent].append(child);
        });
}

void NodeImporter::readExisting()
{
    m_run.statements.each(
        QStringLiteral("SELECT l.parent_id, n.tag_id, n.inverted, n.node_id FROM main.tb_nodes AS n "
                       "JOIN main.tb_node_links AS l ON l.child_id=n.node_id ORDER BY n.node_id DESC"),
        [this](const ImportStatements::Row &row) {
            m_existing[{row.number(0), {row.number(1), row.number(2) != 0}}].append(row.number(3));
        });
}

void NodeImporter::walkFrom(qint64 root, qint64 newParent)
{
    // Level by level, without recursion: a tree may be as deep as somebody made it. Each node comes with the
    // parent of the open database.
    QVector<QPair<qint64, qint64>> waiting{{root, newParent}};
    for (int i = 0; i < waiting.size(); ++i) {
        const auto [oldId, parentId] = waiting.at(i);
        const bool isNode = m_nodes.contains(oldId);
        if (isNode && m_settled.contains(oldId))
            continue;
        const qint64 newId = isNode ? settle(oldId, parentId) : parentId;
        const QVector<qint64> children = m_children.take(oldId);
        for (const qint64 child : children)
            waiting.append({child, newId});
    }
}

qint64 NodeImporter::settle(qint64 oldId, qint64 newParent)
{
    m_settled.insert(oldId);
    const Node node = m_nodes.value(oldId);
    if (node.tagId == 0)
        return newParent;
    QVector<qint64> &existing = m_existing[{newParent, {node.tagId, node.isInverted}}];
    if (!existing.isEmpty())
        return existing.takeLast();
    const qint64 newId = m_nextId++;
    m_run.statements.run(
        QStringLiteral("INSERT INTO main.tb_nodes (node_id,tag_id,tr_options,inverted) VALUES (?,?,?,?)"),
        {newId, node.tagId, node.options, node.isInverted ? 1 : 0});
    m_run.statements.run(QStringLiteral("INSERT INTO main.tb_node_links (parent_id,child_id) VALUES (?,?)"),
                         {newParent, newId});
    m_run.report.count(ImportReport::Nodes);
    return newId;
}
