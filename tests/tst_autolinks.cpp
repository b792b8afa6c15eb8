#include "app/messages/filedialogs.h"
#include "core/records/autolink.h"
#include "core/records/tbnode.h"
#include "db/autolinks/autolinksync.h"
#include "db/autolinks/folderwatch.h"
#include "fileops/provider/fileoperationprovider.h"
#include "models/trees/brtreesortermodel.h"
#include "models/trees/treeroles.h"
#include "tests/support/dialoganswers.h"
#include "tests/support/treewindow.h"

#include <QFileSystemWatcher>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

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

/** Folders that are linked to browsing nodes: what comes to them comes to the nodes. */
class TestAutoLinks : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        SettingsSandbox::clear();
        m_box = std::make_unique<LocalCollection>();
        const QVector<qint64> tags = box().addTags({"top"_s, "below"_s, "other"_s});
        m_top = box().addNode(tags.at(0));
        m_below = box().manager()->addNodeBelow(tags.at(1), m_top);
        m_other = box().addNode(tags.at(2));
        QDir().mkpath(in());
        hurry();
    }
    void cleanup() { m_box.reset(); }

    void linkIsRefused_data()
    {
        addColumns<QString, QString>("folder", "box");
        addRow("database in it", "."_s, "Can't link to folder: Folder contains current database."_s);
        addRow("database below it", ".."_s, "Can't link to folder: Folder contains current database."_s);
        addRow("database behind a link", "self"_s,
               "Can't link to folder: Folder contains current database."_s);
        addRow("no folder", "nowhere"_s, "Can't link to folder: The folder does not exist."_s);
        addRow("linked already", "in/"_s, "Error Creating Link: Node already has link to this folder."_s);
    }
    void linkIsRefused()
    {
        QFETCH(QString, folder);
        QFETCH(QString, box);
        QFile::link(this->box().folder(), this->box().filePath("self"_s));
        link(m_top, in());
        QSignalSpy errors(this->box().get(), &Collection::showError);
        link(m_top, this->box().filePath(folder));
        QCOMPARE(errors.size(), 1);
        QCOMPARE(errors.first().at(0).toString() + ": "_s + errors.first().at(1).toString(), box);
        QCOMPARE(links(), QStringList("in|%1"_s.arg(m_top)));
    }

    void folderFeedsItsNode()
    {
        LocalCollection::set("MainWindow/linkToFiles", false);
        box().tree().changeInversion(m_top, true);
        write("a.txt"_s, "a");
        write(" b.txt"_s, "b");
        write("sub/c.txt"_s, "c");
        write(".hidden"_s, "d");
        QFile::link(write("../else.txt"_s, "e"), filePath("link.txt"_s));
        link(m_below, in() + QLatin1Char('/'));
        QTRY_COMPARE(contents(), "a.txt:top,below b.txt:top,below link.txt:top,below"_s);
        QCOMPARE(box().value("SELECT DISTINCT internal FROM files"), "0"_s);
        QCOMPARE(box().value("SELECT DISTINCT load_id FROM files"), "1"_s);
        const QString id = box().value("SELECT link_id FROM tb_autolinks");
        QCOMPARE(id.size(), 36);
        QCOMPARE(node(m_below)->autolinks(), QStringList(id));
        QCOMPARE(shown(m_below).data(Qt::ForegroundRole).value<QColor>(), QColor(Qt::blue));
        QCOMPARE(shown(m_below).data(NodeRole::FirstAutolink).toString(), id);
        QCOMPARE(box().tree().links().absolutePath(m_below), in());
        QCOMPARE(box().tree().links().relativePath(m_below), "in"_s);

        // What it brought stays.
        box().tree().links().unlink(m_below);
        QCOMPARE(links(), QStringList());
        QVERIFY(!box().tree().hasAutolinks(m_below));
        QVERIFY(!shown(m_below).data(Qt::ForegroundRole).isValid());
        QCOMPARE(fileCount(), 3);
    }

    void fileComesWhenItIsWhole()
    {
        hurry(400);
        link(m_top, in());
        QSignalSpy added(box().manager(), &DatabaseManger::filesAdded);
        QFile file(filePath("slow.txt"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        for (int part = 0; part < 6; ++part) {
            file.write("part");
            file.flush();
            // A copy that goes on.
            QVERIFY(!QTest::qWaitFor([&added] { return !added.isEmpty(); }, 150));
        }
        file.close();
        QTRY_COMPARE(contents(), "slow.txt:top"_s);
        QCOMPARE(box().value("SELECT file_size FROM files"), "24"_s);
    }

    void fileThatIsWrittenToKeepsNobodyBack()
    {
        hurry(300);
        link(m_top, in());
        write("whole.txt"_s, "whole");
        QFile log(filePath("log.txt"_s));
        QVERIFY(log.open(QIODevice::WriteOnly));
        QTRY_VERIFY_WITH_TIMEOUT((log.write("x"), log.flush(), contents() == "whole.txt:top"_s), 5000);
    }

    void severalNodesShareAFolder()
    {
        write("a.txt"_s, "a");
        link(m_top, in());
        QTRY_COMPARE(contents(), "a.txt:top"_s);
        link(m_other, in());
        QTRY_COMPARE(contents(), "a.txt:top,other"_s);
        QCOMPARE(box().count("tb_autolinks"_s), 1);

        // A tag that was taken off does not come back with the next file, which all nodes get.
        box().manager()->unlinkTags({1}, {node(m_other)->tagId()});
        write("b.txt"_s, "b");
        box().manager()->syncAutoLink(linkId(), m_top, false);
        QTRY_COMPARE(contents(), "a.txt:top b.txt:top,other"_s);

        box().tree().links().unlink(m_top);
        QCOMPARE(links(), QStringList("in|%1"_s.arg(m_other)));
        box().tree().links().unlink(m_other);
        QCOMPARE(links(), QStringList());
    }

    void linkMovesToAnotherFolder()
    {
        link(m_top, in());
        link(m_other, in());
        write("../new/a.txt"_s, "a");
        link(m_top, box().filePath("new"_s));
        QTRY_COMPARE(contents(), "a.txt:top"_s);
        QCOMPARE(links(), QStringList({"in|%1"_s.arg(m_other), "new|%1"_s.arg(m_top)}));
        QCOMPARE(node(m_top)->autolinks().size(), 1);
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

    void folderGoes_data()
    {
        addColumns<QString, QString, QString>("statement", "left", "path");
        addRow("removed", "remove"_s, QString(), QString());
        addRow("renamed", "rename"_s, QString(), QString());
        addRow("unplugged", "unplug"_s, "disk/in"_s, "disk/in"_s);
        addRow("absolute path of another place", "absolute"_s, "in"_s, "in"_s);
        addRow("relative path of another place", "relative"_s, "in"_s, "in"_s);
    }
    void folderGoes()
    {
        QFETCH(QString, statement);
        QFETCH(QString, left);
        QFETCH(QString, path);
        const QString linked = statement == "unplug"_s ? box().filePath("disk/in"_s) : in();
        QDir().mkpath(linked);
        box().write(QDir(box().folder()).relativeFilePath(linked) + "/a.txt"_s, "a");
        link(m_top, linked);
        QTRY_COMPARE(contents(), "a.txt:top"_s);
        QDir base(box().folder());
        if (statement == "remove"_s)
            QVERIFY(QDir(linked).removeRecursively());
        else if (statement == "rename"_s)
            QVERIFY(base.rename("in"_s, "renamed"_s));
        else if (statement == "unplug"_s)
            QVERIFY(base.rename("disk"_s, "unplugged"_s));
        else if (statement == "absolute"_s)
            box().run("UPDATE tb_autolinks SET link_abs_path='/nowhere/in'");
        else
            box().run("UPDATE tb_autolinks SET link_rel_path='nowhere/in'");
        box().manager()->reloadAllData();
        box().manager()->refreshAutoLinks();
        QCOMPARE(links(), left.isEmpty() ? QStringList() : QStringList("%1|%2"_s.arg(left).arg(m_top)));
        QCOMPARE(box().value("SELECT link_abs_path FROM tb_autolinks"),
                 path.isEmpty() ? QString() : box().filePath(path));
        QCOMPARE(box().tree().hasAutolinks(m_top), !left.isEmpty());
        QCOMPARE(box().takeBoxes(), QStringList());
        QCOMPARE(contents(), "a.txt:top"_s);
        if (statement != "unplug"_s)
            return;
        QVERIFY(base.rename("unplugged"_s, "disk"_s));
        box().write("disk/in/b.txt"_s, "b");
        box().manager()->runAllAutoLinks(true);
        QTRY_COMPARE(fileCount(), 2);
    }

    void removedFolderDropsItsLinkByItself()
    {
        link(m_top, in());
        waitForRound();
        QVERIFY(QDir(in()).removeRecursively());
        QTRY_COMPARE(links(), QStringList());
        QVERIFY(!box().tree().hasAutolinks(m_top));
    }

    void linkGoesWithItsNode_data()
    {
        addColumns<bool>("byTag");
        addRow("node", false);
        addRow("tag", true);
    }
    void linkGoesWithItsNode()
    {
        QFETCH(bool, byTag);
        link(m_below, in());
        link(m_other, in());
        if (byTag)
            box().manager()->removeTags({node(m_below)->tagId()});
        else
            box().tree().removeNodesWithSubtree({m_top});
        QCOMPARE(links(), QStringList("in|%1"_s.arg(m_other)));
        write("a.txt"_s, "a");
        QTRY_COMPARE(contents(), "a.txt:other"_s);
        box().tree().removeNodes({m_other});
        QCOMPARE(box().manager()->autoLinks().size(), 0);
        QCOMPARE(links(), QStringList());
    }

    void reloadKeepsLinks()
    {
        link(m_top, in());
        box().manager()->reloadAllData();
        QVERIFY(box().tree().hasAutolinks(m_top));
        write("a.txt"_s, "a");
        QTRY_COMPARE(contents(), "a.txt:top"_s);
    }

    void databaseMovedIntoTheFolderIsLeftAlone()
    {
        link(m_top, in());
        waitForRound();
        box().run("UPDATE tb_autolinks SET link_abs_path='%1',link_rel_path=''"_s.arg(box().folder()));
        box().manager()->reloadAllData();
        box().manager()->runAllAutoLinks(true);
        waitForRound();
        box().waitForWorker();
        QCOMPARE(contents(), QString());
    }

    void readOnlyDatabaseIsNotWritten()
    {
        link(m_top, in());
        waitForRound();
        box().run("UPDATE tb_autolinks SET link_abs_path='/nowhere/in'");
        box().reopenReadOnly();
        write("a.txt"_s, "a");
        box().manager()->runAllAutoLinks(true);
        box().manager()->refreshAutoLinks();
        QVERIFY(box().tree().hasAutolinks(m_top));
        QCOMPARE(box().tree().links().absolutePath(m_top), in());
        QCOMPARE(box().value("SELECT link_abs_path FROM tb_autolinks"), "/nowhere/in"_s);
        QCOMPARE(contents(), QString());
        link(m_other, in());
        QCOMPARE(links(), QStringList("in|%1"_s.arg(m_top)));
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

    void dockLinksShowsAndUnlinks()
    {
        m_box.reset();
        TreeWindow w;
        const qint64 plain = w.addNode(w.addTags({"tag"_s}).first());
        QDir().mkpath(w.filePath("in"_s));
        QString caption;
        FileDialogs::setResponder([&](const FileDialogs::Request &request) {
            caption = request.caption;
            return QStringList(w.filePath("in"_s));
        });
        const QList<QAction *> entries = w.ui.nodeMenu->actions();
        QAction *add = findAction(w.nodes, "Auto Link To Folder"_s);
        QAction *menu = entries.last();
        QCOMPARE(menu->text(), "Auto Link To Folder"_s);
        QVERIFY(!add->isEnabled());
        w.activate(plain);
        QVERIFY(add->isEnabled() && add->isVisible() && !menu->isVisible());
        add->trigger();
        QCOMPARE(caption, "Select Directoty"_s);
        QVERIFY(!add->isVisible() && menu->isVisible() && menu->isEnabled());
        QString shown;
        QTimer::singleShot(0, qApp, [&shown] {
            QWidget *dialog = QApplication::activeModalWidget();
            shown = dialog->windowTitle() + QLatin1Char('|') + dialog->findChild<QLabel *>()->text();
            dialog->findChild<QPushButton *>()->click();
        });
        menu->menu()->actions().at(0)->trigger();
        QCOMPARE(shown, "Auto Linking|Absolute path: %1\nRelative path: in"_s.arg(w.filePath("in"_s)));
        menu->menu()->actions().at(1)->trigger();
        QCOMPARE(w.count("tb_autolinks"_s) + w.count("tb_nodes_autolinks"_s), 0);
        QVERIFY(add->isVisible() && !menu->isVisible());
        FileDialogs::setResponder({});

        // A read-only database keeps its links as they are.
        add->setVisible(false);
        w.detach();
        w.reopenReadOnly();
        w.attach();
        w.nodeView()->setCurrentIndex(w.node(plain));
        QVERIFY(add->isVisible() && !add->isEnabled() && !menu->isEnabled());
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

    void knownFileThatCannotBeReadIsHandedOverOnce()
    {
        write("a.txt"_s, "a");
        link(m_top, in());
        QTRY_COMPARE(contents(), "a.txt:top"_s);
        box().waitForWorker();
        QSignalSpy started(box().manager(), &DatabaseManger::startedAddingFiles);
        QFile::remove(filePath("a.txt"_s));
        QCOMPARE(::link(QFile::encodeName(box().path()).constData(),
                        QFile::encodeName(filePath("a.txt"_s)).constData()),
                 0);
        for (int i = 0; i < 3; ++i) {
            box().manager()->syncAutoLink(linkId(), m_top, false);
            waitForRound();
            box().waitForWorker();
        }
        QCOMPARE(started.size(), 1);
    }

    void goneFolderIsRemovedOrUnplugged_data()
    {
        addColumns<QString, quint64, bool>("folder", "seenOn", "isRemoved");
        const quint64 here = LinkPresence::of(QDir::tempPath(), {}, {}).device;
        addRow("seen on this disk", "full/in"_s, here, true);
        addRow("seen on another disk", "full/in"_s, here + 1, false);
        addRow("never seen", "full/in"_s, quint64(0), true);
        addRow("never seen, in a place for a disk", "empty/in"_s, quint64(0), false);
        addRow("seen, the folder around is empty now", "empty/in"_s, here, true);
        addRow("the folder around is gone", "nowhere/in"_s, here, false);
        addRow("there", "empty"_s, here, false);
        addRow("not to be looked at", QString(300, QLatin1Char('x')), here, false);
    }
    void goneFolderIsRemovedOrUnplugged()
    {
        QFETCH(QString, folder);
        QFETCH(quint64, seenOn);
        QFETCH(bool, isRemoved);
        box().write("full/x"_s, "x");
        QDir().mkpath(box().filePath("empty"_s));
        const LinkPresence found = LinkPresence::of(box().filePath(folder), "nowhere either"_s, box().path());
        QCOMPARE(found.isRemoved(seenOn), isRemoved);
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
    LocalCollection &box() { return *m_box; }
    QString in() { return box().filePath("in"_s); }
    QString filePath(const QString &name) { return box().filePath("in/"_s + name); }
    QString write(const QString &name, const QByteArray &bytes) { return box().write("in/"_s + name, bytes); }
    void setTime(const QString &name, qint64 seconds)
    {
        const timespec times[2] = {{seconds, 0}, {seconds, 0}};
        ::utimensat(AT_FDCWD, QFile::encodeName(filePath(name)).constData(), times, 0);
    }
    AutoLinkSync &sync() { return *box().manager()->findChild<AutoLinkSync *>(); }
    void hurry(int milliseconds = 0, int lookBack = 30000) { sync().setTimes(milliseconds, lookBack); }
    TBnode *node(qint64 id) { return box().tree().nodeById(id); }
    QModelIndex shown(qint64 id) { return box().tree().sorterModel()->indexOfNode(TagNode, id); }
    void link(qint64 nodeId, const QString &folder) { box().tree().links().link(nodeId, folder); }
    QString linkId() { return box().manager()->autoLinks().keys().value(0); }
    /** A round of looking that begins from now on. */
    void waitForRound()
    {
        QSignalSpy rounds(&sync(), &AutoLinkSync::roundDone);
        QVERIFY(rounds.wait(10000));
    }
    /** The links of the database: "relative path|node". */
    QStringList links()
    {
        return box().rows("SELECT link_rel_path,node_id FROM tb_autolinks LEFT JOIN tb_nodes_autolinks ON "
                          "tb_nodes_autolinks.link_id=tb_autolinks.link_id ORDER BY 1,2");
    }
    int fileCount() { return box().manager()->files().size(); }
    /** The files as the manager knows them: "name:tag,tag". */
    QString contents()
    {
        QStringList texts;
        for (const File *file : box().manager()->files()) {
            QStringList tags;
            for (const qint64 tag : file->tags())
                tags.append(box().manager()->tagName(tag));
            texts.append(file->name() + QLatin1Char(':') + tags.join(QLatin1Char(',')));
        }
        texts.sort();
        return texts.join(QLatin1Char(' '));
    }

    std::unique_ptr<LocalCollection> m_box;
    qint64 m_top = 0;
    qint64 m_below = 0;
    qint64 m_other = 0;
};

QTEST_MAIN(TestAutoLinks)
#include "tst_autolinks.moc"
