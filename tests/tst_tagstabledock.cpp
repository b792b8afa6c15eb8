#include "core/controllers/mainviewcontroller.h"
#include "resources/resources.h"
#include "tests/support/dialoganswers.h"
#include "tests/support/drags.h"
#include "tests/support/tagsdockwindow.h"
#include "ui/dialogs/taggroupform.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QToolBar>

using Ids = QVector<qint64>;

/** The commands on tags: their dialogs, keys and menus, and the table with its header. */
class TestTagsTableDock : public QObject
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

    void newTags_data()
    {
        addColumns<bool, QStringList, QString, int>("editMode", "answers", "tags", "dialogs");
        const QString a = "amber"_s;
        const QString b = "black"_s;
        addRow("one", false, QStringList{a, b}, "amber,blue,green,red"_s, 1);
        addRow("cancel", false, QStringList{QString()}, "blue,green,red"_s, 1);
        addRow("succession", true, QStringList{a, b, QString()}, "amber,black,blue,green,red"_s, 3);
        addRow("blanks end it", true, QStringList{a, "  "_s, b}, "amber,blue,green,red"_s, 2);
        addRow("a taken name does not", true, QStringList{"red"_s, a, QString()}, "amber,blue,green,red"_s,
               3);
    }

    void newTags()
    {
        QFETCH(bool, editMode);
        QFETCH(QStringList, answers);
        m_window->ui.editMode->setChecked(editMode);
        m_window->ui.tagFilterEdit->setText("red"_s);
        QCOMPARE(m_window->shown(), "red"_s);
        const DialogAnswers person(answers);
        m_window->action("New Tag")->trigger();
        QTEST(person.seen().size(), "dialogs");
        QCOMPARE(person.seen().first(), "New Tag|Tag name:"_s);
        QTEST(m_window->shown(), "tags");
        QCOMPARE(m_window->ui.tagFilterEdit->text(), QString());
    }

    void keys_data()
    {
        addColumns<int, int, bool, int>("key", "modifiers", "editMode", "shownTags");
        addRow("tab", int(Qt::Key_Tab), int(Qt::NoModifier), false, 2);
        addRow("tab while editing", int(Qt::Key_Tab), int(Qt::NoModifier), true, 0);
        addRow("ctrl and =", int(Qt::Key_Equal), int(Qt::ControlModifier), false, 2);
        addRow("= alone", int(Qt::Key_Equal), int(Qt::NoModifier), false, 0);
        addRow("ctrl, shift and =", int(Qt::Key_Equal), int(Qt::ControlModifier | Qt::ShiftModifier), false,
               0);
        addRow("return", int(Qt::Key_Return), int(Qt::NoModifier), false, 0);
    }

    void keys()
    {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(bool, editMode);
        QFETCH(int, shownTags);
        m_window->open.addFiles(3);
        m_window->open.tags().linkFilesToTag(m_window->id("red"), {1, 2});
        m_window->open.tags().linkFilesToTag(m_window->id("blue"), {2, 3});
        m_window->ui.editMode->setChecked(editMode);
        m_window->select({"red"_s, "blue"_s});
        const QSignalSpy any(m_window->dock, &TagsTableDock::anyOfTagsActivated);
        QSignalSpy all(m_window->dock, &TagsTableDock::allOfTagsActivated);
        m_window->table->setFocus();
        QTest::keyClick(m_window->table, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
        QCOMPARE(any.count(), 0);
        QCOMPARE(all.count(), shownTags > 0 ? 1 : 0);
        QCOMPARE(m_window->open.tags().selectedTagIds().size(), shownTags);
        if (shownTags > 0)
            QCOMPARE(m_window->open->mainViewController()->shownFileIds(), Ids{2});
    }

    void deletion_data()
    {
        addColumns<QStringList, bool, int, QString>("tags", "agrees", "boxes", "left");
        const QString red = "red"_s;
        const QString blue = "blue"_s;
        addRow("unused", QStringList{blue}, false, 0, "green,red"_s);
        addRow("used, refused", QStringList{red, blue}, false, 1, "blue,green,red"_s);
        addRow("used, agreed", QStringList{red, blue}, true, 1, "green"_s);
        addRow("none selected", QStringList(), true, 0, "blue,green,red"_s);
    }

    void deletion()
    {
        QFETCH(QStringList, tags);
        QFETCH(bool, agrees);
        QFETCH(int, boxes);
        QFETCH(QString, left);
        m_window->open.addFiles(1);
        m_window->open.tags().linkFilesToTag(m_window->id("red"), {1});
        m_window->open.answerBoxesWith(agrees ? QMessageBox::Ok : QMessageBox::Cancel);
        m_window->select(tags);
        if (tags.isEmpty())
            m_window->table->selectionModel()->setCurrentIndex(QModelIndex(), QItemSelectionModel::Clear);
        QTest::keyClick(m_window->table, Qt::Key_Delete);
        const QStringList shown = m_window->open.takeBoxes();
        QCOMPARE(shown.size(), boxes);
        QVERIFY(shown.isEmpty() || shown.first().startsWith("Tags In Use: "_s));
        QCOMPARE(m_window->shown(), left);
        const bool isRedThere = left.contains(QLatin1String("red"));
        QCOMPARE(m_window->open.rows("SELECT tag_id FROM file_tag"_s).size(), isRedThere ? 1 : 0);
    }

    void doubleClick()
    {
        QSignalSpy any(m_window->dock, &TagsTableDock::anyOfTagsActivated);
        const QPoint green = m_window->table->visualRect(m_window->table->model()->index(1, 0)).center();
        QTest::mouseClick(m_window->table->viewport(), Qt::LeftButton, Qt::NoModifier, green);
        QCOMPARE(any.count(), 0);
        QTest::mouseDClick(m_window->table->viewport(), Qt::LeftButton, Qt::NoModifier, green);
        QCOMPARE(any.count(), 1);
        QCOMPARE(any.at(0).at(0).value<Ids>(), Ids{m_window->id("green")});

        m_window->ui.editMode->setChecked(true);
        QTest::mouseDClick(m_window->table->viewport(), Qt::LeftButton, Qt::NoModifier, green);
        QCOMPARE(any.count(), 1);
        auto *editor = m_window->table->findChild<QLineEdit *>();
        QVERIFY(editor);
        QTest::keyClicks(editor, "olive\""_s);
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_COMPARE(m_window->shown(), "blue,olive,red"_s); // committed from the event loop
    }

    void buttonsShowFiles()
    {
        m_window->open.addFiles(4);
        m_window->open.tags().linkFilesToTag(m_window->id("red"), {1, 2});
        m_window->open.tags().linkFilesToTag(m_window->id("blue"), {2, 3});
        m_window->select({"red"_s, "blue"_s});
        m_window->ui.tagToolsBar->actions().at(2)->trigger();
        QCOMPARE(m_window->open->mainViewController()->shownFileIds(), Ids({1, 2, 3}));
        m_window->ui.tagToolsBar->actions().at(1)->trigger();
        QCOMPARE(m_window->open->mainViewController()->shownFileIds(), Ids{2});
        // What is shown differs in no tag with one file, and in two tags with three.
        m_window->showTab(-1);
        QCOMPARE(m_window->shown(), QString());
        m_window->open.tags().showTagsEitherOr(
            {m_window->id("red"), m_window->id("green"), m_window->id("blue")});
        QCOMPARE(m_window->shown(), "blue,red"_s);
    }

    void availability()
    {
        const auto forSelection = {"Assign Tag Groups", "Delete", "Rename", "All of the Tags",
                                   "Any of the Tags"};
        for (const char *text : forSelection)
            QVERIFY2(!m_window->action(text)->isEnabled(), text);
        QVERIFY(m_window->action("New Tag")->isEnabled());
        m_window->select({"red"_s});
        for (const char *text : forSelection)
            QVERIFY2(m_window->action(text)->isEnabled(), text);
        QCOMPARE(m_window->ui.linkTagsToFiles->data().value<Ids>(), Ids{m_window->id("red")});
        // A tab that does not show the selected tag takes it from the selection.
        m_window->showTab(-1);
        QVERIFY(!m_window->action("Delete")->isEnabled());
        QCOMPARE(m_window->ui.linkTagsToFiles->data().value<Ids>(), Ids());
        m_window->detach();
        for (const char *text : {"New Tag", "Add", "Add Tag Group"})
            QVERIFY2(!m_window->action(text)->isEnabled(), text);
        QVERIFY(!m_window->ui.tagFilterEdit->isEnabled());
        QVERIFY(!m_window->ui.tagMenu->menuAction()->isEnabled());
    }

    void headerIsKept()
    {
        QVERIFY(m_window->table->isColumnHidden(1) && m_window->table->isColumnHidden(2) &&
                m_window->table->isColumnHidden(3));
        QCOMPARE(m_window->shown().section(QLatin1Char(','), 0, 0), "blue"_s);
        m_window->table->setColumnHidden(3, false);
        m_window->table->sortByColumn(0, Qt::DescendingOrder);
        m_window->detach();
        QCOMPARE(m_window->shown(), QString());
        m_window->attach();
        QVERIFY(m_window->table->isColumnHidden(1) && !m_window->table->isColumnHidden(3));
        QCOMPARE(m_window->shown().section(QLatin1Char(','), 0, 0), "red"_s);
    }

    void selectionOverAReload()
    {
        m_window->select({"red"_s, "green"_s, "blue"_s});
        m_window->select({"red"_s, "green"_s});
        // Another program takes one of the selected tags away.
        OtherConnection(m_window->open.path()).run("DELETE FROM tags WHERE tag_name='green'"_s);
        m_window->open.manager()->reloadAllData();
        QCOMPARE(m_window->shown(), "blue,red"_s);
        QCOMPARE(m_window->ui.linkTagsToFiles->data().value<Ids>(), Ids{m_window->id("red")});
    }

    void dropsOnTags()
    {
        m_window->open.addFiles(2);
        QWidget *viewport = m_window->table->viewport();
        const QPoint green = m_window->table->visualRect(m_window->table->model()->index(1, 0)).center();
        const auto files = fileDrag({1, 2});
        drop(viewport, viewport->rect().bottomLeft(), *files, Qt::NoModifier, Qt::CopyAction);
        QVERIFY(m_window->open.rows("SELECT tag_id FROM file_tag"_s).isEmpty());
        drop(viewport, green, *files, Qt::NoModifier, Qt::CopyAction);
        const QString greenId = QString::number(m_window->id("green"));
        QCOMPARE(m_window->open.rows("SELECT tag_id FROM file_tag"_s), QStringList({greenId, greenId}));

        // A move would let the other program delete what was dropped.
        QTemporaryFile file;
        QVERIFY(file.open());
        QMimeData urls;
        urls.setUrls({QUrl::fromLocalFile(file.fileName())});
        QCOMPARE(drop(viewport, green, urls, Qt::ShiftModifier), Qt::CopyAction);
        const QString added = "SELECT tag_id FROM file_tag WHERE file_id>2"_s;
        QTRY_COMPARE_WITH_TIMEOUT(m_window->open.rows(added), QStringList(greenId), 20000);
    }

    void contextMenu_data()
    {
        addColumns<QStringList, QString>("selected", "entries");
        addRow("none", QStringList(), "Add"_s);
        addRow("one", QStringList{"red"_s}, "Add,Assign Tag Groups,Delete,Rename"_s);
        addRow("two", QStringList{"red"_s, "blue"_s}, "Add,Assign Tag Groups,Delete"_s);
    }

    void contextMenu()
    {
        QFETCH(QStringList, selected);
        m_window->select(selected);
        const QStringList texts =
            menuTexts([this] { emit m_window->table->customContextMenuRequested(QPoint(5, 5)); });
        QTEST(texts.join(QLatin1Char(',')), "entries");
    }

    void groupForm_data()
    {
        addColumns<QStringList, QString>("changes", "links");
        addRow("untouched", QStringList(), "cold:green,warm:red,warm:blue"_s);
        addRow("in", QStringList{"cold+"_s}, "cold:green,warm:red,warm:blue,cold:red"_s);
        addRow("out of a part", QStringList{"cold-"_s}, "warm:red,warm:blue"_s);
        addRow("out of all", QStringList{"warm-"_s, "cold+"_s}, "cold:green,warm:blue,cold:red"_s);
    }

    /** Opened for red and green; warm holds red and blue, cold holds green. */
    void groupForm()
    {
        QFETCH(QStringList, changes);
        QFETCH(QString, links);
        const qint64 warm = m_window->addGroup("warm");
        const qint64 cold = m_window->addGroup("cold");
        m_window->open.groups().setGroupTags(cold, {m_window->id("green")});
        m_window->open.groups().setGroupTags(warm, {m_window->id("red"), m_window->id("blue")});
        TagGroupForm form(&m_window->open.groups(), {m_window->id("red"), m_window->id("green")});
        QAbstractItemModel *model = form.findChild<QTableView *>()->model();
        QCOMPARE(model->index(0, 0).data(Qt::CheckStateRole).toInt(), int(Qt::PartiallyChecked));
        for (const QString &change : qAsConst(changes)) {
            const int row = change.startsWith(QLatin1String("warm")) ? 0 : 1;
            const int state = change.endsWith(QLatin1Char('+')) ? Qt::Checked : Qt::Unchecked;
            model->setData(model->index(row, 0), state, Qt::CheckStateRole);
        }
        QTest::mouseClick(form.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
        QStringList found = m_window->open.rows(
            "SELECT name||':'||tag_name FROM tag_group_links JOIN tags USING(tag_id) JOIN tag_groups "
            "USING(tag_group_id)"_s);
        QStringList wanted = links.split(QLatin1Char(','));
        found.sort();
        wanted.sort();
        QCOMPARE(found, wanted);
    }

private:
    std::unique_ptr<TagsDockWindow> m_window;
};

QTEST_MAIN(TestTagsTableDock)
#include "tst_tagstabledock.moc"
