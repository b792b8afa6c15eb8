#pragma once

#include <QSet>
#include <QString>
#include <QStringList>
#include <QVector>

/** What others have changed, by the keys of what a program keeps. */
struct ForeignChanges
{
    QSet<qint64> tags;
    QSet<qint64> groups;
    QSet<qint64> nodes;
    QSet<qint64> files;
    QSet<qint64> paths; ///< of external files
    QSet<qint64> thumbnails;
    QSet<qint64> trees;
    QSet<QString> relations;
    bool isOfAll = false; ///< too many to name them

    void add(const ForeignChanges &more)
    {
        tags += more.tags;
        groups += more.groups;
        nodes += more.nodes;
        files += more.files;
        paths += more.paths;
        thumbnails += more.thumbnails;
        trees += more.trees;
        relations += more.relations;
        isOfAll = isOfAll || more.isOfAll;
    }
    bool isEmpty() const
    {
        return !isOfAll && tags.isEmpty() && groups.isEmpty() && nodes.isEmpty() && files.isEmpty() &&
               paths.isEmpty() && thumbnails.isEmpty() && trees.isEmpty() && relations.isEmpty();
    }
};

/** What an edit rests on: when others change any of it, the edit is not what its user meant any more. */
struct EditBase
{
    QVector<qint64> files;
    QVector<qint64> tags;
    QVector<qint64> groups;
    QVector<qint64> nodes;
    QVector<qint64> trees;
    QStringList relations;

    bool isMetBy(const ForeignChanges &changes) const
    {
        return changes.isOfAll || isIn(files, changes.files) || isIn(tags, changes.tags) ||
               isIn(groups, changes.groups) || isIn(nodes, changes.nodes) || isIn(trees, changes.trees) ||
               isIn(relations, changes.relations);
    }
    void add(const EditBase &more)
    {
        files += more.files;
        tags += more.tags;
        groups += more.groups;
        nodes += more.nodes;
        trees += more.trees;
        relations += more.relations;
    }

private:
    template <class List, class Set>
    static bool isIn(const List &keys, const Set &changed)
    {
        if (changed.isEmpty())
            return false;
        for (const auto &key : keys) {
            if (changed.contains(key))
                return true;
        }
        return false;
    }
};
