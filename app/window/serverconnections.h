#pragma once

#include "app/settings/dbdetails.h"

#include <QList>
#include <QObject>

#include <functional>
#include <optional>

class QWidget;

/**
 * Connects to databases on servers: waits for the answer with a way to give up, tells why one was refused,
 * and keeps the passwords of those that were open for the rest of the run. Owned by the window, above which
 * its boxes stand.
 */
class ServerConnections : public QObject
{
    Q_OBJECT

public:
    enum Outcome { Connected, Refused, GivenUp };

    /** What opens a database that let somebody in; false for a failure. */
    ServerConnections(std::function<bool(const DBDetails &)> open, QWidget *window);

    /** Asks for a database on a server until one opens or the user gives up. */
    void ask();
    /** Opens one with what is remembered of it, and asks with that when it is not let in. */
    void openRecent(const DBDetails &details);
    /** Opens a database on a server; a failure is told with its reason, and the user may tire of waiting. */
    Outcome open(const DBDetails &details);

    /** Keeps the password of a database on a server, and nothing of others. */
    void remember(const DBDetails &details);
    /** What was remembered for the same database and user, with the password. */
    std::optional<DBDetails> remembered(const DBDetails &details) const;

private:
    /** The dialog with these values first, then with what was typed, the password included. */
    void askFrom(const DBDetails &details);
    /** Waits until a server has let somebody in, or has not; its reason comes back. */
    Outcome tryServer(const DBDetails &details, QString &reason);

    const std::function<bool(const DBDetails &)> m_open;
    QWidget *m_window;
    QList<DBDetails> m_remembered; // newest last
};
