#pragma once

#include <QStringList>
#include <QVector>

/** How two tables are joined; SQLite knows fewer kinds and falls back on the plain one. */
enum JoinKind {
    PlainJoin = 0,
    InnerJoin = 1,
    LeftJoin = 2,
    LeftOuterJoin = 3,
    RightJoin = 4,
    SimpleJoin = 5, ///< the same as PlainJoin
    FullOuterJoin = 6,
    NaturalJoin = 7 ///< takes no ON: the condition becomes a WHERE
};

enum LogicalOperator { NoOperator = 0, AndOperator = 1, OrOperator = 2, NotOperator = 3 };

/**
 * Makes the text of statements in the dialect of one back-end. It touches no database and holds no state, so
 * any thread may use one instance. Values are escaped here; tables, columns and conditions are taken as
 * given. What both dialects write alike stands in this class.
 */
class AbstractQueryConstructor
{
public:
    AbstractQueryConstructor() = default;
    virtual ~AbstractQueryConstructor();
    AbstractQueryConstructor(const AbstractQueryConstructor &) = delete;
    AbstractQueryConstructor &operator=(const AbstractQueryConstructor &) = delete;

    virtual QString selectQuery(const QStringList &columns, const QString &from, bool distinct = false) const;
    virtual QString countQuery(const QString &column, const QString &from, bool distinct = false) const;
    /** One INSERT of all rows, without a statement end; no columns means the table's own order. */
    virtual QString insertQuery(const QStringList &columns, const QString &table,
                                const QVector<QStringList> &rows) const = 0;
    /** Without a condition; pairs columns and values up to the shorter list, empty when there is no pair. */
    virtual QString updateQuery(const QStringList &columns, const QString &table,
                                const QStringList &values) const = 0;
    virtual QString deleteQuery(const QString &table) const;
    virtual QString reservedQueryA(const QString &first, const QString &second) const;
    /** A clause to append to a table name; the whole is the `from` of selectQuery. */
    virtual QString joinQuery(JoinKind kind, const QString &table, const QString &condition) const = 0;
    /** Reads the key that the last insert made; empty on a server, where RETURNING does it. */
    virtual QString lastIdQuery(const QString &column) const = 0;
    virtual QString maxIdQuery(const QString &column, const QString &table) const = 0;
    /** Reads the key for a row that is written next. */
    virtual QString nextIdQuery(const QString &column, const QString &table) const = 0;
    virtual QString whereClause(const QString &condition) const;
    virtual QString logicalOperator(LogicalOperator op) const;
    virtual QString reservedQueryB(const QString &first, const QString &second) const;
    virtual QString inClause(const QString &column, const QStringList &values) const;
    virtual QString reservedQueryC(const QString &text) const;
    virtual QString groupByClause(const QStringList &columns) const;
    /** `columnDefinitions` describes the table as it is to be afterwards, for the back-end that rebuilds it.
     */
    virtual QStringList dropConstraintQueries(const QString &table, const QString &constraint,
                                              const QStringList &columnDefinitions) const = 0;
    virtual QStringList addConstraintQueries(const QString &table, const QString &constraint,
                                             const QString &definition,
                                             const QStringList &columnDefinitions) const = 0;
    /** Empty when the dialect cannot tell; the caller then rebuilds. */
    virtual QString constraintExistsQuery(const QString &table, const QString &constraint) const = 0;
    /** Empty when the dialect cannot tell; the caller then rebuilds. */
    virtual QString constraintDefinitionQuery(const QString &table, const QString &constraint) const = 0;
    virtual QString statementEnd() const;

protected:
    /** The INSERT of both dialects, which differ in the quote around column names. */
    static QString insertText(QChar quote, const QStringList &columns, const QString &table,
                              const QVector<QStringList> &rows);
    /** The UPDATE of both dialects, which differ in the quote around column names. */
    static QString updateText(QChar quote, const QStringList &columns, const QString &table,
                              const QStringList &values);
    static QString joinText(QLatin1String keyword, JoinKind kind, const QString &table,
                            const QString &condition);
};
