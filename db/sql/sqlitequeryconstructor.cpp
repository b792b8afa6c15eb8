#include "db/sql/sqlitequeryconstructor.h"

#include "db/sql/sqltext.h"

QString SqliteQueryConstructor::insertQuery(const QStringList &columns, const QString &table,
                                            const QVector<QStringList> &rows) const
{
    return insertText(QLatin1Char('\''), columns, table, rows);
}

QString SqliteQueryConstructor::updateQuery(const QStringList &columns, const QString &table,
                                            const QStringList &values) const
{
    return updateText(QLatin1Char('\''), columns, table, values);
}

QString SqliteQueryConstructor::joinQuery(JoinKind kind, const QString &table, const QString &condition) const
{
    // Right and full joins came to SQLite later than the versions that must open these files.
    switch (kind) {
    case InnerJoin:
        return joinText(QLatin1String(" INNER JOIN "), kind, table, condition);
    case LeftJoin:
        return joinText(QLatin1String(" LEFT JOIN "), kind, table, condition);
    case LeftOuterJoin:
        return joinText(QLatin1String(" LEFT OUTER JOIN "), kind, table, condition);
    case NaturalJoin:
        return joinText(QLatin1String(" NATURAL JOIN "), kind, table, condition);
    default:
        return joinText(QLatin1String(" JOIN "), kind, table, condition);
    }
}

QString SqliteQueryConstructor::lastIdQuery(const QString &column) const
{
    return SqlText::fill(QStringLiteral("select last_insert_rowid() as %1;"), {column});
}

QString SqliteQueryConstructor::maxIdQuery(const QString &column, const QString &table) const
{
    return SqlText::fill(QStringLiteral(" SELECT IFNULL(max(%1)+1, 1) FROM %2 "), {column, table});
}

QString SqliteQueryConstructor::nextIdQuery(const QString &column, const QString &table) const
{
    return maxIdQuery(column, table);
}

QStringList SqliteQueryConstructor::dropConstraintQueries(const QString &table, const QString &,
                                                          const QStringList &columnDefinitions) const
{
    return {SqlText::fill(QStringLiteral("CREATE TABLE %1new (%2);"),
                          {table, columnDefinitions.join(QLatin1String(", "))}),
            SqlText::fill(QStringLiteral("INSERT INTO %1new SELECT * FROM %1;"), {table}),
            SqlText::fill(QStringLiteral("DROP TABLE %1;"), {table}),
            SqlText::fill(QStringLiteral("ALTER TABLE %1new RENAME TO %1;"), {table})};
}

QStringList SqliteQueryConstructor::addConstraintQueries(const QString &table, const QString &constraint,
                                                         const QString &,
                                                         const QStringList &columnDefinitions) const
{
    return dropConstraintQueries(table, constraint, columnDefinitions);
}

QString SqliteQueryConstructor::constraintExistsQuery(const QString &, const QString &) const
{
    return QString();
}

QString SqliteQueryConstructor::constraintDefinitionQuery(const QString &, const QString &) const
{
    return QString();
}
