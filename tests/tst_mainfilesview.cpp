#include "app/addingsettings.h"
#include "models/contentsmodel.h"
#include "models/filefiltermodel.h"
#include "models/sorter.h"
#include "tests/support/dialoganswers.h"
#include "tests/support/drags.h"
#include "tests/support/localcollection.h"
#include "ui/mainui.h"
#include "ui/views/listview.h"
#include "ui/views/mainfilesview.h"
#include "ui/views/speciallineedit.h"
#include "ui/views/tableview.h"

#include <QAction>
#include <QApplication>
#include <QDesktopServices>
#include <QHeaderView>
#include <QMainWindow>
#include <QMenu>

namespace {
const QString before = "https://example.org/a/name/too/long/to/be/shown/in/full"_s;
}

/** The main view in a window on a real database: commands, keys, drops, texts and editing in place. */
class TestMainFilesView : public QObject
{
    Q_OBJECT

public slots:
    void noteOpened(const QUrl &url) { m_opened << url; }

private slots:
    void init()
    {
        m_opened.clear();
        QDesktopServices::setUrlHandler("https"_s, this, "noteOpened");
    }

    void cleanup()
    {
        if (m_view)
            m_view->setController(nullptr);
        m_window.reset();
        m_view = nullptr;
        m_fixture.reset();
        QDesktopServices::unsetUrlHandler("https"_s);
    }

    void commandsFollowState_data()
    {
        addColumns<bool, bool, QString>("isReadOnly", "isSelected", "enabled");
        addRow("nothing selected", false, false, "addFilesAction addHyperlinkAction"_s);
        addRow("selected", false, true,
               "addFilesAction addHyperlinkAction deleteFilesAction linkTagsToFilesAction"_s);
        addRow("read-only", true, false, QString());
    }

    void commandsFollowState()
    {
        QFETCH(bool, isReadOnly);
        QFETCH(bool, isSelected);
        QFETCH(QString, enabled);
        open(isReadOnly);
        if (isSelected) {
            const qint64 id = m_fixture->addExternal("a.txt"_s);
            showAll();
            select({id});
        }
        QCOMPARE(m_ui->fileMenu->menuAction()->isEnabled(), !isReadOnly);
        for (int round = 0; round < 2; ++round) {
            for (const char *name : {"addFilesAction", "addHyperlinkAction", "removeFromNodeAction",
                                     "deleteFilesAction", "linkTagsToFilesAction"})
                QVERIFY2(action(name)->isEnabled() == enabled.contains(QLatin1String(name)), name);
            m_view->setController(nullptr);
            enabled.clear();
        }
    }

    void deleteKeyUnlinksTagOfNode_data()
    {
        addColumns<bool, bool, bool>("isNodeCurrent", "isInverted", "isUnlinked");
        addRow("tag node", true, false, true);
        addRow("inverted node", true, true, false);
        addRow("all files", false, false, false);
    }

    void deleteKeyUnlinksTagOfNode()
    {
        QFETCH(bool, isNodeCurrent);
        QFETCH(bool, isInverted);
        QFETCH(bool, isUnlinked);
        open();
        const qint64 tagId = m_fixture->tags().addTag("A"_s);
        const qint64 otherTagId = m_fixture->tags().addTag("B"_s);
        QVector<qint64> tagIds = {otherTagId};
        if (!isInverted)
            tagIds << tagId;
        const qint64 id = m_fixture->addExternal("a.txt"_s, tagIds);
        const qint64 nodeId = m_fixture->manager()->addNodeBelow(tagId, m_fixture->addNode(otherTagId));
        m_fixture->tree().changeInversion(nodeId, isInverted);
        showAll();
        select({id}); // which stays so when the node is clicked
        if (isNodeCurrent)
            m_fixture->activate(nodeId);
        QVERIFY(list()->selectionModel()->hasSelection());
        emit m_ui->fileMenu->aboutToShow();
        QCOMPARE(action("removeFromNodeAction")->isEnabled(), isUnlinked);

        QTest::keyClick(list(), Qt::Key_Delete);
        QVERIFY(file(id));
        QCOMPARE(file(id)->hasTag(tagId), !isUnlinked && !isInverted);
        QVERIFY(file(id)->hasTag(otherTagId));
    }

