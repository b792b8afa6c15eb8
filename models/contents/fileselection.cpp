#include "models/contents/fileselection.h"

#include "models/contents/fileindex.h"

#include <QDateTime>
#include <QSet>

#include <algorithm>
#include <functional>

namespace {

constexpr quint8 externalKind = 0;
constexpr quint8 internalKind = 1;
constexpr quint8 hyperlinkKind = 2;

constexpr quint8 excludedMark = 0x80;
constexpr int groupsPerRound = 7;

void mark(std::vector<quint8> &marks, const FileIndex &index, const QVector<qint64> &tagIds, quint8 bits)
{
    for (qint64 tagId : tagIds) {
        const int number = index.tagNumber(tagId);
        if (number >= 0)
            marks[static_cast<size_t>(number)] |= bits;
    }
}

// Writes the rows of a range that meet the condition and gives the end of what was written. No branch hangs
// on the condition, as whether the next file is accepted is nothing that a processor can guess.
template <typename Condition>
int *keepRows(int first, int last, int *target, Condition condition)
{
    for (int row = first; row < last; ++row) {
        *target = row;
        target += condition(row) ? 1 : 0;
    }
    return target;
}

/** The bits of all tags of a row, from pointers that no write to the result can make the compiler read anew.
 */
class Marker
{
public:
    Marker(const FileIndex &index, const std::vector<quint8> &marks)
        : m_starts(index.tagStarts()),
          m_counts(index.tagCounts()),
          m_tags(index.tagNumbers()),
          m_marks(marks.data())
    {
    }

    quint8 operator()(int row) const
    {
        const quint32 *tag = m_tags + m_starts[row];
        const quint32 *last = tag + m_counts[row];
        quint8 met = 0;
        do {
            for (int i = 0; i < FileIndex::tagsPerGroup; ++i)
                met |= m_marks[tag[i]];
            tag += FileIndex::tagsPerGroup;
        } while (tag < last);
        return met;
    }

private:
    const quint32 *m_starts;
    const quint32 *m_counts;
    const quint32 *m_tags;
    const quint8 *m_marks;
};

} // namespace

void FileSelection::setSpecialNode(NodeType type, unsigned int newFilesTimeout)
{
    m_nodeType = type;
    m_newFilesTimeout = newFilesTimeout;
    m_requirements = TagRequirements();
}

void FileSelection::setRequirements(const TagRequirements &requirements)
{
    m_nodeType = TagNode;
    m_requirements = requirements;
}

// The tags of the files of one block fit into the second-level cache, from which they are then counted.
void FileSelection::run(const FileIndex &index, std::vector<int> &rows)
{
    begin();
    m_dTags.clear();
    m_counts.assign(static_cast<size_t>(index.numberCount()), 0);
    // One more, since each row is written before it is known whether it stays.
    rows.resize(static_cast<size_t>(index.size()) + 1);
    int *target = rows.data();
    for (int first = 0; first < index.size(); first += rowsPerBlock) {
        int *const blockStart = target;
        target = keep(index, first, std::min(first + rowsPerBlock, index.size()), blockStart);
        if (m_nodeType == TagNode)
            countTags(index, blockStart, target, m_counts);
    }
    const int count = static_cast<int>(target - rows.data());
    rows.resize(static_cast<size_t>(count));
    if (m_nodeType == TagNode)
        findDTags(index, count);
}

void FileSelection::begin()
{
    m_groups = m_nodeType == TagNode ? requiredGroups() : QVector<QVector<qint64>>();
    m_rounds.clear();
    m_oldestAddition = QDateTime::currentSecsSinceEpoch() - qint64(m_newFilesTimeout);
}

int *FileSelection::keep(const FileIndex &index, int first, int last, int *target)
{
    return m_nodeType == TagNode ? keepTagged(index, first, last, target)
                                 : keepSpecial(index, first, last, target);
}

