#include "db/sql/databaselock.h"

#include "app/settings/constants.h"

#include <QCoreApplication>

namespace DatabaseLock {
QString inUseText()
{
    return QCoreApplication::translate("DatabaseLock",
                                       "The database is in use by another program. Please try again later.");
}

bool isMetBy(const QSqlError &error, const QString &driver)
{
    const QString code = error.nativeErrorCode();
    // "lock_not_available" and "deadlock_detected".
    if (driver == Constants::postgresDriver)
        return code == QLatin1String("55P03") || code == QLatin1String("40P01");
    // The low byte is SQLite's own code, the rest tells more about it: 5 is "busy", 6 is "locked".
    const int primary = code.toInt() & 0xff;
    return primary == 5 || primary == 6;
}
} // namespace DatabaseLock
