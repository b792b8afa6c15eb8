#include "fileops/importing/chunkrows.h"

#include "core/records/filekind.h"
#include "db/sql/longtext.h"
#include "fileops/importing/criticaldmerror.h"
#include "fileops/importing/importrun.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDateTime>
#include <QPair>
#include <QSet>

namespace {
// The unique id codes go to random places of their index: the more at a time, the less often each page of it
// is kept for the savepoint.
constexpr int mostFiles = 10000;
constexpr int fewestFiles = 16;
constexpr qint64 mostBytes = 64LL << 20;
// What a file is reckoned at has a bound: a source may record any number, and their sum must be one, too.
const QString bytesOfContents =
    QStringLiteral("CASE kind WHEN 1 THEN min(max(0,size),%1) ELSE 0 END").arg(1LL << 40);
} // namespace

ChunkRows::ChunkRows(ImportRun &run, bool takesDescriptions)
    : m_run(run),
      m_takesDescriptions(takesDescriptions),
      m_hasBlocks(run.source.has({QStringLiteral("storage"), QStringLiteral("storage_info")})),
      m_hasPathTable(run.source.has({QStringLiteral("file_paths")})),
      m_limit(mostFiles),
      m_paths(run)
{
}

void ChunkRows::createTables(ImportRun &run)
{
    for (const char *table : {"mem_chunk", "mem_added"})
        run.statements.run(QStringLiteral("DROP TABLE IF EXISTS temp.") + QLatin1String(table));
    run.statements.run(QStringLiteral(
        "CREATE TEMPORARY TABLE mem_chunk (number INTEGER PRIMARY KEY, file_id INTEGER NOT NULL, kind "
        "INTEGER, size INTEGER, storage_id INTEGER, continue_id INTEGER, thumbnail_id INTEGER, "
        "is_long INTEGER, id_code TEXT)"));
    run.statements.run(QStringLiteral("CREATE TEMPORARY TABLE mem_added (file_id INTEGER PRIMARY KEY, "
                                      "new_file_id INTEGER NOT NULL)"));
}

const ChunkRows::All &ChunkRows::begin()
{
    m_run.statements.each(
        QStringLiteral("SELECT count(*), total(CASE internal WHEN 1 THEN max(0,file_size) ELSE 0 END), "
                       "max(internal=1 AND file_size<>0), max(thumbnail_id>0) FROM mem_files WHERE fate=0"),
        [this](const ImportStatements::Row &row) {
            m_all = {double(row.number(0)), double(row.number(1)), row.number(2) != 0,
                     row.number(3) != 0 && m_run.source.has({QStringLiteral("thumbnails")})};
        });
    const auto highest = [this](const char *table, const char *column) {
        return m_run.statements.nextId(QLatin1String(table), QLatin1String(column)) - 1;
    };
    m_loadId = highest("files", "load_id") + 1;
    m_fileId = highest("files", "file_id");
    m_storageId = qMax(highest("storage_info", "storage_id"), highest("storage", "storage_id"));
    m_thumbnailId = highest("thumbnails", "thumbnail_id");
    m_pathId = highest("file_paths", "path_id");
    return m_all;
}

qint64 ChunkRows::choose(qint64 first, qint64 last)
{
    m_leftOut.clear();
    const qint64 reached = fill(first, last);
    const qint64 cutAt = m_hasChains || m_bytes > mostBytes ? cut() : 0;
    return cutAt > 0 ? cutAt : reached;
}

qint64 ChunkRows::fill(qint64 first, qint64 last)
{
    const QString link = m_hasBlocks
                             ? QStringLiteral("LEFT JOIN fileSource.storage_info AS i ON m.internal=1 "
                                              "AND m.file_size<>0 AND i.storage_id=m.storage_id ")
                             : QString();
    const QString continueId = m_hasBlocks ? QStringLiteral("CASE WHEN i.storage_id IS NOT NULL THEN ") +
                                                 ImportStatements::asNumber(QStringLiteral("i.continue_id")) +
                                                 QStringLiteral(" END")
                                           : QStringLiteral("NULL");
    m_run.statements.run(QStringLiteral("DELETE FROM mem_chunk"));
    const int count = m_run.statements.run(
        QStringLiteral(
            "INSERT INTO mem_chunk (file_id,kind,size,storage_id,continue_id,thumbnail_id,is_long,id_code) "
            "SELECT m.file_id, m.internal, m.file_size, m.storage_id, %1, m.thumbnail_id, "
            "ifnull(length(s.file_name)>%2, 0) OR ifnull(length(s.file_description)>%2, 0), "
            "CASE WHEN length(s.id_code) BETWEEN 1 AND 7 THEN CAST(s.id_code AS TEXT) END FROM mem_files AS "
            "m "
            "CROSS JOIN fileSource.files AS s ON s.file_id=m.file_id %3"
            "WHERE m.fate=0 AND m.file_id BETWEEN ? AND ? ORDER BY m.file_id LIMIT ?")
            .arg(continueId, QString::number(LongText::mostCharacters), link),
        {first, last, m_limit});
    const bool isAll = count < m_limit;
    summarize();
    return isAll ? last : m_range.last;
}

