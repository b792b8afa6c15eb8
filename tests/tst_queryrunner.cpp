#include "db/asyncrunner.h"
#include "db/basedbprovider.h"
#include "db/sqlitequeryconstructor.h"
#include "db/syncrunner.h"
#include "db/transaction.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

namespace {
const char *const workerName = "AsyncConnection";

QString text(const char *literal)
{
    return QString::fromUtf8(literal);
}

/** The server to test on, "host;port;database;user"; nothing when none is there. */
QStringList serverParts()
{
    const QStringList parts = qEnvironmentVariable("VORNA_TEST_PG").split(QLatin1Char(';'));
    return parts.size() == 4 ? parts : QStringList();
}

class Provider : public BaseDBProvider
{
    Q_OBJECT

public:
    using BaseDBProvider::BaseDBProvider;
    void readAll() { request(text("SELECT id, name FROM t ORDER BY id;"), &Provider::gotAll); }

signals:
    void gotAll(bool success, TableData table);
};
} // namespace

/** Runners and the provider base, on both connections of a real database of either kind. */
class TestQueryRunner : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data();
    void init();
    void cleanup();
    void rowsByName();
    void statementWithoutRows_data();
    void statementWithoutRows();
    void runReportsOnce_data();
    void runReportsOnce();
    void runWithTableLendsItsRows();
    void noConnection();
    void failedTransactionIsAlive();
    void blobAndHostileTexts();
    void connectionOfEachRunner();
    void requestAnswersBySignal();
    void prepared();
    void slices();
    void joinedSlices_data();
    void joinedSlices();
    void transactionGuard();
    void savepointGuard();
    void lostSavepoint();
    void rowChanges();

private:
    void connectTo(const QString &name);
    qint64 count(const QString &where = QStringLiteral("1=1"));

    QScopedPointer<QTemporaryDir> m_dir;
    SqliteQueryConstructor m_constructor;
    QScopedPointer<Provider> m_provider;
};

void TestQueryRunner::initTestCase_data()
{
    qRegisterMetaType<QSqlError>("QSqlError");
    qRegisterMetaType<TableData>("TableData");
    QTest::addColumn<QString>("driver");
    QTest::newRow("sqlite") << text("QSQLITE");
    QTest::newRow("postgres") << text("QPSQL");
}

void TestQueryRunner::connectTo(const QString &name)
{
    QFETCH_GLOBAL(QString, driver);
    QSqlDatabase database = QSqlDatabase::addDatabase(driver, name);
    if (driver == QLatin1String("QSQLITE")) {
        database.setDatabaseName(m_dir->filePath(QStringLiteral("t.vrn")));
        database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=50"));
    } else {
        const QStringList parts = serverParts();
        database.setHostName(parts.at(0));
        database.setPort(parts.at(1).toInt());
        database.setDatabaseName(parts.at(2));
        database.setUserName(parts.at(3));
    }
    QVERIFY2(database.open(), qPrintable(database.lastError().text()));
}

void TestQueryRunner::init()
{
    QFETCH_GLOBAL(QString, driver);
    if (driver == QLatin1String("QPSQL") && serverParts().isEmpty())
        QSKIP("VORNA_TEST_PG names no server");
    m_dir.reset(new QTemporaryDir);
    connectTo(QLatin1String(QSqlDatabase::defaultConnection));
    connectTo(QLatin1String(workerName));
    m_provider.reset(new Provider(&m_constructor));
    m_provider->runSync(text("DROP TABLE IF EXISTS t"));
    QVERIFY(m_provider->runSync(text("CREATE TABLE t (id INTEGER PRIMARY KEY, name TEXT)")));
    QVERIFY(m_provider->runSync(text("INSERT INTO t VALUES (1,'one'),(2,NULL),(3,'three')")));
}

void TestQueryRunner::cleanup()
{
    m_provider.reset();
    QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
    QSqlDatabase::removeDatabase(QLatin1String(workerName));
}

qint64 TestQueryRunner::count(const QString &where)
{
    QSqlQuery query(QStringLiteral("SELECT count(*) FROM t WHERE ") + where);
    return query.next() ? query.value(0).toLongLong() : -1;
}

