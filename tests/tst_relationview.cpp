#include "tests/support/treewindow.h"

#include <QApplication>
#include <QLoggingCategory>
#include <QTest>

#include <functional>
#include <utility>

class TestRelationView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false")); }
    void relationsAreDropped_data();
    void relationsAreDropped();
    void draggedEntriesTakeTheirSubtreeAlong_data();
    void draggedEntriesTakeTheirSubtreeAlong();
    void relationsAreDeleted_data();
    void relationsAreDeleted();
    void openRelationsStayOpen();
};

void TestRelationView::relationsAreDropped_data()
{
    QTest::addColumn<QString>("target"); // empty: beside all entries
    QTest::addColumn<QVector<qint64>>("tags");
    QTest::addColumn<bool>("isLegal");
    QTest::addColumn<QString>("paths");
    using Ids = QVector<qint64>;
    // Paths 1, 1.2, 1.2.3 and 4.
    QTest::newRow("below an entry") << "4" << Ids{3} << true << "1 1.2 1.2.3 4 4.3";
    QTest::newRow("a tag of the table alone") << "4" << Ids{1} << true << "1 1.2 1.2.3 4 4.1";
    QTest::newRow("two") << "1.2" << Ids{4, 5} << true << "1 1.2 1.2.3 1.2.4 1.2.5 4";
    QTest::newRow("at the top") << "" << Ids{2} << true << "1 1.2 1.2.3 2 4";
    QTest::newRow("on itself") << "4" << Ids{4} << false << "1 1.2 1.2.3 4";
    QTest::newRow("on a descendant") << "1.2.3" << Ids{1} << false << "1 1.2 1.2.3 4";
    QTest::newRow("at the top again") << "" << Ids{4} << false << "1 1.2 1.2.3 4";
    QTest::newRow("what came before stays") << "4" << Ids{5, 4, 2} << false << "1 1.2 1.2.3 4 4.5";
}

void TestRelationView::relationsAreDropped()
{
    QFETCH(QString, target);
    QFETCH(QVector<qint64>, tags);
    QFETCH(bool, isLegal);
    QFETCH(QString, paths);
    TreeWindow window;
    window.addTags(QStringLiteral("a b c d e").split(QLatin1Char(' ')));
    window.relations().addChildren(QString(), {1, 4});
    window.relations().addChildren(QStringLiteral("1"), {2});
    window.relations().addChildren(QStringLiteral("1.2"), {3});
    TRview *view = window.relationView();
    view->expandAll();
    const QModelIndex index = window.relation(qPrintable(target));
    const QPoint at = index.isValid() ? centreOf(view, index) : QPoint(20, view->viewport()->height() - 5);
    QCOMPARE(drop(view, at, *tagDrag(tags)), Qt::CopyAction);
    QVERIFY(window.takeBoxes().isEmpty()); // not before the drag has ended
    QCoreApplication::processEvents();
    QCOMPARE(window.takeBoxes(),
             isLegal ? QStringList()
                     : QStringList(QStringLiteral(
                           "Error creating tag relationship: This is an illegal tag relationship.")));
    QCOMPARE(window.paths(), paths);
    if (index.isValid())
        QVERIFY(view->isExpanded(index));

    const std::unique_ptr<QMimeData> files(IdListMime::pack(Constants::fileMimeType, {1}));
    QCOMPARE(drop(view, at, *files), Qt::IgnoreAction);
}

void TestRelationView::draggedEntriesTakeTheirSubtreeAlong_data()
{
    QTest::addColumn<QString>("dragged");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("added");
    // Paths 1, 1.2, 1.2.3, 1.2.4, 5, 5.2 and 6.1.
    QTest::newRow("a whole branch") << "1.2"
                                    << "6"
                                    << "6.2 6.2.3 6.2.4";
    QTest::newRow("the place without children") << "5.2"
                                                << "6"
                                                << "6.2";
    QTest::newRow("a tree") << "1"
                            << "5"
                            << "5.1 5.1.2 5.1.2.3 5.1.2.4";
    QTest::newRow("to the top") << "1.2"
                                << ""
                                << "2 2.3 2.4";
    QTest::newRow("with its target's tag inside") << "5"
                                                  << "1.2"
                                                  << "";
    QTest::newRow("with its target's ancestor inside") << "5"
                                                       << "1.2.3"
                                                       << "";
    QTest::newRow("on its own child") << "1"
                                      << "1.2"
                                      << "";
}

