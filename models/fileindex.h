#pragma once

#include <QHash>
#include <QVector>

#include <vector>

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
    void append(const File &file);
    /** Takes the present tags and kind of a file over; false when nothing differs. */
    bool update(int row, const File &file);
    /** Takes rows out, given in ascending order. */
    void removeRows(const QVector<int> &rows);

    const QVector<qint64> &ids() const { return m_ids; }
    qint64 idAt(int row) const { return m_ids.at(row); }
    /** -1 for an id that has no row. */
    int rowOf(qint64 fileId) const;

    /** The value of File::internal(). */
    quint8 kindAt(int row) const { return m_kinds[static_cast<size_t>(row)]; }
    /** Seconds since the epoch. */
    qint64 additionAt(int row) const { return m_additions[static_cast<size_t>(row)]; }
    bool hasTags(int row) const { return m_tagCounts[static_cast<size_t>(row)] > 0; }
    TagNumbers tagsAt(int row) const
    {
        const quint32 *first = m_tags.data() + m_tagStarts[static_cast<size_t>(row)];
        return {first, first + m_tagCounts[static_cast<size_t>(row)]};
    }

    /** Numbers run from 0 to one less than this. A number is never given to another tag. */
    int tagCount() const { return m_tagIds.size(); }
    /** -1 for a tag that no file has had yet. */
    int tagNumber(qint64 tagId) const { return m_tagNumbers.value(tagId, -1); }
    qint64 tagId(int number) const { return m_tagIds.at(number); }

    /** Grows with every change. */
    quint64 revision() const { return m_revision; }

private:
    quint32 numberOf(qint64 tagId);
    void readTags(const QVector<qint64> &tagIds);
    bool hasScratchTags(int row) const;
    void dropUnusedTags();
    void sortRows() const;

    QVector<qint64> m_ids;
    std::vector<quint8> m_kinds;
    std::vector<qint64> m_additions;
    std::vector<quint32> m_tagStarts;
    std::vector<quint32> m_tagCounts;
    // The tags of all rows; a row that got another list leaves its old one behind until the next clean-up.
    std::vector<quint32> m_tags;
    size_t m_usedTags = 0;

    QHash<qint64, int> m_tagNumbers;
    QVector<qint64> m_tagIds;
    std::vector<qint32> m_smallTagNumbers;
    std::vector<quint32> m_scratch;

    // Rows arrive by rising ids, and then ids are found by halving; else the rows in the order of their ids.
    bool m_areIdsAscending = true;
    mutable std::vector<int> m_rowsById;
    quint64 m_revision = 0;
};
