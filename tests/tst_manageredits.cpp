#include "tests/support/localmanager.h"
#include "tests/support/settingssandbox.h"

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

namespace {
using Ids = QVector<qint64>;

/** A node's chain of ids from the top down to it, as its own links tell. */
QString placeOf(const TBnode *node)
{
    QStringList ids;
    for (; node; node = node->parentNode())
        ids.prepend(QString::number(node->id()));
    return ids.join(QLatin1Char('/'));
}

QStringList placesInMemory(LocalManager &manager)
{
    QStringList places;
    for (const TBnode *node : qAsConst(manager->nodes()))
        places.append(placeOf(node));
    places.sort();
    return places;
}

/** The same, read from the database alone. */
QStringList placesInDatabase()
{
    QStringList places = LocalManager::rows(
        QStringLiteral("WITH RECURSIVE place(id, way) AS ("
                       "SELECT child_id, CAST(child_id AS TEXT) FROM tb_node_links WHERE parent_id=0 "
                       "UNION ALL SELECT child_id, way||'/'||child_id FROM tb_node_links "
                       "JOIN place ON parent_id=id) "
                       "SELECT way FROM place JOIN tb_nodes ON node_id=id"));
    places.sort();
    return places;
}

/** Rows of any table that name something which is not there. */
const char *const orphans =
    "SELECT 'file_tag', tag_id FROM file_tag WHERE tag_id NOT IN (SELECT tag_id FROM tags) UNION ALL "
    "SELECT 'group', tag_id FROM tag_group_links WHERE tag_id NOT IN (SELECT tag_id FROM tags) UNION ALL "
    "SELECT 'node', node_id FROM tb_nodes WHERE tag_id NOT IN (SELECT tag_id FROM tags) UNION ALL "
    "SELECT 'link', child_id FROM tb_node_links WHERE child_id NOT IN (SELECT node_id FROM tb_nodes) "
    "UNION ALL SELECT 'parent', child_id FROM tb_node_links WHERE parent_id<>0 AND parent_id NOT IN "
    "(SELECT node_id FROM tb_nodes) UNION ALL "
    "SELECT 'nodes without link', node_id FROM tb_nodes WHERE node_id NOT IN "
    "(SELECT child_id FROM tb_node_links) UNION ALL "
    "SELECT 'autolink', node_id FROM tb_nodes_autolinks WHERE node_id NOT IN (SELECT node_id FROM tb_nodes)";
} // namespace

/** Edits of tags, groups, nodes and relationships: records and database say the same afterwards. */
class TestManagerEdits : public QObject
{
    Q_OBJECT

private slots:
    void newTagIsLinkedToTheFilesGiven();
    void namesComeBackAsTheyWentIn_data();
    void namesComeBackAsTheyWentIn();
    void renamedTagRenamesItsNodesAndPlaces();
    void removedTagsLeaveNoTrace();
    void failedRemovalChangesNothing();
    void removingTagsOfARandomDatabase();
    void linkingTwiceIsNoError();
    void groupTagsAreAWholeList();
    void removedGroupLeavesItsTags();
    void newNodesHaveTheirDefaults();
    void nodeAboveTakesThePlaceOfItsChild();
    void removedSubtreeGoesAsAWhole();
    void childrenRiseToTheNearestNodeThatStays();
    void removingRandomNodes();
    void existingPlacesAreLeftOut();

private:
    SettingsSandbox m_settings;
};

void TestManagerEdits::newTagIsLinkedToTheFilesGiven()
{
    LocalManager manager;
    manager.addFiles(3);
    // An older tag with the same name must not get the files.
    manager->addTag(QStringLiteral("same"));
    QSignalSpy added(manager.get(), &DatabaseManger::tagsAdded);
    QSignalSpy changed(manager.get(), &DatabaseManger::filesChanged);
    const qint64 tagId = manager->addTag(QStringLiteral("same"), {1, 3});
    QCOMPARE(added.size(), 1);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.first().first().value<Ids>(), Ids({1, 3}));
    QCOMPARE(manager->file(3)->tags(), Ids{tagId});
    QCOMPARE(manager.value("SELECT group_concat(file_id) FROM file_tag"), QStringLiteral("1,3"));
}

