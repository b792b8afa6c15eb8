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

const SqliteQueryConstructor sqlite;
const PostgresQueryConstructor postgres;

// Each opens the texts of its provider to the table below.
template <class Base>
struct Open : Base
{
    using Base::Base;
    using Base::insertText;
    using Base::selectText;
};
template <class Base>
struct OpenNodes : Open<Base>
{
    using Open<Base>::Open;
    using Base::linkInsertText;
};
struct ServerNodes : OpenNodes<PostgresBrowsTreeProvider>
{
    using OpenNodes::OpenNodes;
    using PostgresBrowsTreeProvider::treeInsertText;
    using PostgresBrowsTreeProvider::treeUpdateText;
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

    /** The statements in both dialects side by side. */
    void texts_data()
    {
        addColumns<QStringList, QStringList>("made", "expected");
        const auto row = [](const char *name, const QString &local, const QString &server,
                            const char *localText, const char *serverText) {
            addRow(name, QStringList({local, server}),
                   QStringList({QLatin1String(localText), QLatin1String(serverText)}));
        };
        const Open<TagsProvider> tags(&sqlite), serverTags(&postgres);
        const Open<GroupsProvider> groups(&sqlite), serverGroups(&postgres);
        const OpenNodes<BrowsTreeProvider> nodes(&sqlite);
        ServerNodes serverNodes(&postgres);
        serverNodes.setCurrentTree(3);
        const QString name = "O'Neil %1"_s;
        const QRegularExpression date("'\\d{8,}'"_s);

        row("new tag", tags.insertText(name).replace(date, "now"_s),
            serverTags.insertText(name).replace(date, "now"_s),
            "INSERT INTO tags ('tag_name','tag_description','creation_date') VALUES ('O''Neil %1', '', now)",
            "INSERT INTO tags (\"tag_name\",\"tag_description\",\"creation_date\") VALUES ('O''Neil %1', '', "
            "now)");
        row("new group", groups.insertText(name), serverGroups.insertText(name),
            "INSERT INTO tag_groups ('name') VALUES ('O''Neil %1')",
            "INSERT INTO tag_groups (\"name\") VALUES ('O''Neil %1')");
        row("nodes", nodes.selectText(), serverNodes.selectText(),
            "SELECT  tb_nodes.*,tags.tag_name as node_name,tb_node_links.parent_id as node_parent_id FROM "
            "tb_nodes  LEFT JOIN tags ON tags.tag_id=tb_nodes.tag_id  LEFT JOIN tb_node_links ON "
            "tb_node_links.child_id=tb_nodes.node_id",
            "SELECT  tb_nodes.*,tags.tag_name as node_name,tb_node_links.parent_id as node_parent_id,"
            "tb_node_links.browsing_tree_id FROM tb_nodes  LEFT JOIN tags ON tags.tag_id=tb_nodes.tag_id  "
            "LEFT JOIN tb_node_links ON tb_node_links.child_id=tb_nodes.node_id");
        row("new node", nodes.insertText(7, true, false), serverNodes.insertText(7, true, false),
            "INSERT INTO tb_nodes ('tag_id','tr_options','inverted') VALUES ('7', '1', '0')",
            "INSERT INTO tb_nodes (\"tag_id\",\"tr_options\",\"inverted\") VALUES ('7', '1', '0')");
        row("link of a node", nodes.linkInsertText(1, 2), serverNodes.linkInsertText(1, 2),
            "INSERT INTO tb_node_links ('parent_id','child_id') VALUES ('1', '2')",
            "INSERT INTO tb_node_links (\"parent_id\",\"child_id\",\"browsing_tree_id\") VALUES ('1', '2', "
            "'3')");
        row("new tree and renamed one", serverNodes.treeInsertText(name),
            serverNodes.treeUpdateText(3, "tree_name"_s, name),
            "INSERT INTO browsing_trees (\"tree_name\") VALUES ('O''Neil %1') RETURNING tree_id ",
            "UPDATE browsing_trees SET \"tree_name\" = 'O''Neil %1' WHERE tree_id=3 RETURNING tree_id, "
            "tree_name");
    }

    void texts()
    {
        QFETCH(QStringList, made);
        QTEST(made, "expected");
    }

private:
    bool isLocal() const { return m_database->details().type() == 1; }

    std::unique_ptr<TestDatabase> m_database;
};

QTEST_GUILESS_MAIN(TestProviders)
#include "tst_providers.moc"