void ChunkRows::leaveOutUnfit(const QString &condition, const QVariantList &values, const QString &why)
{
    QVector<LeftOut> unfit;
    m_run.statements.each(
        QStringLiteral("SELECT c.number, c.file_id, substr(f.file_name, 1, 500) FROM mem_chunk AS c "
                       "CROSS JOIN fileSource.files AS f ON f.file_id=c.file_id ") +
            condition,
        values, [&](const ImportStatements::Row &row) {
            unfit.append({row.number(0), row.number(1), why, row.text(2)});
        });
    for (const LeftOut &file : qAsConst(unfit)) {
        for (const char *table : {"storage", "storage_info"})
            m_run.statements.run(
                QStringLiteral("DELETE FROM main.%1 WHERE storage_id=?").arg(QLatin1String(table)),
                {m_storageId + file.number});
        m_run.statements.run(QStringLiteral("DELETE FROM mem_chunk WHERE number=?"), {file.number});
        m_run.statements.run(QStringLiteral("UPDATE mem_files SET fate=2 WHERE file_id=?"), {file.fileId});
    }
    m_leftOut += unfit;
}

void ChunkRows::leaveOut(const QString &why)
{
    leaveOutUnfit(QString(), {}, why);
    tellLeftOut();
}

QString ChunkRows::damageText()
{
    return tr("Files whose contents are missing or damaged: %1");
}

QString ChunkRows::longTextsText()
{
    return tr("Files with texts that are too long: %1");
}

void ChunkRows::tellLeftOut()
{
    for (const LeftOut &file : qAsConst(m_leftOut))
        m_run.report.leaveOut(file.why, file.name);
    m_leftOut.clear();
}

void ChunkRows::summarize()
{
    m_isChain = false;
    m_hasChains = false;
    m_bytes = 0;
    m_run.statements.each(
        QStringLiteral(
            "SELECT count(*), min(file_id), max(file_id), max(is_long), sum(kind=0) FROM mem_chunk"),
        [&](const ImportStatements::Row &row) {
            m_range = {int(row.number(0)), row.number(1), row.number(2)};
            m_hasLongTexts = row.number(3) != 0;
            m_externalFiles = int(row.number(4));
        });
    if (m_all.hasContents)
        m_run.statements.each(
            QStringLiteral("SELECT sum(%1), max(continue_id>0) FROM mem_chunk").arg(bytesOfContents),
            [&](const ImportStatements::Row &row) {
                m_bytes = row.number(0);
                m_hasChains = row.number(1) != 0;
            });
    m_limit = qMin(m_limit * 4, mostFiles);
}

qint64 ChunkRows::cut()
{
    m_bytes = 0;
    int taken = 0;
    qint64 lastNumber = 0;
    qint64 lastId = 0;
    bool isCut = false;
    m_run.statements.each(
        QStringLiteral("SELECT number, file_id, %1, continue_id>0 FROM mem_chunk ORDER BY number")
            .arg(bytesOfContents),
        [&](const ImportStatements::Row &row) {
            const bool isChain = row.number(3) != 0;
            const qint64 bytes = row.number(2);
            isCut = isCut || m_isChain || (taken > 0 && (isChain || m_bytes + bytes > mostBytes));
            if (isCut)
                return;
            ++taken;
            m_isChain = isChain;
            m_bytes += bytes;
            lastNumber = row.number(0);
            lastId = row.number(1);
        });
    // Next time about as many are looked at as can be taken.
    m_limit = qBound(fewestFiles, taken * 2, mostFiles);
    if (!isCut)
        return 0;
    m_range.count = taken;
    m_range.last = lastId;
    m_run.statements.run(QStringLiteral("DELETE FROM mem_chunk WHERE number>?"), {lastNumber});
    return lastId;
}

QVector<qint64> ChunkRows::fileIds()
{
    QVector<qint64> ids;
    m_run.statements.each(QStringLiteral("SELECT file_id FROM mem_chunk ORDER BY number"),
                          [&](const ImportStatements::Row &row) { ids.append(row.number(0)); });
    return ids;
}

