#include "fileops/worker/fileoperationqueries.h"

#include "app/settings/constants.h"
#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/providerconnection.h"
#include "db/sql/sqltext.h"

#include <QSet>

namespace {
constexpr int tagsInStatement = 500;
} // namespace

bool FileOperationQueries::nextLoadId(qint64 &id)
{
    QVariantList values;
    if (!readRow(constructor()->maxIdQuery(QStringLiteral("load_id"), QStringLiteral("files")), {}, values))
        return false;
    id = values.first().toLongLong();
    return true;
}

bool FileOperationQueries::nextStorageId(qint64 &id)
{
    return nextId(QStringLiteral("storage"), QStringLiteral("storage_id"), id);
}

bool FileOperationQueries::nextPathId(qint64 &id)
{
    return nextId(QStringLiteral("file_paths"), QStringLiteral("path_id"), id);
}

bool FileOperationQueries::nextThumbnailId(qint64 &id)
{
    return nextId(QStringLiteral("thumbnails"), QStringLiteral("thumbnail_id"), id);
}

bool FileOperationQueries::nextFileId(qint64 &id)
{
    return nextId(QStringLiteral("files"), QStringLiteral("file_id"), id);
}

bool FileOperationQueries::nextNodeId(qint64 &id)
{
    return nextId(QStringLiteral("tb_nodes"), QStringLiteral("node_id"), id);
}

bool FileOperationQueries::nextId(const QString &table, const QString &column, qint64 &id)
{
    QVariantList values;
    if (!readRow(constructor()->nextIdQuery(column, table), {}, values))
        return false;
    id = values.first().toLongLong();
    return true;
}

bool FileOperationQueries::insertBrowsingNode(qint64 nodeId, qint64 tagId)
{
    const QStringList columns = {QStringLiteral("node_id"), QStringLiteral("tag_id"),
                                 QStringLiteral("tr_options"), QStringLiteral("inverted")};
    const QStringList row = {QString::number(nodeId), QString::number(tagId), QStringLiteral("1"),
                             QStringLiteral("0")};
    return runAsync(constructor()->insertQuery(columns, QStringLiteral("tb_nodes"), {row}) +
                    constructor()->statementEnd());
}

bool FileOperationQueries::insertBrowsingNodeLink(qint64 parentId, qint64 childId)
{
    const QStringList columns = {QStringLiteral("parent_id"), QStringLiteral("child_id")};
    const QStringList row = {QString::number(parentId), QString::number(childId)};
    return runAsync(constructor()->insertQuery(columns, QStringLiteral("tb_node_links"), {row}) +
                    constructor()->statementEnd());
}

bool FileOperationQueries::readFileStorageInfo(qint64 fileId, int &internal, qint64 &size, qint64 &storageId,
                                               const QString &idCode)
{
    // Without a join to the blocks, so that empty files are found too.
    QVariantList values;
    if (!readForFile({QStringLiteral("internal"), QStringLiteral("storage_id"), QStringLiteral("file_size"),
                      QStringLiteral("id_code")},
                     QStringLiteral("files"), QStringLiteral("file_id=?"), fileId, values) ||
        (!idCode.isEmpty() && values.at(3).toString().trimmed() != idCode.trimmed()))
        return false;
    internal = values.at(0).toInt();
    storageId = values.at(1).toLongLong();
    size = values.at(2).toLongLong();
    return true;
}

bool FileOperationQueries::readStorageInfos(const QVector<qint64> &ids, QHash<qint64, StorageInfo> &infos)
{
    TableData table;
    const QStringList columns = {QStringLiteral("file_id"), QStringLiteral("internal"),
                                 QStringLiteral("storage_id"), QStringLiteral("file_size"),
                                 QStringLiteral("id_code")};
    if (!runAsync(constructor()->selectQuery(columns, QStringLiteral("files")) +
                      constructor()->whereClause(
                          constructor()->inClause(QStringLiteral("file_id"), SqlText::idTexts(ids))) +
                      constructor()->statementEnd(),
                  table))
        return false;
    for (const TableRowData *row : qAsConst(table)) {
        infos.insert(row->at(0).toLongLong(), {row->at(1).toInt(), row->at(2).toLongLong(),
                                               row->at(3).toLongLong(), row->at(4).toString().trimmed()});
    }
    freeRows(table);
    return true;
}

bool FileOperationQueries::readFileName(qint64 fileId, QString &name)
{
    QVariantList values;
    if (!readForFile({QStringLiteral("file_name")}, QStringLiteral("files"), QStringLiteral("file_id=?"),
                     fileId, values))
        return false;
    name = values.first().toString();
    return true;
}

