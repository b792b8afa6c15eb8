#include "app/addingsettings.h"
#include "app/windowsettings.h"
#include "tests/support/text.h"
#include "tests/support/windowfixture.h"

#include <QMenuBar>

#include <csignal>
#include <sys/resource.h>

namespace {

const QString failedToOpen =
    "Failed to Open Database: The selected database could not be opened successfully."_s;
const QString failedToCreate = "Failed to create database: "_s;

} // namespace

/** The databases of the main window: opened, made, remembered and closed, with what the window shows of it.
 */
class TestMainWindow : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_fixture = std::make_unique<WindowFixture>(); }
    void cleanup() { m_fixture.reset(); }

    void windowFollowsDatabase()
    {
        QAction *info = m_fixture->action("Database Info"_s);
        QCOMPARE(window().windowTitle(), "Vorna - "_s);
        QVERIFY(!info->isEnabled());
        QVERIFY(!m_fixture->action("Edit"_s)->isEnabled());

        const QString path = m_fixture->openNew();
        QCOMPARE(window().windowTitle(), "Vorna - "_s + path);
        QVERIFY(info->isEnabled());
        QVERIFY(m_fixture->action("Edit"_s)->isEnabled());
        info->trigger();
        QCOMPARE(m_fixture->takeBoxes(),
                 QStringList{"Database Info: Version of Vorna used to create the currently open "
                             "database: 4.1.3\nDatabase permissions: writable"_s});

        window().closeDatabase();
        QCOMPARE(window().windowTitle(), "Vorna - "_s);
        QVERIFY(!info->isEnabled());
    }

    void titleKeepsMarkInPath()
    {
        const QString path = m_fixture->openNew("a[*]b.vrn"_s);
        window().show();
        QTRY_VERIFY(window().windowHandle());
        QVERIFY2(window().windowHandle()->title().contains(path),
                 qPrintable(window().windowHandle()->title()));
    }

    void openAsksForFile()
    {
        QDir().mkdir(m_fixture->path("other"_s));
        const QString path = m_fixture->makeDatabase("other/one.vrn"_s);
        openByDialog(path);
        QCOMPARE(m_fixture->openPath(), path);
        openByDialog(QString());
        QCOMPARE(m_fixture->openPath(), path);
        openByDialog(m_fixture->path("missing.vrn"_s));
        QCOMPARE(m_fixture->openPath(), path);
        QCOMPARE(m_fixture->takeBoxes(), QStringList());

        const QList<FileDialogs::Request> &requests = m_fixture->requests();
        QCOMPARE(requests.size(), 3);
        QCOMPARE(requests.first().caption, "Open Database"_s);
        QCOMPARE(requests.first().filter, "*.vrn"_s);
        QCOMPARE(requests.first().directory, QDir::homePath());
        QCOMPARE(requests.last().directory, m_fixture->path("other"_s));
        QVERIFY(!QFile::exists(m_fixture->path("missing.vrn"_s)));
    }

    void newDatabase_data()
    {
        addColumns<QString, bool, QString, QStringList>("typed", "agrees", "open", "boxes");
        const QString refused = failedToCreate + "Cannot remove currently open database."_s;
        const QString unremovable = failedToCreate + "Failed to remove existent database."_s;
        const QString unmakeable = failedToCreate + "A database could not be created at this place."_s;
        const QString question = "Create New Database: %1 already exists.\n"
                                 "Do you want to replace it?"_s;
        const auto row = [](const char *name, const char *typed, bool agrees, const char *open,
                            const QStringList &boxes) {
            addRow(name, QString::fromUtf8(typed), agrees, QString::fromUtf8(open), boxes);
        };
        row("whole name", "new.vrn", false, "new.vrn", {});
        row("extension appended", "new", false, "new.vrn", {});
        row("upper case is no extension", "new.VRN", false, "new.VRN.vrn", {});
        row("signs", "it's \"x\" %1 \xe2\x98\x83.vrn", false, "it's \"x\" %1 \xe2\x98\x83.vrn", {});
        row("existing was asked about", "old.vrn", false, "old.vrn", {});
        row("appended existing, no", "old", false, "first.vrn", {question});
        row("appended existing, yes", "old", true, "old.vrn", {question});
        row("open one", "first.vrn", true, "first.vrn", {refused});
        row("appended open one", "first", true, "first.vrn", {refused});
        row("a folder", "folder.vrn", true, "first.vrn", {unremovable});
        row("missing folder", "nowhere/new.vrn", true, "first.vrn", {unmakeable});
        row("cancelled", "", true, "first.vrn", {});
    }

    void newDatabase()
    {
        QFETCH(QString, typed);
        QFETCH(bool, agrees);
        QFETCH(QString, open);
        QFETCH(QStringList, boxes);
        const QString first = m_fixture->openNew("first.vrn"_s);
        const QString old = m_fixture->write("old.vrn"_s, "precious");
        QDir().mkdir(m_fixture->path("folder.vrn"_s));
        m_fixture->answerBoxes([agrees](const Messages::Box &) {
            return Messages::Answer{agrees ? QMessageBox::Yes : QMessageBox::Cancel, -1};
        });

        m_fixture->chooseFile(typed.isEmpty() ? typed : m_fixture->path(typed));
        m_fixture->action("New Local Database"_s)->trigger();
        QCOMPARE(m_fixture->requests().last().caption, "Create New Database"_s);
        QCOMPARE(m_fixture->openPath(), m_fixture->path(open));
        for (QString &box : boxes)
            box.replace(QLatin1String("%1"), old);
        QCOMPARE(m_fixture->takeBoxes(), boxes);
        QVERIFY(QFile::exists(first));
        const bool isReplaced = open == QLatin1String("old.vrn");
        QCOMPARE(WindowFixture::read(old) == "precious", !isReplaced);
        QVERIFY(!window().collection()->isReadOnly());
    }

    void databaseComesBackWhenNoneCanTakeItsPlace()
    {
        const QString old = m_fixture->write("old.vrn"_s, "precious");
        m_fixture->chooseFile(old);
        // As on a disk that is all but full: a write past the limit fails.
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit before{};
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit little{20000, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &little);
        window().newDatabase();
        setrlimit(RLIMIT_FSIZE, &before);
        QCOMPARE(m_fixture->takeBoxes(),
                 QStringList{failedToCreate + "A database could not be created at this place."_s});
        QCOMPARE(WindowFixture::read(old), QByteArray("precious"));
        QCOMPARE(QFileInfo(old).dir().entryList(QDir::Files), QStringList("old.vrn"_s));
    }

    void replacedDatabaseLosesJournal()
    {
        const QString path = m_fixture->makeDatabase("old.vrn"_s);
        m_fixture->write("old.vrn-journal"_s, "left by a fall of power");
        const QString bystander = m_fixture->write("new.vrn-journal.txt"_s, "mine");
        m_fixture->chooseFile(path);
        window().newDatabase();
        QCOMPARE(m_fixture->openPath(), path);
        const QStringList left{"new.vrn-journal.txt"_s, "old.vrn"_s, "template"_s};
        QCOMPARE(QFileInfo(bystander).dir().entryList(QDir::Files), left);
    }

    void linkToTheOpenDatabaseIsRefused()
    {
        const QString open = m_fixture->openNew();
        const QString link = m_fixture->path("link.vrn"_s);
        QVERIFY(QFile::link(open, link));
        m_fixture->chooseFile(link);
        window().newDatabase();
        QCOMPARE(m_fixture->takeBoxes(),
                 QStringList{failedToCreate + "Cannot remove currently open database."_s});
        QVERIFY(QFileInfo(link).isSymLink());
        QCOMPARE(m_fixture->openPath(), open);
    }

    void recentListMoves()
    {
        QStringList paths;
        for (int i = 1; i <= 6; ++i)
            paths << m_fixture->openNew("db%1 & co.vrn"_s.arg(i));
        const auto expected = [&paths](const QVector<int> &order) {
            QStringList texts;
            for (const int index : order) {
                QString text = paths.at(index - 1);
                texts << QString::number(texts.size() + 1) + QLatin1Char(' ') +
                             text.replace(QLatin1String("&"), QLatin1String("&&"));
            }
            return texts;
        };
        QCOMPARE(m_fixture->recentTexts(), expected({6, 5, 4, 3, 2}));
        m_fixture->recent(3)->trigger();
        QCOMPARE(m_fixture->openPath(), paths.at(3));
        QCOMPARE(m_fixture->recentTexts(), expected({4, 6, 5, 3, 2}));
        openByDialog(paths.at(0));
        QCOMPARE(m_fixture->recentTexts(), expected({1, 4, 6, 5, 3}));
        m_fixture->restart();
        QCOMPARE(m_fixture->recentTexts(), expected({1, 4, 6, 5, 3}));
    }

    void recentListDropsVanished()
    {
        QStringList paths;
        for (int i = 1; i <= 4; ++i)
            paths << m_fixture->openNew("db%1.vrn"_s.arg(i));
        QFile::remove(paths.at(1));
        QFile::remove(paths.at(2));
        QCOMPARE(m_fixture->recentTexts().size(), 4);
        m_fixture->recent(3)->trigger();
        const QStringList left{"1 "_s + paths.at(3), "2 "_s + paths.at(0)};
        QCOMPARE(m_fixture->recentTexts(), left);
        QCOMPARE(m_fixture->openPath(), paths.at(3));
        QVERIFY(!QFile::exists(paths.at(1)));
        m_fixture->restart();
        QCOMPARE(m_fixture->recentTexts(), left);
    }

    void recentEntryThatIsNoDatabaseIsTold()
    {
        const QString changed = m_fixture->openNew("changed.vrn"_s);
        const QString open = m_fixture->openNew();
        QFile::remove(changed);
        QDir().mkdir(changed);
        m_fixture->recent(2)->trigger();
        QCOMPARE(m_fixture->openPath(), open);
        QCOMPARE(m_fixture->takeBoxes(), QStringList{failedToOpen});
    }

    void startUp_data()
    {
        addColumns<QString, bool, QString, QString, QStringList>("argument", "isDemo", "vanished", "open",
                                                                 "boxes");
        const QString none;
        const QString newest = "newest.vrn"_s;
        const QString other = "other.vrn"_s;
        const QString missing = "missing.vrn"_s;
        const QString folder = "folder.vrn"_s;
        addRow("argument", other, false, none, other, QStringList());
        addRow("missing argument", missing, false, none, none, QStringList{failedToOpen});
        addRow("folder as argument", folder, false, none, none, QStringList{failedToOpen});
        addRow("demo", other, true, none, other, QStringList());
        addRow("missing demo", missing, true, none, none, QStringList());
        addRow("newest", none, false, none, newest, QStringList());
        addRow("newest is gone", none, false, newest, none, QStringList());
    }

    void startUp()
    {
        QFETCH(QString, argument);
        QFETCH(bool, isDemo);
        QFETCH(QString, vanished);
        QFETCH(QString, open);
        m_fixture->openNew("other.vrn"_s);
        m_fixture->openNew("newest.vrn"_s);
        QDir().mkdir(m_fixture->path("folder.vrn"_s));
        m_fixture->restart();
        if (!vanished.isEmpty())
            QFile::remove(m_fixture->path(vanished));

        window().openStartupDatabase(argument.isEmpty() ? argument : m_fixture->path(argument),
                                     isDemo ? MainWindow::Demo : MainWindow::FromCommandLine);
        QCOMPARE(m_fixture->openPath(), open.isEmpty() ? open : m_fixture->path(open));
        QTEST(m_fixture->takeBoxes(), "boxes");
        QVERIFY(!QFile::exists(m_fixture->path("missing.vrn"_s)));
        QCOMPARE(m_fixture->recentTexts().size(), vanished.isEmpty() ? 2 : 1);
    }

    void relativeStartUpPathIsMadeAbsolute()
    {
        const QString path = m_fixture->makeDatabase("here.vrn"_s);
        const QString before = QDir::currentPath();
        QDir::setCurrent(QFileInfo(path).absolutePath());
        window().openStartupDatabase("./here.vrn"_s);
        QDir::setCurrent(before);
        QVERIFY(QDir::isAbsolutePath(m_fixture->openPath()));
        QCOMPARE(QFileInfo(m_fixture->openPath()).canonicalFilePath(), QFileInfo(path).canonicalFilePath());
        m_fixture->restart();
        window().openStartupDatabase(QString());
        QVERIFY(window().collection());
    }

private:
    MainWindow &window() { return m_fixture->window(); }
    void openByDialog(const QString &path)
    {
        m_fixture->chooseFile(path);
        m_fixture->action("Open"_s)->trigger();
    }

    std::unique_ptr<WindowFixture> m_fixture;
};

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