void ChunkRows::insertPaths()
{
    if (m_externalFiles == 0 || (m_hasPathTable && m_paths.insert(m_pathId) >= m_externalFiles))
        return;
    const QString length = m_hasPathTable
                               ? QStringLiteral("(SELECT length(p.path) FROM fileSource.file_paths AS p "
                                                "WHERE p.path_id=c.storage_id)")
                               : QStringLiteral("0");
    leaveOutUnfit(QStringLiteral("WHERE c.kind=0 AND ifnull(%1, 0)=0").arg(length), {},
                  tr("External files without a path: %1"));
    leaveOutUnfit(QStringLiteral("WHERE c.kind=0 AND %1>?").arg(length), {LongText::mostCharacters},
                  longTextsText());
}

bool ChunkRows::copy(const AtBlock &atBlock)
{
    if (m_hasLongTexts)
        leaveOutUnfit(QStringLiteral("WHERE c.is_long"), {}, longTextsText());
    if (m_isChain && !insertChain(atBlock))
        return false;
    if (!m_isChain && m_all.hasContents)
        insertBlocks();
    insertPaths();
    drawIdCodes();
    if (insertFiles(IgnoreTaken) < m_range.count - m_leftOut.size()) {
        // Codes that are in use, which the index of the codes tells for nothing.
        m_run.statements.run(QStringLiteral("UPDATE mem_chunk SET id_code=NULL WHERE NOT EXISTS "
                                            "(SELECT 1 FROM main.files AS f WHERE f.file_id=?+number)"),
                             {m_fileId});
        drawIdCodes();
        insertFiles(Remaining);
    }
    if (m_all.hasThumbnails)
        insertThumbnails();
    const int count = m_run.statements.run(
        QStringLiteral("INSERT INTO mem_added (file_id,new_file_id) SELECT file_id, ?+number FROM mem_chunk"),
        {m_fileId});
    const qint64 highest = m_run.statements.number(QStringLiteral("SELECT max(number) FROM mem_chunk"));
    m_fileId += highest;
    m_thumbnailId += highest;
    m_pathId += highest;
    m_storageId =
        m_isChain ? m_run.statements.nextId(QStringLiteral("storage_info"), QStringLiteral("storage_id")) - 1
                  : m_storageId + highest;
    m_run.report.count(ImportReport::Files, count);
    return true;
}

void ChunkRows::drawIdCodes()
{
    QVector<qint64> without;
    QSet<QString> taken;
    m_run.statements.each(QStringLiteral("SELECT number FROM mem_chunk WHERE id_code IS NULL"),
                          [&](const ImportStatements::Row &row) { without.append(row.number(0)); });
    if (without.isEmpty())
        return;
    m_run.statements.each(QStringLiteral("SELECT id_code FROM mem_chunk WHERE id_code IS NOT NULL"),
                          [&](const ImportStatements::Row &row) { taken.insert(row.text(0)); });
    for (const qint64 number : qAsConst(without)) {
        QString code;
        do {
            if (!m_run.worker.nextIdCode(code))
                throw CriticalDMError(m_run.worker.lastError());
        } while (taken.contains(code));
        taken.insert(code);
        m_run.statements.run(QStringLiteral("UPDATE mem_chunk SET id_code=? WHERE number=?"), {code, number});
    }
}

int ChunkRows::insertFiles(Which which)
{
    const QString thumbnail =
        m_all.hasThumbnails
            ? QStringLiteral(
                  "CASE WHEN c.thumbnail_id>0 AND EXISTS (SELECT 1 FROM fileSource.thumbnails AS t "
                  "WHERE t.thumbnail_id=c.thumbnail_id AND typeof(t.thumbnail)='blob') "
                  "THEN ?+c.number ELSE 0 END")
            : QStringLiteral("0*?");
    const QString description = m_takesDescriptions
                                    ? QStringLiteral("COALESCE(CAST(s.file_description AS TEXT),'')")
                                    : QStringLiteral("''");
    const QString conflict = which == IgnoreTaken ? QStringLiteral("OR IGNORE") : QString();
    const QString condition =
        which == IgnoreTaken
            ? QStringLiteral("?")
            : QStringLiteral("NOT EXISTS (SELECT 1 FROM main.files AS f WHERE f.file_id=?+c.number)");
    return m_run.statements.run(
        QStringLiteral(
            "INSERT %3 INTO main.files (file_id,file_name,file_description,file_size,addition_date,"
            "modification_date,id_code,load_id,storage_id,thumbnail_id,data_checksum,internal) "
            "SELECT ?+c.number, COALESCE(CAST(s.file_name AS TEXT),''), %1, m.file_size, ?, "
            "m.modification_date, c.id_code, ?, "
            "CASE c.kind WHEN 0 THEN ?+c.number WHEN 1 THEN ?+c.number ELSE 0 END, %2, "
            "max(0,m.data_checksum), m.internal FROM mem_chunk AS c "
            "CROSS JOIN mem_files AS m ON m.file_id=c.file_id "
            "CROSS JOIN fileSource.files AS s ON s.file_id=c.file_id WHERE %4 ORDER BY c.number")
            .arg(description, thumbnail, conflict, condition),
        {m_fileId, QDateTime::currentSecsSinceEpoch(), m_loadId, m_pathId, m_storageId, m_thumbnailId,
         which == IgnoreTaken ? 1 : m_fileId});
}

