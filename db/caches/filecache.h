#pragma once

#include "core/records/filerecord.h"
#include "core/records/map.h"
#include "db/sql/tabledata.h"

#include <QSet>
#include <QVector>

#include <memory>
#include <vector>

class File;
class FileColumns;

/**
 * All file records by id, owned, and which external files are known to be missing. Rows come from a join, one
 * for each tag of a file; those of one file follow each other. A full load runs in slices: begin, a slice at
 * a time, finish or abandon. GUI thread.
 */
class FileCache
{
public:
    FileCache();
    ~FileCache();
    FileCache(const FileCache &) = delete;
    FileCache &operator=(const FileCache &) = delete;

    Map<qint64, File *> &map() { return m_files; }
    const Map<qint64, File *> &map() const { return m_files; }

    /** Empties the cache into an empty map, whose holder has the old records deleted, and an empty set. */
    void clear(Map<qint64, File *> &old, QSet<qint64> &oldMissing);

    /** Forgets what an unfinished load had read. */
    void beginLoad();
    /** The rows stay the caller's. */
    void addSlice(const TableData &rows);
    /** The same with finished records, which are taken over. Gives the new files. */
    QVector<File *> addRecords(std::vector<FileRecord> &records);
    bool isLoading() const { return m_isLoading; }
    /** Makes what was read the contents and gives the records held before for deletion. */
    QList<File *> finishLoad();
    void abandonLoad();

    struct Merge
    {
        Map<qint64, File *> added;
        QVector<qint64> changed; ///< known files with another value or tag list
    };
    /** Takes in all rows of the files that stand in them; they stay the caller's. */
    Merge merge(const TableData &rows);

    /**
     * Takes records out; the caller becomes their owner. Unknown ids are passed over; a load under way, which
     * may have read them before they went, leaves them out.
     */
    QList<File *> take(const QVector<qint64> &fileIds);

    /** Takes tags off files; gives the ids of those that had one. */
    QVector<qint64> forgetTags(const QVector<qint64> &fileIds, const QVector<qint64> &tagIds);

    /** Gives a tag to files, or takes it from them, by rising ids; gives those for which it was news. */
    QVector<qint64> changeTag(qint64 tagId, bool isLinked, const QVector<qint64> &fileIds);

    bool isMissing(qint64 fileId) const { return m_missing.contains(fileId); }
    const QSet<qint64> &missing() const { return m_missing; }
    /** Notes the state; gives the known files for which it is another one than before. */
    QVector<qint64> setMissing(const QVector<qint64> &fileIds, bool missing);

private:
    void finishFile();
    void startFile(const TableRowData &row, qint64 fileId);

    Map<qint64, File *> m_files;
    QSet<qint64> m_missing;

    // A load under way.
    bool m_isLoading = false;
    Map<qint64, File *> m_loading;
    QVector<qint64> m_goneMeanwhile;
    std::unique_ptr<FileColumns> m_columns;
    File *m_current = nullptr;
    qint64 m_highestId = 0;
    QVector<qint64> m_currentTags;
};
