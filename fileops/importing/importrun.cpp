#include "fileops/importing/importrun.h"

#include "fileops/importing/criticaldmerror.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDebug>

ImportRun::ImportRun(FileOperationWorker &worker, const ImportSource &source, bool isShell)
    : worker(worker), source(source), isShell(isShell), statements(worker.connectionName())
{
}

void ImportRun::tell(const QString &text, int percent)
{
    if (m_progress.isDue(percent))
        emit worker.operationProgress(FileOperationType::ImportOperation, text, percent);
}

void ImportRun::stopIfEnded() const
{
    if (!worker.shouldEnd())
        return;
    qDebug("SQLiteImporter - stopped! Exiting.");
    throw CriticalDMError(QSqlError());
}
