#pragma once

#include <QSqlDatabase>

/** Stamps the schema 3.2.0; the tables stay as they are. */
class DBVersionTransition_3_2_0
{
public:
    bool run(const QSqlDatabase &database);
};
