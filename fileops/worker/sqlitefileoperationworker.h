#pragma once

#include "fileops/worker/fileoperationworker.h"
#include "fileops/worker/workerwrites.h"

#include <memory>

class ForeignWrites;

/** The worker of a local database, whose only writer it is while it holds a transaction. */
class SqliteFileOperationWorker : public FileOperationWorker
{
    Q_OBJECT

public:
    using FileOperationWorker::FileOperationWorker;

    /** For a worker beside a window, which outlives it; before its first operation. */
    void setForeignWrites(ForeignWrites *foreignWrites);

    /** Within a transaction the highest key is read once and counted on from there. */
    bool nextId(const QString &table, const QString &column, qint64 &id) override;

    /**
     * Takes the write lock at once, so that no edit of the window comes between reading and writing. False
     * also when another program has written since the window read its records.
     */
    bool beginTransaction(const QString &connectionName) override;
    bool commitTransaction(const QString &connectionName) override;
    bool rollbackTransaction(const QString &connectionName) override;

    void setPatient(bool isPatient) override;

protected:
    QString connectOptions() const override;
    void prepareConnection() override;

private:
    bool takeWriteLock();

    std::unique_ptr<WorkerWrites> m_writes;
    bool m_isInTransaction = false;
    bool m_hasLargeCache = false;
    QHash<QString, qint64> m_lastIds;
};
