#include "fileops/fileadder.h"

#include "db/sqltext.h"
#include "fileops/blockstorage.h"
#include "fileops/datachecksum.h"
#include "fileops/fileoperationworker.h"
#include "fileops/regularfile.h"
#include "fileops/thumbnailmaker.h"

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QUrl>

namespace {

bool isUnchanged(const FileChecksum &known, const FileStamp &now)
{
    return known.isRead && known.stamp == now && known.size == now.size;
}

QString nameOf(const QString &path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

} // namespace

struct FileAdder::NewFile
{
    QString name;
    qint64 fileId = 0;
    qint64 storageId = 0; ///< first block or path, as the mode has it
    qint64 thumbnailId = 0;
    qint64 size = 0;
    qint64 modified = 0; ///< seconds since 1970
    quint32 checksum = 0;
};

FileAdder::FileAdder(FileOperationWorker &worker, StorageMode mode, qint64 loadId)
    : m_worker(worker),
      m_mode(mode),
      m_loadId(loadId),
      m_locator(Database::pathLocator(worker.connectionName()))
{
}

bool FileAdder::isLocal(const QString &text)
{
    return QDir::isAbsolutePath(text) || QUrl(text).isLocalFile();
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
    if (m_mode == HyperlinkStorage) {
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
    if (m_mode == ExternalStorage && !gatherExternal(path, known, file)) {
        qDebug("Failed to open file - %s", qUtf8Printable(path));
        return Skipped;
    }
    if (m_mode == InternalStorage && !RegularFile().open(path)) {
        qDebug("Failed to open file - %s", qUtf8Printable(path));
        return Skipped;
    }
    if (!reserveIds(path, file) || (m_mode == InternalStorage && !storeContents(path, known, file)))
        return Failed;
    return addThumbnail(path, file.thumbnailId) ? Added : Failed;
}

bool FileAdder::addThumbnail(const QString &path, qint64 &thumbnailId)
{
    if (thumbnailId == 0)
        return true;
    const QImage canvas = ThumbnailMaker::thumbnailOf(path);
    if (canvas.isNull())
        thumbnailId = 0;
    // A row that does not go in may have ended the whole transaction, as a full disk does: going on would
    // write the rest of this file outside of it.
    return thumbnailId == 0 || ThumbnailMaker(m_worker).store(canvas, thumbnailId, true);
}

bool FileAdder::gatherExternal(const QString &path, const FileChecksum &known, NewFile &file)
{
    FileChecksum told = known;
    // Opening it once more would cost more than all its rows.
    if (!isUnchanged(known, RegularFile::stampOf(path)))
        told = FileChecksums::ofFile(path, [this] { return m_worker.shouldEnd(); });
    file.size = told.size;
    file.modified = told.modified;
    file.checksum = told.checksum;
    return told.isRead;
}

bool FileAdder::reserveIds(const QString &path, NewFile &file)
{
    if (m_mode == InternalStorage && !m_worker.nextStorageId(file.storageId))
        return false;
    if (m_mode == ExternalStorage && !m_worker.nextPathId(file.storageId))
        return false;
    if (m_mode != HyperlinkStorage && ThumbnailMaker::isImageName(path) &&
        !m_worker.nextThumbnailId(file.thumbnailId))
        return false;
    return m_worker.nextFileId(file.fileId);
}

bool FileAdder::storeContents(const QString &path, const FileChecksum &known, NewFile &file)
{
    RegularFile source;
    if (!source.open(path))
        return false;
    const bool isKnown = isUnchanged(known, source.stamp());
    DataChecksum checksum;
    qint64 blockId = file.storageId;
    qint64 lastId = 0;
    bool hasNext = true;
    // Some files of the system name no size and have contents all the same.
    const qint64 length = source.size() > 0 ? source.size() : BLOCK_SIZE;
    m_block.reserve(BLOCK_SIZE);
    while (hasNext) {
        if (m_worker.shouldEnd()) {
            qDebug("FileOperationWorker::addFilesList() - stopped! Exiting.");
            return false;
        }
        const qint64 wanted = qMin(BLOCK_SIZE, length - file.size);
        m_block.resize(int(wanted));
        const qint64 count = source.read(m_block.data(), wanted);
        if (count < 0)
            return false;
        if (count == 0) {
            qDebug("Error! Zero bytes read.");
            break;
        }
        m_block.resize(int(count));
        if (!isKnown)
            checksum.update(m_block.constData(), count);
        file.size += count;
        // A read that came short has met the end of a file that shrank meanwhile.
        hasNext = count == wanted && file.size < length;
        lastId = blockId;
        if (!m_worker.insertBlock(m_block, lastId, hasNext, blockId)) {
            qDebug("Inserting block failed.");
            return false;
        }
    }
    if (hasNext && lastId > 0 && !endChain(lastId))
        return false;
    file.modified = source.modified();
    if (!isKnown) {
        file.checksum = checksum.take();
        return true;
    }
    file.checksum = known.checksum;
    // Written to while it was read: what was told before is no longer sure to be what was stored.
    return isStill(path, known, file.size) || readStoredChecksum(file.storageId, file.size, file.checksum);
}

bool FileAdder::endChain(qint64 storageId)
{
    return m_worker.runAsync(
        SqlText::fill(QStringLiteral("UPDATE storage_info SET continue_id=0 WHERE storage_id=%1;"),
                      {QString::number(storageId)}));
}

bool FileAdder::isStill(const QString &path, const FileChecksum &known, qint64 storedSize) const
{
    return storedSize == known.size && isUnchanged(known, RegularFile::stampOf(path));
}

bool FileAdder::readStoredChecksum(qint64 storageId, qint64 size, quint32 &result)
{
    DataChecksum checksum;
    for (qint64 done = 0; done < size && storageId > 0;) {
        QByteArray block;
        if (!m_worker.readBlock(storageId, block, storageId) || block.isEmpty())
            return false;
        checksum.update(block.constData(), block.size());
        done += block.size();
    }
    result = checksum.take();
    return true;
}

bool FileAdder::insertRows(const QString &path, const NewFile &file)
{
    QString idCode;
    if (!m_checksIdCodes)
        idCode = m_worker.drawIdCode();
    else if (!m_worker.nextIdCode(idCode))
        return false;
    static const QString insertFile =
        QStringLiteral("INSERT INTO files (file_id,file_name,file_description,file_size,addition_date,"
                       "modification_date,id_code,load_id,storage_id,thumbnail_id,data_checksum,internal) "
                       "VALUES (?,?,'',?,?,?,?,?,?,?,?,?)");
    static const QString insertPath =
        QStringLiteral("INSERT INTO file_paths (path_id,path,rel_path) VALUES (?,?,?)");
    if (!m_worker.runFast(insertFile, {file.fileId, file.name.trimmed(), file.size,
                                       QDateTime::currentSecsSinceEpoch(), file.modified, idCode, m_loadId,
                                       file.storageId, file.thumbnailId, file.checksum, int(m_mode)}))
        return false;
    return m_mode != ExternalStorage ||
           m_worker.runFast(insertPath, {file.storageId, path, relativePath(path)});
}

QString FileAdder::relativePath(const QString &path)
{
    const int nameAt = path.lastIndexOf(QLatin1Char('/')) + 1;
    const QStringRef folder = path.leftRef(nameAt);
    if (m_lastFolder.isEmpty() || folder != m_lastFolder) {
        m_lastFolder = folder.toString();
        const QString relative = Database::relativePath(path, m_locator);
        m_lastRelativeFolder = relative.left(relative.size() - (path.size() - nameAt));
    }
    return m_lastRelativeFolder + path.midRef(nameAt);
}
