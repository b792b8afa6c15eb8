#include "tests/support/localmanager.h"

#include <QThread>

#include <atomic>
#include <functional>

namespace {
const QString updating = "Local data is updating."_s;
constexpr int theirTag = 77;

using Edit = std::function<void(LocalManager &)>;
/** Each leaves another database than it found, and can be repeated until it has. */
const QMap<QString, Edit> &edits()
{
    static const QMap<QString, Edit> all = {
        {"new tag"_s, [](LocalManager &m) { m->addTag("mine"_s); }},
        {"renamed tag"_s, [](LocalManager &m) { m->renameTag(1, "mine"_s); }},
        {"removed tag"_s, [](LocalManager &m) { m->removeTags({1}); }},
        {"group"_s, [](LocalManager &m) { m->addGroup("mine"_s, true); }},
        {"node"_s, [](LocalManager &m) { m->addNodeBelow(1, 0); }},
        {"option of a node"_s, [](LocalManager &m) { m->updateNode(1, "inverted"_s, "1"_s); }},
        {"removed node"_s, [](LocalManager &m) { m->removeNodes({1}); }},
        {"relationship"_s, [](LocalManager &m) { m->addRelations({}, {1}); }},
        {"renamed file"_s, [](LocalManager &m) { m->updateFile(1, "file_name"_s, "mine"_s); }},
        {"tags of files"_s,
         [](LocalManager &m) {
             m->linkTags({1, 2}, {1});
         }},
        {"deleted file"_s, [](LocalManager &m) { m->deleteFiles({2}); }},
        {"added link"_s, [](LocalManager &m) { m->addFiles({"https://example.org"_s}, {1}, false, 0); }},
    };
    return all;
}

/** Everything that the edits could change. */
QString contents(LocalManager &manager)
{
    QStringList lines;
    for (const char *table :
         {"tags", "tag_groups", "tb_nodes", "tag_relationships", "files", "file_tag", "file_paths"})
        lines += manager.rows("SELECT * FROM %1 ORDER BY 1"_s.arg(QLatin1String(table)));
    return lines.join(QLatin1Char('\n'));
}

bool writeTag(OtherConnection &other, int id)
{
    return other.run("INSERT INTO tags VALUES(%1,'theirs %1','',0,NULL)"_s.arg(id));
}
} // namespace

