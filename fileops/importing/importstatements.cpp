#include "fileops/importing/importstatements.h"

#include "db/sql/drivertexts.h"
#include "fileops/importing/criticaldmerror.h"

#include <QDebug>
#include <QSqlDatabase>

#include <limits>

QString ImportStatements::Row::text(int column) const
{
    return DriverTexts::read(m_query, column).toString();
}

qint64 ImportStatements::Row::number(int column) const
{
    qint64 number = 0;
    return readNumber(column, number) ? number : 0;
}

bool ImportStatements::Row::readNumber(int column, qint64 &number) const
{
    const QVariant value = m_query.value(column);
    // Bytes are none, whatever digits they look like.
    bool isNumber = value.type() != QVariant::ByteArray;
    number = value.isNull() || !isNumber ? 0 : value.toLongLong(&isNumber);
    return isNumber;
}

int ImportStatements::run(const QString &statement, const QVariantList &values)
{
    QSqlQuery &query = execute(statement, values);
    const int count = query.numRowsAffected();
    query.finish();
    return count;
}

void ImportStatements::each(const QString &statement, const QVariantList &values, const TakeRow &take)
{
    // A handle of its own: what takes the rows may prepare others. It is done with the rows also when the
    // taker throws.
    QSqlQuery query = execute(statement, values);
    struct Finish
    {
        ~Finish() { query.finish(); }
        QSqlQuery &query;
    };
    const Finish finish{query};
    while (query.next())
        take(Row(query));
    if (query.lastError().isValid())
        fail(statement, query.lastError());
}

qint64 ImportStatements::number(const QString &statement, const QVariantList &values)
{
    QSqlQuery &query = execute(statement, values);
    const bool hasRow = query.next();
    const QSqlError error = query.lastError();
    const qint64 number = hasRow ? Row(query).number(0) : 0;
    query.finish();
    if (error.isValid())
        fail(statement, error);
    return number;
}

qint64 ImportStatements::nextId(const QString &table, const QString &column)
{
    const qint64 highest =
        number(QStringLiteral("SELECT max(") + column + QStringLiteral(") FROM main.") + table);
    // Behind it there must be room for all that is to come.
    if (highest > std::numeric_limits<qint64>::max() / 2)
        fail(table, QSqlError(QString(), tr("There are no free ids in its table \"%1\".").arg(table)));
    return qMax(qint64(0), highest) + 1;
}

QString ImportStatements::asNumber(const QString &column)
{
    return QStringLiteral("CASE typeof(%1) WHEN 'integer' THEN %1 WHEN 'null' THEN 0 "
                          "WHEN 'real' THEN CAST(round(%1) AS INTEGER) "
                          "ELSE CASE WHEN CAST(CAST(%1 AS INTEGER) AS TEXT)=trim(CAST(%1 AS TEXT)) "
                          "THEN CAST(%1 AS INTEGER) END END")
        .replace(QLatin1String("%1"), column);
}

QSqlQuery &ImportStatements::execute(const QString &statement, const QVariantList &values)
{
    auto place = m_prepared.find(statement);
    if (place == m_prepared.end()) {
        QSqlQuery query(QSqlDatabase::database(m_connectionName, false));
        query.setForwardOnly(true);
        if (!query.prepare(statement))
            fail(statement, query.lastError());
        place = m_prepared.insert(statement, query);
    }
    for (int i = 0; i < values.size(); ++i)
        place->bindValue(i, DriverTexts::toBind(*place, values.at(i)));
    if (!place->exec()) {
        const QSqlError error = place->lastError();
        m_prepared.erase(place);
        fail(statement, error);
    }
    return *place;
}

void ImportStatements::fail(const QString &statement, const QSqlError &error)
{
    qDebug() << "Query failed:" << statement;
    qDebug() << "Error: " << error.text();
    throw CriticalDMError(error);
}
