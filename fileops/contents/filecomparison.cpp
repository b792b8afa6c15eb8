#include "fileops/contents/filecomparison.h"

#include "fileops/contents/blockchain.h"
#include "fileops/files/regularfile.h"
#include "fileops/looks/awaitedlook.h"
#include "fileops/worker/fileoperationworker.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace {

constexpr int sliceSize = 256 * 1024;
// Contents up to this size are held while their group is parted, in so many groups at most.
constexpr qint64 heldSize = 1024LL * 1024;
constexpr int heldGroups = 16;

FileComparison::Result compareOpen(RegularFile &left, RegularFile &right,
                                   const AwaitedLook::ShouldEnd &shouldEnd)
{
    const auto leftSlice = std::make_unique<char[]>(sliceSize);
    const auto rightSlice = std::make_unique<char[]>(sliceSize);
    while (!shouldEnd()) {
        const qint64 leftCount = left.read(leftSlice.get(), sliceSize);
        const qint64 rightCount = right.read(rightSlice.get(), sliceSize);
        if (leftCount < 0 || rightCount < 0)
            return FileComparison::Unreadable;
        if (leftCount != rightCount || std::memcmp(leftSlice.get(), rightSlice.get(), size_t(leftCount)) != 0)
            return FileComparison::Different;
        if (leftCount < sliceSize)
            return FileComparison::Same;
    }
    return FileComparison::Different;
}

FileComparison::Result compare(const QString &leftPath, const QString &rightPath,
                               const AwaitedLook::ShouldEnd &shouldEnd)
{
    RegularFile left;
    RegularFile right;
    if (!left.open(leftPath) || !right.open(rightPath))
        return FileComparison::Unreadable;
    return left.size() == right.size() ? compareOpen(left, right, shouldEnd) : FileComparison::Different;
}
} // namespace

struct FileComparison::Group
{
    QVector<int> members;
    QByteArray content;
    bool isHeld = false;
};

FileComparison::FileComparison(FileOperationWorker &worker) : m_worker(worker) {}

FileComparison::Result FileComparison::compareFiles(const QString &leftPath, const QString &rightPath)
{
    // The other file may be on a disk that does not answer.
    const auto look = [leftPath, rightPath](const AwaitedLook::ShouldEnd &shouldEnd) {
        return compare(leftPath, rightPath, shouldEnd);
    };
    const auto found = AwaitedLook::run(look, [this] { return m_worker.shouldEnd(); });
    return found.value_or(m_worker.shouldEnd() ? Different : Unreadable);
}

FileComparison::Result FileComparison::compareWithBlocks(const QString &path, qint64 storageId, qint64 size)
{
    RegularFile file;
    if (!file.open(path))
        return Unreadable;
    if (file.size() != size)
        return Different;
    const BlockChain chain(ProviderConnection(m_worker, m_worker.connectionName()));
    BlockChain::Walk walk(chain, storageId, size);
    while (walk.done() < size && !m_worker.shouldEnd()) {
        // A chain that ends early is a damage, and says nothing of the contents.
        if (!walk.readNext() || walk.block().isEmpty())
            return Unreadable;
        const QByteArray &block = walk.block();
        m_left.resize(block.size());
        const qint64 count = file.read(m_left.data(), block.size());
        if (count < 0)
            return Unreadable;
        if (count != block.size() || std::memcmp(m_left.constData(), block.constData(), size_t(count)) != 0)
            return Different;
    }
    return walk.done() == size ? Same : Different;
}

QVector<QVector<int>> FileComparison::split(const QStringList &paths, qint64 size)
{
    QVector<Group> groups;
    for (int i = 0; i < paths.size() && !m_worker.shouldEnd(); ++i) {
        QByteArray content;
        const bool isHeld = size <= heldSize && readWhole(paths.at(i), size, content);
        const auto fits = [&](const Group &group) {
            if (isHeld && group.isHeld)
                return content == group.content;
            return compareFiles(paths.at(group.members.first()), paths.at(i)) != Different;
        };
        const auto found = std::find_if(groups.begin(), groups.end(), fits);
        if (found != groups.end())
            found->members.append(i);
        else
            groups.append({{i}, content, isHeld && groups.size() < heldGroups});
    }
    QVector<QVector<int>> result;
    for (const Group &group : qAsConst(groups))
        result.append(group.members);
    return result;
}

bool FileComparison::readWhole(const QString &path, qint64 size, QByteArray &content)
{
    RegularFile file;
    if (!file.open(path) || file.size() != size)
        return false;
    content.resize(int(size));
    return file.read(content.data(), size) == size;
}
