#pragma once

#include "fileops/exporting/exportsummary.h"
#include "fileops/worker/exportrequest.h"
#include "fileops/worker/progressthrottle.h"

#include <QSqlError>

class FileOperationWorker;
class QuietStatements;

/**
 * Copies the files of an export with all that is theirs, many at a time. Where that fails, each of them is
 * tried by itself, so that one whose contents are damaged stays behind alone. On the worker's connection, in
 * the exporter's transaction; its work table is made before that and dropped after it.
 */
class SliceCopier
{
public:
    /** The table of the ids has the names of an IdTable. */
    SliceCopier(FileOperationWorker &worker, QuietStatements &statements, const ExportRequest &request,
                const QString &idTable, ExportSummary &summary);

    bool prepare();
    /** Each tag of each file is in the other database: none is looked for there. */
    void setHasAllTags(bool hasAllTags) { m_hasAllTags = hasAllTags; }
    /** False when the export cannot go on, or is not to. */
    bool run();
    void cleanUp();
    /** Why it could not go on; empty when somebody wanted it to end. */
    const QString &reason() const { return m_reason; }
    const QSqlError &error() const { return m_error; }

private:
    /** Places in the table of the ids, both ends included. */
    struct Range
    {
        qint64 first = 0;
        qint64 last = 0;
        qint64 files = 0; ///< how many of them are there
        bool hasPaths = false;
        bool hasThumbnails = false;
        qint64 places() const { return last - first + 1; }
    };
    enum Outcome { Copied, Failed, Damaged, Lost };

    bool readRange(qint64 first, Range &range);
    bool cutRange(Range &range);
    bool copy(const Range &range);
    bool copyHalves(const Range &range);
    Outcome tryCopy(const Range &range);
    Outcome copyAll(const Range &range);
    Outcome copyContents(const Range &range);
    Outcome copyBlocks(const Range &range);
    bool skip(const Range &range, Outcome outcome);
    bool runOn(const Range &range, const QString &statement);
    bool countOf(const Range &range, const QString &statement, qint64 &count);
    Outcome failure();
    void reportProgress(const Range &range, double part);

    FileOperationWorker &m_worker;
    QuietStatements &m_statements;
    const ExportRequest &m_request;
    ExportSummary &m_summary;
    const QString m_idTable;
    const qint64 m_total;
    bool m_hasAllTags = false;
    ProgressThrottle m_progress;
    // Of the last failure.
    QString m_reason;
    QSqlError m_error;
};
