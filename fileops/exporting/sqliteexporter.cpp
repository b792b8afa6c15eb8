#include "fileops/exporting/sqliteexporter.h"

#include "db/sql/schema.h"
#include "db/sql/sqliteerrors.h"
#include "db/sql/statementbreak.h"
#include "fileops/exchange/attacheddatabase.h"
#include "fileops/exchange/caughterror.h"
#include "fileops/exporting/relationshippaths.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDebug>
#include <QSqlDatabase>

#include <algorithm>

namespace {
/** Contents are read and written in the order of their ids then, as nearly as files got them. */
ExportRequest inOrder(ExportRequest request)
{
    std::sort(request.fileIds.begin(), request.fileIds.end());
    request.fileIds.erase(std::unique(request.fileIds.begin(), request.fileIds.end()), request.fileIds.end());
    return request;
}
} // namespace

SQLiteExporter::SQLiteExporter(FileOperationWorker &worker, const ExportRequest &request)
    : m_worker(worker),
      m_request(inOrder(request)),
      m_statements(worker),
      m_files(m_statements, QStringLiteral("mem_export_files")),
      m_tags(m_statements, QStringLiteral("mem_export_tags")),
      m_spoilt(worker, m_statements, m_summary),
      m_nodes(m_statements),
      m_copier(worker, m_statements, m_request, m_files.name(), m_summary)
{
}

bool SQLiteExporter::prepareDatabaseToExport(const QString &target)
{
    qDebug("SQLiteExporter::prepareDatabaseToExport()");
    AttachedDatabase attached(m_worker, QStringLiteral("exportTo"));
    if (!attached.attach(target, AttachedDatabase::ReadWrite)) {
        m_reason = attached.reason();
        return false;
    }
    const bool isDone = makeWorkTables() && (exportAttached() || exportRest());
    dropWorkTables();
    if (!attached.detach() && isDone) {
        m_reason = attached.reason();
        return false;
    }
    return isDone;
}

bool SQLiteExporter::exportRest()
{
    if (!m_isDamaged)
        return false;
    m_summary = ExportSummary();
    if (!m_spoilt.find(m_request, m_files, m_tags) || !exportAttached())
        return false;
    // Their ids name no files any more.
    m_summary.filesGone -= m_spoilt.files();
    return true;
}

bool SQLiteExporter::makeWorkTables()
{
    return (m_spoilt.create() && m_files.create() && m_tags.create() && m_nodes.prepare() &&
            m_copier.prepare() && m_files.add(m_request.fileIds) && m_tags.add(m_request.tagIds)) ||
           fail();
}

void SQLiteExporter::dropWorkTables()
{
    m_copier.cleanUp();
    m_nodes.cleanUp();
    m_spoilt.drop();
    m_tags.drop();
    m_files.drop();
}

bool SQLiteExporter::exportAttached()
{
    // Nobody else has the file, and half of it is of no use: no journal needs to survive a crash. Its unique
    // codes come in no order and are cheap as long as their index is in memory.
    if (!run("PRAGMA exportTo.journal_mode=MEMORY;") || !run("PRAGMA exportTo.cache_size=-65536;") ||
        !run("BEGIN;"))
        return fail();
    try {
        // Of a million nodes or tags one statement takes its time.
        const StatementBreak statementBreak(QSqlDatabase::database(m_worker.connectionName(), false),
                                            [this] { return m_worker.shouldEnd(); });
        if (exportAll() && commit())
            return true;
    } catch (...) {
        qDebug("Unknown exception caught.");
        m_reason = CaughtError::text();
    }
    m_statements.run(QStringLiteral("ROLLBACK;"));
    return false;
}

bool SQLiteExporter::exportAll()
{
    return exportTags() && exportFiles() && (!m_request.exportTagRelationships || exportTagRelationships()) &&
           (m_request.form != ExportRequest::Shell || dropContents());
}

bool SQLiteExporter::exportTags()
{
    qDebug("SQLiteExporter::exportTags()");
    if (m_request.addAllTagsOfFiles) {
        qDebug("Adding to tag list all tags of all files.");
        if (!run("INSERT OR IGNORE INTO temp.mem_export_tags (id) SELECT DISTINCT tag_id FROM main.file_tag "
                 "WHERE file_id IN (SELECT id FROM temp.mem_export_files);"))
            return fail();
    }
    const QString insert = QStringLiteral(
        "INSERT INTO exportTo.tags (tag_id, tag_name, tag_description, creation_date, created_by) "
        "SELECT tag_id, tag_name, tag_description, ifnull(creation_date, 0), created_by FROM main.tags "
        "WHERE tag_id IN (SELECT id FROM temp.mem_export_tags) AND tag_id NOT IN %1;");
    if (!m_statements.run(insert.arg(m_spoilt.tagIds())) || !logTags())
        return fail();
    if (m_request.exportTagGroups && !exportTagGroups())
        return false;
    qDebug("Exporting tb nodes related to tags.");
    if (!m_nodes.run() ||
        !m_statements.readNumber(QStringLiteral("SELECT count(*) FROM exportTo.tags;"), m_summary.tags) ||
        !m_statements.readNumber(QStringLiteral("SELECT count(*) FROM exportTo.tb_nodes;"), m_summary.nodes))
        return fail();
    return !m_worker.shouldEnd();
}

