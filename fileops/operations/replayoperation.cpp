#include "fileops/operations/replayoperation.h"

#include "core/merging/tagmerger.h"
#include "core/tagging/tagwriter.h"
#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/sqltext.h"
#include "db/sql/transaction.h"
#include "fileops/worker/fileoperationworker.h"

#include <algorithm>
#include <iterator>

namespace {
constexpr int idsPerStatement = 5000;

/** The files of all of them, each once. */
int filesOf(const QVector<ChangeSet> &changes)
{
    QVector<qint64> files;
    for (const ChangeSet &set : changes) {
        for (const TagLinks &links : set.links)
            files += links.fileIds;
    }
    std::sort(files.begin(), files.end());
    return int(std::unique(files.begin(), files.end()) - files.begin());
}

template <class Use>
bool forEachPart(const QVector<qint64> &ids, Use use)
{
    for (int from = 0; from < ids.size(); from += idsPerStatement) {
        if (!use(ids.mid(from, idsPerStatement)))
            return false;
    }
    return true;
}
} // namespace

ReplayOperation::ReplayOperation(FileOperationWorker &worker, const FileOperation &request)
    : m_worker(worker), m_request(request), m_changes(request.changes)
{
}

void ReplayOperation::run()
{
    m_worker.report().setDone(0, qMax(1, filesOf(m_changes)));
    Transaction transaction(m_worker, m_worker.connectionName());
    if (!transaction.isActive() || !findMerge())
        return;
    const int files = filesOf(m_changes);
    m_worker.report().setDone(0, qMax(1, files));
    if (!write() || m_worker.shouldEnd() || !transaction.commit())
        return;
    m_worker.report().setDone(files, files);
    emit m_worker.replayed(m_outcome);
}

bool ReplayOperation::findMerge()
{
    if (m_request.mergeTarget == 0)
        return true;
    TagMerger merger(m_worker.constructor(), m_worker, m_worker.connectionName());
    ChangeSet merge;
    if (!goOn(0) || !m_worker.holdTags() || !merger.read(m_request.mergeTarget, m_request.tagIds, merge))
        return false;
    if (merge.isEmpty()) {
        emit m_worker.error(FileOperationWorker::tr("The tags have been removed meanwhile."),
                            FileOperationWorker::tr("Merge Tags"));
        m_worker.report().setDone(0, 0);
        return false;
    }
    m_outcome.mergeTarget = m_request.mergeTarget;
    m_outcome.mergedTags = m_request.tagIds;
    m_outcome.merge = merge;
    m_changes = {merge};
    return true;
}

bool ReplayOperation::write()
{
    for (const ChangeSet &set : qAsConst(m_changes)) {
        for (const TagLinks &links : set.links)
            m_pairs += links.fileIds.size();
    }
    ChangeReplay::Files files;
    files.changeTags = [this](const TagChanges &changes, QSet<qint64> &lost) {
        return changeTags(changes, lost);
    };
    files.readUsed = [this](const QVector<qint64> &tagIds, QSet<qint64> &used) {
        return readUsed(tagIds, used);
    };
    ChangeReplay replay(m_worker.constructor(), files, m_worker, m_worker.connectionName());
    const bool isDone = std::all_of(m_changes.cbegin(), m_changes.cend(),
                                    [&](const ChangeSet &set) { return goOn(m_written) && replay.run(set); });
    m_outcome.touched = replay.touched();
    m_outcome.areAutoLinksTouched = replay.areAutoLinksTouched();
    m_outcome.losses = replay.losses();
    return isDone;
}

bool ReplayOperation::changeTags(const TagChanges &changes, QSet<qint64> &lost)
{
    TagWriter writer(m_worker, m_worker.connectionName());
    if (!writer.write(changes, [this](qint64 pairs) { return goOn(m_written + pairs); }))
        return false;
    m_written += Tagging::pairs(changes);
    m_outcome.tagged += writer.done();
    return findLost(changes, writer.done(), lost);
}

bool ReplayOperation::findLost(const TagChanges &changes, const TagChanges &done, QSet<qint64> &lost)
{
    QSet<qint64> left;
    const auto compare = [&left](const QVector<qint64> &wanted, const QVector<qint64> &written) {
        QVector<qint64> rest;
        std::set_difference(wanted.cbegin(), wanted.cend(), written.cbegin(), written.cend(),
                            std::back_inserter(rest));
        left += QSet<qint64>(rest.cbegin(), rest.cend());
    };
    for (const TagChange &change : changes) {
        const auto written = std::find_if(done.cbegin(), done.cend(), [&change](const TagChange &other) {
            return other.tagId == change.tagId;
        });
        compare(change.linked, written == done.cend() ? QVector<qint64>() : written->linked);
        compare(change.unlinked, written == done.cend() ? QVector<qint64>() : written->unlinked);
    }
    QSet<qint64> there;
    const bool isRead = forEachPart(left.values().toVector(), [&](const QVector<qint64> &part) {
        return readIds(QLatin1String("SELECT file_id FROM files WHERE file_id IN (") + SqlText::idList(part) +
                           QLatin1String(");"),
                       there);
    });
    lost += left - there;
    return isRead;
}

bool ReplayOperation::readUsed(const QVector<qint64> &tagIds, QSet<qint64> &used)
{
    return forEachPart(tagIds, [&](const QVector<qint64> &part) {
        return readIds(QLatin1String("SELECT DISTINCT tag_id FROM file_tag WHERE tag_id IN (") +
                           SqlText::idList(part) + QLatin1String(");"),
                       used);
    });
}

bool ReplayOperation::readIds(const QString &statement, QSet<qint64> &ids)
{
    const auto collect = [&ids](const TableData &slice) {
        for (const TableRowData *row : slice)
            ids.insert(row->at(0).toLongLong());
    };
    return m_worker.runSyncInSlices(statement, idsPerStatement, collect, SliceKey(),
                                    m_worker.connectionName());
}

bool ReplayOperation::goOn(qint64 done)
{
    const auto percent = static_cast<int>(100 * done / qMax<qint64>(1, m_pairs));
    if (m_progress.isDue(percent))
        emit m_worker.operationProgress(m_request.type, QString(), percent);
    return !m_worker.shouldEnd();
}
