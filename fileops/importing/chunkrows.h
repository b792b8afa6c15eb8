#pragma once

#include "fileops/contents/externalpaths.h"

#include <QCoreApplication>
#include <QPair>
#include <QString>
#include <QVariant>
#include <QVector>

#include <functional>

class ImportRun;

/**
 * The rows of some files of the source, chosen into the temporary table `mem_chunk`, and their way into the
 * open database. What each file was and became stands in `mem_added`.
 */
class ChunkRows
{
    Q_DECLARE_TR_FUNCTIONS(ChunkRows)

public:
    using AtBlock = std::function<void(qint64)>;

    ChunkRows(ImportRun &run, bool takesDescriptions);

    /** Before the transaction. */
    static void createTables(ImportRun &run);
    /** Reads the highest keys of the open database, once. */
    void begin();

    /**
     * Chooses new files from one id to another, in their order, fewer when there is much to copy. Answers the
     * last id that was looked at; no less than `last` at the end.
     */
    qint64 choose(qint64 first, qint64 last);
    struct Range
    {
        int count = 0;
        qint64 first = 0;
        qint64 last = 0;
    };
    /** What was chosen. */
    const Range &range() const { return m_range; }
    QVector<qint64> fileIds();
    /** Bytes of contents, as recorded. */
    qint64 bytes() const { return m_bytes; }
    /**
     * Copies all rows but the links to tags. Files whose contents or path are not there are left out. Hears
     * the bytes of a long file so far.
     */
    void copy(const AtBlock &atBlock);
    /** Takes one file out, for good. */
    void leaveOut(qint64 fileId, const QString &why);
    /** Reports what was left out, once it is sure that it was. */
    void tellLeftOut();

private:
    qint64 fill(qint64 first, qint64 last);
    void leaveOutUnfit(const QString &condition, const QVariantList &values, const QString &why);
    qint64 cut();
    qint64 cutAtBytes();
    void settleIdCodes();
    void insertFiles();
    void insertThumbnails();
    void insertBlocks(const AtBlock &atBlock);
    void insertChain(qint64 newId, qint64 oldId, qint64 size, const AtBlock &atBlock);
    void insertPaths();

    ImportRun &m_run;
    const bool m_takesDescriptions;
    const bool m_hasBlocks;
    const bool m_hasPaths;
    const bool m_hasThumbnails;
    int m_limit;
    Range m_range;
    qint64 m_bytes = 0;
    QVector<QPair<QString, QString>> m_leftOut; ///< why, and the name
    bool m_isChain = false;                     ///< one file of several blocks
    qint64 m_loadId = 0;
    // The keys before those of the next chunk.
    qint64 m_fileId = 0;
    qint64 m_storageId = 0;
    qint64 m_thumbnailId = 0;
    qint64 m_pathId = 0;
    Database::RelativePaths m_relativePaths;
};
