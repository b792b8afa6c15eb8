#include "fileops/contents/blockstorage.h"
#include "fileops/contents/contentwriter.h"
#include "fileops/contents/fileextractor.h"
#include "fileops/files/filemoves.h"
#include "fileops/files/partfile.h"
#include "fileops/files/temporarycopies.h"
#include "fileops/operations/extractfilesoperation.h"
#include "tests/support/serverdatabase.h"
#include "tests/support/testworker.h"

#include <sys/wait.h>
#include <unistd.h>

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
            QCOMPARE(FileExtractor(m_worker.get()).extractToFile(id, target), FileExtractor::Extracted);
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
        addRow("nobody may write there", "target"_s, qint64(1), true, "old"_s);
        addRow("blocks that cannot be asked for", "ALTER TABLE storage RENAME TO gone"_s, qint64(1), true,
               "old"_s);
        addRow("replaces a link, not what it leads to", "link"_s, qint64(1), true, "new new"_s);
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
        const bool isShut = obstacle == "target"_s;
        // What one file meets alone hinders no other one.
        const bool isBroken = obstacle.startsWith("ALTER"_s);
        if (isBroken && !isLocal())
            QSKIP("only its owner may break a server's table");
        const bool isEnd = isCancelled || isShut || isBroken;
        const QString last = m_folder->filePath("out/b"_s);
        const QString first = m_folder->filePath("first"_s);
        addInternal(3, "first");
        if (isCancelled)
            connect(m_worker.get(), &FileOperationWorker::operationProgress, m_worker.get(),
                    &FileOperationWorker::cancelAll);
        else if (isShut)
            QVERIFY(QFile::rename(m_folder->filePath("out"_s), m_folder->filePath("away"_s)));
        else if (obstacle == "link"_s)
            QVERIFY(QFile::remove(target) && QFile::link(m_folder->filePath("in"_s), target));
        else if (!obstacle.isEmpty())
            QVERIFY(Sql::run(obstacle));
        const QStringList errors = run({3, id, 3}, {first, target, last}, isReplaced ? target : QString());
        // What the database says is told with the rest of the operation.
        QCOMPARE(m_worker->report().hasErrors(), isBroken);
        if (isShut)
            QVERIFY(QFile::rename(m_folder->filePath("away"_s), m_folder->filePath("out"_s)));
        QCOMPARE(m_texts.contains(qt_error_string(ENOENT)), isShut);
        const bool isDone = after == "new new"_s;
        QCOMPARE(QString::fromUtf8(TestFolder::read(target)), after);
        QCOMPARE(errors,
                 isDone || isCancelled || isBroken ? QStringList() : QStringList{"Error extracting file"_s});
        QCOMPARE(QFile::exists(last), !isEnd);
        QCOMPARE(TestFolder::read(first), QByteArray(isBroken ? "" : "first"));
        const QDir::Filters all = QDir::Files | QDir::Hidden;
        QCOMPARE(QDir(m_folder->filePath("out"_s)).entryList(all).size(), isEnd ? 1 : 2);
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
        QCOMPARE(extractor.extractToFile(1, target), FileExtractor::Failed);
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
        addRow("like a resource", ":a"_s, ":a"_s);
        addRow("like an address", "qrc:b"_s, "qrc:b"_s);
        addRow("like a drive", "C:a\\b"_s, "C:a\\b"_s);
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
        QFile::link(m_folder->filePath("nowhere"_s), m_folder->filePath("dead"_s));
        QSqlQuery query;
        query.prepare("UPDATE files SET file_name=?"_s);
        query.addBindValue(name);
        QVERIFY(query.exec());
        const QString copy = FileExtractor(m_worker.get()).extractToTemporary(1);
        QCOMPARE(QFileInfo(copy).path(), m_folder->folder());
        QTEST(QFileInfo(copy).fileName(), "copy");
        QCOMPARE(TestFolder::read(copy), QByteArray("bytes"));
    }

    void whatComesMeanwhileStays_data()
    {
        addColumns<QString, bool>("comes", "isInternal");
        for (const QString &comes : {"file"_s, "link"_s, "dead link"_s, "folder"_s}) {
            QTest::newRow(qPrintable(comes)) << comes << true;
            QTest::newRow(qPrintable(comes + ", external"_s)) << comes << false;
        }
    }

    void whatComesMeanwhileStays()
    {
        QFETCH(QString, comes);
        QFETCH(bool, isInternal);
        isInternal ? addInternal(1, "bytes") : addExternal(1, m_folder->write("in/1"_s, "bytes"));
        const QString target = m_folder->filePath("out"_s);
        const QString victim = m_folder->write("victim"_s, "victim");
        FileExtractor extractor(m_worker.get());
        connect(&extractor, &FileExtractor::progress, m_worker.get(), [&] {
            if (comes == "file"_s)
                m_folder->write("out"_s, "came");
            else if (comes == "folder"_s)
                QDir().mkdir(target);
            else
                QFile::link(comes == "link"_s ? victim : m_folder->filePath("nowhere"_s), target);
        });
        QCOMPARE(extractor.extractToFile(1, target), FileExtractor::LeftOut);
        const QFileInfo there(target);
        QCOMPARE(there.isSymLink(), comes.endsWith("link"_s));
        QCOMPARE(there.isDir(), comes == "folder"_s);
        QCOMPARE(TestFolder::read(victim), QByteArray("victim"));
        QCOMPARE(hidden(), QStringList());
    }

    void leftoversGoAndOthersStay()
    {
        addInternal(1, "bytes");
        const QString out = m_folder->filePath("out"_s);
        // Those of ended processes have numbers far apart.
        for (const char *name : {".vorna-1.part", ".vorna-86.part", ".vorna-x.part", ".vorna-2.part.txt"})
            m_folder->write("out/"_s + QLatin1String(name), "left");
        const QString needed = m_folder->write("needed"_s, "needed");
        QCOMPARE(::link(qPrintable(needed), qPrintable(out + "/.vorna-7.part"_s)), 0);
        QVERIFY(QFile::link(needed, out + "/.vorna-8.part"_s));
        PartFile running(out + "/running"_s);
        QVERIFY(running.open(false));
        const QString runningName = QFileInfo(running.path()).fileName();
        QCOMPARE(runningName, ".vorna-2.part"_s);
        QCOMPARE(FileExtractor(m_worker.get()).extractToFile(1, out + "/a"_s), FileExtractor::Extracted);
        const QStringList stay{".vorna-2.part"_s, ".vorna-2.part.txt"_s, ".vorna-7.part"_s,
                               ".vorna-8.part"_s, ".vorna-x.part"_s,     "a"_s};
        const QDir::Filters all = QDir::Files | QDir::Hidden;
        QCOMPARE(QDir(out).entryList(all, QDir::Name), stay);
        QCOMPARE(running.giveName(), PartFile::Named);
    }

    void bytesDecideWhatIsThere_data()
    {
        addColumns<QString, bool, QString>("there", "isInternal", "after");
        for (const bool isInternal : {true, false}) {
            const char *kind = isInternal ? "internal" : "external";
            const QString same = "a=bytes a_1=third a_2=third"_s;
            QTest::addRow("%s, free", kind) << QString() << isInternal << same;
            QTest::addRow("%s, the same", kind) << "bytes"_s << isInternal << same;
            QTest::addRow("%s, alike", kind)
                << "other"_s << isInternal << "a=other a_1=third a_2=bytes a_3=bytes a_4=third"_s;
        }
    }

    // Files that have name, size and checksum in common, as it seems; the last one is given the next name.
    void bytesDecideWhatIsThere()
    {
        QFETCH(QString, there);
        QFETCH(bool, isInternal);
        for (const qint64 id : {1, 2, 3}) {
            const QByteArray bytes = id == 3 ? "third" : "bytes";
            isInternal ? addInternal(id, bytes) : addExternal(id, m_folder->write("in/%1"_s.arg(id), bytes));
        }
        const QString out = m_folder->filePath("out"_s);
        QVERIFY(QDir().mkdir(out));
        if (!there.isEmpty())
            m_folder->write("out/a"_s, there.toUtf8());
        FileOperation request;
        request.fileIds = {1, 2, 3, 3};
        request.paths = QStringList{out + "/a"_s, out + "/a"_s, out + "/a"_s, out + "/a_1"_s};
        request.comparedPaths = {out + "/a"_s};
        QCOMPARE(run(request), QStringList());
        QStringList found;
        for (const QString &name : QDir(out).entryList(QDir::Files | QDir::Hidden, QDir::Name))
            found << name + QLatin1Char('=') +
                         QString::fromUtf8(TestFolder::read(out + QLatin1Char('/') + name));
        QTEST(found.join(QLatin1Char(' ')), "after");
    }

    void temporaryCopiesGoAtTheEnd()
    {
        addInternal(1, "bytes");
        const QString folder = m_folder->filePath("vorna-drag"_s);
        QString kept;
        {
            const TemporaryCopies copies;
            QVERIFY(QDir().mkdir(folder));
            TemporaryCopies::noteFolder(folder);
            TemporaryCopies::noteWritten(m_folder->write("vorna-drag/a"_s, "a"));
            kept = FileExtractor(m_worker.get()).extractToTemporary(1);
            m_folder->write(QFileInfo(kept).fileName(), "bytes, and what somebody wrote");
            QVERIFY(!FileExtractor(m_worker.get()).extractToTemporary(1).isEmpty());
            TemporaryCopies::removeLeftovers(); // this run is none that broke off
            QVERIFY(QFile::exists(m_folder->filePath("t_file1"_s)) && QFile::exists(folder));
        }
        QVERIFY(QFile::exists(kept) && !QFile::exists(m_folder->filePath("t_file1"_s)));
        QVERIFY(!QFile::exists(folder));
        QCOMPARE(hidden(), QStringList());
    }

    void aBrokenRunLeavesNoCopies()
    {
        const QString whole = m_folder->write("whole \n"_s, "whole");
        const QString changed = m_folder->write("changed"_s, "old");
        QFile begun(m_folder->write("begun"_s, "beg"));
        const pid_t child = ::fork();
        if (child == 0) {
            const TemporaryCopies copies;
            TemporaryCopies::noteWritten(whole);
            TemporaryCopies::noteWritten(changed);
            TemporaryCopies::noteBegun(begun.fileName());
            ::_exit(0); // as a crash would, without any destructor
        }
        QVERIFY(child > 0 && ::waitpid(child, nullptr, 0) == child);
        QCOMPARE(hidden(), QStringList{".vorna-1.copies"_s});
        m_folder->write("changed"_s, "new, and longer");
        m_folder->write("begun"_s, "begun, and on");
        TemporaryCopies::removeLeftovers();
        QVERIFY(!QFile::exists(whole) && QFile::exists(changed) && !begun.exists());
        QCOMPARE(hidden(), QStringList());
    }

    // Disks differ in what they know, so each way is tried by itself.
    void movesTakeNobodysPlace_data()
    {
        addColumns<int, QString>("way", "obstacle");
        int way = 0;
        for (const char *name : {"in one step", "by a second name", "by a place held"}) {
            for (const QString &obstacle : {""_s, "file"_s, "link"_s, "folder"_s})
                QTest::addRow("%s, %s", name, qPrintable(obstacle)) << way << obstacle;
            ++way;
        }
    }

    void movesTakeNobodysPlace()
    {
        QFETCH(int, way);
        QFETCH(QString, obstacle);
        using Move = bool (*)(const QString &, const QString &);
        const Move moves[] = {FileMoves::moveUnlessTaken, FileMoves::linkUnlessTaken,
                              FileMoves::reserveUnlessTaken};
        const QString from = m_folder->write("from"_s, "from");
        const QString to = m_folder->filePath("to"_s);
        if (obstacle == "file"_s)
            m_folder->write("to"_s, "there");
        else if (obstacle == "link"_s)
            QVERIFY(QFile::link(m_folder->filePath("nowhere"_s), to));
        else if (obstacle == "folder"_s)
            QVERIFY(QDir().mkdir(to));
        const bool isFree = obstacle.isEmpty();
        QCOMPARE(moves[way](from, to), isFree);
        QCOMPARE(TestFolder::read(isFree ? to : from), QByteArray("from"));
        QCOMPARE(QFile::exists(from), !isFree);
        QCOMPARE(TestFolder::read(to), QByteArray(isFree ? "from" : obstacle == "file"_s ? "there" : ""));
        QCOMPARE(QFileInfo(to).isSymLink(), obstacle == "link"_s);
        // Nothing to move leaves nothing either.
        QVERIFY(!moves[way](m_folder->filePath("gone"_s), m_folder->filePath("new"_s)));
        QVERIFY(!QFile::exists(m_folder->filePath("new"_s)));
    }

    void leavesTheDatabaseItsFiles()
    {
        if (!isLocal())
            QSKIP("what only a file meets");
        addInternal(1, "no journal");
        const QString path = m_database->details().databaseName();
        const QByteArray before = TestFolder::read(path);
        for (const QString &target : {path, path + "-journal"_s, path + "-wal"_s, path + "-shm"_s})
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

    /** What the program's own files have left in the folder. */
    QStringList hidden() const
    {
        return QDir(m_folder->folder()).entryList({".vorna*"_s}, QDir::Hidden | QDir::Files);
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
        request.fileIds = ids;
        request.paths = targets;
        request.replacedPaths.insert(replaced);
        return run(request);
    }

    QStringList run(FileOperation &request)
    {
        request.type = FileOperationType::ExtractFilesOperation;
        QSignalSpy errors(m_worker.get(), &FileOperationWorker::error);
        ExtractFilesOperation(*m_worker, request).run();
        QStringList titles;
        m_texts.clear();
        for (const QVariantList &error : errors) {
            titles.append(error.at(1).toString());
            m_texts += error.at(0).toString();
        }
        return titles;
    }

    std::unique_ptr<TestFolder> m_folder;
    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<FileOperationWorker> m_worker;
    QString m_texts; // of the errors of the last run
};

QTEST_GUILESS_MAIN(TestExtraction)
#include "tst_extraction.moc"