void ChunkRows::insertThumbnails()
{
    m_run.statements.run(
        QStringLiteral("INSERT INTO main.thumbnails (thumbnail_id,thumbnail) "
                       "SELECT ?+c.number, t.thumbnail FROM mem_chunk AS c "
                       "CROSS JOIN fileSource.thumbnails AS t ON t.thumbnail_id=c.thumbnail_id "
                       "WHERE c.thumbnail_id>0 AND typeof(t.thumbnail)='blob' ORDER BY c.number"),
        {m_thumbnailId});
}

void ChunkRows::insertBlocks()
{
    leaveOutUnfit(QStringLiteral("WHERE c.kind=1 AND c.size<>0 AND c.continue_id IS NULL"), {}, damageText());
    if (!m_hasBlocks)
        return;
    const int links = m_run.statements.run(
        QStringLiteral("INSERT INTO main.storage_info (storage_id,continue_id) "
                       "SELECT ?+number, 0 FROM mem_chunk WHERE kind=1 AND size<>0 ORDER BY number"),
        {m_storageId});
    // Fewer bytes than recorded is a chain that lost its end. More are right where a size did not fit its
    // column.
    const int blocks = m_run.statements.run(
        QStringLiteral("INSERT INTO main.storage (storage_id,data) SELECT ?+c.number, CAST(b.data AS BLOB) "
                       "FROM mem_chunk AS c CROSS JOIN fileSource.storage AS b ON b.storage_id=c.storage_id "
                       "WHERE c.kind=1 AND c.size<>0 AND CASE typeof(b.data) WHEN 'null' THEN c.size<=0 "
                       "WHEN 'blob' THEN length(b.data)>=c.size "
                       "ELSE length(CAST(b.data AS BLOB))>=c.size END ORDER BY c.number"),
        {m_storageId});
    if (blocks < links)
        leaveOutUnfit(QStringLiteral("LEFT JOIN main.storage AS b ON b.storage_id=?+c.number "
                                     "WHERE c.kind=1 AND c.size<>0 AND b.storage_id IS NULL"),
                      {m_storageId}, damageText());
}

bool ChunkRows::insertChain(const AtBlock &atBlock)
{
    qint64 oldId = 0;
    qint64 newId = 0;
    qint64 size = 0;
    m_run.statements.each(QStringLiteral("SELECT storage_id, ?+number, size FROM mem_chunk"), {m_storageId},
                          [&](const ImportStatements::Row &row) {
                              oldId = row.number(0);
                              newId = row.number(1);
                              size = row.number(2);
                          });
    QSet<qint64> seen;
    qint64 done = 0;
    while (oldId > 0) {
        m_run.stopIfEnded();
        qint64 nextId = 0;
        bool isRead = false;
        m_run.statements.each(
            QStringLiteral(
                "SELECT i.continue_id, length(CAST(b.data AS BLOB)) FROM fileSource.storage_info AS i "
                "JOIN fileSource.storage AS b ON b.storage_id=i.storage_id WHERE i.storage_id=?"),
            {oldId}, [&](const ImportStatements::Row &row) {
                isRead = row.readNumber(0, nextId);
                done += row.number(1);
            });
        // A chain that returns into itself would fill the disk.
        if (!isRead || seen.contains(oldId))
            return false;
        seen.insert(oldId);
        m_run.statements.run(
            QStringLiteral("INSERT INTO main.storage_info (storage_id,continue_id) VALUES (?,?)"),
            {newId, nextId > 0 ? newId + 1 : 0});
        m_run.statements.run(
            QStringLiteral("INSERT INTO main.storage (storage_id,data) "
                           "SELECT ?, CAST(data AS BLOB) FROM fileSource.storage WHERE storage_id=?"),
            {newId, oldId});
        atBlock(done);
        ++newId;
        oldId = nextId;
    }
    return done >= size;
}
