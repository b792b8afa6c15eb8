#pragma once

#include "fileops/operations/addoperation.h"
#include "fileops/worker/autolinkoutcome.h"

#include <memory>

class ThumbnailsAhead;

/**
 * Takes in what a linked folder holds: new files become external ones with the tags of the node, whatever the
 * window says about adding; files that the database has by their path get the tags. Commits in batches that
 * are over in a moment, so that edits of the window come in between; what is committed stays.
 */
class AutoLinkOperation : private AddOperation
{
public:
    AutoLinkOperation(FileOperationWorker &worker, const FileOperation &request);

    void run();

private:
    /** False when duplicate management failed: then nothing more is to be told. */
    bool linkToFiles();
    bool addInBatches(const FileBatchRequest &all);
    /** Ready to be stored, so that the database is not locked for them. */
    std::shared_ptr<ThumbnailsAhead> readPictures(const QStringList &paths) const;
    bool linkTags(const QVector<qint64> &fileIds);
    QVector<qint64> matchedIds() const;
    void noteStandIns();
    void countDone(int files);

    AutoLinkOutcome m_outcome;
    QStringList m_unread;
    int m_done = 0;
    int m_total = 0;
};
