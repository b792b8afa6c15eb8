#include "core/collectionsettings.h"
#include "tests/support/localcollection.h"
#include "tests/support/settingssandbox.h"

#include <QAbstractItemModel>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QTest>

#include <algorithm>

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
    void cleanup() { SettingsSandbox::clear(); }

    void nameIsComparedAsTypedAndStoredSimplified();
    void takenNameIsRefused();
    void tagInUse_data();
    void tagInUse();
    void fileCountsFollowEveryChange();
    void filterTakesWildcards();
    void removedTagLeavesTheSelection();
    void groupNamesAreUnique();
    void tabsFollowTheirSettings();
    void removedGroupLosesItsTab();
    void assignedTagsJoinTheGroup();
    void filesOnANodeGetItsTags();
    void droppedFileOnANodeGetsItsTags();
    void nodeSelectsItsFiles();
    void widerNodeCountsTagsBelow();
    void newTagIsNoRelativeByItsId_data();
    void newTagIsNoRelativeByItsId();
    void removedNodeIsNoLongerCurrent();
    void reloadKeepsTheCurrentNode();
    void nodesAboveAndBelow();
    void relationshipIsLegal_data();
    void relationshipIsLegal();
    void legalityAgreesWithThePaths();
    void relativesOfAllPlacesCount();

private:
    SettingsSandbox m_settings;
};

void TestControllers::nameIsComparedAsTypedAndStoredSimplified()
{
    LocalCollection collection;
    QSignalSpy duplicated(&collection.tags(), &TagsController::tagDuplicated);
    QVERIFY(collection.tags().addTag(QStringLiteral("  two   words ")) > 0);
    QCOMPARE(shownNames(collection.tags()), QStringList{QStringLiteral("two words")});
    QVERIFY(collection.tags().addTag(QStringLiteral("two words ")) > 0);
    QVERIFY(duplicated.isEmpty());
    QCOMPARE(collection.tags().addTag(QStringLiteral("two words")), qint64(0));
    QCOMPARE(duplicated.size(), 1);
    QVERIFY(collection.tags().addTag(QStringLiteral("Two words")) > 0);
    QCOMPARE(shownNames(collection.tags()).size(), 3);
}

void TestControllers::takenNameIsRefused()
{
    LocalCollection collection;
    const qint64 first = collection.tags().addTag(QStringLiteral("first"));
    const qint64 second = collection.tags().addTag(QStringLiteral("second"));
    QSignalSpy duplicated(&collection.tags(), &TagsController::tagDuplicated);
    QVERIFY(!collection.tags().renameTag(second, QStringLiteral("first")));
    QCOMPARE(duplicated.size(), 1);
    QVERIFY(collection.tags().renameTag(second, QStringLiteral(" third ")));
    QCOMPARE(collection.tags().tagsNames({first, second, 99}),
             (QHash<qint64, QString>{{first, QStringLiteral("first")}, {second, QStringLiteral("third")}}));
}

void TestControllers::tagInUse_data()
{
    QTest::addColumn<QString>("use");
    QTest::addColumn<bool>("isInUse");
    QTest::newRow("nothing") << QString() << false;
    QTest::newRow("group only") << QStringLiteral("group") << false;
    QTest::newRow("node") << QStringLiteral("node") << true;
    QTest::newRow("relationship") << QStringLiteral("relationship") << true;
    QTest::newRow("file") << QStringLiteral("file") << true;
}

