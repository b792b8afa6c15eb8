#include "fileops/importing/importsource.h"

#include "app/settings/showntext.h"
#include "db/sql/connections.h"
#include "db/sql/readbound.h"
#include "db/sql/schemacheck.h"
#include "db/sql/sqliteerrors.h"
#include "fileops/files/regularfile.h"

#include <QDebug>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace {
const QString sourceConnection = QStringLiteral("importSource");
const QString options = QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_BUSY_TIMEOUT=2000");

struct Table
{
    const char *name;
    const char *columns; ///< those that are read
    bool isWalked;       ///< read from end to end; of others single rows are looked up
};

// Older versions had other columns besides, or fewer; these are what all of them have in common.
constexpr Table tables[] = {
    {"files",
     "file_id,file_name,file_description,file_size,modification_date,id_code,storage_id,thumbnail_id,"
     "data_checksum,internal",
     true},
    {"tags", "tag_id,tag_name,tag_description,creation_date,created_by", true},
    {"file_tag", "file_id,tag_id", true},
    {"tag_groups", "tag_group_id,name", true},
    {"tag_group_links", "tag_id,tag_group_id", true},
    {"tb_nodes", "node_id,tag_id,tr_options,inverted", true},
    {"tb_node_links", "parent_id,child_id", true},
    {"tag_relationships", "relationship_path", true},
    {"file_paths", "path_id,path", false},
    {"thumbnails", "thumbnail_id,thumbnail", false},
    {"storage", "storage_id,data", false},
    {"storage_info", "storage_id,continue_id", false},
};

/** What kept a statement from reading. */
QString reason(const QSqlError &error)
{
    switch (SqliteErrors::primaryCode(error)) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return ImportSource::busyText();
    case SQLITE_READONLY:
        // Reading alone cannot take back what was written.
        return ImportSource::tr("A change to it was broken off. Open it once, and it is put in order.");
    default:
        return ImportSource::tr("It cannot be read as a database: %1").arg(error.databaseText());
    }
}
} // namespace

bool ImportSource::examine(const QString &openDatabase)
{
    if (!Connections::isDatabaseThere(DBDetails::local(m_path)))
        return refuse(tr("The file is missing."));
    // Locks of one file that are held under two names would wait for each other.
    if (RegularFile::isSame(m_path, openDatabase))
        return refuse(tr("This is the open database itself."));
    const Connections::Result opened = Connections::open(sourceConnection, DBDetails::local(m_path), options);
    if (!opened.isOpen) {
        qDebug("FileAddWorker: ERROR OPENING DATABASE.");
        return refuse(tr("The file cannot be opened: %1").arg(opened.error.databaseText()));
    }
    const bool isFit = look(QSqlDatabase::database(sourceConnection, false));
    Connections::close(sourceConnection);
    return isFit;
}

bool ImportSource::look(const QSqlDatabase &database)
{
    const ReadBound bound(database);
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("SELECT count(*) FROM sqlite_master")))
        return refuse(reason(query.lastError()));
    query.finish();
    if (SchemaCheck::holdsForeignParts(database))
        return refuse(tr("It holds parts that Vorna did not make, such as views or triggers."));
    return readSchema(database) && readRows(database);
}

bool ImportSource::readSchema(const QSqlDatabase &database)
{
    for (const Table &table : tables) {
        const QString name = QLatin1String(table.name);
        QSet<QString> columns;
        QSqlQuery query(database);
        query.setForwardOnly(true);
        query.exec(QStringLiteral("PRAGMA table_info('%1')").arg(name));
        while (query.next())
            columns.insert(query.value(QStringLiteral("name")).toString().toLower());
        const QStringList wanted = QString(QLatin1String(table.columns)).split(QLatin1Char(','));
        if (columns.contains(QSet<QString>(wanted.cbegin(), wanted.cend())))
            m_tables.insert(name);
    }
    return has({QStringLiteral("files"), QStringLiteral("tags")}) || refuse(tr("It is no Vorna database."));
}

bool ImportSource::readRows(const QSqlDatabase &database)
{
    // Pages of a damaged file may lead to each other and give rows without end: better seen here, where it is
    // bounded.
    for (const Table &table : tables) {
        const QString name = QLatin1String(table.name);
        QSqlQuery query(database);
        if (!table.isWalked || !has({name}))
            continue;
        if (!query.exec(QStringLiteral("SELECT count(*) FROM %1 NOT INDEXED").arg(name)) || !query.next())
            return refuse(reason(query.lastError()));
    }
    return true;
}

QString ImportSource::busyText()
{
    return tr("Another program is writing to it. Please try again.");
}

QString ImportSource::shownName() const
{
    return ShownText::cut(QFileInfo(m_path).fileName(), 100);
}

bool ImportSource::has(const QStringList &tables) const
{
    return m_tables.contains(QSet<QString>(tables.cbegin(), tables.cend()));
}

QStringList ImportSource::missingTables() const
{
    QStringList missing;
    for (const Table &table : tables) {
        if (!m_tables.contains(QLatin1String(table.name)))
            missing.append(QLatin1String(table.name));
    }
    return missing;
}

bool ImportSource::refuse(const QString &whyNot)
{
    m_whyNot = whyNot;
    return false;
}
