#include "fileops/contents/blockstorage.h"
#include "fileops/contents/contentwriter.h"
#include "fileops/contents/externalpaths.h"
#include "fileops/files/idcodegenerator.h"
#include "tests/support/serverdatabase.h"
#include "tests/support/testworker.h"

namespace {
/** Draws codes from a list, the last again and again. */
class DrawingWorker : public FileOperationWorker
{
public:
    using FileOperationWorker::FileOperationWorker;

protected:
    QString drawIdCode() const override { return m_codes.size() > 1 ? m_codes.takeFirst() : m_codes.first(); }

private:
    mutable QStringList m_codes{"C1"_s, "C1"_s, "C2"_s};
};
} // namespace

/** What a worker reads from and counts in the database: blocks, ids, codes and paths. */
class TestBlockStorage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addBackEnds(); }

    void init()
    {
        m_database = makeTestDatabase();
        QVERIFY(m_database->openWorkerConnection());
        m_worker = makeWorker(*m_database);
    }

    void cleanup()
    {
        m_worker.reset();
        m_database.reset();
    }

    void readsOnlyItsOwnBlocks_data()
    {
        addColumns<int, int, int, QString>("internal", "size", "firstId", "content");
        const QString refused = "refused"_s;
        addRow("chain with another's blocks inside", 1, 17, 1, "first of one file"_s);
        addRow("chain around another's", 1, 17, 2, "second of another"_s);
        addRow("size written in too few bits", 1, -5, 1, "first of one file"_s);
        addRow("empty, its id another's", 1, 0, 1, ""_s);
        addRow("empty, its id nobody's", 1, 0, 99, ""_s);
        addRow("external file whose path id is a block's id", 0, 17, 1, refused);
        addRow("hyperlink", 2, 17, 1, refused);
        addRow("first block missing", 1, 17, 50, refused);
        addRow("later block missing", 1, 17, 7, refused);
        addRow("chain that returns into itself", 1, 2, 8, refused);
    }

    void readsOnlyItsOwnBlocks()
    {
        QFETCH(int, internal);
        QFETCH(int, size);
        QFETCH(int, firstId);
        // As the blocks of two clients lie on a server.
        m_database->addBlock(1, 3, "first ");
        m_database->addBlock(2, 4, "second ");
        m_database->addBlock(3, 6, "of one ");
        m_database->addBlock(4, 0, "of another");
        m_database->addBlock(6, 0, "file");
        m_database->addBlock(7, 50, "broken");
        m_database->addBlock(8, 8, "round");
        m_database->addFile(1, internal, size, firstId);
        QTEST(readBack(1), "content");
        QCOMPARE(readBack(7), "refused"_s);
    }

    void endsChainsOfFilesThatShrink_data()
    {
        addColumns<qint64>("size");
        addRow("to what was read", BLOCK_SIZE);
        addRow("within what follows", BLOCK_SIZE + 1);
    }

    void endsChainsOfFilesThatShrink()
    {
        QFETCH(qint64, size);
        const QByteArray bytes(int(BLOCK_SIZE) + 9, 'x');
        QFile source(m_folder.write("shrinking"_s, bytes));
        qint64 storageId = 0;
        StoredContents stored;
        QVERIFY(m_worker->nextStorageId(storageId));
        QCOMPARE(ContentWriter(*m_worker).store(source.fileName(), storageId, {}, stored,
                                                [&](qint64) { QVERIFY(source.resize(size)); }),
                 ContentWriter::Stored);
        QCOMPARE(stored.size, size);
        QVERIFY(m_database->addFile(1, 1, size, storageId));
        QVERIFY(readBack(1).toLatin1() == bytes.left(int(size)));
    }

    void writesBlocksOneByOne()
    {
        QVERIFY(Database::writeBlock("first ", 5, 3, true));
        QVERIFY(Database::writeBlock("second", 3, 9, false));
        QVERIFY(!Database::writeBlock("taken", 3, 9, false));
        m_database->addFile(1, 1, 12, 5);
        QCOMPARE(readBack(1), "first second"_s);
    }

    void endsOnCancel()
    {
        m_database->addBlock(1, 0, "bytes");
        m_database->addFile(1, 1, 5, 1);
        m_worker->cancelAll();
        QCOMPARE(readBack(1), "refused"_s);
        QCOMPARE(QFileInfo(target()).size(), qint64(0));
    }

    void countsIdsInsideATransaction()
    {
        if (!isLocal())
            QSKIP("a server counts by itself");
        const auto next = [this] {
            qint64 id = 0;
            return m_worker->nextStorageId(id) ? id : -1;
        };
        m_database->addBlock(7, 0, "bytes");
        QVERIFY(m_worker->beginTransaction(Constants::workerConnection));
        QCOMPARE(next(), qint64(8));
        QCOMPARE(next(), qint64(9));
        qint64 pathId = 0;
        QVERIFY(m_worker->nextPathId(pathId));
        QCOMPARE(pathId, qint64(1));
        QVERIFY(m_worker->rollbackTransaction(Constants::workerConnection));
        // Others write between two transactions: what was counted before says nothing then.
        m_database->addBlock(30, 0, "bytes");
        QCOMPARE(next(), qint64(31));
        QVERIFY(m_worker->beginTransaction(Constants::workerConnection));
        QCOMPARE(next(), qint64(31));
        QVERIFY(m_worker->commitTransaction(Constants::workerConnection));
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
        const QString folder =
            isLocal() ? QFileInfo(m_database->details().databaseName()).absolutePath() : QDir::currentPath();
        QCOMPARE(Database::relativePath(folder + "/sub/file"_s, locator), "sub/file"_s);
        QCOMPARE(Database::relativePath(QFileInfo(folder).path() + "/file"_s, locator), "../file"_s);
        QCOMPARE(Database::absolutePath("../file"_s, locator), folder + "/../file"_s);
    }

    void drawsTakenCodesAgain()
    {
        const std::unique_ptr<FileOperationWorker> worker = makeWorkerAs<DrawingWorker>(*m_database);
        m_database->addFile(1, 2, 0, 0);
        QString code;
        QVERIFY(worker->nextIdCode(code));
        QCOMPARE(code, "C2"_s);
        m_database->addFile(2, 2, 0, 0);
        QVERIFY(!worker->nextIdCode(code));
        worker->clearPrepared();
    }

    void drawsAllLettersAndDigitsAlike()
    {
        const QRegularExpression form("^[BCDFGHJKLMNPRSTVWXYZ]{4}[2-9]{3}$"_s);
        QVector<QHash<QChar, int>> seen(7);
        const int rounds = 20000;
        for (int i = 0; i < rounds; ++i) {
            const QString code = IdCodeGenerator().generate();
            QVERIFY2(form.match(code).hasMatch(), qPrintable(code));
            for (int place = 0; place < 7; ++place)
                ++seen[place][code.at(place)];
        }
        for (int place = 0; place < 7; ++place) {
            const int kinds = place < 4 ? 20 : 8;
            QCOMPARE(seen.at(place).size(), kinds);
            // Far beyond what chance does, near enough to notice a skewed draw.
            for (const int count : qAsConst(seen[place]))
                QVERIFY(qAbs(count * kinds - rounds) < rounds * 2 / 10);
        }
    }

private:
    bool isLocal() const { return m_database->details().type() == Constants::localDatabase; }
    QString target() const { return m_folder.filePath("target"_s); }

    QString readBack(qint64 fileId)
    {
        QFile file(target());
        if (!file.open(QIODevice::WriteOnly) ||
            BlockStorage(*m_worker).readInto(fileId, file) != BlockStorage::Written)
            return "refused"_s;
        return QString::fromLatin1(TestFolder::read(target()));
    }

    TestFolder m_folder;
    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<FileOperationWorker> m_worker;
};

QTEST_GUILESS_MAIN(TestBlockStorage)
#include "tst_blockstorage.moc"
