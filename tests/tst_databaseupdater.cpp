#include "db/databaseupdater.h"
#include "db/databaseversion.h"
#include "db/schema.h"
#include "db/sqlitequeryconstructor.h"
#include "db/sqltext.h"

#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace {
int linesToLive = 0;

void dieAtLine(QtMsgType, const QMessageLogContext &, const QString &)
{
    if (--linesToLive <= 0)
        raise(SIGKILL);
}

constexpr int fileCount = 25000; // more than one portion of the path step

QString text(const char *literal)
{
    return QString::fromUtf8(literal);
}

/** What an old database was like: its stamps, and which later additions it has. */
struct OldVersion
{
    QString program;
    QString schema; ///< empty: no table for it
    bool hasRelativePaths = false;
    bool hasAutoLinks = false;
};

OldVersion oldVersion(const QString &name)
{
    if (name == QLatin1String("2.0.7") || name == QLatin1String("2.0.7a"))
        return {name, QString(), true, false};
    if (name == QLatin1String("2.0.8"))
        return {name, name, true, true};
    if (name == QLatin1String("3.2.0"))
        return {text("2.0.8"), name, true, true};
    return {name, QString(), false, false};
}
} // namespace

/** Files of each older version, built here, brought up to date. */
class TestDatabaseUpdater : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void mapsVersions_data();
    void mapsVersions();
    void upgrades_data();
    void upgrades();
    void addsMissingRelativeColumn();
    void fillsAttachedSource();
    void refusesUnknown_data();
    void refusesUnknown();
    void currentStaysUntouched();
    void failureChangesNothing_data();
    void failureChangesNothing();
    void goesOnBehindFailedStep();
    void negativeChecksumsBecomeZero();
    void columnsInAnotherOrder();
    void readOnlyFails();
    void killedInTheMiddle();

private:
    void run(const QStringList &statements);
    void build(const QString &version, int files = 3);
    void addRows(int files);
    /** Upgrades in a process that dies at its n-th log line; true when it came to the end. */
    bool upgradeAndDie(int lines);
    static QVariant value(const QString &query);
    static QString dump(const QString &query);
    static QString schemaOf(const QString &table);
    bool update() { return DataBaseUpdater(&m_constructor, nullptr).update(m_database); }
    bool needsUpgrade() { return DataBaseUpdater(&m_constructor, nullptr).needsUpgrade(m_database); }

    QScopedPointer<QTemporaryDir> m_dir;
    SqliteQueryConstructor m_constructor;
    QSqlDatabase m_database;
};

void TestDatabaseUpdater::run(const QStringList &statements)
{
    QSqlQuery query(m_database);
    for (const QString &statement : statements)
        QVERIFY2(query.exec(statement), qPrintable(statement + query.lastError().text()));
}

QVariant TestDatabaseUpdater::value(const QString &query)
{
    QSqlQuery answer(query);
    return answer.next() ? answer.value(0) : QVariant();
}

QString TestDatabaseUpdater::dump(const QString &query)
{
    QSqlQuery answer(query);
    QStringList rows;
    while (answer.next()) {
        QStringList row;
        for (int i = 0; i < answer.record().count(); ++i)
            row.append(QString::fromLatin1(answer.value(i).toByteArray().toHex()));
        rows.append(row.join(QLatin1Char(',')));
    }
    return rows.join(QLatin1Char('\n'));
}

/** Name, type, duty and key of each column. */
QString TestDatabaseUpdater::schemaOf(const QString &table)
{
    return dump(QStringLiteral("SELECT name, type, \"notnull\", pk FROM pragma_table_info('%1')").arg(table));
}

void TestDatabaseUpdater::init()
{
    m_dir.reset(new QTemporaryDir);
    m_database = QSqlDatabase::addDatabase(text("QSQLITE"));
    m_database.setDatabaseName(m_dir->filePath(text("old one's %1.vrn")));
    QVERIFY(m_database.open());
}

void TestDatabaseUpdater::cleanup()
{
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
}

