#pragma once

#include "core/records/map.h"

#include <QList>
#include <QSet>

class File;

/**
 * Records that nobody uses any more. A million of them take most of a second to free, so a thread of its own
 * does that. Those that are left when the program ends go with its memory.
 */
namespace DiscardedFiles {
/** Takes them over. */
void add(const QList<File *> &files);
/** The same with all of a map, and with what was noted of them; both are left empty. */
void add(Map<qint64, File *> &files, QSet<qint64> &ids);
/** Whether all of them are gone. */
bool isEmpty();
} // namespace DiscardedFiles
