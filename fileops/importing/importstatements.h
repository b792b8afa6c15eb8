#pragma once

#include <QCoreApplication>
#include <QHash>
#include <QSqlQuery>
#include <QString>
#include <QVariant>

#include <functional>

/**
 * The statements of an import, on the worker's connection, to which the source is attached as `fileSource`.
 * Each stays prepared from its first use on. One that fails is logged and throws CriticalDMError. Worker's
 * thread; gone before the connection is.
 */
class ImportStatements
{
    Q_DECLARE_TR_FUNCTIONS(ImportStatements)

public:
    /** A row that was read; the columns are counted from 0. */
    class Row
    {
    public:
        explicit Row(const QSqlQuery &query) : m_query(query) {}

        QString text(int column) const;
        /** Of what is no number, 0. */
        qint64 number(int column) const;
        /** False for what is no number; NULL counts as 0. */
        bool readNumber(int column, qint64 &number) const;
        bool isNull(int column) const { return m_query.isNull(column); }

    private:
        const QSqlQuery &m_query;
    };
    using TakeRow = std::function<void(const Row &)>;

    explicit ImportStatements(const QString &connectionName) : m_connectionName(connectionName) {}

    /** The number of rows that it changed. */
    int run(const QString &statement, const QVariantList &values = {});
    /** Hands on each row as it is read. The statement must not run once more meanwhile. */
    void each(const QString &statement, const QVariantList &values, const TakeRow &take);
    void each(const QString &statement, const TakeRow &take) { each(statement, {}, take); }
    /** Of the first row, its first column; 0 without a row. */
    qint64 number(const QString &statement, const QVariantList &values = {});
    /** The next free key of a table: behind the highest, or 1. */
    qint64 nextId(const QString &table, const QString &column);
    /** Lets go of all that is prepared, so that a database can be detached. */
    void forget() { m_prepared.clear(); }

    /** SQL for a column of the source as a number: NULL counts as 0, and what is no number becomes NULL. */
    static QString asNumber(const QString &column);

private:
    QSqlQuery &execute(const QString &statement, const QVariantList &values);
    [[noreturn]] void fail(const QString &statement, const QSqlError &error);

    const QString m_connectionName;
    QHash<QString, QSqlQuery> m_prepared;
};
