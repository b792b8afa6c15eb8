#include "fileops/worker/fileoperationtypes.h"

#include "core/tagging/tagchange.h"
#include "db/sql/tabledata.h"
#include "fileops/files/shellfile.h"
#include "fileops/worker/additionoutcome.h"
#include "fileops/worker/autolinkoutcome.h"
#include "fileops/worker/deletedfilerepresentations.h"
#include "fileops/worker/fileoperation.h"
#include "fileops/worker/operationshortfall.h"
#include "fileops/worker/presentableduplicates.h"
#include "fileops/worker/replayoutcome.h"

#include <QImage>
#include <QSqlError>

void registerFileOperationTypes()
{
    qRegisterMetaType<TableData>("TableData");
    qRegisterMetaType<QVector<qint64>>("QVector<qint64>");
    qRegisterMetaType<QVector<QPair<qint64, QString>>>("QVector<QPair<qint64,QString>>");
    qRegisterMetaType<QSqlError>("QSqlError");
    qRegisterMetaType<QImage *>("QImage*");
    qRegisterMetaType<TagChanges>("TagChanges");
    qRegisterMetaType<FileOperationType>("FileOperationType");
    qRegisterMetaType<PresentableDuplicates>("PresentableDuplicates");
    qRegisterMetaType<AutoLinkOutcome>("AutoLinkOutcome");
    qRegisterMetaType<DeletedFileRepresentations>("DeletedFileRepresentations");
    qRegisterMetaType<AdditionOutcome>("AdditionOutcome");
    qRegisterMetaType<ReplayOutcome>("ReplayOutcome");
    qRegisterMetaType<OperationShortfall>("OperationShortfall");
    qRegisterMetaType<QList<ShellFile>>("QList<ShellFile>");
}
