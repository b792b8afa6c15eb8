#pragma once

#include "core/providers/generalprovider.h"

/** Adds to the questions about a database the one that its clients ask before each edit. GUI thread. */
class PostgresGeneralProvider : public GeneralProvider
{
    Q_OBJECT

public:
    explicit PostgresGeneralProvider(const AbstractQueryConstructor *constructor, QObject *parent = nullptr);

    /** The latest stamp, in UTC; invalid when the server has none. False when it could not be read. */
    bool lastChangeDate(QDateTime &date) override;
    /** The same, together with the latest stamp of other connections. */
    bool lastChangeDates(QDateTime &date, QDateTime &ofOthers);
};
