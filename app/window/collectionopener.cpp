#include "app/window/collectionopener.h"

#include "app/messages/messages.h"
#include "core/controllers/collection.h"
#include "db/manager/pendingreloads.h"
#include "db/sql/connections.h"
#include "db/sql/databaselock.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QProgressBar>
#include <QProgressDialog>
#include <QSqlError>
#include <QTimer>

namespace {
// A box that comes and goes at once could not be read.
constexpr int boxAfterMilliseconds = 400;
} // namespace

bool CollectionOpener::open(Collection &collection)
{
    const QSqlError error = collection.open();
    if (!error.isValid() || error.type() == QSqlError::NoError)
        return load(collection);
    if (DatabaseLock::isMetBy(error, Connections::driverOf(collection.dbType())))
        Messages::warning(m_window, tr("Error opening database"), DatabaseLock::inUseText());
    return false;
}

bool CollectionOpener::load(Collection &collection)
{
    int loading = collection.beginLoad();
    QElapsedTimer waited;
    waited.start();
    for (;;) {
        if (loading == Collection::Locked && !outwaitLock(collection, waited, loading))
            return false;
        if (loading == Collection::Unreadable)
            return true;
        if (!awaitFiles(collection))
            return false;
        loading = collection.finishLoad();
        if (loading != Collection::Locked)
            return true;
    }
}

/** Begins again and again; false when that is in vain. */
bool CollectionOpener::outwaitLock(Collection &collection, const QElapsedTimer &waited, int &loading)
{
    QProgressDialog waiting(tr("The database is in use by another program. Waiting ..."), tr("Cancel"), 0, 0,
                            m_window);
    waiting.setWindowTitle(tr("Open Database"));
    waiting.setWindowModality(Qt::ApplicationModal);
    QTimer next;
    QObject::connect(&next, &QTimer::timeout, &waiting, [&] {
        loading = collection.beginLoad();
        if (loading != Collection::Locked || waited.hasExpired(m_patience))
            waiting.accept();
    });
    next.start(PendingReloads::retryMilliseconds);
    waiting.exec();
    next.stop();
    m_wasCanceled = waiting.wasCanceled();
    // Who has had enough of waiting knows why it is not open.
    if (loading == Collection::Locked && !m_wasCanceled)
        Messages::warning(m_window, tr("Error opening database"), DatabaseLock::inUseText());
    return loading != Collection::Locked && !m_wasCanceled;
}

/** False when the user would rather not wait. */
bool CollectionOpener::awaitFiles(Collection &collection)
{
    if (!collection.areFilesMany())
        return true;
    bool isRead = false;
    QProgressDialog waiting(tr("Opening database..."), tr("Cancel"), 0, 0, m_window);
    // The box's own way to tell of progress runs an event loop inside of each step.
    auto *bar = new QProgressBar;
    bar->setRange(0, 100);
    waiting.setBar(bar);
    waiting.setWindowTitle(tr("Open Database"));
    waiting.setWindowModality(Qt::ApplicationModal);
    QObject::connect(&collection, &Collection::loadingProgress, bar, &QProgressBar::setValue);
    QEventLoop quiet;
    QObject::connect(&collection, &Collection::filesRead, &waiting, [&] {
        isRead = true;
        quiet.quit();
        waiting.accept();
    });
    QTimer::singleShot(boxAfterMilliseconds, &quiet, &QEventLoop::quit);
    quiet.exec(QEventLoop::ExcludeUserInputEvents);
    if (!isRead) {
        QGuiApplication::changeOverrideCursor(Qt::BusyCursor);
        waiting.exec();
        QGuiApplication::changeOverrideCursor(Qt::WaitCursor);
    }
    m_wasCanceled = !isRead;
    return isRead;
}
