// How the sorter follows its source: few rows come and go by the signals that every model has, many at once
// by one change of layout.
#include "models/contents/contentsmodel.h"
#include "models/contents/filefiltermodel.h"
#include "models/contents/sorter.h"
#include "models/contents/sortkeys.h"

#include <algorithm>

namespace {
constexpr int mostRowsOneByOne = 8;
}

void Sorter::setSourceModel(QAbstractItemModel *sourceModel)
{
    beginResetModel();
    if (m_filter) {
        disconnect(m_filter, nullptr, this, nullptr);
        disconnect(m_filter->contents(), nullptr, this, nullptr);
    }
    m_filter = qobject_cast<FileFilterModel *>(sourceModel);
    m_ranks.clear();
    followSource(sourceModel);
    if (m_filter)
        connectSource();
    arrange();
    endResetModel();
}

void Sorter::connectSource()
{
    using Model = QAbstractItemModel;
    const ContentsModel *contents = m_filter->contents();
    connect(contents, &ContentsModel::recordsChanged, this, [this](const QVector<int> &rows) {
        m_ranks.forget(rows);
        m_changedRecords = rows;
    });
    connect(contents, &ContentsModel::recordsErased, this, [this](const QVector<int> &rows) {
        m_ranks.erase(rows);
        m_changedRecords.clear();
    });
    connect(contents, &Model::modelAboutToBeReset, this, [this] { m_ranks.clear(); });

    connect(m_filter, &Model::dataChanged, this, &Sorter::sourceDataChanged);
    connect(m_filter, &Model::rowsAboutToBeInserted, this, &Sorter::sourceRowsAboutToBeInserted);
    connect(m_filter, &Model::rowsInserted, this, &Sorter::sourceRowsInserted);
    connect(m_filter, &Model::rowsAboutToBeRemoved, this, &Sorter::sourceRowsAboutToBeRemoved);
    connect(m_filter, &Model::rowsRemoved, this, &Sorter::sourceRowsRemoved);
    connect(m_filter, &Model::layoutAboutToBeChanged, this, &Sorter::beginSourceLayoutChange);
    connect(m_filter, &Model::layoutChanged, this, &Sorter::sourceLayoutChanged);
    connect(m_filter, &Model::modelAboutToBeReset, this, &Sorter::beginResetModel);
    connect(m_filter, &Model::modelReset, this, &Sorter::sourceReset);
}

void Sorter::rearrange()
{
    changeLayout([this] { arrange(); });
}

// Takes shown files out of the order and puts them where they belong now, among the others as they stand.
void Sorter::placeAnew(const QVector<int> &contentsRows)
{
    std::vector<int> moved;
    std::vector<char> isMoved(static_cast<size_t>(m_filter->rowCount()));
    for (const int contentsRow : contentsRows) {
        const int source = m_filter->rowOfContents(contentsRow);
        if (source < 0 || !filterAcceptsRow(source, {}))
            continue;
        isMoved[static_cast<size_t>(source)] = 1;
        moved.push_back(contentsRow);
    }
    changeLayout([&] {
        const auto hasMoved = [&](int source) { return isMoved[static_cast<size_t>(source)] != 0; };
        m_rows.erase(std::remove_if(m_rows.begin(), m_rows.end(), hasMoved), m_rows.end());
        if (m_sortOrder == Qt::DescendingOrder)
            std::reverse(m_rows.begin(), m_rows.end());
        orderContentsRows(
            [&] { SortKeys::merge(*m_filter->contents(), m_column, m_rows, std::move(moved)); });
        m_rowsOfSource.clear();
    });
}

// Whether a row of the source is shown or hidden as it should be, and between the right neighbours.
bool Sorter::isInPlace(int sourceRow) const
{
    const int row = rowOfSource(sourceRow);
    if ((row >= 0) != filterAcceptsRow(sourceRow, {}))
        return false;
    if (row < 0 || m_column < 0)
        return true;
    const bool isAfterPrevious = row == 0 || isRowLess(this->sourceRow(row - 1), sourceRow);
    return isAfterPrevious && (row + 1 == rowCount() || isRowLess(sourceRow, this->sourceRow(row + 1)));
}

