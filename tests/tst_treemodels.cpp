#include "app/settings/viewsettings.h"
#include "models/trees/brtreesortermodel.h"
#include "models/trees/tbtreemodel.h"
#include "models/trees/treeroles.h"
#include "models/trees/trmodel.h"
#include "tests/support/drags.h"
#include "tests/support/localcollection.h"

#include <QTreeView>

namespace {

/** One line for each tag node below an index: "id|parent|inverted|name", sorted. */
void collectNodes(const QAbstractItemModel &model, const QModelIndex &parent, QStringList &lines)
{
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        if (index.data(NodeRole::Type).toInt() == TagNode) {
            const QString name = index.data().toString();
            const bool isInverted = index.data(NodeRole::Inverted).toBool();
            lines.append("%1|%2|%3|%4"_s.arg(index.data(NodeRole::Id).toString(),
                                             parent.data(NodeRole::Id).toString(),
                                             QString::number(isInverted), isInverted ? name.mid(2) : name));
        }
        collectNodes(model, index, lines);
    }
}

QStringList nodesOf(const QAbstractItemModel &model)
{
    QStringList lines;
    collectNodes(model, QModelIndex(), lines);
    lines.sort();
    return lines;
}

QStringList pathsOf(const QAbstractItemModel &model, const QModelIndex &parent = {})
{
    QStringList paths;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        paths.append(index.data(RelationRole::Path).toString());
        paths.append(pathsOf(model, index));
    }
    paths.sort();
    return paths;
}

/** The tester of each model, which lives as long as its model. */
void test(std::initializer_list<QAbstractItemModel *> models)
{
    for (QAbstractItemModel *model : models)
        new QAbstractItemModelTester(model, QAbstractItemModelTester::FailureReportingMode::QtTest, model);
}

/** Random edits of a whole collection. */
class RandomEdits
{
public:
    RandomEdits(LocalCollection &fixture, quint32 seed) : m_fixture(fixture), m_random(seed)
    {
        for (int i = 0; i < 12; ++i)
            m_fixture.addTags({"tag %1"_s.arg(i)});
    }

    void step()
    {
        BrowsTreeController &tree = m_fixture.tree();
        RelationsController &relations = m_fixture.relations();
        const qint64 node = anyOf(m_fixture.manager()->nodes().keys());
        switch (m_random.bounded(13)) {
        case 0:
        case 1:
        case 2:
            return tree.addNodesBelow({anyTag()}, m_random.bounded(4) == 0 ? 0 : node);
        case 3:
            return tree.addNodesAbove({anyTag(), anyTag()}, node);
        case 4:
            return tree.removeNodes({node, anyOf(m_fixture.manager()->nodes().keys())});
        case 5:
            return m_random.bounded(3) == 0 ? tree.removeNodesWithSubtree({node}) : void();
        case 6:
            return tree.changeInversion(node, m_random.bounded(2) == 0);
        case 7:
            return m_fixture.manager()->renameTag(anyTag(), QString::number(m_random.bounded(100)));
        case 8:
            return m_fixture.manager()->reloadAllData();
        case 9:
            return tree.nodeActivated(node > 0 ? TagNode : AllFiles, node, {}, {});
        case 10:
            return m_random.bounded(4) == 0 ? removeTag() : moveByHand(node);
        default:
            return m_random.bounded(6) == 0 ? relations.removeNode(anyPath()) : addRelation(relations);
        }
    }

private:
    qint64 anyOf(const QList<qint64> &ids)
    {
        return ids.isEmpty() ? 0 : ids.at(m_random.bounded(ids.size()));
    }
    qint64 anyTag()
    {
        return m_fixture.rows("SELECT tag_id FROM tags ORDER BY random() LIMIT 1"_s).value(0).toLongLong();
    }
    void removeTag()
    {
        m_fixture.manager()->removeTags({anyTag()});
        m_fixture.addTags({"new"_s});
    }
    QString anyPath()
    {
        const auto &nodes = m_fixture.manager()->relationNodes();
        return nodes.isEmpty() ? QString() : nodes.at(m_random.bounded(nodes.size())).first;
    }
    void addRelation(RelationsController &relations)
    {
        const QString path = m_random.bounded(3) == 0 ? QString() : anyPath();
        const qint64 tag = anyTag();
        if (relations.isLegal(path, {tag}))
            relations.addChildren(path, {tag});
    }
    void moveByHand(qint64 nodeId)
    {
        BrTreeSorterModel &sorter = *m_fixture.tree().sorterModel();
        const QModelIndex parent = sorter.indexOfNode(TagNode, nodeId).parent();
        QMimeData data;
        fillNodeDrag(data, nodeId);
        if (parent.isValid())
            sorter.dropMimeData(&data, Qt::MoveAction, m_random.bounded(sorter.rowCount(parent) + 1), 0,
                                parent);
    }

