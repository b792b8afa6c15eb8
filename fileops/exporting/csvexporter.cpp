#include "fileops/exporting/csvexporter.h"

#include "core/records/filekind.h"
#include "db/sql/statementbreak.h"
#include "fileops/exchange/caughterror.h"
#include "fileops/exporting/spoiltrows.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDebug>
#include <QHash>
#include <QIODevice>
#include <QSqlDatabase>

namespace {
constexpr int linesAtOnce = 500;
const QChar quote(QLatin1Char('"'));

QString folderOf(const QString &path)
{
    const int end = path.lastIndexOf(QLatin1Char('/'));
    return path.left(qMax(end, end == 0 ? 1 : 0));
}

/** What the column "Storage" says. */
QString placeOf(int kind, const QString &path)
{
    switch (kind) {
    case FileKind::internal:
        return QStringLiteral("internal");
    case FileKind::hyperlink:
        return QStringLiteral("hyperlink");
    default:
        return folderOf(path);
    }
}
} // namespace

CsvExporter::CsvExporter(FileOperationWorker &worker, const ExportRequest &request)
    : m_worker(worker),
      m_request(request),
      m_statements(worker),
      m_files(m_statements, QStringLiteral("mem_export_files"))
{
}

bool CsvExporter::run(QIODevice &target)
{
    m_target = &target;
    // One state of the database for all lines.
    const bool isDone =
        ((m_files.create() && m_files.add(m_request.fileIds) && m_statements.run(QStringLiteral("BEGIN;"))) ||
         fail()) &&
        exportAll();
    m_statements.run(QStringLiteral("ROLLBACK;"));
    m_files.drop();
    return isDone;
}

bool CsvExporter::exportAll()
{
    try {
        return writeHeader() && writeAllLines();
    } catch (...) {
        qDebug("Unknown exception caught.");
        m_reason = CaughtError::text();
        return false;
    }
}

bool CsvExporter::writeAllLines()
{
    qint64 last = 0;
    for (qint64 first = 1; first <= m_request.fileIds.size(); first = last + 1) {
        if (m_worker.shouldEnd()) {
            qDebug("CsvExporter::exportAll() - stopped! Exiting.");
            return false;
        }
        if (!writeLines(first, last))
            return false;
        if (last < first)
            break;
        const int percent = FileOperationWorker::percent(int(last), m_request.fileIds.size());
        if (m_progress.isDue(percent, percent == 100))
            emit m_worker.operationProgress(FileOperationType::ExportOperation,
                                            FileOperationWorker::tr("Exporting files..."), percent);
    }
    return true;
}

bool CsvExporter::writeHeader()
{
    // It reads the tags of all files in one go.
    const StatementBreak statementBreak(QSqlDatabase::database(m_worker.connectionName(), false),
                                        [this] { return m_worker.shouldEnd(); });
    qint64 mostTags = 0;
    return countTags(mostTags) &&
           write(QStringLiteral("Name,Description,Addition Date,Modification Date,Size,Storage,ID code") +
                 QStringLiteral(",Tag").repeated(int(mostTags)) + QLatin1Char('\n'));
}

bool CsvExporter::countTags(qint64 &most)
{
    if (m_statements.readNumber(QStringLiteral("SELECT ifnull(max(count), 0) FROM (SELECT count(*) AS count "
                                               "FROM main.file_tag NATURAL JOIN main.tags WHERE file_id IN "
                                               "(SELECT id FROM temp.mem_export_files) GROUP BY file_id);"),
                                most))
        return true;
    if (!SpoiltRows::wereMet(m_statements))
        return fail();
    // Of those that can be read; the others get no line.
    const QString ofOne = QStringLiteral("SELECT count(*) FROM temp.mem_export_files AS ids "
                                         "JOIN main.file_tag ON file_id=ids.id NATURAL JOIN main.tags "
                                         "WHERE ids.place=?;");
    for (qint64 place = 1; place <= m_request.fileIds.size(); ++place) {
        qint64 count = 0;
        if (!m_statements.readNumber(ofOne, count, {place}) && !SpoiltRows::wereMet(m_statements))
            return fail();
        most = qMax(most, count);
    }
    return true;
}

