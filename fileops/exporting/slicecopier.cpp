#include "fileops/exporting/slicecopier.h"

#include "core/records/filekind.h"
#include "fileops/exchange/quietstatements.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDebug>

namespace {
// As many as are cheap to try anew by halves, and as much as the cache of a database has room for.
constexpr int filesAtOnce = 2048;
constexpr qint64 bytesAtOnce = 32 << 20;
// Of large files, between two looks for a cancel.
constexpr qint64 blocksAtOnce = 4;

// For the ids of a range, whose ends are bound to it.
const QString inRange = QStringLiteral("IN (SELECT id FROM temp.%1 WHERE place BETWEEN ? AND ?)");

const QString insertFiles = QStringLiteral(
    "INSERT INTO exportTo.files (file_id, file_name, file_description, file_size, addition_date, "
    "modification_date, id_code, load_id, storage_id, thumbnail_id, data_checksum, internal) "
    "SELECT file_id, file_name, %2, ifnull(file_size, 0), ifnull(addition_date, 0), "
    "ifnull(modification_date, 0), id_code, ifnull(load_id, 0), ifnull(storage_id, 0), thumbnail_id, "
    "ifnull(data_checksum, 0), internal FROM temp.%3 AS ids CROSS JOIN main.files ON file_id=ids.id "
    "WHERE ids.place BETWEEN ? AND ?;");
// Where two files share a row, so do their copies.
const QString insertPaths =
    QStringLiteral("INSERT OR IGNORE INTO exportTo.file_paths (path_id, path, rel_path) "
                   "SELECT path_id, path, rel_path FROM main.file_paths WHERE path_id IN "
                   "(SELECT storage_id FROM main.files WHERE internal=0 AND file_id %1);");
const QString insertAllTags =
    QStringLiteral("INSERT OR IGNORE INTO exportTo.file_tag (file_id, tag_id) "
                   "SELECT file_id, tag_id FROM temp.%3 AS ids CROSS JOIN main.file_tag ON file_id=ids.id "
                   "WHERE ids.place BETWEEN ? AND ?;");
// The sign keeps SQLite from looking for each tag on each file.
const QString insertTags =
    QString(insertAllTags)
        .replace(QLatin1String("?;"), QLatin1String("? AND +tag_id IN (SELECT tag_id FROM exportTo.tags);"));
const QString insertThumbnails =
    QStringLiteral("INSERT OR IGNORE INTO exportTo.thumbnails (thumbnail_id, thumbnail) "
                   "SELECT thumbnail_id, thumbnail FROM main.thumbnails WHERE thumbnail_id IN "
                   "(SELECT thumbnail_id FROM main.files WHERE thumbnail_id>0 AND file_id %1);");
// Asked for by itself: a join would carry the contents along.
const QString blockLength =
    QStringLiteral("(SELECT ifnull(iif(typeof(data)='blob', length(data), length(CAST(data AS BLOB))), 0) "
                   "FROM main.storage AS block WHERE block.storage_id=info.storage_id)");
// An empty file has an id, which may be that of another file's block.
const QString noteFirstBlocks =
    QStringLiteral("INSERT INTO temp.mem_export_blocks (file_id, file_size, storage_id, continue_id, bytes) "
                   "SELECT file.file_id, file.file_size, info.storage_id, ifnull(info.continue_id, 0), %4 "
                   "FROM temp.%3 AS ids CROSS JOIN main.files AS file ON file.file_id=ids.id "
                   "LEFT JOIN main.storage_info AS info ON info.storage_id=file.storage_id "
                   "WHERE file.internal=1 AND ifnull(file.file_size, -1)<>0 AND ids.place BETWEEN ? AND ? "
                   "ORDER BY info.storage_id;");
// Most files have none. A chain that leads back into itself ends, as each block is noted once.
const QString noteLaterBlocks = QStringLiteral(
    "INSERT INTO temp.mem_export_blocks (file_id, storage_id, continue_id, bytes) "
    "WITH RECURSIVE chain(file_id, storage_id, continue_id) AS ("
    "SELECT link.file_id, info.storage_id, ifnull(info.continue_id, 0) "
    "FROM temp.mem_export_blocks AS link JOIN main.storage_info AS info ON info.storage_id=link.continue_id "
    "WHERE link.continue_id>0 "
    "UNION SELECT chain.file_id, info.storage_id, ifnull(info.continue_id, 0) FROM chain "
    "JOIN main.storage_info AS info ON info.storage_id=chain.continue_id WHERE chain.continue_id>0) "
    "SELECT file_id, storage_id, continue_id, %4 FROM chain AS info ORDER BY storage_id;");
// Blocks that are missing, no last one, or too few bytes; sizes of more than 31 bits may stand there cut to a
// negative one. The size stands beside the first block, and one that holds it all needs no sum.
const QString countDamaged =
    QStringLiteral("SELECT count(*) FROM (SELECT 1 FROM temp.mem_export_blocks "
                   "WHERE NOT (continue_id<=0 AND ifnull(bytes>=file_size, 0)) GROUP BY file_id "
                   "HAVING count(bytes)<count(*) OR min(continue_id)>0 OR total(bytes)<max(file_size));");
const QString insertLinks =
    QStringLiteral("INSERT OR IGNORE INTO exportTo.storage_info (storage_id, continue_id) "
                   "SELECT storage_id, continue_id FROM temp.mem_export_blocks;");
const QString insertBlocks =
    QStringLiteral("INSERT OR IGNORE INTO exportTo.storage (storage_id, data) "
                   "SELECT block.storage_id, block.data FROM temp.mem_export_blocks AS link "
                   "CROSS JOIN main.storage AS block ON block.storage_id=link.storage_id "
                   "WHERE link.place BETWEEN ? AND ?;");
} // namespace

