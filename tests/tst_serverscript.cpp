#include "db/migrations/databaseupdater.h"
#include "tests/support/serverdatabase.h"

#include <atomic>
#include <thread>
#include <vector>

namespace {
const QString stampQuery = QStringLiteral("SELECT max(last_date) FROM tables_modification_date");
const QString notes =
    QStringLiteral("SELECT string_agg(concat_ws(' "
                   "',table_name,kind,array_to_string(keys,','),array_to_string(paths,',')),'; ' "
                   "ORDER BY table_name,kind) FROM change_commits JOIN change_journal USING (transaction_id) "
                   "WHERE stamp>%1");
const QString lastPlace = QStringLiteral("SELECT max(stamp) FROM change_commits");
const QString newTag = QStringLiteral("INSERT INTO tags (tag_name,creation_date) VALUES ('t',1)");

const QString upgradeScript = QStringLiteral(VORNA_SERVER_SCRIPT).replace("Create"_s, "Upgrade"_s);
const QString oldScript = QStringLiteral(VORNA_TEST_DATA "/Create_DB_with_stamps_alone.sql");

/** An empty database beside the one that is set up, with its owner's connection. */
struct EmptyDatabase
{
    EmptyDatabase(const QString &name, const QString &options) : name(name)
    {
        if (!ServerDatabase::create(name, options))
            qFatal("no database on the server");
        connection = std::make_unique<ServerConnection>(ServerDatabase::ownerDetailsFor(name), name);
    }
    ~EmptyDatabase()
    {
        connection.reset();
        ServerDatabase::remove(name);
    }

    QString name;
    std::unique_ptr<ServerConnection> connection;
};

/** A transaction of a random kind; true when it ends in a commit of something written. */
bool randomTransaction(ServerConnection &client, QRandomGenerator &random)
{
    const auto oneIn = [&random](int n) { return random.bounded(n) == 0; };
    const bool isRolledBack = oneIn(5);
    client.run(oneIn(5) ? "BEGIN ISOLATION LEVEL REPEATABLE READ"_s : "BEGIN"_s);
    client.run("SELECT count(*) FROM tags"_s);
    if (oneIn(3))
        client.run("SAVEPOINT S1; %1; ROLLBACK TO SAVEPOINT S1"_s.arg(newTag));
    if (oneIn(4))
        std::this_thread::sleep_for(std::chrono::milliseconds(random.bounded(5)));
    client.run(oneIn(2) ? newTag : newTag + QLatin1Char(';') + newTag);
    return client.run(isRolledBack ? "ROLLBACK"_s : "COMMIT"_s) && !isRolledBack;
}
} // namespace

