#include "fileops/contents/databasefiles.h"

#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/sqltext.h"
#include "fileops/worker/fileoperationqueries.h"

namespace {

constexpr int idsInStatement = 1000;

QString selectFiles(const AbstractQueryConstructor &sql)
{
    const QString join =
        sql.joinQuery(LeftJoin, QStringLiteral("file_paths"),
                      QStringLiteral("files.storage_id=file_paths.path_id AND files.internal=0"));
    return sql.selectQuery({QStringLiteral("files.file_id"), QStringLiteral("files.file_name"),
                            QStringLiteral("files.file_size"), QStringLiteral("files.modification_date"),
                            QStringLiteral("files.internal"), QStringLiteral("files.storage_id"),
                            QStringLiteral("file_paths.path")},
                           QStringLiteral("files") + join);
}

DatabaseFile fileOf(const TableRowData &row)
{
    DatabaseFile file;
    file.fileId = row.at(0).toLongLong();
    file.name = row.at(1).toString();
    file.size = row.at(2).toLongLong();
    file.modified = row.at(3).toLongLong();
    file.internal = row.at(4).toInt();
    file.storageId = row.at(5).toLongLong();
    file.path = row.at(6).toString();
    return file;
}

} // namespace

DuplicateFileInfo DatabaseFile::info() const
{
    DuplicateFileInfo info;
    info.fileId = fileId;
    info.path = path.isEmpty() ? name : path;
    info.size = size;
    info.lastModified = QDateTime::fromSecsSinceEpoch(modified);
    return info;
}

bool readDatabaseFiles(FileOperationQueries &queries, const QVector<qint64> &ids,
                       QHash<qint64, DatabaseFile> &files)
{
    const AbstractQueryConstructor &sql = *queries.constructor();
    const QString select = selectFiles(sql);
    for (int from = 0; from < ids.size(); from += idsInStatement) {
        const QString condition = QStringLiteral("files.file_id IN (") +
                                  SqlText::idList(ids.mid(from, idsInStatement)) + QLatin1Char(')');
        TableData table;
        const bool success =
            queries.runAsync(select + sql.whereClause(condition) + sql.statementEnd(), table);
        for (const TableRowData *row : qAsConst(table)) {
            const DatabaseFile file = fileOf(*row);
            files.insert(file.fileId, file);
        }
        freeRows(table);
        if (!success)
            return false;
    }
    return true;
}