    void shiftDeleteAsks_data()
    {
        addColumns<QStringList, bool, QString>("urls", "isAgreed", "noun");
        const QString link = "https://example.org/"_s;
        addRow("one link", QStringList{"0.txt"_s}, true, "link"_s);
        addRow("two links, refused", QStringList{"0.txt"_s, "1.txt"_s}, false, "links"_s);
        addRow("mixed", QStringList{"0.txt"_s, link}, true, "files"_s);
    }

    void shiftDeleteAsks()
    {
        QFETCH(QStringList, urls);
        QFETCH(bool, isAgreed);
        QFETCH(QString, noun);
        open();
        const qint64 other = m_fixture->addExternal("other.txt"_s);
        QVector<qint64> ids;
        for (const QString &url : qAsConst(urls))
            ids << (url.contains(QLatin1Char(':')) ? m_fixture->add(QUrl(url)) : m_fixture->addExternal(url));
        showAll();
        select(ids);
        m_fixture->answerBoxesWith(isAgreed ? QMessageBox::Ok : QMessageBox::Cancel);

        QTest::keyClick(list(), Qt::Key_Delete, Qt::ShiftModifier);
        m_fixture->waitForWorker();
        QCOMPARE(m_fixture->takeBoxes(),
                 QStringList{"Do you really want to delete the selected %1?"_s.arg(noun)});
        for (qint64 id : qAsConst(ids))
            QCOMPARE(file(id) == nullptr, isAgreed);
        QVERIFY(file(other));
    }