void TestDatabaseUpdater::addRows(int files)
{
    const QString base = m_dir->path();
    for (int i = 1; i <= files; ++i) {
        const QString path =
            SqlText::quoted(QStringLiteral("%1/it's %2/\"ü%3\".txt").arg(base).arg(i % 7).arg(i));
        run({QStringLiteral("INSERT INTO files VALUES(%1,'n''%1','d',%1,10,20,'%2',1,%1,NULL,%1,0)")
                 .arg(i)
                 .arg(i, 7, 10, QLatin1Char('0')),
             SqlText::fill(text("INSERT INTO file_paths (path_id, path) VALUES(%1,%2)"),
                           {QString::number(i), path})});
    }
    run({text("INSERT INTO files VALUES(900000,'inside',NULL,6,10,20,'INSIDE0',1,1,1,77,1)"),
         text("INSERT INTO storage VALUES(1,x'00ff27'),(2,x'0a2522')"),
         text("INSERT INTO storage_info VALUES(1,2),(2,0)"), text("INSERT INTO thumbnails VALUES(1,x'8950')"),
         text("INSERT INTO tags VALUES(1,'O''Neil','%1',5,'me')"),
         text("INSERT INTO file_tag VALUES(1,1),(900000,1)"), text("INSERT INTO tb_nodes VALUES(1,1,1,0)"),
         text("INSERT INTO tb_node_links VALUES(0,1)"), text("INSERT INTO tag_relationships VALUES('1')"),
         text("INSERT INTO tag_groups VALUES(1,'g')"), text("INSERT INTO tag_group_links VALUES(1,1)")});
}

void TestDatabaseUpdater::build(const QString &name, int files)
{
    const OldVersion version = oldVersion(name);
    QVERIFY(m_database.transaction());
    for (QString statement : Schema::creationStatements()) {
        if (statement.contains(text("vorna_version")) || statement.contains(text("scheme_version")))
            continue;
        if (!version.hasAutoLinks && statement.contains(text("autolinks")))
            continue;
        if (statement.startsWith(text("CREATE TABLE file_paths")))
            statement =
                version.hasRelativePaths
                    ? text("CREATE TABLE file_paths (path_id INTEGER PRIMARY KEY, path TEXT, rel_path TEXT);")
                    : text("CREATE TABLE file_paths (path_id INTEGER PRIMARY KEY, path TEXT);");
        // Old files knew two kinds of files, counted storage from 1 and took any checksum.
        statement.replace(text("CHECK(storage_id>=0)"), text("CHECK(storage_id>0)"));
        statement.replace(text("CONSTRAINT checksum_valid CHECK(data_checksum>=0)"),
                          text("CONSTRAINT internal_bool CHECK(internal IN (0,1))"));
        run({statement});
    }
    run({text("CREATE TABLE vorna_version (version TEXT);"), Schema::programVersionInsert(version.program)});
    if (!version.schema.isEmpty())
        run({text("CREATE TABLE scheme_version (version TEXT);"),
             Schema::schemaVersionInsert(version.schema)});
    addRows(files);
    QVERIFY(m_database.commit());
}

void TestDatabaseUpdater::mapsVersions_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("schema");
    QTest::addColumn<int>("version");
    const auto row = [](const char *program, const char *schema, int version) {
        QTest::addRow("program '%s' schema '%s'", program, schema)
            << text(program) << text(schema) << version;
    };
    row("0.5.3", "", 1);
    row("2.0.3", "", 2);
    row("2.0.6", "", 3);
    row("2.0.7", "", 4);
    row("2.0.7a", "", 4);
    row("2.0.9", "", 2); // the third number is never read
    row("1.5.0", "", 1);
    row("0.0.0", "", 0);
    row("3.0.0", "", 5);
    row("3.2.0", "", 6);
    row("3.9.0", "", 6);
    row("4.1.3", "", 7);
    row("9.0.0", "", 7);
    row("abc", "", 0);
    row("2.0", "", 0);
    row("99999999999.1.1", "", 0);
    row("2.0.6", "2.0.8", 5);
    row("4.1.3", "schema 3.2.0b", 6);
    row("0.5.3", "4.1.0", 7);
    row("2.0.7", "4.2.0", 0);
    row("2.0.7", "nothing", 0);
}

