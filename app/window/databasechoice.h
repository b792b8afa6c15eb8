#pragma once

#include "app/settings/dbdetails.h"

#include <QCoreApplication>

#include <functional>

class QWidget;
class RecentDatabases;

/**
 * Has the local database opened that is chosen: named at the start, in a dialog, or in the recent list. What
 * cannot be opened is told, as the window's own word and above it.
 */
class DatabaseChoice
{
    Q_DECLARE_TR_FUNCTIONS(MainWindow)

public:
    /** Of a named database that is not there, it may be worth a word. */
    enum Missing { IsTold, IsIgnored };

    /** What opens a database, false for a failure that is to be told, and what describes the open one. */
    DatabaseChoice(std::function<bool(const DBDetails &)> open, std::function<DBDetails()> openDetails,
                   RecentDatabases *recent, QWidget *window);

    /** The one at this path; it is opened, never created. */
    void openNamed(const QString &path, Missing missing);
    /** The newest of the recent list, in silence when it has gone or is one on a server. */
    void openNewest();
    /** A local one of the recent list; an entry whose file has gone goes, too. */
    void openRecent(const DBDetails &details);
    void ask();

private:
    void open(const QString &path);
    void tellFailure();

    const std::function<bool(const DBDetails &)> m_open;
    const std::function<DBDetails()> m_openDetails;
    RecentDatabases *m_recent;
    QWidget *m_window;
};
