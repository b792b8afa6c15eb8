#include "core/providers/groupsprovider.h"
#include "core/providers/mainviewprovider.h"
#include "core/providers/postgresbrowstreeprovider.h"
#include "core/providers/postgresgeneralprovider.h"
#include "core/providers/postgresgroupsprovider.h"
#include "core/providers/postgrestagsprovider.h"
#include "core/providers/relationtreeprovider.h"
#include "core/providers/sqlitebrowstreeprovider.h"
#include "core/providers/sqlitegeneralprovider.h"
#include "tests/support/serverdatabase.h"

#include <numeric>

using Ids = QVector<qint64>;

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
    void init()
    {
        m_database = makeTestDatabase();
        m_files = std::make_unique<MainViewProvider>(m_database->constructor());
    }
    void cleanup()
    {
        m_files.reset();
        m_database.reset();
    }

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
        all.nodes->updateParents({});
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

    void nodesOfTheCurrentTree()
    {
        if (isLocal())
            QSKIP("a server alone has several trees");
        PostgresBrowsTreeProvider nodes(m_database->constructor());
        QStringList shown;
        connect(&nodes, &BrowsTreeProvider::gotAllNodesInfo, this, [&shown](bool, TableData table) {
            shown.clear();
            for (const TableRowData *row : table)
                shown.append(row->value("node_id"_s).toString() + QLatin1Char('u') +
                             row->value("node_parent_id"_s).toString());
            shown.sort();
            freeRows(table);
        });
        QVERIFY(m_database->addTags(1));
        const qint64 first = nodes.addNode(1, true, false, 0);
        nodes.setCurrentTree(2);
        const qint64 second = nodes.addNodeAbove(1, true, true, 0, nodes.addNode(1, true, false, 0));
        QVERIFY(m_database->run("INSERT INTO tb_nodes VALUES (9,1,1,0)")); // its link was not written
        nodes.loadAllNodes();
        QCOMPARE(shown, QStringList({"2u3"_s, "3u0"_s, "9u0"_s}));
        nodes.setCurrentTree(0);
        nodes.loadAllNodes();
        QCOMPARE(shown, QStringList({"1u0"_s, "9u0"_s}));
        QCOMPARE(first + second, qint64(4));
    }

    void stampsAreUtc_data()
    {
        QTest::addColumn<QString>("stamp");
        addRow("winter", "2026-01-31T23:59:59.001Z"_s);
        addRow("hour that summer time skips", "2026-03-29T02:30:00.123Z"_s);
    }

    void stampsAreUtc()
    {
        if (isLocal())
            QSKIP("a server alone has stamps");
        QFETCH(QString, stamp);
        qputenv("TZ", "Europe/Berlin");
        auto &owner = static_cast<ServerDatabase &>(*m_database).owner();
        QVERIFY(owner.run("UPDATE tables_modification_date SET last_date='%1'"_s.arg(stamp.chopped(1))));
        PostgresGeneralProvider general(m_database->constructor());
        QDateTime date;
        QVERIFY(general.lastChangeDate(date));
        QCOMPARE(date.toString(Qt::ISODateWithMs), stamp);
        QVERIFY(owner.run("DELETE FROM tables_modification_date"_s));
        QVERIFY(general.lastChangeDate(date));
        QVERIFY(!date.isValid());
        m_database->close();
        QVERIFY(!general.lastChangeDate(date));
    }

    void lostCommitHasNoOlderReason()
    {
        if (isLocal())
            QSKIP("a server alone is lost");
        PostgresGeneralProvider general(m_database->constructor());
        QVERIFY(!general.runSync("SELECT nothing"_s));
        QVERIFY(general.lastError().isValid());
        QVERIFY(general.beginTransaction());
        QVERIFY(static_cast<ServerDatabase &>(*m_database)
                    .owner()
                    .run("SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE usename='%1'"_s.arg(
                        ServerDatabase::writer)));
        QVERIFY(!general.commitTransaction());
        QVERIFY(general.isConnectionLost());
        QVERIFY(!general.lastError().isValid());
    }

    void loadedFileRows()
    {
        QVERIFY(m_database->addFiles(3) && m_database->addTags(2));
        QVERIFY(m_database->run("INSERT INTO file_tag VALUES (1,1),(1,2),(3,2)"));
        QVERIFY(m_database->run("INSERT INTO file_paths VALUES (1,'not mine','x'),(2,'/a','a')"));
        QStringList seen;
        connect(m_files.get(), &MainViewProvider::filesUpdated, this, [&seen](bool, const TableData &table) {
            for (const TableRowData *row : table) {
                QStringList values;
                // No tag is a null, whose text differs by back-end.
                for (const char *column : {"file_id", "tag_id"})
                    values.append(QString::number(row->value(QLatin1String(column)).toLongLong()));
                for (const char *column : {"file_name", "path"})
                    values.append(row->value(QLatin1String(column)).toString());
                seen.append(values.join(QLatin1Char('|')));
            }
        });
        m_files->loadFiles({3, 1, 2, 99});
        QCOMPARE(seen, QStringList({"1|1|f1|"_s, "1|2|f1|"_s, "2|0|f2|/a"_s, "3|2|f3|"_s}));
        // An internal file has no path: 1 is its block.
        m_files->updateFilePath(1, "path"_s, "/lost"_s);
        m_files->updateFilePath(2, "path"_s, "/new"_s);
        QCOMPARE(m_database->value("SELECT path FROM file_paths ORDER BY path_id"), "not mine\n/new"_s);
    }

    void manyFilesComeInPieces()
    {
        QVERIFY(m_database->addFiles(11000) && m_database->addTags(3));
        QVERIFY(m_database->run("INSERT INTO file_tag SELECT file_id,tag_id FROM files CROSS JOIN tags"));
        QVector<int> sizes;
        QMap<qint64, int> rowsOfFile;
        const auto take = [&](bool ok, const TableData &table) {
            sizes.append(ok ? table.size() : -1);
            for (const TableRowData *row : table)
                ++rowsOfFile[row->value("file_id"_s).toLongLong()];
        };
        connect(m_files.get(), &MainViewProvider::gotAllFilesInfo, this, take);
        m_files->loadAllFiles();
        QVERIFY(sizes.size() > 2);
        QCOMPARE(sizes.indexOf(0), sizes.size() - 1);
        QCOMPARE(rowsOfFile.values(), QVector<int>(11000, 3).toList());

        sizes.clear();
        rowsOfFile.clear();
        connect(m_files.get(), &MainViewProvider::filesUpdated, this, [&](bool ok, const TableData &table) {
            take(ok, table);
            // Whole files, and a receiver may use the connection.
            QCOMPARE(rowsOfFile.values(), QVector<int>(rowsOfFile.size(), 3).toList());
            QVERIFY(m_database->run("UPDATE files SET load_id=2 WHERE file_id=1"));
        });
        m_files->loadFiles(firstIds(11000));
        QVERIFY(sizes.size() > 1);
        QCOMPARE(rowsOfFile.size(), 11000);

        sizes.clear();
        m_database->close();
        m_files->loadAllFiles();
        QCOMPARE(sizes, QVector<int>({-1}));
    }

    void productOfFilesAndTags()
    {
        QVERIFY(m_database->addFiles(3) && m_database->addTags(3));
        QVERIFY(m_database->run("INSERT INTO file_tag VALUES (1,1),(2,3)"));
        const ErrorCount errors(*m_files);
        QSignalSpy changes(m_files.get(), &MainViewProvider::tagsChanged);
        const char *const links = "SELECT file_id*10+tag_id FROM file_tag ORDER BY 1";
        QVERIFY(m_files->linkTags({1, 2, 2, 77}, {1, 3, 1, 88}));
        QCOMPARE(m_database->value(links), "11\n13\n21\n23"_s);
        const auto done = changes.first().first().value<TagChanges>();
        QCOMPARE(done.size(), 2);
        QCOMPARE(done.at(0).linked, Ids{2});
        QCOMPARE(done.at(1).linked, Ids{1});
        // What stands already is no news.
        QVERIFY(m_files->linkTags({1}, {1, 3}) && changes.count() == 1);
        QVERIFY(m_files->linkTags({3}, {1, 2}) && m_files->unlinkTags({2, 3}, {1, 88}));
        QCOMPARE(m_database->value(links), "11\n13\n23\n32"_s);
        QCOMPARE(errors.count(), 0);
    }

    void linkingIsAllOrNothing()
    {
        QVERIFY(m_database->addFiles(12000) && m_database->addTags(2));
        // Fails behind the first piece of ids.
        QVERIFY(m_database->refuse("INSERT ON file_tag"_s, "new.file_id=11999"_s));
        const ErrorCount errors(*m_files);
        QSignalSpy changes(m_files.get(), &MainViewProvider::tagsChanged);
        QVERIFY(!m_files->linkTags(firstIds(12000), {1, 2}));
        QCOMPARE(m_database->count("file_tag"_s), 0);
        QCOMPARE(errors.count(), 1);
        QCOMPARE(changes.count(), 0);
        QVERIFY(m_database->permit("file_tag"_s) && m_files->linkTags(firstIds(12000), {1, 2}));
        QCOMPARE(m_database->count("file_tag"_s), 24000);
    }

private:
    static Ids firstIds(int count)
    {
        Ids ids(count);
        std::iota(ids.begin(), ids.end(), 1);
        return ids;
    }

    bool isLocal() const { return m_database->details().type() == 1; }

    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<MainViewProvider> m_files;
};

QTEST_GUILESS_MAIN(TestProviders)
#include "tst_providers.moc"
