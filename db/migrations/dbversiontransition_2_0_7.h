#pragma once

#include <QSqlDatabase>

/**
 * Gives the paths of external files their form relative to the database, and stamps the program
 * version 2.0.7. A server database has no folder of its own: there it does nothing and says true.
 */
class DBVersionTransition_2_0_7
{
public:
    bool run(const QSqlDatabase &database);
};
