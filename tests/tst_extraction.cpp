#include "fileops/blockstorage.h"
#include "fileops/contentwriter.h"
#include "fileops/extractfilesoperation.h"
#include "fileops/fileextractor.h"
#include "tests/support/serverdatabase.h"
#include "tests/support/testworker.h"

/** What comes out of a database again, in the worker's own thread. */
class TestExtraction : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addBackEnds(); }

    void init()
    {
        m_folder = std::make_unique<TestFolder>();
        qputenv("TMPDIR", m_folder->folder().toLocal8Bit());
        m_database = makeTestDatabase();
        QVERIFY(m_database->openWorkerConnection());
        m_worker = makeWorker(*m_database);
    }

    void cleanup()
    {
        m_worker->clearPrepared();
        m_worker.reset();
        m_database.reset();
        m_folder.reset();
        qunsetenv("TMPDIR");
    }

    void comesOutAsItWentIn_data()
    {
        QTest::addColumn<qint64>("size");
        addRow("empty", qint64(0));
        addRow("a byte", qint64(1));
        addRow("all but a block", BLOCK_SIZE - 1);
        addRow("a block", BLOCK_SIZE);
        addRow("more than a block", BLOCK_SIZE + 1);
        addRow("some blocks", 2 * BLOCK_SIZE + 12345);
    }

    void comesOutAsItWentIn()
    {
        QFETCH(qint64, size);
        QVector<quint32> words(int(size / 4 + 1));
        QRandomGenerator(1).fillRange(words.data(), words.size());
        const QByteArray bytes(reinterpret_cast<const char *>(words.constData()), int(size));
        addInternal(1, bytes);
        addExternal(2, m_folder->write("in/2"_s, bytes));
        const QByteArray sum = sumOf(m_folder->filePath("in/1"_s));
        for (const qint64 id : {1, 2}) {
            const QString target = m_folder->filePath("out%1"_s.arg(id));
            QVERIFY(FileExtractor(m_worker.get()).extractToFile(id, target));
            QCOMPARE(sumOf(target), sum);
        }
        const QString copy = FileExtractor(m_worker.get()).extractToTemporary(1);
        QCOMPARE(sumOf(copy), sum);
        QCOMPARE(QFileInfo(copy).permissions() & ~QFileDevice::Permissions(0x0F00),
                 QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    }

    void keepsWhatMustNotGo_data()
    {
        addColumns<QString, qint64, bool, QString>("obstacle", "id", "isReplaced", "after");
        addRow("replaced", ""_s, qint64(1), true, "new new"_s);
        addRow("replaced by an external file", ""_s, qint64(2), true, "new new"_s);
        addRow("nobody was asked", ""_s, qint64(1), false, "old"_s);
        addRow("nor about an external file", ""_s, qint64(2), false, "old"_s);
        addRow("broken chain", "UPDATE storage_info SET continue_id=99"_s, qint64(1), true, "old"_s);
        addRow("chain too short", "UPDATE files SET file_size=100"_s, qint64(1), true, "old"_s);
        addRow("source gone", "UPDATE file_paths SET path='/nowhere'"_s, qint64(2), true, "old"_s);
        addRow("unknown file", ""_s, qint64(9), true, "old"_s);
        addRow("cancelled", "cancel"_s, qint64(1), true, "old"_s);
    }

    void keepsWhatMustNotGo()
    {
        QFETCH(QString, obstacle);
        QFETCH(qint64, id);
        QFETCH(bool, isReplaced);
        QFETCH(QString, after);
        addInternal(1, "new new");
        addExternal(2, m_folder->write("in/2"_s, "new new"));
        const QString target = m_folder->write("out/a"_s, "old");
        QFile::setPermissions(target, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        const bool isCancelled = obstacle == "cancel"_s;
        if (isCancelled)
            connect(m_worker.get(), &FileOperationWorker::operationProgress, m_worker.get(),
                    &FileOperationWorker::cancelAll);
        else if (!obstacle.isEmpty())
            QVERIFY(Sql::run(obstacle));
        // What stands behind a failure or a cancel is not begun.
        const QString last = m_folder->filePath("out/b"_s);
        const QString first = m_folder->filePath("first"_s);
        addInternal(3, "first");
        const QStringList errors = run({3, id, 3}, {first, target, last}, isReplaced ? target : QString());
        const bool isDone = after == "new new"_s;
        QCOMPARE(QString::fromUtf8(TestFolder::read(target)), after);
        QCOMPARE(errors, isDone || isCancelled ? QStringList() : QStringList{"Error extracting file"_s});
        QCOMPARE(QFile::exists(last), isDone);
        QCOMPARE(TestFolder::read(first), QByteArray("first"));
        const QDir::Filters all = QDir::Files | QDir::Hidden;
        QCOMPARE(QDir(m_folder->filePath("out"_s)).entryList(all).size(), isDone ? 2 : 1);
        if (isDone && id == 1)
            QVERIFY(!(QFileInfo(target).permissions() & QFileDevice::ReadOther));
    }

    void leavesAPartOfWhatIsCancelled()
    {
        addInternal(1, QByteArray(int(BLOCK_SIZE) + 5, 'x'));
        FileExtractor extractor(m_worker.get());
        const QString target = m_folder->filePath("out"_s);
        connect(&extractor, &FileExtractor::progress, m_worker.get(), [&] {
            QVERIFY(!QFile::exists(target)); // or others take it for whole
            m_worker->cancelAll();
        });
        QVERIFY(!extractor.extractToFile(1, target));
        QCOMPARE(QFileInfo(target).size(), BLOCK_SIZE);
        QCOMPARE(extractor.extractToTemporary(1), QString());
        QVERIFY(!QFile::exists(m_folder->filePath("file1"_s)));
    }

    void staysInItsFolder_data()
    {
        addColumns<QString, QString>("name", "copy");
        addRow("free", "a.tar.gz"_s, "a.tar.gz"_s);
        addRow("taken", "in"_s, "t_in"_s);
        addRow("taken, however often", "a"_s, "1__"_s + "t_"_s.repeated(29) + "a"_s);
        addRow("dead link", "dead"_s, "t_dead"_s);
        addRow("with a folder", "/etc/../../evil"_s, "evil"_s);
        addRow("folder above", ".."_s, "_"_s);
        addRow("nothing but a folder", "a/"_s, "_"_s);
        addRow("too long", QString(300, QLatin1Char('x')) + ".txt"_s,
               QString(56, QLatin1Char('x')) + ".txt"_s);
    }

    void staysInItsFolder()
    {
        QFETCH(QString, name);
        addInternal(1, "bytes");
        for (QString taken = "a"_s; taken.size() <= 255; taken.prepend("t_"_s))
            m_folder->write(taken, "1");
        QFile::link("/nowhere at all"_s, m_folder->filePath("dead"_s));
        QSqlQuery query;
        query.prepare("UPDATE files SET file_name=?"_s);
        query.addBindValue(name);
        QVERIFY(query.exec());
        const QString copy = FileExtractor(m_worker.get()).extractToTemporary(1);
        QCOMPARE(QFileInfo(copy).path(), m_folder->folder());
        QTEST(QFileInfo(copy).fileName(), "copy");
        QCOMPARE(TestFolder::read(copy), QByteArray("bytes"));
    }

    void leavesTheDatabaseItsFiles()
    {
        if (!isLocal())
            QSKIP("what only a file meets");
        addInternal(1, "no journal");
        const QString path = m_database->details().databaseName();
        const QByteArray before = TestFolder::read(path);
        for (const QString &target : {path, path + "-journal"_s, path + "-wal"_s})
            QCOMPARE(run({1}, {target}, target).size(), 1);
        QVERIFY(TestFolder::read(path) == before);
        QVERIFY(!QFile::exists(path + "-journal"_s) && !QFile::exists(path + "-wal"_s));
    }

private:
    bool isLocal() const { return m_database->details().type() == Constants::localDatabase; }

    void addInternal(qint64 id, const QByteArray &bytes)
    {
        const QString path = m_folder->write("in/%1"_s.arg(id), bytes);
        StoredContents stored;
        qint64 storageId = 0;
        QVERIFY(m_worker->nextStorageId(storageId));
        QCOMPARE(ContentWriter(*m_worker).store(path, storageId, {}, stored), ContentWriter::Stored);
        QVERIFY(m_database->addFile(id, 1, stored.size, storageId));
    }
    void addExternal(qint64 id, const QString &path)
    {
        Sql::run("INSERT INTO file_paths VALUES (%1, '%2', '')"_s.arg(id).arg(path));
        QVERIFY(m_database->addFile(id, 0, QFileInfo(path).size(), id));
    }

    static QByteArray sumOf(const QString &path)
    {
        QFile file(path);
        QCryptographicHash hash(QCryptographicHash::Sha256);
        return file.open(QIODevice::ReadOnly) && hash.addData(&file) ? hash.result() : QByteArray();
    }

    /** The titles of the errors that it ends with. */
    QStringList run(const QVector<qint64> &ids, const QStringList &targets, const QString &replaced)
    {
        FileOperation request;
        request.type = FileOperationType::ExtractFilesOperation;
        request.fileIds = ids;
        request.paths = targets;
        request.replacedPaths.insert(replaced);
        QSignalSpy errors(m_worker.get(), &FileOperationWorker::error);
        ExtractFilesOperation(*m_worker, request).run();
        QStringList titles;
        for (const QVariantList &error : errors)
            titles.append(error.at(1).toString());
        return titles;
    }

    std::unique_ptr<TestFolder> m_folder;
    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<FileOperationWorker> m_worker;
};

QTEST_GUILESS_MAIN(TestExtraction)
#include "tst_extraction.moc"
