#include "core/controllers/favouritetags.h"

#include "core/controllers/collection.h"
#include "core/controllers/collectionsettings.h"
#include "core/controllers/tagscontroller.h"

#include <algorithm>

namespace {
constexpr int mostLastUsed = 30;
}

FavouriteTags::FavouriteTags(TagsController *tags) : QObject(tags), m_tags(tags) {}

CollectionSettings *FavouriteTags::settings() const
{
    return m_tags->collection()->settings();
}

QList<qint64> FavouriteTags::places() const
{
    // A list of the settings may be of any length.
    QList<qint64> ids = settings()->favouriteTags().mid(0, most);
    while (ids.size() < most)
        ids.append(0);
    return ids;
}

qint64 FavouriteTags::tagAt(int place) const
{
    const qint64 tagId = places().value(place);
    // Another client may have removed the tag.
    return m_tags->tagName(tagId).isEmpty() ? 0 : tagId;
}

int FavouriteTags::placeOf(qint64 tagId) const
{
    return places().indexOf(tagId);
}

void FavouriteTags::setPlace(qint64 tagId, int place)
{
    QList<qint64> ids = places();
    // A tag has one key.
    if (ids.contains(tagId))
        ids[ids.indexOf(tagId)] = 0;
    if (place >= 0 && place < most)
        ids[place] = tagId;
    settings()->setFavouriteTags(ids);
}

QKeySequence FavouriteTags::keyOf(int place)
{
    // Alt+1 to Alt+9, then Alt+0, as the keys stand.
    return QKeySequence(Qt::ALT + Qt::Key_0 + (place + 1) % most);
}

QHash<qint64, QString> FavouriteTags::keyTexts() const
{
    QHash<qint64, QString> texts;
    const QList<qint64> ids = places();
    for (int place = 0; place < ids.size(); ++place) {
        if (ids.at(place) > 0)
            texts.insert(ids.at(place), keyOf(place).toString(QKeySequence::NativeText));
    }
    return texts;
}

QVector<qint64> FavouriteTags::lastUsed() const
{
    return settings()->lastUsedTags().toVector();
}

void FavouriteTags::noteUsed(const QVector<qint64> &tagIds)
{
    QList<qint64> ids = settings()->lastUsedTags();
    for (const qint64 tagId : tagIds) {
        ids.removeAll(tagId);
        ids.prepend(tagId);
    }
    settings()->setLastUsedTags(ids.mid(0, mostLastUsed));
}

QVariant FavouriteTags::state() const
{
    return QVariant::fromValue(QList<QList<qint64>>{places(), settings()->lastUsedTags()});
}

void FavouriteTags::setState(const QVariant &state)
{
    const auto lists = state.value<QList<QList<qint64>>>();
    settings()->setFavouriteTags(lists.value(0));
    settings()->setLastUsedTags(lists.value(1));
}

void FavouriteTags::merge(qlonglong target, const QVector<qint64> &others)
{
    const QList<qint64> favourites = places();
    const auto isOther = [&others](qint64 tagId) { return tagId > 0 && others.contains(tagId); };
    const auto first = std::find_if(favourites.cbegin(), favourites.cend(), isOther);
    if (first != favourites.cend() && !favourites.contains(target))
        setPlace(target, int(first - favourites.cbegin()));
    const QVector<qint64> used = lastUsed();
    if (!used.contains(target) && std::any_of(used.cbegin(), used.cend(), isOther))
        noteUsed({target});
}

void FavouriteTags::forget(const QVector<qint64> &tagIds)
{
    QList<qint64> favourites = places();
    QList<qint64> used = settings()->lastUsedTags();
    const QList<qint64> favouritesBefore = favourites;
    const int usedBefore = used.size();
    for (qint64 &id : favourites)
        id = tagIds.contains(id) ? 0 : id;
    for (const qint64 tagId : tagIds)
        used.removeAll(tagId);
    if (favourites != favouritesBefore)
        settings()->setFavouriteTags(favourites);
    if (used.size() != usedBefore)
        settings()->setLastUsedTags(used);
}
