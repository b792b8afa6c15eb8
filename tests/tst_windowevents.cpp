#include "app/windowsettings.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/groupscontroller.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/tagscontroller.h"
#include "fileops/presentableduplicates.h"
#include "models/contentsmodel.h"
#include "tests/support/windowfixture.h"
#include "ui/dialogs/duplicateprompt.h"
#include "ui/dialogs/fileoperationprogress.h"
#include "ui/dialogs/helpwindow.h"
#include "ui/dialogs/popupmessager.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QSqlError>

namespace {

QSqlError sqlError(int number)
{
    return {QStringLiteral("forged"), QStringLiteral("forged"), QSqlError::StatementError,
            QString::number(number)};
}

} // namespace

/** What the window makes of the news of an open database: errors, progress, duplicates, short messages. */
class TestWindowEvents : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_fixture = std::make_unique<WindowFixture>(); }
    void cleanup() { m_fixture.reset(); }
    void errorsGetAdvice_data();
    void errorsGetAdvice();
    void errorBoxesAreLatched();
    void diskErrorOffersAnotherDatabase();
    void diskErrorEndsProgram();
    void otherDatabaseWaitsForOpenBox();
    void lostConnectionClosesOnce();
    void closeWaitsForNestedLoop();
    void closeSparesNextDatabase();
    void collectionNewsReachBoxes();
    void temporaryWarningGoesAway();
    void progressFollowsOperation();
    void progressStaysUntilTheEnd_data();
    void progressStaysUntilTheEnd();
    void cancelEndsAdding();
    void duplicatesPrompt_data();
    void duplicatesPrompt();
    void chosenNameMatchesAreAdded_data();
    void chosenNameMatchesAreAdded();
    void helpWindowKeepsPlace();

private:
    MainWindow &window() { return m_fixture->window(); }
    FileOperationProgress *progress() { return window().findChild<FileOperationProgress *>(); }
    MainViewController *files() { return window().collection()->mainViewController(); }
    int fileCount() { return files()->contentsModel()->rowCount(); }
    /** Answers the prompt when it comes, and counts how often it came. */
    void answerPrompt(const std::function<void(DuplicatePrompt &)> &answer);

    std::unique_ptr<WindowFixture> m_fixture;
    int m_prompts = 0;
};

void TestWindowEvents::answerPrompt(const std::function<void(DuplicatePrompt &)> &answer)
{
    m_prompts = 0;
    auto *watch = new QTimer(&window());
    connect(watch, &QTimer::timeout, this, [this, answer] {
        if (auto *prompt = qobject_cast<DuplicatePrompt *>(QApplication::activeModalWidget())) {
            ++m_prompts;
            answer(*prompt);
        }
    });
    watch->start(10);
}

void TestWindowEvents::errorsGetAdvice_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("advice");
    const auto row = [](const char *code, const char *advice) {
        QTest::newRow(code) << QString::fromUtf8(code) << QString::fromUtf8(advice);
    };
    row("3", "This may be a result of the file permissions of the database file.");
    row("8", "This may be a result of the permissions of the database file.");
    row("11", "The database file may be corrupt.");
    row("13", "The database is full.");
    row("14", "The database file could not be opened.");
    row("23", "This may be a result of authorization issues.");
    row("26", "The file opened is not a database file.");
    // Extended codes: a corrupt virtual table, a read-only folder.
    row("267", "The database file may be corrupt.");
    row("1544", "This may be a result of the permissions of the database file.");
    row("1", "");
    row("19", "");
    row("", "");
    // A server's five signs are no code of SQLite, though their low byte might look like one.
    row("22027", "");
    row("08006", "");
}

void TestWindowEvents::errorsGetAdvice()
{
    QFETCH(QString, code);
    QFETCH(QString, advice);
    const QString open = m_fixture->openNew();
    window().slotDBErrorOccured(QSqlError());
    window().slotDBErrorOccured(
        QSqlError(QStringLiteral("x"), QStringLiteral("y"), QSqlError::StatementError, code));
    QCOMPARE(m_fixture->boxes(), QStringList());
    QCoreApplication::processEvents();
    const QString text = QStringLiteral("Error Accessing Database: An error has occurred accessing the "
                                        "database. ");
    QCOMPARE(m_fixture->takeBoxes(), advice.isEmpty() ? QStringList() : QStringList{text + advice});
    QCOMPARE(m_fixture->openPath(), open);
}

