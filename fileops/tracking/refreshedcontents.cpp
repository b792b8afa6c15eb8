#include "fileops/tracking/refreshedcontents.h"

#include "db/sql/basedbprovider.h"
#include "fileops/contents/externalpaths.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDateTime>
#include <QFileInfo>

#include <limits>

namespace {
qint64 lastWriteOf(const FileOperationWorker &worker)
{
    const Database::PathLocator locator = Database::pathLocator(worker.connectionName());
    return locator.isLocal ? QFileInfo(locator.databasePath).lastModified().toMSecsSinceEpoch()
                           : std::numeric_limits<qint64>::max();
}
} // namespace

RefreshedContents::RefreshedContents(FileOperationWorker &worker)
    : QObject(&worker), m_worker(worker), m_lastWrite(lastWriteOf(worker))
{
}

RefreshedContents &RefreshedContents::of(FileOperationWorker &worker)
{
    auto *contents = worker.findChild<RefreshedContents *>(QString(), Qt::FindDirectChildrenOnly);
    return contents ? *contents : *new RefreshedContents(worker);
}

void RefreshedContents::add(qint64 fileId)
{
    m_times.insert(fileId, QDateTime::currentMSecsSinceEpoch());
}

bool RefreshedContents::mayBeOlder(qint64 refreshedId, const QString &path) const
{
    const auto known = m_times.constFind(refreshedId);
    const bool isKnown = known != m_times.constEnd();
    if (!isKnown && !hasChangedSinceAdded(refreshedId))
        return false;
    const qint64 refreshed = isKnown ? *known : m_lastWrite;
    // Copying and moving may keep the time of the last change, but not that of the entry itself.
    const QDateTime changed = QFileInfo(path).metadataChangeTime();
    return !changed.isValid() || changed.toMSecsSinceEpoch() <= refreshed;
}

bool RefreshedContents::hasChangedSinceAdded(qint64 fileId) const
{
    static const QString find = QStringLiteral(
        "SELECT file_id FROM files WHERE file_id=? AND internal=0 AND modification_date>addition_date;");
    TableData rows;
    const bool isRead = m_worker.runFast(find, {fileId}, rows);
    const bool hasChanged = !isRead || !rows.isEmpty();
    freeRows(rows);
    return hasChanged;
}
