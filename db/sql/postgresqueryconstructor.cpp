#include "db/sql/postgresqueryconstructor.h"

#include "db/sql/sqltext.h"

QString PostgresQueryConstructor::insertQuery(const QStringList &columns, const QString &table,
                                              const QVector<QStringList> &rows) const
{
    return insertText(QLatin1Char('"'), columns, table, rows);
}

QString PostgresQueryConstructor::updateQuery(const QStringList &columns, const QString &table,
                                              const QStringList &values) const
{
    return updateText(QLatin1Char('"'), columns, table, values);
}

QString PostgresQueryConstructor::joinQuery(JoinKind kind, const QString &table,
                                            const QString &condition) const
{
    switch (kind) {
    case InnerJoin:
        return joinText(QLatin1String(" INNER JOIN "), kind, table, condition);
    case LeftJoin:
        return joinText(QLatin1String(" LEFT JOIN "), kind, table, condition);
    case LeftOuterJoin:
        return joinText(QLatin1String(" LEFT OUTER JOIN "), kind, table, condition);
    case RightJoin:
        return joinText(QLatin1String(" RIGHT JOIN "), kind, table, condition);
    case FullOuterJoin:
        return joinText(QLatin1String(" FULL OUTER JOIN "), kind, table, condition);
    case NaturalJoin:
        return joinText(QLatin1String(" NATURAL JOIN "), kind, table, condition);
    default:
        return joinText(QLatin1String(" JOIN "), kind, table, condition);
    }
}

QString PostgresQueryConstructor::lastIdQuery(const QString &) const
{
    return QString();
}

QString PostgresQueryConstructor::maxIdQuery(const QString &column, const QString &table) const
{
    return SqlText::fill(QStringLiteral(" SELECT coalesce(max(%1)+1, 1) FROM %2 "), {column, table});
}

QString PostgresQueryConstructor::nextIdQuery(const QString &column, const QString &table) const
{
    return SqlText::fill(QStringLiteral(" SELECT nextval('%1_%2_seq') "), {table, column});
}

QStringList PostgresQueryConstructor::dropConstraintQueries(const QString &table, const QString &constraint,
                                                            const QStringList &) const
{
    return {SqlText::fill(QStringLiteral("ALTER TABLE %1 DROP CONSTRAINT %2;"), {table, constraint})};
}

QStringList PostgresQueryConstructor::addConstraintQueries(const QString &table, const QString &constraint,
                                                           const QString &definition,
                                                           const QStringList &columnDefinitions) const
{
    return dropConstraintQueries(table, constraint, columnDefinitions) +
           QStringList{SqlText::fill(QStringLiteral("ALTER TABLE %1 ADD CONSTRAINT %2 %3;"),
                                     {table, constraint, definition})};
}

QString PostgresQueryConstructor::constraintExistsQuery(const QString &table, const QString &constraint) const
{
    return SqlText::fill(QStringLiteral("select * from information_schema.table_constraints "
                                        "where table_name='%1' and constraint_name='%2';"),
                         {SqlText::escaped(table), SqlText::escaped(constraint)});
}

QString PostgresQueryConstructor::constraintDefinitionQuery(const QString &table,
                                                            const QString &constraint) const
{
    // The column consrc went with PostgreSQL 12; pg_get_expr works on every version.
    return SqlText::fill(QStringLiteral("SELECT pg_get_expr(conbin, conrelid) FROM pg_constraint "
                                        "WHERE conrelid =  (SELECT oid FROM pg_class "
                                        "WHERE relname LIKE '%1' and conname='%2');"),
                         {SqlText::escaped(table), SqlText::escaped(constraint)});
}