int *FileSelection::keepSpecial(const FileIndex &index, int first, int last, int *target) const
{
    const auto keep = [first, last, target](auto condition) {
        return keepRows(first, last, target, condition);
    };
    const quint8 *kinds = index.kinds();
    const quint32 *tagCounts = index.tagCounts();
    switch (m_nodeType) {
    case AllFiles:
        return keep([](int) { return true; });
    case AllFilesWithTags:
        return keep([tagCounts](int row) { return tagCounts[row] > 0; });
    case AllFilesWithoutTags:
        return keep([tagCounts](int row) { return tagCounts[row] == 0; });
    case AllInternalFiles:
        return keep([kinds](int row) { return kinds[row] == internalKind; });
    case AllExternalFiles:
        return keep([kinds](int row) { return kinds[row] == externalKind; });
    case AllHyperlinks:
        return keep([kinds](int row) { return kinds[row] == hyperlinkKind; });
    case RecentlyAddedFiles: {
        const qint64 oldest = m_oldestAddition;
        const qint64 *additions = index.additions();
        return keep([additions, oldest](int row) { return additions[row] > oldest; });
    }
    default:
        return target;
    }
}

int *FileSelection::keepTagged(const FileIndex &index, int first, int last, int *target)
{
    const int roundCount = (m_groups.size() + groupsPerRound - 1) / groupsPerRound;
    int *end = target;
    for (int i = 0; i < roundCount && (i == 0 || end != target); ++i) {
        // Few files get as far as the later ones of many rounds, which are made for the first that does.
        if (i == static_cast<int>(m_rounds.size()))
            m_rounds.push_back(compiledRound(index, m_groups, i));
        const Round &round = m_rounds[static_cast<size_t>(i)];
        const Marker marker(index, round.marks);
        const quint8 tested = round.tested;
        const quint8 wanted = round.wanted;
        const auto isMet = [&marker, tested, wanted](int row) { return (marker(row) & tested) == wanted; };
        end = i == 0 ? keepRows(first, last, target, isMet) : std::remove_if(target, end, std::not_fn(isMet));
    }
    return end;
}

QVector<QVector<qint64>> FileSelection::requiredGroups() const
{
    QVector<QVector<qint64>> groups;
    if (!m_requirements.eitherOr.isEmpty())
        groups.append(m_requirements.eitherOr + m_requirements.eitherOrWidened);
    QSet<qint64> seen;
    for (qint64 tagId : m_requirements.required) {
        if (seen.contains(tagId))
            continue;
        seen.insert(tagId);
        groups.append(m_requirements.requiredAlternatives.value(tagId));
        groups.last().append(tagId);
    }
    return groups;
}

FileSelection::Round FileSelection::compiledRound(const FileIndex &index,
                                                  const QVector<QVector<qint64>> &groups, int number) const
{
    Round round;
    round.marks.resize(static_cast<size_t>(index.numberCount()));
    const int first = number * groupsPerRound;
    for (int i = first; i < std::min(first + groupsPerRound, groups.size()); ++i) {
        const auto bit = static_cast<quint8>(1U << (i - first));
        mark(round.marks, index, groups.at(i), bit);
        round.wanted |= bit;
        round.tested |= bit;
    }
    if (number == 0) {
        mark(round.marks, index, m_requirements.excluded + m_requirements.excludedWidened, excludedMark);
        round.tested |= excludedMark;
    }
    return round;
}

void FileSelection::countTags(const FileIndex &index, const int *first, const int *last,
                              std::vector<quint32> &all)
{
    const quint32 *starts = index.tagStarts();
    const quint32 *tagCounts = index.tagCounts();
    quint32 *counts = all.data();
    for (; first != last; ++first) {
        const quint32 *tag = index.tagNumbers() + starts[*first];
        const quint32 *lastTag = tag + tagCounts[*first];
        // Fillers are counted as well, in places that nobody reads.
        do {
            for (int i = 0; i < FileIndex::tagsPerGroup; ++i)
                ++counts[tag[i]];
            tag += FileIndex::tagsPerGroup;
        } while (tag < lastTag);
    }
}

void FileSelection::findDTags(const FileIndex &index, int acceptedCount)
{
    const auto all = static_cast<quint32>(acceptedCount);
    for (int number = FileIndex::firstTagNumber; number < index.numberCount(); ++number) {
        const quint32 count = m_counts[static_cast<size_t>(number)];
        if (count > 0 && count < all)
            m_dTags.append(index.tagId(number));
    }
    std::sort(m_dTags.begin(), m_dTags.end());
}
