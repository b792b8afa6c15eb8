#include "fileops/importing/contentcomparison.h"

#include "db/sql/sqliteerrors.h"
#include "fileops/files/datachecksum.h"
#include "fileops/files/regularfile.h"
#include "fileops/importing/criticaldmerror.h"
#include "fileops/worker/fileoperationworker.h"

#include <QCryptographicHash>
#include <QSignalBlocker>

#include <cstring>

namespace {
constexpr int sliceSize = 256 * 1024;
} // namespace

/** The bytes of one side, from start to end. */
class ContentComparison::Stream
{
public:
    Stream(const ContentComparison &comparison, const Side &side)
        : m_side(side),
          m_walk(side.isOfSource ? comparison.m_sourceChain : comparison.m_ownChain, side.storageId,
                 side.size)
    {
        m_isReadable = side.isInternal || (!RegularFile::isSame(side.path, comparison.m_sourcePath) &&
                                           m_file.open(side.path) && m_file.size() == side.size);
    }

    bool isReadable() const { return m_isReadable; }
    bool isAtEnd() const { return m_position == m_bytes.size(); }
    const char *bytes() const { return m_bytes.constData() + m_position; }
    int count() const { return m_bytes.size() - m_position; }
    void skip(int count) { m_position += count; }

    /** The next bytes; none at the end. */
    void readNext()
    {
        m_position = 0;
        if (m_side.isInternal)
            readBlock();
        else
            readSlice();
    }

private:
    void readBlock()
    {
        m_bytes.clear();
        // A block without bytes is not the end.
        while (m_bytes.isEmpty() && m_walk.hasNext() && m_isReadable) {
            m_isReadable = m_walk.readNext();
            m_bytes = m_walk.block();
        }
        // Fewer bytes than recorded is a chain that lost its end.
        m_isReadable = m_isReadable && (!m_bytes.isEmpty() || m_walk.done() >= m_side.size);
    }

    void readSlice()
    {
        m_bytes.resize(sliceSize);
        const qint64 count = m_file.read(m_bytes.data(), sliceSize);
        m_isReadable = count >= 0;
        m_bytes.resize(int(qMax(qint64(0), count)));
    }

    const Side &m_side;
    BlockChain::Walk m_walk;
    RegularFile m_file;
    QByteArray m_bytes;
    int m_position = 0;
    bool m_isReadable = false;
};

ContentComparison::ContentComparison(FileOperationWorker &worker, const QString &sourcePath)
    : m_worker(worker),
      m_sourcePath(sourcePath),
      m_ownChain(ProviderConnection(worker, worker.connectionName())),
      m_sourceChain(ProviderConnection(worker, worker.connectionName()), QStringLiteral("fileSource"))
{
}

ContentComparison::Result ContentComparison::compare(const Side &left, const Side &right) const
{
    // What cannot be read is this file's own affair and decides here, it fails nothing.
    const QSignalBlocker blocker(&m_worker);
    m_worker.forgetLastError();
    Stream one(*this, left);
    Stream other(*this, right);
    while (one.isReadable() && other.isReadable() && !m_worker.shouldEnd()) {
        if (one.isAtEnd())
            one.readNext();
        if (other.isAtEnd())
            other.readNext();
        if (!one.isReadable() || !other.isReadable())
            break;
        const int count = qMin(one.count(), other.count());
        if (count == 0)
            return one.count() == other.count() ? Same : Different;
        if (std::memcmp(one.bytes(), other.bytes(), size_t(count)) != 0)
            return Different;
        one.skip(count);
        other.skip(count);
    }
    stopAtLock();
    return m_worker.shouldEnd() ? Different : Unreadable;
}

qint64 ContentComparison::checksumOf(const Side &side) const
{
    DataChecksum checksum;
    const bool isRead =
        readAll(side, [&checksum](const char *bytes, int count) { checksum.update(bytes, count); });
    return isRead ? qint64(checksum.take()) : qint64(-1);
}

QByteArray ContentComparison::hashOf(const Side &side) const
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    const bool isRead = readAll(side, [&hash](const char *bytes, int count) { hash.addData(bytes, count); });
    return isRead ? hash.result() : QByteArray();
}

bool ContentComparison::readAll(const Side &side, const std::function<void(const char *, int)> &take) const
{
    const QSignalBlocker blocker(&m_worker);
    m_worker.forgetLastError();
    Stream stream(*this, side);
    while (stream.isReadable() && !m_worker.shouldEnd()) {
        stream.readNext();
        if (stream.isReadable() && stream.count() == 0)
            return true;
        take(stream.bytes(), stream.count());
    }
    stopAtLock();
    return false;
}

void ContentComparison::stopAtLock() const
{
    // It says nothing about the contents.
    const QSqlError error = m_worker.lastError();
    if (SqliteErrors::isBusy(error))
        throw CriticalDMError(error);
}
