#include "fileops/blockstorage.h"
#include "fileops/databasefunctions.h"
#include "fileops/postgresfileoperationworker.h"
#include "fileops/sqlitefileoperationworker.h"
#include "tests/support/serverdatabase.h"

namespace {
QString contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : "(unreadable)"_s;
}
} // namespace

class TestBlockStorage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addBackEnds(); }

    void init()
    {
        m_database = makeTestDatabase();
        QVERIFY(m_database->openWorkerConnection());
        if (isLocal())
            makeWorker<SqliteFileOperationWorker>();
        else
            makeWorker<PostgresFileOperationWorker>();
    }

    void cleanup()
    {
        m_worker.reset();
        m_database.reset();
    }

    void readsOnlyItsOwnBlocks()
    {
        // As the blocks of two clients lie on a server.
        m_database->addBlock(1, 3, "first ");
        m_database->addBlock(2, 4, "second ");
        m_database->addBlock(3, 6, "of one ");
        m_database->addBlock(4, 0, "of another");
        m_database->addBlock(6, 0, "file");
        m_database->addFile(1, 1, 17, 1);
        m_database->addFile(2, 1, 17, 2);
        QVERIFY(readBack(1));
        QCOMPARE(contentOf(target()), "first of one file"_s);
        QVERIFY(readBack(2));
        QCOMPARE(contentOf(target()), "second of another"_s);
    }

    void readsToTheEndOfTheChain()
    {
        m_database->addBlock(1, 2, "size written in ");
        m_database->addBlock(2, 0, "too few bits");
        m_database->addFile(1, 1, -5, 1);
        QVERIFY(readBack(1));
        QCOMPARE(contentOf(target()), "size written in too few bits"_s);
    }

    void readsAnEmptyFileAsEmpty()
    {
        m_database->addBlock(1, 0, "another's");
        m_database->addFile(1, 1, 9, 1);
        m_database->addFile(2, 1, 0, 1);
        m_database->addFile(3, 1, 0, 99);
        QVERIFY(readBack(2));
        QCOMPARE(contentOf(target()), QString());
        QVERIFY(readBack(3));
        QCOMPARE(contentOf(target()), QString());
    }

    void refusesDamage_data()
    {
        addColumns<int, qint64, qint64>("internal", "firstId", "lastContinuesAt");
        addRow("external file whose path id is a block's id", 0, qint64(1), qint64(0));
        addRow("hyperlink", 2, qint64(1), qint64(0));
        addRow("first block missing", 1, qint64(50), qint64(0));
        addRow("later block missing", 1, qint64(1), qint64(50));
        addRow("chain that returns into itself", 1, qint64(1), qint64(1));
    }

    void refusesDamage()
    {
        QFETCH(int, internal);
        QFETCH(qint64, firstId);
        QFETCH(qint64, lastContinuesAt);
        m_database->addBlock(1, 2, "a");
        m_database->addBlock(2, lastContinuesAt, "b");
        m_database->addFile(1, internal, 2, firstId);
        QVERIFY(!readBack(1));
        QVERIFY(!readBack(7));
    }

    void endsOnCancel()
    {
        m_database->addBlock(1, 0, "bytes");
        m_database->addFile(1, 1, 5, 1);
        m_worker->cancelAll();
        QFile file(target());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(!BlockStorage(*m_worker).readInto(1, file));
        QVERIFY(!file.isOpen());
        QCOMPARE(file.size(), qint64(0));
    }

    void countsIdsInsideATransaction()
    {
        if (!isLocal())
            QSKIP("a server counts by itself");
        m_database->addBlock(7, 0, "bytes");
        qint64 id = 0;
        QVERIFY(m_worker->beginTransaction(Constants::workerConnection));
        QVERIFY(m_worker->nextStorageId(id));
        QCOMPARE(id, qint64(8));
        QVERIFY(m_worker->nextStorageId(id));
        QCOMPARE(id, qint64(9));
        QVERIFY(m_worker->nextPathId(id));
        QCOMPARE(id, qint64(1));
        QVERIFY(m_worker->rollbackTransaction(Constants::workerConnection));

        // Others write between two transactions: what was counted before says nothing then.
        m_database->addBlock(30, 0, "bytes");
        QVERIFY(m_worker->nextStorageId(id));
        QCOMPARE(id, qint64(31));
        QVERIFY(m_worker->beginTransaction(Constants::workerConnection));
        QVERIFY(m_worker->nextStorageId(id));
        QCOMPARE(id, qint64(31));
        QVERIFY(m_worker->commitTransaction(Constants::workerConnection));
    }

    void doublesTheQuotesOfFixedTexts()
    {
        for (const char *statement : {"SELECT \"O'Neil\";", "SELECT 'O''Neil';"})
            QCOMPARE(Database::execQuery(QString(), QLatin1String(statement)).value(0).toString(),
                     "O'Neil"_s);
    }

    void findsPathsOfExternalFilesOnly()
    {
        m_database->run("INSERT INTO file_paths VALUES (5, '/a/''b%1', '../b')"_s);
        m_database->addFile(1, 0, 1, 5);
        m_database->addFile(2, 1, 1, 5);
        QCOMPARE(Database::getAbsoluteFilePath(QString(), 1), "/a/'b%1"_s);
        QCOMPARE(Database::getRelativeFilePath(QString(), 1), "../b"_s);
        QCOMPARE(Database::getAbsoluteFilePath(QString(), 2), QString());
        QCOMPARE(Database::getRelativeFilePath(Constants::workerConnection, 2), QString());
    }

    void relatesPathsToTheDatabase()
    {
        const Database::PathLocator locator = Database::pathLocator(Constants::workerConnection);
        QCOMPARE(locator.isLocal, isLocal());
        const QString folder =
            isLocal() ? QFileInfo(m_database->details().databaseName()).absolutePath() : QDir::currentPath();
        QCOMPARE(Database::relativePath(folder + "/sub/file"_s, locator), "sub/file"_s);
        QCOMPARE(Database::relativePath(QFileInfo(folder).path() + "/file"_s, locator), "../file"_s);
        QCOMPARE(Database::absolutePath("../file"_s, locator), folder + "/../file"_s);
        const QString relative = Database::relativePath(QDir::currentPath() + "/x"_s, {});
        QCOMPARE(relative, "x"_s);
    }

private:
    template <class Worker>
    void makeWorker()
    {
        m_worker = std::make_unique<Worker>(Constants::workerConnection, m_database->details(),
                                            m_database->constructor());
    }
    bool isLocal() const { return m_database->details().type() == Constants::localDatabase; }
    QString target() const { return m_folder.filePath("target"_s); }

    bool readBack(qint64 fileId)
    {
        QFile file(target());
        return file.open(QIODevice::WriteOnly) && BlockStorage(*m_worker).readInto(fileId, file);
    }

    TestFolder m_folder;
    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<FileOperationWorker> m_worker;
};

QTEST_GUILESS_MAIN(TestBlockStorage)
#include "tst_blockstorage.moc"
