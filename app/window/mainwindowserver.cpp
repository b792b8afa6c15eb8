// The commands of MainWindow for databases on a server.

#include "app/messages/messages.h"
#include "app/messages/waitcursor.h"
#include "app/settings/collectionidentity.h"
#include "app/settings/constants.h"
#include "app/window/mainwindow.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/collection.h"
#include "db/sql/connectiontrial.h"
#include "ui/dialogs/browsingtreedialog.h"
#include "ui/dialogs/databaseconnectdialog.h"
#include "ui/dialogs/popupmessager.h"
#include "ui/docks/browsingtreeviewdock.h"

#include <QGuiApplication>
#include <QLabel>
#include <QProgressDialog>

#include <algorithm>
#include <memory>

namespace {

constexpr int usualPort = 5432;

} // namespace

void MainWindow::slotConnectDb()
{
    if (mayLeaveDatabase())
        connectDialogLoop(
            DBDetails(Constants::serverDatabase, QString(), usualPort, QString(), QString(), QString()));
}

void MainWindow::slotDisconnectDb()
{
    if (m_collection && mayLeaveDatabase())
        closeDatabase();
}

void MainWindow::rememberRunConnection()
{
    const DBDetails details = m_collection->details();
    if (details.type() != Constants::serverDatabase)
        return;
    // Of two passwords the later one holds.
    m_runConnections.removeAll(details);
    m_runConnections.append(details);
}

void MainWindow::connectDialogLoop(const DBDetails &details)
{
    DatabaseConnectDialog dialog(details, this);
    while (dialog.exec() == QDialog::Accepted) {
        if (connectToServer(dialog.details()) == Connected)
            return;
    }
}

MainWindow::ConnectionOutcome MainWindow::connectToServer(const DBDetails &details)
{
    QString reason;
    {
        const WaitCursor cursor;
        // The window stands still while it reads: without the hole that the dialog leaves.
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        const ConnectionOutcome outcome = tryServer(details, reason);
        if (outcome == GivenUp || (outcome == Connected && openDatabase(details)))
            return outcome;
    }
    Messages::Box box;
    box.icon = QMessageBox::Warning;
    box.title = tr("Failed to Connect to Database");
    box.text = tr("Connection could not be made to the specified remote database.");
    box.informativeText = reason;
    Messages::run(this, box);
    return Refused;
}

MainWindow::ConnectionOutcome MainWindow::tryServer(const DBDetails &details, QString &reason)
{
    auto trial = std::make_unique<ConnectionTrial>(details);
    QProgressDialog waiting(QString(), tr("Cancel"), 0, 0, this);
    auto *label = new QLabel(tr("Connecting to %1 ...").arg(CollectionIdentity::displayText(details)));
    label->setTextFormat(Qt::PlainText);
    waiting.setLabel(label);
    waiting.setWindowTitle(tr("Connect"));
    waiting.setWindowModality(Qt::WindowModal);
    connect(trial.get(), &QThread::finished, &waiting, &QProgressDialog::reset);
    trial->start();
    // Most servers answer before a box could be read.
    constexpr unsigned long patience = 400;
    if (!trial->wait(patience)) {
        QGuiApplication::changeOverrideCursor(Qt::BusyCursor);
        waiting.exec();
        QGuiApplication::changeOverrideCursor(Qt::WaitCursor);
    }
    if (waiting.wasCanceled()) {
        // It ends by itself, at its time-out at the latest; the program waits for it before it ends.
        trial->setParent(this);
        connect(trial.get(), &QThread::finished, trial.get(), &QObject::deleteLater);
        static_cast<void>(trial.release());
        return GivenUp;
    }
    trial->wait();
    reason = trial->error().databaseText().trimmed();
    return trial->error().isValid() ? Refused : Connected;
}

void MainWindow::openRecentServer(const DBDetails &details)
{
    const auto known = std::find(m_runConnections.crbegin(), m_runConnections.crend(), details);
    const bool isKnown = known != m_runConnections.crend();
    // A copy: the list changes on the way.
    const DBDetails complete = isKnown ? *known : details;
    // The password may be another one by now.
    if (!isKnown || connectToServer(complete) == Refused)
        connectDialogLoop(complete);
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
