#include "fileops/contents/blockstorage.h"

#include "core/records/filekind.h"
#include "db/sql/sqliteerrors.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDebug>
#include <QFile>
#include <QSignalBlocker>

#include <sys/stat.h>

namespace {
/** Whether a statement met spoilt pages: others may be sound. */
bool isDamage(const QSqlError &error)
{
    // A statement that has no end is ended.
    return SqliteErrors::isOneOf(error, {SQLITE_CORRUPT, SQLITE_INTERRUPT}) ||
           error.nativeErrorCode().startsWith(QLatin1String("XX"));
}

/** An open file without a name any more can still be written to, but never found again. */
bool isRemoved(const QFile &file)
{
    struct stat status = {};
    return ::fstat(file.handle(), &status) == 0 && status.st_nlink == 0;
}
} // namespace

BlockStorage::BlockStorage(FileOperationWorker &worker)
    : m_worker(worker), m_chain(ProviderConnection(worker, worker.connectionName()))
{
}

BlockStorage::Result BlockStorage::readInto(qint64 fileId, QFile &target, const AtBlock &atBlock)
{
    int internal = 0;
    qint64 size = 0;
    qint64 storageId = 0;
    m_worker.forgetLastError();
    if (!m_worker.readFileStorageInfo(fileId, internal, size, storageId))
        return whyNothingWasRead();
    if (internal != FileKind::internal) {
        qDebug() << "*** Error: File is not internal; cannot extract it.";
        return Unreadable;
    }
    const Result result = writeChain(storageId, size, target, atBlock);
    if (result != Written)
        return result;
    if (isRemoved(target)) {
        qDebug() << "File does not exist!";
        return Failed;
    }
    return Written;
}

BlockStorage::Result BlockStorage::writeChain(qint64 firstId, qint64 size, QFile &target,
                                              const AtBlock &atBlock)
{
    BlockChain::Walk walk(m_chain, firstId, size);
    while (walk.hasNext()) {
        if (m_worker.shouldEnd())
            return Failed;
        const Result result = readNext(walk);
        if (result != Written)
            return result;
        if (!writeAll(target, walk.block().constData(), walk.block().size())) {
            qDebug() << "extractInternalToFile(): Error writing to file.";
            return Failed;
        }
        if (atBlock)
            atBlock(walk.done(), size);
    }
    // More is right where a size did not fit its column, fewer is a chain that lost its end.
    if (walk.done() < size)
        return Unreadable;
    return target.flush() ? Written : Failed;
}

bool BlockStorage::writeAll(QFile &target, const char *bytes, qint64 length)
{
    // On a disk that becomes full a part goes through first, and only the rest is told to fail.
    while (length > 0) {
        const qint64 count = target.write(bytes, length);
        if (count <= 0)
            return false;
        bytes += count;
        length -= count;
    }
    return true;
}

BlockStorage::Result BlockStorage::readNext(BlockChain::Walk &walk)
{
    m_worker.forgetLastError();
    {
        // A damaged page is this file's alone, and told with its name.
        const QSignalBlocker blocker(&m_worker);
        if (walk.readNext())
            return Written;
    }
    const Result result = whyNothingWasRead();
    if (m_worker.isConnectionLost())
        emit m_worker.connectionError();
    else if (result == Failed)
        m_worker.emitError(m_worker.lastError());
    return result;
}

BlockStorage::Result BlockStorage::whyNothingWasRead() const
{
    if (m_worker.isConnectionLost())
        return Failed;
    const QSqlError error = m_worker.lastError();
    return error.isValid() && !isDamage(error) ? Failed : Unreadable;
}
