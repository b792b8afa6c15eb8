#pragma once

#include "db/sql/queryrunner.h"

/** The runner of the worker thread: its own connection is the worker's. */
class AsyncRunner : public QueryRunner
{
    Q_OBJECT

public:
    using QueryRunner::QueryRunner;

    void run(const QString &query) override;
    bool run(const QString &query, TableData &table, const QString &connectionName) override;
    bool runWithBlob(const QString &query, const QByteArray &blob, const QString &placeholder,
                     TableData &table, const QString &connectionName) override;
};
