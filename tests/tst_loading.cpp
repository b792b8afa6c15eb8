#include "core/records/file.h"
#include "db/manager/recordloads.h"
#include "fileops/provider/fileoperationprovider.h"
#include "models/contents/contentsmodel.h"
#include "tests/support/localcollection.h"
#include "tests/support/serverdatabase.h"

/** How all files are read beside the window: what comes of it, and what may come in between. */
class TestLoading : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addBackEnds(); }

    void init()
    {
        QFETCH_GLOBAL(bool, isOnServer);
        m_isOnServer = isOnServer;
        RecordLoads::setMostFilesAtOnce(20000);
        std::unique_ptr<TestDatabase> database;
        if (isOnServer)
            database = std::make_unique<ServerDatabase>();
        m_open = std::make_unique<LocalCollection>(std::move(database));
    }

    void cleanup()
    {
        m_open.reset();
        RecordLoads::setMostFilesAtOnce(20000);
        QVERIFY(!QSqlDatabase::contains("LoadConnection"_s));
    }

    void oddValuesAreThoseOfTheDriver()
    {
        addOddFiles();
        m_open->manager()->refreshModificationDate();
        m_open->manager()->loadAllFiles(); // through the driver
        const QStringList expected = texts();
        QVERIFY(expected.size() > 8);
        m_open->manager()->reloadAllData();
        QCOMPARE(texts(), expected);
        QVERIFY(texts().join(QString()).contains(QChar(QChar::ByteOrderMark)));
    }

    void manyAreReadBesideTheEventLoop()
    {
        begin(30000);
        DatabaseManger *manager = m_open->manager();
        QSignalSpy steps(manager, &DatabaseManger::filesArrived);
        QSignalSpy progress(manager, &DatabaseManger::loadingProgress);
        QSignalSpy reloaded(manager, &DatabaseManger::allDataReloaded);
        QSignalSpy warnings(manager, &DatabaseManger::showTempWarning);
        manager->reloadAllData();
        QCOMPARE(reloaded.size(), 0);
        QCOMPARE(m_open->mainView().contentsModel()->rowCount(), 0);
        // Nobody may build on what is half there.
        QCOMPARE(manager->addTag("dropped"_s), qint64(0));
        QCOMPARE(warnings.size(), 1);
        QTRY_COMPARE(reloaded.size(), 1);
        QVERIFY(steps.size() > 10 && progress.size() > 10);
        QCOMPARE(manager->files().size(), 30000);
        QCOMPARE(m_open->mainView().contentsModel()->rowCount(), 30000);
        QCOMPARE(m_open->mainView().contentsModel()->rowOf(30000), 29999);
        QCOMPARE(manager->file(7)->tags(), (QVector<qint64>{1, 2}));
        m_open->tags().showTagsSelected({2});
        QCOMPARE(m_open->mainView().shownFileIds().size(), 30000);
        QVERIFY(manager->addTag("made"_s) > 0);
    }

    void whatComesMeanwhileIsNotLost()
    {
        begin(30000);
        DatabaseManger *manager = m_open->manager();
        QSignalSpy reloaded(manager, &DatabaseManger::allDataReloaded);
        QVERIFY(m_open->run("UPDATE files SET file_name='later' WHERE file_id=5"));
        manager->reloadAllData();
        // As the worker tells of what it has done; the files may have been read before.
        manager->reloadFiles({5});
        emit manager->findChild<FileOperationProvider *>()->filesRemoved({29999});
        manager->reloadAllData();
        QTRY_COMPARE(reloaded.size(), 1);
        QVERIFY(!manager->file(29999));
        QCOMPARE(m_open->mainView().contentsModel()->rowCount(), 29999);
        QTRY_COMPARE(reloaded.size(), 2); // once more, for the second wish
        QCOMPARE(manager->file(5)->name(), "later"_s);
        QVERIFY(manager->file(29999)); // which was not gone from the table
    }

    void closingEndsTheReading()
    {
        begin(30000);
        QPointer<DatabaseManger> manager = m_open->manager();
        manager->reloadAllData();
        m_open->close();
        QVERIFY(!manager && !QSqlDatabase::contains("LoadConnection"_s));
        m_open->open();
        QCOMPARE(m_open->manager()->files().size(), 30000);
    }

    void aWriteMeanwhileIsNews()
    {
        if (!m_isOnServer) {
            QVERIFY(m_open->run("PRAGMA journal_mode=WAL"));
            m_open->reopen();
        }
        begin(30000);
        DatabaseManger *manager = m_open->manager();
        QSignalSpy reloaded(manager, &DatabaseManger::allDataReloaded);
        manager->reloadAllData();
        const QString statement = "UPDATE files SET file_name='theirs' WHERE file_id=30000"_s;
        if (m_isOnServer)
            QVERIFY(server().owner().run(statement));
        else
            QVERIFY(OtherConnection(m_open->path()).run(statement));
        QTRY_COMPARE(reloaded.size(), 1);
        // Whatever was read of it: the next edit is told that it is not all.
        manager->addTag("guarded"_s);
        const auto isTheirs = [manager] {
            const File *file = manager->file(30000);
            return file && file->name() == QLatin1String("theirs");
        };
        QTRY_VERIFY(isTheirs());
    }

    void aReadingThatBreaksOffKeepsEditsOut()
    {
        begin(30000);
        DatabaseManger *manager = m_open->manager();
        QSignalSpy reloaded(manager, &DatabaseManger::allDataReloaded);
        QSignalSpy lost(manager, &DatabaseManger::connectionError);
        QSignalSpy errors(manager, &DatabaseManger::errorOccured);
        const auto rename = [this](const QString &from, const QString &to) {
            const QString statement = "ALTER TABLE %1 RENAME TO %2"_s.arg(from, to);
            return m_isOnServer ? server().owner().run(statement) : Sql::run(statement);
        };
        QVERIFY(rename("file_paths"_s, "away"_s));
        manager->reloadAllData();
        QTRY_COMPARE(reloaded.size(), 1);
        QVERIFY(!errors.isEmpty() && lost.isEmpty());
        QCOMPARE(manager->files().size(), 0);
        QCOMPARE(manager->addTag("refused"_s), qint64(0));
        QVERIFY(rename("away"_s, "file_paths"_s));
        manager->reloadAllData();
        QTRY_COMPARE(manager->files().size(), 30000);
    }

    void aServerThatEndsTheReadingIsLost()
    {
        if (!m_isOnServer)
            QSKIP("a file cannot be lost as a server can");
        begin(200000);
        DatabaseManger *manager = m_open->manager();
        QSignalSpy lost(manager, &DatabaseManger::connectionError);
        QSignalSpy reloaded(manager, &DatabaseManger::allDataReloaded);
        manager->reloadAllData();
        // It holds what has no room on the way to a client that does not take it.
        const QString reader = "SELECT count(pg_terminate_backend(pid)) FROM pg_stat_activity "
                               "WHERE query LIKE 'COPY (SELECT files%' AND pid<>pg_backend_pid()"_s;
        for (int i = 0; i < 1000 && server().owner().value(reader) != QLatin1String("1"); ++i)
            QThread::msleep(10);
        QTRY_COMPARE(reloaded.size(), 1);
        QCOMPARE(lost.size(), 1);
        QCOMPARE(manager->addTag("refused"_s), qint64(0));
    }

