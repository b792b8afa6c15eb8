#include "fileops/contents/imagestore.h"

#include "core/records/filekind.h"
#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/sqltext.h"
#include "db/sql/transaction.h"
#include "fileops/contents/blockchain.h"
#include "fileops/contents/blockremoval.h"
#include "fileops/contents/externalpaths.h"
#include "fileops/files/datachecksum.h"
#include "fileops/files/externalcontents.h"
#include "fileops/pictures/imagecodec.h"
#include "fileops/pictures/thumbnailcanvas.h"
#include "fileops/pictures/thumbnailmaker.h"

#include <QDateTime>
#include <QDebug>
#include <QFileInfo>
#include <QScopeGuard>

namespace {
// The window's connection may be closed after any call: nothing stays prepared on it.
auto clearingPrepared(BaseDBProvider &provider)
{
    return qScopeGuard([&provider] { provider.clearPrepared(); });
}

QString filled(const char *statement, qint64 id)
{
    return SqlText::fill(QLatin1String(statement), {QString::number(id)});
}
} // namespace

std::unique_ptr<ImageLoading> ImageStore::load(qint64 fileId)
{
    const auto clearing = clearingPrepared(*this);
    Origin origin;
    m_origins.remove(fileId);
    if (!readOrigin(fileId, origin))
        return std::make_unique<ImageLoading>(StoredImage::UnknownFile);
    PictureRequest request;
    request.use = PictureUse::Whole;
    const bool isInternal = origin.internal == FileKind::internal;
    const StoredImage::State failure =
        isInternal ? StoredImage::InternalUnreadable : StoredImage::ExternalUnreadable;
    const StoredImage::State state = isInternal ? readBytes(origin, request.bytes) : lookAt(origin.path);
    if (!isInternal)
        request.path = origin.path;
    if (state != StoredImage::Loaded)
        return std::make_unique<ImageLoading>(state);
    m_origins.insert(fileId, origin);
    return std::make_unique<ImageLoading>(request, origin.stamp, failure);
}

bool ImageStore::save(qint64 fileId, const QImage &picture, QVector<qint64> &changedIds)
{
    const auto clearing = clearingPrepared(*this);
    Writing writing;
    if (!prepare(fileId, picture, writing))
        return false;
    if (writing.bytes.isEmpty())
        return true;
    if (m_origins.value(fileId).internal == FileKind::external)
        return saveExternal(fileId, writing, changedIds);
    if (!saveInternal(fileId, writing))
        return false;
    changedIds.append(fileId);
    return true;
}

bool ImageStore::readOrigin(qint64 fileId, Origin &origin)
{
    QVariantList row;
    if (!readRow(filled("SELECT storage_id, internal FROM files WHERE file_id=%1;", fileId), row))
        return false;
    origin.storageId = row.at(0).toLongLong();
    origin.internal = row.at(1).toInt();
    if (origin.internal == FileKind::external) {
        if (!readRow(filled("SELECT path FROM file_paths WHERE path_id=%1;", origin.storageId), row))
            return false;
        origin.path = row.at(0).toString();
        origin.stamp = RegularFile::stampOf(origin.path);
        return true;
    }
    if (origin.internal != FileKind::internal ||
        !readRow(filled("SELECT file_size, data_checksum FROM files WHERE file_id=%1;", fileId), row))
        return false;
    origin.size = row.at(0).toLongLong();
    origin.checksum = row.at(1).toLongLong();
    return true;
}

bool ImageStore::isSame(const Origin &left, const Origin &right)
{
    return left.internal == right.internal && left.storageId == right.storageId && left.size == right.size &&
           left.checksum == right.checksum && left.path == right.path && left.stamp == right.stamp;
}

bool ImageStore::readUnchanged(qint64 fileId)
{
    Origin origin;
    if (readOrigin(fileId, origin) && isSame(origin, m_origins.value(fileId)))
        return true;
    qDebug() << "ImageStore: the picture is not what was read, id =" << fileId;
    return false;
}

StoredImage::State ImageStore::readBytes(Origin &origin, QByteArray &bytes)
{
    if (origin.internal == FileKind::internal) {
        const bool isRead = readChain(origin, bytes);
        return isRead ? StoredImage::Loaded : StoredImage::InternalUnreadable;
    }
    const StoredImage::State state = lookAt(origin.path);
    if (state != StoredImage::Loaded)
        return state;
    return ExternalContents::read(origin.path, ImageCodec::mostBytes, bytes, origin.stamp)
               ? StoredImage::Loaded
               : StoredImage::ExternalUnreadable;
}

