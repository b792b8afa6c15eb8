#pragma once

#include "app/constants.h"
#include "app/messages.h"
#include "core/collection.h"
#include "db/databasemanger.h"
#include "tests/support/settingssandbox.h"

#include <QFile>
#include <QSettings>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/**
 * A new local database in a folder of its own, opened and loaded as the window does it, with settings of its
 * own. Boxes are noted and answered by a button. All goes with the object.
 */
class CollectionFixture
{
public:
    CollectionFixture()
    {
        Messages::setResponder([this](const Messages::Box &box) {
            m_boxes.append(box.title.isEmpty() ? box.text : box.title + QLatin1String(": ") + box.text);
            return Messages::Answer{m_button, -1};
        });
        make();
        m_isReady = placeEmptyDatabase();
        openAndLoad();
    }
    ~CollectionFixture()
    {
        m_collection.reset();
        Messages::setResponder({});
    }
    CollectionFixture(const CollectionFixture &) = delete;
    CollectionFixture &operator=(const CollectionFixture &) = delete;

    bool isReady() const { return m_isReady; }
    Collection &collection() { return *m_collection; }
    DatabaseManger &manager() { return *m_collection->findChild<DatabaseManger *>(); }
    QString path(const QString &name) const { return m_folder.filePath(name); }

    /** Closes the database and opens it again, as after a restart of the program. */
    void reopen()
    {
        close();
        make();
        openAndLoad();
    }
    void close() { m_collection.reset(); }

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

    /** Makes tags of these names and gives their ids. */
    QVector<qint64> addTags(const QStringList &names)
    {
        QVector<qint64> ids;
        for (const QString &name : names)
            ids.append(manager().addTag(name));
        return ids;
    }

    void waitForWorker()
    {
        QVERIFY(QTest::qWaitFor([this] { return !manager().isBusy(); }, 60000));
        QCoreApplication::processEvents();
    }

    /** The rows of a query, each with its values between bars. */
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

private:
    /** Made by the program once a process, then copied: making one waits for the disk table by table. */
    bool placeEmptyDatabase()
    {
        static QByteArray bytes;
        QFile file(m_collection->databaseName());
        if (bytes.isEmpty() && m_collection->createDatabase() && file.open(QIODevice::ReadOnly))
            bytes = file.readAll();
        file.close();
        return !bytes.isEmpty() && file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    }
    void make()
    {
        m_collection.reset(makeCollection(Constants::localDatabase, QString(),
                                          path(QStringLiteral("test.vrn")), QString(), QString(), 0));
    }
    void openAndLoad()
    {
        const QSqlError error = m_collection->open();
        m_isReady = m_isReady && error.type() == QSqlError::NoError && !m_collection->isReadOnly();
        QSqlQuery().exec(QStringLiteral("PRAGMA synchronous=OFF")); // no test pulls the plug
        m_collection->load();
#include "app/dbdetails.h"
#include "core/collection.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/tagscontroller.h"
#include "core/file.h"
#include "db/databasemanger.h"
#include "models/contentsmodel.h"
#include "tests/support/settingssandbox.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <memory>

/** A new local database, open as the window opens it, and a folder for files to add. Gone with the object. */
class CollectionFixture
{
public:
    enum Access { Writable, ReadOnly };

    explicit CollectionFixture(Access access = Writable)
    {
        makeEmptyDatabase();
        m_collection = make();
        // A lock while the database is opened makes the test of writing fail, also for the superuser.
        if (access == ReadOnly)
            lock();
        m_collection->open();
        if (access == ReadOnly)
            unlock();
        m_collection->load();
    }
    ~CollectionFixture() { m_collection->close(); }
    CollectionFixture(const CollectionFixture &) = delete;
    CollectionFixture &operator=(const CollectionFixture &) = delete;

    Collection &collection() { return *m_collection; }
    MainViewController *mainView() { return m_collection->mainViewController(); }
    TagsController *tags() { return m_collection->tagsController(); }
    BrowsTreeController *tree() { return m_collection->browsTreeController(); }

    /** Writes a file into the folder. Its path. */
    QString write(const QString &name, const QByteArray &bytes = QByteArrayLiteral("contents"))
    {
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes + name.toUtf8()) < 0)
            qFatal("cannot write %s", qPrintable(file.fileName()));
        return file.fileName();
    }

    /** Adds one file or link and gives its id. */
    qint64 add(const QUrl &url, const QVector<qint64> &tagIds = {})
    {
        const QList<qint64> before = manager()->files().keys();
        mainView()->addUrls({url}, tagIds);
        wait();
        for (qint64 id : manager()->files().keys()) {
            if (!before.contains(id))
                return id;
        }
        return 0;
    }
    qint64 addExternal(const QString &name, const QVector<qint64> &tagIds = {})
    {
        return add(QUrl::fromLocalFile(write(name)), tagIds);
    }

    /** A node of a tag at the top level of the browsing tree. */
    qint64 addNode(qint64 tagId)
    {
        tree()->addNodesBelow({tagId}, 0);
        for (const TBnode *node : manager()->nodes().values()) {
            if (node->tagId() == tagId)
                return node->id();
        }
        return 0;
    }
    /** Shows the files of a node, as a click on it does. */
    void activate(qint64 nodeId)
    {
        QVector<qint64> required;
        QVector<qint64> excluded;
        tree()->nodeById(nodeId)->collectTagRequirements(required, excluded);
        tree()->nodeActivated(TagNode, nodeId, required, excluded);
    }

    /** Null when the file is not in the database. */
    const File *file(qint64 id) { return manager()->file(id); }
    /** Until file operations are through and their news have arrived. */
    void wait()
    {
        // The manager hands requests to the worker from the event loop.
        QCoreApplication::processEvents();
        QVERIFY(QTest::qWaitFor([this] { return !manager()->isBusy(); }, 60000));
        QCoreApplication::processEvents();
    }
    DatabaseManger *manager() { return m_collection->findChild<DatabaseManger *>(); }

private:
    std::unique_ptr<Collection> make()
    {
        return std::unique_ptr<Collection>(
            makeCollection(Constants::localDatabase, QString(), path(), QString(), QString(), 0));
    }
    // Made once a program and copied from then on: most of its time is waiting for the disk.
    void makeEmptyDatabase()
    {
        static QByteArray bytes;
        if (bytes.isEmpty()) {
            make()->createDatabase();
            QFile made(path());
            made.open(QIODevice::ReadOnly);
            bytes = made.readAll();
            return;
        }
        QFile copy(path());
        copy.open(QIODevice::WriteOnly);
        copy.write(bytes);
    }
    QString path() const { return m_folder.filePath(QStringLiteral("test.vrn")); }
    void lock() const
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(Constants::sqliteDriver, QStringLiteral("lock"));
        database.setDatabaseName(path());
        database.open();
        QSqlQuery(database).exec(QStringLiteral("BEGIN IMMEDIATE"));
    }
    static void unlock()
    {
        QSqlDatabase::database(QStringLiteral("lock")).close();
        QSqlDatabase::removeDatabase(QStringLiteral("lock"));
    }

    SettingsSandbox m_settings;
    QTemporaryDir m_folder;
    std::unique_ptr<Collection> m_collection;
    bool m_isReady = false;
    QMessageBox::StandardButton m_button = QMessageBox::Ok;
    QStringList m_boxes;
};
