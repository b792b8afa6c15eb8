#include "fileops/tracking/filerefresh.h"

#include "db/sql/transaction.h"
#include "fileops/looks/filelooks.h"
#include "fileops/pictures/thumbnailmaker.h"
#include "fileops/pictures/thumbnailsahead.h"
#include "fileops/worker/fileoperationworker.h"

QVector<qint64> FileRefresh::write()
{
    QVector<qint64> refreshed;
    Transaction transaction(m_worker, m_worker.connectionName());
    if (!transaction.isActive())
        return {};
    for (const ModifiedFile &file : qAsConst(m_files)) {
        if (m_worker.shouldEnd() || m_worker.isSavepointLost() || m_worker.isConnectionLost())
            break;
        Savepoint savepoint(m_worker);
        if (savepoint.isActive() && writeFile(file) && savepoint.release())
            refreshed.append(file.fileId);
    }
    const bool isStored = !m_worker.isSavepointLost() && !refreshed.isEmpty() && transaction.commit();
    return isStored ? refreshed : QVector<qint64>();
}

void FileRefresh::prepare(const ModifiedFileList &files)
{
    QStringList paths;
    QVector<qint64> ids;
    for (const ModifiedFile &file : files) {
        if (file.hasOtherContents() && file.thumbnailId != 0 && ThumbnailMaker::isImageName(file.path)) {
            paths.append(file.path);
            ids.append(file.fileId);
        }
    }
    ThumbnailsAhead ahead(paths, [this] { return m_worker.shouldEnd(); });
    for (int i = 0; i < paths.size() && !m_worker.shouldEnd(); ++i)
        m_thumbnails.insert(ids.at(i), ahead.pngOf(paths.at(i)));
    QStringList all;
    for (const ModifiedFile &file : files)
        all.append(file.path);
    // One may have gone while the others were read.
    const QVector<AnsweredLook> looks = FileLooks::at(all, [this] { return m_worker.shouldEnd(); });
    for (int i = 0; i < files.size(); ++i) {
        if (looks.at(i).look.isThere)
            m_files.append(files.at(i));
    }
}

bool FileRefresh::writeFile(const ModifiedFile &file)
{
    static const QString update =
        QStringLiteral("UPDATE files SET modification_date=?,data_checksum=?,file_size=?,file_name=? "
                       "WHERE file_id=? AND id_code=? AND internal=0;");
    const QString name = file.path.mid(file.path.lastIndexOf(QLatin1Char('/')) + 1);
    const QByteArray thumbnail = m_thumbnails.value(file.fileId);
    return m_worker.runFast(update,
                            {file.modified, file.checksum, file.size, name, file.fileId, file.idCode}) &&
           (thumbnail.isEmpty() || ThumbnailMaker(m_worker).store(thumbnail, file.thumbnailId, false));
}

bool FileRefresh::bequeath(qint64 gone, qint64 kept)
{
    // The row that is written to cannot go before the transaction ends, whoever else is at work.
    static const QString describe = QStringLiteral(
        "UPDATE files SET file_description=CASE WHEN file_description IS NULL OR file_description='' THEN "
        "(SELECT file_description FROM files WHERE file_id=?) ELSE file_description END WHERE file_id=?;");
    static const QString find = QStringLiteral("SELECT file_id FROM files WHERE file_id=?;");
    static const QString linkTags =
        QStringLiteral("INSERT INTO file_tag (file_id,tag_id) SELECT CAST(? AS BIGINT), tag_id FROM file_tag "
                       "WHERE file_id=? "
                       "AND tag_id NOT IN (SELECT tag_id FROM file_tag WHERE file_id=?);");
    TableData rows;
    const bool isThere =
        m_worker.runFast(describe, {gone, kept}) && m_worker.runFast(find, {kept}, rows) && !rows.isEmpty();
    freeRows(rows);
    return isThere && m_worker.runFast(linkTags, {kept, gone, kept});
}
