#include "core/undo/renamedfiles.h"

#include "core/records/file.h"
#include "db/manager/databasemanger.h"
#include "fileops/files/filerenaming.h"

#include <QFileInfo>

RenamedFiles::RenamedFiles(DatabaseManger &manager) : m_manager(manager) {}

RenamedFiles::~RenamedFiles() = default;

QString RenamedFiles::rename(const EditStep &step, bool isUndo)
{
    for (const ChangeSet &edit : step.edits) {
        qint64 fileId = 0;
        for (const RowChange &row : edit.rows) {
            // The row of a file stands before that of its path.
            if (row.table == UndoTable::Files)
                fileId = row.id(QStringLiteral("file_id"));
            QString reason = row.table == UndoTable::Paths ? rename(fileId, row, isUndo) : QString();
            if (!reason.isEmpty())
                return reason;
        }
    }
    return {};
}

QString RenamedFiles::rename(qint64 fileId, const RowChange &path, bool isUndo)
{
    const RowImage &now = isUndo ? path.after : path.before;
    const RowImage &then = isUndo ? path.before : path.after;
    const auto value = [&path](const RowImage &row, const char *column) {
        return row.value(path.columns.indexOf(QLatin1String(column))).toString();
    };
    const File *file = m_manager.file(fileId);
    const QString from = value(now, "path");
    // One that is elsewhere by now keeps its name: the record is left alone, too.
    if (!file || file->path() != from || from == value(then, "path"))
        return {};
    auto renaming = std::make_unique<FileRenaming>(from, value(now, "rel_path"),
                                                   QFileInfo(value(then, "path")).fileName());
    if (renaming->newPath() != value(then, "path") || renaming->isNameTaken())
        return tr("There is already a file with this name.");
    if (!renaming->run())
        return tr("The file could not be renamed.");
    m_renamings.push_back(std::move(renaming));
    return {};
}

void RenamedFiles::keep()
{
    for (const auto &renaming : m_renamings)
        renaming->keep();
}
