#include "fileops/postgresfileoperationworker.h"

#include "db/abstractqueryconstructor.h"
#include "db/changestamp.h"

bool PostgresFileOperationWorker::insertBrowsingNodeLink(qint64 parentId, qint64 childId)
{
    const QStringList columns = {QStringLiteral("parent_id"), QStringLiteral("child_id"),
                                 QStringLiteral("browsing_tree_id")};
    const QStringList row = {QString::number(parentId), QString::number(childId),
                             QString::number(browsingTreeId())};
    return runAsync(constructor()->insertQuery(columns, QStringLiteral("tb_node_links"), {row}) +
                    constructor()->statementEnd());
}

bool PostgresFileOperationWorker::commitTransaction(const QString &connectionName)
{
    TableData table;
    if (connectionName == this->connectionName() && runAsync(ChangeStamp::query(*constructor()), table))
        emit aboutToCommit(ChangeStamp::of(table));
    freeRows(table);
    return FileOperationWorker::commitTransaction(connectionName);
}
