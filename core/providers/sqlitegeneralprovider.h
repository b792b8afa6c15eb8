#pragma once

#include "core/providers/generalprovider.h"

/** The local variant, which can make a new database. */
class SqliteGeneralProvider : public GeneralProvider
{
    Q_OBJECT

public:
    explicit SqliteGeneralProvider(const AbstractQueryConstructor *constructor, QObject *parent = nullptr);

    bool runStatements(const QStringList &statements, const QString &connectionName) override;
};