bool Sorter::areChangedRowsInPlace() const
{
    return m_isWhole ||
           std::all_of(m_changedRecords.cbegin(), m_changedRecords.cend(), [this](int contentsRow) {
               const int row = m_filter->rowOfContents(contentsRow);
               return row < 0 || isInPlace(row);
           });
}

void Sorter::sourceDataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                               const QVector<int> &roles)
{
    // Another picture moves no file, and the first of several signals finds all that have changed.
    const bool isPicture = roles == QVector<int>{Qt::DecorationRole};
    if (!isPicture && !areChangedRowsInPlace())
        rearrange();
    if (!isPicture)
        m_changedRecords.clear();
    int first = topLeft.row();
    int last = bottomRight.row();
    if (!m_isWhole) {
        int lowest = rowCount();
        int highest = -1;
        for (int source = first; source <= last; ++source) {
            const int row = rowOfSource(source);
            lowest = row < 0 ? lowest : qMin(lowest, row);
            highest = qMax(highest, row);
        }
        first = lowest;
        last = highest;
    }
    if (first <= last)
        emit dataChanged(index(first, topLeft.column()), index(last, bottomRight.column()), roles);
}

void Sorter::sourceRowsAboutToBeInserted(const QModelIndex & /*parent*/, int first, int last)
{
    if (m_isWhole)
        beginInsertRows(QModelIndex(), first, last);
}

void Sorter::sourceRowsInserted(const QModelIndex & /*parent*/, int first, int last)
{
    if (m_isWhole) {
        endInsertRows();
        return;
    }
    const int count = last - first + 1;
    for (int &source : m_rows)
        source += source >= first ? count : 0;
    m_rowsOfSource.clear();
    if (count > mostRowsOneByOne) {
        rearrange();
        return;
    }
    for (int source = first; source <= last; ++source) {
        if (filterAcceptsRow(source, {}))
            insertRow(source);
    }
}

void Sorter::insertRow(int sourceRow)
{
    const auto place = std::lower_bound(m_rows.begin(), m_rows.end(), sourceRow,
                                        [this](int left, int right) { return isRowLess(left, right); });
    const int row = static_cast<int>(place - m_rows.begin());
    beginInsertRows(QModelIndex(), row, row);
    m_rows.insert(place, sourceRow);
    m_rowsOfSource.clear();
    endInsertRows();
}

// The source has its rows until this is through, so that what is left can be shown meanwhile.
void Sorter::sourceRowsAboutToBeRemoved(const QModelIndex & /*parent*/, int first, int last)
{
    if (m_isWhole) {
        beginRemoveRows(QModelIndex(), first, last);
        return;
    }
    std::vector<int> gone;
    for (int source = first; source <= last; ++source) {
        const int row = rowOfSource(source);
        if (row >= 0)
            gone.push_back(row);
    }
    std::sort(gone.begin(), gone.end());
    for (size_t end = gone.size(); end > 0;) {
        size_t start = end - 1;
        while (start > 0 && gone[start - 1] == gone[start] - 1)
            --start;
        beginRemoveRows(QModelIndex(), gone[start], gone[end - 1]);
        m_rows.erase(m_rows.begin() + gone[start], m_rows.begin() + gone[end - 1] + 1);
        m_rowsOfSource.clear();
        endRemoveRows();
        end = start;
    }
}

void Sorter::sourceRowsRemoved(const QModelIndex & /*parent*/, int first, int last)
{
    if (m_isWhole) {
        endRemoveRows();
        return;
    }
    const int count = last - first + 1;
    for (int &source : m_rows)
        source -= source > last ? count : 0;
    m_rowsOfSource.clear();
}

void Sorter::sourceLayoutChanged()
{
    arrange();
    endSourceLayoutChange();
}

void Sorter::sourceReset()
{
    arrange();
    endResetModel();
}
