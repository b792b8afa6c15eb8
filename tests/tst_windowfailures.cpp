#include "app/settings/addingsettings.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/tagscontroller.h"
#include "models/contents/contentsmodel.h"
#include "models/tags/tagstablemodel.h"
#include "tests/support/serverdatabase.h"
#include "tests/support/windowfixture.h"
#include "ui/dialogs/addhyperlinkdialog.h"
#include "ui/dialogs/fileoperationprogress.h"

#include <QAbstractItemView>
#include <QLineEdit>
#include <QMessageBox>
#include <QScopeGuard>
#include <QTimer>

namespace {
const QString accessError = "Error Accessing Database: An error has occurred accessing the database. "_s;
const QString busy = "The database is busy. Please try again."_s;
} // namespace

/** What the window says when the database refuses what it is asked for, whoever asks it. */
class TestWindowFailures : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addBackEnds(); }

    void init()
    {
        QFETCH_GLOBAL(bool, isOnServer);
        m_fixture = std::make_unique<WindowFixture>();
        m_fixture->answerBoxes([](const Messages::Box &) { return Messages::Answer{QMessageBox::Ok, -1}; });
        AddingSettings::setLinkToFiles(true);
        m_server.reset();
        if (isOnServer) {
            m_server = std::make_unique<ServerDatabase>();
            QVERIFY(window().openDatabase(m_server->details()));
        } else {
            m_path = m_fixture->openNew();
        }
        for (int i = 1; i <= 3; ++i)
            m_fixture->write("held/h%1.txt"_s.arg(i), QByteArray::number(i));
        files()->addUrls({QUrl::fromLocalFile(m_fixture->path("held"_s))});
        QTRY_COMPARE(files()->contentsModel()->rowCount(), 3);
        QVERIFY(QTest::qWaitFor([this] { return tags()->addTag("tag"_s) > 0; }));
        m_ids.clear();
        for (int row = 0; row < 3; ++row)
            m_ids.append(files()->contentsModel()->fileAt(row)->id());
        m_fixture->takeBoxes();
    }

    void cleanup()
    {
        m_fixture.reset();
        m_server.reset();
    }

    void refusal_data()
    {
        addColumns<QString, QString>("what", "outcome");
        addRow("add", "INSERT ON files"_s, "\nFiles added: 0 of 2."_s);
        addRow("delete", "DELETE ON files"_s, "\nFiles deleted: 0 of 3."_s);
        addRow("transfer", "UPDATE ON files"_s, "\nFiles transferred: 0 of 3."_s);
        addRow("rename", "UPDATE ON files"_s, ""_s);
        addRow("tag", "UPDATE ON tags"_s, ""_s);
        addRow("node", "INSERT ON tb_nodes"_s, ""_s);
    }

    void refusal()
    {
        QFETCH_GLOBAL(bool, isOnServer);
        QFETCH(QString, what);
        QFETCH(QString, outcome);
        if (isOnServer) {
            QVERIFY(m_server->refuse(what));
            QVERIFY(m_server->owner().run(
                "CREATE OR REPLACE FUNCTION no() RETURNS trigger LANGUAGE plpgsql AS "
                "'BEGIN RAISE EXCEPTION ''no %'', random() USING ERRCODE=''53100''; END'"_s));
        } else {
            Sql::run("CREATE TRIGGER no BEFORE %1 BEGIN SELECT raise(ABORT,'no'); END"_s.arg(what));
        }
        run(QLatin1String(QTest::currentDataTag()));
        // One box, though each of the files meets it.
        const QStringList boxes = m_fixture->takeBoxes();
        QCOMPARE(boxes.size(), 1);
        QVERIFY2(boxes.first().startsWith(accessError) && boxes.first().contains("no"_s),
                 qPrintable(boxes[0]));
        QVERIFY2(boxes.first().endsWith(outcome), qPrintable(boxes.first()));
        QCOMPARE(files()->contentsModel()->rowCount(), 3);
    }

    void refusalOfOne()
    {
        QFETCH_GLOBAL(bool, isOnServer);
        const QString condition = "old.file_id=%1"_s.arg(m_ids.at(1));
        if (isOnServer)
            QVERIFY(m_server->refuse("UPDATE ON files"_s, condition));
        else
            Sql::run(
                "CREATE TRIGGER no BEFORE UPDATE ON files WHEN %1 BEGIN SELECT raise(ABORT,'no'); END"_s.arg(
                    condition));
        run("transfer"_s);
        const QStringList boxes = m_fixture->takeBoxes();
        QCOMPARE(boxes.size(), 1);
        QVERIFY2(boxes.first().endsWith("\nFiles transferred: 1 of 3."_s), qPrintable(boxes.first()));
    }

    void fileThatIsGone_data()
    {
        QTest::addColumn<QString>("outcome");
        addRow("add", ""_s);
        addRow("delete", "\nFiles deleted: 0 of 3."_s);
        addRow("transfer", "\nFiles transferred: 0 of 3."_s);
        addRow("extract", "\nFiles extracted: 0 of 3."_s);
        addRow("rename", ""_s);
        addRow("tag", ""_s);
        addRow("node", ""_s);
    }

    void fileThatIsGone()
    {
        QFETCH(QString, outcome);
        if (m_server)
            QSKIP("what only a file meets");
        QVERIFY(QFile::remove(m_path));
        run(QLatin1String(QTest::currentDataTag()));
        QCOMPARE(m_fixture->takeBoxes(),
                 QStringList{accessError + "The database file \"%1\" is missing."_s.arg(m_path) + outcome});
        QVERIFY(!QFile::exists(m_path));
    }

    void lockedFile_data()
    {
        QTest::addColumn<QString>("outcome");
        addRow("add", " Files added: 0 of 2."_s);
        addRow("transfer", " Files transferred: 0 of 3."_s);
        addRow("extract", " Files extracted: 0 of 3."_s);
        addRow("rename", ""_s);
    }

    void lockedFile()
    {
        QFETCH(QString, outcome);
        if (m_server)
            QSKIP("a server's rows are locked, not the whole of it");
        OtherConnection other(m_path);
        QVERIFY(other.run("BEGIN EXCLUSIVE"_s));
        QElapsedTimer timer;
        timer.start();
        run(QLatin1String(QTest::currentDataTag()));
        // The lock is waited for once, not at each of the files.
        QVERIFY(timer.elapsed() < 9000);
        QCOMPARE(m_fixture->takeBoxes(), QStringList());
        QCOMPARE(warning(), busy + outcome);
    }

    void typedTextComesAgain_data()
    {
        addColumns<QString, int, QString>("viewName", "column", "stored");
        addRow("file", "TableView"_s, int(ContentsModel::NameColumn), "file_name FROM files"_s);
        addRow("description", "TableView"_s, int(ContentsModel::DescriptionColumn),
               "file_description FROM files"_s);
        addRow("tag", "tagsTable"_s, int(TagsTableModel::NameColumn), "tag_name FROM tags"_s);
    }

    void typedTextComesAgain()
    {
        QFETCH(QString, viewName);
        QFETCH(int, column);
        QFETCH(QString, stored);
        if (m_server)
            QSKIP("the views are the same");
        files()->showSpecialNode(AllFiles);
        window().findChild<QAction *>("listAction"_s)->setChecked(true);
        window().show();
        QVERIFY(QTest::qWaitForWindowActive(&window()));
        auto *view = window().findChild<QAbstractItemView *>(viewName);
        const QModelIndex cell = view->model()->index(0, column);
        view->setCurrentIndex(cell);
        view->setFocus();
        view->edit(cell);
        const auto editor = [view] { return QPointer<QLineEdit>(view->findChild<QLineEdit *>()); };
        editor()->selectAll();
        QTest::keyClicks(editor(), "typed"_s);
        OtherConnection other(m_path);
        QVERIFY(other.run("BEGIN IMMEDIATE"_s));
        // Twice, and by leaving: each time the text is still there, and one who only leaves hears nothing.
        for (int round = 0; round < 2; ++round) {
            const QPointer<QLineEdit> refused = editor();
            QTest::keyClick(refused.data(), Qt::Key_Return);
            QTRY_COMPARE(warning(), busy);
            QTRY_VERIFY(!refused);
            hideWarning();
            QTRY_VERIFY(editor());
            QCOMPARE(editor()->text(), "typed"_s);
        }
        const QPointer<QLineEdit> left = editor();
        const QString elsewhere = viewName == "tagsTable"_s ? "TableView"_s : "tagsTable"_s;
        window().findChild<QAbstractItemView *>(elsewhere)->setFocus();
        QTRY_VERIFY(!left);
        QCOMPARE(warning(), QString());
        view->edit(cell);
        QCOMPARE(editor()->text(), "typed"_s);
        QVERIFY(other.run("ROLLBACK"_s));
        QTest::keyClick(editor().data(), Qt::Key_Return);
        QTRY_VERIFY(!editor());
        QVERIFY(Sql::rows("SELECT "_s + stored).contains("typed"_s));
    }

    void typedAddressStays_data()
    {
        QTest::addColumn<QString>("what");
        addRow("the address", "INSERT ON files"_s);
        addRow("its description", "UPDATE ON files"_s);
    }

    void typedAddressStays()
    {
        QFETCH(QString, what);
        QVERIFY(m_server ? m_server->refuse(what)
                         : Sql::run("CREATE TRIGGER no BEFORE %1 BEGIN SELECT raise(ABORT,'no'); END"_s.arg(
                               what)));
        // From within the loop of the dialog.
        QTimer::singleShot(0, &window(), [this] {
            auto *dialog = window().findChild<AddHyperlinkDialog *>();
            const auto end = qScopeGuard([dialog] { dialog->reject(); });
            auto *address = dialog->findChild<QLineEdit *>("hyperlinkEdit"_s);
            address->setText("http://example.org"_s);
            dialog->findChild<QLineEdit *>("descriptionEdit"_s)->setText("words"_s);
            dialog->accept();
            QVERIFY(dialog->isVisible() && !address->isEnabled());
            QTRY_COMPARE(m_fixture->boxes().size(), 1);
            QVERIFY(dialog->isVisible() && address->isEnabled());
            QVERIFY(m_server ? m_server->permit("files"_s) : Sql::run("DROP TRIGGER no"_s));
            dialog->accept();
            QTRY_VERIFY(dialog->isHidden());
            QCOMPARE(dialog->result(), int(QDialog::Accepted));
        });
        m_fixture->action("Add Hyperlink"_s)->trigger();
        QVERIFY(m_fixture->takeBoxes().value(0).startsWith(accessError));
        QTRY_COMPARE(files()->contentsModel()->rowCount(), 4);
        QCOMPARE(Sql::rows("SELECT file_description FROM files WHERE internal=2"_s), QStringList{"words"_s});
    }

    void heldRow_data()
    {
        addColumns<bool, QString>("isClosed", "outcome");
        addRow("Cancel", false, "Files deleted: 0 of 3."_s);
        addRow("Disconnect", true, ""_s);
    }

    void heldRow()
    {
        QFETCH(bool, isClosed);
        QFETCH(QString, outcome);
        if (!m_server)
            QSKIP("a local database is locked as a whole");
        ServerConnection &other = m_server->owner();
        QVERIFY(other.run("BEGIN"_s) && other.run("SELECT * FROM files FOR UPDATE"_s));
        files()->deleteFiles(m_ids);
        const auto isWaiting = [&other] {
            return other.value("SELECT count(*) FROM pg_locks WHERE NOT granted"_s) == "1"_s;
        };
        QVERIFY(QTest::qWaitFor(isWaiting));
        QElapsedTimer timer;
        timer.start();
        if (isClosed) {
            m_fixture->action("Disconnect"_s)->trigger();
        } else {
            auto *progress = window().findChild<FileOperationProgress *>();
            progress->reject();
            QTRY_VERIFY(progress->isHidden());
        }
        QVERIFY(timer.elapsed() < 1500);
        QTRY_COMPARE(warning(), outcome);
        QVERIFY(other.run("ROLLBACK"_s));
        QCOMPARE(other.value("SELECT count(*) FROM files"_s), "3"_s);
        QCOMPARE(m_fixture->takeBoxes(), QStringList());
    }

