#pragma once

#include "fileops/worker/postgresfileoperationworker.h"
#include "fileops/worker/sqlitefileoperationworker.h"
#include "tests/support/database.h"

/** A worker of a class of one's own, on the worker connection, which has to be open. */
template <typename Worker>
std::unique_ptr<FileOperationWorker> makeWorkerAs(const TestDatabase &database)
{
    return std::make_unique<Worker>(Constants::workerConnection, database.details(), database.constructor());
}

/** The worker that the program has for the back-end. */
inline std::unique_ptr<FileOperationWorker> makeWorker(const TestDatabase &database)
{
    if (database.details().type() == Constants::localDatabase)
        return makeWorkerAs<SqliteFileOperationWorker>(database);
    return makeWorkerAs<PostgresFileOperationWorker>(database);
}