void TestRelationView::draggedEntriesTakeTheirSubtreeAlong()
{
    QFETCH(QString, dragged);
    QFETCH(QString, target);
    QFETCH(QString, added);
    TreeWindow window;
    window.addTags(QStringLiteral("a b c d e f").split(QLatin1Char(' ')));
    window.relations().addChildren(QString(), {1, 5, 6});
    window.relations().addChildren(QStringLiteral("1"), {2});
    window.relations().addChildren(QStringLiteral("1.2"), {3, 4});
    window.relations().addChildren(QStringLiteral("5"), {2});
    const QStringList before = window.paths().split(QLatin1Char(' '));
    TRview *view = window.relationView();
    view->expandAll();

    // The toolkit makes its drag as a child of the view; the drop comes while that drag runs.
    class DropInDrag : public QObject
    {
    public:
        std::function<void()> dropIt;
        bool eventFilter(QObject *, QEvent *event) override
        {
            if (event->type() == QEvent::ChildAdded && dropIt)
                std::exchange(dropIt, {})();
            return false;
        }
    } filter;
    const QModelIndex source = window.relation(qPrintable(dragged));
    const QModelIndex index = window.relation(qPrintable(target));
    const std::unique_ptr<QMimeData> data(view->model()->mimeData({source}));
    filter.dropIt = [&] {
        const QPoint at =
            index.isValid() ? centreOf(view, index) : QPoint(20, view->viewport()->height() - 5);
        drop(view, at, *data);
    };
    view->installEventFilter(&filter);
    const QPoint start = centreOf(view, source);
    QTest::mousePress(view->viewport(), Qt::LeftButton, {}, start);
    for (const int way : {2, 4}) {
        const QPoint at = start + QPoint(QApplication::startDragDistance() + way, 0);
        QMouseEvent move(QEvent::MouseMove, at, Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(view->viewport(), &move);
    }
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, start);
    QVERIFY2(!filter.dropIt, "no drag was started");
    QCoreApplication::processEvents();
    QCOMPARE(window.takeBoxes().size(), added.isEmpty() ? 1 : 0);
    QStringList expected = before;
    if (!added.isEmpty())
        expected += added.split(QLatin1Char(' '));
    expected.sort();
    QCOMPARE(window.paths(), expected.join(QLatin1Char(' ')));

    // Once the drag is over, the same tag comes alone.
    window.addTags({QStringLiteral("g")});
    window.relations().addChildren(QString(), {7});
    drop(view, centreOf(view, window.relation("7")), *data);
    QCOMPARE(window.relation("7").model()->rowCount(window.relation("7")), 1);
    QCOMPARE(view->model()->rowCount(window.relation("7").model()->index(0, 0, window.relation("7"))), 0);
}

void TestRelationView::relationsAreDeleted_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("agrees");
    QTest::addColumn<QString>("question");
    QTest::addColumn<QString>("paths");
    const QString question = QStringLiteral("Do you really want to delete a non-leaf node from this tree?");
    QTest::newRow("leaf") << "1.2" << false << ""
                          << "1 2 2.3";
    QTest::newRow("entry with children") << "2" << true << question << "1 1.2";
    QTest::newRow("cancelled") << "2" << false << question << "1 1.2 2 2.3";
}

void TestRelationView::relationsAreDeleted()
{
    QFETCH(QString, path);
    QFETCH(bool, agrees);
    QFETCH(QString, question);
    QFETCH(QString, paths);
    TreeWindow window;
    window.addTags(QStringLiteral("a b c").split(QLatin1Char(' ')));
    window.relations().addChildren(QString(), {1, 2});
    window.relations().addChildren(QStringLiteral("1"), {2});
    window.relations().addChildren(QStringLiteral("2"), {3});
    TRview *view = window.relationView();
    view->setCurrentIndex(window.relation(qPrintable(path)));
    window.answerBoxesWith(agrees ? QMessageBox::Ok : QMessageBox::Cancel);
    QTest::keyClick(view, Qt::Key_Delete);
    QCOMPARE(window.takeBoxes(), question.isEmpty() ? QStringList() : QStringList(question));
    QCOMPARE(window.paths(), paths);

    view->setCurrentIndex(window.relation("1"));
    view->deleteSelectedSubtree();
    QVERIFY(window.takeBoxes().isEmpty());
    QVERIFY(!window.relation("1").isValid());
}

void TestRelationView::openRelationsStayOpen()
{
    TreeWindow window;
    window.addTags(QStringLiteral("a b c d").split(QLatin1Char(' ')));
    window.relations().addChildren(QString(), {1, 2});
    window.relations().addChildren(QStringLiteral("1"), {2});
    window.relations().addChildren(QStringLiteral("1.2"), {3});
    window.relations().addChildren(QStringLiteral("2"), {3});
    TRview *view = window.relationView();
    view->expand(window.relation("1.2"));
    view->expand(window.relation("1"));
    view->setCurrentIndex(window.relation("1.2.3"));
    const auto check = [&] {
        QVERIFY(view->isExpanded(window.relation("1")) && view->isExpanded(window.relation("1.2")));
        QVERIFY(!view->isExpanded(window.relation("2")));
    };
    window.manager()->reloadAllData();
    check();
    QCOMPARE(view->currentIndex(), window.relation("1.2.3"));
    window.detach();
    QVERIFY(!view->isEnabled());
    window.reopen();
    window.attach();
    check();
}

QTEST_MAIN(TestRelationView)

#include "tst_relationview.moc"
