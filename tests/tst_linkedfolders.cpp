#include "core/records/tbnode.h"
#include "db/autolinks/folderwatch.h"
#include "fileops/provider/fileoperationprovider.h"
#include "tests/support/linkedfoldertest.h"

#include <QElapsedTimer>
#include <QFileSystemWatcher>
#include <QSemaphore>
#include <QTimer>

#include <atomic>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
/** Refuses all folders, as a system without watches left does. */
class UnwatchedFolders : public FolderWatch
{
public:
    QTimer *turn() { return findChild<QTimer *>("folderTurn"_s); }
    bool isFull = true;
    int taken = 0;

protected:
    bool watch(const QString &folder) override
    {
        const bool isTaken = !isFull && FolderWatch::watch(folder);
        taken += isTaken ? 1 : 0;
        return isTaken;
    }
};

/** Bytes that this process has read so far. */
qint64 bytesRead()
{
    const QByteArray io = TestFolder::read("/proc/self/io"_s);
    return io.mid(7, io.indexOf('\n') - 7).toLongLong();
}
} // namespace

/** When linked folders are looked at, and how what came to them is handed over. */
class TestLinkedFolders : public LinkedFolderTest
{
    Q_OBJECT

private slots:
    void init() { openFolder(); }
    void cleanup() { m_box.reset(); }