void TestQueryRunner::rowsByName()
{
    TableData table;
    QVERIFY(m_provider->runSync(
        text("SELECT t.id, name, u.id FROM t JOIN (SELECT 7 AS id) u ON 1=1 ORDER BY t.id"), table));
    QCOMPARE(table.size(), 3);
    QCOMPARE(table.at(0)->value(text("id")).toLongLong(), 7); // the later column of that name
    QCOMPARE(table.at(0)->values().size(), 2);
    QCOMPARE(table.at(0)->value(text("name")).toString(), text("one"));
    const QVariant null = table.at(1)->value(text("name"), text("default"));
    QVERIFY(null.isNull() && null.isValid());
    QCOMPARE(table.at(2)->value(text("nothing"), 5).toInt(), 5);
    freeRows(table);
    QVERIFY(table.isEmpty());
}

void TestQueryRunner::statementWithoutRows_data()
{
    QTest::addColumn<QString>("statement");
    QTest::newRow("empty select") << text("SELECT * FROM t WHERE id=99");
    QTest::newRow("insert") << text("INSERT INTO t VALUES (4,'four')");
    QTest::newRow("create") << text("CREATE TEMPORARY TABLE u (id INTEGER)");
}

void TestQueryRunner::statementWithoutRows()
{
    QFETCH(QString, statement);
    TableData table;
    QSignalSpy errors(m_provider.data(), &BaseDBProvider::errorOccured);
    QVERIFY(m_provider->runSync(statement, table));
    QVERIFY(table.isEmpty());
    QCOMPARE(errors.size(), 0);
}

void TestQueryRunner::runReportsOnce_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<bool>("success");
    QTest::addColumn<int>("rows");
    QTest::newRow("select") << text("SELECT * FROM t") << true << 3;
    QTest::newRow("select of nothing") << text("SELECT * FROM t WHERE id=9") << true << 0;
    QTest::newRow("unknown table") << text("SELECT * FROM nowhere") << false << 0;
    QTest::newRow("key taken") << text("INSERT INTO t VALUES (1,'again')") << false << 0;
}

void TestQueryRunner::runReportsOnce()
{
    QFETCH(QString, statement);
    QFETCH(bool, success);
    SyncRunner runner;
    QStringList order;
    connect(&runner, &QueryRunner::errorOccured, this, [&order] { order.append(text("error")); });
    connect(&runner, &QueryRunner::queryFinished, this, [&order](bool ok, TableData table) {
        order.append(QStringLiteral("%1 %2").arg(ok).arg(table.size()));
        freeRows(table);
    });
    runner.run(statement);
    QFETCH(int, rows);
    QStringList expected{QStringLiteral("%1 %2").arg(success).arg(rows)};
    if (!success)
        expected.prepend(text("error"));
    QCOMPARE(order, expected);
}

void TestQueryRunner::runWithTableLendsItsRows()
{
    SyncRunner runner;
    TableData lent;
    connect(&runner, &QueryRunner::queryFinished, this,
            [&lent](bool, const TableData &rows) { lent = rows; });
    TableData table;
    QVERIFY(runner.run(text("SELECT * FROM t"), table, QString()));
    QCOMPARE(lent, table);
    QVERIFY(!runner.run(text("SELECT * FROM nowhere"), lent, QString()));
    freeRows(table);
}

void TestQueryRunner::noConnection()
{
    AsyncRunner runner;
    QSignalSpy lost(&runner, &QueryRunner::connectionError);
    QSignalSpy errors(&runner, &QueryRunner::errorOccured);
    QSignalSpy finished(&runner, &QueryRunner::queryFinished);
    TableData table;
    QVERIFY(!runner.run(text("SELECT 1"), table, text("no such connection")));
    QVERIFY(!runner.runWithBlob(text("SELECT 1"), "x", text(":FILE"), table, text("no such connection")));
    QSqlDatabase::database(QLatin1String(workerName), false).close();
    runner.run(text("SELECT 1"));
    QCOMPARE(lost.size(), 3);
    QCOMPARE(errors.size() + finished.size(), 0);
}

void TestQueryRunner::failedTransactionIsAlive()
{
    QSignalSpy lost(m_provider.data(), &BaseDBProvider::connectionError);
    Transaction transaction(*m_provider);
    QVERIFY(transaction.isActive());
    QVERIFY(!m_provider->runSync(text("INSERT INTO t VALUES (1,'again')")));
    m_provider->runSync(text("SELECT 1"));
    QCOMPARE(lost.size(), 0);
}

