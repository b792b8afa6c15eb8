#include "models/sorter.h"

#include "core/file.h"
#include "models/contentsmodel.h"
#include "models/filefiltermodel.h"

namespace {
// Fewer rows are sorted in no time by their values, and need no table as long as all files.
constexpr size_t fewestRankedRows = 1000;
} // namespace

Sorter::Sorter(QObject *parent) : QSortFilterProxyModel(parent)
{
    m_matcher.setCaseSensitivity(Qt::CaseInsensitive);
}

void Sorter::setSourceModel(QAbstractItemModel *sourceModel)
{
    if (m_filter)
        disconnect(m_filter, nullptr, this, nullptr);
    m_filter = qobject_cast<FileFilterModel *>(sourceModel);
    m_ranks.clear();
    openPass();
    if (m_filter) {
        // Connected first, so that a pass is open when the base class loses its row mapping.
        connect(m_filter, &FileFilterModel::recordsChanged, this, &Sorter::forgetRecords);
        connect(m_filter, &QAbstractItemModel::layoutChanged, this, &Sorter::openPass);
        connect(m_filter, &QAbstractItemModel::modelReset, this, &Sorter::openPass);
    }
    QSortFilterProxyModel::setSourceModel(sourceModel);
}

void Sorter::sort(int column, Qt::SortOrder order)
{
    // The base class sorts the rows that it has, without asking which are accepted.
    if (column >= 0 && m_filter) {
        const int rows = rowCount();
        openPass();
        m_passRows.reserve(static_cast<size_t>(rows));
        for (int row = 0; row < rows; ++row)
            m_passRows.push_back(m_filter->contentsRow(mapToSource(index(row, 0)).row()));
    }
    QSortFilterProxyModel::sort(column, order);
}

void Sorter::setFilterText(const QString &text)
{
    if (m_filterText == text)
        return;
    prepareFilterText(text);
    openPass();
    invalidate();
}

void Sorter::prepareFilterText(const QString &text)
{
    m_filterText = text;
    m_matcher.setPattern(text);
}

const File *Sorter::fileAt(int row) const
{
    return m_filter ? m_filter->fileAt(mapToSource(index(row, 0)).row()) : nullptr;
}

void Sorter::refreshTagNames()
{
    constexpr int column = ContentsModel::TagsColumn;
    if (m_ranks.column() == column)
        m_ranks.clear();
    if (sortColumn() == column) {
        openPass();
        invalidate();
    } else if (rowCount() > 0) {
        // Straight from here: proxies below would look at every row again for a text that they do not read.
        emit dataChanged(index(0, column), index(rowCount() - 1, column), {Qt::DisplayRole});
    }
}

bool Sorter::isFoundIn(const QString &text) const
{
    // The matcher needs twice the time of a plain search for a single character.
    if (m_filterText.size() == 1)
        return text.contains(m_filterText.at(0), Qt::CaseInsensitive);
    return m_matcher.indexIn(text) >= 0;
}

bool Sorter::isMatch(const File &file) const
{
    return isFoundIn(file.name()) || isFoundIn(file.description()) || isFoundIn(file.idCode());
}

bool Sorter::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    if (!m_filter || sourceParent.isValid())
        return false;
    const bool isNoted = m_isPassOpen && sortColumn() >= 0;
    if (m_filterText.isEmpty() && !isNoted)
        return true;
    const int contentsRow = m_filter->contentsRow(sourceRow);
    const File *file = m_filter->contents()->fileAt(contentsRow);
    if (!file || (!m_filterText.isEmpty() && !isMatch(*file)))
        return false;
    if (isNoted)
        m_passRows.push_back(contentsRow);
    return true;
}

bool Sorter::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    const int column = left.column();
    if (m_isPassOpen)
        closePass(column);
    const int leftRow = m_filter->contentsRow(left.row());
    const int rightRow = m_filter->contentsRow(right.row());
    if (m_ranks.column() == column) {
        const int leftRank = m_ranks.rankOf(leftRow);
        const int rightRank = m_ranks.rankOf(rightRow);
        if (leftRank >= 0 && rightRank >= 0)
            return leftRank < rightRank;
    }
    return SortRanks::isLess(*m_filter->contents(), column, leftRow, rightRow);
}

void Sorter::openPass()
{
    m_isPassOpen = true;
    m_passRows.clear();
}

void Sorter::closePass(int column) const
{
    m_isPassOpen = false;
    const bool isRanked = m_ranks.column() == column && m_ranks.hasAll(m_passRows);
    if (m_passRows.size() >= fewestRankedRows && !isRanked)
        m_ranks.rank(*m_filter->contents(), column, m_passRows);
    m_passRows = std::vector<int>();
}

void Sorter::forgetRecords(int firstRow, int lastRow)
{
    if (lastRow < 0)
        m_ranks.clear();
    else
        m_ranks.forget(firstRow, lastRow);
}
