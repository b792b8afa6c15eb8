#include "app/constants.h"
#include "models/idlistmime.h"
#include "models/tagsgroupproxy.h"
#include "resources/resources.h"
#include "support/dialoganswers.h"
#include "support/settingssandbox.h"
#include "support/tagsdockwindow.h"

#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QtTest>

using Ids = QVector<qint64>;

/** The tabs of the tags dock: what they show, how they follow the groups, and how they are kept. */
class TestTagTabs : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void init();
    void cleanup() { m_window.reset(); }

    void newTagsOnTabs();
    void newGroups_data();
    void newGroups();
    void dropsOnTabs();
    void fixedTabsKeepNothing();
    void tabsOfGroups();
    void tabsOverAReload();
    void tabsAreKept();
    void dTagsAreGreen();

private:
    bool dragTo(int tab, const Ids &tagIds, bool drop);

    SettingsSandbox m_settings;
    std::unique_ptr<TagsDockWindow> m_window;
};

void TestTagTabs::init()
{
    SettingsSandbox::clear();
    m_window = std::make_unique<TagsDockWindow>();
    QVERIFY(QTest::qWaitForWindowExposed(&m_window->window));
}

bool TestTagTabs::dragTo(int tab, const Ids &tagIds, bool drop)
{
    const std::unique_ptr<QMimeData> data(IdListMime::pack(Constants::tagMimeType, tagIds));
    const QPoint pos = m_window->bar->tabRect(tab).center();
    QDragEnterEvent enter(pos, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_window->bar, &enter);
    QDragMoveEvent move(pos, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_window->bar, &move);
    if (drop) {
        QDropEvent event(pos, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_window->bar, &event);
    }
    return enter.isAccepted() && move.isAccepted();
}

void TestTagTabs::newTagsOnTabs()
{
    const qint64 warm = m_window->addGroup("warm");
    m_window->showTab(warm);
    {
        const DialogAnswers person({QStringLiteral("orange")});
        m_window->dock->slotAddNewTag();
    }
    QCOMPARE(m_window->shown(), QStringLiteral("orange"));
    m_window->showTab(-1);
    {
        const DialogAnswers person({QStringLiteral("grey")});
        m_window->dock->slotAddNewTag();
    }
    QCOMPARE(
        m_window->open.rows(QStringLiteral("SELECT tag_name FROM tag_group_links JOIN tags USING(tag_id)")),
        QStringList(QStringLiteral("orange")));
    QCOMPARE(m_window->open.rows(QStringLiteral("SELECT count(*) FROM tags")),
             QStringList(QStringLiteral("5")));
}

void TestTagTabs::newGroups_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << QStringLiteral("warm") << QStringLiteral("warm");
    QTest::newRow("quotes vanish") << QStringLiteral("w\"ar\"m") << QStringLiteral("warm");
    QTest::newRow("quotes alone") << QStringLiteral("\"\"") << QString();
    QTest::newRow("with an ampersand") << QStringLiteral("R&D") << QStringLiteral("R&D");
}

void TestTagTabs::newGroups()
{
    QFETCH(QString, typed);
    QFETCH(QString, name);
    const DialogAnswers person({typed});
    m_window->action("Add Tag Group")->trigger();
    QCOMPARE(person.seen(), QStringList(QStringLiteral("Group name|Name of new group:")));
    QCOMPARE(m_window->open.rows(QStringLiteral("SELECT name FROM tag_groups")).join(QLatin1Char(',')), name);
    QCOMPARE(m_window->bar->count(), name.isEmpty() ? 2 : 3);
    QString tab = m_window->bar->tabText(2);
    QCOMPARE(tab.replace(QLatin1String("&&"), QLatin1String("&")), name);
}