void TestQueryRunner::blobAndHostileTexts()
{
    QFETCH_GLOBAL(QString, driver);
    const QString type = driver == QLatin1String("QSQLITE") ? text("BLOB") : text("BYTEA");
    QVERIFY(m_provider->runAsync(
        QStringLiteral("CREATE TEMPORARY TABLE b (id INTEGER, data %1, n TEXT)").arg(type)));
    QByteArray bytes;
    for (int i = 0; i < 70000; ++i)
        bytes.append(char(i % 256));
    const QString name = text("a'b \" %1 %2 \\ \n ✓ 🐟 '); DROP TABLE t; --");
    QVERIFY(m_provider->runAsync(m_constructor.insertQuery({}, text("b"), {{text("1"), QString(), name}}) +
                                 m_constructor.statementEnd()));
    QVERIFY(m_provider->runAsyncWithBlob(text("UPDATE b SET data=:FILE;"), bytes, text(":FILE")));
    TableData table;
    QVERIFY(m_provider->runAsync(text("SELECT data, n FROM b"), table));
    QCOMPARE(table.size(), 1);
    QCOMPARE(table.at(0)->value(text("data")).toByteArray(), bytes);
    QCOMPARE(table.at(0)->value(text("n")).toString(), name);
    freeRows(table);
}

void TestQueryRunner::connectionOfEachRunner()
{
    QVERIFY(m_provider->runAsync(text("CREATE TEMPORARY TABLE mine (id INTEGER)")));
    QVERIFY(m_provider->runSync(text("SELECT * FROM mine"), QLatin1String(workerName)));
    QVERIFY(!m_provider->runSync(text("SELECT * FROM mine")));
}

void TestQueryRunner::requestAnswersBySignal()
{
    m_provider->readAll(); // without a receiver: the leak checker tells whether rows stay behind
    QSignalSpy spy(m_provider.data(), &Provider::gotAll);
    m_provider->readAll();
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.at(0).at(0).toBool(), true);
    auto table = spy.at(0).at(1).value<TableData>();
    QCOMPARE(table.size(), 3);
    freeRows(table);
}

void TestQueryRunner::prepared()
{
    const QString worker = QLatin1String(workerName);
    const QString insert = text("INSERT INTO t VALUES (?,?)");
    QSignalSpy errors(m_provider.data(), &BaseDBProvider::errorOccured);
    for (int i = 10; i < 20; ++i)
        QVERIFY(m_provider->runPrepared(insert, {i, text("O'N %1")}, worker));
    QVERIFY(!m_provider->runPrepared(insert, {10, text("taken")}, worker));
    QCOMPARE(errors.size(), 1);
    QVERIFY(m_provider->runPrepared(insert, {20, text("O'N %1")}, worker));
    QCOMPARE(count(text("name='O''N %1'")), 11);
    TableData table;
    QVERIFY(m_provider->runPrepared(text("SELECT name FROM t WHERE id=?"), {3}, table));
    QCOMPARE(table.at(0)->value(text("name")).toString(), text("three"));
    freeRows(table);
    // The same name, another connection: what was prepared on the old one must not be used.
    QSqlDatabase::removeDatabase(worker);
    connectTo(worker);
    QVERIFY(m_provider->runPrepared(insert, {21, text("new")}, worker));
}

void TestQueryRunner::slices()
{
    QVERIFY(m_provider->runSync(text("INSERT INTO t VALUES (4,'d'),(5,'e'),(6,'f'),(7,'g')")));
    QVector<int> sizes;
    QVector<qint64> ids;
    const auto take = [&](const TableData &rows) {
        sizes.append(rows.size());
        for (const TableRowData *row : rows)
            ids.append(row->at(0).toLongLong());
    };
    QVERIFY(m_provider->runSyncInSlices(text("SELECT id, name FROM t ORDER BY id"), 3, take));
    QCOMPARE(sizes, (QVector<int>{3, 3, 1}));
    QCOMPARE(ids, (QVector<qint64>{1, 2, 3, 4, 5, 6, 7}));
    sizes.clear();
    QVERIFY(m_provider->runSyncInSlices(text("SELECT id FROM t WHERE id>90"), 3, take));
    QSignalSpy errors(m_provider.data(), &BaseDBProvider::errorOccured);
    QVERIFY(!m_provider->runSyncInSlices(text("SELECT id FROM nowhere"), 3, take));
    QCOMPARE(errors.size(), 1);
    QVERIFY(sizes.isEmpty());
}

void TestQueryRunner::joinedSlices_data()
{
    QTest::addColumn<int>("sliceRows");
    QTest::addColumn<bool>("bySides");
    for (const int rows : {1, 2, 3, 100}) {
        QTest::addRow("joined by the database, slices of %d", rows) << rows << false;
        QTest::addRow("joined while reading, slices of %d", rows) << rows << true;
    }
}

