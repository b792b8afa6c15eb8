#pragma once

#include <QSqlError>
#include <QString>

/** What it means that another connection is in the way: to a local file, or of a client of the same server.
 */
namespace DatabaseLock {
/** The sentence for a database that cannot be opened for it. */
QString inUseText();
/** Whether a statement failed only because of what another connection holds at the moment. */
bool isMetBy(const QSqlError &error, const QString &driver);
} // namespace DatabaseLock
