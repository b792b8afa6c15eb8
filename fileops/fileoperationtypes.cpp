#include "fileops/fileoperationtypes.h"

#include "db/tabledata.h"
#include "fileops/deletedfilerepresentations.h"
#include "fileops/fileoperation.h"
#include "fileops/operationshortfall.h"
#include "fileops/presentableduplicates.h"
#include "fileops/shellfile.h"

#include <QImage>
#include <QSqlError>

void registerFileOperationTypes()
{
    qRegisterMetaType<TableData>("TableData");
    qRegisterMetaType<QVector<qint64>>("QVector<qint64>");
    qRegisterMetaType<QVector<QPair<qint64, QString>>>("QVector<QPair<qint64,QString>>");
    qRegisterMetaType<QSqlError>("QSqlError");
    qRegisterMetaType<QImage *>("QImage*");
    qRegisterMetaType<FileOperationType>("FileOperationType");
    qRegisterMetaType<PresentableDuplicates>("PresentableDuplicates");
    qRegisterMetaType<DeletedFileRepresentations>("DeletedFileRepresentations");
    qRegisterMetaType<OperationShortfall>("OperationShortfall");
    qRegisterMetaType<QList<ShellFile>>("QList<ShellFile>");
}
