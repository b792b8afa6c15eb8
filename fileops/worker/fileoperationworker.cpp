#include "fileops/worker/fileoperationworker.h"

#include "app/settings/constants.h"
#include "app/settings/crashstack.h"
#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/connections.h"
#include "db/sql/errorjudge.h"
#include "db/sql/lockwait.h"
#include "db/sql/readbound.h"
#include "db/sql/serverwatch.h"
#include "db/sql/transaction.h"
#include "fileops/files/regularfile.h"

#include <QDebug>
#include <QSignalBlocker>
#include <QSqlDatabase>

#include <algorithm>
#include <optional>

namespace {
constexpr int thumbnailsAtOnce = 8;
// More than a run has files: those that wait to be written are not asked for again.
constexpr int idCodesAtOnce = 256;
} // namespace

FileOperationWorker::FileOperationWorker(const QString &connectionName, const DBDetails &details,
                                         const AbstractQueryConstructor *constructor)
    : FileOperationQueries(constructor), m_connectionName(connectionName), m_details(details)
{
}

FileOperationWorker::~FileOperationWorker()
{
    qDeleteAll(m_queue);
    qDeleteAll(m_imagesOnTheirWay);
}

void FileOperationWorker::enqueue(const FileOperation &operation)
{
    auto *record = new FileOperation(operation);
    const QMutexLocker locker(&m_queueMutex);
    // Views ask for one picture after the other: what waits last takes further ones along.
    if (operation.type == FileOperationType::LoadThumbnailsOperation && !m_queue.isEmpty() &&
        m_queue.last()->type == FileOperationType::LoadThumbnailsOperation) {
        m_queue.last()->fileIds += operation.fileIds;
        delete record;
        return;
    }
    if (operation.givesWay)
        dropChecks();
    m_queue.append(record);
}

void FileOperationWorker::postpone(const FileOperation &rest)
{
    const QMutexLocker locker(&m_queueMutex);
    if (!m_isOutdated)
        m_queue.append(new FileOperation(rest));
}

bool FileOperationWorker::endChecks()
{
    const QMutexLocker locker(&m_queueMutex);
    return dropChecks();
}

bool FileOperationWorker::dropChecks()
{
    const auto isKept = [](const FileOperation *record) { return !record->givesWay; };
    const auto firstGone = std::stable_partition(m_queue.begin(), m_queue.end(), isKept);
    const bool hasDropped = firstGone != m_queue.end();
    qDeleteAll(firstGone, m_queue.end());
    m_queue.erase(firstGone, m_queue.end());
    const bool runsOne = m_isRunning && m_runsCheck;
    if (runsOne)
        m_isOutdated = true;
    return hasDropped || runsOne;
}

QVector<qint64> FileOperationWorker::endSingleChecks()
{
    const QMutexLocker locker(&m_queueMutex);
    QVector<qint64> ids;
    const auto take = [&ids](FileOperation *record) {
        if (record->type != FileOperationType::CheckExternalFilesOperation || record->givesWay)
            return false;
        ids += record->fileIds;
        if (record->modifiedFiles)
            ids += record->modifiedFiles->keys().toVector();
        delete record;
        return true;
    };
    m_queue.erase(std::remove_if(m_queue.begin(), m_queue.end(), take), m_queue.end());
    if (m_isRunning && !m_filesInSingleCheck.isEmpty()) {
        ids += m_filesInSingleCheck;
        m_isOutdated = true;
    }
    return ids;
}

void FileOperationWorker::forgetThumbnail(qint64 fileId)
{
    const QMutexLocker locker(&m_queueMutex);
    for (FileOperation *record : qAsConst(m_queue)) {
        if (record->type == FileOperationType::LoadThumbnailsOperation && record->fileIds.removeOne(fileId))
            return;
    }
}

void FileOperationWorker::cancel()
{
    // Under the lock of the queue, else a flag set just behind the last operation would end the next one.
    const QMutexLocker locker(&m_queueMutex);
    if (m_isRunning || !m_queue.isEmpty())
        cancelAll();
}

void FileOperationWorker::cancelAll()
{
    const QMutexLocker locker(&m_cancelMutex);
    m_cancel = true;
    // It may wait for a row that another client keeps.
    ServerWatch::setCanceled(m_connectionName, true);
}

void FileOperationWorker::stop()
{
    const QMutexLocker locker(&m_stopMutex);
    m_stop = true;
    ServerWatch::setCanceled(m_connectionName, true);
}

bool FileOperationWorker::isBusy() const
{
    const QMutexLocker locker(&m_queueMutex);
    return m_isRunning || !m_queue.isEmpty();
}

