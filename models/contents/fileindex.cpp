#include "models/contents/fileindex.h"

#include "core/records/file.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

namespace {

// Up to this id the number of a tag stands in a plain table, which is what a million files are read with.
constexpr qint64 largestSmallTagId = 1 << 20;
constexpr qint32 noNumber = -1;

// Longer lists are looked through for repeats by a note at each number.
constexpr int longList = 64;

// The room that so many tags take: whole groups, and one for none.
size_t roomFor(size_t tags)
{
    constexpr size_t group = FileIndex::tagsPerGroup;
    return tags == 0 ? group : (tags + group - 1) / group * group;
}

quint8 kindOf(const File &file)
{
    const qint32 kind = file.internal();
    return kind >= 0 && kind < 255 ? static_cast<quint8>(kind) : quint8(255);
}

// Takes the given positions, which ascend, out of an array in one sweep.
template <typename Array>
void eraseAt(Array &array, const QVector<int> &positions)
{
    auto target = array.begin() + positions.first();
    for (int i = 0; i < positions.size(); ++i) {
        const auto from = array.begin() + positions.at(i) + 1;
        const auto to = i + 1 < positions.size() ? array.begin() + positions.at(i + 1) : array.end();
        target = std::move(from, to, target);
    }
    array.erase(target, array.end());
}

} // namespace

void FileIndex::clear()
{
    const quint64 revision = m_revision;
    *this = FileIndex();
    m_revision = m_firstRevision = revision + 1;
}

void FileIndex::takeOver(FileIndex &other)
{
    const quint64 revision = m_revision;
    *this = std::move(other);
    m_revision = m_firstRevision = revision + 1;
}

void FileIndex::reserve(int rows)
{
    const auto size = static_cast<size_t>(rows);
    m_ids.reserve(rows);
    m_kinds.reserve(size);
    m_additions.reserve(size);
    m_sizes.reserve(size);
    m_tagStarts.reserve(size);
    m_tagCounts.reserve(size);
    m_tags.reserve(size * tagsPerGroup);
}

void FileIndex::append(const File &file)
{
    readTags(file.tagIds());
    m_areIdsAscending = m_areIdsAscending && (m_ids.isEmpty() || m_ids.last() < file.id());
    m_rowsById.clear();
    m_ids.append(file.id());
    m_kinds.push_back(kindOf(file));
    m_additions.push_back(file.additionSeconds());
    m_sizes.push_back(file.size());
    m_tagStarts.push_back(appendScratch());
    m_tagCounts.push_back(static_cast<quint32>(m_scratch.size()));
    m_usedRoom += roomFor(m_scratch.size());
    countUses(size() - 1, 1);
    for (const quint32 number : tagsAt(size() - 1))
        noteChange(number);
    ++m_revision;
}

bool FileIndex::update(int row, const File &file)
{
    const auto at = static_cast<size_t>(row);
    readTags(file.tagIds());
    const bool isKindKept = m_kinds[at] == kindOf(file) && m_additions[at] == file.additionSeconds() &&
                            m_sizes[at] == file.size();
    if (isKindKept && hasScratchTags(row))
        return false;
    noteDifference(row);
    countUses(row, -1);
    m_kinds[at] = kindOf(file);
    m_additions[at] = file.additionSeconds();
    m_sizes[at] = file.size();
    const size_t oldRoom = roomFor(m_tagCounts[at]);
    const size_t newRoom = roomFor(m_scratch.size());
    m_usedRoom = m_usedRoom - oldRoom + newRoom;
    if (newRoom <= oldRoom)
        writeScratch(m_tagStarts[at]);
    else
        m_tagStarts[at] = appendScratch();
    m_tagCounts[at] = static_cast<quint32>(m_scratch.size());
    countUses(row, 1);
    dropUnusedTags();
    ++m_revision;
    return true;
}

void FileIndex::removeRows(const QVector<int> &rows)
{
    if (rows.isEmpty())
        return;
    for (int row : rows) {
        countUses(row, -1);
        for (const quint32 number : tagsAt(row))
            noteChange(number);
        m_usedRoom -= roomFor(m_tagCounts[static_cast<size_t>(row)]);
    }
    eraseAt(m_ids, rows);
    eraseAt(m_kinds, rows);
    eraseAt(m_additions, rows);
    eraseAt(m_sizes, rows);
    eraseAt(m_tagStarts, rows);
    eraseAt(m_tagCounts, rows);
    m_rowsById.clear();
    dropUnusedTags();
    ++m_revision;
}

int FileIndex::rowOf(qint64 fileId) const
{
    if (m_areIdsAscending) {
        const auto found = std::lower_bound(m_ids.cbegin(), m_ids.cend(), fileId);
        if (found == m_ids.cend() || *found != fileId)
            return -1;
        return static_cast<int>(found - m_ids.cbegin());
    }
    if (m_rowsById.empty())
        sortRows();
    const auto found = std::lower_bound(m_rowsById.begin(), m_rowsById.end(), fileId,
                                        [this](int row, qint64 id) { return m_ids.at(row) < id; });
    return found != m_rowsById.end() && m_ids.at(*found) == fileId ? *found : -1;
}

