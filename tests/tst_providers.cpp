#include "core/providers/groupsprovider.h"
#include "core/providers/mainviewprovider.h"
#include "core/providers/postgresbrowstreeprovider.h"
#include "core/providers/postgresgroupsprovider.h"
#include "core/providers/postgrestagsprovider.h"
#include "core/providers/relationtreeprovider.h"
#include "core/providers/sqlitebrowstreeprovider.h"
#include "core/providers/sqlitegeneralprovider.h"
#include "tests/support/serverdatabase.h"

namespace {
/** The providers of a back-end. */
struct Providers
{
    explicit Providers(const TestDatabase &database) : Providers(database.constructor(), database.details())
    {
    }
    Providers(const AbstractQueryConstructor *constructor, const DBDetails &details)
        : files(constructor), relations(constructor)
    {
        if (details.type() == 2) {
            tags = std::make_unique<PostgresTagsProvider>(constructor);
            groups = std::make_unique<PostgresGroupsProvider>(constructor);
            nodes = std::make_unique<PostgresBrowsTreeProvider>(constructor);
        } else {
            tags = std::make_unique<TagsProvider>(constructor);
            groups = std::make_unique<GroupsProvider>(constructor);
            nodes = std::make_unique<SqliteBrowsTreeProvider>(constructor);
        }
    }

    std::unique_ptr<TagsProvider> tags;
    std::unique_ptr<GroupsProvider> groups;
    std::unique_ptr<BrowsTreeProvider> nodes;
    MainViewProvider files;
    RelationTreeProvider relations;
};
} // namespace

/** The providers against real databases. */
class TestProviders : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addBackEnds(); }
    void init() { m_database = makeTestDatabase(); }
    void cleanup() { m_database.reset(); }

    void textsComeBackAsTheyWentIn_data()
    {
        QTest::addColumn<QString>("text");
        addRow("quotes", "O'Neil''s 12\" disc"_s);
        addRow("statement", "x\" '; DELETE FROM tags; --"_s);
        addRow("places", "100% of %1, %2 and %L1 :FILE ?"_s);
        addRow("line ends and emoji", "a\nb\r\n\tc \xF0\x9F\x93\x81 \xC3\xA9t\xC3\xA9"_s);
        addRow("backslash", "a\\'b\\"_s);
        addRow("byte order mark", "\uFEFF\uFEFFa"_s);
        addRow("column name", "tag_name"_s);
        addRow("empty", QString());
    }

    void textsComeBackAsTheyWentIn()
    {
        QFETCH(QString, text);
        Providers all(*m_database);
        const ErrorCount errors(*all.tags);
        QVERIFY(m_database->addFiles(2) && m_database->run("INSERT INTO file_paths VALUES (2,'','')"));
        const qint64 tagId = all.tags->addTag(text);
        QVERIFY(all.tags->updateTag(tagId, "tag_description"_s, text));
        QVERIFY(all.groups->renameGroup(all.groups->addGroup(text), text + text));
        QVERIFY(all.files.updateFile(1, "file_name"_s, text));
        QVERIFY(all.files.updateFilePath(2, "path"_s, text));
        all.nodes->addAutolink(text, text, "id"_s + text);
        all.nodes->updateAutolink("id"_s + text, text + text, text);
        all.nodes->addTree("new"_s + text);
        all.nodes->updateTree(2, "tree_name"_s, text + text);
        for (const char *once :
             {"SELECT tag_name FROM tags", "SELECT tag_description FROM tags",
              "SELECT file_name FROM files WHERE file_id=1", "SELECT path FROM file_paths"})
            QCOMPARE(m_database->value(once), text);
        QCOMPARE(m_database->value("SELECT name FROM tag_groups"), text + text);
        QCOMPARE(m_database->value(isLocal() ? "SELECT link_abs_path FROM tb_autolinks"
                                             : "SELECT tree_name FROM browsing_trees WHERE tree_id=2"),
                 text + text);
        QCOMPARE(errors.count(), 0);
    }

    void emptyListsRunNothing()
    {
        m_database->close(); // each statement ends in connectionError
        Providers all(*m_database);
        int signalsSeen = 0;
        for (BaseDBProvider *provider : std::initializer_list<BaseDBProvider *>{
                 all.tags.get(), all.groups.get(), all.nodes.get(), &all.files, &all.relations}) {
            connect(provider, &BaseDBProvider::connectionError, this, [&signalsSeen] { ++signalsSeen; });
            connect(provider, &BaseDBProvider::errorOccured, this, [&signalsSeen] { ++signalsSeen; });
        }
        all.tags->loadTags({});
        all.tags->removeTags({});
        all.groups->loadGroups({});
        all.groups->removeGroups({});
        all.groups->setGroupTags(1, {}, {});
        all.files.loadFiles({});
        all.files.linkTags({}, {1});
        all.files.linkTags({1}, {});
        all.files.unlinkTags({}, {1});
        all.files.unlinkTags({1}, {});
        all.nodes->loadNodes({});
        all.nodes->removeNodes({});
        all.nodes->removeLinks({});
        all.nodes->updateParent({}, 0);
        all.relations.addPaths(QString(), {});
        all.relations.removeByTags({}, {});
        all.relations.removePaths({});
        QCOMPARE(signalsSeen, 0);
        all.tags->loadTags({1});
        QCOMPARE(signalsSeen, 1);
    }

    void generalOfLocalDatabases()
    {
        if (!isLocal())
            QSKIP("of local databases");
        SqliteGeneralProvider general(m_database->constructor());
        const ErrorCount errors(general);
        QVERIFY(
            !general.runStatements({"CREATE TABLE one (a)"_s, "nonsense"_s, "CREATE TABLE two (a)"_s}, {}));
        QCOMPARE(errors.count(), 1);
        QCOMPARE(m_database->value("SELECT name FROM sqlite_master WHERE name IN ('one','two')"), "one"_s);
        QSqlDatabase database = QSqlDatabase::database();
        database.close();
        database.setConnectOptions("QSQLITE_OPEN_READONLY"_s);
        QVERIFY(database.open());
        QSignalSpy answers(&general, &GeneralProvider::gotDBReadonly);
        general.probeReadOnly();
        QCOMPARE(answers.at(0).at(0).toBool(), true);
        QCOMPARE(errors.count(), 1);
        QVERIFY(database.transaction() && database.rollback()); // the probe's is over
    }

private:
    bool isLocal() const { return m_database->details().type() == 1; }

    std::unique_ptr<TestDatabase> m_database;
};

QTEST_GUILESS_MAIN(TestProviders)
#include "tst_providers.moc"