    LocalCollection &m_fixture;
    QRandomGenerator m_random;
};

} // namespace

class TestTreeModels : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLoggingCategory::setFilterRules("default.debug=false"_s); }

    void randomEditsKeepModelsAndDatabaseTogether_data()
    {
        QTest::addColumn<int>("sorting");
        addRow("by hand", int(ViewSettings::ManualSorting));
        addRow("by name", int(ViewSettings::AlphabeticalSorting));
        addRow("by id", 3);
    }

    void randomEditsKeepModelsAndDatabaseTogether()
    {
        QFETCH(int, sorting);
        LocalCollection fixture;
        fixture.set("PreferencesDialog/nodeSortingType", sorting);
        BrowsTreeController *tree = &fixture.tree();
        tree->reloadSorting();
        TRmodel *relations = fixture.relations().model();
        test({tree->model(), tree->sorterModel(), relations});

        RandomEdits edits(fixture, 20 + quint32(sorting));
        for (int step = 0; step < 250 && !QTest::currentTestFailed(); ++step) {
            edits.step();
            QCoreApplication::processEvents();
            QStringList stored = fixture.rows(
                "SELECT n.node_id, coalesce(parent_id,0), inverted, tag_name FROM tb_nodes n LEFT JOIN "
                "tb_node_links ON child_id=n.node_id JOIN tags USING(tag_id)"_s);
            stored.sort();
            QCOMPARE(nodesOf(*tree->model()), stored);
            QCOMPARE(nodesOf(*tree->sorterModel()), stored);
            QCOMPARE(pathsOf(*relations), fixture.rows("SELECT * FROM tag_relationships ORDER BY 1"_s));
        }
        QVERIFY(!fixture.manager()->nodes().isEmpty() && relations->rowCount() > 0);
    }

    void currentNodeOutlivesEdits()
    {
        LocalCollection fixture;
        BrowsTreeController *tree = &fixture.tree();
        fixture.addTags({"one"_s, "two"_s});
        tree->addNodesBelow({1}, 0);
        tree->addNodesBelow({2}, 1);
        const auto marked = [tree](qint64 id) {
            return tree->sorterModel()->indexOfNode(TagNode, id).data(Qt::DecorationRole).isValid();
        };
        QCOMPARE(tree->sorterModel()->index(0, 0).data(NodeRole::CurrentId).toLongLong(), 0);
        tree->nodeActivated(TagNode, 2, {1, 2}, {});
        QVERIFY(marked(2) && !marked(1));
        fixture.manager()->reloadAllData();
        QVERIFY(marked(2));
        tree->addNodesAbove({1}, 1); // moves the branch
        QVERIFY(marked(2));
        tree->removeNodes({1}); // lets it rise
        QVERIFY(marked(2));
        QCOMPARE(tree->currentTagNodeId(), 2);

        // Another program removes the node; a reload finds it gone.
        QVERIFY(fixture.run("DELETE FROM tb_nodes WHERE node_id=2"));
        fixture.manager()->reloadAllData();
        QCOMPARE(tree->currentTagNodeId(), 0);
        QCOMPARE(tree->currentNodeType(), 0);
    }

    void manyNodesGoAtOnce()
    {
        LocalCollection fixture;
        fixture.addTags({"a"_s, "b"_s});
        // Node n below n / 3; the odd ones bear the second tag.
        QVERIFY(fixture.fill(
            "INSERT INTO tb_nodes(node_id,tag_id,tr_options,inverted) SELECT i,1+i%2,1,0 FROM n", 900));
        QVERIFY(fixture.fill("INSERT INTO tb_node_links(parent_id,child_id) SELECT i/3,i FROM n", 900));
        fixture.manager()->loadAllNodes();
        BrowsTreeController *tree = &fixture.tree();
        tree->nodeActivated(TagNode, 898, {1}, {});
        test({tree->model(), tree->sorterModel()});
        QSignalSpy resets(tree->sorterModel(), &QAbstractItemModel::modelReset);
        QSignalSpy removals(tree->sorterModel(), &QAbstractItemModel::rowsRemoved);
        QVERIFY(fixture.manager()->removeTags({2}));
        QCOMPARE(resets.size(), 1);
        QCOMPARE(removals.size(), 0);
        QStringList stored = fixture.rows("SELECT child_id, parent_id, 0, 'a' FROM tb_node_links"_s);
        stored.sort();
        QCOMPARE(stored.size(), 450);
        QCOMPARE(nodesOf(*tree->sorterModel()), stored);
        QCOMPARE(tree->sorterModel()->index(0, 0).data(NodeRole::CurrentId).toLongLong(), 898);
        tree->addNodesBelow({1}, 898);
        tree->removeNodes({2});
        QCOMPARE(resets.size(), 1);
        QCOMPARE(tree->sorterModel()->rowCount(tree->sorterModel()->indexOfNode(TagNode, 898)), 1);
    }

    void chainsDeeperThanAnyStack()
    {
        // Only so many levels are shown, as views recurse into what is open. All of it is there and can go.
        constexpr int nodes = 200000;
        constexpr int relations = 700;
        LocalCollection fixture;
        fixture.addTags({"a"_s});
        QVERIFY(fixture.fill("INSERT INTO tb_nodes(node_id,tag_id,tr_options,inverted) SELECT i,1,1,0 FROM n",
                             nodes));
        QVERIFY(fixture.fill("INSERT INTO tb_node_links(parent_id,child_id) SELECT i-1,i FROM n", nodes));
        QVERIFY(fixture.fill(
            "INSERT INTO tag_relationships SELECT 1||replace(hex(zeroblob(i-1)),'00','.1') FROM n",
            relations));
        fixture.manager()->reloadAllData();
        BrowsTreeController &tree = fixture.tree();
        RelationsController &trees = fixture.relations();
        for (QAbstractItemModel *model : {static_cast<QAbstractItemModel *>(tree.sorterModel()),
                                          static_cast<QAbstractItemModel *>(trees.model())}) {
            QTreeView view;
            view.setModel(model);
            view.expandAll();
            QModelIndex deepest = view.indexAt({});
            for (QModelIndex next = deepest; next.isValid(); next = view.indexBelow(next))
                deepest = next;
            int level = 0;
            for (QModelIndex above = deepest; above.isValid(); above = above.parent())
                ++level;
            QCOMPARE(level, 500);
            QCOMPARE(deepest.data().toString(), "a …"_s);
        }
        QVector<qint64> required, excluded;
        tree.nodeById(nodes)->collectTagRequirements(required, excluded);
        QCOMPARE(required.size(), nodes);
        QCOMPARE(trees.descendantsOf({1}).size(), relations * (relations - 1) / 2);
        // News from below the deepest level that is shown.
        test({tree.model(), trees.model()});
        tree.addNodesBelow({1}, nodes);
        tree.addNodesAbove({1}, 600);
        tree.removeNodes({700});
        fixture.manager()->renameTag(1, "b"_s);
        trees.removeNode(fixture.manager()->relationNodes().at(relations - 1).first);
        QCOMPARE(tree.nodeById(nodes + 1)->parentNode()->id(), nodes);
        QCOMPARE(trees.model()->index(0, 0).data().toString(), "b"_s);
        tree.removeNodes({1});
        QCOMPARE(fixture.rows("SELECT count(*) FROM tb_nodes"_s), QStringList("200000"_s));
        tree.removeNodesWithSubtree({2});
        QCOMPARE(fixture.rows("SELECT count(*) FROM tb_nodes"_s), QStringList("0"_s));
    }

    void eachOtherOfAChainGoes()
    {
        // As many moves as nodes that stay, each with all that stands below.
        constexpr int nodes = 10000;
        LocalCollection fixture;
        fixture.addTags({"a"_s, "b"_s});
        QVERIFY(fixture.fill("INSERT INTO tb_nodes(node_id,tag_id,tr_options,inverted) SELECT i,1+i%2,1,0 "
                             "FROM n",
                             nodes));
        QVERIFY(fixture.fill("INSERT INTO tb_node_links(parent_id,child_id) SELECT i-1,i FROM n", nodes));
        fixture.manager()->reloadAllData();
        BrowsTreeController &tree = fixture.tree();
        tree.nodeActivated(TagNode, 3, {2}, {});
        test({tree.model()});
        fixture.tags().removeTags({1});
        QCOMPARE(fixture.rows("SELECT count(*) FROM tb_node_links WHERE parent_id=max(0,child_id-2)"_s),
                 QStringList(QString::number(nodes / 2)));
        QCOMPARE(fixture.manager()->nodes().size(), nodes / 2);
        for (qint64 id = 3; id < nodes; id += 2)
            QCOMPARE(tree.nodeById(id)->parentNode()->id(), id - 2);
        QCOMPARE(tree.currentNodeId(), 3);
        // All that has moved is followed still, and what has gone is not.
        const QModelIndex top = tree.sorterModel()->indexOfNode(TagNode, 1);
        QCOMPARE(top.data(NodeRole::CurrentId).toLongLong(), 3);
        QSignalSpy inserted(tree.model(), &TBtreeModel::rowsInserted);
        QSignalSpy removed(tree.model(), &TBtreeModel::rowsRemoved);
        tree.addNodesBelow({2}, 5);
        QCOMPARE(inserted.size(), 1);
        tree.removeNodes({fixture.manager()->nodes().keys().last()});
        QCOMPARE(removed.size(), 1);
    }

    void relationsFollowTheirTags()
    {
        LocalCollection fixture;
        fixture.addTags({"animals"_s, "lions"_s, "cubs"_s});
        RelationsController &relations = fixture.relations();
        relations.addChildren(QString(), {1, 2});
        relations.addChildren("1"_s, {2});
        relations.addChildren("1.2"_s, {3});
        TRmodel *model = relations.model();
        QSignalSpy repainted(model, &TRmodel::dataChanged);
        fixture.manager()->renameTag(2, "big cats"_s);
        QVERIFY(!repainted.isEmpty());
        for (const char *path : {"2", "1.2"})
            QCOMPARE(model->indexOfPath(QLatin1String(path)).data().toString(), "big cats"_s);
        const QModelIndex cubs = model->indexOfPath("1.2.3"_s);
        QCOMPARE(cubs.data(RelationRole::TagId).toLongLong(), 3);
        QVERIFY(!model->indexOfPath("1.3"_s).isValid());
        const std::unique_ptr<QMimeData> data(
            model->mimeData({cubs, model->indexOfPath("2"_s), model->indexOfPath("1.2"_s)}));
        QCOMPARE(data->formats(), QStringList(Constants::tagMimeType));
        QCOMPARE(IdListMime::unpack(data.get(), Constants::tagMimeType), (QVector<qint64>{3, 2}));
        fixture.manager()->removeTags({2});
        QCOMPARE(pathsOf(*model), QStringList("1"_s));
    }

    void scatteredEntriesGoInOneStep()
    {
        LocalCollection fixture;
        QVERIFY(fixture.fill("INSERT INTO tags SELECT i,'tag '||i,'',0,NULL FROM n", 240));
        QVERIFY(fixture.fill("INSERT INTO tag_relationships SELECT i FROM n", 240));
        fixture.manager()->reloadAllData();
        TRmodel *model = fixture.relations().model();
        test({model});
        QCOMPARE(model->rowCount({}), 240);
        QSignalSpy resets(model, &QAbstractItemModel::modelReset);
        QSignalSpy removals(model, &QAbstractItemModel::rowsRemoved);
        QVector<qint64> odd;
        for (qint64 id = 1; id < 240; id += 2)
            odd.append(id);
        QVERIFY(fixture.manager()->removeTags(odd));
        QCOMPARE(resets.size(), 1);
        QCOMPARE(model->rowCount({}), 120);
        // Those that stand next to each other, in the order of their paths as texts, go together.
        QVERIFY(fixture.manager()->removeTags({100, 102, 104, 110, 112, 20}));
        QCOMPARE(resets.size(), 1);
        QCOMPARE(removals.size(), 3);
        QCOMPARE(pathsOf(*model).size(), 114);
        QVERIFY(!model->indexOfPath("104"_s).isValid());
        QVERIFY(model->indexOfPath("106"_s).isValid());
    }

    void relationWithoutItsParent()
    {
        TRnode late(4, "names"_s);
        LocalCollection fixture;
        fixture.addTags({"animals"_s, "lions"_s, "cubs"_s, "names"_s});
        fixture.run("INSERT INTO tag_relationships VALUES ('1.2'),('1.2.3'),('2'),('2.1.4.3')");
        fixture.manager()->reloadAllData();
        TRmodel *model = fixture.relations().model();
        const QStringList stored({"1.2"_s, "1.2.3"_s, "2"_s, "2.1.4.3"_s});
        QCOMPARE(pathsOf(*model), stored);
        for (const QString &path : stored)
            QCOMPARE(model->indexOfPath(path).data(RelationRole::Path).toString(), path);
        fixture.relations().addChildren("1.2"_s, {4});
        fixture.relations().removeNode("1.2.3"_s);
        fixture.relations().removeNode("2.1.4.3"_s);
        QCOMPARE(pathsOf(*model), QStringList({"1.2"_s, "1.2.4"_s, "2"_s}));
        fixture.relations().removeNode("1.2"_s);
        QCOMPARE(pathsOf(*model), QStringList("2"_s));
        QCOMPARE(fixture.rows("SELECT * FROM tag_relationships"), QStringList("2"_s));
        Vector<QPair<QString, TRnode *>> added;
        added.append({"3.1.4"_s, &late});
        model->addedNewNodes(added);
        QCOMPARE(pathsOf(*model), QStringList({"2"_s, "3.1.4"_s}));
    }
};

QTEST_MAIN(TestTreeModels)
#include "tst_treemodels.moc"