private:
    MainWindow &window() { return m_fixture->window(); }
    MainViewController *files() { return window().collection()->mainViewController(); }
    TagsController *tags() { return window().collection()->tagsController(); }

    QString warning()
    {
        const auto *box = window().findChild<QMessageBox *>("temporaryWarning"_s);
        return box && box->isVisible() ? box->text() : QString();
    }

    /** As it goes by itself after a while. */
    void hideWarning()
    {
        window().findChild<QMessageBox *>("temporaryWarning"_s)->hide();
        window().activateWindow();
    }

    /** Until something has been said. */
    void run(const QString &road)
    {
        if (road == "add"_s) {
            files()->addUrls({QUrl::fromLocalFile(m_fixture->write("new1.txt"_s, "x")),
                              QUrl::fromLocalFile(m_fixture->write("new2.txt"_s, "y"))});
        } else if (road == "delete"_s) {
            files()->deleteFiles(m_ids);
        } else if (road == "transfer"_s) {
            files()->transferToInternal(m_ids);
        } else if (road == "extract"_s) {
            QVERIFY(QDir().mkpath(m_fixture->path("out"_s)));
            files()->extractFiles(m_fixture->path("out"_s), m_ids);
        } else if (road == "rename"_s) {
            files()->updateFileDescription(m_ids.first(), "another"_s);
        } else if (road == "tag"_s) {
            tags()->renameTag(1, "other"_s);
        } else {
            window().collection()->browsTreeController()->addNodesBelow({1}, 0);
        }
        QVERIFY(
            QTest::qWaitFor([this] { return !m_fixture->boxes().isEmpty() || !warning().isEmpty(); }, 20000));
        // And no second one behind it.
        WindowFixture::nestLoop(50);
    }

    std::unique_ptr<WindowFixture> m_fixture;
    std::unique_ptr<ServerDatabase> m_server;
    QString m_path;
    QVector<qint64> m_ids;
};

QTEST_MAIN(TestWindowFailures)
#include "tst_windowfailures.moc"
