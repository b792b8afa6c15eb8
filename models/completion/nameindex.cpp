#include "models/completion/nameindex.h"

#include "models/base/naturalorder.h"

#include <algorithm>

void NameIndex::setNames(const QHash<qint64, QString> &names)
{
    m_entries.clear();
    m_entries.reserve(names.size());
    for (auto it = names.cbegin(); it != names.cend(); ++it)
        // Folded once, not with each key that is pressed.
        m_entries.append({it.key(), it.value(), it.value().toCaseFolded()});
    const auto isLess = [](const Entry &left, const Entry &right) {
        if (naturalLessThan(left.name, right.name))
            return true;
        // Two names may be of one rank for the eye; the id keeps their order the same with each reading.
        return left.id < right.id && !naturalLessThan(right.name, left.name);
    };
    std::sort(m_entries.begin(), m_entries.end(), isLess);
    m_places.clear();
    m_ids.clear();
    for (int place = 0; place < m_entries.size(); ++place) {
        const Entry &entry = m_entries.at(place);
        m_places.insert(entry.id, place);
        if (!m_ids.contains(entry.name))
            m_ids.insert(entry.name, entry.id);
    }
    // Places of the old names mean other ones now.
    setLastUsed({});
}

void NameIndex::setLastUsed(const QVector<qint64> &ids)
{
    m_lastUsed.clear();
    m_isLastUsed.fill(false, m_entries.size());
    for (const qint64 id : ids) {
        const int place = placeOf(id);
        if (place < 0 || m_isLastUsed.at(place))
            continue;
        m_lastUsed.append(place);
        m_isLastUsed[place] = true;
    }
}

QVector<int> NameIndex::find(const QString &text) const
{
    // Blanks that were typed twice or left behind do not count, as names have none.
    const QString folded = text.simplified().toCaseFolded();
    QVector<int> whole;
    QVector<int> found;
    const auto look = [&](int place) {
        const QString &name = m_entries.at(place).folded;
        if (name == folded)
            whole.append(place);
        else if (name.contains(folded))
            found.append(place);
    };
    // Two passes instead of a sort: the entries are in order, and so is what was used last.
    for (const int place : m_lastUsed)
        look(place);
    for (int place = 0; place < m_entries.size(); ++place) {
        if (!m_isLastUsed.at(place))
            look(place);
    }
    // Of names that differ in case alone the one that was typed.
    std::stable_partition(whole.begin(), whole.end(),
                          [&](int place) { return m_entries.at(place).name == text.simplified(); });
    return whole + found;
}

bool NameIndex::goesOnWithComma(const QString &text) const
{
    const QString folded = text.simplified().toCaseFolded() + QLatin1Char(',');
    return folded.size() > 1 && std::any_of(m_entries.cbegin(), m_entries.cend(), [&](const Entry &entry) {
               return entry.folded.contains(folded);
           });
}
