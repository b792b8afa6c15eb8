#include "app/addingsettings.h"
#include "fileops/blockstorage.h"
#include "fileops/datachecksum.h"
#include "fileops/sqlitefileoperationworker.h"
#include "tests/support/addingfixture.h"

#include <QSettings>
#include <QUrl>

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

const QString allFiles = QStringLiteral("SELECT file_name FROM files ORDER BY file_name");
const QString tree =
    QStringLiteral("SELECT c.child_id, c.parent_id, tag_name FROM tb_node_links c JOIN tb_nodes n "
                   "ON n.node_id=c.child_id NATURAL JOIN tags ORDER BY tag_name");

} // namespace

/** Draws each handle four times in turn. */
class RepeatingWorker : public SqliteFileOperationWorker
{
public:
    using SqliteFileOperationWorker::SqliteFileOperationWorker;
    QString drawIdCode() const override
    {
        return QStringLiteral("BCDF") + QString::number(200 + m_draws++ / 4);
    }

private:
    mutable int m_draws = 0;
};

class RepeatingProvider : public SqliteFileOperationProvider
{
public:
    using SqliteFileOperationProvider::SqliteFileOperationProvider;

protected:
    FileOperationWorker *createWorker(const QString &connectionName) override
    {
        return new RepeatingWorker(connectionName, details(), constructor());
    }
};

class TestAddFiles : public QObject
{
    Q_OBJECT

private slots:
    void folderBecomesTagsNodesAndFiles();
    void secondDropAddsNoNodes();
    void recursionLimit();
    void autoTaggingOff();
    void requestTagsJoinFolderTags();
    void externalRows();
    void internalContents_data();
    void internalContents();
    void hostileNames_data();
    void hostileNames();
    void linksAreNotFollowedBelow();
    void repeatedAndUncleanPaths();
    void specialFilesStayClosed();
    void contentsWithoutASize();
    void unreadableIsSkipped();
    void changedBetweenReadings();
    void hyperlinks();
    void vanishedFileIsNoHyperlink();
    void fileListAddsAsItStands();
    void copiesKeepAllTags();
    void matchedFileGetsTags();
    void nameMatchesStayOut();
    void usedIdCodesAreDrawnAgain();
    void failedFileLeavesTheOthers();
    void cancelRollsBack();
    void lockedDatabaseTells();
};

void TestAddFiles::folderBecomesTagsNodesAndFiles()
{
    AddingFixture fixture;
    fixture.write(QStringLiteral("music/a.txt"), "a");
    fixture.write(QStringLiteral("music/jazz/b.txt"), "b");
    fixture.write(QStringLiteral("music/empty/deep/c.txt"), "c");
    fixture.write(QStringLiteral("music/.hidden"), "h");
    QSignalSpy tags(&fixture.provider(), &FileOperationProvider::updateTags);
    QSignalSpy nodes(&fixture.provider(), &FileOperationProvider::updateNodes);
    QSignalSpy files(&fixture.provider(), &FileOperationProvider::updatedFiles);
    fixture.add({fixture.path(QStringLiteral("music"))}, {}, true, 0);

    QCOMPARE(fixture.taggedNames(),
             QStringList({QStringLiteral("a.txt: music"), QStringLiteral("b.txt: jazz,music"),
                          QStringLiteral("c.txt: deep,empty,music")}));
    const QHash<QString, QString> parents = {{QStringLiteral("music"), QString()},
                                             {QStringLiteral("jazz"), QStringLiteral("music")},
                                             {QStringLiteral("empty"), QStringLiteral("music")},
                                             {QStringLiteral("deep"), QStringLiteral("empty")}};
    QHash<QString, QString> nameOfNode;
    const QStringList rows = fixture.rows(tree);
    for (const QString &row : rows)
        nameOfNode.insert(row.section(QLatin1Char('|'), 0, 0), row.section(QLatin1Char('|'), 2));
    QCOMPARE(rows.size(), 4);
    for (const QString &row : rows)
        QCOMPARE(nameOfNode.value(row.section(QLatin1Char('|'), 1, 1)),
                 parents.value(row.section(QLatin1Char('|'), 2)));
    QCOMPARE(tags.value(0).value(0).value<QVector<qint64>>().size(), 4);
    QCOMPARE(nodes.value(0).value(0).value<QVector<qint64>>().size(), 4);
    QCOMPARE(files.value(0).value(0).value<QVector<qint64>>().size(), 3);
    QCOMPARE(fixture.rows(QStringLiteral("SELECT DISTINCT load_id, internal FROM files")),
             QStringList(QStringLiteral("1|0")));
    QCOMPARE(fixture.integrity(), QStringLiteral("ok"));
}

