#pragma once

#include "core/providers/groupsprovider.h"

/** The tag groups of a server database: the new id comes with the insert itself. */
class PostgresGroupsProvider : public GroupsProvider
{
    Q_OBJECT

public:
    explicit PostgresGroupsProvider(const AbstractQueryConstructor *constructor, QObject *parent = nullptr);

    qint64 addGroup(const QString &name) override;
};
