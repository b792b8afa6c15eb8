#include "fileops/tracking/changedcopies.h"

#include "core/records/filekind.h"
#include "fileops/contents/filecomparison.h"
#include "fileops/files/regularfile.h"
#include "fileops/looks/awaitedlook.h"
#include "fileops/tracking/refreshedcontents.h"
#include "fileops/worker/fileoperationworker.h"

#include <algorithm>

namespace {
/** What a full disk or a crash empties says nothing of other empty files. */
bool mayBeCopy(const ModifiedFile &file)
{
    return file.size > 0 && file.hasOtherContents();
}
} // namespace

bool ChangedCopies::find(const ModifiedFileList &files, QHash<qint64, qint64> &keptFiles)
{
    QVector<qint64> checksums;
    for (const ModifiedFile &file : files) {
        if (mayBeCopy(file))
            checksums.append(file.checksum);
    }
    std::sort(checksums.begin(), checksums.end());
    checksums.erase(std::unique(checksums.begin(), checksums.end()), checksums.end());
    QHash<qint64, qint64> checksumsByFile;
    if (!m_worker.readChecksums(checksums, checksumsByFile))
        return false;
    QHash<qint64, DatabaseFile> others;
    if (!readDatabaseFiles(m_worker, checksumsByFile.keys().toVector(), others))
        return false;
    QHash<qint64, QVector<qint64>> idsByChecksum;
    for (auto it = checksumsByFile.cbegin(); it != checksumsByFile.cend(); ++it)
        idsByChecksum[it.value()].append(it.key());
    for (const ModifiedFile &file : files) {
        if (!mayBeCopy(file))
            continue;
        QVector<qint64> ids = idsByChecksum.value(file.checksum);
        std::sort(ids.begin(), ids.end());
        const auto isKept = [&](qint64 id) {
            return !keptFiles.contains(id) && others.contains(id) && isCopy(file, others[id]);
        };
        const auto kept = std::find_if(ids.cbegin(), ids.cend(), isKept);
        if (m_worker.shouldEnd())
            return false;
        if (kept != ids.cend())
            keptFiles.insert(file.fileId, *kept);
    }
    return true;
}

bool ChangedCopies::isCopy(const ModifiedFile &file, const DatabaseFile &other) const
{
    if (other.fileId == file.fileId || other.size != file.size || other.internal == FileKind::hyperlink ||
        RefreshedContents::of(m_worker).mayBeOlder(other.fileId, file.path))
        return false;
    FileComparison comparison(m_worker);
    if (other.internal == FileKind::internal)
        return comparison.compareWithBlocks(file.path, other.storageId, other.size) == FileComparison::Same;
    // Two records of one file on the disk are none the less two.
    const auto look = [path = file.path, otherPath = other.path](const AwaitedLook::ShouldEnd &) {
        return RegularFile::isSame(path, otherPath);
    };
    return !AwaitedLook::run(look, [this] { return m_worker.shouldEnd(); }).value_or(true) &&
           comparison.compareFiles(file.path, other.path) == FileComparison::Same;
}