QVector<int> FileIndex::rowsOf(const QVector<qint64> &fileIds) const
{
    QVector<int> rows;
    rows.reserve(fileIds.size());
    for (const qint64 fileId : fileIds) {
        const int row = rowOf(fileId);
        if (row >= 0)
            rows.append(row);
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

void FileIndex::sortRows() const
{
    m_rowsById.resize(static_cast<size_t>(m_ids.size()));
    std::iota(m_rowsById.begin(), m_rowsById.end(), 0);
    std::sort(m_rowsById.begin(), m_rowsById.end(),
              [this](int left, int right) { return m_ids.at(left) < m_ids.at(right); });
}

quint32 FileIndex::numberOf(qint64 tagId)
{
    const bool isSmall = tagId >= 0 && tagId < largestSmallTagId;
    const auto at = static_cast<size_t>(tagId);
    if (isSmall && at < m_smallTagNumbers.size() && m_smallTagNumbers[at] != noNumber)
        return static_cast<quint32>(m_smallTagNumbers[at]);
    const int known = tagNumber(tagId);
    if (known >= 0)
        return static_cast<quint32>(known);
    const int number = numberCount();
    m_tagIds.append(tagId);
    m_tagNumbers.insert(tagId, number);
    if (isSmall) {
        if (at >= m_smallTagNumbers.size())
            m_smallTagNumbers.resize(at + 1, noNumber);
        m_smallTagNumbers[at] = number;
    }
    return static_cast<quint32>(number);
}

void FileIndex::readTags(const CompactIds &tagIds)
{
    m_scratch.clear();
    const bool isLong = tagIds.size() > longList;
    const int count = tagIds.size();
    for (int i = 0; i < count; ++i) {
        const quint32 number = numberOf(tagIds.at(i));
        // A repeated tag would count twice and pass for one that all files have.
        const bool isRepeated =
            isLong ? isNoted(number)
                   : std::find(m_scratch.begin(), m_scratch.end(), number) != m_scratch.end();
        if (!isRepeated)
            m_scratch.push_back(number);
    }
    if (isLong)
        m_noted.clear();
}

// Whether the number was asked for before, since the notes were cleared.
bool FileIndex::isNoted(quint32 number)
{
    if (number >= m_noted.size())
        m_noted.resize(static_cast<size_t>(numberCount()));
    const bool wasNoted = m_noted[number];
    m_noted[number] = true;
    return wasNoted;
}

bool FileIndex::hasScratchTags(int row) const
{
    const TagNumbers present = tagsAt(row);
    return std::equal(present.begin(), present.end(), m_scratch.begin(), m_scratch.end());
}

void FileIndex::countUses(int row, int change)
{
    m_useCounts.resize(static_cast<size_t>(numberCount()));
    for (const quint32 number : tagsAt(row))
        m_useCounts[number] += change;
}

// The next revision is the first with other files.
void FileIndex::noteChange(quint32 number)
{
    if (number >= m_numberRevisions.size())
        m_numberRevisions.resize(static_cast<size_t>(numberCount()));
    m_numberRevisions[number] = m_revision + 1;
}

// The tags that a row has now or will have, but not both.
void FileIndex::noteDifference(int row)
{
    const TagNumbers present = tagsAt(row);
    const bool isLong = m_scratch.size() > longList || m_tagCounts[static_cast<size_t>(row)] > longList;
    for (const quint32 number : present) {
        if (isLong || std::find(m_scratch.begin(), m_scratch.end(), number) == m_scratch.end())
            noteChange(number);
    }
    for (const quint32 number : m_scratch) {
        if (isLong || std::find(present.begin(), present.end(), number) == present.end())
            noteChange(number);
    }
}

quint64 FileIndex::revisionOf(qint64 tagId) const
{
    const int number = tagNumber(tagId);
    const auto at = static_cast<size_t>(number);
    return number < 0 || at >= m_numberRevisions.size() ? m_firstRevision
                                                        : std::max(m_firstRevision, m_numberRevisions[at]);
}

int FileIndex::useCount(qint64 tagId) const
{
    const int number = tagNumber(tagId);
    return number < 0 ? 0 : m_useCounts[static_cast<size_t>(number)];
}

QVector<int> FileIndex::rowsWith(const QVector<qint64> &tagIds) const
{
    QVector<int> rows;
    std::vector<char> isWanted(static_cast<size_t>(numberCount()));
    for (const qint64 tagId : tagIds) {
        const int number = tagNumber(tagId);
        if (number >= 0)
            isWanted[static_cast<size_t>(number)] = 1;
    }
    for (int row = 0; row < size(); ++row) {
        const TagNumbers tags = tagsAt(row);
        if (std::any_of(tags.begin(), tags.end(), [&](quint32 number) { return isWanted[number] != 0; }))
            rows.append(row);
    }
    return rows;
}

void FileIndex::writeScratch(size_t start)
{
    const auto end = std::copy(m_scratch.begin(), m_scratch.end(), m_tags.begin() + start);
    const size_t room = roomFor(m_scratch.size());
    // Fillers that differ by their place, as counting one and the same would wait for itself.
    std::iota(end, m_tags.begin() + start + room, 0);
}

quint32 FileIndex::appendScratch()
{
    const size_t start = m_tags.size();
    m_tags.resize(start + roomFor(m_scratch.size()));
    writeScratch(start);
    return static_cast<quint32>(start);
}

void FileIndex::dropUnusedTags()
{
    constexpr size_t slack = 4096;
    if (m_tags.size() < 2 * m_usedRoom + slack)
        return;
    std::vector<quint32> kept;
    kept.reserve(m_usedRoom);
    for (int row = 0; row < size(); ++row) {
        const auto at = static_cast<size_t>(row);
        const auto start = m_tags.begin() + m_tagStarts[at];
        m_tagStarts[at] = static_cast<quint32>(kept.size());
        kept.insert(kept.end(), start, start + static_cast<std::ptrdiff_t>(roomFor(m_tagCounts[at])));
    }
    m_tags.swap(kept);
}
