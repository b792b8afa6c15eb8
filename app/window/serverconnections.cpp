#include "app/window/serverconnections.h"

#include "app/messages/messages.h"
#include "app/messages/waitcursor.h"
#include "app/settings/collectionidentity.h"
#include "app/settings/constants.h"
#include "db/sql/connectiontrial.h"
#include "ui/dialogs/databaseconnectdialog.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLabel>
#include <QProgressDialog>

#include <algorithm>
#include <memory>

namespace {
constexpr int usualServerPort = 5432;
} // namespace

ServerConnections::ServerConnections(std::function<bool(const DBDetails &)> open, QWidget *window)
    : QObject(window), m_open(std::move(open)), m_window(window)
{
}

void ServerConnections::remember(const DBDetails &details)
{
    if (details.type() != Constants::serverDatabase)
        return;
    // Of two passwords the later one holds.
    m_remembered.removeAll(details);
    m_remembered.append(details);
}

std::optional<DBDetails> ServerConnections::remembered(const DBDetails &details) const
{
    const auto known = std::find(m_remembered.crbegin(), m_remembered.crend(), details);
    return known == m_remembered.crend() ? std::nullopt : std::make_optional(*known);
}

void ServerConnections::ask()
{
    askFrom(
        DBDetails(Constants::serverDatabase, QString(), usualServerPort, QString(), QString(), QString()));
}

void ServerConnections::openRecent(const DBDetails &details)
{
    const std::optional<DBDetails> known = remembered(details);
    // The password may be another one by now.
    if (!known || open(*known) == Refused)
        askFrom(known.value_or(details));
}

void ServerConnections::askFrom(const DBDetails &details)
{
    DatabaseConnectDialog dialog(details, m_window);
    while (dialog.exec() == QDialog::Accepted) {
        if (open(dialog.details()) == Connected)
            return;
    }
}

ServerConnections::Outcome ServerConnections::open(const DBDetails &details)
{
    QString reason;
    {
        const WaitCursor cursor;
        // The window stands still while it reads: without the hole that the dialog leaves.
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        const Outcome outcome = tryServer(details, reason);
        if (outcome == GivenUp || (outcome == Connected && m_open(details)))
            return outcome;
    }
    Messages::Box box;
    box.icon = QMessageBox::Warning;
    box.title = tr("Failed to Connect to Database");
    box.text = tr("Connection could not be made to the specified remote database.");
    box.informativeText = reason;
    Messages::run(m_window, box);
    return Refused;
}

ServerConnections::Outcome ServerConnections::tryServer(const DBDetails &details, QString &reason)
{
    auto trial = std::make_unique<ConnectionTrial>(details);
    QProgressDialog waiting(QString(), tr("Cancel"), 0, 0, m_window);
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
