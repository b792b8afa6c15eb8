#pragma once

#include "fileops/adding/folderexpansion.h"
#include "fileops/operations/addoperation.h"

#include <optional>

class Transaction;

/**
 * Adds dropped files and folders: tags and browsing nodes come out of the names of folders, copies are taken
 * out, and the rest is linked to or stored. One transaction; a stop or cancel leaves nothing behind.
 */
class AddFilesOperation : private AddOperation
{
public:
    AddFilesOperation(FileOperationWorker &worker, const FileOperation &request);

    void run();

private:
    /** False when duplicate management failed, or a disk does not answer: then nothing more is to be told. */
    bool addFilesToDB();
    /** Nothing when what was dropped lies on a disk that does not answer, or nobody waits any more. */
    std::optional<FolderExpansion> expand();
    /** False when the tags cannot be made; then nothing is to be added. */
    bool makeTagsAndNodes(const FolderExpansion &expansion, FileBatchRequest &batch);
    /** True once all is in. */
    bool finish(Transaction &transaction, const QVector<qint64> &fileIds);

    QVector<qint64> m_newTags;
    QVector<qint64> m_newNodes;
};
