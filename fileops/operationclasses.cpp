#include "fileops/operationclasses.h"

#include "fileops/addfilelistoperation.h"
#include "fileops/addfilesoperation.h"
#include "fileops/addhyperlinksoperation.h"
#include "fileops/deletefilesoperation.h"
#include "fileops/extractfilesoperation.h"
#include "fileops/extracttotemporaryoperation.h"
#include "fileops/fileoperationworker.h"
#include "fileops/loadthumbnailsoperation.h"
#include "fileops/remakethumbnailsoperation.h"
#include "fileops/transferfilesoperation.h"

namespace {

template <class Operation>
void runAnnounced(FileOperationWorker &worker, const FileOperation &operation, const QString &label)
{
    emit worker.startedOpration(operation.type, label);
    Operation(worker, operation).run();
    emit worker.finishedOpration(operation.type);
}

} // namespace

void runOperationClass(FileOperationWorker &worker, const FileOperation &operation)
{
    switch (operation.type) {
    case FileOperationType::AddFilesOperation:
        AddFilesOperation(worker, operation).run();
        break;
    case FileOperationType::AddHyperlinksOperation:
        AddHyperlinksOperation(worker, operation).run();
        break;
    case FileOperationType::AddFileListOperation:
        AddFileListOperation(worker, operation).run();
        break;
    case FileOperationType::DeleteFilesOperation:
        if (!operation.fileIds.isEmpty())
            runAnnounced<DeleteFilesOperation>(worker, operation,
                                               FileOperationWorker::tr("Deleting files..."));
        break;
    case FileOperationType::LoadThumbnailsOperation:
        LoadThumbnailsOperation(worker, operation).run();
        break;
    case FileOperationType::ExtractFilesOperation:
        runAnnounced<ExtractFilesOperation>(worker, operation,
                                            FileOperationWorker::tr("Extracting files..."));
        break;
    case FileOperationType::ExtractToTemporaryOperation:
        runAnnounced<ExtractToTemporaryOperation>(worker, operation,
                                                  FileOperationWorker::tr("Extracting to temporary file..."));
        break;
    case FileOperationType::RemakeThumbnailsOperation:
        runAnnounced<RemakeThumbnailsOperation>(worker, operation, QString());
        break;
    case FileOperationType::TransferFilesOperation:
        if (!operation.fileIds.isEmpty())
            runAnnounced<TransferFilesOperation>(
                worker, operation, FileOperationWorker::tr("Transferring files into database..."));
        break;
    default:
        break;
    }
}
