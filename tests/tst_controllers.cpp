#include "core/collectionsettings.h"
#include "tests/support/localcollection.h"

#include <algorithm>
#include <functional>

namespace {
using Ids = QVector<qint64>;

/** Whether tags may be put below a path, told from the stored paths alone. */
bool isLegalByPaths(const QStringList &paths, const QString &target, const Ids &tagIds)
{
    const auto holdsOne = [&tagIds](const QStringList &pieces) {
        return std::any_of(pieces.cbegin(), pieces.cend(),
                           [&tagIds](const QString &piece) { return tagIds.contains(piece.toLongLong()); });
    };
    const QChar dot = QLatin1Char('.');
    if (!paths.contains(target)) {
        if (!target.isEmpty())
            return true;
        return std::none_of(paths.cbegin(), paths.cend(),
                            [&](const QString &path) { return !path.contains(dot) && holdsOne({path}); });
    }
    if (holdsOne(target.split(dot)))
        return false;
    return std::none_of(paths.cbegin(), paths.cend(), [&](const QString &path) {
        return path.startsWith(target + dot) && holdsOne(path.mid(target.size() + 1).split(dot));
    });
}

QStringList shownNames(TagsController &tags)
{
    QStringList names;
    const QAbstractItemModel *model = tags.filterProxy();
    for (int row = 0; row < model->rowCount(); ++row)
        names.append(model->index(row, 0).data().toString());
    names.sort();
    return names;
}
} // namespace

/** What the controllers add to the manager: checks, selections, peers and settings. */
class TestControllers : public QObject
{
    Q_OBJECT

private slots:
    void nameIsComparedAsTypedAndStoredSimplified()
    {
        LocalCollection collection;
        QSignalSpy duplicated(&collection.tags(), &TagsController::tagDuplicated);
        QVERIFY(collection.tags().addTag("  two   words "_s) > 0);
        QCOMPARE(shownNames(collection.tags()), QStringList{"two words"_s});
        QVERIFY(collection.tags().addTag("two words "_s) > 0);
        QVERIFY(duplicated.isEmpty());
        QCOMPARE(collection.tags().addTag("two words"_s), qint64(0));
        QCOMPARE(duplicated.size(), 1);
        const qint64 other = collection.tags().addTag("Two words"_s);
        QVERIFY(!collection.tags().renameTag(other, "two words"_s));
        QCOMPARE(duplicated.size(), 2);
        QVERIFY(collection.tags().renameTag(other, " third "_s));
        QCOMPARE(collection.tags().tagsNames({other, 99}), (QHash<qint64, QString>{{other, "third"_s}}));
    }

    void tagInUse_data()
    {
        addColumns<QString, bool>("use", "isInUse");
        addRow("nothing", QString(), false);
        addRow("group only", "group"_s, false);
        addRow("node", "node"_s, true);
        addRow("relationship", "relationship"_s, true);
        addRow("file", "file"_s, true);
    }

    void tagInUse()
    {
        QFETCH(QString, use);
        LocalCollection collection;
        collection.addFiles(1);
        const qint64 other = collection.tags().addTag("other"_s);
        const qint64 tagId = collection.tags().addTag("tag"_s);
        if (use == QLatin1String("group"))
            collection.groups().assignTags({tagId}, {collection.groups().addGroup("g"_s)});
        else if (use == QLatin1String("node"))
            collection.tree().addNodesBelow({tagId}, 0);
        else if (use == QLatin1String("relationship"))
            collection.relations().addChildren({}, {tagId});
        else if (use == QLatin1String("file"))
            collection.tags().linkFilesToTag(tagId, {1});
        QTEST(collection.tags().isTagInUse({other, tagId}), "isInUse");
        QVERIFY(!collection.tags().isTagInUse({other}));
        QVERIFY(!collection.tags().isTagInUse({}));
    }

    void fileCountsFollowEveryChange()
    {
        LocalCollection collection;
        collection.addFiles(5);
        TagsController &tags = collection.tags();
        const qint64 parent = tags.addTag("parent"_s, {1, 2});
        const qint64 child = tags.addTag("child"_s, {3, 4, 5});
        collection.relations().addChildren({}, {parent});
        collection.relations().addChildren(QString::number(parent), {child});
        QCOMPARE(tags.filesCount(parent), qint64(2));
        tags.linkFilesToTag(parent, {5, 1});
        QCOMPARE(tags.filesCount(parent), qint64(3));
        collection.mainView().unlinkTags({3}, {child});
        QCOMPARE(tags.filesCount(child), qint64(2));
        QSignalSpy removed(collection.manager(), &DatabaseManger::filesRemoved);
        collection.mainView().deleteFiles({4});
        QTRY_COMPARE(removed.size(), 1);
        QCOMPARE(tags.filesCount(child), qint64(1));
        tags.removeTags({child});
        QCOMPARE(tags.filesCount(child), qint64(0));
    }

    void removedGroupLosesItsTab()
    {
        LocalCollection collection;
        const qint64 groupId = collection.groups().addGroup("g"_s);
        collection.groups().removeGroups({groupId});
        QVERIFY(collection.groups().tabOrder().isEmpty());
        // The id may come again: the new group is no tab by the old one's place.
        const qint64 next = collection.groups().addGroup("h"_s, false);
        collection.manager()->reloadAllData();
        QVERIFY(!collection.groups().groups()->value(next)->isVisible());
    }