void TestManagerEdits::namesComeBackAsTheyWentIn_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"O'Neil", "12\" disc", "x\" --", "%1 of 100%", "tag_name", "a\nb",
                             "\xF0\x9F\x8D\x8B", "'; DROP TABLE tags; --"})
        QTest::newRow(name) << QString::fromUtf8(name);
}

void TestManagerEdits::namesComeBackAsTheyWentIn()
{
    QFETCH(QString, name);
    LocalManager manager;
    const qint64 tagId = manager->addTag(name);
    manager->changeTagDescription(tagId, name);
    const qint64 groupId = manager->addGroup(name, true);
    const qint64 nodeId = manager->addNodeBelow(tagId, 0);
    manager.addFiles(1);
    QVERIFY(manager->updateFile(1, QStringLiteral("file_description"), name));
    QCOMPARE(manager->file(1)->description(), name);
    manager->reloadAllData();
    QCOMPARE(manager->tagName(tagId), name);
    QCOMPARE(manager->tags().first()->value(QStringLiteral("tag_description")).toString(), name);
    QCOMPARE(manager->groups()->value(groupId)->name(), name);
    QCOMPARE(manager->nodes().value(nodeId)->name(), name);
    QCOMPARE(manager->file(1)->description(), name);
}

void TestManagerEdits::renamedTagRenamesItsNodesAndPlaces()
{
    LocalManager manager;
    const qint64 tagId = manager->addTag(QStringLiteral("old"));
    const qint64 nodeId = manager->addNodeBelow(tagId, 0);
    manager->addRelations({}, {tagId});
    QSignalSpy renamed(manager.get(), &DatabaseManger::tagsRenamed);
    QSignalSpy added(manager.get(), &DatabaseManger::tagsAdded);
    manager->renameTag(tagId, QStringLiteral("new"));
    QCOMPARE(renamed.size(), 1);
    QVERIFY(added.isEmpty());
    QCOMPARE(manager->nodes().value(nodeId)->name(), QStringLiteral("new"));
    QCOMPARE(manager->relationNode(QString::number(tagId))->name(), QStringLiteral("new"));
    manager->changeTagDescription(tagId, QStringLiteral("text"));
    QCOMPARE(renamed.size(), 1);
}

void TestManagerEdits::removedTagsLeaveNoTrace()
{
    LocalManager manager;
    manager.addFiles(4);
    const qint64 gone = manager->addTag(QStringLiteral("gone"), {1, 2, 3});
    const qint64 stays = manager->addTag(QStringLiteral("stays"), {2});
    const qint64 top = manager->addNodeBelow(stays, 0);
    const qint64 middle = manager->addNodeBelow(gone, top);
    const qint64 low = manager->addNodeBelow(gone, middle);
    const qint64 leaf = manager->addNodeBelow(stays, low);
    const qint64 groupId = manager->addGroup(QStringLiteral("group"), true);
    manager->setGroupTags(groupId, {gone, stays});
    manager->addRelations({}, {gone, stays});
    const QString stayPath = QString::number(stays);
    manager->addRelations(stayPath, {gone});
    manager->addRelations(QStringLiteral("%1.%2").arg(stays).arg(gone), {9});

    QSignalSpy removed(manager.get(), &DatabaseManger::tagsRemoved);
    QSignalSpy changed(manager.get(), &DatabaseManger::filesChanged);
    QVERIFY(manager->removeTags({gone}));
    QCOMPARE(removed.size(), 1);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.first().first().value<Ids>(), Ids({1, 2, 3}));
    QCOMPARE(manager->file(2)->tags(), Ids{stays});
    QVERIFY(!manager->hasTag(gone));
    QCOMPARE(manager->groups()->value(groupId)->tags(), Ids{stays});
    QCOMPARE(placesInMemory(manager),
             (QStringList{QString::number(top), QStringLiteral("%1/%2").arg(top).arg(leaf)}));
    QCOMPARE(placesInDatabase(), placesInMemory(manager));
    QCOMPARE(manager->relationNodes().size(), 1);
    QCOMPARE(manager.value("SELECT relationship_path FROM tag_relationships"), stayPath);
    QCOMPARE(manager.value(orphans), QString());
}

