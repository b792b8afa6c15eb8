#include "models/sortranks.h"

#include "core/file.h"
#include "models/contentsmodel.h"

#include <algorithm>
#include <limits>

namespace {

// The value of one row. Head orders as the whole value does and settles most comparisons by itself; it is the
// number of a number, the first four characters of a text.
struct SortKey
{
    quint64 head = 0;
    QString text;
    qint64 fileId = 0;
    int row = -1;
};

quint64 headOf(qint64 number)
{
    return static_cast<quint64>(number) ^ (quint64(1) << 63);
}

quint64 headOf(const QString &text)
{
    quint64 head = 0;
    for (int i = 0; i < 4; ++i)
        head = head << 16 | (i < text.size() ? text.at(i).unicode() : 0);
    return head;
}

bool isLessThan(const SortKey &left, const SortKey &right)
{
    if (left.head != right.head)
        return left.head < right.head;
    const int order = left.text.compare(right.text);
    return order != 0 ? order < 0 : left.fileId < right.fileId;
}

QString textOf(const ContentsModel &contents, const File &file, int column, int row)
{
    switch (column) {
    case ContentsModel::TypeColumn:
        return file.type();
    case ContentsModel::TagsColumn:
        return contents.data(contents.index(row, column)).toString();
    case ContentsModel::DescriptionColumn:
        return file.description();
    case ContentsModel::IdCodeColumn:
        return file.idCode();
    default:
        return file.name();
    }
}

SortKey keyOf(const ContentsModel &contents, int column, int row)
{
    const File &file = *contents.fileAt(row);
    SortKey key;
    key.fileId = file.id();
    key.row = row;
    switch (column) {
    case ContentsModel::ModificationDateColumn:
        key.head = headOf(file.modificationSeconds());
        break;
    case ContentsModel::AdditionDateColumn:
        key.head = headOf(file.additionSeconds());
        break;
    case ContentsModel::SizeColumn:
        key.head = headOf(file.size());
        break;
    case ContentsModel::LoadIdColumn:
        key.head = headOf(file.loadId());
        break;
    default:
        key.text = textOf(contents, file, column, row);
        key.head = headOf(key.text);
    }
    return key;
}

} // namespace

bool SortRanks::isLess(const ContentsModel &contents, int column, int leftRow, int rightRow)
{
    return isLessThan(keyOf(contents, column, leftRow), keyOf(contents, column, rightRow));
}

void SortRanks::clear()
{
    m_column = -1;
    m_ranks.clear();
}

bool SortRanks::hasAll(const std::vector<int> &rows) const
{
    return std::all_of(rows.begin(), rows.end(), [this](int row) { return rankOf(row) >= 0; });
}

void SortRanks::forget(int firstRow, int lastRow)
{
    const int last = std::min(lastRow, static_cast<int>(m_ranks.size()) - 1);
    for (int row = firstRow; row <= last; ++row)
        m_ranks[static_cast<size_t>(row)] = -1;
}

void SortRanks::rank(const ContentsModel &contents, int column, const std::vector<int> &rows)
{
    std::vector<SortKey> keys;
    keys.reserve(rows.size());
    for (int row : rows)
        keys.push_back(keyOf(contents, column, row));
    std::sort(keys.begin(), keys.end(), isLessThan);
    m_column = column;
    m_ranks.assign(static_cast<size_t>(contents.rowCount()), -1);
    int rank = 0;
    for (const SortKey &key : keys)
        m_ranks[static_cast<size_t>(key.row)] = rank++;
}