StoredImage::State ImageStore::lookAt(const QString &path)
{
    if (!QFileInfo::exists(path))
        return StoredImage::FileGone;
    // Closing any descriptor of the open database drops the locks that SQLite holds on it.
    const Database::PathLocator database = Database::pathLocator(QString());
    const bool isDatabase = database.isLocal && RegularFile::isSame(path, database.databasePath);
    return isDatabase ? StoredImage::ExternalUnreadable : StoredImage::Loaded;
}

bool ImageStore::readChain(const Origin &origin, QByteArray &bytes)
{
    const BlockChain chain = blockChain();
    BlockChain::Walk walk(chain, origin.storageId, origin.size);
    while (walk.hasNext()) {
        if (!walk.readNext())
            return false;
        bytes += walk.block();
        if (bytes.size() > ImageCodec::mostBytes)
            return false;
    }
    return !bytes.isEmpty();
}

bool ImageStore::prepare(qint64 fileId, const QImage &picture, Writing &writing)
{
    if (picture.isNull() || !m_origins.contains(fileId) || !readUnchanged(fileId))
        return false;
    QVariantList name;
    if (!readRow(filled("SELECT file_name FROM files WHERE file_id=%1;", fileId), name))
        return false;
    const QString format = QFileInfo(name.at(0).toString()).suffix().toLower();
    qDebug().noquote() << "Image's previous format: " << format;
    Origin origin = m_origins.value(fileId);
    if (readBytes(origin, writing.oldBytes) != StoredImage::Loaded ||
        !isSame(origin, m_origins.value(fileId)))
        return false;
    const QImage original = ImageCodec::decoded(writing.oldBytes);
    if (original.isNull()) {
        qDebug("Not an image!");
        return false;
    }
    const QImage turned = ImageCodec::turnedLike(original, picture);
    if (turned == original)
        return true;
    writing.bytes = ImageCodec::rewritten(writing.oldBytes, turned, format.toLatin1());
    writing.thumbnail = ThumbnailMaker::encoded(ThumbnailCanvas::with(turned, turned.size()));
    return !writing.bytes.isEmpty() && !writing.thumbnail.isEmpty();
}

bool ImageStore::lock(qint64 fileId)
{
    // The first statement writes: a server keeps the row for this transaction then, a local database itself.
    return runSync(filled("UPDATE files SET storage_id=storage_id WHERE file_id=%1;", fileId)) &&
           readUnchanged(fileId);
}

bool ImageStore::saveInternal(qint64 fileId, const Writing &writing)
{
    Origin origin = m_origins.value(fileId);
    Transaction transaction(*this);
    if (!transaction.isActive() || !lock(fileId) ||
        !BlockRemoval(ProviderConnection(*this)).removeBlocksOf(fileId, origin.storageId, origin.size) ||
        !replaceThumbnail(fileId, writing.thumbnail) || !writeChain(writing.bytes, origin.storageId))
        return false;
    origin.checksum = DataChecksum::ofBytes(writing.bytes);
    origin.size = writing.bytes.size();
    const QString update = SqlText::fill(
        QStringLiteral("UPDATE files SET data_checksum=%1, file_size=%2, storage_id=%3 WHERE file_id=%4;"),
        {QString::number(origin.checksum), QString::number(origin.size), QString::number(origin.storageId),
         QString::number(fileId)});
    if (!runSync(update) || !transaction.commit())
        return false;
    m_origins.insert(fileId, origin);
    return true;
}

bool ImageStore::writeChain(const QByteArray &bytes, qint64 &firstId)
{
    if (!nextBlockId(0, firstId))
        return false;
    const BlockChain chain = blockChain();
    qint64 id = firstId;
    const BlockChain::NextId askNextId = [this, &id](qint64 &nextId) { return nextBlockId(id, nextId); };
    for (qint64 from = 0; from < bytes.size(); from += BLOCK_SIZE) {
        const bool hasNext = from + BLOCK_SIZE < bytes.size();
        qint64 nextId = 0;
        if (!chain.insertBlock(bytes.mid(int(from), int(BLOCK_SIZE)), id, hasNext ? askNextId : nullptr,
                               nextId))
            return false;
        id = nextId;
    }
    return true;
}

BlockChain ImageStore::blockChain()
{
    return BlockChain(ProviderConnection(*this));
}