    void fileComesWhenItIsWhole()
    {
        hurry(1500); // ten times as long as its pauses, which a busy machine makes longer
        link(m_top, in());
        QSignalSpy added(box().manager(), &DatabaseManger::filesAdded);
        QFile file(filePath("slow.txt"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        for (int part = 0; part < 15; ++part) {
            file.write("part");
            file.flush();
            // A copy that goes on.
            QVERIFY(!QTest::qWaitFor([&added] { return !added.isEmpty(); }, 150));
        }
        file.close();
        QTRY_COMPARE(contents(), "slow.txt:top"_s);
        QCOMPARE(box().value("SELECT file_size FROM files"), "60"_s);
    }

    void folderWaitsForItsNewestFile_data()
    {
        addColumns<int, bool>("lookBack", "isTakenMeanwhile");
        addRow("until it is whole", 30000, false);
        addRow("but not for ever", 1000, true);
    }
    void folderWaitsForItsNewestFile()
    {
        QFETCH(int, lookBack);
        hurry(300, lookBack);
        link(m_top, in());
        waitForRound();
        write("whole.txt"_s, "whole");
        QFile log(filePath("log.txt"_s));
        QVERIFY(log.open(QIODevice::WriteOnly));
        const auto isTaken = [&] { return log.write("x"), log.flush(), contents() == "whole.txt:top"_s; };
        QTEST(QTest::qWaitFor(isTaken, 3000), "isTakenMeanwhile");
        log.close();
        QTRY_COMPARE_WITH_TIMEOUT(contents(), "log.txt:top whole.txt:top"_s, 20000);
    }

    void trigger_data()
    {
        addColumns<QByteArray, bool>("trigger", "isOn");
        for (const char *trigger :
             {"autoLinkContinuously", "autoLinkWhenSelected", "checkAutoLinkWhenLaunched"}) {
            QTest::addRow("%s on", trigger) << QByteArray(trigger) << true;
            QTest::addRow("%s off", trigger) << QByteArray(trigger) << false;
        }
    }
    void trigger()
    {
        QFETCH(QByteArray, trigger);
        QFETCH(bool, isOn);
        for (const QByteArray key :
             {"autoLinkContinuously", "autoLinkWhenSelected", "checkAutoLinkWhenLaunched"})
            LocalCollection::set(("PreferencesDialog/" + key).constData(), isOn && key == trigger);
        link(m_top, in());
        waitForRound();
        write("a.txt"_s, "a");
        box().activate(m_top);
        if (trigger != "autoLinkContinuously") {
            box().reopen();
            hurry();
            box().activate(m_top);
        }
        if (isOn) {
            QTRY_COMPARE(contents(), "a.txt:top"_s);
            return;
        }
        // Another folder's file that comes has left it time.
        box().write("else/b.txt"_s, "b");
        link(m_other, box().filePath("else"_s));
        QTRY_COMPARE(contents(), "b.txt:other"_s);
        QCOMPARE(contents(), "b.txt:other"_s);
        box().manager()->runAllAutoLinks(true);
        QTRY_COMPARE(contents(), "a.txt:top b.txt:other"_s);
    }

    void watchFollowsTheSetting()
    {
        LocalCollection::set("PreferencesDialog/autoLinkContinuously", false);
        link(m_top, in());
        waitForRound();
        LocalCollection::set("PreferencesDialog/autoLinkContinuously", true);
        box()->readSettings();
        const auto *watcher = box().manager()->findChild<QFileSystemWatcher *>();
        QTRY_COMPARE(watcher->directories(), QStringList(in()));
        write("a.txt"_s, "a");
        QTRY_COMPARE(contents(), "a.txt:top"_s);
    }

    void unchangedFolderIsNotRead()
    {
        const QByteArray large(1 << 20, 'x');
        for (int i = 0; i < 20; ++i)
            write("%1.bin"_s.arg(i), large + QByteArray::number(i));
        // Two of one contents, and one that the database has under another name.
        write("copy.bin"_s, large + "0");
        box().addExternal("own.bin"_s);
        QFile::copy(box().filePath("own.bin"_s), filePath("stranger.bin"_s));
        link(m_top, in());
        QTRY_COMPARE(fileCount(), 21);
        box().waitForWorker();
        // Once more for what is left out, which no record names.
        const qint64 before = bytesRead();
        for (int i = 0; i < 3; ++i) {
            box().manager()->syncAutoLink(linkId(), m_top, false);
            waitForRound();
        }
        QVERIFY(bytesRead() - before < large.size());
        QCOMPARE(fileCount(), 21);
    }

    void changedFileStaysOneRecord_data()
    {
        addColumns<QByteArray, bool>("now", "isHandedOn");
        addRow("touched", QByteArray("before"), false);
        addRow("edited", QByteArray("behind"), true);
        addRow("replaced by another", QByteArray("something else"), true);
    }
    void changedFileStaysOneRecord()
    {
        QFETCH(QByteArray, now);
        QFETCH(bool, isHandedOn);
        write("a.txt"_s, "before");
        link(m_top, in());
        QTRY_COMPARE(contents(), "a.txt:top"_s);
        box().manager()->unlinkTags({1}, {node(m_top)->tagId()});
        write("a.txt"_s, now);
        setTime("a.txt"_s, 1000000);
        box().manager()->syncAutoLink(linkId(), m_top, false);
        waitForRound();
        box().waitForWorker();
        QTRY_COMPARE(contents(), isHandedOn ? "a.txt:top"_s : "a.txt:"_s);
        if (isHandedOn)
            QTRY_COMPARE(box().value("SELECT file_size FROM files"), QString::number(now.size()));
    }

    void lockedDatabaseTakesTheFilesLater()
    {
        hurry(0, 300);
        link(m_top, in());
        waitForRound();
        QSignalSpy warnings(box().get(), &Collection::showTempWarning);
        {
            OtherConnection other(box().path());
            QVERIFY(other.run("BEGIN IMMEDIATE"_s));
            write("a.txt"_s, "a");
            QTRY_VERIFY_WITH_TIMEOUT(!warnings.isEmpty(), 20000);
            link(m_other, in());
            QCOMPARE(links(), QStringList("in|%1"_s.arg(m_top)));
            other.run("ROLLBACK"_s);
        }
        QVERIFY(warnings.first().at(1).toString().startsWith("The database is busy."_s));
        // By itself.
        QTRY_COMPARE_WITH_TIMEOUT(contents(), "a.txt:top"_s, 20000);
    }

    void closingEndsARound()
    {
        for (int i = 0; i < 300; ++i)
            write("%1.txt"_s.arg(i), QByteArray::number(i));
        link(m_top, in());
        for (int steps = 0; steps < 6; ++steps) {
            box().manager()->syncAutoLink(linkId(), m_top, true);
            for (int i = 0; i < steps; ++i)
                QCoreApplication::processEvents();
            box().close();
            QVERIFY(box().open());
            hurry();
        }
        box().manager()->runAllAutoLinks(true);
        QTRY_COMPARE_WITH_TIMEOUT(fileCount(), 300, 30000);
        QCOMPARE(box().value("PRAGMA integrity_check"), "ok"_s);
    }

    void editsComeInBetween()
    {
        for (int i = 0; i < 2000; ++i)
            write("%1.txt"_s.arg(i), QByteArray::number(i));
        QSignalSpy added(box().manager(), &DatabaseManger::filesAdded);
        QSignalSpy warnings(box().get(), &Collection::showTempWarning);
        link(m_top, in());
        QTRY_VERIFY(added.size() > 1);
        QVERIFY(fileCount() < 2000);
        QVERIFY(box().manager()->addTag("in between"_s) > 0);
        QTRY_COMPARE_WITH_TIMEOUT(fileCount(), 2000, 30000);
        QVERIFY(warnings.isEmpty());
        QCOMPARE(box().value("SELECT count(DISTINCT load_id) FROM files"), "1"_s);
    }

    void backgroundHidesProgress_data()
    {
        addColumns<bool>("isHidden");
        addRow("hidden", true);
        addRow("shown", false);
    }
    void backgroundHidesProgress()
    {
        QFETCH(bool, isHidden);
        LocalCollection::set("PreferencesDialog/autoLinkInBackGround", isHidden);
        DatabaseManger *manager = box().manager();
        QSignalSpy started(manager, &DatabaseManger::startedAddingFiles);
        QSignalSpy progress(manager, &DatabaseManger::addingFilesProgress);
        QSignalSpy finished(manager, &DatabaseManger::finishedAddingFiles);
        write("a.txt"_s, "a");
        link(m_top, in());
        QTRY_COMPARE(contents(), "a.txt:top"_s);
        box().waitForWorker();
        QCOMPARE(started.size(), isHidden ? 0 : 1);
        QCOMPARE(progress.isEmpty(), isHidden);
        QCOMPARE(finished.size(), started.size());
        if (!isHidden)
            QCOMPARE(started.first().first().toString(), "Linking to files..."_s);
    }

    void aLookThatHangsIsLeftBehind()
    {
        struct Gates
        {
            QSemaphore begun;
            QSemaphore open;
            std::atomic<bool> wasTold{false};
        };
        const auto gates = std::make_shared<Gates>();
        bool isTaken = false;
        QElapsedTimer passed;
        {
            BackgroundLooks looks;
            looks.run(
                [gates](const BackgroundLooks::ShouldEnd &shouldEnd) {
                    gates->begun.release();
                    gates->open.acquire();
                    gates->wasTold = shouldEnd();
                    gates->begun.release();
                    return 1;
                },
                [&isTaken](int) { isTaken = true; });
            gates->begun.acquire();
            passed.start();
        }
        QVERIFY2(!passed.hasExpired(2000), "The owner waits for the disk");
        gates->open.release();
        QVERIFY(gates->begun.tryAcquire(1, 5000));
        QVERIFY(gates->wasTold);
        QCoreApplication::processEvents();
        QVERIFY(!isTaken);
    }

    void duplicatesAreToldToWhoAsked()
    {
        const qint64 own = box().addExternal("own.txt"_s);
        QFile::copy(box().filePath("own.txt"_s), filePath("copy.txt"_s));
        QSignalSpy told(box().get(), &Collection::duplicatesReady);
        link(m_top, in());
        QTRY_COMPARE(told.size(), 1);
        QCOMPARE(told.first().first().value<PresentableDuplicates>().contentMatches.size(), 1);
        QCOMPARE(contents(), "own.txt:top"_s);
        // The file of the database goes, and the copy takes its place in silence.
        box().manager()->deleteFiles({own});
        box().waitForWorker();
        write("b.txt"_s, "b");
        QTRY_COMPARE(contents(), "b.txt:top copy.txt:top"_s);
        QCOMPARE(told.size(), 1);
    }

    void whatCannotBeReadIsToldOnce()
    {
        // Nobody opens the database by another name.
        QCOMPARE(::link(QFile::encodeName(box().path()).constData(),
                        QFile::encodeName(filePath("alias.vrn"_s)).constData()),
                 0);
        QSignalSpy errors(box().get(), &Collection::showError);
        link(m_top, in());
        QTRY_COMPARE(errors.size(), 1);
        QCOMPARE(errors.first().at(0).toString(), "Files left out"_s);
        QVERIFY(errors.first().at(1).toString().contains("alias.vrn"_s));
        write("a.txt"_s, "a");
        QTRY_COMPARE(contents(), "a.txt:top"_s);
        box().waitForWorker();
        QCOMPARE(errors.size(), 1);
    }

    void canceledFilesWaitForTheNextOccasion()
    {
        hurry(0, 100);
        for (int i = 0; i < 1000; ++i)
            write("%1.txt"_s.arg(i), QByteArray::number(i));
        // What came while the watch was set would be the next occasion.
        QTest::qSleep(50);
        DatabaseManger *manager = box().manager();
        QSignalSpy started(manager, &DatabaseManger::startedAddingFiles);
        const auto canceling =
            connect(manager, &DatabaseManger::startedAddingFiles, manager, &DatabaseManger::cancelOperations);
        link(m_top, in());
        QTRY_COMPARE(started.size(), 1);
        box().waitForWorker();
        disconnect(canceling);
        QVERIFY(fileCount() < 1000);
        QVERIFY(!QTest::qWaitFor([&started] { return started.size() > 1; }, 600));
        manager->syncAutoLink(linkId(), m_top, false);
        QTRY_COMPARE_WITH_TIMEOUT(fileCount(), 1000, 30000);
    }

    void filesAreHandedOverOnce()
    {
        DatabaseManger *manager = box().manager();
        QSignalSpy started(manager, &DatabaseManger::startedAddingFiles);
        for (int i = 0; i < 1000; ++i)
            write("%1.txt"_s.arg(i), QByteArray::number(i));
        link(m_top, in());
        for (int i = 0; i < 3; ++i) {
            waitForRound();
            manager->syncAutoLink(linkId(), m_top, false);
        }
        // A node that comes meanwhile gets them all the same.
        link(m_other, in());
        QTRY_VERIFY_WITH_TIMEOUT(fileCount() == 1000 && !contents().contains(":top "_s), 30000);
        QVERIFY(contents().endsWith(":top,other"_s));
        box().waitForWorker();
        QCOMPARE(started.size(), 2);
    }

    void recordOfAnotherNameIsKnown()
    {
        write("a.txt"_s, "a");
        link(m_top, in());
        QTRY_COMPARE(contents(), "a.txt:top"_s);
        box().waitForWorker();
        box().run("UPDATE files SET file_name='b.txt'");
        box().manager()->reloadAllData();
        QSignalSpy started(box().manager(), &DatabaseManger::startedAddingFiles);
        box().manager()->syncAutoLink(linkId(), m_top, false);
        waitForRound();
        box().waitForWorker();
        QCOMPARE(started.size(), 0);
    }

    void knownFileThatCannotBeReadIsHandedOverOnce()
    {
        write("a.txt"_s, "a");
        link(m_top, in());
        QTRY_COMPARE(contents(), "a.txt:top"_s);
        box().waitForWorker();
        QSignalSpy handled(box().manager()->findChild<FileOperationProvider *>(),
                           &FileOperationProvider::autoLinked);
        QFile::remove(filePath("a.txt"_s));
        QCOMPARE(::link(QFile::encodeName(box().path()).constData(),
                        QFile::encodeName(filePath("a.txt"_s)).constData()),
                 0);
        for (int i = 0; i < 3; ++i) {
            box().manager()->syncAutoLink(linkId(), m_top, false);
            waitForRound();
            box().waitForWorker();
        }
        QCOMPARE(handled.size(), 1);
    }

    void folderWithoutAWatchIsLookedAtInTurns()
    {
        UnwatchedFolders watch;
        QSignalSpy changed(&watch, &FolderWatch::changed);
        QSignalSpy limit(&watch, &FolderWatch::limitReached);
        setTime({}, 1000000);
        watch.setFolders({in(), box().filePath("nowhere"_s)});
        watch.turn()->setInterval(50);
        QTRY_COMPARE(limit.size(), 1);
        QCOMPARE(limit.first().first().toInt(), 1);
        // One is not there.
        QTRY_COMPARE(changed.size(), 1);
        write("a.txt"_s, "a");
        QTRY_COMPARE(changed.size(), 2);
        QCOMPARE(changed.last().first().toString(), in());

        // A folder that comes is news, and so is another one of the name; the word was given once.
        QDir().mkpath(box().filePath("nowhere"_s));
        QTRY_COMPARE(changed.size(), 3);
        watch.isFull = false;
        QTRY_COMPARE(watch.taken, 2);
        QDir(box().folder()).rename("nowhere"_s, "gone"_s);
        QDir().mkpath(box().filePath("nowhere"_s));
        QTRY_COMPARE(changed.size(), 4);
        box().write("nowhere/b.txt"_s, "b");
        QTRY_COMPARE(changed.size(), 5);
        QDir(box().folder()).rename("nowhere"_s, "gone too"_s);
        QTRY_COMPARE(changed.size(), 6);
        QCOMPARE(limit.size(), 1);
    }

private:
    void setTime(const QString &name, qint64 seconds)
    {
        const timespec times[2] = {{seconds, 0}, {seconds, 0}};
        ::utimensat(AT_FDCWD, QFile::encodeName(filePath(name)).constData(), times, 0);
    }
};

QTEST_MAIN(TestLinkedFolders)
#include "tst_linkedfolders.moc"
