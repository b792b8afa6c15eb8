#include "core/providers/mainviewprovider.h"

#include "core/providers/chunks.h"
#include "core/providers/singlevalue.h"
#include "core/tagging/tagwriter.h"
#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/transaction.h"

namespace {
constexpr int rowsPerSlice = 512;
// Each part makes the models look at all files once more.
constexpr int filesPerReload = 10000;
constexpr int fewFiles = 20;
} // namespace

MainViewProvider::MainViewProvider(const AbstractQueryConstructor *constructor, QObject *parent)
    : BaseDBProvider(constructor, parent)
{
}

void MainViewProvider::loadAllFiles()
{
    // Files come by rising ids, so the highest one tells how far it is.
    const auto highest = static_cast<double>(highestId());
    int told = 0;
    const auto hand = [this, highest, &told](const TableData &slice) {
        emit gotAllFilesInfo(true, slice);
        const double part = highest > 0 ? slice.last()->at(0).toDouble() / highest : 1;
        const int percent = static_cast<int>(100 * qBound(0.0, part, 1.0));
        if (percent > told)
            emit loadingProgress(percent);
        told = qMax(told, percent);
    };
    // Two ordered statements side by side instead of a join, which would repeat a file for each of its tags.
    const bool ok = runSyncJoined(filesText(QString()), tagsText(QString()), rowsPerSlice, hand);
    // The end is told by an empty slice.
    emit gotAllFilesInfo(ok, TableData());
}

void MainViewProvider::loadFiles(const QVector<qint64> &ids)
{
    const bool ok = Chunks::forEach(ids, filesPerReload, [this](const QVector<qint64> &part) {
        TableData rows;
        const bool isRead = readFiles(part, rows);
        // Only now, when no result is open any more, a receiver may run statements of its own.
        if (isRead)
            emit filesUpdated(true, rows);
        freeRows(rows);
        return isRead;
    });
    if (!ok)
        emit filesUpdated(false, TableData());
}

bool MainViewProvider::updateFile(qint64 id, const QString &column, const QString &value)
{
    return updateAndLoad(id, updateText(id, column, value));
}

bool MainViewProvider::updateFilePath(qint64 id, const QString &column, const QString &value)
{
    return updateAndLoad(id, updatePathText(id, {column}, {value}));
}

bool MainViewProvider::changePaths(const PathChanges &changes)
{
    Transaction transaction(*this);
    if (!transaction.isActive())
        return false;
    QVector<qint64> ids;
    for (const PathChange &change : changes) {
        if (!runSync(updatePathText(change.fileId, {change.column}, {change.value})))
            return false;
        ids.append(change.fileId);
    }
    if (!transaction.commit())
        return false;
    announceFiles(ids);
    return true;
}

bool MainViewProvider::renameFile(qint64 id, const QString &name, const QString &path, const QString &relPath)
{
    Transaction transaction(*this);
    const bool isDone =
        transaction.isActive() && runSync(updateText(id, QStringLiteral("file_name"), name)) &&
        runSync(updatePathText(id, {QStringLiteral("path"), QStringLiteral("rel_path")}, {path, relPath})) &&
        transaction.commit();
    if (isDone)
        announceFiles({id});
    return isDone;
}

bool MainViewProvider::linkTags(const QVector<qint64> &fileIds, const QVector<qint64> &tagIds)
{
    return changeTags(Tagging::of(fileIds, tagIds, {}));
}

bool MainViewProvider::unlinkTags(const QVector<qint64> &fileIds, const QVector<qint64> &tagIds)
{
    return changeTags(Tagging::of(fileIds, {}, tagIds));
}

QString MainViewProvider::highestIdText() const
{
    return constructor()->selectQuery({QStringLiteral("max(file_id)")}, QStringLiteral("files")) +
           constructor()->statementEnd();
}

qint64 MainViewProvider::highestId()
{
    return SingleValue::read(*this, highestIdText()).toLongLong();
}

QString MainViewProvider::copyText() const
{
    return QStringLiteral(
        "COPY (SELECT files.file_id,file_name,file_description,file_size,addition_date,modification_date,"
        "id_code,load_id,storage_id,thumbnail_id,data_checksum,internal,path,rel_path,tag_ids FROM files"
        " LEFT JOIN file_paths ON files.storage_id=file_paths.path_id AND files.internal=0"
        " LEFT JOIN (SELECT file_id,array_agg(tag_id) AS tag_ids FROM file_tag GROUP BY file_id) AS links"
        " ON files.file_id=links.file_id ORDER BY files.file_id) TO STDOUT;");
}

QString MainViewProvider::filesText(const QString &condition) const
{
    const QString paths =
        constructor()->joinQuery(LeftJoin, QStringLiteral("file_paths"),
                                 QStringLiteral("files.storage_id=file_paths.path_id AND files.internal=0"));
    return constructor()->selectQuery({QStringLiteral("files.*"), QStringLiteral("file_paths.*")},
                                      QLatin1String("files") + paths) +
           condition + QLatin1String(" ORDER BY files.file_id") + constructor()->statementEnd();
}

