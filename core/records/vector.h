#pragma once

#include "core/records/signalcontainer.h"

#include <QVector>

/**
 * A QVector that tells of additions and removals. Pointers in it are borrowed unless its holder says
 * otherwise. Copies share their contents until one is changed; iteration is read-only.
 */
template <typename T>
class Vector : public SignalContainer
{
public:
    using const_iterator = typename QVector<T>::const_iterator;
    using value_type = T;

    Vector() = default;
    explicit Vector(const QVector<T> &items) : m_items(items) {}
    Vector(const Vector &other) : SignalContainer(other), m_items(other.m_items) {}
    Vector &operator=(const Vector &other)
    {
        m_items = other.m_items;
        return *this;
    }
    ~Vector() override = default;

    /** Appends an item and emits itemAdded with its index. */
    void append(const T &item)
    {
        m_items.append(item);
        emit itemAdded(m_items.size() - 1);
    }

    /** Removes the item at an index and emits itemDeleted with that index; false outside the vector. */
    bool removeAt(int index)
    {
        if (index < 0 || index >= m_items.size())
            return false;
        m_items.remove(index);
        emit itemDeleted(index);
        return true;
    }

    /** Removes the first item that is equal; false when there is none. */
    bool removeOne(const T &item) { return removeAt(m_items.indexOf(item)); }

    const T &at(int index) const { return m_items.at(index); }
    T value(int index) const { return m_items.value(index); }
    int indexOf(const T &item) const { return m_items.indexOf(item); }
    bool contains(const T &item) const { return m_items.contains(item); }
    int size() const { return m_items.size(); }
    int count() const { return m_items.size(); }
    bool isEmpty() const { return m_items.isEmpty(); }
    void reserve(int size) { m_items.reserve(size); }

    const_iterator begin() const { return m_items.constBegin(); }
    const_iterator end() const { return m_items.constEnd(); }
    const_iterator constBegin() const { return m_items.constBegin(); }
    const_iterator constEnd() const { return m_items.constEnd(); }

    const QVector<T> &items() const { return m_items; }

    /** Empties the vector at once and without signals. The items are not deleted. */
    void clear() { m_items.clear(); }

    /** Exchanges the contents and nothing else, without signals. */
    void swap(Vector &other) { m_items.swap(other.m_items); }

private:
    QVector<T> m_items;
};
