#pragma once

class QString;

/**
 * Gives files on the disk other names, in one step each: at no moment is there none, or half of one. Paths
 * are absolute. After a failure errno tells why. Any thread.
 */
namespace FileMoves {
/** Takes the place of a file that has the new name, be it a link, which is not followed. */
bool moveOver(const QString &from, const QString &to);
/** Takes nobody's place, not even that of what came a moment ago. */
bool moveUnlessTaken(const QString &from, const QString &to);

// The same for disks that do not know such a move: by a second name, which is not given where one stands; and
// for those that know no second names, by way of an empty file that holds the place.
bool linkUnlessTaken(const QString &from, const QString &to);
bool reserveUnlessTaken(const QString &from, const QString &to);
} // namespace FileMoves
