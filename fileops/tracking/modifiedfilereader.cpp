#include "fileops/tracking/modifiedfilereader.h"

#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/sqltext.h"
#include "fileops/contents/externalpaths.h"
#include "fileops/contents/filechecksums.h"
#include "fileops/looks/awaitedlook.h"
#include "fileops/looks/filelooks.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDir>

namespace {
constexpr int filesAtOnce = 2000;
constexpr int filesInGroup = 64;
constexpr qint64 bytesInGroup = 16LL * 1024 * 1024;

/** What was read of a file, and how it looked afterwards. */
struct ReadFile
{
    FileChecksum contents;
    FileStamp stamp;
    FileLook look;
};

QVector<ReadFile> readFiles(const QStringList &paths, const AwaitedLook::ShouldEnd &shouldEnd)
{
    QVector<ReadFile> files;
    const QVector<FileChecksum> contents = FileChecksums::ofFiles(paths, shouldEnd);
    for (int i = 0; i < paths.size(); ++i) {
        const QString &path = paths.at(i);
        files.append({contents.at(i), RegularFile::stampOf(path), FileLook::at(path)});
    }
    return files;
}

QStringList pathsOf(const ModifiedFileList &files)
{
    QStringList paths;
    for (const ModifiedFile &file : files)
        paths.append(file.path);
    return paths;
}
} // namespace

bool ModifiedFileReader::read(QMap<qint64, QString> &paths, ModifiedFileList &files)
{
    ModifiedFileList found;
    if (!readRows(paths, found))
        return false;
    int next = 0;
    do {
        const ModifiedFileList group = groupFrom(found.mid(next, filesInGroup));
        if (!readContents(group, files))
            break;
        for (const ModifiedFile &file : group)
            paths.remove(file.fileId);
        next += group.size();
    } while (next < found.size() && !m_worker.shouldEnd() && !m_worker.hasQueued());
    return !m_worker.shouldEnd();
}

bool ModifiedFileReader::readRows(QMap<qint64, QString> &paths, ModifiedFileList &files)
{
    // Not the keys of all: there may be a million, and they are come back to for each few thousand.
    QVector<qint64> ids;
    for (auto path = paths.cbegin(); path != paths.cend() && ids.size() < filesAtOnce; ++path)
        ids.append(path.key());
    const AbstractQueryConstructor &sql = *m_worker.constructor();
    const QStringList columns = {QStringLiteral("file_id"),       QStringLiteral("id_code"),
                                 QStringLiteral("data_checksum"), QStringLiteral("thumbnail_id"),
                                 QStringLiteral("path"),          QStringLiteral("rel_path")};
    const QString condition = QStringLiteral("path_id=storage_id AND internal=0 AND ") +
                              sql.inClause(QStringLiteral("file_id"), SqlText::idTexts(ids));
    TableData table;
    const bool isRead = m_worker.runAsync(sql.selectQuery(columns, QStringLiteral("files, file_paths")) +
                                              sql.whereClause(condition) + sql.statementEnd(),
                                          table);
    QHash<qint64, QString> unknown;
    for (const qint64 id : qAsConst(ids))
        unknown.insert(id, QString());
    const Database::PathLocator locator = Database::pathLocator(m_worker.connectionName());
    for (const TableRowData *row : qAsConst(table)) {
        // A check that was put off may come back to an id that is another file's by now.
        const QString path = paths.value(row->at(0).toLongLong());
        const QString relative = row->at(5).toString();
        const bool isNearby = locator.isLocal && !relative.isEmpty() &&
                              path == QDir::cleanPath(Database::absolutePath(relative, locator));
        if (path != row->at(4).toString() && !isNearby)
            continue;
        ModifiedFile file;
        file.fileId = row->at(0).toLongLong();
        file.idCode = row->at(1).toString();
        file.path = path;
        file.storedChecksum = row->at(2).toLongLong();
        file.thumbnailId = row->at(3).toLongLong();
        files.append(file);
        unknown.remove(file.fileId);
    }
    freeRows(table);
    for (auto it = unknown.cbegin(); isRead && it != unknown.cend(); ++it)
        paths.remove(it.key());
    return isRead;
}

ModifiedFileList ModifiedFileReader::groupFrom(const ModifiedFileList &files) const
{
    const QVector<AnsweredLook> looks =
        FileLooks::at(pathsOf(files), [this] { return m_worker.shouldEnd(); });
    int end = 0;
    qint64 bytes = 0;
    while (end < files.size()) {
        bytes += looks.at(end).look.size;
        if (end > 0 && bytes > bytesInGroup)
            break;
        ++end;
    }
    return files.mid(0, end);
}

bool ModifiedFileReader::readContents(const ModifiedFileList &group, ModifiedFileList &read)
{
    const bool isOne = group.size() == 1;
    const auto isOthersTurn = [this, isOne] { return isOne && m_worker.hasQueued(); };
    const auto look = [paths = pathsOf(group)](const AwaitedLook::ShouldEnd &shouldEnd) {
        return readFiles(paths, shouldEnd);
    };
    const std::optional<QVector<ReadFile>> found =
        AwaitedLook::run(look, [&] { return m_worker.shouldEnd() || isOthersTurn(); });
    if (m_worker.shouldEnd() || (isOne && isOthersTurn() && !(found && found->first().contents.isRead)))
        return false;
    for (int i = 0; found && i < group.size(); ++i) {
        const ReadFile &now = found->at(i);
        ModifiedFile file = group.at(i);
        // What is not, or not yet, what was read is left to a later check.
        if (!now.contents.isOf(now.stamp))
            continue;
        file.checksum = now.contents.checksum;
        file.size = now.contents.size;
        file.modified = now.look.modified;
        read.append(file);
    }
    return true;
}
