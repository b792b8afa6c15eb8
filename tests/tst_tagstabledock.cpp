#include "models/tags/taggroupmodel.h"
#include "resources/resources.h"
#include "tests/support/dialoganswers.h"
#include "tests/support/drags.h"
#include "tests/support/localcollection.h"
#include "ui/dialogs/taggroupform.h"
#include "ui/dialogs/taggroupingdialog.h"
#include "ui/docks/tagstabledock.h"
#include "ui/views/taggroupbar.h"
#include "ui/widgets/mainui.h"
#include "ui/widgets/tableview.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QPushButton>

using Ids = QVector<qint64>;

namespace {
QStringList listed(const QString &names)
{
    return names.split(QLatin1Char(','), Qt::SkipEmptyParts);
}

/** The tags dock in a shown window of its own, with the tags red (1), green (2) and blue (3). */
class Window
{
public:
    Window() : ui(&window), dock(new TagsTableDock(&window))
    {
        open.addTags({"red"_s, "green"_s, "blue"_s});
        dock->takePlaces(ui);
        window.addDockWidget(Qt::LeftDockWidgetArea, dock);
        table = dock->findChild<TableView *>();
        bar = dock->findChild<TagGroupBar *>();
        attach();
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
    }
    ~Window() { attach(false); }

    void attach(bool on = true)
    {
        dock->setTagsController(on ? &open.tags() : nullptr);
        dock->setGroupsController(on ? &open.groups() : nullptr);
    }
    qint64 addGroup(const char *name, const Ids &tagIds = {})
    {
        const qint64 groupId = open.groups().addGroup(QLatin1String(name));
        open.groups().setGroupTags(groupId, tagIds);
        return groupId;
    }
    void showTab(qint64 groupId) { bar->setCurrentIndex(bar->indexOfGroup(groupId)); }
    QString tabs() const
    {
        QStringList texts;
        for (int i = 0; i < bar->count(); ++i)
            texts.append(bar->tabText(i));
        return texts.join(QLatin1Char(','));
    }
    QString groups() const { return open.value("SELECT group_concat(name) FROM tag_groups"); }
    /** The tags in groups, as "group:tag". */
    QString links() const
    {
        return open.value("SELECT group_concat(name||':'||tag_name) FROM (SELECT * FROM tag_group_links JOIN "
                          "tags USING(tag_id) JOIN tag_groups USING(tag_group_id) ORDER BY name, tag_name)");
    }

    /** The names in the table. */
    QString shown() const
    {
        QStringList names;
        const QAbstractItemModel *model = table->model();
        for (int row = 0; model && row < model->rowCount(); ++row)
            names.append(model->index(row, 0).data().toString());
        return names.join(QLatin1Char(','));
    }
    /** The names of all tags that the program knows. */
    QString everywhere()
    {
        QStringList names;
        for (const TableRowData *row : open.manager()->tags())
            names.append(row->value("tag_name"_s).toString());
        return names.join(QLatin1Char(','));
    }
    QPoint placeOf(int row) const { return table->visualRect(table->model()->index(row, 0)).center(); }
    void select(const QString &tags)
    {
        table->selectionModel()->clear();
        const auto add = QItemSelectionModel::Select | QItemSelectionModel::Rows;
        for (const QString &tag : listed(tags))
            table->selectionModel()->select(table->model()->index(listed(shown()).indexOf(tag), 0), add);
    }
    /** The selected tags, as the command that links them is told. */
    Ids selected() const { return ui.linkTagsToFiles->data().value<Ids>(); }
    QAction *action(const QString &text) const { return findAction(dock, text); }
    int countEnabled(const QString &texts) const
    {
        int count = 0;
        for (const QString &text : listed(texts))
            count += action(text)->isEnabled() ? 1 : 0;
        return count;
    }

    LocalCollection open;
    QMainWindow window;
    MainUi ui;
    TagsTableDock *dock;
    TableView *table;
    TagGroupBar *bar;
};
} // namespace

