#include "fileops/operations/checkexternalfilesoperation.h"

#include "app/settings/addingsettings.h"
#include "fileops/operations/deletefilesoperation.h"
#include "fileops/tracking/changedcopies.h"
#include "fileops/tracking/filemodificationchecker.h"
#include "fileops/tracking/filerefresh.h"
#include "fileops/tracking/modifiedfilereader.h"
#include "fileops/tracking/refreshedcontents.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDebug>
#include <QSet>
#include <QThread>

#include <algorithm>
#include <vector>

namespace {
// Each slice is told at once, and the window takes it in without a stop.
constexpr int filesInSlice = 2000;
constexpr int mostTries = 100;
constexpr int pauseMilliseconds = 20;
// Ids that are rarer than one in this many numbers are compared.
constexpr qint64 numbersPerId = 8;

/**
 * Each id once, ascending. Those of a database lie close to each other and are told apart by their places:
 * a million compared would hold back the end of the check for longer than all else in it.
 */
QVector<qint64> ascending(const QVector<qint64> &ids)
{
    if (ids.isEmpty() || std::is_sorted(ids.cbegin(), ids.cend()))
        return ids;
    QVector<qint64> sorted;
    const auto [least, most] = std::minmax_element(ids.cbegin(), ids.cend());
    const qint64 first = *least;
    // Without a sign, as two ids may be farther apart than one number can say.
    const quint64 span = quint64(*most) - quint64(first);
    if (span < quint64(numbersPerId) * quint64(ids.size())) {
        std::vector<bool> isThere(size_t(span) + 1);
        for (const qint64 id : ids)
            isThere[size_t(id - first)] = true;
        sorted.reserve(ids.size());
        for (size_t place = 0; place < isThere.size(); ++place) {
            if (isThere[place])
                sorted.append(first + qint64(place));
        }
        return sorted;
    }
    sorted = ids;
    std::sort(sorted.begin(), sorted.end());
    return sorted;
}
} // namespace

CheckExternalFilesOperation::CheckExternalFilesOperation(FileOperationWorker &worker,
                                                         const FileOperation &request)
    : m_worker(worker), m_rest(request)
{
    m_rest.fileIds = ascending(m_rest.fileIds);
    if (!m_rest.modifiedFiles)
        m_rest.modifiedFiles = std::make_shared<QMap<qint64, QString>>();
    RefreshedContents::of(worker);
}

void CheckExternalFilesOperation::run()
{
    lookAtFiles();
    if (m_rest.fileIds.isEmpty())
        treatModified();
    if (m_worker.shouldEnd())
        qDebug("CheckExternalFilesOperation::run() - stopped! Exiting.");
    else if (!m_rest.fileIds.isEmpty() || !m_rest.modifiedFiles->isEmpty())
        m_worker.postpone(m_rest);
    if (m_worker.isConnectionLost())
        return;
    const bool isBrokenOff = m_worker.hasMetLock() || (m_worker.isCanceled() && !m_worker.isOutdated());
    if (m_rest.givesWay && isBrokenOff && !m_worker.isStopped())
        emit m_worker.checkBrokenOff();
    forgetErrors();
    m_worker.setPatient(true);
}

bool CheckExternalFilesOperation::mayGoOn() const
{
    return !m_worker.shouldEnd() && !m_worker.isConnectionLost() && !m_worker.report().hasErrors();
}

void CheckExternalFilesOperation::outwaitLock(const std::function<void()> &step)
{
    // By itself the connection would wait on when the check has to end.
    for (int tries = 0; tries < mostTries; ++tries) {
        forgetErrors();
        // A commit makes it patient again.
        m_worker.setPatient(false);
        step();
        if (!m_worker.hasMetLock() || m_worker.shouldEnd())
            return;
        QThread::msleep(pauseMilliseconds);
    }
}

void CheckExternalFilesOperation::lookAtFiles()
{
    FileModificationChecker checker;
    QObject::connect(&checker, &FileModificationChecker::noLongerPresent, &m_worker,
                     &FileOperationWorker::noLongerPresent);
    QObject::connect(&checker, &FileModificationChecker::present, &m_worker, &FileOperationWorker::present);
    int done = 0;
    do {
        QHash<qint64, QString> modified;
        outwaitLock([&] { modified = checker.check(m_rest.fileIds.mid(done, filesInSlice), m_worker); });
        for (auto it = modified.cbegin(); it != modified.cend(); ++it)
            m_rest.modifiedFiles->insert(it.key(), it.value());
        done += filesInSlice;
    } while (done < m_rest.fileIds.size() && mayGoOn() && !m_worker.hasQueued());
    // What could not be read is no rest: it would be met again and again.
    m_rest.fileIds = mayGoOn() ? m_rest.fileIds.mid(done) : QVector<qint64>();
}

