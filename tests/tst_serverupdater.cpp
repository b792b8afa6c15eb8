#include "db/databaseupdater.h"
#include "db/postgresqueryconstructor.h"
#include "tests/support/database.h"

/** Upgrades on the server that VORNA_TEST_PG names, "host;port;database;user". */
class TestServerUpdater : public QObject, private Sql
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const QStringList parts = qEnvironmentVariable("VORNA_TEST_PG").split(QLatin1Char(';'));
        if (parts.size() != 4)
            QSKIP("VORNA_TEST_PG names no server");
        QSqlDatabase database = QSqlDatabase::addDatabase("QPSQL"_s);
        database.setHostName(parts.at(0));
        database.setPort(parts.at(1).toInt());
        database.setDatabaseName(parts.at(2));
        database.setUserName(parts.at(3));
        QVERIFY2(database.open(), qPrintable(database.lastError().text()));
    }

    void cleanupTestCase()
    {
        if (!QSqlDatabase::database().isOpen())
            return;
        run({"DROP TABLE IF EXISTS files, vorna_version, scheme_version"_s});
        QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
    }

    void init()
    {
        run({"SET client_min_messages=error"_s, "DROP TABLE IF EXISTS files, vorna_version, scheme_version"_s,
             "CREATE TABLE vorna_version (version TEXT)"_s, Schema::programVersionInsert("2.0.8"_s)});
    }

    void upgradesConstraints_data()
    {
        QTest::addColumn<QString>("storageCheck");
        addRow("storage from 1", "storage_id > 0"_s);
        addRow("storage from 0 already", "storage_id >= 0"_s);
    }

    void upgradesConstraints()
    {
        QFETCH(QString, storageCheck);
        makeFiles(storageCheck);
        QVERIFY(update());
        QVERIFY(!update());
        QCOMPARE(value("SELECT version FROM scheme_version"), "4.1.0"_s);
        QCOMPARE(value("SELECT data_checksum FROM files"), "0"_s);
        run({"UPDATE files SET internal=2, storage_id=0"_s});
        QVERIFY(!QSqlQuery().exec("UPDATE files SET storage_id=-1"_s));
        QCOMPARE(rows(m_constructor.constraintDefinitionQuery("files"_s, "files_storage_id_check"_s)),
                 QStringList{"(storage_id >= 0)"_s});
        QVERIFY(rows(m_constructor.constraintExistsQuery("files"_s, "internal_bool"_s)).isEmpty());
    }

    void failureChangesNothing()
    {
        makeFiles("storage_id > -9"_s);
        run({"UPDATE files SET storage_id=-5"_s});
        QVERIFY(!update());
        QCOMPARE(value("SELECT version FROM scheme_version"), "3.2.0"_s);
        QCOMPARE(value("SELECT data_checksum FROM files"), "-4"_s);
        QVERIFY(!rows(m_constructor.constraintExistsQuery("files"_s, "internal_bool"_s)).isEmpty());
    }

    void olderVersionEndsWithFalse()
    {
        // The step to 2.0.7 leaves no stamp on a server: the chain has to end there.
        run({"UPDATE vorna_version SET version='2.0.6'"_s});
        QVERIFY(!update());
        QCOMPARE(value("SELECT version FROM vorna_version"), "2.0.6"_s);
    }

private:
    static void run(const QStringList &statements)
    {
        for (const QString &statement : statements)
            QVERIFY2(Sql::run(statement), qPrintable(statement));
    }

    void makeFiles(const QString &storageCheck)
    {
        run({"CREATE TABLE files (file_id bigserial PRIMARY KEY, file_name text, file_description text, "
             "file_size bigint NOT NULL, addition_date bigint NOT NULL, modification_date bigint NOT NULL, "
             "id_code character(7) NOT NULL UNIQUE, load_id bigint NOT NULL, storage_id bigint NOT NULL "
             "CONSTRAINT files_storage_id_check CHECK ("_s +
                 storageCheck +
                 "), thumbnail_id bigint, data_checksum bigint NOT NULL, internal integer NOT NULL "
                 "CONSTRAINT internal_bool CHECK (internal IN (0,1)))"_s,
             "INSERT INTO files VALUES (1,'O''Neil','',1,2,3,'AAAAAAA',1,1,NULL,-4,0)"_s,
             "CREATE TABLE scheme_version (version TEXT)"_s, Schema::schemaVersionInsert("3.2.0"_s)});
    }

    bool update() { return DataBaseUpdater(&m_constructor, nullptr).update(QSqlDatabase::database()); }

    PostgresQueryConstructor m_constructor;
};

QTEST_GUILESS_MAIN(TestServerUpdater)
#include "tst_serverupdater.moc"