    void readOnlyIsLeftAlone()
    {
        open(true);
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(m_fixture->write("a.txt"_s, "text"))});
        QCOMPARE(drop(list()->viewport(), {5, 5}, data), Qt::IgnoreAction);
        QDropEvent unasked({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(list()->viewport(), &unasked);
        m_fixture->waitForWorker();
        QCOMPARE(m_fixture->manager()->files().size(), 0);
    }

    void statusTellsSelection()
    {
        open();
        QSignalSpy spy(m_view, &MainFilesView::statusTextChanged);
        QSignalSpy selected(m_view, &MainFilesView::fileSelected);
        const auto last = [&spy] { return spy.isEmpty() ? QString() : spy.last().first().toString(); };
        showAll();
        m_fixture->addExternal("a.txt"_s);
        const qint64 id = m_fixture->addExternal("b.txt"_s);
        select({id});
        QCOMPARE(last(), "2 of 2"_s);
        QCOMPARE(selected.last().first().toLongLong(), id);
        list()->selectAll();
        QCOMPARE(last(), "2 selected"_s);
        m_view->setController(nullptr);
        QCOMPARE(last(), QString());
    }

    void searchIsEndedByNode()
    {
        open();
        const qint64 tagId = m_fixture->tags().addTag("A"_s);
        const qint64 hit = m_fixture->addExternal("Report %1.txt"_s, {tagId});
        m_fixture->addExternal("other.txt"_s, {tagId});
        const Sorter *sorter = m_fixture->mainView().sorter();

        action("fileSearchAction")->setChecked(true);
        m_ui->searchEdit->setText("report %"_s);
        QTest::keyClick(m_ui->searchEdit, Qt::Key_Return);
        QCOMPARE(sorter->rowCount(), 1);
        QCOMPARE(sorter->fileAt(0)->id(), hit);
        QCOMPARE(m_ui->searchEdit->text(), "report %"_s);
        m_fixture->activate(m_fixture->addNode(tagId));
        QCOMPARE(m_ui->searchEdit->text(), QString());
        QCOMPARE(sorter->rowCount(), 2);
    }

    void dropAddsFiles_data()
    {
        addColumns<bool, bool, bool>("onViewport", "asTable", "isNodeCurrent");
        addRow("thumbnails, no node", true, false, false);
        addRow("thumbnails, node", true, false, true);
        addRow("table, node", true, true, true);
        addRow("frame of the view", false, false, true);
    }

    void dropAddsFiles()
    {
        QFETCH(bool, onViewport);
        QFETCH(bool, asTable);
        QFETCH(bool, isNodeCurrent);
        open();
        if (asTable)
            showTable();
        const qint64 tagId = m_fixture->tags().addTag("A"_s);
        const qint64 nodeId = m_fixture->addNode(tagId);
        isNodeCurrent ? m_fixture->activate(nodeId) : showAll();
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(m_fixture->write("it's %1 \u00e4.txt"_s, "text")),
                      QUrl("https://example.org/"_s)});
        QAbstractItemView *view = asTable ? table() : list();
        QWidget *target = onViewport ? view->viewport() : view;
        QCOMPARE(drop(target, {5, 5}, data), Qt::CopyAction);
        m_fixture->waitForWorker();

        QCOMPARE(m_fixture->manager()->files().size(), 2);
        for (const File *added : m_fixture->manager()->files())
            QCOMPARE(added->tags(), isNodeCurrent ? QVector<qint64>{tagId} : QVector<qint64>());
    }

    void contextMenuFitsSelection_data()
    {
        addColumns<QString, QStringList>("kinds", "texts"); // a letter a file: Internal, External, Hyperlink
        const QString open = "Open for Viewing"_s;
        const QString transfer = "Transfer to Internal"_s;
        const QStringList single = {"Show related files"_s, "Properties"_s};
        addRow("nothing", QString(), QStringList());
        addRow("internal", "I"_s, QStringList{"Delete File"_s} + single);
        addRow("external", "E"_s,
               QStringList{open, "Show in Explorer"_s, transfer, "Delete Link"_s} + single);
        addRow("hyperlink", "H"_s, QStringList{open, "Delete Link"_s} + single);
        addRow("two external", "EE"_s, QStringList{transfer, "Delete Links"_s});
        addRow("internal and external", "IE"_s, QStringList{"Delete Items"_s});
    }

    void contextMenuFitsSelection()
    {
        QFETCH(QString, kinds);
        open();
        QVector<qint64> ids;
        for (int i = 0; i < kinds.size(); ++i) {
            AddingSettings::setLinkToFiles(kinds.at(i) == QLatin1Char('E'));
            if (kinds.at(i) == QLatin1Char('H'))
                ids << m_fixture->add(QUrl("https://example.org/%1"_s.arg(i)));
            else
                ids << m_fixture->addExternal("%1.txt"_s.arg(i));
        }
        showAll();
        select(ids);
        QTEST(menuTexts([this] { m_view->openContextMenu({5, 5}); }), "texts");
    }

    void doubleClickOpensUnlessEditing()
    {
        open();
        const qint64 linkId = m_fixture->add(QUrl("https://example.org/a.txt"_s));
        AddingSettings::setLinkToFiles(false);
        m_fixture->addExternal("inside.txt"_s);
        showAll();
        const Sorter *model = m_fixture->mainView().sorter();
        emit list()->doubleClicked(model->index(1, 0));
        QVERIFY(m_opened.isEmpty());
        emit list()->doubleClicked(model->index(0, 0));
        QCOMPARE(m_opened, QList<QUrl>{QUrl(file(linkId)->name())});
        m_ui->editMode->setChecked(true);
        emit list()->doubleClicked(model->index(0, 0));
        QCOMPARE(m_opened.size(), 1);
    }

    void editorKeys_data()
    {
        addColumns<bool, QString, int, QString>("asTable", "typed", "end", "name");
        const QString after = "new"_s;
        addRow("return takes it", true, after, int(Qt::Key_Return), after);
        addRow("esc leaves it", true, after, int(Qt::Key_Escape), before);
        addRow("quotes vanish", true, "\"n\"e\"w\""_s, int(Qt::Key_Return), after);
        addRow("empty is refused", true, " "_s, int(Qt::Key_Return), before);
        addRow("thumbnail", false, after, int(Qt::Key_Return), after);
        addRow("untouched thumbnail", false, QString(), int(Qt::Key_Return), before);
    }

    void editorKeys()
    {
        QFETCH(bool, asTable);
        QFETCH(QString, typed);
        QFETCH(int, end);
        QFETCH(QString, name);
        open();
        if (asTable)
            showTable();
        QAbstractItemView *view = asTable ? table() : list();
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
    }

    void selectionOutlivesReload()
    {
        open();
        m_fixture->addFiles(4);
        showAll();
        const QVector<qint64> chosen = {1, 2, 4};
        select(chosen);
        m_fixture->manager()->reloadAllData();
        QVector<qint64> selected;
        for (const QModelIndex &index : table()->selectionModel()->selectedRows())
            selected << index.data(Qt::UserRole + 2).toLongLong();
        QCOMPARE(selected, chosen);
        QCOMPARE(list()->currentIndex().data(Qt::UserRole + 2).toLongLong(), 4);
        QVERIFY(action("deleteFilesAction")->isEnabled());
    }

    void headerComesBack()
    {
        open();
        QHeaderView *header = m_view->findChild<TableView *>()->horizontalHeader();
        QCOMPARE(header->sectionSize(ContentsModel::NameColumn), 250);
        m_fixture->addExternal("b"_s);
        m_fixture->addExternal("a"_s);
        showAll();
        header->resizeSection(ContentsModel::NameColumn, 321);
        header->moveSection(7, 2);
        header->setSortIndicator(ContentsModel::NameColumn, Qt::AscendingOrder);
        QCOMPARE(m_fixture->mainView().sorter()->fileAt(0)->name(), "a"_s);

        m_view->setController(nullptr);
        m_view->setController(&m_fixture->mainView());
        QCOMPARE(header->sectionSize(ContentsModel::NameColumn), 321);
        QCOMPARE(header->visualIndex(7), 2);
        QCOMPARE(m_fixture->mainView().sorter()->fileAt(0)->name(), "a"_s);
    }

