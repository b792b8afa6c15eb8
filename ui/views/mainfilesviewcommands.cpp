// What the commands and gestures of the main view do; its set-up and its news stand in mainfilesview.cpp.

#include "ui/views/mainfilesview.h"

#include "app/messages/filedialogs.h"
#include "app/messages/messages.h"
#include "app/settings/addingsettings.h"
#include "app/settings/constants.h"
#include "app/settings/windowsettings.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/collection.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/records/file.h"
#include "core/records/filekind.h"
#include "core/records/tbnode.h"
#include "models/base/droppedurls.h"
#include "models/contents/filepictures.h"
#include "models/contents/sorter.h"
#include "ui/dialogs/addhyperlinkdialog.h"
#include "ui/dialogs/browsingtreetagsdialog.h"
#include "ui/dialogs/propertiesdialog.h"
#include "ui/dialogs/tagremovaldialog.h"
#include "ui/preview/previews.h"
#include "ui/views/fileactions.h"
#include "ui/views/fileopening.h"
#include "ui/views/listview.h"
#include "ui/views/selectedfiles.h"
#include "ui/widgets/tableview.h"

#include <QDir>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QUrl>

void MainFilesView::openContextMenu(const QPoint &pos)
{
    if (!m_controller)
        return;
    QMenu menu(this);
    m_actions->fillContextMenu(menu, selectedFiles().facts(m_controller->missingFileIds()), isWritable());
    if (!menu.isEmpty())
        menu.exec(currentView()->viewport()->mapToGlobal(pos));
    // What the menu enabled by its own rule goes back to that of the bars.
    updateActionsAvailability();
}

void MainFilesView::openFileExternally()
{
    openFile(currentView()->currentIndex(), true);
}

void MainFilesView::openFile(const QModelIndex &index)
{
    openFile(index, false);
}

void MainFilesView::openFile(const QModelIndex &index, bool forceExternal)
{
    const File *file = fileAt(index);
    if (!file)
        return;
    if (file->internal() == FileKind::hyperlink)
        FileOpening::openHyperlink(this, file->name());
    else if (!forceExternal && file->iconKind() == FilePictures::thumbnailKind)
        openPreview(*file);
    else if (file->internal() == FileKind::external)
        FileOpening::openExternalFile(this, file->path());
    else if (FileOpening::mayOpenCopy(this, file->name()))
        m_controller->openTemporaryCopy(file->id());
}

void MainFilesView::openPreview(const File &file)
{
    if (file.internal() != FileKind::external || !FileOpening::warnWhenGone(this, file.path()))
        m_previews->open(file.id(), m_controller);
}

void MainFilesView::openFileTagsEditor()
{
    const QVector<qint64> ids = selectedFiles().ids();
    if (!ids.isEmpty() && mayEdit(m_controller))
        TagRemovalDialog(m_controller, ids, this).exec();
}

void MainFilesView::openBrowsTagsEditor()
{
    const QVector<qint64> ids = selectedFiles().ids();
    if (!ids.isEmpty() && mayEdit(m_controller))
        BrowsingTreeTagsDialog(m_controller, ids, this).exec();
}

void MainFilesView::openFileManager()
{
    const File *file = selectedFiles().first();
    if (file && file->internal() == FileKind::external)
        FileOpening::showInFileManager(this, file->path());
}

void MainFilesView::deleteSelectedItems()
{
    if (!mayEdit(m_controller) || selectedFiles().isEmpty())
        return;
    const SelectedFilesFacts facts = selectedFiles().facts();
    QString noun = facts.areAllExternal ? tr("link") : tr("file");
    if (facts.count > 1)
        noun += QLatin1Char('s');

    Messages::Box box;
    box.icon = QMessageBox::Warning;
    box.text = tr("Do you really want to delete the selected %1?").arg(noun);
    box.buttons = QMessageBox::Ok | QMessageBox::Cancel;
    box.defaultButton = QMessageBox::Cancel;
    box.extraFlags = Qt::WindowStaysOnTopHint;
    const QVector<qint64> ids = selectedFiles().ids();
    // The database may have gone while the box stood open.
    if (Messages::run(this, box).button == QMessageBox::Ok && m_controller)
        m_controller->deleteFiles(ids);
}

void MainFilesView::deleteSelectedItemsFromNode()
{
    if (!mayEdit(m_controller))
        return;
    const qint64 nodeId = nodeToRemoveFrom();
    const QVector<qint64> ids = selectedFiles().ids();
    if (nodeId == 0 || ids.isEmpty())
        return;
    const TBnode *node = m_controller->collection()->browsTreeController()->nodeById(nodeId);
    m_controller->unlinkTags(ids, {node->tagId()});
}

void MainFilesView::showFileProperties()
{
    if (const File *file = selectedFiles().first()) {
        PropertiesDialog dialog(*file, this);
        dialog.exec();
    }
}

void MainFilesView::showRelatedFiles()
{
    const File *file = selectedFiles().first();
    if (file && file->tags().isEmpty())
        emit statusTextChanged(tr("\"%1\" has no tags that other files could share.").arg(file->name()));
    else if (file)
        m_controller->showRelated({file->id()});
}

void MainFilesView::searchFile()
{
    if (!m_controller || !m_searchEdit)
        return;
    m_isSearching = true;
    m_controller->setFileFilterString(m_searchEdit->text());
    m_isSearching = false;
    updateEmptyText();
    // What was selected in the search is looked for among all files again.
    if (!isSearched())
        currentView()->scrollTo(currentView()->currentIndex());
}

