#include "fileops/fileoperationprovider.h"
#include "fileops/postgresfileoperationworker.h"
#include "fileops/sqlitefileoperationworker.h"
#include "tests/support/serverdatabase.h"
#include "tests/support/settingssandbox.h"

#include <numeric>

namespace {
const char *const noOrphans =
    "SELECT (SELECT count(*) FROM files WHERE internal=1 AND file_size>0) = (SELECT count(*) FROM "
    "storage) AND (SELECT count(*) FROM storage) = (SELECT count(*) FROM storage_info)";

/** Waits less long for a lock. */
class ImpatientWorker : public SqliteFileOperationWorker
{
public:
    using SqliteFileOperationWorker::SqliteFileOperationWorker;

protected:
    QString connectOptions() const override { return "QSQLITE_BUSY_TIMEOUT=200"_s; }
};

/** Lets a test reach the worker and queue any record. */
class OpenProvider : public FileOperationProvider
{
public:
    using FileOperationProvider::enqueue;
    using FileOperationProvider::FileOperationProvider;

    FileOperationWorker *worker = nullptr;

protected:
    FileOperationWorker *createWorker(const QString &connectionName) override
    {
        if (details().type() == Constants::localDatabase)
            worker = new ImpatientWorker(connectionName, details(), constructor());
        else
            worker = new PostgresFileOperationWorker(connectionName, details(), constructor());
        return worker;
    }
};

QVector<qint64> idsOf(const QList<QVariant> &arguments)
{
    return arguments.first().value<QVector<qint64>>();
}

QVector<qint64> range(qint64 first, int count)
{
    QVector<qint64> ids(count);
    std::iota(ids.begin(), ids.end(), first);
    return ids;
}
} // namespace

