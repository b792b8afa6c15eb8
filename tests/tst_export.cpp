#include "fileops/exporting/relationshippaths.h"
#include "tests/support/exchangelibrary.h"
#include "tests/support/exportfixture.h"

#include <QStorageInfo>

namespace {

constexpr auto allTables = "files file_paths thumbnails file_tag storage storage_info tags tag_group_links "
                           "tag_groups tb_node_links tb_nodes tag_relationships";

/** How many rows of either table the other one does not have. */
int differences(const QString &one, const QString &other)
{
    const QString rows = "SELECT count(*) FROM (SELECT * FROM %1 EXCEPT SELECT * FROM %2)"_s;
    return Sql::rows(rows.arg(one, other)).value(0).toInt() +
           Sql::rows(rows.arg(other, one)).value(0).toInt() + std::abs(Sql::count(one) - Sql::count(other));
}

QSet<qint64> idsIn(const QString &query)
{
    QSet<qint64> ids;
    for (const QString &row : Sql::rows(query))
        ids.insert(row.toLongLong());
    return ids;
}

/** The links between kept nodes, found by walking up from each of them. */
QStringList keptNodeLinks(const QSet<qint64> &tags)
{
    QMap<qint64, qint64> parents;
    for (const QString &row : Sql::rows("SELECT child_id, parent_id FROM main.tb_node_links"))
        parents.insert(row.section(QLatin1Char('|'), 0, 0).toLongLong(),
                       row.section(QLatin1Char('|'), 1).toLongLong());
    QSet<qint64> kept;
    for (auto node = parents.cbegin(); node != parents.cend(); ++node) {
        if (tags.contains(Sql::rows("SELECT tag_id FROM main.tb_nodes WHERE node_id=%1"_s.arg(node.key()))
                              .value(0)
                              .toLongLong()))
            kept.insert(node.key());
    }
    QStringList links;
    for (auto node = parents.cbegin(); node != parents.cend(); ++node) {
        qint64 parent = node.value();
        while (parent != 0 && !kept.contains(parent))
            parent = parents.value(parent);
        if (kept.contains(node.key()))
            links.append("%1|%2"_s.arg(parent).arg(node.key()));
    }
    links.sort();
    return links;
}

QStringList keptRelationships(const QSet<qint64> &tags)
{
    QSet<QString> kept;
    for (const QString &path : Sql::rows("SELECT relationship_path FROM main.tag_relationships")) {
        QStringList parts = path.split(QLatin1Char('.'));
        if (!tags.contains(parts.last().toLongLong()))
            continue;
        const auto isLost = [&tags](const QString &part) { return !tags.contains(part.toLongLong()); };
        parts.erase(std::remove_if(parts.begin(), parts.end(), isLost), parts.end());
        for (; !parts.isEmpty(); parts.removeLast())
            kept.insert(parts.join(QLatin1Char('.')));
    }
    QStringList paths(kept.cbegin(), kept.cend());
    paths.sort();
    return paths;
}

} // namespace

