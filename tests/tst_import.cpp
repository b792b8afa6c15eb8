#include "fileops/files/datachecksum.h"
#include "tests/support/addingfixture.h"

Q_DECLARE_METATYPE(ImportOptions)

/**
 * Merging another local database or a shell into the open one: what comes over, what is the same on both
 * sides, and sources that are not what they should be.
 */
class TestImport : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_fixture = std::make_unique<AddingFixture>();
        m_source = std::make_unique<OtherConnection>(sourcePath(), "source"_s);
        runInSource({"PRAGMA synchronous=OFF"_s, "BEGIN"_s});
        for (const QString &statement : Schema::creationStatements())
            runInSource({statement});
        runInSource({"COMMIT"_s});
    }

    void cleanup()
    {
        m_source.reset();
        m_fixture.reset();
    }

    void merges_data()
    {
        addColumns<QString, QString, QString, QString>("here", "source", "query", "expected");
        const QString tags = "INSERT INTO tags VALUES (%1,'%2','',5,'me');"_s;
        const QString tagNames = "SELECT tag_id, tag_name FROM tags ORDER BY 1"_s;
        addRow("tag of the same name", tags.arg(1).arg("a"_s),
               tags.arg(7).arg("a"_s) + tags.arg(8).arg("b"_s), tagNames, "1|a 2|b"_s);
        addRow("tag with SQL in all its texts", ""_s,
               "INSERT INTO tags VALUES (3,'x''); DROP TABLE tags;--\"','%1 '' \"',5,'\"');"_s,
               "SELECT tag_name, tag_description, created_by FROM tags"_s,
               "x'); DROP TABLE tags;--\"|%1 ' \"|\""_s);
        addRow(
            "tags of one name, without a name, with no number for a date", ""_s,
            tags.arg(1).arg("a"_s) + tags.arg(2).arg("a"_s) + tags.arg(3).arg(" "_s) +
                "INSERT INTO tags VALUES (4,'c','','soon',NULL),(6,'d','',x'2b3132',NULL); INSERT INTO tags VALUES (5,NULL,'',5,NULL);"_s,
            tagNames, "1|a"_s);
        const QString twoTags = tags.arg(1).arg("a"_s) + tags.arg(2).arg("b"_s);
        addRow(
            "groups",
            twoTags + "INSERT INTO tag_groups VALUES (4,'G'); INSERT INTO tag_group_links VALUES (1,4);"_s,
            tags.arg(5).arg("b"_s) + tags.arg(6).arg("a"_s) +
                "INSERT INTO tag_groups VALUES (1,'G'),(2,'H'),(3,'empty'),(4,'');"
                "INSERT INTO tag_group_links VALUES (5,1),(6,1),(5,2),(99,2),(5,4);"_s,
            "SELECT name, tag_name FROM tag_groups NATURAL JOIN tag_group_links NATURAL JOIN tags ORDER BY 1,2"_s,
            "G|a G|b H|b"_s);

        const QString nodes = "SELECT parent_id, child_id, tag_id, tr_options, inverted FROM tb_node_links "
                              "JOIN tb_nodes ON node_id=child_id ORDER BY 2"_s;
        const QString tree = "INSERT INTO tb_nodes VALUES (1,1,1,0),(2,2,0,1),(3,2,1,0);"
                             "INSERT INTO tb_node_links VALUES (0,1),(1,2),(0,3);"_s;
        addRow("nodes", ""_s, twoTags + tree, nodes, "0|1|1|1|0 0|2|2|1|0 1|3|2|0|1"_s);
        addRow("nodes that are there", twoTags + tree, twoTags + tree, nodes,
               "0|1|1|1|0 1|2|2|0|1 0|3|2|1|0"_s);
        addRow("a node twice under one parent", twoTags + tree,
               twoTags + tree +
                   "INSERT INTO tb_nodes VALUES (9,2,1,0); INSERT INTO tb_node_links VALUES (0,9);"_s,
               nodes, "0|1|1|1|0 1|2|2|0|1 0|3|2|1|0 0|4|2|1|0"_s);
        addRow("nodes below one that has no tag, and in a circle", ""_s,
               tags.arg(1).arg("a"_s) +
                   "INSERT INTO tb_nodes VALUES (1,77,1,0),(2,1,1,0),(3,1,1,0),(4,1,1,0),(5,1,'x',0);"
                   "INSERT INTO tb_node_links VALUES (0,1),(1,2),(4,3),(3,4),(5,5);"_s,
               nodes, "0|1|1|1|0 0|2|1|1|0 2|3|1|1|0"_s);

        const QString paths = "SELECT relationship_path FROM tag_relationships ORDER BY 1"_s;
        const QString fourTags = twoTags + tags.arg(3).arg("c"_s) + tags.arg(4).arg("d"_s);
        const auto path = [](const QString &list) {
            QString statements;
            for (const QString &text : list.split(QLatin1Char(' ')))
                statements += "INSERT INTO tag_relationships VALUES ('%1');"_s.arg(text);
            return statements;
        };
        addRow("relationships with other ids", tags.arg(1).arg("z"_s), fourTags + path("1 1.2 1.2.3 4"_s),
               paths, "2 2.3 2.3.4 5"_s);
        addRow("relationships with a prefix missing", ""_s, fourTags + path("1.2.3"_s), paths,
               "1 1.2 1.2.3"_s);
        addRow("relationships that are there", fourTags + path("1 1.2 2"_s), fourTags + path("1 1.2 2"_s),
               paths, "1 1.2 2"_s);
        addRow("a tree whose trunk stands elsewhere", fourTags + path("1 1.2"_s), fourTags + path("2 2.3"_s),
               paths, "1 1.2 1.2.3"_s);
        addRow("a tree whose trunk stands at two places", fourTags + path("1 1.2 4 4.2"_s),
               fourTags + path("2 2.3"_s), paths, "1 1.2 1.2.3 4 4.2 4.2.3"_s);
        addRow("a tag that gets a new place with what it has below it", fourTags + path("1 1.2 1.2.4 4"_s),
               fourTags + path("3 3.1 4 4.2"_s), paths, "1 1.2 1.2.4 3 3.1 3.1.2 3.1.2.4 4 4.2"_s);
        addRow("circles, also over both sides, and no paths", fourTags + path("1 1.2"_s),
               fourTags + path("2 2.1 3 3.4.3 x 1..2 4.99 99.4"_s), paths, "1 1.2 3 4"_s);
    }

    void merges()
    {
        QFETCH(QString, here);
        QFETCH(QString, source);
        QFETCH(QString, query);
        runScript(here, QString());
        runScript(source, "source"_s);
        import();
        QTEST(Sql::rows(query).join(QLatin1Char(' ')), "expected");
        // A second time, there is nothing new.
        const QString before = dump();
        import();
        QCOMPARE(dump(), before);
        QCOMPARE(m_fixture->integrity(), "ok"_s);
    }

    void oneAfterTheOther()
    {
        // Without an end of the queue in between, both use one connection with all that it holds.
        placeCommonFiles();
        QSignalSpy progress(&m_fixture->provider(), &FileOperationProvider::filesOperationProgress);
        QSignalSpy done(&m_fixture->provider(), &FileOperationProvider::exchangeDone);
        for (int i = 0; i < 2; ++i)
            m_fixture->provider().importDatabase(sourcePath(), false, all());
        m_fixture->wait();
        QCOMPARE(summary(), "here|own . text 1|a half|text 2 is a part|a,b new|new| / 2 1 1 1"_s);
        QCOMPARE(done.size(), 2);
        QCOMPARE(progress.first().mid(0, 2), (QVariantList{"Importing files..."_s, 0}));
    }

    void shellFileIsKnownByItsPath()
    {
        // Where nobody has ever read the file there is no checksum.
        runScript(record(1, 0, 5, 1, 0) + "INSERT INTO file_paths VALUES (1,'/x/a','');"_s, QString());
        runScript(record(7, 0, 5, 2, 0) + "INSERT INTO file_paths VALUES (2,'/x/a','');"
                                          "INSERT INTO tags VALUES (1,'a','',1,'');"
                                          "INSERT INTO file_tag VALUES (7,1);"_s,
                  "source"_s);
        import(all(), true);
        QCOMPARE(Sql::rows("SELECT file_id, tag_id FROM file_tag"), QStringList("1|1"_s));
    }

    void importsFiles_data()
    {
        addColumns<QString, QString, QString, QString>("here", "source", "query", "expected");
        const QString contents =
            "SELECT file_name, group_concat(CAST(data AS TEXT), '+') FROM files LEFT JOIN "
            "(SELECT * FROM storage ORDER BY 1) AS s ON internal=1 AND "
            "s.storage_id>=files.storage_id AND s.storage_id<ifnull((SELECT "
            "min(n.storage_id) FROM files n WHERE n.internal=1 AND "
            "n.storage_id>files.storage_id),99999) GROUP BY files.file_id ORDER BY 1"_s;
        addRow("a code that is in use and one that is not", file(1, "here"),
               file(5, "there") + file(6, "other") + "UPDATE files SET id_code='C1' WHERE file_id=5;"_s,
               "SELECT count(DISTINCT id_code), count(*), sum(id_code='C6'), sum(id_code='C1') FROM files"_s,
               "3|3|1|1"_s);
        addRow(
            "codes in use, twice in the source, too long or none", record(9, 2, 0, 0, 9),
            "DROP TABLE files;"_s + Schema::creationStatements().first().remove(" UNIQUE"_s) + ";"_s +
                record(1, 2, 0, 0, 1) + record(2, 2, 0, 0, 2) + record(3, 2, 0, 0, 3) +
                record(4, 2, 0, 0, 4) + record(5, 2, 0, 0, 5) + record(6, 2, 0, 0, 6) +
                "UPDATE files SET id_code='C9' WHERE file_id=1; UPDATE files SET id_code='C3' WHERE "
                "file_id=2;"
                "UPDATE files SET id_code='12345678' WHERE file_id=4; UPDATE files SET id_code='' WHERE file_id=5;"_s,
            "SELECT count(*), count(DISTINCT id_code), group_concat(DISTINCT CASE WHEN length(id_code)<3 "
            "THEN file_name||id_code END) FROM files"_s,
            "7|7|file9C9,file2C3,file6C6"_s);
        addRow("equal contents and an equal checksum only", file(1, "same"),
               file(1, "same") + file(2, "SAME") +
                   "UPDATE files SET data_checksum=(SELECT data_checksum FROM files WHERE file_id=1);"_s,
               contents, "file1|same file2|SAME"_s);
        addRow("equal contents of other checksums", file(1, "same") + "UPDATE files SET data_checksum=77;"_s,
               file(1, "same"), contents, "file1|same file1|same"_s);
        addRow(
            "copies within the source, with tags of all", ""_s,
            file(1, "same") + file(2, "same") +
                "UPDATE files SET file_name='Copy of file', file_description='note' WHERE file_id=1;"
                "INSERT INTO tags VALUES (1,'a','',1,''),(2,'b','',1,''); INSERT INTO file_tag VALUES (1,1),(2,2),(2,9),('q',1);"_s,
            "SELECT file_name, file_description, tag_name FROM files NATURAL JOIN file_tag NATURAL JOIN tags ORDER BY 3"_s,
            "file2|text 2 . note|a file2|text 2 . note|b"_s);
        addRow(
            "a chain of blocks, others between, one of no bytes", file(4, "here"),
            "INSERT INTO storage VALUES (1,'aa'),(3,'bb'),(5,''),(6,'cc'); INSERT INTO storage_info VALUES (1,3),(3,5),(5,6),(6,0);"_s +
                record(1, 1, 6, 1, 11) + file(2, "x"),
            contents, "file1|aa+bb++cc file2|x file4|here"_s);
        addRow(
            "chains that are broken, in a circle, too short and without blocks", ""_s,
            "INSERT INTO storage VALUES (1,'aa'),(3,'bb'),(5,'cc'),(6,'cc'); INSERT INTO storage_info VALUES (1,3),(3,1),(5,9),(6,0);"_s +
                record(1, 1, 4, 1, 1) + record(2, 1, 4, 5, 2) + record(3, 1, 4, 6, 3) +
                record(4, 1, 4, 77, 4) + file(9, "x"),
            contents, "file9|x"_s);
        addRow("sizes whose sum is no number", ""_s,
               file(1, "a") + file(2, "b") + "UPDATE files SET file_size=5000000000000000000;"_s +
                   file(3, "x"),
               contents, "file3|x"_s);
        addRow("texts that are too long", ""_s,
               file(1, "a") + file(2, "b") + record(3, 0, 1, 3, 1) +
                   "INSERT INTO file_paths VALUES (3, '/' || hex(zeroblob(1000000)), '');"
                   "UPDATE files SET file_description=hex(zeroblob(1000000)) WHERE file_id=1;"
                   "INSERT INTO tags VALUES (1,'a',hex(zeroblob(1000000)),1,'');"_s,
               "SELECT file_name, (SELECT count(*) FROM tags) FROM files"_s, "file2|0"_s);
        addRow("links", record(1, 2, 0, 0, 8),
               record(1, 2, 0, 0, 8) + record(2, 2, 0, 0, 9) + record(3, 2, 0, 0, 8),
               "SELECT file_id, file_name, internal FROM files ORDER BY 1"_s,
               "1|file1|2 2|file2|2 3|file3|2"_s);
        addRow(
            "external files, some without a path", ""_s,
            record(1, 0, 5, 1, 1) + record(2, 0, 5, 9, 2) + record(3, 0, 5, 3, 3) +
                "INSERT INTO file_paths VALUES (1,'/a/../b/x''y','wrong'),(3,'','');"_s,
            "SELECT file_name, path, rel_path LIKE '../%b/x''y' FROM files JOIN file_paths ON path_id=storage_id"_s,
            "file1|/a/../b/x'y|1"_s);
        addRow("paths of several folders, and odd names", ""_s,
               record(1, 0, 5, 1, 1) + record(2, 0, 5, 2, 2) + record(3, 2, 0, 0, 3) + record(4, 0, 5, 4, 4) +
                   record(5, 0, 5, 5, 5) + record(6, 0, 5, 6, 6) +
                   "INSERT INTO file_paths VALUES (1,'/a b/x',''),(2,'/a b/y',''),(4,'/a b/c/..',''),"
                   "(5,'/\u00e4/\U0001f600',''),(6,'/a b/z','');"_s,
               "SELECT path, '/'||replace(rel_path,'../','')=path FROM "
               "file_paths "
               "JOIN files ON path_id=storage_id WHERE internal=0 ORDER BY file_name"_s,
               "/a b/x|1 /a b/y|1 /a b/c/..|1 /\u00e4/\U0001f600|1 /a b/z|1"_s);
        addRow(
            "a path that is recorded here, with other contents",
            record(1, 0, 5, 1, 11) + "INSERT INTO file_paths VALUES (1,'/gone/x','');"_s,
            record(4, 0, 6, 2, 12) + record(5, 0, 6, 3, 13) +
                "INSERT INTO file_paths VALUES (2,'/gone/x',''),(3,'/gone/y','');"
                "INSERT INTO tags VALUES (1,'a','',1,''); INSERT INTO file_tag VALUES (4,1);"_s,
            "SELECT file_name, path, tag_id FROM files JOIN file_paths ON path_id=storage_id LEFT JOIN file_tag USING (file_id) ORDER BY 1"_s,
            "file1|/gone/x|1 file5|/gone/y|"_s);
        QString crowd;
        for (int id = 1; id <= 60; ++id)
            crowd += file(id, QByteArray::number(10 + id % 40));
        addRow(
            "many of one checksum and size", ""_s, crowd + "UPDATE files SET data_checksum=7;"_s,
            "SELECT count(*), count(DISTINCT CAST(data AS TEXT)) FROM files JOIN storage USING (storage_id)"_s,
            "40|40"_s);
        addRow("numbers that are none, and kinds", ""_s,
               file(1, "a") + record(2, 5, 0, 0, 1) +
                   "INSERT INTO files VALUES "
                   "(3,'f','','x',1,1,'C3',1,0,0,1,2),(4,'g','',0,1,'soon','C4',1,0,0,1,2),"
                   "(5,NULL,NULL,0,1,1,'C5',1,0,NULL,1,2);"_s,
               "SELECT file_id, file_name, file_description, thumbnail_id FROM files"_s,
               "1|file1|text 1|0 2|||0"_s);
        addRow(
            "thumbnails: there, absent, none", ""_s,
            record(1, 2, 0, 0, 1, 3) + record(2, 2, 0, 0, 2, 4) + record(3, 2, 0, 0, 3, -1) +
                "INSERT INTO thumbnails VALUES (3, x'01');"_s,
            "SELECT file_name, files.thumbnail_id>0, hex(thumbnail) FROM files LEFT JOIN thumbnails USING (thumbnail_id)"_s,
            "file1|1|01 file2|0| file3|0|"_s);
    }

    void importsFiles() { merges(); }

    void options_data()
    {
        addColumns<ImportOptions, QString>("options", "expected");
        using Merge = ExchangeSettings::DescriptionMerge;
        const Merge leave = ExchangeSettings::LeaveDescriptions;
        const Merge append = ExchangeSettings::AppendDescriptions;
        const Merge replace = ExchangeSettings::ReplaceDescriptions;
        // Names, descriptions and tags of files; numbers of tags, groups, nodes, relationships.
        addRow("all", all(append), "here|own . text 1|a half|text 2 is a part|a,b new|new| / 2 1 1 1"_s);
        addRow("replaced", all(replace), "here|text 1|a half|text 2|a,b new|new| / 2 1 1 1"_s);
        addRow("no descriptions", all(leave), "here|own|a half|text 2 is a part|a,b new|| / 2 1 1 1"_s);
        addRow("no files", ImportOptions{false, true, true, true, true, true, append},
               "here|own . text 1|a half|text 2 is a part|a,b / 2 1 1 1"_s);
        addRow("no tags", ImportOptions{true, false, true, true, true, true, append},
               "here|own . text 1| half|text 2 is a part|b new|new| / 1 0 0 0"_s);
        addRow("tags without their files", ImportOptions{true, true, true, true, false, true, leave},
               "here|own| half|text 2 is a part|b new|| / 2 1 1 1"_s);
    }

    void options()
    {
        QFETCH(ImportOptions, options);
        placeCommonFiles();
        import(options);
        QTEST(summary(), "expected");
    }

    void takesMetadataFromShells()
    {
        placeCommonFiles();
        runScript(
            "INSERT INTO tags VALUES (5,'c','',1,''); INSERT INTO file_tag VALUES (3,5);"
            "INSERT INTO tb_nodes VALUES (2,5,1,0),(3,1,1,0); INSERT INTO tb_node_links VALUES (0,2),(2,3);"
            "INSERT INTO tag_relationships VALUES ('5'),('5.1'); INSERT INTO tag_groups VALUES (2,'H');"
            "INSERT INTO tag_group_links VALUES (5,2); UPDATE files SET id_code='CODE' WHERE file_id=3;"
            "DROP TABLE storage; DROP TABLE storage_info; DROP TABLE thumbnails;"_s +
                record(4, 2, 0, 0, -1).replace(",-1,"_s, ",7,"_s),
            "source"_s);
        QSignalSpy missing(&m_fixture->provider(), &FileOperationProvider::importNotification);
        import(all(), true);
        QCOMPARE(summary(), "here|own . text 1|a half|text 2 is a part|a,b / 2 1 2 1"_s);
        QCOMPARE(Sql::value("SELECT group_concat(relationship_path) FROM tag_relationships"), "2"_s);
        QCOMPARE(missing.count(), 1);
        const auto files = missing.at(0).at(0).value<QList<ShellFile>>();
        QCOMPARE(files.size(), 2);
        QCOMPARE(files.at(1).fileName, "new"_s);
        QCOMPARE(files.at(1).fileSize, 4);
        QCOMPARE(files.at(1).idCode, "CODE"_s);
        QCOMPARE(files.at(1).lastModified, QDateTime::fromSecsSinceEpoch(3));
        // Without a file in common no tag comes over.
        Sql::run("DELETE FROM files");
        Sql::run("DELETE FROM tags");
        import(all(), true);
        QCOMPARE(Sql::count("tags"_s), 0);
        QCOMPARE(missing.at(1).at(0).value<QList<ShellFile>>().size(), 4);
    }

    void findsAChecksumThatIsMissing()
    {
        runScript(
            "DROP TABLE files;"_s +
                Schema::creationStatements().first().replace("CHECK(data_checksum>=0)"_s, "CHECK(1)"_s) +
                ";"_s,
            "source"_s);
        const QString path = m_fixture->write("x.txt"_s, "on the disk");
        runScript(
            file(1, "same") + file(2, "other") + record(3, 2, 0, 0, 0) + record(4, 0, 11, 1, 0) +
                record(5, 0, 11, 2, 0) +
                "INSERT INTO file_paths VALUES (1,'%1',''),(2,'/gone','');UPDATE files SET data_checksum=-1;"_s
                    .arg(path),
            "source"_s);
        runScript(file(9, "same"), QString());
        import();
        const auto sum = [](const QByteArray &bytes) {
            return QString::number(DataChecksum::ofBytes(bytes));
        };
        QCOMPARE(Sql::rows("SELECT file_name, data_checksum FROM files ORDER BY 1"),
                 QStringList({"file2|"_s + sum("other"), "file3|"_s + sum("file3"),
                              "file4|"_s + sum("on the disk"), "file5|0"_s, "file9|"_s + sum("same")}));
    }

    void refusesOtherSources_data()
    {
        addColumns<QString, QString>("source", "word");
        addRow("a view for a table", "ALTER TABLE tags RENAME TO t; CREATE VIEW tags AS SELECT * FROM t;"_s,
               "views or triggers"_s);
        addRow("a trigger", "CREATE TRIGGER x AFTER INSERT ON tags BEGIN DELETE FROM tags; END"_s,
               "views or triggers"_s);
        addRow("no files", "DROP TABLE files;"_s, "no Vorna database"_s);
        addRow("no database", "text"_s, "not a database"_s);
        addRow("being written", "BEGIN EXCLUSIVE;"_s, "Another program"_s);
        addRow("the open database by another name", "link"_s, "open database itself"_s);
        addRow("missing", "gone"_s, "missing"_s);
        addRow("left in the middle of a change", "broken"_s, "broken off"_s);
    }

    void refusesOtherSources()
    {
        QFETCH(QString, source);
        const QString before = dump();
        if (source.endsWith(QLatin1Char(';')) || source.endsWith("END"_s)) {
            for (const QString &statement :
                 source.startsWith("CREATE TRIGGER"_s) ? QStringList(source) : splitScript(source))
                runInSource({statement});
        } else if (source == "broken"_s) {
            // What a program leaves that was killed while it wrote.
            runInSource({"PRAGMA cache_size=1"_s, "BEGIN"_s});
            QVERIFY(QSqlQuery(QSqlDatabase::database("source"_s))
                        .exec("INSERT INTO storage WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 "
                              "FROM n WHERE i<99) "
                              "SELECT i, zeroblob(9000) FROM n"_s));
            for (const char *end : {"", "-journal"})
                QVERIFY(QFile::copy(sourcePath() + QLatin1String(end),
                                    sourcePath() + ".x"_s + QLatin1String(end)));
            m_source.reset();
            QVERIFY(QFile::remove(sourcePath()));
            for (const char *end : {"", "-journal"})
                QVERIFY(QFile::rename(sourcePath() + ".x"_s + QLatin1String(end),
                                      sourcePath() + QLatin1String(end)));
        } else {
            m_source.reset();
            QVERIFY(QFile::remove(sourcePath()));
            if (source == "text"_s)
                m_fixture->TestFolder::write("source.vrn"_s, QByteArray(5000, 't'));
            else if (source == "link"_s)
                QVERIFY(QFile::link(m_fixture->databasePath(), sourcePath()));
        }
        QSignalSpy errors(&m_fixture->provider(), &FileOperationProvider::error);
        QSignalSpy done(&m_fixture->provider(), &FileOperationProvider::exchangeDone);
        import();
        QCOMPARE(errors.count(), 1);
        QFETCH(QString, word);
        const QString told = errors.at(0).at(0).toString();
        QVERIFY2(told.contains(word), qPrintable(told));
        QCOMPARE(errors.at(0).at(1).toString(), "Error importing files "_s);
        QCOMPARE(done.count(), 0);
        QCOMPARE(dump(), before);
    }

    void takesWhatAnOlderSourceHas()
    {
        runScript(
            file(1, "bytes") + record(2, 0, 1, 1, 1) + record(3, 2, 0, 0, 3, 1) +
                "INSERT INTO tags VALUES (1,'a','',1,''); DROP TABLE tag_groups; DROP TABLE tb_nodes; DROP "
                "TABLE file_paths;"
                "DROP TABLE tag_relationships; DROP TABLE thumbnails; DROP TABLE storage; DROP TABLE file_tag;"_s,
            "source"_s);
        QSignalSpy done(&m_fixture->provider(), &FileOperationProvider::exchangeDone);
        import();
        QCOMPARE(Sql::rows("SELECT file_name, thumbnail_id FROM files"), QStringList("file3|0"_s));
        QCOMPARE(done.count(), 1);
        const QString told = done.at(0).at(0).toString();
        for (const char *part : {"New files: 1", "New tags: 1", "contents are missing or damaged: 1\nfile1",
                                 "without a path: 1\nfile2",
                                 "no tables of these names, or others: file_tag, tag_groups, tb_nodes"})
            QVERIFY2(told.contains(QLatin1String(part)), qPrintable(told));
    }

    void leavesNothingOfWhatFails_data()
    {
        addColumns<QString>("how");
        addRow("cancelled", "10"_s);
        addRow("cancelled while it copies", "30"_s);
        addRow("refused by the database", "refuse"_s);
        addRow("locked", "lock"_s);
        addRow("the file refused, the others taken", "one"_s);
    }

    void leavesNothingOfWhatFails()
    {
        QFETCH(QString, how);
        QVERIFY(QSqlQuery(QSqlDatabase::database("source"_s))
                    .exec("INSERT INTO files WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n "
                          "WHERE i<12000) "
                          "SELECT i,'f'||i,'',0,1,1,'D'||i,1,0,0,i,2 FROM n"_s));
        runScript("INSERT INTO tags VALUES (1,'a','',1,'');"_s, "source"_s);
        const QString before = dump();
        std::unique_ptr<OtherConnection> locker;
        if (how == "refuse"_s)
            m_fixture->database().refuse("INSERT ON tags"_s);
        if (how == "one"_s)
            m_fixture->database().refuse("INSERT ON files"_s, "new.file_name IN ('f7','f11999')"_s);
        if (how == "lock"_s) {
            locker = std::make_unique<OtherConnection>(m_fixture->databasePath());
            QVERIFY(locker->run("BEGIN EXCLUSIVE"_s));
        }
        FileOperationProvider &provider = m_fixture->provider();
        if (const int cancelAt = how.toInt(); cancelAt > 0)
            connect(&provider, &FileOperationProvider::filesOperationProgress, this,
                    [&provider, cancelAt](const QString &, int percent) {
                        if (percent >= cancelAt)
                            provider.cancelOperations();
                    });
        QSignalSpy done(&provider, &FileOperationProvider::exchangeDone);
        QSignalSpy told(&provider, &FileOperationProvider::error);
        m_fixture->errors.clear();
        import();
        if (how == "one"_s) {
            QCOMPARE(Sql::count("files"_s), 11998);
            QVERIFY(done.value(0).value(0).toString().contains(
                "Files that could not be read or written: 2\nf7\nf11999"_s));
            return;
        }
        locker.reset();
        QCOMPARE(done.count(), 0);
        QCOMPARE(told.count() + m_fixture->errors.count(), 1);
        QCOMPARE(dump(), before);
        if (how == "refuse"_s)
            QVERIFY(m_fixture->database().permit(QString()));
        provider.disconnect(this);
        // The next one is not in the way of what this one left.
        import();
        QCOMPARE(Sql::count("files"_s), 12000);
    }