void TestTagTabs::dropsOnTabs()
{
    const qint64 warm = m_window->addGroup("warm");
    const Ids two{m_window->id("red"), m_window->id("green")};
    m_window->open.groups().assignTags({m_window->id("blue")}, {warm});
    m_window->bar->moveTab(m_window->bar->indexOfGroup(warm), 0);
    QVERIFY(dragTo(0, two, true));
    QCOMPARE(m_window->open.rows(QStringLiteral("SELECT tag_id FROM tag_group_links")).size(), 3);
}

void TestTagTabs::fixedTabsKeepNothing()
{
    m_window->addGroup("warm");
    const Ids red{m_window->id("red")};
    QVERIFY(!dragTo(m_window->bar->indexOfGroup(0), red, true));
    QVERIFY(dragTo(m_window->bar->indexOfGroup(-1), red, true));
    QVERIFY(m_window->open.rows(QStringLiteral("SELECT tag_id FROM tag_group_links")).isEmpty());
}

void TestTagTabs::tabsOfGroups()
{
    const qint64 warm = m_window->addGroup("warm");
    const qint64 cold = m_window->addGroup("cold", false);
    QCOMPARE(m_window->tabs(), QStringLiteral("All Tags,D-Tags,warm"));
    m_window->open.groups().setGroupVisible({cold}, true);
    m_window->open.groups().renameGroup(cold, QStringLiteral("a & b"));
    QCOMPARE(m_window->tabs(), QStringLiteral("All Tags,D-Tags,warm,a && b"));
    m_window->bar->setCurrentIndex(2);
    m_window->dock->slotRemoveCurrentGroup();
    QCOMPARE(m_window->tabs(), QStringLiteral("All Tags,D-Tags,a && b"));
    QVERIFY(!m_window->open.groups().groups()->contains(warm));
    QCOMPARE(m_window->open.tags().groupProxy()->groupId(), m_window->bar->currentGroup());
    m_window->open.groups().setGroupVisible({cold}, false);
    QCOMPARE(m_window->tabs(), QStringLiteral("All Tags,D-Tags"));
}

void TestTagTabs::tabsOverAReload()
{
    const qint64 warm = m_window->addGroup("warm");
    m_window->addGroup("cold");
    m_window->bar->moveTab(2, 3);
    m_window->showTab(warm);
    const QString before = m_window->tabs();
    emit m_window->open->aboutToReloadAllData();
    m_window->open->load();
    emit m_window->open->allDataReloaded();
    QCOMPARE(m_window->tabs(), before);
    QCOMPARE(m_window->bar->currentGroup(), warm);
    QCOMPARE(m_window->open.tags().groupProxy()->groupId(), warm);
}

void TestTagTabs::tabsAreKept()
{
    const qint64 warm = m_window->addGroup("warm");
    m_window->addGroup("cold");
    m_window->bar->moveTab(3, 2);
    m_window->bar->moveTab(1, 0);
    m_window->showTab(warm);
    const QString before = m_window->tabs();
    QVERIFY(before.startsWith(QLatin1String("D-Tags")));
    m_window->detach();
    QCOMPARE(m_window->tabs(), QStringLiteral("All Tags,D-Tags"));
    m_window->open->load();
    m_window->attach();
    QCOMPARE(m_window->tabs(), before);
    QCOMPARE(m_window->bar->currentGroup(), warm);
}

void TestTagTabs::dTagsAreGreen()
{
    m_window->ui.tagFilterEdit->setText(QStringLiteral("red"));
    m_window->showTab(-1);
    QCOMPARE(m_window->ui.tagFilterEdit->text(), QString());
    const auto corner = [this] {
        return m_window->table->viewport()->grab().toImage().pixelColor(
            3, m_window->table->viewport()->height() - 3);
    };
    QCOMPARE(corner(), QColor(230, 255, 230));
    QCOMPARE(m_window->table->palette().color(QPalette::Text), QColor(Qt::black));
    m_window->showTab(0);
    QVERIFY(corner() != QColor(230, 255, 230));
}

QTEST_MAIN(TestTagTabs)
#include "tst_tagtabs.moc"
