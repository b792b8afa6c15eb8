#include "fileops/operations/storedpaths.h"

#include "fileops/contents/externalpaths.h"
#include "fileops/worker/fileoperationworker.h"

#include <QSet>

namespace {
QString folderOf(const QString &path)
{
    return path.left(path.lastIndexOf(QLatin1Char('/')) + 1);
}

/** The first text behind all that begin with this folder, which ends in a separator. */
QString endOf(const QString &folder)
{
    return folder.left(folder.size() - 1) + QLatin1Char('0');
}
} // namespace

bool StoredPaths::read(FileOperationWorker &worker, const QStringList &paths,
                       QHash<QString, qint64> &idsByPath)
{
    // Neither column has an index: each statement walks the whole table.
    static const QString statement = QStringLiteral(
        "SELECT files.file_id,path,rel_path FROM files,file_paths WHERE path_id=storage_id AND "
        "internal=0 AND ((path>=? AND path<?) OR (rel_path>=? AND rel_path<?))");
    const QSet<QString> wanted(paths.cbegin(), paths.cend());
    QSet<QString> folders;
    for (const QString &path : paths)
        folders.insert(folderOf(path));
    const Database::PathLocator locator = Database::pathLocator(worker.connectionName());
    for (const QString &folder : qAsConst(folders)) {
        const QString relative = folderOf(Database::relativePath(folder + QLatin1Char('x'), locator));
        const QString relativeStart = relative.isEmpty() ? QStringLiteral("/") : relative;
        TableData table;
        if (!worker.runFast(statement, {folder, endOf(folder), relativeStart, endOf(relativeStart)}, table))
            return false;
        for (const TableRowData *row : qAsConst(table)) {
            const QString path = row->at(1).toString();
            const QString other = folder + row->at(2).toString().mid(relative.size());
            if (wanted.contains(path))
                idsByPath.insert(path, row->at(0).toLongLong());
            else if (row->at(2).toString().startsWith(relativeStart) && wanted.contains(other))
                idsByPath.insert(other, row->at(0).toLongLong());
        }
        freeRows(table);
    }
    return true;
}
