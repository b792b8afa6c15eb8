#include "fileops/adding/nodebuilder.h"

#include "db/sql/sqltext.h"
#include "db/sql/transaction.h"
#include "fileops/adding/folderexpansion.h"
#include "fileops/worker/fileoperationworker.h"

NodeBuilder::NodeBuilder(FileOperationWorker &worker, const QHash<QString, qint64> &tagIdsByName,
                         bool isLimited, int limit)
    : m_worker(worker), m_tagIdsByName(tagIdsByName), m_isLimited(isLimited), m_limit(limit)
{
}

QVector<qint64> NodeBuilder::build(const QVector<ExpandedFolder> &folders, qint64 nodeId)
{
    QVector<qint64> newNodes;
    QVector<qint64> nodeOfFolder(folders.size(), 0); // 0: no node, so none below it either
    QVector<int> depthOfFolder(folders.size(), 0);
    for (int i = 0; i < folders.size() && !m_worker.shouldEnd() && !m_worker.isSavepointLost(); ++i) {
        const ExpandedFolder &folder = folders.at(i);
        const bool isTop = folder.parent < 0;
        depthOfFolder[i] = isTop ? 0 : depthOfFolder.at(folder.parent) + 1;
        if (m_isLimited && depthOfFolder.at(i) >= m_limit)
            continue;
        const qint64 parentId = isTop ? qMax(qint64(0), nodeId) : nodeOfFolder.at(folder.parent);
        const QString name = folder.path.mid(folder.path.lastIndexOf(QLatin1Char('/')) + 1);
        const qint64 tagId = m_tagIdsByName.value(name);
        if (tagId <= 0 || (!isTop && parentId == 0) || (isTop && isChildNamed(parentId, name)))
            continue;
        nodeOfFolder[i] = addNode(parentId, tagId);
        if (nodeOfFolder.at(i) > 0)
            newNodes.append(nodeOfFolder.at(i));
    }
    return newNodes;
}

bool NodeBuilder::isChildNamed(qint64 parentId, const QString &tagName)
{
    QString statement =
        SqlText::fill(QStringLiteral("SELECT * from tb_node_links AS a JOIN tb_nodes AS b ON "
                                     "a.child_id=b.node_id NATURAL JOIN tags WHERE tags.tag_name=%1 AND "
                                     "a.parent_id=%2"),
                      {SqlText::quoted(tagName), QString::number(parentId)});
    // Each tree of a server has a top level of its own.
    if (m_worker.browsingTreeId() > 0)
        statement += QLatin1String(" AND a.browsing_tree_id=") + QString::number(m_worker.browsingTreeId());
    TableData table;
    const bool isFree = m_worker.runAsync(statement + QLatin1Char(';'), table) && table.isEmpty();
    freeRows(table);
    return !isFree;
}

qint64 NodeBuilder::addNode(qint64 parentId, qint64 tagId)
{
    qint64 id = 0;
    Savepoint savepoint(m_worker);
    if (!savepoint.isActive() || !m_worker.nextNodeId(id) || !m_worker.insertBrowsingNode(id, tagId) ||
        !m_worker.insertBrowsingNodeLink(parentId, id) || !savepoint.release())
        return 0;
    return id;
}