void TestControllers::tagInUse()
{
    QFETCH(QString, use);
    LocalCollection collection;
    collection.addFiles(1);
    const qint64 other = collection.tags().addTag(QStringLiteral("other"));
    const qint64 tagId = collection.tags().addTag(QStringLiteral("tag"));
    if (use == QLatin1String("group"))
        collection.groups().assignTags({tagId}, {collection.groups().addGroup(QStringLiteral("g"))});
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

void TestControllers::fileCountsFollowEveryChange()
{
    LocalCollection collection;
    collection.addFiles(5);
    TagsController &tags = collection.tags();
    const qint64 parent = tags.addTag(QStringLiteral("parent"), {1, 2});
    const qint64 child = tags.addTag(QStringLiteral("child"), {3, 4, 5});
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

void TestControllers::filterTakesWildcards()
{
    LocalCollection collection;
    for (const char *name : {"Anna", "Banane", "b.n", "xyz"})
        collection.tags().addTag(QString::fromLatin1(name));
    collection.tags().setTagFilter(QStringLiteral("aN"));
    QCOMPARE(shownNames(collection.tags()), QStringList({QStringLiteral("Anna"), QStringLiteral("Banane")}));
    collection.tags().setTagFilter(QStringLiteral("b.n"));
    QCOMPARE(shownNames(collection.tags()), QStringList{QStringLiteral("b.n")});
    collection.tags().setTagFilter(QStringLiteral("b?n*e"));
    QCOMPARE(shownNames(collection.tags()), QStringList{QStringLiteral("Banane")});
    collection.tags().setTagFilter(QString());
    QCOMPARE(shownNames(collection.tags()).size(), 4);
}

void TestControllers::removedTagLeavesTheSelection()
{
    LocalCollection collection;
    collection.addFiles(3);
    const qint64 gone = collection.tags().addTag(QStringLiteral("gone"), {1});
    const qint64 kept = collection.tags().addTag(QStringLiteral("kept"), {1, 2});
    collection.tags().showTagsSelected({gone, kept});
    QCOMPARE(collection.mainView().shownFileIds(), Ids{1});
    collection.tags().removeTags({gone});
    QCOMPARE(collection.tags().selectedTagIds(), Ids{kept});
    QCOMPARE(collection.mainView().shownFileIds(), Ids({1, 2}));
}

void TestControllers::groupNamesAreUnique()
{
    LocalCollection collection;
    QSignalSpy duplicated(&collection.groups(), &GroupsController::groupDuplicated);
    const qint64 first = collection.groups().addGroup(QStringLiteral("first"));
    const qint64 second = collection.groups().addGroup(QStringLiteral(" second "));
    QCOMPARE(collection.groups().addGroup(QStringLiteral("second")), qint64(0));
    QVERIFY(!collection.groups().renameGroup(second, QStringLiteral("first")));
    QCOMPARE(duplicated.size(), 2);
    QVERIFY(collection.groups().renameGroup(first, QStringLiteral("first")));
    QCOMPARE(collection.value("SELECT group_concat(name) FROM tag_groups"), QStringLiteral("first,second"));
}

void TestControllers::tabsFollowTheirSettings()
{
    LocalCollection collection;
    GroupsController &groups = collection.groups();
    const qint64 a = groups.addGroup(QStringLiteral("a"));
    const qint64 b = groups.addGroup(QStringLiteral("b"), false);
    const qint64 c = groups.addGroup(QStringLiteral("c"));
    const auto order = [](std::initializer_list<qint64> ids) {
        QList<int> list;
        for (const qint64 id : ids)
            list.append(int(id));
        return list;
    };
    QCOMPARE(groups.tabOrder(), order({a, c}));
    groups.setTabOrder(order({c, a}));
    groups.setGroupVisible({b}, true);
    groups.setGroupVisible({a}, false);
    QCOMPARE(groups.tabOrder(), order({c, b}));
    collection.manager()->reloadAllData();
    QVERIFY(!groups.groups()->value(a)->isVisible());
    QVERIFY(groups.groups()->value(b)->isVisible());
    QVERIFY(groups.groups()->value(c)->isVisible());
}

void TestControllers::removedGroupLosesItsTab()
{
    LocalCollection collection;
    const qint64 groupId = collection.groups().addGroup(QStringLiteral("g"));
    collection.groups().removeGroups({groupId});
    QVERIFY(collection.groups().tabOrder().isEmpty());
    // The id may come again: the new group is no tab by the old one's place.
    const qint64 next = collection.groups().addGroup(QStringLiteral("h"), false);
    collection.manager()->reloadAllData();
    QVERIFY(!collection.groups().groups()->value(next)->isVisible());
}

void TestControllers::assignedTagsJoinTheGroup()
{
    LocalCollection collection;
    Ids tags;
    for (int i = 0; i < 3; ++i)
        tags.append(collection.tags().addTag(QString::number(i)));
    const qint64 first = collection.groups().addGroup(QStringLiteral("first"));
    const qint64 second = collection.groups().addGroup(QStringLiteral("second"));
    collection.groups().assignTags({tags.at(0), tags.at(1)}, {first});
    collection.groups().assignTags({tags.at(1), tags.at(2)}, {first, second});
    QCOMPARE(collection.groups().groups()->value(first)->tags().size(), 3);
    QCOMPARE(collection.groups().groups()->value(second)->tags().size(), 2);
    QCOMPARE(collection.value("SELECT count(*) FROM tag_group_links"), QStringLiteral("5"));
}

void TestControllers::filesOnANodeGetItsTags()
{
    LocalCollection collection;
    collection.addFiles(2);
    const qint64 a = collection.tags().addTag(QStringLiteral("a"));
    const qint64 b = collection.tags().addTag(QStringLiteral("b"));
    const qint64 c = collection.tags().addTag(QStringLiteral("c"));
    DatabaseManger *manager = collection.manager();
    const qint64 top = manager->addNodeBelow(a, 0);
    const qint64 inverted = manager->addNodeBelow(b, top);
    const qint64 leaf = manager->addNodeBelow(c, inverted);
    collection.tree().changeInversion(inverted, true);
    collection.tree().addFilesToNode(leaf, {2});
    QCOMPARE(manager->file(2)->tags(), Ids({a, c}));
    collection.tree().addFilesToNode(0, {1});
    QVERIFY(manager->file(1)->tags().isEmpty());
}

void TestControllers::droppedFileOnANodeGetsItsTags()
{
    LocalCollection collection;
    const qint64 a = collection.tags().addTag(QStringLiteral("a"));
    const qint64 nodeId = collection.manager()->addNodeBelow(a, 0);
    const QString path = collection.folder() + QStringLiteral("/note.txt");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("text");
    file.close();
    collection.tree().addUrlsToNode(nodeId, {QUrl::fromLocalFile(path)});
    QTRY_COMPARE(collection.manager()->files().size(), 1);
    QCOMPARE((*collection.manager()->files().begin())->tags(), Ids{a});
}

void TestControllers::nodeSelectsItsFiles()
{
    LocalCollection collection;
    collection.addFiles(4);
    const qint64 a = collection.tags().addTag(QStringLiteral("a"), {1, 2, 3});
    const qint64 b = collection.tags().addTag(QStringLiteral("b"), {2, 3});
    collection.tags().addTag(QStringLiteral("c"), {4});
    const qint64 top = collection.manager()->addNodeBelow(a, 0);
    const qint64 low = collection.manager()->addNodeBelow(b, top);
    collection.tags().showTagsEitherOr({a});
    QSignalSpy current(&collection.tree(), &BrowsTreeController::currentNodeChanged);
    collection.tree().nodeActivated(TagNode, low, {a, b}, {});
    QCOMPARE(collection.mainView().shownFileIds(), Ids({2, 3}));
    QCOMPARE(collection.tree().currentTagNodeId(), low);
    QVERIFY(collection.tags().selectedTagIds().isEmpty());
    collection.tree().nodeActivated(TagNode, low, {a}, {b});
    QCOMPARE(collection.mainView().shownFileIds(), Ids{1});
    collection.tree().nodeActivated(AllFiles, 0, {}, {});
    QCOMPARE(collection.mainView().shownFileIds().size(), 4);
    QCOMPARE(collection.tree().currentNodeType(), int(AllFiles));
    QCOMPARE(collection.tree().currentTagNodeId(), qint64(0));
    collection.tags().showTagsSelected({b});
    QCOMPARE(collection.tree().currentNodeType(), 0);
    QCOMPARE(current.size(), 3);
}

void TestControllers::widerNodeCountsTagsBelow()
{
    LocalCollection collection;
    collection.addFiles(3);
    const qint64 animal = collection.tags().addTag(QStringLiteral("animal"), {1});
    const qint64 lion = collection.tags().addTag(QStringLiteral("lion"), {2});
    collection.relations().addChildren({}, {animal});
    collection.relations().addChildren(QString::number(animal), {lion});
    const qint64 nodeId = collection.manager()->addNodeBelow(animal, 0);
    collection.tree().nodeActivated(TagNode, nodeId, {animal}, {});
    QCOMPARE(collection.mainView().shownFileIds(), Ids({1, 2}));
    collection.tree().changeTrOption(nodeId, false);
    collection.tree().nodeActivated(TagNode, nodeId, {animal}, {});
    QCOMPARE(collection.mainView().shownFileIds(), Ids{1});
}

void TestControllers::newTagIsNoRelativeByItsId_data()
{
    QTest::addColumn<bool>("isEitherOr");
    QTest::newRow("all of the tags") << false;
    QTest::newRow("any of the tags") << true;
}

void TestControllers::newTagIsNoRelativeByItsId()
{
    QFETCH(bool, isEitherOr);
    LocalCollection collection;
    collection.addFiles(3);
    const qint64 animal = collection.tags().addTag(QStringLiteral("animal"), {1});
    const qint64 lion = collection.tags().addTag(QStringLiteral("lion"), {2});
    collection.relations().addChildren({}, {animal});
    collection.relations().addChildren(QString::number(animal), {lion});
    if (isEitherOr)
        collection.tags().showTagsEitherOr({animal});
    else
        collection.tags().showTagsSelected({animal});
    collection.tags().removeTags({lion});
    QCOMPARE(collection.tags().addTag(QStringLiteral("house"), {3}), lion);
    QCOMPARE(collection.mainView().shownFileIds(), Ids{1});
}

void TestControllers::removedNodeIsNoLongerCurrent()
{
    LocalCollection collection;
    const qint64 a = collection.tags().addTag(QStringLiteral("a"));
    const qint64 top = collection.manager()->addNodeBelow(a, 0);
    const qint64 low = collection.manager()->addNodeBelow(a, top);
    collection.tree().nodeActivated(TagNode, low, {a}, {});
    collection.tree().removeNodes({top});
    QCOMPARE(collection.tree().currentTagNodeId(), low);
    collection.tree().removeNodesWithSubtree({low});
    QCOMPARE(collection.tree().currentNodeType(), 0);
}

void TestControllers::reloadKeepsTheCurrentNode()
{
    LocalCollection collection;
    const qint64 a = collection.tags().addTag(QStringLiteral("a"));
    const qint64 nodeId = collection.manager()->addNodeBelow(a, 0);
    collection.tree().nodeActivated(TagNode, nodeId, {a}, {});
    collection.manager()->reloadAllData();
    QCOMPARE(collection.tree().currentTagNodeId(), nodeId);
    collection.run(QStringLiteral("DELETE FROM tb_nodes"));
    collection.manager()->reloadAllData();
    QCOMPARE(collection.tree().currentTagNodeId(), qint64(0));
}

void TestControllers::nodesAboveAndBelow()
{
    LocalCollection collection;
    const qint64 a = collection.tags().addTag(QStringLiteral("a"));
    const qint64 b = collection.tags().addTag(QStringLiteral("b"));
    const qint64 c = collection.tags().addTag(QStringLiteral("c"));
    collection.tree().addTagNodes({a}, -1, true);
    const qint64 nodeId = collection.manager()->nodes().keys().first();
    collection.tree().addTagNodes({b, c}, nodeId, true);
    collection.tree().addTagNodes({b, c}, nodeId, false);
    const TBnode *node = collection.tree().nodeById(nodeId);
    QCOMPARE(node->parentNode()->tagId(), c);
    QCOMPARE(node->parentNode()->parentNode()->tagId(), b);
    QCOMPARE(node->parentNode()->parentNode()->parentNode(), collection.tree().nodeById(0));
    QCOMPARE(node->childrenCount(), 2);
    QVERIFY(collection.tree().hasChildren({nodeId}));
    QVERIFY(!collection.tree().hasChildren({node->childAt(0)->id()}));
}

void TestControllers::relationshipIsLegal_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<Ids>("tags");
    QTest::addColumn<bool>("legal");
    QTest::newRow("itself") << QStringLiteral("7") << Ids{7} << false;
    QTest::newRow("its own ancestor") << QStringLiteral("7.12") << Ids{7} << false;
    QTest::newRow("stands below already") << QStringLiteral("7") << Ids{3} << false;
    QTest::newRow("below another parent") << QStringLiteral("9") << Ids{3} << true;
    QTest::newRow("top level already") << QString() << Ids{5, 9} << false;
    QTest::newRow("lower in some tree only") << QString() << Ids{12, 3} << true;
    QTest::newRow("unknown path") << QStringLiteral("8.8") << Ids{8} << true;
}

void TestControllers::relationshipIsLegal()
{
    LocalCollection collection;
    collection.relations().addChildren({}, {7, 9});
    collection.relations().addChildren(QStringLiteral("7"), {12});
    collection.relations().addChildren(QStringLiteral("7.12"), {3});
    QFETCH(QString, path);
    QFETCH(Ids, tags);
    QTEST(collection.relations().isLegal(path, tags), "legal");
}

void TestControllers::legalityAgreesWithThePaths()
{
    QRandomGenerator random(5);
    for (int round = 0; round < 10; ++round) {
        LocalCollection collection;
        QStringList paths;
        for (int i = 0; i < 30; ++i) {
            QStringList targets = paths;
            targets.append(QString());
            targets.append(QStringLiteral("99.1"));
            for (const QString &target : qAsConst(targets)) {
                Ids tags = {1 + random.bounded(8)};
                if (random.bounded(3) == 0)
                    tags.append(1 + random.bounded(8));
                QCOMPARE(collection.relations().isLegal(target, tags), isLegalByPaths(paths, target, tags));
            }
            QString target;
            if (!paths.isEmpty() && random.bounded(4) > 0)
                target = paths.at(random.bounded(paths.size()));
            const qint64 tagId = 1 + random.bounded(8);
            if (!collection.relations().isLegal(target, {tagId}))
                continue;
            collection.relations().addChildren(target, {tagId});
            paths.append((target.isEmpty() ? QString() : target + QLatin1Char('.')) + QString::number(tagId));
        }
        QCOMPARE(collection.manager()->relationNodes().size(), paths.size());
    }
}

void TestControllers::relativesOfAllPlacesCount()
{
    LocalCollection collection;
    RelationsController &relations = collection.relations();
    relations.addChildren({}, {1, 2});
    relations.addChildren(QStringLiteral("1"), {5});
    relations.addChildren(QStringLiteral("2"), {5});
    relations.addChildren(QStringLiteral("1.5"), {6});
    relations.addChildren(QStringLiteral("2.5"), {6, 7});
    Ids below = relations.descendantsOf({5});
    std::sort(below.begin(), below.end());
    QCOMPARE(below, Ids({6, 6, 7}));
    QCOMPARE(relations.ancestorsOf({7}), Ids({2, 5}));
    QVERIFY(relations.descendantsOf({}).isEmpty());
    relations.removeNode(QStringLiteral("2"));
    QCOMPARE(relations.descendantsOf({5}), Ids{6});
    QCOMPARE(collection.value("SELECT group_concat(relationship_path) FROM tag_relationships"),
             QStringLiteral("1,1.5,1.5.6"));
}

QTEST_MAIN(TestControllers)
#include "tst_controllers.moc"
