#include "core/controllers/filerenamer.h"

#include "core/controllers/miscoperationthread.h"
#include "core/prompts/userprompts.h"
#include "core/records/file.h"
#include "core/records/filekind.h"
#include "db/manager/databasemanger.h"
#include "fileops/adding/hyperlinkcheck.h"
#include "fileops/files/filenames.h"
#include "fileops/files/filerenaming.h"

#include <QFileInfo>
#include <QPointer>

#include <algorithm>

namespace {

bool isNameOfFile(const QString &name)
{
    return name != QLatin1String(".") && name != QLatin1String("..") && !name.contains(QLatin1Char('/')) &&
           !name.contains(QChar(QChar::Null));
}

bool isSameFile(const QString &path, const QString &other)
{
    return QFileInfo(path).canonicalFilePath() == QFileInfo(other).canonicalFilePath();
}

} // namespace

FileRenamer::Outcome FileRenamer::tryRename(qint64 fileId, const QString &text) const
{
    const File *file = m_manager ? m_manager->file(fileId) : nullptr;
    const QString name = text.trimmed();
    if (!file || name.isEmpty() || name == file->name())
        return Unchanged;
    // The name of a hyperlink is its address.
    if (file->internal() == FileKind::hyperlink && HyperlinkCheck::faultOf(name) != HyperlinkCheck::NoFault)
        return AddressForbidden;
    if (file->internal() != FileKind::hyperlink && !isNameOfFile(name))
        return NameForbidden;
    if (file->internal() != FileKind::external)
        return m_manager->updateFile(fileId, QStringLiteral("file_name"), name) ? Renamed : Unchanged;

    FileRenaming renaming(file->path(), file->relPath(), name);
    if (renaming.isNameTaken())
        return NameTaken;
    // Before the disk is touched: a rename there that the database refuses had to be taken back.
    if (!m_manager->isDataCurrent())
        return Unchanged;
    return renaming.run() ? store(renaming, fileId, name) : DiskRefused;
}

FileRenamer::Outcome FileRenamer::store(FileRenaming &renaming, qint64 fileId, const QString &name) const
{
    if (!m_manager->renameFile(fileId, name, renaming.newPath(), renaming.newRelPath()))
        return Unchanged;
    // Without it the destructor gives the file its old name again.
    renaming.keep();
    return Renamed;
}

void FileRenamer::settle(Outcome outcome, qint64 fileId, const QString &name) const
{
    switch (outcome) {
    case NameForbidden:
        refuse(tr("The name of a file must not contain \"/\", nor be \".\" or \"..\"."));
        break;
    case AddressForbidden:
        refuse(HyperlinkCheck::reason(name.trimmed()));
        break;
    case NameTaken:
        askAndRename(fileId, name.trimmed());
        break;
    case DiskRefused:
        refuse(tr("The file could not be renamed."));
        break;
    case Unchanged:
    case Renamed:
        break;
    }
}

void FileRenamer::refuse(const QString &reason) const
{
    m_prompts.tell(UserPrompts::Warning, tr("Rename File"), reason);
}

bool FileRenamer::isRecorded(const QString &path) const
{
    const Map<qint64, File *> &files = m_manager->files();
    return std::any_of(files.begin(), files.end(), [&path](const File *file) {
        // The name first, which lies at hand; the path has to be put together.
        return file->internal() == FileKind::external && path.endsWith(file->name()) && file->path() == path;
    });
}

void FileRenamer::askAndRename(qint64 fileId, const QString &name) const
{
    const File *file = m_manager->file(fileId);
    if (!file)
        return;
    FileRenaming renaming(file->path(), file->relPath(), name);
    // The open database must not give way to a file that it records.
    if (!renaming.isReplaceable() || isSameFile(renaming.newPath(), m_manager->databaseName()))
        return refuse(tr("There is already a file with this name."));
    const QString path = file->path();
    const QDir folder = QFileInfo(renaming.newPath()).dir();
    const QString newName = Database::uniqueFileName(name, folder);
    const QPointer<DatabaseManger> manager(m_manager);
    const int choice = MiscOperationThread::askUserIfUserNewName(
        folder.path(), name, newName, MiscOperationThread::RenameQuestion, m_prompts);
    // The database may have been closed under the question.
    if (!manager)
        return;
    if (choice == MiscOperationThread::UseNewNameChoice) {
        const Outcome outcome = tryRename(fileId, newName);
        return outcome == NameTaken ? refuse(tr("There is already a file with this name."))
                                    : settle(outcome, fileId, newName);
    }
    if (choice != MiscOperationThread::ReplaceChoice)
        return;
    // Two records on one file would each speak for the other's contents.
    if (isRecorded(renaming.newPath()))
        return refuse(tr("The other file is in the database too and cannot be replaced."));
    // Looked up anew: while the box stood open the file may have gone, or gone into the database.
    file = m_manager->file(fileId);
    if (!file || file->internal() != FileKind::external || file->path() != path ||
        !m_manager->isDataCurrent())
        return;
    settle(renaming.runReplacing() ? store(renaming, fileId, name) : DiskRefused, fileId, name);
}