/** The tags dock: its commands, dialogs, keys and drops, its table, and the tabs of the tag groups. */
class TestTagsTableDock : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }

    void newTags_data()
    {
        addColumns<bool, int, QString, QString, int>("editMode", "tab", "answers", "tags", "dialogs");
        addRow("one", false, 0, "amber,black"_s, "amber,blue,green,red"_s, 1);
        addRow("succession", true, 0, "amber,black"_s, "amber,black,blue,green,red"_s, 3);
        addRow("blanks end it", true, 0, "amber,  ,black"_s, "amber,blue,green,red"_s, 2);
        addRow("a taken name does not", true, 0, "red,amber"_s, "amber,blue,green,red"_s, 3);
        addRow("a taken name can be mended", false, 0, "red,amber,black"_s, "amber,blue,green,red"_s, 2);
        addRow("in a group", false, 1, "amber"_s, "amber"_s, 1);
        addRow("in a group that refuses one", false, 1, "refused,amber"_s, "amber"_s, 2);
        addRow("on a tab that takes none", false, -1, "amber"_s, QString(), 1);
    }

    void newTags()
    {
        QFETCH(bool, editMode);
        QFETCH(int, tab);
        QFETCH(QString, answers);
        Window w;
        w.addGroup("warm");
        LocalCollection::run(
            "CREATE TRIGGER refuse BEFORE INSERT ON tag_group_links WHEN (SELECT tag_name FROM "
            "tags WHERE tag_id=new.tag_id)='refused' BEGIN SELECT RAISE(ABORT, 'refused'); END"_s);
        w.showTab(tab);
        w.ui.editMode->setChecked(editMode);
        w.ui.tagFilterEdit->setText("x"_s);
        QCOMPARE(w.shown(), QString());
        const DialogAnswers person(listed(answers));
        w.action("New Tag"_s)->trigger();
        QTEST(person.seen().size(), "dialogs");
        QCOMPARE(person.seen().first(), "New Tag|Tag name:"_s);
        QTEST(w.shown(), "tags");
        QCOMPARE(w.links(), tab > 0 ? "warm:amber"_s : QString());
        for (const QString &place : {w.open.value("SELECT group_concat(tag_name) FROM tags"), w.everywhere()})
            QVERIFY(!place.contains(QLatin1String("refused")));
    }

    void readOnlyTagsHaveNoEditor()
    {
        Window w;
        w.ui.editMode->setChecked(true);
        const auto opensEditor = [&w] {
            w.table->setCurrentIndex(w.table->model()->index(0, 0));
            QTest::keyClick(w.table, Qt::Key_F2);
            return w.table->isEditing();
        };
        QVERIFY(opensEditor());
        w.attach(false);
        w.open.reopenReadOnly();
        w.attach();
        QVERIFY(!opensEditor());
        QCOMPARE(w.table->editTriggers(), QAbstractItemView::NoEditTriggers);
        w.open.takeBoxes();
        emit w.table->doubleClicked(w.table->model()->index(0, 0));
        QCOMPARE(w.open.takeBoxes(), QStringList("Read-only Database: This database is read-only."_s));
    }

    void showFiles_data()
    {
        addColumns<QString, Ids, QString>("input", "files", "dTags");
        addRow("tab", "Tab"_s, Ids{2}, QString());
        addRow("ctrl, shift and =", "Ctrl+Shift+="_s, Ids(), QString());
        addRow("return", "Return"_s, Ids(), QString());
        addRow("button of all", "All of the Tags"_s, Ids{2}, QString());
        addRow("button of any", "Any of the Tags"_s, Ids{1, 2, 3}, "blue,red"_s);
    }

    void showFiles()
    {
        QFETCH(QString, input);
        QFETCH(Ids, files);
        Window w;
        w.open.addFiles(4);
        w.open.tags().linkFilesToTag(1, {1, 2});
        w.open.tags().linkFilesToTag(3, {2, 3});
        w.select("red,blue"_s);
        const QSignalSpy any(w.dock, &TagsTableDock::anyOfTagsActivated);
        const QSignalSpy all(w.dock, &TagsTableDock::allOfTagsActivated);
        w.table->setFocus();
        if (QAction *button = w.action(input))
            button->trigger();
        else
            QTest::keySequence(w.table, QKeySequence(input));
        QCOMPARE(any.count(), files.size() == 3 ? 1 : 0);
        QCOMPARE(all.count(), files.size() == 1 ? 1 : 0);
        QCOMPARE(w.open.mainView().shownFileIds(), files);
        w.showTab(-1);
        QTEST(w.shown(), "dTags");
    }

    void selectedTags_data()
    {
        addColumns<QString, int, QString, bool, int, QString>("tags", "enabled", "menu", "agrees", "boxes",
                                                              "left");
        const QString menu = "Add,Assign Tag Groups,Delete"_s;
        addRow("none", QString(), 0, "Add,Export"_s, true, 0, "blue,green,red"_s);
        addRow("unused", "blue"_s, 5, menu + ",Rename,Export,Favourite Key"_s, false, 0, "green,red"_s);
        addRow("used, kept", "red,blue"_s, 5, menu + ",Merge Tags...,Export"_s, false, 1, "blue,green,red"_s);
        addRow("used, deleted", "red,blue"_s, 5, menu + ",Merge Tags...,Export"_s, true, 1, "green"_s);
    }

    void selectedTags()
    {
        QFETCH(QString, tags);
        QFETCH(bool, agrees);
        QFETCH(QString, left);
        Window w;
        w.open.addFiles(1);
        w.open.tags().linkFilesToTag(1, {1});
        w.select(tags);
        QTEST(w.countEnabled("Assign Tag Groups,Delete,Rename,All of the Tags,Any of the Tags"_s), "enabled");
        const QStringList menu = menuTexts([&w] { emit w.table->customContextMenuRequested(QPoint(5, 5)); });
        QTEST(menu.join(QLatin1Char(',')), "menu");
        w.open.answerBoxesWith(agrees ? QMessageBox::Ok : QMessageBox::Cancel);
        QTest::keyClick(w.table, Qt::Key_Delete);
        const QStringList boxes = w.open.takeBoxes();
        QTEST(boxes.size(), "boxes");
        QVERIFY(boxes.isEmpty() || boxes.first().startsWith("Tags In Use: "_s));
        QCOMPARE(w.shown(), left);
        QCOMPARE(w.open.count("file_tag"_s), left.contains("red"_s) ? 1 : 0);
        w.showTab(-1); // which shows none of the selected tags
        QVERIFY(w.selected().isEmpty() && !w.action("Delete"_s)->isEnabled());
    }

    void clicks()
    {
        Window w;
        QSignalSpy any(w.dock, &TagsTableDock::anyOfTagsActivated);
        const QSignalSpy all(w.dock, &TagsTableDock::allOfTagsActivated);
        QWidget *viewport = w.table->viewport();
        QTest::mouseClick(viewport, Qt::LeftButton, Qt::NoModifier, w.placeOf(1));
        QCOMPARE(any.count(), 0);
        QTest::mouseDClick(viewport, Qt::LeftButton, Qt::NoModifier, w.placeOf(1));
        QCOMPARE(any.count(), 1);
        QCOMPARE(any.at(0).at(0).value<Ids>(), Ids{2});

        w.ui.editMode->setChecked(true);
        w.table->setFocus();
        QTest::keyClick(w.table, Qt::Key_Tab);
        QCOMPARE(all.count(), 0);
        const auto rename = [&w, viewport](const QString &name) {
            QTest::mouseDClick(viewport, Qt::LeftButton, Qt::NoModifier, w.placeOf(1));
            auto *editor = w.table->findChild<QLineEdit *>();
            QTest::keyClicks(editor, name);
            QTest::keyClick(editor, Qt::Key_Return);
        };
        rename("olive\""_s);
        QTRY_COMPARE(w.shown(), "blue,olive,red"_s); // committed from the event loop
        QCOMPARE(any.count(), 1);
        // The box about a taken name has the focus while the editor is closed.
        connect(&w.open.tags(), &TagsController::tagDuplicated, this, [] {
            QDialog box;
            QTimer::singleShot(0, &box, &QDialog::accept);
            box.exec();
        });
        rename("red"_s);
        QTRY_VERIFY(w.window.focusWidget() == w.table);
    }

    void dropsOnTags()
    {
        Window w;
        w.open.addFiles(2);
        QWidget *viewport = w.table->viewport();
        const auto files = fileDrag({1, 2});
        drop(viewport, viewport->rect().bottomLeft(), *files, Qt::NoModifier, Qt::CopyAction);
        QCOMPARE(w.open.count("file_tag"_s), 0);
        drop(viewport, w.placeOf(1), *files, Qt::NoModifier, Qt::CopyAction);
        QCOMPARE(w.open.rows("SELECT tag_id FROM file_tag"), QStringList({"2"_s, "2"_s}));

        // A move would let the other program delete what was dropped.
        QMimeData urls;
        urls.setUrls({QUrl::fromLocalFile(w.open.write("new"_s, "new"))});
        QCOMPARE(drop(viewport, w.placeOf(1), urls, Qt::ShiftModifier), Qt::CopyAction);
        QTRY_COMPARE_WITH_TIMEOUT(w.open.value("SELECT tag_id FROM file_tag WHERE file_id>2"), "2"_s, 20000);
    }

    /** Opened for red and green; warm holds red and blue, cold holds green. */
    void groupForm()
    {
        Window w;
        w.addGroup("warm", {1, 3});
        w.addGroup("cold", {2});
        const auto choose = [&w](int group, Qt::CheckState state) {
            TagGroupForm form(&w.open.groups(), {1, 2});
            QAbstractItemModel *model = form.findChild<QTableView *>("groupsTable"_s)->model();
            QCOMPARE(model->index(0, 0).data(Qt::CheckStateRole).toInt(), int(Qt::PartiallyChecked));
            model->setData(model->index(group, 0), state, Qt::CheckStateRole);
            form.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
        };
        choose(0, Qt::PartiallyChecked);
        QCOMPARE(w.links(), "cold:green,warm:blue,warm:red"_s);
        choose(1, Qt::Checked);
        QCOMPARE(w.links(), "cold:green,cold:red,warm:blue,warm:red"_s);
        choose(0, Qt::Unchecked);
        QCOMPARE(w.links(), "cold:green,cold:red,warm:blue"_s);
    }

    /** Several groups change together, and what failed can be tried again. */
    void groupFormKeepsWhatFailed()
    {
        Window w;
        w.addGroup("warm");
        w.addGroup("cold");
        LocalCollection::run("CREATE TRIGGER refuse BEFORE INSERT ON tag_group_links WHEN new.tag_group_id=2 "
                             "BEGIN SELECT RAISE(ABORT, 'refused'); END"_s);
        TagGroupForm form(&w.open.groups(), {1});
        QAbstractItemModel *model = form.findChild<QTableView *>()->model();
        for (int row : {0, 1})
            model->setData(model->index(row, 0), Qt::Checked, Qt::CheckStateRole);
        form.show();
        const auto press = [&form] {
            form.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
            return form.isVisible();
        };
        QVERIFY(press());
        QCOMPARE(w.links(), QString());
        for (int row : {0, 1})
            QCOMPARE(model->index(row, 0).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
        LocalCollection::run("DROP TRIGGER refuse"_s);
        QVERIFY(!press());
        QCOMPARE(w.links(), "cold:red,warm:red"_s);
    }

    void tabsOfGroups()
    {
        Window w;
        const DialogAnswers person({"war\"m\""_s});
        w.action("Add Tag Group"_s)->trigger();
        QCOMPARE(person.seen(), QStringList("Group name|Name of new group:"_s));
        const qint64 cold = w.addGroup("cold", {1});
        w.open.groups().setGroupVisible({cold}, false);
        QCOMPARE(w.tabs(), "All Tags,D-Tags,warm"_s);
        w.open.groups().setGroupVisible({cold}, true);
        w.open.groups().renameGroup(cold, "a & b"_s);
        QCOMPARE(w.tabs(), "All Tags,D-Tags,warm,a && b"_s);
        w.showTab(cold);
        QCOMPARE(w.shown(), "red"_s);
        w.dock->slotRemoveCurrentGroup();
        QCOMPARE(w.tabs(), "All Tags,D-Tags,warm"_s);
        QCOMPARE(w.groups(), "warm"_s);
        QCOMPARE(w.shown(), w.bar->currentGroup() == 0 ? "blue,green,red"_s : QString());

        w.bar->moveTab(2, 0);
        const auto dropOn = [&w](int tab) {
            return drop(w.bar, w.bar->tabRect(tab).center(), *tagDrag({2, 3}));
        };
        w.open.groups().assignTags({1}, {1});
        QCOMPARE(dropOn(0), Qt::CopyAction);
        QCOMPARE(w.links(), "warm:blue,warm:green,warm:red"_s);
        for (int fixed : {1, 2})
            QCOMPARE(dropOn(fixed), Qt::IgnoreAction);
    }

    void reloads()
    {
        Window w;
        const qint64 warm = w.addGroup("warm", {1, 2, 3});
        const qint64 cold = w.addGroup("cold");
        w.bar->moveTab(2, 3);
        w.showTab(warm);
        w.ui.tagFilterEdit->setText("e"_s);
        w.select("red,green"_s);
        OtherConnection other(w.open.path());
        other.run("UPDATE tag_groups SET name='icy' WHERE tag_group_id=%1"_s.arg(cold));
        w.open.groups().load();
        QCOMPARE(w.tabs(), "All Tags,D-Tags,icy,warm"_s);
        QCOMPARE(w.ui.tagFilterEdit->text(), "e"_s);
        QCOMPARE(w.selected(), Ids({2, 1}));

        other.run("DELETE FROM tags WHERE tag_id=2"_s);
        w.open.manager()->reloadAllData();
        QCOMPARE(w.tabs(), "All Tags,D-Tags,icy,warm"_s);
        QCOMPARE(w.bar->currentGroup(), warm);
        QCOMPARE(w.shown(), "blue,red"_s);
        QCOMPARE(w.selected(), Ids{1});
    }

    void groupDialog()
    {
        Window w;
        w.addGroup("warm");
        TagGroupingDialog dialog(&w.open.groups());
        dialog.show();
        auto *view = dialog.findChild<TableView *>();
        dialog.findChild<QCheckBox *>()->setChecked(true);
        {
            const DialogAnswers person({"c\"old"_s, "warm"_s, "new"_s, "\"\""_s, "late"_s});
            dialog.findChildren<QPushButton *>(QString(), Qt::FindDirectChildrenOnly).at(1)->click();
            QCOMPARE(person.seen().size(), 4); // quotes alone count as Cancel
        }
        const QModelIndex tab = view->model()->index(1, TagGroupModel::TabColumn);
        QVERIFY(!view->model()->setData(tab, tab.data(Qt::CheckStateRole), Qt::CheckStateRole)); // no edit
        view->setCurrentIndex(view->model()->index(1, 0));
        QTest::keyClick(view, Qt::Key_Space);
        QCOMPARE(w.tabs(), "All Tags,D-Tags,warm,new"_s);
        view->edit(view->currentIndex());
        auto *editor = view->findChild<QLineEdit *>();
        QTest::keyClick(editor, Qt::Key_Delete); // of the text, not of the group
        QTest::keyClicks(editor, "icy"_s);
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_COMPARE(w.groups(), "warm,icy,new"_s);
        dialog.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&dialog)); // only there does a shortcut work
        QTest::keyClick(view, Qt::Key_Delete);
        QCOMPARE(w.groups(), "warm,new"_s);
    }

    void arrangementIsKept()
    {
        Window w;
        w.table->setColumnHidden(3, false);
        w.table->sortByColumn(0, Qt::DescendingOrder);
        const qint64 warm = w.addGroup("warm", {1, 2, 3});
        w.addGroup("cold");
        w.bar->moveTab(3, 2);
        w.bar->moveTab(1, 0);
        w.showTab(warm);
        const QString always = "New Tag,Add,Add Tag Group"_s;
        QCOMPARE(w.countEnabled(always), 3);
        w.attach(false);
        QCOMPARE(w.tabs(), "All Tags,D-Tags"_s);
        QCOMPARE(w.countEnabled(always), 0);
        QVERIFY(!w.ui.tagFilterEdit->isEnabled() && !w.ui.tagMenu->menuAction()->isEnabled());
        w.open->load();
        w.attach();
        QCOMPARE(w.tabs(), "D-Tags,All Tags,cold,warm"_s);
        QCOMPARE(w.bar->currentGroup(), warm);
        QCOMPARE(w.shown(), "red,green,blue"_s);
        QVERIFY(w.table->isColumnHidden(1) && !w.table->isColumnHidden(3));
    }
};

QTEST_MAIN(TestTagsTableDock)
#include "tst_tagstabledock.moc"
