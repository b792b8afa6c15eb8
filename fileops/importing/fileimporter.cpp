#include "fileops/importing/fileimporter.h"

#include "db/sql/sqliteerrors.h"
#include "db/sql/transaction.h"
#include "fileops/importing/criticaldmerror.h"
#include "fileops/importing/importrun.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDebug>
#include <QPair>

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
    const ChunkRows::All &all = m_rows.begin();
    m_total = all.bytes + all.files * bytesOfFile;
    constexpr qint64 highest = std::numeric_limits<qint64>::max();
    qint64 last = std::numeric_limits<qint64>::min();
    do {
        m_run.stopIfEnded();
        reportProgress();
        qDebug("addFile():  Checking for duplicates.");
        const qint64 first = last == std::numeric_limits<qint64>::min() ? last : last + 1;
        last = m_rows.choose(first, highest);
        const ChunkRows::Range range = m_rows.range();
        if (range.count == 0)
            continue;
        qDebug() << "Adding file" << range.first << "and" << range.count - 1 << "others";
        if (!copyChunk()) {
            if (range.count == 1)
                m_rows.leaveOut(m_whyNot);
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
                m_rows.leaveOut(m_whyNot);
            continue;
        }
        const int half = ids.size() / 2;
        ranges.append({ids.at(half), ids.last()});
        ranges.append({ids.first(), ids.at(half - 1)});
    }
}

bool FileImporter::copyChunk()
{
    Savepoint savepoint(m_run.worker);
    if (!savepoint.isActive())
        throw CriticalDMError(m_run.worker.lastError());
    bool isSound = false;
    try {
        isSound = m_rows.copy([this](qint64 bytes) { reportProgress(bytes); });
        m_whyNot = ChunkRows::damageText();
    } catch (const CriticalDMError &failure) {
        if (isFatal(failure))
            throw;
        m_whyNot = tr("Files that could not be read or written: %1");
    }
    if (!(isSound ? savepoint.release() : savepoint.rollBack()))
        throw CriticalDMError(m_run.worker.lastError());
    if (isSound)
        m_rows.tellLeftOut();
    return isSound;
}

bool FileImporter::isFatal(const CriticalDMError &failure) const
{
    return m_run.worker.shouldEnd() || SqliteErrors::isBusy(failure.error()) ||
           SqliteErrors::isOneOf(failure.error(),
                                 {SQLITE_NOMEM, SQLITE_INTERRUPT, SQLITE_IOERR, SQLITE_FULL, SQLITE_CORRUPT});
}

void FileImporter::reportProgress(qint64 bytes)
{
    const double share = m_total > 0 ? (m_done + double(bytes)) / m_total : 0.0;
    m_run.tell(tr("Copying files..."),
               firstPercent + int(qBound(0.0, share, 1.0) * (lastPercent - firstPercent)));
}
