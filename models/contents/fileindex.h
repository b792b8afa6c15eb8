#pragma once

#include <QHash>
#include <QVector>

#include <vector>

class CompactIds;
class File;

/**
 * What a selection asks of all files, in flat arrays beside the rows of ContentsModel: id, kind, date of
 * addition and tags. Tags have dense numbers here, so that a set of tags is a plain table and a pass over a
 * million files stays in the caches of the processor. GUI thread; holds no record.
 */
class FileIndex
{
public:
    /** The numbers of the tags of one row, without repeats. Valid until the next change. */
    struct TagNumbers
    {
        const quint32 *first;
        const quint32 *last;
        const quint32 *begin() const { return first; }
        const quint32 *end() const { return last; }
    };

    int size() const { return m_ids.size(); }
    void clear();
    void reserve(int rows);
    /** The contents of another one, which is then of no use. */
    void takeOver(FileIndex &other);
    void append(const File &file);
    /** Takes the present tags and kind of a file over; false when nothing differs. */
    bool update(int row, const File &file);
    /** Takes rows out, given in ascending order. */
    void removeRows(const QVector<int> &rows);

    const QVector<qint64> &ids() const { return m_ids; }
    qint64 idAt(int row) const { return m_ids.at(row); }
    /** -1 for an id that has no row. */
    int rowOf(qint64 fileId) const;
    /** Those of the known ones, ascending and each once. */
    QVector<int> rowsOf(const QVector<qint64> &fileIds) const;

    // Arrays with one value a row, for passes over all rows; valid until the next change.
    /** The values of File::internal(). */
    const quint8 *kinds() const { return m_kinds.data(); }
    /** Seconds since the epoch. */
    const qint64 *additions() const { return m_additions.data(); }
    /** The sizes in bytes. */
    const qint64 *sizes() const { return m_sizes.data(); }
    /** Where the tags of a row begin in tagNumbers(), and how many they are. */
    const quint32 *tagStarts() const { return m_tagStarts.data(); }
    const quint32 *tagCounts() const { return m_tagCounts.data(); }
    /**
     * The tags of each row fill whole groups of tagsPerGroup, at least one; what is left of the last group
     * holds numbers below firstTagNumber, which are no tags. So a pass takes groups at a step and seldom has
     * to guess how long a row is.
     */
    const quint32 *tagNumbers() const { return m_tags.data(); }
    static constexpr int tagsPerGroup = 8;
    static constexpr int firstTagNumber = tagsPerGroup;
    TagNumbers tagsAt(int row) const
    {
        const quint32 *first = m_tags.data() + m_tagStarts[static_cast<size_t>(row)];
        return {first, first + m_tagCounts[static_cast<size_t>(row)]};
    }

    /** Numbers run from firstTagNumber to one less than this, and none is given to a second tag. */
    int numberCount() const { return firstTagNumber + m_tagIds.size(); }
    /** -1 for a tag that no file has had yet. */
    int tagNumber(qint64 tagId) const { return m_tagNumbers.value(tagId, -1); }
    qint64 tagId(int number) const { return m_tagIds.at(number - firstTagNumber); }

    /** How many files have the tag. */
    int useCount(qint64 tagId) const;
    /** The rows that have one of the tags, ascending. */
    QVector<int> rowsWith(const QVector<qint64> &tagIds) const;

    /** Grows with every change. */
    quint64 revision() const { return m_revision; }
    /** Since this revision the same files have the tag, in rows that may have moved. */
    quint64 revisionOf(qint64 tagId) const;

private:
    quint32 numberOf(qint64 tagId);
    void readTags(const CompactIds &tagIds);
    bool isNoted(quint32 number);
    bool hasScratchTags(int row) const;
    void countUses(int row, int change);
    void noteChange(quint32 number);
    void noteDifference(int row);
    void writeScratch(size_t start);
    quint32 appendScratch();
    void dropUnusedTags();
    void sortRows() const;

    QVector<qint64> m_ids;
    std::vector<quint8> m_kinds;
    std::vector<qint64> m_additions;
    std::vector<qint64> m_sizes;
    std::vector<quint32> m_tagStarts;
    std::vector<quint32> m_tagCounts;
    // The tags of all rows; a row that got another list leaves its old one behind until the next clean-up.
    std::vector<quint32> m_tags;
    size_t m_usedRoom = 0;

    QHash<qint64, int> m_tagNumbers;
    QVector<qint64> m_tagIds;
    std::vector<qint32> m_smallTagNumbers;
    std::vector<int> m_useCounts; // by number
    std::vector<quint32> m_scratch;
    std::vector<bool> m_noted;

    // Rows arrive by rising ids, and then ids are found by halving; else the rows in the order of their ids.
    bool m_areIdsAscending = true;
    mutable std::vector<int> m_rowsById;
    quint64 m_revision = 0;
    quint64 m_firstRevision = 0;            // since it was filled
    std::vector<quint64> m_numberRevisions; // by number
};
