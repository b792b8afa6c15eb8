#include "db/sql/connectionqueries.h"

#include <QDebug>
#include <QMutex>
#include <QSqlDatabase>
#include <QSqlError>

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
} // namespace

QSqlQuery Database::execQuery(const QString &connectionName, const QString &statement)
{
    QSqlQuery query(connectionOf(connectionName));
    query.exec(withSingleQuotes(statement));
    query.next();
    return query;
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
