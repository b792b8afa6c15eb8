#include "db/connections.h"

#include "app/constants.h"

#include <QFileInfo>
#include <QSqlDatabase>

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
            database.setConnectOptions(options);
            result.isOpen = database.open();
        }
        result.error = database.lastError();
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
} // namespace Connections