private:
    void open(bool isReadOnly = false)
    {
        m_fixture = std::make_unique<LocalCollection>();
        if (isReadOnly)
            m_fixture->reopenReadOnly();
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

    QAction *action(const char *name) const { return m_window->findChild<QAction *>(QLatin1String(name)); }
    QAbstractItemView *list() const { return m_view->findChild<ListView *>(); }
    QAbstractItemView *table() const { return m_view->findChild<TableView *>(); }
    void showTable() { action("listAction")->setChecked(true); }
    void showAll() { m_fixture->mainView().showSpecialNode(AllFiles); }

    void select(const QVector<qint64> &ids)
    {
        const Sorter *sorter = m_fixture->mainView().sorter();
        QItemSelectionModel *selection = list()->selectionModel();
        selection->clearSelection();
        for (int row = 0; row < sorter->rowCount(); ++row) {
            if (ids.contains(sorter->fileAt(row)->id()))
                selection->setCurrentIndex(sorter->index(row, 0),
                                           QItemSelectionModel::Select | QItemSelectionModel::Rows);
        }
    }

    const File *file(qint64 id) { return m_fixture->file(id); }

    std::unique_ptr<LocalCollection> m_fixture;
    std::unique_ptr<QMainWindow> m_window;
    std::unique_ptr<MainUi> m_ui;
    MainFilesView *m_view = nullptr;
    QList<QUrl> m_opened;
};

QTEST_MAIN(TestMainFilesView)
#include "tst_mainfilesview.moc"