void TestDatabaseUpdater::mapsVersions()
{
    QFETCH(QString, program);
    QFETCH(QString, schema);
    QFETCH(int, version);
    QCOMPARE(schema.isEmpty() ? DataBaseVersions::fromProgramText(program)
                              : DataBaseVersions::fromSchemaText(schema),
             version);
    run({text("CREATE TABLE vorna_version (version TEXT);"), Schema::programVersionInsert(program)});
    if (!schema.isEmpty())
        run({text("CREATE TABLE scheme_version (version TEXT);"), Schema::schemaVersionInsert(schema)});
    const DataBaseUpdater updater(&m_constructor, nullptr);
    QCOMPARE(updater.isVersionKnown(m_database), version != 0);
    QCOMPARE(updater.needsUpgrade(m_database), version < 7);
}

void TestDatabaseUpdater::upgrades_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("program");
    QTest::addColumn<int>("files");
    const char *const upTo208 = "2.0.8";
    for (const char *version : {"0.5.3", "2.0.3", "2.0.6", "2.0.7", "2.0.7a", "2.0.8", "3.2.0"})
        QTest::newRow(version) << text(version) << text(upTo208) << 3;
    QTest::newRow("2.0.6, many paths") << text("2.0.6") << text(upTo208) << fileCount;
}

void TestDatabaseUpdater::upgrades()
{
    QFETCH(QString, version);
    QFETCH(int, files);
    build(version, files);
    const QStringList kept{text("SELECT * FROM files ORDER BY file_id"),
                           text("SELECT * FROM tags"),
                           text("SELECT path_id, path FROM file_paths"),
                           text("SELECT * FROM file_tag"),
                           text("SELECT * FROM storage"),
                           text("SELECT * FROM storage_info"),
                           text("SELECT * FROM tb_nodes"),
                           text("SELECT * FROM tb_node_links"),
                           text("SELECT * FROM thumbnails"),
                           text("SELECT * FROM tag_relationships")};
    QStringList before;
    for (const QString &query : kept)
        before.append(dump(query));

    QVERIFY(needsUpgrade());
    QVERIFY(update());
    QVERIFY(!needsUpgrade());
    for (int i = 0; i < kept.size(); ++i)
        QVERIFY2(dump(kept.at(i)) == before.at(i), qPrintable(kept.at(i)));
    QTEST(value(text("SELECT version FROM vorna_version")).toString(), "program");
    QCOMPARE(value(text("SELECT group_concat(version) FROM scheme_version")).toString(), text("4.1.0"));
    QVERIFY(!m_database.tables().contains(text("filesnew")));
    if (!oldVersion(version).hasRelativePaths) {
        QSqlQuery paths(text("SELECT path, rel_path FROM file_paths"));
        int count = 0;
        for (; paths.next(); ++count)
            QCOMPARE(QDir(m_dir->path()).filePath(paths.value(1).toString()), paths.value(0).toString());
        QCOMPARE(count, files);
    }

    const QString after = dump(text("SELECT name, sql FROM sqlite_master"));
    QVERIFY(!update());
    QCOMPARE(dump(text("SELECT name, sql FROM sqlite_master")), after);

    // Against a fresh file: every table is there with the same columns, the rebuilt one with the same rules.
    const QString upgradedFiles = schemaOf(text("files"));
    QMap<QString, QString> columns;
    for (const QString &table : m_database.tables())
        columns.insert(table, dump(QStringLiteral("SELECT name FROM pragma_table_info('%1')").arg(table)));
    for (const char *rule : {"UPDATE files SET data_checksum=-1", "UPDATE files SET storage_id=-1",
                             "UPDATE files SET id_code='x'"})
        QVERIFY(!QSqlQuery(m_database).exec(text(rule)));
    run({text("UPDATE files SET internal=2, storage_id=0")});
    cleanup();
    init();
    run(Schema::creationStatements());
    QCOMPARE(upgradedFiles, schemaOf(text("files")));
    for (const QString &table : m_database.tables())
        QCOMPARE(columns.value(table),
                 dump(QStringLiteral("SELECT name FROM pragma_table_info('%1')").arg(table)));
}

