#ifndef Q_OS_WIN
#include "app/endsignals.h"
#endif
#include "app/window/databaseerrors.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/tagscontroller.h"
#include "db/manager/databasemanger.h"
#include "models/contents/sorter.h"
#include "models/counts/nodecounts.h"
#include "tests/support/windowfixture.h"
#include "ui/preview/filepreview.h"
#include "ui/preview/previewbox.h"
#include "ui/views/mainfilesview.h"

#include <QDockWidget>
#include <QLineEdit>
#include <QMenu>
#include <QSqlError>
#include <QTabBar>
#include <QToolBar>

#include <csignal>
#include <sys/resource.h>

namespace {

const QString failedToOpen =
    "Failed to Open Database: The selected database could not be opened successfully."_s;
const QString failedToCreate = "Failed to create database: "_s;

} // namespace

/** The databases of the main window: opened, made, remembered and closed; and the places of docks and bars.
 */
class TestMainWindow : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_fixture = std::make_unique<WindowFixture>(); }
    void cleanup() { m_fixture.reset(); }

    void theTreesGetRoomForTheNameOfATree()
    {
        window().resize(1400, 800);
        window().show();
        auto *dock = window().findChild<QDockWidget *>("BrowsingTreeDock"_s);
        const int first = dock->width();
        dock->setWindowTitle("Browsing Tree: "_s + QString(18, QLatin1Char('m')));
        const int wide = dock->width();
        QVERIFY2(wide > first, qPrintable(QString::number(first)));
        // As it is by hand, it stays.
        window().resizeDocks({dock}, {wide - 20}, Qt::Horizontal);
        dock->setWindowTitle("Browsing Tree: "_s + QString(40, QLatin1Char('m')));
        QCOMPARE(dock->width(), wide - 20);
    }

    void windowFollowsDatabase()
    {
        const QAction *info = m_fixture->action("Database Info"_s);
        QVERIFY(!info->isEnabled());
        // The mark of unsaved changes is but a part of this name.
        const QString path = m_fixture->openNew("a[*]b.vrn"_s);
        const QAction *groups = m_fixture->action("Tag Groups"_s);
        QVERIFY(groups->isEnabled());
        window().show();
        QVERIFY(window().windowHandle()->title().startsWith("Vorna - "_s + path));
        QVERIFY(info->isEnabled() && m_fixture->action("Edit"_s)->isEnabled());
        window().closeDatabase();
        QCOMPARE(window().windowTitle(), "Vorna - "_s);
        QVERIFY(!info->isEnabled() && window().findChild<QMenu *>("exportMenu"_s)->menuAction()->isEnabled());
        // The row that tries out writing is there already.
        QVERIFY(OtherConnection(path).run("INSERT INTO file_tag VALUES (0,0)"_s));
        QVERIFY(window().openDatabase(DBDetails::local(path)) && !groups->isEnabled());
    }

    void fileCountsAreSwitchedForGood()
    {
        const auto isKnown = [this] {
            return m_fixture->window()
                .collection()
                ->browsTreeController()
                ->counts()
                ->of(AllFiles, 0)
                .isKnown();
        };
        const auto action = [this] { return m_fixture->window().findChild<QAction *>("fileCounts"_s); };
        const QString path = m_fixture->openNew();
        QTRY_VERIFY(isKnown());
        action()->trigger();
        QVERIFY(!isKnown());
        m_fixture->restart();
        QVERIFY(m_fixture->window().openDatabase(DBDetails::local(path)));
        QVERIFY(!action()->isChecked() && !isKnown());
        action()->trigger();
        QTRY_VERIFY(isKnown());
    }

    void boxesGoWithTheirDatabase()
    {
        m_fixture->openNew("old.vrn"_s);
        window().slotConnectionError();
        window().slotDBErrorOccured(QSqlError(QString(), QString(), QSqlError::StatementError, "13"_s));
        const QString path = m_fixture->openNew("next.vrn"_s);
        QCoreApplication::processEvents();
        QCOMPARE(m_fixture->takeBoxes(), QStringList());
        QCOMPARE(m_fixture->openPath(), path);
        // Nor does a box that is answered once the next one is open close that.
        const QString later = m_fixture->makeDatabase("later.vrn"_s);
        m_fixture->answerBoxes([&](const Messages::Box &) {
            window().openDatabase(DBDetails::local(later));
            return Messages::Answer{QMessageBox::Ok, -1};
        });
        const QSignalSpy closing(window().findChild<DatabaseErrors *>(), &DatabaseErrors::closeRequested);
        window().slotConnectionError();
        QTRY_COMPARE(m_fixture->boxes().size(), 1);
        QCOMPARE(closing.size(), 0);
        m_fixture->takeBoxes();
        QCOMPARE(m_fixture->openPath(), later);
        m_fixture->answerBoxes([](const Messages::Box &) { return Messages::Answer{QMessageBox::Ok, -1}; });
        window().slotConnectionError();
        QTRY_VERIFY(!window().collection());
        QCOMPARE(m_fixture->takeBoxes(),
                 QStringList{"Connection problem: Could not connect to the database."_s});
    }

    void openAsksForFile()
    {
        QDir().mkdir(m_fixture->path("other"_s));
        const QString path = m_fixture->makeDatabase("other/one.vrn"_s);
        for (const QString &chosen : {path, QString(), m_fixture->path("missing.vrn"_s)}) {
            openByDialog(chosen);
            QCOMPARE(m_fixture->openPath(), path);
        }
        QCOMPARE(m_fixture->takeBoxes(), QStringList());
        QCOMPARE(m_fixture->requests().first().directory, QDir::homePath());
        QCOMPARE(m_fixture->requests().last().directory, m_fixture->path("other"_s));
        QVERIFY(!QFile::exists(m_fixture->path("missing.vrn"_s)));
    }

    void newDatabase_data()
    {
        addColumns<QString, bool, QString, QStringList>("typed", "agrees", "open", "boxes");
        const QString refused = failedToCreate + "Cannot remove currently open database."_s;
        const QString unremovable = failedToCreate + "Failed to remove existent database."_s;
        const QString unmakeable = failedToCreate + "A database could not be created at this place."_s;
        const QString question = "Create New Database: %1 already exists.\nDo you want to replace it?"_s;
        addRow("extension appended", "new"_s, false, "new.vrn"_s, QStringList{});
        addRow("upper case is no extension", "new.VRN"_s, false, "new.VRN.vrn"_s, QStringList{});
        addRow("signs", "it's \"x\" %1 \xe2\x98\x83.vrn"_s, false, "it's \"x\" %1 \xe2\x98\x83.vrn"_s,
               QStringList{});
        addRow("existing was asked about", "old.vrn"_s, false, "old.vrn"_s, QStringList{});
        addRow("appended existing, no", "old"_s, false, "first.vrn"_s, QStringList{question});
        addRow("appended existing, yes", "old"_s, true, "old.vrn"_s, QStringList{question});
        addRow("open one", "first.vrn"_s, true, "first.vrn"_s, QStringList{refused});
        addRow("link to the open one", "link"_s, true, "first.vrn"_s, QStringList{refused});
        addRow("a folder", "folder.vrn"_s, true, "first.vrn"_s, QStringList{unremovable});
        const QString longest = "x"_s.repeated(250) + ".vrn"_s; // nothing can be set aside under a longer one
        addRow("too long to set aside", longest, true, "first.vrn"_s, QStringList{unremovable});
        addRow("missing folder", "nowhere/new.vrn"_s, true, "first.vrn"_s, QStringList{unmakeable});
        addRow("cancelled", ""_s, true, "first.vrn"_s, QStringList{});
    }

    void newDatabase()
    {
        QFETCH(QString, typed);
        QFETCH(bool, agrees);
        QFETCH(QString, open);
        QFETCH(QStringList, boxes);
        const QString first = m_fixture->openNew("first.vrn"_s);
        const QString old = m_fixture->write("old.vrn"_s, "precious");
        if (typed.size() > 250)
            m_fixture->write(typed, "precious");
        QDir().mkdir(m_fixture->path("folder.vrn"_s));
        QFile::link(first, m_fixture->path("link.vrn"_s));
        m_fixture->answerBoxes([agrees](const Messages::Box &) {
            return Messages::Answer{agrees ? QMessageBox::Yes : QMessageBox::Cancel, -1};
        });

        m_fixture->chooseFile(typed.isEmpty() ? typed : m_fixture->path(typed));
        m_fixture->action("New Local Database"_s)->trigger();
        QCOMPARE(m_fixture->openPath(), m_fixture->path(open));
        for (QString &box : boxes)
            box.replace(QLatin1String("%1"), old);
        QCOMPARE(m_fixture->takeBoxes(), boxes);
        QVERIFY(QFile::exists(first));
        QVERIFY(QFileInfo(m_fixture->path("link.vrn"_s)).isSymLink());
        QCOMPARE(WindowFixture::read(old) == "precious", open != QLatin1String("old.vrn"));
    }

    void staysWithAPictureThatWaits()
    {
        const QString path = m_fixture->openNew();
        const QString other = m_fixture->makeDatabase("other.vrn"_s);
        QImage(6, 4, QImage::Format_RGB32).save(m_fixture->path("a.png"_s));
        QSettings().setValue("PreferencesDialog/autoSaveRotated"_s, true);
        MainViewController *files = window().collection()->mainViewController();
        files->showSpecialNode(AllFiles);
        files->addUrls({QUrl::fromLocalFile(m_fixture->path("a.png"_s))}, {});
        QTRY_COMPARE(files->sorter()->rowCount(), 1);
        window().show();
        auto *view = window().findChild<MainFilesView *>();
        view->openFile(files->sorter()->index(0, 0));
        QPointer<PreviewBox> box;
        for (QWidget *widget : QApplication::topLevelWidgets())
            box = box ? box.data() : qobject_cast<PreviewBox *>(widget);
        QTRY_COMPARE(box->findChild<FilePreview *>()->pictureSize(), QSize(6, 4));
        box->rotateClockwise();

        OtherConnection writer(path);
        QVERIFY(writer.run("BEGIN IMMEDIATE"_s));
        for (const char *way : {"Disconnect", "Open", "New Local Database", "Connect", "Exit"}) {
            m_fixture->chooseFile(other);
            window().activateWindow();
            m_fixture->action(QString::fromUtf8(way))->trigger();
            QVERIFY2(window().isVisible() && box && m_fixture->openPath() == path, way);
            // Over the picture, which is in front.
            auto *warning = box->findChild<QMessageBox *>("temporaryWarning"_s);
            QVERIFY2(warning && warning->isVisible() && warning->textFormat() == Qt::PlainText, way);
            warning->hide();
        }
        QVERIFY(writer.run("ROLLBACK"_s));
        m_fixture->chooseFile(other);
        m_fixture->action("Open"_s)->trigger();
        QCOMPARE(m_fixture->openPath(), other);
        QCOMPARE(QImage(m_fixture->path("a.png"_s)).size(), QSize(4, 6));
    }

    void startsWithDamagedLayouts_data()
    {
        addColumns<QString, int>("key", "at");
        addRow("header, sections hidden", "ListView/headers"_s, 21);
        addRow("header, sections in all", "ListView/headers"_s, 32);
        addRow("header of the tags", "TagView/horizontalHeader"_s, 13);
    }

    void startsWithDamagedLayouts()
    {
        QFETCH(QString, key);
        QFETCH(int, at);
        m_fixture->openNew();
        m_fixture->restart();
        QByteArray state = QSettings().value(key).toByteArray();
        QVERIFY(state.size() > at);
        state[at] = 0x7f;
        QSettings().setValue(key, state);
        m_fixture->restart();
        m_fixture->openNew("next.vrn"_s);
        window().show();
        m_fixture->restart();
        QVERIFY(QSettings().value(key).toByteArray() != state);
    }

    void databaseComesBackWhenNoneCanTakeItsPlace()
    {
        const QString old = m_fixture->write("old.vrn"_s, "precious");
        m_fixture->write("old.vrn-journal"_s, "and what makes it whole");
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
        QCOMPARE(WindowFixture::read(old + "-journal"_s), QByteArray("and what makes it whole"));
        QCOMPARE(QFileInfo(old).dir().entryList(QDir::Files),
                 QStringList({"old.vrn"_s, "old.vrn-journal"_s}));
    }

    void replacedDatabaseLosesJournal()
    {
        const QString path = m_fixture->makeDatabase("old.vrn"_s);
        m_fixture->write("old.vrn-journal"_s, "left by a fall of power");
        m_fixture->chooseFile(path);
        window().newDatabase();
        QCOMPARE(m_fixture->openPath(), path);
        QCOMPARE(QFileInfo(path).dir().entryList(QDir::Files), QStringList({"old.vrn"_s, "template"_s}));
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
        m_fixture->recent(3)->trigger();
        QCOMPARE(m_fixture->recentTexts(), QStringList({"1 "_s + paths.at(3), "2 "_s + paths.at(0)}));
        QCOMPARE(m_fixture->takeBoxes(), QStringList());
        QVERIFY(!QFile::exists(paths.at(1)));
    }

    void startUp_data()
    {
        addColumns<QString, bool, QString, bool>("argument", "isDemo", "open", "isTold");
        const QString none;
        addRow("argument", "other.vrn"_s, false, "other.vrn"_s, false);
        addRow("missing argument", "missing.vrn"_s, false, none, true);
        addRow("folder as argument", "folder.vrn"_s, false, none, true);
        addRow("demo", "other.vrn"_s, true, "other.vrn"_s, false);
        addRow("missing demo", "missing.vrn"_s, true, none, false);
        addRow("newest", none, false, "newest.vrn"_s, false);
        addRow("newest is gone", none, false, none, false);
    }

    void startUp()
    {
        QFETCH(QString, argument);
        QFETCH(bool, isDemo);
        QFETCH(QString, open);
        QFETCH(bool, isTold);
        m_fixture->openNew("other.vrn"_s);
        const QString newest = m_fixture->openNew("newest.vrn"_s);
        m_fixture->restart();
        const QDir folder = QFileInfo(newest).dir();
        folder.mkdir("folder.vrn"_s);
        const bool isGone = argument.isEmpty() && open.isEmpty() && QFile::remove(newest);

        // A relative path is made absolute: the next run may start elsewhere.
        const QString before = QDir::currentPath();
        QDir::setCurrent(folder.path());
        window().openStartupDatabase(argument, isDemo ? MainWindow::Demo : MainWindow::FromCommandLine);
        QDir::setCurrent(before);
        QCOMPARE(m_fixture->openPath(), open.isEmpty() ? open : m_fixture->path(open));
        QCOMPARE(m_fixture->takeBoxes(), isTold ? QStringList{failedToOpen} : QStringList());
        QVERIFY(!folder.exists("missing.vrn"_s));
        QCOMPARE(m_fixture->recentTexts().size(), isGone ? 1 : 2);
    }

    void allDocksComeBackToTheirPlaces_data()
    {
        QTest::addColumn<QStringList>("docks");
        addRow("floating", QStringList({"TagsDock"_s, "BrowsingTreeDock"_s}));
        addRow("closed", QStringList({"MetaDataDock"_s, "ExternalFilesDock"_s}));
        addRow("stacked", QStringList({"ExternalFilesDock"_s, "TagsDock"_s, "RelationsDock"_s}));
        addRow("at the top", QStringList({"RelationsDock"_s, "MetaDataDock"_s, "BrowsingTreeDock"_s}));
    }

    void allDocksComeBackToTheirPlaces()
    {
        QFETCH(QStringList, docks);
        const QByteArray way = QTest::currentDataTag();
        window().resize(1024, 700);
        window().show();
        window().setDocksArrangement();
        QVERIFY(QTest::qWaitForWindowExposed(&window()));
        const QStringList places = dockPlaces();
        QCOMPARE(places.size(), 4);
        for (const QString &name : docks) {
            QDockWidget *dock = this->dock(name);
            if (way == "floating")
                dock->setFloating(true);
            if (way == "stacked")
                window().tabifyDockWidget(this->dock("MetaDataDock"_s), dock);
            if (way == "at the top")
                window().addDockWidget(Qt::TopDockWidgetArea, dock);
            if (way == "closed")
                m_fixture->action(dock->windowTitle())->trigger();
            else
                dock->setVisible(way != "floating");
        }
        QCoreApplication::processEvents();
        QVERIFY(dockPlaces() != places);
        m_fixture->action("Show All Docks"_s)->trigger();
        QTRY_COMPARE(dockPlaces(), places);
        QCOMPARE(window().tabifiedDockWidgets(dock("RelationsDock"_s)), {dock("BrowsingTreeDock"_s)});
        QTRY_COMPARE(tabCounts(), QVector<int>{2});
        window().tabifyDockWidget(dock("MetaDataDock"_s), dock("ExternalFilesDock"_s));
        QTRY_COMPARE(tabCounts(), QVector<int>({2, 2}));
    }

    void windowFitsSmallScreen()
    {
        m_fixture->openNew();
        m_fixture->action("File Search"_s)->setChecked(true);
        window().show();
        window().resize(1024, 700);
        QCOMPARE(window().size(), QSize(1024, 700));
        for (const QToolBar *bar : window().findChildren<QToolBar *>()) {
            QVERIFY2(bar->sizeHint().width() <= bar->width(), qPrintable(bar->windowTitle()));
            for (QAction *action : bar->actions()) {
                const QWidget *control = bar->widgetForAction(action);
                if (!action->isVisible())
                    continue;
                QVERIFY2(!control->accessibleName().isEmpty(), qPrintable(bar->windowTitle()));
                QVERIFY2(control->focusPolicy() & Qt::TabFocus, qPrintable(control->accessibleName()));
            }
        }
    }

    void layoutComesBack_data()
    {
        addColumns<bool>("isClosed");
        addRow("closed by hand", true);
        // In whose order docks that float may come first.
        addRow("ended by a signal", false);
    }

    void layoutComesBack()
    {
        QFETCH(bool, isClosed);
        const EndSignals endSignals;
        window().show();
        window().resize(701, 503);
        window().addDockWidget(Qt::BottomDockWidgetArea, dock("MetaDataDock"_s));
        dock("BrowsingTreeDock"_s)->setFloating(true);
        dock("RelationsDock"_s)->close();
        if (isClosed)
            window().close();
        else
            raise(SIGTERM);
        QTRY_VERIFY(!window().isVisible());
        m_fixture->restart();
        window().show();
        QCOMPARE(window().size(), QSize(701, 503));
        QCOMPARE(window().dockWidgetArea(dock("MetaDataDock"_s)), Qt::BottomDockWidgetArea);
        QVERIFY(dock("BrowsingTreeDock"_s)->isFloating());
        QVERIFY(dock("BrowsingTreeDock"_s)->isVisible());
        QVERIFY(!dock("RelationsDock"_s)->isVisible());
    }

    void roomGrowsWithTheFont()
    {
        QFont large = QApplication::font();
        large.setPointSize(18);
        const QFont usual = QApplication::font();
        QApplication::setFont(large);
        m_fixture->restart();
        window().resize(1260, 740);
        window().show();
        window().setDocksArrangement();
        QApplication::setFont(usual);
        const auto *tabs = window().findChild<QTabBar *>("solitaryTabBar"_s);
        QVERIFY(tabs->tabRect(tabs->count() - 1).right() < tabs->width());
        const auto *filter = window().findChild<QLineEdit *>("tagFilterEdit"_s);
        QVERIFY(filter->width() > 53);
    }

    void docksAreMirrored()
    {
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
        m_fixture->restart();
        window().show();
        window().setDocksArrangement();
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
        QCOMPARE(window().dockWidgetArea(dock("TagsDock"_s)), Qt::RightDockWidgetArea);
        QVERIFY(dock("TagsDock"_s)->x() > dock("BrowsingTreeDock"_s)->x());
        QVERIFY(dock("BrowsingTreeDock"_s)->x() > window().centralWidget()->x());
    }

private:
    MainWindow &window() { return m_fixture->window(); }
    void openByDialog(const QString &path)
    {
        m_fixture->chooseFile(path);
        m_fixture->action("Open"_s)->trigger();
    }
    QDockWidget *dock(const QString &name) { return window().findChild<QDockWidget *>(name); }
    QVector<int> tabCounts()
    {
        QVector<int> counts;
        for (const QTabBar *tabs : window().findChildren<QTabBar *>(QString(), Qt::FindDirectChildrenOnly)) {
            if (tabs->isVisible())
                counts << tabs->count();
        }
        return counts;
    }
    /** Where the docks stand that can be seen inside the window. */
    QStringList dockPlaces()
    {
        QStringList places;
        for (QDockWidget *dock : window().findChildren<QDockWidget *>()) {
            QString place;
            QDebug(&place) << dock->objectName() << window().dockWidgetArea(dock) << dock->geometry();
            if (!dock->visibleRegion().isEmpty() && !dock->isFloating())
                places << place;
        }
        places.sort();
        return places;
    }

    std::unique_ptr<WindowFixture> m_fixture;
};

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
