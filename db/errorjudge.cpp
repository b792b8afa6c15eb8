#include "db/errorjudge.h"

#include "app/constants.h"
#include "db/connections.h"

namespace {
// Codes of a server.
const QLatin1String lockNotAvailable("55P03");
const QLatin1String deadlockDetected("40P01");
const QLatin1String queryCanceled("57014");
const QLatin1String inFailedTransaction("25P02");
} // namespace

ErrorJudge::ErrorJudge(const DBDetails &details) : m_details(details) {}

bool ErrorJudge::isBusy(const QSqlError &error) const
{
    const QString code = error.nativeErrorCode();
    if (m_details.type() == Constants::serverDatabase)
        return code == lockNotAvailable || code == deadlockDetected;
    // The low byte is SQLite's own code, the rest tells more about it: 5 is "busy", 6 is "locked".
    const int primary = code.toInt() & 0xff;
    return primary == 5 || primary == 6;
}

bool ErrorJudge::isCanceled(const QSqlError &error)
{
    return error.nativeErrorCode() == queryCanceled;
}

bool ErrorJudge::isEcho(const QSqlError &error)
{
    return error.nativeErrorCode() == inFailedTransaction;
}

QSqlError ErrorJudge::told(const QSqlError &error) const
{
    return Connections::isDatabaseThere(m_details) ? error : Connections::missingFile(m_details);
}
