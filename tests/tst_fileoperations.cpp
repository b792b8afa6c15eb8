#include "fileops/provider/fileoperationprovider.h"
#include "fileops/worker/postgresfileoperationworker.h"
#include "fileops/worker/sqlitefileoperationworker.h"
#include "tests/support/serverdatabase.h"
#include "tests/support/settingssandbox.h"

#include <numeric>

namespace {
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
        m_database = makeTestDatabase();
        m_provider = std::make_unique<OpenProvider>(m_database->constructor(), m_database->details());
        m_provider->start();
        const auto spyOn = [this](auto signal) {
            return std::make_unique<QSignalSpy>(m_provider.get(), signal);
        };
        m_removed = spyOn(&FileOperationProvider::filesRemoved);
        m_started = spyOn(&FileOperationProvider::startedFilesOperation);
        m_finished = spyOn(&FileOperationProvider::finishedFilesOperation);
        m_errors = spyOn(&FileOperationProvider::fellShort);
    }

    void cleanup()
    {
        m_provider.reset();
        m_database.reset();
    }

    void deletesWhatBelongsToTheFileOnly_data()
    {
        addColumns<QVector<qint64>, QString, QString>("ids", "blocks", "paths");
        addRow("chain with another's block inside", QVector<qint64>{1}, "2 4"_s, "1 4"_s);
        addRow("chain around another's, its size written in too few bits", QVector<qint64>{2}, "1 3 5"_s,
               "1 4"_s);
        addRow("external, its path id a block's id", QVector<qint64>{3}, "1 2 3 4 5"_s, "4"_s);
        addRow("empty, its id a block's id", QVector<qint64>{5}, "1 2 3 4 5"_s, "1 4"_s);
        addRow("hyperlink", QVector<qint64>{6}, "1 2 3 4 5"_s, "1 4"_s);
        addRow("all of them", QVector<qint64>{6, 5, 4, 3, 2, 1}, ""_s, ""_s);
    }

    void deletesWhatBelongsToTheFileOnly()
    {
        QFETCH(QVector<qint64>, ids);
        const int next[] = {3, 4, 5, 0, 0};
        for (int id = 1; id <= 5; ++id)
            QVERIFY(m_database->addBlock(id, next[id - 1], "bytes"));
        Sql::run("INSERT INTO file_paths VALUES (1, '/a', 'a'), (4, '/b', 'b')"_s);
        const int files[][3] = {{1, 15, 1}, {1, -10, 2}, {0, 10, 1}, {0, 10, 4}, {1, 0, 2}, {2, 0, 0}};
        for (int id = 1; id <= 6; ++id) {
            const int *file = files[id - 1];
            m_database->addFile(id, file[0], file[1], file[2], id + 10);
            Sql::run("INSERT INTO thumbnails VALUES (%1+10, 'a')"_s.arg(id));
            Sql::run("INSERT INTO file_tag VALUES (%1, 1), (%1, 2)"_s.arg(id));
        }
        m_provider->deleteFiles(ids);
        QTRY_COMPARE(m_finished->count(), 1);
        QCOMPARE(removed(0), ids);
        const auto idsIn = [](const char *column, const char *table) {
            return Sql::rows(
                       "SELECT %1 FROM %2 ORDER BY 1"_s.arg(QLatin1String(column), QLatin1String(table)))
                .join(QLatin1Char(' '));
        };
        QTEST(idsIn("storage_id", "storage"), "blocks");
        QTEST(idsIn("storage_id", "storage_info"), "blocks");
        QTEST(idsIn("path_id", "file_paths"), "paths");
        for (const char *table : {"files", "thumbnails"})
            QCOMPARE(Sql::count(QLatin1String(table)), 6 - ids.size());
        QCOMPARE(Sql::count("file_tag"_s), 12 - 2 * ids.size());
    }

    void deletesNoBlockOfAnother_data()
    {
        // The link of each block, the first block and the number of blocks of each file.
        addColumns<QVector<int>, QVector<int>, QVector<int>, QVector<qint64>, bool, QString>(
            "links", "firsts", "counts", "ids", "isLarge", "blocks");
        using Ids = QVector<qint64>;
        using Numbers = QVector<int>;
        for (const bool isLarge : {false, true}) {
            const auto row = [isLarge](const char *name, const Numbers &links, const Numbers &firsts,
                                       const Numbers &counts, const Ids &ids, const QString &blocks) {
                QTest::addRow("%s, %d", name, isLarge)
                    << links << firsts << counts << ids << isLarge << blocks;
            };
            row("ordinary", {0, 3, 0}, {1, 2}, {1, 2}, {2}, "1"_s);
            row("one chain, its end another's", {2, 3, 0}, {1, 2}, {3, 2}, {2}, "1 2 3"_s);
            row("one chain, its head another size's", {2, 0}, {1, 1}, {2, 1}, {2}, "1 2"_s);
            row("leads into another's", {2, 0, 2}, {1, 3}, {2, 2}, {2}, "1 2"_s);
            row("leads into another's that goes, too", {2, 0, 2}, {1, 3}, {2, 2}, {2, 1}, ""_s);
            row("leads back into itself", {2, 1, 0}, {1, 3}, {2, 1}, {1}, "3"_s);
            row("leads nowhere", {9, 0}, {1, 2}, {2, 1}, {1}, "2"_s);
            row("alike", {0}, {1, 1}, {1, 1}, {1}, "1"_s);
            row("alike, both", {0}, {1, 1}, {1, 1}, {1, 2}, ""_s);
            row("sound, its end another's", {2, 3, 0}, {1, 2}, {3, 2}, {1}, "2 3"_s);
            // More than ask for their own blocks alone.
            row("alike, behind many", Numbers(12, 0), {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 11}, Numbers(12, 1),
                {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}, "11 12"_s);
        }
    }

    void deletesNoBlockOfAnother()
    {
        QFETCH(QVector<int>, links);
        QFETCH(QVector<int>, firsts);
        QFETCH(QVector<int>, counts);
        QFETCH(QVector<qint64>, ids);
        QFETCH(bool, isLarge);
        for (int i = 0; i < links.size(); ++i)
            QVERIFY(m_database->addBlock(i + 1, links.at(i), "bytes"));
        for (int i = 0; i < firsts.size(); ++i)
            QVERIFY(m_database->addFile(i + 1, 1, 5 * counts.at(i), firsts.at(i)));
        if (isLarge)
            QVERIFY(m_database->addFile(99999, 2, 0, 0));
        m_provider->deleteFiles(ids);
        QTRY_COMPARE(m_finished->count(), 1);
        QCOMPARE(removed(0), ids);
        for (const char *table : {"storage", "storage_info"})
            QTEST(Sql::rows("SELECT storage_id FROM %1 ORDER BY 1"_s.arg(QLatin1String(table)))
                      .join(QLatin1Char(' ')),
                  "blocks");
    }

    void leavesAFileThatFails()
    {
        addManyFiles(3);
        m_database->addBlock(4, 0, "y");
        Sql::run("UPDATE storage_info SET continue_id=4 WHERE storage_id=2"_s);
        QVERIFY(m_database->refuse("DELETE ON storage_info"_s, "old.storage_id=4"_s));
        m_provider->deleteFiles({1, 2, 3});
        QTRY_COMPARE(m_removed->count(), 1);
        QCOMPARE(removed(0), QVector<qint64>({1, 3}));
        QCOMPARE(m_errors->count(), 1);
        QCOMPARE(Sql::rows("SELECT file_id FROM files"_s), QStringList{"2"_s});
        QCOMPARE(Sql::rows("SELECT storage_id FROM storage"_s), QStringList({"2"_s, "4"_s}));
    }

    void leavesOutWhatIsAnotherFileByNow()
    {
        QTemporaryFile file;
        QVERIFY(file.open() && file.write("bytes") == 5 && file.flush());
        Sql::run("INSERT INTO file_paths VALUES (1, '%1', 'a'), (2, '%1', 'a')"_s.arg(file.fileName()));
        for (int id = 1; id <= 4; ++id)
            QVERIFY(m_database->addFile(id, id <= 2 ? 0 : 2, 5, id));
        m_provider->transferFiles({1, 2}, {"C9"_s, "C2"_s});
        m_provider->deleteFiles({3, 4}, {"C9"_s, "C4"_s});
        QTRY_COMPARE(m_removed->count(), 1);
        QCOMPARE(removed(0), QVector<qint64>{4});
        QCOMPARE(Sql::rows("SELECT file_id, internal FROM files ORDER BY 1"),
                 QStringList({"1|0"_s, "2|1"_s, "3|2"_s}));
    }

    void removesNothingWhenTheTransactionIsLost()
    {
        if (!isLocal())
            QSKIP("what only a file meets");
        addManyFiles(4);
        Sql::run("CREATE TRIGGER break BEFORE DELETE ON storage WHEN old.storage_id=3 BEGIN SELECT "
                 "RAISE(ROLLBACK, 'all is lost'); END");
        m_provider->deleteFiles({1, 2, 3, 4});
        QTRY_COMPARE(m_finished->count(), 1);
        QCOMPARE(Sql::count("files"_s), 4);
        QVERIFY(isWithoutOrphans());
        m_errors->clear();
        {
            QSqlQuery reading; // keeps the commit out
            QVERIFY(reading.exec("SELECT * FROM files"_s) && reading.next());
            m_provider->deleteFiles({1, 2});
            QTRY_COMPARE(m_finished->count(), 2);
        }
        QCOMPARE(m_removed->count(), 0);
        QCOMPARE(m_errors->count(), 1);
        QCOMPARE(Sql::count("files"_s), 4);
        m_provider->deleteFiles({1, 2});
        QTRY_COMPARE(m_removed->count(), 1);
    }

    void tagsChangeTogetherOrNotAtAll_data()
    {
        addColumns<QString>("obstacle");
        for (const char *name : {"none", "cancel", "refused", "stopped"})
            addRow(name, QString::fromLatin1(name));
    }

    void tagsChangeTogetherOrNotAtAll()
    {
        QFETCH(QString, obstacle);
        constexpr int count = 12000; // several statements
        QVERIFY(m_database->addFiles(count) && m_database->addTags(3));
        QVERIFY(Sql::run("INSERT INTO file_tag VALUES (1,1),(2,3)"_s));
        if (obstacle == "refused"_s)
            QVERIFY(m_database->refuse("INSERT ON file_tag"_s, "new.file_id=11999"_s));
        connect(
            m_provider->worker, &FileOperationWorker::operationProgress, m_provider->worker,
            [&](FileOperationType, const QString &, int percent) {
                if (percent > 40 && obstacle == "cancel"_s)
                    m_provider->cancelOperations();
                if (percent > 40 && obstacle == "stopped"_s)
                    m_provider->worker->stop();
            },
            Qt::DirectConnection);
        QSignalSpy changes(m_provider.get(), &FileOperationProvider::tagsChanged);
        m_provider->changeTags(
            {{1, range(1, count) + range(77777, 1), {}}, {3, {}, {1, 2, 3}}, {88, {4}, {}}});
        QTRY_COMPARE(m_finished->count(), 1);
        QVERIFY(waitUntilIdle());
        const bool isDone = obstacle == "none"_s;
        QCOMPARE(Sql::count("file_tag"_s), isDone ? count : 2);
        QCOMPARE(changes.count(), isDone ? 1 : 0);
        QCOMPARE(m_errors->count(), obstacle == "cancel"_s || obstacle == "refused"_s ? 1 : 0);
        if (!m_errors->isEmpty())
            QCOMPARE(m_errors->first().first().value<OperationShortfall>().outcome,
                     "Files whose tags were changed: 0 of %L1."_s.arg(count + 1));
        if (!isDone)
            return;
        const auto done = changes.first().first().value<TagChanges>();
        QCOMPARE(done.size(), 2);
        QCOMPARE(done.at(0).linked, range(2, count - 1));
        QCOMPARE(done.at(1).unlinked, QVector<qint64>{2});
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
        m_provider->deleteFiles(range(1, 200));
        m_provider->deleteFiles(range(201, 100));
        m_provider->deleteFiles(range(301, 100));
        QTRY_COMPARE(m_finished->count(), 3);
        QCOMPARE(m_started->count(), 3);
        QCOMPARE(m_removed->count(), 3);
        const int done = removed(0).size();
        QVERIFY(done >= 90 && done <= 110);
        QVERIFY(removed(1).isEmpty() && removed(2).isEmpty());
        QCOMPARE(Sql::count("files"_s), 400 - done);
        QVERIFY(isWithoutOrphans());

        // Nor does a cancel while nothing runs hurt what comes next.
        QVERIFY(waitUntilIdle());
        m_provider->cancelOperations();
        m_provider->deleteFiles({400});
        QTRY_COMPARE(m_removed->count(), 4);
        QCOMPARE(removed(3), QVector<qint64>{400});
    }

    void destructionWaitsForTheRunningOperation()
    {
        const int count = isLocal() ? 20000 : 4000;
        addManyFiles(count);
        QSignalSpy progress(m_provider.get(), &FileOperationProvider::filesOperationProgress);
        m_provider->deleteFiles(range(1, count));
        m_provider->deleteFiles(range(1, count));
        QTRY_VERIFY(progress.count() > 2);
        m_provider.reset();
        const int left = Sql::count("files"_s);
        QVERIFY(left > 0 && left < count);
        QVERIFY(isWithoutOrphans());
        QVERIFY(!QSqlDatabase::contains(Constants::workerConnection));
        QVERIFY(Sql::run("DELETE FROM files"_s));
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
        m_provider->deleteFiles({1});
        QTRY_COMPARE(m_removed->count(), 2);
        QCOMPARE(Sql::count("files"_s), 0);
    }

    void tellsOfAMissingDatabase()
    {
        if (!isLocal())
            QSKIP("what only a file meets");
        addManyFiles(1);
        QVERIFY(QFile::remove(m_database->details().databaseName()));
        m_provider->deleteFiles({1});
        QTRY_COMPARE(m_errors->count(), 1);
        QVERIFY(waitUntilIdle());
        QVERIFY(!QFile::exists(m_database->details().databaseName()));
        QCOMPARE(m_started->count(), 0);
        QVERIFY(!QSqlDatabase::contains(Constants::workerConnection));
    }

private:
    bool isLocal() const { return m_database->details().type() == Constants::localDatabase; }

    static bool isWithoutOrphans()
    {
        const int blocks = Sql::count("storage"_s);
        return Sql::count("storage_info"_s) == blocks && Sql::count("files"_s) == blocks;
    }

    void addManyFiles(int count)
    {
        Sql::run("BEGIN"_s);
        for (int id = 1; id <= count; ++id) {
            m_database->addFile(id, 1, 1, id);
            m_database->addBlock(id, 0, "x");
        }
        Sql::run("COMMIT"_s);
    }

    bool waitUntilIdle() const
    {
        return QTest::qWaitFor([this] { return !m_provider->isBusy(); });
    }

    QVector<qint64> removed(int index) const
    {
        return m_removed->value(index).value(0).value<QVector<qint64>>();
    }

    SettingsSandbox m_settings;
    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<OpenProvider> m_provider;
    std::unique_ptr<QSignalSpy> m_removed, m_started, m_finished, m_errors;
};

QTEST_GUILESS_MAIN(TestFileOperations)
#include "tst_fileoperations.moc"
