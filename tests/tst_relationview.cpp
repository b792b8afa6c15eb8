#include "tests/support/dialoganswers.h"
#include "tests/support/treewindow.h"
#include "ui/tagging/namesline.h"

#include <QApplication>
#include <QScrollBar>

#include <functional>
#include <utility>

namespace {
/** Runs something as the toolkit makes its drag, which is a child of the view; the drop comes while it runs.
 */
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
};

/** A window with the tags 1 to 7 and the open paths 1, 1.2, 1.2.3, 1.2.4, 5, 5.2 and 6. */
class Window : public TreeWindow
{
public:
    Window() : view(relationView())
    {
        addTags("a b c d e f g"_s.split(QLatin1Char(' ')));
        relations().addChildren(QString(), {1, 5, 6});
        relations().addChildren("1"_s, {2});
        relations().addChildren("1.2"_s, {3, 4});
        relations().addChildren("5"_s, {2});
        view->expandAll();
    }
    QModelIndex at(const QString &path) { return relation(qPrintable(path)); }
    /** A place on an entry, or beside them all. */
    QPoint placeOf(const QString &path)
    {
        return path.isEmpty() ? QPoint(20, view->viewport()->height() - 5) : centreOf(view, at(path));
    }
    /** Which of the paths are new. */
    QString added()
    {
        QStringList now = paths().split(QLatin1Char(' '));
        for (const char *path : {"1", "1.2", "1.2.3", "1.2.4", "5", "5.2", "6"})
            now.removeOne(QLatin1String(path));
        return now.join(QLatin1Char(' '));
    }

    TRview *view;
};
} // namespace

/** The view of the tag relationships: drops of tags and of its own entries, deletions, reloads. */
class TestRelationView : public QObject
{
    Q_OBJECT

private slots:
    void groundFollowsThePalette()
    {
        const QPalette before = QApplication::palette();
        Window w;
        QCOMPARE(w.view->styleSheet(), QString()); // the light one is the program's
        QPalette dark = before;
        dark.setColor(QPalette::Base, QColor(35, 38, 41));
        dark.setColor(QPalette::Text, Qt::white);
        QApplication::setPalette(dark);
        QTRY_VERIFY(!w.view->styleSheet().isEmpty());
        const QColor ground = w.view->viewport()->grab().toImage().pixelColor(2, 2);
        QVERIFY(ground.lightness() < 100 && ground.green() > ground.red() && ground.green() > ground.blue());
        QApplication::setPalette(before);
        QTRY_COMPARE(w.view->styleSheet(), QString());
    }

    void initTestCase() { QLoggingCategory::setFilterRules("default.debug=false"_s); }

    void drops_data()
    {
        addColumns<QString, QVector<qint64>, QString, bool, QString>("dragged", "tags", "target", "isLegal",
                                                                     "added");
        using Ids = QVector<qint64>;
        addRow("below an entry", "", Ids{3}, "6", true, "6.3");
        addRow("a tag of the table alone", "", Ids{1}, "6", true, "6.1");
        addRow("two, one of another database", "", Ids{6, 99, 7}, "1.2", true, "1.2.6 1.2.7");
        addRow("at the top", "", Ids{2}, "", true, "2");
        addRow("on itself", "", Ids{6}, "6", false, "");
        addRow("on a descendant", "", Ids{1}, "1.2.3", false, "");
        addRow("at the top again", "", Ids{5}, "", false, "");
        addRow("what came before stays", "", Ids{7, 6, 2}, "6", false, "6.7");
        addRow("a whole branch", "1.2", Ids(), "6", true, "6.2 6.2.3 6.2.4");
        addRow("the place without children", "5.2", Ids(), "6", true, "6.2");
        addRow("a tree", "1", Ids(), "5", true, "5.1 5.1.2 5.1.2.3 5.1.2.4");
        addRow("a branch to the top", "1.2", Ids(), "", true, "2 2.3 2.4");
        addRow("with its target's tag inside", "5", Ids(), "1.2", false, "");
        addRow("with its target's ancestor inside", "5", Ids(), "1.2.3", false, "");
        addRow("on its own child", "1", Ids(), "1.2", false, "");
    }