QString MainViewProvider::tagsText(const QString &condition) const
{
    return constructor()->selectQuery({QStringLiteral("file_id"), QStringLiteral("tag_id")},
                                      QStringLiteral("file_tag")) +
           condition + QLatin1String(" ORDER BY file_id") + constructor()->statementEnd();
}

void MainViewProvider::announceFiles(const QVector<qint64> &ids)
{
    if (ids.size() <= fewFiles)
        expect(fewFilesText(ids));
    announce([this, ids] { loadFiles(ids); });
}

QString MainViewProvider::fewFilesText(const QVector<qint64> &ids) const
{
    const QString paths =
        constructor()->joinQuery(LeftJoin, QStringLiteral("file_paths"),
                                 QStringLiteral("files.storage_id=file_paths.path_id AND files.internal=0"));
    const QString links = constructor()->joinQuery(LeftJoin, QStringLiteral("file_tag"),
                                                   QStringLiteral("files.file_id=file_tag.file_id"));
    return constructor()->selectQuery(
               {QStringLiteral("files.*"), QStringLiteral("file_paths.*"), QStringLiteral("file_tag.tag_id")},
               QLatin1String("files") + paths + links) +
           constructor()->whereClause(
               constructor()->inClause(QStringLiteral("files.file_id"), SqlText::idTexts(ids))) +
           QLatin1String(" ORDER BY files.file_id,file_tag.tag_id") + constructor()->statementEnd();
}

bool MainViewProvider::readFiles(const QVector<qint64> &ids, TableData &rows)
{
    // One statement, which comes along with the end of an edit; of many files, each with its tags, the
    // values would come again and again.
    if (ids.size() <= fewFiles)
        return runSync(fewFilesText(ids), rows);
    const QStringList texts = SqlText::idTexts(ids);
    const auto condition = [this, &texts](const QString &column) {
        return constructor()->whereClause(constructor()->inClause(column, texts));
    };
    const auto keep = [&rows](const TableData &slice) {
        for (TableRowData *row : slice) {
            auto *kept = new TableRowData(row->columns());
            kept->swapValues(*row);
            rows.append(kept);
        }
    };
    return runSyncJoined(filesText(condition(QStringLiteral("files.file_id"))),
                         tagsText(condition(QStringLiteral("file_id"))), rowsPerSlice, keep);
}

bool MainViewProvider::readFilesOfPaths(const QVector<qint64> &pathIds, QVector<qint64> &ids)
{
    const auto collect = [&ids](const TableData &slice) {
        for (const TableRowData *row : slice)
            ids.append(row->at(0).toLongLong());
    };
    return Chunks::forEach(pathIds, Chunks::idsPerStatement, [&](const QVector<qint64> &part) {
        const QString condition =
            QLatin1String("internal=0") + constructor()->logicalOperator(AndOperator) +
            constructor()->inClause(QStringLiteral("storage_id"), SqlText::idTexts(part));
        return runSyncInSlices(
            constructor()->selectQuery({QStringLiteral("file_id")}, QStringLiteral("files")) +
                constructor()->whereClause(condition) + constructor()->statementEnd(),
            Chunks::idsPerStatement, collect);
    });
}

QString MainViewProvider::updateText(qint64 id, const QString &column, const QString &value) const
{
    const QString condition = SqlText::fill(QStringLiteral("file_id = %1"), {QString::number(id)});
    return constructor()->updateQuery({column}, QStringLiteral("files"), {value}) +
           constructor()->whereClause(condition) + constructor()->statementEnd();
}

QString MainViewProvider::updatePathText(qint64 id, const QStringList &columns,
                                         const QStringList &values) const
{
    // An internal file's storage_id names a block, whose number may be that of another file's path.
    const QString condition = SqlText::fill(
        QStringLiteral("path_id = (SELECT storage_id from files where file_id = %1 and internal = 0)"),
        {QString::number(id)});
    return constructor()->updateQuery(columns, QStringLiteral("file_paths"), values) +
           constructor()->whereClause(condition) + constructor()->statementEnd();
}

bool MainViewProvider::updateAndLoad(qint64 id, const QString &update)
{
    if (!runEdit(update))
        return false;
    announceFiles({id});
    return true;
}

bool MainViewProvider::changeTags(const TagChanges &changes)
{
    if (Tagging::pairs(changes) == 0)
        return true;
    Transaction transaction(*this);
    TagWriter writer(*this, QString());
    if (!transaction.isActive() || !writer.write(changes) || !transaction.commit())
        return false;
    if (!writer.done().isEmpty())
        announce([this, done = writer.done()] { emit tagsChanged(done); });
    return true;
}
