#pragma once

#include "app/settings/dbdetails.h"

#include <QStringList>

/** Looks into a database that is not open, on a connection of its own that never makes a file. */
class ClosedDatabase
{
public:
    explicit ClosedDatabase(const DBDetails &details) : m_details(details) {}

    /** The names of all tags; empty when it cannot be read. */
    QStringList tagNames() const;

private:
    DBDetails m_details;
};
