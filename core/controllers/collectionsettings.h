#pragma once

#include <QHash>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>

#include <optional>

class Collection;

/** What files are sorted by: a column of the file table, -1 for the order in which they were added. */
struct FileOrder
{
    int column;
    Qt::SortOrder order;
};

/**
 * The settings that belong to one database, kept in the user's store under keys made of the database's place.
 * Nothing is cached: each call reads or writes the store by itself. GUI thread.
 */
class CollectionSettings : public QObject
{
    Q_OBJECT

public:
    explicit CollectionSettings(Collection *collection);

    /** The tab of tag groups that was shown, by its index. */
    int tagGroupIndex() const;
    void setTagGroupIndex(int index);

    /** The ids of the groups that are shown as tabs, in their order. */
    QList<int> tagGroupOrder() const;
    void setTagGroupOrder(const QList<int> &groupIds);

    /** The browsing tree in use; 0 is the default one. */
    qint64 browsingTree() const;
    void setBrowsingTree(qint64 treeId);

    /** Which relationship paths are expanded. */
    QHash<QString, bool> relationExpansion() const;
    void setRelationExpansion(const QHash<QString, bool> &expanded);

    /** The children of each browsing node in their hand-made order, as far as there is one. */
    QMap<qint64, QList<qint64>> nodeOrder() const;
    void setNodeOrder(const QMap<qint64, QList<qint64>> &order);

    /** The order that was chosen last, if there is one. */
    std::optional<FileOrder> fileOrder() const;
    void setFileOrder(const FileOrder &order);

    /** The tags with keys of their own, by the place of the key; 0 where there is none. */
    QList<qint64> favouriteTags() const;
    void setFavouriteTags(const QList<qint64> &tagIds);
    /** The tags that were typed last, the newest first. */
    QList<qint64> lastUsedTags() const;
    void setLastUsedTags(const QList<qint64> &tagIds);

private:
    QList<qint64> tagIds(const QString &key) const;
    void setTagIds(const QString &key, const QList<qint64> &tagIds);
    QString description() const;
    QString shortName() const;

    const Collection *m_collection;
};
