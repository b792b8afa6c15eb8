#pragma once

#include "fileops/operations/addoperation.h"

/** Adds the files that stay in spite of a name that is taken: as they stand, without tags or a check. */
class AddFileListOperation : private AddOperation
{
public:
    AddFileListOperation(FileOperationWorker &worker, const FileOperation &request);

    void run();

private:
    /** Whether any of them is in the database. */
    bool addFilesToDB();
    QVector<qint64> addBatch(const QStringList &paths, qint32 kind);

    QStringList m_unread;
};
