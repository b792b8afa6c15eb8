#pragma once

#include "app/settings/dbdetails.h"

#include <QSqlError>

/** What a failed statement means for the user of one database. */
class ErrorJudge
{
public:
    explicit ErrorJudge(const DBDetails &details);

    /** Whether another connection was in the way: to a local file, or of a client of the same server. */
    bool isBusy(const QSqlError &error) const;
    /** Whether the server ended the statement because somebody had asked it to. */
    static bool isCanceled(const QSqlError &error);
    /** Whether it only follows from an error before it, as all statements of a failed transaction fail. */
    static bool isEcho(const QSqlError &error);
    /** What is worth telling: of a file that is gone the back-end says nothing, or something else. */
    QSqlError told(const QSqlError &error) const;

private:
    DBDetails m_details;
};