void TestAddFiles::secondDropAddsNoNodes()
{
    AddingFixture fixture;
    fixture.write(QStringLiteral("top/sub/a.txt"), "a");
    const QStringList dropped(fixture.path(QStringLiteral("top")));
    fixture.add(dropped, {}, true, 0);
    fixture.write(QStringLiteral("top/sub/b.txt"), "b");
    fixture.write(QStringLiteral("top/new/c.txt"), "c");
    QSignalSpy tags(&fixture.provider(), &FileOperationProvider::updateTags);
    QSignalSpy nodes(&fixture.provider(), &FileOperationProvider::updateNodes);
    fixture.add(dropped, {}, true, 0);

    QCOMPARE(fixture.count(QStringLiteral("tb_nodes")), 2);
    QCOMPARE(nodes.size(), 0);
    // Only what is new is told, though four names were asked for.
    QCOMPARE(tags.value(0).value(0).value<QVector<qint64>>().size(), 1);
    QCOMPARE(fixture.count(QStringLiteral("files")), 3);
}

void TestAddFiles::recursionLimit()
{
    AddingFixture fixture;
    set("autoTagRecursionLimitSet", true);
    set("autoTagRecursionLimit", 2);
    fixture.write(QStringLiteral("one/two/three/a.txt"), "a");
    fixture.add({fixture.path(QStringLiteral("one"))}, {}, true, 0);
    QCOMPARE(fixture.taggedNames(), QStringList(QStringLiteral("a.txt: one,two")));
    QCOMPARE(fixture.count(QStringLiteral("tags")), 2);
    QCOMPARE(fixture.count(QStringLiteral("tb_nodes")), 2);
}

void TestAddFiles::autoTaggingOff()
{
    AddingFixture fixture;
    set("autoTagging", false);
    fixture.write(QStringLiteral("one/two/a.txt"), "a");
    fixture.add({fixture.path(QStringLiteral("one"))}, {}, true, 0);
    QCOMPARE(fixture.taggedNames(), QStringList(QStringLiteral("a.txt: ")));
    QCOMPARE(fixture.count(QStringLiteral("tags")), 0);
    QCOMPARE(fixture.count(QStringLiteral("tb_nodes")), 0);
}

void TestAddFiles::requestTagsJoinFolderTags()
{
    AddingFixture fixture;
    fixture.run(QStringLiteral("INSERT INTO tags VALUES (7,'seven','',0,''),(8,'jazz','',0,'')"));
    fixture.write(QStringLiteral("jazz/a.txt"), "a");
    fixture.add({fixture.path(QStringLiteral("jazz"))}, {7, 8, 7}, true, 0);
    QCOMPARE(fixture.taggedNames(), QStringList(QStringLiteral("a.txt: jazz,seven")));
    QCOMPARE(fixture.count(QStringLiteral("tags")), 2);
}

void TestAddFiles::externalRows()
{
    AddingFixture fixture;
    const QString path = fixture.write(QStringLiteral(" spaced .txt"), "0123456789");
    struct stat status = {};
    QCOMPARE(::stat(QFile::encodeName(path).constData(), &status), 0);
    fixture.add({path});
    const QStringList row = fixture.rows(
        QStringLiteral("SELECT file_name,file_description,file_size,modification_date,data_checksum,"
                       "internal,thumbnail_id,length(id_code),path,rel_path FROM files JOIN "
                       "file_paths ON path_id=storage_id"));
    QCOMPARE(row, QStringList(QStringLiteral("spaced .txt||10|%1|%2|0|0|7|%3|in/ spaced .txt")
                                  .arg(status.st_mtim.tv_sec)
                                  .arg(DataChecksum::ofBytes("0123456789"))
                                  .arg(path)));
}

void TestAddFiles::internalContents_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<int>("blocks");
    QTest::newRow("empty") << qint64(0) << 0;
    QTest::newRow("one byte") << qint64(1) << 1;
    QTest::newRow("exactly one block") << BLOCK_SIZE << 1;
    QTest::newRow("one byte more than a block") << BLOCK_SIZE + 1 << 2;
}

