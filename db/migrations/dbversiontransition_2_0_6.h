#pragma once

#include <QSqlDatabase>

/** Adds the tables of saved selections, and stamps the program version 2.0.6. */
class DBVersionTransition_2_0_6
{
public:
    bool run(const QSqlDatabase &database);
};
