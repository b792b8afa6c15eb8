#pragma once

#include <QString>

/**
 * Where external files lie, for code that is no worker. An empty connection name means the default one; each
 * call belongs to the thread of its connection.
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

/** A path relative to the folder of the database file; on a server to the current folder. */
QString relativePath(const QString &absolutePath, const PathLocator &locator);
/** The same for many files: the way to a folder is found once for those that follow each other. */
class RelativePaths
{
public:
    explicit RelativePaths(const PathLocator &locator) : m_locator(locator) {}

    QString of(const QString &absolutePath);

private:
    PathLocator m_locator;
    QString m_lastFolder;
    QString m_lastRelativeFolder;
};
/** The reverse, by plain joining. */
QString absolutePath(const QString &relativePath, const PathLocator &locator);

/** The path of an external file; empty when there is none. */
QString getAbsoluteFilePath(const QString &connectionName, qint64 fileId);
QString getRelativeFilePath(const QString &connectionName, qint64 fileId);
} // namespace Database
