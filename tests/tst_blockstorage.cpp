#include "fileops/blockstorage.h"
#include "fileops/databasefunctions.h"
#include "fileops/sqlitefileoperationworker.h"
#include "support/workerdatabase.h"

#include <QDir>
#include <QtTest>

namespace {
/** Bytes that repeat at no divisor of a block's size. */
QByteArray pattern(qint64 length)
{
    QByteArray period;
    for (int i = 0; i < 997; ++i)
        period.append(static_cast<char>(i * 31));
    return period.repeated(static_cast<int>(length / period.size()) + 1).left(static_cast<int>(length));
}

QString contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll())
                                          : QStringLiteral("(unreadable)");
}
} // namespace

class TestBlockStorage : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void storesAndReadsBack_data();
    void storesAndReadsBack();
    void readsOnlyItsOwnBlocks();
    void readsToTheEndOfTheChain();
    void readsAnEmptyFileAsEmpty();
    void refusesDamage_data();
    void refusesDamage();
    void endsOnCancel();
    void countsIdsInsideATransaction();
    void doublesTheQuotesOfFixedTexts_data();
    void doublesTheQuotesOfFixedTexts();
    void findsPathsOfExternalFilesOnly();
    void relatesPathsToTheDatabase();
    void writesBlocksWithoutAWorker();
    void listsNumbersOnly();

private:
    QString target() const { return m_database->filePath(QStringLiteral("target")); }
    bool readBack(qint64 fileId);

    std::unique_ptr<WorkerDatabase> m_database;
    std::unique_ptr<SqliteFileOperationWorker> m_worker;
};

void TestBlockStorage::init()
{
    m_database = std::make_unique<WorkerDatabase>();
    QVERIFY(m_database->openWorkerConnection());
    m_worker = std::make_unique<SqliteFileOperationWorker>(Constants::workerConnection, m_database->details(),
                                                           m_database->constructor());
}

void TestBlockStorage::cleanup()
{
    m_worker.reset();
    m_database.reset();
}

bool TestBlockStorage::readBack(qint64 fileId)
{
    QFile file(target());
    return file.open(QIODevice::WriteOnly) && BlockStorage(*m_worker).readInto(fileId, file);
}

void TestBlockStorage::storesAndReadsBack_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QStringList>("chain");
    QTest::newRow("one byte") << qint64(1) << QStringList{QStringLiteral("1|0|1")};
    QTest::newRow("one byte less than a block")
        << BLOCK_SIZE - 1 << QStringList{QStringLiteral("1|0|9999999")};
    QTest::newRow("exactly a block") << BLOCK_SIZE << QStringList{QStringLiteral("1|0|10000000")};
    QTest::newRow("one byte more than a block")
        << BLOCK_SIZE + 1 << QStringList{QStringLiteral("1|2|10000000"), QStringLiteral("2|0|1")};
    QTest::newRow("two blocks") << 2 * BLOCK_SIZE
                                << QStringList{QStringLiteral("1|2|10000000"),
                                               QStringLiteral("2|0|10000000")};
}

void TestBlockStorage::storesAndReadsBack()
{
    QFETCH(qint64, size);
    const QByteArray bytes = pattern(size);
    qint64 id = 0;
    QVERIFY(m_worker->nextStorageId(id));
    for (qint64 done = 0; done < size; done += BLOCK_SIZE) {
        qint64 next = -1;
        QVERIFY(m_worker->insertBlock(bytes.mid(static_cast<int>(done), BLOCK_SIZE), id,
                                      done + BLOCK_SIZE < size, next));
        id = next;
    }
    QCOMPARE(id, qint64(0));
    QTEST(m_database->rows(QStringLiteral("SELECT storage_id, continue_id, length(data) FROM storage "
                                          "NATURAL JOIN storage_info ORDER BY storage_id")),
          "chain");

    QVERIFY(m_database->addFile(1, 1, size, 1));
    QVERIFY(readBack(1));
    QFile file(target());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll() == bytes);
}

void TestBlockStorage::readsOnlyItsOwnBlocks()
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
    QCOMPARE(contentOf(target()), QStringLiteral("first of one file"));
    QVERIFY(readBack(2));
    QCOMPARE(contentOf(target()), QStringLiteral("second of another"));
}

void TestBlockStorage::readsToTheEndOfTheChain()
{
    m_database->addBlock(1, 2, "size written in ");
    m_database->addBlock(2, 0, "too few bits");
    m_database->addFile(1, 1, -5, 1);
    QVERIFY(readBack(1));
    QCOMPARE(contentOf(target()), QStringLiteral("size written in too few bits"));
}

