#include "tests/support/treewindow.h"

#include <QApplication>
#include <QScrollBar>

#include <functional>
#include <utility>

class TestRelationView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLoggingCategory::setFilterRules("default.debug=false"_s); }

    void relationsAreDropped_data()
    {
        QTest::addColumn<QString>("target"); // empty: beside all entries
        addColumns<QVector<qint64>, bool, QString>("tags", "isLegal", "paths");
        using Ids = QVector<qint64>;
        // Paths 1, 1.2, 1.2.3 and 4.
        addRow("below an entry", "4", Ids{3}, true, "1 1.2 1.2.3 4 4.3");
        addRow("a tag of the table alone", "4", Ids{1}, true, "1 1.2 1.2.3 4 4.1");
        addRow("two, one of another database", "1.2", Ids{4, 99, 5}, true, "1 1.2 1.2.3 1.2.4 1.2.5 4");
        addRow("at the top", "", Ids{2}, true, "1 1.2 1.2.3 2 4");
        addRow("on itself", "4", Ids{4}, false, "1 1.2 1.2.3 4");
        addRow("on a descendant", "1.2.3", Ids{1}, false, "1 1.2 1.2.3 4");
        addRow("at the top again", "", Ids{4}, false, "1 1.2 1.2.3 4");
        addRow("what came before stays", "4", Ids{5, 4, 2}, false, "1 1.2 1.2.3 4 4.5");
    }

    void relationsAreDropped()
    {
        QFETCH(QString, target);
        QFETCH(QVector<qint64>, tags);
        QFETCH(bool, isLegal);
        QFETCH(QString, paths);
        TreeWindow window;
        window.addTags("a b c d e"_s.split(QLatin1Char(' ')));
        window.relations().addChildren(QString(), {1, 4});
        window.relations().addChildren("1"_s, {2});
        window.relations().addChildren("1.2"_s, {3});
        TRview *view = window.relationView();
        view->expandAll();
        const QModelIndex index = window.relation(qPrintable(target));
        const QPoint at =
            index.isValid() ? centreOf(view, index) : QPoint(20, view->viewport()->height() - 5);
        QCOMPARE(drop(view->viewport(), at, *tagDrag(tags)), Qt::CopyAction);
        QVERIFY(window.takeBoxes().isEmpty()); // not before the drag has ended
        QCoreApplication::processEvents();
        QCOMPARE(
            window.takeBoxes(),
            isLegal ? QStringList()
                    : QStringList("Error creating tag relationship: This is an illegal tag relationship."_s));
        QCOMPARE(window.paths(), paths);
        if (index.isValid())
            QVERIFY(view->isExpanded(index));

        const auto files = fileDrag({1});
        QCOMPARE(drop(view->viewport(), at, *files), Qt::IgnoreAction);
    }

    void draggedEntriesTakeTheirSubtreeAlong_data()
    {
        addColumns<QString, QString, QString>("dragged", "target", "added");
        // Paths 1, 1.2, 1.2.3, 1.2.4, 5, 5.2 and 6.1.
        addRow("a whole branch", "1.2", "6", "6.2 6.2.3 6.2.4");
        addRow("the place without children", "5.2", "6", "6.2");
        addRow("a tree", "1", "5", "5.1 5.1.2 5.1.2.3 5.1.2.4");
        addRow("to the top", "1.2", "", "2 2.3 2.4");
        addRow("with its target's tag inside", "5", "1.2", "");
        addRow("with its target's ancestor inside", "5", "1.2.3", "");
        addRow("on its own child", "1", "1.2", "");
    }

    void draggedEntriesTakeTheirSubtreeAlong()
    {
        QFETCH(QString, dragged);
        QFETCH(QString, target);
        QFETCH(QString, added);
        TreeWindow window;
        window.addTags("a b c d e f"_s.split(QLatin1Char(' ')));
        window.relations().addChildren(QString(), {1, 5, 6});
        window.relations().addChildren("1"_s, {2});
        window.relations().addChildren("1.2"_s, {3, 4});
        window.relations().addChildren("5"_s, {2});
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
            drop(view->viewport(), at, *data);
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
        window.addTags({"g"_s});
        window.relations().addChildren(QString(), {7});
        drop(view->viewport(), centreOf(view, window.relation("7")), *data);
        QCOMPARE(window.relation("7").model()->rowCount(window.relation("7")), 1);
        QCOMPARE(view->model()->rowCount(window.relation("7").model()->index(0, 0, window.relation("7"))), 0);
    }

    void relationsAreDeleted_data()
    {
        addColumns<QString, bool, QString, QString>("path", "agrees", "question", "paths");
        const QString question = "Do you really want to delete a non-leaf node from this tree?"_s;
        addRow("leaf", "1.2", false, "", "1 2 2.3");
        addRow("entry with children", "2", true, question, "1 1.2");
        addRow("cancelled", "2", false, question, "1 1.2 2 2.3");
    }

    void relationsAreDeleted()
    {
        QFETCH(QString, path);
        QFETCH(bool, agrees);
        QFETCH(QString, question);
        QFETCH(QString, paths);
        TreeWindow window;
        window.addTags("a b c"_s.split(QLatin1Char(' ')));
        window.relations().addChildren(QString(), {1, 2});
        window.relations().addChildren("1"_s, {2});
        window.relations().addChildren("2"_s, {3});
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

    void openRelationsStayOpen()
    {
        TreeWindow window;
        window.addTags("a b c d"_s.split(QLatin1Char(' ')));
        window.relations().addChildren(QString(), {1, 2});
        window.relations().addChildren("1"_s, {2});
        window.relations().addChildren("1.2"_s, {3});
        window.relations().addChildren("2"_s, {3});
        TRview *view = window.relationView();
        view->setMaximumHeight(40);
        view->expand(window.relation("1.2"));
        view->expand(window.relation("1"));
        view->setCurrentIndex(window.relation("1.2.3"));
        const auto check = [&] {
            QVERIFY(view->isExpanded(window.relation("1")) && view->isExpanded(window.relation("1.2")));
            QVERIFY(!view->isExpanded(window.relation("2")));
        };
        QCoreApplication::processEvents();
        view->verticalScrollBar()->setValue(3);
        window.manager()->reloadAllData();
        check();
        QCOMPARE(view->currentIndex(), window.relation("1.2.3"));
        QCOMPARE(view->verticalScrollBar()->value(), 3);
        window.detach();
        QVERIFY(!view->isEnabled());
        window.reopen();
        window.attach();
        check();
    }
};

QTEST_MAIN(TestRelationView)

#include "tst_relationview.moc"
