#include "core/providers/groupsprovider.h"
#include "core/providers/mainviewprovider.h"
#include "core/providers/relationtreeprovider.h"
#include "core/providers/sqlitebrowstreeprovider.h"
#include "core/providers/sqlitegeneralprovider.h"
#include "core/providers/tagsprovider.h"
#include "support/localdatabase.h"

#include <QSignalSpy>
#include <QSqlError>
#include <QtTest>

#include <memory>
#include <numeric>

using Ids = QVector<qint64>;

/** The providers against a real database file. */
class TestProviders : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_database = std::make_unique<LocalDatabase>();
        QVERIFY(m_database->isReady());
    }
    void cleanup() { m_database.reset(); }

    void textsComeBackAsTheyWentIn_data();
    void textsComeBackAsTheyWentIn();
    void emptyListsRunNothing();
    void tagReply();
    void groupTags();
    void removedGroupsLeaveTags();
    void relationConditions_data();
    void relationConditions();
    void removingManyTagsFromTrees();
    void addedPaths();
    void nodeBelowAndAbove();
    void autolinks();
    void probe();
    void probeOfReadOnlyFile();
    void statementsStopAtTheFirstFailure();
    void failedCommitTellsItsNumber();

private:
    std::unique_ptr<LocalDatabase> m_database;
};

void TestProviders::textsComeBackAsTheyWentIn_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("single quote") << QStringLiteral("O'Neil''s");
    QTest::newRow("double quote") << QStringLiteral("12\" disc");
    QTest::newRow("comment") << QStringLiteral("x\" --");
    QTest::newRow("end of statement") << QStringLiteral("'; DELETE FROM tags; --");
    QTest::newRow("places of templates") << QStringLiteral("100% of %1, %2 and %L1");
    QTest::newRow("placeholder") << QStringLiteral(":FILE ?");
    QTest::newRow("line ends") << QStringLiteral("a\nb\r\n\tc");
    QTest::newRow("emoji") << QString::fromUtf8("\xF0\x9F\x93\x81 \xC3\xA9t\xC3\xA9");
    QTest::newRow("backslash") << QStringLiteral("a\\'b\\");
    QTest::newRow("column name") << QStringLiteral("tag_name");
    QTest::newRow("empty") << QString();
}

void TestProviders::textsComeBackAsTheyWentIn()
{
    QFETCH(QString, text);
    TagsProvider tags(m_database->constructor());
    GroupsProvider groups(m_database->constructor());
    MainViewProvider files(m_database->constructor());
    SqliteBrowsTreeProvider nodes(m_database->constructor());
    const ErrorCount errors(tags);
    QVERIFY(m_database->addFiles(2));
    QVERIFY(m_database->run("INSERT INTO file_paths VALUES (2,'',''),(1,'block','block')"));

    const qint64 tagId = tags.addTag(text);
    QVERIFY(tags.updateTag(tagId, QStringLiteral("tag_description"), text));
    QVERIFY(groups.renameGroup(groups.addGroup(text), text + text));
    QVERIFY(files.updateFile(1, QStringLiteral("file_name"), text));
    QVERIFY(files.updateFilePath(2, QStringLiteral("path"), text));
    nodes.addAutolink(text, text, QStringLiteral("id") + text);
    nodes.updateAutolink(QStringLiteral("id") + text, text + text, text);

    QCOMPARE(m_database->value("SELECT tag_name FROM tags"), text);
    QCOMPARE(m_database->value("SELECT tag_description FROM tags"), text);
    QCOMPARE(m_database->value("SELECT name FROM tag_groups"), text + text);
    QCOMPARE(m_database->value("SELECT file_name FROM files WHERE file_id=1"), text);
    QCOMPARE(m_database->value("SELECT path FROM file_paths WHERE path_id=2"), text);
    QCOMPARE(m_database->value("SELECT link_abs_path FROM tb_autolinks"), text + text);
    QCOMPARE(errors.count(), 0);
}

