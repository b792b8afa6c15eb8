#pragma once

#include "core/records/datatype.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QVariant>
#include <QVector>

/**
 * One file of the open database, with the ids of its direct tags. Made and owned by the cache of the manager,
 * borrowed by models; GUI thread only. It has no toolkit parent, as taking one of a million children from its
 * parent would be slow. Members are kept small for the same reason: dates are seconds since the epoch, equal
 * folders and types share their text.
 */
class File : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(File)

public:
    /** The dates are seconds since the epoch; internal is 0 external, 1 internal, 2 hyperlink. */
    File(qint64 id, qint64 size, qint64 additionSeconds, qint64 modificationSeconds, qint64 loadId,
         const QString &name, const QString &description, const QString &idCode, const QString &path,
         const QString &relPath, qint64 storageId, qint64 thumbnailId, qint64 checksum, qint32 internal);
    ~File() override;

    qint64 id() const { return m_id; }
    qint64 size() const { return m_size; }
    qint64 loadId() const { return m_loadId; }
    const QString &name() const { return m_name; }
    const QString &description() const { return m_description; }
    QString idCode() const;
    /** The ASCII characters of an id code of our own: eight, or fewer and a zero. Null for a foreign one. */
    const char *ownIdCode() const { return m_hasForeignIdCode ? nullptr : m_idCode; }
    /** "." and the extension in the case of the name, "Hyperlink", or empty for a name without a dot. */
    const QString &type() const { return m_type; }
    /** The absolute path of an external file. */
    QString path() const;
    /** Whether the last component of the path is the name. */
    bool isNamedAsItsPath() const { return m_pathEndsInName; }
    /** The path as seen from the folder of the database file. */
    QString relPath() const;
    qint64 storageId() const { return m_storageId; }
    /** 0 or less when the file has no thumbnail. */
    qint64 thumbnailId() const { return m_thumbnailId; }
    qint64 checksum() const { return m_checksum; }
    qint32 internal() const { return m_internal; }
    const QVector<qint64> &tags() const { return m_tags; }
    bool hasTag(qint64 tagId) const { return m_tags.contains(tagId); }
    QDateTime additionDate() const { return QDateTime::fromSecsSinceEpoch(m_additionSeconds); }
    QDateTime modificationDate() const { return QDateTime::fromSecsSinceEpoch(m_modificationSeconds); }
    qint64 additionSeconds() const { return m_additionSeconds; }
    qint64 modificationSeconds() const { return m_modificationSeconds; }
    /** 0 nothing special, 1 PDF, 2 text document, 3 spreadsheet, 4 sound, 5 video, 6 thumbnail, 7 hyperlink.
     */
    qint32 iconKind() const { return m_iconKind; }

    /** The value of a kind; invalid, with a line in the log, for Thumbnail and for unknown kinds. */
    QVariant data(DataType type) const;

    /**
     * Stores a value and emits dataChanged when it differs. The addition date is a QDateTime, the
     * modification date seconds. Thumbnail, StorageId, Tags, Checksum and unknown kinds are passed over.
     */
    void setData(DataType type, const QVariant &value);

    /** For reloads, which bring the whole row: no signal. deriveType() follows when all is set. */
    void setChecksumSilently(qint64 checksum) { m_checksum = checksum; }
    void setStorageId(qint64 storageId) { m_storageId = storageId; }
    void setThumbnailId(qint64 thumbnailId) { m_thumbnailId = thumbnailId; }

    /** Finds type and iconKind from internal, name and thumbnailId, without a signal. */
    void deriveType();

    void clearTags();
    /** False when the tag is there already. */
    bool addTag(qint64 tagId);
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
    bool setIdCode(const QString &idCode);
    bool setAdditionDate(const QDateTime &date);
    bool setPath(const QString &path);
    bool setRelPath(const QString &relPath);
    void dropForeignIdCode();

    qint64 m_id;
    qint64 m_size;
    qint64 m_loadId;
    qint64 m_storageId;
    qint64 m_thumbnailId;
    qint64 m_checksum;
    qint64 m_additionSeconds;
    qint64 m_modificationSeconds;
    QString m_name;
    QString m_description;
    QString m_type;
    // The folder alone, up to its last separator, while the path ends in the name of the file.
    QString m_pathText;
    QString m_relPathText;
    QVector<qint64> m_tags;
    // Our own codes have seven ASCII characters. Anything else stands on the heap.
    union {
        char m_idCode[8];
        QString *m_foreignIdCode;
    };
    qint32 m_internal;
    qint8 m_iconKind = 0;
    bool m_hasForeignIdCode = false;
    bool m_pathEndsInName = false;
    bool m_relPathEndsInName = false;
};