private:
    ServerDatabase &server() { return static_cast<ServerDatabase &>(m_open->database()); }

    /** Files that all have the tags 1 and 2; from here on the event loop goes on while they are read. */
    void begin(int files)
    {
        QVERIFY(Sql::fill("INSERT INTO tags SELECT i,'tag '||i,'',0,NULL FROM n", 2));
        QVERIFY(Sql::fill(
            "INSERT INTO files SELECT i,'file '||i,'',0,0,0,substr('c'||i,1,7),1,i,0,0,0 FROM n", files));
        QVERIFY(Sql::fill("INSERT INTO file_paths SELECT i,'/a/file '||i,'file '||i FROM n", files));
        QVERIFY(Sql::fill("INSERT INTO file_tag SELECT i,1 FROM n", files));
        QVERIFY(Sql::fill("INSERT INTO file_tag SELECT i,2 FROM n", files));
        if (m_isOnServer)
            m_open->database().keysTaken();
        m_open->manager()->refreshModificationDate();
        RecordLoads::setMostFilesAtOnce(1000000);
        m_open->reopen();
        RecordLoads::setMostFilesAtOnce(20);
    }

    void addOddFiles()
    {
        const QString mark(QChar(QChar::ByteOrderMark));
        const QStringList names{"plain.TXT"_s,
                                mark + "marked.txt"_s,
                                "tab\tline\nback\\slash"_s,
                                "\\N"_s,
                                "naïve Größe.JPG"_s,
                                "смешанный 漢字 😀.pdf"_s,
                                QString(),
                                QString(5000, QLatin1Char('x')),
                                "a.b/c\\d"_s};
        int id = 0;
        for (const QString &name : names) {
            QSqlQuery query;
            query.prepare("INSERT INTO files VALUES(?,?,?,?,?,?,?,?,?,?,?,?)"_s);
            ++id;
            const QVariantList values{id,
                                      name,
                                      id % 2 ? name : QVariant(QVariant::String),
                                      qint64(-5) * id,
                                      1LL << 40,
                                      -7,
                                      "c%1"_s.arg(id),
                                      1,
                                      id,
                                      id % 2 ? QVariant(QVariant::LongLong) : QVariant(9),
                                      0,
                                      id % 3};
            for (int i = 0; i < values.size(); ++i)
                query.bindValue(i, DriverTexts::toBind(query, values.at(i)));
            QVERIFY2(query.exec(), qPrintable(query.lastError().text()));
            query.prepare("INSERT INTO file_paths VALUES(?,?,?)"_s);
            query.bindValue(0, id);
            query.bindValue(1, DriverTexts::toBind(query, "/home/"_s + name));
            query.bindValue(2, DriverTexts::toBind(query, "../"_s + name));
            QVERIFY(query.exec());
        }
        QVERIFY(Sql::run("INSERT INTO file_tag VALUES(2,4000000000)"));
        QVERIFY(Sql::run("INSERT INTO file_tag VALUES(2,5000000000)"));
        QVERIFY(Sql::run("INSERT INTO file_tag VALUES(3,7)"));
        QVERIFY(Sql::run("INSERT INTO file_tag VALUES(1000,7)")); // of no file
        if (m_isOnServer)
            return;
        // Values of other kinds than their columns, which no server takes.
        QVERIFY(
            Sql::run("INSERT INTO files VALUES(100,x'6162ff','',1.6,'12x',' 7 ','long code of others',2,100,"
                     "'x',0,0)"));
        QVERIFY(
            Sql::run("INSERT INTO files VALUES(101,CAST(x'ff41c328' AS TEXT),x'c3a4',x'31','','',101,2.5,100,"
                     "NULL,0,'2')"));
    }

    QStringList texts() const
    {
        QStringList texts;
        for (const File *file : m_open->manager()->files()) {
            QString text = "%1|%2|%3"_s.arg(file->id()).arg(file->iconKind()).arg(file->thumbnailId());
            for (int type = Name; type <= Internal; ++type) {
                if (type != Thumbnail && type != Tags)
                    text += QLatin1Char('|') + file->data(DataType(type)).toString();
            }
            for (const qint64 tagId : file->tags())
                text += ",%1"_s.arg(tagId);
            texts.append(text);
        }
        return texts;
    }

    std::unique_ptr<LocalCollection> m_open;
    bool m_isOnServer = false;
};

QTEST_MAIN(TestLoading)
#include "tst_loading.moc"
