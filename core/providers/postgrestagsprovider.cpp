#include "core/providers/postgrestagsprovider.h"

#include "core/providers/singlevalue.h"
#include "db/sql/abstractqueryconstructor.h"

PostgresTagsProvider::PostgresTagsProvider(const AbstractQueryConstructor *constructor, QObject *parent)
    : TagsProvider(constructor, parent)
{
}

qint64 PostgresTagsProvider::addTag(const QString &name)
{
    const QString statement =
        insertText(name) + QLatin1String(" RETURNING tag_id ") + constructor()->statementEnd();
    const qint64 id = SingleValue::read(*this, statement).toLongLong();
    if (id > 0) {
        expectTags({id});
        announce([this, id] { loadTags({id}); });
    }
    return id;
}
