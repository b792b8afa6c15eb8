#include "ui/views/mainfilesview.h"

#include "app/settings/windowsettings.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/collection.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/records/file.h"
#include "models/base/modelroles.h"
#include "models/contents/contentsmodel.h"
#include "models/contents/filefiltermodel.h"
#include "models/contents/sorter.h"
#include "ui/dialogs/multiplefileconflicthandler.h"
#include "ui/preview/previews.h"
#include "ui/views/fileactions.h"
#include "ui/views/listview.h"
#include "ui/views/selectedfiles.h"
#include "ui/views/titlewidget.h"
#include "ui/widgets/delegate.h"
#include "ui/widgets/mainui.h"
#include "ui/widgets/tableview.h"

#include <QAction>
#include <QDateTime>
#include <QHeaderView>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QSet>
#include <QStackedWidget>
#include <QToolBar>
#include <QVBoxLayout>

namespace {

constexpr int tablePictureSide = 40;
constexpr int tableRowHeight = 48;
constexpr int nameColumnWidth = 250;
constexpr int columnMargin = 24;

// A view makes a selection model with each model and leaves the one before to us.
void giveModel(QAbstractItemView *view, QAbstractItemModel *model)
{
    QItemSelectionModel *before = view->selectionModel();
    view->setModel(model);
    delete before;
}

} // namespace

MainFilesView::MainFilesView(QWidget *parent)
    : QWidget(parent),
      m_title(new TitleWidget(this)),
      m_stack(new QStackedWidget(this)),
      m_listView(new ListView(m_stack)),
      m_tableView(new TableView(m_stack)),
      m_actions(new FileActions(this)),
      m_previews(new Previews(this))
{
    setObjectName(QStringLiteral("MainFilesView"));
    makeViews();
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_title);
    layout->addWidget(m_stack, 1);
    connectActions();
    connect(m_previews, &Previews::showingFile, this, &MainFilesView::moveToFile);
    setController(nullptr);
}

MainFilesView::~MainFilesView()
{
    closePreviews();
    detachModel();
}

void MainFilesView::makeViews()
{
    m_listView->setObjectName(QStringLiteral("ListView"));
    m_tableView->setObjectName(QStringLiteral("TableView"));
    m_listView->setAccessibleName(tr("Files as thumbnails"));
    m_tableView->setAccessibleName(tr("Files as a table"));
    const auto nameAt = [this](int row) { return m_controller->sorter()->fileAt(row)->name(); };
    m_listView->setNames(nameAt);
    m_tableView->setNames(nameAt);
    const auto dragDataOf = [this](const QItemSelection &ranges) {
        return m_controller ? m_controller->sorter()->dragData(ranges) : nullptr;
    };
    m_listView->setDragData(dragDataOf);
    m_tableView->setDragData(dragDataOf);

    m_tableView->setIconSize({tablePictureSide, tablePictureSide});
    m_tableView->verticalHeader()->setDefaultSectionSize(tableRowHeight);
    m_tableView->setAlternatingRowColors(true);
    m_tableView->horizontalHeader()->setSectionsMovable(true);

    auto *delegate = new Delegate(this);
    delegate->setPictureColumn(ContentsModel::ThumbnailColumn);
    delegate->setIdRole(ContentsRoles::FileId);
    for (QAbstractItemView *view :
         {static_cast<QAbstractItemView *>(m_listView), static_cast<QAbstractItemView *>(m_tableView)}) {
        view->setItemDelegate(delegate);
        setUpView(view);
    }
}

void MainFilesView::setUpView(QAbstractItemView *view)
{
    m_stack->addWidget(view);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(view, &QWidget::customContextMenuRequested, this, &MainFilesView::openContextMenu);
    connect(view, &QAbstractItemView::doubleClicked, this, &MainFilesView::openOrEdit);
    // Drags arrive at the viewport, keys at the view.
    view->installEventFilter(this);
    view->viewport()->installEventFilter(this);
}

