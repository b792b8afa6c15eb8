#include "app/window/updatebar.h"
#include "net/updatehandler.h"
#include "tests/support/updateserverfixture.h"
#include "tests/support/windowfixture.h"
#include "ui/dialogs/preferencesdialog.h"

#include <QDesktopServices>
#include <QProgressBar>
#include <QPushButton>
#include <QToolBar>

/** What the window shows of newer versions, and the test of the connection in the preferences. */
class TestUpdateBar : public QObject
{
    Q_OBJECT

public slots:
    void openFile(const QUrl &url) { m_opened.append(url); }

private slots:
    void initTestCase() { QDesktopServices::setUrlHandler("file"_s, this, "openFile"); }

    void init()
    {
        m_opened.clear();
        m_net.reset(); // what it gives back must not be taken from the next one
        m_net = std::make_unique<UpdateServerFixture>();
        m_fixture = std::make_unique<WindowFixture>();
    }

    void cleanup()
    {
        m_fixture.reset();
        QCOMPARE(m_net->plain().connections(), 0);
    }

    void windowOffersDownloadsAndInstalls()
    {
        m_net->answer(m_net->versionPath, UpdateServerFixture::version("4.2.0"));
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
        QTRY_VERIFY(!bar->isVisible());
        QVERIFY(offer->isVisible() && !cancel->isVisible());

        m_net->answer(m_net->packagePath,
                      {"HTTP/1.1 200 OK\r\nContent-Length: 2000\r\n\r\nsome", Answer::Drip});
        offer->trigger();
        QTRY_COMPARE(bar->maximum(), 2000);
        QTRY_VERIFY(bar->isVisible());
        QVERIFY(bar->value() >= 4 && bar->value() < 2000);
        cancel->trigger();
        QVERIFY(!cancel->isVisible() && offer->isVisible());
        QTRY_VERIFY(!bar->isVisible());

        m_net->answer(m_net->packagePath, Answer::of("a package"));
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
        QCOMPARE(m_opened, QList<QUrl>{QUrl::fromLocalFile(m_net->leftovers().value(0))});
        QVERIFY(!fixture().window().isVisible());
        // The installer reads it when the program has ended.
        fixture().restart();
        QCOMPARE(m_net->leftovers().size(), 1);
    }

    void windowOffersAgainWhatIsGone()
    {
        m_net->answer(m_net->versionPath, UpdateServerFixture::version("4.2.0"));
        m_net->answer(m_net->packagePath, Answer::of("a package"));
        startWindow(true);
        QAction *install = fixture().action("Install New Version"_s);
        QTRY_VERIFY(install->isVisible());
        // What lies there already is not offered once more.
        auto *handler = fixture().window().findChild<UpdateHandler *>();
        QSignalSpy checked(handler, &UpdateHandler::checkingSucceeded);
        handler->checkForUpdates();
        QTRY_COMPARE(checked.count(), 1);
        QVERIFY(install->isVisible() && m_net->requests().last().path() != m_net->packagePath);

        QCOMPARE(m_net->leftovers().size(), 1);
        QVERIFY2(QFile::remove(m_net->leftovers().value(0)), qPrintable(m_net->leftovers().value(0)));
        fixture().answerBoxes([](const Messages::Box &) { return Messages::Answer{QMessageBox::Ok, -1}; });
        install->trigger();
        QCOMPARE(fixture().takeBoxes().last(),
                 "Update: The installer of the new version could not be opened."_s);
        QCOMPARE(m_opened, QList<QUrl>());
        QVERIFY(!install->isVisible());
        QVERIFY(fixture().window().isVisible());
        QVERIFY(fixture().action("Download New Version"_s)->isVisible());
    }

