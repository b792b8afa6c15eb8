#pragma once

#include "fileops/provider/fileoperationprovider.h"

/** File operations of a database on a server. */
class PostgresFileOperationProvider : public FileOperationProvider
{
    Q_OBJECT

public:
    using FileOperationProvider::FileOperationProvider;

protected:
    FileOperationWorker *createWorker(const QString &connectionName) override;
};
