#include "ui/views/mainfilesview.h"

#include "app/settings/windowsettings.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/collection.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/records/file.h"
#include "models/contents/filefiltermodel.h"
#include "models/contents/sorter.h"
#include "ui/dialogs/multiplefileconflicthandler.h"
#include "ui/preview/previews.h"
#include "ui/tagging/filetagging.h"
#include "ui/tagging/namesline.h"
#include "ui/views/exportmenu.h"
#include "ui/views/fileactions.h"
#include "ui/views/filedrops.h"
#include "ui/views/filesearch.h"
#include "ui/views/filesorting.h"
#include "ui/views/filesteps.h"
#include "ui/views/fileviews.h"
#include "ui/views/keptselection.h"
#include "ui/views/selectedfiles.h"
#include "ui/views/thumbnailsize.h"
#include "ui/views/titlewidget.h"
#include "ui/widgets/mainui.h"

#include <QAction>
#include <QKeyEvent>
#include <QLocale>
#include <QMenu>
#include <QVBoxLayout>

MainFilesView::MainFilesView(QWidget *parent)
    : QWidget(parent),
      m_title(new TitleWidget(this)),
      m_views(new FileViews(this)),
      m_actions(new FileActions(this)),
      m_exports(new ExportMenu([this] { return ExportSelection::ofFiles(selectedFiles().ids()); }, this)),
      m_previews(new Previews(this)),
      m_commands(new FileCommands([this] { return selectedFiles(); }, m_previews, this)),
      m_search(new FileSearch(this)),
      m_sorting(new FileSorting(m_views, this)),
      m_thumbnailSize(new ThumbnailSize(m_views, this)),
      m_drops(new FileDrops(m_commands, this)),
      m_tagging(
          new FileTagging({[this] { return selectedFiles().ids(); }, [this] { return nextFile(); }}, this)),
      m_kept(std::make_unique<KeptSelection>())
{
    setObjectName(QStringLiteral("MainFilesView"));
    connectViews();
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_title);
    layout->addWidget(m_tagging->line());
    layout->addWidget(m_views, 1);
    connectActions();
    connect(m_commands, &FileCommands::statusTextChanged, this, &MainFilesView::statusTextChanged);
    connect(m_search, &FileSearch::searched, this, &MainFilesView::followSearch);
    connect(m_previews, &Previews::showingFile, this, &MainFilesView::moveToFile);
    setController(nullptr);
}

MainFilesView::~MainFilesView()
{
    closePreviews();
    detachModel();
}

void MainFilesView::connectViews()
{
    connect(m_views, &FileViews::contextMenuRequested, this, &MainFilesView::openContextMenu);
    connect(m_views, &FileViews::doubleClicked, this, &MainFilesView::openOrEdit);
    connect(m_views, &FileViews::aboutToShow, this, [this](int count) {
        if (m_controller)
            m_controller->keepThumbnails(count);
    });
    for (QAbstractItemView *view : m_views->all()) {
        view->installEventFilter(this);
        m_drops->watch(view);
        m_exports->watch(view);
    }
}

