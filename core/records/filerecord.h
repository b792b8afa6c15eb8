#pragma once

#include "core/records/compactids.h"
#include "core/records/compacttext.h"

#include <QString>

#include <utility>

/**
 * The values of one file as they are kept: a million of them stand in memory, so dates are seconds since the
 * epoch, and equal folders and types share their text. Each may be made in any thread, and is then handed to
 * the one that keeps it; what they share is counted.
 */
struct FileRecord
{
    FileRecord() = default;
    FileRecord(FileRecord &&other) noexcept;
    FileRecord &operator=(FileRecord &&other) = delete;
    FileRecord(const FileRecord &) = delete;
    FileRecord &operator=(const FileRecord &) = delete;
    ~FileRecord() { dropForeignIdCode(); }

    qint64 id = 0;
    qint64 size = 0;
    qint64 loadId = 0;
    qint64 storageId = 0;
    qint64 thumbnailId = 0;
    qint64 checksum = 0;
    qint64 additionSeconds = 0;
    qint64 modificationSeconds = 0;
    CompactText name; ///< paths are packed by it: it comes before them
    CompactText description;
    CompactIds tags;
    QString type;
    qint32 internal = 0;
    qint8 iconKind = 0;

    bool isPathNamed() const { return m_pathEndsInName; }
    QString path() const { return m_pathEndsInName ? m_path + name.toString() : m_path; }
    QString relPath() const { return m_relPathEndsInName ? m_relPath + name.toString() : m_relPath; }
    void setPath(QStringView path, QStringView nameText);
    void setRelPath(QStringView relPath, QStringView nameText);

    QString idCode() const;
    /** Null for one that is not kept in the record itself. */
    const char *ownIdCode() const { return m_hasForeignIdCode ? nullptr : m_idCode; }
    void setIdCode(QStringView idCode);

    /** Finds type and iconKind from internal, name and thumbnailId. */
    void deriveType(QStringView nameText);
    void setType(QStringView text);

private:
    void dropForeignIdCode();

    // Our own codes have seven ASCII characters. Anything else stands on the heap.
    union {
        char m_idCode[8] = {};
        QString *m_foreignIdCode;
    };
    // The folder alone, up to its last separator, while the path ends in the name of the file.
    QString m_path;
    QString m_relPath;
    bool m_hasForeignIdCode = false;
    bool m_pathEndsInName = false;
    bool m_relPathEndsInName = false;
};
