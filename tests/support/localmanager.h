#pragma once

#include "db/manager/postgresdbmanager.h"
#include "db/manager/sqlitedbmanager.h"
#include "fileops/worker/fileoperationtypes.h"
#include "tests/support/database.h"
#include "tests/support/settingssandbox.h"

/**
 * A manager of a new database, open and loaded: of a local one, or of the one that it is given. Its
 * statements use the manager's own connection, and pass for the manager's own.
 */
class LocalManager : private SettingsSandbox, public Sql, public TestFolder
{
public:
    explicit LocalManager(std::unique_ptr<TestDatabase> database = nullptr) : m_database(std::move(database))
    {
        registerRecordTypes();
        registerFileOperationTypes();
        if (!m_database)
            make()->createDatabase();
        open();
    }

    bool open()
    {
        m_manager = make();
        if (m_manager->openDB().isValid())
            return false;
        if (m_manager->dbType() == Constants::localDatabase)
            run("PRAGMA synchronous=OFF"); // nobody pulls the plug on a test
        m_manager->reloadAllData();
        return true;
    }
    void close() { m_manager.reset(); }

    DatabaseManger *operator->() { return m_manager.get(); }
    DatabaseManger *get() { return m_manager.get(); }
    /** The database that was given. */
    TestDatabase &database() { return *m_database; }

    bool run(const QString &statement)
    {
        const bool success = Sql::run(statement);
        m_manager->refreshModificationDate();
        return success;
    }
    bool run(const char *statement) { return run(QString::fromUtf8(statement)); }

    /** Hyperlink files with the ids 1 to count, written behind the manager's back and then loaded. */
    void addFiles(int count)
    {
        fill("INSERT INTO files SELECT i,'file '||i,'',0,0,0,'c'||i,1,0,0,0,2 FROM n", count);
        if (m_database)
            m_database->keysTaken();
        m_manager->refreshModificationDate();
        m_manager->loadAllFiles();
    }

private:
    std::unique_ptr<DatabaseManger> make()
    {
        const DBDetails of = m_database ? m_database->details() : DBDetails::local(path());
        if (of.type() == Constants::localDatabase)
            return std::make_unique<SQLiteDBManager>(Constants::sqliteDriver, of.databaseName(), QString(),
                                                     QString(), QString(), 0);
        return std::make_unique<PostgresDBManager>(Constants::postgresDriver, of.databaseName(), of.host(),
                                                   of.user(), of.password(), of.port());
    }

    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<DatabaseManger> m_manager;
};
