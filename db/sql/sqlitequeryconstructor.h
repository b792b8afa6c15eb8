#pragma once

#include "db/sql/abstractqueryconstructor.h"

/** The dialect of local databases. */
class SqliteQueryConstructor : public AbstractQueryConstructor
{
public:
    QString insertQuery(const QStringList &columns, const QString &table,
                        const QVector<QStringList> &rows) const override;
    QString updateQuery(const QStringList &columns, const QString &table,
                        const QStringList &values) const override;
    QString joinQuery(JoinKind kind, const QString &table, const QString &condition) const override;
    QString lastIdQuery(const QString &column) const override;
    QString maxIdQuery(const QString &column, const QString &table) const override;
    QString nextIdQuery(const QString &column, const QString &table) const override;
    QStringList dropConstraintQueries(const QString &table, const QString &constraint,
                                      const QStringList &columnDefinitions) const override;
    QStringList addConstraintQueries(const QString &table, const QString &constraint,
                                     const QString &definition,
                                     const QStringList &columnDefinitions) const override;
    QString constraintExistsQuery(const QString &table, const QString &constraint) const override;
    QString constraintDefinitionQuery(const QString &table, const QString &constraint) const override;
};
