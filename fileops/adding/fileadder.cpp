#include "fileops/adding/fileadder.h"

#include "core/records/filekind.h"
#include "fileops/files/datachecksum.h"
#include "fileops/files/regularfile.h"
#include "fileops/pictures/thumbnailmaker.h"
#include "fileops/pictures/thumbnailsahead.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QUrl>

namespace {

QString nameOf(const QString &path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

} // namespace

struct FileAdder::NewFile
{
    QString name;
    qint64 fileId = 0;
    qint64 storageId = 0; ///< first block or path, as the kind has it
    qint64 thumbnailId = 0;
    qint64 size = 0;
    qint64 modified = 0; ///< seconds since 1970
    quint32 checksum = 0;
};

FileAdder::FileAdder(FileOperationWorker &worker, qint32 kind, qint64 loadId, ThumbnailsAhead &thumbnails)
    : m_worker(worker),
      m_thumbnails(thumbnails),
      m_writer(worker),
      m_kind(kind),
      m_loadId(loadId),
      m_relativePaths(Database::pathLocator(worker.connectionName()))
{
}

bool FileAdder::isLocal(const QString &text)
{
    // Behind a colon Qt sees a file of its resources.
    const bool isPath = !text.startsWith(QLatin1Char(':')) && QDir::isAbsolutePath(text);
    return isPath || QUrl(text).isLocalFile();
}

FileAdder::Outcome FileAdder::addFilesList(const QString &path, const FileChecksum &known, qint64 &fileId)
{
    NewFile file;
    const Outcome outcome = gather(path, known, file);
    if (outcome != Added)
        return outcome;
    if (!insertRows(path, file))
        return Failed;
    fileId = file.fileId;
    return Added;
}

FileAdder::Outcome FileAdder::gather(const QString &path, const FileChecksum &known, NewFile &file)
{
    if (m_kind == FileKind::hyperlink) {
        if (isLocal(path)) {
            qDebug("Failed to open file - %s", qUtf8Printable(path));
            return Skipped;
        }
        qDebug("Adding hyperlink - %s", qUtf8Printable(path));
        file.name = path;
        file.checksum = DataChecksum::ofHyperlink(path);
        file.modified = QDateTime::currentSecsSinceEpoch();
        return reserveIds(path, file) ? Added : Failed;
    }
    file.name = nameOf(path);
    if (m_kind == FileKind::external && !gatherExternal(path, known, file)) {
        qDebug("Failed to open file - %s", qUtf8Printable(path));
        return Skipped;
    }
    // Before any id is taken: one that cannot be read leaves no gap.
    if (m_kind == FileKind::internal && !RegularFile().open(path)) {
        qDebug("Failed to open file - %s", qUtf8Printable(path));
        return Skipped;
    }
    if (!reserveIds(path, file))
        return Failed;
    const Outcome stored = m_kind == FileKind::internal ? storeContents(path, known, file) : Added;
    if (stored != Added)
        return stored;
    return addThumbnail(path, file.thumbnailId) ? Added : Failed;
}

bool FileAdder::addThumbnail(const QString &path, qint64 &thumbnailId)
{
    if (thumbnailId == 0)
        return true;
    const QByteArray png = m_thumbnails.pngOf(path);
    if (png.isEmpty())
        thumbnailId = 0;
    // A row that does not go in may have ended the whole transaction, as a full disk does: going on would
    // write the rest of this file outside of it.
    return thumbnailId == 0 || ThumbnailMaker(m_worker).store(png, thumbnailId, true);
}

bool FileAdder::gatherExternal(const QString &path, const FileChecksum &known, NewFile &file)
{
    FileChecksum told = known;
    // Opening it once more would cost more than all its rows.
    if (!known.isOf(RegularFile::stampOf(path)))
        told = FileChecksums::ofFile(path, [this] { return m_worker.shouldEnd(); });
    file.size = told.size;
    file.modified = told.modified;
    file.checksum = told.checksum;
    return told.isRead;
}

bool FileAdder::reserveIds(const QString &path, NewFile &file)
{
    if (m_kind == FileKind::internal && !m_worker.nextStorageId(file.storageId))
        return false;
    if (m_kind == FileKind::external && !m_worker.nextPathId(file.storageId))
        return false;
    if (m_kind != FileKind::hyperlink && ThumbnailMaker::isImageName(path) &&
        !m_worker.nextThumbnailId(file.thumbnailId))
        return false;
    return m_worker.nextFileId(file.fileId);
}

FileAdder::Outcome FileAdder::storeContents(const QString &path, const FileChecksum &known, NewFile &file)
{
    StoredContents stored;
    const ContentWriter::Outcome outcome = m_writer.store(path, file.storageId, known, stored);
    if (outcome != ContentWriter::Stored)
        return outcome == ContentWriter::Unreadable ? Skipped : Failed;
    file.size = stored.size;
    file.modified = stored.modified;
    file.checksum = stored.checksum;
    return Added;
}

bool FileAdder::insertRows(const QString &path, const NewFile &file)
{
    QString idCode;
    if (!m_worker.nextIdCode(idCode))
        return false;
    static const QString intoFiles =
        QStringLiteral("INSERT INTO files (file_id,file_name,file_description,file_size,addition_date,"
                       "modification_date,id_code,load_id,storage_id,thumbnail_id,data_checksum,internal)");
    static const QString intoPaths = QStringLiteral("INSERT INTO file_paths (path_id,path,rel_path)");
    const QVariantList row{file.fileId,
                           file.name.trimmed(),
                           QStringLiteral(""),
                           file.size,
                           QDateTime::currentSecsSinceEpoch(),
                           file.modified,
                           idCode,
                           m_loadId,
                           file.storageId,
                           file.thumbnailId,
                           file.checksum,
                           m_kind};
    return m_worker.insertRows(intoFiles, row.size(), row) &&
           (m_kind != FileKind::external ||
            m_worker.insertRows(intoPaths, 3, {file.storageId, path, m_relativePaths.of(path)}));
}