void MainFilesView::connectActions()
{
    const auto onTriggered = [this](FileActions::Key key, void (MainFilesView::*slot)()) {
        connect(m_actions->action(key), &QAction::triggered, this, slot);
    };
    onTriggered(FileActions::AddFiles, &MainFilesView::addFiles);
    onTriggered(FileActions::AddHyperlink, &MainFilesView::addHyperlinks);
    onTriggered(FileActions::TransferToInternal, &MainFilesView::transferToInternal);
    onTriggered(FileActions::ExtractFiles, &MainFilesView::extractFiles);
    onTriggered(FileActions::ExtractFromContext, &MainFilesView::extractFiles);
    onTriggered(FileActions::FileTags, &MainFilesView::openFileTagsEditor);
    onTriggered(FileActions::BrowsingTreeTags, &MainFilesView::openBrowsTagsEditor);
    onTriggered(FileActions::RemoveFromNode, &MainFilesView::deleteSelectedItemsFromNode);
    onTriggered(FileActions::Delete, &MainFilesView::deleteSelectedItems);
    onTriggered(FileActions::OpenExternally, &MainFilesView::openFileExternally);
    onTriggered(FileActions::ShowInFileManager, &MainFilesView::openFileManager);
    onTriggered(FileActions::DeleteFromContext, &MainFilesView::deleteSelectedItems);
    onTriggered(FileActions::Properties, &MainFilesView::showFileProperties);
    onTriggered(FileActions::ShowRelated, &MainFilesView::showRelatedFiles);
    connect(m_actions->action(FileActions::Thumbnails), &QAction::toggled, this,
            &MainFilesView::iconViewSelected);
}

void MainFilesView::takePlaces(MainUi &ui)
{
    m_actions->takePlaces(ui);
    m_searchEdit = ui.searchEdit;
    connect(ui.searchEdit, &QLineEdit::returnPressed, this, &MainFilesView::searchFile);
    ui.searchEdit->installEventFilter(this);
    // Else the last search would go on where nobody sees it.
    connect(ui.searchEdit, &QLineEdit::textChanged, this, [this](const QString &text) {
        if (text.isEmpty() && isSearched())
            searchFile();
    });
    for (const QAction *shown :
         {m_actions->action(FileActions::FileSearch), ui.searchFilesBar->toggleViewAction()})
        connect(shown, &QAction::toggled, this, &MainFilesView::endHiddenSearch);
    connect(ui.linkTagsToFiles, &QAction::triggered, this, &MainFilesView::linkTagsToFiles);
    connect(ui.fileMenu, &QMenu::aboutToShow, this, &MainFilesView::updateActionsAvailability);
    connect(ui.editMode, &QAction::toggled, this, &MainFilesView::changeEditMode);
    changeEditMode(ui.editMode->isChecked());
    iconViewSelected(m_actions->action(FileActions::Thumbnails)->isChecked());
    updateActionsAvailability();
}

QWidget *MainFilesView::savePreviews()
{
    return m_previews->saveWaiting();
}

void MainFilesView::closePreviews()
{
    m_previews->closeAll();
}

void MainFilesView::setController(MainViewController *controller)
{
    closePreviews();
    detachModel();
    if (m_controller) {
        m_controller->disconnect(this);
        m_controller->setFileConflictAsker({});
        m_controller->collection()->browsTreeController()->disconnect(this);
        m_controller->collection()->disconnect(this);
    }
    m_controller = controller;
    m_title->setController(controller);
    m_title->setEnabled(controller);
    m_stack->setEnabled(controller);
    if (m_searchEdit)
        m_searchEdit->clear();
    if (controller) {
        connect(controller, &MainViewController::tagRequirementsChanged, this,
                &MainFilesView::followRequirements);
        controller->setFileConflictAsker([this](const QString &folder, const auto &conflicts) {
            MultipleFileConflictHandler dialog(folder, conflicts, this);
            return dialog.exec() == QDialog::Accepted ? std::make_optional(dialog.choices()) : std::nullopt;
        });
        // A node becomes the current one only after its files are shown.
        connect(controller->collection()->browsTreeController(), &BrowsTreeController::currentNodeChanged,
                this, &MainFilesView::updateActionsAvailability);
        const Collection *collection = controller->collection();
        connect(collection, &Collection::aboutToReloadAllData, this, &MainFilesView::keepSelection);
        connect(collection, &Collection::allDataReloaded, this, &MainFilesView::restoreSelection);
        attachModel();
    }
    applyEditTriggers();
    updateEmptyText();
    updateActionsAvailability();
    emit statusTextChanged(QString());
}

void MainFilesView::attachModel()
{
    m_tableView->setSortingEnabled(false);
    giveModel(m_listView, m_controller->sorter());
    giveModel(m_tableView, m_controller->sorter());
    QItemSelectionModel *ofTable = m_tableView->selectionModel();
    m_tableView->setSelectionModel(m_listView->selectionModel());
    delete ofTable;
    // Sorts by what the header brings back, which is cheap: no file is shown yet.
    restoreHeader();
    m_tableView->setSortingEnabled(true);
    connectModel();
}

