#include "net/updatehandler.h"
#include "tests/support/settingssandbox.h"
#include "tests/support/updateserverfixture.h"

#include <QDesktopServices>

namespace {
Answer version(const QByteArray &text)
{
    return UpdateServerFixture::version(text);
}
} // namespace

/** Newer versions, against a server of the test whose authority is trusted here alone. */
class TestUpdates : public QObject
{
    Q_OBJECT

public slots:
    void openFile(const QUrl &url) { m_opened.append(url); }

private slots:
    void initTestCase() { QDesktopServices::setUrlHandler("file"_s, this, "openFile"); }
    void init()
    {
        m_net.reset(); // what it gives back must not be taken from the next one
        m_net = std::make_unique<UpdateServerFixture>();
    }
    // Whatever happened, nothing was asked for without encryption.
    void cleanup() { QCOMPARE(m_net->plain().connections(), 0); }

    void asksForTheVersion_data()
    {
        addColumns<Answer, bool, bool>("answer", "succeeded", "offered");
        addRow("a newer minor number", version("4.2.0"), true, true);
        addRow("a newer patch", version("4.1.4"), true, true);
        addRow("more digits", version("4.1.10"), true, true);
        addRow("the same", version("4.1.3"), true, false);
        addRow("an older one", version("4.0.9"), true, false);
        addRow("another program", version("5.0.0"), true, false);
        addRow("an older program", version("3.9.9"), true, false);
        addRow("garbled", version("four"), true, false);
        addRow("too few numbers", version("4.2"), true, false);
        addRow("no number at all", version(""), true, false);
        addRow("a number beyond all bounds", version("4.99999999999999999999.0"), true, false);
        addRow("a path", version("../../../4.2.0/../../etc/passwd"), true, true);
        addRow("the length of a book", version(QByteArray(1000000, '4')), false, false);
        addRow("no start", Answer::of("4.2.0gm~R"), false, false);
        addRow("no end", Answer::of("w^3sJ4.2.0"), false, false);
        addRow("another start", Answer::of("W^3SJ4.2.0gm~R"), false, false);
        addRow("more than the end", Answer::of("w^3sJ4.2.0gm~R\n"), false, false);
        addRow("a page", Answer::of("<html>w^3sJ4.2.0gm~R</html>"), false, false);
        addRow("nothing", Answer::of(""), false, false);
        addRow("bytes", Answer::of(QByteArray::fromHex("00ff80775e33734a")), false, false);
        addRow("not found", Answer::of("w^3sJ4.2.0gm~R", "404 Not Found"), false, false);
        addRow("a failing server", Answer::of("w^3sJ4.2.0gm~R", "500 Internal Server Error"), false, false);
        addRow("cut", Answer{"HTTP/1.1 200 OK\r\nContent-Length: 20\r\n\r\nw^3sJ4.2.0gm~R", Answer::Close},
               false, false);
        addRow("no HTTP", Answer{"w^3sJ4.2.0gm~R", Answer::Close}, false, false);
        addRow("closed at once", Answer{"", Answer::Close}, false, false);
        addRow("silence", Answer{"", Answer::Stay}, false, false);
        addRow("silence after the head", Answer{"HTTP/1.1 200 OK\r\n\r\nw^3", Answer::Stay}, false, false);
        addRow("a head without an end", Answer{"HTTP/1.1 200 OK\r\nX: ", Answer::Drip}, false, false);
        addRow("without an end", Answer{"HTTP/1.1 200 OK\r\n\r\n", Answer::Drip}, false, false);
        addRow("elsewhere, encrypted", Answer::redirection("/moved"), true, true);
        addRow("elsewhere, in the open", Answer::redirection("http://localhost:PLAIN/moved"), false, false);
        addRow("round in circles", Answer::redirection(UpdateServerFixture::versionPath.toUtf8()), false,
               false);
        addRow("to a file of this computer", Answer::redirection("file:///etc/passwd"), false, false);
    }

    void asksForTheVersion()
    {
        QFETCH(Answer, answer);
        m_net->answer("/moved"_s, version("4.2.0"));
        m_net->plain().answer("/moved"_s, version("4.2.0"));
        m_net->answer(m_net->versionPath, answer);
        UpdateHandler handler;
        QSignalSpy checked(&handler, &UpdateHandler::checkingSucceeded);
        QSignalSpy tested(&handler, &UpdateHandler::connectionChecked);
        QSignalSpy offered(&handler, &UpdateHandler::newVersionAvailable);
        handler.checkForUpdates();
        QTRY_COMPARE(checked.count(), 1);
        QTEST(checked.first().first().toBool(), "succeeded");
        QTEST(!offered.isEmpty(), "offered");
        QCOMPARE(tested.count(), 0);
        QVERIFY(m_net->requests().first().query().isEmpty());

        // A test ends with its answer: nothing is offered by it.
        offered.clear();
        handler.checkConnection();
        QTRY_COMPARE(tested.count(), 1);
        QTEST(tested.first().first().toBool(), "succeeded");
        QCOMPARE(checked.count(), 2);
        QCOMPARE(offered.count(), 0);
    }

