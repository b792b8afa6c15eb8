#include "db/caches/filecache.h"

#include "core/records/file.h"
#include "db/caches/discardedfiles.h"
#include "db/caches/filecolumns.h"

#include <QHash>

#include <algorithm>
#include <utility>

FileCache::FileCache() = default;

FileCache::~FileCache()
{
    // Records of a reading that was broken off belong to nobody yet.
    abandonLoad();
    DiscardedFiles::add(m_files, m_missing);
}

void FileCache::clear(Map<qint64, File *> &old, QSet<qint64> &oldMissing)
{
    old.swap(m_files);
    oldMissing.swap(m_missing);
}

void FileCache::beginLoad()
{
    abandonLoad();
    m_isLoading = true;
}

QVector<File *> FileCache::addRecords(std::vector<FileRecord> &records)
{
    QVector<File *> files;
    files.reserve(static_cast<int>(records.size()));
    for (FileRecord &record : records) {
        // A file that tells of an id twice is damaged; the tags of both are those of one.
        if (record.id <= m_highestId) {
            if (File *known = m_loading.value(record.id)) {
                known->setTags(known->tags() + record.tags.toVector());
                continue;
            }
        }
        m_highestId = qMax(m_highestId, record.id);
        auto *file = new File(std::move(record));
        m_loading.insert(file->id(), file);
        files.append(file);
    }
    return files;
}

void FileCache::addSlice(const TableData &rows)
{
    if (rows.isEmpty())
        return;
    if (!m_columns || !m_columns->fits(rows.first()->columns()))
        m_columns = std::make_unique<FileColumns>(rows.first()->columns());
    for (const TableRowData *row : rows) {
        const qint64 fileId = m_columns->fileId(*row);
        if (!m_current || m_current->id() != fileId) {
            // Rows of a file follow each other: the next id ends it, and its tags are set at once.
            finishFile();
            startFile(*row, fileId);
        }
        const qint64 tagId = m_columns->tagId(*row);
        if (tagId > 0)
            m_currentTags.append(tagId);
    }
}

void FileCache::startFile(const TableRowData &row, qint64 fileId)
{
    // Rows in the order of their ids need no look-up.
    m_current = fileId > m_highestId ? nullptr : m_loading.value(fileId);
    if (m_current) {
        m_currentTags = m_current->tags();
        return;
    }
    m_current = m_columns->makeFile(row);
    m_loading.insert(fileId, m_current);
    m_highestId = qMax(m_highestId, fileId);
}

void FileCache::finishFile()
{
    if (m_current && !m_currentTags.isEmpty())
        m_current->setTags(m_currentTags);
    m_currentTags.resize(0);
}

QList<File *> FileCache::finishLoad()
{
    finishFile();
    m_current = nullptr;
    m_highestId = 0;
    m_columns.reset();
    m_isLoading = false;
    // The old records serve until here, so that views have something to show all the time.
    m_files.swap(m_loading);
    QList<File *> old = m_loading.values();
    m_loading.clear();
    // Removed while the state from before was being read, which still had them.
    old += take(std::exchange(m_goneMeanwhile, {}));
    return old;
}

void FileCache::abandonLoad()
{
    QSet<qint64> none;
    DiscardedFiles::add(m_loading, none);
    m_goneMeanwhile.clear();
    m_isLoading = false;
    m_current = nullptr;
    m_highestId = 0;
    m_columns.reset();
}

FileCache::Merge FileCache::merge(const TableData &rows)
{
    Merge result;
    if (rows.isEmpty())
        return result;
    const FileColumns columns(rows.first()->columns());
    struct FileRows
    {
        const TableRowData *first = nullptr; // the one that carries all values of its file
        QVector<qint64> tags;
    };
    QHash<qint64, int> places;
    QVector<FileRows> gathered;
    qint64 lastId = 0;
    int place = -1;
    for (const TableRowData *row : rows) {
        const qint64 fileId = columns.fileId(*row);
        // The rows of a file mostly follow one another.
        if (place < 0 || fileId != lastId)
            place = places.value(fileId, gathered.size());
        lastId = fileId;
        if (place == gathered.size()) {
            places.insert(fileId, place);
            gathered.append(FileRows{row, {}});
        }
        const qint64 tagId = columns.tagId(*row);
        if (tagId > 0)
            gathered[place].tags.append(tagId);
    }
    for (const auto &[row, tags] : qAsConst(gathered)) {
        File *file = m_files.value(columns.fileId(*row));
        if (!file) {
            file = columns.makeFile(*row);
            file->setTags(tags);
            m_files.insert(file->id(), file);
            result.added.insert(file->id(), file);
            continue;
        }
        const bool tagsDiffer = file->tags() != tags;
        file->setTags(tags);
        if (columns.update(*file, *row) || tagsDiffer)
            result.changed.append(file->id());
    }
    return result;
}

QList<File *> FileCache::take(const QVector<qint64> &fileIds)
{
    QList<File *> taken;
    if (m_isLoading)
        // The running load may bring them once more.
        m_goneMeanwhile += fileIds;
    for (const qint64 fileId : fileIds) {
        File *file = m_files.take(fileId);
        if (!file)
            continue;
        taken.append(file);
        m_missing.remove(fileId);
    }
    return taken;
}

QVector<qint64> FileCache::forgetTags(const QVector<qint64> &fileIds, const QVector<qint64> &tagIds)
{
    const QSet<qint64> gone(tagIds.cbegin(), tagIds.cend());
    const auto isGone = [&gone](qint64 tagId) { return gone.contains(tagId); };
    QVector<qint64> changed;
    for (const qint64 fileId : fileIds) {
        File *file = m_files.value(fileId);
        QVector<qint64> tags = file ? file->tags() : QVector<qint64>();
        if (!file || std::none_of(tags.cbegin(), tags.cend(), isGone))
            continue;
        tags.erase(std::remove_if(tags.begin(), tags.end(), isGone), tags.end());
        file->setTags(tags);
        changed.append(fileId);
    }
    return changed;
}

QVector<qint64> FileCache::changeTag(qint64 tagId, bool isLinked, const QVector<qint64> &fileIds)
{
    QVector<qint64> changed;
    changed.reserve(fileIds.size());
    const QMap<qint64, File *> &files = m_files.items();
    // Mostly the next one in both lists, which spares a search for each of a million.
    auto next = files.constEnd();
    for (const qint64 fileId : fileIds) {
        if (next == files.constEnd() || next.key() != fileId)
            next = files.constFind(fileId);
        if (next == files.constEnd())
            continue;
        File *file = next.value();
        ++next;
        if (isLinked ? file->insertTag(tagId) : file->removeTag(tagId))
            changed.append(fileId);
    }
    return changed;
}

QVector<qint64> FileCache::setMissing(const QVector<qint64> &fileIds, bool missing)
{
    QVector<qint64> changed;
    for (const qint64 fileId : fileIds) {
        // Mostly the state is the one that is known, which costs no look at the files.
        if (m_missing.contains(fileId) == missing || !m_files.contains(fileId))
            continue;
        if (missing)
            m_missing.insert(fileId);
        else
            m_missing.remove(fileId);
        changed.append(fileId);
    }
    return changed;
}
