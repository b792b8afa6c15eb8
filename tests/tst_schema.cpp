#include "db/schema.h"
#include "tests/support/text.h"

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
    void init()
    {
        m_dir.reset(new QTemporaryDir);
        QVERIFY(open().isOpen());
        QSqlQuery query;
        for (const QString &statement : Schema::creationStatements())
            QVERIFY2(query.exec(statement), qPrintable(statement + query.lastError().text()));
    }

    void cleanup() { QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection)); }

    void holdsTablesAndStampsOnly()
    {
        const QStringList tables = QSqlDatabase::database().tables(QSql::Tables);
        QCOMPARE(tables.size(), 21);
        int rows = 0;
        for (const QString &table : tables)
            rows += int(number("SELECT count(*) FROM "_s + table));
        QCOMPARE(rows, 2);
        QSqlQuery query("SELECT v.version, s.version FROM vorna_version v, scheme_version s"_s);
        QVERIFY(query.next());
        QCOMPARE(query.value(0).toString(), "4.1.3"_s);
        QCOMPARE(query.value(1).toString(), "4.1.0"_s);
        QCOMPARE(number("SELECT count(*) FROM sqlite_master WHERE type IN ('view','trigger')"_s), 0);
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
        QSqlQuery query;
        const char *present[] = {"INSERT INTO files VALUES(NULL,'n','',0,1,1,'TAKEN00',1,0,NULL,0,0)",
                                 "INSERT INTO tb_node_links VALUES(0,7)", "INSERT INTO file_tag VALUES(1,1)",
                                 "INSERT INTO tag_group_links VALUES(1,1)"};
        for (const char *row : present)
            QVERIFY(query.exec(QLatin1String(row)));
        QTEST(query.exec(statement), "isAllowed");
    }

private:
    QSqlDatabase open(const QString &options = QString())
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE"_s);
        database.setDatabaseName(file());
        database.setConnectOptions(options);
        database.open();
        return database;
    }

    QString file() const { return m_dir->filePath("new.vrn"_s); }

    static qint64 number(const QString &query)
    {
        QSqlQuery answer(query);
        return answer.next() ? answer.value(0).toLongLong() : -1;
    }

    QScopedPointer<QTemporaryDir> m_dir;
};

QTEST_GUILESS_MAIN(TestSchema)
#include "tst_schema.moc"
