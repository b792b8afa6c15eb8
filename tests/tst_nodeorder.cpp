#include "app/settings/specialnodes.h"
#include "app/settings/viewsettings.h"
#include "models/base/naturalorder.h"
#include "models/trees/brtreesortermodel.h"
#include "models/trees/treeroles.h"
#include "tests/support/drags.h"
#include "tests/support/localcollection.h"

namespace {
const int fixedRows = 6;

/** A collection with its tree as the order shows it. */
class Tree : public LocalCollection
{
public:
    void sortBy(int sorting)
    {
        set("PreferencesDialog/nodeSortingType", sorting);
        tree().reloadSorting();
    }
    BrTreeSorterModel *sorter() { return tree().sorterModel(); }
    /** The node of an id, or all files for 0. */
    QModelIndex node(qint64 id) { return sorter()->indexOfNode(id == 0 ? AllFiles : TagNode, id); }
    /** The names of the tag nodes below a node. */
    QString below(qint64 id = 0)
    {
        QStringList names;
        const QModelIndex parent = node(id);
        for (int row = id == 0 ? fixedRows : 0; row < sorter()->rowCount(parent); ++row)
            names.append(sorter()->index(row, 0, parent).data().toString());
        return names.join(QLatin1Char(','));
    }
};
} // namespace

/** The order of the browsing tree: by name, by id, and by hand, where it is kept. */
class TestNodeOrder : public QObject
{
    Q_OBJECT

private slots:
    void nodesStandInOrder_data()
    {
        addColumns<int, QString, QString>("sorting", "made", "shown");
        const int byName = ViewSettings::AlphabeticalSorting;
        addRow("names without case", byName, "pear,Apple,fig"_s, "Apple,fig,pear"_s);
        addRow("numbers by value", byName, "Job 10,Job 9,Job 2"_s, "Job 2,Job 9,Job 10"_s);
        addRow("numbers inside", byName, "a10b,a10a,a9z"_s, "a9z,a10a,a10b"_s);
        addRow("longer than any integer", byName, "v99999999999999999999999,v100000000000000000000000,v3"_s,
               "v3,v99999999999999999999999,v100000000000000000000000"_s);
        addRow("digits first", byName, "b,a,-,7"_s, "7,-,a,b"_s);
        addRow("a beginning before the whole", byName, "ab,a,abc"_s, "a,ab,abc"_s);
        addRow("leading zeros", byName, "07b,7a,006"_s, "006,7a,07b"_s);
        addRow("only the case differs", byName, "FIG,fig,Fig"_s, "FIG,fig,Fig"_s);
        addRow("letters beyond ASCII last", byName, "Ökonomie,zebra"_s, "zebra,Ökonomie"_s);
        addRow("by hand without an order", int(ViewSettings::ManualSorting), "c,a,b"_s, "c,a,b"_s);
        addRow("by id", 3, "c,a,b"_s, "c,a,b"_s);
        addRow("by id for an unknown way", 77, "c,a,b"_s, "c,a,b"_s);
    }

    void nodesStandInOrder()
    {
        QFETCH(QString, made);
        QFETCH(QString, shown);
        QFETCH(int, sorting);
        Tree tree;
        tree.sortBy(sorting);
        tree.tree().addNodesBelow(tree.addTags(made.split(QLatin1Char(','))), 0);
        QCOMPARE(tree.below(), shown);
        for (int row = 0; row < fixedRows; ++row)
            QCOMPARE(tree.sorter()->index(row, 0, tree.node(0)).data().toString(),
                     SpecialNodes::shortTexts().values()[row]);
        tree.reopen();
        QCOMPARE(tree.below(), shown);
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
        addColumns<int, int, int, bool, QString>("moved", "sibling", "row", "below", "expected");
        addRow("to the top", 2, -1, 0, false, "c,a,b,d"_s);
        addRow("to the bottom", 0, -1, 4, false, "b,c,d,a"_s);
        addRow("up", 3, -1, 1, false, "a,d,b,c"_s);
        addRow("down", 0, -1, 3, false, "b,c,a,d"_s);
        addRow("to its own row", 1, -1, 1, false, "a,b,c,d"_s);
        addRow("to the row behind itself", 1, -1, 2, false, "a,b,c,d"_s);
        addRow("above a sibling", 3, 1, -1, false, "a,d,b,c"_s);
        addRow("below a sibling", 3, 1, -1, true, "a,b,d,c"_s);
        addRow("below the last", 0, 3, -1, true, "b,c,d,a"_s);
        addRow("on itself", 1, 1, -1, true, "a,b,c,d"_s);
    }

