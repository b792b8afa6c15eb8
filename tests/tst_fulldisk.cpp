#include "app/settings/addingsettings.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/tagscontroller.h"
#include "db/manager/databasemanger.h"
#include "fileops/worker/importoptions.h"
#include "models/contents/contentsmodel.h"
#include "models/tags/tagstablemodel.h"
#include "tests/support/windowfixture.h"

namespace {
constexpr qint64 mebibyte = 1 << 20;

const QString fullBox = "Error Accessing Database: An error has occurred accessing the database. "
                        "The database is full."_s;
} // namespace

/**
 * Adding and extracting more than the disk holds. Runs when VORNA_SMALL_DISK names a folder on a file system
 * with no more than 200 MB of room, such as a tmpfs of 20 MB.
 */
class TestFullDisk : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_disk = QString::fromLocal8Bit(qgetenv("VORNA_SMALL_DISK"));
        if (m_disk.isEmpty() || QStorageInfo(m_disk).bytesAvailable() > 200 * mebibyte)
            QSKIP("VORNA_SMALL_DISK names no folder, or one with too much room.");
        m_fixture = std::make_unique<WindowFixture>();
        m_fixture->answerBoxes([](const Messages::Box &) { return Messages::Answer{QMessageBox::Ok, -1}; });
        QVERIFY(QFile::copy(m_fixture->makeDatabase("new.vrn"_s), onDisk("x.vrn"_s)));
        QVERIFY(m_fixture->window().openDatabase(DBDetails::local(onDisk("x.vrn"_s))));
    }

    void cleanup()
    {
        m_fixture.reset();
        for (const char *name : {"x.vrn", "x.vrn-journal", "new.vrn", "filler"})
            QFile::remove(onDisk(QLatin1String(name)));
        QDir(onDisk("out"_s)).removeRecursively();
    }

    void batchIsRolledBack_data()
    {
        addColumns<int, qint64, bool>("count", "size", "isExternal");
        // More than the cache of the connection, so that it fails in the middle; and less, so that the commit
        // fails.
        addRow("many small ones", 3000, qint64(40000), false);
        addRow("a large one", 1, 120 * mebibyte, false);
        addRow("fails at the end", 30, mebibyte, false);
        addRow("external ones", 20000, qint64(0), true);
    }

    void batchIsRolledBack()
    {
        QFETCH(int, count);
        QFETCH(qint64, size);
        QFETCH(bool, isExternal);
        for (int i = 0; i < count; ++i) {
            m_fixture->write("in/%1 %2.dat"_s.arg(i).arg(QString(isExternal ? 100 : 1, QLatin1Char('n'))),
                             QByteArray::number(i) + QByteArray(int(size), 'c'));
        }
        AddingSettings::setLinkToFiles(isExternal);
        add(m_fixture->write("first.txt"_s, "kept"));
        QCOMPARE(fileCount(), 1);
        if (isExternal)
            fillDisk(mebibyte);

        add(m_fixture->path("in"_s));
        QCOMPARE(m_fixture->takeBoxes(), QStringList{fullBox + "\nFiles added: 0 of %L1."_s.arg(count)});
        QCOMPARE(fileCount(), 1);
        QCOMPARE(tagCount(), 0);
        QCOMPARE(Sql::value("PRAGMA integrity_check"), "ok"_s);
        QVERIFY(!QFile::exists(onDisk("x.vrn-journal"_s)));

        // With room again, all goes on, and a new opening finds the same.
        QFile::remove(onDisk("filler"_s));
        add(m_fixture->write("second.txt"_s, "also kept"));
        QCOMPARE(fileCount(), 2);
        QCOMPARE(m_fixture->takeBoxes(), QStringList());
        QVERIFY(m_fixture->window().openDatabase(DBDetails::local(onDisk("x.vrn"_s))));
        QCOMPARE(fileCount(), 2);
    }

    void importIsRolledBack_data()
    {
        addColumns<int, int>("count", "size");
        addRow("many small ones", 3000, 40000);
        addRow("a large one", 1, 120 * int(mebibyte));
    }

    void importIsRolledBack()
    {
        QFETCH(int, count);
        QFETCH(int, size);
        const QString source = m_fixture->makeDatabase("source.vrn"_s);
        {
            OtherConnection connection(source);
            const QString numbers =
                "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<%1) "_s.arg(count);
            QVERIFY(connection.run("INSERT INTO storage "_s + numbers +
                                   "SELECT i, zeroblob(%1) FROM n"_s.arg(size)));
            QVERIFY(connection.run("INSERT INTO storage_info SELECT storage_id, 0 FROM storage"_s));
            QVERIFY(connection.run(
                "INSERT INTO files SELECT storage_id,'f','',%1,1,1,'C'||storage_id,1,storage_id,0,"
                "storage_id,1 FROM storage"_s.arg(size)));
            QVERIFY(connection.run("INSERT INTO tags VALUES (1,'a','',1,'')"_s));
        }
        add(m_fixture->write("first.txt"_s, "kept"));
        QSignalSpy finished(files(), &MainViewController::finishedAddingFiles);
        files()->importDatabase(source, false,
                                {true, true, true, true, true, true, ExchangeSettings::AppendDescriptions});
        QVERIFY(finished.wait(120000));
        QTRY_COMPARE(m_fixture->boxes(), QStringList{fullBox + "\nNothing was imported."_s});
        WindowFixture::settle();
        QCOMPARE(fileCount(), 1);
        QCOMPARE(tagCount(), 0);
        QCOMPARE(Sql::value("PRAGMA integrity_check"), "ok"_s);
        QVERIFY(!QFile::exists(onDisk("x.vrn-journal"_s)));
    }

    void locatingWritesWhatFits()
    {
        // Paths that are much longer than those that were recorded.
        AddingSettings::setLinkToFiles(true);
        const QString deep = "out/"_s + QString(200, QLatin1Char('d'));
        QHash<qint64, QString> places;
        for (int i = 0; i < 3000; ++i) {
            m_fixture->write("in/%1"_s.arg(i), QByteArray::number(i));
            m_fixture->write("%1/%2"_s.arg(deep).arg(i), QByteArray::number(i));
        }
        add(m_fixture->path("in"_s));
        for (int row = 0; row < fileCount(); ++row) {
            const File *file = files()->contentsModel()->fileAt(row);
            places.insert(file->id(), m_fixture->path(deep + QLatin1Char('/') + file->name()));
        }
        fillDisk(mebibyte / 4);
        files()->locateFiles(places);
        QTRY_VERIFY(!m_fixture->boxes().isEmpty());
        WindowFixture::settle();
        const QString told = m_fixture->takeBoxes().join(QLatin1Char('\n'));
        QVERIFY2(told.startsWith(fullBox) && told.contains("of 3,000"_s), qPrintable(told));
        const int moved = Sql::value("SELECT count(*) FROM file_paths WHERE path LIKE '%ddd%'").toInt();
        // Whole slices.
        QVERIFY2(moved < 3000 && moved % 500 == 0, qPrintable(QString::number(moved)));
        QCOMPARE(Sql::value("PRAGMA integrity_check"), "ok"_s);
    }

    void newDatabaseWithoutRoom_data()
    {
        addColumns<int, bool>("left", "isReplaced");
        addRow("no room", 0, false);
        addRow("room for a page", 80000, false);
        addRow("room for a page, in place of another", 80000, true);
    }

    void newDatabaseWithoutRoom()
    {
        QFETCH(int, left);
        QFETCH(bool, isReplaced);
        const QString path = onDisk("new.vrn"_s);
        if (isReplaced)
            QFile::copy(onDisk("x.vrn"_s), path);
        const QByteArray before = WindowFixture::read(path);
        fillDisk(left);
        m_fixture->chooseFile(path);
        m_fixture->window().newDatabase();
        QCOMPARE(m_fixture->takeBoxes(),
                 QStringList{"Failed to create database: A database could not be created at this place."_s});
        // A journal left behind would cut the next file of this name to nothing.
        QVERIFY(!QFile::exists(path + "-journal"_s));
        QVERIFY(WindowFixture::read(path) == before);
        QCOMPARE(QFile::exists(path), isReplaced);
        QCOMPARE(m_fixture->openPath(), onDisk("x.vrn"_s));
    }

    void extractionWithoutRoom_data()
    {
        addColumns<bool, bool>("isLinked", "isThere");
        addRow("internal", false, true);
        addRow("internal, with a name of its own", false, false);
        addRow("external", true, true);
    }

    void extractionWithoutRoom()
    {
        QFETCH(bool, isLinked);
        QFETCH(bool, isThere);
        AddingSettings::setLinkToFiles(isLinked);
        add(m_fixture->write("big.dat"_s, QByteArray(2 * int(mebibyte), 'b')));
        QVERIFY(QDir().mkpath(onDisk("out"_s)));
        const QString path = onDisk("out/big.dat"_s);
        if (isThere) {
            QFile old(path);
            QVERIFY(old.open(QIODevice::WriteOnly) && old.write("old") == 3);
        }
        fillDisk(mebibyte);
        m_fixture->answerBoxes([](const Messages::Box &) { return Messages::Answer{QMessageBox::Ok, 1}; });
        QSignalSpy finished(files(), &MainViewController::finishedAddingFiles);
        files()->extractFiles(onDisk("out"_s), {files()->contentsModel()->fileAt(0)->id()});
        QVERIFY(finished.wait(60000));
        QTRY_COMPARE(m_fixture->boxes().size(), isThere ? 2 : 1);
        const QString told = m_fixture->takeBoxes().last();
        QVERIFY(told.startsWith("Error extracting file: "_s));
        for (const QString &part :
             {"No space left"_s, "Files extracted: 0 of 1."_s,
              (isThere ? "Not written:\n"_s : "Only its beginning was written:\n"_s) + path})
            QVERIFY2(told.contains(part), qPrintable(told));
        QVERIFY(WindowFixture::read(path).startsWith(isThere ? "old" : "bbb"));
        QCOMPARE(QDir(onDisk("out"_s)).entryList(QDir::Files | QDir::Hidden), QStringList{"big.dat"_s});
    }

