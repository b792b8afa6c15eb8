#include "app/addingsettings.h"
#include "app/windowsettings.h"
#include "models/filefiltermodel.h"
#include "models/sorter.h"
#include "tests/support/filesfixture.h"
#include "ui/mainui.h"
#include "ui/views/listview.h"
#include "ui/views/mainfilesview.h"
#include "ui/views/speciallineedit.h"
#include "ui/views/tableview.h"

#include <QAction>
#include <QApplication>
#include <QDesktopServices>
#include <QDropEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMimeData>
#include <QSignalSpy>
#include <QTimer>

/** The main view in a window on a real database: commands, keys, drops, texts and editing in place. */
class TestMainFilesView : public QObject
{
    Q_OBJECT

public slots:
    void noteOpened(const QUrl &url) { m_opened << url; }

private slots:
    void init();
    void cleanup();
    void commandsFollowState_data();
    void commandsFollowState();
    void deleteKeyUnlinksTagOfNode_data();
    void deleteKeyUnlinksTagOfNode();
    void shiftDeleteAsks_data();
    void shiftDeleteAsks();
    void readOnlyIsLeftAlone();
    void statusTellsSelection();
    void searchIsEndedByNode();
    void dropAddsFiles_data();
    void dropAddsFiles();
    void contextMenuFitsSelection_data();
    void contextMenuFitsSelection();
    void doubleClickOpensUnlessEditing();
    void editorKeys_data();
    void editorKeys();
    void linksTagsOfAction();
    void viewsShareSelection();
    void headerComesBackUnsorted();

private:
    void open(FilesFixture::Access access = FilesFixture::Writable);
    QAction *action(const char *name) const
    {
        const QList<QAction *> found = m_window->findChildren<QAction *>(QLatin1String(name));
        return found.value(0);
    }
    QAbstractItemView *list() const { return m_view->findChild<ListView *>(); }
    QAbstractItemView *table() const { return m_view->findChild<TableView *>(); }
    void showTable() { action("listAction")->setChecked(true); }
    void showAll() { m_fixture->mainView().showSpecialNode(AllFiles); }
    void select(const QVector<qint64> &ids);
    QStringList menuTexts();
    const File *file(qint64 id) { return m_fixture->file(id); }

    std::unique_ptr<FilesFixture> m_fixture;
    std::unique_ptr<QMainWindow> m_window;
    std::unique_ptr<MainUi> m_ui;
    MainFilesView *m_view = nullptr;
    QList<QUrl> m_opened;
};

void TestMainFilesView::init()
{
    m_opened.clear();
    for (const char *scheme : {"file", "http", "https"})
        QDesktopServices::setUrlHandler(QLatin1String(scheme), this, "noteOpened");
}

void TestMainFilesView::cleanup()
{
    if (m_view)
        m_view->setController(nullptr);
    m_window.reset();
    m_view = nullptr;
    m_fixture.reset();
    for (const char *scheme : {"file", "http", "https"})
        QDesktopServices::unsetUrlHandler(QLatin1String(scheme));
}

