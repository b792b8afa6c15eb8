#include "app/settings/windowsettings.h"
#include "models/contents/contentsmodel.h"
#include "models/contents/filefiltermodel.h"
#include "tests/support/dialoganswers.h"
#include "tests/support/drags.h"
#include "tests/support/filesviewtest.h"
#include "ui/views/filesearch.h"
#include "ui/widgets/speciallineedit.h"
#include "ui/widgets/tableview.h"

#include <QAction>
#include <QApplication>
#include <QHeaderView>
#include <QListView>
#include <QMenu>
#include <QSlider>
#include <QStatusBar>
#include <QToolBar>
#include <QUrl>

#include <functional>

const QString before = "https://example.org/a/name/too/long/to/be/shown/in/full"_s;

/** The main view in a window on a real database: commands, keys, drops, texts and editing in place. */
class TestMainFilesView : public FilesViewTest
{
    Q_OBJECT

private slots:
    void init() { openView(); }
    void cleanup() { closeView(); }

    void commandsFollowState_data()
    {
        addColumns<bool, QString>("isReadOnly", "enabled");
        addRow("writable", false,
               "addFilesAction addHyperlinkAction deleteFilesAction fileTagsAction extractFilesAction"_s);
        addRow("read-only", true, "deleteFilesAction extractFilesAction"_s);
    }

