#include "models/contents/sortkeys.h"

#include "models/contents/contentscolumn.h"
#include "models/contents/contentsmodel.h"
#include "models/contents/tagorder.h"

#include <QString>

#include <algorithm>
#include <functional>

namespace {

// Texts are sorted by four characters at a time, which stand in the key itself, so that most comparisons read
// no text. Runs that are short, or equal over this many characters, are not worth another round.
constexpr int charactersAKey = 4;
constexpr int longestDepth = 256;
constexpr std::ptrdiff_t shortestRun = 24;

struct Key
{
    quint64 head;
    int place; // in the rows that were given
};

bool isHeadLess(const Key &left, const Key &right)
{
    return left.head < right.head;
}

qint64 idAt(const ContentsModel &contents, int row)
{
    return contents.fileIndex().idAt(row);
}

/** One sort by texts. */
class TextSort
{
public:
    TextSort(const ContentsModel &contents, int column, const std::vector<int> &rows)
        : m_contents(contents), m_rows(rows)
    {
        const auto textOf = ContentsColumn::of(column).sortText;
        m_texts.reserve(rows.size());
        for (const int row : rows)
            m_texts.push_back(textOf(contents, *contents.fileAt(row)));
    }

    void run(std::vector<Key> &keys) { sort(keys.begin(), keys.end(), 0); }

private:
    using Iterator = std::vector<Key>::iterator;

    const QString &text(const Key &key) const { return m_texts[static_cast<size_t>(key.place)]; }
    qint64 id(const Key &key) const { return idAt(m_contents, m_rows[static_cast<size_t>(key.place)]); }

    static quint64 headOf(const QString &text, int depth)
    {
        quint64 head = 0;
        for (int i = depth; i < depth + charactersAKey; ++i)
            head = head << 16 | (i < text.size() ? text.at(i).unicode() : 0);
        return head;
    }

    // The texts of all keys are equal before the depth.
    void sort(Iterator first, Iterator last, int depth)
    {
        for (Iterator key = first; key != last; ++key)
            key->head = headOf(text(*key), depth);
        std::sort(first, last, isHeadLess);
        while (first != last) {
            const Iterator end = std::upper_bound(first, last, *first, isHeadLess);
            sortEqualHeads(first, end, depth + charactersAKey);
            first = end;
        }
    }

    void sortEqualHeads(Iterator first, Iterator last, int depth)
    {
        if (last - first < 2)
            return;
        // A zero may be the end of a text or a character of it.
        const bool mayHaveEnded = (first->head & 0xffff) == 0;
        if (!mayHaveEnded && depth < longestDepth && last - first >= shortestRun) {
            sort(first, last, depth);
            return;
        }
        std::sort(first, last, [this](const Key &left, const Key &right) {
            const int order = text(left).compare(text(right));
            return order != 0 ? order < 0 : id(left) < id(right);
        });
    }

    const ContentsModel &m_contents;
    const std::vector<int> &m_rows;
    std::vector<QString> m_texts;
};

void sortByNumbers(const ContentsModel &contents, int column, const std::vector<int> &rows,
                   std::vector<Key> &keys)
{
    const auto numberOf = ContentsColumn::of(column).sortNumber;
    for (Key &key : keys) {
        const File &file = *contents.fileAt(rows[static_cast<size_t>(key.place)]);
        key.head = static_cast<quint64>(numberOf(file)) ^ (quint64(1) << 63);
    }
    std::sort(keys.begin(), keys.end(), [&](const Key &left, const Key &right) {
        if (left.head != right.head)
            return left.head < right.head;
        return idAt(contents, rows[static_cast<size_t>(left.place)]) <
               idAt(contents, rows[static_cast<size_t>(right.place)]);
    });
}

// Few rows are compared by their texts before all tags have ranks.
bool isWorthTagOrder(int column, size_t rows)
{
    constexpr size_t fewestRows = 64;
    return column == ContentsModel::TagsColumn && rows >= fewestRows;
}

/** Both ascending. */
template <typename Less>
std::vector<int> mergedRows(const std::vector<int> &order, const std::vector<int> &fresh, const Less &isLess)
{
    std::vector<int> merged;
    merged.reserve(order.size() + fresh.size());
    auto rest = order.cbegin();
    for (const int row : fresh) {
        // Steps that double lead close to the place: to compare two rows is dear.
        auto low = rest;
        auto high = rest;
        for (std::ptrdiff_t step = 1; high != order.cend() && isLess(*high, row); step *= 2) {
            low = high + 1;
            high += std::min<std::ptrdiff_t>(step, order.cend() - high);
        }
        const auto place = std::lower_bound(low, high, row, isLess);
        merged.insert(merged.end(), rest, place);
        merged.push_back(row);
        rest = place;
    }
    merged.insert(merged.end(), rest, order.cend());
    return merged;
}

} // namespace

bool SortKeys::isLess(const ContentsModel &contents, int column, int leftRow, int rightRow)
{
    const ContentsColumn &keys = ContentsColumn::of(column);
    const File &leftFile = *contents.fileAt(leftRow);
    const File &rightFile = *contents.fileAt(rightRow);
    if (keys.sortNumber) {
        const qint64 left = keys.sortNumber(leftFile);
        const qint64 right = keys.sortNumber(rightFile);
        return left != right ? left < right : idAt(contents, leftRow) < idAt(contents, rightRow);
    }
    const int order = keys.sortText(contents, leftFile).compare(keys.sortText(contents, rightFile));
    return order != 0 ? order < 0 : idAt(contents, leftRow) < idAt(contents, rightRow);
}

void SortKeys::sort(const ContentsModel &contents, int column, std::vector<int> &rows)
{
    if (isWorthTagOrder(column, rows.size())) {
        TagOrder(contents).sort(rows);
        return;
    }
    std::vector<Key> keys(rows.size());
    for (size_t i = 0; i < keys.size(); ++i)
        keys[i].place = static_cast<int>(i);
    if (ContentsColumn::of(column).sortNumber)
        sortByNumbers(contents, column, rows, keys);
    else
        TextSort(contents, column, rows).run(keys);
    std::vector<int> sorted(rows.size());
    std::transform(keys.begin(), keys.end(), sorted.begin(),
                   [&rows](const Key &key) { return rows[static_cast<size_t>(key.place)]; });
    rows.swap(sorted);
}

void SortKeys::merge(const ContentsModel &contents, int column, std::vector<int> &order,
                     std::vector<int> fresh)
{
    // More than such a part of the rows are sorted together with them, as comparing two of them reads texts.
    constexpr size_t mergedPart = 16;
    if (isWorthTagOrder(column, fresh.size())) {
        TagOrder tags(contents);
        if (fresh.size() > order.size() / mergedPart)
            tags.noteAllHeads();
        tags.sort(fresh);
        order = mergedRows(order, fresh, [&tags](int left, int right) { return tags.isLess(left, right); });
    } else if (fresh.size() > order.size() / mergedPart) {
        order.insert(order.end(), fresh.begin(), fresh.end());
        sort(contents, column, order);
    } else {
        sort(contents, column, fresh);
        order = mergedRows(order, fresh,
                           [&](int left, int right) { return isLess(contents, column, left, right); });
    }
}