bool FileOperationWorker::hasQueued() const
{
    const QMutexLocker locker(&m_queueMutex);
    return !m_queue.isEmpty();
}

bool FileOperationWorker::isStopped() const
{
    const QMutexLocker locker(&m_stopMutex);
    return m_stop;
}

bool FileOperationWorker::isCanceled() const
{
    const QMutexLocker locker(&m_cancelMutex);
    return m_cancel;
}

void FileOperationWorker::beginRows()
{
    dropRows();
    m_isInRun = true;
}

void FileOperationWorker::dropRows()
{
    m_isInRun = false;
    // Others may have taken them by the next time.
    m_freeIdCodes.clear();
}

bool FileOperationWorker::drawIdCodes()
{
    QSet<QString> drawn;
    while (drawn.size() < idCodesAtOnce)
        drawn.insert(drawIdCode());
    TableData taken;
    if (!runAsync(constructor()->selectQuery({QStringLiteral("id_code")}, QStringLiteral("files")) +
                      constructor()->whereClause(
                          constructor()->inClause(QStringLiteral("id_code"), drawn.values())) +
                      constructor()->statementEnd(),
                  taken))
        return false;
    for (const TableRowData *row : qAsConst(taken))
        drawn.remove(row->at(0).toString());
    freeRows(taken);
    m_freeIdCodes = drawn.values();
    return !m_freeIdCodes.isEmpty();
}

bool FileOperationWorker::nextIdCode(QString &idCode)
{
    if (m_isInRun && (!m_freeIdCodes.isEmpty() || drawIdCodes())) {
        idCode = m_freeIdCodes.takeLast();
        return true;
    }
    if (m_isInRun)
        return false;
    static const QString statement = QStringLiteral("SELECT 1 FROM files WHERE id_code=?;");
    // Some 80 million codes exist: so many misses in turn mean that none is free.
    for (int attempts = 0; attempts < 1000; ++attempts) {
        idCode = drawIdCode();
        TableData table;
        if (!runFast(statement, {idCode}, table))
            return false;
        const bool isFree = table.isEmpty();
        freeRows(table);
        if (isFree)
            return true;
    }
    return false;
}

void FileOperationWorker::takeBack(Savepoint &savepoint)
{
    const QSqlError cause = lastError();
    {
        const QSignalBlocker blocker(this);
        savepoint.rollBack();
    }
    // Then nothing is tried again, and what was kept silent is the only word that says why.
    if (isConnectionLost())
        emit connectionError();
    else if (isSavepointLost() && !shouldEnd())
        m_report.note(cause);
}

void FileOperationWorker::sendThumbnail(qint64 fileId, QImage *image)
{
    {
        const QMutexLocker locker(&m_imagesMutex);
        m_imagesOnTheirWay.insert(image);
    }
    emit thumbnailLoaded(fileId, image);
}

void FileOperationWorker::imageTaken(QImage *image)
{
    const QMutexLocker locker(&m_imagesMutex);
    m_imagesOnTheirWay.remove(image);
}

int FileOperationWorker::percent(int done, int total)
{
    return total > 0 ? qRound(static_cast<float>(done) / static_cast<float>(total) * 100.0F) : 100;
}

void FileOperationWorker::runOperationQueue()
{
    provideCrashStack();
    const LockWait lockWait([this] { return shouldEnd(); });
    {
        const QMutexLocker locker(&m_queueMutex);
        m_isRunning = true;
    }
    if (hasQueued() && !isStopped()) {
        if (openConnection()) {
            FileOperation operation;
            while (!isStopped() && !isConnectionLost() && takeNext(operation))
                run(operation);
        }
        // Each operation behind would only meet the same.
        if (isConnectionLost())
            dropQueue(lastError());
        removeConnection();
    }
    finishRun();
    emit finished();
}

bool FileOperationWorker::openConnection()
{
    forgetLostConnection();
    // Opening would put a new, empty database in the place of one that is gone.
    if (!Connections::isDatabaseThere(m_details)) {
        failOpening(Connections::missingFile(m_details));
        return false;
    }
    const Connections::Result opened = Connections::open(m_connectionName, m_details, connectOptions());
    if (!opened.isOpen) {
        qDebug() << "FileOperationWorker::runOperationQueue() - cannot open the connection:"
                 << opened.error.text();
        failOpening(opened.error);
        return false;
    }
    if (m_details.type() == Constants::localDatabase)
        RegularFile::keepShut(m_details.databaseName());
    if (shouldEnd())
        ServerWatch::setCanceled(m_connectionName, true);
    prepareConnection();
    return true;
}

