#pragma once

#include <QSet>
#include <QStringList>

/** The rows that say which tags stand below which, while some of the tags stay behind. */
class RelationshipPaths
{
public:
    explicit RelationshipPaths(const QSet<qint64> &tagIds) : m_tagIds(tagIds) {}

    /** Takes a path that ends in one of the tags, cut down to them, with each of its beginnings. */
    void add(const QString &path);
    const QSet<QString> &paths() const { return m_paths; }
    /** Of those that are deeper than a hand can make them, and would grow without bounds. */
    int leftOut() const { return m_leftOut; }

private:
    const QSet<qint64> &m_tagIds;
    QSet<QString> m_paths;
    int m_leftOut = 0;
};
