#include "core/records/compactids.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

CompactIds::~CompactIds()
{
    std::free(m_block);
}

void CompactIds::assign(const qint64 *ids, int count)
{
    std::free(std::exchange(m_block, nullptr));
    if (count <= 0)
        return;
    const auto isSmall = [](qint64 id) { return id >= 0 && id <= std::numeric_limits<quint32>::max(); };
    const bool isWide = !std::all_of(ids, ids + count, isSmall);
    const auto size = static_cast<size_t>(count);
    // One block with the count in front: a vector would take 16 bytes more for each of a million files.
    void *memory = std::malloc(sizeof(quint32) + size * (isWide ? sizeof(qint64) : sizeof(quint32)));
    if (!memory)
        throw std::bad_alloc();
    m_block = static_cast<quint32 *>(memory);
    *m_block = static_cast<quint32>(count) | (isWide ? wideBit : 0);
    if (isWide)
        // Eight bytes behind four are not aligned, so that they are copied and never read in place.
        std::memcpy(m_block + 1, ids, size * sizeof(qint64));
    else
        std::transform(ids, ids + count, m_block + 1, [](qint64 id) { return static_cast<quint32>(id); });
}

bool CompactIds::contains(qint64 id) const
{
    for (int i = 0; i < size(); ++i) {
        if (at(i) == id)
            return true;
    }
    return false;
}

QVector<qint64> CompactIds::toVector() const
{
    QVector<qint64> ids(size());
    for (int i = 0; i < ids.size(); ++i)
        ids[i] = at(i);
    return ids;
}

bool CompactIds::operator==(const QVector<qint64> &ids) const
{
    if (ids.size() != size())
        return false;
    for (int i = 0; i < ids.size(); ++i) {
        if (at(i) != ids.at(i))
            return false;
    }
    return true;
}
