#include "db/sql/databaselock.h"

#include "app/settings/constants.h"
#include "db/sql/sqliteerrors.h"

#include <QCoreApplication>

namespace DatabaseLock {
QString inUseText()
{
    return QCoreApplication::translate("DatabaseLock",
                                       "The database is in use by another program. Please try again later.");
}

bool isMetBy(const QSqlError &error, const QString &driver)
{
    if (driver != Constants::postgresDriver)
        return SqliteErrors::isBusy(error);
    // "lock_not_available" and "deadlock_detected".
    const QString code = error.nativeErrorCode();
    return code == QLatin1String("55P03") || code == QLatin1String("40P01");
}
} // namespace DatabaseLock
