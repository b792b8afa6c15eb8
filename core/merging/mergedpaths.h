#pragma once

#include <QHash>
#include <QSet>
#include <QStringList>

#include <set>

/**
 * What becomes of the paths of the tag relationships when tags become one of them. Each path goes on with the
 * tag that stays. Where that would stand below itself, or a tag below another one for a second time, which
 * nobody could put there, its place falls away, and what is below it goes to the place that there is.
 */
class MergedPaths
{
public:
    MergedPaths(const QStringList &paths, qint64 target, const QSet<qint64> &others);

    const QStringList &removed() const { return m_removed; }
    const QStringList &added() const { return m_added; }

private:
    void enter(const QString &path);
    /** A place of the tag somewhere below; empty without one. */
    QString standingBelow(const QString &path, const QString &tag) const;
    QString placeFor(const QString &parent, const QString &tag);

    QStringList m_removed;
    QStringList m_added;
    QHash<QString, std::set<QString>> m_places; ///< by tag
};
