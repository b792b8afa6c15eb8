#include "fileops/tracking/refreshedcontents.h"

#include <QDateTime>
#include <QFileInfo>

RefreshedContents &RefreshedContents::of(QObject &worker)
{
    auto *contents = worker.findChild<RefreshedContents *>(QString(), Qt::FindDirectChildrenOnly);
    return contents ? *contents : *new RefreshedContents(&worker);
}

void RefreshedContents::add(qint64 fileId)
{
    m_times.insert(fileId, QDateTime::currentMSecsSinceEpoch());
}

bool RefreshedContents::mayBeOlder(qint64 refreshedId, const QString &path) const
{
    const auto refreshed = m_times.constFind(refreshedId);
    if (refreshed == m_times.constEnd())
        return false;
    // Copying and moving may keep the time of the last change, but not that of the entry itself.
    const QDateTime changed = QFileInfo(path).metadataChangeTime();
    return !changed.isValid() || changed.toMSecsSinceEpoch() <= *refreshed;
}
