#include "ui/views/filecommands.h"

#include "app/messages/filedialogs.h"
#include "app/messages/messages.h"
#include "app/settings/addingsettings.h"
#include "app/settings/trackingsettings.h"
#include "app/settings/windowsettings.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/collection.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/records/file.h"
#include "core/records/filekind.h"
#include "core/records/tbnode.h"
#include "models/contents/filepictures.h"
#include "ui/dialogs/addhyperlinkdialog.h"
#include "ui/dialogs/browsingtreetagsdialog.h"
#include "ui/dialogs/deletionquestion.h"
#include "ui/dialogs/filelocationdialog.h"
#include "ui/dialogs/modificationnotice.h"
#include "ui/dialogs/propertiesdialog.h"
#include "ui/dialogs/tagremovaldialog.h"
#include "ui/preview/previews.h"
#include "ui/views/fileopening.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

FileCommands::FileCommands(std::function<SelectedFiles()> selection, Previews *previews, QWidget *view)
    : QObject(view),
      m_selection(std::move(selection)),
      m_previews(previews),
      m_view(view),
      m_modificationNotice(new ModificationNotice(view))
{
}

void FileCommands::setController(MainViewController *controller)
{
    m_modificationNotice->forget();
    m_controller = controller;
}

qint64 FileCommands::nodeToRemoveFrom() const
{
    if (!m_controller)
        return 0;
    const BrowsTreeController *tree = m_controller->collection()->browsTreeController();
    const qint64 nodeId = tree->currentTagNodeId();
    const TBnode *node = nodeId > 0 ? tree->nodeById(nodeId) : nullptr;
    // The files of an inverted node do not have its tag.
    return node && !node->isInverted() ? nodeId : 0;
}

void FileCommands::open(const File *file, bool forceExternal)
{
    if (!file || !m_controller)
        return;
    checkPresence(*file);
    if (file->internal() == FileKind::hyperlink)
        FileOpening::openHyperlink(m_view, file->name());
    else if (!forceExternal && file->iconKind() == FilePictures::thumbnailKind)
        openPreview(*file);
    else if (file->internal() == FileKind::external)
        FileOpening::openExternalFile(m_view, file->path());
    else if (FileOpening::mayOpenCopy(m_view, file->name()))
        m_controller->openTemporaryCopy(file->id());
}

void FileCommands::checkPresence(const File &file)
{
    if (file.internal() == FileKind::external)
        m_controller->checkPresence(file.id());
}

void FileCommands::openPreview(const File &file)
{
    const auto open = [this, fileId = file.id(), controller = m_controller] {
        // The database may have gone before the disk answered.
        if (controller && controller == m_controller)
            m_previews->open(fileId, controller);
    };
    if (file.internal() == FileKind::external)
        FileOpening::whenThere(m_view, file.path(), open);
    else
        open();
}

void FileCommands::showInFileManager()
{
    const File *file = m_selection().first();
    if (!file || !m_controller || file->internal() != FileKind::external)
        return;
    checkPresence(*file);
    FileOpening::showInFileManager(m_view, file->path());
}

void FileCommands::showProperties()
{
    if (const File *file = m_selection().first()) {
        PropertiesDialog dialog(*file, m_view);
        dialog.exec();
    }
}

void FileCommands::showRelated()
{
    const File *file = m_selection().first();
    if (file && file->tags().isEmpty())
        emit statusTextChanged(tr("\"%1\" has no tags that other files could share.").arg(file->name()));
    else if (file)
        m_controller->showRelated({file->id()});
}

void FileCommands::editTags()
{
    const QVector<qint64> ids = m_selection().ids();
    if (!ids.isEmpty() && mayEdit(m_controller))
        TagRemovalDialog(m_controller, ids, m_view).exec();
}

void FileCommands::editTagsByTree()
{
    const QVector<qint64> ids = m_selection().ids();
    if (!ids.isEmpty() && mayEdit(m_controller))
        BrowsingTreeTagsDialog(m_controller, ids, m_view).exec();
}

void FileCommands::linkTags(const QVector<qint64> &tagIds)
{
    if (!mayEdit(m_controller))
        return;
    const QVector<qint64> fileIds = m_selection().ids();
    if (tagIds.isEmpty())
        emit statusTextChanged(tr("Select the tags in the tags dock first."));
    else if (!fileIds.isEmpty())
        m_controller->linkTags(fileIds, tagIds);
}

void FileCommands::removeFromNode()
{
    if (!mayEdit(m_controller))
        return;
    const qint64 nodeId = nodeToRemoveFrom();
    const QVector<qint64> ids = m_selection().ids();
    if (nodeId == 0 || ids.isEmpty())
        return;
    const TBnode *node = m_controller->collection()->browsTreeController()->nodeById(nodeId);
    m_controller->unlinkTags(ids, {node->tagId()});
}

