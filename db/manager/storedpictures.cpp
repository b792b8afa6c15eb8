#include "db/manager/storedpictures.h"

#include "db/manager/errorteller.h"
#include "db/sql/connections.h"

#include <QSqlDatabase>

std::unique_ptr<ImageLoading> StoredPictures::load(qint64 fileId)
{
    std::unique_ptr<ImageLoading> loading;
    // Whoever meets a lock asks again soon: the window does not stand still for it.
    const QSqlDatabase database = QSqlDatabase::database(Connections::mainName(), false);
    Connections::setPatient(database, false);
    const bool wasBusy = m_errors.runInSilence([&] { loading = m_images.load(fileId); });
    Connections::setPatient(database, true);
    if (m_images.isConnectionLost())
        return std::make_unique<ImageLoading>(StoredImage::Unreachable);
    return wasBusy ? std::make_unique<ImageLoading>(StoredImage::Busy) : std::move(loading);
}

StoredImage::Saving StoredPictures::save(qint64 fileId, const QImage &picture, QVector<qint64> &changedIds)
{
    m_errors.forgetBusy();
    m_images.forgetLastError();
    if (m_images.save(fileId, picture, changedIds))
        return StoredImage::Saved;
    const bool isTold = m_errors.sawBusy() || m_images.lastError().isValid() || m_images.isConnectionLost();
    return isTold ? StoredImage::Refused : StoredImage::NotSaved;
}
