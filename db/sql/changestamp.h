#pragma once

#include "db/sql/tabledata.h"

#include <QDateTime>

class AbstractQueryConstructor;

/** When any client of a server last wrote: asked on either connection. */
namespace ChangeStamp {
QString query(const AbstractQueryConstructor &constructor);
/** The stamp in a column of what a query gave, in UTC; invalid when the server has none. */
QDateTime of(const TableData &table, int column = 0);
} // namespace ChangeStamp
