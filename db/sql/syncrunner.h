#pragma once

#include "db/sql/queryrunner.h"

/** The runner of the main thread: its own connection is the default one. */
class SyncRunner : public QueryRunner
{
    Q_OBJECT

public:
    using QueryRunner::QueryRunner;

    void run(const QString &query) override;
    bool run(const QString &query, TableData &table, const QString &connectionName) override;
    bool runWithBlob(const QString &query, const QByteArray &blob, const QString &placeholder,
                     TableData &table, const QString &connectionName) override;
};
