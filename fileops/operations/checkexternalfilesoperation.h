#pragma once

#include "fileops/tracking/modifiedfile.h"
#include "fileops/worker/deletedfilerepresentations.h"
#include "fileops/worker/fileoperation.h"

#include <functional>

class FileOperationWorker;

/**
 * Looks at external files in the background: which are missing, which have changed. The records of those are
 * refreshed; one whose file has become a copy of another file in the database goes, and the other one
 * inherits its tags. Nobody has asked for it, so it waits for no lock, keeps nobody waiting, and what fails
 * stands in the log: the next check tries again.
 */
class CheckExternalFilesOperation
{
public:
    CheckExternalFilesOperation(FileOperationWorker &worker, const FileOperation &request);

    void run();

private:
    void lookAtFiles();
    void treatModified();
    /** False when it makes no sense to go on. */
    bool treat(ModifiedFileList &files);
    bool removeCopies(ModifiedFileList &files, DeletedFileRepresentations &removed, QVector<qint64> &heirs);
    void rememberContents(const ModifiedFileList &files, const QVector<qint64> &refreshed);
    bool mayGoOn() const;
    /** Runs a step again for some moments while another connection holds the database. */
    void outwaitLock(const std::function<void()> &step);
    void forgetErrors();

    FileOperationWorker &m_worker;
    FileOperation m_rest;
};