bool FileOperationQueries::readInternal(qint64 fileId, int &internal)
{
    QVariantList values;
    if (!readForFile({QStringLiteral("internal")}, QStringLiteral("files"), QStringLiteral("file_id=?"),
                     fileId, values))
        return false;
    internal = values.first().toInt();
    return true;
}

bool FileOperationQueries::readPath(qint64 fileId, QString &path)
{
    QVariantList values;
    if (!readForFile(
            {QStringLiteral("file_paths.path")}, QStringLiteral("file_paths, files"),
            QStringLiteral("files.storage_id=file_paths.path_id AND files.internal=0 AND files.file_id=?"),
            fileId, values))
        return false;
    path = values.first().toString();
    return true;
}

bool FileOperationQueries::readThumbnailSource(qint64 fileId, QString &path, qint64 &thumbnailId)
{
    QVariantList values;
    if (!readForFile(
            {QStringLiteral("file_paths.path"), QStringLiteral("files.thumbnail_id")},
            QStringLiteral("file_paths, files"),
            QStringLiteral("file_paths.path_id=files.storage_id AND files.internal=0 AND files.file_id=?"),
            fileId, values))
        return false;
    path = values.at(0).toString();
    thumbnailId = values.at(1).toLongLong();
    return true;
}

bool FileOperationQueries::readChecksums(const QVector<qint64> &checksums,
                                         QHash<qint64, qint64> &checksumsByFile)
{
    if (checksums.isEmpty())
        return true;
    // One list for all: the column has no index, so each statement walks the whole table. A list longer than
    // the table costs more than the table itself.
    QVariantList count;
    if (!readRow(QStringLiteral("SELECT count(*) FROM files;"), {}, count))
        return false;
    const bool readsAll = count.first().toLongLong() < checksums.size();
    const QString condition = readsAll ? QString()
                                       : constructor()->whereClause(constructor()->inClause(
                                             QStringLiteral("data_checksum"), SqlText::idTexts(checksums)));
    TableData table;
    if (!runAsync(constructor()->selectQuery({QStringLiteral("data_checksum"), QStringLiteral("file_id")},
                                             QStringLiteral("files")) +
                      condition + constructor()->statementEnd(),
                  table))
        return false;
    const QSet<qint64> wanted =
        readsAll ? QSet<qint64>(checksums.cbegin(), checksums.cend()) : QSet<qint64>();
    for (const TableRowData *row : qAsConst(table)) {
        const qint64 checksum = row->at(0).toLongLong();
        if (!readsAll || wanted.contains(checksum))
            checksumsByFile.insert(row->at(1).toLongLong(), checksum);
    }
    freeRows(table);
    return true;
}

bool FileOperationQueries::readFileNames(const QStringList &names, QHash<qint64, QString> &namesByFile)
{
    if (names.isEmpty())
        return true;
    TableData table;
    if (!runAsync(
            constructor()->selectQuery({QStringLiteral("file_name"), QStringLiteral("file_id")},
                                       QStringLiteral("files")) +
                constructor()->whereClause(constructor()->inClause(QStringLiteral("file_name"), names)) +
                constructor()->statementEnd(),
            table))
        return false;
    for (const TableRowData *row : qAsConst(table))
        namesByFile.insert(row->at(1).toLongLong(), row->at(0).toString());
    freeRows(table);
    return true;
}

bool FileOperationQueries::readExternalFileDetails(const QVector<qint64> &ids,
                                                   QVector<ExternalFileDetails> &details)
{
    if (ids.isEmpty())
        return true;
    const QStringList columns = {QStringLiteral("file_id"), QStringLiteral("internal"),
                                 QStringLiteral("path"), QStringLiteral("modification_date"),
                                 QStringLiteral("file_size")};
    const QString condition =
        QStringLiteral("file_paths.path_id=files.storage_id AND files.internal=0 AND ") +
        constructor()->inClause(QStringLiteral("file_id"), SqlText::idTexts(ids));
    TableData table;
    if (!runAsync(constructor()->selectQuery(columns, QStringLiteral("file_paths, files")) +
                      constructor()->whereClause(condition) + constructor()->statementEnd(),
                  table))
        return false;
    details.reserve(details.size() + table.size());
    for (const TableRowData *row : qAsConst(table)) {
        // Disks and databases round differently: a stored time counts as its following second.
        const qint64 lastModified = row->at(3).toLongLong() + 1;
        details.append({row->at(0).toLongLong(), row->at(1).toInt(), row->at(2).toString(), lastModified,
                        row->at(4).toLongLong()});
    }
    freeRows(table);
    return true;
}

