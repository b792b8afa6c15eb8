#pragma once

#include "fileops/operations/addoperation.h"

/** Adds hyperlinks: texts that name nothing on this computer. One transaction, as with files. */
class AddHyperlinksOperation : private AddOperation
{
public:
    AddHyperlinksOperation(FileOperationWorker &worker, const FileOperation &request);

    void run();

private:
    /** False when duplicate management failed: then nothing more is to be told. */
    bool addHyperlinksToDB();
    bool applyDetails(const QVector<qint64> &fileIds);

    bool m_isCommitted = false;
};
