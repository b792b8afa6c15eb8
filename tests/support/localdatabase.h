#pragma once

#include "core/providers/sqlitegeneralprovider.h"
#include "db/schema.h"
#include "db/sqlitequeryconstructor.h"
#include "db/transaction.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>

/** A new local database on the default connection, gone with the object. */
class LocalDatabase
{
public:
    LocalDatabase()
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"));
        database.setDatabaseName(m_folder.filePath(QStringLiteral("test.vrn")));
        database.open();
        SqliteGeneralProvider provider(&m_constructor);
        Transaction transaction(provider); // one write to the disk instead of one a table
        m_isReady = provider.runStatements(Schema::creationStatements(), QString()) && transaction.commit();
    }
    ~LocalDatabase()
    {
        close();
        QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
    }
    LocalDatabase(const LocalDatabase &) = delete;
    LocalDatabase &operator=(const LocalDatabase &) = delete;

    bool isReady() const { return m_isReady; }
    const SqliteQueryConstructor *constructor() const { return &m_constructor; }
    void close() { QSqlDatabase::database(QLatin1String(QSqlDatabase::defaultConnection), false).close(); }

    bool run(const char *statement) { return QSqlQuery().exec(QString::fromUtf8(statement)); }

    /** The rows of a query, each with its values between bars. */
    QStringList rows(const char *statement) const
    {
        QSqlQuery query(QString::fromUtf8(statement));
        QStringList result;
        while (query.next()) {
            QStringList values;
            for (int i = 0; i < query.record().count(); ++i)
                values.append(query.value(i).toString());
            result.append(values.join(QLatin1Char('|')));
        }
        return result;
    }
    QString value(const char *statement) const { return rows(statement).join(QLatin1Char('\n')); }

    /** Files 1 to count: the odd ones internal, the even ones external, each with its id as storage id. */
    bool addFiles(int count)
    {
        return fill("INSERT INTO files SELECT i,'f'||i,'',0,0,0,'c'||i,1,i,NULL,0,i%2 FROM n", count);
    }
    /** Tags 1 to count. */
    bool addTags(int count) { return fill("INSERT INTO tags SELECT i,'t'||i,'',0,NULL FROM n", count); }

private:
    bool fill(const char *insert, int count)
    {
        const QString numbers =
            QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<%1) ");
        return QSqlQuery().exec(numbers.arg(count) + QLatin1String(insert));
    }

    QTemporaryDir m_folder;
    SqliteQueryConstructor m_constructor;
    bool m_isReady = false;
};

/** Counts the errors that a provider tells of. Made after the provider, gone before it. */
class ErrorCount
{
public:
    explicit ErrorCount(BaseDBProvider &provider)
    {
        QObject::connect(&provider, &BaseDBProvider::errorOccured, &provider, [this] { ++m_count; });
    }
    int count() const { return m_count; }

private:
    int m_count = 0;
};