QString FileCommands::deletionQuestion(const SelectedFilesFacts &facts)
{
    if (facts.areAllExternal)
        return facts.count == 1 ? tr("Do you really want to delete the selected link?")
                                : tr("Do you really want to delete the selected links?");
    return facts.count == 1 ? tr("Do you really want to delete the selected file?")
                            : tr("Do you really want to delete the selected files?");
}

void FileCommands::deleteFiles()
{
    if (!mayEdit(m_controller) || m_selection().isEmpty())
        return;
    const SelectedFilesFacts facts = m_selection().facts();
    const QVector<qint64> ids = m_selection().ids();
    // The database may have gone while the box stood open.
    if (confirmDeletion(m_view, deletionQuestion(facts)) && m_controller)
        m_controller->deleteFiles(ids);
}

void FileCommands::locateMissingFiles()
{
    if (!mayEdit(m_controller))
        return;
    const QVector<qint64> ids = m_controller->missingFileIds();
    if (ids.isEmpty())
        return;
    FileLocationDialog dialog(m_controller, ids, m_view);
    if (dialog.exec() != QDialog::Accepted || !m_controller)
        return;
    m_controller->locateFiles(dialog.locatedFiles());
    m_controller->deleteMissingFiles(dialog.linksToDelete());
}

void FileCommands::notifyOfUpdatedFiles(const QVector<qint64> &ids, const DeletedFileRepresentations &deleted)
{
    if (!m_controller || (ids.isEmpty() && deleted.isEmpty()) || !TrackingSettings::adviseOfModifiedFiles())
        return;
    QStringList paths;
    for (const qint64 id : ids)
        paths.append(m_controller->fileData(id, Path).toString());
    m_modificationNotice->tell(paths, deleted);
}

void FileCommands::addFiles()
{
    if (!mayEdit(m_controller))
        return;
    const QStringList paths =
        FileDialogs::openFiles(m_view, tr("Add Files"), AddingSettings::lastFileAddDir(QDir::homePath()));
    if (paths.isEmpty())
        return;
    AddingSettings::setLastFileAddDir(QFileInfo(paths.first()).absolutePath());
    QList<QUrl> urls;
    for (const QString &path : paths)
        urls << QUrl::fromLocalFile(path);
    addUrls(urls);
}

void FileCommands::addHyperlinks()
{
    if (!mayEdit(m_controller))
        return;
    AddHyperlinkDialog dialog(m_view);
    dialog.setTaker([this, &dialog](const QString &text, const QString &description) {
        if (m_controller)
            return addHyperlink(text, description);
        // It has gone behind the dialog, whose texts can still be copied elsewhere.
        Messages::warning(&dialog, tr("Add Hyperlink"), tr("The database is closed."));
        return false;
    });
    connect(m_controller, &MainViewController::additionSettled, &dialog, &AddHyperlinkDialog::settle);
    connect(m_controller, &QObject::destroyed, &dialog, &AddHyperlinkDialog::stopWaiting);
    dialog.exec();
    // Who does not wait for it does not want it.
    if (m_controller && dialog.isWaiting())
        m_controller->cancelOperations();
}

bool FileCommands::addHyperlink(const QString &text, const QString &description)
{
    const BrowsTreeController *tree = m_controller->collection()->browsTreeController();
    return m_controller->addHyperlink(text, description, tree->tagsOfNode(tree->currentTagNodeId()));
}

void FileCommands::addUrls(const QList<QUrl> &urls)
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

void FileCommands::extract()
{
    if (!m_controller || m_selection().isEmpty())
        return;
    const QVector<qint64> ids = m_selection().ids();
    const QString folder = FileDialogs::existingDirectory(m_view, tr("Extract to Directory"),
                                                          WindowSettings::lastExtractDir(QDir::homePath()));
    extractTo(folder, ids);
}

void FileCommands::extractTo(const QString &folder, const QVector<qint64> &fileIds)
{
    // The database may have gone while the dialog stood open.
    if (m_controller && !folder.isEmpty() && !fileIds.isEmpty())
        m_controller->extractFiles(folder, fileIds);
}

void FileCommands::transferToInternal()
{
    const SelectedFilesFacts facts = m_selection().facts();
    if (facts.count == 0 || !mayEdit(m_controller))
        return;
    if (facts.areAllInternal)
        emit statusTextChanged(tr("The selected files are inside the database already."));
    else
        m_controller->transferToInternal(m_selection().ids());
}

void FileCommands::remakeThumbnails()
{
    if (m_controller)
        m_controller->remakeThumbnails();
}
