#include "fileops/contents/databasefunctions.h"

#include "app/settings/constants.h"
#include "db/sql/drivertexts.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QMutex>
#include <QSqlDatabase>

namespace {
QSqlDatabase connectionOf(const QString &name)
{
    return name.isEmpty() ? QSqlDatabase::database(QLatin1String(QSqlDatabase::defaultConnection), false)
                          : QSqlDatabase::database(name, false);
}

QString withSingleQuotes(QString statement)
{
    if (statement.contains(QLatin1Char('"'))) {
        statement.replace(QLatin1Char('\''), QLatin1String("''"));
        statement.replace(QLatin1Char('"'), QLatin1Char('\''));
    }
    return statement;
}

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
    const QSqlDatabase database = connectionOf(connectionName);
    return {database.driverName() == Constants::sqliteDriver, database.databaseName()};
}

QSqlQuery Database::execQuery(const QString &connectionName, const QString &statement)
{
    QSqlQuery query(connectionOf(connectionName));
    query.exec(withSingleQuotes(statement));
    query.next();
    return query;
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

QString Database::relativePath(const QString &absolutePath, const PathLocator &locator)
{
    return baseFolder(locator).relativeFilePath(absolutePath);
}

QString Database::absolutePath(const QString &relativePath, const PathLocator &locator)
{
    return pathIn(baseFolder(locator).path(), relativePath);
}

QString Database::pathIn(const QString &folder, const QString &name)
{
    return folder.endsWith(QLatin1Char('/')) ? folder + name : folder + QLatin1Char('/') + name;
}

bool Database::isTaken(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

QString Database::uniqueFileName(const QString &name, const QDir &dir)
{
    int number = 1;
    return uniqueFileName(
        name, [&dir](const QString &tried) { return isTaken(pathIn(dir.path(), tried)); }, number);
}

QString Database::uniqueFileName(const QString &name, const std::function<bool(const QString &)> &isTaken,
                                 int &number)
{
    const int dot = name.indexOf(QLatin1Char('.'));
    const int end = dot < 0 ? name.size() : dot;
    QString tried = name;
    for (; isTaken(tried); ++number)
        tried = QString(name.leftRef(end) + QLatin1Char('_') + QString::number(number) + name.midRef(end));
    return tried;
}

QString Database::fittingFileName(const QString &name, int mostBytes)
{
    constexpr int lettersKept = 60; // of three bytes at most
    return QFile::encodeName(name).size() > mostBytes ? name.right(lettersKept) : name;
}

QString Database::numberableFileName(const QString &name)
{
    constexpr int roomForNumber = 15;
    return fittingFileName(name, mostNameBytes - roomForNumber);
}

QString Database::safeFileName(const QString &name)
{
    QString safe = name.mid(name.lastIndexOf(QLatin1Char('/')) + 1);
    safe.remove(QChar(QChar::Null));
    const bool isUsable = !safe.isEmpty() && safe != QLatin1String(".") && safe != QLatin1String("..");
    return isUsable ? fittingFileName(safe, mostNameBytes) : QStringLiteral("_");
}

QVector<qint64> Database::listResults(const QString &connectionName, const QString &statement)
{
    static QMutex mutex;
    QMutexLocker locker(&mutex);
    QSqlQuery query = execQuery(connectionName, statement);
    locker.unlock();

    QVector<qint64> results;
    if (!query.isValid()) {
        qDebug().noquote() << "Database::listResults() - ERROR :" << query.lastError().databaseText();
        qDebug().noquote() << "No results:" << statement;
        return results;
    }
    do {
        const QVariant value = query.value(0);
        if (!value.isValid()) {
            qDebug() << "Query value(0) is not valid.";
            break;
        }
        bool isNumber = false;
        const qint64 number = value.toLongLong(&isNumber);
        if (isNumber && !value.isNull())
            results.append(number);
        else if (!value.isNull())
            qDebug().noquote() << "Database::listResults: Error: result is not a long long int.\n"
                               << statement << "\n";
    } while (query.next());
    return results;
}