void TestDatabaseUpdater::addsMissingRelativeColumn()
{
    // Stamped 2.0.6 though the column is there already, as after a break between column and stamp.
    build(text("2.0.7"));
    run({text("UPDATE vorna_version SET version='2.0.6'")});
    QVERIFY(update());
    QCOMPARE(value(text("SELECT count(*) FROM file_paths WHERE rel_path IS NULL")).toInt(), 0);
}

void TestDatabaseUpdater::fillsAttachedSource()
{
    build(text("2.0.6"));
    run({text("CREATE TABLE fileSource (a INTEGER)"), text("ATTACH ':memory:' AS fileSource"),
         text("CREATE TABLE fileSource.files (file_id INTEGER PRIMARY KEY, file_path TEXT)"),
         SqlText::fill(text("INSERT INTO fileSource.files VALUES(5,%1)"),
                       {SqlText::quoted(m_dir->filePath(text("a's/b")))})});
    QVERIFY(update());
    QCOMPARE(value(text("SELECT file_rel_path FROM fileSource.files")).toString(), text("a's/b"));
}

void TestDatabaseUpdater::refusesUnknown_data()
{
    QTest::addColumn<QStringList>("statements");
    const QString program = text("CREATE TABLE vorna_version (version TEXT);");
    const QString schema = text("CREATE TABLE scheme_version (version TEXT);");
    QTest::newRow("no table") << QStringList{};
    QTest::newRow("no row") << QStringList{program};
    QTest::newRow("unparsable") << QStringList{program, Schema::programVersionInsert(text("new"))};
    QTest::newRow("schema without a row")
        << QStringList{program, Schema::programVersionInsert(text("2.0.6")), schema};
    QTest::newRow("schema of a later program")
        << QStringList{program, schema, Schema::schemaVersionInsert(text("5.0.0"))};
    QTest::newRow("schema without the column") << QStringList{text("CREATE TABLE scheme_version (v TEXT);")};
}

void TestDatabaseUpdater::refusesUnknown()
{
    QFETCH(QStringList, statements);
    run(statements);
    const QString before = dump(text("SELECT name, sql FROM sqlite_master"));
    QVERIFY(!DataBaseUpdater(&m_constructor, nullptr).isVersionKnown(m_database));
    QVERIFY(!update());
    QCOMPARE(dump(text("SELECT name, sql FROM sqlite_master")), before);
}

void TestDatabaseUpdater::currentStaysUntouched()
{
    run(Schema::creationStatements());
    addRows(0);
    const QString before = dump(text("SELECT name, sql FROM sqlite_master"));
    QVERIFY(!needsUpgrade());
    QVERIFY(!update());
    QCOMPARE(dump(text("SELECT name, sql FROM sqlite_master")), before);
}

void TestDatabaseUpdater::failureChangesNothing_data()
{
    QTest::addColumn<QString>("obstacle");
    QTest::newRow("column missing") << text("ALTER TABLE files DROP COLUMN file_description");
    QTest::newRow("column too many") << text("ALTER TABLE files ADD COLUMN rating INTEGER");
    QTest::newRow("name taken") << text("CREATE TABLE filesnew (a INTEGER)");
    QTest::newRow("row against the new rules") << text("PRAGMA ignore_check_constraints=1");
}

void TestDatabaseUpdater::failureChangesNothing()
{
    QFETCH(QString, obstacle);
    build(text("3.2.0"));
    run({obstacle});
    if (obstacle.startsWith(text("PRAGMA")))
        run({text("UPDATE files SET storage_id=-5 WHERE file_id=1"),
             text("PRAGMA ignore_check_constraints=0")});
    const QString everything = text("SELECT name, sql FROM sqlite_master");
    const QString before = dump(everything) + dump(text("SELECT * FROM files"));
    QVERIFY(!update());
    QCOMPARE(dump(everything) + dump(text("SELECT * FROM files")), before);
    QCOMPARE(value(text("SELECT version FROM scheme_version")).toString(), text("3.2.0"));
}

