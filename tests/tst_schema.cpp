#include "tests/support/database.h"

/** A new local database in a real file. */
class TestSchema : public QObject
{
    Q_OBJECT

private slots:
    void holdsTablesAndStampsOnly()
    {
        const LocalDatabase database;
        const QStringList tables = QSqlDatabase::database().tables(QSql::Tables);
        QCOMPARE(tables.size(), 21);
        int rows = 0;
        for (const QString &table : tables)
            rows += Sql::count(table);
        QCOMPARE(rows, 2);
        QCOMPARE(Sql::value("SELECT v.version, s.version FROM vorna_version v, scheme_version s"),
                 "4.1.3|4.1.0"_s);
        QCOMPARE(Sql::value("SELECT count(*) FROM sqlite_master WHERE type IN ('view','trigger')"), "0"_s);
    }

    void rules_data()
    {
        addColumns<QString, bool>("statement", "isAllowed");
        const QString files = "INSERT INTO files VALUES(NULL,'n','',0,1,1,'%1',1,%2,NULL,%3,0)"_s;
        const auto file = [&files](const char *code, const char *storage, const char *checksum) {
            return files.arg(QLatin1String(code), QLatin1String(storage), QLatin1String(checksum));
        };
        addRow("file", file("AAAAAAA", "0", "0"), true);
        addRow("id code twice", file("TAKEN00", "1", "1"), false);
        addRow("negative storage id", file("AAAAAAA", "-1", "0"), false);
        addRow("negative checksum", file("AAAAAAA", "0", "-1"), false);
        addRow("node 0", "INSERT INTO tb_nodes VALUES(0,1,1,0)"_s, false);
        addRow("node 5", "INSERT INTO tb_nodes VALUES(5,1,1,0)"_s, true);
        addRow("top-level node", "INSERT INTO tb_node_links VALUES(0,8)"_s, true);
        addRow("second parent", "INSERT INTO tb_node_links VALUES(3,7)"_s, false);
        addRow("empty path", "INSERT INTO tag_relationships VALUES('')"_s, false);
        addRow("path", "INSERT INTO tag_relationships VALUES('1.2')"_s, true);
        addRow("tag on a file twice", "INSERT INTO file_tag VALUES(1,1)"_s, false);
        addRow("tag in a group twice", "INSERT INTO tag_group_links VALUES(1,1)"_s, false);
        addRow("path without its relative form", "INSERT INTO file_paths (path) VALUES('/a')"_s, false);
    }

    void rules()
    {
        QFETCH(QString, statement);
        const LocalDatabase database;
        const char *present[] = {"INSERT INTO files VALUES(NULL,'n','',0,1,1,'TAKEN00',1,0,NULL,0,0)",
                                 "INSERT INTO tb_node_links VALUES(0,7)", "INSERT INTO file_tag VALUES(1,1)",
                                 "INSERT INTO tag_group_links VALUES(1,1)"};
        for (const char *row : present)
            QVERIFY(Sql::run(row));
        QTEST(Sql::run(statement), "isAllowed");
    }
};

QTEST_GUILESS_MAIN(TestSchema)
#include "tst_schema.moc"
