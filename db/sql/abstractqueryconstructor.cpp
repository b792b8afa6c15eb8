#include "db/sql/abstractqueryconstructor.h"

#include "db/sql/sqltext.h"

namespace {
QString distinctWord(bool distinct)
{
    return distinct ? QStringLiteral("DISTINCT") : QString();
}

QString joinedValues(const QStringList &values)
{
    QStringList escaped = values;
    escaped.replaceInStrings(QStringLiteral("'"), QStringLiteral("''"));
    return escaped.join(QLatin1String("', '"));
}
} // namespace

AbstractQueryConstructor::~AbstractQueryConstructor() = default;

QString AbstractQueryConstructor::selectQuery(const QStringList &columns, const QString &from,
                                              bool distinct) const
{
    return SqlText::fill(QStringLiteral("SELECT %1 %2 FROM %3"),
                         {distinctWord(distinct), columns.join(QLatin1Char(',')), from});
}

QString AbstractQueryConstructor::countQuery(const QString &column, const QString &from, bool distinct) const
{
    return SqlText::fill(QStringLiteral("SELECT %1 COUNT(%2) FROM %3"),
                         {distinctWord(distinct), column, from});
}

QString AbstractQueryConstructor::deleteQuery(const QString &table) const
{
    return SqlText::fill(QStringLiteral("DELETE FROM %1 "), {table});
}

QString AbstractQueryConstructor::reservedQueryA(const QString &, const QString &) const
{
    return QString();
}

QString AbstractQueryConstructor::whereClause(const QString &condition) const
{
    return QLatin1String(" WHERE ") + condition;
}

QString AbstractQueryConstructor::logicalOperator(LogicalOperator op) const
{
    switch (op) {
    case AndOperator:
        return QStringLiteral(" AND ");
    case OrOperator:
        return QStringLiteral(" OR ");
    case NotOperator:
        return QStringLiteral(" NOT ");
    default:
        return QString();
    }
}

QString AbstractQueryConstructor::reservedQueryB(const QString &, const QString &) const
{
    return QString();
}

QString AbstractQueryConstructor::inClause(const QString &column, const QStringList &values) const
{
    return SqlText::fill(QStringLiteral(" %1 IN ('%2')"), {column, joinedValues(values)});
}

QString AbstractQueryConstructor::reservedQueryC(const QString &) const
{
    return QString();
}

QString AbstractQueryConstructor::groupByClause(const QStringList &columns) const
{
    return QLatin1String(" GROUP BY ") + columns.join(QLatin1Char(','));
}

QString AbstractQueryConstructor::statementEnd() const
{
    return QStringLiteral(";");
}

QString AbstractQueryConstructor::insertText(QChar quote, const QStringList &columns, const QString &table,
                                             const QVector<QStringList> &rows)
{
    QString text = QLatin1String("INSERT INTO ") + table;
    if (!columns.isEmpty()) {
        const QString separator = quote + QLatin1Char(',') + quote;
        text += QLatin1String(" (") + quote + columns.join(separator) + quote + QLatin1Char(')');
    }
    text += QLatin1String(" VALUES ");
    for (const QStringList &row : rows)
        text += QLatin1String("('") + joinedValues(row) + QLatin1String("'),");
    if (!rows.isEmpty())
        text.chop(1);
    return text;
}

QString AbstractQueryConstructor::updateText(QChar quote, const QStringList &columns, const QString &table,
                                             const QStringList &values)
{
    const int count = qMin(columns.size(), values.size());
    if (count < 1)
        return QString();
    QString text = QLatin1String("UPDATE ") + table + QLatin1String(" SET ");
    for (int i = 0; i < count; ++i) {
        text += quote + columns.at(i) + quote + QLatin1String(" = ") + SqlText::quoted(values.at(i)) +
                QLatin1Char(',');
    }
    text.chop(1);
    return text;
}

QString AbstractQueryConstructor::joinText(QLatin1String keyword, JoinKind kind, const QString &table,
                                           const QString &condition)
{
    const QLatin1String link(kind == NaturalJoin ? " WHERE " : " ON ");
    return QLatin1Char(' ') + keyword + table + link + condition;
}
