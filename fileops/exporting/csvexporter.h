#pragma once

#include "fileops/exchange/idtable.h"
#include "fileops/exchange/quietstatements.h"
#include "fileops/exporting/exportsummary.h"
#include "fileops/worker/exportrequest.h"
#include "fileops/worker/progressthrottle.h"

class FileOperationWorker;
class QIODevice;

/**
 * Writes what the database knows of files, a line each in the order that was asked for, as text with commas.
 * On the worker's thread; the worker is borrowed.
 */
class CsvExporter
{
public:
    CsvExporter(FileOperationWorker &worker, const ExportRequest &request);

    bool run(QIODevice &target);
    const ExportSummary &summary() const { return m_summary; }
    /** Why it failed; empty when somebody wanted it to end. */
    const QString &reason() const { return m_reason; }
    bool isBusy() const { return m_isBusy; }

private:
    bool exportAll();
    bool writeHeader();
    bool countTags(qint64 &most);
    bool writeAllLines();
    bool writeLines(qint64 first, qint64 &last);
    bool readLines(qint64 first, qint64 end, qint64 &last, QString &text);
    bool readSoundLines(qint64 first, qint64 end, qint64 &last, QString &text);
    bool skip(qint64 place);
    bool readTags(qint64 first, qint64 last);
    QString line(const TableRowData &row);
    QString field(const QString &text);
    bool write(const QString &text);
    bool fail();

    FileOperationWorker &m_worker;
    const ExportRequest &m_request;
    QuietStatements m_statements;
    IdTable m_files;
    QIODevice *m_target = nullptr;
    QHash<qint64, QStringList> m_tags; ///< by the place of the file, of the lines that are being written
    ExportSummary m_summary;
    ProgressThrottle m_progress;
    QString m_reason;
    bool m_isBusy = false;
};