void TestMainFilesView::open(FilesFixture::Access access)
{
    m_fixture = std::make_unique<FilesFixture>(access);
    m_window = std::make_unique<QMainWindow>();
    m_ui = std::make_unique<MainUi>(m_window.get());
    m_view = new MainFilesView(m_window.get());
    m_view->takePlaces(*m_ui);
    m_window->setCentralWidget(m_view);
    m_view->setController(&m_fixture->mainView());
    m_window->resize(1024, 700);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void TestMainFilesView::select(const QVector<qint64> &ids)
{
    const Sorter *sorter = m_fixture->mainView().sorter();
    list()->clearSelection();
    for (int row = 0; row < sorter->rowCount(); ++row) {
        if (!ids.contains(sorter->fileAt(row)->id()))
            continue;
        list()->selectionModel()->setCurrentIndex(sorter->index(row, 0), QItemSelectionModel::NoUpdate);
        list()->selectionModel()->select(sorter->index(row, 0),
                                         QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
}

QStringList TestMainFilesView::menuTexts()
{
    QStringList texts;
    QTimer::singleShot(0, m_view, [&texts] {
        if (QWidget *menu = QApplication::activePopupWidget()) {
            for (const QAction *entry : menu->actions())
                texts << entry->text();
            menu->close();
        }
    });
    m_view->openContextMenu({5, 5});
    return texts;
}

void TestMainFilesView::commandsFollowState_data()
{
    QTest::addColumn<bool>("isOpen");
    QTest::addColumn<bool>("isReadOnly");
    QTest::addColumn<bool>("isSelected");
    QTest::addColumn<QStringList>("enabled");
    const QString add = QStringLiteral("addFilesAction");
    const QString addLink = QStringLiteral("addHyperlinkAction");
    const QString remove = QStringLiteral("deleteFilesAction");
    const QString link = QStringLiteral("linkTagsToFilesAction");
    QTest::newRow("closed") << false << false << false << QStringList();
    QTest::newRow("nothing selected") << true << false << false << QStringList{add, addLink};
    QTest::newRow("selected") << true << false << true << QStringList{add, addLink, remove, link};
    QTest::newRow("read-only") << true << true << false << QStringList();
}

void TestMainFilesView::commandsFollowState()
{
    QFETCH(bool, isOpen);
    QFETCH(bool, isReadOnly);
    QFETCH(bool, isSelected);
    QFETCH(QStringList, enabled);
    open(isReadOnly ? FilesFixture::ReadOnly : FilesFixture::Writable);
    if (isSelected) {
        const qint64 id = m_fixture->addExternal(QStringLiteral("a.txt"));
        showAll();
        select({id});
    }
    if (!isOpen)
        m_view->setController(nullptr);

    QCOMPARE(m_ui->fileMenu->menuAction()->isEnabled(), isOpen && !isReadOnly);
    for (const char *name : {"addFilesAction", "addHyperlinkAction", "removeFromNodeAction",
                             "deleteFilesAction", "linkTagsToFilesAction"}) {
        QVERIFY2(action(name), name);
        QVERIFY2(action(name)->isEnabled() == enabled.contains(QLatin1String(name)), name);
    }
}

void TestMainFilesView::deleteKeyUnlinksTagOfNode_data()
{
    QTest::addColumn<bool>("isNodeCurrent");
    QTest::addColumn<bool>("isInverted");
    QTest::addColumn<bool>("isUnlinked");
    QTest::newRow("tag node") << true << false << true;
    QTest::newRow("inverted node") << true << true << false;
    QTest::newRow("all files") << false << false << false;
}

void TestMainFilesView::deleteKeyUnlinksTagOfNode()
{
    QFETCH(bool, isNodeCurrent);
    QFETCH(bool, isInverted);
    QFETCH(bool, isUnlinked);
    open();
    const qint64 tagId = m_fixture->tags().addTag(QStringLiteral("A"));
    const qint64 otherTagId = m_fixture->tags().addTag(QStringLiteral("B"));
    const qint64 id = m_fixture->addExternal(QStringLiteral("a.txt"), {tagId, otherTagId});
    const qint64 nodeId = m_fixture->addNode(tagId);
    // The file stays selected when the node is clicked, and in view when the node is turned afterwards.
    showAll();
    select({id});
    if (isNodeCurrent)
        m_fixture->activate(nodeId);
    if (isInverted)
        m_fixture->tree().changeInversion(nodeId, true);
    QVERIFY(list()->selectionModel()->hasSelection());
    emit m_ui->fileMenu->aboutToShow();
    QCOMPARE(action("removeFromNodeAction")->isEnabled(), isUnlinked);

    QTest::keyClick(list(), Qt::Key_Delete);
    QVERIFY(file(id));
    QCOMPARE(file(id)->hasTag(tagId), !isUnlinked);
    QVERIFY(file(id)->hasTag(otherTagId));
    QVERIFY(m_fixture->takeBoxes().isEmpty());
}

void TestMainFilesView::shiftDeleteAsks_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("withLink");
    QTest::addColumn<bool>("isAgreed");
    QTest::addColumn<QString>("noun");
    QTest::newRow("one link") << 1 << false << true << QStringLiteral("link");
    QTest::newRow("two links, refused") << 2 << false << false << QStringLiteral("links");
    QTest::newRow("mixed") << 1 << true << true << QStringLiteral("files");
}

void TestMainFilesView::shiftDeleteAsks()
{
    QFETCH(int, count);
    QFETCH(bool, withLink);
    QFETCH(bool, isAgreed);
    QFETCH(QString, noun);
    open();
    const qint64 other = m_fixture->addExternal(QStringLiteral("other.txt"));
    QVector<qint64> ids;
    for (int i = 0; i < count; ++i)
        ids << m_fixture->addExternal(QStringLiteral("%1.txt").arg(i));
    if (withLink)
        ids << m_fixture->add(QUrl(QStringLiteral("https://example.org/")));
    showAll();
    select(ids);
    m_fixture->answerBoxesWith(isAgreed ? QMessageBox::Ok : QMessageBox::Cancel);

    QTest::keyClick(list(), Qt::Key_Delete, Qt::ShiftModifier);
    m_fixture->waitForWorker();
    QCOMPARE(m_fixture->takeBoxes(),
             QStringList{QStringLiteral("Do you really want to delete the selected %1?").arg(noun)});
    for (qint64 id : qAsConst(ids))
        QCOMPARE(file(id) == nullptr, isAgreed);
    QVERIFY(file(other));
}

void TestMainFilesView::readOnlyIsLeftAlone()
{
    open(FilesFixture::ReadOnly);
    const QString path = m_fixture->write(QStringLiteral("a.txt"));
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(list()->viewport(), &enter);
    QVERIFY(!enter.isAccepted());
    QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(list()->viewport(), &drop);
    m_fixture->waitForWorker();
    QCOMPARE(m_fixture->manager()->files().size(), 0);
}

void TestMainFilesView::statusTellsSelection()
{
    open();
    QSignalSpy spy(m_view, &MainFilesView::statusTextChanged);
    QSignalSpy selected(m_view, &MainFilesView::fileSelected);
    const auto last = [&spy] { return spy.isEmpty() ? QString() : spy.last().first().toString(); };
    showAll();
    m_view->fileSelectionChanged({});
    QCOMPARE(last(), QStringLiteral("0 files"));

    QVector<qint64> ids;
    for (const char *name : {"a.txt", "b.txt", "c.txt"})
        ids << m_fixture->addExternal(QLatin1String(name));
    QCOMPARE(last(), QStringLiteral("3 files"));
    select({ids.at(1)});
    QCOMPARE(last(), QStringLiteral("2 of 3"));
    QCOMPARE(selected.last().first().toLongLong(), ids.at(1));
    list()->selectAll();
    QCOMPARE(last(), QStringLiteral("3 selected"));
    list()->clearSelection();
    QCOMPARE(last(), QStringLiteral("3 files"));
    QCOMPARE(selected.last().first().toLongLong(), 0);
    m_view->setController(nullptr);
    QCOMPARE(last(), QString());
}

void TestMainFilesView::searchIsEndedByNode()
{
    open();
    const qint64 tagId = m_fixture->tags().addTag(QStringLiteral("A"));
    const qint64 hit = m_fixture->addExternal(QStringLiteral("Report %1.txt"), {tagId});
    m_fixture->addExternal(QStringLiteral("other.txt"), {tagId});
    const Sorter *sorter = m_fixture->mainView().sorter();

    action("fileSearchAction")->setChecked(true);
    QTRY_VERIFY(m_ui->searchEdit->isVisible());
    m_ui->searchEdit->setText(QStringLiteral("report %"));
    QTest::keyClick(m_ui->searchEdit, Qt::Key_Return);
    QCOMPARE(sorter->rowCount(), 1);
    QCOMPARE(sorter->fileAt(0)->id(), hit);
    QCOMPARE(m_ui->searchEdit->text(), QStringLiteral("report %"));

    m_ui->searchEdit->clear();
    QTest::keyClick(m_ui->searchEdit, Qt::Key_Return);
    QCOMPARE(sorter->rowCount(), 2);

    m_ui->searchEdit->setText(QStringLiteral("report"));
    QTest::keyClick(m_ui->searchEdit, Qt::Key_Return);
    m_fixture->activate(m_fixture->addNode(tagId));
    QCOMPARE(m_ui->searchEdit->text(), QString());
    QCOMPARE(sorter->rowCount(), 2);
}

void TestMainFilesView::dropAddsFiles_data()
{
    QTest::addColumn<bool>("onViewport");
    QTest::addColumn<bool>("asTable");
    QTest::addColumn<bool>("isNodeCurrent");
    QTest::newRow("thumbnails, no node") << true << false << false;
    QTest::newRow("thumbnails, node") << true << false << true;
    QTest::newRow("table, node") << true << true << true;
    QTest::newRow("frame of the view") << false << false << true;
}

void TestMainFilesView::dropAddsFiles()
{
    QFETCH(bool, onViewport);
    QFETCH(bool, asTable);
    QFETCH(bool, isNodeCurrent);
    open();
    if (asTable)
        showTable();
    const qint64 tagId = m_fixture->tags().addTag(QStringLiteral("A"));
    const qint64 nodeId = m_fixture->addNode(tagId);
    if (isNodeCurrent)
        m_fixture->activate(nodeId);
    else
        showAll();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(m_fixture->write(QStringLiteral("it's %1 \u00e4.txt"))),
                  QUrl(QStringLiteral("https://example.org/"))});
    QAbstractItemView *view = asTable ? table() : list();
    QWidget *target = onViewport ? view->viewport() : view;
    QDragEnterEvent enter({5, 5}, Qt::MoveAction | Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    QVERIFY(enter.isAccepted());
    QCOMPARE(enter.dropAction(), Qt::CopyAction);
    QDropEvent drop({5, 5}, Qt::MoveAction | Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &drop);
    QVERIFY(drop.isAccepted());
    QCOMPARE(drop.dropAction(), Qt::CopyAction);
    m_fixture->waitForWorker();

    const QList<File *> files = m_fixture->manager()->files().values();
    QCOMPARE(files.size(), 2);
    for (const File *added : files)
        QCOMPARE(added->tags(), isNodeCurrent ? QVector<qint64>{tagId} : QVector<qint64>());
}

void TestMainFilesView::contextMenuFitsSelection_data()
{
    QTest::addColumn<QString>("kinds"); // a letter a file: Internal, External, Hyperlink
    QTest::addColumn<QStringList>("texts");
    const QString open = QStringLiteral("Open for Viewing");
    const QString show = QStringLiteral("Show in Explorer");
    const QStringList single = {QStringLiteral("Show related files"), QStringLiteral("Properties")};
    const auto text = [](const char *entry) { return QStringList{QLatin1String(entry)}; };
    QTest::newRow("nothing") << QString() << QStringList();
    QTest::newRow("internal") << QStringLiteral("I") << text("Delete File") + single;
    QTest::newRow("external") << QStringLiteral("E")
                              << QStringList{open, show, QStringLiteral("Delete Link")} + single;
    QTest::newRow("hyperlink") << QStringLiteral("H")
                               << QStringList{open, QStringLiteral("Delete Link")} + single;
    QTest::newRow("two internal") << QStringLiteral("II") << text("Delete Files");
    QTest::newRow("two external") << QStringLiteral("EE") << text("Delete Links");
    QTest::newRow("internal and external") << QStringLiteral("IE") << text("Delete Items");
    QTest::newRow("internal and hyperlink") << QStringLiteral("IH") << text("Delete Links");
}

void TestMainFilesView::contextMenuFitsSelection()
{
    QFETCH(QString, kinds);
    QFETCH(QStringList, texts);
    open();
    QVector<qint64> ids;
    for (int i = 0; i < kinds.size(); ++i) {
        AddingSettings::setLinkToFiles(kinds.at(i) == QLatin1Char('E'));
        if (kinds.at(i) == QLatin1Char('H'))
            ids << m_fixture->add(QUrl(QStringLiteral("https://example.org/%1").arg(i)));
        else
            ids << m_fixture->addExternal(QStringLiteral("%1.txt").arg(i));
    }
    showAll();
    select(ids);
    QCOMPARE(menuTexts(), texts);
}

void TestMainFilesView::doubleClickOpensUnlessEditing()
{
    open();
    const qint64 linkId = m_fixture->add(QUrl(QStringLiteral("https://example.org/a.txt")));
    AddingSettings::setLinkToFiles(false);
    m_fixture->addExternal(QStringLiteral("inside.txt"));
    showAll();
    const QAbstractItemModel *model = m_fixture->mainView().sorter();
    emit list()->doubleClicked(model->index(1, 0));
    QVERIFY(m_opened.isEmpty());
    emit list()->doubleClicked(model->index(0, 0));
    QCOMPARE(m_opened, QList<QUrl>{QUrl(file(linkId)->name())});
    m_ui->editMode->setChecked(true);
    emit list()->doubleClicked(model->index(0, 0));
    QCOMPARE(m_opened.size(), 1);
    m_ui->editMode->setChecked(false);
    emit list()->doubleClicked(model->index(0, 0));
    QCOMPARE(m_opened.size(), 2);
    QVERIFY(m_fixture->takeBoxes().isEmpty());
}

void TestMainFilesView::editorKeys_data()
{
    QTest::addColumn<bool>("asTable");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("end");
    QTest::addColumn<QString>("name");
    const QString before = QStringLiteral("https://example.org/a/name/too/long/to/be/shown/in/full");
    const QString after = QStringLiteral("new");
    QTest::newRow("return takes it") << true << after << int(Qt::Key_Return) << after;
    QTest::newRow("esc leaves it") << true << after << int(Qt::Key_Escape) << before;
    QTest::newRow("quotes vanish") << true << QStringLiteral("\"n\"e\"w\"") << int(Qt::Key_Return) << after;
    QTest::newRow("empty is refused") << true << QStringLiteral(" ") << int(Qt::Key_Return) << before;
    QTest::newRow("thumbnail") << false << after << int(Qt::Key_Return) << after;
    QTest::newRow("untouched thumbnail") << false << QString() << int(Qt::Key_Return) << before;
}

void TestMainFilesView::editorKeys()
{
    QFETCH(bool, asTable);
    QFETCH(QString, typed);
    QFETCH(int, end);
    QFETCH(QString, name);
    open();
    if (asTable)
        showTable();
    QAbstractItemView *view = asTable ? table() : list();
    const QString before = QStringLiteral("https://example.org/a/name/too/long/to/be/shown/in/full");
    const qint64 id = m_fixture->add(QUrl(before));
    showAll();
    m_ui->editMode->setChecked(true);
    const QModelIndex index = m_fixture->mainView().sorter()->index(
        0, asTable ? ContentsModel::NameColumn : ContentsModel::ThumbnailColumn);
    view->setCurrentIndex(index);
    view->edit(index);
    QPointer<SpecialLineEdit> editor = view->findChild<SpecialLineEdit *>();
    QVERIFY(editor);
    QCOMPARE(editor->text(), before);
    QVERIFY(view->visualRect(index).contains(editor->geometry()));
    editor->selectAll();
    QTest::keyClicks(editor, typed);
    QTest::keyClick(editor.data(), Qt::Key(end));
    QTRY_VERIFY(!editor);
    QCOMPARE(file(id)->name(), name);
    QVERIFY(m_opened.isEmpty());
}

void TestMainFilesView::linksTagsOfAction()
{
    open();
    const QVector<qint64> tagIds = {m_fixture->tags().addTag(QStringLiteral("A")),
                                    m_fixture->tags().addTag(QStringLiteral("B"))};
    const QVector<qint64> ids = {m_fixture->addExternal(QStringLiteral("a"), {tagIds.first()}),
                                 m_fixture->addExternal(QStringLiteral("b"))};
    const qint64 other = m_fixture->addExternal(QStringLiteral("c"));
    showAll();
    select(ids);
    m_ui->linkTagsToFiles->setData(QVariant::fromValue(tagIds));
    m_ui->linkTagsToFiles->trigger();
    for (qint64 id : ids) {
        QCOMPARE(file(id)->tags().size(), 2);
        QVERIFY(file(id)->hasTag(tagIds.first()) && file(id)->hasTag(tagIds.last()));
    }
    QVERIFY(file(other)->tags().isEmpty());
}

void TestMainFilesView::viewsShareSelection()
{
    open();
    const qint64 id = m_fixture->addExternal(QStringLiteral("a"));
    m_fixture->addExternal(QStringLiteral("b"));
    showAll();
    select({id});
    showTable();
    QVERIFY(table()->isVisible() && !list()->isVisible());
    QCOMPARE(table()->selectionModel()->selectedRows().size(), 1);
    QVERIFY(!WindowSettings::showIconView());
    action("thumbnailsAction")->setChecked(true);
    QVERIFY(list()->isVisible() && !table()->isVisible());
    QVERIFY(WindowSettings::showIconView());
}

void TestMainFilesView::headerComesBackUnsorted()
{
    open();
    QHeaderView *header = m_view->findChild<TableView *>()->horizontalHeader();
    QCOMPARE(header->sectionSize(ContentsModel::NameColumn), 250);
    m_fixture->addExternal(QStringLiteral("b"));
    m_fixture->addExternal(QStringLiteral("a"));
    showAll();
    header->resizeSection(ContentsModel::NameColumn, 321);
    header->moveSection(7, 2);
    header->setSortIndicator(ContentsModel::NameColumn, Qt::AscendingOrder);
    QCOMPARE(m_fixture->mainView().sorter()->fileAt(0)->name(), QStringLiteral("a"));

    m_view->setController(nullptr);
    m_view->setController(&m_fixture->mainView());
    QCOMPARE(header->sectionSize(ContentsModel::NameColumn), 321);
    QCOMPARE(header->visualIndex(7), 2);
    QCOMPARE(header->sortIndicatorSection(), -1);
    QCOMPARE(m_fixture->mainView().sorter()->fileAt(0)->name(), QStringLiteral("b"));
}

QTEST_MAIN(TestMainFilesView)
#include "tst_mainfilesview.moc"
