#include "db/sql/connections.h"

#include "app/settings/constants.h"
#include "db/sql/lockwait.h"
#include "db/sql/serverwatch.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QUuid>
#include <QVariant>

namespace {
// The time-outs are for a network that goes away: first while connecting, then while something sent is not
// confirmed, then while an answer is waited for. Texts are quoted for standard strings, and the driver looks
// only once, while it opens, whether they are so; names without a schema mean the program's tables.
const QString serverOptions = QStringLiteral("connect_timeout=10;tcp_user_timeout=30000;"
                                             "keepalives_idle=15;keepalives_interval=5;"
                                             "options='-c standard_conforming_strings=on "
                                             "-c search_path=public -c lock_timeout=%1 -c vorna.client=%2'");
// A file or a tag that another client is removing may stay locked for long. The window must not stand still
// for it, the worker has the time.
constexpr int windowLockMilliseconds = 3000;
constexpr int driversBusyMilliseconds = 5000;
constexpr int shortestWait = 50;

int lockMilliseconds(const QString &connectionName)
{
    return connectionName == Constants::workerConnection ? 0 : windowLockMilliseconds;
}

/** Nothing that stands in the making of tables may reach beyond them. */
void distrustSchema(const QSqlDatabase &database)
{
    QSqlQuery(database).exec(QStringLiteral("PRAGMA trusted_schema=OFF;"));
}

QString optionsOnServer(const QString &connectionName)
{
    return serverOptions.arg(QString::number(lockMilliseconds(connectionName)), Connections::clientName());
}

/**
 * What stands between client and server may have dropped the options: they are set once more. The error that
 * is in the way, an invalid one for none.
 */
QSqlError setUpSession(const QSqlDatabase &database)
{
    const ServerWatch::Waiting waiting(database);
    QSqlQuery query(database);
    const QString statement =
        QStringLiteral("SELECT current_setting('standard_conforming_strings'), "
                       "set_config('search_path', 'public', false), "
                       "set_config('lock_timeout', '%1', false), set_config('vorna.client', '%2', false);");
    if (!query.exec(statement.arg(QString::number(lockMilliseconds(database.connectionName())),
                                  Connections::clientName())) ||
        !query.next())
        return query.lastError();
    // Too late for this one, as the driver has looked by then.
    if (query.value(0).toString() != QLatin1String("on"))
        return {QString(),
                QCoreApplication::translate("Connections", "The server does not use standard strings."),
                QSqlError::ConnectionError};
    return {};
}
} // namespace

namespace Connections {
QString mainName()
{
    return QLatin1String(QSqlDatabase::defaultConnection);
}

QString clientName()
{
    static const QString name = QUuid::createUuid().toString(QUuid::WithoutBraces);
    return name;
}

QString driverOf(int type)
{
    switch (type) {
    case Constants::localDatabase:
        return Constants::sqliteDriver;
    case Constants::serverDatabase:
        return Constants::postgresDriver;
    default:
        return {};
    }
}

int typeOf(const QString &driver)
{
    return driver == Constants::postgresDriver ? Constants::serverDatabase : Constants::localDatabase;
}

Result open(const QString &name, const DBDetails &details, const QString &options)
{
    Result result;
    // A connection of an earlier failure may still have the name.
    close(name);
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(driverOf(details.type()), name);
        result.isDriverLoaded = database.isValid();
        if (result.isDriverLoaded) {
            database.setDatabaseName(details.databaseName());
            database.setHostName(details.host());
            database.setPort(details.port() > 0 ? details.port() : -1);
            database.setUserName(details.user());
            database.setPassword(details.password());
            const bool isServer = details.type() == Constants::serverDatabase;
            database.setConnectOptions(isServer ? optionsOnServer(name) : options);
            result.isOpen = database.open();
            result.error = database.lastError();
            if (result.isOpen && !isServer)
                distrustSchema(database);
            if (result.isOpen && isServer) {
                ServerWatch::add(database);
                result.error = setUpSession(database);
                result.isOpen = !result.error.isValid();
            }
        } else {
            result.error = database.lastError();
        }
    }
    if (!result.isOpen)
        close(name);
    return result;
}

void close(const QString &name)
{
    if (!QSqlDatabase::contains(name))
        return;
    ServerWatch::remove(name);
    QSqlDatabase::database(name, false).close();
    QSqlDatabase::removeDatabase(name);
}

void setPatient(const QSqlDatabase &database, bool isPatient)
{
    if (!database.isOpen())
        return;
    if (typeOf(database.driverName()) != Constants::localDatabase) {
        const ServerWatch::Waiting waiting(database);
        const int milliseconds = isPatient ? lockMilliseconds(database.connectionName()) : shortestWait;
        QSqlQuery(database).exec(QStringLiteral("SET lock_timeout=%1;").arg(milliseconds));
        return;
    }
    const QString told = database.connectOptions().section(QStringLiteral("QSQLITE_BUSY_TIMEOUT="), 1, 1);
    const int waiting =
        told.isEmpty() ? driversBusyMilliseconds : told.section(QLatin1Char(';'), 0, 0).toInt();
    LockWait::set(database, isPatient ? waiting : 0);
}

bool isDatabaseThere(const DBDetails &details)
{
    // Opening would make an empty file of a path without one, and wait for ever at a pipe.
    return details.type() != Constants::localDatabase || QFileInfo(details.databaseName()).isFile();
}

QSqlError missingFile(const DBDetails &details)
{
    return {QString(),
            QCoreApplication::translate("Connections", "The database file \"%1\" is missing.")
                .arg(details.databaseName()),
            QSqlError::ConnectionError};
}
} // namespace Connections
