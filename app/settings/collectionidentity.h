#pragma once

#include "app/settings/dbdetails.h"

#include <QString>

/** The texts by which the settings tell one database from another. */
namespace CollectionIdentity {
/** The path in single quotes, or "host:port, name", or "No database specified". */
QString description(const DBDetails &details);

/** The same without quotes around a path: what menus and the window's title show; empty for no database. */
QString displayText(const DBDetails &details);

/** Host name, "_", database name. */
QString shortName(const DBDetails &details);
} // namespace CollectionIdentity
