#include "app/window/databasechoice.h"

#include "app/messages/filedialogs.h"
#include "app/messages/messages.h"
#include "app/settings/constants.h"
#include "app/settings/windowsettings.h"
#include "app/window/recentdatabases.h"

#include <QDir>
#include <QFileInfo>
#include <QWidget>

DatabaseChoice::DatabaseChoice(std::function<bool(const DBDetails &)> open,
                               std::function<DBDetails()> openDetails, RecentDatabases *recent,
                               QWidget *window)
    : m_open(std::move(open)), m_openDetails(std::move(openDetails)), m_recent(recent), m_window(window)
{
}

void DatabaseChoice::openNamed(const QString &path, Missing missing)
{
    if (QFileInfo(path).isFile())
        open(path);
    else if (missing == IsTold)
        tellFailure();
}

void DatabaseChoice::openNewest()
{
    const DBDetails newest = m_recent->newest();
    if (newest.type() != Constants::localDatabase)
        return;
    // Nobody has asked for it in this run: the window stays empty without a word.
    if (QFileInfo::exists(newest.databaseName()))
        m_open(newest);
    else
        m_recent->remember(m_openDetails());
}

void DatabaseChoice::openRecent(const DBDetails &details)
{
    if (!QFileInfo::exists(details.databaseName()))
        m_recent->remember(m_openDetails());
    else if (!m_open(details))
        tellFailure();
}

void DatabaseChoice::ask()
{
    const QString path =
        FileDialogs::openFile(m_window, tr("Open Database"),
                              WindowSettings::lastDatabaseDir(QDir::homePath()), Constants::databaseFilter);
    const QFileInfo file(path);
    if (path.isEmpty() || !file.exists())
        return;
    WindowSettings::setLastDatabaseDir(file.absolutePath());
    open(path);
}

void DatabaseChoice::open(const QString &path)
{
    if (!m_open(DBDetails::local(QFileInfo(path).absoluteFilePath())))
        tellFailure();
}

void DatabaseChoice::tellFailure()
{
    Messages::warning(m_window, tr("Failed to Open Database"),
                      tr("The selected database could not be opened successfully."));
}