SliceCopier::SliceCopier(FileOperationWorker &worker, QuietStatements &statements,
                         const ExportRequest &request, const QString &idTable, ExportSummary &summary)
    : m_worker(worker),
      m_statements(statements),
      m_request(request),
      m_summary(summary),
      m_idTable(idTable),
      m_total(request.fileIds.size())
{
}

bool SliceCopier::prepare()
{
    cleanUp();
    return m_statements.run(
        QStringLiteral("CREATE TEMPORARY TABLE mem_export_blocks (place INTEGER PRIMARY KEY, "
                       "file_id INTEGER NOT NULL, file_size, storage_id INTEGER, continue_id, bytes);"));
}

void SliceCopier::cleanUp()
{
    m_statements.run(QStringLiteral("DROP TABLE IF EXISTS temp.mem_export_blocks;"));
}

bool SliceCopier::run()
{
    qDebug("SQLiteExporter::exportFiles() - exporting from SQLite db");
    qint64 next = 1;
    while (next <= m_total) {
        if (m_worker.shouldEnd()) {
            qDebug("SQLiteExporter::exportFiles() - stopped! Exiting.");
            return false;
        }
        Range range;
        if (!readRange(next, range)) {
            failure();
            return false;
        }
        if (range.last < next)
            break; // fewer than were asked for, as some were named twice
        if (!copy(range))
            return false;
        next = range.last + 1;
    }
    return true;
}

/** As many of the next files as go at once: all that were looked at, unless their contents are too much. */
bool SliceCopier::readRange(qint64 first, Range &range)
{
    TableData table;
    const QString select =
        QStringLiteral("SELECT ifnull(max(ids.place), 0), count(file.file_id), "
                       "ifnull(max(file.internal=0), 0), ifnull(max(file.thumbnail_id>0), 0), "
                       "total(iif(file.internal=1, max(0, file.file_size), 0)) FROM temp.%1 AS ids "
                       "LEFT JOIN main.files AS file ON file.file_id=ids.id "
                       "WHERE ids.place BETWEEN ? AND ?;")
            .arg(m_idTable);
    if (!m_statements.read(select, table, {first, first + filesAtOnce - 1}) || table.isEmpty())
        return false;
    const TableRowData &row = *table.constFirst();
    range.first = first;
    range.last = qMax(first - 1, row.at(0).toLongLong());
    range.files = row.at(1).toLongLong();
    range.hasPaths = row.at(2).toBool();
    range.hasThumbnails = row.at(3).toBool();
    const double bytes = row.at(4).toDouble();
    freeRows(table);
    if (m_request.form == ExportRequest::Database && bytes > bytesAtOnce && !cutRange(range))
        return false;
    m_summary.filesGone += range.places() - range.files;
    return true;
}

/** To as much contents as goes at once, one file at least. */
bool SliceCopier::cutRange(Range &range)
{
    TableData table;
    const QString select =
        QStringLiteral("SELECT ids.place, file.file_id, file.internal, file.file_size "
                       "FROM temp.%1 AS ids LEFT JOIN main.files AS file ON file.file_id=ids.id "
                       "WHERE ids.place BETWEEN ? AND ? ORDER BY ids.place;")
            .arg(m_idTable);
    if (!m_statements.read(select, table, {range.first, range.last}))
        return false;
    range.last = range.first - 1;
    range.files = 0;
    qint64 bytes = 0;
    for (const TableRowData *row : qAsConst(table)) {
        if (row->at(2).toInt() == FileKind::internal)
            bytes += qMax<qint64>(0, row->at(3).toLongLong());
        if (range.places() > 0 && bytes > bytesAtOnce)
            break;
        range.last = row->at(0).toLongLong();
        range.files += row->at(1).isNull() ? 0 : 1;
    }
    freeRows(table);
    return true;
}

bool SliceCopier::copy(const Range &range)
{
    if (range.files == 0)
        return true;
    const Outcome outcome = tryCopy(range);
    if (outcome == Copied) {
        m_summary.files += range.files;
        reportProgress(range, 1);
        return true;
    }
    if (outcome == Lost || m_worker.shouldEnd())
        return false;
    return range.places() > 1 ? copyHalves(range) : skip(range, outcome);
}

