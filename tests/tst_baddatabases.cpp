#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/tagscontroller.h"
#include "models/contentsmodel.h"
#include "tests/support/windowfixture.h"

#include <QDateTime>
#include <QFileInfo>
#include <QMap>
#include <QSqlDatabase>
#include <QSqlQuery>

#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString failedToOpen =
    QStringLiteral("Failed to Open Database: The selected database could not be opened successfully.");
const QString corrupted =
    QStringLiteral("Error opening database: The database could be corrupted please check it.");
const QString unsupported = QStringLiteral("Error opening database: The database is not supported");
const QString older = QStringLiteral(": The database was created with an earlier version of Vorna.");

/** A connection beside the program's, as another program has it. */
class Stranger
{
public:
    explicit Stranger(const QString &path)
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(Constants::sqliteDriver, name());
        database.setDatabaseName(path);
        database.open();
    }
    ~Stranger()
    {
        QSqlDatabase::database(name(), false).close();
        QSqlDatabase::removeDatabase(name());
    }
    Stranger(const Stranger &) = delete;
    Stranger &operator=(const Stranger &) = delete;

    void run(const char *statement) const
    {
        QSqlQuery query(QSqlDatabase::database(name()));
        if (!query.exec(QString::fromUtf8(statement)))
            qFatal("%s", statement);
    }

private:
    static QString name() { return QStringLiteral("stranger"); }
};

/** Hyperlinks enough for a tree of many pages, on pages small enough to spoil one alone. */
void fill(const QString &path)
{
    const Stranger writer(path);
    writer.run("PRAGMA page_size=4096");
    writer.run("VACUUM");
    writer.run("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<5000) INSERT INTO files "
               "SELECT i,'file '||i,'',0,0,0,'c'||i,1,0,0,0,2 FROM n");
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
    void init();
    void cleanup() { m_fixture.reset(); }
    void isRefused_data();
    void isRefused();
    void lockedForReadingIsRefused();
    void lockedForWritingOpensReadOnly();
    void readOnlyFileOpensReadOnly();
    void spoiltPageIsToldOnce();
    void spoiltWhileOpenIsToldOnce();
    void leftJournalIsRolledBack();

private:
    using Contents = QMap<QString, QByteArray>;
    /** Each name in the folder with its bytes. */
    Contents folder() const;
    /** Makes the bad thing of a row at a path. */
    void make(const QByteArray &kind, const QString &path);
    void openByDialog(const QString &path)
    {
        m_fixture->chooseFile(path);
        m_fixture->window().slotOpenDb();
    }
    QString open() const { return m_fixture->path(QStringLiteral("open.vrn")); }
    QString bad() const { return m_fixture->path(QStringLiteral("bad.vrn")); }
    MainViewController *files() { return m_fixture->window().collection()->mainViewController(); }

    std::unique_ptr<WindowFixture> m_fixture;
};

void TestBadDatabases::init()
{
    m_fixture = std::make_unique<WindowFixture>();
    m_fixture->openNew(QStringLiteral("open.vrn"));
    m_fixture->window().collection()->tagsController()->addTag(QStringLiteral("Red"));
}

TestBadDatabases::Contents TestBadDatabases::folder() const
{
    Contents contents;
    const QFileInfoList entries = QDir(m_fixture->path(QString()))
                                      .entryInfoList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    for (const QFileInfo &entry : entries)
        contents.insert(entry.fileName(), entry.isFile() ? WindowFixture::read(entry.filePath()) : "none");
    return contents;
}