void TestWindowEvents::errorBoxesAreLatched()
{
    m_fixture->openNew();
    m_fixture->answerBoxes([this](const Messages::Box &) {
        // More of the same, while the box is on the screen.
        for (int i = 0; i < 3; ++i)
            window().slotDBErrorOccured(sqlError(13));
        WindowFixture::nestLoop(20);
        return Messages::Answer{QMessageBox::Ok, -1};
    });
    for (int i = 0; i < 3; ++i)
        window().slotDBErrorOccured(sqlError(11));
    QTest::qWait(50);
    QCOMPARE(m_fixture->takeBoxes().size(), 1);
    // Once it is closed, the next one is told again.
    window().slotDBErrorOccured(sqlError(11));
    QTest::qWait(50);
    QCOMPARE(m_fixture->takeBoxes().size(), 1);
}

void TestWindowEvents::diskErrorOffersAnotherDatabase()
{
    m_fixture->openNew();
    const QString other = m_fixture->makeDatabase(QStringLiteral("other.vrn"));
    Messages::Box asked;
    m_fixture->answerBoxes([&asked](const Messages::Box &box) {
        asked = box;
        return Messages::Answer{QMessageBox::NoButton, 0};
    });
    m_fixture->chooseFile(other);
    window().slotDBErrorOccured(sqlError(10));
    QTRY_COMPARE(m_fixture->openPath(), other);
    QCOMPARE(m_fixture->boxes(),
             QStringList{QStringLiteral("Error: Application can't continue to work with the current "
                                        "database, due to error.\nWhat do you want to do?")});
    QCOMPARE(asked.detailedText, QStringLiteral("This is the result of a disk I/O error."));
    QCOMPARE(asked.actions,
             QStringList({QStringLiteral("Open another database"), QStringLiteral("Exit application")}));
    QCOMPARE(asked.buttons, QMessageBox::StandardButtons(QMessageBox::NoButton));
}

void TestWindowEvents::diskErrorEndsProgram()
{
    m_fixture->openNew();
    m_fixture->answerBoxes([](const Messages::Box &) { return Messages::Answer{QMessageBox::NoButton, 1}; });
    constexpr int notEnded = 7;
    QTimer::singleShot(0, &window(), [this] { window().slotDBErrorOccured(sqlError(10)); });
    QTimer::singleShot(5000, &window(), [] { QCoreApplication::exit(notEnded); });
    QCOMPARE(QApplication::exec(), 0);
    QTRY_VERIFY(!window().collection());
}

void TestWindowEvents::otherDatabaseWaitsForOpenBox()
{
    const QString open = m_fixture->openNew();
    const QString other = m_fixture->makeDatabase(QStringLiteral("other.vrn"));
    m_fixture->answerBoxes([](const Messages::Box &) { return Messages::Answer{QMessageBox::NoButton, 0}; });
    m_fixture->chooseFile(other);
    WindowFixture::inLoop([&] {
        window().slotDBErrorOccured(sqlError(10));
        WindowFixture::nestLoop(200);
        // Whoever runs the loop may still hold the collection.
        QCOMPARE(m_fixture->openPath(), open);
        QTRY_COMPARE(m_fixture->openPath(), other);
    });
}

void TestWindowEvents::lostConnectionClosesOnce()
{
    m_fixture->openNew();
    for (int i = 0; i < 4; ++i)
        emit window().collection()->connectionError();
    QVERIFY(window().collection());
    QTRY_VERIFY(!window().collection());
    const QStringList box{QStringLiteral("Connection problem: Could not connect to the database.")};
    QCOMPARE(m_fixture->takeBoxes(), box);
    // The next database is told of its own loss.
    m_fixture->openNew();
    emit window().collection()->connectionError();
    QTRY_VERIFY(!window().collection());
    QCOMPARE(m_fixture->takeBoxes(), box);
}

void TestWindowEvents::closeWaitsForNestedLoop()
{
    m_fixture->openNew();
    const QPointer<Collection> collection = window().collection();
    WindowFixture::inLoop([&] {
        emit collection->connectionError();
        WindowFixture::nestLoop(100);
        emit collection->connectionError();
        WindowFixture::nestLoop(100);
        QVERIFY(collection);
        QCOMPARE(m_fixture->boxes().size(), 1);
        QTRY_VERIFY(!collection);
    });
    QVERIFY(!window().collection());
}

void TestWindowEvents::closeSparesNextDatabase()
{
    m_fixture->openNew();
    const QString next = m_fixture->makeDatabase(QStringLiteral("next.vrn"));
    WindowFixture::inLoop([&] {
        emit window().collection()->connectionError();
        WindowFixture::nestLoop(100);
        QVERIFY(window().openDatabase(DBDetails::local(next)));
        QTest::qWait(200);
    });
    QCOMPARE(m_fixture->openPath(), next);
}

