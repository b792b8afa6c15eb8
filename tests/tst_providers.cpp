#include "core/providers/groupsprovider.h"
#include "core/providers/mainviewprovider.h"
#include "core/providers/postgresbrowstreeprovider.h"
#include "core/providers/postgresgroupsprovider.h"
#include "core/providers/postgrestagsprovider.h"
#include "core/providers/relationtreeprovider.h"
#include "core/providers/sqlitebrowstreeprovider.h"
#include "core/providers/sqlitegeneralprovider.h"
#include "core/providers/tagsprovider.h"
#include "db/transaction.h"
#include "tests/support/serverdatabase.h"

#include <QSqlError>

#include <memory>
#include <numeric>

using Ids = QVector<qint64>;

namespace {
/** The providers of a back-end. */
struct Providers
{
    explicit Providers(const TestDatabase &database)
        : files(database.constructor()), relations(database.constructor())
    {
        if (database.details().type() == 2)
            make<PostgresTagsProvider, PostgresGroupsProvider, PostgresBrowsTreeProvider>(database);
        else
            make<TagsProvider, GroupsProvider, SqliteBrowsTreeProvider>(database);
    }
    template <class Tags, class Groups, class Nodes>
    void make(const TestDatabase &database)
    {
        tags = std::make_unique<Tags>(database.constructor());
        groups = std::make_unique<Groups>(database.constructor());
        nodes = std::make_unique<Nodes>(database.constructor());
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
        addRow("single quote", "O'Neil''s"_s);
        addRow("double quote", "12\" disc"_s);
        addRow("comment", "x\" --"_s);
        addRow("end of statement", "'; DELETE FROM tags; --"_s);
        addRow("places of templates", "100% of %1, %2 and %L1"_s);
        addRow("placeholder", ":FILE ?"_s);
        addRow("line ends", "a\nb\r\n\tc"_s);
        addRow("emoji", "\xF0\x9F\x93\x81 \xC3\xA9t\xC3\xA9"_s);
        addRow("backslash", "a\\'b\\"_s);
        addRow("column name", "tag_name"_s);
        addRow("empty", QString());
    }

    void textsComeBackAsTheyWentIn()
    {
        QFETCH(QString, text);
        Providers all(*m_database);
        const ErrorCount errors(*all.tags);
        QVERIFY(m_database->addFiles(2));
        QVERIFY(m_database->run("INSERT INTO file_paths VALUES (2,'',''),(1,'block','block')"));

        const qint64 tagId = all.tags->addTag(text);
        QVERIFY(all.tags->updateTag(tagId, "tag_description"_s, text));
        QVERIFY(all.groups->renameGroup(all.groups->addGroup(text), text + text));
        QVERIFY(all.files.updateFile(1, "file_name"_s, text));
        QVERIFY(all.files.updateFilePath(2, "path"_s, text));
        all.nodes->addAutolink(text, text, "id"_s + text);
        all.nodes->updateAutolink("id"_s + text, text + text, text);
        all.nodes->addTree("new"_s + text);
        all.nodes->updateTree(2, "tree_name"_s, text + text);

        QCOMPARE(m_database->value("SELECT tag_name FROM tags"), text);
        QCOMPARE(m_database->value("SELECT tag_description FROM tags"), text);
        QCOMPARE(m_database->value("SELECT name FROM tag_groups"), text + text);
        QCOMPARE(m_database->value("SELECT file_name FROM files WHERE file_id=1"), text);
        QCOMPARE(m_database->value("SELECT path FROM file_paths WHERE path_id=2"), text);
        QCOMPARE(m_database->value(isLocal() ? "SELECT link_abs_path FROM tb_autolinks"
                                             : "SELECT tree_name FROM browsing_trees WHERE tree_id=2"),
                 text + text);
        QCOMPARE(errors.count(), 0);
    }

    void emptyListsRunNothing()
    {
        // On a closed connection each statement ends in connectionError.
        m_database->close();
        Providers all(*m_database);
        int signalsSeen = 0;
        const QVector<BaseDBProvider *> providers = {all.tags.get(), all.groups.get(), all.nodes.get(),
                                                     &all.files, &all.relations};
        for (BaseDBProvider *provider : providers) {
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

    void probeOfReadOnlyFile()
    {
        if (!isLocal())
            QSKIP("of local databases");
        QSqlDatabase database = QSqlDatabase::database();
        database.close();
        database.setConnectOptions("QSQLITE_OPEN_READONLY"_s);
        QVERIFY(database.open());
        SqliteGeneralProvider general(m_database->constructor());
        QSignalSpy answers(&general, &GeneralProvider::gotDBReadonly);
        const ErrorCount errors(general);
        general.probeReadOnly();
        QCOMPARE(answers.at(0).at(0).toBool(), true);
        QCOMPARE(errors.count(), 0);
        // The probe's transaction is over.
        QVERIFY(database.transaction());
        database.rollback();
    }

    void statementsStopAtTheFirstFailure()
    {
        if (!isLocal())
            QSKIP("of local databases");
        SqliteGeneralProvider general(m_database->constructor());
        const ErrorCount errors(general);
        QVERIFY(!general.runStatements(
            {"CREATE TABLE one (a);"_s, "CREATE nonsense"_s, "CREATE TABLE two (a);"_s}, QString()));
        QCOMPARE(errors.count(), 1);
        QCOMPARE(m_database->rows("SELECT name FROM sqlite_master WHERE name IN ('one','two')"),
                 QStringList({"one"_s}));
    }

private:
    bool isLocal() const { return m_database->details().type() == 1; }

    std::unique_ptr<TestDatabase> m_database;
};

QTEST_GUILESS_MAIN(TestProviders)
#include "tst_providers.moc"
