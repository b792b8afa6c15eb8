#include "tests/support/localcollection.h"
#include "tests/support/serverdatabase.h"

#include <functional>

using Ids = QVector<qint64>;

/** Whether tags may be put below a path, told from the stored paths alone. */
static bool isLegalByPaths(const QStringList &paths, const QString &target, const Ids &tagIds)
{
    const auto holdsOne = [&tagIds](const QStringList &pieces) {
        return std::any_of(pieces.cbegin(), pieces.cend(),
                           [&tagIds](const QString &piece) { return tagIds.contains(piece.toLongLong()); });
    };
    const QChar dot = QLatin1Char('.');
    if (!paths.contains(target)) {
        return !target.isEmpty() || std::none_of(paths.cbegin(), paths.cend(), [&](const QString &path) {
            return !path.contains(dot) && holdsOne({path});
        });
    }
    return !holdsOne(target.split(dot)) &&
           std::none_of(paths.cbegin(), paths.cend(), [&](const QString &path) {
               return path.startsWith(target + dot) && holdsOne(path.mid(target.size() + 1).split(dot));
           });
}

/** What the controllers add to the manager: checks, selections, peers and settings. */
class TestControllers : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addBackEnds(); }
    void init() { m_open = std::make_unique<LocalCollection>(makeTestDatabase()); }
    void cleanup() { m_open.reset(); }

    void nameIsComparedAsTypedAndStoredSimplified()
    {
        QSignalSpy duplicated(&tags(), &TagsController::tagDuplicated);
        QVERIFY(tags().addTag("  two   words "_s) > 0);
        QCOMPARE(m_open->value("SELECT tag_name FROM tags"), "two words"_s);
        QVERIFY(tags().addTag("two words "_s) > 0);
        QVERIFY(duplicated.isEmpty());
        QCOMPARE(tags().addTag("two words"_s), qint64(0));
        QCOMPARE(duplicated.size(), 1);
        const qint64 other = tags().addTag("Two words"_s);
        QVERIFY(!tags().renameTag(other, "two words"_s));
        QCOMPARE(duplicated.size(), 2);
        QVERIFY(tags().renameTag(other, " third "_s));
        QCOMPARE(tags().tagsNames({other, 99}), (QHash<qint64, QString>{{other, "third"_s}}));
    }

    void nothingGetsABlankName()
    {
        const qint64 tagId = tags().addTag("tag"_s);
        const qint64 groupId = m_open->groups().addGroup("group"_s);
        m_open->addFiles(1);
        const QSignalSpy told(m_open->get(), &Collection::showError);
        const QString blank = " 	 "_s;
        QCOMPARE(tags().addTag(blank), qint64(0));
        QVERIFY(!tags().renameTag(tagId, blank));
        QCOMPARE(m_open->groups().addGroup(blank), qint64(0));
        QVERIFY(!m_open->groups().renameGroup(groupId, blank));
        QVERIFY(!m_open->manager()->updateFile(1, "file_name"_s, blank));
        QVERIFY(!m_open->manager()->renameFile(1, blank, "/a"_s, "a"_s));
        QCOMPARE(told.size(), 6);
        if ((*m_open)->dbType() == Constants::serverDatabase) {
            QVERIFY(!m_open->tree().addTree(blank));
            QVERIFY(!m_open->tree().renameTree(m_open->tree().currentBrowsingTree(), blank));
            QCOMPARE(told.size(), 8);
        }
        QCOMPARE(m_open->value("SELECT tag_name FROM tags"), "tag"_s);
        QCOMPARE(m_open->value("SELECT name FROM tag_groups"), "group"_s);
        QCOMPARE(m_open->value("SELECT file_name FROM files"), "file 1"_s);
    }

    void tagInUse()
    {
        m_open->addFiles(1);
        m_open->addTags({"tag"_s, "other"_s});
        const auto isInUse = [this] { return tags().isTagInUse({2, 1}); };
        m_open->groups().assignTags({1}, {m_open->groups().addGroup("g"_s)});
        QVERIFY(!isInUse());
        const qint64 node = m_open->addNode(1);
        QVERIFY(isInUse() && !tags().isTagInUse({2}) && !tags().isTagInUse({}));
        QFETCH_GLOBAL(bool, isOnServer);
        if (isOnServer) {
            // A node of a tree that is not shown goes with its tag, too.
            QVERIFY(m_open->tree().addTree("two"_s) && m_open->tree().selectTree(2));
            QVERIFY(isInUse());
            QVERIFY(m_open->tree().selectTree(1));
        }
        m_open->tree().removeNodes({node});
        relations().addChildren({}, {1});
        QVERIFY(isInUse());
        relations().removeNode("1"_s);
        QVERIFY(!isInUse());
        tags().linkFilesToTag(1, {1});
        QVERIFY(isInUse());
    }

    void fileCountsFollowEveryChange()
    {
        m_open->addFiles(5);
        tags().addTag("parent"_s, {1, 2});
        tags().addTag("child"_s, {3, 4, 5});
        relations().addChildren({}, {1});
        relations().addChildren("1"_s, {2});
        QCOMPARE(tags().filesCount(1), qint64(2));
        tags().linkFilesToTag(1, {5, 1});
        QCOMPARE(tags().filesCount(1), qint64(3));
        m_open->mainView().unlinkTags({3}, {2});
        QCOMPARE(tags().filesCount(2), qint64(2));
        m_open->mainView().deleteFiles({4});
        QTRY_COMPARE(tags().filesCount(2), qint64(1));
        tags().removeTags({2});
        QCOMPARE(tags().filesCount(2), qint64(0));
    }

    void removedGroupLosesItsTab()
    {
        GroupsController &groups = m_open->groups();
        groups.removeGroups({groups.addGroup("g"_s)});
        QVERIFY(groups.tabOrder().isEmpty());
        // The id may come again: the new group is no tab by the old one's place.
        const qint64 next = groups.addGroup("h"_s, false);
        m_open->manager()->reloadAllData();
        QVERIFY(!groups.groups()->value(next)->isVisible());
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
        m_open->addFiles(5);
        tags().addTag("animal"_s, {1, 5});
        tags().addTag("lion"_s, {2});
        tags().addTag("bear"_s, {3});
        tags().addTag("house"_s, {1, 2, 3});
        tags().addTag("garden"_s, {2, 4});
        relations().addChildren({}, {1});
        relations().addChildren("1"_s, {2});
        BrowsTreeController &tree = m_open->tree();
        const qint64 top = m_open->addNode(4);
        const qint64 nodeId = m_open->manager()->addNodeBelow(1, top);
        m_open->activate(nodeId);
        QCOMPARE(m_open->mainView().shownFileIds(), Ids({1, 2}));
        const std::function<void()> edits[] = {
            [&] { tree.changeTrOption(nodeId, false); },
            [&] { tree.changeInversion(nodeId, true); },
            [&] { tree.changeInversion(top, true); },
            [&] { relations().addChildren("1"_s, {3}); },
            [&] { relations().removeNode("1.2"_s); },
            [&] { tree.addNodesAbove({5}, nodeId); },
            [&] { tree.removeNodes({top}); },
        };
        edits[edit]();
        QTRY_COMPARE(m_open->mainView().shownFileIds(), shown);
        QCOMPARE(tree.currentTagNodeId(), nodeId);
    }

    void newTagIsNoRelativeByItsId_data()
    {
        QTest::addColumn<int>("way");
        addRow("all of the tags", 0);
        addRow("any of the tags", 1);
        addRow("node", 2);
    }

    void newTagIsNoRelativeByItsId()
    {
        QFETCH(int, way);
        m_open->addFiles(3);
        tags().addTag("animal"_s, {1});
        tags().addTag("lion"_s, {2});
        relations().addChildren({}, {1});
        relations().addChildren("1"_s, {2});
        if (way == 2)
            m_open->activate(m_open->addNode(1));
        else
            way == 1 ? tags().showTagsEitherOr({1}) : tags().showTagsSelected({1});
        QCOMPARE(m_open->mainView().shownFileIds(), Ids({1, 2}));
        tags().removeTags({2});
        QFETCH_GLOBAL(bool, isOnServer);
        QCOMPARE(tags().addTag("house"_s, {3}), qint64(isOnServer ? 3 : 2)); // a file gives the id away again
        QCOMPARE(m_open->mainView().shownFileIds(), Ids{1});
    }

    void reloadDropsGoneTags_data()
    {
        addColumns<Ids, Ids, bool>("asked", "rest", "isEitherOr");
        addRow("all of the tags", Ids({1, 2}), Ids{1}, false);
        addRow("any of the tags", Ids({1, 2}), Ids{1}, true);
        addRow("nothing is left", Ids{2}, Ids(), false);
    }

    void reloadDropsGoneTags()
    {
        QFETCH(Ids, asked);
        QFETCH(Ids, rest);
        QFETCH(bool, isEitherOr);
        m_open->addFiles(2);
        tags().addTag("stays"_s, {1, 2});
        tags().addTag("goes"_s, {1});
        // Somebody else removes the tag.
        const auto reload = [this] {
            for (const char *table : {"tags", "file_tag"})
                QVERIFY(m_open->run("DELETE FROM %1 WHERE tag_id=2"_s.arg(QLatin1String(table))));
            m_open->manager()->reloadAllData();
        };
        isEitherOr ? tags().showTagsEitherOr(asked) : tags().showTagsSelected(asked);
        QSignalSpy shown(&m_open->mainView(), &MainViewController::tagRequirementsChanged);
        reload();
        QCOMPARE(shown.last().at(isEitherOr ? 2 : 1).value<Ids>(), rest);
        QCOMPARE(m_open->mainView().shownFileIds(), rest.isEmpty() ? Ids() : Ids({1, 2}));
        QCOMPARE(tags().selectedTagIds(), rest);
    }

    void nodeWithoutALinkStandsAtTheTop()
    {
        m_open->addTags({"tag"_s});
        QVERIFY(m_open->run("INSERT INTO tb_nodes VALUES (9,1,1,0)"));
        QVERIFY(m_open->database().keysTaken());
        m_open->manager()->reloadAllData();
        const TBnode *node = m_open->tree().nodeById(9);
        QVERIFY(node && node->parentNode() == m_open->tree().nodeById(0));
        // One whose link is refused is not made.
        QVERIFY(m_open->database().refuse("INSERT ON tb_node_links"_s));
        QSignalSpy errors(m_open->get(), &Collection::errorOccured);
        QCOMPARE(m_open->addNode(1), qint64(0));
        QCOMPARE(m_open->manager()->addNodeAbove(1, 9), qint64(0));
        QCOMPARE(errors.size(), 2);
        QCOMPARE(m_open->count("tb_nodes"_s), 1);
        QCOMPARE(m_open->manager()->nodes().keys(), QList<qint64>{9});
    }

    void legalityAgreesWithThePaths()
    {
        QRandomGenerator random(5);
        for (int round = 0; round < 10; ++round) {
            cleanup();
            init();
            QStringList paths;
            for (int i = 0; i < 30; ++i) {
                for (const QString &target : paths + QStringList{QString(), "99.1"_s}) {
                    Ids tags = {1 + random.bounded(8)};
                    if (random.bounded(3) == 0)
                        tags.append(1 + random.bounded(8));
                    QCOMPARE(relations().isLegal(target, tags), isLegalByPaths(paths, target, tags));
                }
                QString target;
                if (!paths.isEmpty() && random.bounded(4) > 0)
                    target = paths.at(random.bounded(paths.size()));
                const qint64 tagId = 1 + random.bounded(8);
                if (!relations().isLegal(target, {tagId}))
                    continue;
                relations().addChildren(target, {tagId});
                paths.append((target.isEmpty() ? QString() : target + QLatin1Char('.')) +
                             QString::number(tagId));
            }
            QCOMPARE(m_open->manager()->relationNodes().size(), paths.size());
            compareDescendants(paths);
        }
    }

    void relativesOfAllPlacesCount()
    {
        relations().addChildren({}, {1, 2});
        relations().addChildren("1"_s, {5});
        relations().addChildren("2"_s, {5});
        relations().addChildren("1.5"_s, {6});
        relations().addChildren("2.5"_s, {6, 7});
        Ids below = relations().descendantsOf({5});
        std::sort(below.begin(), below.end());
        QCOMPARE(below, Ids({6, 6, 7}));
        QCOMPARE(relations().ancestorsOf({7}), Ids({2, 5}));
        QVERIFY(relations().descendantsOf({}).isEmpty());
        relations().removeNode("2"_s);
        QCOMPARE(relations().descendantsOf({5}), Ids{6});
        QCOMPARE(m_open->rows("SELECT relationship_path FROM tag_relationships ORDER BY 1"),
                 QStringList({"1"_s, "1.5"_s, "1.5.6"_s}));
    }

private:
    /** Those of each tag, of a few asked together, against the stored paths alone. */
    void compareDescendants(const QStringList &paths)
    {
        const Ids asked = {1, 3, 5, 7, 3, 99};
        const QHash<qint64, Ids> found = relations().descendantsOfEach(asked);
        QCOMPARE(found.size(), 5);
        for (const qint64 tagId : asked) {
            Ids expected;
            for (const QString &path : paths) {
                const QStringList pieces = path.split(QLatin1Char('.'));
                for (const QString &above : pieces.mid(0, pieces.size() - 1)) {
                    if (above.toLongLong() == tagId)
                        expected.append(pieces.last().toLongLong());
                }
            }
            Ids descendants = found.value(tagId);
            QCOMPARE(relations().descendantsOf({tagId}), descendants);
            std::sort(descendants.begin(), descendants.end());
            std::sort(expected.begin(), expected.end());
            QCOMPARE(descendants, expected);
        }
    }

    TagsController &tags() { return m_open->tags(); }
    RelationsController &relations() { return m_open->relations(); }

    std::unique_ptr<LocalCollection> m_open;
};

QTEST_MAIN(TestControllers)
#include "tst_controllers.moc"