/** Two programs with one local database open: what the other one writes is never written over unseen. */
class TestForeignWrites : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_manager = std::make_unique<LocalManager>();
        m_manager->run("INSERT INTO tags VALUES(1,'first','',0,NULL)");
        m_manager->run("INSERT INTO tb_nodes VALUES(1,1,1,0)");
        m_manager->run("INSERT INTO tb_node_links VALUES(0,1)");
        m_manager->addFiles(3);
        manager().reloadAllData();
        QCoreApplication::processEvents();
        m_warnings = std::make_unique<QSignalSpy>(&manager(), &DatabaseManger::showTempWarning);
        m_reloads = std::make_unique<QSignalSpy>(&manager(), &DatabaseManger::allDataReloaded);
    }
    void cleanup()
    {
        m_warnings.reset();
        m_reloads.reset();
        m_manager.reset();
    }

    void editIsDroppedOnce_data()
    {
        QTest::addColumn<QString>("edit");
        for (const QString &name : edits().keys())
            addRow(qPrintable(name), name);
    }

    void editIsDroppedOnce()
    {
        QFETCH(QString, edit);
        const Edit run = edits().value(edit);
        OtherConnection other(m_manager->path());
        QVERIFY(writeTag(other, theirTag));
        const QString before = contents(*m_manager);
        run(*m_manager);
        QTRY_COMPARE(m_reloads->size(), 1);
        QTRY_VERIFY(!manager().isBusy());
        QCOMPARE(contents(*m_manager), before);
        QVERIFY(manager().hasTag(theirTag));
        QCOMPARE(texts(), QStringList{updating});
        run(*m_manager);
        QTRY_VERIFY(contents(*m_manager) != before);
        QTRY_VERIFY(!manager().isBusy());
        // What the program wrote itself, on either connection, is no news.
        QVERIFY(manager().addTag("next"_s) > 0);
        QCOMPARE(texts(), QStringList());
        QCOMPARE(m_reloads->size(), 1);
    }

    void writeUnderWhoseLockTheEditWaited()
    {
        // The other one commits while the edit waits for the lock: it looks again when it has got it.
        std::atomic<bool> isLocked{false};
        const QString path = m_manager->path();
        const std::unique_ptr<QThread> other(QThread::create([&isLocked, path] {
            OtherConnection connection(path, "thread"_s);
            connection.run("BEGIN IMMEDIATE"_s);
            writeTag(connection, theirTag);
            isLocked = true;
            QThread::msleep(100);
            connection.run("COMMIT"_s);
        }));
        other->start();
        while (!isLocked)
            QThread::yieldCurrentThread();
        manager().renameTag(1, "mine"_s);
        other->wait();
        QCOMPARE(m_manager->value("SELECT tag_name FROM tags WHERE tag_id=1"), "first"_s);
        QTRY_VERIFY(manager().hasTag(theirTag));
        QCOMPARE(texts(), QStringList{updating});
    }

    void writeBehindARequest()
    {
        OtherConnection other(m_manager->path());
        manager().deleteFiles({2}); // begins from the event loop
        QVERIFY(writeTag(other, theirTag));
        QTRY_VERIFY(manager().hasTag(theirTag));
        QTRY_VERIFY(!manager().isBusy());
        QCOMPARE(m_manager->count("files"_s), 3);
        QCOMPARE(texts(), QStringList{updating});
    }

    void writeBetweenACommitAndTheLookAtIt()
    {
        OtherConnection other(m_manager->path());
        const auto filesLeft = [] {
            QSqlQuery query("SELECT count(*) FROM files"_s, QSqlDatabase::database("other"_s));
            return query.next() ? query.value(0).toInt() : -1;
        };
        bool isWritten = false;
        // The window stands still in here, and so does the worker behind its commit.
        connect(&manager(), &DatabaseManger::addingFilesProgress, m_warnings.get(), [&] {
            while (!isWritten && filesLeft() == 3)
                QThread::msleep(1);
            isWritten = isWritten || writeTag(other, theirTag);
        });
        manager().deleteFiles({2});
        QTRY_COMPARE(manager().files().size(), 2);
        QVERIFY(isWritten);
        QCOMPARE(manager().addTag("mine"_s), qint64(0));
        QTRY_VERIFY(manager().hasTag(theirTag));
        QCOMPARE(texts(), QStringList{updating});
    }

    void noWriteHidesBehindOwnOnes()
    {
        // The other program writes at any moment of the worker's and the window's changes.
        std::atomic<int> written{0};
        std::atomic<bool> isOver{false};
        std::atomic<bool> isPaused{false};
        std::atomic<bool> isIdle{false};
        const QString path = m_manager->path();
        const std::unique_ptr<QThread> other(QThread::create([&, path] {
            OtherConnection connection(path, "thread"_s);
            connection.run("PRAGMA synchronous=OFF"_s);
            QRandomGenerator random(3);
            for (int id = 1000; !isOver; ++id) {
                QThread::usleep(random.bounded(8000));
                isIdle = isPaused.load();
                if (!isIdle && writeTag(connection, id))
                    written = id;
            }
        }));
        other->start();
        int edited = 0;
        int dropped = 0;
        for (int round = 0; round < 150; ++round) {
            // However busy the machine is, some edits meet a write, and some behind them do not.
            const int before = written;
            if (round % 10 == 6)
                QTRY_VERIFY(written > before);
            isPaused = round % 10 > 7;
            QTRY_VERIFY(!isPaused || isIdle);
            if (round % 3 == 0) {
                manager().addFiles({"https://example.org/%1"_s.arg(round)}, {}, false, 0);
                QTRY_VERIFY(!manager().isBusy());
            }
            const int seen = written;
            const int reloads = m_reloads->size();
            const qint64 mine = manager().addTag("mine %1"_s.arg(round));
            // An edit that went through knew all that was there before it.
            if (mine > 0 && seen > 0)
                QVERIFY2(manager().hasTag(seen), qPrintable("round %1, tag %2"_s.arg(round).arg(seen)));
            edited += int(mine > 0);
            dropped += int(mine == 0);
            QCoreApplication::processEvents();
            // One turn of a loop that has much to do may leave it to a later one.
            QTRY_VERIFY(mine > 0 || !isPaused || m_reloads->size() > reloads);
        }
        isOver = true;
        other->wait();
        QVERIFY2(edited > 5 && dropped > 5, qPrintable("%1 and %2"_s.arg(edited).arg(dropped)));
    }

    void ownOperationsAreNoNews()
    {
        for (int round = 0; round < 20; ++round) {
            const int files = manager().files().size();
            manager().addFiles({"https://example.org/%1"_s.arg(round)}, {1}, false, 0);
            // As soon as it is shown.
            QTRY_COMPARE(manager().files().size(), files + 1);
            QVERIFY(manager().addTag("mine %1"_s.arg(round)) > 0);
        }
        QCOMPARE(texts(), QStringList());
        QVERIFY(m_reloads->isEmpty());
    }

    void closingDoesNotWaitForAnAnswer()
    {
        // The worker asks the window, which closes instead of answering.
        manager().deleteFiles({1});
        QTRY_VERIFY(manager().isBusy());
        QElapsedTimer timer;
        timer.start();
        m_manager->close();
        QVERIFY(timer.elapsed() < 5000);
    }

    void halfALoadKeepsEditsOut()
    {
        m_manager->run("ALTER TABLE tag_relationships RENAME TO elsewhere");
        manager().reloadAllData();
        QCOMPARE(manager().addTag("mine"_s), qint64(0));
        QCOMPARE(texts(),
                 QStringList{"The database could not be read completely, so it cannot be changed."_s});
        m_manager->run("ALTER TABLE elsewhere RENAME TO tag_relationships");
        manager().reloadAllData();
        QVERIFY(manager().addTag("mine"_s) > 0);
    }

    void lockedIsNotReadOnly()
    {
        m_manager->close();
        OtherConnection other(m_manager->path());
        for (const char *lock : {"BEGIN IMMEDIATE", "BEGIN EXCLUSIVE"}) {
            SQLiteDBManager opened(Constants::sqliteDriver, m_manager->path(), {}, {}, {}, 0);
            QVERIFY(other.run(QLatin1String(lock)));
            QCOMPARE(opened.openDB().databaseText(),
                     "The database is in use by another program. Please try again later."_s);
            opened.closeDB();
            QVERIFY(other.run("ROLLBACK"_s));
        }
        QVERIFY(m_manager->open());
        QVERIFY(!manager().isReadOnly());
        QCOMPARE(Sql::value("PRAGMA trusted_schema"), "0"_s);
    }

private:
    DatabaseManger &manager() { return *m_manager->get(); }
    /** The warnings since the last call. */
    QStringList texts()
    {
        QStringList texts;
        while (!m_warnings->isEmpty())
            texts.append(m_warnings->takeFirst().at(1).toString());
        return texts;
    }

    SettingsSandbox m_settings;
    std::unique_ptr<LocalManager> m_manager;
    std::unique_ptr<QSignalSpy> m_warnings;
    std::unique_ptr<QSignalSpy> m_reloads;
};

QTEST_MAIN(TestForeignWrites)
#include "tst_foreignwrites.moc"
