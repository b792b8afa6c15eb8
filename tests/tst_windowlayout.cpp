#include "tests/support/windowfixture.h"

#include <QDockWidget>
#include <QStatusBar>
#include <QTabBar>
#include <QToolBar>

/** The places of docks and bars: over a restart, after "Show All Docks", and on a small screen. */
class TestWindowLayout : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_fixture = std::make_unique<WindowFixture>(); }
    void cleanup() { m_fixture.reset(); }

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
            dock->setVisible(way != "closed" && way != "floating");
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
                QVERIFY2(!control->accessibleName().isEmpty(), qPrintable(bar->windowTitle()));
                QVERIFY2(control->focusPolicy() & Qt::TabFocus, qPrintable(control->accessibleName()));
            }
        }
    }

    void menusLeaveTheStatusText()
    {
        window().statusBar()->showMessage("3 selected"_s);
        m_fixture->action("Show All Docks"_s)->showStatusText(&window());
        QCOMPARE(window().statusBar()->currentMessage(), "3 selected"_s);
    }

    void layoutComesBack()
    {
        window().resize(701, 503);
        window().addDockWidget(Qt::BottomDockWidgetArea, dock("MetaDataDock"_s));
        m_fixture->restart();
        QCOMPARE(window().size(), QSize(701, 503));
        QCOMPARE(window().dockWidgetArea(dock("MetaDataDock"_s)), Qt::BottomDockWidgetArea);
    }

private:
    MainWindow &window() { return m_fixture->window(); }
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

QTEST_MAIN(TestWindowLayout)
#include "tst_windowlayout.moc"