void MainFilesView::connectModel()
{
    connect(selection(), &QItemSelectionModel::selectionChanged, this, &MainFilesView::fileSelectionChanged);
    connect(selection(), &QItemSelectionModel::currentRowChanged, this, &MainFilesView::updateStatusText);
    const QAbstractItemModel *model = m_controller->sorter();
    connect(model, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex &first, const QModelIndex &last, const QVector<int> &roles) {
                // Most news are pictures, on which no command depends.
                if (roles != QVector<int>{Qt::DecorationRole})
                    fileDataChanged(first, last);
            });
    connect(model, &QAbstractItemModel::modelReset, this, &MainFilesView::updateStatusText);
    connect(model, &QAbstractItemModel::rowsInserted, this, &MainFilesView::updateStatusText);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &MainFilesView::updateStatusText);
    connect(model, &QAbstractItemModel::layoutChanged, this, &MainFilesView::updateStatusText);
    // Both may take the selection away without a word about it.
    connect(model, &QAbstractItemModel::modelReset, this, &MainFilesView::tellLostSelection);
    connect(model, &QAbstractItemModel::layoutChanged, this, &MainFilesView::tellLostSelection);
}

void MainFilesView::detachModel()
{
    if (!m_controller || !m_listView->model())
        return;
    saveHeader();
    m_controller->sorter()->disconnect(this);
    QItemSelectionModel *shared = selection();
    shared->disconnect(this);
    // The table must not lose the shared selection model while it still shows the model.
    m_tableView->setModel(nullptr);
    m_listView->setModel(nullptr);
    delete shared;
    emit fileSelected(0);
}

void MainFilesView::restoreHeader()
{
    QHeaderView *header = m_tableView->horizontalHeader();
    const QByteArray state = WindowSettings::layout(WindowSettings::fileTableHeader);
    if (state.isEmpty() || !header->restoreState(state)) {
        header->setSortIndicator(-1, Qt::AscendingOrder);
        header->resizeSection(ContentsModel::NameColumn, nameColumnWidth);
        const QDateTime longDate({2000, 12, 28}, {22, 58, 58});
        const QString text = QLocale().toString(longDate, QLocale::ShortFormat);
        const int width = m_tableView->fontMetrics().horizontalAdvance(text) + columnMargin;
        header->resizeSection(ContentsModel::ModificationDateColumn, width);
        header->resizeSection(ContentsModel::AdditionDateColumn, width);
    }
    header->setSectionsMovable(true);
}

void MainFilesView::saveHeader()
{
    WindowSettings::setLayout(WindowSettings::fileTableHeader, m_tableView->horizontalHeader()->saveState());
}

void MainFilesView::iconViewSelected(bool on)
{
    m_stack->setCurrentWidget(on ? static_cast<QWidget *>(m_listView) : m_tableView);
    WindowSettings::setShowIconView(on);
}

void MainFilesView::changeEditMode(bool on)
{
    m_isEditMode = on;
    applyEditTriggers();
}

void MainFilesView::applyEditTriggers()
{
    // In a read-only database an editor would only open to have its text refused.
    const bool isEditable = m_isEditMode && isWritable();
    for (QAbstractItemView *view :
         {static_cast<QAbstractItemView *>(m_listView), static_cast<QAbstractItemView *>(m_tableView)}) {
        view->setEditTriggers(isEditable ? view->editTriggers() | QAbstractItemView::DoubleClicked |
                                               QAbstractItemView::EditKeyPressed
                                         : QAbstractItemView::NoEditTriggers);
    }
}

void MainFilesView::openOrEdit(const QModelIndex &index)
{
    if (!m_isEditMode)
        openFile(index);
    else
        mayEdit(m_controller);
}

void MainFilesView::moveToFile(qint64 fileId)
{
    if (!m_controller)
        return;
    const QModelIndex index = m_controller->sorter()->indexOf(fileId);
    if (!index.isValid())
        return;
    const int column = currentView()->currentIndex().column();
    currentView()->setCurrentIndex(index.sibling(index.row(), qMax(int(ContentsModel::NameColumn), column)));
}

QAbstractItemView *MainFilesView::currentView() const
{
    return static_cast<QAbstractItemView *>(m_stack->currentWidget());
}

QItemSelectionModel *MainFilesView::selection() const
{
    return m_listView->selectionModel();
}

bool MainFilesView::isWritable() const
{
    return m_controller && !m_controller->isReadOnly();
}

const File *MainFilesView::fileAt(const QModelIndex &index) const
{
    return m_controller && index.isValid() ? m_controller->sorter()->fileAt(index.row()) : nullptr;
}

SelectedFiles MainFilesView::selectedFiles() const
{
    return m_controller ? SelectedFiles(selection(), m_controller->sorter())
                        : SelectedFiles(nullptr, nullptr);
}

