#pragma once

#include <QString>
#include <QVector>

class QuietStatements;

/**
 * A temporary table of ids on the worker's connection, looked up by its key. It has the columns place, which
 * counts the ids from 1 in their order, and id.
 */
class IdTable
{
public:
    /** The name as statements have it, "mem_..."; what had it before is dropped. */
    IdTable(QuietStatements &statements, const QString &name) : m_statements(statements), m_name(name) {}

    bool create();
    /** Ids that it has already stay where they are. */
    bool add(const QVector<qint64> &ids);
    bool drop();
    const QString &name() const { return m_name; }

private:
    QuietStatements &m_statements;
    const QString m_name;
};
