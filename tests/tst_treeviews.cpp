#include "app/settings/viewsettings.h"
#include "core/records/tbnode.h"
#include "tests/support/treewindow.h"
#include "ui/tagging/namesline.h"
#include "ui/views/foreigndragfilter.h"

#include <QAction>
#include <QApplication>
#include <QMenuBar>
#include <QScrollBar>
#include <QToolTip>

using Ids = QVector<qint64>;

namespace {
/** Answers the menu that is about to open with one of its entries, or with Esc for -1. */
void answerMenu(int entry, QStringList *texts)
{
    QTimer::singleShot(0, qApp, [entry, texts] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        if (!menu)
            return;
        for (const QAction *action : menu->actions())
            texts->append(action->text());
        if (entry < 0)
            QTest::keyClick(menu, Qt::Key_Escape);
        else
            QTest::mouseClick(menu, Qt::LeftButton, {},
                              menu->actionGeometry(menu->actions().at(entry)).center());
    });
}

/** A list of addresses as other programs hand it over; QMimeData would set its own one right. */
class RawUriList : public QMimeData
{
public:
    explicit RawUriList(const QByteArray &list) : m_list(list) {}
    QStringList formats() const override { return {Constants::uriMimeType}; }

protected:
    QVariant retrieveData(const QString &, QVariant::Type) const override { return m_list; }

private:
    QByteArray m_list;
};

const int nowhere = -100;

/** A window with the nodes a[b[c]], of the tags 1 to 3, and with the tags x (4) and y (5). */
class Window : public TreeWindow
{
public:
    Window() : view(nodeView())
    {
        addTags("a b c x y"_s.split(QLatin1Char(' ')));
        for (int i = 0; i < 3; ++i)
            tree().addNodesBelow({i + 1}, i);
        nodes->slotExpandAllFiles();
    }
    /** The node of an id; all files for 0, a fixed node for minus its type. */
    QModelIndex at(int target)
    {
        return target > 0          ? node(target)
               : target == 0       ? fixedNode(AllFiles)
               : target == nowhere ? QModelIndex()
                                   : fixedNode(NodeType(-target));
    }
    Qt::DropAction dropOn(int target, const QMimeData &data, Qt::KeyboardModifiers modifiers = {})
    {
        const QPoint place =
            target == nowhere ? QPoint(20, view->viewport()->height() - 5) : centreOf(view, at(target));
        return drop(view->viewport(), place, data, modifiers);
    }

    TBtreeView *view;
};

/** What somebody does with the node 4 current, while the files of the node 2 are shown. */
using Deed = void (*)(Window &);
} // namespace
Q_DECLARE_METATYPE(Deed)

