#include "core/records/file.h"

#include "core/records/filekind.h"
#include "core/records/textpool.h"

#include <QDebug>

#include <algorithm>
#include <cstring>

namespace {

constexpr qint8 plainIcon = 0;
constexpr qint8 pdfIcon = 1;
constexpr qint8 documentIcon = 2;
constexpr qint8 sheetIcon = 3;
constexpr qint8 soundIcon = 4;
constexpr qint8 videoIcon = 5;
constexpr qint8 thumbnailIcon = 6;
constexpr qint8 hyperlinkIcon = 7;

constexpr int idCodeCapacity = 8;

struct KnownExtension
{
    QLatin1String text;
    qint8 iconKind;
};

const KnownExtension knownExtensions[] = {
    {QLatin1String("doc"), documentIcon}, {QLatin1String("docx"), documentIcon},
    {QLatin1String("xls"), sheetIcon},    {QLatin1String("pdf"), pdfIcon},
    {QLatin1String("mp4"), soundIcon},    {QLatin1String("mp3"), soundIcon},
    {QLatin1String("wav"), soundIcon},    {QLatin1String("m4a"), soundIcon},
    {QLatin1String("avi"), videoIcon},    {QLatin1String("wmv"), videoIcon},
    {QLatin1String("mov"), videoIcon},
};

// Each thread that makes records has its own, so that none of them needs a lock.
TextPool &folders()
{
    static thread_local TextPool pool;
    return pool;
}

TextPool &types()
{
    static thread_local TextPool pool;
    return pool;
}

// The kind of icon of an extension without its dot, or the fallback when it is none of ours.
qint8 iconKindOf(QStringView extension, qint8 fallback)
{
    for (const KnownExtension &known : knownExtensions) {
        if (extension.size() == known.text.size() && extension.compare(known.text, Qt::CaseInsensitive) == 0)
            return known.iconKind;
    }
    return fallback;
}

bool isSeparator(QChar character)
{
    return character == QLatin1Char('/') || character == QLatin1Char('\\');
}

// True when the last component of the path is the name, so that the folder is all that need be kept.
bool endsInName(const QString &path, const QString &name)
{
    const int folderSize = path.size() - name.size();
    return !name.isEmpty() && folderSize > 0 && isSeparator(path.at(folderSize - 1)) && path.endsWith(name);
}

QString packedPath(const QString &path, const QString &name, bool isFolderAlone)
{
    if (!isFolderAlone)
        return path;
    return folders().share(QStringView(path).left(path.size() - name.size()));
}

bool fitsIntoRecord(const QString &idCode)
{
    return idCode.size() <= idCodeCapacity && std::all_of(idCode.begin(), idCode.end(), [](QChar character) {
               return character.unicode() > 0 && character.unicode() < 0x80;
           });
}

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
    : m_id(id),
      m_size(size),
      m_loadId(loadId),
      m_storageId(storageId),
      m_thumbnailId(thumbnailId),
      m_checksum(checksum),
      m_additionSeconds(additionSeconds),
      m_modificationSeconds(modificationSeconds),
      m_name(name),
      m_description(description),
      m_idCode{},
      m_internal(internal)
{
    setIdCode(idCode);
    setPath(path);
    setRelPath(relPath);
    deriveType();
}

File::~File()
{
    dropForeignIdCode();
}

QString File::idCode() const
{
    if (m_hasForeignIdCode)
        return *m_foreignIdCode;
    return QString::fromLatin1(m_idCode, static_cast<int>(qstrnlen(m_idCode, idCodeCapacity)));
}

QString File::path() const
{
    return m_pathEndsInName ? m_pathText + m_name : m_pathText;
}

QString File::relPath() const
{
    return m_relPathEndsInName ? m_relPathText + m_name : m_relPathText;
}

QVariant File::data(DataType type) const
{
    switch (type) {
    case Name:
        return m_name;
    case Description:
        return m_description;
    case AdditionDate:
        return additionDate();
    case ModificationDate:
        return modificationDate();
    case Size:
        return m_size;
    case LoadId:
        return m_loadId;
    case StorageId:
        return m_storageId;
    case IdCode:
        return idCode();
    case Type:
        return m_type;
    case Tags:
        return QVariant::fromValue(m_tags);
    case Checksum:
        return m_checksum;
    case Path:
        return path();
    case RelPath:
        return relPath();
    case Internal:
        return m_internal;
    default:
        break;
    }
    qDebug() << "File::data(): Unknown data type!";
    return {};
}

void File::setData(DataType type, const QVariant &value)
{
    if (storeValue(type, value))
        emit dataChanged(type);
}

bool File::storeValue(DataType type, const QVariant &value)
{
    switch (type) {
    case Name:
        return setName(value.toString());
    case Description:
        return assign(m_description, value.toString());
    case AdditionDate:
        return setAdditionDate(value.toDateTime());
    case ModificationDate:
        return assign<qint64>(m_modificationSeconds, value.toLongLong());
    case Size:
        return assign<qint64>(m_size, value.toLongLong());
    case LoadId:
        return assign<qint64>(m_loadId, value.toLongLong());
    case IdCode:
        return setIdCode(value.toString());
    case Type:
        return assign(m_type, types().share(value.toString()));
    case Path:
        return setPath(value.toString());
    case RelPath:
        return setRelPath(value.toString());
    case Internal:
        return assign<qint32>(m_internal, value.toInt());
    default:
        return false;
    }
}

bool File::setName(const QString &name)
{
    if (m_name == name)
        return false;
    // A path does not follow its name by itself: it is put together before the name goes.
    const QString oldPath = path();
    const QString oldRelPath = relPath();
    m_name = name;
    m_pathEndsInName = endsInName(oldPath, m_name);
    m_pathText = packedPath(oldPath, m_name, m_pathEndsInName);
    m_relPathEndsInName = endsInName(oldRelPath, m_name);
    m_relPathText = packedPath(oldRelPath, m_name, m_relPathEndsInName);
    return true;
}

bool File::setIdCode(const QString &idCode)
{
    if (this->idCode() == idCode)
        return false;
    dropForeignIdCode();
    if (fitsIntoRecord(idCode)) {
        std::transform(idCode.begin(), idCode.end(), m_idCode,
                       [](QChar character) { return character.toLatin1(); });
    } else {
        m_foreignIdCode = new QString(idCode);
        m_hasForeignIdCode = true;
    }
    return true;
}

void File::dropForeignIdCode()
{
    if (m_hasForeignIdCode)
        delete m_foreignIdCode;
    m_hasForeignIdCode = false;
    std::memset(m_idCode, 0, sizeof m_idCode);
}

bool File::setAdditionDate(const QDateTime &date)
{
    // No date at all would turn into the year 1970.
    if (!date.isValid())
        return false;
    return assign<qint64>(m_additionSeconds, date.toSecsSinceEpoch());
}

bool File::setPath(const QString &path)
{
    if (this->path() == path)
        return false;
    m_pathEndsInName = endsInName(path, m_name);
    m_pathText = packedPath(path, m_name, m_pathEndsInName);
    return true;
}

bool File::setRelPath(const QString &relPath)
{
    if (this->relPath() == relPath)
        return false;
    m_relPathEndsInName = endsInName(relPath, m_name);
    m_relPathText = packedPath(relPath, m_name, m_relPathEndsInName);
    return true;
}

void File::deriveType()
{
    m_iconKind = plainIcon;
    m_type = QString();
    if (m_internal == FileKind::hyperlink) {
        m_type = QStringLiteral("Hyperlink");
        m_iconKind = hyperlinkIcon;
        return;
    }
    const int dot = m_name.lastIndexOf(QLatin1Char('.'));
    if (dot < 0)
        return;
    const QStringView dottedExtension = QStringView(m_name).mid(dot);
    m_iconKind = iconKindOf(dottedExtension.mid(1), m_thumbnailId > 0 ? thumbnailIcon : plainIcon);
    m_type = types().share(dottedExtension);
}

void File::clearTags()
{
    setTags({});
}

bool File::addTag(qint64 tagId)
{
    if (m_tags.contains(tagId))
        return false;
    m_tags.append(tagId);
    emit fileTagsChanged(m_tags);
    return true;
}

bool File::removeTag(qint64 tagId)
{
    if (m_tags.removeAll(tagId) == 0)
        return false;
    emit fileTagsChanged(m_tags);
    return true;
}

void File::addTags(const QVector<qint64> &tagIds)
{
    if (tagIds.isEmpty())
        return;
    m_tags += tagIds;
    emit fileTagsChanged(m_tags);
}

void File::removeTags(const QVector<qint64> &tagIds)
{
    const auto isRemoved = [&tagIds](qint64 tagId) { return tagIds.contains(tagId); };
    const auto firstRemoved = std::remove_if(m_tags.begin(), m_tags.end(), isRemoved);
    if (firstRemoved == m_tags.end())
        return;
    m_tags.erase(firstRemoved, m_tags.end());
    emit fileTagsChanged(m_tags);
}

void File::setTags(const QVector<qint64> &tagIds)
{
    if (m_tags == tagIds)
        return;
    m_tags = tagIds;
    // A list that was gathered row by row has room to grow, which a million files cannot afford.
    if (m_tags.capacity() > m_tags.size())
        m_tags.squeeze();
    emit fileTagsChanged(m_tags);
}
