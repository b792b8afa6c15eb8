#include "db/migrations/databaseupdater.h"
#include "db/sql/sqltext.h"
#include "tests/support/database.h"

#include <csignal>

#include <sqlite3.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {
const QString everything = "SELECT name, sql FROM sqlite_master"_s;

/** What SQLite asked of the system, shared with the child that counts, and the number of the last before
 * death. */
int *const fileCalls =
    static_cast<int *>(mmap(nullptr, sizeof(int), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
int fatalCall = 0;

/** The system's call, which may be the last one. */
template <auto call, typename... Arguments>
auto counted(Arguments... arguments)
{
    if (++*fileCalls == fatalCall)
        kill(getpid(), SIGKILL);
    return call(arguments...);
}

/** Makes SQLite count what it changes on the disk. */
void countFileCalls()
{
    const auto replace = [](const char *name, auto function) {
        sqlite3_vfs *files = sqlite3_vfs_find(nullptr);
        files->xSetSystemCall(files, name, reinterpret_cast<sqlite3_syscall_ptr>(function));
    };
    for (const char *name : {"pwrite", "pwrite64"})
        replace(name, counted<pwrite, int, const void *, size_t, off_t>);
    replace("write", counted<write, int, const void *, size_t>);
    replace("ftruncate", counted<ftruncate, int, off_t>);
    replace("unlink", counted<unlink, const char *>);
}

constexpr int fileCount = 25000; // more than one portion of the path step

/** Which later additions an old version had. */
bool hadAutoLinks(const QString &version)
{
    return version >= QLatin1String("2.0.8");
}

bool hadRelativePaths(const QString &version)
{
    return version >= QLatin1String("2.0.7");
}
} // namespace

/** Files of each older version, built here, brought up to date. */
class TestDatabaseUpdater : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_dir.reset(new QTemporaryDir);
        open(m_dir->filePath("old one's %1.vrn"_s));
        QVERIFY(m_database.isOpen());
    }

    void cleanup()
    {
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
    }

    void mapsVersions_data()
    {
        addColumns<QString, QString, int>("program", "schema", "version");
        // The third number of a program is never read.
        const auto row = [](const char *program, const char *schema, int version) {
            QTest::addRow("program '%s' schema '%s'", program, schema)
                << QString::fromLatin1(program) << QString::fromLatin1(schema) << version;
        };
        for (const char *unknown : {"0.0.0", "abc", "2.0", "99999999999.1.1"})
            row(unknown, "", 0);
        row("0.5.3", "", 1);
        row("1.5.0", "", 1);
        row("2.0.9", "", 2);
        row("2.0.6", "", 3);
        row("2.0.7a", "", 4);
        row("3.0.0", "", 5);
        row("3.9.0", "", 6);
        row("4.1.3", "", 7);
        row("9.0.0", "", 7);
        row("2.0.6", "2.0.8", 5);
        row("4.1.3", "schema 3.2.0b", 6);
        row("0.5.3", "4.1.0", 7);
        row("2.0.7", "4.2.0", 0);
        row("2.0.7", "nothing", 0);
    }

    void mapsVersions()
    {
        QFETCH(QString, program);
        QFETCH(QString, schema);
        QFETCH(int, version);
        run({"CREATE TABLE vorna_version (version TEXT);"_s, Schema::programVersionInsert(program)});
        if (!schema.isEmpty())
            run({"CREATE TABLE scheme_version (version TEXT);"_s, Schema::schemaVersionInsert(schema)});
        const DataBaseUpdater updater(&m_constructor, nullptr);
        QCOMPARE(updater.isVersionKnown(m_database), version != 0);
        QCOMPARE(updater.needsUpgrade(m_database), version < 7);
    }

    void upgrades_data()
    {
        addColumns<QString, int>("version", "files");
        for (const char *version : {"0.5.3", "2.0.3", "2.0.6", "2.0.7", "2.0.7a", "2.0.8", "3.2.0"})
            addRow(version, QString::fromLatin1(version), 3);
        addRow("2.0.6, many paths", "2.0.6"_s, fileCount);
    }

    void upgrades()
    {
        QFETCH(QString, version);
        QFETCH(int, files);
        build(version, files);
        QStringList kept{"SELECT * FROM files ORDER BY file_id"_s, "SELECT path_id, path FROM file_paths"_s};
        for (const QString &table : m_database.tables()) {
            if (table != "files"_s && table != "file_paths"_s && !table.endsWith("_version"_s))
                kept.append("SELECT * FROM "_s + table);
        }
        QStringList before;
        for (const QString &query : kept)
            before.append(dump(query));

        QVERIFY(needsUpgrade());
        QVERIFY(update());
        QVERIFY(!needsUpgrade());
        for (int i = 0; i < kept.size(); ++i)
            QVERIFY2(dump(kept.at(i)) == before.at(i), qPrintable(kept.at(i)));
        QCOMPARE(Sql::value("SELECT version FROM vorna_version"), "2.0.8"_s);
        QCOMPARE(Sql::value("SELECT group_concat(version) FROM scheme_version"), "4.1.0"_s);
        QVERIFY(!m_database.tables().contains("filesnew"_s));
        if (!hadRelativePaths(version)) {
            QSqlQuery paths("SELECT path, rel_path FROM file_paths"_s);
            int count = 0;
            for (; paths.next(); ++count)
                QCOMPARE(QDir(m_dir->path()).filePath(paths.value(1).toString()), paths.value(0).toString());
            QCOMPARE(count, files);
        }

        const QString after = dump(everything);
        QVERIFY(!update());
        QCOMPARE(dump(everything), after);

        // Against a fresh file: every table is there with the same columns, the rebuilt one with the same
        // rules.
        const QString upgradedFiles = schemaOf("files"_s);
        QMap<QString, QString> columns;
        for (const QString &table : m_database.tables())
            columns.insert(table, dump("SELECT name FROM pragma_table_info('%1')"_s.arg(table)));
        for (const char *rule : {"UPDATE files SET data_checksum=-1", "UPDATE files SET storage_id=-1",
                                 "UPDATE files SET id_code='x'"})
            QVERIFY(!QSqlQuery(m_database).exec(QLatin1String(rule)));
        run({"UPDATE files SET internal=2, storage_id=0"_s});
        cleanup();
        init();
        run(Schema::creationStatements());
        QCOMPARE(upgradedFiles, schemaOf("files"_s));
        for (const QString &table : m_database.tables())
            QCOMPARE(columns.value(table), dump("SELECT name FROM pragma_table_info('%1')"_s.arg(table)));
    }

    void fillsAttachedSource()
    {
        build("2.0.6"_s);
        run({"CREATE TABLE fileSource (a INTEGER)"_s, "ATTACH ':memory:' AS fileSource"_s,
             "CREATE TABLE fileSource.files (file_id INTEGER PRIMARY KEY, file_path TEXT)"_s,
             SqlText::fill("INSERT INTO fileSource.files VALUES(5,%1)"_s,
                           {SqlText::quoted(m_dir->filePath("a's/b"_s))})});
        QVERIFY(update());
        QCOMPARE(Sql::value("SELECT file_rel_path FROM fileSource.files"), "a's/b"_s);
    }

    void failureChangesNothing_data()
    {
        QTest::addColumn<QStringList>("obstacle");
        addRow("column missing", QStringList("ALTER TABLE files DROP COLUMN file_description"_s));
        addRow("column too many", QStringList("ALTER TABLE files ADD COLUMN rating INTEGER"_s));
        addRow("name taken", QStringList("CREATE TABLE filesnew (a INTEGER)"_s));
        addRow("row against the new rules", QStringList{"PRAGMA ignore_check_constraints=1"_s,
                                                        "UPDATE files SET storage_id=-5 WHERE file_id=1"_s,
                                                        "PRAGMA ignore_check_constraints=0"_s});
    }

    void failureChangesNothing()
    {
        QFETCH(QStringList, obstacle);
        build("3.2.0"_s);
        run(obstacle);
        const QString before = dump(everything) + dump("SELECT * FROM files"_s);
        QVERIFY(!update());
        QCOMPARE(dump(everything) + dump("SELECT * FROM files"_s), before);
        QCOMPARE(Sql::value("SELECT version FROM scheme_version"), "3.2.0"_s);
    }

    void commitThatFailsKeepsNoLock_data()
    {
        QTest::addColumn<QString>("version");
        addRow("of a rebuilt file", "0.5.3"_s);
        addRow("of a step", "2.0.6"_s);
    }

    void commitThatFailsKeepsNoLock()
    {
        QFETCH(QString, version);
        build(version);
        run({"PRAGMA busy_timeout=50"_s});
        OtherConnection other(m_database.databaseName());
        {
            QSqlQuery reader(QSqlDatabase::database("other"_s));
            QVERIFY(reader.exec("SELECT file_id FROM files"_s) && reader.next());
            QVERIFY(!update());
        }
        QVERIFY(other.run("BEGIN IMMEDIATE"_s));
    }

    void columnsInAnotherOrder()
    {
        build("3.2.0"_s);
        const QString columns = "internal,file_name,file_id,file_description,file_size,addition_date,"
                                "modification_date,id_code,load_id,storage_id,thumbnail_id,data_checksum"_s;
        run({SqlText::fill("CREATE TABLE turned AS SELECT %1 FROM files"_s, {columns}), "DROP TABLE files"_s,
             "ALTER TABLE turned RENAME TO files"_s});
        const QString query = SqlText::fill("SELECT %1 FROM files ORDER BY file_id"_s, {columns});
        const QString before = dump(query);
        run({"UPDATE files SET data_checksum=-3 WHERE file_id=2"_s});
        QVERIFY(update());
        // A checksum below zero becomes zero.
        QCOMPARE(Sql::value("SELECT group_concat(data_checksum) FROM files"), "1,0,3,77"_s);
        run({"UPDATE files SET data_checksum=2 WHERE file_id=2"_s});
        QCOMPARE(dump(query), before);
    }

    void killedInTheMiddle()
    {
        const auto contents = [this] {
            QString rows = dump(everything);
            for (const QString &table : m_database.tables())
                rows += dump("SELECT * FROM "_s + table);
            return rows;
        };
        build("0.5.3"_s, 500);
        m_database.close();
        const QString original = m_dir->filePath("original"_s);
        QVERIFY(QFile::copy(m_database.databaseName(), original));
        QVERIFY(upgradeAndDie(0));
        const int calls = *fileCalls;
        QVERIFY(calls > 100);
        const QString unbroken = contents();
        constexpr int deaths = 50;
        for (int death = 0; death <= deaths; ++death) {
            m_database.close();
            QVERIFY(QFile::remove(m_database.databaseName()) &&
                    QFile::copy(original, m_database.databaseName()));
            QVERIFY(!upgradeAndDie(1 + death * (calls - 1) / deaths));
            QCOMPARE(Sql::value("PRAGMA integrity_check"), "ok"_s);
            QVERIFY(DataBaseUpdater(&m_constructor, nullptr).isVersionKnown(m_database));
            QVERIFY(!needsUpgrade() || update());
            QVERIFY(contents() == unbroken);
        }
    }

