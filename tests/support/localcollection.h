#pragma once

#include "app/messages/boxprompts.h"
#include "app/messages/messages.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/collection.h"
#include "core/controllers/groupscontroller.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/relationscontroller.h"
#include "core/controllers/tagscontroller.h"
#include "core/records/recordtypes.h"
#include "db/manager/databasemanger.h"
#include "fileops/worker/fileoperationtypes.h"
#include "tests/support/database.h"
#include "tests/support/settingssandbox.h"

/**
 * A collection over a new database, open and loaded, with settings of its own: over a local one, or over the
 * one that it is given. Boxes are noted and answered by a button. Has short ways to files of each kind, tags
 * and nodes.
 */
class LocalCollection : private SettingsSandbox, public Sql, public TestFolder
{
public:
    explicit LocalCollection(std::unique_ptr<TestDatabase> database = nullptr)
        : m_database(std::move(database))
    {
        registerRecordTypes();
        registerFileOperationTypes();
        Messages::setResponder([this](const Messages::Box &box) {
            m_boxes.append(box.title.isEmpty() ? box.text : box.title + QLatin1String(": ") + box.text);
            return Messages::Answer{m_button, -1};
        });
        if (!m_database)
            placeFile();
        open();
    }
    ~LocalCollection()
    {
        close();
        Messages::setResponder({});
    }
    LocalCollection(const LocalCollection &) = delete;
    LocalCollection &operator=(const LocalCollection &) = delete;

    bool open()
    {
        m_collection = make();
        if (m_collection->open().isValid())
            return false;
        if (m_collection->dbType() == Constants::localDatabase)
            run("PRAGMA synchronous=OFF"); // nobody pulls the plug on a test
        m_collection->load();
        return true;
    }
    void close() { m_collection.reset(); }
    /** Closes the database and opens it again, as after a restart of the program. */
    void reopen()
    {
        close();
        open();
    }
    /** The same with the row there that tries out writing, which is read-only also for the superuser. */
    void reopenReadOnly()
    {
        run("INSERT INTO file_tag VALUES (0,0)");
        reopen();
    }

    BoxPrompts &prompts() { return m_prompts; }
    Collection *operator->() { return m_collection.get(); }
    Collection *get() { return m_collection.get(); }
    /** The database that was given. */
    TestDatabase &database() const { return *m_database; }
    DatabaseManger *manager() { return m_collection->findChild<DatabaseManger *>(); }
    TagsController &tags() { return *m_collection->tagsController(); }
    GroupsController &groups() { return *m_collection->groupsController(); }
    BrowsTreeController &tree() { return *m_collection->browsTreeController(); }
    MainViewController &mainView() { return *m_collection->mainViewController(); }
    RelationsController &relations() { return *m_collection->relationsController(); }
    /** Null when the file is not in the database. */
    const File *file(qint64 id) { return manager()->file(id); }

    void answerBoxesWith(QMessageBox::StandardButton button) { m_button = button; }
    /** The boxes shown since the last call, as "title: text" or as their text alone. */
    QStringList takeBoxes()
    {
        QStringList boxes;
        boxes.swap(m_boxes);
        return boxes;
    }
    static void set(const char *key, const QVariant &value)
    {
        QSettings().setValue(QString::fromLatin1(key), value);
    }

    /** Hyperlink files with the ids 1 to count, written behind the manager's back and then loaded. */
    void addFiles(int count)
    {
        fill("INSERT INTO files SELECT i,'file '||i,'',0,0,0,'c'||i,1,0,0,0,2 FROM n", count);
        if (m_database)
            m_database->keysTaken();
        manager()->refreshModificationDate();
        manager()->loadAllFiles();
    }
    /** Makes tags of these names and gives their ids. */
    QVector<qint64> addTags(const QStringList &names)
    {
        QVector<qint64> ids;
        for (const QString &name : names)
            ids.append(manager()->addTag(name));
        return ids;
    }
    /** Adds one file or link and gives its id. */
    qint64 add(const QUrl &url, const QVector<qint64> &tagIds = {})
    {
        const QList<qint64> before = manager()->files().keys();
        mainView().addUrls({url}, tagIds);
        waitForWorker();
        for (qint64 id : manager()->files().keys()) {
            if (!before.contains(id))
                return id;
        }
        return 0;
    }
    /** Writes a file with contents of its own and adds it. Its id. */
    qint64 addExternal(const QString &name, const QVector<qint64> &tagIds = {})
    {
        return add(QUrl::fromLocalFile(write(name, name.toUtf8())), tagIds);
    }
    /** A node of a tag at the top level of the browsing tree. */
    qint64 addNode(qint64 tagId) { return manager()->addNodeBelow(tagId, 0); }
    /** Shows the files of a node, as a click on it does. */
    void activate(qint64 nodeId)
    {
        QVector<qint64> required;
        QVector<qint64> excluded;
        tree().nodeById(nodeId)->collectTagRequirements(required, excluded);
        tree().nodeActivated(TagNode, nodeId, required, excluded);
    }
    void waitForWorker()
    {
        QCoreApplication::processEvents(); // a request reaches the worker from the event loop
        QVERIFY(QTest::qWaitFor([this] { return !manager()->isBusy(); }, 60000));
        QCoreApplication::processEvents();
    }

private:
    /** The tables are made once a process, and copied from then on. */
    void placeFile()
    {
        static const QTemporaryDir folder;
        const QString empty = folder.filePath("empty.vrn"_s);
        if (QFile::exists(empty)) {
            QFile::copy(empty, path());
        } else {
            make()->createDatabase();
            QFile::copy(path(), empty);
        }
    }
    std::unique_ptr<Collection> make()
    {
        const DBDetails of = m_database ? m_database->details() : DBDetails::local(path());
        std::unique_ptr<Collection> made(
            makeCollection(of.type(), of.host(), of.databaseName(), of.user(), of.password(), of.port()));
        made->setPrompts(m_prompts);
        return made;
    }

    std::unique_ptr<TestDatabase> m_database;
    BoxPrompts m_prompts;
    std::unique_ptr<Collection> m_collection;
    QMessageBox::StandardButton m_button = QMessageBox::Ok;
    QStringList m_boxes;
};