class TestFileOperations : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addBackEnds(); }

    void init()
    {
        m_settings = std::make_unique<SettingsSandbox>();
        m_database = makeTestDatabase();
        m_provider = std::make_unique<OpenProvider>(m_database->constructor(), m_database->details());
        m_provider->start();
    }

    void cleanup()
    {
        m_provider.reset();
        m_database.reset();
    }

    void deletesWhatBelongsToTheFileOnly_data()
    {
        addColumns<QVector<qint64>, QStringList, QStringList>("ids", "blocks", "paths");
        const QString b1 = "1"_s;
        const QString b2 = "2"_s;
        const QString b3 = "3"_s;
        const QString b4 = "4"_s;
        const QString b5 = "5"_s;
        const QStringList allPaths = {b1, b4};
        addRow("chain with another's block inside", QVector<qint64>{1}, QStringList{b2, b4}, allPaths);
        addRow("chain around another's", QVector<qint64>{2}, QStringList{b1, b3, b5}, allPaths);
        addRow("external file whose path id is a block's id", QVector<qint64>{3},
               QStringList{b1, b2, b3, b4, b5}, QStringList{b4});
        addRow("empty file whose reserved id is a block's id", QVector<qint64>{5},
               QStringList{b1, b2, b3, b4, b5}, allPaths);
        addRow("hyperlink", QVector<qint64>{6}, QStringList{b1, b2, b3, b4, b5}, allPaths);
        addRow("all of them", QVector<qint64>{6, 5, 4, 3, 2, 1}, QStringList(), QStringList());
    }

    void deletesWhatBelongsToTheFileOnly()
    {
        QFETCH(QVector<qint64>, ids);
        for (const auto &link :
             {qMakePair(1, 3), qMakePair(2, 4), qMakePair(3, 5), qMakePair(4, 0), qMakePair(5, 0)})
            QVERIFY(m_database->addBlock(link.first, link.second, "bytes"));
        m_database->run("INSERT INTO file_paths VALUES (1, '/a', 'a'), (4, '/b', 'b')"_s);
        m_database->addFile(1, 1, 15, 1);
        m_database->addFile(2, 1, 10, 2);
        m_database->addFile(3, 0, 10, 1);
        m_database->addFile(4, 0, 10, 4);
        m_database->addFile(5, 1, 0, 2);
        m_database->addFile(6, 2, 0, 0);
        for (int id = 1; id <= 6; ++id) {
            m_database->run("UPDATE files SET thumbnail_id=%1+10 WHERE file_id=%1"_s.arg(id));
            m_database->run("INSERT INTO thumbnails VALUES (%1+10, 'a')"_s.arg(id));
            m_database->run("INSERT INTO file_tag VALUES (%1, 1), (%1, 2)"_s.arg(id));
        }
        QSignalSpy removed(m_provider.get(), &FileOperationProvider::filesRemoved);
        QSignalSpy started(m_provider.get(), &FileOperationProvider::startedFilesOperation);
        QSignalSpy finished(m_provider.get(), &FileOperationProvider::finishedFilesOperation);
        m_provider->deleteFiles(ids);
        QTRY_COMPARE(finished.count(), 1);
        QCOMPARE(removed.count(), 1);
        QCOMPARE(idsOf(removed.first()), ids);
        QCOMPARE(started.first().first().toString(), "Deleting files..."_s);
        QTEST(m_database->rows("SELECT storage_id FROM storage ORDER BY 1"_s), "blocks");
        QTEST(m_database->rows("SELECT storage_id FROM storage_info ORDER BY 1"_s), "blocks");
        QTEST(m_database->rows("SELECT path_id FROM file_paths ORDER BY 1"_s), "paths");
        const int left = 6 - ids.size();
        QCOMPARE(m_database->rows(
                     "SELECT (SELECT count(*) FROM files), (SELECT count(*) FROM thumbnails), (SELECT "
                     "count(*) FROM file_tag)"_s),
                 QStringList("%1|%1|%2"_s.arg(left).arg(2 * left)));
    }

    void leavesAFileThatFails()
    {
        addManyFiles(3);
        m_database->addBlock(4, 0, "y");
        m_database->run("UPDATE storage_info SET continue_id=4 WHERE storage_id=2"_s);
        QVERIFY(m_database->refuse("DELETE ON storage_info"_s, "old.storage_id=4"_s));
        QSignalSpy removed(m_provider.get(), &FileOperationProvider::filesRemoved);
        QSignalSpy errors(m_provider.get(), &FileOperationProvider::errorOccured);
        m_provider->deleteFiles({1, 2, 3});
        QTRY_COMPARE(removed.count(), 1);
        QCOMPARE(idsOf(removed.first()), QVector<qint64>({1, 3}));
        QCOMPARE(errors.count(), 1);
        QCOMPARE(m_database->rows("SELECT file_id FROM files"_s), QStringList{"2"_s});
        QCOMPARE(m_database->rows("SELECT storage_id FROM storage"_s), QStringList({"2"_s, "4"_s}));
    }

    void removesNothingWhenTheWayBackIsLost()
    {
        if (!isLocal())
            QSKIP("what only a file meets");
        addManyFiles(4);
        m_database->run("CREATE TRIGGER break BEFORE DELETE ON storage WHEN old.storage_id=3 BEGIN "
                        "SELECT RAISE(ROLLBACK, 'all is lost'); END"_s);
        QSignalSpy removed(m_provider.get(), &FileOperationProvider::filesRemoved);
        QSignalSpy finished(m_provider.get(), &FileOperationProvider::finishedFilesOperation);
        m_provider->deleteFiles({1, 2, 3, 4});
        QTRY_COMPARE(finished.count(), 1);
        QCOMPARE(removed.count(), 0);
        QCOMPARE(m_database->count("files"_s), 4);
        QCOMPARE(m_database->count("storage"_s), 4);
    }

    void removesNothingWhenTheCommitFails()
    {
        if (!isLocal())
            QSKIP("what only a file meets");
        addManyFiles(3);
        QSignalSpy removed(m_provider.get(), &FileOperationProvider::filesRemoved);
        QSignalSpy finished(m_provider.get(), &FileOperationProvider::finishedFilesOperation);
        QSignalSpy errors(m_provider.get(), &FileOperationProvider::errorOccured);
        {
            QSqlQuery reading;
            reading.setForwardOnly(true);
            QVERIFY(reading.exec("SELECT * FROM files"_s) && reading.next());
            m_provider->deleteFiles({1, 2});
            QTRY_COMPARE(finished.count(), 1);
        }
        QCOMPARE(removed.count(), 0);
        QCOMPARE(errors.count(), 1);
        QCOMPARE(m_database->count("files"_s), 3);
        m_provider->deleteFiles({1, 2});
        QTRY_COMPARE(removed.count(), 1);
    }

    void cancelEndsTheWholeQueue()
    {
        addManyFiles(400);
        // In the worker's thread, so that the cancel comes while the first operation runs.
        connect(
            m_provider->worker, &FileOperationWorker::operationProgress, m_provider->worker,
            [this](FileOperationType, const QString &, int percent) {
                if (percent == 50)
                    m_provider->cancelOperations();
            },
            Qt::DirectConnection);
        QSignalSpy started(m_provider.get(), &FileOperationProvider::startedFilesOperation);
        QSignalSpy finished(m_provider.get(), &FileOperationProvider::finishedFilesOperation);
        QSignalSpy removed(m_provider.get(), &FileOperationProvider::filesRemoved);
        m_provider->deleteFiles(range(1, 200));
        m_provider->deleteFiles(range(201, 100));
        m_provider->deleteFiles(range(301, 100));
        QTRY_COMPARE(finished.count(), 3);
        QCOMPARE(started.count(), 3);
        QCOMPARE(removed.count(), 3);
        const int done = idsOf(removed.at(0)).size();
        QVERIFY(done >= 90 && done <= 110);
        QVERIFY(idsOf(removed.at(1)).isEmpty() && idsOf(removed.at(2)).isEmpty());
        QCOMPARE(m_database->count("files"_s), 400 - done);
        QVERIFY(isWithoutOrphans());

        // Nor does a cancel while nothing runs hurt what comes next.
        QVERIFY(waitUntilIdle());
        m_provider->cancelOperations();
        m_provider->deleteFiles({400});
        QTRY_COMPARE(removed.count(), 4);
        QCOMPARE(idsOf(removed.at(3)), QVector<qint64>{400});
    }

    void destructionWaitsForTheRunningOperation()
    {
        const int count = isLocal() ? 20000 : 1000;
        addManyFiles(count);
        QSignalSpy progress(m_provider.get(), &FileOperationProvider::filesOperationProgress);
        m_provider->deleteFiles(range(1, count));
        m_provider->deleteFiles(range(1, count));
        QTRY_VERIFY(progress.count() > 2);
        m_provider.reset();
        const int left = m_database->count("files"_s);
        QVERIFY(left > 0 && left < count);
        QVERIFY(isWithoutOrphans());
        QVERIFY(!QSqlDatabase::contains(Constants::workerConnection));
        QVERIFY(m_database->run("DELETE FROM files"_s));
    }

    void runsARecordThatComesAtTheLastMoment()
    {
        addManyFiles(2);
        FileOperation late;
        late.type = FileOperationType::DeleteFilesOperation;
        late.fileIds = {2};
        bool isQueued = false;
        FileOperationWorker *worker = m_provider->worker;
        // Behind the worker's last look into the queue, and without a start of its own.
        connect(
            worker, &FileOperationWorker::finished, worker,
            [&isQueued, &late, worker] {
                if (!isQueued)
                    worker->enqueue(late);
                isQueued = true;
            },
            Qt::DirectConnection);
        QSignalSpy removed(m_provider.get(), &FileOperationProvider::filesRemoved);
        m_provider->deleteFiles({1});
        QTRY_COMPARE(removed.count(), 2);
        QCOMPARE(m_database->count("files"_s), 0);
    }

    void tellsOfAMissingDatabase()
    {
        if (!isLocal())
            QSKIP("what only a file meets");
        addManyFiles(1);
        QVERIFY(QFile::remove(m_database->details().databaseName()));
        QSignalSpy errors(m_provider.get(), &FileOperationProvider::errorOccured);
        QSignalSpy started(m_provider.get(), &FileOperationProvider::startedFilesOperation);
        m_provider->deleteFiles({1});
        QTRY_COMPARE(errors.count(), 1);
        QVERIFY(waitUntilIdle());
        QVERIFY(!QFile::exists(m_database->details().databaseName()));
        QCOMPARE(started.count(), 0);
        QVERIFY(!QSqlDatabase::contains(Constants::workerConnection));
    }

private:
    bool isLocal() const { return m_database->details().type() == Constants::localDatabase; }

    bool isWithoutOrphans() const { return QVariant(m_database->value(noOrphans)).toBool(); }

    void addManyFiles(int count)
    {
        m_database->run("BEGIN"_s);
        for (int id = 1; id <= count; ++id) {
            m_database->addFile(id, 1, 1, id);
            m_database->addBlock(id, 0, "x");
        }
        m_database->run("COMMIT"_s);
    }

    bool waitUntilIdle() const
    {
        return QTest::qWaitFor([this] { return !m_provider->isBusy(); });
    }

    std::unique_ptr<SettingsSandbox> m_settings;
    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<OpenProvider> m_provider;
};

QTEST_GUILESS_MAIN(TestFileOperations)
#include "tst_fileoperations.moc"
