#include "app/window/collectionopener.h"
#include "core/controllers/groupscontroller.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/sqlitecollection.h"
#include "core/controllers/tagscontroller.h"
#include "db/manager/databasemanger.h"
#include "models/contents/contentsmodel.h"
#include "models/tags/tagstablemodel.h"
#include "tests/support/windowfixture.h"

#include <QProgressDialog>
#include <QtEndian>

#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString failedToOpen =
    "Failed to Open Database: The selected database could not be opened successfully."_s;
const QString corrupted = "Error opening database: The database could be corrupted please check it."_s;
const QString inUse =
    "Error opening database: The database is in use by another program. Please try again later."_s;
const QString unsupported = "Error opening database: The database is not supported"_s;
const QString foreign = "Error opening database: The database holds parts that Vorna did not make, such as "
                        "views or triggers. It was not opened, so that nothing in it can run."_s;
const QString older = ": The database was created with an earlier version of Vorna."_s;
const QString accessError = "Error Accessing Database: An error has occurred accessing the database. "_s;
const QString endless =
    accessError + "The database is damaged: it tells of more rows than its file has room for."_s;

/** Hyperlinks enough for a tree of many pages, on pages small enough to spoil one alone. */
void fill(const QString &path)
{
    OtherConnection writer(path);
    for (const char *step :
         {"PRAGMA page_size=4096", "VACUUM",
          "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<5000) INSERT INTO files "
          "SELECT i,'file '||i,'',0,0,0,'c'||i,1,0,0,0,2 FROM n"})
        QVERIFY(writer.run(QString::fromUtf8(step)));
}

constexpr int pageSize = 4096;

/** A page of a tree whose entries all lead to one other page. */
QByteArray branchTo(quint32 page)
{
    constexpr int entries = 500;
    constexpr int entrySize = 5;
    constexpr int headSize = 12;
    QByteArray bytes(pageSize, '\0');
    char *data = bytes.data();
    data[0] = 5;
    qToBigEndian(quint16(entries), data + 3);
    qToBigEndian(quint16(pageSize - entries * entrySize), data + 5);
    qToBigEndian(page, data + 8);
    for (int i = 0; i < entries; ++i) {
        const int place = pageSize - (i + 1) * entrySize;
        qToBigEndian(quint16(place), data + headSize + 2 * i);
        qToBigEndian(page, data + place);
        data[place + 4] = 1;
    }
    return bytes;
}

