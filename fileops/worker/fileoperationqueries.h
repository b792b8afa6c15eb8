#pragma once

#include "db/sql/basedbprovider.h"

#include <QDateTime>
#include <QHash>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <atomic>

/** An external file as the database knows it. */
struct ExternalFileDetails
{
    qint64 fileId = 0;
    int internal = 0;
    QString path;
    qint64 lastModified = 0; ///< seconds since 1970, one more than stored
    qint64 size = 0;
};

/** What tells where the contents of a file are. */
struct StorageInfo
{
    int internal = 0;
    qint64 storageId = 0;
    qint64 size = 0;
    QString idCode;
};

/**
 * The statements that several file operations share, on the worker's connection and thread. What differs on a
 * back-end is overridden there. All answer false when their statement failed or found no row.
 */
class FileOperationQueries : public BaseDBProvider
{
    Q_OBJECT

public:
    using BaseDBProvider::BaseDBProvider;
    using BaseDBProvider::constructor;

    virtual bool nextLoadId(qint64 &id);
    virtual bool nextStorageId(qint64 &id);
    virtual bool nextPathId(qint64 &id);
    virtual bool nextThumbnailId(qint64 &id);
    virtual bool nextFileId(qint64 &id);
    virtual bool nextNodeId(qint64 &id);
    /** The key for a row that is written next. */
    virtual bool nextId(const QString &table, const QString &column, qint64 &id);

    /** Lets nobody else use a tag until the end of the transaction, where others write meanwhile. */
    virtual bool holdTags() { return true; }
    virtual bool insertBrowsingNode(qint64 nodeId, qint64 tagId);
    virtual bool insertBrowsingNodeLink(qint64 parentId, qint64 childId);

    /** With an id code that is not empty it must be the file's, too. */
    virtual bool readFileStorageInfo(qint64 fileId, int &internal, qint64 &size, qint64 &storageId,
                                     const QString &idCode = QString());
    /** The same of many files; those that are not there are left out. */
    bool readStorageInfos(const QVector<qint64> &ids, QHash<qint64, StorageInfo> &infos);
    virtual bool readFileName(qint64 fileId, QString &name);
    virtual bool readInternal(qint64 fileId, int &internal);
    virtual bool readPath(qint64 fileId, QString &path);
    /** Where an external file lies, and the row of its thumbnail; 0 when it has none. */
    virtual bool readThumbnailSource(qint64 fileId, QString &path, qint64 &thumbnailId);
    /** The files that have one of these checksums: file id to checksum. */
    virtual bool readChecksums(const QVector<qint64> &checksums, QHash<qint64, qint64> &checksumsByFile);
    /** The files that have one of these names: file id to name. */
    virtual bool readFileNames(const QStringList &names, QHash<qint64, QString> &namesByFile);
    virtual bool readExternalFileDetails(const QVector<qint64> &ids, QVector<ExternalFileDetails> &details);
    /** Where external files lie as seen from the database: file id to path. */
    bool readRelativePaths(const QVector<qint64> &ids, QHash<qint64, QString> &paths);
    /**
     * Makes the tags that do not exist yet, and answers the ids of all that exist then by name. `newIds`
     * takes those of the new ones.
     */
    virtual QHash<QString, qint64> createTags(const QStringList &names, QVector<qint64> *newIds = nullptr);

    /** A statement with "?" for its values, prepared once a run: the fast way for rows by the thousand. */
    bool runFast(const QString &statement, const QVariantList &values);
    bool runFast(const QString &statement, const QVariantList &values, TableData &table);

    /**
     * New rows: `into` is "INSERT INTO table (columns)", `values` are those of whole rows, one row behind the
     * other. From beginRows() to writeRows(), where the back-end gathers rows, they wait.
     */
    virtual bool insertRows(const QString &into, int columns, const QVariantList &values);
    /** Whether rows of several files are better written together, as each statement takes its time. */
    virtual bool gathersRows() const { return false; }
    /** Begins a run of new files. */
    virtual void beginRows() {}
    virtual bool writeRows() { return true; }
    /** Ends the run and forgets what waits. */
    virtual void dropRows() {}
    /** True from beginRows() on where the back-end gathers them. */
    virtual bool areRowsWaiting() const { return false; }

    /** For the links that a server writes; 0 on a local database. */
    void setBrowsingTreeId(qint64 id) { m_browsingTreeId = id; }
    qint64 browsingTreeId() const { return m_browsingTreeId; }

private:
    bool readRow(const QString &statement, const QVariantList &parameters, QVariantList &values);
    bool readForFile(const QStringList &columns, const QString &from, const QString &condition, qint64 fileId,
                     QVariantList &values);
    bool readTagIds(const QStringList &names, QHash<QString, qint64> &ids);
    bool insertTags(const QStringList &names);

    std::atomic<qint64> m_browsingTreeId{0};
    QHash<QString, QVector<QString>> m_inserts; ///< statements by their beginning and number of rows
};
