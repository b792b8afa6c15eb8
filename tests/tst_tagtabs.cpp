#include "models/tagsgroupproxy.h"
#include "resources/resources.h"
#include "tests/support/dialoganswers.h"
#include "tests/support/drags.h"
#include "tests/support/tagsdockwindow.h"
#include "ui/dialogs/taggroupingdialog.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>

using Ids = QVector<qint64>;

/** The tabs of the tags dock: what they show, how they follow the groups, and how they are kept. */
class TestTagTabs : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }

    void init()
    {
        m_window = std::make_unique<TagsDockWindow>();
        QVERIFY(QTest::qWaitForWindowExposed(&m_window->window));
    }

    void cleanup() { m_window.reset(); }

    void newTagsOnTabs()
    {
        const qint64 warm = m_window->addGroup("warm");
        m_window->showTab(warm);
        {
            const DialogAnswers person({"orange"_s});
            m_window->dock->slotAddNewTag();
        }
        QCOMPARE(m_window->shown(), "orange"_s);
        m_window->showTab(-1);
        {
            const DialogAnswers person({"grey"_s});
            m_window->dock->slotAddNewTag();
        }
        QCOMPARE(m_window->open.rows("SELECT tag_name FROM tag_group_links JOIN tags USING(tag_id)"_s),
                 QStringList("orange"_s));
        QCOMPARE(m_window->open.rows("SELECT count(*) FROM tags"_s), QStringList("5"_s));
    }

    void newGroups_data()
    {
        addColumns<QString, QString>("typed", "name");
        addRow("plain", "warm"_s, "warm"_s);
        addRow("quotes vanish", "w\"ar\"m"_s, "warm"_s);
        addRow("quotes alone", "\"\""_s, QString());
        addRow("with an ampersand", "R&D"_s, "R&D"_s);
    }

    void newGroups()
    {
        QFETCH(QString, typed);
        QFETCH(QString, name);
        const DialogAnswers person({typed});
        m_window->action("Add Tag Group")->trigger();
        QCOMPARE(person.seen(), QStringList("Group name|Name of new group:"_s));
        QCOMPARE(m_window->open.rows("SELECT name FROM tag_groups"_s).join(QLatin1Char(',')), name);
        QCOMPARE(m_window->bar->count(), name.isEmpty() ? 2 : 3);
        QString tab = m_window->bar->tabText(2);
        QCOMPARE(tab.replace(QLatin1String("&&"), QLatin1String("&")), name);
    }

    void dropsOnTabs()
    {
        const qint64 warm = m_window->addGroup("warm");
        const Ids two{m_window->id("red"), m_window->id("green")};
        m_window->open.groups().assignTags({m_window->id("blue")}, {warm});
        m_window->bar->moveTab(m_window->bar->indexOfGroup(warm), 0);
        QCOMPARE(dropOn(0, two), Qt::CopyAction);
        QCOMPARE(m_window->open.rows("SELECT tag_id FROM tag_group_links"_s).size(), 3);
    }

    void fixedTabsKeepNothing()
    {
        m_window->addGroup("warm");
        const Ids red{m_window->id("red")};
        QCOMPARE(dropOn(m_window->bar->indexOfGroup(0), red), Qt::IgnoreAction);
        dropOn(m_window->bar->indexOfGroup(-1), red);
        QVERIFY(m_window->open.rows("SELECT tag_id FROM tag_group_links"_s).isEmpty());
    }

    void tabsOfGroups()
    {
        const qint64 warm = m_window->addGroup("warm");
        const qint64 cold = m_window->addGroup("cold", false);
        QCOMPARE(m_window->tabs(), "All Tags,D-Tags,warm"_s);
        m_window->open.groups().setGroupVisible({cold}, true);
        m_window->open.groups().renameGroup(cold, "a & b"_s);
        QCOMPARE(m_window->tabs(), "All Tags,D-Tags,warm,a && b"_s);
        m_window->bar->setCurrentIndex(2);
        m_window->dock->slotRemoveCurrentGroup();
        QCOMPARE(m_window->tabs(), "All Tags,D-Tags,a && b"_s);
        QVERIFY(!m_window->open.groups().groups()->contains(warm));
        QCOMPARE(m_window->open.tags().groupProxy()->groupId(), m_window->bar->currentGroup());
        m_window->open.groups().setGroupVisible({cold}, false);
        QCOMPARE(m_window->tabs(), "All Tags,D-Tags"_s);
    }

    void tabsOverAReload()
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

    void groupsReadAgain()
    {
        const qint64 warm = m_window->addGroup("warm");
        const qint64 cold = m_window->addGroup("cold");
        m_window->bar->moveTab(2, 3);
        m_window->showTab(warm);
        m_window->ui.tagFilterEdit->setText("x"_s);
        OtherConnection(m_window->open.path())
            .run("UPDATE tag_groups SET name='icy' WHERE tag_group_id=%1"_s.arg(cold));
        m_window->open.groups().load();
        QCOMPARE(m_window->tabs(), "All Tags,D-Tags,icy,warm"_s);
        QCOMPARE(m_window->bar->currentGroup(), warm);
        QCOMPARE(m_window->ui.tagFilterEdit->text(), "x"_s);
    }

    void groupDialog()
    {
        m_window->addGroup("warm");
        TagGroupingDialog dialog(&m_window->open.groups());
        dialog.show();
        auto *view = dialog.findChild<TableView *>();
        dialog.findChild<QCheckBox *>()->setChecked(true);
        {
            const DialogAnswers person({"c\"old"_s, "warm"_s, "new"_s});
            QTest::mouseClick(dialog.findChildren<QPushButton *>(QString(), Qt::FindDirectChildrenOnly).at(1),
                              Qt::LeftButton);
            QCOMPARE(person.seen().size(), 4);
        }
        QCOMPARE(m_window->tabs(), "All Tags,D-Tags,warm,cold,new"_s);
        view->setCurrentIndex(view->model()->index(1, 0));
        QTest::keyClick(view, Qt::Key_Space);
        QCOMPARE(m_window->tabs(), "All Tags,D-Tags,warm,new"_s);
        view->edit(view->currentIndex());
        auto *editor = view->findChild<QLineEdit *>();
        QTest::keyClick(editor, Qt::Key_Delete); // of the text, not of the group
        QTest::keyClicks(editor, "icy"_s);
        QTest::keyClick(editor, Qt::Key_Return);
        const QString names = "SELECT group_concat(name) FROM tag_groups"_s;
        QTRY_COMPARE(m_window->open.rows(names), QStringList("warm,icy,new"_s));
        dialog.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&dialog)); // only there does a shortcut work
        QTest::keyClick(view, Qt::Key_Delete);
        QCOMPARE(m_window->open.rows(names), QStringList("warm,new"_s));
    }

    void tabsAreKept()
    {
        const qint64 warm = m_window->addGroup("warm");
        m_window->addGroup("cold");
        m_window->bar->moveTab(3, 2);
        m_window->bar->moveTab(1, 0);
        m_window->showTab(warm);
        const QString before = m_window->tabs();
        QVERIFY(before.startsWith(QLatin1String("D-Tags")));
        m_window->detach();
        QCOMPARE(m_window->tabs(), "All Tags,D-Tags"_s);
        m_window->open->load();
        m_window->attach();
        QCOMPARE(m_window->tabs(), before);
        QCOMPARE(m_window->bar->currentGroup(), warm);
    }

private:
    /** Drops tags on a tab. The action that was taken. */
    Qt::DropAction dropOn(int tab, const Ids &tagIds)
    {
        return drop(m_window->bar, m_window->bar->tabRect(tab).center(), *tagDrag(tagIds));
    }

    std::unique_ptr<TagsDockWindow> m_window;
};

QTEST_MAIN(TestTagTabs)
#include "tst_tagtabs.moc"
