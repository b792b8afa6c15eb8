#pragma once

#include "app/constants.h"
#include "db/sqlitedbmanager.h"
#include "fileops/fileoperationtypes.h"

#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>

#include <memory>

/** A manager of a new local database, open and loaded. Its SQL helpers use the manager's own connection. */
class LocalManager
{
public:
    LocalManager()
    {
        registerRecordTypes();
        registerFileOperationTypes();
        make()->createDatabase();
        open();
    }

    bool open()
    {
        m_manager = make();
        if (m_manager->openDB().isValid())
            return false;
        run("PRAGMA synchronous=OFF"); // nobody pulls the plug on a test
        m_manager->reloadAllData();
        return true;
    }
    void close() { m_manager.reset(); }

    SQLiteDBManager &operator*() { return *m_manager; }
    SQLiteDBManager *operator->() { return m_manager.get(); }
    SQLiteDBManager *get() { return m_manager.get(); }
    QString path() const { return m_folder.filePath(QStringLiteral("test.vrn")); }
    QString folder() const { return m_folder.path(); }

    bool run(const QString &statement) { return QSqlQuery().exec(statement); }
    bool run(const char *statement) { return run(QString::fromUtf8(statement)); }

    /** The rows of a query, each with its values between bars. */
    static QStringList rows(const QString &statement)
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
    static QString value(const char *statement)
    {
        return rows(QString::fromUtf8(statement)).join(QLatin1Char('\n'));
    }

    /** Hyperlink files with the ids 1 to count, written behind the manager's back and then loaded. */
    void addFiles(int count)
    {
        const QString numbers =
            QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<%1) "
                           "INSERT INTO files SELECT i,'file '||i,'',0,0,0,'c'||i,1,0,0,0,2 FROM n");
        run(numbers.arg(count));
        m_manager->loadAllFiles();
    }

private:
    std::unique_ptr<SQLiteDBManager> make()
    {
        return std::make_unique<SQLiteDBManager>(Constants::sqliteDriver, path(), QString(), QString(),
                                                 QString(), 0);
    }

    QTemporaryDir m_folder;
    std::unique_ptr<SQLiteDBManager> m_manager;
};

/** A second connection to a database, as another program would have it. */
class OtherConnection
{
public:
    explicit OtherConnection(const QString &path)
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name());
        database.setDatabaseName(path);
        database.open();
    }
    ~OtherConnection()
    {
        QSqlDatabase::database(name(), false).close();
        QSqlDatabase::removeDatabase(name());
    }
    OtherConnection(const OtherConnection &) = delete;
    OtherConnection &operator=(const OtherConnection &) = delete;

    bool run(const QString &statement) { return QSqlQuery(QSqlDatabase::database(name())).exec(statement); }

private:
    static QString name() { return QStringLiteral("other"); }
};
