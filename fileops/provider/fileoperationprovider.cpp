#include "fileops/provider/fileoperationprovider.h"

#include "app/settings/constants.h"
#include "fileops/adding/hyperlinkcheck.h"
#include "fileops/operations/operationclasses.h"
#include "fileops/worker/fileoperationtypes.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDir>
#include <QFile>
#include <QThread>
#include <QTimer>
#include <QUrl>

namespace {
bool isFileUrl(const QString &path)
{
    // A URL of another host names a share here, not a path.
    return path.startsWith(QLatin1String("file:"), Qt::CaseInsensitive) && QUrl(path).isLocalFile();
}

/** The path behind a text that names a file, also one that is gone; empty for a hyperlink. */
QString localPath(const QString &text)
{
    // Qt sees a file of its resources there.
    if (text.startsWith(QLatin1Char(':')))
        return QString();
    // In this order: a disk that does not answer would hold the window.
    if (QDir::isAbsolutePath(text) || QFile::exists(text))
        return text;
    return isFileUrl(text) ? QUrl(text).toLocalFile() : QString();
}
} // namespace

FileOperationProvider::FileOperationProvider(const AbstractQueryConstructor *constructor,
                                             const DBDetails &details, QObject *parent)
    : BaseDBProvider(constructor, parent), m_details(details)
{
    // Before the first connection: queued signals look up their types when they are connected.
    registerFileOperationTypes();
}

FileOperationProvider::~FileOperationProvider()
{
    if (!m_worker)
        return;
    // In this order: the operation ends at its next look, the event loop of the thread with it, and only a
    // thread that stands still lets its objects be deleted from here.
    m_worker->stop();
    m_thread->quit();
    m_thread->wait();
    delete m_worker;
    delete m_thread;
}

void FileOperationProvider::start()
{
    if (m_worker)
        return;
    m_worker = createWorker(Constants::workerConnection);
    m_worker->setOperations(runOperationClass);
    m_thread = new QThread;
    m_worker->moveToThread(m_thread);
    connectWorker();
    connectProgress();
}

void FileOperationProvider::connectWorker()
{
    using Worker = FileOperationWorker;
    using Provider = FileOperationProvider;
    // All cross to the window's thread, in the order in which the worker emits them: the news of rows come
    // before the end of their operation.
    const auto queued = Qt::QueuedConnection;
    connect(m_worker, &Worker::filesAdded, this, &Provider::filesAdded);
    connect(m_worker, &Worker::filesUpdated, this, &Provider::filesUpdated);
    connect(m_worker, &Worker::filesRemoved, this, &Provider::filesRemoved);
    connect(m_worker, &Worker::fileLoaded, this, &Provider::fileLoaded);
    connect(m_worker, &Worker::thumbnailLoaded, this, &Provider::takeThumbnail);
    connect(m_worker, &Worker::thumbnailsFailed, this, &Provider::thumbnailsFailed, queued);
    connect(m_worker, &Worker::aboutToCommit, this, &Provider::aboutToCommit, queued);
    connect(m_worker, &Worker::committed, this, &Provider::committed, queued);
    connect(m_worker, &Worker::updateTags, this, &Provider::updateTags, queued);
    connect(m_worker, &Worker::updateNodes, this, &Provider::updateNodes, queued);
    connect(m_worker, &Worker::updatedFiles, this, &Provider::updatedFiles, queued);
    connect(m_worker, &Worker::tagsChanged, this, &Provider::tagsChanged, queued);
    connect(m_worker, &Worker::replayed, this, &Provider::replayed, queued);
    connect(m_worker, &Worker::fellShort, this, &Provider::fellShort, queued);
    connect(m_worker, &Worker::error, this, &Provider::error, queued);
    connect(m_worker, &Worker::exchangeDone, this, &Provider::exchangeDone, queued);
    connect(m_worker, &Worker::remadeAllThumbnails, this, &Provider::remadeAllThumbnails, queued);
    connect(m_worker, &Worker::extractedTempFiles, this, &Provider::extractedTempFiles, queued);
    connect(m_worker, &Worker::additionSettled, this, &Provider::additionSettled);
    connect(m_worker, &Worker::added, this, &Provider::added, queued);
    connect(m_worker, &Worker::duplicatesReady, this, &Provider::duplicatesReady);
    connect(m_worker, &Worker::autoLinked, this, &Provider::autoLinked);
    connect(m_worker, &Worker::filesModified, this, &Provider::filesModified);
    connect(m_worker, &Worker::checkBrokenOff, this, &Provider::checkBrokenOff, queued);
    connect(m_worker, &Worker::noLongerPresent, this, &Provider::noLongerPresent);
    connect(m_worker, &Worker::present, this, &Provider::present);
    connect(m_worker, &Worker::importNotification, this, &Provider::importNotification);
    connect(m_worker, &Worker::errorOccured, this, &Provider::errorOccured, queued);
    connect(m_worker, &Worker::connectionError, this, &Provider::connectionError, queued);
}

