#pragma once

#include "db/sqlitedbmanager.h"
#include "fileops/fileoperationtypes.h"
#include "tests/support/database.h"
#include "tests/support/settingssandbox.h"

/** A manager of a new local database, open and loaded. Its statements use the manager's own connection. */
class LocalManager : private SettingsSandbox, public Sql, public TestFolder
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

    SQLiteDBManager *operator->() { return m_manager.get(); }
    SQLiteDBManager *get() { return m_manager.get(); }

    /** Hyperlink files with the ids 1 to count, written behind the manager's back and then loaded. */
    void addFiles(int count)
    {
        fill("INSERT INTO files SELECT i,'file '||i,'',0,0,0,'c'||i,1,0,0,0,2 FROM n", count);
        m_manager->loadAllFiles();
    }

private:
    std::unique_ptr<SQLiteDBManager> make()
    {
        return std::make_unique<SQLiteDBManager>(Constants::sqliteDriver, path(), QString(), QString(),
                                                 QString(), 0);
    }

    std::unique_ptr<SQLiteDBManager> m_manager;
};