bool CsvExporter::writeLines(qint64 first, qint64 &last)
{
    const qint64 end = first + linesAtOnce - 1;
    QString text;
    const bool isDone = readLines(first, end, last, text) ||
                        (SpoiltRows::wereMet(m_statements) ? readSoundLines(first, end, last, text) : fail());
    return isDone && write(text);
}

bool CsvExporter::readLines(qint64 first, qint64 end, qint64 &last, QString &text)
{
    TableData rows;
    const QString select = QStringLiteral("SELECT ids.place, file_id, file_name, file_description, "
                                          "addition_date, modification_date, file_size, "
                                          "internal, id_code, path FROM temp.mem_export_files AS ids "
                                          "LEFT JOIN main.files ON file_id=ids.id "
                                          "LEFT JOIN main.file_paths ON internal=0 AND path_id=storage_id "
                                          "WHERE ids.place BETWEEN ? AND ? ORDER BY ids.place;");
    if (!m_statements.read(select, rows, {first, end}))
        return false;
    last = rows.isEmpty() ? first - 1 : rows.constLast()->at(0).toLongLong();
    const bool areTagsRead = rows.isEmpty() || readTags(first, last);
    for (const TableRowData *row : qAsConst(rows)) {
        if (!areTagsRead)
            break;
        if (row->at(1).isNull()) {
            ++m_summary.filesGone;
        } else {
            text += line(*row);
            ++m_summary.files;
        }
    }
    freeRows(rows);
    return areTagsRead;
}

/** One by one, so that what cannot be read stays behind alone. */
bool CsvExporter::readSoundLines(qint64 first, qint64 end, qint64 &last, QString &text)
{
    last = first - 1;
    while (last < end && !m_worker.shouldEnd()) {
        const qint64 place = last + 1;
        qint64 reached = place;
        if (!readLines(place, place, reached, text) && (!SpoiltRows::wereMet(m_statements) || !skip(place)))
            return fail();
        if (reached < place)
            return true;
        last = place;
    }
    return !m_worker.shouldEnd();
}

bool CsvExporter::skip(qint64 place)
{
    qint64 fileId = 0;
    if (!m_statements.readNumber(QStringLiteral("SELECT id FROM temp.mem_export_files WHERE place=?;"),
                                 fileId, {place}))
        return false;
    SpoiltRows::skipFile(m_statements, m_summary, fileId);
    return true;
}

bool CsvExporter::readTags(qint64 first, qint64 last)
{
    m_tags.clear();
    TableData rows;
    const QString select = QStringLiteral("SELECT ids.place, tag_name FROM temp.mem_export_files AS ids "
                                          "JOIN main.file_tag ON file_id=ids.id NATURAL JOIN main.tags "
                                          "WHERE ids.place BETWEEN ? AND ? ORDER BY ids.place, tag_id;");
    if (!m_statements.read(select, rows, {first, last}))
        return false;
    for (const TableRowData *row : qAsConst(rows))
        m_tags[row->at(0).toLongLong()].append(row->at(1).toString());
    freeRows(rows);
    return true;
}

QString CsvExporter::line(const TableRowData &row)
{
    QString text;
    for (int column = 2; column <= 6; ++column)
        text += field(row.at(column).toString()) + QLatin1Char(',');
    text += field(placeOf(row.at(7).toInt(), row.at(9).toString())) + QLatin1Char(',');
    text += field(row.at(8).toString()) + QLatin1Char(',');
    QStringList tags;
    for (const QString &tag : m_tags.value(row.at(0).toLongLong()))
        tags.append(field(tag));
    return text + tags.join(QLatin1Char(',')) + QLatin1Char('\n');
}

QString CsvExporter::field(const QString &text)
{
    if (text.contains(quote))
        ++m_summary.fieldsWithQuotes;
    return quote + text + quote;
}

bool CsvExporter::write(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    if (m_target->write(bytes) == bytes.size())
        return true;
    m_reason = m_target->errorString();
    return false;
}

bool CsvExporter::fail()
{
    m_reason = m_statements.reason();
    m_isBusy = m_statements.isBusy();
    return false;
}
