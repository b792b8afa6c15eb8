#ifndef Q_OS_WIN
#include "app/endsignals.h"
#endif
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/tagscontroller.h"
#include "fileops/worker/presentableduplicates.h"
#include "models/contents/contentsmodel.h"
#include "models/tags/tagstablemodel.h"
#include "tests/support/windowfixture.h"
#include "ui/dialogs/databasecontentsselector.h"
#include "ui/dialogs/duplicateprompt.h"
#include "ui/dialogs/fileoperationprogress.h"
#include "ui/dialogs/shellimportnotification.h"

#include <QApplication>
#include <QListView>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTableView>

#include <csignal>

static QSqlError sqlError(int number)
{
    return {"forged"_s, "forged"_s, QSqlError::StatementError, QString::number(number)};
}

/** What the window makes of the news of an open database: errors, progress, duplicates. */
class TestWindowEvents : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_fixture = std::make_unique<WindowFixture>();
        m_path = m_fixture->openNew();
    }
    void cleanup() { m_fixture.reset(); }

    void errorsGetAdvice_data()
    {
        addColumns<int, QString>("code", "advice");
        const QString permissions = "This may be a result of the permissions of the database file."_s;
        addRow("read-only", 8, permissions);
        addRow("corrupt virtual table", 267, "The database file may be corrupt."_s);
        addRow("full", 13, "The database is full."_s);
        addRow("read-only folder", 1544, permissions);
        addRow("any other", 1, "forged"_s);
        addRow("a server's, though its low byte might look like one", 22027, "forged"_s);
    }

    void errorsGetAdvice()
    {
        QFETCH(int, code);
        QFETCH(QString, advice);
        window().slotDBErrorOccured(QSqlError());
        window().slotDBErrorOccured(sqlError(code));
        QCOMPARE(m_fixture->boxes(), QStringList());
        QCoreApplication::processEvents();
        const QString text = "Error Accessing Database: An error has occurred accessing the database. "_s;
        QCOMPARE(m_fixture->takeBoxes(), QStringList{text + advice});
    }

    void errorBoxesAreLatched()
    {
        const auto failThrice = [this] {
            for (int i = 0; i < 3; ++i)
                window().slotDBErrorOccured(sqlError(13));
            // Another cause waits for its turn.
            window().slotDBErrorOccured(sqlError(8));
            WindowFixture::nestLoop(20);
        };
        // More of the same, while the box is on the screen.
        m_fixture->answerBoxes([&](const Messages::Box &) {
            failThrice();
            return Messages::Answer{QMessageBox::Ok, -1};
        });
        // Once it is closed, the next one is told again.
        for (int round = 0; round < 2; ++round) {
            failThrice();
            QTRY_COMPARE(m_fixture->boxes().size(), 2);
            m_fixture->takeBoxes();
        }
    }

    void diskErrorEndsProgram()
    {
        m_fixture->answerBoxes([](const Messages::Box &) {
            return Messages::Answer{QMessageBox::NoButton, 1};
        });
        QTimer::singleShot(0, &window(), [this] { window().slotDBErrorOccured(sqlError(10)); });
        QTimer::singleShot(20000, &window(), [] { QCoreApplication::exit(7); });
        QCOMPARE(QApplication::exec(), 0);
        QTRY_VERIFY(!window().collection());
    }

    void diskErrorOffersAnotherDatabase()
    {
        const QString other = m_fixture->makeDatabase("other.vrn"_s);
        m_fixture->answerBoxes([](const Messages::Box &) {
            return Messages::Answer{QMessageBox::NoButton, 0};
        });
        m_fixture->chooseFile(other);
        WindowFixture::inLoop([&] {
            window().slotDBErrorOccured(sqlError(10));
            WindowFixture::nestLoop(200);
            // Whoever runs the loop may still hold the collection.
            QCOMPARE(m_fixture->openPath(), m_path);
            QTRY_COMPARE(m_fixture->openPath(), other);
        });
        QCOMPARE(m_fixture->boxes().size(), 1);
    }

    void closeWaitsForNestedLoop()
    {
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
        // The next database is told of its own loss.
        m_fixture->takeBoxes();
        m_fixture->openNew();
        emit window().collection()->connectionError();
        QTRY_VERIFY(!window().collection());
        QCOMPARE(m_fixture->takeBoxes(),
                 QStringList{"Connection problem: Could not connect to the database."_s});
    }

    void closeSparesNextDatabase()
    {
        const QString next = m_fixture->makeDatabase("next.vrn"_s);
        WindowFixture::inLoop([&] {
            emit window().collection()->connectionError();
            WindowFixture::nestLoop(100);
            QVERIFY(window().openDatabase(DBDetails::local(next)));
            WindowFixture::settle();
        });
        QCOMPARE(m_fixture->openPath(), next);
    }

    void progressStaysUntilTheEnd()
    {
        emit files()->startedAddingFiles("Deleting files..."_s);
        QSignalSpy canceled(progress(), &FileOperationProgress::canceled);
        progress()->findChild<QPushButton *>()->click();
        QTest::keyClick(progress(), Qt::Key_Escape);
        progress()->close();
        QCOMPARE(canceled.count(), 3);
        QVERIFY(progress()->isVisible());
        emit files()->finishedAddingFiles();
        QVERIFY(progress()->isHidden());
    }

    void cancelEndsAdding()
    {
        for (int i = 0; i < 2000; ++i)
            m_fixture->write("many/%1.txt"_s.arg(i), QByteArray::number(i));
        connect(files(), &MainViewController::addingFilesProgress, progress(),
                [this] { progress()->findChild<QPushButton *>()->click(); });
        QSignalSpy finished(files(), &MainViewController::finishedAddingFiles);
        files()->addUrls({QUrl::fromLocalFile(m_fixture->path("many"_s))});
        QVERIFY(finished.wait(30000));
        QTRY_VERIFY(progress()->isHidden());
        QCOMPARE(fileCount(), 0);
        QCOMPARE(m_fixture->takeBoxes(), QStringList());
    }

    void duplicatesPrompt_data()
    {
        addColumns<bool, QString, int, bool>("listed", "matches", "prompts", "reports");
        addRow("nothing", true, QString(), 0, false);
        addRow("content", true, "content"_s, 1, true);
        addRow("content, not listed", false, "content"_s, 0, false);
        addRow("both, not listed", false, "content name"_s, 1, false);
    }

    void duplicatesPrompt()
    {
        QFETCH(bool, listed);
        QFETCH(QString, matches);
        QSettings().setValue("PreferencesDialog/listDuplicates"_s, listed);
        DuplicateMatch match;
        match.addedFiles = {DuplicateFileInfo{0, {}, "/in/a.txt"_s, 1, {}}};
        PresentableDuplicates duplicates;
        if (matches.contains("name"_s))
            duplicates.nameMatches << match;
        if (matches.contains("content"_s))
            duplicates.contentMatches << match;
        bool isReported = false;
        answerPrompt([&isReported](DuplicatePrompt &prompt) {
            const QAbstractItemModel *report =
                prompt.findChild<QTableView *>("contentMatchesList"_s)->model();
            isReported = report->index(2, 0).data().toString() == "/in/a.txt"_s;
            prompt.reject();
        });
        emit window().collection()->duplicatesReady(duplicates);
        QTEST(m_prompts, "prompts");
        QTEST(isReported, "reports");
    }

    void chosenNameMatchesAreAdded_data()
    {
        QTest::addColumn<int>("added"); // which is the answer of the prompt as well
        addRow("Ok", 1);
        addRow("Cancel", 0);
    }

    void chosenNameMatchesAreAdded()
    {
        QFETCH(int, added);
        QSettings().setValue("PreferencesDialog/checkForNameDuplicates"_s, true);
        QSignalSpy finished(files(), &MainViewController::finishedAddingFiles);
        answerPrompt([added](DuplicatePrompt &prompt) { added ? prompt.accept() : prompt.reject(); });
        files()->addUrls({QUrl::fromLocalFile(m_fixture->write("same.txt"_s, "one"))});
        QTRY_COMPARE(fileCount(), 1);
        files()->addUrls({QUrl::fromLocalFile(m_fixture->write("other/same.txt"_s, "two"))});
        // A third operation adds what the prompt let pass.
        QTRY_COMPARE(finished.count(), 2 + added);
        QTRY_VERIFY(m_prompts > 0 && !qobject_cast<DuplicatePrompt *>(QApplication::activeModalWidget()));
        QTRY_COMPARE(fileCount(), 1 + added);
    }

    void importsByTheMenu_data()
    {
        addColumns<QString, bool>("entry", "isShell");
        addRow("database", "Database"_s, false);
        addRow("shell", "Shell"_s, true);
    }

    void importsByTheMenu()
    {
        QFETCH(QString, entry);
        QFETCH(bool, isShell);
        const QString path = m_fixture->makeDatabase("source.vrn"_s);
        {
            OtherConnection source(path);
            QVERIFY(source.run("INSERT INTO files VALUES (1,'http://a','',0,1,1,'CODE',1,0,0,5,2)"_s));
            QVERIFY(source.run("INSERT INTO tags VALUES (1,'tag','',1,'')"_s));
        }
        QList<QAction *> entries = window().findChild<QMenu *>("importMenu"_s)->actions();
        const auto command = std::find_if(entries.begin(), entries.end(),
                                          [&](const QAction *action) { return action->text() == entry; });
        // Cancelled in the first dialog, then in the second.
        (*command)->trigger();
        QTimer answers;
        int result = QDialog::Rejected;
        connect(&answers, &QTimer::timeout, this, [&] {
            if (auto *selector = qobject_cast<DatabaseContentsSelector *>(QApplication::activeModalWidget()))
                result == QDialog::Accepted ? selector->accept() : selector->reject();
        });
        answers.start(10);
        m_fixture->chooseFile(path);
        (*command)->trigger();
        QCOMPARE(m_fixture->requests().last().caption, isShell ? "Import Shell"_s : "Import"_s);
        QCOMPARE(m_fixture->requests().last().filter, isShell ? "*.vsh"_s : "*.vrn"_s);
        QCOMPARE(m_fixture->boxes(), QStringList());
        // A name can be typed that leads to nothing.
        m_fixture->chooseFile(path + "x"_s);
        (*command)->trigger();
        QVERIFY(m_fixture->boxes().value(0).contains("\"source.vrnx\" is no file"_s));
        m_fixture->takeBoxes();
        result = QDialog::Accepted;
        m_fixture->chooseFile(path);
        (*command)->trigger();
        QTRY_COMPARE(m_fixture->boxes().size(), 1);
        QVERIFY(m_fixture->boxes().first().startsWith("Import: Imported from \"source.vrn\":"_s));
        // What came over is shown, and what did not.
        QTRY_COMPARE(fileCount(), isShell ? 0 : 1);
        QCOMPARE(window().collection()->tagsController()->tableModel()->rowCount(), isShell ? 0 : 1);
        const auto *missing = window().findChild<ShellImportNotification *>();
        QCOMPARE(missing != nullptr, isShell);
        if (missing)
            QCOMPARE(missing->findChild<QListView *>()->model()->index(0, 0).data().toString(),
                     "http://a, 0 bytes"_s);
    }

    void signalBehindABoxAtTheStart_data()
    {
        addColumns<bool>("isWindowShown");
        addRow("the window comes all the same", true);
        addRow("no window comes", false);
    }
    void signalBehindABoxAtTheStart()
    {
        QFETCH(bool, isWindowShown);
        const EndSignals endSignals;
        // As main() has it: the first boxes come up before its loop turns.
        QDialog box;
        QTimer::singleShot(0, &box, [] { raise(SIGTERM); });
        box.exec();
        window().setVisible(isWindowShown);
        QTimer::singleShot(20000, &box, [] { QCoreApplication::exit(1); });
        QCOMPARE(QCoreApplication::exec(), 0);
    }

private:
    MainWindow &window() { return m_fixture->window(); }
    FileOperationProgress *progress() { return window().findChild<FileOperationProgress *>(); }
    MainViewController *files() { return window().collection()->mainViewController(); }
    int fileCount() { return files()->contentsModel()->rowCount(); }
    /** Answers the prompt when it comes, and counts how often it came. */
    void answerPrompt(const std::function<void(DuplicatePrompt &)> &answer)
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

    std::unique_ptr<WindowFixture> m_fixture;
    QString m_path; // of the open database
    int m_prompts = 0;
};

QTEST_MAIN(TestWindowEvents)
#include "tst_windowevents.moc"
