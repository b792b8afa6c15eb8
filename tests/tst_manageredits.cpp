#include "tests/support/delayproxy.h"
#include "tests/support/localmanager.h"
#include "tests/support/serverdatabase.h"

namespace {
using Ids = QVector<qint64>;

/** The chains of ids from the top down to each node, as the nodes' own links tell. */
QStringList placesInMemory(LocalManager &manager)
{
    QStringList places;
    for (const TBnode *node : qAsConst(manager->nodes())) {
        QString place = QString::number(node->id());
        while ((node = node->parentNode()))
            place.prepend(QString::number(node->id()) + QLatin1Char('/'));
        places.append(place);
    }
    places.sort();
    return places;
}

/** The same, read from the database alone. */
QStringList placesInDatabase()
{
    QStringList places =
        LocalManager::rows("WITH RECURSIVE place(id, way) AS ("
                           "SELECT child_id, CAST(child_id AS TEXT) FROM tb_node_links WHERE parent_id=0 "
                           "UNION ALL SELECT child_id, way||'/'||child_id FROM tb_node_links "
                           "JOIN place ON parent_id=id) "
                           "SELECT way FROM place JOIN tb_nodes ON node_id=id"_s);
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

/** A server's database that is reached through a network. */
class DistantDatabase : public ServerDatabase
{
public:
    DBDetails details() const override
    {
        const DBDetails server = ServerDatabase::details();
        return DBDetails(2, server.host(), network->port(), server.databaseName(), server.user(), QString());
    }
    const std::unique_ptr<DelayProxy> network =
        std::make_unique<DelayProxy>(ServerDatabase::details().port(), 0);
};
} // namespace

/** Edits of tags, groups, nodes and relationships: records and database say the same afterwards. */
class TestManagerEdits : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addBackEnds(); }

    void newTagIsLinkedToTheFilesGiven()
    {
        LocalManager manager(makeTestDatabase());
        manager.addFiles(3);
        // An older tag with the same name must not get the files.
        manager->addTag("same"_s);
        QSignalSpy added(manager.get(), &DatabaseManger::tagsAdded);
        QSignalSpy changed(manager.get(), &DatabaseManger::fileTagsChanged);
        const qint64 tagId = manager->addTag("same"_s, {1, 3});
        QCOMPARE(added.size(), 1);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(changed.first().first().value<Ids>(), Ids({1, 3}));
        QCOMPARE(manager->file(3)->tags(), Ids{tagId});
        QCOMPARE(manager.rows("SELECT file_id FROM file_tag ORDER BY file_id"), (QStringList{"1"_s, "3"_s}));
        // Both or neither.
        QVERIFY(manager.database().refuse("INSERT ON file_tag"_s));
        QCOMPARE(manager->addTag("alone"_s, {1}), qint64(0));
        QVERIFY(!manager->hasTagNamed("alone"_s));
        QCOMPARE(manager.count("tags"_s), 2);
        QCOMPARE(manager->file(1)->tags(), Ids{tagId});
    }

    void removedTagsLeaveNoTrace()
    {
        LocalManager manager(makeTestDatabase());
        manager.addFiles(4);
        manager->addTag("gone"_s, {1, 2, 3});
        manager->addTag("stays"_s, {2});
        qint64 node = 0;
        for (const qint64 tagId : {2, 1, 1, 2})
            node = manager->addNodeBelow(tagId, node);
        manager->addGroup("group"_s, true);
        manager->setGroupTags(1, {1, 2});
        manager->addRelations({}, {1, 2});
        manager->addRelations("2"_s, {1});
        manager->addRelations("2.1"_s, {9});

        // A failure leaves records and database as they are.
        QVERIFY(manager.database().refuse("DELETE ON tags"_s));
        QVERIFY(!manager->removeTags({1}));
        QVERIFY(manager.database().permit("tags"_s));
        QCOMPARE(manager->nodes().size(), 4);
        QCOMPARE(manager->file(1)->tags(), Ids{1});
        QVERIFY(manager->hasTag(1));

        QSignalSpy removed(manager.get(), &DatabaseManger::tagsRemoved);
        QSignalSpy changed(manager.get(), &DatabaseManger::fileTagsChanged);
        QVERIFY(manager->removeTags({1}));
        QCOMPARE(removed.size(), 1);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(changed.first().first().value<Ids>(), Ids({1, 2, 3}));
        QCOMPARE(manager->file(2)->tags(), Ids{2});
        QVERIFY(!manager->hasTag(1));
        QCOMPARE(manager->groups()->value(1)->tags(), Ids{2});
        QCOMPARE(placesInMemory(manager), (QStringList{"1"_s, "1/4"_s}));
        QCOMPARE(placesInDatabase(), placesInMemory(manager));
        QCOMPARE(manager->relationNodes().size(), 1);
        QCOMPARE(manager.value("SELECT relationship_path FROM tag_relationships"), "2"_s);
        QCOMPARE(manager.value(orphans), QString());
    }

    void manyFilesAreTaggedBesideTheWindow()
    {
        constexpr int count = 20001;
        LocalManager manager(makeTestDatabase());
        manager.addFiles(count);
        const qint64 first = manager->addTag("first"_s);
        const qint64 second = manager->addTag("second"_s, {1, 2});
        Ids ids(count);
        std::iota(ids.begin(), ids.end(), 1);
        bool isEdited = true;
        connect(manager.get(), &DatabaseManger::filesRetagged, manager.get(), [&] {
            // Not on records that are behind the database.
            isEdited = manager->linkTags({1}, {second});
        });
        QSignalSpy stored(manager.get(), &DatabaseManger::filesRetagged);
        QSignalSpy settled(manager.get(), &DatabaseManger::fileTagsSettled);
        QVERIFY(manager->changeTags(ids, {first}, {second}));
        QTRY_COMPARE_WITH_TIMEOUT(settled.size(), 1, 30000);
        QVERIFY(!isEdited && !manager->isBusy());
        for (const File *file : manager->files())
            QCOMPARE(file->tags(), Ids{first});
        QCOMPARE(manager.count("file_tag"_s), count);

        // What was told takes all of it back, as far as it was news.
        const auto done = stored.first().first().value<TagChanges>();
        manager->disconnect(manager.get());
        QVERIFY(manager->changeTags(Tagging::inverse(done)));
        QSignalSpy settledAgain(manager.get(), &DatabaseManger::fileTagsSettled);
        QTRY_COMPARE_WITH_TIMEOUT(settledAgain.size(), 1, 30000);
        QCOMPARE(manager.rows("SELECT file_id,tag_id FROM file_tag ORDER BY 1"),
                 (QStringList{"1|2"_s, "2|2"_s}));
        QCOMPARE(manager->file(2)->tags(), Ids{second});
        QVERIFY(manager->file(count)->tags().isEmpty());
        QVERIFY(manager->linkTags({2}, {first}));
        QCOMPARE(manager->file(2)->tags(), Ids({first, second}));
    }

    void manyFilesLoadWithAllTheirTags()
    {
        LocalManager manager(makeTestDatabase());
        QVERIFY(manager.fill(
            "INSERT INTO file_tag SELECT i,t FROM n,(SELECT 1 AS t UNION SELECT 2 UNION SELECT 3) AS three",
            9000));
        manager.addFiles(9000);
        Ids tagged;
        for (const File *file : manager->files())
            tagged.append(file->tags().size() == 3 ? file->id() : -1);
        QCOMPARE(tagged, manager->files().keys().toVector());
        QCOMPARE(tagged.size(), 9000);
    }

    void groupTagsAreAWholeList()
    {
        LocalManager manager(makeTestDatabase());
        for (const char *name : {"a", "b", "c", "d"})
            manager->addTag(QLatin1String(name));
        manager->addGroup("group"_s, true);
        const GroupItem *group = manager->groups()->value(1);
        manager->setGroupTags(1, {1, 2});
        manager->setGroupTags(1, {2, 4, 4711}); // there is no tag 4711
        QCOMPARE(QSet<qint64>(group->tags().cbegin(), group->tags().cend()), (QSet<qint64>{2, 4}));
        QVERIFY(group->isVisible());
        QCOMPARE(manager.count("tag_group_links"_s), 2);
        manager->removeGroups({1});
        QVERIFY(manager->hasTag(2));
        QCOMPARE(manager.count("tag_group_links"_s), 0);
    }

    void nodesOfManyTagsComeTogether()
    {
        LocalManager manager(makeTestDatabase());
        for (const char *name : {"a", "b", "c"})
            manager->addTag(QLatin1String(name));
        manager->addNodeBelow(1, 0);
        manager->addNodeBelow(1, 1);
        manager->addNodesBelow({2, 3}, 2);
        manager->addNodesAbove({2, 3}, 2);
        const QStringList places{"1"_s, "1/5"_s, "1/5/6"_s, "1/5/6/2"_s, "1/5/6/2/3"_s, "1/5/6/2/4"_s};
        QCOMPARE(placesInMemory(manager), places);
        QCOMPARE(placesInDatabase(), places);
        QCOMPARE(manager->nodes().value(5)->tagId(), qint64(2));

        QVERIFY(manager.database().refuse("INSERT ON tb_nodes"_s, "NEW.tag_id=3"_s));
        manager->addNodesBelow({1, 2, 3}, 1);
        manager->addNodesAbove({1, 2, 3}, 2);
        QCOMPARE(placesInMemory(manager), places);
        QCOMPARE(placesInDatabase(), places);
    }

    void damagedParentsMakeTopLevelNodes_data()
    {
        addColumns<Ids, int>("parents", "topLevel"); // of the nodes 1, 2, 3
        addRow("its own parent", Ids{1, 1, 0}, 2);
        addRow("unknown parent", Ids{99, 1, 2}, 1);
        addRow("two in a circle", Ids{2, 1, 0}, 2);
        addRow("three in a circle", Ids{2, 3, 1}, 1);
        addRow("a tail on a circle", Ids{2, 3, 2}, 1);
    }

    void damagedParentsMakeTopLevelNodes()
    {
        QFETCH(Ids, parents);
        LocalManager manager(makeTestDatabase());
        for (int i = 0; i < 3; ++i) {
            manager.run("INSERT INTO tb_nodes VALUES(%1,1,1,0)"_s.arg(i + 1));
            manager.run("INSERT INTO tb_node_links VALUES(%1,%2)"_s.arg(parents.at(i)).arg(i + 1));
        }
        manager.run("INSERT INTO tag_relationships VALUES('7.12'),('7'),('5.8')");
        manager->reloadAllData();
        int topLevel = 0;
        int reached = 0;
        for (const TBnode *node : qAsConst(manager->nodes())) {
            if (node->parentNode())
                continue;
            ++topLevel;
            reached += 1 + node->descendantIds().size();
        }
        QTEST(topLevel, "topLevel");
        QCOMPARE(reached, 3);
        // A place without its parent's row stands at the top rather than nowhere.
        QVERIFY(!manager->relationNode("5.8"_s)->parentNode());
        QCOMPARE(manager->relationNode("7.12"_s)->ancestorIds(), Ids{7});
    }

    void removingRandomNodes()
    {
        QRandomGenerator random(7);
        LocalManager manager(makeTestDatabase());
        const qint64 tagId = manager->addTag("tag"_s);
        for (int round = 0; round < 6; ++round) {
            QHash<qint64, qint64> parents; // the oracle: a plain table of parents
            Ids nodes = {0};
            for (int i = 0; i < 25; ++i) {
                const qint64 parentId = nodes.at(random.bounded(nodes.size()));
                const qint64 nodeId = manager->addNodeBelow(tagId, parentId);
                parents.insert(nodeId, parentId);
                nodes.append(nodeId);
            }
            Ids gone = nodes.mid(1);
            gone.erase(std::remove_if(gone.begin(), gone.end(), [&](qint64) { return random.bounded(2); }),
                       gone.end());
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
            QCOMPARE(manager.count("tb_node_links"_s), 0);
        }
    }

    void existingPlacesAreLeftOut()
    {
        LocalManager manager(makeTestDatabase());
        manager->addRelations({}, {7});
        manager->addRelations("7"_s, {12});
        QSignalSpy errors(manager.get(), &DatabaseManger::errorOccured);
        QSignalSpy added(manager.get(), &DatabaseManger::addedRelatshipsNodes);
        manager->addRelations("7"_s, {12, 13});
        QVERIFY(errors.isEmpty());
        QCOMPARE(added.size(), 1);
        QVERIFY(manager->relationNode("7.13"_s));
        manager->addRelations("7"_s, {12});
        QCOMPARE(added.size(), 1);
        manager->removeRelations({"7.12"_s, "7"_s});
        QCOMPARE(manager.count("tag_relationships"_s), 0);
        QVERIFY(manager->relationNodes().isEmpty());
    }

    void editsTakeFewMessages()
    {
        QFETCH_GLOBAL(bool, isOnServer);
        if (!isOnServer)
            QSKIP("of a server alone");
        auto database = std::make_unique<DistantDatabase>();
        DelayProxy &network = *database->network;
        LocalManager manager(std::move(database));
        manager.addFiles(3);
        const qint64 tag = manager->addTag("tag"_s);
        const qint64 other = manager->addTag("other"_s);
        const qint64 group = manager->addGroup("group"_s, true);
        const qint64 node = manager->addNodeBelow(tag, 0);
        const auto messages = [&network](const std::function<void()> &edit) {
            network.takeRoundTrips();
            edit();
            return int(network.takeRoundTrips());
        };
        // A begin, a commit, and in between what must be known, as the rows that an undo puts back.
        QVERIFY(messages([&] { manager->renameTag(tag, "renamed"_s); }) <= 4);
        QVERIFY(manager->hasTagNamed("renamed"_s));
        QVERIFY(messages([&] { manager->updateFile(1, "file_description"_s, "text"_s); }) <= 4);
        QCOMPARE(manager->file(1)->description(), "text"_s);
        QVERIFY(messages([&] { manager->changeTags({1, 2}, {tag, other}, {}); }) <= 5);
        QVERIFY(messages([&] { manager->changeTags({1, 2}, {}, {other}); }) <= 5);
        QCOMPARE(manager->file(2)->tags(), Ids{tag});
        QVERIFY(messages([&] { manager->setGroupTags(group, {tag, other}); }) <= 4);
        QCOMPARE(manager->groups()->value(group)->tags().size(), 2);
        QVERIFY(messages([&] { manager->addRelations(QString(), {tag, other}); }) <= 4);
        QVERIFY(messages([&] { manager->addTag("with files"_s, {1, 2, 3}); }) <= 6);
        QCOMPARE(manager->file(3)->tags().size(), 1);
        QVERIFY(messages([&] { manager->addTagToGroup("in a group"_s, group); }) <= 5);
        QVERIFY(messages([&] { manager->addNodesBelow({tag, other}, node); }) <= 7);
        QVERIFY(messages([&] { manager->addNodeAbove(other, node); }) <= 7);
        QCOMPARE(manager->nodes().size(), 4);
        QVERIFY(messages([&] { manager->removeNodes({node}); }) <= 12);
        QCOMPARE(manager->nodes().size(), 1);
        QVERIFY(messages([&] { manager->removeTags({tag, other}); }) <= 16);
        QCOMPARE(manager.rows(orphans), QStringList());
        // What waited is refused with the commit: nothing is left of the edit, and what was there stays.
        QSignalSpy errors(manager.get(), &DatabaseManger::errorOccured);
        QVERIFY(manager.database().refuse("UPDATE ON files"_s));
        QVERIFY(!manager->updateFile(1, "file_description"_s, "refused"_s));
        QCOMPARE(errors.size(), 1);
        QCOMPARE(manager->file(1)->description(), "text"_s);
    }
};

QTEST_MAIN(TestManagerEdits)
#include "tst_manageredits.moc"
