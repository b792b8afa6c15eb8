#include "core/controllers/collectionsettings.h"

#include "app/settings/collectionidentity.h"
#include "app/settings/settingvalues.h"
#include "core/controllers/collection.h"
#include "core/controllers/metatypes.h"
#include "models/trees/manualnodessorter.h"

#include <QVariant>

CollectionSettings::CollectionSettings(Collection *collection) : QObject(collection), m_collection(collection)
{
    // Without the operators of its types the store would drop what it is given.
    registerMetaTypes();
}

QString CollectionSettings::description() const
{
    return CollectionIdentity::description(m_collection->details());
}

QString CollectionSettings::shortName() const
{
    return CollectionIdentity::shortName(m_collection->details());
}

int CollectionSettings::tagGroupIndex() const
{
    return SettingValues::any(description() + QLatin1String("/TagGroupBar/currentIndex"), 0).toInt();
}

void CollectionSettings::setTagGroupIndex(int index)
{
    SettingValues::store(description() + QLatin1String("/TagGroupBar/currentIndex"), index);
}

QList<int> CollectionSettings::tagGroupOrder() const
{
    return SettingValues::any(description() + QLatin1String("/TagGroupBar/tagGroupOrder"))
        .value<QList<int>>();
}

void CollectionSettings::setTagGroupOrder(const QList<int> &groupIds)
{
    SettingValues::store(description() + QLatin1String("/TagGroupBar/tagGroupOrder"),
                         QVariant::fromValue(groupIds));
}

qint64 CollectionSettings::browsingTree() const
{
    return SettingValues::any(shortName() + QLatin1String("/BrowsingTree/Selection"), 0).toLongLong();
}

void CollectionSettings::setBrowsingTree(qint64 treeId)
{
    SettingValues::store(shortName() + QLatin1String("/BrowsingTree/Selection"), treeId);
}

QHash<QString, bool> CollectionSettings::relationExpansion() const
{
    return SettingValues::any(QLatin1String("TRview/expansionState_") + description())
        .value<QHash<QString, bool>>();
}

void CollectionSettings::setRelationExpansion(const QHash<QString, bool> &expanded)
{
    SettingValues::store(QLatin1String("TRview/expansionState_") + description(),
                         QVariant::fromValue(expanded));
}

QMap<qint64, QList<qint64>> CollectionSettings::nodeOrder() const
{
    QMap<qint64, QList<qint64>> order;
    SettingValues::any(description() + QLatin1String("/BrowsingTreeOrder"))
        .value<ManualNodesSorter>()
        .save(order);
    return order;
}

void CollectionSettings::setNodeOrder(const QMap<qint64, QList<qint64>> &order)
{
    // Stored as this type, under whose name the stream of earlier versions stands in the settings.
    ManualNodesSorter sorter;
    sorter.load(order);
    SettingValues::store(description() + QLatin1String("/BrowsingTreeOrder"), QVariant::fromValue(sorter));
}

std::optional<FileOrder> CollectionSettings::fileOrder() const
{
    const QString key = description() + QLatin1String("/FileOrder/");
    bool isStored = false;
    const int column = SettingValues::any(key + QLatin1String("column")).toInt(&isStored);
    if (!isStored)
        return std::nullopt;
    const bool isDescending = SettingValues::flag(key + QLatin1String("isDescending"), false);
    return FileOrder{column, isDescending ? Qt::DescendingOrder : Qt::AscendingOrder};
}

void CollectionSettings::setFileOrder(const FileOrder &order)
{
    const QString key = description() + QLatin1String("/FileOrder/");
    SettingValues::store(key + QLatin1String("column"), order.column);
    SettingValues::store(key + QLatin1String("isDescending"), order.order == Qt::DescendingOrder);
}

QList<qint64> CollectionSettings::favouriteTags() const
{
    return tagIds(QStringLiteral("/FavouriteTags"));
}

void CollectionSettings::setFavouriteTags(const QList<qint64> &tagIds)
{
    setTagIds(QStringLiteral("/FavouriteTags"), tagIds);
}

QList<qint64> CollectionSettings::lastUsedTags() const
{
    return tagIds(QStringLiteral("/LastUsedTags"));
}

void CollectionSettings::setLastUsedTags(const QList<qint64> &tagIds)
{
    setTagIds(QStringLiteral("/LastUsedTags"), tagIds);
}

QList<qint64> CollectionSettings::tagIds(const QString &key) const
{
    QList<qint64> ids;
    const QStringList texts = SettingValues::any(description() + key).toStringList();
    for (const QString &text : texts)
        ids.append(text.toLongLong());
    return ids;
}

void CollectionSettings::setTagIds(const QString &key, const QList<qint64> &tagIds)
{
    QStringList texts;
    for (const qint64 id : tagIds)
        texts.append(QString::number(id));
    SettingValues::store(description() + key, texts);
}
