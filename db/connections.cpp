#include "db/connections.h"

#include "app/constants.h"

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

/** What this run of the program is called in its change stamps. */
QString clientName()
{
    static const QString name = QUuid::createUuid().toString(QUuid::WithoutBraces);
    return name;
}

QString optionsOnServer(const QString &connectionName)
{
    const bool isWorker = connectionName == Constants::workerConnection;
    return serverOptions.arg(QString::number(isWorker ? 0 : windowLockMilliseconds), clientName());
}

/** Nothing that stands in the making of tables may reach beyond them. */
void distrustSchema(const QSqlDatabase &database)
{
    QSqlQuery(database).exec(QStringLiteral("PRAGMA trusted_schema=OFF;"));
}

/** What stands between client and server may have dropped the options. */
bool hasStandardStrings(const QSqlDatabase &database)
{
    QSqlQuery query(database);
    return query.exec(QStringLiteral("SHOW standard_conforming_strings;")) && query.next() &&
           query.value(0).toString() == QLatin1String("on");
}
} // namespace

namespace Connections {
QString mainName()
{
    return QLatin1String(QSqlDatabase::defaultConnection);
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
            if (result.isOpen && isServer && !hasStandardStrings(database)) {
                result.isOpen = false;
                result.error = QSqlError(
                    QString(),
                    QCoreApplication::translate("Connections", "The server does not use standard strings."),
                    QSqlError::ConnectionError);
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
    QSqlDatabase::database(name, false).close();
    QSqlDatabase::removeDatabase(name);
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
