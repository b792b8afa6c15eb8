#include "app/window/reloadprogress.h"

#include "core/controllers/collection.h"

#include <QStatusBar>

#include <utility>

namespace {
constexpr qint64 firstTextMilliseconds = 200;
} // namespace

ReloadProgress::ReloadProgress(Collection *collection, QStatusBar *statusBar)
    : QObject(collection), m_statusBar(statusBar)
{
    connect(collection, &Collection::aboutToReloadAllData, this, &ReloadProgress::begin);
    connect(collection, &Collection::loadingProgress, this, &ReloadProgress::setPercent);
    connect(collection, &Collection::allDataReloaded, this, &ReloadProgress::end);
}

void ReloadProgress::begin()
{
    m_isReloading = true;
    m_clock.start();
}

void ReloadProgress::setPercent(int percent)
{
    if (!m_isReloading || !m_clock.hasExpired(firstTextMilliseconds))
        return;
    m_text = tr("Reading the database again... %1 %").arg(percent);
    m_statusBar->showMessage(m_text);
}

void ReloadProgress::end()
{
    m_isReloading = false;
    const QString text = std::exchange(m_text, QString());
    if (!text.isEmpty() && m_statusBar->currentMessage() == text)
        m_statusBar->clearMessage();
}