bool MainFilesView::isSearched() const
{
    return m_controller && !m_controller->sorter()->filterText().isEmpty();
}

void MainFilesView::endHiddenSearch(bool isFieldShown)
{
    if (!isFieldShown && m_searchEdit && isSearched())
        m_searchEdit->clear();
}

void MainFilesView::linkTagsToFiles()
{
    const auto *action = qobject_cast<const QAction *>(sender());
    if (!action || !mayEdit(m_controller))
        return;
    const auto tagIds = action->data().value<QVector<qint64>>();
    const QVector<qint64> fileIds = selectedFiles().ids();
    if (tagIds.isEmpty())
        emit statusTextChanged(tr("Select the tags in the tags dock first."));
    else if (!fileIds.isEmpty())
        m_controller->linkTags(fileIds, tagIds);
}

void MainFilesView::addFiles()
{
    if (!mayEdit(m_controller))
        return;
    const QStringList paths =
        FileDialogs::openFiles(this, tr("Add Files"), AddingSettings::lastFileAddDir(QDir::homePath()));
    if (paths.isEmpty())
        return;
    AddingSettings::setLastFileAddDir(QFileInfo(paths.first()).absolutePath());
    QList<QUrl> urls;
    for (const QString &path : paths)
        urls << QUrl::fromLocalFile(path);
    addUrls(urls);
}

void MainFilesView::addHyperlinks()
{
    if (!mayEdit(m_controller))
        return;
    AddHyperlinkDialog dialog(this);
    dialog.setTaker([this, &dialog](const QString &text, const QString &description) {
        if (m_controller)
            return addHyperlink(text, description);
        // It has gone behind the dialog, whose texts can still be copied elsewhere.
        Messages::warning(&dialog, tr("Add Hyperlink"), tr("The database is closed."));
        return false;
    });
    connect(m_controller, &MainViewController::hyperlinksSettled, &dialog, &AddHyperlinkDialog::settle);
    connect(m_controller, &QObject::destroyed, &dialog, &AddHyperlinkDialog::stopWaiting);
    dialog.exec();
    // Who does not wait for it does not want it.
    if (m_controller && dialog.isWaiting())
        m_controller->cancelOperations();
}

bool MainFilesView::addHyperlink(const QString &text, const QString &description)
{
    const BrowsTreeController *tree = m_controller->collection()->browsTreeController();
    return m_controller->addHyperlink(text, description, tree->tagsOfNode(tree->currentTagNodeId()));
}

void MainFilesView::transferToInternal()
{
    const SelectedFilesFacts facts = selectedFiles().facts();
    if (facts.count == 0 || !mayEdit(m_controller))
        return;
    if (facts.areAllInternal)
        emit statusTextChanged(tr("The selected files are inside the database already."));
    else
        m_controller->transferToInternal(selectedFiles().ids());
}

void MainFilesView::remakeThumbnails()
{
    if (m_controller)
        m_controller->remakeThumbnails();
}

void MainFilesView::extractFiles()
{
    if (!m_controller || selectedFiles().isEmpty())
        return;
    const QVector<qint64> ids = selectedFiles().ids();
    const QString folder = FileDialogs::existingDirectory(this, tr("Extract to Directory"),
                                                          WindowSettings::lastExtractDir(QDir::homePath()));
    extractFilesInFolder(folder, ids);
}

void MainFilesView::extractFilesInFolder(const QString &folder, const QVector<qint64> &fileIds)
{
    // The database may have gone while the dialog stood open.
    if (m_controller && !folder.isEmpty() && !fileIds.isEmpty())
        m_controller->extractFiles(folder, fileIds);
}

void MainFilesView::addUrls(const QList<QUrl> &urls)
{
    if (!m_controller || urls.isEmpty())
        return;
    BrowsTreeController *tree = m_controller->collection()->browsTreeController();
    const qint64 nodeId = tree->currentTagNodeId();
    if (nodeId > 0)
        tree->addUrlsToNode(nodeId, urls);
    else
        m_controller->addUrls(urls);
}

bool MainFilesView::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        if (watched == m_searchEdit)
            return handleSearchKey(*static_cast<QKeyEvent *>(event));
        return watched == currentView() && handleKey(static_cast<QKeyEvent *>(event));
    case QEvent::DragEnter:
    case QEvent::DragMove:
        return handleDrag(static_cast<QDropEvent *>(event));
    case QEvent::Drop:
        return handleDrop(static_cast<QDropEvent *>(event));
    default:
        return QWidget::eventFilter(watched, event);
    }
}

bool MainFilesView::handleSearchKey(const QKeyEvent &event)
{
    if (event.key() != Qt::Key_Escape || m_searchEdit->text().isEmpty())
        return false;
    m_searchEdit->clear();
    return true;
}

bool MainFilesView::handleKey(QKeyEvent *event)
{
    // Keys that an editor in the view has no use for come on to the view.
    if (m_listView->isEditing() || m_tableView->isEditing())
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

bool MainFilesView::handleDrag(QDropEvent *event)
{
    if (!isWritable()) {
        event->ignore();
        return true;
    }
    // Our own files are in the database already.
    if (!event->mimeData()->hasUrls() || event->mimeData()->hasFormat(Constants::fileMimeType))
        return false;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    return true;
}

bool MainFilesView::handleDrop(QDropEvent *event)
{
    if (!handleDrag(event))
        return false;
    if (event->isAccepted() && isWritable())
        addUrls(DroppedUrls::of(*event->mimeData()));
    return true;
}