void TestBadDatabases::make(const QByteArray &kind, const QString &path)
{
    const QString name = QFileInfo(path).fileName();
    m_fixture->makeDatabase(name);
    if (kind == "half of a database") {
        QFile::resize(path, QFileInfo(path).size() / 2);
    } else if (kind == "header alone") {
        QFile::resize(path, 100);
    } else if (kind == "garbage") {
        m_fixture->write(name, QByteArray(100000, 'x'));
    } else if (kind == "header, then garbage") {
        m_fixture->write(name, WindowFixture::read(path).left(100) + QByteArray(100000, 'x'));
    } else if (kind == "empty file") {
        m_fixture->write(name, {});
    } else if (kind == "folder") {
        QFile::remove(path);
        QDir().mkdir(path);
    } else if (kind == "pipe") {
        QFile::remove(path);
        mkfifo(QFile::encodeName(path).constData(), 0600);
    } else if (kind == "of another program") {
        m_fixture->write(name, {});
        const Stranger writer(path);
        writer.run("CREATE TABLE bookmarks (url TEXT)");
        writer.run("INSERT INTO bookmarks VALUES ('https://example.org')");
    } else if (kind == "of a later version") {
        const Stranger writer(path);
        writer.run("UPDATE scheme_version SET version='9.7.5'");
    } else {
        const Stranger writer(path);
        writer.run("UPDATE scheme_version SET version='3.2.0'");
    }
}

void TestBadDatabases::isRefused_data()
{
    QTest::addColumn<QStringList>("boxes");
    QTest::newRow("half of a database") << QStringList{corrupted, failedToOpen};
    QTest::newRow("header alone") << QStringList{corrupted, failedToOpen};
    QTest::newRow("garbage") << QStringList{corrupted, failedToOpen};
    QTest::newRow("header, then garbage") << QStringList{corrupted, failedToOpen};
    QTest::newRow("empty file") << QStringList{corrupted, failedToOpen};
    QTest::newRow("folder") << QStringList{failedToOpen};
    QTest::newRow("pipe") << QStringList{failedToOpen};
    QTest::newRow("of another program") << QStringList{corrupted, failedToOpen};
    QTest::newRow("of a later version") << QStringList{unsupported, failedToOpen};
    QTest::newRow("of an older version, declined") << QStringList{older, failedToOpen};
}

void TestBadDatabases::isRefused()
{
    QFETCH(QStringList, boxes);
    make(QTest::currentDataTag(), bad());
    const Contents before = folder();
    const Collection *collection = m_fixture->window().collection();

    openByDialog(bad());
    QTest::qWait(20);
    QCOMPARE(m_fixture->takeBoxes(), boxes);
    QVERIFY(m_fixture->window().collection() == collection);
    QCOMPARE(m_fixture->window().windowTitle(), QStringLiteral("Vorna - ") + open());
    QCOMPARE(folder(), before);

    // The open one can still be written.
    QVERIFY(m_fixture->window().collection()->tagsController()->addTag(QStringLiteral("Blue")) > 0);
    // At the start it is told in the same words, and no database is open.
    m_fixture->restart();
    m_fixture->window().openStartupDatabase(bad());
    QVERIFY(!m_fixture->window().collection());
    QCOMPARE(m_fixture->takeBoxes(), boxes);
    QCOMPARE(folder().value(QStringLiteral("bad.vrn")), before.value(QStringLiteral("bad.vrn")));
    QCOMPARE(folder().keys(), before.keys());
}

void TestBadDatabases::lockedForReadingIsRefused()
{
    m_fixture->makeDatabase(QStringLiteral("bad.vrn"));
    const Contents before = folder();
    {
        const Stranger other(bad());
        other.run("BEGIN EXCLUSIVE");
        openByDialog(bad());
        QCOMPARE(m_fixture->takeBoxes(), QStringList({corrupted, failedToOpen}));
        QCOMPARE(m_fixture->openPath(), open());
        other.run("ROLLBACK");
    }
    QCOMPARE(folder(), before);
    openByDialog(bad());
    QCOMPARE(m_fixture->openPath(), bad());
    QCOMPARE(m_fixture->takeBoxes(), QStringList());
}

void TestBadDatabases::lockedForWritingOpensReadOnly()
{
    m_fixture->makeDatabase(QStringLiteral("bad.vrn"));
    const Contents before = folder();
    const Stranger other(bad());
    other.run("BEGIN IMMEDIATE");
    openByDialog(bad());
    QTest::qWait(20);
    QCOMPARE(m_fixture->takeBoxes(), QStringList());
    QCOMPARE(m_fixture->openPath(), bad());
    QVERIFY(m_fixture->window().collection()->isReadOnly());
    m_fixture->window().showDatabaseVersion();
    QVERIFY(m_fixture->takeBoxes().value(0).endsWith(QLatin1String("permissions: read-only")));
    m_fixture->window().collection()->tagsController()->addTag(QStringLiteral("Green"));
    m_fixture->window().closeDatabase();
    other.run("ROLLBACK");
    QCOMPARE(folder(), before);
}