bool ImageStore::nextBlockId(qint64 lastId, qint64 &id)
{
    const auto read = [this, &id](const QString &table) {
        QVariantList value;
        const QString next = constructor()->nextIdQuery(QStringLiteral("storage_id"), table);
        if (!readRow(next + constructor()->statementEnd(), value))
            return false;
        id = qMax(id, value.at(0).toLongLong());
        return true;
    };
    id = 0;
    if (!Database::pathLocator(QString()).isLocal)
        return read(QStringLiteral("storage"));
    // The highest id of all, until this transaction gives it up, is followed by none of another file.
    id = lastId + 1;
    return lastId > 0 || (read(QStringLiteral("storage")) && read(QStringLiteral("storage_info")));
}

bool ImageStore::replaceThumbnail(qint64 fileId, const QByteArray &png)
{
    QVariantList row;
    if (!readRow(filled("SELECT thumbnail_id FROM files WHERE file_id=%1;", fileId), row))
        return false;
    const qint64 thumbnailId = row.at(0).toLongLong();
    if (thumbnailId <= 0)
        return true;
    if (runSync(filled("DELETE FROM thumbnails WHERE thumbnail_id=(SELECT thumbnail_id FROM files "
                       "WHERE file_id=%1);",
                       fileId)) &&
        runWithBlob(filled("INSERT INTO thumbnails VALUES (%1, :FILE);", thumbnailId), png,
                    QStringLiteral(":FILE")))
        return true;
    qDebug("***Error: could not insert thumbnail into database.");
    return false;
}

bool ImageStore::saveExternal(qint64 fileId, const Writing &writing, QVector<qint64> &changedIds)
{
    Origin origin = m_origins.value(fileId);
    Transaction transaction(*this);
    if (!transaction.isActive() || !lock(fileId))
        return false;
    TableData rows;
    const QString sharing = QStringLiteral("SELECT file_id FROM files, file_paths WHERE internal=0 "
                                           "AND path_id=storage_id AND path=%1;");
    if (!runSync(SqlText::fill(sharing, {SqlText::quoted(origin.path)}), rows))
        return false;
    QVector<qint64> ids;
    for (const TableRowData *row : qAsConst(rows))
        ids.append(row->at(0).toLongLong());
    freeRows(rows);
    if (ids.isEmpty()) {
        qDebug("updateFile(): File was not external!");
        return false;
    }

    ExternalContents contents(origin.path, origin.stamp);
    if (!contents.replace(writing.bytes)) {
        qDebug("*** Error opening file for writing for image rotation.");
        return false;
    }
    // From here on a failure puts the old contents back.
    bool isStored = true;
    for (const qint64 id : qAsConst(ids))
        isStored = isStored && updateFile(id, origin.path, writing);
    if (!isStored || !transaction.commit()) {
        transaction.rollBack();
        contents.restore(writing.oldBytes);
        m_origins[fileId].stamp = RegularFile::stampOf(origin.path);
        return false;
    }
    m_origins[fileId].stamp = RegularFile::stampOf(origin.path);
    changedIds += ids;
    return true;
}

bool ImageStore::updateFile(qint64 fileId, const QString &path, const Writing &writing)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        qDebug("updateFIle(): File does not exist! *******");
        return false;
    }
    if (!info.isReadable())
        qDebug("Could not open file.");
    if (info.size() != writing.bytes.size()) {
        qDebug("Error reading from file. Might have run out of memory.");
        return false;
    }
    const QString update =
        QStringLiteral("UPDATE files SET modification_date=%1, data_checksum=%2, file_size=%3, file_name=%4 "
                       "WHERE file_id=%5;");
    if (runSync(SqlText::fill(update, {QString::number(info.lastModified().toSecsSinceEpoch()),
                                       QString::number(DataChecksum::ofBytes(writing.bytes)),
                                       QString::number(writing.bytes.size()),
                                       SqlText::quoted(info.fileName()), QString::number(fileId)})) &&
        replaceThumbnail(fileId, writing.thumbnail))
        return true;
    qDebug("Could not update file information.");
    return false;
}

bool ImageStore::readRow(const QString &statement, QVariantList &values)
{
    TableData rows;
    const bool isRead = runSync(statement, rows) && !rows.isEmpty();
    values.clear();
    for (int i = 0; isRead && i < rows.first()->columns().size(); ++i)
        values.append(rows.first()->at(i));
    freeRows(rows);
    return isRead;
}
