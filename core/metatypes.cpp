#include "core/metatypes.h"

#include "app/dbspecifierlackingpassword.h"
#include "core/recordtypes.h"
#include "db/tabledata.h"
#include "fileops/deletedfilerepresentations.h"
#include "fileops/fileoperation.h"
#include "fileops/presentableduplicates.h"
#include "fileops/shellfile.h"
#include "models/manualnodessorter.h"

#include <QHash>
#include <QSqlError>

void registerMetaTypes()
{
    qRegisterMetaType<TableData>("TableData");
    qRegisterMetaType<QVector<qint64>>("QVector<qint64>");
    qRegisterMetaType<FileOperationType>("FileOperationType");
    qRegisterMetaType<PresentableDuplicates>("PresentableDuplicates");
    qRegisterMetaType<DeletedFileRepresentations>("DeletedFileRepresentations");

    qRegisterMetaTypeStreamOperators<DBDetails>("DBDetails");
    qRegisterMetaTypeStreamOperators<QQueue<DBDetails>>("QQueue<DBDetails>");
    qRegisterMetaTypeStreamOperators<ManualNodesSorter>("ManualNodesSorter");
    qRegisterMetaTypeStreamOperators<QList<int>>("QList<int>");
    qRegisterMetaTypeStreamOperators<QHash<QString, bool>>("QHash<QString,bool>");
    qRegisterMetaType<QList<ShellFile>>("QList<ShellFile>");
    qRegisterMetaTypeStreamOperators<DBSpecifierLackingPassword>("DBSpecifierLackingPassword");
    qRegisterMetaTypeStreamOperators<QQueue<DBSpecifierLackingPassword>>(
        "QQueue<DBSpecifierLackingPassword>");

    qRegisterMetaType<QSqlError>("QSqlError");
    qRegisterMetaType<QVector<QPair<qint64, QString>>>("QVector<QPair<qint64,QString> >");
    registerRecordTypes();
}