void TestBadDatabases::readOnlyFileOpensReadOnly()
{
    if (geteuid() == 0)
        QSKIP("The superuser writes to read-only files, too.");
    m_fixture->makeDatabase(QStringLiteral("bad.vrn"));
    const Contents before = folder();
    QFile::setPermissions(bad(), QFile::ReadOwner);
    openByDialog(bad());
    QTest::qWait(20);
    QCOMPARE(m_fixture->takeBoxes(), QStringList());
    QCOMPARE(m_fixture->openPath(), bad());
    QVERIFY(m_fixture->window().collection()->isReadOnly());
    m_fixture->window().closeDatabase();
    QCOMPARE(folder(), before);
}

void TestBadDatabases::spoiltPageIsToldOnce()
{
    m_fixture->makeDatabase(QStringLiteral("bad.vrn"));
    fill(bad());
    QByteArray bytes = WindowFixture::read(bad());
    const int half = bytes.size() / 2 / 4096 * 4096;
    bytes.replace(half, 3 * 4096, QByteArray(3 * 4096, 'x'));
    m_fixture->write(QStringLiteral("bad.vrn"), bytes);
    const Contents before = folder();

    openByDialog(bad());
    QTest::qWait(50);
    QCOMPARE(m_fixture->takeBoxes(), QStringList{QStringLiteral("Error Accessing Database: An error has "
                                                                "occurred accessing the database. The "
                                                                "database file may be corrupt.")});
    QCOMPARE(m_fixture->openPath(), bad());
    m_fixture->window().closeDatabase();
    QCOMPARE(folder(), before);
}

void TestBadDatabases::spoiltWhileOpenIsToldOnce()
{
    // Another program overwrites the open database.
    m_fixture->write(QStringLiteral("open.vrn"), QByteArray(200000, 'x'));
    TagsController *tags = m_fixture->window().collection()->tagsController();
    for (int i = 0; i < 4; ++i)
        tags->addTag(QStringLiteral("Tag %1").arg(i));
    QTest::qWait(50);
    QCOMPARE(m_fixture->takeBoxes(), QStringList{QStringLiteral("Error Accessing Database: An error has "
                                                                "occurred accessing the database. The file "
                                                                "opened is not a database file.")});
    QCOMPARE(m_fixture->openPath(), open());
}

void TestBadDatabases::leftJournalIsRolledBack()
{
    // A copy taken in the middle of a write, with its journal, is what a crash leaves behind.
    m_fixture->makeDatabase(QStringLiteral("live.vrn"));
    const QString live = m_fixture->path(QStringLiteral("live.vrn"));
    fill(live);
    {
        const Stranger writer(live);
        writer.run("PRAGMA cache_size=2");
        writer.run("BEGIN IMMEDIATE");
        writer.run("UPDATE files SET file_name='half done'");
        const QString journal = QStringLiteral("-journal");
        QVERIFY(QFile::copy(live, bad()));
        QVERIFY(QFile::copy(live + journal, bad() + journal));
        writer.run("ROLLBACK");
    }
    QVERIFY(WindowFixture::read(bad()).contains("half done"));
    openByDialog(bad());
    QCOMPARE(m_fixture->takeBoxes(), QStringList());
    QCOMPARE(m_fixture->openPath(), bad());
    QCOMPARE(files()->contentsModel()->rowCount(), 5000);
    QSqlQuery names(QStringLiteral("SELECT count(*) FROM files WHERE file_name='half done'"));
    QVERIFY(names.next());
    QCOMPARE(names.value(0).toInt(), 0);
    names.exec(QStringLiteral("PRAGMA integrity_check"));
    QVERIFY(names.next());
    QCOMPARE(names.value(0).toString(), QStringLiteral("ok"));
}

QTEST_MAIN(TestBadDatabases)
#include "tst_baddatabases.moc"
