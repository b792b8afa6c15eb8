#include "core/providers/mainviewprovider.h"
#include "db/sql/serverwatch.h"
#include "fileops/pictures/imageloading.h"
#include "tests/support/localmanager.h"
#include "tests/support/serverdatabase.h"

#include <QTcpServer>
#include <QThread>

/** A server that goes away while a manager works with it, and comes back. */
class TestServerLoss : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data()
    {
        QTest::addColumn<QString>("event");
        addRow("server shut down", "fast"_s);
        addRow("server killed", "immediate"_s);
        addRow("server held", "hold"_s);
        addRow("connection ended by the administrator", "terminate"_s);
    }

    void init()
    {
        QFETCH_GLOBAL(QString, event);
        m_event = event;
        m_isInterrupted = false;
        ServerWatch::setBound(2000);
        if (!ServerDatabase::isAvailable())
            QSKIP("VORNA_TEST_PG names no server");
        auto database = std::make_unique<ServerDatabase>();
        m_server = database.get();
        m_manager = std::make_unique<LocalManager>(std::move(database));
        m_lost = std::make_unique<QSignalSpy>(m_manager->get(), &DatabaseManger::connectionError);
        m_errors = std::make_unique<QSignalSpy>(m_manager->get(), &DatabaseManger::errorOccured);
    }

    void cleanup()
    {
        if (!m_manager)
            return;
        if (m_event == QLatin1String("hold"))
            QVERIFY(ServerDatabase::holdServer(false));
        if (!ServerConnection(m_server->ownerDetails(), "probe"_s).database().isOpen())
            QVERIFY(ServerDatabase::startServer());
        m_errors.reset();
        m_lost.reset();
        m_manager.reset();
    }

    void betweenEdits()
    {
        QVERIFY((*m_manager)->addTag("before"_s) > 0);
        interrupt();
        QCOMPARE((*m_manager)->addTag("lost"_s), qint64(0));
        QVERIFY(!(*m_manager)->hasTagNamed("lost"_s));
        reopen();
        QVERIFY((*m_manager)->hasTagNamed("before"_s));
        QVERIFY((*m_manager)->addTag("after"_s) > 0);
    }

    void underAPicture()
    {
        QImage picture(2, 1, QImage::Format_RGB32);
        picture.fill(Qt::red);
        QBuffer bytes;
        QVERIFY(picture.save(&bytes, "PNG"));
        m_server->addBlock(1, 0, bytes.data());
        m_server->addFile(1, 1, bytes.size(), 1, 0);
        QVERIFY(m_manager->run("UPDATE files SET file_name='p.png'"));
        (*m_manager)->loadAllFiles();
        QCOMPARE((*m_manager)->loadImage(1)->result().image, picture);
        interrupt();
        QCOMPARE((*m_manager)->saveImage(1, picture.scaled(1, 2)), StoredImage::Refused);
        QCOMPARE((*m_manager)->loadImage(1)->result().state, StoredImage::Unreachable);
        reopen();
        QCOMPARE((*m_manager)->loadImage(1)->result().image, picture);
    }

    void inTheMiddleOfReading()
    {
        // More than what the sockets hold, so that the server is still sending.
        QVERIFY(m_manager->fill(
            "INSERT INTO files SELECT i,'f',repeat('long',1000),0,0,0,'c'||i,1,0,0,0,2 FROM n", 6000));
        connect((*m_manager)->findChild<MainViewProvider *>(), &MainViewProvider::gotAllFilesInfo, this,
                &TestServerLoss::interrupt);
        (*m_manager)->loadAllFiles();
        QVERIFY((*m_manager)->files().isEmpty());
        reopen();
        QCOMPARE((*m_manager)->files().size(), 6000);
    }

    void inTheMiddleOfAnAdd()
    {
        QStringList paths;
        for (int i = 0; i < 300; ++i)
            paths.append(m_manager->write("file%1.txt"_s.arg(i), QByteArray::number(i)));
        QSignalSpy finished(m_manager->get(), &DatabaseManger::finishedAddingFiles);
        // The add stands at this lock, within its transaction, when the server goes.
        ServerConnection lock(m_server->ownerDetails(), "lock"_s);
        QVERIFY(lock.run("BEGIN"_s) && lock.run("LOCK TABLE files IN EXCLUSIVE MODE"_s));
        connect(m_manager->get(), &DatabaseManger::startedAddingFiles, this, [this, &lock] {
            for (int i = 0;
                 i < 2000 && lock.value("SELECT count(*) FROM pg_locks WHERE NOT granted"_s) == "0"_s; ++i)
                QThread::msleep(1);
            interrupt();
        });
        (*m_manager)->addFiles(paths, {}, false, 0);
        QTRY_COMPARE(finished.size(), 1);
        QTRY_COMPARE(m_lost->size(), 1);
        QTRY_VERIFY(!(*m_manager)->isBusy());
        reopen();
        lock.run("ROLLBACK"_s);
        for (const char *table : {"files", "file_paths", "file_tag"})
            QCOMPARE(m_manager->count(QLatin1String(table)), 0);
        (*m_manager)->addFiles(paths, {}, false, 0);
        QTRY_COMPARE((*m_manager)->files().size(), 300);
    }

    void inTheMiddleOfAnExtraction()
    {
        m_server->addBlock(1, 0, "bytes");
        m_server->addFile(1, 1, 5, 1, 0);
        (*m_manager)->loadAllFiles();
        QStringList targets;
        for (int i = 0; i < 2000; ++i)
            targets.append(m_manager->filePath("out%1"_s.arg(i)));
        QSignalSpy told(m_manager->get(), &DatabaseManger::error);
        connect(m_manager->get(), &DatabaseManger::startedAddingFiles, this, &TestServerLoss::interrupt);
        (*m_manager)->extractFiles(QVector<qint64>(targets.size(), 1), targets);
        QTRY_COMPARE(m_lost->size(), 1);
        QTRY_VERIFY(!(*m_manager)->isBusy());
        QCOMPARE(told.size(), 0);
        QVERIFY(!QFile::exists(targets.last()));
        // The worker's next connection is a new one, where the server is still there.
        if (m_event == QLatin1String("terminate")) {
            (*m_manager)->extractFiles({1}, {targets.first() + "again"_s});
            QTRY_COMPARE(QFileInfo(targets.first() + "again"_s).size(), 5);
        }
        reopen();
        (*m_manager)->extractFiles({1}, {targets.last()});
        QTRY_COMPARE(QFileInfo(targets.last()).size(), 5);
    }

    void serverThatDoesNotAnswer()
    {
        if (m_event != QLatin1String("terminate"))
            QSKIP("ten seconds of waiting are enough once");
        QTcpServer deaf;
        QVERIFY(deaf.listen(QHostAddress::LocalHost));
        m_manager->close();
        PostgresDBManager manager(Constants::postgresDriver, "d"_s, "127.0.0.1"_s, "u"_s, {},
                                  deaf.serverPort());
        QElapsedTimer timer;
        timer.start();
        QVERIFY(manager.openDB().isValid());
        QVERIFY(timer.elapsed() < 20000);
    }

