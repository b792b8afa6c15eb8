#include "db/sql/syncrunner.h"

#include <QSqlDatabase>

namespace {
QString orOwn(const QString &connectionName)
{
    return connectionName.isEmpty() ? QString(QLatin1String(QSqlDatabase::defaultConnection))
                                    : connectionName;
}
} // namespace

void SyncRunner::run(const QString &query)
{
    runOn(orOwn(QString()), query);
}

bool SyncRunner::run(const QString &query, TableData &table, const QString &connectionName)
{
    return runOn(orOwn(connectionName), query, table);
}

bool SyncRunner::runWithBlob(const QString &query, const QByteArray &blob, const QString &placeholder,
                             TableData &table, const QString &connectionName)
{
    return runBlobOn(orOwn(connectionName), query, blob, placeholder, table);
}
