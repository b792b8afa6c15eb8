#pragma once

#include "fileops/fileoperationworker.h"

/** The worker of a database on a server, where other clients write at the same time. */
class PostgresFileOperationWorker : public FileOperationWorker
{
    Q_OBJECT

public:
    using FileOperationWorker::FileOperationWorker;

    /** Puts the link into the tree that is shown. */
    bool insertBrowsingNodeLink(qint64 parentId, qint64 childId) override;
    /**
     * Emits aboutToCommit first: what others changed during a long operation would else pass for its own, as
     * the window takes the time of its latest change for the state that it knows.
     */
    bool commitTransaction(const QString &connectionName) override;
};
