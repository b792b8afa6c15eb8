#include "core/tbnode.h"
#include "tests/support/treewindow.h"
#include "ui/views/foreigndragfilter.h"
#include "ui/views/viewstyle.h"

#include <QAction>
#include <QApplication>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOption>

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

} // namespace

class TestTreeViews : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLoggingCategory::setFilterRules("default.debug=false"_s); }

    void idsOfAnotherProgramAreRefused()
    {
        TreeWindow window;
        const auto data = tagDrag(window.addTags({"a"_s}));
        QWidget *target = window.nodeView()->viewport();
        const QPoint at = window.nodeView()->visualRect(window.fixedNode(AllFiles)).center();
        ForeignDragFilter filter;
        target->installEventFilter(&filter);
        QCOMPARE(drop(target, at, *data), Qt::IgnoreAction);
        target->removeEventFilter(&filter);
        QVERIFY(drop(target, at, *data) != Qt::IgnoreAction);
    }

    void tagsBecomeNodes_data()
    {
        QTest::addColumn<qint64>("target"); // 0 all files, below it minus a type
        addColumns<bool, bool>("alt", "asks");
        QTest::addColumn<int>("answer"); // -2 where no question is expected
        QTest::addColumn<QString>("outline");
        addRow("on a node", qint64(2), false, false, -2, "a[b[c d x y]]");
        addRow("on a node with Alt", qint64(2), true, false, -2, "a[x[y[b[c d]]]]");
        addRow("with Alt though it would ask", qint64(2), true, true, -2, "a[x[y[b[c d]]]]");
        addRow("asked, above", qint64(2), false, true, 0, "a[x[y[b[c d]]]]");
        addRow("asked, below", qint64(2), false, true, 1, "a[b[c d x y]]");
        addRow("asked, no answer", qint64(2), false, true, -1, "a[b[c d x y]]");
        addRow("on all files", qint64(0), false, true, -2, "a[b[c d]] x y");
        addRow("on all files with Alt", qint64(0), true, false, -2, "a[b[c d]] x y");
        addRow("above a top node", qint64(1), true, false, -2, "x[y[a[b[c d]]]]");
        addRow("on a fixed node", qint64(-AllExternalFiles), false, true, -2, "a[b[c d]]");
        addRow("on nothing", qint64(-100), true, false, -2, "a[b[c d]]");
    }

    void tagsBecomeNodes()
    {
        QFETCH(qint64, target);
        QFETCH(bool, alt);
        QFETCH(bool, asks);
        QFETCH(int, answer);
        QFETCH(QString, outline);
        TreeWindow window;
        window.set("PreferencesDialog/nodeCreationOptions", asks);
        const QVector<qint64> tags = window.addTags("a b c d x y"_s.split(QLatin1Char(' ')));
        window.tree().addNodesBelow({tags.at(0)}, 0);
        window.tree().addNodesBelow({tags.at(1)}, 1);
        window.tree().addNodesBelow({tags.at(2), tags.at(3)}, 2);
        window.nodes->slotExpandAllFiles();

        const QModelIndex index = target > 0    ? window.node(target)
                                  : target == 0 ? window.fixedNode(AllFiles)
                                                : window.fixedNode(NodeType(-target));
        TBtreeView *view = window.nodeView();
        const QPoint at = target == -100 ? QPoint(20, view->viewport()->height() - 5) : centreOf(view, index);
        QStringList asked;
        if (answer > -2)
            answerMenu(answer, &asked);
        const Qt::DropAction action =
            drop(view->viewport(), at, *tagDrag(tags.mid(4) << 999), alt ? Qt::AltModifier : Qt::NoModifier);
        QCOMPARE(action, target >= 0 ? Qt::CopyAction : Qt::IgnoreAction);
        QCOMPARE(window.outline(), outline);
        QCOMPARE(asked, answer > -2 ? QStringList({"Add above"_s, "Add below"_s}) : QStringList());
        if (target >= 0) {
            const QModelIndex present = target > 0 ? window.node(target) : window.fixedNode(AllFiles);
            QCOMPARE(view->currentIndex(), present);
            QVERIFY(view->isExpanded(present));
        }
        if (target != -100 && target < 0)
            QVERIFY(view->currentIndex() != index);
        QVERIFY(window.takeBoxes().isEmpty());
        window.detach();
        window.reopen();
        window.attach();
        QCOMPARE(window.outline(), outline);
    }

    void filesGetTheTagsOfANode_data()
    {
        addColumns<qint64, bool, QString>("target", "accepted", "links");
        addRow("a node", qint64(1), true, "1|1 3|1");
        addRow("below an inverted node", qint64(3), true, "1|1 1|3 3|1 3|3");
        addRow("all files", qint64(0), true, "");
        for (int type = AllFilesWithTags; type <= RecentlyAddedFiles; ++type)
            QTest::addRow("fixed node %d", type) << qint64(-type) << false << "";
    }

    void filesGetTheTagsOfANode()
    {
        QFETCH(qint64, target);
        QFETCH(bool, accepted);
        TreeWindow window;
        window.addFiles(3);
        const QVector<qint64> tags = window.addTags("a b c"_s.split(QLatin1Char(' ')));
        for (int i = 0; i < 3; ++i)
            window.tree().addNodesBelow({tags.at(i)}, i);
        window.tree().changeInversion(2, true);
        window.nodes->slotExpandAllFiles();
        const QModelIndex index = target > 0    ? window.node(target)
                                  : target == 0 ? window.fixedNode(AllFiles)
                                                : window.fixedNode(NodeType(-target));
        const auto data = fileDrag({1, 3, 999}); // the last of another database
        const Qt::DropAction action =
            drop(window.nodeView()->viewport(), centreOf(window.nodeView(), index), *data);
        QCOMPARE(action, accepted ? Qt::CopyAction : Qt::IgnoreAction);
        QTEST(window.rows("SELECT file_id, tag_id FROM file_tag ORDER BY 1,2"_s).join(QLatin1Char(' ')),
              "links");
    }

    void urlsAreAdded_data()
    {
        addColumns<qint64, QString>("target", "tags");
        addRow("on a node", qint64(2), "a,b");
        addRow("on all files", qint64(0), "");
    }

    void urlsAreAdded()
    {
        QFETCH(qint64, target);
        QFETCH(QString, tags);
        TreeWindow window;
        const QVector<qint64> ids = window.addTags({"a"_s, "b"_s});
        window.tree().addNodesBelow({ids.at(0)}, 0);
        window.tree().addNodesBelow({ids.at(1)}, 1);
        window.nodes->slotExpandAllFiles();
        QFile file(window.folder() + "/50% o'clock.txt"_s);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("text") == 4);
        file.close();
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(file.fileName()), QUrl("https://example.org/x?y=1"_s)});
        const QModelIndex index = target > 0 ? window.node(target) : window.fixedNode(AllFiles);
        // Even where moving is proposed: whoever offers the files would delete them.
        QCOMPARE(
            drop(window.nodeView()->viewport(), centreOf(window.nodeView(), index), data, Qt::ShiftModifier),
            Qt::CopyAction);
        window.waitForWorker();
        QVERIFY(file.exists());
        QCOMPARE(window.manager()->files().size(), 2);
        for (const File *added : window.manager()->files()) {
            QStringList names;
            for (const qint64 tagId : added->tags())
                names.append(window.manager()->tagName(tagId));
            names.sort();
            QCOMPARE(names.join(QLatin1Char(',')), tags);
        }
    }

    void currentNodeFollowsADragAndComesBack()
    {
        TreeWindow window;
        const QVector<qint64> tags = window.addTags({"a"_s, "b"_s});
        window.tree().addNodesBelow(tags, 0);
        window.tree().addNodesBelow(tags, 2);
        TBtreeView *view = window.nodeView();
        view->setCurrentIndex(window.node(1));
        const auto data = tagDrag(tags);
        const QPoint over = centreOf(view, window.node(2));
        QDragEnterEvent enter(over, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::ControlModifier);
        QCoreApplication::sendEvent(view->viewport(), &enter);
        for (int i = 0; i < 2; ++i) {
            QDragMoveEvent move(over, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::ControlModifier);
            QCoreApplication::sendEvent(view->viewport(), &move);
            QCOMPARE(view->currentIndex(), window.node(2));
            QCOMPARE(view->selectedNodeIds(), QVector<qint64>{2});
        }
        QVERIFY(!view->isExpanded(window.node(2)));
        QTRY_VERIFY(view->isExpanded(window.node(2))); // as the drag rests there
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(view->viewport(), &leave);
        QCOMPARE(view->currentIndex(), window.node(1));
        QCOMPARE(window.tree().currentNodeType(), 0); // hovering shows no files

        QMimeData text;
        text.setText("vorna/tagids"_s);
        QCOMPARE(drop(view->viewport(), over, text), Qt::IgnoreAction);
    }

    void openBranchesStayOpen()
    {
        TreeWindow window;
        const QVector<qint64> tags = window.addTags("a b c d x"_s.split(QLatin1Char(' ')));
        for (int i = 0; i < 4; ++i)
            window.tree().addNodesBelow({tags.at(i)}, i);
        TBtreeView *view = window.nodeView();
        for (const qint64 id : {1, 2})
            view->expand(window.node(id));
        view->selectionModel()->select(window.node(2), QItemSelectionModel::Select);
        view->setCurrentIndex(window.node(3));
        view->selectionModel()->select(window.node(2), QItemSelectionModel::Select);
        const auto check = [&](const QVector<qint64> &open, const QVector<qint64> &closed) {
            for (const qint64 id : open)
                QVERIFY2(view->isExpanded(window.node(id)), qPrintable(QString::number(id)));
            for (const qint64 id : closed)
                QVERIFY2(!view->isExpanded(window.node(id)), qPrintable(QString::number(id)));
        };
        window.manager()->reloadAllData();
        check({1, 2}, {3});
        QCOMPARE(view->currentIndex(), window.node(3));
        QVector<qint64> selected = view->selectedNodeIds();
        std::sort(selected.begin(), selected.end());
        QCOMPARE(selected, (QVector<qint64>{2, 3}));

        drop(view->viewport(), centreOf(view, window.node(2)), *tagDrag({tags.at(4)}), Qt::AltModifier);
        QCOMPARE(window.outline(), "a[x[b[c[d]]]]"_s);
        check({1, 2}, {3});
        window.tags().removeTags({tags.at(4)});
        QCOMPARE(window.outline(), "a[b[c[d]]]"_s);
        check({1, 2}, {3});
    }

    void nodesAreDeleted_data()
    {
        addColumns<QVector<qint64>, bool, bool, QString, QString>("selected", "subtree", "agrees", "question",
                                                                  "outline");
        const QString one = "Do you really want to delete a non-leaf node from this tree?"_s;
        const QString more = "Do you really want to delete non-leaf nodes from this tree?"_s;
        using Ids = QVector<qint64>;
        addRow("leaf", Ids{3}, false, false, "", "a[b] d");
        addRow("node", Ids{2}, false, true, one, "a[c] d");
        addRow("node, cancelled", Ids{2}, false, false, one, "a[b[c]] d");
        addRow("nodes", Ids{1, 2}, false, true, more, "c d");
        addRow("leaves of two branches", Ids{3, 4}, true, false, "", "a[b]");
        addRow("subtree", Ids{2}, true, true, one, "a d");
        addRow("subtree, cancelled", Ids{1}, true, false, one, "a[b[c]] d");
        addRow("overlapping subtrees", Ids{2, 1}, true, true, more, "d");
        addRow("none", Ids{}, false, true, "", "a[b[c]] d");
    }

    void nodesAreDeleted()
    {
        QFETCH(QVector<qint64>, selected);
        QFETCH(bool, subtree);
        QFETCH(bool, agrees);
        QFETCH(QString, question);
        QFETCH(QString, outline);
        TreeWindow window;
        const QVector<qint64> tags = window.addTags("a b c d"_s.split(QLatin1Char(' ')));
        for (int i = 0; i < 3; ++i)
            window.tree().addNodesBelow({tags.at(i)}, i);
        window.tree().addNodesBelow({tags.at(3)}, 0);
        window.nodes->slotExpandAllFiles();
        TBtreeView *view = window.nodeView();
        // The fixed nodes are never deleted, selected or not.
        view->setCurrentIndex(window.fixedNode(AllHyperlinks));
        for (const qint64 id : selected)
            view->selectionModel()->setCurrentIndex(window.node(id), QItemSelectionModel::Select);
        window.answerBoxesWith(agrees ? QMessageBox::Ok : QMessageBox::Cancel);
        if (subtree)
            window.nodes->deleteSelectedNodeTree();
        else
            QTest::keyClick(view, Qt::Key_Delete);
        QCOMPARE(window.takeBoxes(), question.isEmpty() ? QStringList() : QStringList(question));
        QCOMPARE(window.outline(), outline);
        QCOMPARE(window.rows("SELECT child_id FROM tb_node_links EXCEPT SELECT node_id FROM "
                             "tb_nodes"_s),
                 QStringList());
        window.detach();
        window.reopen();
        QCOMPARE(window.outline(), outline);
    }

    void nodesAreShownByClickAndReturn()
    {
        TreeWindow window;
        window.addFiles(2);
        const QVector<qint64> tags = window.addTags({"a"_s, "b"_s});
        window.tree().addNodesBelow(tags, 0);
        window.mainView().linkTags({2}, {tags.at(1)});
        TBtreeView *view = window.nodeView();
        view->setCurrentIndex(window.node(1));
        QCOMPARE(window.tree().currentNodeType(), 0);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, centreOf(view, window.node(2)));
        QCOMPARE(window.tree().currentTagNodeId(), 2);
        QCOMPARE(window.mainView().shownFileIds(), QVector<qint64>{2});
        view->setCurrentIndex(window.fixedNode(AllHyperlinks));
        QCOMPARE(window.tree().currentTagNodeId(), 2);
        QTest::keyClick(view, Qt::Key_Return);
        QCOMPARE(window.tree().currentNodeType(), int(AllHyperlinks));
        QCOMPARE(window.mainView().shownFileIds().size(), 2);
    }

    void longNamesAreReachedSideways()
    {
        TreeWindow window;
        TBtreeView *view = window.nodeView();
        const QScrollBar *bar = view->horizontalScrollBar();
        window.tree().addNodesBelow(window.addTags({"a"_s, QString(200, QLatin1Char('w')), "c"_s}), 0);
        QTRY_VERIFY(bar->maximum() > 0);
        view->horizontalScrollBar()->setValue(bar->maximum());
        view->setCurrentIndex(window.node(2));
        const int shown = bar->value();
        QVERIFY(shown > 0 && view->visualRect(window.node(2)).left() >= 0);
        view->setCurrentIndex(window.node(1));
        QCOMPARE(bar->value(), shown);
        window.tree().removeNodes({2});
        QTRY_COMPARE(bar->maximum(), 0);
    }

    void actionsFollowTheCurrentNode()
    {
        TreeWindow window;
        window.tree().addNodesBelow(window.addTags({"a"_s}), 0);
        const QList<QAction *> actions = window.ui.nodeMenu->actions();
        QStringList texts;
        for (const QAction *action : actions)
            texts.append(action->text());
        QCOMPARE(texts, QStringList({"Delete"_s, "Tag Relationships Enabled"_s, "Tag Node Inverted"_s}));
        const auto enabled = [&actions] {
            return std::count_if(actions.begin(), actions.end(), [](QAction *a) { return a->isEnabled(); });
        };
        TBtreeView *view = window.nodeView();
        QCOMPARE(enabled(), 0);
        view->setCurrentIndex(window.node(1));
        QCOMPARE(enabled(), 3);
        QVERIFY(actions.at(1)->isChecked() && !actions.at(2)->isChecked());
        actions.at(1)->trigger();
        actions.at(2)->trigger();
        QVERIFY(!actions.at(1)->isChecked() && actions.at(2)->isChecked());
        QCOMPARE(window.rows("SELECT tr_options, inverted FROM tb_nodes"_s), QStringList("0|1"_s));
        QCOMPARE(window.outline(), "- a"_s);

        QStringList menu;
        answerMenu(-1, &menu);
        window.nodes->openContextMenu(centreOf(view, window.node(1)));
        QCOMPARE(menu, texts.mid(1) + texts.mid(0, 1) + QStringList("Delete with subtree"_s));

        view->setCurrentIndex(window.fixedNode(AllFiles));
        QCOMPARE(enabled(), 0);
        view->setCurrentIndex(window.node(1));
        window.detach();
        QCOMPARE(enabled(), 0);
        QVERIFY(!view->isEnabled() && !view->model());
        QCOMPARE(window.nodes->windowTitle(), "Browsing Tree"_s);
    }
};

QTEST_MAIN(TestTreeViews)

#include "tst_treeviews.moc"
