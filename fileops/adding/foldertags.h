#pragma once

#include <QHash>
#include <QSet>
#include <QStringList>
#include <QVector>

struct ExpandedFolder;

/**
 * The tag names that folders give to the files in and below them. A folder without an entry hands on those of
 * the nearest folder above it. One thread at a time: looking up remembers the last folder.
 */
class FolderTags
{
public:
    FolderTags() = default;
    /** One name for each level of a folder's relative path; nothing for folders deeper than the limit. */
    FolderTags(const QVector<ExpandedFolder> &folders, bool isLimited, int limit);

    void add(const QString &folderPath, const QStringList &names);
    bool isEmpty() const { return m_names.isEmpty(); }
    /** Each name once, in the order of their first appearance. */
    QStringList allNames() const { return m_allNames; }
    /** The names for a file, found from its folder upward; empty when no folder has any. */
    QStringList namesFor(const QString &filePath) const;

private:
    QStringList lookUp(QString folder) const;

    QHash<QString, QStringList> m_names;
    QStringList m_allNames;
    QSet<QString> m_seen;
    mutable QString m_lastFolder;
    mutable QStringList m_lastNames;
};
