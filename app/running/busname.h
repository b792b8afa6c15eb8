#pragma once

#include <QString>

/** The words by which the runs of the program find each other on the session bus of their user. */
namespace BusName {

/**
 * The name that belongs to who has the database open: the same under every spelling of its path and by every
 * link to it, another one on another display of the same user. Empty where there is no such file.
 */
QString ofDatabase(const QString &path);

inline const QString objectPath = QStringLiteral("/com/tallowfen/vorna");
inline const QString interfaceName = QStringLiteral("com.tallowfen.vorna.Database");
inline const QString showMethod = QStringLiteral("showWindow");

} // namespace BusName
