#pragma once

#include <QSqlDatabase>

/** Adds the tables of watched folders and the stamp of the schema, which decides the version from here on. */
class DBVersionTransition_2_0_8
{
public:
    bool run(const QSqlDatabase &database);
};
