#pragma once

#include "core/records/signalcontainer.h"

#include <QList>
#include <QMap>

/**
 * A QMap that tells of insertions and removals. Pointers in it are borrowed unless its holder says otherwise.
 * Copies share their contents until one is changed; iteration is read-only and in key order.
 */
template <typename K, typename V>
class Map : public SignalContainer
{
public:
    using const_iterator = typename QMap<K, V>::const_iterator;

    Map() = default;
    explicit Map(const QMap<K, V> &items) : m_items(items) {}
    Map(const Map &other) : SignalContainer(other), m_items(other.m_items) {}
    Map &operator=(const Map &other)
    {
        m_items = other.m_items;
        return *this;
    }
    ~Map() override = default;

    /** Puts a value under a key, in the place of an earlier one, and emits itemInserted either way. */
    void insert(const K &key, const V &value)
    {
        // Rows mostly come in key order, for which the hint spares the descent through the whole tree.
        m_items.insert(m_items.constEnd(), key, value);
        emit itemInserted(QVariant::fromValue(key));
    }

    /** Removes a key; false, without a signal, when it was not there. */
    bool remove(const K &key)
    {
        // The argument may be a reference into the node that goes.
        const K removed = key; // NOLINT(performance-unnecessary-copy-initialization)
        if (m_items.remove(removed) == 0)
            return false;
        emit itemDeleted(QVariant::fromValue(removed));
        return true;
    }

    /** Removes a key and gives what stood there, or a default value when it was not there. */
    V take(const K &key)
    {
        V taken = m_items.value(key);
        remove(key);
        return taken;
    }

    V value(const K &key, const V &fallback = V()) const { return m_items.value(key, fallback); }
    bool contains(const K &key) const { return m_items.contains(key); }
    QList<K> keys() const { return m_items.keys(); }
    QList<V> values() const { return m_items.values(); }
    int size() const { return m_items.size(); }
    int count() const { return m_items.size(); }
    bool isEmpty() const { return m_items.isEmpty(); }

    const_iterator begin() const { return m_items.constBegin(); }
    const_iterator end() const { return m_items.constEnd(); }
    const_iterator constBegin() const { return m_items.constBegin(); }
    const_iterator constEnd() const { return m_items.constEnd(); }
    const_iterator find(const K &key) const { return m_items.constFind(key); }
    const_iterator constFind(const K &key) const { return m_items.constFind(key); }

    const QMap<K, V> &items() const { return m_items; }

    /** Empties the map at once and without signals. The values are not deleted. */
    void clear() { m_items.clear(); }

    /** Exchanges the contents and nothing else, without signals. */
    void swap(Map &other) { m_items.swap(other.m_items); }

private:
    QMap<K, V> m_items;
};