    void nodesAreMovedByHand()
    {
        QFETCH(int, moved);
        QFETCH(int, sibling); // or -1: between rows
        QFETCH(int, row);
        QFETCH(bool, below);
        QFETCH(QString, expected);
        Tree tree;
        const QVector<qint64> tags = tree.addTags({"a"_s, "b"_s, "c"_s, "d"_s});
        for (const qint64 id : {0, 1}) {
            tree.tree().addNodesBelow(tags, id);
            const QModelIndex parent = tree.node(id);
            const int first = id == 0 ? fixedRows : 0;
            QMimeData data;
            fillNodeDrag(data, tree.sorter()->index(first + moved, 0, parent).data(NodeRole::Id).toLongLong(),
                         below);
            const bool between = sibling < 0;
            QVERIFY(tree.sorter()->dropMimeData(
                &data, Qt::MoveAction, between ? first + row : -1, between ? 0 : -1,
                between ? parent : tree.sorter()->index(first + sibling, 0, parent)));
            QTRY_COMPARE(tree.below(id), expected);
        }
        tree.reopen();
        QCOMPARE(tree.below(), expected);
        QCOMPARE(tree.below(1), expected);
    }

    void newNodesTakePlacesAndGiveThemBack()
    {
        Tree tree;
        const QVector<qint64> tags = tree.addTags("a b c x y"_s.split(QLatin1Char(' ')));
        tree.tree().addNodesBelow(tags.mid(0, 3), 0);
        tree.tree().addNodesAbove(tags.mid(3), 2);
        tree.tree().addNodesAbove({tags.at(4)}, 1);
        QCOMPARE(tree.below(), "y,x,c"_s);
        tree.reopen();
        QCOMPARE(tree.below(), "y,x,c"_s);
        tree.tags().removeTags(tags.mid(3));
        QCOMPARE(tree.below(), "a,b,c"_s);
        // The database gives the highest id again; the new node is a new one for the order too.
        QMimeData data;
        fillNodeDrag(data, 3);
        QVERIFY(tree.sorter()->dropMimeData(&data, Qt::MoveAction, fixedRows, 0, tree.node(0)));
        QTRY_COMPARE(tree.below(), "c,a,b"_s);
        tree.tree().removeNodes({3});
        tree.tree().addNodesBelow({tags.at(2)}, 0);
        QCOMPARE(tree.manager()->nodes().keys(), QList<qint64>({1, 2, 3}));
        tree.reopen();
        QCOMPARE(tree.below(), "a,b,c"_s);
    }

    void dropsAreJudged_data()
    {
        addColumns<int, int, int, int, bool>("moved", "targetType", "target", "row", "accepted");
        // Nodes 1 and 2 at the top, 3 and 4 below 1, 5 below 2.
        addRow("top node on its sibling", 1, int(TagNode), 2, -1, true);
        addRow("top node behind the fixed rows", 2, int(AllFiles), 0, 6, true);
        addRow("top node at the end", 1, int(AllFiles), 0, 8, true);
        addRow("top node among the fixed rows", 1, int(AllFiles), 0, 3, false);
        addRow("top node on all files itself", 1, int(AllFiles), 0, -1, false);
        addRow("top node on a fixed node", 1, int(AllInternalFiles), -1, -1, false);
        addRow("child on its sibling", 3, int(TagNode), 4, -1, true);
        addRow("child between its siblings", 3, int(TagNode), 1, 0, true);
        addRow("child on its parent", 3, int(TagNode), 1, -1, false);
        addRow("child below another parent", 3, int(TagNode), 2, 0, false);
        addRow("child on another branch", 3, int(TagNode), 5, -1, false);
        addRow("child to the top", 3, int(AllFiles), 0, 6, false);
        addRow("unknown node", 99, int(TagNode), 1, -1, false);
    }

    void dropsAreJudged()
    {
        QFETCH(int, moved);
        QFETCH(int, targetType);
        QFETCH(int, target);
        QFETCH(int, row);
        QFETCH(bool, accepted);
        Tree tree;
        const QVector<qint64> tags = tree.addTags({"one"_s, "two"_s});
        tree.tree().addNodesBelow(tags, 0);
        tree.tree().addNodesBelow(tags, 1);
        tree.tree().addNodesBelow({tags.first()}, 2);
        const QModelIndex parent = tree.sorter()->indexOfNode(NodeType(targetType), target);
        QVERIFY(parent.isValid());
        const int column = row < 0 ? -1 : 0;
        QMimeData data;
        fillNodeDrag(data, moved);
        const auto canDrop = [&](const QMimeData &dragged, const QModelIndex &on) {
            return tree.sorter()->canDropMimeData(&dragged, Qt::MoveAction, row, column, on);
        };
        QCOMPARE(canDrop(data, parent), accepted);
        QVERIFY(!canDrop(data, QModelIndex()) && !canDrop(*tagDrag({moved}), parent));
        QCOMPARE(parent.flags().testFlag(Qt::ItemIsDropEnabled),
                 targetType == TagNode || targetType == AllFiles);
        QCOMPARE(parent.flags().testFlag(Qt::ItemIsDragEnabled), targetType == TagNode);
        QCOMPARE(tree.sorter()->dropMimeData(&data, Qt::MoveAction, row, column, parent), accepted);

        tree.sortBy(ViewSettings::AlphabeticalSorting);
        QVERIFY(!tree.node(2).flags().testFlag(Qt::ItemIsDragEnabled));
        QVERIFY(!tree.sorter()->dropMimeData(&data, Qt::MoveAction, row, column,
                                             tree.sorter()->indexOfNode(NodeType(targetType), target)));
    }
};

QTEST_MAIN(TestNodeOrder)
#include "tst_nodeorder.moc"
