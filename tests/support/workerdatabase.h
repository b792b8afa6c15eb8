#pragma once

#include "app/constants.h"
#include "app/dbdetails.h"
#include "db/schema.h"
#include "db/sqlitequeryconstructor.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>

/**
 * A new local database with the default connection open, and builders for the rows of files. Operations reach
 * it through details(), or through a worker's connection in the test's own thread.
 */
class WorkerDatabase
{
public:
    WorkerDatabase()
    {
        open(QLatin1String(QSqlDatabase::defaultConnection));
        // Each test makes one: no waiting for the disk.
        run(QStringLiteral("PRAGMA synchronous=OFF"));
        run(QStringLiteral("BEGIN"));
        for (const QString &statement : Schema::creationStatements())
            run(statement);
        run(QStringLiteral("COMMIT"));
    }
    ~WorkerDatabase()
    {
        remove(Constants::workerConnection);
        remove(QLatin1String(QSqlDatabase::defaultConnection));
    }
    WorkerDatabase(const WorkerDatabase &) = delete;
    WorkerDatabase &operator=(const WorkerDatabase &) = delete;

    QString path() const { return m_folder.filePath(QStringLiteral("test.vrn")); }
    QString filePath(const QString &name) const { return m_folder.filePath(name); }
    DBDetails details() const { return DBDetails::local(path()); }
    const SqliteQueryConstructor *constructor() const { return &m_constructor; }
    bool openWorkerConnection() const { return open(Constants::workerConnection); }

    bool run(const QString &statement) { return QSqlQuery().exec(statement); }
    QVariant value(const QString &statement) const
    {
        QSqlQuery query(statement);
        return query.next() ? query.value(0) : QVariant();
    }
    int count(const QString &table) const
    {
        return value(QStringLiteral("SELECT count(*) FROM ") + table).toInt();
    }
    /** The rows of a query, each with its values joined by bars. */
    QStringList rows(const QString &statement) const
    {
        QSqlQuery query(statement);
        QStringList result;
        while (query.next()) {
            QStringList values;
            for (int i = 0; i < query.record().count(); ++i)
                values.append(query.value(i).toString());
            result.append(values.join(QLatin1Char('|')));
        }
        return result;
    }

    bool addFile(qint64 id, int internal, qint64 size, qint64 storageId, qint64 thumbnailId = 0)
    {
        return run(
            QStringLiteral("INSERT INTO files VALUES (%1, 'file%1', '', %2, 1, 1, 'C%1', 1, %3, %4, 0, %5)")
                .arg(id)
                .arg(size)
                .arg(storageId)
                .arg(thumbnailId)
                .arg(internal));
    }
    bool addBlock(qint64 id, qint64 continueId, const QByteArray &data)
    {
        QSqlQuery query;
        query.prepare(QStringLiteral("INSERT INTO storage VALUES (?, ?)"));
        query.addBindValue(id);
        query.addBindValue(data);
        return query.exec() &&
               run(QStringLiteral("INSERT INTO storage_info VALUES (%1, %2)").arg(id).arg(continueId));
    }

private:
    bool open(const QString &connection) const
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(Constants::sqliteDriver, connection);
        database.setDatabaseName(path());
        return database.open();
    }
    static void remove(const QString &connection)
    {
        if (!QSqlDatabase::contains(connection))
            return;
        QSqlDatabase::database(connection, false).close();
        QSqlDatabase::removeDatabase(connection);
    }

    QTemporaryDir m_folder;
    SqliteQueryConstructor m_constructor;
};
