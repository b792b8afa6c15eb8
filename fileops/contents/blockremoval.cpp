#include "fileops/contents/blockremoval.h"

#include "db/sql/sqltext.h"

#include <algorithm>

namespace {
// Asking so many files takes no longer than storing that one is gone.
constexpr qint64 smallLibrary = 20000;
// For more of them it is cheaper to find all blocks that several files use.
constexpr int fewFiles = 8;

/** Of the blocks of one chain, found link by link: other chains may lie in between. */
QString ofChain(const char *statement)
{
    return QStringLiteral("WITH RECURSIVE chain(block_id) AS (SELECT CAST(? AS bigint) "
                          "UNION SELECT storage_info.continue_id FROM storage_info, chain "
                          "WHERE storage_info.storage_id=chain.block_id AND storage_info.continue_id>0) ") +
           QLatin1String(statement);
}

bool isSameSize(qint64 bytes, qint64 recordedSize)
{
    // Sizes of two gigabytes and more may have been recorded in too few bits.
    return quint32(bytes) == quint32(recordedSize);
}
} // namespace

bool BlockRemoval::removeBlocksOf(qint64 fileId, qint64 firstId, qint64 recordedSize)
{
    // An empty file has no block: the id that was kept for it may have become another file's.
    if (recordedSize == 0)
        return true;
    Shape shape;
    if (!readShape(firstId, recordedSize, shape) || !lookAround())
        return false;
    bool isOwn = false;
    if (shape.isOrdinary && !isUsedOnce(firstId, shape.lastId, isOwn))
        return false;
    if (!(isOwn ? removeRange(firstId, shape.lastId) : removeOwn(fileId, firstId)))
        return false;
    m_removedFiles.insert(fileId);
    return true;
}

bool BlockRemoval::readShape(qint64 firstId, qint64 recordedSize, Shape &shape) const
{
    static const QString select = ofChain(
        "SELECT count(*), min(block_id), max(block_id), count(storage.storage_id), sum(length(data)), "
        "(SELECT continue_id FROM storage_info WHERE storage_id=?) "
        "FROM chain LEFT JOIN storage ON storage.storage_id=chain.block_id;");
    QVariantList row;
    if (!m_connection.readRow(select, {firstId, firstId - 1}, row))
        return false;
    shape = shapeOf(firstId, recordedSize, row);
    return true;
}

BlockRemoval::Shape BlockRemoval::shapeOf(qint64 firstId, qint64 recordedSize, const QVariantList &row)
{
    Shape shape;
    const qint64 count = row.at(0).toLongLong();
    shape.lastId = row.at(2).toLongLong();
    shape.isOrdinary = row.at(1).toLongLong() == firstId && shape.lastId == firstId + count - 1 &&
                       row.at(3).toLongLong() == count && isSameSize(row.at(4).toLongLong(), recordedSize) &&
                       row.at(5).toLongLong() != firstId;
    return shape;
}

bool BlockRemoval::removeOrdinary(const QVector<qint64> &fileIds)
{
    static const QString select = QStringLiteral(
        "WITH RECURSIVE chain(file_id, block_id) AS (SELECT file_id, storage_id FROM files "
        "WHERE file_id IN (%1) UNION SELECT chain.file_id, storage_info.continue_id FROM storage_info, chain "
        "WHERE storage_info.storage_id=chain.block_id AND storage_info.continue_id>0) "
        "SELECT files.storage_id, files.file_size, count(*), min(block_id), max(block_id), "
        "count(storage.storage_id), sum(length(data)), max(before.continue_id) FROM chain "
        "JOIN files ON files.file_id=chain.file_id LEFT JOIN storage ON storage.storage_id=chain.block_id "
        "LEFT JOIN storage_info AS before ON before.storage_id=files.storage_id-1 "
        "GROUP BY files.file_id, files.storage_id, files.file_size;");
    QVector<QVariantList> rows;
    // A few of a large library ask for their own blocks alone.
    if (!lookAround() || (!m_areMeetingsKnown && fileIds.size() < fewFiles) || !readMeetings() ||
        !m_connection.readOnce(SqlText::fill(select, {SqlText::idList(fileIds)}), rows))
        return false;
    QVector<qint64> blocks;
    for (const QVariantList &row : qAsConst(rows)) {
        const qint64 firstId = row.at(0).toLongLong();
        const Shape shape = shapeOf(firstId, row.at(1).toLongLong(), row.mid(2));
        if (!shape.isOrdinary || hasMeeting(firstId, shape.lastId))
            return false;
        for (qint64 id = firstId; id <= shape.lastId; ++id)
            blocks.append(id);
    }
    for (const char *statement : {"DELETE FROM storage WHERE storage_id IN (%1);",
                                  "DELETE FROM storage_info WHERE storage_id IN (%1);"}) {
        if (!m_connection.run(SqlText::fill(QLatin1String(statement), {SqlText::idList(blocks)})))
            return false;
    }
    for (const qint64 fileId : fileIds)
        m_removedFiles.insert(fileId);
    return true;
}

