#pragma once

#include "fileops/fileoperationprovider.h"

/** File operations of a local database. */
class SqliteFileOperationProvider : public FileOperationProvider
{
    Q_OBJECT

public:
    using FileOperationProvider::FileOperationProvider;

protected:
    FileOperationWorker *createWorker(const QString &connectionName) override;
};