void TestManagerEdits::failedRemovalChangesNothing()
{
    LocalManager manager;
    manager.addFiles(1);
    const qint64 tagId = manager->addTag(QStringLiteral("tag"), {1});
    manager->addNodeBelow(tagId, 0);
    manager->addRelations({}, {tagId});
    const char *const all = "SELECT (SELECT count(*) FROM file_tag), (SELECT count(*) FROM tb_nodes), "
                            "(SELECT count(*) FROM tb_node_links), (SELECT count(*) FROM tag_relationships)";
    const QString before = manager.value(all);
    QVERIFY(manager.run("CREATE TRIGGER refuse BEFORE DELETE ON tags BEGIN SELECT RAISE(ABORT, 'no'); END"));
    QSignalSpy errors(manager.get(), &DatabaseManger::errorOccured);
    QVERIFY(!manager->removeTags({tagId}));
    QCOMPARE(errors.size(), 1);
    QCOMPARE(manager.value(all), before);
    QVERIFY(manager->hasTag(tagId));
    QCOMPARE(manager->nodes().size(), 1);
    QCOMPARE(manager->file(1)->tags(), Ids{tagId});
}

void TestManagerEdits::removingTagsOfARandomDatabase()
{
    QRandomGenerator random(20);
    LocalManager manager;
    manager.addFiles(30);
    Ids tags;
    for (int i = 0; i < 12; ++i)
        tags.append(manager->addTag(QStringLiteral("t%1").arg(i)));
    const auto anyTag = [&] { return tags.at(random.bounded(tags.size())); };
    for (qint64 id = 1; id <= 30; ++id)
        manager->linkTags({id}, {anyTag(), anyTag()});
    Ids nodes = {0};
    for (int i = 0; i < 40; ++i)
        nodes.append(manager->addNodeBelow(anyTag(), nodes.at(random.bounded(nodes.size()))));
    QStringList paths = {QString()};
    for (int i = 0; i < 40; ++i) {
        const QString parent = paths.at(random.bounded(paths.size()));
        const qint64 tagId = anyTag();
        manager->addRelations(parent, {tagId});
        paths.append(parent.isEmpty() ? QString::number(tagId)
                                      : parent + QLatin1Char('.') + QString::number(tagId));
    }
    while (!tags.isEmpty()) {
        const Ids gone = tags.mid(0, 1 + random.bounded(3));
        tags = tags.mid(gone.size());
        QVERIFY(manager->removeTags(gone));
        QCOMPARE(manager.value(orphans), QString());
        QCOMPARE(placesInMemory(manager), placesInDatabase());
        QStringList inMemory;
        for (const auto &item : qAsConst(manager->relationNodes()))
            inMemory.append(item.first);
        QStringList inDatabase =
            LocalManager::rows(QStringLiteral("SELECT relationship_path FROM tag_relationships"));
        inMemory.sort();
        inDatabase.sort();
        QCOMPARE(inMemory, inDatabase);
    }
    QVERIFY(manager->nodes().isEmpty());
    QCOMPARE(manager.value("SELECT count(*) FROM file_tag"), QStringLiteral("0"));
}

void TestManagerEdits::linkingTwiceIsNoError()
{
    LocalManager manager;
    manager.addFiles(3);
    const qint64 first = manager->addTag(QStringLiteral("first"), {1});
    const qint64 second = manager->addTag(QStringLiteral("second"));
    QSignalSpy errors(manager.get(), &DatabaseManger::errorOccured);
    QVERIFY(manager->linkTags({1, 2}, {first, second}));
    QVERIFY(errors.isEmpty());
    QCOMPARE(manager->file(1)->tags(), Ids({first, second}));
    QVERIFY(manager->unlinkTags({1, 2, 3}, {first}));
    QCOMPARE(manager->file(2)->tags(), Ids{second});
    QCOMPARE(manager.value("SELECT count(*) FROM file_tag"), QStringLiteral("2"));
}