private:
    QString onDisk(const QString &name) const { return m_disk + QLatin1Char('/') + name; }

    void fillDisk(qint64 left)
    {
        QFile filler(onDisk("filler"_s));
        QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        for (qint64 chunk = mebibyte; chunk >= 4096; chunk /= 2) {
            while (QStorageInfo(m_disk).bytesAvailable() >= left + chunk) {
                if (filler.write(QByteArray(int(chunk), 'f')) < chunk)
                    break;
            }
        }
    }

    MainViewController *files() { return m_fixture->window().collection()->mainViewController(); }
    int fileCount() { return files()->contentsModel()->rowCount(); }
    int tagCount() { return m_fixture->window().collection()->tagsController()->tableModel()->rowCount(); }
    /** Until the operation is through. */
    void add(const QString &path)
    {
        QSignalSpy finished(files(), &MainViewController::finishedAddingFiles);
        files()->addUrls({QUrl::fromLocalFile(path)});
        QVERIFY(finished.wait(120000));
        const auto *manager = m_fixture->window().collection()->findChild<DatabaseManger *>();
        QTRY_VERIFY(!manager->isBusy());
        WindowFixture::settle();
    }

    std::unique_ptr<WindowFixture> m_fixture;
    QString m_disk;
};

QTEST_MAIN(TestFullDisk)
#include "tst_fulldisk.moc"
