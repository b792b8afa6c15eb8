#include "core/controllers/postgrescollection.h"

#include "app/settings/constants.h"
#include "db/manager/postgresdbmanager.h"

PostgresCollection::PostgresCollection(const QString &host, const QString &databaseName, const QString &user,
                                       const QString &password, int port, QObject *parent)
    : Collection(Constants::postgresDriver, host, databaseName, user, password, port, parent)
{
    // Not in the base class, whose constructor cannot reach makeManager() here.
    build();
}

DatabaseManger *PostgresCollection::makeManager()
{
    return new PostgresDBManager(driver(), databaseName(), hostName(), userName(), password(), port(), this);
}