void TestProviders::emptyListsRunNothing()
{
    // On a closed connection each statement ends in connectionError.
    m_database->close();
    TagsProvider tags(m_database->constructor());
    GroupsProvider groups(m_database->constructor());
    MainViewProvider files(m_database->constructor());
    SqliteBrowsTreeProvider nodes(m_database->constructor());
    RelationTreeProvider relations(m_database->constructor());
    int signalsSeen = 0;
    const QVector<BaseDBProvider *> all = {&tags, &groups, &files, &nodes, &relations};
    for (BaseDBProvider *provider : all) {
        connect(provider, &BaseDBProvider::connectionError, this, [&signalsSeen] { ++signalsSeen; });
        connect(provider, &BaseDBProvider::errorOccured, this, [&signalsSeen] { ++signalsSeen; });
    }
    tags.loadTags({});
    tags.removeTags({});
    groups.loadGroups({});
    groups.removeGroups({});
    groups.setGroupTags(1, {}, {});
    files.loadFiles({});
    files.linkTags({}, {1});
    files.linkTags({1}, {});
    files.unlinkTags({}, {1});
    files.unlinkTags({1}, {});
    nodes.loadNodes({});
    nodes.removeNodes({});
    nodes.removeLinks({});
    nodes.updateParent({}, 0);
    relations.addPaths(QString(), {});
    relations.removeByTags({}, {});
    relations.removePaths({});
    QCOMPARE(signalsSeen, 0);

    tags.loadTags({1});
    QCOMPARE(signalsSeen, 1);
}

void TestProviders::tagReply()
{
    TagsProvider tags(m_database->constructor());
    const qint64 before = QDateTime::currentSecsSinceEpoch();
    QStringList seen;
    connect(&tags, &TagsProvider::tagsUpdated, this, [&seen](bool ok, TableData table) {
        for (const TableRowData *row : qAsConst(table))
            seen.append(row->value(QStringLiteral("tag_name")).toString() +
                        (ok ? QStringLiteral("+") : QString()));
        freeRows(table);
    });
    QCOMPARE(tags.addTag(QStringLiteral("one")), 1);
    QCOMPARE(tags.addTag(QStringLiteral("two")), 2);
    QVERIFY(tags.updateTag(1, QStringLiteral("tag_name"), QStringLiteral("uno")));
    QCOMPARE(seen, QStringList({QStringLiteral("one+"), QStringLiteral("two+"), QStringLiteral("uno+")}));
    const qint64 date = m_database->value("SELECT min(creation_date) FROM tags").toLongLong();
    QVERIFY(date >= before && date <= before + 60);
}

void TestProviders::groupTags()
{
    GroupsProvider groups(m_database->constructor());
    const qint64 first = groups.addGroup(QStringLiteral("first"));
    const qint64 second = groups.addGroup(QStringLiteral("second"));
    QVERIFY(groups.setGroupTags(first, {}, {1, 2, 3}));
    QVERIFY(groups.setGroupTags(second, {}, {1}));
    // 2 is in the group already, 9 is not
    QVERIFY(groups.setGroupTags(first, {1, 9}, {2, 4, 4}));
    QCOMPARE(m_database->rows("SELECT tag_group_id,tag_id FROM tag_group_links ORDER BY 1,2"),
             QStringList({QStringLiteral("1|2"), QStringLiteral("1|3"), QStringLiteral("1|4"),
                          QStringLiteral("2|1")}));
}

void TestProviders::removedGroupsLeaveTags()
{
    QVERIFY(m_database->addTags(2));
    GroupsProvider groups(m_database->constructor());
    const qint64 first = groups.addGroup(QStringLiteral("first"));
    const qint64 second = groups.addGroup(QStringLiteral("second"));
    groups.setGroupTags(first, {}, {1, 2});
    groups.setGroupTags(second, {}, {2});
    QSignalSpy removed(&groups, &GroupsProvider::groupsRemoved);
    QVERIFY(groups.removeGroups({first}));
    QCOMPARE(removed.count(), 1);
    QCOMPARE(m_database->value("SELECT count(*) FROM tags"), QStringLiteral("2"));
    QCOMPARE(m_database->rows("SELECT tag_id,tag_group_id FROM tag_group_links"),
             QStringList({QStringLiteral("2|2")}));
}

void TestProviders::relationConditions_data()
{
    QTest::addColumn<Ids>("tags");
    QTest::addColumn<QString>("left");
    QTest::newRow("whole pieces only") << Ids{1} << QStringLiteral("11 21.5 5 5.21 7 7.12 7.12.3");
    QTest::newRow("with all below") << Ids{12} << QStringLiteral("1 1.2 11 21.5 5 5.1 5.1.2 5.21 7");
    QTest::newRow("several") << Ids{7, 5} << QStringLiteral("1 1.2 11");
    QTest::newRow("none") << Ids{99} << QStringLiteral("1 1.2 11 21.5 5 5.1 5.1.2 5.21 7 7.12 7.12.3");
}