void TestAddFiles::internalContents()
{
    QFETCH(qint64, size);
    QFETCH(int, blocks);
    for (const bool withDuplicates : {true, false}) {
        AddingFixture fixture;
        AddingSettings::setLinkToFiles(false);
        set("duplicateManagementEnabled", withDuplicates);
        QByteArray bytes(int(size), Qt::Uninitialized);
        for (int i = 0; i < bytes.size(); ++i)
            bytes[i] = char(i * 31 + i / 4093);
        fixture.add({fixture.write(QStringLiteral("f.bin"), bytes)});
        QCOMPARE(fixture.rows(QStringLiteral("SELECT file_size,data_checksum,internal FROM files")),
                 QStringList(QStringLiteral("%1|%2|1").arg(size).arg(DataChecksum::ofBytes(bytes))));
        QCOMPARE(fixture.count(QStringLiteral("storage")), blocks);
        QByteArray stored;
        QSqlQuery chain(QStringLiteral(
            "WITH RECURSIVE c(id) AS (SELECT storage_id FROM files UNION ALL SELECT continue_id FROM "
            "storage_info "
            "JOIN c ON storage_info.storage_id=c.id) SELECT data FROM c JOIN storage ON storage_id=c.id"));
        while (chain.next())
            stored += chain.value(0).toByteArray();
        QVERIFY(stored == bytes);
    }
}

void TestAddFiles::hostileNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("single quote") << QStringLiteral("O'Neil");
    QTest::newRow("two quotes") << QStringLiteral("''");
    QTest::newRow("double quote") << QStringLiteral("12\" disc");
    QTest::newRow("comment") << QStringLiteral("x\" --");
    QTest::newRow("statement") << QStringLiteral("'); DROP TABLE files; --");
    QTest::newRow("place holder") << QStringLiteral("100%1 %2 ? :FILE");
    QTest::newRow("newline") << QStringLiteral("two\nlines");
    QTest::newRow("emoji") << QString::fromUtf8("\xF0\x9F\x90\x98 cat\xC3\xA9");
    QTest::newRow("column name") << QStringLiteral("file_name");
    QTest::newRow("255 bytes") << QString(255, QLatin1Char('n'));
    QTest::newRow("backslash") << QStringLiteral("a\\b");
}

void TestAddFiles::hostileNames()
{
    QFETCH(QString, name);
    AddingFixture fixture;
    const QString path = fixture.write(name + QLatin1Char('/') + name, "hostile");
    QSignalSpy errors(&fixture.provider(), &FileOperationProvider::errorOccured);
    const QString folder = fixture.path(name);
    fixture.add({folder}, {}, true, 0);
    fixture.add({folder}, {}, true, 0);
    QCOMPARE(errors.size(), 0);
    QCOMPARE(fixture.taggedNames(), QStringList(name + QStringLiteral(": ") + name));
    QCOMPARE(fixture.rows(QStringLiteral("SELECT path FROM file_paths")), QStringList(path));
    QCOMPARE(fixture.rows(tree).value(0).section(QLatin1Char('|'), 2), name);
    QCOMPARE(fixture.duplicates().contentMatches.size(), 1);
}

void TestAddFiles::linksAreNotFollowedBelow()
{
    AddingFixture fixture;
    fixture.write(QStringLiteral("outside/o.txt"), "o");
    const QString inner = fixture.write(QStringLiteral("top/a.txt"), "a");
    const QString top = fixture.path(QStringLiteral("top"));
    QVERIFY(QFile::link(fixture.path(QStringLiteral("outside")), top + QStringLiteral("/other")));
    QVERIFY(QFile::link(top, top + QStringLiteral("/loop")));
    QVERIFY(QFile::link(inner, top + QStringLiteral("/filelink")));
    fixture.add({top}, {}, true, 0);
    QCOMPARE(fixture.rows(allFiles), QStringList(QStringLiteral("a.txt")));
    QCOMPARE(fixture.count(QStringLiteral("tags")), 1);
    // At the top a link is what it points to.
    fixture.add({top + QStringLiteral("/other")}, {}, true, 0);
    QCOMPARE(fixture.taggedNames(),
             QStringList({QStringLiteral("a.txt: top"), QStringLiteral("o.txt: other")}));
}

void TestAddFiles::repeatedAndUncleanPaths()
{
    AddingFixture fixture;
    set("duplicateManagementEnabled", false);
    const QString file = fixture.write(QStringLiteral("top/sub/a.txt"), "a");
    const QString top = fixture.path(QStringLiteral("top"));
    fixture.add({top + QStringLiteral("/sub/"), file, top, top + QStringLiteral("/./sub/../sub"),
                 top + QStringLiteral("/sub//a.txt")},
                {}, true, 0);
    QCOMPARE(fixture.rows(QStringLiteral("SELECT path FROM file_paths")), QStringList(file));
    QCOMPARE(fixture.taggedNames(), QStringList(QStringLiteral("a.txt: sub,top")));
    QCOMPARE(fixture.count(QStringLiteral("tb_nodes")), 2);
}

