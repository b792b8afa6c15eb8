#include "fileops/exchange/attacheddatabase.h"
#include "fileops/exchange/idtable.h"
#include "tests/support/testworker.h"

#include <QFileInfo>

namespace {

/** Another database, with one row in one table. */
QString makeOther(const LocalDatabase &database, const QString &name)
{
    const QString path = database.filePath(name);
    OtherConnection other(path);
    other.run("CREATE TABLE t (a)"_s);
    other.run("INSERT INTO t VALUES (7)"_s);
    return path;
}

} // namespace

/** Work on two local databases at once. */
class TestExchange : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_database = std::make_unique<LocalDatabase>();
        QVERIFY(m_database->openWorkerConnection());
        m_worker = makeWorker(*m_database);
    }

    void cleanup()
    {
        m_worker->clearPrepared();
        m_worker.reset();
        m_database.reset();
    }

    void attachedFileIsThatOfItsName_data()
    {
        addColumns<QString>("name");
        addRow("plain", "b.vrn"_s);
        addRow("signs of an address", "a?mode=rw#x%20 ;&=.vrn"_s);
        addRow("quotes", "it's \"so\".vrn"_s);
        addRow("letters", "\u00e4\u4e2d\U0001f600.vrn"_s);
    }

    void attachedFileIsThatOfItsName()
    {
        QFETCH(QString, name);
        const QString path = makeOther(*m_database, name);
        const int count = QDir(m_database->folder()).count();
        for (const AttachedDatabase::Access access :
             {AttachedDatabase::ReadOnly, AttachedDatabase::ReadWrite}) {
            AttachedDatabase other(*m_worker, "other"_s);
            QVERIFY(other.attach(path, access));
            QuietStatements statements(*m_worker);
            qint64 value = 0;
            QVERIFY(statements.readNumber("SELECT a FROM other.t"_s, value));
            QCOMPARE(value, 7);
            QCOMPARE(statements.run("UPDATE other.t SET a=7"_s), access == AttachedDatabase::ReadWrite);
        }
        QCOMPARE(int(QDir(m_database->folder()).count()), count);
    }

    void attachedFileIsFreeAgain()
    {
        const QString path = makeOther(*m_database, "b.vrn"_s);
        QuietStatements statements(*m_worker);
        {
            AttachedDatabase left(*m_worker, "other"_s);
            QVERIFY(left.attach(path, AttachedDatabase::ReadOnly));
            AttachedDatabase again(*m_worker, "other"_s);
            QVERIFY(again.attach(path, AttachedDatabase::ReadOnly));
            QVERIFY(statements.run("SELECT a FROM other.t"_s));
        }
        QVERIFY(!statements.run("SELECT a FROM other.t"_s));
        QVERIFY(OtherConnection(path).run("UPDATE t SET a=8"_s));
    }

    void failureHasAReasonAndNoOther()
    {
        const ErrorCount errors(*m_worker);
        AttachedDatabase other(*m_worker, "other"_s);
        QVERIFY(!other.attach(m_database->filePath("no/b.vrn"_s), AttachedDatabase::ReadOnly));
        QVERIFY(!other.reason().isEmpty());
        QuietStatements statements(*m_worker);
        QVERIFY(!statements.run("SELECT a FROM nowhere"_s));
        QVERIFY(!statements.isFatal());
        QVERIFY(!statements.reason().isEmpty());
        QVERIFY(statements.run("SELECT ?"_s, {1}));
        QVERIFY(statements.reason().isEmpty());
        QCOMPARE(errors.count(), 0);
    }

    void idsKeepTheirOrder()
    {
        QuietStatements statements(*m_worker);
        IdTable table(statements, "mem_ids"_s);
        QVERIFY(table.create());
        QVector<qint64> ids{5, 3, 5, std::numeric_limits<qint64>::max()};
        for (int i = 25000; i > 10; --i)
            ids.append(i);
        QVERIFY(table.add(ids));
        qint64 value = 0;
        QVERIFY(statements.readNumber("SELECT count(*) FROM mem_ids"_s, value));
        QCOMPARE(value, ids.size() - 1);
        QVERIFY(statements.readNumber("SELECT id FROM mem_ids ORDER BY place LIMIT 1 OFFSET 2"_s, value));
        QCOMPARE(value, std::numeric_limits<qint64>::max());
        QVERIFY(statements.readNumber("SELECT id FROM mem_ids ORDER BY place LIMIT 1 OFFSET 24992"_s, value));
        QCOMPARE(value, 11);
        QVERIFY(table.create());
        QVERIFY(statements.readNumber("SELECT count(*) FROM mem_ids"_s, value));
        QCOMPARE(value, 0);
    }

private:
    std::unique_ptr<LocalDatabase> m_database;
    std::unique_ptr<FileOperationWorker> m_worker;
};

QTEST_GUILESS_MAIN(TestExchange)
#include "tst_exchange.moc"