    void closedPreferencesBeginNoDownload()
    {
        m_net->answer(m_net->versionPath, UpdateServerFixture::version("4.2.0"));
        m_net->answer(m_net->packagePath,
                      {"HTTP/1.1 200 OK\r\nContent-Length: 2000\r\n\r\nsome", Answer::Drip});
        startWindow(true);
        QAction *cancel = fixture().action("Cancel Download"_s);
        QTRY_VERIFY(cancel->isVisible());
        cancel->trigger();
        auto *bar = fixture().window().findChild<UpdateBar *>();
        bar->readSettings(); // as after a dialog, whatever its end
        QVERIFY(!cancel->isVisible() && fixture().action("Download New Version"_s)->isVisible());
        QSettings().setValue("PreferencesDialog/autoUpdate"_s, false);
        bar->readSettings();
        QSettings().setValue("PreferencesDialog/autoUpdate"_s, true);
        bar->readSettings();
        QVERIFY(cancel->isVisible());
        // An answer that is still on its way when checking is switched off is not waited for.
        cancel->trigger();
        UpdateHandler *handler = bar->handler();
        QSignalSpy checked(handler, &UpdateHandler::checkingSucceeded);
        handler->checkForUpdates();
        QSettings().setValue("PreferencesDialog/checkForUpdates"_s, false);
        bar->readSettings();
        QSignalSpy tested(handler, &UpdateHandler::connectionChecked);
        handler->checkConnection();
        QTRY_COMPARE(tested.count(), 1);
        QCOMPARE(checked.count(), 1); // that of the test
    }

    void narrowWindowShowsTheOffer()
    {
        m_net->answer(m_net->versionPath, UpdateServerFixture::version("4.2.0"));
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
        m_net->answer(m_net->versionPath, UpdateServerFixture::version("4.2.0"));
        m_net->answer(m_net->packagePath, Answer::of("a package"));
        startWindow(true);
        QTRY_VERIFY(fixture().action("Install New Version"_s)->isVisible());
        QVERIFY(!fixture().action("Download New Version"_s)->isVisible());
        QCOMPARE(fixture().takeBoxes(), QStringList());
    }

    void windowAsksNothingUntilItIsWanted()
    {
        startWindow(false, false);
        QVERIFY(!QTest::qWaitFor([this] { return m_net->connections() > 0; }, 200));
    }

    void testOfTheConnectionTells_data()
    {
        addColumns<Answer, QString>("answer", "box");
        addRow("an answer", UpdateServerFixture::version("4.2.0"),
               "Checked Connection: Update check succeeded."_s);
        addRow("none", Answer::of("?"), "Checked Connection: The update server could not be reached."_s);
    }

    void testOfTheConnectionTells()
    {
        QFETCH(Answer, answer);
        UpdateHandler handler;
        QSignalSpy checked(&handler, &UpdateHandler::checkingSucceeded);
        m_net->answer(m_net->versionPath, {"", Answer::Stay});
        handler.checkForUpdates(); // still on its way
        QTRY_COMPARE(m_net->requests().size(), 1);
        auto dialog = std::make_unique<PreferencesDialog>(&handler);
        dialog->findChild<QPushButton *>("testButton"_s)->click();
        dialog = std::make_unique<PreferencesDialog>(&handler); // whose answer nobody waits for
        QTRY_COMPARE(m_net->requests().size(), 2);
        m_net->answer(m_net->versionPath, answer);
        auto *test = dialog->findChild<QPushButton *>("testButton"_s);
        test->click();
        QVERIFY(!test->isEnabled());
        QTRY_VERIFY(test->isEnabled());
        QTEST(fixture().takeBoxes().join(QLatin1Char('|')), "box");
        QTRY_COMPARE(checked.count(), 2); // the first check has given up as well
        QCOMPARE(fixture().takeBoxes(), QStringList());
    }

private:
    WindowFixture &fixture() { return *m_fixture; }
    void startWindow(bool downloads, bool checks = true)
    {
        if (checks)
            QSettings().setValue("PreferencesDialog/checkForUpdates"_s, true);
        QSettings().setValue("PreferencesDialog/autoUpdate"_s, downloads);
        fixture().restart();
        fixture().window().resize(1400, 700);
        fixture().window().show();
    }

    std::unique_ptr<UpdateServerFixture> m_net;
    std::unique_ptr<WindowFixture> m_fixture;
    QList<QUrl> m_opened;
};

QTEST_MAIN(TestUpdateBar)
#include "tst_updatebar.moc"
