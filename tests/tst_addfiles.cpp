#include "app/settings/addingsettings.h"
#include "fileops/adding/folderexpansion.h"
#include "fileops/contents/blockstorage.h"
#include "fileops/files/datachecksum.h"
#include "fileops/worker/fileoperationworker.h"
#include "tests/support/addingfixture.h"
#include "tests/support/serverdatabase.h"
#include "tests/support/silentdisk.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
void set(const QString &key, const QVariant &value)
{
    QSettings().setValue("PreferencesDialog/"_s + key, value);
}

QByteArray patterned(qint64 size)
{
    QByteArray bytes(int(size), 'x');
    for (int i = 0; i < bytes.size(); i += 97)
        bytes[i] = char(i / 97);
    return bytes;
}

bool writeNative(const QByteArray &path)
{
    const int descriptor = ::open(path.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    return descriptor >= 0 && ::close(descriptor) == 0;
}

/** Each node as "name|name of its parent". */
const QString tree =
    "SELECT t.tag_name, p.tag_name FROM tb_node_links l JOIN tb_nodes n ON n.node_id=l.child_id "
    "JOIN tags t ON t.tag_id=n.tag_id LEFT JOIN tb_nodes o ON o.node_id=l.parent_id "
    "LEFT JOIN tags p ON p.tag_id=o.tag_id ORDER BY 1"_s;
} // namespace

