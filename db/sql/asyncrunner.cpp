#include "db/sql/asyncrunner.h"

#include "app/settings/constants.h"

namespace {
QString orOwn(const QString &connectionName)
{
    return connectionName.isEmpty() ? QString(Constants::workerConnection) : connectionName;
}
} // namespace

void AsyncRunner::run(const QString &query)
{
    runOn(orOwn(QString()), query);
}

bool AsyncRunner::run(const QString &query, TableData &table, const QString &connectionName)
{
    return runOn(orOwn(connectionName), query, table);
}

bool AsyncRunner::runWithBlob(const QString &query, const QByteArray &blob, const QString &placeholder,
                              TableData &table, const QString &connectionName)
{
    return runBlobOn(orOwn(connectionName), query, blob, placeholder, table);
}