void FileOperationProvider::connectProgress()
{
    using Worker = FileOperationWorker;
    const auto queued = Qt::QueuedConnection;
    connect(
        m_worker, &Worker::startedOpration, this,
        [this](FileOperationType, const QString &label) { emit startedFilesOperation(label); }, queued);
    connect(
        m_worker, &Worker::operationProgress, this,
        [this](FileOperationType, const QString &text, int percent) {
            emit filesOperationProgress(text, percent);
        },
        queued);
    connect(
        m_worker, &Worker::finishedOpration, this,
        [this](FileOperationType type) {
            emit finishedFilesOperation();
            if (type == FileOperationType::ImportOperation)
                emit filesImported();
        },
        queued);
    connect(m_thread, &QThread::started, m_worker, &Worker::runOperationQueue);
    // Direct: the thread must end also while the main thread waits for it.
    connect(m_worker, &Worker::finished, m_thread, &QThread::quit, Qt::DirectConnection);
    // A record may come between the worker's last look and the end of the thread.
    connect(m_thread, &QThread::finished, this, [this] {
        if (m_worker->hasQueued())
            armStart();
    });
}

void FileOperationProvider::armStart()
{
    QThread *thread = m_thread;
    QTimer::singleShot(1, thread, [thread] { thread->start(QThread::InheritPriority); });
}

void FileOperationProvider::enqueue(const FileOperation &operation)
{
    start();
    m_worker->enqueue(operation);
    armStart();
}

void FileOperationProvider::addFilesList(const QStringList &paths)
{
    if (paths.isEmpty())
        return;
    FileOperation operation;
    operation.type = FileOperationType::AddFileListOperation;
    operation.paths = paths;
    enqueue(operation);
}

void FileOperationProvider::addFiles(const QStringList &paths, const QVector<qint64> &tagIds,
                                     bool fromSelectedNode, qint64 nodeId,
                                     const QHash<QString, QString> &hyperlinkDetails)
{
    FileOperation files;
    files.type = FileOperationType::AddFilesOperation;
    files.tagIds = tagIds;
    files.fromSelectedNode = fromSelectedNode;
    files.nodeId = nodeId;
    files.hyperlinkDetails = hyperlinkDetails;
    FileOperation hyperlinks = files;
    hyperlinks.type = FileOperationType::AddHyperlinksOperation;
    HyperlinkCheck check;
    for (const QString &path : paths) {
        const QString local = localPath(path);
        if (!local.isEmpty())
            files.paths.append(local);
        else if (check.accepts(path))
            hyperlinks.paths.append(path);
    }
    if (!files.paths.isEmpty())
        enqueue(files);
    if (!hyperlinks.paths.isEmpty())
        enqueue(hyperlinks);
    if (!check.report().isEmpty())
        emit error(check.report(), tr("Add Hyperlink"));
}

void FileOperationProvider::autoLinkFiles(const QStringList &paths, const QVector<qint64> &tagIds,
                                          bool notifyDuplicates, qint64 requestId)
{
    if (paths.isEmpty())
        return;
    FileOperation operation;
    operation.type = FileOperationType::AutoLinkFilesOperation;
    operation.paths = paths;
    operation.tagIds = tagIds;
    operation.notifyDuplicates = notifyDuplicates;
    operation.requestId = requestId;
    enqueue(operation);
}

void FileOperationProvider::deleteFiles(const QVector<qint64> &ids, const QStringList &idCodes,
                                        bool onlyMissing)
{
    FileOperation operation;
    operation.onlyMissing = onlyMissing;
    operation.type = FileOperationType::DeleteFilesOperation;
    operation.fileIds = ids;
    operation.idCodes = idCodes;
    enqueue(operation);
}

void FileOperationProvider::transferFiles(const QVector<qint64> &ids, const QStringList &idCodes)
{
    FileOperation operation;
    operation.type = FileOperationType::TransferFilesOperation;
    operation.fileIds = ids;
    operation.idCodes = idCodes;
    enqueue(operation);
}

