#pragma once

#include <QSqlDatabase>
#include <QStringList>

class AbstractQueryConstructor;

/**
 * Frees the kind of a file from its old check, lets storage ids start at 0 and stamps the schema 4.1.0, all
 * in one transaction. Borrows the query constructor of the database's dialect.
 */
class DBVersionTransition_4_1_0
{
public:
    explicit DBVersionTransition_4_1_0(const AbstractQueryConstructor *constructor);
    bool run(QSqlDatabase database);

private:
    bool stamp(const QSqlDatabase &database) const;
    bool changeConstraints(const QSqlDatabase &database) const;
    QStringList constraintStatements(const QSqlDatabase &database) const;

    const AbstractQueryConstructor *m_constructor;
};