/** The script that sets up a database on a server, by what clients meet in such a database. */
class TestServerScript : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (!ServerDatabase::isAvailable())
            QSKIP("VORNA_TEST_PG names no server");
        m_database = std::make_unique<ServerDatabase>();
    }

    void columnsStandAsInALocalDatabase()
    {
        QSqlDatabase local = QSqlDatabase::addDatabase(Constants::sqliteDriver, "local"_s);
        local.setDatabaseName(":memory:"_s);
        local.open();
        for (const QString &statement : Schema::creationStatements())
            QSqlQuery(local).exec(statement);
        const QString of = "SELECT string_agg(attname, ',' ORDER BY attnum) FROM pg_attribute "
                           "WHERE attrelid=to_regclass('%1') AND attnum>0"_s;
        QStringList tables = local.tables();
        for (const QString &name : Sql::rows("SELECT tablename FROM pg_tables WHERE schemaname='public'")) {
            if (!tables.removeOne(name))
                continue; // of the server alone
            QSqlQuery columns("SELECT group_concat(name) FROM pragma_table_info('%1')"_s.arg(name), local);
            columns.next();
            const QString more = name == "tb_node_links"_s ? ",browsing_tree_id"_s : QString();
            QCOMPARE(Sql::rows(of.arg(name)).value(0), columns.value(0).toString() + more);
        }
        QCOMPARE(tables.size(), 5); // those that nobody uses
        QCOMPARE(
            Sql::value("SELECT string_agg(DISTINCT attname||' '||atttypid::regtype,',') FROM pg_attribute"
                       " JOIN pg_tables ON attrelid=tablename::regclass WHERE schemaname='public' AND "
                       "attnum>0 AND atttypid NOT IN (20,25)"),
            "data bytea,id_code character,internal integer,inverted integer,is_first boolean,keys bigint[],"
            "last_date timestamp without time zone,paths text[],thumbnail bytea,tr_options integer,"
            "transaction_id xid8"_s);
    }

    void insertsOfClients_data()
    {
        addColumns<QString, QString>("insert", "key");
        addRow("files", "VALUES (nextval('files_file_id_seq'),'n','',1,2,3,'AAAAAAA',1,0,NULL,0,2)"_s, "1"_s);
        addRow("file_paths", "VALUES (nextval('file_paths_path_id_seq'),'/a','a')"_s, "1"_s);
        addRow("thumbnails", "VALUES (nextval('thumbnails_thumbnail_id_seq'),'x')"_s, "1"_s);
        addRow("file_tag", "VALUES (0,0)"_s, "0"_s);
        addRow("storage", "VALUES (nextval('storage_storage_id_seq'),'x')"_s, "1"_s);
        addRow("storage_info", "VALUES (1,0)"_s, "1"_s);
        addRow("tags", "(\"tag_name\",\"tag_description\",\"creation_date\") VALUES ('a','','1')"_s, "1"_s);
        addRow("tb_nodes", "(\"tag_id\",\"tr_options\",\"inverted\") VALUES ('1','1','0')"_s, "1"_s);
        addRow("tb_node_links", "VALUES (0,1)"_s, "0"_s);
        addRow("tag_relationships", "VALUES ('1.2')"_s, "1.2"_s);
        addRow("browsing_trees", "(\"tree_name\") VALUES ('Default')"_s, "2"_s);
    }

    void insertsOfClients()
    {
        QFETCH(QString, insert);
        const QString table = QString::fromLatin1(QTest::currentDataTag());
        QStringList stamps{stamp()};
        const QString row = Sql::rows("INSERT INTO %1 %2 RETURNING *"_s.arg(table, insert)).value(0);
        QTEST(row.section(QLatin1Char('|'), 0, 0), "key");
        stamps += stamp();
        QVERIFY(Sql::run("DELETE FROM "_s + table));
        stamps += stamp();
        QVERIFY(m_database->owner().run("TRUNCATE tables_modification_date, "_s + table));
        stamps += stamp();
        QVERIFY(std::adjacent_find(stamps.cbegin(), stamps.cend(), std::greater_equal<>()) == stamps.cend());
    }

    void stampsFollowTheCommits()
    {
        ServerConnection other(m_database->details(), "other"_s);
        QVERIFY(other.run("SET statement_timeout=2000"_s)); // waits for nobody
        for (const QString &beginning : {"BEGIN"_s, "BEGIN ISOLATION LEVEL REPEATABLE READ"_s}) {
            const QString before = stamp();
            QVERIFY(Sql::run(beginning) && Sql::run(newTag) && other.run(newTag));
            const QString early = other.value(stampQuery);
            QVERIFY(early > before);
            QVERIFY(Sql::run("SAVEPOINT S1; %1; ROLLBACK TO SAVEPOINT S1; COMMIT"_s.arg(newTag)));
            QVERIFY(stamp() > early);
        }
    }

    void journalOfAStatement_data()
    {
        addColumns<QString, QString>("statements", "result");
        const QString fill = "INSERT INTO file_tag SELECT i,1 FROM generate_series(1,%1) i"_s;
        addRow("rows", "INSERT INTO file_tag VALUES (5,1),(5,2),(6,1)"_s, "file_tag insert 5,6"_s);
        addRow("key that changes", "UPDATE tags SET tag_id=901 WHERE tag_id=900"_s, "tags update 900,901"_s);
        addRow("key of text", "DELETE FROM tag_relationships"_s, "tag_relationships delete  9.1,9.2"_s);
        addRow("no row", "UPDATE tags SET tag_name='' WHERE tag_id=-1"_s, ""_s);
        addRow("rows that nobody keeps",
               "INSERT INTO storage_info SELECT 70+i,0 FROM generate_series(1,9) i"_s,
               "storage_info other "_s);
        addRow("savepoint",
               "BEGIN; SAVEPOINT a; INSERT INTO file_tag VALUES (7,1); ROLLBACK TO a; "
               "INSERT INTO tb_node_links VALUES (0,8); COMMIT"_s,
               "tb_node_links insert 8"_s);
        addRow("many rows", fill.arg(20001), "file_tag all"_s);
        addRow("many statements",
               "DO $$ BEGIN FOR i IN 1..60 LOOP INSERT INTO file_tag VALUES (i%3,i); END LOOP; END $$"_s,
               "file_tag insert 0,1,2"_s);
        addRow("many rows in many statements",
               "DO $$ BEGIN FOR i IN 1..51 LOOP INSERT INTO file_tag SELECT i*1000+j,1 FROM "
               "generate_series(1,400) j; END LOOP; INSERT INTO tb_node_links VALUES (0,9); END $$"_s,
               "file_tag all; tb_node_links insert 9"_s);
        addRow("truncate", "TRUNCATE tags"_s, "tags all"_s);
        addRow("version", "UPDATE vorna_version SET version=version"_s, "vorna_version all"_s);
    }

    void journalOfAStatement()
    {
        QFETCH(QString, statements);
        ServerConnection &owner = m_database->owner();
        QVERIFY(owner.run("DELETE FROM file_tag; DELETE FROM tb_node_links; DELETE FROM tags; "
                          "DELETE FROM tag_relationships; INSERT INTO tags VALUES (900,'','',0,NULL); "
                          "INSERT INTO tag_relationships VALUES ('9.1'),('9.2')"_s));
        const QString place = owner.value(lastPlace);
        QVERIFY(owner.run(statements));
        QTEST(Sql::rows(notes.arg(place)).value(0), "result");
    }

    /** A key that is drawn before the commit would have the reader pass over the one that comes later. */
    void commitInAnotherOrderIsNotPassedOver()
    {
        ServerConnection other(m_database->details(), "other"_s);
        QVERIFY(Sql::run("BEGIN; INSERT INTO file_tag VALUES (77001,1)"));
        QVERIFY(other.run("BEGIN; INSERT INTO file_tag VALUES (77002,1)"_s));
        const QString before = other.value(lastPlace);
        QVERIFY(other.run("COMMIT"_s));
        const QString place = other.value(lastPlace);
        QCOMPARE(other.value(notes.arg(before)), "file_tag insert 77002"_s);
        QVERIFY(Sql::run("COMMIT"));
        QCOMPARE(other.value(notes.arg(place)), "file_tag insert 77001"_s);
    }

    void journalGoesAfterADay()
    {
        ServerConnection &owner = m_database->owner();
        QVERIFY(Sql::run(newTag) && owner.run("UPDATE change_commits SET stamp=stamp-86500000"_s));
        QVERIFY(Sql::run(newTag));
        QTRY_VERIFY(Sql::run(newTag) &&
                    Sql::value("SELECT count(*) FROM change_commits WHERE stamp<(SELECT max(stamp) FROM "
                               "change_commits)-86400000") == "0"_s);
        QCOMPARE(Sql::value("SELECT count(*) FROM change_journal WHERE transaction_id NOT IN "
                            "(SELECT transaction_id FROM change_commits)"),
                 "0"_s);
    }

    void editIsRefusedForWhatItRestsOn_data()
    {
        addColumns<QString, bool>("base", "isRefused");
        const QString none = "'{}'"_s;
        const auto row = [](const QString &files, const QString &tags, const QString &nodes,
                            const QString &paths) {
            return QStringList{files, tags, "'{}'"_s, nodes, "'{}'"_s, paths}.join(QLatin1Char(','));
        };
        addRow("others", row("'{5}'"_s, "'{6}'"_s, "'{7}'"_s, "'{9.9}'"_s), false);
        addRow("file", row("'{4,3}'"_s, none, none, none), true);
        addRow("tag", row(none, "'{1}'"_s, none, none), true);
        addRow("node", row(none, none, "'{2}'"_s, none), true);
        addRow("path", row(none, none, none, "'{3.1}'"_s), true);
    }

    void editIsRefusedForWhatItRestsOn()
    {
        QFETCH(QString, base);
        const QString place = Sql::rows(lastPlace).value(0);
        QVERIFY(m_database->owner().run(
            "DELETE FROM file_tag; INSERT INTO file_tag VALUES (3,9); INSERT INTO tags VALUES "
            "(1,'','',0,NULL) "
            "ON CONFLICT (tag_id) DO UPDATE SET tag_name=''; DELETE FROM tb_node_links; "
            "INSERT INTO tb_node_links VALUES (0,2); DELETE FROM tag_relationships; "
            "INSERT INTO tag_relationships VALUES ('3.1')"_s));
        QVERIFY(Sql::run("SET vorna.client='me'"));
        QTEST(!Sql::run(qPrintable("SELECT refuse_if_changed(%1,%2)"_s.arg(place, base))), "isRefused");
        // An own change is in nobody's way.
        const QString later = Sql::rows(lastPlace).value(0);
        QVERIFY(Sql::run("INSERT INTO file_tag VALUES (3,10),(4,10); UPDATE tags SET tag_name='mine'"));
        QVERIFY(Sql::run(qPrintable("SELECT refuse_if_changed(%1,%2)"_s.arg(later, base))));
        QVERIFY(Sql::run("RESET vorna.client"));
    }

    void stampsTakeNoRoom()
    {
        for (int i = 0; i < 600; ++i)
            QVERIFY(Sql::run(newTag));
        QCOMPARE(Sql::value("SELECT pg_relation_size('tables_modification_date')/8192"), "1"_s);
    }

    void anOlderDatabaseIsUpgraded()
    {
        const EmptyDatabase old("vorna_journal"_s, {});
        QCOMPARE(ServerDatabase::runScript(old.name, nullptr, oldScript), 0);
        const QString objects =
            "SELECT string_agg(concat_ws(' ',relname,relacl,reloptions),',' ORDER BY relname) "
            "||(SELECT string_agg(concat_ws(' ',tgrelid::regclass,tgname,tgfoid::regproc),"
            "',' ORDER BY tgrelid::regclass::text,tgname) FROM pg_trigger) FROM pg_class "
            "WHERE relnamespace='public'::regnamespace"_s;
        const QString before = old.connection->value(objects);
        QVERIFY(old.connection->run(newTag));
        QString output;
        for (int i = 0; i < 2; ++i)
            QVERIFY2(ServerDatabase::runScript(old.name, &output, upgradeScript) == 0, qPrintable(output));
        const EmptyDatabase fresh("vorna_fresh"_s, {});
        QCOMPARE(ServerDatabase::runScript(fresh.name), 0);
        QCOMPARE(old.connection->value(objects), fresh.connection->value(objects));
        QVERIFY(before != fresh.connection->value(objects));
        const QString place = old.connection->value(lastPlace);
        QVERIFY(old.connection->run(newTag));
        QCOMPARE(old.connection->value(notes.arg(place)), "tags insert 2"_s);

        const EmptyDatabase strange("vorna_strange"_s, {});
        QVERIFY(strange.connection->run("CREATE TABLE files (); CREATE TABLE tables_modification_date ()"_s));
        QCOMPARE(ServerDatabase::runScript(strange.name, &output, upgradeScript), 3);
        QVERIFY2(output.contains("was not set up by"_s), qPrintable(output));
        QCOMPARE(strange.connection->value("SELECT to_regclass('change_journal') IS NULL"_s), "true"_s);
    }

    void aThousandCommits()
    {
        ServerConnection &owner = m_database->owner();
        QVERIFY(owner.run("DELETE FROM tags"_s));
        QVERIFY(
            owner.run("CREATE TABLE seen (stamp timestamp); "
                      "CREATE FUNCTION see() RETURNS trigger LANGUAGE plpgsql AS "
                      "'BEGIN INSERT INTO public.seen VALUES (NEW.last_date); RETURN NULL; END'; "
                      "CREATE TRIGGER see AFTER INSERT OR UPDATE ON tables_modification_date FOR EACH ROW "
                      "EXECUTE FUNCTION see()"_s));
        std::atomic<int> committed{0}, running{4};
        std::vector<std::thread> clients;
        for (quint32 i = 0; i < 4; ++i) {
            clients.emplace_back([&, i] {
                ServerConnection client(m_database->details(), "client%1"_s.arg(i));
                QRandomGenerator random(i);
                while (committed < 1000)
                    committed += randomTransaction(client, random) ? 1 : 0;
                --running;
            });
        }
        // Whoever sees something new sees a later stamp, and one that has passed.
        QString lastDate;
        int lastCount = -1;
        int faults = 0;
        // Who follows the journal meets each row once.
        QString place = Sql::rows(lastPlace).value(0);
        int followed = 0;
        const auto follow = [&place, &followed] {
            const QStringList news =
                Sql::rows(
                    "SELECT coalesce(max(stamp),%1),coalesce(sum(cardinality(keys)),0) FROM change_commits "
                    "JOIN change_journal USING (transaction_id) WHERE stamp>%1"_s.arg(place))
                    .value(0)
                    .split(QLatin1Char('|'));
            place = news.first();
            followed += news.value(1).toInt();
        };
        while (running > 0) {
            follow();
            QSqlQuery look("SELECT max(last_date)::text, (SELECT count(*) FROM tags), "
                           "max(last_date) <= clock_timestamp() AT TIME ZONE 'UTC' "
                           "FROM tables_modification_date"_s);
            look.next();
            const QString date = look.value(0).toString();
            const bool isNew = look.value(1).toInt() != lastCount;
            faults += look.value(2).toBool() && isNew == (date > lastDate) && date >= lastDate ? 0 : 1;
            lastDate = date;
            lastCount = look.value(1).toInt();
        }
        for (std::thread &client : clients)
            client.join();
        follow();
        QCOMPARE(faults, 0);
        QCOMPARE(followed, Sql::count("tags"_s));
        QVERIFY(Sql::count("tables_modification_date"_s) < 20);
        QCOMPARE(owner.value("SELECT count(DISTINCT date_trunc('milliseconds', stamp)) FROM seen"_s).toInt(),
                 committed.load());
    }

    void rights_data()
    {
        addColumns<QString, bool, bool>("statement", "writerMay", "readerMay");
        addRow("read stamps", stampQuery, true, true);
        addRow("change a tag", "UPDATE tags SET tag_name=''"_s, true, false);
        addRow("draw a key", "SELECT nextval('tags_tag_id_seq')"_s, true, false);
        addRow("probe", "INSERT INTO file_tag VALUES (7,7)"_s, true, false);
        addRow("add a stamp", "INSERT INTO tables_modification_date VALUES (now())"_s, false, false);
        addRow("remove the stamp", "DELETE FROM tables_modification_date"_s, false, false);
        addRow("empty the stamps", "TRUNCATE tables_modification_date"_s, false, false);
        addRow("read the journal", notes.arg(0), true, true);
        addRow("add to the journal", "INSERT INTO change_journal VALUES ('1','tags','all',NULL,NULL,true)"_s,
               false, false);
        addRow("take from the journal", "DELETE FROM change_commits"_s, false, false);
        addRow("ask before a commit", "SELECT refuse_if_changed(0,'{}','{}','{}','{}','{}','{}')"_s, true,
               false);
        addRow("change the version", "UPDATE scheme_version SET version='9'"_s, false, false);
        addRow("silence a trigger", "ALTER TABLE tags DISABLE TRIGGER note_change"_s, false, false);
    }

    void rights()
    {
        QFETCH(QString, statement);
        ServerConnection reader(m_database->readerDetails(), "reader"_s);
        QTEST(Sql::run(statement), "writerMay");
        QTEST(reader.run(statement), "readerMay");
    }

    void refusals_data()
    {
        addColumns<QString, QString, QString>("options", "before", "word");
        addRow("encoding", "ENCODING LATIN1 LOCALE 'C'"_s, "SELECT 1"_s, "is in LATIN1"_s);
        addRow("a schema", QString(), "CREATE SCHEMA s CREATE VIEW v AS SELECT 1"_s, "it holds s.v"_s);
        addRow("second run", QString(), QString(), "it holds public.files"_s);
        addRow("failure half-way", QString(), "CREATE DOMAIN tb_nodes AS text"_s, "tb_nodes"_s);
    }

    void refusals()
    {
        QFETCH(QString, before);
        QFETCH(QString, options);
        QFETCH(QString, word);
        const QString name = "vorna_refusing"_s;
        const QString objects = "SELECT string_agg(relname, ',' ORDER BY oid) FROM pg_class"_s;
        const EmptyDatabase other(name, options);
        QVERIFY(before.isEmpty() ? ServerDatabase::runScript(name) == 0 : other.connection->run(before));
        const QString held = other.connection->value(objects);
        QString output;
        QCOMPARE(ServerDatabase::runScript(name, &output), 3);
        QVERIFY2(output.contains(word), qPrintable(output));
        QCOMPARE(other.connection->value(objects), held);
    }

    void upgrades_data()
    {
        addColumns<QString, QString, bool, QString>("version", "check", "succeeds", "result");
        const QString done = "4.1.0|0|storage_id >= 0|0"_s;
        addRow("storage from 0 already", "2.0.8"_s, "storage_id >= 0"_s, true, done);
        addRow("rows that do not fit", "2.0.8"_s, "storage_id > -9"_s, false,
               "3.2.0|-4|storage_id > '-9'::integer|1"_s);
        // The step to 2.0.7 leaves no stamp on a server: the chain has to end there.
        addRow("too old", "2.0.6"_s, "storage_id > 0"_s, false, QString());
    }

    void upgrades()
    {
        QFETCH(QString, version);
        QFETCH(QString, check);
        QFETCH(bool, succeeds);
        const EmptyDatabase old("vorna_upgrading"_s, {});
        QVERIFY(old.connection->run(
            "CREATE TABLE files (file_id bigint, file_name text, data_checksum bigint NOT NULL, storage_id "
            "bigint "
            "NOT NULL CONSTRAINT files_storage_id_check CHECK (%1), internal integer NOT NULL CONSTRAINT "
            "internal_bool CHECK (internal IN (0,1))); INSERT INTO files VALUES (1,'O''Neil',-4,%2,0); "
            "CREATE TABLE vorna_version AS SELECT text '%3' version; "
            "CREATE TABLE scheme_version AS SELECT text '3.2.0' version"_s.arg(
                check, check.contains(QLatin1String("-9")) ? "-5"_s : "1"_s, version)));
        QVERIFY(version != "2.0.6"_s || old.connection->run("DROP TABLE scheme_version"_s));
        const auto update = [&] {
            return DataBaseUpdater(m_database->constructor(), nullptr).update(old.connection->database());
        };
        QCOMPARE(update(), succeeds);
        QVERIFY(!update());
        QTEST(old.connection->value("SELECT concat_ws('|', version, data_checksum, (SELECT "
                                    "btrim(pg_get_constraintdef(oid), 'CHECK ()') "
                                    "FROM pg_constraint WHERE conname='files_storage_id_check'), (SELECT "
                                    "count(*) FROM pg_constraint "
                                    "WHERE conname='internal_bool')) FROM files, scheme_version"_s),
              "result");
    }

    /** The last one, as the stamps of this database stay ahead of the clock. */
    void clockThatIsPutBack()
    {
        const QString last = "SELECT last_value FROM tables_modification_date_last_date_seq"_s;
        QVERIFY(m_database->owner().run(
            "SELECT setval('tables_modification_date_last_date_seq', (%1)+3600000)"_s.arg(last)));
        const qint64 ahead = m_database->owner().value(last).toLongLong();
        QVERIFY(Sql::run("SET statement_timeout=2000") && Sql::run(newTag)); // does not wait for the clock
        const QString first = stamp();
        QVERIFY(Sql::run(newTag) && stamp() > first);
        QCOMPARE(m_database->owner().value(last).toLongLong(), ahead + 2);
    }

private:
    static QString stamp() { return Sql::rows(stampQuery).value(0); }

    std::unique_ptr<ServerDatabase> m_database;
};

QTEST_GUILESS_MAIN(TestServerScript)
#include "tst_serverscript.moc"
