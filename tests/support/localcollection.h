#pragma once

#include "core/collection.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/groupscontroller.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/relationscontroller.h"
#include "core/controllers/tagscontroller.h"
#include "core/recordtypes.h"
#include "db/databasemanger.h"
#include "fileops/fileoperationtypes.h"

#include <QFile>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>

#include <functional>
#include <memory>

/** A collection over a new local database, open and loaded. Its SQL helpers use the open connection. */
class LocalCollection
{
public:
    LocalCollection()
    {
        registerRecordTypes();
        registerFileOperationTypes();
        placeFile();
        open();
    }

    bool open()
    {
        m_collection = make();
        if (m_collection->open().isValid())
            return false;
        run(QStringLiteral("PRAGMA synchronous=OFF")); // nobody pulls the plug on a test
        m_collection->load();
        return true;
    }
    void close() { m_collection.reset(); }

    Collection *operator->() { return m_collection.get(); }
    Collection *get() { return m_collection.get(); }
    DatabaseManger *manager() { return m_collection->findChild<DatabaseManger *>(); }
    TagsController &tags() { return *m_collection->tagsController(); }
    GroupsController &groups() { return *m_collection->groupsController(); }
    BrowsTreeController &tree() { return *m_collection->browsTreeController(); }
    MainViewController &mainView() { return *m_collection->mainViewController(); }
    RelationsController &relations() { return *m_collection->relationsController(); }
    QString path() const { return m_folder.filePath(QStringLiteral("test.vrn")); }
    QString folder() const { return m_folder.path(); }

    static bool run(const QString &statement) { return QSqlQuery().exec(statement); }
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
        const QString statement =
            QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<%1) "
                           "INSERT INTO files SELECT i,'file '||i,'',0,0,0,'c'||i,1,0,0,0,2 FROM n");
        run(statement.arg(count));
        manager()->loadAllFiles();
    }

private:
    /** The tables are made once a process, and copied from then on. */
    void placeFile()
    {
        static const QTemporaryDir folder;
        const QString empty = folder.filePath(QStringLiteral("empty.vrn"));
        if (QFile::exists(empty)) {
            QFile::copy(empty, path());
        } else {
            make()->createDatabase();
            QFile::copy(path(), empty);
        }
    }

    std::unique_ptr<Collection> make()
    {
        return std::unique_ptr<Collection>(makeCollection(1, {}, path(), {}, {}, 0));
    }

    QTemporaryDir m_folder;
    std::unique_ptr<Collection> m_collection;
};