void TestDatabaseUpdater::goesOnBehindFailedStep()
{
    build(text("2.0.6"));
    run({text("CREATE TABLE filesnew (a INTEGER)")});
    QVERIFY(!update());
    QCOMPARE(value(text("SELECT version FROM scheme_version")).toString(), text("3.2.0"));
    run({text("DROP TABLE filesnew")});
    QVERIFY(update());
    QCOMPARE(value(text("SELECT count(*) FROM files")).toInt(), 4);
}

void TestDatabaseUpdater::negativeChecksumsBecomeZero()
{
    build(text("3.2.0"));
    run({text("UPDATE files SET data_checksum=-3 WHERE file_id=2")});
    QVERIFY(update());
    QCOMPARE(value(text("SELECT group_concat(data_checksum) FROM files")).toString(), text("1,0,3,77"));
}

void TestDatabaseUpdater::columnsInAnotherOrder()
{
    build(text("3.2.0"));
    const QString columns = text("internal,file_name,file_id,file_description,file_size,addition_date,"
                                 "modification_date,id_code,load_id,storage_id,thumbnail_id,data_checksum");
    run({SqlText::fill(text("CREATE TABLE turned AS SELECT %1 FROM files"), {columns}),
         text("DROP TABLE files"), text("ALTER TABLE turned RENAME TO files")});
    const QString query = SqlText::fill(text("SELECT %1 FROM files ORDER BY file_id"), {columns});
    const QString before = dump(query);
    QVERIFY(update());
    QCOMPARE(dump(query), before);
}

void TestDatabaseUpdater::readOnlyFails()
{
    build(text("2.0.6"));
    m_database.close();
    m_database.setConnectOptions(text("QSQLITE_OPEN_READONLY"));
    QVERIFY(m_database.open());
    QVERIFY(DataBaseUpdater(&m_constructor, nullptr).isVersionKnown(m_database));
    QVERIFY(!update());
    QCOMPARE(value(text("SELECT version FROM vorna_version")).toString(), text("2.0.6"));
}

bool TestDatabaseUpdater::upgradeAndDie(int lines)
{
    const QString file = m_database.databaseName();
    cleanup(); // no connection may be carried into another process
    const pid_t child = fork();
    if (child == 0) {
        linesToLive = lines;
        qInstallMessageHandler(dieAtLine);
        QSqlDatabase database = QSqlDatabase::addDatabase(text("QSQLITE"), text("child"));
        database.setDatabaseName(file);
        _exit(database.open() && DataBaseUpdater(&m_constructor, nullptr).update(database) ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    m_database = QSqlDatabase::addDatabase(text("QSQLITE"));
    m_database.setDatabaseName(file);
    m_database.open();
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void TestDatabaseUpdater::killedInTheMiddle()
{
    const QString rows = text("SELECT * FROM files ORDER BY file_id");
    build(text("0.5.3"), 50);
    const QString before = dump(rows);
    m_database.close();
    const QString original = m_dir->filePath(text("original"));
    QVERIFY(QFile::copy(m_database.databaseName(), original));
    bool isDone = false;
    int deaths = 0;
    for (int lines = 1; !isDone; ++lines) {
        m_database.close();
        QVERIFY(QFile::remove(m_database.databaseName()) && QFile::copy(original, m_database.databaseName()));
        isDone = upgradeAndDie(lines);
        deaths += isDone ? 0 : 1;
        QVERIFY(DataBaseUpdater(&m_constructor, nullptr).isVersionKnown(m_database));
        QVERIFY(!needsUpgrade() || update());
        QCOMPARE(dump(rows), before);
        QCOMPARE(value(text("SELECT count(*) FROM file_paths WHERE length(rel_path)>0")).toInt(), 50);
        QVERIFY(m_database.tables().contains(text("tb_nodes_autolinks")));
    }
    QVERIFY2(deaths > 10, "each step logs a line of its own");
}

QTEST_GUILESS_MAIN(TestDatabaseUpdater)
#include "tst_databaseupdater.moc"
