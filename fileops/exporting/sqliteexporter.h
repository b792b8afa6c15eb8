#pragma once

#include "fileops/exchange/idtable.h"
#include "fileops/exchange/quietstatements.h"
#include "fileops/exporting/exportsummary.h"
#include "fileops/exporting/nodecopier.h"
#include "fileops/exporting/slicecopier.h"
#include "fileops/exporting/spoiltrows.h"
#include "fileops/worker/exportrequest.h"

class FileOperationWorker;

/**
 * Writes a part of the open local database into an empty one, whose tables stand, or into a shell, which
 * loses those of contents. All ids stay as they are. One transaction: what is read is one state of the open
 * database, and of one that fails nothing stays. On the worker's thread; the worker is borrowed.
 */
class SQLiteExporter
{
public:
    SQLiteExporter(FileOperationWorker &worker, const ExportRequest &request);

    /** Nobody has the target open afterwards. */
    bool prepareDatabaseToExport(const QString &target);
    const ExportSummary &summary() const { return m_summary; }
    /** Why it failed; empty when somebody wanted it to end. */
    const QString &reason() const { return m_reason; }
    /** Whether another program's lock was in the way. */
    bool isBusy() const { return m_isBusy; }

private:
    bool exportAttached();
    /** Once more without what cannot be read. */
    bool exportRest();
    bool makeWorkTables();
    void dropWorkTables();
    bool exportAll();
    bool exportTags();
    bool logTags();
    bool exportTagGroups();
    bool exportFiles();
    bool exportTagRelationships();
    bool readTagIds(QSet<qint64> &tagIds);
    bool dropContents();
    bool commit();
    bool run(const char *statement);
    bool fail();
    bool fail(const QSqlError &error);

    FileOperationWorker &m_worker;
    ExportRequest m_request;
    ExportSummary m_summary;
    QuietStatements m_statements;
    IdTable m_files;
    IdTable m_tags;
    SpoiltRows m_spoilt;
    NodeCopier m_nodes;
    SliceCopier m_copier;
    QString m_reason;
    bool m_isBusy = false;
    bool m_isDamaged = false; ///< the last failure was that of a page
};
