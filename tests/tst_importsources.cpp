#include "fileops/worker/fileoperationworker.h"
#include "tests/support/importtest.h"

/** Imports of what is not as it should be, and imports that are broken off. */
class TestImportSources : public ImportTest
{
    Q_OBJECT

private slots:
    void init() { openBoth(); }
    void cleanup() { closeBoth(); }

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
        QMetaObject::Connection canceling;
        // In the worker's thread: on a busy machine the window's thread hears of it when all is over.
        if (const int cancelAt = how.toInt(); cancelAt > 0)
            canceling = connect(
                &m_fixture->worker(), &FileOperationWorker::operationProgress, &m_fixture->worker(),
                [&worker = m_fixture->worker(), cancelAt](FileOperationType, const QString &, int percent) {
                    if (percent >= cancelAt)
                        worker.cancel();
                },
                Qt::DirectConnection);
        QSignalSpy done(&m_fixture->provider(), &FileOperationProvider::exchangeDone);
        QSignalSpy told(&m_fixture->provider(), &FileOperationProvider::error);
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
        disconnect(canceling);
        // The next one is not in the way of what this one left.
        import();
        QCOMPARE(Sql::count("files"_s), 12000);
    }
};

QTEST_MAIN(TestImportSources)
#include "tst_importsources.moc"
