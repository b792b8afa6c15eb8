#pragma once

#include <QStringList>

/**
 * The path of a group of equal files that is worth keeping: the one whose name looks least like that of a
 * copy and tells most. The first of equals wins; empty for an empty group.
 */
QString chooseFileToKeep(const QStringList &group);
