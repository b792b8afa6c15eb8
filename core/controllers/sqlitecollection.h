#pragma once

#include "core/controllers/collection.h"

/** A collection in one local file. */
class SqliteCollection : public Collection
{
    Q_OBJECT

public:
    SqliteCollection(const QString &host, const QString &databaseName, const QString &user,
                     const QString &password, int port, QObject *parent = nullptr);

protected:
    DatabaseManger *makeManager() override;
};
