#include "tests/support/exportfixture.h"

#include <QJsonDocument>
#include <QProcess>
#include <QStorageInfo>

/** What is known of files as text with commas, also as another program reads it. */
class TestExportTable : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_fixture = std::make_unique<ExportFixture>(); }
    void cleanup() { m_fixture.reset(); }

    void tableHasALineAFile()
    {
        Sql::run("INSERT INTO tags VALUES (1,'a, b','',0,NULL),(2,'it''s','',0,NULL)"_s);
        Sql::run("INSERT INTO file_paths VALUES (1,'/home/me/a.txt','a.txt'),(2,'/b','b')"_s);
        Sql::run("INSERT INTO files VALUES (1,'a.txt',NULL,5,10,20,'AAAA111',1,1,0,0,0),"
                 "(2,'b','\u00e4 \"x\"',6,11,21,'AAAA112',1,2,0,0,0),"
                 "(3,'c\nd','',7,12,22,'AAAA113',1,1,0,0,1),"
                 "(4,'http://e','',8,13,23,'AAAA114',1,0,0,0,2)"_s);
        Sql::run("INSERT INTO file_tag VALUES (2,2),(2,1),(1,2)"_s);
        ExportRequest request;
        request.path = m_fixture->database.filePath("out.csv"_s);
        request.fileIds = {4, 3, 2, 99, 1};
        request.form = ExportRequest::Csv;
        QVERIFY(m_fixture->run(request));
        const QString expected =
            "Name,Description,Addition Date,Modification Date,Size,Storage,ID code,Tag,Tag\n"
            "\"http://e\",\"\",\"13\",\"23\",\"8\",\"hyperlink\",\"AAAA114\",\n"
            "\"c\nd\",\"\",\"12\",\"22\",\"7\",\"internal\",\"AAAA113\",\n"
            "\"b\",\"\u00e4 \"x\"\",\"11\",\"21\",\"6\",\"/\",\"AAAA112\",\"a, b\",\"it's\"\n"
            "\"a.txt\",\"\",\"10\",\"20\",\"5\",\"/home/me\",\"AAAA111\",\"it's\"\n"_s;
        QCOMPARE(QString::fromUtf8(TestFolder::read(request.path)), expected);
        QVERIFY(m_fixture->words.value(0).contains("no longer in the database: 1."_s));
        QVERIFY(m_fixture->words.value(0).contains("double quote: 1."_s));
    }

    void tableOfUntaggedFilesHasNoTagColumn()
    {
        m_fixture->database.addFiles(1200);
        ExportRequest request = m_fixture->requestOf("SELECT file_id FROM files", "out.csv"_s);
        request.form = ExportRequest::Csv;
        QVERIFY(m_fixture->run(request));
        const QList<QByteArray> lines = TestFolder::read(request.path).split('\n');
        QCOMPARE(lines.size(), 1202);
        QCOMPARE(lines.first(),
                 QByteArray("Name,Description,Addition Date,Modification Date,Size,Storage,ID code"));
        QVERIFY(lines.at(1200).startsWith("\"f1200\","));
    }

    void anotherProgramReadsIt()
    {
        Sql::run("INSERT INTO tags VALUES (1,'a, b','',0,NULL),(2,'it''s','',0,NULL),(3,' c\n','',0,NULL)"_s);
        Sql::run("INSERT INTO file_paths VALUES (1,'/me, you/\u00e4.txt','x'),(2,'/b','b')"_s);
        Sql::run("INSERT INTO files VALUES (1,'\u00e4.txt','one\ntwo,\r\n\n',5,10,20,'A',1,1,0,0,0),"
                 "(2,'b','\u4e2d\U0001f600',6,11,21,'B',1,2,0,0,0),"
                 "(3,'c,',';',0,-5,22,'C',1,1,0,0,1),(4,'http://e/?a=1,2','=1+2',8,13,23,'D',1,0,0,0,2)"_s);
        Sql::run("INSERT INTO file_tag VALUES (2,1),(2,2),(2,3),(1,2)"_s);
        const ExportRequest request = m_fixture->requestOf("SELECT file_id FROM files", "out.csv"_s);
        QVERIFY(m_fixture->run(request));
        QProcess reader;
        const QString script = "import csv, json, sys\n"
                               "with open(sys.argv[1], newline='', encoding='utf-8') as table:\n"
                               "    print(json.dumps(list(csv.reader(table, strict=True))))"_s;
        reader.start("python3"_s, {"-c"_s, script, request.path});
        QVERIFY(reader.waitForFinished());
        const auto compact = [](const QByteArray &json) {
            return QString::fromUtf8(QJsonDocument::fromJson(json).toJson(QJsonDocument::Compact));
        };
        const char *expected =
            R"([["Name","Description","Addition Date","Modification Date","Size","Storage","ID code","Tag","Tag","Tag"],
            ["\u00e4.txt","one\ntwo,\r\n\n","10","20","5","/me, you","A","it's"],
            ["b","\u4e2d\ud83d\ude00","11","21","6","/","B","a, b","it's"," c\n"],
            ["c,",";","-5","22","0","internal","C",""],
            ["http://e/?a=1,2","=1+2","13","23","8","hyperlink","D",""]])";
        QCOMPARE(compact(reader.readAllStandardOutput()) + QString::fromUtf8(reader.readAllStandardError()),
                 compact(expected));
    }

    void linesThatCannotBeReadStayBehind_data()
    {
        addColumns<QString, QStringList>("damaged", "left");
        addRow("description", "UPDATE files SET file_description=%1 WHERE file_id=2"_s, QStringList("f2"_s));
        addRow("path", "UPDATE file_paths SET path=%1 WHERE path_id=2"_s, QStringList("f2 (c2)"_s));
        addRow("name of a tag", "UPDATE tags SET tag_name=%1 WHERE tag_id=1"_s,
               QStringList{"f600 (c600)"_s, "f601 (c601)"_s});
    }

    void linesThatCannotBeReadStayBehind()
    {
        QFETCH(QString, damaged);
        QFETCH(QStringList, left);
        m_fixture->database.addFiles(1200);
        m_fixture->database.addTags(2);
        Sql::run("INSERT INTO file_tag VALUES (1,2),(600,1),(601,1),(601,2)"_s);
        Sql::run("INSERT OR REPLACE INTO file_paths VALUES (2,'/b','b')"_s);
        QVERIFY(Sql::run(damaged.arg(ExportFixture::longText())));
        QVERIFY(m_fixture->spoil());
        const ExportRequest request = m_fixture->requestOf("SELECT file_id FROM files", "out.csv"_s);
        QVERIFY(m_fixture->run(request));
        const QString told = "Not exported: %1. Their pages in the database file are damaged:\n%2"_s.arg(
            QString::number(left.size()), left.join(QLatin1Char('\n')));
        QVERIFY2(m_fixture->words.value(0).contains(told), qPrintable(m_fixture->words.value(0)));
        const QList<QByteArray> lines = TestFolder::read(request.path).split('\n');
        QCOMPARE(lines.size(), 1202 - left.size());
    }

    void lastLinesMeetTheFullDiskToo()
    {
        const QString folder = QString::fromLocal8Bit(qgetenv("VORNA_SMALL_DISK"));
        if (folder.isEmpty() || QStorageInfo(folder).bytesAvailable() > 200 << 20)
            QSKIP("VORNA_SMALL_DISK names no folder, or one with too much room.");
        m_fixture->database.addFiles(5);
        ExportRequest request = m_fixture->requestOf("SELECT file_id FROM files");
        request.form = ExportRequest::Csv;
        request.path = folder + "/x.csv"_s;
        QFile filler(folder + "/filler"_s);
        QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        while (filler.write(QByteArray(4096, 'x')) > 0)
            continue;
        const bool isDone = m_fixture->run(request);
        filler.remove();
        QVERIFY(isDone);
        QVERIFY2(m_fixture->words.value(0).contains("Nothing was exported"_s),
                 qPrintable(m_fixture->words.value(0)));
        QVERIFY(!QFile::exists(request.path));
    }

private:
    std::unique_ptr<ExportFixture> m_fixture;
};

QTEST_GUILESS_MAIN(TestExportTable)
#include "tst_exporttable.moc"