private:
    /** The statements for a file whose size, number and name tell of each other. */
    static QString record(int id, int internal, int size, int storageId, int checksum, int thumbnailId = 0)
    {
        return "INSERT INTO files VALUES (%1,'file%1','text %1',%2,1,%1,'C%1',1,%3,%4,%5,%6);"_s.arg(id)
            .arg(size)
            .arg(storageId)
            .arg(thumbnailId)
            .arg(checksum)
            .arg(internal);
    }
    /** An internal file of one block with its own id. */
    static QString file(int id, const QByteArray &bytes)
    {
        return record(id, 1, bytes.size(), id, int(DataChecksum::ofBytes(bytes))) +
               "INSERT INTO storage VALUES (%1,CAST('%2' AS BLOB)); INSERT INTO storage_info VALUES (%1,0);"_s
                   .arg(id)
                   .arg(QString::fromUtf8(bytes));
    }

    QString sourcePath() const { return m_fixture->filePath("source.vrn"_s); }

    void runInSource(const QStringList &statements)
    {
        for (const QString &statement : statements)
            QVERIFY2(m_source->run(statement), qPrintable(statement));
    }

    /** Statements that end in ";" and a blank or the end of the text. */
    void runScript(const QString &script, const QString &connection)
    {
        const QSqlDatabase database =
            connection.isEmpty() ? QSqlDatabase::database() : QSqlDatabase::database(connection);
        for (const QString &statement : splitScript(script)) {
            QSqlQuery query(database);
            QVERIFY2(query.exec(statement), qPrintable(statement + query.lastError().text()));
        }
    }
    static QStringList splitScript(const QString &script)
    {
        // A semicolon within quotes ends nothing.
        QStringList statements(QString{});
        bool isQuoted = false;
        for (const QChar sign : script) {
            isQuoted = isQuoted != (sign == QLatin1Char('\''));
            if (sign == QLatin1Char(';') && !isQuoted)
                statements.append(QString());
            else
                statements.last() += sign;
        }
        statements.removeAll(QString());
        return statements;
    }

    /** Two files that both sides have, of which one side has a part of the text, and one that is new. */
    void placeCommonFiles()
    {
        runScript(
            file(1, "one") + file(2, "two") +
                "UPDATE files SET file_name='here', file_description='own' WHERE file_id=1;"
                "UPDATE files SET file_name='half', file_description='text 2 is a part' WHERE file_id=2;"
                "INSERT INTO tags VALUES (1,'b','',1,''); INSERT INTO file_tag VALUES (2,1);"_s,
            QString());
        runScript(file(1, "one") + file(2, "two") + file(3, "more") +
                      "UPDATE files SET file_name='new', file_description='new' WHERE file_id=3;"
                      "INSERT INTO tags VALUES (1,'a','',1,''); INSERT INTO file_tag VALUES (1,1),(2,1);"
                      "INSERT INTO tag_groups VALUES (1,'G'); INSERT INTO tag_group_links VALUES (1,1);"
                      "INSERT INTO tb_nodes VALUES (1,1,1,0); INSERT INTO tb_node_links VALUES (0,1);"
                      "INSERT INTO tag_relationships VALUES ('1');"_s,
                  "source"_s);
    }
    static QString summary()
    {
        const QString files =
            "SELECT file_name, file_description, (SELECT group_concat(tag_name) FROM (SELECT tag_name FROM "
            "file_tag NATURAL JOIN tags WHERE file_tag.file_id=files.file_id ORDER BY 1)) FROM files ORDER BY file_id"_s;
        QString counts;
        for (const char *table : {"tags", "tag_groups", "tb_nodes", "tag_relationships"})
            counts += " %1"_s.arg(Sql::count(QLatin1String(table)));
        return Sql::rows(files).join(QLatin1Char(' ')) + " /"_s + counts;
    }

    static ImportOptions all(ExchangeSettings::DescriptionMerge merge = ExchangeSettings::AppendDescriptions)
    {
        return {true, true, true, true, true, true, merge};
    }

    void import(const ImportOptions &options = all(), bool isShell = false)
    {
        m_fixture->provider().importDatabase(sourcePath(), isShell, options);
        m_fixture->wait();
    }

    /** All rows of the open database but for what counts the imports. */
    static QString dump()
    {
        QString text;
        for (const char *table :
             {"tags", "tag_groups", "tag_group_links", "tb_nodes", "tb_node_links", "tag_relationships",
              "files", "file_tag", "file_paths", "storage", "storage_info", "thumbnails"})
            text += Sql::rows("SELECT * FROM %1 ORDER BY 1, 2"_s.arg(QLatin1String(table)))
                        .join(QLatin1Char('\n'));
        return text;
    }

    std::unique_ptr<AddingFixture> m_fixture;
    std::unique_ptr<OtherConnection> m_source;
};

QTEST_MAIN(TestImport)
#include "tst_import.moc"
