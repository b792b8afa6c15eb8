#include "core/collectionsettings.h"

#include "app/collectionidentity.h"
#include "core/collection.h"

#include <QDataStream>
#include <QSettings>
#include <QVariant>

namespace {
QVariant read(const QString &key, const QVariant &fallback = QVariant())
{
    return QSettings().value(key, fallback);
}

void write(const QString &key, const QVariant &value)
{
    QSettings().setValue(key, value);
}
} // namespace

CollectionSettings::CollectionSettings(Collection *collection) : QObject(collection), m_collection(collection)
{
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
    return read(description() + QLatin1String("/TagGroupBar/currentIndex"), 0).toInt();
}

void CollectionSettings::setTagGroupIndex(int index)
{
    write(description() + QLatin1String("/TagGroupBar/currentIndex"), index);
}

QList<int> CollectionSettings::tagGroupOrder() const
{
    QList<int> groupIds;
    for (const QVariant &value : read(description() + QLatin1String("/TagGroupBar/tagGroupOrder")).toList())
        groupIds.append(value.toInt());
    return groupIds;
}

void CollectionSettings::setTagGroupOrder(const QList<int> &groupIds)
{
    QVariantList values;
    for (const int groupId : groupIds)
        values.append(groupId);
    write(description() + QLatin1String("/TagGroupBar/tagGroupOrder"), values);
}

qint64 CollectionSettings::browsingTree() const
{
    return read(shortName() + QLatin1String("/BrowsingTree/Selection"), 0).toLongLong();
}

void CollectionSettings::setBrowsingTree(qint64 treeId)
{
    write(shortName() + QLatin1String("/BrowsingTree/Selection"), treeId);
}

QHash<QString, bool> CollectionSettings::relationExpansion() const
{
    const QVariantMap stored = read(QLatin1String("TRview/expansionState_") + description()).toMap();
    QHash<QString, bool> expanded;
    for (auto it = stored.cbegin(); it != stored.cend(); ++it)
        expanded.insert(it.key(), it.value().toBool());
    return expanded;
}

void CollectionSettings::setRelationExpansion(const QHash<QString, bool> &expanded)
{
    QVariantMap stored;
    for (auto it = expanded.cbegin(); it != expanded.cend(); ++it)
        stored.insert(it.key(), it.value());
    write(QLatin1String("TRview/expansionState_") + description(), stored);
}

qint64 CollectionSettings::selectedTag() const
{
    return read(QLatin1String("MainWindow/selectedTag_") + description(), 0).toLongLong();
}

void CollectionSettings::setSelectedTag(qint64 tagId)
{
    write(QLatin1String("MainWindow/selectedTag_") + description(), tagId);
}

QMap<qint64, QList<qint64>> CollectionSettings::nodeOrder() const
{
    QByteArray bytes = read(description() + QLatin1String("/BrowsingTreeOrder")).toByteArray();
    QDataStream stream(&bytes, QIODevice::ReadOnly);
    stream.setVersion(QDataStream::Qt_5_12);
    QMap<qint64, QList<qint64>> order;
    stream >> order;
    return stream.status() == QDataStream::Ok ? order : QMap<qint64, QList<qint64>>();
}

void CollectionSettings::setNodeOrder(const QMap<qint64, QList<qint64>> &order)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_12);
    stream << order;
    write(description() + QLatin1String("/BrowsingTreeOrder"), bytes);
}
