#include "db/migrations/dbversiontransition_2_0_8.h"

#include "db/migrations/migrationstatements.h"
#include "db/sql/databaseversion.h"

#include <QDebug>

bool DBVersionTransition_2_0_8::run(const QSqlDatabase &database)
{
    qDebug() << "DataBase migrating to v 2.0.8";
    const QString version = DataBaseVersions::name(Version_2_0_8);
    QStringList statements;
    if (!MigrationStatements::hasTable(database, QStringLiteral("tb_autolinks"))) {
        statements += QStringLiteral("CREATE TABLE tb_autolinks ( link_id TEXT PRIMARY KEY, "
                                     "link_abs_path TEXT, link_rel_path TEXT );");
    }
    if (!MigrationStatements::hasTable(database, QStringLiteral("tb_nodes_autolinks"))) {
        statements += QStringLiteral("CREATE TABLE tb_nodes_autolinks ( link_id TEXT, node_id INTEGER );");
    }
    // Both stamps together: between them the one of the schema would hide that the other is missing.
    statements += MigrationStatements::schemaStamp(database, version);
    statements += MigrationStatements::programStamp(version);
    return MigrationStatements::runAsOne(database, statements,
                                         MigrationStatements::logAs("DBVersionTranstion_2_0_8 :"));
}
