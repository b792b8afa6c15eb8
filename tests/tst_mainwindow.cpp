#include "app/addingsettings.h"
#include "app/windowsettings.h"
#include "tests/support/windowfixture.h"

#include <QDockWidget>
#include <QFileInfo>
#include <QMenuBar>

namespace {

const QString failedToOpen =
    QStringLiteral("Failed to Open Database: The selected database could not be opened successfully.");
const QString failedToCreate = QStringLiteral("Failed to create database: ");

} // namespace

/** The databases of the main window: opened, made, remembered and closed, with what the window shows of it.
 */
class TestMainWindow : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_fixture = std::make_unique<WindowFixture>(); }
    void cleanup() { m_fixture.reset(); }
    void windowFollowsDatabase();
    void titleKeepsMarkInPath();
    void openAsksForFile();
    void failedOpenKeepsDatabase();
    void newDatabase_data();
    void newDatabase();
    void replacedDatabaseLosesJournal();
    void linkToTheOpenDatabaseIsRefused();
    void recentListMoves();
    void recentListDropsVanished();
    void vanishedOpenDatabaseStaysFirst();
    void recentEntryThatIsNoDatabaseIsTold();
    void startUp_data();
    void startUp();
    void relativeStartUpPathIsMadeAbsolute();
    void storageToggleIsKept();
    void layoutComesBack();
    void closedDocksComeBack();

private:
    MainWindow &window() { return m_fixture->window(); }
    void openByDialog(const QString &path)
    {
        m_fixture->chooseFile(path);
        m_fixture->action(QStringLiteral("Open"))->trigger();
    }

    std::unique_ptr<WindowFixture> m_fixture;
};

void TestMainWindow::windowFollowsDatabase()
{
    QAction *info = m_fixture->action(QStringLiteral("Database Info"));
    QCOMPARE(window().windowTitle(), QStringLiteral("Vorna - "));
    QVERIFY(!info->isEnabled());
    QVERIFY(!m_fixture->action(QStringLiteral("Edit"))->isEnabled());

    const QString path = m_fixture->openNew();
    QCOMPARE(window().windowTitle(), QStringLiteral("Vorna - ") + path);
    QVERIFY(info->isEnabled());
    QVERIFY(m_fixture->action(QStringLiteral("Edit"))->isEnabled());
    info->trigger();
    QCOMPARE(m_fixture->takeBoxes(),
             QStringList{QStringLiteral("Database Info: Version of Vorna used to create the currently open "
                                        "database: 4.1.3\nDatabase permissions: writable")});

    window().closeDatabase();
    QCOMPARE(window().windowTitle(), QStringLiteral("Vorna - "));
    QVERIFY(!info->isEnabled());
}

void TestMainWindow::titleKeepsMarkInPath()
{
    const QString path = m_fixture->openNew(QStringLiteral("a[*]b.vrn"));
    window().show();
    QTRY_VERIFY(window().windowHandle());
    QVERIFY2(window().windowHandle()->title().contains(path), qPrintable(window().windowHandle()->title()));
}

void TestMainWindow::openAsksForFile()
{
    QDir().mkdir(m_fixture->path(QStringLiteral("other")));
    const QString path = m_fixture->makeDatabase(QStringLiteral("other/one.vrn"));
    openByDialog(path);
    QCOMPARE(m_fixture->openPath(), path);
    openByDialog(QString());
    QCOMPARE(m_fixture->openPath(), path);
    openByDialog(m_fixture->path(QStringLiteral("missing.vrn")));
    QCOMPARE(m_fixture->openPath(), path);
    QCOMPARE(m_fixture->takeBoxes(), QStringList());

    const QList<FileDialogs::Request> &requests = m_fixture->requests();
    QCOMPARE(requests.size(), 3);
    QCOMPARE(requests.first().caption, QStringLiteral("Open Database"));
    QCOMPARE(requests.first().filter, QStringLiteral("*.vrn"));
    QCOMPARE(requests.first().directory, QDir::homePath());
    QCOMPARE(requests.last().directory, m_fixture->path(QStringLiteral("other")));
    QVERIFY(!QFile::exists(m_fixture->path(QStringLiteral("missing.vrn"))));
}

void TestMainWindow::failedOpenKeepsDatabase()
{
    const QString open = m_fixture->openNew();
    const Collection *collection = window().collection();
    openByDialog(m_fixture->write(QStringLiteral("bad.vrn"), "no database"));
    QCOMPARE(m_fixture->openPath(), open);
    QVERIFY(window().collection() == collection);
    QCOMPARE(window().windowTitle(), QStringLiteral("Vorna - ") + open);
    QCOMPARE(m_fixture->recentTexts(), QStringList{QStringLiteral("1 ") + open});
    QCOMPARE(m_fixture->takeBoxes().count(failedToOpen), 1);
}