void FileOperationProvider::loadThumbnails(const QVector<qint64> &ids)
{
    FileOperation operation;
    operation.type = FileOperationType::LoadThumbnailsOperation;
    operation.fileIds = ids;
    enqueue(operation);
}

void FileOperationProvider::extractFiles(const QVector<qint64> &ids, const QStringList &targetPaths,
                                         const QSet<QString> &replacedPaths,
                                         const QSet<QString> &comparedPaths)
{
    FileOperation operation;
    operation.type = FileOperationType::ExtractFilesOperation;
    operation.fileIds = ids;
    operation.paths = targetPaths;
    operation.replacedPaths = replacedPaths;
    operation.comparedPaths = comparedPaths;
    enqueue(operation);
}

void FileOperationProvider::extractToTemporary(qint64 id)
{
    FileOperation operation;
    operation.type = FileOperationType::ExtractToTemporaryOperation;
    operation.fileIds = {id};
    enqueue(operation);
}

void FileOperationProvider::exportDatabase(const ExportRequest &request,
                                           const std::shared_ptr<PartFile> &target)
{
    FileOperation operation;
    operation.type = FileOperationType::ExportOperation;
    operation.exportRequest = request;
    operation.exportTarget = target;
    enqueue(operation);
}

void FileOperationProvider::forgetThumbnail(qint64 id)
{
    if (m_worker)
        m_worker->forgetThumbnail(id);
}

void FileOperationProvider::remakeThumbnails(const QVector<qint64> &ids)
{
    FileOperation operation;
    operation.type = FileOperationType::RemakeThumbnailsOperation;
    operation.fileIds = ids;
    enqueue(operation);
}

void FileOperationProvider::changeTags(const TagChanges &changes)
{
    FileOperation operation;
    operation.type = FileOperationType::ChangeTagsOperation;
    operation.tagChanges = changes;
    enqueue(operation);
}

void FileOperationProvider::replay(const QVector<ChangeSet> &changes)
{
    FileOperation operation;
    operation.type = FileOperationType::ReplayOperation;
    operation.changes = changes;
    enqueue(operation);
}

void FileOperationProvider::mergeTags(qint64 target, const QVector<qint64> &others)
{
    FileOperation operation;
    operation.type = FileOperationType::ReplayOperation;
    operation.mergeTarget = target;
    operation.tagIds = others;
    enqueue(operation);
}

void FileOperationProvider::checkExternalFiles(const QVector<qint64> &ids, bool givesWay, bool marksOnly)
{
    FileOperation operation;
    operation.type = FileOperationType::CheckExternalFilesOperation;
    operation.fileIds = ids;
    operation.givesWay = givesWay;
    operation.marksOnly = marksOnly;
    if (!ids.isEmpty())
        enqueue(operation);
    // Nothing is shown any more, so that a check of what was shown is of no use.
    else if (givesWay)
        endChecks();
}

void FileOperationProvider::locateFiles(const QVector<qint64> &ids, const QStringList &paths,
                                        const QStringList &idCodes)
{
    FileOperation operation;
    operation.type = FileOperationType::LocateFilesOperation;
    operation.fileIds = ids;
    operation.paths = paths;
    operation.idCodes = idCodes;
    enqueue(operation);
}

bool FileOperationProvider::endChecks()
{
    return m_worker && m_worker->endChecks();
}

QVector<qint64> FileOperationProvider::endSingleChecks()
{
    return m_worker ? m_worker->endSingleChecks() : QVector<qint64>();
}

void FileOperationProvider::importDatabase(const QString &source, bool isShell, const ImportOptions &options)
{
    FileOperation operation;
    operation.type = FileOperationType::ImportOperation;
    operation.importSource = QFileInfo(source);
    operation.importsShell = isShell;
    operation.importOptions = options;
    enqueue(operation);
}

void FileOperationProvider::setBrowsingTreeId(qint64 id)
{
    start();
    m_worker->setBrowsingTreeId(id);
}

void FileOperationProvider::cancelOperations()
{
    if (m_worker)
        m_worker->cancel();
}

bool FileOperationProvider::isBusy() const
{
    return m_worker && m_worker->isBusy();
}

void FileOperationProvider::takeThumbnail(qlonglong fileId, QImage *image)
{
    // From here on this side frees it; the worker frees those that never arrived.
    m_worker->imageTaken(image);
    if (isSignalConnected(QMetaMethod::fromSignal(&FileOperationProvider::thumbnailLoaded)))
        emit thumbnailLoaded(fileId, image);
    else
        delete image;
}
