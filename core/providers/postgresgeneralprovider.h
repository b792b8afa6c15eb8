#pragma once

#include "core/providers/generalprovider.h"

/** Adds to the questions about a database the one that its clients ask before each edit. GUI thread. */
class PostgresGeneralProvider : public GeneralProvider
{
    Q_OBJECT

public:
    explicit PostgresGeneralProvider(const AbstractQueryConstructor *constructor, QObject *parent = nullptr);

    /** The latest stamps, in UTC; invalid where the server has none. */
    struct Changes
    {
        QDateTime ofAll;
        QDateTime ofOthers;    ///< without those of this run of the program, where stamps tell whose they are
        bool areNamed = false; ///< false on a server that was set up without names in its stamps
    };
    /** The latest stamp, in UTC; invalid when the server has none. False when it could not be read. */
    bool lastChangeDate(QDateTime &date) override;
    /** False when they could not be read. */
    bool readLastChanges(Changes &changes);
};
