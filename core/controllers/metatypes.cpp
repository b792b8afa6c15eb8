#include "core/controllers/metatypes.h"

#include "app/settings/dbspecifierlackingpassword.h"
#include "app/settings/liststream.h"
#include "core/records/recordtypes.h"
#include "db/sql/tabledata.h"
#include "fileops/files/shellfile.h"
#include "fileops/worker/deletedfilerepresentations.h"
#include "fileops/worker/fileoperation.h"
#include "fileops/worker/presentableduplicates.h"
#include "models/trees/manualnodessorter.h"

#include <QHash>
#include <QSqlError>

namespace {

template <class List>
void registerListStream(const char *name)
{
    qRegisterMetaTypeStreamOperators<List>(name);
    // The later registration holds: the toolkit's own reading would make room for any count that the store
    // tells.
    QMetaType::registerStreamOperators(
        name, [](QDataStream &stream, const void *list) { stream << *static_cast<const List *>(list); },
        [](QDataStream &stream, void *list) { readList(stream, *static_cast<List *>(list)); });
}

} // namespace

void registerMetaTypes()
{
    qRegisterMetaType<TableData>("TableData");
    qRegisterMetaType<QVector<qint64>>("QVector<qint64>");
    qRegisterMetaType<FileOperationType>("FileOperationType");
    qRegisterMetaType<PresentableDuplicates>("PresentableDuplicates");
    qRegisterMetaType<DeletedFileRepresentations>("DeletedFileRepresentations");

    qRegisterMetaTypeStreamOperators<DBDetails>("DBDetails");
    // The names stand in the settings of all versions.
    registerListStream<QQueue<DBDetails>>("QQueue<DBDetails>");
    qRegisterMetaTypeStreamOperators<ManualNodesSorter>("ManualNodesSorter");
    registerListStream<QList<int>>("QList<int>");
    qRegisterMetaTypeStreamOperators<QHash<QString, bool>>("QHash<QString,bool>");
    qRegisterMetaType<QList<ShellFile>>("QList<ShellFile>");
    qRegisterMetaTypeStreamOperators<DBSpecifierLackingPassword>("DBSpecifierLackingPassword");
    registerListStream<QQueue<DBSpecifierLackingPassword>>("QQueue<DBSpecifierLackingPassword>");

    qRegisterMetaType<QSqlError>("QSqlError");
    qRegisterMetaType<QVector<QPair<qint64, QString>>>("QVector<QPair<qint64,QString> >");
    registerRecordTypes();
}
