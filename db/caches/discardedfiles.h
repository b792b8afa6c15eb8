#pragma once

#include "core/records/map.h"

#include <QList>

class File;

/**
 * Records that nobody uses any more. A million of them take most of a second to free, so a thread of its own
 * does that. Those that are left when the program ends go with its memory.
 */
namespace DiscardedFiles {
/** Takes them over. */
void add(const QList<File *> &files);
/** The same with all of a map, which is left empty. */
void add(Map<qint64, File *> &files);
/** Whether all of them are gone. */
bool isEmpty();
} // namespace DiscardedFiles
