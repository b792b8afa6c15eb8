#include "fileops/importing/sourcefiles.h"

#include "core/records/filekind.h"
#include "fileops/files/datachecksum.h"
#include "fileops/importing/contentcomparison.h"
#include "fileops/importing/importrun.h"

#include <QHash>
#include <QStringList>

namespace {
QString numbers(const QStringList &columns)
{
    QStringList expressions;
    for (const QString &column : columns)
        expressions.append(ImportStatements::asNumber(column) + QStringLiteral(" AS ") + column);
    return expressions.join(QLatin1Char(','));
}
} // namespace

void SourceFiles::createTables()
{
    for (const char *table : {"mem_files"})
        m_run.statements.run(QStringLiteral("DROP TABLE IF EXISTS temp.") + QLatin1String(table));
    m_run.statements.run(QStringLiteral(
        "CREATE TEMPORARY TABLE mem_files (file_id INTEGER PRIMARY KEY, data_checksum INTEGER NOT NULL, "
        "file_size INTEGER NOT NULL, internal INTEGER NOT NULL, storage_id INTEGER NOT NULL, "
        "thumbnail_id INTEGER NOT NULL, modification_date INTEGER NOT NULL, fate INTEGER NOT NULL)"));
}

void SourceFiles::read()
{
    const QStringList columns{QStringLiteral("data_checksum"), QStringLiteral("file_size"),
                              QStringLiteral("internal"),      QStringLiteral("storage_id"),
                              QStringLiteral("thumbnail_id"),  QStringLiteral("modification_date")};
    const QString insert =
        QStringLiteral("INSERT OR IGNORE INTO mem_files (file_id,%1,fate) SELECT file_id,%1,0 FROM "
                       "(SELECT file_id,%2 FROM fileSource.files%3) "
                       "WHERE internal BETWEEN 0 AND 2 AND storage_id>=0");
    const QString list = columns.join(QLatin1Char(','));
    QStringList areIntegers;
    for (const QString &column : columns)
        areIntegers.append(QStringLiteral("CAST(%1 AS INTEGER)=%1").arg(column));
    const qint64 all = m_run.statements.number(QStringLiteral("SELECT count(*) FROM fileSource.files"));
    int fit = m_run.statements.run(
        insert.arg(list, list, QLatin1String(" WHERE ") + areIntegers.join(QLatin1String(" AND "))));
    // What the others hold in the place of a number takes its time to find out.
    if (fit < all)
        fit += m_run.statements.run(insert.arg(list, numbers(columns), QString()));
    m_run.report.leaveOut(tr("Files with values that are no numbers: %1"), int(all - fit));
}

void SourceFiles::fillChecksums(const ContentComparison &contents)
{
    if (m_run.statements.number(
            QStringLiteral("SELECT EXISTS (SELECT 1 FROM mem_files WHERE data_checksum<0)")) == 0)
        return;
    const bool hasPaths = m_run.source.has({QStringLiteral("file_paths")});
    const bool hasBlocks = m_run.source.has({QStringLiteral("storage"), QStringLiteral("storage_info")});
    const QString path =
        hasPaths ? QStringLiteral("(SELECT path FROM fileSource.file_paths WHERE path_id=m.storage_id)")
                 : QStringLiteral("''");
    QHash<qint64, qint64> found;
    const auto read = [&](const ImportStatements::Row &row) {
        m_run.stopIfEnded();
        const qint64 kind = row.number(1);
        if (kind == FileKind::hyperlink) {
            found.insert(row.number(0), DataChecksum::ofHyperlink(row.text(4)));
            return;
        }
        if (kind == FileKind::internal && !hasBlocks)
            return;
        const qint64 checksum = contents.checksumOf(
            {true, kind == FileKind::internal, row.number(2), row.number(3), row.text(5)});
        if (checksum >= 0)
            found.insert(row.number(0), checksum);
    };
    m_run.statements.each(
        QStringLiteral("SELECT m.file_id, m.internal, m.storage_id, m.file_size, s.file_name, %1 "
                       "FROM mem_files AS m JOIN fileSource.files AS s ON s.file_id=m.file_id "
                       "WHERE m.data_checksum<0")
            .arg(path),
        read);
    for (auto checksum = found.cbegin(); checksum != found.cend(); ++checksum)
        m_run.statements.run(QStringLiteral("UPDATE mem_files SET data_checksum=? WHERE file_id=?"),
                             {checksum.value(), checksum.key()});
    // Those of others stay below zero, which matches nothing.
    m_run.statements.run(QStringLiteral("UPDATE mem_files SET data_checksum=-1 WHERE data_checksum<0"));
}

void SourceFiles::createIndex()
{
    m_run.statements.run(QStringLiteral(
        "CREATE INDEX IF NOT EXISTS temp.mem_files_contents ON mem_files (data_checksum, file_size)"));
}