/** Adding files and making external ones internal, on the worker and a real database. */
class TestAddFiles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addBackEnds(); }
    void init() { m_fixture = std::make_unique<AddingFixture>(makeTestDatabase()); }
    void cleanup() { m_fixture.reset(); }

    void folderBecomesTagsNodesAndFiles()
    {
        for (const char *name : {"a", "jazz/b", "empty/deep/c", ".hidden"})
            m_fixture->write("music/"_s + QLatin1String(name), name);
        addTree("music"_s);
        QStringList names{"a: music"_s, "b: jazz,music"_s, "c: deep,empty,music"_s};
        QCOMPARE(m_fixture->taggedNames(), names);
        QStringList nodes{"deep|empty"_s, "empty|music"_s, "jazz|music"_s, "music|"_s};
        QCOMPARE(Sql::rows(tree), nodes);
        for (const QSignalSpy *spy : {&m_fixture->tags, &m_fixture->nodes})
            QCOMPARE(AddingFixture::idsOf(*spy).size(), 4);
        QCOMPARE(AddingFixture::idsOf(m_fixture->files).size(), 3);
        QCOMPARE(Sql::rows("SELECT DISTINCT load_id, internal FROM files"), QStringList("1|0"_s));
        QCOMPARE(m_fixture->integrity(), "ok"_s);

        // The same folder again makes no nodes, and only what is new is told.
        m_fixture->write("music/new/d"_s, "d");
        addTree("music"_s);
        QCOMPARE(m_fixture->taggedNames(), names << "d: music,new"_s);
        QCOMPARE(Sql::rows(tree), nodes);
        QCOMPARE(m_fixture->nodes.size(), 0);
        QCOMPARE(AddingFixture::idsOf(m_fixture->tags).size(), 1);
    }

    void settingsLimitTheNodes_data()
    {
        addColumns<QString, QVariant, QString, QStringList>("key", "value", "tags", "nodes");
        addRow("depth", "autoTagRecursionLimit"_s, QVariant(2), "one,two"_s,
               QStringList{"one|"_s, "two|one"_s});
        addRow("no tags", "autoTagging"_s, QVariant(false), QString(), QStringList());
    }

    void settingsLimitTheNodes()
    {
        QFETCH(QString, key);
        QFETCH(QVariant, value);
        QFETCH(QString, tags);
        set("autoTagRecursionLimitSet"_s, true);
        set(key, value);
        m_fixture->write("one/two/three/a"_s, "a");
        addTree("one"_s);
        QCOMPARE(m_fixture->taggedNames(), QStringList("a: "_s + tags));
        QTEST(Sql::rows(tree), "nodes");
        QTEST(Sql::rows("SELECT tag_name FROM tags ORDER BY 1").join(QLatin1Char(',')), "tags");
    }

    void externalRows()
    {
        const QString path = m_fixture->write(" spaced .txt"_s, "0123456789");
        m_fixture->add({path});
        // A server has no folder of its own.
        const QDir base = m_fixture->isLocal() ? QFileInfo(m_fixture->databasePath()).dir() : QDir();
        QCOMPARE(
            Sql::rows("SELECT file_name,file_description,file_size,modification_date,data_checksum,"
                      "internal,thumbnail_id,length(id_code),path,rel_path FROM files JOIN file_paths ON "
                      "path_id=storage_id"),
            QStringList(
                "spaced .txt||10|%1|%2|0|0|7|%3|%4"_s.arg(QFileInfo(path).lastModified().toSecsSinceEpoch())
                    .arg(DataChecksum::ofBytes("0123456789"))
                    .arg(path, base.relativeFilePath(path))));
        if (!m_fixture->isLocal())
            return;
        QFile beside(base.filePath("beside"_s)); // no folder is named where none lies in between
        QVERIFY(beside.open(QIODevice::WriteOnly) && beside.putChar('x') && beside.flush());
        m_fixture->add({beside.fileName()});
        QCOMPARE(Sql::value("SELECT rel_path FROM file_paths WHERE path_id>1"), "beside"_s);
    }

    void internalContents_data()
    {
        addColumns<QString, qint64, int>("mode", "size", "blocks");
        for (const char *mode : {"checked", "unchecked", "transferred"}) {
            for (const qint64 size : {qint64(0), qint64(1), BLOCK_SIZE, BLOCK_SIZE + 1})
                QTest::addRow("%s, %lld bytes", mode, size)
                    << QString::fromLatin1(mode) << size << int((size + BLOCK_SIZE - 1) / BLOCK_SIZE);
        }
    }

    void internalContents()
    {
        QFETCH(QString, mode);
        QFETCH(qint64, size);
        const bool isTransfer = mode == QLatin1String("transferred");
        AddingSettings::setLinkToFiles(isTransfer);
        set("duplicateManagementEnabled"_s, mode == QLatin1String("checked"));
        const QByteArray bytes = patterned(size);
        const QString path = m_fixture->write("it's.bin"_s, bytes);
        m_fixture->add({path});
        if (isTransfer) {
            m_fixture->files.clear();
            const QSignalSpy told(&m_fixture->provider(), &FileOperationProvider::error);
            m_fixture->provider().transferFiles({1, 1});
            m_fixture->wait();
            QCOMPARE(told.size(), 0);
        }
        QCOMPARE(AddingFixture::idsOf(m_fixture->files), QVector<qint64>{1});
        const qint64 modified = QFileInfo(path).lastModified().toSecsSinceEpoch();
        QCOMPARE(Sql::rows("SELECT file_size,data_checksum,internal,modification_date FROM files"),
                 QStringList("%1|%2|1|%3"_s.arg(size).arg(DataChecksum::ofBytes(bytes)).arg(modified)));
        QTEST(Sql::count("storage"_s), "blocks");
        QCOMPARE(Sql::count("file_paths"_s), 0);
        TestDatabase &database = m_fixture->database();
        QVERIFY(database.openWorkerConnection());
        FileOperationWorker worker(Constants::workerConnection, database.details(), database.constructor());
        QFile copy(m_fixture->path("copy"_s));
        QVERIFY(copy.open(QIODevice::WriteOnly));
        QCOMPARE(BlockStorage(worker).readInto(1, copy), BlockStorage::Written);
        QVERIFY(AddingFixture::read(copy.fileName()) == bytes && AddingFixture::read(path) == bytes);
        QCOMPARE(m_fixture->integrity(), "ok"_s);
    }

    void changesDuringATransfer_data()
    {
        // What happens to the second file; which of the three are internal after; how many blocks there are.
        addColumns<QString, QString, int>("event", "internal", "blocks");
        addRow("gone before its turn", "vanish"_s, "1|0|1"_s, 2);
        addRow("canceled", "cancel"_s, "1|0|0"_s, 1);
        addRow("grown", "grow"_s, "1|0|1"_s, 2);
        addRow("cut short", "cut"_s, "1|0|1"_s, 2);
        addRow("gone, but read through its open end", "remove"_s, "1|1|1"_s, 8);
    }

    void changesDuringATransfer()
    {
        QFETCH(QString, event);
        QFETCH(QString, internal);
        QFile file(m_fixture->write("b.bin"_s, patterned(60000000)));
        m_fixture->add({m_fixture->write("a"_s, "small"), file.fileName(), m_fixture->write("z"_s, "other")});
        FileOperationProvider &provider = m_fixture->provider();
        connect(&provider, &FileOperationProvider::filesOperationProgress, &provider,
                [&](const QString &text, int percent) {
                    if (text != "Transferring b.bin"_s || percent == 0)
                        return;
                    if (event == "cancel"_s)
                        provider.cancelOperations();
                    else if (event == "remove"_s)
                        file.remove();
                    else
                        file.resize(event == "grow"_s ? 60000001 : 59999999);
                });
        if (event == "vanish"_s)
            file.remove();
        QSignalSpy errors(&provider, &FileOperationProvider::error);
        provider.transferFiles({1, 2, 3, 99});
        m_fixture->wait();
        QCOMPARE(Sql::rows("SELECT internal FROM files ORDER BY file_id").join(QLatin1Char('|')), internal);
        QCOMPARE(Sql::count("file_paths"_s), internal.count(QLatin1Char('0')));
        QTEST(Sql::count("storage"_s), "blocks");
        QTEST(Sql::count("storage_info"_s), "blocks");
        QCOMPARE(errors.count(), event == "cancel"_s || event == "remove"_s ? 0 : 1);
    }

    void hostileNames_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name :
             {"O'Neil", "''", "12\" disc", "x\" --", "'); DROP TABLE files; --", "100%1 %2 ? :FILE",
              "two\nlines", "\xF0\x9F\x90\x98 cat\xC3\xA9", "file_name", "a\\b"})
            addRow(name, QString::fromUtf8(name));
        addRow("byte order mark", "\uFEFF\uFEFFa"_s); // the literal drops one itself
        addRow("like a resource", ":a"_s);
        addRow("255 bytes", QString(255, QLatin1Char('n')));
    }

    void hostileNames()
    {
        QFETCH(QString, name);
        const QString path = m_fixture->write(name + QLatin1Char('/') + name, "hostile");
        for (int twice = 0; twice < 2; ++twice) {
            addTree(name);
            QCOMPARE(m_fixture->errors.size(), 0);
        }
        QCOMPARE(m_fixture->taggedNames(), QStringList(name + ": "_s + name));
        QCOMPARE(Sql::rows("SELECT path FROM file_paths"), QStringList(path));
        QCOMPARE(Sql::rows(tree), QStringList(name + QLatin1Char('|')));
        QCOMPARE(m_fixture->duplicates().contentMatches.size(), 1);
    }

    void blankFoldersMakeNoTag()
    {
        for (const char *name : {"top/ /a", "top/ /sub/b", "top/c"})
            m_fixture->write(QLatin1String(name), name);
        addTree("top"_s);
        QCOMPARE(m_fixture->taggedNames(), QStringList({"a: top"_s, "b: sub,top"_s, "c: top"_s}));
        QCOMPARE(Sql::rows(tree), QStringList("top|"_s));
        m_fixture->add({m_fixture->path("top/ "_s)}, {}, true, 0);
        QCOMPARE(Sql::rows("SELECT tag_name FROM tags ORDER BY 1"), QStringList({"sub"_s, "top"_s}));
    }

    void whatIsLeftOutIsTold()
    {
        m_fixture->write("top/a"_s, "a");
        const QByteArray top = QFile::encodeName(m_fixture->path("top"_s));
        for (const char *name : {"/f\xE4", "/f\xE4/below"})
            QCOMPARE(::mkdir(QByteArray(top + name).constData(), 0700), 0);
        for (const char *name :
             {"/b\xE4"
              "d.txt",
              "/\xFF", "/f\xE4/inside", "/f\xE4/below/a", "/f\xE4/below/\xE4", "/f\xE4/.h", "/.h\xE4"})
            QVERIFY(writeNative(top + name));
        QSignalSpy told(&m_fixture->provider(), &FileOperationProvider::error);
        const QString gone = m_fixture->path("gone"_s);
        m_fixture->add({m_fixture->path("top"_s), gone, m_fixture->path("x\uFFFD"_s)}, {}, true, 0);
        QCOMPARE(m_fixture->taggedNames(), QStringList("a: top"_s));
        QCOMPARE(told.size(), 1);
        const QString text = told.at(0).at(0).toString();
        QVERIFY(text.startsWith("3 files have names that cannot be read:\n\n"_s));
        for (const QString &name : {"/b\uFFFDd.txt\n"_s, "/\uFFFD\n"_s, "/x\uFFFD\n"_s})
            QVERIFY2(text.contains(name), qPrintable(text));
        QVERIFY(text.endsWith(
            "\n\nFiles left out because the names of their folders cannot be read: 3\n\n%1/f\uFFFD"
            "\n\n1 file or folder could not be read:\n\n%2"_s.arg(m_fixture->path("top"_s), gone)));
    }

    void foldersThatCannotBeOpenedAreTold()
    {
        m_fixture->write("top/sub/a"_s, "a");
        const QString top = m_fixture->path("top"_s);
        rlimit before = {};
        QCOMPARE(::getrlimit(RLIMIT_NOFILE, &before), 0);
        // Any file that is opened now is one too many.
        rlimit none = before;
        none.rlim_cur = 0;
        FolderExpansion expansion;
        QCOMPARE(::setrlimit(RLIMIT_NOFILE, &none), 0);
        expansion.expand({top});
        ::setrlimit(RLIMIT_NOFILE, &before);
        QCOMPARE(expansion.leftOut().unreadable, QStringList(top));
        QCOMPARE(expansion.files(), QStringList());
    }

    void tagsThatCannotBeMadeAreToldOnce()
    {
        QVERIFY(m_fixture->database().refuse("INSERT ON tags"_s));
        m_fixture->write("top/a"_s, "a");
        QSignalSpy told(&m_fixture->provider(), &FileOperationProvider::error);
        QSignalSpy shortfalls(&m_fixture->provider(), &FileOperationProvider::fellShort);
        addTree("top"_s);
        QCOMPARE(told.size(), 0);
        QCOMPARE(shortfalls.size(), 1);
        QCOMPARE(Sql::count("files"_s), 0);
    }

    void linksAreNotFollowedBelow()
    {
        m_fixture->write("outside/o"_s, "o");
        const QString inner = m_fixture->write("top/a"_s, "a");
        const QString top = m_fixture->path("top"_s);
        QVERIFY(QFile::link(m_fixture->path("outside"_s), top + "/other"_s));
        QVERIFY(QFile::link(top, top + "/loop"_s) && QFile::link(inner, top + "/filelink"_s));
        addTree("top"_s);
        QCOMPARE(m_fixture->taggedNames(), QStringList("a: top"_s));
        QCOMPARE(Sql::count("tags"_s), 1);
        // At the top a link is what it points to.
        addTree("top/other"_s);
        QCOMPARE(m_fixture->taggedNames(), QStringList({"a: top"_s, "o: other"_s}));
    }

    void repeatedAndUncleanPaths()
    {
        set("duplicateManagementEnabled"_s, false);
        const QString file = m_fixture->write("top/sub/a"_s, "a");
        const QString top = m_fixture->path("top"_s);
        m_fixture->add({top + "/sub/"_s, file, top, top + "/./sub/../sub"_s, top + "/sub//a"_s}, {}, true, 0);
        QCOMPARE(Sql::rows("SELECT path FROM file_paths"), QStringList(file));
        QCOMPARE(m_fixture->taggedNames(), QStringList("a: sub,top"_s));
        QCOMPARE(Sql::count("tb_nodes"_s), 2);
    }

    void specialFilesStayClosed()
    {
        m_fixture->write("top/a"_s, "a");
        const QString pipe = m_fixture->path("top/pipe"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        // Closing the database's own file would drop the locks of SQLite, so it is none of the files either.
        const bool isLocal = m_fixture->isLocal();
        const QString database = isLocal ? m_fixture->databasePath() : "/dev/zero"_s;
        const QByteArray otherName = QFile::encodeName(m_fixture->path("top/hard link.png"_s));
        QCOMPARE(::link(QFile::encodeName(database).constData(), otherName.constData()) == 0, isLocal);
        m_fixture->add({m_fixture->path("top"_s), pipe, database, "/dev/zero"_s});
        m_fixture->provider().addFilesList({pipe, database, "/dev/zero"_s});
        m_fixture->wait();
        QCOMPARE(Sql::value("SELECT file_name FROM files"), "a"_s);
    }

    void contentsWithoutASize()
    {
        AddingSettings::setLinkToFiles(false);
        const QByteArray bytes = AddingFixture::read("/proc/version"_s);
        m_fixture->add({"/proc/version"_s});
        QCOMPARE(Sql::rows("SELECT file_size,data_checksum FROM files"),
                 QStringList("%1|%2"_s.arg(bytes.size()).arg(DataChecksum::ofBytes(bytes))));
        QCOMPARE(Sql::value("SELECT data FROM storage"), QString::fromUtf8(bytes));
    }

    void unreadableIsSkipped()
    {
        if (::geteuid() == 0)
            QSKIP("the superuser may read everything");
        m_fixture->write("top/a"_s, "a");
        const QString secret = m_fixture->write("top/secret"_s, "s");
        const QString closed = QFileInfo(m_fixture->write("top/closed/c"_s, "c")).path();
        QVERIFY(QFile::setPermissions(secret, {}) && QFile::setPermissions(closed, {}));
        addTree("top"_s);
        QFile::setPermissions(closed, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QCOMPARE(m_fixture->taggedNames(), QStringList("a: top"_s));
        QCOMPARE(Sql::count("tags"_s), 1);
    }

    void hyperlinks()
    {
        Sql::run("INSERT INTO tags VALUES (7,'seven','',0,''),(8,'eight','',0,'')");
        const QString longLink = "https://example.org/"_s + QString(300, QLatin1Char('x'));
        const QString quoted = "https://example.org/?q='%1'"_s;
        m_fixture->add({quoted, longLink, quoted, QString()}, {7}, false, 0,
                       {{"file_description"_s, "it's 100%1"_s}});
        QCOMPARE(Sql::rows("SELECT DISTINCT internal,storage_id,file_size,file_description FROM files"),
                 QStringList("2|0|0|it's 100%1"_s));
        m_fixture->add({longLink}, {8});
        QCOMPARE(AddingFixture::idsOf(m_fixture->files).size(), 1);
        QCOMPARE(m_fixture->taggedNames(), QStringList({quoted + ": seven"_s, longLink + ": eight,seven"_s}));
        QCOMPARE(m_fixture->duplicates().contentMatches.size(), 1);
        QCOMPARE(m_fixture->duplicates().matchedTagIds, QVector<qint64>{8});
        // Only what is new to a file counts.
        m_fixture->add({quoted, longLink}, {7});
        QCOMPARE(m_fixture->duplicates().contentMatches.size(), 2);
        QCOMPARE(m_fixture->duplicates().matchedTagIds, QVector<qint64>());
        QVERIFY(m_fixture->database().refuse("INSERT ON file_tag"_s));
        m_fixture->add({quoted}, {8});
        QCOMPARE(m_fixture->errors.size(), 1);
        QCOMPARE(m_fixture->duplicates().matchedTagIds, QVector<qint64>());
    }

    void hyperlinksThatAreRefused()
    {
        QSignalSpy told(&m_fixture->provider(), &FileOperationProvider::error);
        const QString longest = "http://a/"_s + QString(8183, QLatin1Char('x'));
        m_fixture->add({longest, longest + QLatin1Char('x'), "http://a/\n"_s, "http://a b/"_s,
                        "http://b/"_s + QChar(QChar::Null), QString(), "known"_s, ":known"_s});
        QCOMPARE(Sql::rows("SELECT file_name FROM files ORDER BY file_id"),
                 QStringList({longest, "known"_s}));
        QCOMPARE(told.size(), 1);
        QCOMPARE(told.at(0).at(0).toString(),
                 "6 hyperlinks were not added:\nLonger than %1 signs: 1\n"
                 "With control signs: 2\nNot valid: 3"_s.arg(QLocale().toString(8192)));
        m_fixture->provider().addFiles({"http://a b/"_s}, {}, false, 0);
        QCOMPARE(told.at(1).at(0).toString(), "One hyperlink was not added:\nNot valid: 1"_s);
    }

    void vanishedFileIsNoHyperlink()
    {
        const QString gone = m_fixture->path("gone"_s);
        for (const bool withDuplicates : {true, false}) {
            set("duplicateManagementEnabled"_s, withDuplicates);
            m_fixture->provider().addFilesList({gone});
            m_fixture->add({gone, QUrl::fromLocalFile(gone).toString()});
        }
        QCOMPARE(Sql::count("files"_s), 0);
    }

    void failedFileLeavesTheOthers()
    {
        QVERIFY(m_fixture->database().refuse("INSERT ON file_paths"_s, "new.path LIKE '%bad%'"_s));
        for (int i = 0; i < 100; ++i)
            m_fixture->write("top/%1%2"_s.arg(i == 50 ? "bad"_s : QString()).arg(i), QByteArray::number(i));
        addTree("top"_s);
        for (const char *table : {"files", "file_paths", "file_tag"})
            QCOMPARE(Sql::count(QLatin1String(table)), 99);
        QCOMPARE(m_fixture->errors.size(), 1);
    }

    void cancelRollsBack()
    {
        for (int i = 0; i < 3000; ++i)
            m_fixture->write("top/%1"_s.arg(i), QByteArray::number(qMax(1, i))); // two of one content
        FileOperationProvider &provider = m_fixture->provider();
        const auto connection = connect(&provider, &FileOperationProvider::filesOperationProgress, &provider,
                                        [&](const QString &text, int) {
                                            if (text.startsWith(QLatin1String("Adding ")))
                                                provider.cancelOperations();
                                        });
        addTree("top"_s);
        QCOMPARE(m_fixture->finished.size(), 1);
        if (!m_fixture->files.isEmpty())
            QSKIP("the add was over before the cancel arrived");
        for (const char *table : {"files", "file_paths", "file_tag", "tags", "tb_nodes", "tb_node_links"})
            QCOMPARE(Sql::count(QLatin1String(table)), 0);
        QCOMPARE(m_fixture->tags.size(), 0);
        QVERIFY(m_fixture->duplicates().externalDuplicateGroups.isEmpty());
        QCOMPARE(m_fixture->integrity(), "ok"_s);
        // The next add is not hurt by the flag of the last.
        disconnect(connection);
        m_fixture->add({m_fixture->path("top/1"_s)});
        QCOMPARE(Sql::count("files"_s), 1);
    }

    void aDiskThatDoesNotAnswerAddsNothing()
    {
        SilentDisk disk(m_fixture->path("silent"_s));
        if (!m_fixture->isLocal() || !disk.isThere())
            QSKIP("Only root may mount, and the database has no part in it.");
        FileOperationProvider &provider = m_fixture->provider();
        QSignalSpy told(&provider, &FileOperationProvider::error);
        const QStringList paths{m_fixture->write("a"_s, "a"), disk.path("b"_s)};
        QElapsedTimer passed;
        passed.start();
        QTimer::singleShot(300, &provider, &FileOperationProvider::cancelOperations);
        m_fixture->add(paths);
        QVERIFY(passed.elapsed() < 3000);
        QCOMPARE(m_fixture->errors.first().first().value<OperationShortfall>().outcome,
                 "Files added: 0 of 2."_s);
        QVERIFY(told.isEmpty());
        m_fixture->add(paths);
        QCOMPARE(told.size(), 1);
        QCOMPARE(told.first().first().toString(),
                 "The disk with \"%1\" does not answer, so nothing was added."_s.arg(paths.at(1)));
        QCOMPARE(Sql::count("files"_s), 0);
    }

    void commitThatFailsIsNoAdd()
    {
        if (m_fixture->isLocal())
            QSKIP("a server may look at rows as late as that");
        QVERIFY(static_cast<ServerDatabase &>(m_fixture->database())
                    .owner()
                    .run("CREATE FUNCTION late() RETURNS trigger LANGUAGE plpgsql AS "
                         "'BEGIN RAISE EXCEPTION ''no''; END'; CREATE CONSTRAINT TRIGGER late AFTER INSERT "
                         "ON files DEFERRABLE INITIALLY DEFERRED FOR EACH ROW EXECUTE FUNCTION late()"_s));
        m_fixture->add({m_fixture->write("a"_s, "same"), m_fixture->write("b"_s, "same")});
        QCOMPARE(m_fixture->errors.size(), 1);
        QCOMPARE(m_fixture->files.size(), 0);
        QVERIFY(m_fixture->duplicates().externalDuplicateGroups.isEmpty());
    }

    void lockedDatabaseTells()
    {
        if (!m_fixture->isLocal())
            QSKIP("a server's rows are locked, not the whole of it");
        QVERIFY(Sql::run("BEGIN EXCLUSIVE"));
        const QString path = m_fixture->write("a"_s, "a");
        FileOperationProvider &provider = m_fixture->provider();
        const auto connection = connect(&provider, &FileOperationProvider::startedFilesOperation, &provider,
                                        &FileOperationProvider::cancelOperations);
        QElapsedTimer waited;
        waited.start();
        m_fixture->add({path});
        QVERIFY2(waited.elapsed() < 2000, qPrintable(QString::number(waited.elapsed())));
        QCOMPARE(m_fixture->errors.size(), 1);
        const auto shortfall = m_fixture->errors.first().first().value<OperationShortfall>();
        QCOMPARE(shortfall.outcome, "Files added: 0 of 1."_s);
        QVERIFY(shortfall.errors.isEmpty());
        disconnect(connection);
        m_fixture->add({path});
        QCOMPARE(m_fixture->errors.size(), 1);
        QCOMPARE(m_fixture->files.size(), 0);
        QCOMPARE(m_fixture->finished.size(), 1);
        QVERIFY(Sql::run("ROLLBACK"));
    }

private:
    /** Drops a folder on the root of the tree. */
    void addTree(const QString &name) { m_fixture->add({m_fixture->path(name)}, {}, true, 0); }

    std::unique_ptr<AddingFixture> m_fixture;
};

QTEST_GUILESS_MAIN(TestAddFiles)
#include "tst_addfiles.moc"
