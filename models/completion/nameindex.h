#pragma once

#include <QHash>
#include <QString>
#include <QVector>

/**
 * The names of tags, to be found by any part of them while somebody types: what was used last comes first,
 * all others in natural order. A plain value; the case of letters does not count, but in idOf(). Names are
 * put in order once, a search is one pass over them.
 */
class NameIndex
{
public:
    struct Entry
    {
        qint64 id;
        QString name;
        QString folded; ///< as it is compared
    };

    void setNames(const QHash<qint64, QString> &names);
    /** The newest first; ids that no name has do no harm. */
    void setLastUsed(const QVector<qint64> &ids);

    int count() const { return m_entries.size(); }
    const Entry &at(int place) const { return m_entries.at(place); }
    /** The place of a tag, -1 without one. */
    int placeOf(qint64 id) const { return m_places.value(id, -1); }
    /** The tag of exactly this name, the first of several; 0 for none. */
    qint64 idOf(const QString &name) const { return m_ids.value(name); }
    /** The places of the names in which the text stands; of all for a blank one. The whole name is first. */
    QVector<int> find(const QString &text) const;
    /** Whether the text, and a comma behind it, stand in a name. */
    bool goesOnWithComma(const QString &text) const;

private:
    QVector<Entry> m_entries;
    QHash<qint64, int> m_places;
    QHash<QString, qint64> m_ids;
    QVector<int> m_lastUsed;
    QVector<bool> m_isLastUsed; ///< by place
};
