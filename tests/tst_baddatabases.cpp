#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/tagscontroller.h"
#include "models/contentsmodel.h"
#include "tests/support/windowfixture.h"

#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString failedToOpen =
    "Failed to Open Database: The selected database could not be opened successfully."_s;
const QString corrupted = "Error opening database: The database could be corrupted please check it."_s;
const QString unsupported = "Error opening database: The database is not supported"_s;
const QString older = ": The database was created with an earlier version of Vorna."_s;
const QString accessError = "Error Accessing Database: An error has occurred accessing the database. "_s;

/** Hyperlinks enough for a tree of many pages, on pages small enough to spoil one alone. */
void fill(const QString &path)
{
    OtherConnection writer(path);
    QVERIFY(writer.run("PRAGMA page_size=4096"_s));
    QVERIFY(writer.run("VACUUM"_s));
    QVERIFY(
        writer.run("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<5000) INSERT INTO "
                   "files SELECT i,'file '||i,'',0,0,0,'c'||i,1,0,0,0,2 FROM n"_s));
}

} // namespace

/**
 * Files that cannot be opened, or not as they should: the user is told once, the open database stays as it
 * is, and nothing on the disk changes.
 */
class TestBadDatabases : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_fixture = std::make_unique<WindowFixture>();
        m_fixture->openNew("open.vrn"_s);
        tags()->addTag("Red"_s);
    }

    void cleanup() { m_fixture.reset(); }

    void isRefused_data()
    {
        QTest::addColumn<QStringList>("boxes");
        for (const char *kind : {"half of a database", "header alone", "garbage", "header, then garbage",
                                 "empty file", "of another program"})
            addRow(kind, QStringList{corrupted, failedToOpen});
        addRow("folder", QStringList{failedToOpen});
        addRow("pipe", QStringList{failedToOpen});
        addRow("of a later version", QStringList{unsupported, failedToOpen});
        addRow("of an older version, declined", QStringList{older, failedToOpen});
    }

    void isRefused()
    {
        QFETCH(QStringList, boxes);
        make(QTest::currentDataTag(), bad());
        const Contents before = folder();
        const Collection *collection = window().collection();

        openByDialog(bad());
        QTest::qWait(20);
        QCOMPARE(m_fixture->takeBoxes(), boxes);
        QVERIFY(window().collection() == collection);
        QCOMPARE(window().windowTitle(), "Vorna - "_s + open());
        QCOMPARE(m_fixture->recentTexts(), QStringList{"1 "_s + open()});
        QCOMPARE(folder(), before);

        // The open one can still be written.
        QVERIFY(tags()->addTag("Blue"_s) > 0);
        // At the start it is told in the same words, and no database is open.
        m_fixture->restart();
        window().openStartupDatabase(bad());
        QVERIFY(!window().collection());
        QCOMPARE(m_fixture->takeBoxes(), boxes);
        QCOMPARE(folder().value("bad.vrn"_s), before.value("bad.vrn"_s));
        QCOMPARE(folder().keys(), before.keys());
    }

    void lockedForReadingIsRefused()
    {
        m_fixture->makeDatabase("bad.vrn"_s);
        const Contents before = folder();
        OtherConnection other(bad());
        QVERIFY(other.run("BEGIN EXCLUSIVE"_s));
        openByDialog(bad());
        QCOMPARE(m_fixture->takeBoxes(), QStringList({corrupted, failedToOpen}));
        QCOMPARE(m_fixture->openPath(), open());
        QVERIFY(other.run("ROLLBACK"_s));
        QCOMPARE(folder(), before);
        openByDialog(bad());
        QCOMPARE(m_fixture->openPath(), bad());
        QCOMPARE(m_fixture->takeBoxes(), QStringList());
    }

    void opensReadOnly_data()
    {
        QTest::addColumn<bool>("isLocked");
        addRow("someone writes", true);
        addRow("no permission", false);
    }

    void opensReadOnly()
    {
        QFETCH(bool, isLocked);
        if (!isLocked && geteuid() == 0)
            QSKIP("The superuser writes to read-only files, too.");
        m_fixture->makeDatabase("bad.vrn"_s);
        const Contents before = folder();
        OtherConnection other(bad());
        if (isLocked)
            QVERIFY(other.run("BEGIN IMMEDIATE"_s));
        else
            QFile::setPermissions(bad(), QFile::ReadOwner);
        openByDialog(bad());
        QTest::qWait(20);
        QCOMPARE(m_fixture->takeBoxes(), QStringList());
        QCOMPARE(m_fixture->openPath(), bad());
        QVERIFY(window().collection()->isReadOnly());
        window().showDatabaseVersion();
        QVERIFY(m_fixture->takeBoxes().value(0).endsWith(QLatin1String("permissions: read-only")));
        tags()->addTag("Green"_s);
        window().closeDatabase();
        other.run("ROLLBACK"_s);
        QCOMPARE(folder(), before);
    }

    void spoiltPageIsToldOnce()
    {
        m_fixture->makeDatabase("bad.vrn"_s);
        fill(bad());
        QByteArray bytes = WindowFixture::read(bad());
        bytes.replace(bytes.size() / 2 / 4096 * 4096, 3 * 4096, QByteArray(3 * 4096, 'x'));
        m_fixture->write("bad.vrn"_s, bytes);
        const Contents before = folder();

        openByDialog(bad());
        QTest::qWait(50);
        QCOMPARE(m_fixture->takeBoxes(), QStringList{accessError + "The database file may be corrupt."_s});
        QCOMPARE(m_fixture->openPath(), bad());
        window().closeDatabase();
        QCOMPARE(folder(), before);
    }

    void spoiltWhileOpenIsToldOnce()
    {
        // Another program overwrites the open database.
        m_fixture->write("open.vrn"_s, QByteArray(200000, 'x'));
        for (int i = 0; i < 4; ++i)
            tags()->addTag("Tag %1"_s.arg(i));
        QTest::qWait(50);
        QCOMPARE(m_fixture->takeBoxes(),
                 QStringList{accessError + "The file opened is not a database file."_s});
        QCOMPARE(m_fixture->openPath(), open());
    }

    void leftJournalIsRolledBack()
    {
        // A copy taken in the middle of a write, with its journal, is what a crash leaves behind.
        const QString live = m_fixture->makeDatabase("live.vrn"_s);
        fill(live);
        OtherConnection writer(live);
        for (const char *step :
             {"PRAGMA cache_size=2", "BEGIN IMMEDIATE", "UPDATE files SET file_name='half done'"})
            QVERIFY(writer.run(QString::fromUtf8(step)));
        for (const QString &suffix : {QString(), "-journal"_s})
            QVERIFY(QFile::copy(live + suffix, bad() + suffix));
        QVERIFY(WindowFixture::read(bad()).contains("half done"));
        openByDialog(bad());
        QCOMPARE(m_fixture->takeBoxes(), QStringList());
        QCOMPARE(m_fixture->openPath(), bad());
        QCOMPARE(window().collection()->mainViewController()->contentsModel()->rowCount(), 5000);
        QCOMPARE(Sql::value("SELECT count(*) FROM files WHERE file_name='half done'"), "0"_s);
        QCOMPARE(Sql::value("PRAGMA integrity_check"), "ok"_s);
    }

