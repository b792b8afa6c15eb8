#include "fileops/contents/externalpaths.h"

#include "app/settings/constants.h"
#include "db/sql/connectionqueries.h"
#include "db/sql/drivertexts.h"
#include "fileops/files/filenames.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>

namespace {
QDir baseFolder(const Database::PathLocator &locator)
{
    if (locator.isLocal)
        return QFileInfo(locator.databasePath).absoluteDir();
    return QDir(QFileInfo(QStringLiteral(".")).absoluteFilePath());
}

QSqlQuery pathQuery(const QString &connectionName, const QString &column, qint64 fileId)
{
    return Database::execQuery(connectionName,
                               QStringLiteral("SELECT %1 FROM file_paths, files WHERE file_id=%2 "
                                              "AND path_id=storage_id AND internal=0;")
                                   .arg(column, QString::number(fileId)));
}
} // namespace

Database::PathLocator Database::pathLocator(const QString &connectionName)
{
    const QSqlDatabase database = QSqlDatabase::database(
        connectionName.isEmpty() ? QString(QLatin1String(QSqlDatabase::defaultConnection)) : connectionName,
        false);
    return {database.driverName() == Constants::sqliteDriver, database.databaseName()};
}

QString Database::relativePath(const QString &absolutePath, const PathLocator &locator)
{
    return baseFolder(locator).relativeFilePath(absolutePath);
}

QString Database::RelativePaths::of(const QString &absolutePath)
{
    const int nameAt = absolutePath.lastIndexOf(QLatin1Char('/')) + 1;
    const QStringRef folder = absolutePath.leftRef(nameAt);
    if (m_lastFolder.isEmpty() || folder != m_lastFolder) {
        m_lastFolder = folder.toString();
        const QString relative = relativePath(absolutePath, m_locator);
        m_lastRelativeFolder = relative.left(relative.size() - (absolutePath.size() - nameAt));
    }
    return m_lastRelativeFolder + absolutePath.midRef(nameAt);
}

QString Database::absolutePath(const QString &relativePath, const PathLocator &locator)
{
    return pathIn(baseFolder(locator).path(), relativePath);
}

QString Database::getAbsoluteFilePath(const QString &connectionName, qint64 fileId)
{
    const QSqlQuery query = pathQuery(connectionName, QStringLiteral("path"), fileId);
    if (query.lastError().isValid()) {
        qDebug() << "Invalid query in Database::getAbsoluteFilePath(id)";
        return QString();
    }
    return query.isValid() ? DriverTexts::read(query, 0).toString() : QString();
}

QString Database::getRelativeFilePath(const QString &connectionName, qint64 fileId)
{
    const QSqlQuery query = pathQuery(connectionName, QStringLiteral("rel_path"), fileId);
    return query.isValid() ? DriverTexts::read(query, 0).toString() : QString();
}
