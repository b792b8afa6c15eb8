#include "fileops/adding/filebatch.h"

#include "db/sql/transaction.h"
#include "fileops/pictures/thumbnailmaker.h"
#include "fileops/pictures/thumbnailsahead.h"
#include "fileops/worker/fileoperationworker.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFileInfo>
#include <QScopeGuard>
#include <QSignalBlocker>

namespace {

// What is repeated when one file fails, and held in memory where rows are gathered.
constexpr int mostFilesInRun = 250;
constexpr qint64 mostBytesInRun = qint64(4) * 1024 * 1024;
constexpr qint64 bytesOfThumbnail = qint64(32) * 1024;

} // namespace

FileBatch::FileBatch(FileOperationWorker &worker, const FileBatchRequest &request)
    : m_worker(worker), m_request(request), m_linker(worker)
{
}

QVector<qint64> FileBatch::addFilesListToDb()
{
    qint64 loadId = m_request.loadId;
    if (m_request.paths.isEmpty())
        return {};
    if (loadId == 0 && !m_worker.nextLoadId(loadId)) {
        m_refused = m_request.paths;
        return {};
    }
    if (!m_request.thumbnails)
        m_request.thumbnails =
            std::make_shared<ThumbnailsAhead>(m_request.paths, [this] { return m_worker.shouldEnd(); });
    FileAdder adder(m_worker, m_request.kind, loadId, *m_request.thumbnails);
    m_adder = &adder;
    m_added.reserve(m_request.paths.size());
    for (int from = 0, to = 0; from < m_request.paths.size(); from = to) {
        to = endOfRun(from);
        const bool isDone = to > from + 1 && addRun(from, to);
        if (!isDone && !addSingly(from, to)) {
            qDebug("FileOperationWorker::addFilesListToDb() - stopped! Exiting.");
            break;
        }
    }
    m_adder = nullptr;
    return m_added;
}

int FileBatch::endOfRun(int from) const
{
    const int rest = m_request.paths.size() - from;
    // Contents are too dear to be stored twice because another file of the run fails.
    if (m_request.kind == FileKind::internal && !m_worker.gathersRows())
        return from + 1;
    int to = from + 1;
    qint64 bytes = weightOf(from);
    while (to < from + qMin(rest, mostFilesInRun) && (bytes += weightOf(to)) <= mostBytesInRun)
        ++to;
    return to;
}

qint64 FileBatch::weightOf(int index) const
{
    const QString &path = m_request.paths.at(index);
    const bool isPicture = m_request.kind != FileKind::hyperlink && ThumbnailMaker::isImageName(path);
    const qint64 contents = m_request.kind == FileKind::internal ? QFileInfo(path).size() : 0;
    return contents + (isPicture ? bytesOfThumbnail : path.size());
}

bool FileBatch::mayGoOn() const
{
    return !m_worker.shouldEnd() && !m_worker.isSavepointLost();
}

bool FileBatch::addRun(int from, int to)
{
    const int addedBefore = m_added.size();
    const int unreadBefore = m_unread.size();
    Savepoint savepoint(m_worker);
    const bool isGood = savepoint.isActive() && gatherRun(from, to);
    if (isGood && savepoint.release())
        return true;
    m_added.resize(addedBefore);
    m_unread.erase(m_unread.begin() + unreadBefore, m_unread.end());
    m_worker.takeBack(savepoint);
    return false;
}

bool FileBatch::gatherRun(int from, int to)
{
    const auto forgetting = qScopeGuard([this] { m_worker.dropRows(); });
    m_worker.beginRows();
    for (int i = from; i < to; ++i) {
        if (!mayGoOn())
            return false;
        reportProgress(i);
        // Silent: what fails here is tried again by itself, and told then.
        const QSignalBlocker blocker(&m_worker);
        qint64 fileId = 0;
        const FileAdder::Outcome outcome = addFile(i, fileId);
        if (outcome == FileAdder::Skipped) {
            m_unread.append(m_request.paths.at(i));
            continue;
        }
        if (outcome == FileAdder::Failed || !m_linker.linkNewFile(fileId, tagIdsFor(m_request.paths.at(i))))
            return false;
        m_added.append(fileId);
    }
    const QSignalBlocker blocker(&m_worker);
    return m_worker.writeRows();
}

bool FileBatch::addSingly(int from, int to)
{
    for (int i = from; i < to; ++i) {
        if (!mayGoOn())
            return false;
        reportProgress(i);
        Savepoint savepoint(m_worker);
        qint64 fileId = 0;
        const FileAdder::Outcome outcome = savepoint.isActive() ? addFile(i, fileId) : FileAdder::Failed;
        if (outcome == FileAdder::Added && m_linker.linkFile(fileId, tagIdsFor(m_request.paths.at(i))) &&
            savepoint.release())
            m_added.append(fileId);
        else
            (outcome == FileAdder::Skipped ? m_unread : m_refused).append(m_request.paths.at(i));
    }
    return mayGoOn();
}

FileAdder::Outcome FileBatch::addFile(int index, qint64 &fileId)
{
    const FileChecksum known =
        index < m_request.checksums.size() ? m_request.checksums.at(index) : FileChecksum();
    return m_adder->addFilesList(m_request.paths.at(index), known, fileId);
}

void FileBatch::reportProgress(int index)
{
    const int whole = m_request.wholeNumber > 0 ? m_request.wholeNumber : m_request.paths.size();
    const int percent = ProgressThrottle::percent(m_request.firstNumber + index, whole);
    if (m_request.isSilent || !m_progress.isDue(percent, m_request.firstNumber + index + 1 == whole))
        return;
    const QString &path = m_request.paths.at(index);
    const QString name =
        m_request.kind == FileKind::hyperlink ? path : path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
    emit m_worker.operationProgress(m_request.type, FileOperationWorker::tr("Adding %1").arg(name), percent);
}

QVector<qint64> FileBatch::tagIdsFor(const QString &path)
{
    const auto inherited = m_request.inheritedTags.constFind(path);
    const QStringList names =
        inherited != m_request.inheritedTags.constEnd() ? *inherited : m_request.folderTags.namesFor(path);
    // Files of one folder share one list, so the comparison is that of two pointers nearly always.
    if (!m_hasLast || names != m_lastNames) {
        m_lastNames = names;
        m_lastTagIds = TagLinker::idsFor(names, m_request.tagIdsByName, m_request.tagIds);
        m_hasLast = true;
    }
    return m_lastTagIds;
}
