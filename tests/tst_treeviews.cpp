#include "core/tbnode.h"
#include "tests/support/treewindow.h"
#include "ui/views/viewstyle.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QLoggingCategory>
#include <QPainter>
#include <QStyleOption>
#include <QTest>
#include <QTimer>

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
    void initTestCase() { QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false")); }
    void tagsBecomeNodes_data();
    void tagsBecomeNodes();
    void filesGetTheTagsOfANode_data();
    void filesGetTheTagsOfANode();
    void urlsAreAdded_data();
    void urlsAreAdded();
    void foldersBecomeNodes();
    void nodesChangePlaces_data();
    void nodesChangePlaces();
    void currentNodeFollowsADragAndComesBack();
    void openBranchesStayOpen();
    void nodesAreDeleted_data();
    void nodesAreDeleted();
    void nodesAreShownByClickAndReturn();
    void actionsFollowTheCurrentNode();
    void indicatorIsALine();
};

void TestTreeViews::tagsBecomeNodes_data()
{
    QTest::addColumn<qint64>("target"); // 0 all files, below it minus a type
    QTest::addColumn<bool>("alt");
    QTest::addColumn<bool>("asks");
    QTest::addColumn<int>("answer"); // -2 where no question is expected
    QTest::addColumn<QString>("outline");
    QTest::newRow("on a node") << qint64(2) << false << false << -2 << "a[b[c d x y]]";
    QTest::newRow("on a node with Alt") << qint64(2) << true << false << -2 << "a[x[y[b[c d]]]]";
    QTest::newRow("with Alt though it would ask") << qint64(2) << true << true << -2 << "a[x[y[b[c d]]]]";
    QTest::newRow("asked, above") << qint64(2) << false << true << 0 << "a[x[y[b[c d]]]]";
    QTest::newRow("asked, below") << qint64(2) << false << true << 1 << "a[b[c d x y]]";
    QTest::newRow("asked, no answer") << qint64(2) << false << true << -1 << "a[b[c d x y]]";
    QTest::newRow("on all files") << qint64(0) << false << true << -2 << "a[b[c d]] x y";
    QTest::newRow("on all files with Alt") << qint64(0) << true << false << -2 << "a[b[c d]] x y";
    QTest::newRow("above a top node") << qint64(1) << true << false << -2 << "x[y[a[b[c d]]]]";
    QTest::newRow("on a fixed node") << qint64(-AllExternalFiles) << false << true << -2 << "a[b[c d]]";
    QTest::newRow("on nothing") << qint64(-100) << true << false << -2 << "a[b[c d]]";
}

