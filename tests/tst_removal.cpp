#include "core/providers/browstreeprovider.h"
#include "core/providers/relationtreeprovider.h"
#include "core/providers/tagremoval.h"
#include "core/providers/tagsprovider.h"
#include "tests/support/serverdatabase.h"

using Ids = QVector<qint64>;
using Parents = decltype(TagRemovalPlan::newParents);
Q_DECLARE_METATYPE(Parents)

static const char *const everything =
    "SELECT 't'||tag_id FROM tags UNION SELECT 'f'||file_id||'-'||tag_id FROM file_tag UNION "
    "SELECT 'g'||tag_id||'-'||tag_group_id FROM tag_group_links UNION SELECT 'n'||node_id FROM tb_nodes "
    "UNION "
    "SELECT 'l'||parent_id||'-'||child_id FROM tb_node_links UNION SELECT 'a'||link_id FROM tb_autolinks "
    "UNION SELECT 'b'||link_id||'-'||node_id FROM tb_nodes_autolinks UNION "
    "SELECT 'p'||relationship_path FROM tag_relationships ORDER BY 1";
static const QStringList withoutTagTwo =
    QStringLiteral("ay by-1 f10-1 g1-5 l0-1 l1-4 n1 n4 p1 p12 p3 p3.22 t1 t3").split(QLatin1Char(' '));

/** A remover with what it works through. */
struct Removal
{
    explicit Removal(const TestDatabase &database)
        : tags(database.constructor()),
          nodes(database.constructor()),
          relations(database.constructor()),
          remover(database.constructor(), tags, nodes, relations)
    {
        for (BaseDBProvider *provider : providers())
            QObject::connect(provider, &BaseDBProvider::errorOccured, &remover, [this] { ++errors; });
        const auto note = [this](const char *text) {
            return [this, text] { news.append(QLatin1String(text)); };
        };
        QObject::connect(&nodes, &BrowsTreeProvider::nodeParentUpdated, &remover, note("moved"));
        QObject::connect(&nodes, &BrowsTreeProvider::nodesRemoved, &remover, note("nodes"));
        QObject::connect(&relations, &RelationTreeProvider::nodesRemoved, &remover, note("paths"));
        QObject::connect(&tags, &TagsProvider::tagsRemoved, &remover, note("tags"));
    }
    QVector<BaseDBProvider *> providers() { return {&remover, &nodes, &relations, &tags}; }
    bool run(const TagRemovalPlan &plan) { return remover.run(plan); }
    QStringList toldNews()
    {
        for (BaseDBProvider *provider : providers())
            provider->tellNews();
        return std::exchange(news, {});
    }

    TagsProvider tags;
    BrowsTreeProvider nodes;
    RelationTreeProvider relations;
    TagRemover remover;
    int errors = 0;
    QStringList news;
};

static TagRemovalPlan planOfTagTwo()
{
    TagRemovalPlan plan;
    plan.tagIds = Ids{2};
    plan.removedNodeIds = Ids{2, 3};
    plan.newParents = {{1, {4}}};
    plan.removedAutolinks = QStringList({"x"_s});
    plan.removedPaths = QStringList({"1.2"_s, "1.2.3"_s, "2"_s});
    return plan;
}

/** Removals that touch several tables: what goes, what moves, and that a failure changes nothing. */
class TestRemoval : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addBackEnds(); }
    /** Tags 1 to 3; the tree 1(tag 1) > 2(tag 2) > 3(tag 2) > 4(tag 3); node 3 linked to one of two folders.
     */
    void init()
    {
        m_database = makeTestDatabase();
        for (const char *statement :
             {"INSERT INTO tags VALUES (1,'a','',0,NULL),(2,'b','',0,NULL),(3,'c','',0,NULL)",
              "INSERT INTO file_tag VALUES (10,1),(10,2),(11,2)", "INSERT INTO tag_groups VALUES (5,'g')",
              "INSERT INTO tag_group_links VALUES (1,5),(2,5)",
              "INSERT INTO tb_nodes VALUES (1,1,1,0),(2,2,1,0),(3,2,1,0),(4,3,1,0)",
              "INSERT INTO tb_node_links VALUES (0,1),(1,2),(2,3),(3,4)",
              "INSERT INTO tb_autolinks VALUES ('x','/x','x'),('y','/y','y')",
              "INSERT INTO tb_nodes_autolinks VALUES ('x',3),('y',1)",
              "INSERT INTO tag_relationships VALUES ('1'),('1.2'),('1.2.3'),('2'),('3'),('12'),('3.22')"})
            QVERIFY2(m_database->run(statement), statement);
    }
    void cleanup() { m_database.reset(); }

    void unknownNodesGoToo_data()
    {
        addColumns<Ids, Parents>("known", "newParents");
        addRow("none known", Ids{}, Parents{});
        addRow("the lower known", Ids{3}, Parents{{2, {4}}});
        addRow("the upper known", Ids{2}, Parents{{1, {3}}});
    }

    void unknownNodesGoToo()
    {
        QFETCH(Ids, known);
        QFETCH(Parents, newParents);
        TagRemovalPlan plan = planOfTagTwo();
        plan.removedNodeIds = known;
        plan.newParents = newParents;
        plan.removedPaths.clear();
        QVERIFY(Removal(*m_database).run(plan));
        QCOMPARE(m_database->rows(everything), withoutTagTwo);
    }

    void failureLeavesEverything()
    {
        const QStringList before = m_database->rows(everything);
        Removal remover(*m_database);
        int failures = 0;
        for (const char *name : {"file_tag", "tag_group_links", "tb_nodes", "tb_node_links",
                                 "tb_nodes_autolinks", "tb_autolinks", "tag_relationships", "tags"}) {
            const QString table = QLatin1String(name);
            QVERIFY(m_database->refuse("DELETE ON "_s + table));
            QVERIFY2(!remover.run(planOfTagTwo()), name);
            QCOMPARE(remover.errors, ++failures);
            QCOMPARE(remover.toldNews(), QStringList());
            QCOMPARE(m_database->rows(everything), before);
            QVERIFY(m_database->permit(table));
        }
        QVERIFY(remover.run(planOfTagTwo()));
        QCOMPARE(m_database->rows(everything), withoutTagTwo);
        // Nothing is told of before all is stored.
        QCOMPARE(remover.news, QStringList());
        QCOMPARE(remover.toldNews(), QStringList({"moved"_s, "nodes"_s, "paths"_s, "tags"_s}));
        QCOMPARE(remover.remover.unlinkedFileIds(), Ids({10, 11}));
    }

    void manyTags()
    {
        for (const char *insert : {"INSERT INTO tags SELECT i+99,'t','',0,NULL FROM n",
                                   "INSERT INTO file_tag SELECT 10,i+99 FROM n",
                                   "INSERT INTO tag_relationships SELECT i+99 FROM n",
                                   "INSERT INTO tb_node_links SELECT 0,i+99 FROM n",
                                   "INSERT INTO tb_nodes SELECT i+99,i+99,1,0 FROM n"})
            QVERIFY2(m_database->fill(insert, 12000), insert);
        TagRemovalPlan plan = planOfTagTwo();
        for (qint64 id = 100; id < 12100; ++id)
            plan.tagIds.append(id);
        Removal remover(*m_database);
        QVERIFY(remover.run(plan));
        QCOMPARE(m_database->rows(everything), withoutTagTwo);
        QCOMPARE(remover.remover.unlinkedFileIds(), Ids({10, 11}));
    }

private:
    std::unique_ptr<TestDatabase> m_database;
};

QTEST_GUILESS_MAIN(TestRemoval)
#include "tst_removal.moc"
