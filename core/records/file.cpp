#include "core/records/file.h"

#include <QDebug>

#include <algorithm>

namespace {

template <typename T>
bool assign(T &field, const T &value)
{
    if (field == value)
        return false;
    field = value;
    return true;
}

} // namespace

File::File(qint64 id, qint64 size, qint64 additionSeconds, qint64 modificationSeconds, qint64 loadId,
           const QString &name, const QString &description, const QString &idCode, const QString &path,
           const QString &relPath, qint64 storageId, qint64 thumbnailId, qint64 checksum, qint32 internal)
{
    m_record.id = id;
    m_record.size = size;
    m_record.loadId = loadId;
    m_record.storageId = storageId;
    m_record.thumbnailId = thumbnailId;
    m_record.checksum = checksum;
    m_record.additionSeconds = additionSeconds;
    m_record.modificationSeconds = modificationSeconds;
    m_record.internal = internal;
    m_record.name.assign(name);
    m_record.description.assign(description);
    m_record.setIdCode(idCode);
    m_record.setPath(path, name);
    m_record.setRelPath(relPath, name);
    // Last: the type goes by the kind of file and by whether it has a thumbnail.
    m_record.deriveType(name);
}

QVariant File::data(DataType type) const
{
    switch (type) {
    case Name:
        return name();
    case Description:
        return description();
    case AdditionDate:
        return additionDate();
    case ModificationDate:
        return modificationDate();
    case Size:
        return size();
    case LoadId:
        return loadId();
    case StorageId:
        return storageId();
    case IdCode:
        return idCode();
    case Type:
        return m_record.type;
    case Tags:
        return QVariant::fromValue(tags());
    case Checksum:
        return checksum();
    case Path:
        return path();
    case RelPath:
        return relPath();
    case Internal:
        return internal();
    default:
        break;
    }
    qDebug() << "File::data(): Unknown data type!";
    return {};
}

void File::setData(DataType type, const QVariant &value)
{
    // A value that was there already is no news: views and undo go by the signal.
    if (storeValue(type, value))
        emit dataChanged(type);
}

bool File::storeValue(DataType type, const QVariant &value)
{
    switch (type) {
    case Name:
        return setName(value.toString());
    case Description:
        return setDescription(value.toString());
    case AdditionDate:
        return setAdditionDate(value.toDateTime());
    case ModificationDate:
        return assign<qint64>(m_record.modificationSeconds, value.toLongLong());
    case Size:
        return assign<qint64>(m_record.size, value.toLongLong());
    case LoadId:
        return assign<qint64>(m_record.loadId, value.toLongLong());
    case IdCode:
        return setIdCode(value.toString());
    case Type:
        return setType(value.toString());
    case Path:
        return setPath(value.toString());
    case RelPath:
        return setRelPath(value.toString());
    case Internal:
        return assign<qint32>(m_record.internal, value.toInt());
    default:
        return false;
    }
}

bool File::setName(const QString &name)
{
    if (m_record.name.isEqual(name))
        return false;
    // A path does not follow its name by itself: it is put together before the name goes.
    const QString oldPath = path();
    const QString oldRelPath = relPath();
    m_record.name.assign(name);
    m_record.setPath(oldPath, name);
    m_record.setRelPath(oldRelPath, name);
    return true;
}

bool File::setDescription(const QString &description)
{
    if (m_record.description.isEqual(description))
        return false;
    m_record.description.assign(description);
    return true;
}

bool File::setType(const QString &type)
{
    if (m_record.type == type)
        return false;
    m_record.setType(type);
    return true;
}

bool File::setIdCode(const QString &idCode)
{
    if (this->idCode() == idCode)
        return false;
    m_record.setIdCode(idCode);
    return true;
}

bool File::setAdditionDate(const QDateTime &date)
{
    // No date at all would turn into the year 1970.
    if (!date.isValid())
        return false;
    return assign<qint64>(m_record.additionSeconds, date.toSecsSinceEpoch());
}

bool File::setPath(const QString &path)
{
    if (this->path() == path)
        return false;
    m_record.setPath(path, name());
    return true;
}

bool File::setRelPath(const QString &relPath)
{
    if (this->relPath() == relPath)
        return false;
    m_record.setRelPath(relPath, name());
    return true;
}

bool File::addTag(qint64 tagId)
{
    if (hasTag(tagId))
        return false;
    addTags({tagId});
    return true;
}

bool File::insertTag(qint64 tagId)
{
    if (hasTag(tagId))
        return false;
    // Tags of a file are read in the order of their ids; one that comes by an edit takes the same place.
    QVector<qint64> ids = tags();
    ids.insert(std::upper_bound(ids.begin(), ids.end(), tagId), tagId);
    setTags(ids);
    return true;
}

bool File::removeTag(qint64 tagId)
{
    if (!hasTag(tagId))
        return false;
    removeTags({tagId});
    return true;
}

void File::addTags(const QVector<qint64> &tagIds)
{
    if (!tagIds.isEmpty())
        setTags(tags() + tagIds);
}

void File::removeTags(const QVector<qint64> &tagIds)
{
    QVector<qint64> kept = tags();
    const auto isRemoved = [&tagIds](qint64 tagId) { return tagIds.contains(tagId); };
    kept.erase(std::remove_if(kept.begin(), kept.end(), isRemoved), kept.end());
    setTags(kept);
}

void File::setTags(const QVector<qint64> &tagIds)
{
    // One assignment and one signal for any number of tags: the block is written anew each time.
    if (m_record.tags == tagIds)
        return;
    m_record.tags.assign(tagIds);
    emit fileTagsChanged(tagIds);
}
