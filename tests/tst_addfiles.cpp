#include "app/addingsettings.h"
#include "fileops/blockstorage.h"
#include "fileops/datachecksum.h"
#include "fileops/fileoperationworker.h"
#include "tests/support/addingfixture.h"
#include "tests/support/serverdatabase.h"

#include <sys/stat.h>
#include <unistd.h>

namespace {

void set(const char *key, const QVariant &value)
{
    QSettings().setValue(QLatin1String("PreferencesDialog/") + QLatin1String(key), value);
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

const QString allFiles = "SELECT file_name FROM files ORDER BY file_name"_s;
const QString tree = "SELECT c.child_id, c.parent_id, tag_name FROM tb_node_links c JOIN tb_nodes n "
                     "ON n.node_id=c.child_id NATURAL JOIN tags ORDER BY tag_name"_s;

} // namespace

class TestAddFiles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addBackEnds(); }

    void folderBecomesTagsNodesAndFiles()
    {
        AddingFixture fixture(makeTestDatabase());
        fixture.write("music/a.txt"_s, "a");
        fixture.write("music/jazz/b.txt"_s, "b");
        fixture.write("music/empty/deep/c.txt"_s, "c");
        fixture.write("music/.hidden"_s, "h");
        fixture.add({fixture.path("music"_s)}, {}, true, 0);

        QCOMPARE(fixture.taggedNames(),
                 QStringList({"a.txt: music"_s, "b.txt: jazz,music"_s, "c.txt: deep,empty,music"_s}));
        const QHash<QString, QString> parents = {
            {"music"_s, QString()}, {"jazz"_s, "music"_s}, {"empty"_s, "music"_s}, {"deep"_s, "empty"_s}};
        QHash<QString, QString> nameOfNode;
        const QStringList rows = fixture.rows(tree);
        for (const QString &row : rows)
            nameOfNode.insert(row.section(QLatin1Char('|'), 0, 0), row.section(QLatin1Char('|'), 2));
        QCOMPARE(rows.size(), 4);
        for (const QString &row : rows)
            QCOMPARE(nameOfNode.value(row.section(QLatin1Char('|'), 1, 1)),
                     parents.value(row.section(QLatin1Char('|'), 2)));
        QCOMPARE(AddingFixture::idsOf(fixture.tags).size(), 4);
        QCOMPARE(AddingFixture::idsOf(fixture.nodes).size(), 4);
        QCOMPARE(AddingFixture::idsOf(fixture.files).size(), 3);
        QCOMPARE(fixture.rows("SELECT DISTINCT load_id, internal FROM files"_s), QStringList("1|0"_s));
        QCOMPARE(fixture.integrity(), "ok"_s);
    }

    void secondDropAddsNoNodes()
    {
        AddingFixture fixture(makeTestDatabase());
        fixture.write("top/sub/a.txt"_s, "a");
        const QStringList dropped(fixture.path("top"_s));
        fixture.add(dropped, {}, true, 0);
        fixture.write("top/sub/b.txt"_s, "b");
        fixture.write("top/new/c.txt"_s, "c");
        fixture.add(dropped, {}, true, 0);

        QCOMPARE(fixture.count("tb_nodes"_s), 2);
        QCOMPARE(fixture.nodes.size(), 0);
        // Only what is new is told, though four names were asked for.
        QCOMPARE(AddingFixture::idsOf(fixture.tags).size(), 1);
        QCOMPARE(fixture.count("files"_s), 3);
    }

    void settingsLimitTheNodes_data()
    {
        addColumns<QString, QVariant, QString, int>("key", "value", "tags", "nodes");
        addRow("recursion limit", "autoTagRecursionLimit"_s, QVariant(2), "one,two"_s, 2);
        addRow("no tags", "autoTagging"_s, QVariant(false), QString(), 0);
    }

    void settingsLimitTheNodes()
    {
        QFETCH(QString, key);
        QFETCH(QVariant, value);
        QFETCH(QString, tags);
        AddingFixture fixture(makeTestDatabase());
        set("autoTagRecursionLimitSet", true);
        set(qPrintable(key), value);
        fixture.write("one/two/three/a.txt"_s, "a");
        fixture.add({fixture.path("one"_s)}, {}, true, 0);
        QCOMPARE(fixture.taggedNames(), QStringList("a.txt: "_s + tags));
        QTEST(fixture.count("tags"_s), "nodes");
        QTEST(fixture.count("tb_nodes"_s), "nodes");
    }

    void externalRows()
    {
        AddingFixture fixture(makeTestDatabase());
        const QString path = fixture.write(" spaced .txt"_s, "0123456789");
        struct stat status = {};
        QCOMPARE(::stat(QFile::encodeName(path).constData(), &status), 0);
        fixture.add({path});
        const QStringList row =
            fixture.rows("SELECT file_name,file_description,file_size,modification_date,data_checksum,"
                         "internal,thumbnail_id,length(id_code),path,rel_path FROM files JOIN "
                         "file_paths ON path_id=storage_id"_s);
        // A server has no folder of its own.
        const QDir base = fixture.isLocal() ? QFileInfo(fixture.databasePath()).dir() : QDir();
        QCOMPARE(row, QStringList("spaced .txt||10|%1|%2|0|0|7|%3|%4"_s.arg(status.st_mtim.tv_sec)
                                      .arg(DataChecksum::ofBytes("0123456789"))
                                      .arg(path, base.relativeFilePath(path))));
    }

    void internalContents_data()
    {
        addColumns<qint64, int>("size", "blocks");
        addRow("empty", qint64(0), 0);
        addRow("one byte", qint64(1), 1);
        addRow("exactly one block", BLOCK_SIZE, 1);
        addRow("one byte more than a block", BLOCK_SIZE + 1, 2);
    }

    void internalContents()
    {
        QFETCH(qint64, size);
        for (const bool withDuplicates : {true, false}) {
            AddingFixture fixture(makeTestDatabase());
            AddingSettings::setLinkToFiles(false);
            set("duplicateManagementEnabled", withDuplicates);
            QByteArray pattern;
            for (int i = 0; i < 4093; ++i)
                pattern.append(char(i * 31));
            const QByteArray bytes = pattern.repeated(int(size) / 4093 + 1).left(int(size));
            fixture.add({fixture.write("f.bin"_s, bytes)});
            QCOMPARE(fixture.rows("SELECT file_size,data_checksum,internal FROM files"_s),
                     QStringList("%1|%2|1"_s.arg(size).arg(DataChecksum::ofBytes(bytes))));
            QTEST(fixture.count("storage"_s), "blocks");
            TestDatabase &database = fixture.database();
            QVERIFY(database.openWorkerConnection());
            FileOperationWorker worker(Constants::workerConnection, database.details(),
                                       database.constructor());
            QFile copy(fixture.path("copy"_s));
            QVERIFY(copy.open(QIODevice::WriteOnly) && BlockStorage(worker).readInto(1, copy));
            QVERIFY(AddingFixture::read(copy.fileName()) == bytes);
        }
    }

    void hostileNames_data()
    {
        QTest::addColumn<QString>("name");
        addRow("single quote", "O'Neil"_s);
        addRow("two quotes", "''"_s);
        addRow("double quote", "12\" disc"_s);
        addRow("comment", "x\" --"_s);
        addRow("statement", "'); DROP TABLE files; --"_s);
        addRow("place holder", "100%1 %2 ? :FILE"_s);
        addRow("newline", "two\nlines"_s);
        addRow("emoji", "\xF0\x9F\x90\x98 cat\xC3\xA9"_s);
        addRow("column name", "file_name"_s);
        addRow("255 bytes", QString(255, QLatin1Char('n')));
        addRow("backslash", "a\\b"_s);
    }

    void hostileNames()
    {
        QFETCH(QString, name);
        AddingFixture fixture(makeTestDatabase());
        const QString path = fixture.write(name + QLatin1Char('/') + name, "hostile");
        const QString folder = fixture.path(name);
        for (int twice = 0; twice < 2; ++twice) {
            fixture.add({folder}, {}, true, 0);
            QCOMPARE(fixture.errors.size(), 0);
        }
        QCOMPARE(fixture.taggedNames(), QStringList(name + ": "_s + name));
        QCOMPARE(fixture.rows("SELECT path FROM file_paths"_s), QStringList(path));
        QCOMPARE(fixture.rows(tree).value(0).section(QLatin1Char('|'), 2), name);
        QCOMPARE(fixture.duplicates().contentMatches.size(), 1);
    }

    void linksAreNotFollowedBelow()
    {
        AddingFixture fixture(makeTestDatabase());
        fixture.write("outside/o.txt"_s, "o");
        const QString inner = fixture.write("top/a.txt"_s, "a");
        const QString top = fixture.path("top"_s);
        QVERIFY(QFile::link(fixture.path("outside"_s), top + "/other"_s));
        QVERIFY(QFile::link(top, top + "/loop"_s));
        QVERIFY(QFile::link(inner, top + "/filelink"_s));
        fixture.add({top}, {}, true, 0);
        QCOMPARE(fixture.rows(allFiles), QStringList("a.txt"_s));
        QCOMPARE(fixture.count("tags"_s), 1);
        // At the top a link is what it points to.
        fixture.add({top + "/other"_s}, {}, true, 0);
        QCOMPARE(fixture.taggedNames(), QStringList({"a.txt: top"_s, "o.txt: other"_s}));
    }

    void repeatedAndUncleanPaths()
    {
        AddingFixture fixture(makeTestDatabase());
        set("duplicateManagementEnabled", false);
        const QString file = fixture.write("top/sub/a.txt"_s, "a");
        const QString top = fixture.path("top"_s);
        fixture.add({top + "/sub/"_s, file, top, top + "/./sub/../sub"_s, top + "/sub//a.txt"_s}, {}, true,
                    0);
        QCOMPARE(fixture.rows("SELECT path FROM file_paths"_s), QStringList(file));
        QCOMPARE(fixture.taggedNames(), QStringList("a.txt: sub,top"_s));
        QCOMPARE(fixture.count("tb_nodes"_s), 2);
    }

    void specialFilesStayClosed()
    {
        AddingFixture fixture(makeTestDatabase());
        const QString top = fixture.path("top"_s);
        fixture.write("top/a.txt"_s, "a");
        const QString pipe = top + "/pipe"_s;
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        // Closing the database's own file would drop the locks of SQLite, so it is none of the files either.
        const QString database = fixture.isLocal() ? fixture.databasePath() : "/dev/zero"_s;
        const QString otherName = top + "/hard link.png"_s;
        QCOMPARE(::link(QFile::encodeName(database).constData(), QFile::encodeName(otherName).constData()) ==
                     0,
                 fixture.isLocal());
        fixture.add({top, pipe, database, "/dev/zero"_s});
        fixture.provider().addFilesList({pipe, database, "/dev/zero"_s});
        fixture.wait();
        QCOMPARE(fixture.rows(allFiles), QStringList("a.txt"_s));
    }

    void contentsWithoutASize()
    {
        AddingFixture fixture(makeTestDatabase());
        AddingSettings::setLinkToFiles(false);
        const QByteArray bytes = AddingFixture::read("/proc/version"_s);
        fixture.add({"/proc/version"_s});
        QCOMPARE(fixture.rows("SELECT file_size,data_checksum FROM files"_s),
                 QStringList("%1|%2"_s.arg(bytes.size()).arg(DataChecksum::ofBytes(bytes))));
        QCOMPARE(fixture.value("SELECT data FROM storage"), QString::fromUtf8(bytes));
    }

    void unreadableIsSkipped()
    {
        if (::geteuid() == 0)
            QSKIP("the superuser may read everything");
        AddingFixture fixture(makeTestDatabase());
        fixture.write("top/a.txt"_s, "a");
        const QString secret = fixture.write("top/secret.txt"_s, "s");
        fixture.write("top/closed/c.txt"_s, "c");
        const QString closed = fixture.path("top/closed"_s);
        QVERIFY(QFile::setPermissions(secret, QFile::Permissions()));
        QVERIFY(QFile::setPermissions(closed, QFile::Permissions()));
        fixture.add({fixture.path("top"_s)}, {}, true, 0);
        QFile::setPermissions(closed, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QCOMPARE(fixture.taggedNames(), QStringList("a.txt: top"_s));
        QCOMPARE(fixture.count("tags"_s), 1);
        QCOMPARE(fixture.duplicates().externalDuplicateGroups.size(), 0);
    }

    void hyperlinks()
    {
        AddingFixture fixture(makeTestDatabase());
        fixture.run("INSERT INTO tags VALUES (7,'seven','',0,''),(8,'eight','',0,'')"_s);
        const QString longLink = "https://example.org/"_s + QString(300, QLatin1Char('x'));
        const QString quoted = "https://example.org/?q='%1'"_s;
        const QHash<QString, QString> details = {{"file_description"_s, "it's 100%1"_s}};
        fixture.add({quoted, longLink, quoted, QString()}, {7}, false, 0, details);
        QCOMPARE(sorted(fixture.taggedNames()), sorted({quoted + ": seven"_s, longLink + ": seven"_s}));
        QCOMPARE(fixture.rows("SELECT DISTINCT internal,storage_id,file_size,file_description FROM files"_s),
                 QStringList("2|0|0|it's 100%1"_s));
        fixture.add({longLink}, {8});
        QCOMPARE(AddingFixture::idsOf(fixture.files).size(), 1);
        QVERIFY(fixture.taggedNames().contains(longLink + ": eight,seven"_s));
        QCOMPARE(fixture.duplicates().contentMatches.size(), 1);
    }

    void vanishedFileIsNoHyperlink()
    {
        AddingFixture fixture(makeTestDatabase());
        for (const bool withDuplicates : {true, false}) {
            set("duplicateManagementEnabled", withDuplicates);
            const QString gone = fixture.path("gone.txt"_s);
            fixture.add({gone, QUrl::fromLocalFile(gone).toString()});
            fixture.provider().addFilesList({gone});
            fixture.wait();
        }
        QCOMPARE(fixture.count("files"_s), 0);
    }

    void failedFileLeavesTheOthers()
    {
        AddingFixture fixture(makeTestDatabase());
        QVERIFY(fixture.database().refuse("INSERT ON file_paths"_s, "new.path LIKE '%bad%'"_s));
        for (int i = 0; i < 100; ++i)
            fixture.write("top/%1%2"_s.arg(i == 50 ? "bad"_s : QString()).arg(i), QByteArray::number(i));
        fixture.add({fixture.path("top"_s)});
        QCOMPARE(fixture.count("files"_s), 99);
        QCOMPARE(fixture.count("file_paths"_s), 99);
        QCOMPARE(fixture.count("file_tag"_s), 99);
        QCOMPARE(fixture.errors.size(), 1);
    }

    void cancelRollsBack()
    {
        AddingFixture fixture(makeTestDatabase());
        for (int i = 0; i < 3000; ++i)
            fixture.write("top/%1"_s.arg(i), QByteArray::number(i));
        QObject::connect(&fixture.provider(), &FileOperationProvider::filesOperationProgress,
                         &fixture.provider(), [&](const QString &text, int) {
                             if (text.startsWith(QLatin1String("Adding ")))
                                 fixture.provider().cancelOperations();
                         });
        fixture.add({fixture.path("top"_s)}, {}, true, 0);
        QCOMPARE(fixture.finished.size(), 1);
        if (!fixture.files.isEmpty())
            QSKIP("the add was over before the cancel arrived");
        for (const char *table : {"files", "file_paths", "file_tag", "tags", "tb_nodes", "tb_node_links"})
            QCOMPARE(fixture.count(QLatin1String(table)), 0);
        QCOMPARE(fixture.tags.size(), 0);
        QCOMPARE(fixture.integrity(), "ok"_s);
        // The next add is not hurt by the flag of the last.
        QObject::disconnect(&fixture.provider(), &FileOperationProvider::filesOperationProgress, nullptr,
                            nullptr);
        fixture.add({fixture.path("top/1"_s)});
        QCOMPARE(fixture.count("files"_s), 1);
    }

    void lockedDatabaseTells()
    {
        AddingFixture fixture(makeTestDatabase());
        if (!fixture.isLocal())
            QSKIP("a server's rows are locked, not the whole of it");
        QVERIFY(fixture.run("BEGIN EXCLUSIVE"_s));
        fixture.add({fixture.write("a.txt"_s, "a")});
        QCOMPARE(fixture.errors.size(), 1);
        QCOMPARE(fixture.files.size(), 0);
        QCOMPARE(fixture.finished.size(), 1);
        QVERIFY(fixture.run("ROLLBACK"_s));
        QCOMPARE(fixture.count("files"_s), 0);
    }
};

QTEST_GUILESS_MAIN(TestAddFiles)
#include "tst_addfiles.moc"