/** The view of the browsing tree: drops, deletions, what is open and current, and the node's actions. */
class TestTreeViews : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLoggingCategory::setFilterRules("default.debug=false"_s); }

    void tagsBecomeNodes_data()
    {
        addColumns<int, bool, bool, int, QString>("target", "alt", "asks", "answer", "outline");
        addRow("on a node", 2, false, false, -2, "a[b[c x y]]");
        addRow("on a node with Alt", 2, true, false, -2, "a[x[y[b[c]]]]");
        addRow("with Alt though it would ask", 2, true, true, -2, "a[x[y[b[c]]]]");
        addRow("asked, above", 2, false, true, 0, "a[x[y[b[c]]]]");
        addRow("asked, below", 2, false, true, 1, "a[b[c x y]]");
        addRow("asked, no answer", 2, false, true, -1, "a[b[c x y]]");
        addRow("on all files", 0, false, true, -2, "a[b[c]] x y");
        addRow("on all files with Alt", 0, true, false, -2, "a[b[c]] x y");
        addRow("above a top node", 1, true, false, -2, "x[y[a[b[c]]]]");
        addRow("on a fixed node", int(-AllExternalFiles), false, true, -2, "a[b[c]]");
        addRow("on nothing", nowhere, true, false, -2, "a[b[c]]");
    }

    void tagsBecomeNodes()
    {
        QFETCH(int, target);
        QFETCH(bool, alt);
        QFETCH(bool, asks);
        QFETCH(int, answer); // -2 where no question is expected
        QFETCH(QString, outline);
        Window w;
        w.set("PreferencesDialog/nodeCreationOptions", asks);
        QStringList asked;
        if (answer > -2)
            answerMenu(answer, &asked);
        w.activate(3);
        const auto tags = tagDrag({4, 5, 999});
        ForeignDragFilter filter; // refuses the ids of another program
        w.view->viewport()->installEventFilter(&filter);
        QCOMPARE(w.dropOn(target, *tags), Qt::IgnoreAction);
        w.view->viewport()->removeEventFilter(&filter);
        QCOMPARE(w.dropOn(target, *tags, alt ? Qt::AltModifier : Qt::NoModifier),
                 target >= 0 ? Qt::CopyAction : Qt::IgnoreAction);
        QCOMPARE(w.outline(), outline);
        QCOMPARE(asked, answer > -2 ? QStringList({"Add above"_s, "Add below"_s}) : QStringList());
        QVERIFY(target < 0 || w.view->isExpanded(w.at(target)));
        // What is shown has not changed.
        QCOMPARE(w.view->currentIndex(), w.node(3));
        QCOMPARE(w.view->selectedNodeIds(), Ids{3});
        QVERIFY(w.takeBoxes().isEmpty());
        w.detach();
        w.reopen();
        QCOMPARE(w.outline(), outline);
    }

    void filesGetTheTagsOfANode_data()
    {
        addColumns<int, bool, QString>("target", "accepted", "links");
        addRow("a node", 1, true, "1|1 3|1");
        addRow("below an inverted node", 3, true, "1|1 1|3 3|1 3|3");
        addRow("all files", 0, true, "");
        for (int type = AllFilesWithTags; type <= RecentlyAddedFiles; ++type)
            QTest::addRow("fixed node %d", type) << -type << false << "";
    }

    void filesGetTheTagsOfANode()
    {
        QFETCH(int, target);
        QFETCH(bool, accepted);
        Window w;
        w.addFiles(3);
        w.tree().changeInversion(2, true);
        // The last file is of another database.
        QCOMPARE(w.dropOn(target, *fileDrag({1, 3, 999})), accepted ? Qt::CopyAction : Qt::IgnoreAction);
        QTEST(w.rows("SELECT file_id, tag_id FROM file_tag ORDER BY 1,2").join(QLatin1Char(' ')), "links");
    }

    void urlsAreAdded_data()
    {
        addColumns<int, Ids>("target", "tags");
        addRow("on a node", 2, Ids{1, 2});
        addRow("on all files", 0, Ids());
    }

    void urlsAreAdded()
    {
        QFETCH(int, target);
        QFETCH(Ids, tags);
        Window w;
        const QString file = w.write("50% o'clock.txt"_s, "text");
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(file), QUrl("https://example.org/x?y=1"_s)});
        // Even where moving is proposed: whoever offers the files would delete them.
        QCOMPARE(w.dropOn(target, data, Qt::ShiftModifier), Qt::CopyAction);
        w.waitForWorker();
        QVERIFY(QFile::exists(file));
        QCOMPARE(w.manager()->files().size(), 2);
        for (const File *added : w.manager()->files()) {
            Ids sorted = added->tags();
            std::sort(sorted.begin(), sorted.end());
            QCOMPARE(sorted, tags);
        }
    }

    /** A quadratic step would take minutes. */
    void manyNodesOfOneTagAreRenamed()
    {
        constexpr int count = 50000;
        TreeWindow w;
        w.set("PreferencesDialog/nodeSortingType", int(ViewSettings::AlphabeticalSorting));
        w.addTags({"a"_s, "b"_s});
        QVERIFY(
            w.fill("INSERT INTO tb_nodes(node_id,tag_id,tr_options,inverted) SELECT i,1,1,0 FROM n", count));
        w.manager()->reloadAllData();
        w.tree().reloadSorting();
        w.tree().addNodesBelow({2}, 1);
        w.nodeView()->expandAll();
        QElapsedTimer sinceStart;
        sinceStart.start();
        w.manager()->renameTag(1, "c"_s);
        w.nodeView()->grab();
        QVERIFY2(sinceStart.elapsed() < 20000, qPrintable(QString::number(sinceStart.elapsed())));
        QCOMPARE(w.node(count).data().toString(), "c"_s);
        QVERIFY(w.nodeView()->isExpanded(w.node(1)));
    }

    void listOfAnotherProgramIsRead()
    {
        Window w;
        QByteArray list = "# http://comment/\r\nhttp://a/%C3%A4\r\n\r\nhttp://b/1@2\r\n  file://" +
                          QFile::encodeName(w.write("x"_s, "x")) + "\n#\nhttp://c/#d\r\n@";
        const RawUriList data(list.replace('@', '\0'));
        const QSignalSpy told(w.manager(), &DatabaseManger::error);
        w.dropOn(1, data);
        w.waitForWorker();
        QStringList names;
        for (const File *added : w.manager()->files())
            names.append(added->name());
        names.sort();
        QCOMPARE(names, QStringList({"http://a/\u00e4"_s, "http://c/#d"_s, "x"_s}));
        QCOMPARE(told.value(0).value(1).toString(), "One hyperlink was not added:\nNot valid: 1"_s);
    }

    void currentNodeFollowsADragAndComesBack()
    {
        Window w;
        w.tree().addNodesBelow({4}, 0);
        w.view->collapse(w.node(1));
        w.view->setCurrentIndex(w.node(4));
        const auto data = tagDrag({5});
        const QPoint over = centreOf(w.view, w.node(1));
        QDragEnterEvent enter(over, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::ControlModifier);
        QCoreApplication::sendEvent(w.view->viewport(), &enter);
        for (int i = 0; i < 2; ++i) {
            QDragMoveEvent move(over, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::ControlModifier);
            QCoreApplication::sendEvent(w.view->viewport(), &move);
            QCOMPARE(w.view->currentIndex(), w.node(1));
            QCOMPARE(w.view->selectedNodeIds(), Ids{1});
        }
        QVERIFY(!w.view->isExpanded(w.node(1)));
        QTRY_VERIFY(w.view->isExpanded(w.node(1))); // as the drag rests there
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(w.view->viewport(), &leave);
        QCOMPARE(w.view->currentIndex(), w.node(4));
        QCOMPARE(w.tree().currentNodeType(), 0); // hovering shows no files

        QMimeData text;
        text.setText("vorna/tagids"_s);
        QCOMPARE(w.dropOn(1, text), Qt::IgnoreAction);
    }

    void selectionFollowsWhatIsShown()
    {
        Window w;
        w.activate(2);
        QCOMPARE(w.view->currentIndex(), w.node(2));
        QCOMPARE(w.view->selectedNodeIds(), Ids{2});
        // Further ones that the user adds to the selection stay.
        w.view->selectionModel()->select(w.node(3), QItemSelectionModel::Select);
        w.view->activatedNode(w.node(2));
        QCOMPARE(w.view->selectedNodeIds().size(), 2);
        w.mainView().showTagsSelected({4});
        QVERIFY(w.view->selectedNodeIds().isEmpty());
        QVERIFY(!w.view->currentIndex().isValid());
        w.view->activatedNode(w.fixedNode(AllFilesWithTags));
        QCOMPARE(w.view->currentIndex(), w.fixedNode(AllFilesWithTags));
        w.mainView().setFileFilterString("x"_s);
        QVERIFY(!w.view->selectionModel()->hasSelection());
    }

    void selectionComesBackToWhatIsShown_data()
    {
        addColumns<Deed>("deed");
        addRow("another node is deleted", Deed([](Window &w) { w.tree().removeNodes({4}); }));
        addRow("the tag of another node is deleted", Deed([](Window &w) { w.tags().removeTags({4}); }));
        addRow("the menu is closed", Deed([](Window &w) {
                   QStringList texts;
                   answerMenu(-1, &texts);
                   w.nodes->openContextMenu(centreOf(w.view, w.node(4)));
               }));
        addRow("the focus goes", Deed([](Window &w) {
                   w.window.activateWindow();
                   QVERIFY(QTest::qWaitForWindowActive(&w.window));
                   w.view->setFocus();
                   w.view->selectionModel()->setCurrentIndex(w.node(4), QItemSelectionModel::ClearAndSelect);
                   w.window.menuBar()->setFocus(Qt::MenuBarFocusReason);
                   QCOMPARE(w.view->selectedNodeIds(), Ids{4});
                   w.relationView()->setFocus();
               }));
        addRow("a click deselects", Deed([](Window &w) {
                   for (const auto modifier : {Qt::NoModifier, Qt::ControlModifier})
                       QTest::mouseClick(w.view->viewport(), Qt::LeftButton, modifier,
                                         centreOf(w.view, w.node(2)));
               }));
        addRow("a drag leaves", Deed([](Window &w) {
                   w.mainView().showTagsSelected({4});
                   w.view->selectionModel()->setCurrentIndex(
                       w.node(4), QItemSelectionModel::NoUpdate); // as the focus does
                   const auto data = tagDrag({5});
                   QDragEnterEvent enter(centreOf(w.view, w.node(1)), Qt::CopyAction, data.get(),
                                         Qt::LeftButton, Qt::NoModifier);
                   QCoreApplication::sendEvent(w.view->viewport(), &enter);
                   QDragMoveEvent move(centreOf(w.view, w.node(1)), Qt::CopyAction, data.get(),
                                       Qt::LeftButton, Qt::NoModifier);
                   QCoreApplication::sendEvent(w.view->viewport(), &move);
                   QDragLeaveEvent leave;
                   QCoreApplication::sendEvent(w.view->viewport(), &leave);
                   QVERIFY(!w.view->selectionModel()->hasSelection());
                   w.activate(2);
               }));
    }

    void selectionComesBackToWhatIsShown()
    {
        QFETCH(Deed, deed);
        Window w;
        w.tree().addNodesBelow({4, 5}, 0);
        w.activate(2);
        w.view->selectionModel()->setCurrentIndex(w.node(4), QItemSelectionModel::ClearAndSelect);
        deed(w);
        QCOMPARE(w.view->currentIndex(), w.node(2));
        QCOMPARE(w.view->selectedNodeIds(), Ids{2});
    }

    void whatIsLeftOfTheSelectionIsShown()
    {
        Window w;
        w.tree().addNodesBelow({4, 5}, 0);
        const auto click = [&w](int node, Qt::KeyboardModifiers modifiers) {
            QTest::mouseClick(w.view->viewport(), Qt::LeftButton, modifiers, centreOf(w.view, w.node(node)));
        };
        const auto check = [&w](int shown, int selected) {
            QCOMPARE(w.tree().currentNodeId(), qint64(shown));
            QCOMPARE(w.view->currentIndex(), w.node(shown));
            QCOMPARE(w.view->selectedNodeIds().size(), selected);
        };
        click(1, Qt::NoModifier);
        click(2, Qt::ControlModifier);
        click(4, Qt::ControlModifier);
        check(4, 3);
        // What is shown stays while it is selected.
        click(1, Qt::ControlModifier);
        check(4, 2);
        click(4, Qt::ControlModifier);
        check(2, 1);
    }

    void openBranchesStayOpen()
    {
        Window w;
        w.tree().addNodesBelow({5}, 3);
        w.view->collapse(w.node(3));
        w.view->setCurrentIndex(w.node(3));
        w.view->selectionModel()->select(w.node(2), QItemSelectionModel::Select);
        const auto check = [&w](const char *outline) {
            QCOMPARE(w.outline(), QLatin1String(outline));
            for (const int id : {1, 2, 3})
                QCOMPARE(w.view->isExpanded(w.node(id)), id < 3);
        };
        w.manager()->reloadAllData();
        check("a[b[c[y]]]");
        QCOMPARE(w.view->currentIndex(), w.node(3));
        Ids selected = w.view->selectedNodeIds();
        std::sort(selected.begin(), selected.end());
        QCOMPARE(selected, (Ids{2, 3}));
        w.dropOn(2, *tagDrag({4}), Qt::AltModifier);
        check("a[x[b[c[y]]]]");
        w.tags().removeTags({4});
        check("a[b[c[y]]]");
    }

    void nodesAreDeleted_data()
    {
        addColumns<Ids, bool, bool, QString, QString>("selected", "subtree", "agrees", "question", "outline");
        addRow("leaf", Ids{3}, false, false, "", "a[b] x");
        addRow("node", Ids{2}, false, true, "a non-leaf node", "a[c] x");
        addRow("node, cancelled", Ids{2}, false, false, "a non-leaf node", "a[b[c]] x");
        addRow("nodes", Ids{1, 2}, false, true, "non-leaf nodes", "c x");
        addRow("leaves of two branches", Ids{3, 4}, true, false, "", "a[b]");
        addRow("subtree", Ids{2}, true, true, "a non-leaf node", "a x");
        addRow("subtree, cancelled", Ids{1}, true, false, "a non-leaf node", "a[b[c]] x");
        addRow("overlapping subtrees", Ids{2, 1}, true, true, "non-leaf nodes", "x");
        addRow("none", Ids{}, false, true, "", "a[b[c]] x");
    }

    void nodesAreDeleted()
    {
        QFETCH(Ids, selected);
        QFETCH(bool, subtree);
        QFETCH(bool, agrees);
        QFETCH(QString, question);
        QFETCH(QString, outline);
        Window w;
        w.tree().addNodesBelow({4}, 0);
        // The fixed nodes are never deleted, selected or not.
        w.view->setCurrentIndex(w.fixedNode(AllHyperlinks));
        for (const qint64 id : selected)
            w.view->selectionModel()->setCurrentIndex(w.node(id), QItemSelectionModel::Select);
        w.answerBoxesWith(agrees ? QMessageBox::Ok : QMessageBox::Cancel);
        if (subtree)
            w.nodes->deleteSelectedNodeTree();
        else
            QTest::keyClick(w.view, Qt::Key_Delete);
        const QString box = "Do you really want to delete %1 from this tree?"_s;
        QCOMPARE(w.takeBoxes(), question.isEmpty() ? QStringList() : QStringList(box.arg(question)));
        QCOMPARE(w.outline(), outline);
        QCOMPARE(w.value("SELECT child_id FROM tb_node_links EXCEPT SELECT node_id FROM tb_nodes"),
                 QString());
        w.detach();
        w.reopen();
        QCOMPARE(w.outline(), outline);
    }

    void nodesAreShownByClickAndReturn()
    {
        Window w;
        w.addFiles(2);
        w.mainView().linkTags({2}, {1, 2});
        w.view->setCurrentIndex(w.node(1));
        QCOMPARE(w.tree().currentNodeType(), 0);
        QTest::mouseClick(w.view->viewport(), Qt::LeftButton, {}, centreOf(w.view, w.node(2)));
        QCOMPARE(w.tree().currentTagNodeId(), 2);
        QCOMPARE(w.mainView().shownFileIds(), Ids{2});
        w.view->setCurrentIndex(w.fixedNode(AllHyperlinks));
        QCOMPARE(w.tree().currentTagNodeId(), 2);
        QTest::keyClick(w.view, Qt::Key_Return);
        QCOMPARE(w.tree().currentNodeType(), int(AllHyperlinks));
        QCOMPARE(w.mainView().shownFileIds().size(), 2);
    }

    void longNamesAreReachedSideways()
    {
        Window w;
        const QScrollBar *bar = w.view->horizontalScrollBar();
        w.tree().addNodesBelow(w.addTags({QString(200, QLatin1Char('w'))}), 0);
        QTRY_VERIFY(bar->maximum() > 0);
        w.view->horizontalScrollBar()->setValue(bar->maximum());
        w.view->setCurrentIndex(w.node(4));
        const int shown = bar->value();
        QVERIFY(shown > 0 && w.view->visualRect(w.node(4)).left() >= 0);
        w.view->setCurrentIndex(w.node(1));
        QCOMPARE(bar->value(), shown);
        w.tree().removeNodes({4});
        QTRY_COMPARE(bar->maximum(), 0);
    }

    void longNamesTellTheirNumberInATip()
    {
        Window w;
        w.tree().addNodesBelow(w.addTags({QString(200, QLatin1Char('w'))}), 0);
        for (const qint64 id : {1, 4}) {
            QTRY_VERIFY(w.node(id).data(NodeRole::FileCount).value<FileCount>().isKnown());
            const QRect row = w.view->visualRect(w.node(id));
            const QPoint place(row.left() + 4, row.center().y());
            QHelpEvent asked(QEvent::ToolTip, place, w.view->viewport()->mapToGlobal(place));
            QApplication::sendEvent(w.view->viewport(), &asked);
            QTRY_COMPARE(QToolTip::text().contains(", 0 files"_s), id == 4);
        }
    }

    void nodesByTheKeyboard_data()
    {
        addColumns<QString, QString, QString, QString>("key", "names", "refused", "outline");
        addRow("below, a new tag among them", "Ins", "x,New"_s, ""_s, "a[b[c x New]]"_s);
        addRow("at the top", "Shift+Ins", "y"_s, ""_s, "a[b[c]] y"_s);
        addRow("refused, then not", "Ins", "x,New"_s, "INSERT ON tb_nodes"_s, "a[b[c x New]]"_s);
    }

    void nodesByTheKeyboard()
    {
        QFETCH(QString, key);
        QFETCH(QString, names);
        QFETCH(QString, refused);
        Window w;
        QVERIFY(QTest::qWaitForWindowActive(&w.window));
        w.view->setFocus();
        w.view->setCurrentIndex(w.node(2));
        if (!refused.isEmpty())
            w.run("CREATE TRIGGER no BEFORE %1 BEGIN SELECT raise(ABORT,'no'); END"_s.arg(refused));
        QTest::keySequence(w.view, QKeySequence(key));
        auto *line = w.nodes->findChild<NamesLine *>();
        QTest::keyClicks(line->focusProxy(), names);
        QTest::keyClick(line->focusProxy(), Qt::Key_Return);
        if (!refused.isEmpty()) {
            QVERIFY(line->isVisible() && w.tags().tagName(6).isEmpty());
            w.run("DROP TRIGGER no");
            QTest::keyClick(line->focusProxy(), Qt::Key_Return);
        }
        QTEST(w.outline(), "outline");
        QVERIFY(!line->isVisible());
        w.view->setCurrentIndex(w.node(4));
        const QString before = w.outline();
        QTest::keySequence(w.view, QKeySequence("Alt+Up"_s));
        QTest::keySequence(w.view, QKeySequence("Alt+Down"_s));
        QCOMPARE(w.outline(), before);
        QTest::keySequence(w.view, QKeySequence("Alt+Up"_s));
        QVERIFY(w.outline() != before);
        QCOMPARE(w.view->currentIndex(), w.node(4));
    }

    void actionsFollowTheCurrentNode()
    {
        Window w;
        const QList<QAction *> actions = w.ui.nodeMenu->actions();
        const auto enabled = [&actions] {
            return std::count_if(actions.begin(), actions.end(), [](QAction *a) { return a->isEnabled(); });
        };
        QCOMPARE(enabled(), 1); // "Add Node..."
        w.view->setCurrentIndex(w.node(1));
        QCOMPARE(enabled(), 8);
        QVERIFY(actions.at(1)->isChecked() && !actions.at(2)->isChecked());
        actions.at(1)->trigger();
        actions.at(2)->trigger();
        QVERIFY(!actions.at(1)->isChecked() && actions.at(2)->isChecked());
        QCOMPARE(w.value("SELECT tr_options, inverted FROM tb_nodes WHERE node_id=1"), "0|1"_s);
        QCOMPARE(w.outline(), "- a[b[c]]"_s);

        QStringList menu;
        answerMenu(-1, &menu);
        w.nodes->openContextMenu(centreOf(w.view, w.node(1)));
        QCOMPARE(menu.join(QLatin1Char(',')),
                 "Tag Relationships Enabled,Tag Node Inverted,Auto Link To Folder,Auto Link To Folder,Delete,"
                 "Delete with subtree,Export,Add Node...,Add Node Below...,Move Up,Move Down"_s);
        w.view->setCurrentIndex(w.fixedNode(AllFiles));
        QCOMPARE(enabled(), 1);
        const auto *exportEntry = w.nodes->findChild<QAction *>("exportDatabaseAction"_s);
        QVERIFY(exportEntry->isEnabled());
        // A click with the control key leaves the node current, but nothing to export.
        w.view->clearSelection();
        QVERIFY(w.view->currentIndex().isValid() && !exportEntry->isEnabled());
        w.view->setCurrentIndex(w.node(1));
        w.detach();
        QCOMPARE(enabled(), 0);
        QVERIFY(!w.view->isEnabled() && !w.view->model());
    }
};

QTEST_MAIN(TestTreeViews)
#include "tst_treeviews.moc"
