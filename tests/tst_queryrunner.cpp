#include "db/sql/asyncrunner.h"
#include "db/sql/syncrunner.h"
#include "db/sql/transaction.h"
#include "tests/support/serverdatabase.h"

/** Runners and the provider base, on both connections of a real database of either kind. */
class TestQueryRunner : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data()
    {
        qRegisterMetaType<QSqlError>("QSqlError");
        qRegisterMetaType<TableData>("TableData");
        addBackEnds();
    }

    void init()
    {
        QFETCH_GLOBAL(bool, isOnServer);
        m_database = makeTestDatabase();
        const QString table = "CREATE TABLE t (id INTEGER PRIMARY KEY, name TEXT)"_s;
        QVERIFY(isOnServer ? static_cast<ServerDatabase &>(*m_database)
                                 .owner()
                                 .run(table + "; GRANT ALL ON t TO PUBLIC"_s)
                           : m_database->run(table));
        QVERIFY(m_database->run("INSERT INTO t VALUES (1,'one'),(2,NULL),(3,'three')"));
        QVERIFY(m_database->openWorkerConnection());
        m_provider = std::make_unique<BaseDBProvider>(m_database->constructor());
    }

    void cleanup()
    {
        m_provider.reset();
        m_database.reset();
    }

    void signalsOfARun()
    {
        SyncRunner runner;
        QStringList seen;
        connect(&runner, &QueryRunner::errorOccured, this, [&seen] { seen.append("error"_s); });
        connect(&runner, &QueryRunner::queryFinished, this, [&seen](bool ok, TableData table) {
            seen.append("%1 %2"_s.arg(ok).arg(table.size()));
            freeRows(table);
        });
        for (const char *statement : {"SELECT * FROM t", "SELECT * FROM t WHERE id=9",
                                      "SELECT * FROM nowhere", "INSERT INTO t VALUES (1,'again')"})
            runner.run(QLatin1String(statement));
        QCOMPARE(seen.join(QLatin1Char(',')), "1 3,1 0,error,0 0,error,0 0"_s);
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
        QSqlDatabase::database(Constants::workerConnection, false).close();
        runner.run("SELECT 1"_s);
        QCOMPARE(lost.size(), 3);
        QCOMPARE(errors.size() + finished.size(), 0);
    }

    void blobAndHostileTexts()
    {
        QFETCH_GLOBAL(bool, isOnServer);
        const QString type = isOnServer ? "BYTEA"_s : "BLOB"_s;
        QVERIFY(m_provider->runAsync("CREATE TEMPORARY TABLE b (id INTEGER, data %1, n TEXT)"_s.arg(type)));
        QByteArray bytes;
        for (int i = 0; i < 70000; ++i)
            bytes.append(char(i % 256));
        const QString name =
            "\uFEFF\uFEFFa'b \" %1 %2 \\ \n ✓ 🐟 '); DROP TABLE t; --"_s; // the literal drops a mark
        const AbstractQueryConstructor *constructor = m_database->constructor();
        QVERIFY(m_provider->runAsync(constructor->insertQuery({}, "b"_s, {{"1"_s, QString(), name}}) +
                                     constructor->statementEnd()));
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
        const QString worker = Constants::workerConnection;
        const QString insert = "INSERT INTO t VALUES (?,?)"_s;
        const ErrorCount errors(*m_provider);
        QVERIFY(m_provider->runPrepared(insert, {10, "O'N %1"_s}, worker));
        QVERIFY(!m_provider->runPrepared(insert, {10, "taken"_s}, worker));
        QCOMPARE(errors.count(), 1);
        QVERIFY(m_provider->runPrepared(insert, {20, "O'N %1"_s}, worker));
        QCOMPARE(m_database->value("SELECT count(*) FROM t WHERE name='O''N %1'"), "2"_s);
        TableData table;
        QVERIFY(m_provider->runPrepared("SELECT name FROM t WHERE id=?"_s, {3}, table));
        QCOMPARE(table.at(0)->value("name"_s).toString(), "three"_s);
        freeRows(table);
        // The same name, another connection: what was prepared on the old one must not be used.
        QVERIFY(m_database->openWorkerConnection());
        QVERIFY(m_provider->runPrepared(insert, {21, "new"_s}, worker));
    }

    void slices()
    {
        QVERIFY(m_database->run("INSERT INTO t VALUES (4,'d'),(5,'e'),(6,'f'),(7,'g')"));
        QVector<int> sizes;
        const auto take = [&sizes](const TableData &rows) { sizes.append(rows.size()); };
        QVERIFY(m_provider->runSyncInSlices("SELECT id, name FROM t ORDER BY id"_s, 3, take));
        QVERIFY(m_provider->runSyncInSlices("SELECT id FROM t WHERE id>90"_s, 3, take));
        QVERIFY(!m_provider->runSyncInSlices("SELECT id FROM nowhere"_s, 3, take));
        QCOMPARE(sizes, (QVector<int>{3, 3, 1}));
    }

    void joinedSlices()
    {
        QVERIFY(m_database->run("CREATE TEMPORARY TABLE l (id INTEGER, tag INTEGER)"));
        // Links without a file stand before, between and behind those of files; 2 has none.
        QVERIFY(m_database->run("INSERT INTO l VALUES (0,1),(1,7),(1,8),(1,9),(3,7),(4,4),(5,5)"));
        QVERIFY(m_database->run("INSERT INTO t VALUES (5,'five')"));
        QStringList rows;
        const auto text = [](const QVariant &value) {
            return value.isNull() && value.isValid() ? "null"_s : value.toString();
        };
        const auto take = [&](const TableData &slice) {
            for (const TableRowData *row : slice)
                rows.append("%1 %2 %3"_s.arg(row->value("id"_s).toString(), text(row->value("name"_s, "-"_s)),
                                             text(row->value("tag"_s))));
        };
        for (const int size : {1, 2, 3, 100}) {
            for (const bool isJoinedByDatabase : {true, false}) {
                rows.clear();
                QVERIFY(isJoinedByDatabase
                            ? m_provider->runSyncInSlices("SELECT t.id, name, tag FROM t LEFT JOIN l ON "
                                                          "t.id=l.id ORDER BY t.id, tag"_s,
                                                          size, take, {0, {0, 2}})
                            : m_provider->runSyncJoined("SELECT id, name FROM t ORDER BY id"_s,
                                                        "SELECT id, tag FROM l ORDER BY id, tag"_s, size,
                                                        take));
                QCOMPARE(rows.join(QLatin1Char('|')), "1 one 7|1 - 8|1 - 9|2 null null|3 three 7|5 five 5"_s);
            }
        }
    }

    void guards()
    {
        {
            Transaction forgotten(*m_provider);
            QVERIFY(m_provider->runSync("DELETE FROM t"_s));
        }
        QCOMPARE(m_database->count("t"_s), 3);
        Transaction kept(*m_provider);
        QVERIFY(m_provider->runSync("DELETE FROM t WHERE id=3"_s));
        QVERIFY(kept.commit() && !kept.isActive() && !kept.commit());
        QCOMPARE(m_database->count("t"_s), 2);
        Transaction nowhere(*m_provider, "no such connection"_s);
        QVERIFY(!nowhere.isActive() && !nowhere.commit());

        Transaction transaction(*m_provider, Constants::workerConnection);
        for (int i = 10; i < 16; ++i) {
            Savepoint savepoint(*m_provider);
            QVERIFY(savepoint.isActive());
            QVERIFY(m_provider->runAsync("INSERT INTO t VALUES (%1,'x')"_s.arg(i)));
            // Every second item fails behind its first statement.
            if (i % 2 == 1 && !m_provider->runAsync("INSERT INTO t VALUES (1,'taken')"_s))
                continue;
            QVERIFY(savepoint.release());
        }
        QVERIFY(!m_provider->isSavepointLost() && transaction.commit());
        QCOMPARE(m_database->value("SELECT id FROM t ORDER BY id"), "1\n2\n10\n12\n14"_s);
    }

private:
    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<BaseDBProvider> m_provider;
};

QTEST_GUILESS_MAIN(TestQueryRunner)
#include "tst_queryrunner.moc"
