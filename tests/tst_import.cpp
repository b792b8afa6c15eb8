#include "tests/support/importtest.h"

/** Merging another local database or a shell into the open one: tags, trees and what is known of files. */
class TestImport : public ImportTest
{
    Q_OBJECT

private slots:
    void init() { openBoth(); }
    void cleanup() { closeBoth(); }

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

    void merges() { mergeRow(); }

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

    void whatOthersWriteMeanwhileCounts()
    {
        placeCommonFiles();
        OtherConnection other(m_fixture->databasePath(), "others"_s);
        QVERIFY(other.run("BEGIN IMMEDIATE"_s));
        runScript(file(7, "more"), "others"_s);
        QSignalSpy progress(&m_fixture->provider(), &FileOperationProvider::filesOperationProgress);
        m_fixture->provider().importDatabase(sourcePath(), false, all());
        // It compares without their file, and waits for them.
        QTRY_VERIFY(!progress.isEmpty() && progress.last().first() == "Comparing files..."_s);
        QVERIFY(QTest::qWaitFor([&] { return other.run("COMMIT"_s); }));
        m_fixture->wait();
        QCOMPARE(summary(), "here|own . text 1|a half|text 2 is a part|a,b file7|text 7 . new| / 2 1 1 1"_s);
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
};

QTEST_MAIN(TestImport)
#include "tst_import.moc"
