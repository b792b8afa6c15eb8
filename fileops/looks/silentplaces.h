#pragma once

#include <QByteArray>

#include <memory>

/**
 * Where looks were left behind that have not come back since: disks that do not answer, and folders where the
 * disk cannot be told. Looking there again would cost one more thread that never ends. Any thread.
 */
namespace SilentPlaces {
/** A place is one as long as somebody holds what this gives. */
using Token = std::shared_ptr<const QByteArray>;

/** Notes where a file is that a look was left behind at. */
Token note(const QByteArray &path);
bool contain(const QByteArray &path);
/** Whether contain() is false for all paths. */
bool areNone();
/** The place where the disk is mounted that has a path, going by the text of the path; "/" in doubt. */
QByteArray mountOf(const QByteArray &path);
/** Whether one of the mounted disks, each of which is looked at for a moment, does not answer. */
bool isAnyDiskSilent();
} // namespace SilentPlaces
