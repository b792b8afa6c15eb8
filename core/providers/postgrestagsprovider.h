#pragma once

#include "core/providers/tagsprovider.h"

/** The tags of a server database: the new id comes with the insert itself. */
class PostgresTagsProvider : public TagsProvider
{
    Q_OBJECT

public:
    explicit PostgresTagsProvider(const AbstractQueryConstructor *constructor, QObject *parent = nullptr);

    qint64 addTag(const QString &name) override;
};