/** Parts of a local database as another one, as a shell and as a table. */
class TestExport : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_fixture = std::make_unique<ExportFixture>(); }
    void cleanup() { m_fixture.reset(); }

    void wholeIsTheSame_data()
    {
        addColumns<quint32>("seed");
        for (quint32 seed = 1; seed <= 4; ++seed)
            QTest::addRow("%u", seed) << seed;
    }

    void wholeIsTheSame()
    {
        QFETCH(quint32, seed);
        ExchangeLibrary library(seed);
        library.fill();
        ExportRequest request = m_fixture->requestOf("SELECT file_id FROM files");
        for (int tag = library.tags; tag > 0; --tag)
            request.tagIds.append(tag);
        QVERIFY(m_fixture->run(request));
        QCOMPARE(
            m_fixture->words,
            QStringList("Exported to \"%1\".\nFiles: %2, tags: %3, browsing nodes: %4"_s.arg(request.path)
                            .arg(library.files)
                            .arg(library.tags)
                            .arg(library.nodes)));
        QVERIFY(attach(request.path));
        // Groups without tags and links of no tag are left behind.
        Sql::run(
            "DELETE FROM tag_groups WHERE tag_group_id NOT IN (SELECT tag_group_id FROM tag_group_links)"_s);
        for (const QString &table : QString::fromLatin1(allTables).split(QLatin1Char(' '))) {
            QVERIFY2(differences("main."_s + table, "other."_s + table) == 0, qPrintable(table));
        }
        QCOMPARE(Sql::value("PRAGMA other.integrity_check"), "ok"_s);
        QCOMPARE(Sql::value("PRAGMA other.page_size"), "16384"_s);
        QCOMPARE(Sql::rows("SELECT name, sql FROM other.sqlite_master ORDER BY 1"),
                 Sql::rows("SELECT name, sql FROM main.sqlite_master ORDER BY 1"));
        QCOMPARE(Sql::rows("SELECT * FROM other.scheme_version"), Sql::rows("SELECT * FROM scheme_version"));
    }

    void partHasWhatBelongsToIt_data()
    {
        addColumns<quint32, bool>("seed", "hasAllTags");
        for (quint32 seed = 1; seed <= 6; ++seed)
            QTest::addRow("%u", seed) << seed << (seed % 2 == 0);
    }

    void partHasWhatBelongsToIt()
    {
        QFETCH(quint32, seed);
        QFETCH(bool, hasAllTags);
        ExchangeLibrary library(seed);
        library.tags = 30;
        library.nodes = 200;
        library.relationships = 200;
        library.fill();
        ExportRequest request = m_fixture->requestOf("SELECT file_id FROM files WHERE file_id%7=0");
        request.tagIds = {2, 3, 5, 7, 11};
        request.addAllTagsOfFiles = hasAllTags;
        if (hasAllTags)
            request.fileIds.resize(2);
        QVERIFY(m_fixture->run(request));
        QVERIFY(attach(request.path));
        const QSet<qint64> files(request.fileIds.cbegin(), request.fileIds.cend());
        const QSet<qint64> tags = idsIn("SELECT tag_id FROM other.tags"_s);
        QSet<qint64> wanted(request.tagIds.cbegin(), request.tagIds.cend());
        if (hasAllTags)
            wanted += idsIn("SELECT tag_id FROM file_tag WHERE file_id IN (7, 14)"_s);
        QCOMPARE(tags, wanted);
        QCOMPARE(idsIn("SELECT file_id FROM other.files"_s), files);
        const QString isKept = " WHERE file_id IN (SELECT file_id FROM other.files) "
                               "AND tag_id IN (SELECT tag_id FROM other.tags)"_s;
        QCOMPARE(Sql::rows("SELECT * FROM other.file_tag ORDER BY 1, 2"_s),
                 Sql::rows("SELECT * FROM main.file_tag"_s + isKept + " ORDER BY 1, 2"_s));
        QStringList links = Sql::rows("SELECT parent_id, child_id FROM other.tb_node_links"_s);
        links.sort();
        QCOMPARE(links, keptNodeLinks(tags));
        QStringList paths = Sql::rows("SELECT relationship_path FROM other.tag_relationships"_s);
        paths.sort();
        QCOMPARE(paths, keptRelationships(tags));
        QCOMPARE(
            Sql::rows("SELECT * FROM other.tag_group_links ORDER BY 1, 2"_s),
            Sql::rows("SELECT * FROM main.tag_group_links WHERE tag_id IN (SELECT tag_id FROM other.tags) "
                      "ORDER BY 1, 2"_s));
        QCOMPARE(Sql::count("other.tb_nodes"_s), links.size());
    }

    void optionsAreHeeded_data()
    {
        addColumns<int, bool, bool, bool>("form", "descriptions", "groups", "relationships");
        addRow("database with nothing beside", int(ExportRequest::Database), false, false, false);
        addRow("database with groups", int(ExportRequest::Database), false, true, false);
        addRow("shell with descriptions", int(ExportRequest::Shell), true, false, false);
        addRow("shell with relationships", int(ExportRequest::Shell), false, false, true);
    }

    void optionsAreHeeded()
    {
        QFETCH(int, form);
        QFETCH(bool, descriptions);
        QFETCH(bool, groups);
        QFETCH(bool, relationships);
        ExchangeLibrary(5).fill();
        ExportRequest request = m_fixture->requestOf("SELECT file_id FROM files");
        request.addAllTagsOfFiles = true;
        request.form = form;
        request.exportDescriptions = descriptions;
        request.exportTagGroups = groups;
        request.exportTagRelationships = relationships;
        QVERIFY(m_fixture->run(request));
        QVERIFY(attach(request.path));
        QCOMPARE(Sql::count("other.files WHERE file_description<>''"_s) > 0, descriptions);
        QCOMPARE(Sql::count("other.tag_groups"_s) > 0, groups);
        QCOMPARE(Sql::count("other.tag_group_links"_s) > 0, groups);
        QCOMPARE(Sql::count("other.tag_relationships"_s) > 0, relationships);
        QCOMPARE(differences("main.file_paths"_s, "other.file_paths"_s), 0);
        QCOMPARE(differences("main.file_tag"_s, "other.file_tag"_s), 0);
        const int contents =
            Sql::count("other.sqlite_master WHERE name IN ('storage','storage_info','thumbnails')"_s);
        QCOMPARE(contents, form == ExportRequest::Shell ? 0 : 3);
        // By which a desktop tells the two apart.
        QCOMPARE(Sql::value("PRAGMA other.application_id").toInt(),
                 form == ExportRequest::Shell ? 0x56726E73 : 0x56726E61);
        QCOMPARE(Sql::rows("SELECT thumbnail_id, storage_id, data_checksum FROM other.files"_s),
                 Sql::rows("SELECT thumbnail_id, storage_id, data_checksum FROM main.files"_s));
    }

    void damagedFilesStayBehind_data()
    {
        addColumns<QString, bool>("damage", "staysBehind");
        addRow("chain into itself", "UPDATE storage_info SET continue_id=1 WHERE storage_id=3"_s, true);
        addRow("chain into another one", "UPDATE storage_info SET continue_id=10 WHERE storage_id=3"_s,
               false);
        addRow("chain without its end", "DELETE FROM storage_info WHERE storage_id=3"_s, true);
        addRow("block without bytes", "DELETE FROM storage WHERE storage_id=2"_s, true);
        addRow("text for a number", "UPDATE storage_info SET continue_id='x' WHERE storage_id=3"_s, true);
        addRow("no number", "UPDATE storage_info SET continue_id=NULL WHERE storage_id=3"_s, false);
        addRow("fewer bytes than its size", "UPDATE storage SET data='b' WHERE storage_id=2"_s, true);
        addRow("no bytes at all", "UPDATE storage SET data=NULL WHERE storage_id=2"_s, true);
        addRow("size in too few bits", "UPDATE files SET file_size=-15 WHERE file_id=1234"_s, false);
        addRow("negative number", "UPDATE storage_info SET continue_id=-1 WHERE storage_id=3"_s, false);
    }

    void damagedFilesStayBehind()
    {
        QFETCH(QString, damage);
        QFETCH(bool, staysBehind);
        m_fixture->database.addFiles(2000);
        QVERIFY(Sql::run("UPDATE files SET internal=0, storage_id=0"_s));
        for (int block = 1; block <= 3; ++block)
            m_fixture->database.addBlock(block, block < 3 ? block + 1 : 0, "bytes");
        m_fixture->database.addBlock(10, 0, "other");
        QVERIFY(Sql::run("UPDATE files SET internal=1, file_size=15, storage_id=1 WHERE file_id=1234"_s));
        QVERIFY(Sql::run("UPDATE files SET internal=1, file_size=5, storage_id=10 WHERE file_id=1236"_s));
        QVERIFY(Sql::run("UPDATE files SET internal=1, file_size=0, storage_id=3 WHERE file_id=1238"_s));
        QVERIFY(Sql::run(damage));
        const ExportRequest request = m_fixture->requestOf("SELECT file_id FROM files");
        QVERIFY(m_fixture->run(request));
        QCOMPARE(m_fixture->words.size(), 1);
        QCOMPARE(m_fixture->words.first().contains("f1234 (c1234)"_s), staysBehind);
        QVERIFY(attach(request.path));
        QCOMPARE(Sql::rows("SELECT file_id FROM main.files EXCEPT SELECT file_id FROM other.files"_s),
                 staysBehind ? QStringList("1234"_s) : QStringList());
        QCOMPARE(Sql::count("other.storage"_s), staysBehind ? 1 : 4);
        QCOMPARE(Sql::count("other.storage_info"_s), staysBehind ? 1 : 4);
    }

    void treesThatLeadBackEnd_data()
    {
        addColumns<QString, QString>("links", "kept");
        addRow("gap into itself", "(3,2),(2,3),(2,1)"_s, "0|1"_s);
        addRow("kept node below its own gap", "(1,2),(2,1)"_s, "0|1"_s);
        addRow("kept node below itself", "(1,1)"_s, "0|1"_s);
        addRow("no link at all", "(0,2)"_s, "0|1"_s);
        addRow("parent that is gone", "(77,1)"_s, "0|1"_s);
        addRow("two parents", "(3,1),(2,1)"_s, "0|1"_s);
    }

    void treesThatLeadBackEnd()
    {
        QFETCH(QString, links);
        m_fixture->database.addTags(2);
        // A key of a database from elsewhere may be none.
        Sql::run("DROP TABLE tb_node_links"_s);
        Sql::run("CREATE TABLE tb_node_links (parent_id, child_id)"_s);
        QVERIFY(Sql::run("INSERT INTO tb_nodes VALUES (1,1,0,0),(2,2,0,0),(3,2,0,0)"_s));
        QVERIFY(Sql::run("INSERT INTO tb_node_links VALUES "_s + links));
        ExportRequest request = m_fixture->requestOf("SELECT file_id FROM files");
        request.tagIds = {1};
        QVERIFY(m_fixture->run(request));
        QVERIFY(attach(request.path));
        QTEST(Sql::value("SELECT parent_id, child_id FROM other.tb_node_links"), "kept");
    }

    void pathsAreCutDownToTheirTags_data()
    {
        addColumns<QString, QString, int>("path", "kept", "leftOut");
        addRow("a tag stays behind", "1.9.2"_s, "1 1.2"_s, 0);
        addRow("the last one does", "1.2.9"_s, ""_s, 0);
        addRow("deepest", "9."_s.repeated(998) + "1.2"_s, "1 1.2"_s, 0);
        addRow("too deep", "9."_s.repeated(999) + "1.2"_s, ""_s, 1);
        addRow("longest", "0"_s.repeated(19999) + "2"_s, "2"_s, 0);
        addRow("too long", "0"_s.repeated(20000) + "2"_s, ""_s, 1);
    }

    void pathsAreCutDownToTheirTags()
    {
        QFETCH(QString, path);
        const QSet<qint64> tagIds{1, 2};
        RelationshipPaths paths(tagIds);
        paths.add(path);
        QStringList kept(paths.paths().cbegin(), paths.paths().cend());
        kept.sort();
        QTEST(kept.join(QLatin1Char(' ')), "kept");
        QTEST(paths.leftOut(), "leftOut");
    }

    void rowsThatCannotBeReadStayBehind_data()
    {
        addColumns<QString, QString>("table", "left");
        addRow("tag", "tags"_s, "1 3 / 7 8 / 1 3 / 1 1.3 / 5 6"_s);
        addRow("tag group", "tag_groups"_s, "1 2 3 / 8 / 1 2 3 / 1 1.2 1.2.3 / 5 6"_s);
        addRow("contents", "storage"_s, "1 2 3 / 7 8 / 1 2 3 / 1 1.2 1.2.3 / 6"_s);
    }

    void rowsThatCannotBeReadStayBehind()
    {
        QFETCH(QString, table);
        m_fixture->database.addTags(3);
        Sql::run("INSERT INTO tag_groups VALUES (7,'seven'),(8,'eight')"_s);
        Sql::run("INSERT INTO tag_group_links VALUES (1,7),(2,7),(3,8)"_s);
        Sql::run("INSERT INTO tb_nodes VALUES (1,1,0,0),(2,2,0,0),(3,3,0,0)"_s);
        Sql::run("INSERT INTO tb_node_links VALUES (0,1),(1,2),(2,3)"_s);
        Sql::run("INSERT INTO tag_relationships VALUES ('1'),('1.2'),('1.2.3')"_s);
        const QString text = ExportFixture::longText();
        m_fixture->database.addFiles(6);
        Sql::run("DELETE FROM files WHERE file_id<5"_s);
        Sql::run("UPDATE files SET internal=1, file_size=6, storage_id=file_id WHERE file_id>4"_s);
        m_fixture->database.addBlock(5, 0, "five..");
        m_fixture->database.addBlock(6, 0, "sixsix");
        Sql::run(table == "storage"_s
                     ? "UPDATE storage SET data=CAST(%1 AS BLOB) WHERE storage_id=5"_s.arg(text)
                 : table == "tags"_s ? "UPDATE tags SET tag_description=%1 WHERE tag_id=2"_s.arg(text)
                                     : "UPDATE tag_groups SET name=%1 WHERE tag_group_id=7"_s.arg(text));
        QVERIFY(m_fixture->spoil());
        ExportRequest request = m_fixture->requestOf("SELECT file_id FROM files");
        request.tagIds = {1, 2, 3};
        request.exportTagGroups = true;
        request.exportTagRelationships = true;
        QVERIFY(m_fixture->run(request));
        QVERIFY2(m_fixture->words.value(0).contains("Not exported: 1. Their pages"_s),
                 qPrintable(m_fixture->words.value(0)));
        QVERIFY(attach(request.path));
        QStringList left;
        for (const char *column :
             {"tag_id FROM other.tags", "tag_group_id FROM other.tag_groups", "node_id FROM other.tb_nodes",
              "relationship_path FROM other.tag_relationships", "file_id FROM other.files"})
            left.append(
                Sql::rows("SELECT %1 ORDER BY 1"_s.arg(QLatin1String(column))).join(QLatin1Char(' ')));
        QTEST(left.join(" / "_s), "left");
    }

    void failureLeavesTheTargetAlone_data()
    {
        addColumns<QString, int, bool>("trouble", "form", "hadTarget");
        for (const char *trouble : {"cancel", "lock", "full disk", "table gone"}) {
            for (const int form : {int(ExportRequest::Database), int(ExportRequest::Csv)}) {
                for (const bool hadTarget : {false, true})
                    QTest::addRow("%s, form %d, %s", trouble, form, hadTarget ? "over another" : "new")
                        << QString::fromLatin1(trouble) << form << hadTarget;
            }
        }
    }

    void failureLeavesTheTargetAlone()
    {
        QFETCH(QString, trouble);
        QFETCH(int, form);
        QFETCH(bool, hadTarget);
        QString folder = m_fixture->database.folder() + "/out"_s;
        if (trouble == "full disk"_s) {
            folder = QString::fromLocal8Bit(qgetenv("VORNA_SMALL_DISK"));
            if (folder.isEmpty() || QStorageInfo(folder).bytesAvailable() > 200 << 20)
                QSKIP("VORNA_SMALL_DISK names no folder, or one with too much room.");
            folder += "/out"_s;
        }
        QVERIFY(QDir().mkpath(folder));
        m_fixture->database.addFiles(3000);
        if (trouble == "full disk"_s)
            QVERIFY(Sql::run("UPDATE files SET file_name=hex(randomblob(8000))"_s));
        ExportRequest request = m_fixture->requestOf("SELECT file_id FROM files");
        request.form = form;
        request.path = folder + (form == ExportRequest::Csv ? "/x.csv"_s : "/x.vrn"_s);
        QFile target(request.path);
        if (hadTarget)
            QVERIFY(target.open(QIODevice::WriteOnly) && target.write("old") == 3);
        target.close();
        const QByteArray before = hadTarget ? "old" : "";

        if (trouble == "cancel"_s)
            connect(
                &m_fixture->worker(), &FileOperationWorker::operationProgress, &m_fixture->worker(),
                [this] { m_fixture->worker().cancel(); }, Qt::DirectConnection);
        if (trouble == "table gone"_s)
            QVERIFY(Sql::run(form == ExportRequest::Csv ? "DROP TABLE file_tag"_s : "DROP TABLE tb_nodes"_s));
        OtherConnection other(m_fixture->database.path());
        if (trouble == "lock"_s)
            QVERIFY(other.run("BEGIN EXCLUSIVE"_s));
        QVERIFY(m_fixture->run(request));
        QCOMPARE(m_fixture->words.size(), 1);
        QVERIFY2(m_fixture->words.first().contains(trouble == "cancel"_s ? "canceled"_s
                                                                         : "Nothing was exported"_s),
                 qPrintable(m_fixture->words.first()));
        QCOMPARE(TestFolder::read(request.path), before);
        QCOMPARE(QDir(folder).entryList(QDir::Files | QDir::Hidden).size(), hadTarget ? 1 : 0);
        QVERIFY(QDir(folder).removeRecursively());
    }

    void targetIsReplacedWhole()
    {
        m_fixture->database.addFiles(10);
        ExportRequest request = m_fixture->requestOf("SELECT file_id FROM files");
        m_fixture->database.write("export.vrn"_s, QByteArray(1 << 20, 'x'));
        const QString leftover = m_fixture->database.write(".vorna-7.part"_s, "of a run that broke off");
        QVERIFY(m_fixture->run(request));
        QVERIFY(attach(request.path));
        QCOMPARE(Sql::count("other.files"_s), 10);
        QVERIFY(!QFile::exists(leftover));
    }

    void targetThatCannotBeIsRefused_data()
    {
        addColumns<QString>("target");
        addRow("no such folder", "no/x.vrn"_s);
        addRow("a folder", "folder.vrn"_s);
        addRow("in use", "used.vrn"_s);
        addRow("name too long", QString(300, QLatin1Char('x')));
    }

    void targetThatCannotBeIsRefused()
    {
        QFETCH(QString, target);
        QDir(m_fixture->database.folder()).mkdir("folder.vrn"_s);
        m_fixture->database.write("used.vrn-journal"_s, "x");
        ExportRequest request;
        request.path = m_fixture->database.filePath(target);
        ExportTarget place;
        const std::shared_ptr<PartFile> made = place.make(request);
        if (made)
            m_fixture->provider().exportDatabase(request, made); // a name that only the disk refuses
        else
            QVERIFY(!place.refusal().isEmpty());
        if (made)
            QTRY_VERIFY(m_fixture->words.value(0).contains("Nothing was exported"_s));
        QTRY_COMPARE(QDir(m_fixture->database.folder()).entryList({".vorna*"_s}, QDir::Files | QDir::Hidden),
                     QStringList());
    }

private:
    static bool attach(const QString &path)
    {
        QSqlQuery query;
        query.prepare("ATTACH ? AS other"_s);
        query.addBindValue(path);
        return query.exec();
    }

    std::unique_ptr<ExportFixture> m_fixture;
};

QTEST_GUILESS_MAIN(TestExport)
#include "tst_export.moc"