void TestBlockStorage::readsAnEmptyFileAsEmpty()
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

void TestBlockStorage::refusesDamage_data()
{
    QTest::addColumn<int>("internal");
    QTest::addColumn<qint64>("firstId");
    QTest::addColumn<qint64>("lastContinuesAt");
    QTest::newRow("external file whose path id is a block's id") << 0 << qint64(1) << qint64(0);
    QTest::newRow("hyperlink") << 2 << qint64(1) << qint64(0);
    QTest::newRow("first block missing") << 1 << qint64(50) << qint64(0);
    QTest::newRow("later block missing") << 1 << qint64(1) << qint64(50);
    QTest::newRow("chain that returns into itself") << 1 << qint64(1) << qint64(1);
}

void TestBlockStorage::refusesDamage()
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

void TestBlockStorage::endsOnCancel()
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

void TestBlockStorage::countsIdsInsideATransaction()
{
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

void TestBlockStorage::doublesTheQuotesOfFixedTexts_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("expected");
    QTest::newRow("apostrophe in a double-quoted text")
        << QStringLiteral("SELECT \"O'Neil\";") << QStringLiteral("O'Neil");
    QTest::newRow("no double quotes") << QStringLiteral("SELECT 'O''Neil';") << QStringLiteral("O'Neil");
}

void TestBlockStorage::doublesTheQuotesOfFixedTexts()
{
    QFETCH(QString, statement);
    QTEST(Database::execQuery(QString(), statement).value(0).toString(), "expected");
}

void TestBlockStorage::findsPathsOfExternalFilesOnly()
{
    m_database->run(QStringLiteral("INSERT INTO file_paths VALUES (5, '/a/''b%1', '../b')"));
    m_database->addFile(1, 0, 1, 5);
    m_database->addFile(2, 1, 1, 5);
    QCOMPARE(Database::getAbsoluteFilePath(QString(), 1), QStringLiteral("/a/'b%1"));
    QCOMPARE(Database::getRelativeFilePath(QString(), 1), QStringLiteral("../b"));
    QCOMPARE(Database::getAbsoluteFilePath(QString(), 2), QString());
    QCOMPARE(Database::getRelativeFilePath(Constants::workerConnection, 2), QString());
}

void TestBlockStorage::relatesPathsToTheDatabase()
{
    const Database::PathLocator locator = Database::pathLocator(Constants::workerConnection);
    QVERIFY(locator.isLocal);
    const QString folder = QFileInfo(m_database->path()).absolutePath();
    QCOMPARE(Database::relativePath(folder + QStringLiteral("/sub/file"), locator),
             QStringLiteral("sub/file"));
    QCOMPARE(Database::relativePath(QFileInfo(folder).path() + QStringLiteral("/file"), locator),
             QStringLiteral("../file"));
    QCOMPARE(Database::absolutePath(QStringLiteral("../file"), locator), folder + QStringLiteral("/../file"));
    const QString relative = Database::relativePath(QDir::currentPath() + QStringLiteral("/x"), {});
    QCOMPARE(relative, QStringLiteral("x"));
}

void TestBlockStorage::writesBlocksWithoutAWorker()
{
    QVERIFY(Database::writeBlock("first", 4, 5, true));
    QVERIFY(Database::writeBlock("last", 5, 77, false));
    QCOMPARE(m_database->rows(QStringLiteral("SELECT storage_id, continue_id, data FROM storage NATURAL JOIN "
                                             "storage_info ORDER BY storage_id")),
             QStringList({QStringLiteral("4|5|first"), QStringLiteral("5|0|last")}));
    QVERIFY(!Database::writeBlock("taken", 5, 0, false));
}

void TestBlockStorage::listsNumbersOnly()
{
    const QString statement = QStringLiteral("SELECT 3 UNION ALL SELECT NULL UNION ALL SELECT 'x' UNION ALL "
                                             "SELECT 5000000000");
    QCOMPARE(Database::listResults(QString(), statement), QVector<qint64>({3, 5000000000}));
    QCOMPARE(Database::listResults(QString(), QStringLiteral("SELECT 1 WHERE 0")), QVector<qint64>());
    QCOMPARE(Database::listResults(QString(), QStringLiteral("no statement")), QVector<qint64>());
}

QTEST_GUILESS_MAIN(TestBlockStorage)
#include "tst_blockstorage.moc"
