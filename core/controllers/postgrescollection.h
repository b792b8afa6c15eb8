#pragma once

#include "core/controllers/collection.h"

/** A collection on a server, shared with other clients. */
class PostgresCollection : public Collection
{
    Q_OBJECT

public:
    PostgresCollection(const QString &host, const QString &databaseName, const QString &user,
                       const QString &password, int port, QObject *parent = nullptr);

protected:
    DatabaseManger *makeManager() override;
};
