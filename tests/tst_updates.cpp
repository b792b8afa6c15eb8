#include "app/window/updatebar.h"
#include "net/updatehandler.h"
#include "net/updateserver.h"
#include "tests/support/httpsserver.h"
#include "tests/support/windowfixture.h"
#include "ui/dialogs/feedbackdialog.h"
#include "ui/dialogs/preferencesdialog.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTextEdit>
#include <QToolBar>

Q_DECLARE_METATYPE(Answer)

namespace {

constexpr int shortPatience = 1000; // milliseconds
const QString versionPath = QStringLiteral("/CurrentVersionWIN.php");
const QString packagePath = QStringLiteral("/vorna_4.2.0_amd64.deb");
const QString feedbackPath = QStringLiteral("/feedback.php");

Answer version(const QByteArray &text)
{
    return Answer::of("w^3sJ" + text + "gm~R");
}

} // namespace

/** Newer versions and feedback, against a server of the test whose authority is trusted here alone. */
class TestUpdates : public QObject
{
    Q_OBJECT

public slots:
    void openFile(const QUrl &url) { m_opened.append(url); }

private slots:
    void initTestCase() { m_authority = std::make_unique<TestAuthority>(); }

    void init()
    {
        m_temporary = std::make_unique<QTemporaryDir>();
        m_outerTemporary = qgetenv("TMPDIR");
        qputenv("TMPDIR", QFile::encodeName(m_temporary->path()));
        m_plain = std::make_unique<TestServer>();
        serve("good"_s);
        m_opened.clear();
        QDesktopServices::setUrlHandler("file"_s, this, "openFile");
    }

