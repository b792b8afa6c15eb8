#include "fileops/exporting/spoiltrows.h"

#include "db/sql/sqliteerrors.h"
#include "fileops/exchange/quietstatements.h"
#include "fileops/exporting/exportsummary.h"
#include "fileops/worker/exportrequest.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDebug>

namespace {
// What is compared with anything is read to its end.
const QString tagTexts = QStringLiteral(
    "SELECT tag_name='' OR tag_description='' OR created_by='' FROM main.tags WHERE tag_id=?;");
const QString groupTexts = QStringLiteral("SELECT name='' FROM main.tag_groups WHERE tag_group_id=?;");
const QString fileTexts = QStringLiteral(
    "SELECT total(file_name='') + total(file_description='') FROM main.files WHERE file_id=?;");
const QString filePath =
    QStringLiteral("SELECT total(path='') + total(rel_path='') FROM main.files JOIN main.file_paths "
                   "ON path_id=storage_id WHERE internal=0 AND file_id=?;");
const QString fileThumbnail =
    QStringLiteral("SELECT total(thumbnail=x'00') FROM main.files JOIN main.thumbnails "
                   "USING (thumbnail_id) WHERE thumbnail_id>0 AND file_id=?;");
const QString fileBlocks = QStringLiteral(
    "WITH RECURSIVE chain(id) AS (SELECT storage_id FROM main.files WHERE internal=1 AND file_size<>0 AND "
    "file_id=? UNION SELECT continue_id FROM chain JOIN main.storage_info ON storage_id=id "
    "WHERE continue_id>0) SELECT total(data=x'00') FROM chain JOIN main.storage ON storage_id=id;");
} // namespace

SpoiltRows::SpoiltRows(FileOperationWorker &worker, QuietStatements &statements, ExportSummary &summary)
    : m_worker(worker),
      m_statements(statements),
      m_summary(summary),
      m_tags(statements, QStringLiteral("mem_export_spoilt_tags")),
      m_groups(statements, QStringLiteral("mem_export_spoilt_groups"))
{
}

bool SpoiltRows::create()
{
    return m_tags.create() && m_groups.create();
}

void SpoiltRows::drop()
{
    m_tags.drop();
    m_groups.drop();
}

bool SpoiltRows::find(const ExportRequest &request, const IdTable &files, const IdTable &tags)
{
    return findTags(tags) && (!request.exportTagGroups || findGroups()) && findFiles(request, files) &&
           m_found > 0;
}

bool SpoiltRows::findTags(const IdTable &tags)
{
    for (const qint64 id : idsOf(QStringLiteral("SELECT id FROM temp.%1;").arg(tags.name()))) {
        if (m_worker.shouldEnd())
            return false;
        if (isSound({tagTexts}, id))
            continue;
        if (!m_tags.add({id}))
            return false;
        skip(FileOperationWorker::tr("The tag \"%1\"")
                 .arg(nameOf(m_statements, {QStringLiteral("SELECT tag_name FROM main.tags WHERE tag_id=?;")},
                             id)));
    }
    return true;
}

bool SpoiltRows::findGroups()
{
    for (const qint64 id : idsOf(QStringLiteral("SELECT tag_group_id FROM main.tag_groups;"))) {
        if (m_worker.shouldEnd())
            return false;
        if (isSound({groupTexts}, id))
            continue;
        if (!m_groups.add({id}))
            return false;
        skip(FileOperationWorker::tr("The tag group \"%1\"")
                 .arg(nameOf(m_statements,
                             {QStringLiteral(
                                 "SELECT substr(name, 1, 100) FROM main.tag_groups WHERE tag_group_id=?;")},
                             id)));
    }
    return true;
}

bool SpoiltRows::findFiles(const ExportRequest &request, const IdTable &files)
{
    QStringList statements{fileTexts, filePath};
    if (request.form == ExportRequest::Database)
        statements += {fileThumbnail, fileBlocks};
    for (const qint64 id : request.fileIds) {
        if (m_worker.shouldEnd())
            return false;
        if (isSound(statements, id))
            continue;
        if (!m_statements.run(QStringLiteral("UPDATE temp.%1 SET id=-id WHERE id=?;").arg(files.name()),
                              {id}))
            return false;
        ++m_files;
        ++m_found;
        skipFile(m_statements, m_summary, id);
    }
    return true;
}

QVector<qint64> SpoiltRows::idsOf(const QString &statement)
{
    QVector<qint64> ids;
    TableData table;
    m_statements.read(statement, table);
    for (const TableRowData *row : qAsConst(table))
        ids.append(row->at(0).toLongLong());
    freeRows(table);
    return ids;
}

bool SpoiltRows::isSound(const QStringList &statements, qint64 id)
{
    for (const QString &statement : statements) {
        if (!m_statements.run(statement, {id}) && wereMet(m_statements))
            return false;
    }
    return true;
}

bool SpoiltRows::wereMet(const QuietStatements &statements)
{
    return SqliteErrors::isOneOf(statements.error(), {SQLITE_CORRUPT});
}

void SpoiltRows::skipFile(QuietStatements &statements, ExportSummary &summary, qint64 fileId)
{
    // The code stands behind the description, which may be what cannot be read.
    note(summary,
         nameOf(statements,
                {QStringLiteral("SELECT file_name||' ('||id_code||')' FROM main.files WHERE file_id=?;"),
                 QStringLiteral("SELECT file_name FROM main.files WHERE file_id=?;")},
                fileId));
}

QString SpoiltRows::nameOf(QuietStatements &statements, const QStringList &texts, qint64 id)
{
    for (const QString &text : texts) {
        TableData table;
        const bool isRead = statements.read(text, table, {id}) && !table.isEmpty();
        QString name = isRead ? table.constFirst()->at(0).toString() : QString();
        freeRows(table);
        if (isRead)
            return name;
    }
    return QString::number(id);
}

void SpoiltRows::skip(const QString &name)
{
    ++m_found;
    note(m_summary, name);
}

void SpoiltRows::note(ExportSummary &summary, const QString &name)
{
    qDebug() << "Error copying across file. *** " << name;
    summary.skipped[FileOperationWorker::tr("Their pages in the database file are damaged:")].append(name);
}