bool SliceCopier::copyHalves(const Range &range)
{
    const qint64 middle = range.first + range.places() / 2;
    const QString count = QStringLiteral("SELECT count(*) FROM main.files WHERE file_id %1;");
    for (int side = 0; side < 2; ++side) {
        Range half = range;
        (side == 0 ? half.last : half.first) = side == 0 ? middle - 1 : middle;
        if (!countOf(half, count, half.files)) {
            failure();
            return false;
        }
        if (!copy(half))
            return false;
    }
    return true;
}

SliceCopier::Outcome SliceCopier::tryCopy(const Range &range)
{
    if (!m_statements.run(QStringLiteral("SAVEPOINT addExport;")))
        return failure();
    const Outcome outcome = copyAll(range);
    if (outcome != Copied && !m_statements.run(QStringLiteral("ROLLBACK TO SAVEPOINT addExport;")))
        return Lost;
    return m_statements.run(QStringLiteral("RELEASE SAVEPOINT addExport;")) ? outcome : Lost;
}

SliceCopier::Outcome SliceCopier::copyAll(const Range &range)
{
    const QString description =
        m_request.exportDescriptions ? QStringLiteral("file_description") : QStringLiteral("''");
    QString files = insertFiles;
    files.replace(QLatin1String("%2"), description);
    if (!runOn(range, files) || (range.hasPaths && !runOn(range, insertPaths)) ||
        !runOn(range, m_hasAllTags ? insertAllTags : insertTags))
        return failure();
    return m_request.form == ExportRequest::Database ? copyContents(range) : Copied;
}

SliceCopier::Outcome SliceCopier::copyContents(const Range &range)
{
    if ((range.hasThumbnails && !runOn(range, insertThumbnails)) ||
        !m_statements.run(QStringLiteral("DELETE FROM temp.mem_export_blocks;")) ||
        !runOn(range, noteFirstBlocks) ||
        !m_statements.run(QString(noteLaterBlocks).replace(QLatin1String("%4"), blockLength)))
        return failure();
    qint64 damaged = 0;
    if (!m_statements.readNumber(countDamaged, damaged))
        return failure();
    return damaged > 0 ? Damaged : copyBlocks(range);
}

SliceCopier::Outcome SliceCopier::copyBlocks(const Range &range)
{
    qint64 count = 0;
    if (!m_statements.run(insertLinks) ||
        !m_statements.readNumber(QStringLiteral("SELECT count(*) FROM temp.mem_export_blocks;"), count))
        return failure();
    const qint64 step = count > 2 * range.places() ? blocksAtOnce : qMax<qint64>(1, count);
    for (qint64 first = 1; first <= count; first += step) {
        if (m_worker.shouldEnd())
            return Lost;
        if (!m_statements.run(insertBlocks, {first, first + step - 1}))
            return failure();
        reportProgress(range, double(first) / double(count));
    }
    return Copied;
}

/** What remains of a range that is one file. */
bool SliceCopier::skip(const Range &range, Outcome outcome)
{
    qDebug("Error copying across file. *** ");
    TableData table;
    const QString select =
        QStringLiteral("SELECT file_name, id_code FROM main.files WHERE file_id ") + inRange.arg(m_idTable);
    QString name;
    if (m_statements.read(select, table, {range.first, range.last}) && !table.isEmpty())
        name = QStringLiteral("%1 (%2)").arg(table.constFirst()->at(0).toString(),
                                             table.constFirst()->at(1).toString());
    freeRows(table);
    const QString reason = outcome == Damaged
                               ? FileOperationWorker::tr("Their contents in the database are damaged:")
                               : FileOperationWorker::tr("The database says: %1.").arg(m_reason);
    m_summary.skipped[reason].append(name);
    return true;
}

bool SliceCopier::runOn(const Range &range, const QString &statement)
{
    QString filled = statement;
    filled.replace(QLatin1String("%1"), inRange.arg(m_idTable))
        .replace(QLatin1String("%3"), m_idTable)
        .replace(QLatin1String("%4"), blockLength);
    return m_statements.run(filled, {range.first, range.last});
}

bool SliceCopier::countOf(const Range &range, const QString &statement, qint64 &count)
{
    QString filled = statement;
    filled.replace(QLatin1String("%1"), inRange.arg(m_idTable));
    return m_statements.readNumber(filled, count, {range.first, range.last});
}

SliceCopier::Outcome SliceCopier::failure()
{
    m_reason = m_statements.reason();
    m_error = m_statements.error();
    return m_statements.isFatal() ? Lost : Failed;
}

void SliceCopier::reportProgress(const Range &range, double part)
{
    const double done = double(range.first - 1) + double(range.places()) * part;
    const int percent = qRound(done / double(m_total) * 100.0);
    if (m_progress.isDue(percent, range.last >= m_total && part >= 1))
        emit m_worker.operationProgress(FileOperationType::ExportOperation,
                                        FileOperationWorker::tr("Exporting files..."), percent);
}
