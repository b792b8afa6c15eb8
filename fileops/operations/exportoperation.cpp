#include "fileops/operations/exportoperation.h"

#include "fileops/adding/firstnames.h"
#include "fileops/exporting/csvexporter.h"
#include "fileops/exporting/sqliteexporter.h"
#include "fileops/files/partfile.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDebug>
#include <QFileInfo>

#include <cerrno>

ExportOperation::ExportOperation(FileOperationWorker &worker, const FileOperation &operation)
    : m_worker(worker), m_request(operation.exportRequest), m_target(operation.exportTarget)
{
}

void ExportOperation::run()
{
    qDebug("exportContents()");
    qDebug("exporting to SQLite database.");
    if (!m_target)
        return;
    PartFile::removeLeftovers(QFileInfo(m_request.path).path());
    if (m_request.form == ExportRequest::Csv) {
        CsvExporter exporter(m_worker, m_request);
        finish(exporter, exporter.run(m_target->device()));
    } else {
        SQLiteExporter exporter(m_worker, m_request);
        finish(exporter, exporter.prepareDatabaseToExport(m_target->path()));
    }
}

template <class Exporter>
void ExportOperation::finish(const Exporter &exporter, bool isDone)
{
    if (isDone) {
        const QString refusal = giveName();
        if (refusal.isEmpty())
            emit m_worker.exchangeDone(exporter.summary().text(m_request.path, m_request.form),
                                       FileOperationWorker::tr("Export"));
        else
            fail(refusal);
        return;
    }
    if (!m_worker.shouldEnd()) {
        fail(exporter.isBusy() ? FileOperationWorker::tr("The database is in use by another program.")
                               : exporter.reason());
        return;
    }
    m_target->discard();
    m_worker.report().setOutcome(
        FileOperationWorker::tr("The export was canceled, and nothing was written to "
                                "\"%1\".")
            .arg(firstNames({m_request.path})));
    m_worker.report().setDone(0, 1);
}

QString ExportOperation::giveName()
{
    // The last lines of a table may still be on their way to a full disk.
    if (!m_target->device().flush())
        return m_target->device().errorString();
    errno = 0;
    const PartFile::Outcome outcome = m_target->isReplacing() ? m_target->replace() : m_target->giveName();
    if (outcome == PartFile::Named)
        return {};
    const QString reason = qt_error_string(errno);
    return reason.isEmpty() ? FileOperationWorker::tr("The file could not get its name.") : reason;
}

void ExportOperation::fail(const QString &reason)
{
    m_target->discard();
    emit m_worker.error(FileOperationWorker::tr("Nothing was exported to \"%1\".\n\nThe reason: %2")
                            .arg(firstNames({m_request.path}), reason),
                        FileOperationWorker::tr("Exporting"));
}