void MainFilesView::connectActions()
{
    const auto onTriggered = [this](FileActions::Key key, void (MainFilesView::*slot)()) {
        connect(m_actions->action(key), &QAction::triggered, this, slot);
    };
    onTriggered(FileActions::AddFiles, &MainFilesView::addFiles);
    onTriggered(FileActions::AddHyperlink, &MainFilesView::addHyperlinks);
    onTriggered(FileActions::LocateMissingFiles, &MainFilesView::locateMissingFiles);
    onTriggered(FileActions::LocateFromContext, &MainFilesView::locateMissingFiles);
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
    m_actions->setExportMenu(m_exports->menu()->menuAction());
    m_tagging->takePlaces(*ui.fileMenu);
    m_exports->takePlace(ui);
    m_exports->bringEntries();
    m_sorting->takePlace(ui);
    m_thumbnailSize->takePlace(ui);
    ui.viewMenu->addMenu(m_views->columnMenu());
    m_search->takeField(ui, m_actions->action(FileActions::FileSearch));
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

void MainFilesView::readSettings()
{
    m_previews->readSettings();
}

void MainFilesView::closePreviews()
{
    m_previews->closeAll();
}

void MainFilesView::setController(MainViewController *controller)
{
    closePreviews();
    m_sorting->setController(nullptr);
    detachModel();
    if (m_controller) {
        m_controller->disconnect(this);
        m_controller->setFileConflictAsker({});
        m_controller->collection()->browsTreeController()->disconnect(this);
        m_controller->collection()->disconnect(this);
    }
    m_controller = controller;
    m_commands->setController(controller);
    m_title->setController(controller);
    m_title->setEnabled(controller);
    m_views->setEnabled(controller);
    m_drops->setController(controller);
    m_exports->setController(controller);
    m_search->setController(controller);
    m_tagging->setController(controller ? controller->collection()->tagsController() : nullptr);
    if (controller) {
        connect(controller, &MainViewController::tagRequirementsChanged, this,
                &MainFilesView::followRequirements);
        connect(controller, &MainViewController::filesModified, this, &MainFilesView::notifyOfUpdatedFiles);
        connect(controller, &MainViewController::missingFilesChanged, this,
                &MainFilesView::updateActionsAvailability);
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
        m_views->setSorter(controller->sorter());
        connectModel();
    }
    m_sorting->setController(controller);
    applyEditTriggers();
    updateEmptyText();
    updateActionsAvailability();
    emit statusTextChanged(QString());
    emit sizesChanged(QString());
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
    if (!m_controller || !m_views->hasSorter())
        return;
    m_controller->sorter()->disconnect(this);
    selection()->disconnect(this);
    m_views->setSorter(nullptr);
    emit fileSelected(0);
}

void MainFilesView::iconViewSelected(bool on)
{
    m_views->showThumbnails(on);
    m_thumbnailSize->setOffered(on);
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
    m_views->setEditable(m_isEditMode && isWritable());
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
    if (m_controller)
        FileSteps::moveTo(currentView(), *m_controller->sorter(), fileId);
}

std::function<void()> MainFilesView::nextFile()
{
    const qint64 id = m_controller ? FileSteps::idBehind(selection(), *m_controller->sorter()) : 0;
    return [this, id] { id > 0 ? moveToFile(id) : emit statusTextChanged(tr("This is the last file.")); };
}

QAbstractItemView *MainFilesView::currentView() const
{
    return m_views->current();
}

QItemSelectionModel *MainFilesView::selection() const
{
    return m_views->selection();
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

void MainFilesView::updateActionsAvailability()
{
    const SelectedFiles files = selectedFiles();
    m_actions->updateAvailability({isWritable(), !files.isEmpty(), files.areAllInternal(),
                                   files.hasHyperlink(), m_controller && m_controller->hasMissingFiles(),
                                   m_commands->nodeToRemoveFrom()});
    m_exports->updateAvailability(!files.isEmpty());
    m_tagging->setEnabled(isWritable() && !files.isEmpty());
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
            tr("%1 of %2").arg(QLocale().toString(current.row() + 1), QLocale().toString(total)));
    else if (count > 1)
        emit statusTextChanged(tr("%1 selected", nullptr, count).arg(QLocale().toString(count)));
    else
        emit statusTextChanged(total == 1 ? tr("1 file") : tr("%Ln files", nullptr, total));
    tellSizes(count, total);
}

void MainFilesView::tellSizes(int selected, int total)
{
    const int files = selected > 0 ? selected : total;
    const qint64 size = selected > 0 ? selectedFiles().size() : m_controller->sorter()->sizeOf(0, total - 1);
    const QString count = files == 1 ? tr("1 file") : tr("%Ln files", nullptr, files);
    emit sizesChanged(files == 0 ? QString()
                                 //: a number of files and their size
                                 : tr("%1, %2").arg(count, QLocale().formattedDataSize(size)));
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
    else if (m_search->isSearched())
        text = tr("No file matches the search.");
    else
        text = tr("No files here.");
    m_views->setEmptyText(text);
}

void MainFilesView::followRequirements()
{
    m_search->giveWay();
    m_views->scrollToTop();
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
    m_kept->keep(selectedFiles().ids(), current ? current->id() : 0);
}

void MainFilesView::restoreSelection()
{
    m_kept->restore(selection(), *m_controller->sorter());
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

void MainFilesView::openContextMenu(const QPoint &pos)
{
    if (!m_controller)
        return;
    QMenu menu(this);
    m_actions->fillContextMenu(menu, selectedFiles().facts(m_controller->missingFileIds()), isWritable());
    m_tagging->fillContextMenu(menu);
    if (!menu.isEmpty())
        menu.exec(currentView()->viewport()->mapToGlobal(pos));
    // What the menu enabled by its own rule goes back to that of the bars.
    updateActionsAvailability();
}

void MainFilesView::openFile(const QModelIndex &index, bool forceExternal)
{
    m_commands->open(fileAt(index), forceExternal);
}

void MainFilesView::linkTagsToFiles()
{
    if (const QAction *action = m_actions->action(FileActions::LinkTags))
        m_commands->linkTags(action->data().value<QVector<qint64>>());
}

void MainFilesView::followSearch()
{
    updateEmptyText();
    // What was selected in the search is looked for among all files again.
    if (!m_search->isSearched())
        currentView()->scrollTo(currentView()->currentIndex());
}

bool MainFilesView::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress)
        return watched == currentView() && handleKey(static_cast<QKeyEvent *>(event));
    return QWidget::eventFilter(watched, event);
}

bool MainFilesView::handleKey(QKeyEvent *event)
{
    // Keys that an editor in the view has no use for come on to the view.
    if (m_views->isEditing())
        return false;
    if (event->key() == Qt::Key_Delete && event->modifiers() == Qt::ShiftModifier) {
        deleteSelectedItems();
        return true;
    }
    if (event->matches(QKeySequence::Delete)) {
        deleteSelectedItemsFromNode();
        return true;
    }
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (isReturn && isPlain && !m_isEditMode && currentView()->currentIndex().isValid()) {
        openFile(currentView()->currentIndex());
        return true;
    }
    return false;
}
