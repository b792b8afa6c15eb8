#include "models/contents/tagorder.h"

#include "core/records/file.h"
#include "models/contents/contentsmodel.h"

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

/** The ranks of the tags of one row, in its order, those without a name left out. */
class RankReader
{
public:
    RankReader(FileIndex::TagNumbers tags, const std::vector<quint32> &inner,
               const std::vector<quint32> &last)
        : m_inner(inner), m_last(last), m_next(tags.begin()), m_end(tags.end())
    {
        skipNameless();
    }

    bool atEnd() const { return m_next == m_end; }
    quint32 next()
    {
        const quint32 number = *m_next++;
        skipNameless();
        return atEnd() ? m_last[number] : m_inner[number];
    }

private:
    void skipNameless()
    {
        while (m_next != m_end && m_inner[*m_next] == 0)
            ++m_next;
    }

    const std::vector<quint32> &m_inner;
    const std::vector<quint32> &m_last;
    const quint32 *m_next;
    const quint32 *m_end;
};

} // namespace

TagOrder::TagOrder(const ContentsModel &contents) : m_contents(contents)
{
    rankNames();
}

void TagOrder::noteAllHeads()
{
    const int rows = m_contents.fileIndex().size();
    std::vector<quint64> heads;
    heads.reserve(static_cast<size_t>(rows));
    for (int row = 0; row < rows; ++row)
        heads.push_back(makeHead(row));
    m_heads.swap(heads);
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

quint64 TagOrder::makeHead(int row) const
{
    RankReader ranks(m_contents.fileIndex().tagsAt(row), m_inner, m_last);
    quint64 head = 0;
    for (int shift = headBits - m_rankBits; shift >= 0 && !ranks.atEnd(); shift -= m_rankBits)
        head |= quint64(ranks.next()) << shift;
    return head;
}

bool TagOrder::isContinuation(quint32 rank, quint32 other) const
{
    return m_continuations[std::min(rank, other)] >= std::max(rank, other);
}

bool TagOrder::isHeadLess(quint64 left, quint64 right, int leftRow, int rightRow) const
{
    if (left == right)
        return isTailLess(left, leftRow, rightRow);
    int shift = headBits - m_rankBits;
    const quint64 mask = (quint64(1) << m_rankBits) - 1;
    while ((left >> shift) == (right >> shift))
        shift -= m_rankBits;
    // Where one name goes on with a comma as another does, what comes behind it decides.
    if (isContinuation(quint32(left >> shift & mask), quint32(right >> shift & mask)))
        return isTextLess(leftRow, rightRow);
    return left < right;
}

// Of two rows that have this head both.
bool TagOrder::isTailLess(quint64 head, int leftRow, int rightRow) const
{
    const FileIndex &index = m_contents.fileIndex();
    const quint64 lastRank = (quint64(1) << m_rankBits) - 1;
    if ((head & lastRank) != 0) {
        RankReader left(index.tagsAt(leftRow), m_inner, m_last);
        RankReader right(index.tagsAt(rightRow), m_inner, m_last);
        while (!left.atEnd() && !right.atEnd()) {
            const quint32 one = left.next();
            const quint32 other = right.next();
            if (one != other)
                return isContinuation(one, other) ? isTextLess(leftRow, rightRow) : one < other;
        }
        if (left.atEnd() != right.atEnd())
            return left.atEnd();
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
    return isHeadLess(headOf(leftRow), headOf(rightRow), leftRow, rightRow);
}

void TagOrder::sort(std::vector<int> &rows) const
{
    std::vector<Key> keys;
    keys.reserve(rows.size());
    for (const int row : rows)
        keys.push_back({headOf(row), row});
    std::sort(keys.begin(), keys.end(), [this](const Key &left, const Key &right) {
        return isHeadLess(left.head, right.head, left.row, right.row);
    });
    std::transform(keys.begin(), keys.end(), rows.begin(), [](const Key &key) { return key.row; });
}
