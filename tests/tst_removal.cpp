#include "core/providers/tagremoval.h"
#include "tests/support/serverdatabase.h"

#include <memory>

using Ids = QVector<qint64>;

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

static const char *const withoutTagTwo[] = {"tag|1",  "tag|3",    "file|10|1", "group|1|5", "node|1",
                                            "node|4", "link|0|1", "link|1|4",  "folder|y",  "linked|y|1",
                                            "path|1", "path|12",  "path|3",    "path|3.22"};

static QStringList texts(const char *const *begin, const char *const *end)
{
    QStringList result;
    for (; begin != end; ++begin)
        result.append(QLatin1String(*begin));
    result.sort();
    return result;
}

/** Removals that touch several tables: what goes, what moves, and that a failure changes nothing. */
class TestRemoval : public QObject
{
    Q_OBJECT

private slots:
    /** Tags 1, 2, 3; the tree 1(tag 1) > 2(tag 2) > 3(tag 2) > 4(tag 3); node 3 linked to one of two folders.
     */
    void initTestCase_data() { addBackEnds(); }
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
        addColumns<Ids, qint64>("known", "newParent");
        addRow("none known", Ids{}, qint64(-1));
        addRow("the lower known", Ids{3}, qint64(2));
        addRow("the upper known", Ids{2}, qint64(-1));
    }

    void unknownNodesGoToo()
    {
        QFETCH(Ids, known);
        QFETCH(qint64, newParent);
        TagRemovalPlan plan = planOfTagTwo();
        plan.removedNodeIds = known;
        plan.removedPaths.clear();
        plan.newParents.clear();
        if (newParent > 0)
            plan.newParents.append({newParent, {4}});
        if (known == Ids{2})
            plan.newParents.append({1, {3}});
        TagRemover remover(m_database->constructor());
        QVERIFY(remover.run(plan));
        QCOMPARE(contents(), texts(std::begin(withoutTagTwo), std::end(withoutTagTwo)));
    }

    void failureLeavesEverything_data()
    {
        QTest::addColumn<QString>("table");
        for (const char *table : {"file_tag", "tag_group_links", "tb_nodes", "tb_node_links",
                                  "tb_nodes_autolinks", "tb_autolinks", "tag_relationships", "tags"})
            addRow(table, QString::fromLatin1(table));
    }

    void failureLeavesEverything()
    {
        QFETCH(QString, table);
        const QStringList before = contents();
        QVERIFY(m_database->refuse("DELETE ON "_s + table));
        TagRemover remover(m_database->constructor());
        const ErrorCount errors(remover);
        QVERIFY(!remover.run(planOfTagTwo()));
        QCOMPARE(errors.count(), 1);
        QCOMPARE(contents(), before);
        QVERIFY(m_database->permit(table));
        QVERIFY(remover.run(planOfTagTwo()));
        QCOMPARE(contents(), texts(std::begin(withoutTagTwo), std::end(withoutTagTwo)));
    }

    void manyTags()
    {
        QVERIFY(
            m_database->run("WITH RECURSIVE n(i) AS (SELECT 100 UNION ALL SELECT i+1 FROM n WHERE i<12099) "
                            "INSERT INTO tags SELECT i,'t','',0,NULL FROM n"));
        QVERIFY(m_database->run("INSERT INTO tag_relationships SELECT tag_id FROM tags WHERE tag_id>=100"));
        QVERIFY(m_database->run("INSERT INTO tb_nodes SELECT tag_id,tag_id,1,0 FROM tags WHERE tag_id>=100"));
        QVERIFY(m_database->run("INSERT INTO tb_node_links SELECT 0,tag_id FROM tags WHERE tag_id>=100"));
        QVERIFY(m_database->run("INSERT INTO file_tag SELECT 10,tag_id FROM tags WHERE tag_id>=100"));
        TagRemovalPlan plan = planOfTagTwo();
        for (qint64 id = 100; id < 12100; ++id)
            plan.tagIds.append(id);
        TagRemover remover(m_database->constructor());
        QVERIFY(remover.run(plan));
        QCOMPARE(contents(), texts(std::begin(withoutTagTwo), std::end(withoutTagTwo)));
    }

private:
    QStringList contents() const
    {
        QStringList result;
        for (const char *statement :
             {"SELECT 'tag',tag_id FROM tags", "SELECT 'file',* FROM file_tag",
              "SELECT 'group',* FROM tag_group_links", "SELECT 'node',node_id FROM tb_nodes",
              "SELECT 'link',parent_id,child_id FROM tb_node_links",
              "SELECT 'folder',link_id FROM tb_autolinks", "SELECT 'linked',* FROM tb_nodes_autolinks",
              "SELECT 'path',* FROM tag_relationships"})
            result += m_database->rows(statement);
        result.sort();
        return result;
    }

    std::unique_ptr<TestDatabase> m_database;
};

QTEST_GUILESS_MAIN(TestRemoval)
#include "tst_removal.moc"
