#include "app/window/updatebar.h"

#include "app/messages/messages.h"
#include "app/settings/updatesettings.h"
#include "net/updatehandler.h"
#include "ui/widgets/mainui.h"

#include <QAction>
#include <QCoreApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMainWindow>
#include <QProgressBar>
#include <QToolBar>

#include <limits>

UpdateBar::UpdateBar(QMainWindow *window)
    : QObject(window),
      m_window(window),
      m_handler(new UpdateHandler(window)),
      m_offer(new QAction(tr("Download New Version"), this)),
      m_install(new QAction(tr("Install New Version"), this)),
      m_cancel(new QAction(QIcon(QStringLiteral(":icons/delete.png")), tr("Cancel Download"), this))
{
    connect(m_offer, &QAction::triggered, this, &UpdateBar::getLatest);
    connect(m_install, &QAction::triggered, this, &UpdateBar::installNewVersion);
    connect(m_cancel, &QAction::triggered, this, &UpdateBar::stopDownload);
    connect(m_handler, &UpdateHandler::downloadProgress, this, &UpdateBar::showDownloadProgress,
            Qt::UniqueConnection);
    connect(m_handler, &UpdateHandler::getNewVersionNow, this, &UpdateBar::getLatest, Qt::UniqueConnection);
    connect(m_handler, &UpdateHandler::newVersionDownloaded, this, &UpdateBar::newVersionDownloaded,
            Qt::UniqueConnection);
    connect(m_handler, &UpdateHandler::newVersionAvailable, m_offer, &QAction::setVisible,
            Qt::UniqueConnection);
}

void UpdateBar::takePlaces(MainUi &ui)
{
    m_bar = ui.searchFilesBar;
    m_bar->addActions({m_offer, m_install});
    auto *widget = new QWidget(m_bar);
    auto *layout = new QHBoxLayout(widget);
    layout->setContentsMargins({});
    auto *label = new QLabel(tr("Downloading new version: "), widget);
    m_progressBar = new QProgressBar(widget);
    m_progressBar->setAccessibleName(label->text().trimmed());
    layout->addWidget(label);
    layout->addWidget(m_progressBar);
    m_progress = m_bar->addWidget(widget);
    m_bar->addAction(m_cancel);
    m_offer->setVisible(false);
    m_install->setVisible(false);
    showDownloading(false);
    m_window->installEventFilter(this);
    for (const QAction *action : {m_offer, m_install, m_progress})
        connect(action, &QAction::changed, this, &UpdateBar::makeRoom);
}

bool UpdateBar::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show || event->type() == QEvent::Resize)
        makeRoom();
    return QObject::eventFilter(watched, event);
}

void UpdateBar::makeRoom()
{
    const bool isNeeded = m_offer->isVisible() || m_install->isVisible() || m_progress->isVisible();
    int width = 0;
    for (QToolBar *bar : m_window->findChildren<QToolBar *>(QString(), Qt::FindDirectChildrenOnly)) {
        const bool isBeside =
            !bar->isHidden() && !bar->isFloating() && m_window->toolBarArea(bar) == Qt::TopToolBarArea;
        width += isBeside ? bar->sizeHint().width() : 0;
    }
    if (!isNeeded || width <= m_window->width()) {
        giveRowBack();
    } else if (!m_hasRow && !m_window->toolBarBreak(m_bar)) {
        m_window->insertToolBarBreak(m_bar);
        m_hasRow = true;
    }
}

void UpdateBar::giveRowBack()
{
    if (m_hasRow)
        m_window->removeToolBarBreak(m_bar);
    m_hasRow = false;
}

void UpdateBar::readSettings()
{
    const bool wasChecking = m_isChecking;
    const bool wasAutomatic = m_isAutomatic;
    m_isChecking = UpdateSettings::checkForUpdates();
    m_isAutomatic = UpdateSettings::autoUpdate();
    if (!m_isChecking)
        m_handler->stopChecking();
    else if (!wasChecking)
        m_handler->checkForUpdates();
    else if (m_offer->isVisible() && m_isAutomatic && !wasAutomatic)
        getLatest();
}

void UpdateBar::showDownloading(bool isDownloading)
{
    m_progress->setVisible(isDownloading);
    m_cancel->setVisible(isDownloading);
}

void UpdateBar::getLatest()
{
    m_offer->setVisible(false);
    m_install->setVisible(false);
    m_progressBar->setRange(0, 0);
    showDownloading(true);
    m_handler->downloadLatest();
}

void UpdateBar::stopDownload()
{
    m_handler->cancel();
    showDownloading(false);
    m_offer->setVisible(true);
}

void UpdateBar::newVersionDownloaded(bool succeeded)
{
    showDownloading(false);
    m_install->setVisible(succeeded);
    // What was not to be had now may be had later.
    m_offer->setVisible(!succeeded);
    if (!succeeded)
        Messages::warning(m_window, tr("Error Downloading Update"),
                          tr("An error occurred while downloading the new version."));
}

void UpdateBar::installNewVersion()
{
    Messages::Box box;
    box.icon = QMessageBox::Information;
    box.title = tr("Update");
    box.text = tr("This program must close in order to open the installer of a new version.");
    box.buttons = QMessageBox::Ok | QMessageBox::Cancel;
    if (Messages::run(m_window, box).button != QMessageBox::Ok)
        return;
    if (m_handler->installNewVersion()) {
        if (m_window->close()) // stays when something cannot be saved
            QCoreApplication::quit();
        return;
    }
    // Temporary files may have been removed meanwhile.
    const bool isThere = m_handler->hasNewVersion();
    m_install->setVisible(isThere);
    m_offer->setVisible(!isThere);
    Messages::warning(m_window, tr("Update"), tr("The installer of the new version could not be opened."));
}

void UpdateBar::showDownloadProgress(qlonglong received, qlonglong total)
{
    constexpr qlonglong most = std::numeric_limits<int>::max();
    // A total that nobody knows is -1, and the bar of no length just moves.
    m_progressBar->setMaximum(int(qBound(0LL, total, most)));
    m_progressBar->setValue(int(qBound(0LL, received, most)));
}