void TestTreeViews::tagsBecomeNodes()
{
    QFETCH(qint64, target);
    QFETCH(bool, alt);
    QFETCH(bool, asks);
    QFETCH(int, answer);
    QFETCH(QString, outline);
    TreeWindow window;
    window.set("PreferencesDialog/nodeCreationOptions", asks);
    const QVector<qint64> tags = window.addTags(QStringLiteral("a b c d x y").split(QLatin1Char(' ')));
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
        drop(view, at, *tagDrag(tags.mid(4)), alt ? Qt::AltModifier : Qt::NoModifier);
    QCOMPARE(action, target >= 0 ? Qt::CopyAction : Qt::IgnoreAction);
    QCOMPARE(window.outline(), outline);
    QCOMPARE(asked, answer > -2 ? QStringList({QStringLiteral("Add above"), QStringLiteral("Add below")})
                                : QStringList());
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

void TestTreeViews::filesGetTheTagsOfANode_data()
{
    QTest::addColumn<qint64>("target");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<QString>("links");
    QTest::newRow("a node") << qint64(1) << true << "1|1 3|1";
    QTest::newRow("below an inverted node") << qint64(3) << true << "1|1 1|3 3|1 3|3";
    QTest::newRow("all files") << qint64(0) << true << "";
    for (int type = AllFilesWithTags; type <= RecentlyAddedFiles; ++type)
        QTest::addRow("fixed node %d", type) << qint64(-type) << false << "";
}

void TestTreeViews::filesGetTheTagsOfANode()
{
    QFETCH(qint64, target);
    QFETCH(bool, accepted);
    QFETCH(QString, links);
    TreeWindow window;
    window.addFiles(3);
    const QVector<qint64> tags = window.addTags(QStringLiteral("a b c").split(QLatin1Char(' ')));
    for (int i = 0; i < 3; ++i)
        window.tree().addNodesBelow({tags.at(i)}, i);
    window.tree().changeInversion(2, true);
    window.nodes->slotExpandAllFiles();
    const QModelIndex index = target > 0    ? window.node(target)
                              : target == 0 ? window.fixedNode(AllFiles)
                                            : window.fixedNode(NodeType(-target));
    const std::unique_ptr<QMimeData> data(IdListMime::pack(Constants::fileMimeType, {1, 3}));
    const Qt::DropAction action = drop(window.nodeView(), centreOf(window.nodeView(), index), *data);
    QCOMPARE(action, accepted ? Qt::CopyAction : Qt::IgnoreAction);
    QCOMPARE(window.rows(QStringLiteral("SELECT file_id, tag_id FROM file_tag ORDER BY 1,2"))
                 .join(QLatin1Char(' ')),
             links);
}

void TestTreeViews::urlsAreAdded_data()
{
    QTest::addColumn<qint64>("target");
    QTest::addColumn<QString>("tags");
    QTest::newRow("on a node") << qint64(2) << "a,b";
    QTest::newRow("on all files") << qint64(0) << "";
}

void TestTreeViews::urlsAreAdded()
{
    QFETCH(qint64, target);
    QFETCH(QString, tags);
    TreeWindow window;
    const QVector<qint64> ids = window.addTags({QStringLiteral("a"), QStringLiteral("b")});
    window.tree().addNodesBelow({ids.at(0)}, 0);
    window.tree().addNodesBelow({ids.at(1)}, 1);
    window.nodes->slotExpandAllFiles();
    QFile file(window.folder() + QStringLiteral("/50% o'clock.txt"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("text") == 4);
    file.close();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(file.fileName()), QUrl(QStringLiteral("https://example.org/x?y=1"))});
    const QModelIndex index = target > 0 ? window.node(target) : window.fixedNode(AllFiles);
    // Even where moving is proposed: whoever offers the files would delete them.
    QCOMPARE(drop(window.nodeView(), centreOf(window.nodeView(), index), data, Qt::ShiftModifier),
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

void TestTreeViews::foldersBecomeNodes()
{
    TreeWindow window;
    window.tree().addNodesBelow(window.addTags({QStringLiteral("a")}), 0);
    window.nodes->slotExpandAllFiles();
    QVERIFY(QDir(window.folder()).mkpath(QStringLiteral("Trips/Rome")));
    QFile file(window.folder() + QStringLiteral("/Trips/Rome/map.txt"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("map") == 3);
    file.close();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(window.folder() + QStringLiteral("/Trips"))});
    QCOMPARE(drop(window.nodeView(), centreOf(window.nodeView(), window.node(1)), data), Qt::CopyAction);
    window.waitForWorker();
    QCOMPARE(window.outline(), QStringLiteral("a[Trips[Rome]]"));
    QVERIFY(window.nodeView()->isExpanded(window.node(1)));
    QCOMPARE(window.rows(QStringLiteral("SELECT tag_name FROM file_tag NATURAL JOIN tags ORDER BY 1")),
             QStringList({QStringLiteral("Rome"), QStringLiteral("Trips"), QStringLiteral("a")}));
}

void TestTreeViews::nodesChangePlaces_data()
{
    QTest::addColumn<qint64>("moved");
    QTest::addColumn<qint64>("target");
    QTest::addColumn<int>("fromCentre"); // pixels
    QTest::addColumn<QString>("outline");
    // a is 1, b 2, c 3 at the top, and d 4 stands below a.
    QTest::newRow("above a sibling") << qint64(3) << qint64(1) << -2 << "c a[d] b";
    QTest::newRow("below a sibling") << qint64(1) << qint64(2) << 2 << "b a[d] c";
    QTest::newRow("between rows") << qint64(3) << qint64(2) << -100 << "a[d] c b";
    QTest::newRow("behind the last row") << qint64(1) << qint64(3) << 100 << "b c a[d]";
    QTest::newRow("on a node elsewhere") << qint64(2) << qint64(4) << 2 << "a[d] b c";
    QTest::newRow("on all files") << qint64(2) << qint64(0) << 0 << "a[d] b c";
}

void TestTreeViews::nodesChangePlaces()
{
    QFETCH(qint64, moved);
    QFETCH(qint64, target);
    QFETCH(int, fromCentre);
    QFETCH(QString, outline);
    TreeWindow window;
    const QVector<qint64> tags = window.addTags(QStringLiteral("a b c d").split(QLatin1Char(' ')));
    window.tree().addNodesBelow(tags.mid(0, 3), 0);
    window.tree().addNodesBelow(tags.mid(3), 1);
    window.nodes->slotExpandAllFiles();
    TBtreeView *view = window.nodeView();
    const QModelIndex index = target > 0 ? window.node(target) : window.fixedNode(AllFiles);
    const int half = view->visualRect(index).height() / 2;
    const QPoint at = centreOf(view, index) + QPoint(0, qBound(-half, fromCentre, half));
    const std::unique_ptr<QMimeData> data(view->model()->mimeData({window.node(moved)}));
    QVERIFY(data);
    drop(view, at, *data);
    QCoreApplication::processEvents();
    QCOMPARE(window.outline(), outline);
    QVERIFY(view->isExpanded(window.node(1)));
    QCOMPARE(window.manager()->nodes().value(4)->parentNode()->id(), 1);
    window.detach();
    window.reopen();
    QCOMPARE(window.outline(), outline);
}

void TestTreeViews::currentNodeFollowsADragAndComesBack()
{
    TreeWindow window;
    const QVector<qint64> tags = window.addTags({QStringLiteral("a"), QStringLiteral("b")});
    window.tree().addNodesBelow(tags, 0);
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
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(view->viewport(), &leave);
    QCOMPARE(view->currentIndex(), window.node(1));
    QCOMPARE(window.tree().currentNodeType(), 0); // hovering shows no files

    QMimeData text;
    text.setText(QStringLiteral("vorna/tagids"));
    QCOMPARE(drop(view, over, text), Qt::IgnoreAction);
}

void TestTreeViews::openBranchesStayOpen()
{
    TreeWindow window;
    const QVector<qint64> tags = window.addTags(QStringLiteral("a b c d x").split(QLatin1Char(' ')));
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

    drop(view, centreOf(view, window.node(2)), *tagDrag({tags.at(4)}), Qt::AltModifier);
    QCOMPARE(window.outline(), QStringLiteral("a[x[b[c[d]]]]"));
    check({1, 2}, {3});
    view->setCurrentIndex(window.node(5));
    window.nodes->deleteSelectedNodes();
    QCOMPARE(window.outline(), QStringLiteral("a[b[c[d]]]"));
    check({1, 2}, {3});
}

void TestTreeViews::nodesAreDeleted_data()
{
    QTest::addColumn<QVector<qint64>>("selected");
    QTest::addColumn<bool>("subtree");
    QTest::addColumn<bool>("agrees");
    QTest::addColumn<QString>("question");
    QTest::addColumn<QString>("outline");
    const QString one = QStringLiteral("Do you really want to delete a non-leaf node from this tree?");
    const QString more = QStringLiteral("Do you really want to delete non-leaf nodes from this tree?");
    using Ids = QVector<qint64>;
    QTest::newRow("leaf") << Ids{3} << false << false << ""
                          << "a[b] d";
    QTest::newRow("node") << Ids{2} << false << true << one << "a[c] d";
    QTest::newRow("node, cancelled") << Ids{2} << false << false << one << "a[b[c]] d";
    QTest::newRow("nodes") << Ids{1, 2} << false << true << more << "c d";
    QTest::newRow("leaves of two branches") << Ids{3, 4} << true << false << ""
                                            << "a[b]";
    QTest::newRow("subtree") << Ids{2} << true << true << one << "a d";
    QTest::newRow("subtree, cancelled") << Ids{1} << true << false << one << "a[b[c]] d";
    QTest::newRow("overlapping subtrees") << Ids{2, 1} << true << true << more << "d";
    QTest::newRow("none") << Ids{} << false << true << ""
                          << "a[b[c]] d";
}

void TestTreeViews::nodesAreDeleted()
{
    QFETCH(QVector<qint64>, selected);
    QFETCH(bool, subtree);
    QFETCH(bool, agrees);
    QFETCH(QString, question);
    QFETCH(QString, outline);
    TreeWindow window;
    const QVector<qint64> tags = window.addTags(QStringLiteral("a b c d").split(QLatin1Char(' ')));
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
    QCOMPARE(window.rows(QStringLiteral("SELECT child_id FROM tb_node_links EXCEPT SELECT node_id FROM "
                                        "tb_nodes")),
             QStringList());
    window.detach();
    window.reopen();
    QCOMPARE(window.outline(), outline);
}

void TestTreeViews::nodesAreShownByClickAndReturn()
{
    TreeWindow window;
    window.addFiles(2);
    const QVector<qint64> tags = window.addTags({QStringLiteral("a"), QStringLiteral("b")});
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

void TestTreeViews::actionsFollowTheCurrentNode()
{
    TreeWindow window;
    window.tree().addNodesBelow(window.addTags({QStringLiteral("a")}), 0);
    const QList<QAction *> actions = window.ui.nodeMenu->actions();
    QStringList texts;
    for (const QAction *action : actions)
        texts.append(action->text());
    QCOMPARE(texts, QStringList({QStringLiteral("Delete"), QStringLiteral("Tag Relationships Enabled"),
                                 QStringLiteral("Tag Node Inverted")}));
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
    QCOMPARE(window.rows(QStringLiteral("SELECT tr_options, inverted FROM tb_nodes")),
             QStringList(QStringLiteral("0|1")));
    QCOMPARE(window.outline(), QStringLiteral("- a"));

    QStringList menu;
    answerMenu(-1, &menu);
    window.nodes->openContextMenu(centreOf(view, window.node(1)));
    QCOMPARE(menu, texts.mid(1) + texts.mid(0, 1) + QStringList(QStringLiteral("Delete with subtree")));

    view->setCurrentIndex(window.fixedNode(AllFiles));
    QCOMPARE(enabled(), 0);
    view->setCurrentIndex(window.node(1));
    window.detach();
    QCOMPARE(enabled(), 0);
    QVERIFY(!view->isEnabled() && !view->model());
    QCOMPARE(window.nodes->windowTitle(), QStringLiteral("Browsing Tree"));
}

void TestTreeViews::indicatorIsALine()
{
    TBtreeView view;
    for (const bool isAbove : {true, false}) {
        QImage image(20, 20, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        QStyleOption option;
        option.rect = QRect(2, 5, 10, 10);
        view.setProperty("is_above", isAbove);
        ViewStyle().drawPrimitive(QStyle::PE_IndicatorItemViewItemDrop, &option, &painter, &view);
        painter.end();
        QVector<int> painted;
        for (int y = 0; y < image.height(); ++y) {
            if (image.pixelColor(7, y) != QColor(Qt::white))
                painted.append(y);
        }
        QCOMPARE(painted, QVector<int>{isAbove ? 5 : 14});
    }
}

QTEST_MAIN(TestTreeViews)

#include "tst_treeviews.moc"
