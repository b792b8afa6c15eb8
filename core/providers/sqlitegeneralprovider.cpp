#include "core/providers/sqlitegeneralprovider.h"

SqliteGeneralProvider::SqliteGeneralProvider(const AbstractQueryConstructor *constructor, QObject *parent)
    : GeneralProvider(constructor, parent)
{
}

bool SqliteGeneralProvider::runStatements(const QStringList &statements, const QString &connectionName)
{
    for (const QString &statement : statements) {
        if (!runSync(statement, connectionName))
            return false;
    }
    return true;
}
