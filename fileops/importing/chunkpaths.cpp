#include "fileops/importing/chunkpaths.h"

#include "db/sql/longtext.h"
#include "fileops/importing/importrun.h"
#include "fileops/worker/fileoperationworker.h"

#include <QSqlDatabase>

ChunkPaths::ChunkPaths(ImportRun &run)
    : m_run(run),
      m_locator(Database::pathLocator(run.worker.connectionName())),
      m_function(QSqlDatabase::database(run.worker.connectionName(), false), "relative_path",
                 [this](const QByteArray &path) { return relative(path); })
{
}

int ChunkPaths::insert(qint64 idsBefore)
{
    return m_run.statements.run(
        QStringLiteral("INSERT INTO main.file_paths (path_id,path,rel_path) "
                       "SELECT ?+c.number, CAST(p.path AS TEXT), relative_path(p.path) FROM mem_chunk AS c "
                       "CROSS JOIN fileSource.file_paths AS p ON p.path_id=c.storage_id "
                       "WHERE c.kind=0 AND length(p.path) BETWEEN 1 AND ? ORDER BY c.number"),
        {idsBefore, LongText::mostCharacters});
}

QByteArray ChunkPaths::relative(const QByteArray &path)
{
    const int nameAt = path.lastIndexOf('/') + 1;
    if (m_relativeFolder.isEmpty() || nameAt != m_folder.size() || !path.startsWith(m_folder)) {
        m_folder = path.left(nameAt);
        // The name of a file may be anything, also one that would be cleaned away.
        const QString place = QString::fromUtf8(m_folder) + QLatin1Char('x');
        m_relativeFolder = Database::relativePath(place, m_locator).toUtf8();
        m_relativeFolder.chop(1);
    }
    return m_relativeFolder + QByteArray::fromRawData(path.constData() + nameAt, path.size() - nameAt);
}