    void cleanup()
    {
        QDesktopServices::unsetUrlHandler("file"_s);
        UpdateServer::setAddress(QString());
        m_fixture.reset();
        // Whatever happened, nothing was asked for without encryption.
        QCOMPARE(m_plain->connections(), 0);
        m_outerTemporary.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", m_outerTemporary);
    }

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
        addRow("without an end", Answer{"HTTP/1.1 200 OK\r\n\r\n", Answer::Drip}, false, false);
        addRow("elsewhere, encrypted", Answer::redirection("/moved"), true, true);
        addRow("elsewhere, in the open", Answer::redirection("http://localhost:PLAIN/moved"), false, false);
        addRow("round in circles", Answer::redirection(versionPath.toUtf8()), false, false);
        addRow("to a file of this computer", Answer::redirection("file:///etc/passwd"), false, false);
    }

    void asksForTheVersion()
    {
        QFETCH(Answer, answer);
        this->answer(versionPath, answer);
        m_server->answer("/moved"_s, version("4.2.0"));
        m_plain->answer("/moved"_s, version("4.2.0"));
        UpdateHandler handler;
        QSignalSpy checked(&handler, &UpdateHandler::checkingSucceeded);
        QSignalSpy tested(&handler, &UpdateHandler::connectionChecked);
        QSignalSpy offered(&handler, &UpdateHandler::newVersionAvailable);
        handler.checkForUpdates();
        QTRY_COMPARE(checked.count(), 1);
        QTEST(checked.first().first().toBool(), "succeeded");
        QTEST(!offered.isEmpty(), "offered");
        QCOMPARE(tested.count(), 0);
        QVERIFY(m_server->requests().first().query().isEmpty());

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
        serve(certificate);
        m_server->answer(versionPath, version("4.2.0"));
        m_server->answer(feedbackPath, Answer::of("p!4%hwT"));
        UpdateHandler handler;
        QSignalSpy checked(&handler, &UpdateHandler::checkingSucceeded);
        handler.checkForUpdates();
        QTRY_COMPARE(checked.count(), 1);
        QVERIFY(!checked.first().first().toBool());
        sendFeedback("secret"_s, QString());
        QTRY_COMPARE(fixture().boxes(),
                     QStringList{"Network error: An error occurred while sending feedback."_s});
        QVERIFY(m_server->requests().isEmpty());
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
            m_server->answer(packagePath, answer);
            QSignalSpy downloaded(&handler, &UpdateHandler::newVersionDownloaded);
            QSignalSpy progress(&handler, &UpdateHandler::downloadProgress);
            handler.downloadLatest();
            handler.downloadLatest(); // one at a time
            QTRY_COMPARE(downloaded.count(), 1);
            QVERIFY(downloaded.first().first().toBool() && !progress.isEmpty());
            const QStringList files = leftovers();
            QCOMPARE(files.size(), 1);
            const QFileInfo file(files.first());
            QCOMPARE(file.fileName(), "vorna_4.2.0_amd64.deb"_s);
            QVERIFY(TestFolder::read(files.first()) == package);
            constexpr auto others = QFile::Permissions(0x7077);
            QVERIFY(!(file.permissions() & others & ~QFile::Permissions(0x7000)));
            QVERIFY(!(file.permissions() & (QFile::ExeOwner | QFile::ExeUser)));
            QVERIFY(!(QFileInfo(file.path()).permissions() & QFile::Permissions(0x77)));
        }
        // What nobody has installed is gone with the program.
        QCOMPARE(leftovers(), QStringList());
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
        this->answer(packagePath, answer);
        QSignalSpy downloaded(&handler, &UpdateHandler::newVersionDownloaded);
        handler.downloadLatest();
        QTRY_COMPARE(downloaded.count(), 1);
        QVERIFY(!downloaded.first().first().toBool());
        QCOMPARE(leftovers(), QStringList());
        QVERIFY(!handler.installNewVersion() && m_opened.isEmpty());

        // The next try is another one.
        this->answer(packagePath, Answer::of("a package"));
        handler.downloadLatest();
        QTRY_COMPARE(downloaded.count(), 2);
        QVERIFY(downloaded.last().first().toBool());
    }

    void tellsOfAFullDisk()
    {
        const QByteArray disk = qgetenv("VORNA_SMALL_DISK");
        if (disk.isEmpty() || QStorageInfo(QString::fromLocal8Bit(disk)).bytesTotal() > 64 * 1024 * 1024)
            QSKIP("VORNA_SMALL_DISK names no folder, or one with too much room.");
        qputenv("TMPDIR", disk);
        const auto entries = [&disk] { return QDir(QString::fromLocal8Bit(disk)).entryList(); };
        const QStringList before = entries();
        UpdateHandler handler;
        offer(handler);
        m_server->answer(packagePath, Answer::of(QByteArray(64 * 1024 * 1024, 'v')));
        QSignalSpy downloaded(&handler, &UpdateHandler::newVersionDownloaded);
        handler.downloadLatest();
        QTRY_COMPARE_WITH_TIMEOUT(downloaded.count(), 1, 30000);
        QVERIFY(!downloaded.first().first().toBool());
        QCOMPARE(entries(), before);

        qputenv("TMPDIR", "/dev/null");
        handler.downloadLatest();
        QCOMPARE(downloaded.count(), 2);
        QVERIFY(!downloaded.last().first().toBool());
    }

    void cancelsInSilence()
    {
        UpdateHandler handler;
        offer(handler);
        m_server->answer(packagePath,
                         {"HTTP/1.1 200 OK\r\nContent-Length: 200000\r\n\r\nsome", Answer::Drip});
        QSignalSpy downloaded(&handler, &UpdateHandler::newVersionDownloaded);
        QSignalSpy progress(&handler, &UpdateHandler::downloadProgress);
        handler.downloadLatest();
        QTRY_VERIFY(!progress.isEmpty());
        QCOMPARE(leftovers().size(), 1);
        handler.cancel();
        QCOMPARE(leftovers(), QStringList());
        m_server->answer(packagePath, Answer::of("a package"));
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
        QCOMPARE(fixture().takeBoxes(), QStringList());
        sendFeedback("lost?"_s, QString());
        QCOMPARE(fixture().takeBoxes(),
                 QStringList{"Network error: An error occurred while sending feedback."_s});
    }

    void windowOffersDownloadsAndInstalls()
    {
        m_server->answer(versionPath, version("4.2.0"));
        startWindow(false);
        QAction *offer = fixture().action("Download New Version"_s);
        QAction *install = fixture().action("Install New Version"_s);
        QAction *cancel = fixture().action("Cancel Download"_s);
        const auto *bar =
            fixture().window().findChild<QToolBar *>("SearchFilesBar"_s)->findChild<QProgressBar *>();
        QVERIFY(!offer->isVisible() && !install->isVisible() && !cancel->isVisible() && !bar->isVisible());
        QTRY_VERIFY(offer->isVisible());

        // Nothing comes: it is told, and offered again.
        offer->trigger();
        QVERIFY(!offer->isVisible() && cancel->isVisible());
        QTRY_COMPARE(
            fixture().boxes(),
            QStringList{"Error Downloading Update: An error occurred while downloading the new version."_s});
        fixture().takeBoxes();
        QVERIFY(offer->isVisible() && !cancel->isVisible() && !bar->isVisible());

        m_server->answer(packagePath, {"HTTP/1.1 200 OK\r\nContent-Length: 2000\r\n\r\nsome", Answer::Drip});
        offer->trigger();
        QTRY_COMPARE(bar->maximum(), 2000);
        QTRY_VERIFY(bar->isVisible());
        QVERIFY(bar->value() >= 4 && bar->value() < 2000);
        cancel->trigger();
        QVERIFY(!cancel->isVisible() && offer->isVisible());
        QTRY_VERIFY(!bar->isVisible());

        m_server->answer(packagePath, Answer::of("a package"));
        offer->trigger();
        QTRY_VERIFY(install->isVisible());
        QVERIFY(!offer->isVisible() && !cancel->isVisible());
        install->trigger(); // the box is answered by Cancel
        const QStringList asked{
            "Update: This program must close in order to open the installer of a new version."_s};
        QCOMPARE(fixture().takeBoxes(), asked);
        QVERIFY(m_opened.isEmpty() && fixture().window().isVisible());
        fixture().answerBoxes([](const Messages::Box &) { return Messages::Answer{QMessageBox::Ok, -1}; });
        install->trigger();
        QCOMPARE(fixture().takeBoxes(), asked);
        QCOMPARE(m_opened, QList<QUrl>{QUrl::fromLocalFile(leftovers().value(0))});
        QVERIFY(!fixture().window().isVisible());
        // The installer reads it when the program has ended.
        fixture().restart();
        QCOMPARE(leftovers().size(), 1);
    }

    void narrowWindowShowsTheOffer()
    {
        m_server->answer(versionPath, version("4.2.0"));
        startWindow(false);
        MainWindow &window = fixture().window();
        window.resize(780, 600);
        auto *bar = window.findChild<QToolBar *>("SearchFilesBar"_s);
        QAction *offer = fixture().action("Download New Version"_s);
        QTRY_VERIFY(offer->isVisible());
        QTRY_VERIFY(bar->widgetForAction(offer)->isVisible());
        // That row is none of the layout that comes back.
        QVERIFY(window.toolBarBreak(bar));
        QSettings().setValue("PreferencesDialog/checkForUpdates"_s, false);
        fixture().restart();
        QVERIFY(
            !fixture().window().toolBarBreak(fixture().window().findChild<QToolBar *>("SearchFilesBar"_s)));
    }

    void windowDownloadsWithoutAQuestion()
    {
        m_server->answer(versionPath, version("4.2.0"));
        m_server->answer(packagePath, Answer::of("a package"));
        startWindow(true);
        QTRY_VERIFY(fixture().action("Install New Version"_s)->isVisible());
        QVERIFY(!fixture().action("Download New Version"_s)->isVisible());
        QCOMPARE(fixture().takeBoxes(), QStringList());
    }

    void windowAsksNothingUntilItIsWanted()
    {
        startWindow(false, false);
        QVERIFY(!QTest::qWaitFor([this] { return m_server->connections() > 0; }, 200));
    }

    void testOfTheConnectionTells_data()
    {
        addColumns<Answer, QString>("answer", "box");
        addRow("an answer", version("4.2.0"), "Checked Connection: Update check succeeded."_s);
        addRow("none", Answer::of("?"), "Checked Connection: The update server could not be reached."_s);
    }

    void testOfTheConnectionTells()
    {
        QFETCH(Answer, answer);
        fixture(); // notes the boxes
        UpdateHandler handler;
        QSignalSpy checked(&handler, &UpdateHandler::checkingSucceeded);
        this->answer(versionPath, {"", Answer::Stay});
        handler.checkForUpdates(); // still on its way
        QTRY_COMPARE(m_server->requests().size(), 1);
        auto dialog = std::make_unique<PreferencesDialog>(&handler);
        dialog->findChild<QPushButton *>("testButton"_s)->click();
        dialog = std::make_unique<PreferencesDialog>(&handler); // whose answer nobody waits for
        QTRY_COMPARE(m_server->requests().size(), 2);
        m_server->answer(versionPath, answer);
        auto *test = dialog->findChild<QPushButton *>("testButton"_s);
        test->click();
        QVERIFY(!test->isEnabled());
        QTRY_VERIFY(test->isEnabled());
        QTEST(fixture().takeBoxes().join(QLatin1Char('|')), "box");
        QTRY_COMPARE(checked.count(), 2); // the first check has given up as well
        QCOMPARE(fixture().takeBoxes(), QStringList());
    }

    void feedbackIsSentAsItIsTyped()
    {
        m_server->answer(feedbackPath, Answer::of("p!4%hwT"));
        const QString message = "1 + 1 = 2 & 100 %41; #?/\\ \u00fc \u4e2d %2 %1\nsecond line"_s;
        const QPointer<FeedbackDialog> dialog = sendFeedback(message, "a+b@example.org"_s);
        QTRY_COMPARE(fixture().boxes(),
                     QStringList{"Feedback Received: Your message has been recorded. Thank you."_s});
        QTRY_VERIFY(!dialog);
        QCOMPARE(m_server->requests().size(), 1);
        const QList<QByteArray> items =
            m_server->requests().first().query(QUrl::FullyEncoded).toUtf8().split('&');
        QCOMPARE(items.size(), 2);
        // As a web server decodes them: there a plus is a blank.
        const auto value = [&items](int i) {
            return QString::fromUtf8(QByteArray::fromPercentEncoding(
                items.at(i).mid(items.at(i).indexOf('=') + 1).replace('+', ' ')));
        };
        QVERIFY(items.at(0).startsWith("feedback=") && items.at(1).startsWith("email="));
        QCOMPARE(value(0), message + " \nVersion: 4.1.3"_s);
        QCOMPARE(value(1), "a+b@example.org"_s);
    }

    void feedbackThatFailsIsKept_data()
    {
        addColumns<Answer>("answer");
        addRow("refused", Answer::of("no"));
        addRow("more than the token", Answer::of("p!4%hwT "));
        addRow("a failing server", Answer::of("p!4%hwT", "500 Internal Server Error"));
        addRow("cut", Answer{"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\np!4%hwT", Answer::Close});
        addRow("huge", Answer::of(QByteArray(1000000, 'p')));
        addRow("silence", Answer{"", Answer::Stay});
        addRow("elsewhere, in the open", Answer::redirection("http://localhost:PLAIN/moved"));
    }

    void feedbackThatFailsIsKept()
    {
        QFETCH(Answer, answer);
        this->answer(feedbackPath, answer);
        const QPointer<FeedbackDialog> dialog = sendFeedback("kept"_s, "me"_s);
        QVERIFY(!send(*dialog)->isEnabled()); // until it is settled
        QTRY_COMPARE(fixture().boxes(),
                     QStringList{"Network error: An error occurred while sending feedback."_s});
        QVERIFY(dialog && dialog->isVisible() && send(*dialog)->isEnabled());
        QCOMPARE(dialog->findChild<QTextEdit *>()->toPlainText(), "kept"_s);
        QCOMPARE(dialog->findChild<QLineEdit *>()->text(), "me"_s);
        this->answer(feedbackPath, Answer::of("p!4%hwT"));
        send(*dialog)->click();
        QTRY_VERIFY(!dialog);
        QCOMPARE(fixture().boxes().size(), 2);
    }

