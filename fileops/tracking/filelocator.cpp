#include "fileops/tracking/filelocator.h"

#include "fileops/contents/filechecksums.h"
#include "fileops/files/filelook.h"
#include "fileops/files/filenames.h"
#include "fileops/files/folderentries.h"

#include <algorithm>

namespace {
QString nameOf(const QString &path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}
} // namespace

FileLocator::FileLocator(const QVector<MissingFile> &files, const ShouldEnd &shouldEnd)
    : m_files(files), m_shouldEnd(shouldEnd)
{
    for (int i = 0; i < m_files.size(); ++i) {
        m_byName[nameOf(m_files.at(i).path)].append(i);
        m_withHidden = m_withHidden || m_files.at(i).path.contains(QLatin1String("/."));
        // All empty files are equal.
        if (m_files.at(i).size > 0)
            m_bySize[m_files.at(i).size].append(i);
    }
}

FileLocator::FileLocator(const FileLocator &other)
    : m_files(other.m_files),
      m_shouldEnd([] { return true; }),
      m_byName(other.m_byName),
      m_bySize(other.m_bySize),
      m_nameHits(other.m_nameHits),
      m_sizeHits(other.m_sizeHits),
      m_excluded(other.m_excluded),
      m_taken(other.m_taken),
      m_located(other.m_located)
{
}

void FileLocator::freeze()
{
    const QMutexLocker locker(&m_mutex);
    m_isFrozen = true;
}

void FileLocator::walk(const QStringList &folders)
{
    QSet<QString> seen;
    // A folder's own files come before those of the folders below it, and these in the order of their names.
    QStringList open;
    for (auto folder = folders.crbegin(); folder != folders.crend(); ++folder)
        open.append(*folder);
    while (!open.isEmpty() && !m_shouldEnd()) {
        const QString folder = open.takeLast();
        // One may stand in the list below another one.
        if (seen.contains(folder))
            continue;
        seen.insert(folder);
        FolderEntries entries = FolderEntries::of(
            folder, m_shouldEnd, m_withHidden ? FolderEntries::WithHidden : FolderEntries::WithoutHidden);
        std::sort(entries.files.begin(), entries.files.end());
        for (const QString &name : qAsConst(entries.files)) {
            if (m_shouldEnd())
                return;
            look(folder, name);
        }
        std::sort(entries.folders.begin(), entries.folders.end());
        for (auto name = entries.folders.crbegin(); name != entries.folders.crend(); ++name)
            open.append(Database::pathIn(folder, *name));
    }
}

void FileLocator::look(const QString &folder, const QString &name)
{
    const QString path = Database::pathIn(folder, name);
    const FileLook found = FileLook::at(path);
    const QMutexLocker locker(&m_mutex);
    if (!found.isThere || m_isFrozen)
        return;
    if (m_byName.contains(name))
        m_nameHits[name].append({path, found.size});
    if (m_bySize.contains(found.size))
        m_sizeHits[found.size].append(path);
}

QSet<QString> FileLocator::candidates() const
{
    QSet<QString> paths;
    for (const QVector<Hit> &hits : m_nameHits) {
        for (const Hit &hit : hits)
            paths.insert(hit.path);
    }
    for (const QStringList &hits : m_sizeHits) {
        for (const QString &path : hits)
            paths.insert(path);
    }
    return paths;
}

void FileLocator::exclude(const QSet<QString> &paths)
{
    m_excluded += paths;
}

QHash<qint64, QString> FileLocator::locate()
{
    for (auto name = m_byName.cbegin(); name != m_byName.cend(); ++name)
        locateByName(*name, m_nameHits.value(name.key()));
    locateByContents();
    return m_located;
}

void FileLocator::locateByName(const QVector<int> &sameName, const QVector<Hit> &hits)
{
    QVector<int> open;
    // Where several files have one name, their sizes tell them apart.
    QHash<qint64, QVector<const Hit *>> bySize;
    if (sameName.size() > 1) {
        for (auto hit = hits.crbegin(); hit != hits.crend(); ++hit)
            bySize[hit->size].append(&*hit);
    }
    for (const int file : sameName) {
        if (m_located.contains(m_files.at(file).fileId))
            continue;
        QVector<const Hit *> &left = bySize[m_files.at(file).size];
        while (!left.isEmpty() && !isFree(left.last()->path))
            left.removeLast();
        if (left.isEmpty())
            open.append(file);
        else
            settle(file, left.takeLast()->path);
    }
    auto file = open.cbegin();
    for (auto hit = hits.cbegin(); hit != hits.cend() && file != open.cend(); ++hit) {
        if (isFree(hit->path))
            settle(*file++, hit->path);
    }
}

void FileLocator::locateByContents()
{
    for (auto size = m_bySize.cbegin(); size != m_bySize.cend() && !m_shouldEnd(); ++size) {
        const bool isOpen = std::any_of(size->cbegin(), size->cend(), [this](int file) {
            return !m_located.contains(m_files.at(file).fileId);
        });
        if (isOpen)
            matchContents(m_sizeHits.value(size.key()), size.key());
    }
}

void FileLocator::matchContents(const QStringList &paths, qint64 size)
{
    QStringList free;
    std::copy_if(paths.cbegin(), paths.cend(), std::back_inserter(free),
                 [this](const QString &path) { return isFree(path); });
    const QVector<FileChecksum> checksums = FileChecksums::ofFiles(free, m_shouldEnd);
    QHash<qint64, QStringList> pathsByChecksum;
    for (int i = 0; i < free.size(); ++i) {
        const FileChecksum &read = checksums.at(i);
        if (read.isRead && read.size == size)
            pathsByChecksum[read.checksum].append(free.at(i));
    }
    QHash<qint64, QVector<int>> filesByChecksum;
    const QVector<int> files = m_bySize.value(size);
    for (const int file : files) {
        const MissingFile &missing = m_files.at(file);
        if (!m_located.contains(missing.fileId) && pathsByChecksum.contains(missing.checksum))
            filesByChecksum[missing.checksum].append(file);
    }
    // What a stop has left unread may have been the better one.
    if (m_shouldEnd())
        return;
    for (auto it = filesByChecksum.cbegin(); it != filesByChecksum.cend(); ++it)
        matchEqual(*it, pathsByChecksum.value(it.key()));
}

void FileLocator::matchEqual(QVector<int> files, QStringList paths)
{
    QHash<qint64, QStringList> pathsByTime; // the first one last
    for (auto path = paths.crbegin(); path != paths.crend(); ++path)
        pathsByTime[FileLook::at(*path).modified].append(*path);
    const auto settleByTime = [&](int file) {
        const qint64 stored = m_files.at(file).modified;
        for (const qint64 time : {stored, stored + 1}) {
            const auto found = pathsByTime.find(time);
            if (found == pathsByTime.end() || found->isEmpty())
                continue;
            settle(file, found->takeLast());
            return true;
        }
        return false;
    };
    files.erase(std::remove_if(files.begin(), files.end(), settleByTime), files.end());
    paths.erase(
        std::remove_if(paths.begin(), paths.end(), [this](const QString &path) { return !isFree(path); }),
        paths.end());
    if (files.size() == 1 && paths.size() == 1)
        settle(files.first(), paths.first());
}

void FileLocator::settle(int file, const QString &path)
{
    const QMutexLocker locker(&m_mutex);
    if (m_isFrozen)
        return;
    m_located.insert(m_files.at(file).fileId, path);
    m_taken.insert(path);
}

bool FileLocator::isFree(const QString &path) const
{
    return !m_taken.contains(path) && !m_excluded.contains(path);
}
