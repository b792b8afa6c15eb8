#include "fileops/operations/importoperation.h"

#include "fileops/contents/externalpaths.h"
#include "fileops/importing/sqliteimporter.h"
#include "fileops/worker/fileoperationworker.h"

void ImportOperation::run()
{
    // A server has no file that another one could be attached to.
    if (!Database::pathLocator(m_worker.connectionName()).isLocal)
        return;
    SQLiteImporter importer(m_worker);
    QObject::connect(&importer, &SQLiteImporter::importNotification, &m_worker,
                     &FileOperationWorker::importNotification);
    const QString source = m_request.importSource.filePath();
    const bool isDone = m_request.importsShell
                            ? importer.importShellDB(source, m_request.importOptions)
                            : importer.importSQLiteDatabase(source, m_request.importOptions);
    if (isDone)
        emit m_worker.exchangeDone(importer.outcome(), FileOperationWorker::tr("Import"));
}
