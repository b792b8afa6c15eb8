#pragma once

#include "fileops/importing/chunkpaths.h"

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
    /** What all new files are together, and what one of them at least has. */
    struct All
    {
        double files = 0;
        double bytes = 0; ///< as recorded, which may be anything
        bool hasContents = false;
        bool hasThumbnails = false;
    };
    /** Looks at the new files and at the highest keys of the open database, once. */
    const All &begin();

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
     * the bytes of a long file so far; false when that one is damaged, and some of its blocks are written.
     */
    bool copy(const AtBlock &atBlock);
    static QString damageText();
    /** Takes out what was chosen, for good. */
    void leaveOut(const QString &why);
    /** Reports what was left out, once it is sure that it was. */
    void tellLeftOut();

private:
    struct LeftOut
    {
        qint64 number = 0;
        qint64 fileId = 0;
        QString why;
        QString name;
    };

    qint64 fill(qint64 first, qint64 last);
    void leaveOutUnfit(const QString &condition, const QVariantList &values, const QString &why);
    void summarize();
    qint64 cut();
    /** For the files that have none, or had one that is in use. */
    void drawIdCodes();
    enum Which { IgnoreTaken, Remaining };
    int insertFiles(Which which);
    void insertThumbnails();
    void insertBlocks();
    bool insertChain(const AtBlock &atBlock);
    void insertPaths();
    static QString longTextsText();

    ImportRun &m_run;
    const bool m_takesDescriptions;
    const bool m_hasBlocks;
    const bool m_hasPathTable;
    int m_limit;
    All m_all;
    Range m_range;
    qint64 m_bytes = 0;
    int m_externalFiles = 0;
    bool m_hasLongTexts = false;
    QVector<LeftOut> m_leftOut;
    bool m_hasChains = false;
    bool m_isChain = false; ///< one file of several blocks
    qint64 m_loadId = 0;
    // The keys before those of the next chunk.
    qint64 m_fileId = 0;
    qint64 m_storageId = 0;
    qint64 m_thumbnailId = 0;
    qint64 m_pathId = 0;
    ChunkPaths m_paths;
};
