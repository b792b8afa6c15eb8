#include "db/databaseupdater.h"
#include "db/postgresqueryconstructor.h"
#include "db/schema.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QtTest>

namespace {
QString text(const char *literal)
{
    return QString::fromUtf8(literal);
}
} // namespace

/** Upgrades on the server that VORNA_TEST_PG names, "host;port;database;user". */
class TestServerUpdater : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void upgradesConstraints_data();
    void upgradesConstraints();
    void failureChangesNothing();
    void olderVersionEndsWithFalse();

private:
    void run(const QStringList &statements);
    void makeFiles(const QString &storageCheck);
    static QString value(const QString &query);
    bool update() { return DataBaseUpdater(&m_constructor, nullptr).update(QSqlDatabase::database()); }

    PostgresQueryConstructor m_constructor;
};

void TestServerUpdater::initTestCase()
{
    const QStringList parts = qEnvironmentVariable("VORNA_TEST_PG").split(QLatin1Char(';'));
    if (parts.size() != 4)
        QSKIP("VORNA_TEST_PG names no server");
    QSqlDatabase database = QSqlDatabase::addDatabase(text("QPSQL"));
    database.setHostName(parts.at(0));
    database.setPort(parts.at(1).toInt());
    database.setDatabaseName(parts.at(2));
    database.setUserName(parts.at(3));
    QVERIFY2(database.open(), qPrintable(database.lastError().text()));
}

void TestServerUpdater::cleanupTestCase()
{
    if (!QSqlDatabase::database().isOpen())
        return;
    run({text("DROP TABLE IF EXISTS files, vorna_version, scheme_version")});
    QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
}

void TestServerUpdater::run(const QStringList &statements)
{
    QSqlQuery query;
    for (const QString &statement : statements)
        QVERIFY2(query.exec(statement), qPrintable(statement + query.lastError().text()));
}

QString TestServerUpdater::value(const QString &query)
{
    QSqlQuery answer(query);
    return answer.next() ? answer.value(0).toString() : QString();
}

void TestServerUpdater::init()
{
    run({text("SET client_min_messages=error"),
         text("DROP TABLE IF EXISTS files, vorna_version, scheme_version"),
         text("CREATE TABLE vorna_version (version TEXT)"), Schema::programVersionInsert(text("2.0.8"))});
}

void TestServerUpdater::makeFiles(const QString &storageCheck)
{
    run({text("CREATE TABLE files (file_id bigserial PRIMARY KEY, file_name text, file_description text, "
              "file_size bigint NOT NULL, addition_date bigint NOT NULL, modification_date bigint NOT NULL, "
              "id_code character(7) NOT NULL UNIQUE, load_id bigint NOT NULL, storage_id bigint NOT NULL "
              "CONSTRAINT files_storage_id_check CHECK (") +
             storageCheck +
             text("), thumbnail_id bigint, data_checksum bigint NOT NULL, internal integer NOT NULL "
                  "CONSTRAINT internal_bool CHECK (internal IN (0,1)))"),
         text("INSERT INTO files VALUES (1,'O''Neil','',1,2,3,'AAAAAAA',1,1,NULL,-4,0)"),
         text("CREATE TABLE scheme_version (version TEXT)"), Schema::schemaVersionInsert(text("3.2.0"))});
}

void TestServerUpdater::upgradesConstraints_data()
{
    QTest::addColumn<QString>("storageCheck");
    QTest::newRow("storage from 1") << text("storage_id > 0");
    QTest::newRow("storage from 0 already") << text("storage_id >= 0");
}

void TestServerUpdater::upgradesConstraints()
{
    QFETCH(QString, storageCheck);
    makeFiles(storageCheck);
    QVERIFY(update());
    QVERIFY(!update());
    QCOMPARE(value(text("SELECT version FROM scheme_version")), text("4.1.0"));
    QCOMPARE(value(text("SELECT data_checksum FROM files")), text("0"));
    run({text("UPDATE files SET internal=2, storage_id=0")});
    QVERIFY(!QSqlQuery().exec(text("UPDATE files SET storage_id=-1")));
    QCOMPARE(value(m_constructor.constraintDefinitionQuery(text("files"), text("files_storage_id_check"))),
             text("(storage_id >= 0)"));
    QVERIFY(value(m_constructor.constraintExistsQuery(text("files"), text("internal_bool"))).isEmpty());
}

void TestServerUpdater::failureChangesNothing()
{
    makeFiles(text("storage_id > -9"));
    run({text("UPDATE files SET storage_id=-5")});
    QVERIFY(!update());
    QCOMPARE(value(text("SELECT version FROM scheme_version")), text("3.2.0"));
    QCOMPARE(value(text("SELECT data_checksum FROM files")), text("-4"));
    QVERIFY(!value(m_constructor.constraintExistsQuery(text("files"), text("internal_bool"))).isEmpty());
}

void TestServerUpdater::olderVersionEndsWithFalse()
{
    // The step to 2.0.7 leaves no stamp on a server: the chain has to end there.
    run({text("UPDATE vorna_version SET version='2.0.6'")});
    QVERIFY(!update());
    QCOMPARE(value(text("SELECT version FROM vorna_version")), text("2.0.6"));
}

QTEST_GUILESS_MAIN(TestServerUpdater)
#include "tst_serverupdater.moc"