bool FileOperationQueries::readRelativePaths(const QVector<qint64> &ids, QHash<qint64, QString> &paths)
{
    const QString condition = QStringLiteral("path_id=storage_id AND internal=0 AND ") +
                              constructor()->inClause(QStringLiteral("file_id"), SqlText::idTexts(ids));
    TableData table;
    if (!runAsync(constructor()->selectQuery({QStringLiteral("file_id"), QStringLiteral("rel_path")},
                                             QStringLiteral("file_paths, files")) +
                      constructor()->whereClause(condition) + constructor()->statementEnd(),
                  table))
        return false;
    for (const TableRowData *row : qAsConst(table))
        paths.insert(row->at(0).toLongLong(), row->at(1).toString());
    freeRows(table);
    return true;
}

QHash<QString, qint64> FileOperationQueries::createTags(const QStringList &names, QVector<qint64> *newIds)
{
    QHash<QString, qint64> existing;
    if (!constructor() || names.isEmpty() || !readTagIds(names, existing))
        return {};
    QStringList missing;
    QSet<QString> seen;
    for (const QString &name : names) {
        if (!existing.contains(name) && !seen.contains(name))
            missing.append(name);
        seen.insert(name);
    }
    QHash<QString, qint64> created;
    if (!missing.isEmpty() && insertTags(missing) && readTagIds(missing, created)) {
        for (const QString &name : qAsConst(missing)) {
            const qint64 id = created.value(name);
            if (id > 0 && newIds)
                newIds->append(id);
            if (id > 0)
                existing.insert(name, id);
        }
    }
    return existing;
}

bool FileOperationQueries::readTagIds(const QStringList &names, QHash<QString, qint64> &ids)
{
    TableData table;
    if (!runAsync(constructor()->selectQuery({QStringLiteral("tag_id"), QStringLiteral("tag_name")},
                                             QStringLiteral("tags")) +
                      constructor()->whereClause(constructor()->inClause(QStringLiteral("tag_name"), names)) +
                      constructor()->statementEnd(),
                  table))
        return false;
    for (const TableRowData *row : qAsConst(table)) {
        if (row->at(0).toLongLong() > 0)
            ids.insert(row->at(1).toString(), row->at(0).toLongLong());
    }
    freeRows(table);
    return true;
}

bool FileOperationQueries::insertTags(const QStringList &names)
{
    const QStringList columns = {QStringLiteral("tag_name"), QStringLiteral("tag_description"),
                                 QStringLiteral("creation_date")};
    const QString now = QString::number(QDateTime::currentSecsSinceEpoch());
    for (int start = 0; start < names.size(); start += tagsInStatement) {
        QVector<QStringList> rows;
        for (int i = start; i < qMin(start + tagsInStatement, names.size()); ++i)
            rows.append({names.at(i), QString(), now});
        if (!runAsync(constructor()->insertQuery(columns, QStringLiteral("tags"), rows) +
                      constructor()->statementEnd()))
            return false;
    }
    return true;
}

bool FileOperationQueries::runFast(const QString &statement, const QVariantList &values)
{
    return runPrepared(statement, values, Constants::workerConnection);
}

bool FileOperationQueries::runFast(const QString &statement, const QVariantList &values, TableData &table)
{
    return runPrepared(statement, values, table, Constants::workerConnection);
}

bool FileOperationQueries::insertRows(const QString &into, int columns, const QVariantList &values)
{
    const int rows = values.size() / columns;
    QVector<QString> &statements = m_inserts[into];
    if (statements.size() <= rows)
        statements.resize(rows + 1);
    QString &statement = statements[rows];
    if (statement.isEmpty()) {
        const QString places =
            QLatin1String("(?") + QStringLiteral(",?").repeated(columns - 1) + QLatin1Char(')');
        statement =
            into + QLatin1String(" VALUES ") + places + (QLatin1Char(',') + places).repeated(rows - 1);
    }
    return runFast(statement, values);
}

bool FileOperationQueries::readRow(const QString &statement, const QVariantList &parameters,
                                   QVariantList &values)
{
    return ProviderConnection(*this, Constants::workerConnection).readRow(statement, parameters, values);
}

bool FileOperationQueries::readForFile(const QStringList &columns, const QString &from,
                                       const QString &condition, qint64 fileId, QVariantList &values)
{
    return readRow(constructor()->selectQuery(columns, from) + constructor()->whereClause(condition) +
                       constructor()->statementEnd(),
                   {fileId}, values);
}
