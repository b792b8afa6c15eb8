#include "db/sql/errorjudge.h"

#include "app/settings/constants.h"
#include "db/sql/connections.h"
#include "db/sql/databaselock.h"
#include "db/sql/sqliteerrors.h"

#include <QCoreApplication>

namespace {
// Codes of a server.
const QLatin1String queryCanceled("57014");
const QLatin1String inFailedTransaction("25P02");
} // namespace

ErrorJudge::ErrorJudge(const DBDetails &details) : m_details(details) {}

bool ErrorJudge::isBusy(const QSqlError &error) const
{
    return DatabaseLock::isMetBy(error, Connections::driverOf(m_details.type()));
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
    // The statement was ended (ReadBound).
    if (m_details.type() == Constants::localDatabase && SqliteErrors::code(error) == SQLITE_INTERRUPT)
        return {
            QString(),
            QCoreApplication::translate(
                "ErrorJudge", "The database is damaged: it tells of more rows than its file has room for."),
            error.type(), error.nativeErrorCode()};
    return Connections::isDatabaseThere(m_details) ? error : Connections::missingFile(m_details);
}
