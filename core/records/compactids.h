#pragma once

#include <QVector>

#include <cstddef>
#include <cstring>
#include <utility>

/**
 * A list of ids in one small block of memory: four bytes for each where all are small enough, which those of
 * tags are.
 */
class CompactIds
{
public:
    CompactIds() = default;
    CompactIds(const CompactIds &) = delete;
    CompactIds &operator=(const CompactIds &) = delete;
    CompactIds(CompactIds &&other) noexcept : m_block(std::exchange(other.m_block, nullptr)) {}
    CompactIds &operator=(CompactIds &&other) noexcept
    {
        std::swap(m_block, other.m_block);
        return *this;
    }
    ~CompactIds();

    void assign(const qint64 *ids, int count);
    void assign(const QVector<qint64> &ids) { assign(ids.constData(), ids.size()); }

    bool isEmpty() const { return !m_block; }
    int size() const { return m_block ? static_cast<int>(*m_block & ~wideBit) : 0; }
    qint64 at(int place) const
    {
        if (!isWide())
            return m_block[1 + place];
        qint64 id = 0;
        std::memcpy(&id, m_block + 1 + 2 * std::ptrdiff_t(place), sizeof id);
        return id;
    }
    bool contains(qint64 id) const;
    QVector<qint64> toVector() const;
    bool operator==(const QVector<qint64> &ids) const;

private:
    static constexpr quint32 wideBit = 1U << 31;
    bool isWide() const { return (*m_block & wideBit) != 0; }

    quint32 *m_block = nullptr; ///< how many, and whether in eight bytes each, then they; null for no id
};