void TestManagerEdits::groupTagsAreAWholeList()
{
    LocalManager manager;
    Ids tags;
    for (int i = 0; i < 4; ++i)
        tags.append(manager->addTag(QString::number(i)));
    const qint64 groupId = manager->addGroup(QStringLiteral("group"), true);
    const GroupItem *group = manager->groups()->value(groupId);
    QVERIFY(group->isVisible());
    manager->setGroupTags(groupId, {tags.at(0), tags.at(1)});
    manager->setGroupTags(groupId, {tags.at(1), tags.at(3)});
    QCOMPARE(QSet<qint64>(group->tags().cbegin(), group->tags().cend()),
             (QSet<qint64>{tags.at(1), tags.at(3)}));
    QVERIFY(group->isVisible());
    QCOMPARE(manager.value("SELECT count(*) FROM tag_group_links"), QStringLiteral("2"));
    manager->setGroupTags(groupId, {});
    QVERIFY(group->tags().isEmpty());
}

void TestManagerEdits::removedGroupLeavesItsTags()
{
    LocalManager manager;
    const qint64 tagId = manager->addTag(QStringLiteral("tag"));
    const qint64 groupId = manager->addGroup(QStringLiteral("group"), false);
    manager->setGroupTags(groupId, {tagId});
    QSignalSpy deleted(manager->groups(), &SignalContainer::itemDeleted);
    manager->removeGroups({groupId});
    QCOMPARE(deleted.size(), 1);
    QVERIFY(manager->hasTag(tagId));
    QCOMPARE(manager.value("SELECT (SELECT count(*) FROM tag_groups)+(SELECT count(*) FROM tag_group_links)"),
             QStringLiteral("0"));
}

void TestManagerEdits::newNodesHaveTheirDefaults()
{
    LocalManager manager;
    const qint64 tagId = manager->addTag(QStringLiteral("tag"));
    const qint64 nodeId = manager->addNodeBelow(tagId, 0);
    TBnode *node = manager->nodes().value(nodeId);
    QVERIFY(node->trOption());
    QVERIFY(!node->isInverted());
    QVERIFY(!node->parentNode());
    QCOMPARE(node->name(), QStringLiteral("tag"));
    QCOMPARE(manager.value("SELECT tr_options, inverted, parent_id FROM tb_nodes JOIN tb_node_links "
                           "ON child_id=node_id"),
             QStringLiteral("1|0|0"));
    manager->updateNode(nodeId, QStringLiteral("inverted"), QStringLiteral("1"));
    manager->updateNode(nodeId, QStringLiteral("tr_options"), QStringLiteral("0"));
    QVERIFY(node->isInverted());
    QVERIFY(!node->trOption());
}

void TestManagerEdits::nodeAboveTakesThePlaceOfItsChild()
{
    LocalManager manager;
    const qint64 tagId = manager->addTag(QStringLiteral("tag"));
    const qint64 top = manager->addNodeBelow(tagId, 0);
    const qint64 low = manager->addNodeBelow(tagId, top);
    const qint64 between = manager->addNodeAbove(tagId, low);
    const qint64 highest = manager->addNodeAbove(tagId, top);
    QCOMPARE(placeOf(manager->nodes().value(low)),
             QStringLiteral("%1/%2/%3/%4").arg(highest).arg(top).arg(between).arg(low));
    QCOMPARE(placesInMemory(manager), placesInDatabase());
    QCOMPARE(manager->addNodeAbove(tagId, 4711), qint64(0));
}

void TestManagerEdits::removedSubtreeGoesAsAWhole()
{
    LocalManager manager;
    const qint64 tagId = manager->addTag(QStringLiteral("tag"));
    const qint64 top = manager->addNodeBelow(tagId, 0);
    const qint64 low = manager->addNodeBelow(tagId, top);
    manager->addNodeBelow(tagId, low);
    const qint64 other = manager->addNodeBelow(tagId, 0);
    QVERIFY(manager.run(QStringLiteral("INSERT INTO tb_nodes_autolinks VALUES('x',%1)").arg(low)));
    QVERIFY(manager->removeNodes({top, low}));
    QCOMPARE(placesInMemory(manager), QStringList{QString::number(other)});
    QCOMPARE(placesInDatabase(), placesInMemory(manager));
    QCOMPARE(manager.value(orphans), QString());
}