void TestAddFiles::specialFilesStayClosed()
{
    AddingFixture fixture;
    const QString top = fixture.path(QStringLiteral("top"));
    fixture.write(QStringLiteral("top/a.txt"), "a");
    const QString pipe = top + QStringLiteral("/pipe");
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    // Closing the database's own file would drop the locks of SQLite, so it is none of the files either.
    const QString database = fixture.databasePath();
    const QString otherName = top + QStringLiteral("/hard link.png");
    QCOMPARE(::link(QFile::encodeName(database).constData(), QFile::encodeName(otherName).constData()), 0);
    fixture.add({top, pipe, database, QStringLiteral("/dev/zero")});
    fixture.provider().addFilesList({pipe, database, QStringLiteral("/dev/zero")});
    fixture.wait();
    QCOMPARE(fixture.rows(allFiles), QStringList(QStringLiteral("a.txt")));
}

void TestAddFiles::contentsWithoutASize()
{
    AddingFixture fixture;
    AddingSettings::setLinkToFiles(false);
    QFile source(QStringLiteral("/proc/version"));
    QVERIFY(source.open(QIODevice::ReadOnly));
    const QByteArray bytes = source.readAll();
    fixture.add({source.fileName()});
    QCOMPARE(fixture.rows(QStringLiteral("SELECT file_size,data_checksum FROM files")),
             QStringList(QStringLiteral("%1|%2").arg(bytes.size()).arg(DataChecksum::ofBytes(bytes))));
    QCOMPARE(fixture.rows(QStringLiteral("SELECT CAST(data AS TEXT) FROM storage")),
             QStringList(QString::fromUtf8(bytes)));
}