private:
    void open(const QString &file)
    {
        m_database = QSqlDatabase::addDatabase("QSQLITE"_s);
        m_database.setDatabaseName(file);
        m_database.open();
    }

    void run(const QStringList &statements)
    {
        QSqlQuery query(m_database);
        for (const QString &statement : statements)
            QVERIFY2(query.exec(statement), qPrintable(statement + query.lastError().text()));
    }

    void build(const QString &version, int files = 3)
    {
        QVERIFY(m_database.transaction());
        for (QString statement : Schema::creationStatements()) {
            if (statement.contains("vorna_version"_s) || statement.contains("scheme_version"_s) ||
                (!hadAutoLinks(version) && statement.contains("autolinks"_s)))
                continue;
            if (statement.startsWith("CREATE TABLE file_paths"_s))
                statement = "CREATE TABLE file_paths (path_id INTEGER PRIMARY KEY, path TEXT%1);"_s.arg(
                    hadRelativePaths(version) ? ", rel_path TEXT"_s : QString());
            // Old files knew two kinds of files, counted storage from 1 and took any checksum.
            statement.replace("CHECK(storage_id>=0)"_s, "CHECK(storage_id>0)"_s);
            statement.replace("CONSTRAINT checksum_valid CHECK(data_checksum>=0)"_s,
                              "CONSTRAINT internal_bool CHECK(internal IN (0,1))"_s);
            run({statement});
        }
        run({"CREATE TABLE vorna_version (version TEXT);"_s,
             Schema::programVersionInsert(version == QLatin1String("3.2.0") ? "2.0.8"_s : version)});
        if (hadAutoLinks(version))
            run({"CREATE TABLE scheme_version (version TEXT);"_s, Schema::schemaVersionInsert(version)});
        addRows(files);
        QVERIFY(m_database.commit());
    }

    void addRows(int files)
    {
        const QString base = m_dir->path();
        for (int i = 1; i <= files; ++i) {
            const QString path = SqlText::quoted("%1/it's %2/\"ü%3\".txt"_s.arg(base).arg(i % 7).arg(i));
            run({"INSERT INTO files VALUES(%1,'n''%1','d',%1,10,20,'%2',1,%1,NULL,%1,0)"_s.arg(i).arg(
                     i, 7, 10, QLatin1Char('0')),
                 SqlText::fill("INSERT INTO file_paths (path_id, path) VALUES(%1,%2)"_s,
                               {QString::number(i), path})});
        }
        run({"INSERT INTO files VALUES(900000,'inside',NULL,6,10,20,'INSIDE0',1,1,1,77,1)"_s,
             "INSERT INTO storage VALUES(1,x'00ff27'),(2,x'0a2522')"_s,
             "INSERT INTO storage_info VALUES(1,2),(2,0)"_s, "INSERT INTO thumbnails VALUES(1,x'8950')"_s,
             "INSERT INTO tags VALUES(1,'O''Neil','%1',5,'me')"_s,
             "INSERT INTO file_tag VALUES(1,1),(900000,1)"_s, "INSERT INTO tb_nodes VALUES(1,1,1,0)"_s,
             "INSERT INTO tb_node_links VALUES(0,1)"_s, "INSERT INTO tag_relationships VALUES('1')"_s,
             "INSERT INTO tag_groups VALUES(1,'g')"_s, "INSERT INTO tag_group_links VALUES(1,1)"_s});
        if (m_database.tables().contains("tb_autolinks"_s))
            run({"INSERT INTO tb_autolinks VALUES('l','/a','a')"_s,
                 "INSERT INTO tb_nodes_autolinks VALUES('l',1)"_s});
    }

    /** Upgrades in a process that dies after a while, if not 0; true when it came to the end. */
    /** In another process, which is killed before its change of files of this number. True when it lived. */
    bool upgradeAndDie(int fatal)
    {
        const QString file = m_database.databaseName();
        cleanup(); // no connection may be carried into another process
        const pid_t child = fork();
        if (child == 0) {
            *fileCalls = 0;
            fatalCall = fatal;
            countFileCalls();
            QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE"_s, "child"_s);
            database.setDatabaseName(file);
            _exit(database.open() && DataBaseUpdater(&m_constructor, nullptr).update(database) ? 0 : 1);
        }
        int status = -1;
        waitpid(child, &status, 0);
        open(file);
        return WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }

    static QString dump(const QString &query)
    {
        QSqlQuery answer(query);
        QString rows;
        while (answer.next()) {
            for (int i = 0; i < answer.record().count(); ++i)
                rows += QString::fromLatin1(answer.value(i).toByteArray().toHex()) + QLatin1Char(',');
            rows += QLatin1Char('\n');
        }
        return rows;
    }

    /** Name, type, duty and key of each column. */
    static QString schemaOf(const QString &table)
    {
        return dump("SELECT name, type, \"notnull\", pk FROM pragma_table_info('%1')"_s.arg(table));
    }

    bool update() { return DataBaseUpdater(&m_constructor, nullptr).update(m_database); }
    bool needsUpgrade() { return DataBaseUpdater(&m_constructor, nullptr).needsUpgrade(m_database); }

    QScopedPointer<QTemporaryDir> m_dir;
    SqliteQueryConstructor m_constructor;
    QSqlDatabase m_database;
};

QTEST_GUILESS_MAIN(TestDatabaseUpdater)
#include "tst_databaseupdater.moc"
