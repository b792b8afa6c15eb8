#pragma once

#include "fileops/provider/fileoperationprovider.h"

class ForeignWrites;

/** File operations of a local database. */
class SqliteFileOperationProvider : public FileOperationProvider
{
    Q_OBJECT

public:
    using FileOperationProvider::FileOperationProvider;

    /** Borrowed, for the worker; before the first request. */
    void setForeignWrites(ForeignWrites *foreignWrites) { m_foreignWrites = foreignWrites; }

protected:
    FileOperationWorker *createWorker(const QString &connectionName) override;

private:
    ForeignWrites *m_foreignWrites = nullptr;
};
