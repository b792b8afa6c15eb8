#include "models/contents/tagrequirements.h"

#include <algorithm>

namespace {
bool dropTags(QVector<qint64> &list, const QSet<qint64> &tagIds)
{
    const auto isGone = [&tagIds](qint64 tagId) { return tagIds.contains(tagId); };
    const auto firstGone = std::remove_if(list.begin(), list.end(), isGone);
    const bool isChanged = firstGone != list.end();
    list.erase(firstGone, list.end());
    return isChanged;
}
} // namespace

TagRequirements::Change TagRequirements::forget(const QSet<qint64> &tagIds)
{
    bool isAsked = false;
    for (QVector<qint64> *list : {&required, &eitherOr, &excluded})
        isAsked = dropTags(*list, tagIds) || isAsked;
    // The database may give the id of a removed tag to a new one, which is no relative of those asked for.
    bool isWidened = dropTags(eitherOrWidened, tagIds);
    isWidened = dropTags(excludedWidened, tagIds) || isWidened;
    for (QVector<qint64> &alternatives : requiredAlternatives)
        isWidened = dropTags(alternatives, tagIds) || isWidened;
    return isAsked ? LessAsked : isWidened ? LessWidened : Same;
}

QVector<qint64> TagRequirements::allTags() const
{
    QVector<qint64> tagIds = required + eitherOr + excluded + eitherOrWidened + excludedWidened;
    for (const QVector<qint64> &alternatives : requiredAlternatives)
        tagIds += alternatives;
    return tagIds;
}
