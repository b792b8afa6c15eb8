#pragma once

#include <QDir>
#include <QString>

#include <functional>

/** Names of files on the disk: joined to folders, made unlike those that are there, and fit to be written. */
namespace Database {
/**
 * The path of a name in a folder, joined by hand: Qt takes a name that begins with a colon for one of its own
 * resources, and leaves the folder away.
 */
QString pathIn(const QString &folder, const QString &name);
/** The bytes that a file name has at most. */
constexpr int mostNameBytes = 255;
/** Whether something has this path, if only a link that leads nowhere. */
bool isTaken(const QString &path);
/** A name that nothing in the folder has: the given one, or that with "_1", "_2" ... before its first dot. */
QString uniqueFileName(const QString &name, const QDir &dir);
/** The same by a test of one's own. `number` is where counting starts, and then what was counted to. */
QString uniqueFileName(const QString &name, const std::function<bool(const QString &)> &isTaken, int &number);
/** The name, or its end, where its type stands, when it has more bytes than may be. */
QString fittingFileName(const QString &name, int mostBytes);
/** The same, so that a number has room. */
QString numberableFileName(const QString &name);
/**
 * A name out of a database that may be joined to a folder: its last component, never one that leads away, nor
 * one too long for a disk.
 */
QString safeFileName(const QString &name);
} // namespace Database
