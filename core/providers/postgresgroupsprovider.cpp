#include "core/providers/postgresgroupsprovider.h"

#include "core/providers/singlevalue.h"
#include "db/sql/abstractqueryconstructor.h"

PostgresGroupsProvider::PostgresGroupsProvider(const AbstractQueryConstructor *constructor, QObject *parent)
    : GroupsProvider(constructor, parent)
{
}

qint64 PostgresGroupsProvider::addGroup(const QString &name)
{
    const QString statement =
        insertText(name) + QLatin1String(" RETURNING tag_group_id ") + constructor()->statementEnd();
    const qint64 id = SingleValue::read(*this, statement).toLongLong();
    if (id > 0) {
        expectGroups({id});
        announce([this, id] { loadGroups({id}); });
    }
    return id;
}