void TestWindowEvents::collectionNewsReachBoxes()
{
    m_fixture->openNew();
    Collection *collection = window().collection();
    emit collection->showError(QStringLiteral("Title"), QStringLiteral("Text"));
    collection->tagsController()->addTag(QStringLiteral("Red"));
    collection->tagsController()->addTag(QStringLiteral("Red"));
    collection->groupsController()->addGroup(QStringLiteral("Colours"));
    collection->groupsController()->addGroup(QStringLiteral("Colours"));
    QCOMPARE(
        m_fixture->takeBoxes(),
        QStringList({QStringLiteral("Title: Text"),
                     QStringLiteral("Tag already exists: There is already a tag with this name."),
                     QStringLiteral("Tag Group Name Conflict: A tag group with this name already exists.")}));
}

void TestWindowEvents::temporaryWarningGoesAway()
{
    m_fixture->openNew();
    window().show();
    const auto warn = [this](const char *text) {
        emit window().collection()->showTempWarning(QStringLiteral("Warning"), QString::fromUtf8(text));
    };
    QElapsedTimer clock;
    warn("first");
    clock.start();
    auto *box = window().findChild<QMessageBox *>(QStringLiteral("temporaryWarning"));
    QVERIFY(box->isVisible() && !box->isModal());
    warn("second");
    QCOMPARE(box->text(), QStringLiteral("first"));
    QTest::qWait(1000);
    box->close();
    // The time of a box that was closed by hand is not the time of the next one.
    warn("third");
    clock.start();
    QCOMPARE(box->text(), QStringLiteral("third"));
    QTRY_VERIFY_WITH_TIMEOUT(!box->isVisible(), 4000);
    QVERIFY2(clock.elapsed() >= 1900, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(m_fixture->takeBoxes(), QStringList());
}

void TestWindowEvents::progressFollowsOperation()
{
    m_fixture->openNew();
    const auto *bar = progress()->findChild<QProgressBar *>();
    const auto *detail = progress()->findChild<QLabel *>(QStringLiteral("detailLabel"));
    QVERIFY(progress()->isHidden());
    emit files()->startedAddingFiles(QStringLiteral("Linking to files..."));
    QVERIFY(progress()->isVisible());
    QCOMPARE(progress()->windowTitle(), QStringLiteral("Vorna File Operation"));
    QCOMPARE(progress()->windowModality(), Qt::ApplicationModal);
    QCOMPARE(progress()->findChild<QLabel *>(QStringLiteral("operationLabel"))->text(),
             QStringLiteral("Linking to files..."));
    emit files()->addingFilesProgress(QStringLiteral("Adding a.txt"), 40);
    QCOMPARE(bar->maximum(), 100);
    QCOMPARE(bar->value(), 40);
    QCOMPARE(detail->text(), QStringLiteral("Adding a.txt"));
    emit files()->addingFilesProgress(QString(), -1);
    QCOMPARE(bar->maximum(), 0);
    QCOMPARE(detail->text(), QStringLiteral("Adding a.txt"));
    emit files()->addingFilesProgress(QString(300, QLatin1Char('w')), 60);
    QCOMPARE(bar->maximum(), 100);
    QCOMPARE(bar->value(), 60);
    QVERIFY(detail->text().size() < 300);
    emit files()->finishedAddingFiles();
    QVERIFY(progress()->isHidden());
}

void TestWindowEvents::progressStaysUntilTheEnd_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("button") << 0;
    QTest::newRow("Esc") << 1;
    QTest::newRow("close button") << 2;
}

void TestWindowEvents::progressStaysUntilTheEnd()
{
    QFETCH(int, way);
    m_fixture->openNew();
    emit files()->startedAddingFiles(QStringLiteral("Deleting files..."));
    QSignalSpy canceled(progress(), &FileOperationProgress::canceled);
    if (way == 0)
        progress()->findChild<QPushButton *>()->click();
    else if (way == 1)
        QTest::keyClick(progress(), Qt::Key_Escape);
    else
        progress()->close();
    QCOMPARE(canceled.count(), 1);
    QVERIFY(progress()->isVisible());
    emit files()->finishedAddingFiles();
    QVERIFY(progress()->isHidden());
}

void TestWindowEvents::cancelEndsAdding()
{
    m_fixture->openNew();
    QDir().mkdir(m_fixture->path(QStringLiteral("many")));
    for (int i = 0; i < 2000; ++i)
        m_fixture->write(QStringLiteral("many/%1.txt").arg(i), QByteArray::number(i));
    connect(files(), &MainViewController::addingFilesProgress, progress(),
            [this] { progress()->findChild<QPushButton *>()->click(); });
    QSignalSpy finished(files(), &MainViewController::finishedAddingFiles);
    files()->addUrls({QUrl::fromLocalFile(m_fixture->path(QStringLiteral("many")))});
    QVERIFY(finished.wait(30000));
    QTest::qWait(50);
    QCOMPARE(fileCount(), 0);
    QVERIFY(progress()->isHidden());
    QCOMPARE(m_fixture->takeBoxes(), QStringList());
}