void TestAddFiles::unreadableIsSkipped()
{
    if (::geteuid() == 0)
        QSKIP("the superuser may read everything");
    AddingFixture fixture;
    fixture.write(QStringLiteral("top/a.txt"), "a");
    const QString secret = fixture.write(QStringLiteral("top/secret.txt"), "s");
    fixture.write(QStringLiteral("top/closed/c.txt"), "c");
    const QString closed = fixture.path(QStringLiteral("top/closed"));
    QVERIFY(QFile::setPermissions(secret, QFile::Permissions()));
    QVERIFY(QFile::setPermissions(closed, QFile::Permissions()));
    fixture.add({fixture.path(QStringLiteral("top"))}, {}, true, 0);
    QFile::setPermissions(closed, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QCOMPARE(fixture.taggedNames(), QStringList(QStringLiteral("a.txt: top")));
    QCOMPARE(fixture.count(QStringLiteral("tags")), 1);
    QCOMPARE(fixture.duplicates().externalDuplicateGroups.size(), 0);
}

void TestAddFiles::changedBetweenReadings()
{
    AddingFixture fixture;
    const QString path = fixture.write(QStringLiteral("a.txt"), "first");
    // The last step of duplicate management comes between the two readings.
    QObject::connect(&fixture.provider(), &FileOperationProvider::filesOperationProgress, &fixture.provider(),
                     [&](const QString &, int percent) {
                         if (percent == 100)
                             fixture.write(QStringLiteral("a.txt"), "second");
                     });
    fixture.add({path});
    const QStringList row = fixture.rows(QStringLiteral("SELECT file_size, data_checksum FROM files"));
    const QStringList first(QStringLiteral("5|%1").arg(DataChecksum::ofBytes("first")));
    const QStringList second(QStringLiteral("6|%1").arg(DataChecksum::ofBytes("second")));
    QVERIFY2(row == first || row == second, qPrintable(row.join(QLatin1Char(' '))));
}

void TestAddFiles::hyperlinks()
{
    AddingFixture fixture;
    fixture.run(QStringLiteral("INSERT INTO tags VALUES (7,'seven','',0,''),(8,'eight','',0,'')"));
    const QString longLink = QStringLiteral("https://example.org/") + QString(300, QLatin1Char('x'));
    const QString quoted = QStringLiteral("https://example.org/?q='%1'");
    const QHash<QString, QString> details = {
        {QStringLiteral("file_description"), QStringLiteral("it's 100%1")}};
    fixture.add({quoted, longLink, quoted, QString()}, {7}, false, 0, details);
    QCOMPARE(sorted(fixture.taggedNames()),
             sorted({quoted + QStringLiteral(": seven"), longLink + QStringLiteral(": seven")}));
    QCOMPARE(fixture.rows(
                 QStringLiteral("SELECT DISTINCT internal,storage_id,file_size,file_description FROM files")),
             QStringList(QStringLiteral("2|0|0|it's 100%1")));
    QSignalSpy files(&fixture.provider(), &FileOperationProvider::updatedFiles);
    fixture.add({longLink}, {8});
    QCOMPARE(files.value(0).value(0).value<QVector<qint64>>().size(), 1);
    QVERIFY(fixture.taggedNames().contains(longLink + QStringLiteral(": eight,seven")));
    QCOMPARE(fixture.duplicates().contentMatches.size(), 1);
}

void TestAddFiles::vanishedFileIsNoHyperlink()
{
    AddingFixture fixture;
    for (const bool withDuplicates : {true, false}) {
        set("duplicateManagementEnabled", withDuplicates);
        const QString gone = fixture.path(QStringLiteral("gone.txt"));
        fixture.add({gone, QUrl::fromLocalFile(gone).toString()});
        fixture.provider().addFilesList({gone});
        fixture.wait();
    }
    QCOMPARE(fixture.count(QStringLiteral("files")), 0);
}

void TestAddFiles::fileListAddsAsItStands()
{
    AddingFixture fixture;
    const QString one = fixture.write(QStringLiteral("x/a.txt"), "same");
    const QString two = fixture.write(QStringLiteral("y/a.txt"), "same");
    fixture.provider().addFilesList({one, two, QStringLiteral("https://example.org")});
    fixture.wait();
    QCOMPARE(fixture.taggedNames(), QStringList({QStringLiteral("a.txt: "), QStringLiteral("a.txt: "),
                                                 QStringLiteral("https://example.org: ")}));
}

void TestAddFiles::copiesKeepAllTags()
{
    AddingFixture fixture;
    fixture.write(QStringLiteral("top/one/report.doc"), "same");
    fixture.write(QStringLiteral("top/two/Copy of report.doc"), "same");
    fixture.add({fixture.path(QStringLiteral("top"))}, {}, true, 0);
    QCOMPARE(fixture.taggedNames(), QStringList(QStringLiteral("report.doc: one,top,two")));
    QCOMPARE(fixture.duplicates().externalDuplicateGroups.size(), 1);
}

void TestAddFiles::matchedFileGetsTags()
{
    AddingFixture fixture;
    fixture.run(QStringLiteral("INSERT INTO tags VALUES (7,'node','',0,'')"));
    fixture.add({fixture.write(QStringLiteral("a.txt"), "same")}, {7});
    fixture.write(QStringLiteral("folder/b.txt"), "same");
    QSignalSpy files(&fixture.provider(), &FileOperationProvider::updatedFiles);
    fixture.add({fixture.path(QStringLiteral("folder"))}, {7});
    QCOMPARE(fixture.taggedNames(), QStringList(QStringLiteral("a.txt: folder,node")));
    QCOMPARE(files.value(0).value(0).value<QVector<qint64>>(), QVector<qint64>({1}));
    QCOMPARE(fixture.duplicates().contentMatches.value(0).databaseFiles.value(0).fileId, 1);
}

void TestAddFiles::nameMatchesStayOut()
{
    AddingFixture fixture;
    set("checkForNameDuplicates", true);
    set("listDuplicates", false);
    const QString one = fixture.write(QStringLiteral("x/a.txt"), "1");
    const QString two = fixture.write(QStringLiteral("y/a.txt"), "2");
    const QString alone = fixture.write(QStringLiteral("y/b.txt"), "3");
    fixture.add({one, two, alone});
    QCOMPARE(fixture.rows(allFiles), QStringList(QStringLiteral("b.txt")));
    QCOMPARE(fixture.duplicates().nameMatches.value(0).addedFiles.size(), 2);
    fixture.provider().addFilesList({one});
    fixture.wait();
    QCOMPARE(fixture.rows(allFiles), QStringList({QStringLiteral("a.txt"), QStringLiteral("b.txt")}));
}

void TestAddFiles::usedIdCodesAreDrawnAgain()
{
    AddingFixture fixture;
    for (int i = 0; i < 30; ++i)
        fixture.write(QStringLiteral("top/%1.txt").arg(i), QByteArray::number(i));
    const SqliteQueryConstructor constructor;
    RepeatingProvider provider(&constructor, DBDetails::local(fixture.databasePath()), nullptr);
    QSignalSpy errors(&provider, &FileOperationProvider::errorOccured);
    QSignalSpy finished(&provider, &FileOperationProvider::finishedFilesOperation);
    provider.addFiles({fixture.path(QStringLiteral("top"))}, {}, false, 0);
    QTRY_COMPARE(finished.size(), 1);
    QCOMPARE(fixture.rows(QStringLiteral("SELECT count(*), count(DISTINCT id_code) FROM files")),
             QStringList(QStringLiteral("30|30")));
    QCOMPARE(fixture.count(QStringLiteral("file_paths")), 30);
    QCOMPARE(errors.size(), 0);
}

void TestAddFiles::failedFileLeavesTheOthers()
{
    AddingFixture fixture;
    fixture.run(
        QStringLiteral("CREATE TRIGGER refuse BEFORE INSERT ON file_paths WHEN new.path LIKE '%bad%' BEGIN "
                       "SELECT raise(ABORT, 'refused'); END"));
    for (int i = 0; i < 100; ++i)
        fixture.write(QStringLiteral("top/%1%2").arg(i == 50 ? QStringLiteral("bad") : QString()).arg(i),
                      QByteArray::number(i));
    QSignalSpy errors(&fixture.provider(), &FileOperationProvider::errorOccured);
    fixture.add({fixture.path(QStringLiteral("top"))});
    QCOMPARE(fixture.count(QStringLiteral("files")), 99);
    QCOMPARE(fixture.count(QStringLiteral("file_paths")), 99);
    QCOMPARE(fixture.count(QStringLiteral("file_tag")), 99);
    QCOMPARE(errors.size(), 1);
}

void TestAddFiles::cancelRollsBack()
{
    AddingFixture fixture;
    for (int i = 0; i < 3000; ++i)
        fixture.write(QStringLiteral("top/%1").arg(i), QByteArray::number(i));
    QSignalSpy files(&fixture.provider(), &FileOperationProvider::updatedFiles);
    QSignalSpy tags(&fixture.provider(), &FileOperationProvider::updateTags);
    QSignalSpy finished(&fixture.provider(), &FileOperationProvider::finishedFilesOperation);
    QObject::connect(&fixture.provider(), &FileOperationProvider::filesOperationProgress, &fixture.provider(),
                     [&](const QString &text, int) {
                         if (text.startsWith(QLatin1String("Adding ")))
                             fixture.provider().cancelOperations();
                     });
    fixture.add({fixture.path(QStringLiteral("top"))}, {}, true, 0);
    QCOMPARE(finished.size(), 1);
    if (!files.isEmpty())
        QSKIP("the add was over before the cancel arrived");
    for (const char *table : {"files", "file_paths", "file_tag", "tags", "tb_nodes", "tb_node_links"})
        QCOMPARE(fixture.count(QLatin1String(table)), 0);
    QCOMPARE(tags.size(), 0);
    QCOMPARE(fixture.integrity(), QStringLiteral("ok"));
    // The next add is not hurt by the flag of the last.
    QObject::disconnect(&fixture.provider(), &FileOperationProvider::filesOperationProgress, nullptr,
                        nullptr);
    fixture.add({fixture.path(QStringLiteral("top/1"))});
    QCOMPARE(fixture.count(QStringLiteral("files")), 1);
}

void TestAddFiles::lockedDatabaseTells()
{
    AddingFixture fixture;
    QVERIFY(fixture.run(QStringLiteral("BEGIN EXCLUSIVE")));
    QSignalSpy errors(&fixture.provider(), &FileOperationProvider::errorOccured);
    QSignalSpy files(&fixture.provider(), &FileOperationProvider::updatedFiles);
    QSignalSpy finished(&fixture.provider(), &FileOperationProvider::finishedFilesOperation);
    fixture.add({fixture.write(QStringLiteral("a.txt"), "a")});
    QCOMPARE(errors.size(), 1);
    QCOMPARE(files.size(), 0);
    QCOMPARE(finished.size(), 1);
    QVERIFY(fixture.run(QStringLiteral("ROLLBACK")));
    QCOMPARE(fixture.count(QStringLiteral("files")), 0);
}

QTEST_GUILESS_MAIN(TestAddFiles)
#include "tst_addfiles.moc"