private:
    void interrupt()
    {
        if (std::exchange(m_isInterrupted, true))
            return;
        m_sinceInterruption.start();
        if (m_event == QLatin1String("hold")) {
            QVERIFY(ServerDatabase::holdServer(true));
            return;
        }
        const QString end = "SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE usename='%1'"_s;
        QVERIFY(m_event == QLatin1String("terminate") ? m_server->owner().run(end.arg(ServerDatabase::writer))
                                                      : ServerDatabase::stopServer(m_event));
    }

    void reopen()
    {
        QVERIFY(m_isInterrupted);
        QCOMPARE(m_lost->size(), 1);
        QCOMPARE(m_errors->size(), 0);
        m_manager->close();
        // The wait is bounded, the one for the worker at the end with it.
        QVERIFY(m_sinceInterruption.elapsed() < 10000);
        if (m_event == QLatin1String("hold")) {
            QVERIFY(ServerDatabase::holdServer(false));
        } else if (m_event != QLatin1String("terminate")) {
            QVERIFY(!m_manager->open());
            QVERIFY(ServerDatabase::startServer());
        }
        QVERIFY(m_manager->open());
    }

    QString m_event;
    ServerDatabase *m_server = nullptr; // the manager's
    std::unique_ptr<LocalManager> m_manager;
    std::unique_ptr<QSignalSpy> m_lost;
    std::unique_ptr<QSignalSpy> m_errors;
    bool m_isInterrupted = false;
    QElapsedTimer m_sinceInterruption;
};

QTEST_MAIN(TestServerLoss)
#include "tst_serverloss.moc"
