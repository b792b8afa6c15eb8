#include "fileops/contents/filechecksums.h"

#include "fileops/files/datachecksum.h"
#include "fileops/files/regularfile.h"

#include <memory>
#include <vector>

namespace {
// Small enough for the processor's cache, so that hashing does not fetch the bytes from memory again.
constexpr qint64 sliceSize = 256LL * 1024;
constexpr qint64 groupBytes = 1024LL * 1024;
constexpr int groupFiles = 64;

/** Small files, read one after the other and hashed side by side. */
class Group
{
public:
    Group() : m_bytes(new char[groupBytes]) {}

    bool isFull() const { return m_checksums.size() == groupFiles || m_used + sliceSize > groupBytes; }

    /** False when the file is too large for here. One that grows meanwhile counts as it was on opening. */
    bool take(RegularFile &file, FileChecksum &result)
    {
        if (file.size() >= sliceSize)
            return false;
        // Some files of the system name no size and have contents all the same.
        const qint64 count = file.read(m_bytes.get() + m_used, qMax(qint64(1), file.size()));
        if (count < 0 || count > file.size())
            return count < 0;
        result.isRead = true;
        result.size = count;
        result.modified = file.modified();
        result.stamp = file.stamp();
        m_starts.push_back(m_used);
        m_results.push_back(&result);
        m_checksums.emplace_back();
        m_used += count;
        return true;
    }

    void finish()
    {
        std::vector<DataChecksum::Stream> streams;
        streams.reserve(m_results.size());
        for (size_t i = 0; i < m_results.size(); ++i)
            streams.push_back({&m_checksums[i], m_bytes.get() + m_starts[i], m_results[i]->size});
        DataChecksum::updateAll(streams.data(), static_cast<int>(streams.size()));
        for (size_t i = 0; i < m_results.size(); ++i)
            m_results[i]->checksum = m_checksums[i].take();
        m_starts.clear();
        m_results.clear();
        m_checksums.clear();
        m_used = 0;
    }

private:
    std::unique_ptr<char[]> m_bytes;
    qint64 m_used = 0;
    std::vector<qint64> m_starts;
    std::vector<FileChecksum *> m_results;
    std::vector<DataChecksum> m_checksums;
};
} // namespace

FileChecksum FileChecksums::ofFile(const QString &path, const std::function<bool()> &shouldEnd)
{
    FileChecksum result;
    RegularFile file;
    if (!file.open(path))
        return result;
    const auto slice = std::make_unique<char[]>(sliceSize);
    DataChecksum checksum;
    qint64 count = 0;
    do {
        if (shouldEnd && shouldEnd())
            return FileChecksum();
        count = file.read(slice.get(), sliceSize);
        if (count < 0)
            return FileChecksum();
        checksum.update(slice.get(), count);
        result.size += count;
    } while (count == sliceSize);
    result.isRead = true;
    result.checksum = checksum.take();
    result.modified = file.modified();
    result.stamp = file.stamp();
    return result;
}

QVector<FileChecksum> FileChecksums::ofFiles(const QStringList &paths, const std::function<bool()> &shouldEnd,
                                             const std::function<void(int)> &atFile)
{
    QVector<FileChecksum> results(paths.size());
    FileChecksum *places = results.data();
    Group group;
    for (int i = 0; i < paths.size(); ++i) {
        if (shouldEnd && shouldEnd())
            break;
        if (atFile)
            atFile(i);
        RegularFile file;
        if (file.open(paths.at(i)) && !group.take(file, places[i]))
            places[i] = ofFile(paths.at(i), shouldEnd);
        if (group.isFull())
            group.finish();
    }
    group.finish();
    return results;
}