void FileOperationWorker::failOpening(const QSqlError &error)
{
    const FileOperation awaited = dropQueue(error);
    if (m_details.type() == Constants::serverDatabase) {
        loseConnection();
        return;
    }
    if (awaited.type == FileOperationType::UnusedOperation)
        return;
    m_report.begin(awaited.type);
    m_report.note(error);
    m_report.setDone(0, awaited.fileIds.size());
    tellShortfall();
}

void FileOperationWorker::emitError(const QSqlError &error)
{
    // A statement that ended because the user wanted it to has not failed.
    const bool isEnded = ErrorJudge::isCanceled(error) || ErrorJudge(m_details).isBusy(error);
    if (!signalsBlocked() && !(isEnded && shouldEnd()))
        m_report.note(error);
}

bool FileOperationWorker::hasMetLock() const
{
    return m_report.holds(
        [judge = ErrorJudge(m_details)](const QSqlError &error) { return judge.isBusy(error); });
}

void FileOperationWorker::tellShortfall()
{
    if (m_report.isShort(isCanceled() && !isStopped() && !isConnectionLost()))
        emit fellShort(m_report.shortfall());
}

void FileOperationWorker::loseConnection()
{
    // Once is enough: a batch may meet it at each of its files.
    if (!isConnectionLost())
        FileOperationQueries::loseConnection();
}

void FileOperationWorker::removeConnection()
{
    RegularFile::keepShut(QString());
    clearPrepared();
    Connections::close(m_connectionName);
}

bool FileOperationWorker::takeNext(FileOperation &operation)
{
    const QMutexLocker locker(&m_queueMutex);
    if (m_queue.isEmpty())
        return false;
    FileOperation *first = m_queue.first();
    operation = *first;
    m_runsCheck = first->givesWay;
    m_filesInSingleCheck.clear();
    if (first->type == FileOperationType::CheckExternalFilesOperation && !first->givesWay) {
        m_filesInSingleCheck = first->fileIds;
        if (first->modifiedFiles)
            m_filesInSingleCheck += first->modifiedFiles->keys().toVector();
    }
    m_isOutdated = false;
    // The rest may be forgotten while these are loaded.
    if (first->type == FileOperationType::LoadThumbnailsOperation &&
        first->fileIds.size() > thumbnailsAtOnce) {
        operation.fileIds.resize(thumbnailsAtOnce);
        first->fileIds.remove(0, thumbnailsAtOnce);
        return true;
    }
    delete m_queue.takeFirst();
    return true;
}

FileOperation FileOperationWorker::dropQueue(const QSqlError &error)
{
    QVector<qint64> thumbnails;
    QVector<QStringList> additions;
    QVector<qint64> autoLinkRequests;
    FileOperation first;
    {
        const QMutexLocker locker(&m_queueMutex);
        for (const FileOperation *record : qAsConst(m_queue)) {
            if (record->type == FileOperationType::LoadThumbnailsOperation)
                thumbnails += record->fileIds;
            else if (first.type == FileOperationType::UnusedOperation)
                first = *record;
            if (record->type == FileOperationType::AddHyperlinksOperation ||
                record->type == FileOperationType::AddFileListOperation)
                additions.append(record->paths);
            if (record->type == FileOperationType::AutoLinkFilesOperation)
                autoLinkRequests.append(record->requestId);
        }
        qDeleteAll(m_queue);
        m_queue.clear();
    }
    // Whoever waits for an answer gets one; all others are told of by the first record.
    if (!thumbnails.isEmpty())
        emit thumbnailsFailed(thumbnails, error);
    for (const QStringList &texts : qAsConst(additions))
        emit additionSettled(texts, false);
    for (const qint64 requestId : qAsConst(autoLinkRequests)) {
        AutoLinkOutcome outcome;
        outcome.requestId = requestId;
        emit autoLinked(outcome);
    }
    return first;
}

void FileOperationWorker::finishRun()
{
    const QMutexLocker locker(&m_queueMutex);
    m_isRunning = false;
    m_runsCheck = false;
    m_filesInSingleCheck.clear();
    // A record that came in the meantime keeps a cancel that was meant for it.
    if (m_queue.isEmpty()) {
        const QMutexLocker cancelLocker(&m_cancelMutex);
        m_cancel = false;
    }
    const QMutexLocker stopLocker(&m_stopMutex);
    m_stop = false;
}

void FileOperationWorker::run(const FileOperation &operation)
{
    m_report.begin(operation.type);
    std::optional<ReadBound> bound;
    // Those two have a second file on the connection, which may hold more.
    if (operation.type != FileOperationType::ImportOperation &&
        operation.type != FileOperationType::ExportOperation)
        bound.emplace(QSqlDatabase::database(m_connectionName, false), ReadBound::EachStatement);
    if (m_operations)
        m_operations(*this, operation);
    tellShortfall();
}
