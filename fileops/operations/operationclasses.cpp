#include "fileops/operations/operationclasses.h"

#include "fileops/operations/addfilelistoperation.h"
#include "fileops/operations/addfilesoperation.h"
#include "fileops/operations/addhyperlinksoperation.h"
#include "fileops/operations/autolinkoperation.h"
#include "fileops/operations/changetagsoperation.h"
#include "fileops/operations/checkexternalfilesoperation.h"
#include "fileops/operations/deletefilesoperation.h"
#include "fileops/operations/exportoperation.h"
#include "fileops/operations/extractfilesoperation.h"
#include "fileops/operations/extracttotemporaryoperation.h"
#include "fileops/operations/importoperation.h"
#include "fileops/operations/loadthumbnailsoperation.h"
#include "fileops/operations/locatefilesoperation.h"
#include "fileops/operations/remakethumbnailsoperation.h"
#include "fileops/operations/replayoperation.h"
#include "fileops/operations/transferfilesoperation.h"
#include "fileops/worker/fileoperationworker.h"

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
    case FileOperationType::AutoLinkFilesOperation:
        AutoLinkOperation(worker, operation).run();
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
    case FileOperationType::CheckExternalFilesOperation:
        CheckExternalFilesOperation(worker, operation).run();
        break;
    case FileOperationType::ExtractFilesOperation:
        runAnnounced<ExtractFilesOperation>(worker, operation,
                                            FileOperationWorker::tr("Extracting files..."));
        break;
    case FileOperationType::ExtractToTemporaryOperation:
        runAnnounced<ExtractToTemporaryOperation>(worker, operation,
                                                  FileOperationWorker::tr("Extracting to temporary file..."));
        break;
    case FileOperationType::ExportOperation:
        runAnnounced<ExportOperation>(worker, operation, FileOperationWorker::tr("Exporting..."));
        break;
    case FileOperationType::ImportOperation:
        runAnnounced<ImportOperation>(worker, operation, FileOperationWorker::tr("Importing..."));
        break;
    case FileOperationType::RemakeThumbnailsOperation:
        runAnnounced<RemakeThumbnailsOperation>(worker, operation, QString());
        break;
    case FileOperationType::LocateFilesOperation:
        if (!operation.fileIds.isEmpty())
            runAnnounced<LocateFilesOperation>(worker, operation,
                                               FileOperationWorker::tr("Linking to files..."));
        break;
    case FileOperationType::ChangeTagsOperation:
        runAnnounced<ChangeTagsOperation>(worker, operation,
                                          FileOperationWorker::tr("Changing the tags of files..."));
        break;
    case FileOperationType::ReplayOperation:
        runAnnounced<ReplayOperation>(worker, operation,
                                      operation.mergeTarget > 0
                                          ? FileOperationWorker::tr("Merging tags...")
                                          : FileOperationWorker::tr("Changing the tags of files..."));
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
