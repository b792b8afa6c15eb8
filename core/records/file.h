#pragma once

#include "core/records/datatype.h"
#include "core/records/filerecord.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QVariant>
#include <QVector>

/**
 * One file of the open database, with the ids of its direct tags. Made and owned by the cache of the manager,
 * borrowed by models; GUI thread only. It has no toolkit parent, as taking one of a million children from its
 * parent would be slow. Texts and the list of tags are packed: each call makes them anew.
 */
class File : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(File)

public:
    explicit File(FileRecord &&record) : m_record(std::move(record)) {}
    /** The dates are seconds since the epoch; internal is 0 external, 1 internal, 2 hyperlink. */
    File(qint64 id, qint64 size, qint64 additionSeconds, qint64 modificationSeconds, qint64 loadId,
         const QString &name, const QString &description, const QString &idCode, const QString &path,
         const QString &relPath, qint64 storageId, qint64 thumbnailId, qint64 checksum, qint32 internal);

    qint64 id() const { return m_record.id; }
    qint64 size() const { return m_record.size; }
    qint64 loadId() const { return m_record.loadId; }
    QString name() const { return m_record.name.toString(); }
    QString description() const { return m_record.description.toString(); }
    /** Name and description without a copy, as CompactText::visit() has them. */
    template <typename Use>
    void visitName(Use use) const
    {
        m_record.name.visit(use);
    }
    template <typename Use>
    void visitDescription(Use use) const
    {
        m_record.description.visit(use);
    }
    QString idCode() const { return m_record.idCode(); }
    /** The ASCII characters of an id code of our own: eight, or fewer and a zero. Null for a foreign one. */
    const char *ownIdCode() const { return m_record.ownIdCode(); }
    /** "." and the extension in the case of the name, "Hyperlink", or empty for a name without a dot. */
    const QString &type() const { return m_record.type; }
    /** The absolute path of an external file. */
    QString path() const { return m_record.path(); }
    /** Whether the last component of the path is the name. */
    bool isNamedAsItsPath() const { return m_record.isPathNamed(); }
    /** The path as seen from the folder of the database file. */
    QString relPath() const { return m_record.relPath(); }
    qint64 storageId() const { return m_record.storageId; }
    /** 0 or less when the file has no thumbnail. */
    qint64 thumbnailId() const { return m_record.thumbnailId; }
    qint64 checksum() const { return m_record.checksum; }
    qint32 internal() const { return m_record.internal; }
    QVector<qint64> tags() const { return m_record.tags.toVector(); }
    /** The same without a copy, for who looks at a million files; valid until the next change. */
    const CompactIds &tagIds() const { return m_record.tags; }
    bool hasTag(qint64 tagId) const { return m_record.tags.contains(tagId); }
    QDateTime additionDate() const { return QDateTime::fromSecsSinceEpoch(m_record.additionSeconds); }
    QDateTime modificationDate() const { return QDateTime::fromSecsSinceEpoch(m_record.modificationSeconds); }
    qint64 additionSeconds() const { return m_record.additionSeconds; }
    qint64 modificationSeconds() const { return m_record.modificationSeconds; }
    /** 0 nothing special, 1 PDF, 2 text document, 3 spreadsheet, 4 sound, 5 video, 6 thumbnail, 7 hyperlink.
     */
    qint32 iconKind() const { return m_record.iconKind; }

    /** The value of a kind; invalid, with a line in the log, for Thumbnail and for unknown kinds. */
    QVariant data(DataType type) const;

    /**
     * Stores a value and emits dataChanged when it differs. The addition date is a QDateTime, the
     * modification date seconds. Thumbnail, StorageId, Tags, Checksum and unknown kinds are passed over.
     */
    void setData(DataType type, const QVariant &value);

    /** For reloads, which bring the whole row: no signal. deriveType() follows when all is set. */
    void setChecksumSilently(qint64 checksum) { m_record.checksum = checksum; }
    void setStorageId(qint64 storageId) { m_record.storageId = storageId; }
    void setThumbnailId(qint64 thumbnailId) { m_record.thumbnailId = thumbnailId; }

    /** Finds type and iconKind from internal, name and thumbnailId, without a signal. */
    void deriveType() { m_record.deriveType(name()); }

    void clearTags();
    /** False when the tag is there already. */
    bool addTag(qint64 tagId);
    /** The same, before the first one with a higher id: where a reading of the database would have it. */
    bool insertTag(qint64 tagId);
    bool removeTag(qint64 tagId);
    /** Appends the list as it stands. */
    void addTags(const QVector<qint64> &tagIds);
    void removeTags(const QVector<qint64> &tagIds);
    /** Makes this the whole list, with one signal, and none when it is the list already. */
    void setTags(const QVector<qint64> &tagIds);

signals:
    void fileTagsChanged(QVector<qint64> tagIds);
    void dataChanged(DataType type);

private:
    bool storeValue(DataType type, const QVariant &value);
    bool setName(const QString &name);
    bool setDescription(const QString &description);
    bool setType(const QString &type);
    bool setIdCode(const QString &idCode);
    bool setAdditionDate(const QDateTime &date);
    bool setPath(const QString &path);
    bool setRelPath(const QString &relPath);

    FileRecord m_record;
};
