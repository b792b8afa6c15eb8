#include "core/merging/mergedpaths.h"

#include <algorithm>

namespace {
const QLatin1Char separator('.');

QString parentOf(const QString &path)
{
    return path.left(qMax(0, path.lastIndexOf(separator)));
}

QString tagOf(const QString &path)
{
    return path.mid(path.lastIndexOf(separator) + 1);
}
} // namespace

MergedPaths::MergedPaths(const QStringList &paths, qint64 target, const QSet<qint64> &others)
{
    const auto isOther = [&others](const QStringRef &tag) { return others.contains(tag.toLongLong()); };
    for (const QString &path : paths) {
        const QVector<QStringRef> tags = path.splitRef(separator);
        if (std::any_of(tags.cbegin(), tags.cend(), isOther))
            m_removed.append(path);
        else
            enter(path);
    }
    // A path sorts behind each of its beginnings: parents come first.
    m_removed.sort();
    QHash<QString, QString> places;
    for (const QString &path : qAsConst(m_removed)) {
        const QString parent = parentOf(path);
        const QString tag = tagOf(path);
        places.insert(path, placeFor(places.value(parent, parent),
                                     others.contains(tag.toLongLong()) ? QString::number(target) : tag));
    }
}

void MergedPaths::enter(const QString &path)
{
    m_places[tagOf(path)].insert(path);
}

QString MergedPaths::standingBelow(const QString &path, const QString &tag) const
{
    const auto places = m_places.constFind(tag);
    if (places == m_places.cend())
        return {};
    // With the separator, as "1.2" is no place above "1.23".
    const QString beginning = path + separator;
    const auto first = places->lower_bound(beginning);
    return first != places->cend() && first->startsWith(beginning) ? *first : QString();
}

QString MergedPaths::placeFor(const QString &parent, const QString &tag)
{
    // It would stand below itself.
    if (parent.split(separator).contains(tag))
        return parent;
    const QString path = parent.isEmpty() ? tag : parent + separator + tag;
    const auto places = m_places.constFind(tag);
    if (places != m_places.cend() && places->count(path) > 0)
        return path;
    // Anywhere below the same parent counts, but at the top level a tag may stand once more.
    const QString standing = parent.isEmpty() ? QString() : standingBelow(parent, tag);
    if (!standing.isEmpty())
        return standing;
    enter(path);
    m_added.append(path);
    return path;
}
