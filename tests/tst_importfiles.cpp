#include "tests/support/importtest.h"

/** Files of another database that are new here, with their contents, paths and thumbnails, and copies. */
class TestImportFiles : public ImportTest
{
    Q_OBJECT

private slots:
    void init() { openBoth(); }
    void cleanup() { closeBoth(); }

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

    void importsFiles() { mergeRow(); }

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
                record(5, 0, 11, 2, 0) + file(6, "") +
                "INSERT INTO file_paths VALUES (1,'%1',''),(2,'/gone','');UPDATE files SET data_checksum=-1;"_s
                    .arg(path),
            "source"_s);
        runScript(file(8, "") + file(9, "same"), QString());
        import();
        const auto sum = [](const QByteArray &bytes) {
            return QString::number(DataChecksum::ofBytes(bytes));
        };
        QCOMPARE(Sql::rows("SELECT file_name, data_checksum FROM files ORDER BY 1"),
                 QStringList({"file2|"_s + sum("other"), "file3|"_s + sum("file3"),
                              "file4|"_s + sum("on the disk"), "file5|0"_s, "file8|0"_s,
                              "file9|"_s + sum("same")}));
    }
};

QTEST_MAIN(TestImportFiles)
#include "tst_importfiles.moc"