void TestManagerEdits::childrenRiseToTheNearestNodeThatStays()
{
    LocalManager manager;
    const qint64 tagId = manager->addTag(QStringLiteral("tag"));
    const qint64 a = manager->addNodeBelow(tagId, 0);
    const qint64 b = manager->addNodeBelow(tagId, a);
    const qint64 c = manager->addNodeBelow(tagId, b);
    const qint64 d = manager->addNodeBelow(tagId, c);
    const qint64 x = manager->addNodeBelow(tagId, 0);
    const qint64 y = manager->addNodeBelow(tagId, x);
    QSignalSpy attached(manager.get(), &DatabaseManger::addedBrowsingNodes);
    QVERIFY(manager->removeNodesKeepingChildren({b, c, x}));
    QStringList expected = {QString::number(a), QStringLiteral("%1/%2").arg(a).arg(d), QString::number(y)};
    expected.sort();
    QCOMPARE(placesInMemory(manager), expected);
    QCOMPARE(placesInDatabase(), expected);
    QVERIFY(!attached.isEmpty());
}

void TestManagerEdits::removingRandomNodes()
{
    QRandomGenerator random(7);
    LocalManager manager;
    const qint64 tagId = manager->addTag(QStringLiteral("tag"));
    for (int round = 0; round < 6; ++round) {
        QHash<qint64, qint64> parents; // the oracle: a plain table of parents
        Ids nodes = {0};
        for (int i = 0; i < 25; ++i) {
            const qint64 parentId = nodes.at(random.bounded(nodes.size()));
            const qint64 nodeId = manager->addNodeBelow(tagId, parentId);
            parents.insert(nodeId, parentId);
            nodes.append(nodeId);
        }
        Ids gone;
        for (const qint64 nodeId : qAsConst(nodes)) {
            if (nodeId > 0 && random.bounded(2))
                gone.append(nodeId);
        }
        QVERIFY(manager->removeNodesKeepingChildren(gone));
        QStringList expected;
        for (const qint64 nodeId : parents.keys()) {
            if (gone.contains(nodeId))
                continue;
            QStringList way;
            for (qint64 id = nodeId; id > 0; id = parents.value(id)) {
                if (!gone.contains(id))
                    way.prepend(QString::number(id));
            }
            expected.append(way.join(QLatin1Char('/')));
        }
        expected.sort();
        QCOMPARE(placesInMemory(manager), expected);
        QCOMPARE(placesInDatabase(), expected);
        QVERIFY(manager->removeNodes(manager->nodes().keys().toVector()));
        QCOMPARE(manager.value("SELECT count(*) FROM tb_node_links"), QStringLiteral("0"));
    }
}

void TestManagerEdits::existingPlacesAreLeftOut()
{
    LocalManager manager;
    manager->addRelations({}, {7});
    manager->addRelations(QStringLiteral("7"), {12});
    QSignalSpy errors(manager.get(), &DatabaseManger::errorOccured);
    QSignalSpy added(manager.get(), &DatabaseManger::addedRelatshipsNodes);
    manager->addRelations(QStringLiteral("7"), {12, 13});
    QVERIFY(errors.isEmpty());
    QCOMPARE(added.size(), 1);
    QVERIFY(manager->relationNode(QStringLiteral("7.13")));
    manager->addRelations(QStringLiteral("7"), {12});
    QCOMPARE(added.size(), 1);
    manager->removeRelations({QStringLiteral("7.12"), QStringLiteral("7")});
    QCOMPARE(manager.value("SELECT count(*) FROM tag_relationships"), QStringLiteral("0"));
    QVERIFY(manager->relationNodes().isEmpty());
}

QTEST_MAIN(TestManagerEdits)
#include "tst_manageredits.moc"