void TestProviders::relationConditions()
{
    QFETCH(Ids, tags);
    QFETCH(QString, left);
    QVERIFY(
        m_database->run("INSERT INTO tag_relationships VALUES ('1'),('1.2'),('11'),('21.5'),('5'),('5.1'),"
                        "('5.1.2'),('5.21'),('7'),('7.12'),('7.12.3')"));
    RelationTreeProvider relations(m_database->constructor());
    QSignalSpy removed(&relations, &RelationTreeProvider::nodesRemoved);
    relations.removeByTags(tags, {QStringLiteral("known")});
    QCOMPARE(m_database->value("SELECT group_concat(p,' ') FROM (SELECT relationship_path p FROM "
                               "tag_relationships ORDER BY p)"),
             left);
    QCOMPARE(removed.count(), 1);
    QCOMPARE(removed.at(0).at(0).toBool(), true);
}

void TestProviders::removingManyTagsFromTrees()
{
    RelationTreeProvider relations(m_database->constructor());
    Ids tags(3000);
    std::iota(tags.begin(), tags.end(), 1);
    relations.addPaths(QString(), tags);
    relations.addPaths(QStringLiteral("9999"), tags);
    QSignalSpy removed(&relations, &RelationTreeProvider::nodesRemoved);
    tags.removeLast();
    relations.removeByTags(tags, {});
    QCOMPARE(removed.at(0).at(0).toBool(), true);
    QCOMPARE(m_database->rows("SELECT relationship_path FROM tag_relationships ORDER BY 1"),
             QStringList({QStringLiteral("3000"), QStringLiteral("9999.3000")}));
}

void TestProviders::addedPaths()
{
    RelationTreeProvider relations(m_database->constructor());
    QSignalSpy added(&relations, &RelationTreeProvider::nodesAdded);
    relations.addPaths(QString(), {7});
    relations.addPaths(QStringLiteral("7"), {12, 3});
    relations.addPaths(QStringLiteral("7"), {4, 12}); // 12 is there: nothing of it goes in
    QCOMPARE(added.at(1).at(1).toStringList(), QStringList({QStringLiteral("7.12"), QStringLiteral("7.3")}));
    QCOMPARE(added.at(2).at(0).toBool(), false);
    relations.removePaths({QStringLiteral("7.12")});
    QCOMPARE(m_database->rows("SELECT relationship_path FROM tag_relationships ORDER BY 1"),
             QStringList({QStringLiteral("7"), QStringLiteral("7.3")}));
}

void TestProviders::nodeBelowAndAbove()
{
    QVERIFY(m_database->addTags(3));
    SqliteBrowsTreeProvider nodes(m_database->constructor());
    QStringList events;
    connect(&nodes, &BrowsTreeProvider::nodesAdded, this, [&events](bool, TableData table) {
        for (const TableRowData *row : qAsConst(table))
            events.append(QStringLiteral("%1 %2<%3")
                              .arg(row->value(QStringLiteral("node_name")).toString(),
                                   row->value(QStringLiteral("node_id")).toString(),
                                   row->value(QStringLiteral("node_parent_id")).toString()));
        freeRows(table);
    });
    connect(&nodes, &BrowsTreeProvider::nodeParentUpdated, this, [&events](const Ids &ids, qlonglong parent) {
        events.append(QStringLiteral("move %1<%2").arg(ids.first()).arg(parent));
    });
    QCOMPARE(nodes.addNode(1, true, false, 0), 1);
    QCOMPARE(nodes.addNode(2, true, true, 1), 2);
    QCOMPARE(nodes.addNodeAbove(3, true, false, 1, 2), 3);
    QCOMPARE(events, QStringList({QStringLiteral("t1 1<0"), QStringLiteral("t2 2<1"),
                                  QStringLiteral("t3 3<1"), QStringLiteral("move 2<3")}));
    QCOMPARE(
        m_database->rows("SELECT tag_id,tr_options,inverted,parent_id FROM tb_nodes JOIN tb_node_links ON "
                         "child_id=node_id ORDER BY node_id"),
        QStringList({QStringLiteral("1|1|0|0"), QStringLiteral("2|1|1|3"), QStringLiteral("3|1|0|1")}));
    QSignalSpy values(&nodes, &BrowsTreeProvider::nodeValueUpdated);
    nodes.updateNode(2, QStringLiteral("inverted"), QStringLiteral("0"));
    QCOMPARE(values.count(), 1);
    QCOMPARE(m_database->value("SELECT inverted FROM tb_nodes WHERE node_id=2"), QStringLiteral("0"));
}

