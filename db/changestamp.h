#pragma once

#include "db/tabledata.h"

#include <QDateTime>

class AbstractQueryConstructor;

/** When any client of a server last wrote: asked on either connection. */
namespace ChangeStamp {
QString query(const AbstractQueryConstructor &constructor);
/** The stamp in what the query gave, in UTC; invalid when the server has none. */
QDateTime of(const TableData &table);
} // namespace ChangeStamp
