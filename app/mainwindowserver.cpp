// The commands of MainWindow for databases on a server.

#include "app/constants.h"
#include "app/mainwindow.h"
#include "app/messages.h"
#include "core/collection.h"
#include "core/controllers/browstreecontroller.h"
#include "ui/dialogs/browsingtreedialog.h"
#include "ui/dialogs/databaseconnectdialog.h"
#include "ui/dialogs/popupmessager.h"
#include "ui/docks/browsingtreeviewdock.h"

#include <QGuiApplication>

#include <algorithm>

namespace {

constexpr int usualPort = 5432;

/** Shows for its lifetime that the program waits. */
class WaitCursor
{
public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor &) = delete;
    WaitCursor &operator=(const WaitCursor &) = delete;
};

} // namespace

void MainWindow::slotConnectDb()
{
    connectDialogLoop(
        DBDetails(Constants::serverDatabase, QString(), usualPort, QString(), QString(), QString()));
}

void MainWindow::slotDisconnectDb()
{
    if (!m_collection)
        return;
    const DBDetails details = m_collection->details();
    if (details.type() == Constants::serverDatabase) {
        // Of two passwords the later one holds.
        m_runConnections.removeAll(details);
        m_runConnections.append(details);
    }
    closeDatabase();
}

void MainWindow::connectDialogLoop(const DBDetails &details)
{
    DatabaseConnectDialog dialog(details, this);
    while (dialog.exec() == QDialog::Accepted) {
        if (connectToServer(dialog.details()))
            return;
    }
}

bool MainWindow::connectToServer(const DBDetails &details)
{
    {
        const WaitCursor cursor;
        // The window stands still until a server answers: without the hole that the dialog leaves.
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        if (openDatabase(details))
            return true;
    }
    Messages::warning(this, tr("Failed to Connect to Database"),
                      tr("Connection could not be made to the specified remote database."));
    return false;
}

void MainWindow::openRecentServer(const DBDetails &details)
{
    const auto known = std::find(m_runConnections.crbegin(), m_runConnections.crend(), details);
    const bool isKnown = known != m_runConnections.crend();
    // The password may be another one by now.
    if (!isKnown || !connectToServer(*known))
        connectDialogLoop(isKnown ? *known : details);
}

void MainWindow::slotOpenBrowsinTree()
{
    BrowsTreeController *trees = m_collection ? m_collection->browsTreeController() : nullptr;
    if (!trees || m_collection->dbType() != Constants::serverDatabase)
        return;
    BrowsingTreeDialog dialog(trees, this);
    connect(&dialog, &BrowsingTreeDialog::showError, m_popupMessager, &PopupMessager::showWarning);
    connect(&dialog, &BrowsingTreeDialog::treeDuplicated, m_popupMessager,
            &PopupMessager::showBrowsingTreeDuplicated);
    dialog.exec();
    m_browsingDock->updateTitle();
}
