#pragma once

#include "app/settings/dbdetails.h"

#include <QSqlError>
#include <QString>

class QSqlDatabase;

/** Opening and closing of named database connections, in the thread that is to use them. */
namespace Connections {
/** The name of the connection on which the window's statements run. */
QString mainName();

/** What this run of the program is called in the change stamps of servers. */
QString clientName();

/** The driver of a kind of database: 1 a local one, 2 one on a server; empty for any other. */
QString driverOf(int type);
/** The kind of database that a driver opens. */
int typeOf(const QString &driver);

/** What opening came to. */
struct Result
{
    bool isDriverLoaded = false;
    bool isOpen = false;
    QSqlError error;
};
/**
 * Adds and opens a connection; one that fails is removed again. The options are those of a local database's
 * driver; a server's are the same everywhere: a connection that hangs counts as lost after half a minute.
 */
Result open(const QString &name, const DBDetails &details, const QString &options = QString());

/** Closes and removes a connection; nothing when there is none. No query of it may be alive. */
void close(const QString &name);

/** Whether statements wait for the locks of others, as long as the options of the connection say; or hardly
 * at all. */
void setPatient(const QSqlDatabase &database, bool isPatient);

/** True for details of a server, and for a local path with a regular file behind it. */
bool isDatabaseThere(const DBDetails &details);
/** The error of a local database whose file is gone. */
QSqlError missingFile(const DBDetails &details);
} // namespace Connections