    void asksNobodyElse_data()
    {
        addColumns<QString>("certificate");
        for (const char *name : {"foreign", "other name", "expired"})
            addRow(name, QString::fromLatin1(name));
    }

    void asksNobodyElse()
    {
        QFETCH(QString, certificate);
        m_net->serve(certificate);
        m_net->answer(m_net->versionPath, version("4.2.0"));
        UpdateHandler handler;
        QSignalSpy checked(&handler, &UpdateHandler::checkingSucceeded);
        handler.checkForUpdates();
        QTRY_COMPARE(checked.count(), 1);
        QVERIFY(!checked.first().first().toBool());
        QVERIFY(m_net->requests().isEmpty());
    }

    void downloadsIntoAFolderOfItsOwn()
    {
        QByteArray package(5000000, 'v');
        for (int i = 0; i < package.size(); i += 997)
            package[i] = char(i);
        const QByteArray chunks =
            "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\nConnection: close\r\n\r\n" +
            QByteArray::number(package.size(), 16) + "\r\n" + package + "\r\n0\r\n\r\n";
        for (const Answer &answer : {Answer::of(package), Answer{chunks, Answer::Close}}) {
            UpdateHandler handler;
            offer(handler);
            m_net->answer(m_net->packagePath, answer);
            QSignalSpy downloaded(&handler, &UpdateHandler::newVersionDownloaded);
            QSignalSpy progress(&handler, &UpdateHandler::downloadProgress);
            handler.downloadLatest();
            handler.downloadLatest(); // one at a time
            QTRY_COMPARE(downloaded.count(), 1);
            QVERIFY(downloaded.first().first().toBool() && !progress.isEmpty());
            const QStringList files = m_net->leftovers();
            QCOMPARE(files.size(), 1);
            const QFileInfo file(files.first());
            QCOMPARE(file.fileName(), "vorna_4.2.0_amd64.deb"_s);
            QVERIFY(bytesOf(files.first()) == package);
            QVERIFY(!(file.permissions() & QFile::Permissions(0x77))); // of group and others
            QVERIFY(!(file.permissions() & (QFile::ExeOwner | QFile::ExeUser)));
            QVERIFY(!(QFileInfo(file.path()).permissions() & QFile::Permissions(0x77)));
        }
        // What nobody has installed is gone with the program.
        QCOMPARE(m_net->leftovers(), QStringList());
    }

    void slowIsNoFailure()
    {
        UpdateHandler handler;
        offer(handler);
        QSignalSpy downloaded(&handler, &UpdateHandler::newVersionDownloaded);
        Answer slow = Answer::of(QByteArray(150, 'v'));
        slow.end = Answer::Slowly;
        m_net->answer(m_net->packagePath, slow);
        QElapsedTimer time;
        time.start();
        handler.downloadLatest();
        QTRY_COMPARE_WITH_TIMEOUT(downloaded.count(), 1, 20000);
        QVERIFY(time.elapsed() > 2 * UpdateServerFixture::shortPatience);
        QVERIFY(downloaded.first().first().toBool());
    }

    void removesWhatEarlierRunsLeft()
    {
        const QDir temporary = m_net->temporary();
        for (const char *name : {"vorna-update-old", "vorna-update-new", "vorna-other"})
            QVERIFY(temporary.mkpath(QLatin1String(name) + "/in"_s));
        for (const char *name : {"vorna-update-old", "vorna-other"})
            QCOMPARE(QProcess::execute("touch"_s,
                                       {"-d"_s, "3 days ago"_s, temporary.filePath(QLatin1String(name))}),
                     0);
        UpdateHandler handler;
        offer(handler);
        handler.downloadLatest();
        handler.cancel();
        QCOMPARE(temporary.entryList({"vorna-*"_s}), (QStringList{"vorna-other"_s, "vorna-update-new"_s}));
    }

    void keepsNothingOfAFailedDownload_data()
    {
        addColumns<Answer>("answer");
        const QByteArray bytes(100000, 'v');
        addRow("not found", Answer::of(bytes, "404 Not Found"));
        addRow("nothing", Answer::of(""));
        addRow("a part", Answer::of(bytes, "206 Partial Content"));
        addRow("cut", Answer{"HTTP/1.1 200 OK\r\nContent-Length: 200000\r\n\r\n" + bytes, Answer::Close});
        addRow("of no known length",
               Answer{"HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n" + bytes, Answer::Close});
        addRow(
            "cut in a chunk",
            Answer{"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nfffff\r\n" + bytes, Answer::Close});
        addRow("stalled", Answer{"HTTP/1.1 200 OK\r\nContent-Length: 200000\r\n\r\n" + bytes, Answer::Stay});
        addRow("larger than any program",
               Answer{"HTTP/1.1 200 OK\r\nContent-Length: 99000000000\r\n\r\n" + bytes, Answer::Drip});
        addRow("elsewhere, in the open", Answer::redirection("http://localhost:PLAIN/moved"));
    }

