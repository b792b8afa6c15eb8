#include "db/sql/schema.h"

#include "app/settings/constants.h"
#include "db/sql/sqltext.h"

namespace Schema {
QStringList creationStatements()
{
    static const QStringList statements{
        QStringLiteral("CREATE TABLE files (file_id INTEGER PRIMARY KEY,file_name TEXT,file_description "
                       "TEXT, file_size INTEGER NOT NULL, addition_date INTEGER NOT NULL, "
                       "modification_date INTEGER NOT NULL,id_code CHARACTER(7) NOT NULL UNIQUE,load_id "
                       "INTEGER NOT NULL, storage_id INTEGER NOT NULL CHECK(storage_id>=0), thumbnail_id "
                       "INTEGER, data_checksum INTEGER NOT NULL,internal INTEGER NOT NULL,  CONSTRAINT "
                       "checksum_valid CHECK(data_checksum>=0));"),
        QStringLiteral("CREATE TABLE file_paths (path_id INTEGER PRIMARY KEY, path TEXT NOT NULL, "
                       "rel_path TEXT NOT NULL);"),
        QStringLiteral("CREATE TABLE thumbnails ( thumbnail_id INTEGER PRIMARY KEY, thumbnail BLOB NOT "
                       "NULL );"),
        QStringLiteral("CREATE TABLE file_tag (file_id INTEGER NOT NULL,tag_id INTEGER NOT NULL, PRIMARY "
                       "KEY (file_id, tag_id) );"),
        QStringLiteral("CREATE TABLE storage (storage_id INTEGER PRIMARY KEY, data LONGBLOB);"),
        QStringLiteral("CREATE TABLE storage_info (storage_id INTEGER PRIMARY KEY,continue_id INTEGER);"),
        QStringLiteral("CREATE TABLE tags (tag_id INTEGER PRIMARY KEY, tag_name VARCHAR, tag_description "
                       "VARCHAR, creation_date INTEGER NOT NULL, created_by TEXT);"),
        QStringLiteral("CREATE TABLE tag_group_links (tag_id INTEGER NOT NULL, tag_group_id INTEGER NOT "
                       "NULL, PRIMARY KEY (tag_id, tag_group_id));"),
        QStringLiteral("CREATE TABLE tag_groups (tag_group_id INTEGER PRIMARY KEY, name TEXT);"),
        QStringLiteral("CREATE TABLE tb_node_links (parent_id INTEGER NOT NULL, child_id INTEGER NOT "
                       "NULL, PRIMARY KEY (child_id) );"),
        QStringLiteral("CREATE TABLE tb_nodes (node_id INTEGER PRIMARY KEY, tag_id INTEGER NOT NULL, "
                       "tr_options INTEGER NOT NULL, inverted INTEGER NOT NULL, CONSTRAINT valid_node_id "
                       "CHECK(node_id>0) );"),
        QStringLiteral("CREATE TABLE tb_autolinks (link_id TEXT PRIMARY KEY, link_abs_path TEXT, "
                       "link_rel_path TEXT);"),
        QStringLiteral("CREATE TABLE tb_nodes_autolinks (link_id TEXT,node_id INTEGER );"),
        QStringLiteral("CREATE TABLE tag_relationships (relationship_path TEXT PRIMARY KEY, CHECK( "
                       "length(relationship_path)>0) );"),
        QStringLiteral("CREATE TABLE file_group_links (file_id INTEGER PRIMARY KEY,group_id INTEGER NOT "
                       "NULL,creation_date INTEGER NOT NULL,created_by TEXT );"),
        QStringLiteral("CREATE TABLE file_groups (group_id INTEGER PRIMARY KEY, group_name TEXT, "
                       "group_type INTEGER NOT NULL, description TEXT, creation_date INTEGER NOT NULL, "
                       "created_by TEXT );"),
        QStringLiteral("CREATE TABLE file_links (parent_id INTEGER,child_Id INTEGER,notes "
                       "TEXT,creation_date INTEGER NOT NULL, created_by TEXT, PRIMARY "
                       "KEY(parent_id,child_id) ); "),
        QStringLiteral("CREATE TABLE hierarchy_group (parent_id INTEGER, group_id INTEGER, PRIMARY "
                       "KEY(parent_id,group_id) );"),
        QStringLiteral("CREATE TABLE file_version (file_id INTEGER PRIMARY KEY, group_id INTEGER NOT "
                       "NULL, revision_no INTEGER NOT NULL, version_no INTEGER NOT NULL, status TEXT, "
                       "notes TEXT, updated_by TEXT ); "),
        QStringLiteral("CREATE TABLE vorna_version (version TEXT);"),
        programVersionInsert(Constants::programVersion),
        QStringLiteral("CREATE TABLE scheme_version (version TEXT);"),
        schemaVersionInsert(Constants::schemaVersion)};
    return statements;
}

QString applicationIdStatement(int id, const QString &databaseName)
{
    return QStringLiteral("PRAGMA %1.application_id=%2;").arg(databaseName, QString::number(id));
}

QString programVersionInsert(const QString &version)
{
    return SqlText::fill(QStringLiteral("INSERT INTO vorna_version VALUES (%1);"),
                         {SqlText::quoted(version)});
}

QString schemaVersionInsert(const QString &version)
{
    return SqlText::fill(QStringLiteral("INSERT INTO scheme_version (version) VALUES (%1);"),
                         {SqlText::quoted(version)});
}
} // namespace Schema