    void commandsFollowState()
    {
        QFETCH(bool, isReadOnly);
        QFETCH(QString, enabled);
        m_fixture->addExternal("a.txt"_s);
        if (isReadOnly) {
            m_view->setController(nullptr);
            m_fixture->reopenReadOnly();
            m_view->setController(&m_fixture->mainView());
        }
        QCOMPARE(m_ui->fileMenu->menuAction()->isEnabled(), !isReadOnly);
        QVERIFY(!action("deleteFilesAction")->isEnabled());
        showAll();
        list()->selectAll();
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(m_fixture->write("b.txt"_s, "b"))});
        QCOMPARE(drop(list()->viewport(), {5, 5}, data), isReadOnly ? Qt::IgnoreAction : Qt::CopyAction);
        QDropEvent unasked({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(list(), &unasked);
        m_fixture->waitForWorker();
        QCOMPARE(m_fixture->manager()->files().size(), isReadOnly ? 1 : 2);
        for (int round = 0; round < 2; ++round) {
            for (const char *name :
                 {"addFilesAction", "addHyperlinkAction", "removeFromNodeAction", "deleteFilesAction",
                  "fileTagsAction", "transferToInternalAction", "extractFilesAction"})
                QVERIFY2(action(name)->isEnabled() == enabled.contains(QLatin1String(name)), name);
            m_view->setController(nullptr);
            enabled.clear();
        }
    }

    void deleteKeyUnlinksTagOfNode_data()
    {
        addColumns<bool, bool, bool>("isNodeCurrent", "isInverted", "isAtTop");
        addRow("tag node", true, false, false);
        addRow("first node of the database", true, false, true);
        addRow("inverted node", true, true, false);
        addRow("all files", false, false, false);
    }

    void deleteKeyUnlinksTagOfNode()
    {
        QFETCH(bool, isNodeCurrent);
        QFETCH(bool, isInverted);
        QFETCH(bool, isAtTop);
        const bool isUnlinked = isNodeCurrent && !isInverted;
        const QVector<qint64> tags = m_fixture->addTags({"A"_s, "B"_s});
        const qint64 id = m_fixture->addExternal("a.txt"_s, isInverted ? tags.mid(1) : tags);
        const qint64 parentId = isAtTop ? 0 : m_fixture->addNode(tags.at(1));
        const qint64 nodeId = m_fixture->manager()->addNodeBelow(tags.at(0), parentId);
        m_fixture->tree().changeInversion(nodeId, isInverted);
        showAll();
        list()->selectAll(); // which stays so when the node is clicked
        if (isNodeCurrent)
            m_fixture->activate(nodeId);
        QCOMPARE(action("removeFromNodeAction")->isEnabled(), isUnlinked);

        QTest::keyClick(list(), Qt::Key_Delete);
        QCOMPARE(file(id)->hasTag(tags.at(0)), !isUnlinked && !isInverted);
        QVERIFY(file(id)->hasTag(tags.at(1)));
    }

    void shiftDeleteAsks_data()
    {
        addColumns<QString, bool, QString>("kinds", "isAgreed", "noun");
        addRow("two links, refused", "EE"_s, false, "links"_s);
        addRow("mixed", "EH"_s, true, "files"_s);
    }

    void shiftDeleteAsks()
    {
        QFETCH(bool, isAgreed);
        QFETCH(QString, noun);
        QFETCH(QString, kinds);
        const qint64 other = m_fixture->addExternal("other.txt"_s);
        const QVector<qint64> ids = addKinds(kinds);
        select(ids);
        m_fixture->answerBoxesWith(isAgreed ? QMessageBox::Ok : QMessageBox::Cancel);

        QTest::keyClick(list(), Qt::Key_Delete, Qt::ShiftModifier);
        m_fixture->waitForWorker();
        QCOMPARE(m_fixture->takeBoxes(),
                 QStringList{"Do you really want to delete the selected %1?"_s.arg(noun)});
        for (qint64 id : ids)
            QCOMPARE(file(id) == nullptr, isAgreed);
        QVERIFY(file(other));
    }

    void searchIsEndedByNode()
    {
        const qint64 tagId = m_fixture->tags().addTag("A"_s);
        const qint64 hit = m_fixture->addExternal("Report %1.txt"_s, {tagId});
        m_fixture->addExternal("other.txt"_s);
        const Sorter *sorter = m_fixture->mainView().sorter();

        action("fileSearchAction")->setChecked(true);
        m_ui->searchEdit->setText("report %"_s);
        for (int files : {1, 2}) {
            QTest::keyClick(m_ui->searchEdit, Qt::Key_Return);
            QCOMPARE(sorter->rowCount(), files);
            QCOMPARE(sorter->fileAt(0)->id(), hit);
            QCOMPARE(m_ui->searchEdit->text().isEmpty(), files == 2);
            m_fixture->activate(m_fixture->addNode(tagId));
            QCOMPARE(m_ui->searchEdit->text(), QString());
        }
    }

    void searchFollowsTheTyping()
    {
        m_fixture->addExternal("Report.txt"_s);
        const qint64 tagId = m_fixture->tags().addTag("A"_s);
        const qint64 tagged = m_fixture->addExternal("other.txt"_s, {tagId});
        const Sorter *sorter = m_fixture->mainView().sorter();
        showAll();
        const auto isMarked = [this] {
            const QImage image = list()->grab().toImage();
            for (int i = 0; i < image.width() * image.height(); ++i) {
                if (image.pixelColor(i % image.width(), i / image.width()) == QColor("#ffd966"))
                    return true;
            }
            return false;
        };

        auto *search = m_view->findChild<FileSearch *>();
        search->find();
        QVERIFY(action("fileSearchAction")->isChecked());
        QTest::keyClicks(m_ui->searchEdit, "rep"_s);
        QCOMPARE(sorter->rowCount(), 2);
        QTRY_COMPARE(sorter->rowCount(), 1);
        // What is typed next takes its place.
        search->find();
        QTest::keyClicks(m_ui->searchEdit, "txt"_s);
        QTRY_COMPARE(sorter->filterText(), "txt"_s);
        QCOMPARE(sorter->rowCount(), 2);
        QVERIFY(isMarked());
        // A node that is chosen before the rest is over ends the search.
        QTest::keyClicks(m_ui->searchEdit, "x"_s);
        m_fixture->activate(m_fixture->addNode(tagId));
        QSignalSpy searches(search, &FileSearch::searched);
        QVERIFY(!searches.wait(300));
        QCOMPARE(sorter->fileAt(0)->id(), tagged);
        QVERIFY(!isMarked());
    }

    void sortingStaysWithTheDatabase()
    {
        for (const char *name : {"b.txt", "c.txt", "a.txt"})
            m_fixture->addExternal(QLatin1String(name));
        const auto shown = [this] {
            showAll();
            QStringList names;
            for (int row = 0; row < 3; ++row)
                names.append(m_fixture->mainView().sorter()->fileAt(row)->name().left(1));
            return names.join(QString());
        };
        const auto comeAgain = [this] {
            m_view->setController(nullptr);
            m_view->setController(&m_fixture->mainView());
        };
        auto *menu = m_ui->viewMenu->findChild<QMenu *>("sortMenu"_s);
        const auto choose = [menu](const QString &text) {
            emit menu->aboutToShow();
            for (QAction *action : menu->actions()) {
                if (action->text() == text && action->isEnabled())
                    action->trigger();
            }
        };
        // Nobody has chosen: by name.
        WindowSettings::setLayout(WindowSettings::fileTableHeader, {});
        comeAgain();
        QCOMPARE(shown(), "abc"_s);
        choose("Descending"_s);
        QCOMPARE(shown(), "cba"_s);
        comeAgain();
        QCOMPARE(shown(), "cba"_s);
        choose("As Added"_s);
        QCOMPARE(shown(), "bca"_s);
        // What the table was sorted by elsewhere does not count here.
        m_view->setController(nullptr);
        QHeaderView *header = m_view->findChild<TableView *>()->horizontalHeader();
        header->setSortIndicator(ContentsModel::NameColumn, Qt::AscendingOrder);
        comeAgain();
        QCOMPARE(shown(), "bca"_s);
        choose("Descending"_s); // not offered without a column
        QCOMPARE(shown(), "bca"_s);
    }

    void thumbnailsHaveTheSizeOfTheSlider()
    {
        m_fixture->addExternal("a.txt"_s);
        showAll();
        auto *slider = m_ui->statusBar->findChild<QSlider *>("thumbnailSlider"_s);
        auto *thumbnails = qobject_cast<QListView *>(list());
        for (int side : {256, 64, 128}) {
            slider->setValue(side);
            QCOMPARE(thumbnails->iconSize(), QSize(side, side));
            QVERIFY(thumbnails->gridSize().width() < side + 48);
            QCOMPARE(WindowSettings::thumbnailSide(), side);
        }
        action("listAction")->setChecked(true);
        QVERIFY(slider->isHidden());
        action("thumbnailsAction")->setChecked(true);
        QVERIFY(!slider->isHidden());
    }

    void columnsCanBeHiddenButTheName()
    {
        QHeaderView *header = m_view->findChild<TableView *>()->horizontalHeader();
        auto *menu = m_view->findChild<QMenu *>("columnMenu"_s);
        emit menu->aboutToShow();
        for (QAction *action : menu->actions()) {
            if (action->isEnabled())
                action->trigger();
        }
        QCOMPARE(header->count() - header->hiddenSectionCount(), 1);
        QVERIFY(!header->isSectionHidden(ContentsModel::NameColumn));
        m_view->setController(nullptr);
        m_view->setController(&m_fixture->mainView());
        QCOMPARE(header->count() - header->hiddenSectionCount(), 1);
        emit menu->aboutToShow();
        menu->actions().at(0)->trigger();
        QVERIFY(header->sectionSize(ContentsModel::ThumbnailColumn) > 0);
    }

    void dragsCarryTheSelectedFilesInTheirOrder()
    {
        QVector<qint64> ids;
        for (const char *name : {"c.txt", "a.txt", "d.txt", "b.txt"})
            ids.append(m_fixture->addExternal(QLatin1String(name)));
        showAll();
        Sorter *sorter = m_fixture->mainView().sorter();
        sorter->sort(ContentsModel::NameColumn);
        QItemSelection ranges(sorter->index(0, 0), sorter->index(1, 9));
        ranges.append(QItemSelectionRange(sorter->index(3, 0), sorter->index(3, 9)));
        const QVector<qint64> wanted{ids.at(1), ids.at(3), ids.at(2)};
        const std::unique_ptr<QMimeData> byRanges(sorter->dragData(ranges));
        QCOMPARE(IdListMime::unpack(byRanges.get(), Constants::fileMimeType), wanted);
        // The same from a list of cells, each file once.
        const std::unique_ptr<QMimeData> byCells(sorter->mimeData(ranges.indexes()));
        QCOMPARE(IdListMime::unpack(byCells.get(), Constants::fileMimeType), wanted);
        QCOMPARE(byRanges->urls().size(), 3);
        QCOMPARE(sorter->dragData({}), nullptr);
    }

    void emptiedOrHiddenSearchEnds_data()
    {
        addColumns<bool>("asTable");
        addRow("thumbnails", false);
        addRow("table", true);
    }

    void emptiedOrHiddenSearchEnds()
    {
        QFETCH(bool, asTable);
        action(asTable ? "listAction" : "thumbnailsAction")->setChecked(true);
        QAbstractItemView *view = asTable ? table() : list();
        constexpr int others = 24;
        for (int i = 0; i < others; ++i)
            m_fixture->addExternal(QString::number(i));
        m_fixture->addExternal("Report.txt"_s);
        const Sorter *sorter = m_fixture->mainView().sorter();
        qobject_cast<QListView *>(list())->setBatchSize(5); // so that the last one has no place at first
        const std::vector<std::function<void()>> ways{
            [this] { QTest::keyClick(m_ui->searchEdit, Qt::Key_Escape); },
            [this] { m_ui->searchEdit->clear(); },
            [this] { action("fileSearchAction")->setChecked(false); },
            [this] { m_ui->searchFilesBar->toggleViewAction()->trigger(); },
        };
        for (const auto &end : ways) {
            action("fileSearchAction")->setChecked(true);
            m_ui->searchEdit->setText("report"_s);
            QTest::keyClick(m_ui->searchEdit, Qt::Key_Return);
            QCOMPARE(sorter->rowCount(), 1);
            view->setCurrentIndex(sorter->index(0, ContentsModel::NameColumn));
            m_ui->searchEdit->setFocus();
            end();
            QCOMPARE(m_ui->searchEdit->text(), QString());
            QCOMPARE(sorter->rowCount(), others + 1);
            const QModelIndex shown = view->currentIndex().siblingAtColumn(asTable ? 1 : 0);
            QTRY_VERIFY(view->viewport()->rect().intersects(view->visualRect(shown)));
        }
        m_ui->searchFilesBar->show();
        m_ui->searchEdit->setText("typed"_s);
        action("fileSearchAction")->setChecked(false);
        QCOMPARE(m_ui->searchEdit->text(), "typed"_s); // not searched for yet
    }

    void oneOfManyIsToldOf()
    {
        m_fixture->addExternal("1.txt"_s);
        m_fixture->addExternal("2.txt"_s);
        showAll();
        const Sorter *sorter = m_fixture->mainView().sorter();
        QSignalSpy told(m_view, &MainFilesView::fileSelected);
        for (int row = 0; row < 2; ++row) {
            list()->setCurrentIndex(sorter->index(row, 0));
            list()->selectAll(); // tells of the other one
            list()->setCurrentIndex(sorter->index(row, 0));
            QCOMPARE(told.last().first().toLongLong(), sorter->fileAt(row)->id());
            m_fixture->manager()->reloadAllData();
            QCOMPARE(list()->currentIndex().row(), row);
        }
    }

    void dropAddsFiles()
    {
        const qint64 tagId = m_fixture->tags().addTag("A"_s);
        const auto dropOn = [this](QWidget *target, const QString &name) {
            QMimeData data;
            data.setUrls({QUrl::fromLocalFile(m_fixture->write(name, name.toUtf8())),
                          QUrl("https://example.org/"_s + name)});
            QCOMPARE(drop(target, {5, 5}, data), Qt::CopyAction);
            m_fixture->waitForWorker();
        };
        showAll();
        dropOn(list()->viewport(), "without"_s);
        m_fixture->activate(m_fixture->addNode(tagId));
        for (QAbstractItemView *view : {list(), table()}) {
            dropOn(view, view->objectName());
            dropOn(view->viewport(), view->objectName() + "'s %1 \u00e4"_s);
        }
        QCOMPARE(m_fixture->manager()->files().size(), 10);
        for (const File *added : m_fixture->manager()->files())
            QCOMPARE(added->hasTag(tagId), !added->name().endsWith("without"_s));
    }

    void contextMenuFitsSelection_data()
    {
        addColumns<QString, QStringList>("kinds",
                                         "texts"); // a letter a file: Internal, External, Hyperlink, Missing
        const QString open = "Open for Viewing"_s;
        const QString transfer = "Transfer to Internal"_s;
        const QStringList single = {"Show related files"_s, "Properties"_s, "Add Tags..."_s};
        addRow("nothing", QString(), QStringList());
        const QString extract = "Extract Files"_s;
        const QString exports = "Export"_s;
        addRow("internal", "I"_s, QStringList{open, "Delete File"_s, extract, exports} + single);
        addRow("external", "E"_s,
               QStringList{open, "Show in Explorer"_s, transfer, "Delete Link"_s, extract, exports} + single);
        addRow("hyperlink", "H"_s, QStringList{open, "Delete Link"_s, exports} + single);
        addRow("missing", "M"_s, QStringList({"Locate missing file"_s, "Delete Link"_s}) + single);
        addRow("missing and external", "ME"_s,
               QStringList({"Locate missing files"_s, "Delete Links"_s, "Add Tags..."_s}));
        addRow("two external", "EE"_s,
               QStringList{transfer, "Delete Links"_s, extract, exports, "Add Tags..."_s});
        addRow("internal and external", "IE"_s,
               QStringList{"Delete Items"_s, extract, exports, "Add Tags..."_s});
        addRow("internal and hyperlink", "IH"_s, QStringList{"Delete Links"_s, exports, "Add Tags..."_s});
    }

    void contextMenuFitsSelection()
    {
        QFETCH(QString, kinds);
        select(addKinds(kinds));
        QTEST(menuTexts([this] { m_view->openContextMenu({5, 5}); }), "texts");
        QCOMPARE(action("extractFilesAction")->isEnabled(),
                 !kinds.isEmpty() && !kinds.contains(QLatin1Char('H')));
        m_fixture->manager()->reloadAllData(); // which looks for them anew
        QVERIFY(m_fixture->mainView().missingFileIds().isEmpty());
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
        action("listAction")->setChecked(asTable);
        QAbstractItemView *view = asTable ? table() : list();
        const qint64 id = m_fixture->add(QUrl(before));
        // With the new name it is not found any more.
        m_fixture->mainView().setFileFilterString("in/full"_s);
        m_ui->editMode->setChecked(true);
        const QModelIndex index = m_fixture->mainView().sorter()->index(
            0, asTable ? ContentsModel::NameColumn : ContentsModel::ThumbnailColumn);
        view->setCurrentIndex(index);
        if (asTable) {
            table()->edit(index.siblingAtColumn(ContentsModel::ThumbnailColumn));
            QVERIFY(!view->findChild<SpecialLineEdit *>());
        }
        view->edit(index);
        QPointer<SpecialLineEdit> editor = view->findChild<SpecialLineEdit *>();
        QVERIFY(editor);
        QCOMPARE(editor->text(), before);
        QVERIFY(view->visualRect(index).contains(editor->geometry()));
        editor->setFocus();
        editor->selectAll();
        QTest::keyClicks(editor, typed);
        QTest::keyClick(editor.data(), Qt::Key(end));
        QTRY_VERIFY(!editor);
        QCOMPARE(file(id)->name(), name);
        QVERIFY(!m_view->findChild<TableView *>()->isEditing());
        QVERIFY(!m_view->findChild<ListView *>()->isEditing());
        QCOMPARE(view->window()->focusWidget(), view);
    }

    void headerComesBack()
    {
        addKinds("EE"_s);
        QHeaderView *header = m_view->findChild<TableView *>()->horizontalHeader();
        header->resizeSection(ContentsModel::NameColumn, 321);
        header->moveSection(7, 2);
        header->setSortIndicator(ContentsModel::NameColumn, Qt::DescendingOrder);
        for (int round = 0; round < 2; ++round) {
            QCOMPARE(m_fixture->mainView().sorter()->fileAt(0)->name(), "1.txt"_s);
            QCOMPARE(header->sectionSize(ContentsModel::NameColumn), 321);
            QCOMPARE(header->visualIndex(7), 2);
            m_view->setController(nullptr);
            m_view->setController(&m_fixture->mainView());
        }
    }

private:
    QAction *action(const char *name) const { return m_window->findChild<QAction *>(QLatin1String(name)); }
    QAbstractItemView *table() const { return m_view->findChild<TableView *>(); }

    void select(const QVector<qint64> &ids)
    {
        const Sorter *sorter = m_fixture->mainView().sorter();
        for (int row = 0; row < sorter->rowCount(); ++row) {
            if (ids.contains(sorter->fileAt(row)->id()))
                list()->selectionModel()->setCurrentIndex(
                    sorter->index(row, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
        }
    }
};

QTEST_MAIN(TestMainFilesView)
#include "tst_mainfilesview.moc"