private:
    /** The window, from the first time on that a test needs one. */
    WindowFixture &fixture()
    {
        if (!m_fixture)
            m_fixture = std::make_unique<WindowFixture>();
        return *m_fixture;
    }
    void serve(const QString &certificate)
    {
        m_server = std::make_unique<TestServer>(m_authority->certificate(certificate),
                                                m_authority->key(certificate));
        UpdateServer::setAddress(m_server->address());
    }
    /** Lets the server say this, and nobody wait long for one that does not end. */
    void answer(const QString &path, Answer answer)
    {
        answer.bytes.replace("PLAIN", QByteArray::number(m_plain->serverPort()));
        m_server->answer(path, answer);
        const bool hasEnd = answer.end == Answer::Close;
        UpdateServer::setAddress(m_server->address(), hasEnd ? UpdateServer::usualPatience : shortPatience);
    }
    /** Lets a handler know of version 4.2.0. */
    void offer(UpdateHandler &handler)
    {
        m_server->answer(versionPath, version("4.2.0"));
        QSignalSpy offered(&handler, &UpdateHandler::newVersionAvailable);
        handler.checkForUpdates();
        QTRY_COMPARE(offered.count(), 1);
    }
    /** What downloads have left among the temporary files: each file, and each folder without one. */
    QStringList leftovers() const
    {
        QStringList found;
        for (const QFileInfo &folder : QDir(m_temporary->path()).entryInfoList({"vorna-update-*"_s})) {
            const QDir entries(folder.filePath());
            const QStringList files = entries.entryList(QDir::Files | QDir::Hidden);
            found.append(files.isEmpty() ? folder.filePath() : entries.filePath(files.first()));
        }
        return found;
    }
    void startWindow(bool downloads, bool checks = true)
    {
        fixture();
        if (checks)
            QSettings().setValue("PreferencesDialog/checkForUpdates"_s, true);
        QSettings().setValue("PreferencesDialog/autoUpdate"_s, downloads);
        fixture().restart();
        fixture().window().resize(1400, 700);
        fixture().window().show();
    }
    static QAbstractButton *send(const QWidget &dialog)
    {
        return dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok);
    }
    /** Opens the dialog by its command, types and sends. */
    QPointer<FeedbackDialog> sendFeedback(const QString &message, const QString &email)
    {
        fixture().window().show();
        fixture().action("Send feedback"_s)->trigger();
        const QPointer<FeedbackDialog> dialog = fixture().window().findChild<FeedbackDialog *>();
        if (dialog->isModal() || send(*dialog)->isEnabled())
            qFatal("a dialog with nothing to send lets it be sent");
        dialog->findChild<QTextEdit *>()->setPlainText(message);
        dialog->findChild<QLineEdit *>()->setText(email);
        send(*dialog)->click();
        return dialog;
    }

    std::unique_ptr<TestAuthority> m_authority;
    SettingsSandbox m_settings;
    std::unique_ptr<WindowFixture> m_fixture;
    std::unique_ptr<QTemporaryDir> m_temporary;
    QByteArray m_outerTemporary;
    std::unique_ptr<TestServer> m_server;
    std::unique_ptr<TestServer> m_plain; // as a redirection without encryption would have it
    QList<QUrl> m_opened;
};

QTEST_MAIN(TestUpdates)
#include "tst_updates.moc"