qint64 MainFilesView::nodeToRemoveFrom() const
{
    if (!m_controller)
        return 0;
    const BrowsTreeController *tree = m_controller->collection()->browsTreeController();
    const qint64 nodeId = tree->currentTagNodeId();
    const TBnode *node = nodeId > 0 ? tree->nodeById(nodeId) : nullptr;
    // The files of an inverted node do not have its tag.
    return node && !node->isInverted() ? nodeId : 0;
}

void MainFilesView::updateActionsAvailability()
{
    const SelectedFiles files = selectedFiles();
    m_actions->updateAvailability(
        {isWritable(), !files.isEmpty(), files.areAllInternal(), files.hasHyperlink(), nodeToRemoveFrom()});
}

void MainFilesView::updateStatusText()
{
    if (!m_controller || !selection() || !currentView()->model())
        return;
    const int total = currentView()->model()->rowCount();
    const int count = selectedFiles().count();
    const QModelIndex current = currentView()->currentIndex();
    if (count == 1 && current.isValid())
        emit statusTextChanged(
            tr("%1 of %2").arg(QString::number(current.row() + 1), QString::number(total)));
    else if (count > 1)
        emit statusTextChanged(tr("%1 selected").arg(count));
    else
        emit statusTextChanged(total == 1 ? tr("1 file") : tr("%1 files").arg(total));
}

void MainFilesView::updateEmptyText()
{
    QString text;
    if (!m_controller)
        text = tr("No database is open.\nOpen one or make a new one in the Database menu.");
    else if (m_controller->filterModel()->nodeType() == NodeType(0))
        text = m_controller->isReadOnly() ? tr("Choose a browsing node or tags to see their files.\n"
                                               "Nothing can be changed: this database is read-only.")
                                          : tr("Choose a browsing node or tags to see their files.\n"
                                               "Drop files or folders here to add them.");
    else if (isSearched())
        text = tr("No file matches the search.");
    else
        text = tr("No files here.");
    m_listView->setEmptyText(text);
    m_tableView->setEmptyText(text);
}

void MainFilesView::followRequirements()
{
    // A search tells of its own new requirement, too; any other ends the search.
    if (!m_isSearching && m_searchEdit)
        m_searchEdit->clear();
    m_listView->scrollToTop();
    m_tableView->scrollToTop();
    updateEmptyText();
    updateActionsAvailability();
}

void MainFilesView::tellLostSelection()
{
    if (!selectedFiles().isEmpty())
        return;
    emit fileSelected(0);
    updateActionsAvailability();
}

void MainFilesView::keepSelection()
{
    const File *current = fileAt(currentView()->currentIndex());
    m_keptCurrentId = current ? current->id() : 0;
    m_keptIds = selectedFiles().ids();
}

void MainFilesView::restoreSelection()
{
    const QSet<qint64> wanted(m_keptIds.begin(), m_keptIds.end());
    const Sorter *sorter = m_controller->sorter();
    const int lastColumn = sorter->columnCount() - 1;
    QItemSelection selected;
    QModelIndex current;
    for (int row = 0; row < sorter->rowCount() && !(wanted.isEmpty() && m_keptCurrentId == 0); ++row) {
        const qint64 fileId = sorter->fileAt(row)->id();
        if (fileId == m_keptCurrentId)
            current = sorter->index(row, 0);
        if (!wanted.contains(fileId))
            continue;
        // A range a run of rows: a selection of many single ranges would be slow.
        if (!selected.isEmpty() && selected.last().bottom() == row - 1)
            selected.last() = QItemSelectionRange(selected.last().topLeft(), sorter->index(row, lastColumn));
        else
            selected.append(QItemSelectionRange(sorter->index(row, 0), sorter->index(row, lastColumn)));
    }
    selection()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    selection()->select(selected, QItemSelectionModel::ClearAndSelect);
    m_keptIds.clear();
}

void MainFilesView::fileSelectionChanged(const QItemSelection &selected)
{
    // Where others only left the selection, the one that was told of last may be among them.
    const QItemSelection told = selected.isEmpty() ? selection()->selection() : selected;
    const File *file = told.isEmpty() ? nullptr : fileAt(told.first().topLeft());
    if (file)
        emit fileSelected(file->id());
    else if (selectedFiles().isEmpty())
        emit fileSelected(0);
    updateActionsAvailability();
    updateStatusText();
}

void MainFilesView::fileDataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight)
{
    if (selectedFiles().intersectsRows(topLeft.row(), bottomRight.row()))
        updateActionsAvailability();
}
