#include "app/window/collectionopener.h"

#include "app/messages/messages.h"
#include "core/controllers/collection.h"
#include "db/manager/pendingreloads.h"
#include "db/sql/connections.h"
#include "db/sql/databaselock.h"

#include <QElapsedTimer>
#include <QProgressDialog>
#include <QSqlError>
#include <QTimer>

namespace {
constexpr int patienceMilliseconds = 10000;
} // namespace

bool CollectionOpener::open(Collection &collection) const
{
    const QSqlError error = collection.open();
    if (!error.isValid() || error.type() == QSqlError::NoError)
        return load(collection);
    if (DatabaseLock::isMetBy(error, Connections::driverOf(collection.dbType())))
        Messages::warning(m_window, tr("Error opening database"), DatabaseLock::inUseText());
    return false;
}

bool CollectionOpener::load(Collection &collection) const
{
    Collection::Loading loading = collection.load();
    if (loading != Collection::Locked)
        return true;
    QProgressDialog waiting(tr("The database is in use by another program. Waiting ..."), tr("Cancel"), 0, 0,
                            m_window);
    waiting.setWindowTitle(tr("Open Database"));
    waiting.setWindowModality(Qt::ApplicationModal);
    QElapsedTimer waited;
    waited.start();
    QTimer next;
    QObject::connect(&next, &QTimer::timeout, &waiting, [&] {
        loading = collection.load();
        if (loading != Collection::Locked || waited.hasExpired(patienceMilliseconds))
            waiting.accept();
    });
    next.start(PendingReloads::retryMilliseconds);
    waiting.exec();
    next.stop();
    // Who has had enough of waiting knows why it is not open.
    if (loading == Collection::Locked && !waiting.wasCanceled())
        Messages::warning(m_window, tr("Error opening database"), DatabaseLock::inUseText());
    return loading != Collection::Locked;
}
