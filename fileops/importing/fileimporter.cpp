#include "fileops/importing/fileimporter.h"

#include "db/sql/transaction.h"
#include "fileops/importing/criticaldmerror.h"
#include "fileops/importing/importrun.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDebug>
#include <QPair>

#include <algorithm>
#include <iterator>
#include <limits>

namespace {
// What a file without contents costs, in bytes of one with them.
constexpr int bytesOfFile = 4096;
// The share of the copying in the percentage of the whole import.
constexpr int firstPercent = 30;
constexpr int lastPercent = 95;

} // namespace

FileImporter::FileImporter(ImportRun &run, bool takesDescriptions)
    : m_run(run), m_rows(run, takesDescriptions)
{
}

void FileImporter::copyFiles()
{
    m_total = m_run.statements.number(
        QStringLiteral("SELECT CAST(total(%1+CASE WHEN internal=1 THEN max(0,file_size) ELSE 0 END) "
                       "AS INTEGER) FROM mem_files WHERE fate=0")
            .arg(bytesOfFile));
    m_rows.begin();
    constexpr qint64 highest = std::numeric_limits<qint64>::max();
    qint64 last = std::numeric_limits<qint64>::min();
    do {
        m_run.stopIfEnded();
        reportProgress();
        const qint64 first = last == std::numeric_limits<qint64>::min() ? last : last + 1;
        last = m_rows.choose(first, highest);
        const ChunkRows::Range range = m_rows.range();
        if (range.count == 0)
            continue;
        qDebug() << "Adding file" << range.first << "and" << range.count - 1 << "others";
        if (!copyChunk()) {
            if (range.count == 1)
                giveUp(range.first);
            else
                copyRange(range.first, range.last);
        }
        m_done += double(m_rows.bytes()) + double(range.count) * bytesOfFile;
    } while (last < highest);
}

void FileImporter::copyRange(qint64 first, qint64 last)
{
    // A list of what is left to be tried: each half is smaller, so there are few at a time.
    QVector<QPair<qint64, qint64>> ranges{{first, last}};
    while (!ranges.isEmpty()) {
        m_run.stopIfEnded();
        const auto [from, to] = ranges.takeLast();
        const qint64 reached = m_rows.choose(from, to);
        const QVector<qint64> ids = m_rows.fileIds();
        if (reached < to)
            ranges.append({reached + 1, to});
        if (ids.isEmpty())
            continue;
        if (ids.size() == 1) {
            if (!copyChunk())
                giveUp(ids.first());
            continue;
        }
        const int half = ids.size() / 2;
        ranges.append({ids.at(half), ids.last()});
        ranges.append({ids.first(), ids.at(half - 1)});
    }
}

void FileImporter::giveUp(qint64 fileId)
{
    m_rows.leaveOut(fileId, tr("Files that could not be read or written: %1"));
    m_rows.tellLeftOut();
}

bool FileImporter::copyChunk()
{
    Savepoint savepoint(m_run.worker);
    if (!savepoint.isActive())
        throw CriticalDMError(m_run.worker.lastError());
    try {
        m_rows.copy([this](qint64 bytes) { reportProgress(bytes); });
    } catch (const CriticalDMError &failure) {
        if (isFatal(failure) || !savepoint.rollBack())
            throw;
        return false;
    }
    if (!savepoint.release())
        throw CriticalDMError(m_run.worker.lastError());
    m_rows.tellLeftOut();
    return true;
}

bool FileImporter::isFatal(const CriticalDMError &failure) const
{
    // Of SQLite: busy, locked, out of memory, interrupted, disk errors, full.
    static constexpr int ofAll[] = {5, 6, 7, 9, 10, 13};
    const int code = failure.error().nativeErrorCode().toInt() & 0xff;
    return m_run.worker.shouldEnd() || std::find(std::begin(ofAll), std::end(ofAll), code) != std::end(ofAll);
}

void FileImporter::reportProgress(qint64 bytes)
{
    const double share = m_total > 0 ? (m_done + double(bytes)) / double(m_total) : 0.0;
    m_run.tell(tr("Copying files..."),
               firstPercent + int(qBound(0.0, share, 1.0) * (lastPercent - firstPercent)));
}