void TestMainWindow::newDatabase_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("agrees");
    QTest::addColumn<QString>("open");
    QTest::addColumn<QStringList>("boxes");
    const QString refused = failedToCreate + QStringLiteral("Cannot remove currently open database.");
    const QString unremovable = failedToCreate + QStringLiteral("Failed to remove existent database.");
    const QString unmakeable =
        failedToCreate + QStringLiteral("A database could not be created at this place.");
    const QString question = QStringLiteral("Create New Database: %1 already exists.\n"
                                            "Do you want to replace it?");
    const auto row = [](const char *name, const char *typed, bool agrees, const char *open,
                        const QStringList &boxes) {
        QTest::newRow(name) << QString::fromUtf8(typed) << agrees << QString::fromUtf8(open) << boxes;
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

void TestMainWindow::newDatabase()
{
    QFETCH(QString, typed);
    QFETCH(bool, agrees);
    QFETCH(QString, open);
    QFETCH(QStringList, boxes);
    const QString first = m_fixture->openNew(QStringLiteral("first.vrn"));
    const QString old = m_fixture->write(QStringLiteral("old.vrn"), "precious");
    QDir().mkdir(m_fixture->path(QStringLiteral("folder.vrn")));
    m_fixture->answerBoxes([agrees](const Messages::Box &) {
        return Messages::Answer{agrees ? QMessageBox::Yes : QMessageBox::Cancel, -1};
    });

    m_fixture->chooseFile(typed.isEmpty() ? typed : m_fixture->path(typed));
    m_fixture->action(QStringLiteral("New Local Database"))->trigger();
    QCOMPARE(m_fixture->requests().last().caption, QStringLiteral("Create New Database"));
    QCOMPARE(m_fixture->openPath(), m_fixture->path(open));
    for (QString &box : boxes)
        box.replace(QLatin1String("%1"), old);
    QCOMPARE(m_fixture->takeBoxes(), boxes);
    QVERIFY(QFile::exists(first));
    const bool isReplaced = open == QLatin1String("old.vrn");
    QCOMPARE(WindowFixture::read(old) == "precious", !isReplaced);
    QVERIFY(!window().collection()->isReadOnly());
}

void TestMainWindow::replacedDatabaseLosesJournal()
{
    const QString path = m_fixture->makeDatabase(QStringLiteral("old.vrn"));
    m_fixture->write(QStringLiteral("old.vrn-journal"), "left by a fall of power");
    const QString bystander = m_fixture->write(QStringLiteral("new.vrn-journal.txt"), "mine");
    m_fixture->chooseFile(path);
    window().newDatabase();
    QCOMPARE(m_fixture->openPath(), path);
    QVERIFY(!QFile::exists(path + QStringLiteral("-journal")));
    QVERIFY(QFile::exists(bystander));
}

void TestMainWindow::linkToTheOpenDatabaseIsRefused()
{
    const QString open = m_fixture->openNew();
    const QString link = m_fixture->path(QStringLiteral("link.vrn"));
    QVERIFY(QFile::link(open, link));
    m_fixture->chooseFile(link);
    window().newDatabase();
    QCOMPARE(m_fixture->takeBoxes(),
             QStringList{failedToCreate + QStringLiteral("Cannot remove currently open database.")});
    QVERIFY(QFileInfo(link).isSymLink());
    QCOMPARE(m_fixture->openPath(), open);
}

void TestMainWindow::recentListMoves()
{
    QStringList paths;
    for (int i = 1; i <= 6; ++i)
        paths << m_fixture->openNew(QStringLiteral("db%1 & co.vrn").arg(i));
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

void TestMainWindow::recentListDropsVanished()
{
    QStringList paths;
    for (int i = 1; i <= 4; ++i)
        paths << m_fixture->openNew(QStringLiteral("db%1.vrn").arg(i));
    QFile::remove(paths.at(1));
    QFile::remove(paths.at(2));
    QCOMPARE(m_fixture->recentTexts().size(), 4);
    m_fixture->recent(3)->trigger();
    const QStringList left{QStringLiteral("1 ") + paths.at(3), QStringLiteral("2 ") + paths.at(0)};
    QCOMPARE(m_fixture->recentTexts(), left);
    QCOMPARE(m_fixture->openPath(), paths.at(3));
    QVERIFY(!QFile::exists(paths.at(1)));
    m_fixture->restart();
    QCOMPARE(m_fixture->recentTexts(), left);
}

void TestMainWindow::vanishedOpenDatabaseStaysFirst()
{
    const QString gone = m_fixture->openNew(QStringLiteral("gone.vrn"));
    const QString open = m_fixture->openNew();
    QFile::remove(gone);
    QFile::remove(open);
    m_fixture->recent(2)->trigger();
    QCOMPARE(m_fixture->recentTexts(), QStringList{QStringLiteral("1 ") + open});
}

void TestMainWindow::recentEntryThatIsNoDatabaseIsTold()
{
    const QString changed = m_fixture->openNew(QStringLiteral("changed.vrn"));
    const QString open = m_fixture->openNew();
    QFile::remove(changed);
    QDir().mkdir(changed);
    m_fixture->recent(2)->trigger();
    QCOMPARE(m_fixture->openPath(), open);
    QCOMPARE(m_fixture->takeBoxes(), QStringList{failedToOpen});
}

void TestMainWindow::startUp_data()
{
    QTest::addColumn<QString>("argument");
    QTest::addColumn<bool>("isDemo");
    QTest::addColumn<QString>("vanished");
    QTest::addColumn<QString>("open");
    QTest::addColumn<QStringList>("boxes");
    const QString none;
    const QString newest = QStringLiteral("newest.vrn");
    const QString other = QStringLiteral("other.vrn");
    const QString missing = QStringLiteral("missing.vrn");
    const QString folder = QStringLiteral("folder.vrn");
    QTest::newRow("argument") << other << false << none << other << QStringList();
    QTest::newRow("missing argument") << missing << false << none << none << QStringList{failedToOpen};
    QTest::newRow("folder as argument") << folder << false << none << none << QStringList{failedToOpen};
    QTest::newRow("demo") << other << true << none << other << QStringList();
    QTest::newRow("missing demo") << missing << true << none << none << QStringList();
    QTest::newRow("newest") << none << false << none << newest << QStringList();
    QTest::newRow("newest is gone") << none << false << newest << none << QStringList();
}

void TestMainWindow::startUp()
{
    QFETCH(QString, argument);
    QFETCH(bool, isDemo);
    QFETCH(QString, vanished);
    QFETCH(QString, open);
    QFETCH(QStringList, boxes);
    m_fixture->openNew(QStringLiteral("other.vrn"));
    m_fixture->openNew(QStringLiteral("newest.vrn"));
    QDir().mkdir(m_fixture->path(QStringLiteral("folder.vrn")));
    m_fixture->restart();
    if (!vanished.isEmpty())
        QFile::remove(m_fixture->path(vanished));

    window().openStartupDatabase(argument.isEmpty() ? argument : m_fixture->path(argument),
                                 isDemo ? MainWindow::Demo : MainWindow::FromCommandLine);
    QCOMPARE(m_fixture->openPath(), open.isEmpty() ? open : m_fixture->path(open));
    QCOMPARE(m_fixture->takeBoxes(), boxes);
    QVERIFY(!QFile::exists(m_fixture->path(QStringLiteral("missing.vrn"))));
    QCOMPARE(m_fixture->recentTexts().size(), vanished.isEmpty() ? 2 : 1);
}

void TestMainWindow::relativeStartUpPathIsMadeAbsolute()
{
    const QString path = m_fixture->makeDatabase(QStringLiteral("here.vrn"));
    const QString before = QDir::currentPath();
    QDir::setCurrent(QFileInfo(path).absolutePath());
    window().openStartupDatabase(QStringLiteral("./here.vrn"));
    QDir::setCurrent(before);
    QVERIFY(QDir::isAbsolutePath(m_fixture->openPath()));
    QCOMPARE(QFileInfo(m_fixture->openPath()).canonicalFilePath(), QFileInfo(path).canonicalFilePath());
    m_fixture->restart();
    window().openStartupDatabase(QString());
    QVERIFY(window().collection());
}

void TestMainWindow::storageToggleIsKept()
{
    QVERIFY(m_fixture->action(QStringLiteral("Ext"))->isChecked());
    m_fixture->action(QStringLiteral("Int"))->trigger();
    QVERIFY(!m_fixture->action(QStringLiteral("Ext"))->isChecked());
    QVERIFY(!AddingSettings::linkToFiles());
    m_fixture->restart();
    QVERIFY(m_fixture->action(QStringLiteral("Int"))->isChecked());
    m_fixture->action(QStringLiteral("Ext"))->trigger();
    QVERIFY(AddingSettings::linkToFiles());
}

void TestMainWindow::layoutComesBack()
{
    window().resize(701, 503);
    auto *dock = window().findChild<QDockWidget *>(QStringLiteral("MetaDataDock"));
    window().addDockWidget(Qt::BottomDockWidgetArea, dock);
    m_fixture->restart();
    QCOMPARE(window().size(), QSize(701, 503));
    dock = window().findChild<QDockWidget *>(QStringLiteral("MetaDataDock"));
    QCOMPARE(window().dockWidgetArea(dock), Qt::BottomDockWidgetArea);
}

void TestMainWindow::closedDocksComeBack()
{
    window().show();
    auto *tags = window().findChild<QDockWidget *>(QStringLiteral("TagsDock"));
    auto *metadata = window().findChild<QDockWidget *>(QStringLiteral("MetaDataDock"));
    tags->close();
    metadata->setFloating(true);
    m_fixture->action(QStringLiteral("Show All Docks"))->trigger();
    for (QDockWidget *dock : window().findChildren<QDockWidget *>())
        QVERIFY2(!dock->isHidden() && !dock->isFloating(), qPrintable(dock->objectName()));
    QCOMPARE(window().dockWidgetArea(tags), Qt::LeftDockWidgetArea);
    const auto *relations = window().findChild<QDockWidget *>(QStringLiteral("RelationsDock"));
    auto *browsing = window().findChild<QDockWidget *>(QStringLiteral("BrowsingTreeDock"));
    QVERIFY(metadata->y() > browsing->y());
    QVERIFY(browsing->x() > tags->x());
    QCOMPARE(window().tabifiedDockWidgets(browsing).value(0), relations);
}

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
