#include "app/messages/filedialogs.h"
#include "core/records/tbnode.h"
#include "models/trees/brtreesortermodel.h"
#include "models/trees/treeroles.h"
#include "tests/support/dialoganswers.h"
#include "tests/support/linkedfoldertest.h"
#include "tests/support/treewindow.h"

#include <QLabel>
#include <QPushButton>
#include <QTimer>

/** Links from folders to browsing nodes: made, moved, shown, and what ends them. */
class TestAutoLinks : public LinkedFolderTest
{
    Q_OBJECT

private slots:
    void init() { openFolder(); }
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
        const auto isMenu = [](const QAction *entry) {
            return entry->menu() && entry->text() == "Auto Link To Folder"_s;
        };
        const auto place = std::find_if(entries.begin(), entries.end(), isMenu);
        QVERIFY(place != entries.end());
        QAction *menu = *place;
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

private:
    QModelIndex shown(qint64 id) { return box().tree().sorterModel()->indexOfNode(TagNode, id); }
};

QTEST_MAIN(TestAutoLinks)
#include "tst_autolinks.moc"
