#pragma once

#include <QByteArray>
#include <QDir>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <QVector>

#include <functional>

/**
 * Small helpers on a connection for code that is no worker. An empty connection name means the default one;
 * each call belongs to the thread of its connection.
 */
namespace Database {
/** Where relative paths start. */
struct PathLocator
{
    bool isLocal = false;
    QString databasePath; ///< the database file of a local database
};

/** The locator of an added connection. */
PathLocator pathLocator(const QString &connectionName);

/**
 * Runs a fixed text and stands on its first row, if there is one. Double quotes around literals become single
 * ones, so nothing that holds a value may come through here.
 */
QSqlQuery execQuery(const QString &connectionName, const QString &statement);

/** The path of an external file; empty when there is none. */
QString getAbsoluteFilePath(const QString &connectionName, qint64 fileId);
QString getRelativeFilePath(const QString &connectionName, qint64 fileId);

/** A path relative to the folder of the database file; on a server to the current folder. */
QString relativePath(const QString &absolutePath, const PathLocator &locator);
/** The reverse, by plain joining. */
QString absolutePath(const QString &relativePath, const PathLocator &locator);

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

/** The numbers in the first column of a result; nulls and other values are left out. */
QVector<qint64> listResults(const QString &connectionName, const QString &statement);
} // namespace Database