/** A collection whose file another program locks as soon as it is open. */
class LockedWhenOpen : public SqliteCollection
{
public:
    LockedWhenOpen(const QString &path, OtherConnection &other)
        : SqliteCollection({}, path, {}, {}, 0), m_other(other)
    {
    }
    QSqlError open() override
    {
        const QSqlError error = SqliteCollection::open();
        m_other.run("BEGIN EXCLUSIVE"_s);
        return error;
    }

private:
    OtherConnection &m_other;
};

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
        addColumns<QByteArray, QString, QStringList>("bytes", "statement", "boxes");
        WindowFixture maker;
        const QByteArray good = WindowFixture::read(maker.makeDatabase("good.vrn"_s));
        const QByteArray garbage(100000, 'x');
        const QStringList isCorrupted{corrupted, failedToOpen};
        const QString version = "UPDATE scheme_version SET version='%1'"_s;
        addRow("half of a database", good.left(good.size() / 2), QString(), isCorrupted);
        addRow("header alone", good.left(100), QString(), isCorrupted);
        addRow("garbage", garbage, QString(), isCorrupted);
        addRow("header, then garbage", good.left(100) + garbage, QString(), isCorrupted);
        addRow("empty file", QByteArray(), QString(), isCorrupted);
        addRow("of another program", QByteArray(), "CREATE TABLE bookmarks (url TEXT)"_s, isCorrupted);
        addRow("folder", QByteArray(), QString(), QStringList{failedToOpen});
        addRow("pipe", QByteArray(), QString(), QStringList{failedToOpen});
        addRow("of a later version", good, version.arg("9.7.5"_s), QStringList{unsupported, failedToOpen});
        const QStringList isForeign{foreign, failedToOpen};
        const QString drop = "DROP TABLE tags\nCREATE TABLE tags (tag_id %1, tag_name, tag_description, "
                             "creation_date, created_by)%2"_s;
        addRow("trigger", good, "CREATE TRIGGER t AFTER INSERT ON file_tag BEGIN DELETE FROM files; END"_s,
               isForeign);
        addRow("view", good, "DROP TABLE tags\nCREATE VIEW tags AS SELECT 1 AS tag_id"_s, isForeign);
        addRow("virtual table", good, "DROP TABLE tags\nCREATE VIRTUAL TABLE tags USING fts5(tag_id)"_s,
               isForeign);
        addRow("computed column", good, "ALTER TABLE tags ADD COLUMN x AS (hex(tag_name))"_s, isForeign);
        addRow("computed index", good, "CREATE INDEX i ON tags (hex(tag_name))"_s, isForeign);
        addRow("index with a condition", good, "CREATE INDEX i ON tags (tag_id) WHERE tag_name LIKE '%'"_s,
               isForeign);
        addRow("costly condition", good, "ALTER TABLE tags ADD COLUMN x CHECK (length(hex(x)) > 0)"_s,
               isForeign);
        addRow("long comparison", good, "ALTER TABLE tags ADD COLUMN x CHECK (x NOT LIKE '%0%0%0')"_s,
               isForeign);
        addRow("costly default", good,
               drop.arg("INTEGER PRIMARY KEY"_s, QString())
                   .replace("created_by"_s, "created_by DEFAULT (hex(zeroblob(9)))"_s),
               isForeign);
        addRow("key that is no number", good, drop.arg("INT PRIMARY KEY"_s, QString()), isForeign);
        addRow("no key", good, drop.arg("INTEGER"_s, QString()), isForeign);
        addRow("key without numbers", good, drop.arg("INTEGER PRIMARY KEY"_s, " WITHOUT ROWID"_s), isForeign);
        addRow("of an older version", good, version.arg("3.2.0"_s), QStringList{older, failedToOpen});
    }

    void isRefused()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, statement);
        QFETCH(QStringList, boxes);
        const QByteArray kind = QTest::currentDataTag();
        if (kind == "folder")
            QDir().mkdir(bad());
        else if (kind == "pipe")
            mkfifo(QFile::encodeName(bad()).constData(), 0600);
        else
            m_fixture->write("bad.vrn"_s, bytes);
        for (const QString &step : statement.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
            QVERIFY(OtherConnection(bad()).run(step));
        const Contents before = folder();
        const Collection *collection = window().collection();

        openByDialog(bad());
        WindowFixture::settle();
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

    void opensLocked_data()
    {
        addColumns<QString, QString>("version", "lock");
        addRow("locked for reading, then free", "4.1.0"_s, "BEGIN EXCLUSIVE"_s);
        addRow("someone writes", "4.1.0"_s, "BEGIN IMMEDIATE"_s);
        addRow("someone writes to an old one", "3.2.0"_s, "BEGIN IMMEDIATE"_s);
        addRow("no permission", "4.1.0"_s, QString());
    }

    void opensLocked()
    {
        QFETCH(QString, lock);
        if (lock.isEmpty() && geteuid() == 0)
            QSKIP("The superuser writes to read-only files, too.");
        QFETCH(QString, version);
        m_fixture->makeDatabase("bad.vrn"_s);
        OtherConnection other(bad());
        QVERIFY(other.run("UPDATE scheme_version SET version='%1'"_s.arg(version)));
        const Contents before = folder();
        if (lock.isEmpty())
            QFile::setPermissions(bad(), QFile::ReadOwner);
        else
            QVERIFY(other.run(lock));
        const bool isRefused = !lock.isEmpty();
        QElapsedTimer timer;
        timer.start();
        openByDialog(bad());
        QVERIFY(timer.elapsed() < 5000);
        WindowFixture::settle();
        QCOMPARE(m_fixture->takeBoxes(), isRefused ? QStringList({inUse, failedToOpen}) : QStringList());
        QCOMPARE(m_fixture->openPath(), isRefused ? open() : bad());
        QCOMPARE(window().collection()->isReadOnly(), !isRefused);
        if (!isRefused)
            tags()->addTag("Green"_s);
        window().closeDatabase();
        other.run("ROLLBACK"_s);
        QCOMPARE(folder(), before);
        openByDialog(bad());
        const bool isOld = version == "3.2.0"_s; // its question is declined
        QCOMPARE(m_fixture->takeBoxes(), isOld ? QStringList({older, failedToOpen}) : QStringList());
        QCOMPARE(m_fixture->openPath(), isOld ? QString() : bad());
    }

    void lockBetweenOpeningAndLoading_data()
    {
        addColumns<bool, int, QStringList>("isReleased", "patience", "boxes");
        const int patience = CollectionOpener::usualPatience;
        addRow("for a moment", true, patience, QStringList());
        addRow("until the user is tired of it", false, patience, QStringList());
        addRow("for too long", false, 0, QStringList(inUse));
    }

    void lockBetweenOpeningAndLoading()
    {
        QFETCH(bool, isReleased);
        QFETCH(int, patience);
        const QString path = m_fixture->makeDatabase("locked.vrn"_s);
        OtherConnection other(path);
        QVERIFY(other.run("INSERT INTO tags VALUES (7,'Garden','',0,NULL)"_s));
        LockedWhenOpen collection(path, other);
        QTimer end;
        connect(&end, &QTimer::timeout, &end, [&] {
            // The window is alive, and what could not be read is not written beside.
            QCOMPARE(collection.tagsController()->addTag("Garden"_s), qint64(0));
            if (isReleased)
                other.run("ROLLBACK"_s);
            else if (auto *waiting = qobject_cast<QProgressDialog *>(QApplication::activeModalWidget()))
                patience > 0 ? waiting->cancel() : void();
        });
        end.start(50);
        QCOMPARE(CollectionOpener(&window(), patience).open(collection), isReleased);
        end.stop();
        QTEST(m_fixture->takeBoxes(), "boxes");
        collection.close();
        SqliteCollection folder({}, m_fixture->path(QString()), {}, {}, 0);
        QVERIFY(!CollectionOpener(&window()).open(folder));
        other.run("ROLLBACK"_s);
        QCOMPARE(DatabaseManger::tagNames(DBDetails::local(path)), QStringList{"Garden"_s});
    }

    void additionsOfOthersDoNotHinder()
    {
        m_fixture->makeDatabase("bad.vrn"_s);
        OtherConnection other(bad());
        for (const char *step :
             {"CREATE TABLE notes (id INTEGER PRIMARY KEY, text TEXT DEFAULT (hex('a')))",
              "CREATE INDEX byName ON tags (tag_name COLLATE NOCASE DESC, tag_id)",
              "ALTER TABLE tags ADD COLUMN colour VARCHAR(7) CHECK (colour IN ('red', 'blue'))"})
            QVERIFY(other.run(QString::fromUtf8(step)));
        openByDialog(bad());
        QCOMPARE(m_fixture->takeBoxes(), QStringList());
        QCOMPARE(m_fixture->openPath(), bad());
        QVERIFY(tags()->addTag("Blue"_s) > 0);
    }

    void longTextsAreReadToABound()
    {
        m_fixture->makeDatabase("bad.vrn"_s);
        {
            OtherConnection writer(bad());
            for (const char *step :
                 {"INSERT INTO files VALUES (1,hex(zeroblob(900000)),hex(zeroblob(900000)),"
                  "0,0,0,'c',1,0,0,0,2)",
                  "INSERT INTO files VALUES (2,'short','',0,0,0,'d',1,0,0,0,2)",
                  "INSERT INTO tags VALUES (1,hex(zeroblob(900000)),'',0,'')"})
                QVERIFY(writer.run(QString::fromUtf8(step)));
        }
        openByDialog(bad());
        QCOMPARE(m_fixture->takeBoxes(), QStringList());
        const ContentsModel *files = window().collection()->mainViewController()->contentsModel();
        const QAbstractItemModel *tagTable = tags()->tableModel();
        const auto check = [](const QModelIndex &index, bool isLong) {
            QCOMPARE(index.flags().testFlag(Qt::ItemIsEditable), !isLong);
            QCOMPARE(index.data(Qt::EditRole).toString().size() == (1 << 20) + 1, isLong);
            QCOMPARE(index.data(Qt::EditRole).toString().endsWith(u'…'), isLong);
            QVERIFY(index.data().toString().size() < 3000);
        };
        for (const int column : {ContentsModel::NameColumn, ContentsModel::DescriptionColumn}) {
            check(files->index(0, column), true);
            check(files->index(1, column), false);
        }
        check(tagTable->index(0, 0), true);
        check(tagTable->index(0, 1), false);
        // What was cut does not come back, nor does anything go in that would be cut.
        const QString text = files->index(0, ContentsModel::DescriptionColumn).data(Qt::EditRole).toString();
        for (const qint64 fileId : {1, 2})
            QVERIFY(!window().collection()->mainViewController()->updateFileDescription(fileId, text + u'x'));
        QVERIFY(!tags()->renameTag(1, text));
        QCOMPARE(tags()->addTag(text), 0);
        QCOMPARE(Sql::value("SELECT sum(length(file_name)+length(file_description)) FROM files"),
                 "3600005"_s);
        QCOMPARE(Sql::value("SELECT sum(length(tag_name)) FROM tags"), "1800000"_s);
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
        WindowFixture::settle();
        QCOMPARE(m_fixture->takeBoxes(), QStringList{accessError + "The database file may be corrupt."_s});
        QCOMPARE(m_fixture->openPath(), bad());
        window().closeDatabase();
        QCOMPARE(folder(), before);
    }

    void rowsWithoutEndEnd_data()
    {
        QTest::addColumn<QString>("row");
        addRow("groups", "tag_groups VALUES (1,'g')"_s);
        addRow("groups of long names", "tag_groups VALUES (1,hex(zeroblob(20000)))"_s);
        addRow("files", "files VALUES (1,'f','',0,0,0,'BCDF234',1,0,0,0,2)"_s);
        addRow("versions", "vorna_version SELECT version FROM vorna_version"_s);
    }

    void rowsWithoutEndEnd()
    {
        QFETCH(QString, row);
        makeEndless({row});
        openByDialog(bad());
        QTRY_COMPARE(m_fixture->boxes(), QStringList{endless});
        // What was not read whole is not shown, nor written to.
        const Collection &opened = *window().collection();
        QCOMPARE(opened.mainViewController()->contentsModel()->rowCount(), 0);
        QVERIFY(opened.groupsController()->groups()->isEmpty());
        const bool isRecord = QByteArray(QTest::currentDataTag()) != "versions";
        QCOMPARE(tags()->addTag("Blue"_s) > 0, !isRecord);
    }

    void workOnRowsWithoutEndEnds()
    {
        makeEndless({"storage_info VALUES (1,0)"_s, "storage VALUES (1,'bytes')"_s,
                     "files VALUES (1,'f','',5,0,0,'BCDF234',1,1,0,0,1)"_s});
        openByDialog(bad());
        QCOMPARE(m_fixture->boxes(), QStringList());
        window().collection()->mainViewController()->deleteFiles({1});
        QTRY_COMPARE_WITH_TIMEOUT(m_fixture->boxes(), QStringList{endless + "\nFiles deleted: 0 of 1."_s},
                                  60000);
        QCOMPARE(window().collection()->mainViewController()->contentsModel()->rowCount(), 1);
    }

    void spoiltWhileOpenIsToldOnce()
    {
        // Another program overwrites the open database.
        m_fixture->write("open.vrn"_s, QByteArray(200000, 'x'));
        for (int i = 0; i < 4; ++i)
            tags()->addTag("Tag %1"_s.arg(i));
        WindowFixture::settle();
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
    /** A database with these rows, of which those of the first one's table never end. */
    void makeEndless(const QStringList &rows)
    {
        m_fixture->makeDatabase("bad.vrn"_s);
        int root = 0;
        {
            OtherConnection writer(bad());
            QVERIFY(writer.run("PRAGMA page_size=4096"_s) && writer.run("VACUUM"_s));
            for (const QString &row : rows)
                QVERIFY(writer.run("INSERT INTO "_s + row));
            QSqlQuery query("SELECT rootpage FROM sqlite_master WHERE name='%1'"_s.arg(
                                rows.first().section(QLatin1Char(' '), 0, 0)),
                            QSqlDatabase::database("other"_s));
            QVERIFY(query.next());
            root = query.value(0).toInt();
        }
        QByteArray bytes = WindowFixture::read(bad());
        const int rootAt = (root - 1) * pageSize;
        const quint32 leaf = quint32(bytes.size() / pageSize + 1);
        bytes += bytes.mid(rootAt, pageSize) + branchTo(leaf) + branchTo(leaf + 1);
        bytes.replace(rootAt, pageSize, branchTo(leaf + 2));
        qToBigEndian(leaf + 2, bytes.data() + 28);
        m_fixture->write("bad.vrn"_s, bytes);
    }
    using Contents = QMap<QString, QByteArray>;
    /** Each name in the folder with its bytes. */
    Contents folder() const
    {
        Contents contents;
        for (const QFileInfo &entry : QFileInfo(open()).dir().entryInfoList(QDir::AllEntries | QDir::System))
            contents[entry.fileName()] = entry.isFile() ? WindowFixture::read(entry.filePath()) : "none";
        return contents;
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
