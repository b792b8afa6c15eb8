#include "app/constants.h"
#include "app/messages.h"
#include "core/controllers/mainviewcontroller.h"
#include "models/idlistmime.h"
#include "resources/resources.h"
#include "support/dialoganswers.h"
#include "support/settingssandbox.h"
#include "support/tagsdockwindow.h"
#include "ui/dialogs/taggroupform.h"

#include <QDialogButtonBox>
#include <QDropEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryFile>
#include <QToolBar>
#include <QtTest>

using Ids = QVector<qint64>;

/** The commands on tags: their dialogs, keys and menus, and the table with its header. */
class TestTagsTableDock : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void init();
    void cleanup();

    void newTags_data();
    void newTags();
    void keys_data();
    void keys();
    void deletion_data();
    void deletion();
    void doubleClick();
    void buttonsShowFiles();
    void availability();
    void headerIsKept();
    void dropsOnTags();
    void contextMenu_data();
    void contextMenu();
    void groupForm_data();
    void groupForm();

private:
    SettingsSandbox m_settings;
    std::unique_ptr<TagsDockWindow> m_window;
    Messages::Box m_lastBox;
    QMessageBox::StandardButton m_answer = QMessageBox::Cancel;
    int m_boxes = 0;
};

void TestTagsTableDock::init()
{
    SettingsSandbox::clear();
    m_boxes = 0;
    Messages::setResponder([this](const Messages::Box &box) {
        ++m_boxes;
        m_lastBox = box;
        return Messages::Answer{m_answer, -1};
    });
    m_window = std::make_unique<TagsDockWindow>();
    QVERIFY(QTest::qWaitForWindowExposed(&m_window->window));
}

void TestTagsTableDock::cleanup()
{
    m_window.reset();
    Messages::setResponder({});
}

void TestTagsTableDock::newTags_data()
{
    QTest::addColumn<bool>("editMode");
    QTest::addColumn<QStringList>("answers");
    QTest::addColumn<QString>("tags");
    QTest::addColumn<int>("dialogs");
    const QString a = QStringLiteral("amber");
    const QString b = QStringLiteral("black");
    QTest::newRow("one") << false << QStringList{a, b} << QStringLiteral("amber,blue,green,red") << 1;
    QTest::newRow("cancel") << false << QStringList{QString()} << QStringLiteral("blue,green,red") << 1;
    QTest::newRow("succession") << true << QStringList{a, b, QString()}
                                << QStringLiteral("amber,black,blue,green,red") << 3;
    QTest::newRow("blanks end it") << true << QStringList{a, QStringLiteral("  "), b}
                                   << QStringLiteral("amber,blue,green,red") << 2;
    QTest::newRow("a taken name does not") << true << QStringList{QStringLiteral("red"), a, QString()}
                                           << QStringLiteral("amber,blue,green,red") << 3;
}

void TestTagsTableDock::newTags()
{
    QFETCH(bool, editMode);
    QFETCH(QStringList, answers);
    QFETCH(QString, tags);
    QFETCH(int, dialogs);
    m_window->ui.editMode->setChecked(editMode);
    m_window->ui.tagFilterEdit->setText(QStringLiteral("red"));
    QCOMPARE(m_window->shown(), QStringLiteral("red"));
    const DialogAnswers person(answers);
    m_window->action("New Tag")->trigger();
    QCOMPARE(person.seen().size(), dialogs);
    QCOMPARE(person.seen().first(), QStringLiteral("New Tag|Tag name:"));
    QCOMPARE(m_window->shown(), tags);
    QCOMPARE(m_window->ui.tagFilterEdit->text(), QString());
}

void TestTagsTableDock::keys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<bool>("editMode");
    QTest::addColumn<int>("shownTags");
    QTest::newRow("tab") << int(Qt::Key_Tab) << int(Qt::NoModifier) << false << 2;
    QTest::newRow("tab while editing") << int(Qt::Key_Tab) << int(Qt::NoModifier) << true << 0;
    QTest::newRow("ctrl and =") << int(Qt::Key_Equal) << int(Qt::ControlModifier) << false << 2;
    QTest::newRow("= alone") << int(Qt::Key_Equal) << int(Qt::NoModifier) << false << 0;
    QTest::newRow("ctrl, shift and =")
        << int(Qt::Key_Equal) << int(Qt::ControlModifier | Qt::ShiftModifier) << false << 0;
    QTest::newRow("return") << int(Qt::Key_Return) << int(Qt::NoModifier) << false << 0;
}