private:
    using Contents = QMap<QString, QByteArray>;
    /** Each name in the folder with its bytes. */
    Contents folder() const
    {
        Contents contents;
        for (const QFileInfo &entry : QFileInfo(open()).dir().entryInfoList(QDir::AllEntries | QDir::System))
            contents[entry.fileName()] = entry.isFile() ? WindowFixture::read(entry.filePath()) : "none";
        return contents;
    }
    /** Makes the bad thing of a row at a path. */
    void make(const QByteArray &kind, const QString &path)
    {
        const QString name = QFileInfo(path).fileName();
        m_fixture->makeDatabase(name);
        const QByteArray good = WindowFixture::read(path);
        const QMap<QByteArray, QByteArray> bytes{
            {"half of a database", good.left(good.size() / 2)},
            {"header alone", good.left(100)},
            {"garbage", QByteArray(100000, 'x')},
            {"header, then garbage", good.left(100) + QByteArray(100000, 'x')},
            {"empty file", {}},
            {"of another program", {}}};
        const QMap<QByteArray, QString> statements{
            {"of another program", "CREATE TABLE bookmarks (url TEXT)"_s},
            {"of a later version", "UPDATE scheme_version SET version='9.7.5'"_s},
            {"of an older version, declined", "UPDATE scheme_version SET version='3.2.0'"_s}};
        if (bytes.contains(kind))
            m_fixture->write(name, bytes.value(kind));
        if (statements.contains(kind))
            QVERIFY(OtherConnection(path).run(statements.value(kind)));
        if (kind == "folder" || kind == "pipe")
            QFile::remove(path);
        if (kind == "folder")
            QDir().mkdir(path);
        if (kind == "pipe")
            mkfifo(QFile::encodeName(path).constData(), 0600);
    }

    void openByDialog(const QString &path)
    {
        m_fixture->chooseFile(path);
        window().slotOpenDb();
    }
    QString open() const { return m_fixture->path("open.vrn"_s); }
    QString bad() const { return m_fixture->path("bad.vrn"_s); }
    MainWindow &window() { return m_fixture->window(); }
    TagsController *tags() { return window().collection()->tagsController(); }

    std::unique_ptr<WindowFixture> m_fixture;
};

QTEST_MAIN(TestBadDatabases)
#include "tst_baddatabases.moc"