    void keepsNothingOfAFailedDownload()
    {
        QFETCH(Answer, answer);
        UpdateHandler handler;
        offer(handler);
        m_net->answer(m_net->packagePath, answer);
        QSignalSpy downloaded(&handler, &UpdateHandler::newVersionDownloaded);
        handler.downloadLatest();
        QTRY_COMPARE(downloaded.count(), 1);
        QVERIFY(!downloaded.first().first().toBool());
        QCOMPARE(m_net->leftovers(), QStringList());
        QVERIFY(!handler.installNewVersion() && m_opened.isEmpty());

        // The next try is another one.
        m_net->answer(m_net->packagePath, Answer::of("a package"));
        handler.downloadLatest();
        QTRY_COMPARE(downloaded.count(), 2);
        QVERIFY(downloaded.last().first().toBool());
    }

    void tellsOfAFullDisk()
    {
        const QByteArray disk = qgetenv("VORNA_SMALL_DISK");
        if (disk.isEmpty() || QStorageInfo(QString::fromLocal8Bit(disk)).bytesTotal() > 64 * 1024 * 1024)
            QSKIP("VORNA_SMALL_DISK names no folder, or one with too much room.");
        m_net->setTemporary(disk);
        const auto entries = [&disk] { return QDir(QString::fromLocal8Bit(disk)).entryList(); };
        const QStringList before = entries();
        UpdateHandler handler;
        offer(handler);
        // Of no length told, so that nothing but the writing can show what is missing.
        m_net->answer(m_net->packagePath,
                      {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4000000\r\n" +
                       QByteArray(64 * 1024 * 1024, 'v') + "\r\n0\r\n\r\n"});
        QSignalSpy downloaded(&handler, &UpdateHandler::newVersionDownloaded);
        handler.downloadLatest();
        QTRY_COMPARE_WITH_TIMEOUT(downloaded.count(), 1, 30000);
        QVERIFY(!downloaded.first().first().toBool());
        QCOMPARE(entries(), before);

        m_net->setTemporary("/dev/null");
        handler.downloadLatest();
        QCOMPARE(downloaded.count(), 2);
        QVERIFY(!downloaded.last().first().toBool());
    }

    void cancelsInSilence()
    {
        UpdateHandler handler;
        offer(handler);
        m_net->answer(m_net->packagePath,
                      {"HTTP/1.1 200 OK\r\nContent-Length: 200000\r\n\r\nsome", Answer::Drip});
        QSignalSpy downloaded(&handler, &UpdateHandler::newVersionDownloaded);
        QSignalSpy progress(&handler, &UpdateHandler::downloadProgress);
        handler.downloadLatest();
        QTRY_VERIFY(!progress.isEmpty());
        QCOMPARE(m_net->leftovers().size(), 1);
        handler.cancel();
        QCOMPARE(m_net->leftovers(), QStringList());
        m_net->answer(m_net->packagePath, Answer::of("a package"));
        handler.downloadLatest();
        QTRY_COMPARE(downloaded.count(), 1);
        QVERIFY(downloaded.first().first().toBool());
    }

    void failsAtOnceWithoutAServer()
    {
        UpdateServer::setAddress(QString());
        UpdateHandler handler;
        QSignalSpy checked(&handler, &UpdateHandler::checkingSucceeded);
        QSignalSpy downloaded(&handler, &UpdateHandler::newVersionDownloaded);
        handler.checkForUpdates();
        handler.downloadLatest();
        QCOMPARE(checked.count(), 1);
        QCOMPARE(downloaded.count(), 1);
        QVERIFY(!checked.first().first().toBool() && !downloaded.first().first().toBool());
    }

private:
    static QByteArray bytesOf(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /** Lets a handler know of version 4.2.0. */
    void offer(UpdateHandler &handler)
    {
        m_net->answer(m_net->versionPath, version("4.2.0"));
        QSignalSpy offered(&handler, &UpdateHandler::newVersionAvailable);
        handler.checkForUpdates();
        QTRY_COMPARE(offered.count(), 1);
    }

    SettingsSandbox m_settings;
    std::unique_ptr<UpdateServerFixture> m_net;
    QList<QUrl> m_opened;
};

QTEST_MAIN(TestUpdates)
#include "tst_updates.moc"