void TestQueryRunner::joinedSlices()
{
    QFETCH(int, sliceRows);
    QFETCH(bool, bySides);
    QVERIFY(m_provider->runSync(text("CREATE TEMPORARY TABLE l (id INTEGER, tag INTEGER)")));
    // Links without a file stand before, between and behind those of files; 2 has none.
    QVERIFY(m_provider->runSync(text("INSERT INTO l VALUES (0,1),(1,7),(1,8),(1,9),(3,7),(4,4),(5,5)")));
    QVERIFY(m_provider->runSync(text("INSERT INTO t VALUES (5,'five')")));
    QStringList rows;
    const auto take = [&rows](const TableData &slice) {
        for (const TableRowData *row : slice) {
            const QVariant name = row->value(text("name"), text("-"));
            const QVariant tag = row->value(text("tag"));
            rows.append(row->value(text("id")).toString() + QLatin1Char(' ') +
                        (name.isNull() ? text("null") : name.toString()) + QLatin1Char(' ') +
                        (tag.isNull() && tag.isValid() ? text("null") : tag.toString()));
        }
    };
    const bool success =
        bySides ? m_provider->runSyncJoined(text("SELECT id, name FROM t ORDER BY id"),
                                            text("SELECT id, tag FROM l ORDER BY id, tag"), sliceRows, take)
                : m_provider->runSyncInSlices(text("SELECT t.id, name, tag FROM t LEFT JOIN l ON t.id=l.id "
                                                   "ORDER BY t.id, tag"),
                                              sliceRows, take, {0, {0, 2}});
    QVERIFY(success);
    QCOMPARE(rows.join(QLatin1Char('|')), text("1 one 7|1 - 8|1 - 9|2 null null|3 three 7|5 five 5"));
}

void TestQueryRunner::transactionGuard()
{
    {
        Transaction forgotten(*m_provider);
        QVERIFY(m_provider->runSync(text("DELETE FROM t")));
    }
    QCOMPARE(count(), 3);
    Transaction kept(*m_provider);
    QVERIFY(m_provider->runSync(text("DELETE FROM t WHERE id=1")));
    QVERIFY(kept.commit());
    QVERIFY(!kept.isActive() && !kept.commit());
    QCOMPARE(count(), 2);
    Transaction nowhere(*m_provider, text("no such connection"));
    QVERIFY(!nowhere.isActive() && !nowhere.commit());
}

void TestQueryRunner::savepointGuard()
{
    const QString worker = QLatin1String(workerName);
    Transaction transaction(*m_provider, worker);
    for (int i = 10; i < 16; ++i) {
        Savepoint savepoint(*m_provider);
        QVERIFY(savepoint.isActive());
        QVERIFY(m_provider->runAsync(QStringLiteral("INSERT INTO t VALUES (%1,'x')").arg(i)));
        // Every second item fails behind its first statement.
        if (i % 2 == 1 && !m_provider->runAsync(text("INSERT INTO t VALUES (1,'taken')")))
            continue;
        QVERIFY(savepoint.release());
    }
    QVERIFY(!m_provider->isSavepointLost());
    QVERIFY(transaction.commit());
    QCOMPARE(count(text("name='x' AND id IN (10,12,14)")), 3);
    QCOMPARE(count(), 6);
}

void TestQueryRunner::lostSavepoint()
{
    const QString worker = QLatin1String(workerName);
    Transaction transaction(*m_provider, worker);
    {
        Savepoint savepoint(*m_provider);
        QVERIFY(savepoint.isActive());
        QVERIFY(m_provider->rollbackTransaction(worker));
    }
    QVERIFY(m_provider->isSavepointLost());
    Transaction next(*m_provider, worker);
    QVERIFY(!m_provider->isSavepointLost());
}

void TestQueryRunner::rowChanges()
{
    TableRowData row(QStringList{text("b"), text("a")});
    QVERIFY(row.isEmpty());
    QSignalSpy changes(&row, &TableRowData::dataUpdated);
    row.setValue(text("b"), 1);
    row.setValue(text("b"), 1);
    row.setValue(text("c"), text("new"));
    row.setValue(text("b"), QVariant(QVariant::Int));
    QCOMPARE(changes.size(), 3);
    row.setValue(text("a"), 5);
    QCOMPARE(row.values(), (QVariantList{5, QVariant(QVariant::Int), text("new")}));
    row.clearValues();
    QVERIFY(row.isEmpty() && row.columns().size() == 3);
}

QTEST_GUILESS_MAIN(TestQueryRunner)
#include "tst_queryrunner.moc"