void TestWindowEvents::duplicatesPrompt_data()
{
    QTest::addColumn<bool>("listed");
    QTest::addColumn<bool>("nameMatch");
    QTest::addColumn<bool>("contentMatch");
    QTest::addColumn<int>("prompts");
    QTest::addColumn<bool>("reports");
    QTest::newRow("nothing") << true << false << false << 0 << false;
    QTest::newRow("content") << true << false << true << 1 << true;
    QTest::newRow("content, not listed") << false << false << true << 0 << false;
    QTest::newRow("name, not listed") << false << true << false << 1 << false;
    QTest::newRow("both, not listed") << false << true << true << 1 << false;
}

void TestWindowEvents::duplicatesPrompt()
{
    QFETCH(bool, listed);
    QFETCH(bool, nameMatch);
    QFETCH(bool, contentMatch);
    QFETCH(int, prompts);
    QFETCH(bool, reports);
    m_fixture->openNew();
    QSettings().setValue(QStringLiteral("PreferencesDialog/listDuplicates"), listed);
    DuplicateMatch match;
    match.addedFiles = {DuplicateFileInfo{0, {}, QStringLiteral("/in/a.txt"), 1, {}}};
    PresentableDuplicates duplicates;
    if (nameMatch)
        duplicates.nameMatches << match;
    if (contentMatch)
        duplicates.contentMatches << match;
    bool isReported = false;
    answerPrompt([&isReported](DuplicatePrompt &prompt) {
        isReported = prompt.findChild<QWidget *>(QStringLiteral("contentMatchesEdit"))
                         ->property("plainText")
                         .toString()
                         .contains(QLatin1String("/in/a.txt"));
        prompt.reject();
    });
    emit window().collection()->duplicatesReady(duplicates);
    QCOMPARE(m_prompts, prompts);
    QCOMPARE(isReported, reports);
}

void TestWindowEvents::chosenNameMatchesAreAdded_data()
{
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<int>("added");
    QTest::newRow("Ok") << true << 1;
    QTest::newRow("Cancel") << false << 0;
}

void TestWindowEvents::chosenNameMatchesAreAdded()
{
    QFETCH(bool, accepted);
    QFETCH(int, added);
    m_fixture->openNew();
    QSettings().setValue(QStringLiteral("PreferencesDialog/checkForNameDuplicates"), true);
    QSettings().setValue(QStringLiteral("PreferencesDialog/listDuplicates"), false);
    QDir().mkdir(m_fixture->path(QStringLiteral("other")));
    const QUrl first = QUrl::fromLocalFile(m_fixture->write(QStringLiteral("same.txt"), "one"));
    const QUrl second = QUrl::fromLocalFile(m_fixture->write(QStringLiteral("other/same.txt"), "two"));
    files()->addUrls({first});
    QTRY_COMPARE(fileCount(), 1);
    answerPrompt([accepted](DuplicatePrompt &prompt) { prompt.done(accepted ? 1 : 0); });
    QSignalSpy finished(files(), &MainViewController::finishedAddingFiles);
    files()->addUrls({second});
    // The second operation adds what the prompt let pass.
    QTRY_COMPARE(finished.count(), 1 + added);
    QTRY_COMPARE(m_prompts, 1);
    QTRY_COMPARE(fileCount(), 1 + added);
}

void TestWindowEvents::helpWindowKeepsPlace()
{
    QPointer<HelpWindow> manual = new HelpWindow(HelpWindow::Manual);
    QCOMPARE(manual->size(), QSize(660, 635));
    QCOMPARE(manual->windowTitle(), QStringLiteral("Manual"));
    manual->resize(500, 400);
    manual->show();
    // The program ends with the manual still open.
    QTimer::singleShot(0, &window(), [] { QCoreApplication::quit(); });
    QApplication::exec();
    QTRY_VERIFY(!manual);
    QVERIFY(!WindowSettings::layout(WindowSettings::manualGeometry).isEmpty());
    const HelpWindow guide(HelpWindow::QuickStartGuide);
    QCOMPARE(guide.size(), QSize(660, 635));
    QCOMPARE(guide.windowTitle(), QStringLiteral("Quick Start Guide"));
    QCOMPARE(HelpWindow(HelpWindow::Manual).size(), QSize(500, 400));
}

QTEST_MAIN(TestWindowEvents)
#include "tst_windowevents.moc"
