#include "app/constants.h"
#include "app/specialnodes.h"
#include "app/viewsettings.h"
#include "core/controllers/browstreecontroller.h"
#include "core/tbnode.h"
#include "models/brtreesortermodel.h"
#include "models/idlistmime.h"
#include "models/naturalorder.h"
#include "models/treeroles.h"
#include "tests/support/drags.h"
#include "tests/support/localcollection.h"

namespace {

const int fixedRows = 6;

QStringList namesBelow(const QModelIndex &parent, int firstRow = 0)
{
    QStringList names;
    for (int row = firstRow; row < parent.model()->rowCount(parent); ++row)
        names.append(parent.model()->index(row, 0, parent).data().toString());
    return names;
}

} // namespace

class TestNodeOrder : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLoggingCategory::setFilterRules("default.debug=false"_s); }

    void nodesStandInOrder_data()
    {
        addColumns<int, QStringList, QStringList>("sorting", "made", "shown");
        const auto list = [](const char *names) { return QString::fromUtf8(names).split(QLatin1Char(',')); };
        const int byName = ViewSettings::AlphabeticalSorting;
        addRow("names without case", byName, list("pear,Apple,fig"), list("Apple,fig,pear"));
        addRow("numbers by value", byName, list("Job 10,Job 9,Job 2"), list("Job 2,Job 9,Job 10"));
        addRow("numbers inside", byName, list("a10b,a10a,a9z"), list("a9z,a10a,a10b"));
        addRow("longer than any integer", byName,
               list("v99999999999999999999999,v100000000000000000000000,v3"),
               list("v3,v99999999999999999999999,v100000000000000000000000"));
        addRow("digits first", byName, list("b,a,-,7"), list("7,-,a,b"));
        addRow("a beginning before the whole", byName, list("ab,a,abc"), list("a,ab,abc"));
        addRow("leading zeros", byName, list("07b,7a,006"), list("006,7a,07b"));
        addRow("only the case differs", byName, list("FIG,fig,Fig"), list("FIG,fig,Fig"));
        addRow("letters beyond ASCII last", byName, list("Ökonomie,zebra"), list("zebra,Ökonomie"));
        addRow("by hand without an order", int(ViewSettings::ManualSorting), list("c,a,b"), list("c,a,b"));
        addRow("by id", 3, list("c,a,b"), list("c,a,b"));
        addRow("by id for an unknown way", 77, list("c,a,b"), list("c,a,b"));
    }

    void nodesStandInOrder()
    {
        QFETCH(int, sorting);
        QFETCH(QStringList, made);
        QFETCH(QStringList, shown);
        LocalCollection fixture;
        fixture.set("PreferencesDialog/nodeSortingType", sorting);
        BrowsTreeController *tree = &fixture.tree();
        tree->reloadSorting();
        tree->addNodesBelow(fixture.addTags(made), 0);
        const QModelIndex allFiles = tree->sorterModel()->index(0, 0);
        QCOMPARE(namesBelow(allFiles, fixedRows), shown);
        QCOMPARE(namesBelow(allFiles).mid(0, fixedRows), SpecialNodes::shortTexts().values());

        fixture.reopen();
        QCOMPARE(namesBelow(fixture.tree().sorterModel()->index(0, 0), fixedRows), shown);
    }

    void naturalOrderIsAnOrder()
    {
        // A sort needs it: never both ways, and without circles.
        QRandomGenerator random(4);
        const QString alphabet = "0179aB-é "_s;
        QStringList texts;
        for (int i = 0; i < 60; ++i) {
            QString text;
            for (int length = int(random.bounded(6)); length > 0; --length)
                text.append(alphabet.at(int(random.bounded(alphabet.size()))));
            texts.append(text);
        }
        for (const QString &a : qAsConst(texts)) {
            for (const QString &b : qAsConst(texts)) {
                QVERIFY2(!naturalLessThan(a, b) || !naturalLessThan(b, a), qPrintable(a + b));
                for (const QString &c : qAsConst(texts)) {
                    if (naturalLessThan(a, b) && naturalLessThan(b, c))
                        QVERIFY2(naturalLessThan(a, c), qPrintable(a + QLatin1Char('/') + b + c));
                }
            }
        }
    }

    void nodesAreMovedByHand_data()
    {
        QTest::addColumn<QString>("moved");
        QTest::addColumn<QString>("sibling"); // empty: between rows
        QTest::addColumn<int>("row");         // among the tag nodes
        addColumns<bool, QString>("below", "expected");
        addRow("to the top", "c", "", 0, false, "c,a,b,d");
        addRow("to the bottom", "a", "", 4, false, "b,c,d,a");
        addRow("up", "d", "", 1, false, "a,d,b,c");
        addRow("down", "a", "", 3, false, "b,c,a,d");
        addRow("to its own row", "b", "", 1, false, "a,b,c,d");
        addRow("to the row behind itself", "b", "", 2, false, "a,b,c,d");
        addRow("above a sibling", "d", "b", -1, false, "a,d,b,c");
        addRow("below a sibling", "d", "b", -1, true, "a,b,d,c");
        addRow("below the last", "a", "d", -1, true, "b,c,d,a");
        addRow("on itself", "b", "b", -1, true, "a,b,c,d");
    }

    void nodesAreMovedByHand()
    {
        QFETCH(QString, moved);
        QFETCH(QString, sibling);
        QFETCH(int, row);
        QFETCH(bool, below);
        QFETCH(QString, expected);
        LocalCollection fixture;
        const QStringList names{"a"_s, "b"_s, "c"_s, "d"_s};
        const QVector<qint64> tags = fixture.addTags(names);
        fixture.tree().addNodesBelow(tags, 0);
        const qint64 first = fixture.manager()->nodes().keys().first();
        fixture.tree().addNodesBelow(tags, first);

        for (const qint64 parentId : {qint64(0), first}) {
            BrTreeSorterModel *sorter = fixture.tree().sorterModel();
            const auto parent = [&] {
                return sorter->indexOfNode(parentId == 0 ? AllFiles : TagNode, parentId);
            };
            const int offset = parentId == 0 ? fixedRows : 0;
            const auto child = [&](const QString &name) {
                return sorter->index(offset + names.indexOf(name), 0, parent());
            };
            QMimeData data;
            fillNodeDrag(data, child(moved).data(NodeRole::Id).toLongLong(), below);
            const bool isDone = sibling.isEmpty()
                                    ? sorter->dropMimeData(&data, Qt::MoveAction, offset + row, 0, parent())
                                    : sorter->dropMimeData(&data, Qt::MoveAction, -1, -1, child(sibling));
            QVERIFY(isDone);
            QTRY_COMPARE(namesBelow(parent(), offset).join(QLatin1Char(',')), expected);
        }
        fixture.reopen();
        BrTreeSorterModel *sorter = fixture.tree().sorterModel();
        QCOMPARE(namesBelow(sorter->index(0, 0), fixedRows).join(QLatin1Char(',')), expected);
        QCOMPARE(namesBelow(sorter->indexOfNode(TagNode, first)).join(QLatin1Char(',')), expected);
    }

    void nodesAboveTakeThePlace()
    {
        LocalCollection fixture;
        const QVector<qint64> tags = fixture.addTags("a b c x y"_s.split(QLatin1Char(' ')));
        fixture.tree().addNodesBelow(tags.mid(0, 3), 0);
        fixture.tree().addNodesAbove(tags.mid(3), 2);
        fixture.tree().addNodesAbove({tags.at(4)}, 1);
        const auto check = [&fixture](const QString &shown) {
            for (int round = 0; round < 2; ++round) {
                const QModelIndex allFiles = fixture.tree().sorterModel()->index(0, 0);
                QCOMPARE(namesBelow(allFiles, fixedRows).join(QLatin1Char(',')), shown);
                fixture.reopen();
            }
        };
        check("y,x,c"_s);
        // And give it back to what rises when they go.
        fixture.tags().removeTags(tags.mid(3));
        check("a,b,c"_s);
    }

    void placesOfRemovedNodesAreGivenUp()
    {
        LocalCollection fixture;
        BrowsTreeController *tree = &fixture.tree();
        const QVector<qint64> tags = fixture.addTags({"a"_s, "b"_s, "c"_s});
        tree->addNodesBelow(tags, 0);
        const QList<qint64> nodes = fixture.manager()->nodes().keys();
        QMimeData data;
        fillNodeDrag(data, nodes.at(2));
        QVERIFY(tree->sorterModel()->dropMimeData(&data, Qt::MoveAction, fixedRows, 0,
                                                  tree->sorterModel()->index(0, 0)));
        // The database gives the highest id again; the new node is a new one for the order too.
        tree->removeNodes({nodes.at(2)});
        tree->addNodesBelow({tags.at(2)}, 0);
        QCOMPARE(fixture.manager()->nodes().keys(), nodes);
        fixture.reopen();
        QCOMPARE(namesBelow(fixture.tree().sorterModel()->index(0, 0), fixedRows).join(QLatin1Char(',')),
                 "a,b,c"_s);
    }

    void dropsAreJudged_data()
    {
        addColumns<qint64, int, qint64, int, bool>("moved", "targetType", "target", "row", "accepted");
        const auto row = [](const char *name, qint64 moved, int type, qint64 target, int at, bool accepted) {
            addRow(name, moved, type, target, at, accepted);
        };
        // Nodes 1 and 2 at the top, 3 and 4 below 1, 5 below 2.
        row("top node on its sibling", 1, TagNode, 2, -1, true);
        row("top node behind the fixed rows", 2, AllFiles, 0, 6, true);
        row("top node at the end", 1, AllFiles, 0, 8, true);
        row("top node among the fixed rows", 1, AllFiles, 0, 3, false);
        row("top node on all files itself", 1, AllFiles, 0, -1, false);
        row("top node on a fixed node", 1, AllInternalFiles, -1, -1, false);
        row("child on its sibling", 3, TagNode, 4, -1, true);
        row("child between its siblings", 3, TagNode, 1, 0, true);
        row("child on its parent", 3, TagNode, 1, -1, false);
        row("child below another parent", 3, TagNode, 2, 0, false);
        row("child on another branch", 3, TagNode, 5, -1, false);
        row("child to the top", 3, AllFiles, 0, 6, false);
        row("unknown node", 99, TagNode, 1, -1, false);
        row("not a node", -1, TagNode, 1, -1, false);
    }

    void dropsAreJudged()
    {
        QFETCH(qint64, moved);
        QFETCH(int, targetType);
        QFETCH(qint64, target);
        QFETCH(int, row);
        QFETCH(bool, accepted);
        LocalCollection fixture;
        BrowsTreeController *tree = &fixture.tree();
        const QVector<qint64> tags = fixture.addTags({"one"_s, "two"_s});
        tree->addNodesBelow(tags, 0);
        tree->addNodesBelow(tags, 1);
        tree->addNodesBelow({tags.first()}, 2);
        BrTreeSorterModel *sorter = tree->sorterModel();
        const QModelIndex parent = sorter->indexOfNode(NodeType(targetType), target);
        QVERIFY(parent.isValid());
        const int column = row < 0 ? -1 : 0;

        QMimeData data;
        fillNodeDrag(data, moved);
        QCOMPARE(sorter->canDropMimeData(&data, Qt::MoveAction, row, column, parent), accepted);
        QCOMPARE(sorter->dropMimeData(&data, Qt::MoveAction, row, column, parent), accepted);
        QVERIFY(!sorter->canDropMimeData(&data, Qt::MoveAction, row, column, QModelIndex()));
        const std::unique_ptr<QMimeData> foreign(IdListMime::pack(Constants::tagMimeType, {moved}));
        QVERIFY(!sorter->canDropMimeData(foreign.get(), Qt::CopyAction, row, column, parent));

        const bool takesFiles = targetType == TagNode || targetType == AllFiles;
        QCOMPARE(parent.flags().testFlag(Qt::ItemIsDropEnabled), takesFiles);
        QCOMPARE(parent.flags().testFlag(Qt::ItemIsDragEnabled), targetType == TagNode);
    }

    void nothingIsMovedOutsideOfManualSorting()
    {
        LocalCollection fixture;
        BrowsTreeController *tree = &fixture.tree();
        tree->addNodesBelow(fixture.addTags({"one"_s, "two"_s}), 0);
        BrTreeSorterModel *sorter = tree->sorterModel();
        QMimeData data;
        fillNodeDrag(data, 1, true);
        QVERIFY(sorter->canDropMimeData(&data, Qt::MoveAction, -1, -1, sorter->indexOfNode(TagNode, 2)));
        fixture.set("PreferencesDialog/nodeSortingType", int(ViewSettings::AlphabeticalSorting));
        tree->reloadSorting();
        const QModelIndex target = sorter->indexOfNode(TagNode, 2);
        QVERIFY(!target.flags().testFlag(Qt::ItemIsDragEnabled));
        QVERIFY(!sorter->dropMimeData(&data, Qt::MoveAction, -1, -1, target));
    }
};

QTEST_MAIN(TestNodeOrder)

#include "tst_nodeorder.moc"
