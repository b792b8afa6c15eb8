#include "db/loading/filesource.h"

#include "app/settings/constants.h"
#include "db/loading/postgresfilesource.h"
#include "db/loading/sqlitefilesource.h"
#include "db/sql/connections.h"

FileSource::~FileSource() = default;

std::unique_ptr<FileSource> FileSource::make(const DBDetails &details, const FileStatements &statements)
{
    // Made on the window's thread, opened by begin() on the one that reads.
    if (details.type() == Constants::serverDatabase)
        return std::make_unique<PostgresFileSource>(details, statements);
    return std::make_unique<SqliteFileSource>(details, statements);
}

const QString &FileSource::connectionName()
{
    static const QString name = QStringLiteral("LoadConnection");
    return name;
}

bool FileSource::open(const QString &options)
{
    const Connections::Result result = Connections::open(connectionName(), m_details, options);
    return result.isOpen || fail(result.error);
}

bool FileSource::fail(const QSqlError &error)
{
    m_error = error;
    return false;
}

bool FileSource::lose()
{
    m_isLost = true;
    return false;
}