    /** Of tags, or of a dragged entry, whose subtree comes along. */
    void drops()
    {
        QFETCH(QString, dragged);
        QFETCH(QVector<qint64>, tags);
        QFETCH(QString, target);
        QFETCH(bool, isLegal);
        Window w;
        QWidget *viewport = w.view->viewport();
        if (dragged.isEmpty()) {
            QCOMPARE(drop(viewport, w.placeOf(target), *tagDrag(tags)), Qt::CopyAction);
            QVERIFY(w.takeBoxes().isEmpty()); // not before the drag has ended
            QCOMPARE(drop(viewport, w.placeOf(target), *fileDrag({1})), Qt::IgnoreAction);
        } else {
            const std::unique_ptr<QMimeData> data(w.view->model()->mimeData({w.at(dragged)}));
            DropInDrag filter;
            filter.dropIt = [&] { drop(viewport, w.placeOf(target), *data); };
            w.view->installEventFilter(&filter);
            const QPoint start = w.placeOf(dragged);
            QTest::mousePress(viewport, Qt::LeftButton, {}, start);
            for (const int way : {2, 4}) {
                const QPoint at = start + QPoint(QApplication::startDragDistance() + way, 0);
                QMouseEvent move(QEvent::MouseMove, at, Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
                QCoreApplication::sendEvent(viewport, &move);
            }
            QTest::mouseRelease(viewport, Qt::LeftButton, {}, start);
            QVERIFY2(!filter.dropIt, "no drag was started");
        }
        QCoreApplication::processEvents();
        const QString box = "Error creating tag relationship: This is an illegal tag relationship."_s;
        QCOMPARE(w.takeBoxes(), isLegal ? QStringList() : QStringList(box));
        QTEST(w.added(), "added");
        QVERIFY(target.isEmpty() || w.view->isExpanded(w.at(target)));

        // Once the drag is over, the same tag comes alone.
        w.relations().addChildren(QString(), {7});
        const QString tag = dragged.isEmpty() ? "1"_s : dragged.right(1);
        drop(viewport, w.placeOf("7"_s), *tagDrag({tag.toLongLong()}));
        QVERIFY(w.at("7."_s + tag).isValid());
        QCOMPARE(w.view->model()->rowCount(w.at("7."_s + tag)), 0);
    }

    void refusedDropOpensNoBranch()
    {
        Window w;
        w.view->collapse(w.at("1"_s));
        QSignalSpy opened(w.view, &QTreeView::expanded);
        QCOMPARE(drop(w.view->viewport(), w.placeOf("1"_s), *tagDrag({99})), Qt::IgnoreAction);
        QVERIFY(!opened.wait(800)); // longer than a drag rests on a branch that opens
    }

    void deletions_data()
    {
        addColumns<QString, bool, int, QString>("path", "agrees", "questions", "paths");
        addRow("leaf", "5.2", false, 0, "1 1.2 1.2.3 1.2.4 5 6");
        addRow("entry with children", "1.2", true, 1, "1 5 5.2 6");
        addRow("cancelled", "1.2", false, 1, "1 1.2 1.2.3 1.2.4 5 5.2 6");
    }

    void deletions()
    {
        QFETCH(QString, path);
        QFETCH(bool, agrees);
        Window w;
        w.view->setCurrentIndex(w.at(path));
        w.answerBoxesWith(agrees ? QMessageBox::Ok : QMessageBox::Cancel);
        QTest::keyClick(w.view, Qt::Key_Delete);
        QTEST(w.takeBoxes().size(), "questions");
        QTEST(w.paths(), "paths");
        w.view->setCurrentIndex(w.at("6"_s));
        QCOMPARE(menuTexts([&w] { emit w.view->customContextMenuRequested(w.placeOf("6"_s)); }),
                 QStringList({"Delete Relationship Subtree"_s, "Add Tag..."_s, "Add Tag Below..."_s}));
        w.view->deleteSelectedSubtree();
        QVERIFY(w.takeBoxes().isEmpty() && !w.at("6"_s).isValid());
    }

    void typedTags_data()
    {
        addColumns<QString, QString, QString, QString>("key", "names", "added", "boxes");
        addRow("below", "Ins"_s, "g,New"_s, "6.7 6.8"_s, ""_s);
        addRow("at the top", "Shift+Ins"_s, "New"_s, "8"_s, ""_s);
        addRow("below itself", "Ins"_s, "g,f"_s, ""_s,
               "Error creating tag relationship: This is an illegal tag relationship."_s);
    }

    void typedTags()
    {
        QFETCH(QString, key);
        QFETCH(QString, names);
        QFETCH(QString, boxes);
        Window w;
        QVERIFY(QTest::qWaitForWindowActive(&w.window));
        w.view->setFocus();
        w.view->setCurrentIndex(w.at("6"_s));
        QTest::keySequence(w.view, QKeySequence(key));
        auto *line = w.relationsDock->findChild<NamesLine *>();
        QTest::keyClicks(line->focusProxy(), names);
        QTest::keyClick(line->focusProxy(), Qt::Key_Return);
        QTEST(w.added(), "added");
        QCOMPARE(w.takeBoxes().join(QLatin1Char('|')), boxes);
        QCOMPARE(line->isVisible(), !boxes.isEmpty());
    }

    void openRelationsStayOpen()
    {
        Window w;
        w.view->setMaximumHeight(40);
        w.view->collapse(w.at("5"_s));
        w.view->setCurrentIndex(w.at("1.2.3"_s));
        const auto check = [&w] {
            QVERIFY(w.view->isExpanded(w.at("1"_s)) && w.view->isExpanded(w.at("1.2"_s)));
            QVERIFY(!w.view->isExpanded(w.at("5"_s)));
        };
        QCoreApplication::processEvents();
        w.view->verticalScrollBar()->setValue(3);
        w.manager()->reloadAllData();
        check();
        QCOMPARE(w.view->currentIndex(), w.at("1.2.3"_s));
        QCOMPARE(w.view->verticalScrollBar()->value(), 3);
        w.detach();
        QVERIFY(!w.view->isEnabled());
        w.reopen();
        w.attach();
        check();
    }
};

QTEST_MAIN(TestRelationView)
#include "tst_relationview.moc"