    void shownNodeFollowsEdits_data()
    {
        addColumns<int, Ids>("edit", "shown");
        addRow("relationships off", 0, Ids{1});
        addRow("inverted itself", 1, Ids{3});
        addRow("inverted above", 2, Ids{5});
        addRow("another relative", 3, Ids({1, 2, 3}));
        addRow("a relative less", 4, Ids{1});
        addRow("a node above", 5, Ids{2});
        addRow("no node above", 6, Ids({1, 2, 5}));
    }

    void shownNodeFollowsEdits()
    {
        QFETCH(int, edit);
        QFETCH(Ids, shown);
        LocalCollection collection;
        collection.addFiles(5);
        TagsController &tags = collection.tags();
        const qint64 animal = tags.addTag("animal"_s, {1, 5});
        const qint64 lion = tags.addTag("lion"_s, {2});
        const qint64 bear = tags.addTag("bear"_s, {3});
        const qint64 house = tags.addTag("house"_s, {1, 2, 3});
        const qint64 garden = tags.addTag("garden"_s, {2, 4});
        RelationsController &relations = collection.relations();
        const QString place = QString::number(animal);
        relations.addChildren({}, {animal});
        relations.addChildren(place, {lion});
        BrowsTreeController &tree = collection.tree();
        const qint64 top = collection.manager()->addNodeBelow(house, 0);
        const qint64 nodeId = collection.manager()->addNodeBelow(animal, top);
        tree.nodeActivated(TagNode, nodeId, {house, animal}, {});
        QCOMPARE(collection.mainView().shownFileIds(), Ids({1, 2}));
        const std::function<void()> edits[] = {
            [&] { tree.changeTrOption(nodeId, false); },
            [&] { tree.changeInversion(nodeId, true); },
            [&] { tree.changeInversion(top, true); },
            [&] { relations.addChildren(place, {bear}); },
            [&] { relations.removeNode(place + QLatin1Char('.') + QString::number(lion)); },
            [&] { tree.addNodesAbove({garden}, nodeId); },
            [&] { tree.removeNodes({top}); },
        };
        edits[edit]();
        QTRY_COMPARE(collection.mainView().shownFileIds(), shown);
        QCOMPARE(tree.currentTagNodeId(), nodeId);
    }

    void newTagIsNoRelativeByItsId_data()
    {
        QTest::addColumn<QString>("way");
        for (const char *way : {"all of the tags", "any of the tags", "node"})
            addRow(way, QString::fromLatin1(way));
    }

    void newTagIsNoRelativeByItsId()
    {
        QFETCH(QString, way);
        LocalCollection collection;
        collection.addFiles(3);
        const qint64 animal = collection.tags().addTag("animal"_s, {1});
        const qint64 lion = collection.tags().addTag("lion"_s, {2});
        collection.relations().addChildren({}, {animal});
        collection.relations().addChildren(QString::number(animal), {lion});
        const qint64 nodeId = collection.addNode(animal);
        if (way == QLatin1String("node"))
            collection.activate(nodeId);
        else if (way == QLatin1String("any of the tags"))
            collection.tags().showTagsEitherOr({animal});
        else
            collection.tags().showTagsSelected({animal});
        QCOMPARE(collection.mainView().shownFileIds(), Ids({1, 2}));
        collection.tags().removeTags({lion});
        QCOMPARE(collection.tags().addTag("house"_s, {3}), lion); // a file gives the id away again
        QCOMPARE(collection.mainView().shownFileIds(), Ids{1});
    }

    void legalityAgreesWithThePaths()
    {
        QRandomGenerator random(5);
        for (int round = 0; round < 10; ++round) {
            LocalCollection collection;
            QStringList paths;
            for (int i = 0; i < 30; ++i) {
                QStringList targets = paths;
                targets.append(QString());
                targets.append("99.1"_s);
                for (const QString &target : qAsConst(targets)) {
                    Ids tags = {1 + random.bounded(8)};
                    if (random.bounded(3) == 0)
                        tags.append(1 + random.bounded(8));
                    QCOMPARE(collection.relations().isLegal(target, tags),
                             isLegalByPaths(paths, target, tags));
                }
                QString target;
                if (!paths.isEmpty() && random.bounded(4) > 0)
                    target = paths.at(random.bounded(paths.size()));
                const qint64 tagId = 1 + random.bounded(8);
                if (!collection.relations().isLegal(target, {tagId}))
                    continue;
                collection.relations().addChildren(target, {tagId});
                paths.append((target.isEmpty() ? QString() : target + QLatin1Char('.')) +
                             QString::number(tagId));
            }
            QCOMPARE(collection.manager()->relationNodes().size(), paths.size());
        }
    }

    void relativesOfAllPlacesCount()
    {
        LocalCollection collection;
        RelationsController &relations = collection.relations();
        relations.addChildren({}, {1, 2});
        relations.addChildren("1"_s, {5});
        relations.addChildren("2"_s, {5});
        relations.addChildren("1.5"_s, {6});
        relations.addChildren("2.5"_s, {6, 7});
        Ids below = relations.descendantsOf({5});
        std::sort(below.begin(), below.end());
        QCOMPARE(below, Ids({6, 6, 7}));
        QCOMPARE(relations.ancestorsOf({7}), Ids({2, 5}));
        QVERIFY(relations.descendantsOf({}).isEmpty());
        relations.removeNode("2"_s);
        QCOMPARE(relations.descendantsOf({5}), Ids{6});
        QCOMPARE(collection.rows("SELECT relationship_path FROM tag_relationships ORDER BY 1")
                     .join(QLatin1Char(',')),
                 "1,1.5,1.5.6"_s);
    }
};

QTEST_MAIN(TestControllers)
#include "tst_controllers.moc"
