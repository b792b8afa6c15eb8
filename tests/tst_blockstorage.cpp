#include "fileops/blockstorage.h"
#include "fileops/databasefunctions.h"
#include "fileops/sqlitefileoperationworker.h"
#include "tests/support/database.h"

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
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : "(unreadable)"_s;
}
} // namespace

class TestBlockStorage : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_database = std::make_unique<LocalDatabase>();
        QVERIFY(m_database->openWorkerConnection());
        m_worker = std::make_unique<SqliteFileOperationWorker>(
            Constants::workerConnection, m_database->details(), m_database->constructor());
    }

    void cleanup()
    {
        m_worker.reset();
        m_database.reset();
    }

    void storesAndReadsBack_data()
    {
        addColumns<qint64, QStringList>("size", "chain");
        addRow("one byte", qint64(1), QStringList{"1|0|1"_s});
        addRow("one byte less than a block", BLOCK_SIZE - 1, QStringList{"1|0|9999999"_s});
        addRow("exactly a block", BLOCK_SIZE, QStringList{"1|0|10000000"_s});
        addRow("one byte more than a block", BLOCK_SIZE + 1, QStringList{"1|2|10000000"_s, "2|0|1"_s});
        addRow("two blocks", 2 * BLOCK_SIZE, QStringList{"1|2|10000000"_s, "2|0|10000000"_s});
    }

    void storesAndReadsBack()
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
        QTEST(m_database->rows("SELECT storage_id, continue_id, length(data) FROM storage "
                               "NATURAL JOIN storage_info ORDER BY storage_id"_s),
              "chain");

        QVERIFY(m_database->addFile(1, 1, size, 1));
        QVERIFY(readBack(1));
        QFile file(target());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.readAll() == bytes);
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

    void doublesTheQuotesOfFixedTexts_data()
    {
        addColumns<QString, QString>("statement", "expected");
        addRow("apostrophe in a double-quoted text", "SELECT \"O'Neil\";"_s, "O'Neil"_s);
        addRow("no double quotes", "SELECT 'O''Neil';"_s, "O'Neil"_s);
    }

    void doublesTheQuotesOfFixedTexts()
    {
        QFETCH(QString, statement);
        QTEST(Database::execQuery(QString(), statement).value(0).toString(), "expected");
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
        QVERIFY(locator.isLocal);
        const QString folder = QFileInfo(m_database->path()).absolutePath();
        QCOMPARE(Database::relativePath(folder + "/sub/file"_s, locator), "sub/file"_s);
        QCOMPARE(Database::relativePath(QFileInfo(folder).path() + "/file"_s, locator), "../file"_s);
        QCOMPARE(Database::absolutePath("../file"_s, locator), folder + "/../file"_s);
        const QString relative = Database::relativePath(QDir::currentPath() + "/x"_s, {});
        QCOMPARE(relative, "x"_s);
    }

    void writesBlocksWithoutAWorker()
    {
        QVERIFY(Database::writeBlock("first", 4, 5, true));
        QVERIFY(Database::writeBlock("last", 5, 77, false));
        QCOMPARE(m_database->rows("SELECT storage_id, continue_id, data FROM storage NATURAL JOIN "
                                  "storage_info ORDER BY storage_id"_s),
                 QStringList({"4|5|first"_s, "5|0|last"_s}));
        QVERIFY(!Database::writeBlock("taken", 5, 0, false));
    }

private:
    QString target() const { return m_database->filePath("target"_s); }

    bool readBack(qint64 fileId)
    {
        QFile file(target());
        return file.open(QIODevice::WriteOnly) && BlockStorage(*m_worker).readInto(fileId, file);
    }

    std::unique_ptr<LocalDatabase> m_database;
    std::unique_ptr<SqliteFileOperationWorker> m_worker;
};

QTEST_GUILESS_MAIN(TestBlockStorage)
#include "tst_blockstorage.moc"
