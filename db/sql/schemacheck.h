#pragma once

class QSqlDatabase;

/**
 * A look at the making of a local database before it is used. A view or a virtual table may stand in for a
 * table and give rows without end, a trigger or an expression may run at what is read and written: the
 * program makes none of them, so a file that holds one was changed by somebody else.
 */
namespace SchemaCheck {
/** True when the database holds such parts. One that cannot be read is left to who reads on. */
bool holdsForeignParts(const QSqlDatabase &database);
} // namespace SchemaCheck
