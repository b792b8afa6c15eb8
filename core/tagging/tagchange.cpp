#include "core/tagging/tagchange.h"

#include <algorithm>

namespace Tagging {
namespace {
void sortOnce(QVector<qint64> &ids)
{
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
}

TagChange &changeOf(qint64 tagId, TagChanges &changes)
{
    const auto known = std::find_if(changes.begin(), changes.end(),
                                    [tagId](const TagChange &change) { return change.tagId == tagId; });
    if (known != changes.end())
        return *known;
    changes.append(TagChange{tagId, {}, {}});
    return changes.last();
}
} // namespace

TagChanges of(QVector<qint64> fileIds, const QVector<qint64> &linked, const QVector<qint64> &unlinked)
{
    sortOnce(fileIds);
    TagChanges changes;
    for (const qint64 tagId : linked)
        changeOf(tagId, changes).linked = fileIds;
    for (const qint64 tagId : unlinked)
        changeOf(tagId, changes).unlinked = fileIds;
    return changes;
}

qint64 pairs(const TagChanges &changes)
{
    qint64 count = 0;
    for (const TagChange &change : changes)
        count += change.linked.size() + change.unlinked.size();
    return count;
}

QVector<qint64> files(const TagChanges &changes)
{
    QVector<qint64> ids;
    for (const TagChange &change : changes) {
        // Mostly they are all of the same files, whose list they share.
        for (const QVector<qint64> *list : {&change.linked, &change.unlinked}) {
            if (*list != ids)
                ids += *list;
        }
    }
    sortOnce(ids);
    return ids;
}

QVector<qint64> tags(const TagChanges &changes)
{
    QVector<qint64> ids;
    for (const TagChange &change : changes)
        ids.append(change.tagId);
    return ids;
}

TagChanges inverse(TagChanges changes)
{
    for (TagChange &change : changes)
        change.linked.swap(change.unlinked);
    return changes;
}
} // namespace Tagging
