#include "core/controllers/sqlitecollection.h"

#include "app/settings/constants.h"
#include "db/manager/sqlitedbmanager.h"

SqliteCollection::SqliteCollection(const QString &host, const QString &databaseName, const QString &user,
                                   const QString &password, int port, QObject *parent)
    : Collection(Constants::sqliteDriver, host, databaseName, user, password, port, parent)
{
    build();
}

DatabaseManger *SqliteCollection::makeManager()
{
    return new SQLiteDBManager(driver(), databaseName(), hostName(), userName(), password(), port(), this);
}