void TestProviders::autolinks()
{
    SqliteBrowsTreeProvider nodes(m_database->constructor());
    QSignalSpy loaded(&nodes, &BrowsTreeProvider::gotAllAutolinksInfo);
    nodes.addAutolink(QStringLiteral("/x"), QStringLiteral("x"), QStringLiteral("a"));
    nodes.addAutolinkToNode(QStringLiteral("a"), 1);
    nodes.addAutolinkToNode(QStringLiteral("a"), 2);
    nodes.removeAutolinkFromNode(QStringLiteral("a"), 1);
    nodes.loadAutolinks();
    TableData table = loaded.at(0).at(1).value<TableData>();
    QCOMPARE(table.size(), 1);
    QCOMPARE(table.first()->value(QStringLiteral("node_id")).toInt(), 2);
    QCOMPARE(table.first()->value(QStringLiteral("link_abs_path")).toString(), QStringLiteral("/x"));
    freeRows(table);
    nodes.removeAutolink(QStringLiteral("a"));
    QCOMPARE(m_database->value("SELECT count(*) FROM tb_autolinks"), QStringLiteral("0"));
}

void TestProviders::probe()
{
    SqliteGeneralProvider general(m_database->constructor());
    QSignalSpy answers(&general, &GeneralProvider::gotDBReadonly);
    general.probeReadOnly();
    QCOMPARE(answers.at(0).at(0).toBool(), false);
    QCOMPARE(m_database->value("SELECT count(*) FROM file_tag"), QStringLiteral("0"));
    QDateTime date;
    QVERIFY(!general.lastChangeDate(date));
}

void TestProviders::probeOfReadOnlyFile()
{
    QSqlDatabase database = QSqlDatabase::database();
    database.close();
    database.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
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

void TestProviders::statementsStopAtTheFirstFailure()
{
    SqliteGeneralProvider general(m_database->constructor());
    const ErrorCount errors(general);
    QVERIFY(
        !general.runStatements({QStringLiteral("CREATE TABLE one (a);"), QStringLiteral("CREATE nonsense"),
                                QStringLiteral("CREATE TABLE two (a);")},
                               QString()));
    QCOMPARE(errors.count(), 1);
    QCOMPARE(m_database->rows("SELECT name FROM sqlite_master WHERE name IN ('one','two')"),
             QStringList({QStringLiteral("one")}));
}

void TestProviders::failedCommitTellsItsNumber()
{
    TagsProvider tags(m_database->constructor());
    QSqlError told;
    connect(&tags, &BaseDBProvider::errorOccured, &tags, [&told](const QSqlError &error) { told = error; });
    m_database->run("PRAGMA busy_timeout=0");
    const QString other = QStringLiteral("other");
    {
        // Somebody who reads lets nobody commit.
        QSqlDatabase reader = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), other);
        reader.setDatabaseName(QSqlDatabase::database().databaseName());
        QVERIFY(reader.open() && reader.transaction());
        QVERIFY(QSqlQuery(reader).exec(QStringLiteral("SELECT * FROM tags")));
        Transaction transaction(tags);
        QVERIFY(m_database->run("INSERT INTO tag_groups VALUES (1,'x')"));
        QVERIFY(!transaction.commit());
    }
    QSqlDatabase::database(other).close();
    QSqlDatabase::removeDatabase(other);
    QCOMPARE(told.nativeErrorCode(), QStringLiteral("5"));
    // The failed one is rolled back, and the next begins.
    QCOMPARE(m_database->value("SELECT count(*) FROM tag_groups"), QStringLiteral("0"));
    QVERIFY(Transaction(tags).commit());
}

QTEST_GUILESS_MAIN(TestProviders)
#include "tst_providers.moc"
