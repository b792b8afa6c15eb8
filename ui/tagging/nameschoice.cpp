#include "ui/tagging/nameschoice.h"

#include <algorithm>

void NamesChoice::take(qint64 id, const QString &name)
{
    // A tag that exists keeps its name letter for letter, whatever blanks another client gave it.
    const QString plain = id > 0 ? name : name.simplified();
    const auto isSame = [&](const Tag &tag) { return id > 0 ? tag.id == id : tag.name == plain; };
    if (!plain.isEmpty() && std::none_of(m_tags.cbegin(), m_tags.cend(), isSame))
        m_tags.append({id, plain});
}

void NamesChoice::takeLastBack()
{
    if (!m_tags.isEmpty())
        m_tags.removeLast();
}

QSet<qint64> NamesChoice::ids() const
{
    QSet<qint64> ids;
    for (const Tag &tag : m_tags)
        ids.insert(tag.id);
    return ids;
}

QVector<TakenNames::Name> NamesChoice::names() const
{
    QVector<TakenNames::Name> names;
    for (const Tag &tag : m_tags)
        names.append({tag.name, tag.id == 0});
    return names;
}

ChosenTags NamesChoice::tags(const NameIndex &index) const
{
    ChosenTags tags;
    for (const Tag &tag : m_tags) {
        // Another client, or the line before, may have made the tag since its name was taken as a new one.
        const qint64 id = tag.id > 0 ? tag.id : index.idOf(tag.name);
        if (id == 0)
            tags.newNames.append(tag.name);
        else if (!tags.ids.contains(id))
            tags.ids.append(id);
    }
    return tags;
}
