#include "db/schema.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

/** A new local database in a real file. */
class TestSchema : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void holdsTablesAndStampsOnly();
    void rules_data();
    void rules();
    void columnsInOrder_data();
    void columnsInOrder();
    void writeProbeLeavesNothing_data();
    void writeProbeLeavesNothing();

private:
    QSqlDatabase open(const QString &options = QString());
    QString file() const { return m_dir->filePath(QStringLiteral("new.vrn")); }
    static qint64 number(const QString &query);

    QScopedPointer<QTemporaryDir> m_dir;
};

QSqlDatabase TestSchema::open(const QString &options)
{
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"));
    database.setDatabaseName(file());
    database.setConnectOptions(options);
    database.open();
    return database;
}

qint64 TestSchema::number(const QString &query)
{
    QSqlQuery answer(query);
    return answer.next() ? answer.value(0).toLongLong() : -1;
}

void TestSchema::init()
{
    m_dir.reset(new QTemporaryDir);
    QVERIFY(open().isOpen());
    QSqlQuery query;
    for (const QString &statement : Schema::creationStatements())
        QVERIFY2(query.exec(statement), qPrintable(statement + query.lastError().text()));
}

void TestSchema::cleanup()
{
    QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
}

void TestSchema::holdsTablesAndStampsOnly()
{
    const QStringList tables = QSqlDatabase::database().tables(QSql::Tables);
    QCOMPARE(tables.size(), 21);
    int rows = 0;
    for (const QString &table : tables)
        rows += int(number(QStringLiteral("SELECT count(*) FROM ") + table));
    QCOMPARE(rows, 2);
    QSqlQuery query(QStringLiteral("SELECT v.version, s.version FROM vorna_version v, scheme_version s"));
    QVERIFY(query.next());
    QCOMPARE(query.value(0).toString(), QStringLiteral("4.1.3"));
    QCOMPARE(query.value(1).toString(), QStringLiteral("4.1.0"));
    QCOMPARE(number(QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type IN ('view','trigger')")),
             0);
}

void TestSchema::rules_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<bool>("isAllowed");
    const QString files = QStringLiteral("INSERT INTO files VALUES(NULL,'n','',0,1,1,'%1',1,%2,NULL,%3,0)");
    const auto file = [&files](const char *code, const char *storage, const char *checksum) {
        return files.arg(QLatin1String(code), QLatin1String(storage), QLatin1String(checksum));
    };
    QTest::newRow("file") << file("AAAAAAA", "0", "0") << true;
    QTest::newRow("id code twice") << file("TAKEN00", "1", "1") << false;
    QTest::newRow("negative storage id") << file("AAAAAAA", "-1", "0") << false;
    QTest::newRow("negative checksum") << file("AAAAAAA", "0", "-1") << false;
    QTest::newRow("node 0") << QStringLiteral("INSERT INTO tb_nodes VALUES(0,1,1,0)") << false;
    QTest::newRow("node 5") << QStringLiteral("INSERT INTO tb_nodes VALUES(5,1,1,0)") << true;
    QTest::newRow("top-level node") << QStringLiteral("INSERT INTO tb_node_links VALUES(0,8)") << true;
    QTest::newRow("second parent") << QStringLiteral("INSERT INTO tb_node_links VALUES(3,7)") << false;
    QTest::newRow("empty path") << QStringLiteral("INSERT INTO tag_relationships VALUES('')") << false;
    QTest::newRow("path") << QStringLiteral("INSERT INTO tag_relationships VALUES('1.2')") << true;
    QTest::newRow("tag on a file twice") << QStringLiteral("INSERT INTO file_tag VALUES(1,1)") << false;
    QTest::newRow("tag in a group twice")
        << QStringLiteral("INSERT INTO tag_group_links VALUES(1,1)") << false;
    QTest::newRow("path without its relative form")
        << QStringLiteral("INSERT INTO file_paths (path) VALUES('/a')") << false;
}

void TestSchema::rules()
{
    QFETCH(QString, statement);
    QFETCH(bool, isAllowed);
    QSqlQuery query;
    const char *present[] = {"INSERT INTO files VALUES(NULL,'n','',0,1,1,'TAKEN00',1,0,NULL,0,0)",
                             "INSERT INTO tb_node_links VALUES(0,7)", "INSERT INTO file_tag VALUES(1,1)",
                             "INSERT INTO tag_group_links VALUES(1,1)"};
    for (const char *row : present)
        QVERIFY(query.exec(QLatin1String(row)));
    QCOMPARE(query.exec(statement), isAllowed);
}

void TestSchema::columnsInOrder_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("columns");
    const auto row = [](const char *table, const char *columns) {
        QTest::newRow(table) << QString::fromLatin1(table) << QString::fromLatin1(columns);
    };
    // Many statements insert by position.
    row("files",
        "file_id,file_name,file_description,file_size,addition_date,modification_date,id_code,load_id,"
        "storage_id,thumbnail_id,data_checksum,internal");
    row("storage_info", "storage_id,continue_id");
    row("tags", "tag_id,tag_name,tag_description,creation_date,created_by");
    row("tb_nodes", "node_id,tag_id,tr_options,inverted");
    row("tb_node_links", "parent_id,child_id");
    row("tb_autolinks", "link_id,link_abs_path,link_rel_path");
    row("file_links", "parent_id,child_Id,notes,creation_date,created_by");
    row("file_version", "file_id,group_id,revision_no,version_no,status,notes,updated_by");
}

void TestSchema::columnsInOrder()
{
    QFETCH(QString, table);
    QFETCH(QString, columns);
    QStringList names;
    QSqlQuery query(QStringLiteral("PRAGMA table_info(") + table + QLatin1Char(')'));
    while (query.next())
        names.append(query.value(1).toString());
    QCOMPARE(names.join(QLatin1Char(',')), columns);
}

void TestSchema::writeProbeLeavesNothing_data()
{
    QTest::addColumn<bool>("isReadOnly");
    QTest::newRow("writable") << false;
    QTest::newRow("read-only") << true;
}

void TestSchema::writeProbeLeavesNothing()
{
    QFETCH(bool, isReadOnly);
    cleanup();
    QSqlDatabase database = open(isReadOnly ? QStringLiteral("QSQLITE_OPEN_READONLY") : QString());
    QVERIFY(database.transaction());
    {
        QSqlQuery query;
        QCOMPARE(query.exec(QStringLiteral("INSERT INTO file_tag VALUES(0,0);")), !isReadOnly);
    }
    QVERIFY(database.rollback());
    QCOMPARE(number(QStringLiteral("SELECT count(*) FROM file_tag")), 0);
}

QTEST_GUILESS_MAIN(TestSchema)
#include "tst_schema.moc"
