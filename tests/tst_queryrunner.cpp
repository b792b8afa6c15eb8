#include "db/asyncrunner.h"
#include "db/basedbprovider.h"
#include "db/sqlitequeryconstructor.h"
#include "db/syncrunner.h"
#include "db/transaction.h"
#include "tests/support/text.h"

#include <QSqlDatabase>
#include <QSqlQuery>

namespace {
const char *const workerName = "AsyncConnection";

/** The server to test on, "host;port;database;user"; nothing when none is there. */
QStringList serverParts()
{
    const QStringList parts = qEnvironmentVariable("VORNA_TEST_PG").split(QLatin1Char(';'));
    return parts.size() == 4 ? parts : QStringList();
}
} // namespace

/** Runners and the provider base, on both connections of a real database of either kind. */
class TestQueryRunner : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data()
    {
        qRegisterMetaType<QSqlError>("QSqlError");
        qRegisterMetaType<TableData>("TableData");
        QTest::addColumn<QString>("driver");
        addRow("sqlite", "QSQLITE"_s);
        addRow("postgres", "QPSQL"_s);
    }

    void init()
    {
        QFETCH_GLOBAL(QString, driver);
        if (driver == QLatin1String("QPSQL") && serverParts().isEmpty())
            QSKIP("VORNA_TEST_PG names no server");
        m_dir.reset(new QTemporaryDir);
        connectTo(QLatin1String(QSqlDatabase::defaultConnection));
        connectTo(QLatin1String(workerName));
        m_provider.reset(new BaseDBProvider(&m_constructor));
        m_provider->runSync("DROP TABLE IF EXISTS t"_s);
        QVERIFY(m_provider->runSync("CREATE TABLE t (id INTEGER PRIMARY KEY, name TEXT)"_s));
        QVERIFY(m_provider->runSync("INSERT INTO t VALUES (1,'one'),(2,NULL),(3,'three')"_s));
    }

    void cleanup()
    {
        m_provider.reset();
        QSqlDatabase::removeDatabase(QLatin1String(QSqlDatabase::defaultConnection));
        QSqlDatabase::removeDatabase(QLatin1String(workerName));
    }

    void runReportsOnce_data()
    {
        addColumns<QString, bool, int>("statement", "success", "rows");
        addRow("select", "SELECT * FROM t"_s, true, 3);
        addRow("select of nothing", "SELECT * FROM t WHERE id=9"_s, true, 0);
        addRow("unknown table", "SELECT * FROM nowhere"_s, false, 0);
        addRow("key taken", "INSERT INTO t VALUES (1,'again')"_s, false, 0);
    }

    void runReportsOnce()
    {
        QFETCH(QString, statement);
        QFETCH(bool, success);
        SyncRunner runner;
        QStringList order;
        connect(&runner, &QueryRunner::errorOccured, this, [&order] { order.append("error"_s); });
        connect(&runner, &QueryRunner::queryFinished, this, [&order](bool ok, TableData table) {
            order.append("%1 %2"_s.arg(ok).arg(table.size()));
            freeRows(table);
        });
        runner.run(statement);
        QFETCH(int, rows);
        QStringList expected{"%1 %2"_s.arg(success).arg(rows)};
        if (!success)
            expected.prepend("error"_s);
        QCOMPARE(order, expected);
    }

    void noConnection()
    {
        AsyncRunner runner;
        QSignalSpy lost(&runner, &QueryRunner::connectionError);
        QSignalSpy errors(&runner, &QueryRunner::errorOccured);
        QSignalSpy finished(&runner, &QueryRunner::queryFinished);
        TableData table;
        QVERIFY(!runner.run("SELECT 1"_s, table, "no such connection"_s));
        QVERIFY(!runner.runWithBlob("SELECT 1"_s, "x", ":FILE"_s, table, "no such connection"_s));
        QSqlDatabase::database(QLatin1String(workerName), false).close();
        runner.run("SELECT 1"_s);
        QCOMPARE(lost.size(), 3);
        QCOMPARE(errors.size() + finished.size(), 0);
    }

    void blobAndHostileTexts()
    {
        QFETCH_GLOBAL(QString, driver);
        const QString type = driver == QLatin1String("QSQLITE") ? "BLOB"_s : "BYTEA"_s;
        QVERIFY(m_provider->runAsync("CREATE TEMPORARY TABLE b (id INTEGER, data %1, n TEXT)"_s.arg(type)));
        QByteArray bytes;
        for (int i = 0; i < 70000; ++i)
            bytes.append(char(i % 256));
        const QString name = "a'b \" %1 %2 \\ \n ✓ 🐟 '); DROP TABLE t; --"_s;
        QVERIFY(m_provider->runAsync(m_constructor.insertQuery({}, "b"_s, {{"1"_s, QString(), name}}) +
                                     m_constructor.statementEnd()));
        QVERIFY(m_provider->runAsyncWithBlob("UPDATE b SET data=:FILE;"_s, bytes, ":FILE"_s));
        TableData table;
        QVERIFY(m_provider->runAsync("SELECT data, n FROM b"_s, table));
        QCOMPARE(table.size(), 1);
        QCOMPARE(table.at(0)->value("data"_s).toByteArray(), bytes);
        QCOMPARE(table.at(0)->value("n"_s).toString(), name);
        freeRows(table);
    }

    void prepared()
    {
        const QString worker = QLatin1String(workerName);
        const QString insert = "INSERT INTO t VALUES (?,?)"_s;
        QSignalSpy errors(m_provider.data(), &BaseDBProvider::errorOccured);
        for (int i = 10; i < 20; ++i)
            QVERIFY(m_provider->runPrepared(insert, {i, "O'N %1"_s}, worker));
        QVERIFY(!m_provider->runPrepared(insert, {10, "taken"_s}, worker));
        QCOMPARE(errors.size(), 1);
        QVERIFY(m_provider->runPrepared(insert, {20, "O'N %1"_s}, worker));
        QCOMPARE(count("name='O''N %1'"_s), 11);
        TableData table;
        QVERIFY(m_provider->runPrepared("SELECT name FROM t WHERE id=?"_s, {3}, table));
        QCOMPARE(table.at(0)->value("name"_s).toString(), "three"_s);
        freeRows(table);
        // The same name, another connection: what was prepared on the old one must not be used.
        QSqlDatabase::removeDatabase(worker);
        connectTo(worker);
        QVERIFY(m_provider->runPrepared(insert, {21, "new"_s}, worker));
    }

    void slices()
    {
        QVERIFY(m_provider->runSync("INSERT INTO t VALUES (4,'d'),(5,'e'),(6,'f'),(7,'g')"_s));
        QVector<int> sizes;
        const auto take = [&sizes](const TableData &rows) { sizes.append(rows.size()); };
        QVERIFY(m_provider->runSyncInSlices("SELECT id, name FROM t ORDER BY id"_s, 3, take));
        QCOMPARE(sizes, (QVector<int>{3, 3, 1}));
        QVERIFY(m_provider->runSyncInSlices("SELECT id FROM t WHERE id>90"_s, 3, take));
        QVERIFY(!m_provider->runSyncInSlices("SELECT id FROM nowhere"_s, 3, take));
        QCOMPARE(sizes.size(), 3);
    }

    void joinedSlices_data()
    {
        addColumns<int, bool>("sliceRows", "bySides");
        for (const int rows : {1, 2, 3, 100}) {
            QTest::addRow("joined by the database, slices of %d", rows) << rows << false;
            QTest::addRow("joined while reading, slices of %d", rows) << rows << true;
        }
    }

    void joinedSlices()
    {
        QFETCH(int, sliceRows);
        QFETCH(bool, bySides);
        QVERIFY(m_provider->runSync("CREATE TEMPORARY TABLE l (id INTEGER, tag INTEGER)"_s));
        // Links without a file stand before, between and behind those of files; 2 has none.
        QVERIFY(m_provider->runSync("INSERT INTO l VALUES (0,1),(1,7),(1,8),(1,9),(3,7),(4,4),(5,5)"_s));
        QVERIFY(m_provider->runSync("INSERT INTO t VALUES (5,'five')"_s));
        QStringList rows;
        const auto take = [&rows](const TableData &slice) {
            for (const TableRowData *row : slice) {
                const QVariant name = row->value("name"_s, "-"_s);
                const QVariant tag = row->value("tag"_s);
                rows.append(row->value("id"_s).toString() + QLatin1Char(' ') +
                            (name.isNull() ? "null"_s : name.toString()) + QLatin1Char(' ') +
                            (tag.isNull() && tag.isValid() ? "null"_s : tag.toString()));
            }
        };
        const bool success =
            bySides ? m_provider->runSyncJoined("SELECT id, name FROM t ORDER BY id"_s,
                                                "SELECT id, tag FROM l ORDER BY id, tag"_s, sliceRows, take)
                    : m_provider->runSyncInSlices("SELECT t.id, name, tag FROM t LEFT JOIN l ON t.id=l.id "
                                                  "ORDER BY t.id, tag"_s,
                                                  sliceRows, take, {0, {0, 2}});
        QVERIFY(success);
        QCOMPARE(rows.join(QLatin1Char('|')), "1 one 7|1 - 8|1 - 9|2 null null|3 three 7|5 five 5"_s);
    }

    void transactionGuard()
    {
        {
            Transaction forgotten(*m_provider);
            QVERIFY(m_provider->runSync("DELETE FROM t"_s));
        }
        QCOMPARE(count(), 3);
        Transaction kept(*m_provider);
        QVERIFY(m_provider->runSync("DELETE FROM t WHERE id=1"_s));
        QVERIFY(kept.commit());
        QVERIFY(!kept.isActive() && !kept.commit());
        QCOMPARE(count(), 2);
        Transaction nowhere(*m_provider, "no such connection"_s);
        QVERIFY(!nowhere.isActive() && !nowhere.commit());
    }

    void savepointGuard()
    {
        const QString worker = QLatin1String(workerName);
        Transaction transaction(*m_provider, worker);
        for (int i = 10; i < 16; ++i) {
            Savepoint savepoint(*m_provider);
            QVERIFY(savepoint.isActive());
            QVERIFY(m_provider->runAsync("INSERT INTO t VALUES (%1,'x')"_s.arg(i)));
            // Every second item fails behind its first statement.
            if (i % 2 == 1 && !m_provider->runAsync("INSERT INTO t VALUES (1,'taken')"_s))
                continue;
            QVERIFY(savepoint.release());
        }
        QVERIFY(!m_provider->isSavepointLost());
        QVERIFY(transaction.commit());
        QCOMPARE(count("name='x' AND id IN (10,12,14)"_s), 3);
        QCOMPARE(count(), 6);
    }

private:
    void connectTo(const QString &name)
    {
        QFETCH_GLOBAL(QString, driver);
        QSqlDatabase database = QSqlDatabase::addDatabase(driver, name);
        if (driver == QLatin1String("QSQLITE")) {
            database.setDatabaseName(m_dir->filePath("t.vrn"_s));
            database.setConnectOptions("QSQLITE_BUSY_TIMEOUT=50"_s);
        } else {
            const QStringList parts = serverParts();
            database.setHostName(parts.at(0));
            database.setPort(parts.at(1).toInt());
            database.setDatabaseName(parts.at(2));
            database.setUserName(parts.at(3));
        }
        QVERIFY2(database.open(), qPrintable(database.lastError().text()));
    }

    qint64 count(const QString &where = "1=1"_s)
    {
        QSqlQuery query("SELECT count(*) FROM t WHERE "_s + where);
        return query.next() ? query.value(0).toLongLong() : -1;
    }

    QScopedPointer<QTemporaryDir> m_dir;
    SqliteQueryConstructor m_constructor;
    QScopedPointer<BaseDBProvider> m_provider;
};

QTEST_GUILESS_MAIN(TestQueryRunner)
#include "tst_queryrunner.moc"