void TestTagsTableDock::keys()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(bool, editMode);
    QFETCH(int, shownTags);
    m_window->open.addFiles(3);
    m_window->open.tags().linkFilesToTag(m_window->id("red"), {1, 2});
    m_window->open.tags().linkFilesToTag(m_window->id("blue"), {2, 3});
    m_window->ui.editMode->setChecked(editMode);
    m_window->select({QStringLiteral("red"), QStringLiteral("blue")});
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

void TestTagsTableDock::deletion_data()
{
    QTest::addColumn<QStringList>("tags");
    QTest::addColumn<bool>("agrees");
    QTest::addColumn<int>("boxes");
    QTest::addColumn<QString>("left");
    const QString red = QStringLiteral("red");
    const QString blue = QStringLiteral("blue");
    QTest::newRow("unused") << QStringList{blue} << false << 0 << QStringLiteral("green,red");
    QTest::newRow("used, refused") << QStringList{red, blue} << false << 1
                                   << QStringLiteral("blue,green,red");
    QTest::newRow("used, agreed") << QStringList{red, blue} << true << 1 << QStringLiteral("green");
    QTest::newRow("none selected") << QStringList() << true << 0 << QStringLiteral("blue,green,red");
}

void TestTagsTableDock::deletion()
{
    QFETCH(QStringList, tags);
    QFETCH(bool, agrees);
    QFETCH(int, boxes);
    QFETCH(QString, left);
    m_window->open.addFiles(1);
    m_window->open.tags().linkFilesToTag(m_window->id("red"), {1});
    m_answer = agrees ? QMessageBox::Ok : QMessageBox::Cancel;
    m_window->select(tags);
    if (tags.isEmpty())
        m_window->table->selectionModel()->setCurrentIndex(QModelIndex(), QItemSelectionModel::Clear);
    QTest::keyClick(m_window->table, Qt::Key_Delete);
    QCOMPARE(m_boxes, boxes);
    if (boxes > 0) {
        QCOMPARE(m_lastBox.title, QStringLiteral("Tags In Use"));
        QCOMPARE(m_lastBox.defaultButton, QMessageBox::Cancel);
    }
    QCOMPARE(m_window->shown(), left);
    const bool isRedThere = left.contains(QLatin1String("red"));
    QCOMPARE(m_window->open.rows(QStringLiteral("SELECT tag_id FROM file_tag")).size(), isRedThere ? 1 : 0);
}

void TestTagsTableDock::doubleClick()
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
    QTest::keyClicks(editor, QStringLiteral("olive\""));
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(m_window->shown(), QStringLiteral("blue,olive,red")); // committed from the event loop
}

void TestTagsTableDock::buttonsShowFiles()
{
    m_window->open.addFiles(4);
    m_window->open.tags().linkFilesToTag(m_window->id("red"), {1, 2});
    m_window->open.tags().linkFilesToTag(m_window->id("blue"), {2, 3});
    m_window->select({QStringLiteral("red"), QStringLiteral("blue")});
    m_window->ui.tagToolsBar->actions().at(2)->trigger();
    QCOMPARE(m_window->open->mainViewController()->shownFileIds(), Ids({1, 2, 3}));
    m_window->ui.tagToolsBar->actions().at(1)->trigger();
    QCOMPARE(m_window->open->mainViewController()->shownFileIds(), Ids{2});
    // What is shown differs in no tag with one file, and in two tags with three.
    m_window->showTab(-1);
    QCOMPARE(m_window->shown(), QString());
    m_window->open.tags().showTagsEitherOr(
        {m_window->id("red"), m_window->id("green"), m_window->id("blue")});
    QCOMPARE(m_window->shown(), QStringLiteral("blue,red"));
}