bool SQLiteExporter::logTags()
{
    QSet<qint64> tagIds;
    if (!readTagIds(tagIds))
        return false;
    for (const qint64 tagId : qAsConst(tagIds))
        qDebug("SQLiteExporter::exportTag - exporting tag - %lld", tagId);
    return true;
}

bool SQLiteExporter::exportTagGroups()
{
    qDebug("Exporting tag groups.");
    const QString insert = QStringLiteral(
        "INSERT INTO exportTo.tag_groups (tag_group_id, name) SELECT tag_group_id, name "
        "FROM main.tag_groups WHERE tag_group_id IN (SELECT tag_group_id FROM main.tag_group_links "
        "WHERE tag_id IN (SELECT tag_id FROM exportTo.tags)) AND tag_group_id NOT IN %1;");
    if (m_statements.run(insert.arg(m_spoilt.groupIds())) &&
        run("INSERT OR IGNORE INTO exportTo.tag_group_links (tag_group_id, tag_id) "
            "SELECT tag_group_id, tag_id FROM main.tag_group_links "
            "WHERE tag_group_id IN (SELECT tag_group_id FROM exportTo.tag_groups) "
            "AND tag_id IN (SELECT tag_id FROM exportTo.tags);"))
        return true;
    fail();
    qDebug("Error adding groups! %s", qPrintable(m_reason));
    return false;
}

bool SQLiteExporter::exportFiles()
{
    qint64 tagsGone = 0;
    if (!m_statements.readNumber(QStringLiteral("SELECT count(*) FROM temp.mem_export_tags WHERE id NOT IN "
                                                "(SELECT tag_id FROM exportTo.tags);"),
                                 tagsGone))
        return fail();
    m_copier.setHasAllTags(m_request.addAllTagsOfFiles && tagsGone == 0);
    if (m_copier.run())
        return true;
    m_reason = m_copier.reason();
    return fail(m_copier.error());
}

bool SQLiteExporter::exportTagRelationships()
{
    qDebug("exportTagRelationships()");
    QSet<qint64> tagIds;
    TableData rows;
    if (!readTagIds(tagIds) ||
        !m_statements.read(QStringLiteral("SELECT relationship_path FROM main.tag_relationships;"), rows))
        return fail();
    RelationshipPaths kept(tagIds);
    for (const TableRowData *row : qAsConst(rows))
        kept.add(row->at(0).toString());
    freeRows(rows);
    m_summary.pathsLeftOut = kept.leftOut();
    const QString insert =
        QStringLiteral("INSERT INTO exportTo.tag_relationships (relationship_path) VALUES (?);");
    for (const QString &path : kept.paths()) {
        if (m_worker.shouldEnd())
            return false;
        if (!m_statements.run(insert, {path}))
            return fail();
    }
    return true;
}

bool SQLiteExporter::readTagIds(QSet<qint64> &tagIds)
{
    TableData rows;
    if (!m_statements.read(QStringLiteral("SELECT tag_id FROM exportTo.tags;"), rows))
        return false;
    for (const TableRowData *row : qAsConst(rows))
        tagIds.insert(row->at(0).toLongLong());
    freeRows(rows);
    return true;
}

bool SQLiteExporter::dropContents()
{
    return (run("DROP TABLE exportTo.storage;") && run("DROP TABLE exportTo.storage_info;") &&
            run("DROP TABLE exportTo.thumbnails;") &&
            m_statements.run(
                Schema::applicationIdStatement(Schema::shellApplicationId, QStringLiteral("exportTo")))) ||
           fail();
}

bool SQLiteExporter::commit()
{
    return !m_worker.shouldEnd() && (run("COMMIT;") || fail());
}

bool SQLiteExporter::run(const char *statement)
{
    return m_statements.run(QLatin1String(statement));
}

bool SQLiteExporter::fail()
{
    m_reason = m_statements.reason();
    return fail(m_statements.error());
}

bool SQLiteExporter::fail(const QSqlError &error)
{
    m_isBusy = SqliteErrors::isBusy(error);
    m_isDamaged = SqliteErrors::isOneOf(error, {SQLITE_CORRUPT});
    return false;
}