void CheckExternalFilesOperation::treatModified()
{
    QMap<qint64, QString> &modified = *m_rest.modifiedFiles;
    if (m_rest.marksOnly)
        modified.clear();
    ModifiedFileReader reader(m_worker);
    while (!modified.isEmpty()) {
        ModifiedFileList files;
        bool isRead = false;
        if (mayGoOn())
            outwaitLock([&] { isRead = reader.read(modified, files); });
        if (!isRead || !treat(files))
            modified.clear();
        else if (m_worker.hasQueued())
            return;
    }
}

bool CheckExternalFilesOperation::treat(ModifiedFileList &files)
{
    DeletedFileRepresentations removed;
    QVector<qint64> heirs;
    if (AddingSettings::duplicateManagementEnabled() && !removeCopies(files, removed, heirs))
        return false;
    FileRefresh refresh(m_worker);
    refresh.prepare(files);
    QVector<qint64> refreshed;
    if (!files.isEmpty())
        outwaitLock([&] { refreshed = refresh.write(); });
    rememberContents(files, refreshed);
    if (!refreshed.isEmpty() || !heirs.isEmpty())
        emit m_worker.updatedFiles(refreshed + heirs);
    if (!refreshed.isEmpty() || !removed.isEmpty())
        emit m_worker.filesModified(refreshed, removed);
    return mayGoOn();
}

bool CheckExternalFilesOperation::removeCopies(ModifiedFileList &files, DeletedFileRepresentations &removed,
                                               QVector<qint64> &heirs)
{
    QHash<qint64, qint64> keptFiles;
    bool isDone = false;
    outwaitLock([&] { isDone = ChangedCopies(m_worker).find(files, keptFiles); });
    if (!isDone || m_worker.shouldEnd())
        return false;
    if (keptFiles.isEmpty())
        return true;
    FileOperation request;
    request.type = FileOperationType::DeleteFilesOperation;
    QVector<qint64> gone;
    const auto removal = QObject::connect(&m_worker, &FileOperationWorker::filesRemoved, &m_worker,
                                          [&gone](const QVector<qint64> &ids) { gone = ids; });
    for (const ModifiedFile &file : qAsConst(files)) {
        if (!keptFiles.contains(file.fileId))
            continue;
        request.fileIds.append(file.fileId);
        request.idCodes.append(file.idCode);
    }
    const auto bequeath = [this, &keptFiles](qint64 fileId) {
        return FileRefresh(m_worker).bequeath(fileId, keptFiles.value(fileId));
    };
    outwaitLock([&] { DeleteFilesOperation(m_worker, request, bequeath).run(); });
    QObject::disconnect(removal);
    const QSet<qint64> goneIds(gone.cbegin(), gone.cend());
    for (const ModifiedFile &file : qAsConst(files)) {
        if (!goneIds.contains(file.fileId))
            continue;
        heirs.append(keptFiles.value(file.fileId));
        removed.append({file.path.mid(file.path.lastIndexOf(QLatin1Char('/')) + 1), file.path});
    }
    // What should have gone and has not is left as it is, so that the next check finds it changed again.
    const auto isTreated = [&keptFiles](const ModifiedFile &file) { return keptFiles.contains(file.fileId); };
    files.erase(std::remove_if(files.begin(), files.end(), isTreated), files.end());
    return true;
}

void CheckExternalFilesOperation::rememberContents(const ModifiedFileList &files,
                                                   const QVector<qint64> &refreshed)
{
    const QSet<qint64> ids(refreshed.cbegin(), refreshed.cend());
    for (const ModifiedFile &file : files) {
        if (file.hasOtherContents() && ids.contains(file.fileId))
            RefreshedContents::of(m_worker).add(file.fileId);
    }
}

void CheckExternalFilesOperation::forgetErrors()
{
    m_worker.report().begin(m_rest.type);
}
