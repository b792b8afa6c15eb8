#include "app/messages/boxprompts.h"
#include "app/messages/messages.h"
#include "core/records/file.h"
#include "db/caches/discardedfiles.h"
#include "fileops/provider/thumbnailcache.h"
#include "tests/support/localmanager.h"
#include "tests/support/serverdatabase.h"

#include <numeric>

static const int addedFiles = 400;

/** A local database from its making to its closing, and what is no database of ours. */
class TestDatabaseManager : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { Messages::setResponder({}); }

    void manyRecordsAreFreedBesideTheWindow()
    {
        QList<File *> files;
        for (int id = 1; id <= 200000; ++id)
            files.append(new File(id, 0, 0, 0, 0, {}, {}, {}, {}, {}, 0, 0, 0, 2));
        const QPointer<File> last = files.last();
        DiscardedFiles::add(files);
        const bool wasAtOnce = last.isNull();
        QTRY_VERIFY(DiscardedFiles::isEmpty());
        QVERIFY(!wasAtOnce && !last);
    }

    void versionCheck_data()
    {
        // What is run on a new database of ours; files that are no such database meet the window's tests.
        addColumns<QString, bool, QString, bool>("statements", "opens", "boxes", "changes");
        const QString old =
            "UPDATE vorna_version SET version='3.2.0';UPDATE scheme_version SET version='3.2.0'"_s;
        const QString probed = ";INSERT INTO file_tag VALUES(0,0)"_s;
        const QString extra = ";ALTER TABLE files ADD COLUMN extra TEXT"_s;
        addRow("current", QString(), true, QString(), false);
        addRow("without versions", "DROP TABLE vorna_version;DROP TABLE scheme_version"_s, false,
               "corrupted|"_s, false);
        addRow("probe row there, so read-only", probed, true, QString(), false);
        addRow("old, agreed", old, true, "?earlier version|upgraded successfully|"_s, true);
        addRow("old and read-only", old + probed, true, QString(), false);
        addRow("old, cannot be upgraded", old + extra, false, "?earlier version|no permission|"_s, false);
    }

    void versionCheck()
    {
        QFETCH(QString, statements);
        LocalManager manager;
        manager.close();
        for (const QString &statement : statements.split(QLatin1Char(';'), Qt::SkipEmptyParts))
            QVERIFY2(OtherConnection(manager.path()).run(statement), qPrintable(statement));
        const QByteArray before = TestFolder::read(manager.path());
        QString seen;
        Messages::setResponder([&seen](const Messages::Box &box) {
            const bool isQuestion = box.icon == QMessageBox::Warning &&
                                    box.informativeText.contains("not be"_s) &&
                                    box.buttons == (QMessageBox::Ok | QMessageBox::Cancel) &&
                                    box.defaultButton == QMessageBox::Cancel;
            seen += isQuestion ? "?"_s : QString();
            for (const char *part :
                 {"corrupted", "earlier version", "upgraded successfully", "no permission"})
                seen += box.text.contains(QLatin1String(part)) ? QLatin1String(part) + "|"_s : QString();
            return Messages::Answer{QMessageBox::Ok, -1};
        });
        BoxPrompts shown;
        const auto check = [&manager](UserPrompts &prompts) {
            return DatabaseManger::checkDatabaseVersion(Constants::sqliteDriver, manager.path(), {}, {}, {},
                                                        0, prompts);
        };
        QFETCH(bool, opens);
        QFETCH(QString, boxes);
        // Without anybody to agree, an old one stays what it is.
        QCOMPARE(check(UserPrompts::nobody()), opens && !boxes.startsWith(QLatin1Char('?')));
        QCOMPARE(TestFolder::read(manager.path()), before);
        QTEST(check(shown), "opens");
        QCOMPARE(seen, boxes);
        QTEST(TestFolder::read(manager.path()) != before, "changes");
        QVERIFY(QSqlDatabase::connectionNames().isEmpty());
        QCOMPARE(QDir(manager.folder()).entryList(QDir::Files), QStringList{"test.vrn"_s});
    }

    void tagNamesOfAClosedDatabase()
    {
        LocalManager manager;
        manager->addTag("a'b"_s);
        manager->addTag("c%1d"_s);
        const DBDetails details = manager->details();
        manager.close();
        QCOMPARE(DatabaseManger::tagNames(details), QStringList({"a'b"_s, "c%1d"_s}));
        const DBDetails none = DBDetails::local(manager.folder() + "/none.vrn"_s);
        QVERIFY(DatabaseManger::tagNames(none).isEmpty());
        QVERIFY(!QFile::exists(none.databaseName()));
        OtherConnection other(details.databaseName());
        QVERIFY(other.run("BEGIN EXCLUSIVE"_s));
        QElapsedTimer timer;
        timer.start();
        QVERIFY(DatabaseManger::tagNames(details).isEmpty());
        QVERIFY(timer.elapsed() < 2000);
    }

    void readersHoldNoEditUp()
    {
        LocalManager manager;
        manager.addFiles(20000);
        const qint64 tagId = manager->addTag("tag"_s);
        manager.run("PRAGMA cache_size=1");
        QVector<qint64> ids(20000);
        std::iota(ids.begin(), ids.end(), 1);
        OtherConnection other(manager.path());
        QVERIFY(other.run("BEGIN"_s) && other.run("SELECT count(*) FROM tags"_s));
        QSignalSpy warnings(manager.get(), &DatabaseManger::showTempWarning);
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!manager->linkTags(ids, {tagId}));
        QVERIFY2(timer.elapsed() < 1500, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(warnings.size(), 1);
        QVERIFY(other.run("COMMIT"_s));
        QVERIFY(manager->linkTags(ids, {tagId}));
    }

    void editOfABusyDatabaseWarnsAtOnce()
    {
        LocalManager manager;
        manager.addFiles(1);
        const qint64 paper = manager->addTag("paper"_s);
        QSignalSpy temporary(manager.get(), &DatabaseManger::showTempWarning);
        QSignalSpy errors(manager.get(), &DatabaseManger::errorOccured);
        OtherConnection other(manager.path());
        QVERIFY(other.run("BEGIN IMMEDIATE"_s));
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(manager->addTag("later"_s), qint64(0));
        QVERIFY(timer.elapsed() < 2000);
        QCOMPARE(temporary.size(), 1);
        QCOMPARE(temporary.first().at(1).toString(), "The database is busy. Please try again."_s);
        QVERIFY(!manager->hasTagNamed("later"_s));
        QVERIFY(other.run("ROLLBACK"_s));
        QVERIFY(manager->addTag("later"_s) > 0);
        {
            // A reader in the middle of its rows lets others write, but not commit.
            QSqlQuery reader(QSqlDatabase::database("other"_s));
            QVERIFY(reader.exec("SELECT tag_id FROM tags UNION ALL SELECT file_id FROM files"_s));
            QVERIFY(!manager->linkTags({1}, {paper}));
        }
        QCOMPARE(temporary.size(), 2);
        QVERIFY(errors.isEmpty());
        QCOMPARE(manager.count("file_tag"_s), 0);
        QVERIFY(manager->linkTags({1}, {paper}));
        QCOMPARE(manager->file(1)->tags(), QVector<qint64>{paper});
    }

    void reloadOfABusyDatabaseComesLater()
    {
        LocalManager manager;
        QSignalSpy temporary(manager.get(), &DatabaseManger::showTempWarning);
        OtherConnection other(manager.path());
        QVERIFY(other.run("INSERT INTO tags VALUES(7,'theirs','',0,NULL)"_s));
        manager.addFiles(3);
        QSignalSpy begin(manager.get(), &DatabaseManger::aboutToReloadAllData);
        QVERIFY(other.run("BEGIN EXCLUSIVE"_s));
        manager->updateTags({7});
        manager->reloadAllData();
        QVERIFY(!manager->hasTag(7));
        QCOMPARE(manager->files().size(), 3);
        QVERIFY(other.run("ROLLBACK"_s));
        QTRY_COMPARE(manager->tagName(7), "theirs"_s);
        QTRY_COMPARE(begin.size(), 1);
        QCOMPARE(manager->files().size(), 3);
        QVERIFY(temporary.isEmpty());
    }

    void rowsThatALockHidesComeLater()
    {
        constexpr int count = 20000; // are read in pieces
        LocalManager manager;
        manager.addFiles(count);
        QVector<qint64> ids(count);
        std::iota(ids.begin(), ids.end(), 1);
        manager.run("UPDATE files SET file_size=77");
        OtherConnection other(manager.path());
        connect(manager.get(), &DatabaseManger::filesChanged, manager.get(),
                [&other] { other.run("BEGIN EXCLUSIVE"_s); });
        manager->reloadFiles(ids);
        QVERIFY(manager->file(1)->size() == 77 && manager->file(count)->size() != 77);
        manager->disconnect(manager.get());
        QVERIFY(other.run("ROLLBACK"_s));
        QTRY_COMPARE(manager->file(count)->size(), qint64(77));
    }

    void thumbnailsComeAgainAndTellOfOneFailureOnly()
    {
        LocalManager manager;
        manager.addFiles(1);
        ThumbnailCache *cache = manager->thumbnailCache();
        QSignalSpy temporary(manager.get(), &DatabaseManger::showTempWarning);
        QSignalSpy errors(manager.get(), &DatabaseManger::errorOccured);
        QSignalSpy updated(manager.get(), &DatabaseManger::thumbnailUpdated);
        OtherConnection other(manager.path());
        QVERIFY(other.run("BEGIN EXCLUSIVE"_s));
        cache->thumbnail(1);
        QTRY_VERIFY(!updated.isEmpty());
        QVERIFY(!cache->contains(1));
        QVERIFY(other.run("ROLLBACK"_s) && temporary.isEmpty() && errors.isEmpty());

        QTRY_VERIFY(!manager->isBusy());
        QVERIFY(QFile::rename(manager.path(), manager.filePath("gone"_s)));
        for (int i = 0; i < 2; ++i) {
            cache->thumbnail(1);
            QTRY_VERIFY(!cache->contains(1));
        }
        QCOMPARE(errors.size(), 1);
        QVERIFY(QFile::rename(manager.filePath("gone"_s), manager.path()));
    }

    void closingInTheMiddleOfAnAddLeavesNothingHalf_data() { addBackEnds(); }

    void closingInTheMiddleOfAnAddLeavesNothingHalf()
    {
        QFETCH(bool, isOnServer);
        LocalManager manager(makeTestDatabase(isOnServer));
        startAdding(manager);
        manager.close();
        QVERIFY(!QSqlDatabase::contains() && !QSqlDatabase::contains(Constants::workerConnection));
        QVERIFY(manager.open());
        QVERIFY(isOnServer || manager.value("PRAGMA integrity_check") == "ok"_s);
        // The operation went through before the stop, or it left nothing.
        const int files = manager->files().size();
        QVERIFY(files == 0 || files == addedFiles);
        QCOMPARE(manager.count("file_paths"_s), files);
    }

    void makingAnotherDatabaseLeavesTheWorkerAlone()
    {
        LocalManager manager;
        startAdding(manager);
        SQLiteDBManager(Constants::sqliteDriver, manager.filePath("other.vrn"_s), {}, {}, {}, 0)
            .createDatabase();
        QTRY_VERIFY(!manager->isBusy());
        QTRY_COMPARE(manager->files().size(), addedFiles);
    }

private:
    /** Adds many files; at the return it has begun. */
    static void startAdding(LocalManager &manager)
    {
        QStringList paths;
        for (int i = 0; i < addedFiles; ++i)
            paths.append(manager.write("file%1.txt"_s.arg(i), QByteArray::number(i)));
        QSignalSpy progress(manager.get(), &DatabaseManger::addingFilesProgress);
        manager->addFiles(paths, {}, false, 0);
        QTRY_VERIFY(!progress.isEmpty());
    }

    SettingsSandbox m_settings;
};

QTEST_MAIN(TestDatabaseManager)
#include "tst_databasemanager.moc"
