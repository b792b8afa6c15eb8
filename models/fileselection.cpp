#include "models/fileselection.h"

#include "models/fileindex.h"

#include <QDateTime>
#include <QSet>

#include <algorithm>

namespace {

constexpr quint8 externalKind = 0;
constexpr quint8 internalKind = 1;
constexpr quint8 hyperlinkKind = 2;

constexpr quint8 excludedMark = 0x80;
constexpr int groupsPerRound = 7;

// The tags of that many files fit into the second-level cache, from which they are then counted.
constexpr int rowsPerBlock = 4096;

void mark(std::vector<quint8> &marks, const FileIndex &index, const QVector<qint64> &tagIds, quint8 bits)
{
    for (qint64 tagId : tagIds) {
        const int number = index.tagNumber(tagId);
        if (number >= 0)
            marks[static_cast<size_t>(number)] |= bits;
    }
}

template <typename Condition>
void acceptRows(std::vector<quint8> &accepted, Condition condition)
{
    const int size = static_cast<int>(accepted.size());
    for (int row = 0; row < size; ++row)
        accepted[static_cast<size_t>(row)] = condition(row) ? 1 : 0;
}

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

void FileSelection::run(const FileIndex &index)
{
    m_accepted.resize(static_cast<size_t>(index.size()));
    m_dTags.clear();
    if (m_nodeType == TagNode)
        runTags(index);
    else
        runSpecial(index);
}

void FileSelection::runSpecial(const FileIndex &index)
{
    const auto acceptKind = [this, &index](quint8 kind) {
        acceptRows(m_accepted, [&index, kind](int row) { return index.kindAt(row) == kind; });
    };
    switch (m_nodeType) {
    case AllFilesWithTags:
        acceptRows(m_accepted, [&index](int row) { return index.hasTags(row); });
        return;
    case AllFilesWithoutTags:
        acceptRows(m_accepted, [&index](int row) { return !index.hasTags(row); });
        return;
    case AllInternalFiles:
        acceptKind(internalKind);
        return;
    case AllExternalFiles:
        acceptKind(externalKind);
        return;
    case AllHyperlinks:
        acceptKind(hyperlinkKind);
        return;
    case RecentlyAddedFiles: {
        const qint64 oldest = QDateTime::currentSecsSinceEpoch() - qint64(m_newFilesTimeout);
        acceptRows(m_accepted, [&index, oldest](int row) { return index.additionAt(row) > oldest; });
        return;
    }
    default:
        std::fill(m_accepted.begin(), m_accepted.end(), m_nodeType == AllFiles ? 1 : 0);
    }
}

void FileSelection::runTags(const FileIndex &index)
{
    const std::vector<Round> rounds = compiledRounds(index);
    m_counts.assign(static_cast<size_t>(index.tagCount()), 0);
    std::fill(m_accepted.begin(), m_accepted.end(), rounds.empty() ? 0 : 1);
    int acceptedCount = 0;
    for (int first = 0; first < index.size() && !rounds.empty(); first += rowsPerBlock) {
        const int last = std::min(first + rowsPerBlock, index.size());
        for (const Round &round : rounds)
            applyRound(round, index, first, last);
        acceptedCount += countTags(index, first, last);
    }
    findDTags(index, acceptedCount);
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

std::vector<FileSelection::Round> FileSelection::compiledRounds(const FileIndex &index) const
{
    std::vector<Round> rounds;
    const QVector<QVector<qint64>> groups = requiredGroups();
    for (int i = 0; i < groups.size(); ++i) {
        const int place = i % groupsPerRound;
        if (place == 0) {
            rounds.emplace_back();
            rounds.back().marks.resize(static_cast<size_t>(index.tagCount()));
        }
        Round &round = rounds.back();
        const auto bit = static_cast<quint8>(1U << place);
        mark(round.marks, index, groups.at(i), bit);
        round.wanted |= bit;
        round.tested |= bit;
    }
    if (!rounds.empty()) {
        Round &round = rounds.front();
        mark(round.marks, index, m_requirements.excluded + m_requirements.excludedWidened, excludedMark);
        round.tested |= excludedMark;
    }
    return rounds;
}

void FileSelection::applyRound(const Round &round, const FileIndex &index, int first, int last)
{
    const quint8 *marks = round.marks.data();
    quint8 *accepted = m_accepted.data();
    for (int row = first; row < last; ++row) {
        quint8 met = 0;
        for (quint32 number : index.tagsAt(row))
            met |= marks[number];
        accepted[row] &= static_cast<quint8>((met & round.tested) == round.wanted);
    }
}

int FileSelection::countTags(const FileIndex &index, int first, int last)
{
    const quint8 *accepted = m_accepted.data();
    quint32 *counts = m_counts.data();
    int count = 0;
    for (int row = first; row < last; ++row) {
        if (!accepted[row])
            continue;
        ++count;
        for (quint32 number : index.tagsAt(row))
            ++counts[number];
    }
    return count;
}

void FileSelection::findDTags(const FileIndex &index, int acceptedCount)
{
    const auto all = static_cast<quint32>(acceptedCount);
    for (int number = 0; number < index.tagCount(); ++number) {
        const quint32 count = m_counts[static_cast<size_t>(number)];
        if (count > 0 && count < all)
            m_dTags.append(index.tagId(number));
    }
    std::sort(m_dTags.begin(), m_dTags.end());
}

QVector<qint64> FileSelection::acceptedFiles(const FileIndex &index) const
{
    QVector<qint64> ids;
    ids.reserve(static_cast<int>(std::count(m_accepted.begin(), m_accepted.end(), 1)));
    for (int row = 0; row < index.size(); ++row) {
        if (isAccepted(row))
            ids.append(index.idAt(row));
    }
    return ids;
}