void TestTagsTableDock::availability()
{
    const auto forSelection = {"Assign Tag Groups", "Delete", "Rename", "All of the Tags", "Any of the Tags"};
    for (const char *text : forSelection)
        QVERIFY2(!m_window->action(text)->isEnabled(), text);
    QVERIFY(m_window->action("New Tag")->isEnabled());
    m_window->select({QStringLiteral("red")});
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

void TestTagsTableDock::headerIsKept()
{
    QVERIFY(m_window->table->isColumnHidden(1) && m_window->table->isColumnHidden(2) &&
            m_window->table->isColumnHidden(3));
    QCOMPARE(m_window->shown().section(QLatin1Char(','), 0, 0), QStringLiteral("blue"));
    m_window->table->setColumnHidden(3, false);
    m_window->table->sortByColumn(0, Qt::DescendingOrder);
    m_window->detach();
    QCOMPARE(m_window->shown(), QString());
    m_window->attach();
    QVERIFY(m_window->table->isColumnHidden(1) && !m_window->table->isColumnHidden(3));
    QCOMPARE(m_window->shown().section(QLatin1Char(','), 0, 0), QStringLiteral("red"));
}

void TestTagsTableDock::dropsOnTags()
{
    m_window->open.addFiles(2);
    QWidget *viewport = m_window->table->viewport();
    const QPoint green = m_window->table->visualRect(m_window->table->model()->index(1, 0)).center();
    const auto drop = [viewport](const QMimeData *data, const QPoint &pos,
                                 Qt::KeyboardModifiers keys = Qt::NoModifier) {
        QDragEnterEvent enter(pos, Qt::MoveAction | Qt::CopyAction, data, Qt::LeftButton, keys);
        QApplication::sendEvent(viewport, &enter);
        QDragMoveEvent move(pos, Qt::MoveAction | Qt::CopyAction, data, Qt::LeftButton, keys);
        QApplication::sendEvent(viewport, &move);
        QDropEvent event(pos, Qt::MoveAction | Qt::CopyAction, data, Qt::LeftButton, keys);
        QApplication::sendEvent(viewport, &event);
        return event.isAccepted() ? event.dropAction() : Qt::IgnoreAction;
    };
    const std::unique_ptr<QMimeData> files(IdListMime::pack(Constants::fileMimeType, {1, 2}));
    drop(files.get(), viewport->rect().bottomLeft());
    QVERIFY(m_window->open.rows(QStringLiteral("SELECT tag_id FROM file_tag")).isEmpty());
    drop(files.get(), green);
    const QString greenId = QString::number(m_window->id("green"));
    QCOMPARE(m_window->open.rows(QStringLiteral("SELECT tag_id FROM file_tag")),
             QStringList({greenId, greenId}));

    // A move would let the other program delete what was dropped.
    QTemporaryFile file;
    QVERIFY(file.open());
    QMimeData urls;
    urls.setUrls({QUrl::fromLocalFile(file.fileName())});
    QCOMPARE(drop(&urls, green, Qt::ShiftModifier), Qt::CopyAction);
    const QString added = QStringLiteral("SELECT tag_id FROM file_tag WHERE file_id>2");
    QTRY_COMPARE_WITH_TIMEOUT(m_window->open.rows(added), QStringList(greenId), 20000);
}

void TestTagsTableDock::contextMenu_data()
{
    QTest::addColumn<QStringList>("selected");
    QTest::addColumn<QString>("entries");
    QTest::newRow("none") << QStringList() << QStringLiteral("Add");
    QTest::newRow("one") << QStringList{QStringLiteral("red")}
                         << QStringLiteral("Add,Assign Tag Groups,Delete,Rename");
    QTest::newRow("two") << QStringList{QStringLiteral("red"), QStringLiteral("blue")}
                         << QStringLiteral("Add,Assign Tag Groups,Delete");
}

void TestTagsTableDock::contextMenu()
{
    QFETCH(QStringList, selected);
    QFETCH(QString, entries);
    m_window->select(selected);
    QStringList texts;
    QTimer::singleShot(0, m_window->table, [&texts] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        for (const QAction *entry : menu->actions())
            texts.append(entry->text());
        menu->close();
    });
    emit m_window->table->customContextMenuRequested(QPoint(5, 5));
    QCOMPARE(texts.join(QLatin1Char(',')), entries);
}

void TestTagsTableDock::groupForm_data()
{
    QTest::addColumn<QStringList>("changes");
    QTest::addColumn<QString>("links");
    QTest::newRow("untouched") << QStringList() << QStringLiteral("cold:green,warm:red,warm:blue");
    QTest::newRow("in") << QStringList{QStringLiteral("cold+")}
                        << QStringLiteral("cold:green,warm:red,warm:blue,cold:red");
    QTest::newRow("out of a part") << QStringList{QStringLiteral("cold-")}
                                   << QStringLiteral("warm:red,warm:blue");
    QTest::newRow("out of all") << QStringList{QStringLiteral("warm-"), QStringLiteral("cold+")}
                                << QStringLiteral("cold:green,warm:blue,cold:red");
}

/** Opened for red and green; warm holds red and blue, cold holds green. */
void TestTagsTableDock::groupForm()
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
    QStringList found = m_window->open.rows(QStringLiteral(
        "SELECT name||':'||tag_name FROM tag_group_links JOIN tags USING(tag_id) JOIN tag_groups "
        "USING(tag_group_id)"));
    QStringList wanted = links.split(QLatin1Char(','));
    found.sort();
    wanted.sort();
    QCOMPARE(found, wanted);
}

QTEST_MAIN(TestTagsTableDock)
#include "tst_tagstabledock.moc"