bool BlockRemoval::lookAround()
{
    if (m_hasLooked)
        return true;
    QVariantList row;
    if (!m_connection.readRow(QStringLiteral("SELECT max(file_id) FROM files;"), {}, row) ||
        (row.at(0).toLongLong() <= smallLibrary && !readMeetings()))
        return false;
    m_hasLooked = true;
    return true;
}

bool BlockRemoval::isUsedOnce(qint64 firstId, qint64 lastId, bool &isUsedOnce)
{
    static const QString count =
        QStringLiteral("SELECT (SELECT count(*) FROM files WHERE internal=1 AND file_size<>0 "
                       "AND storage_id BETWEEN ? AND ?) + "
                       "(SELECT count(*) FROM storage_info WHERE continue_id BETWEEN ? AND ?);");
    if (!m_areMeetingsKnown && m_removedFiles.size() < fewFiles) {
        QVariantList row;
        if (!m_connection.readRow(count, {firstId, lastId, firstId, lastId}, row))
            return false;
        // The record leads to the first block, and each block to the next one.
        isUsedOnce = row.at(0).toLongLong() == lastId - firstId + 1;
        return true;
    }
    if (!readMeetings())
        return false;
    isUsedOnce = !hasMeeting(firstId, lastId);
    return true;
}

bool BlockRemoval::readMeetings()
{
    static const QString select = QStringLiteral(
        "SELECT block_id FROM (SELECT storage_id AS block_id FROM files WHERE internal=1 AND file_size<>0 "
        "UNION ALL SELECT continue_id FROM storage_info WHERE continue_id>0) AS leads "
        "GROUP BY block_id HAVING count(*)>1;");
    QVector<QVariantList> rows;
    if (m_areMeetingsKnown)
        return true;
    if (!m_connection.readRows(select, {}, rows))
        return false;
    for (const QVariantList &row : qAsConst(rows))
        m_meetings.insert(row.at(0).toLongLong());
    m_areMeetingsKnown = true;
    return true;
}

bool BlockRemoval::hasMeeting(qint64 firstId, qint64 lastId) const
{
    for (qint64 id = firstId; id <= lastId && !m_meetings.isEmpty(); ++id) {
        if (m_meetings.contains(id))
            return true;
    }
    return false;
}

bool BlockRemoval::removeRange(qint64 firstId, qint64 lastId) const
{
    return m_connection.runPrepared(QStringLiteral("DELETE FROM storage WHERE storage_id BETWEEN ? AND ?;"),
                                    {firstId, lastId}) &&
           m_connection.runPrepared(
               QStringLiteral("DELETE FROM storage_info WHERE storage_id BETWEEN ? AND ?;"),
               {firstId, lastId});
}

bool BlockRemoval::removeOwn(qint64 fileId, qint64 firstId)
{
    QVector<qint64> blocks;
    if (!readMeetings() || !readChain(firstId, blocks))
        return false;
    QSet<qint64> shared;
    const bool isMet = std::any_of(blocks.cbegin(), blocks.cend(),
                                   [this](qint64 block) { return m_meetings.contains(block); });
    if (isMet && !readShared(fileId, blocks, shared))
        return false;
    for (const qint64 block : qAsConst(blocks)) {
        if (shared.contains(block))
            break;
        if (!removeRange(block, block))
            return false;
    }
    return true;
}

bool BlockRemoval::readChain(qint64 firstId, QVector<qint64> &blocks) const
{
    static const QString select =
        ofChain("SELECT block_id, continue_id FROM chain, storage_info WHERE storage_id=block_id;");
    QVector<QVariantList> rows;
    if (!m_connection.readRows(select, {firstId}, rows))
        return false;
    QHash<qint64, qint64> next;
    for (const QVariantList &row : qAsConst(rows))
        next.insert(row.at(0).toLongLong(), row.at(1).toLongLong());
    QSet<qint64> seen;
    // A damaged chain may lead back into itself; what has lost its link is the end.
    for (qint64 id = firstId; id > 0 && !seen.contains(id); id = next.value(id)) {
        blocks.append(id);
        seen.insert(id);
    }
    return true;
}

bool BlockRemoval::readShared(qint64 fileId, const QVector<qint64> &blocks, QSet<qint64> &shared) const
{
    static const QString files =
        ofChain("SELECT file_id, storage_id FROM files WHERE internal=1 AND file_size<>0 "
                "AND storage_id IN (SELECT block_id FROM chain);");
    static const QString links = ofChain("SELECT storage_id, continue_id FROM storage_info "
                                         "WHERE continue_id IN (SELECT block_id FROM chain);");
    const qint64 firstId = blocks.first();
    QVector<QVariantList> rows;
    if (!m_connection.readRows(files, {firstId}, rows))
        return false;
    for (const QVariantList &row : qAsConst(rows)) {
        const qint64 other = row.at(0).toLongLong();
        if (other != fileId && !m_removedFiles.contains(other))
            shared.insert(row.at(1).toLongLong());
    }
    if (!m_connection.readRows(links, {firstId}, rows))
        return false;
    const QSet<qint64> own(blocks.cbegin(), blocks.cend());
    for (const QVariantList &row : qAsConst(rows)) {
        if (!own.contains(row.at(0).toLongLong()))
            shared.insert(row.at(1).toLongLong());
    }
    return true;
}
