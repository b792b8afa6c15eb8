#pragma once

#include <QString>

/** What a start does about a file that another run of the program has open. */
namespace SecondStart {

/**
 * Hands a start over to the run of the same user that has the database open on the same display: its window
 * comes forward, and is given the shell to import, if any. False when there is none, or when it does not
 * answer within some seconds: then the file is opened here as well, which does it no harm.
 */
bool isHandedOver(const QString &databasePath, const QString &shellPath = {});

} // namespace SecondStart
