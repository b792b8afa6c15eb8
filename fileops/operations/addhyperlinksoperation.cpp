#include "fileops/operations/addhyperlinksoperation.h"

#include "app/settings/addingsettings.h"
#include "core/records/filekind.h"
#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/sqltext.h"
#include "db/sql/transaction.h"
#include "fileops/worker/fileoperationworker.h"

AddHyperlinksOperation::AddHyperlinksOperation(FileOperationWorker &worker, const FileOperation &request)
    : AddOperation(worker, request, FileOperationType::AddHyperlinksOperation)
{
}

void AddHyperlinksOperation::run()
{
    emit m_worker.startedOpration(m_type, FileOperationWorker::tr("Creating hyperlinks into database..."));
    const bool isToldAll = addHyperlinksToDB();
    emit m_worker.finishedOpration(m_type);
    emit m_worker.additionSettled(m_request.paths, m_isCommitted && !m_worker.report().hasErrors());
    if (isToldAll)
        emit m_worker.duplicatesReady(m_duplicates);
}

bool AddHyperlinksOperation::addHyperlinksToDB()
{
    m_worker.report().setDone(0, m_request.paths.size());
    Transaction transaction(m_worker, m_worker.connectionName());
    if (!transaction.isActive())
        return true;
    FileBatchRequest batch;
    batch.type = m_type;
    batch.kind = FileKind::hyperlink;
    batch.tagIds = m_request.tagIds;
    for (const QString &text : m_request.paths) {
        // A file that has vanished is no hyperlink.
        if (!FileAdder::isLocal(text))
            batch.paths.append(text);
    }
    batch.paths.removeDuplicates();
    if (AddingSettings::duplicateManagementEnabled() && !takeOutDuplicates(batch))
        return false;
    m_worker.report().setDone(0, batch.paths.size());
    const QVector<qint64> added = FileBatch(m_worker, batch).addFilesListToDb();
    // Without its description an address could not be added once more: it would be there already.
    const bool areDescribed = applyDetails(added);
    const QVector<qint64> linked = areDescribed ? linkMatchedFiles(batch) : QVector<qint64>();
    if (!mayCommit())
        qDebug("FileOperationWorker::addHyperlinksToDB() - stopped or canceled! Exiting.");
    m_isCommitted = areDescribed && mayCommit() && transaction.commit();
    if (!m_isCommitted) {
        m_duplicates = PresentableDuplicates();
    } else {
        m_worker.report().setDone(added.size(), batch.paths.size());
        if (!added.isEmpty() || !linked.isEmpty())
            emit m_worker.updatedFiles(added + linked);
        tellAdded(added.size());
    }
    return true;
}

bool AddHyperlinksOperation::applyDetails(const QVector<qint64> &fileIds)
{
    const QStringList columns = m_request.hyperlinkDetails.keys();
    const QStringList values = m_request.hyperlinkDetails.values();
    if (columns.isEmpty())
        return true;
    const AbstractQueryConstructor &sql = *m_worker.constructor();
    const QString update = sql.updateQuery(columns, QStringLiteral("files"), values);
    for (const qint64 id : fileIds) {
        if (!mayCommit() ||
            !m_worker.runAsync(update + sql.whereClause(QStringLiteral("file_id = ") + QString::number(id)) +
                               sql.statementEnd()))
            return false;
    }
    return true;
}
