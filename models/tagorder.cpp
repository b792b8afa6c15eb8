#include "models/tagorder.h"

#include "core/file.h"
#include "models/contentsmodel.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace {

constexpr int headBits = 64;

struct Key
{
    quint64 head;
    int row;
};

} // namespace

TagOrder::TagOrder(const ContentsModel &contents) : m_contents(contents)
{
    rankNames();
    const int rows = contents.fileIndex().size();
    m_heads.reserve(static_cast<size_t>(rows));
    for (int row = 0; row < rows; ++row)
        m_heads.push_back(headOf(row));
}

// A name stands before others with a comma behind it, which may change its place among the names: both have a
// rank. Zero stays for what is no more there, which is less than everything.
void TagOrder::rankNames()
{
    const FileIndex &index = m_contents.fileIndex();
    const int count = index.numberCount();
    QStringList pieces;
    std::vector<int> order;
    for (int number = 0; number < count; ++number) {
        const bool isTag = number >= FileIndex::firstTagNumber;
        const QString name = isTag ? m_contents.tagNames({index.tagId(number)}) : QString();
        pieces << name << name + QLatin1String(", ");
        if (!name.isEmpty())
            order.insert(order.end(), {2 * number, 2 * number + 1});
    }
    std::sort(order.begin(), order.end(),
              [&pieces](int left, int right) { return pieces.at(left) < pieces.at(right); });
    m_inner.resize(static_cast<size_t>(count));
    m_last.resize(static_cast<size_t>(count));
    quint32 rank = 0;
    const QString *previous = nullptr;
    for (const int piece : order) {
        rank += previous && *previous == pieces.at(piece) ? 0 : 1;
        previous = &pieces.at(piece);
        (piece % 2 ? m_inner : m_last)[static_cast<size_t>(piece / 2)] = rank;
    }
    m_rankBits = rank <= std::numeric_limits<quint16>::max() ? 16 : 32;
    noteContinuations(order, pieces);
}

void TagOrder::noteContinuations(const std::vector<int> &order, const QStringList &pieces)
{
    const auto rankOf = [this](int piece) {
        return (piece % 2 ? m_inner : m_last)[static_cast<size_t>(piece / 2)];
    };
    m_continuations.resize(order.size() + 1);
    std::iota(m_continuations.begin(), m_continuations.end(), 0U);
    // The pieces that the present one begins with, the shortest first.
    std::vector<int> open;
    quint32 rank = 0; // of the piece before
    const auto close = [&] {
        m_continuations[rankOf(open.back())] = rank;
        open.pop_back();
    };
    for (const int piece : order) {
        while (!open.empty() && !pieces.at(piece).startsWith(pieces.at(open.back())))
            close();
        rank = rankOf(piece);
        // At the end of a text all that goes on is greater, as the ranks have it.
        if (piece % 2)
            open.push_back(piece);
    }
    while (!open.empty())
        close();
}

std::vector<quint32> TagOrder::ranksOf(int row) const
{
    std::vector<quint32> ranks;
    size_t last = 0;
    for (const quint32 number : m_contents.fileIndex().tagsAt(row)) {
        if (m_inner[number] != 0) {
            ranks.push_back(m_inner[number]);
            last = number;
        }
    }
    if (!ranks.empty())
        ranks.back() = m_last[last];
    return ranks;
}

quint64 TagOrder::headOf(int row) const
{
    const FileIndex::TagNumbers tags = m_contents.fileIndex().tagsAt(row);
    quint64 head = 0;
    int shift = headBits;
    quint32 pending = 0; // a tag that may be the last one
    for (const quint32 number : tags) {
        if (m_inner[number] == 0)
            continue;
        if (pending != 0)
            head |= quint64(m_inner[pending]) << shift;
        if (shift == 0)
            return head;
        shift -= m_rankBits;
        pending = number;
    }
    return pending == 0 ? head : head | quint64(m_last[pending]) << shift;
}

bool TagOrder::isContinuation(quint32 rank, quint32 other) const
{
    return m_continuations[std::min(rank, other)] >= std::max(rank, other);
}

bool TagOrder::isHeadLess(quint64 left, quint64 right, int leftRow, int rightRow) const
{
    if (left == right)
        return isTailLess(leftRow, rightRow);
    int shift = headBits - m_rankBits;
    const quint64 mask = (quint64(1) << m_rankBits) - 1;
    while ((left >> shift) == (right >> shift))
        shift -= m_rankBits;
    // Where one name goes on with a comma as another does, what comes behind it decides.
    if (isContinuation(quint32(left >> shift & mask), quint32(right >> shift & mask)))
        return isTextLess(leftRow, rightRow);
    return left < right;
}

// Of two rows whose heads are equal.
bool TagOrder::isTailLess(int leftRow, int rightRow) const
{
    const FileIndex &index = m_contents.fileIndex();
    const quint64 lastRank = (quint64(1) << m_rankBits) - 1;
    if ((m_heads[static_cast<size_t>(leftRow)] & lastRank) != 0) {
        const std::vector<quint32> left = ranksOf(leftRow);
        const std::vector<quint32> right = ranksOf(rightRow);
        const auto end = left.begin() + std::ptrdiff_t(std::min(left.size(), right.size()));
        const auto [one, other] = std::mismatch(left.begin(), end, right.begin());
        if (one != end)
            return isContinuation(*one, *other) ? isTextLess(leftRow, rightRow) : *one < *other;
        if (left.size() != right.size())
            return left.size() < right.size();
    }
    return index.idAt(leftRow) < index.idAt(rightRow);
}

bool TagOrder::isTextLess(int leftRow, int rightRow) const
{
    const int order = m_contents.tagNames(m_contents.fileAt(leftRow)->tags())
                          .compare(m_contents.tagNames(m_contents.fileAt(rightRow)->tags()));
    const FileIndex &index = m_contents.fileIndex();
    return order != 0 ? order < 0 : index.idAt(leftRow) < index.idAt(rightRow);
}

bool TagOrder::isLess(int leftRow, int rightRow) const
{
    return isHeadLess(m_heads[static_cast<size_t>(leftRow)], m_heads[static_cast<size_t>(rightRow)], leftRow,
                      rightRow);
}

void TagOrder::sort(std::vector<int> &rows) const
{
    std::vector<Key> keys;
    keys.reserve(rows.size());
    for (const int row : rows)
        keys.push_back({m_heads[static_cast<size_t>(row)], row});
    std::sort(keys.begin(), keys.end(), [this](const Key &left, const Key &right) {
        return isHeadLess(left.head, right.head, left.row, right.row);
    });
    std::transform(keys.begin(), keys.end(), rows.begin(), [](const Key &key) { return key.row; });
}
