#include "db/migrations/dbversiontransition_2_0_6.h"

#include "db/migrations/migrationstatements.h"
#include "db/sql/databaseversion.h"
#include "db/sql/sqltext.h"

namespace {
QStringList selectionTable()
{
    const QString columns =
        QStringLiteral("id, tag_tb_selection, tag_relations_tb_selection, tag_requirments_selection,"
                       "file_and_link_selection, browsing_tree_selection");
    QStringList values;
    for (int i = 0; i < 6; ++i)
        values.append(SqlText::quoted(QString()));
    return {QStringLiteral("CREATE TABLE tb_settings ( id TEXT PRIMARY KEY, tag_tb_selection TEXT, "
                           "tag_relations_tb_selection TEXT, tag_requirments_selection TEXT, "
                           "file_and_link_selection TEXT, browsing_tree_selection TEXT );"),
            SqlText::fill(QStringLiteral("INSERT INTO tb_settings (%1) VALUES(%2)"),
                          {columns, values.join(QLatin1String(", "))})};
}
} // namespace

bool DBVersionTransition_2_0_6::run(const QSqlDatabase &database)
{
    QStringList statements;
    if (!MigrationStatements::hasTable(database, QStringLiteral("tb_settings")))
        statements += selectionTable();
    if (!MigrationStatements::hasTable(database, QStringLiteral("tb_settings_tag_rlat_expansion"))) {
        statements += QStringLiteral("CREATE TABLE tb_settings_tag_rlat_expansion( relationship_path TEXT "
                                     "PRIMARY KEY, expanded BOOLEAN, CHECK( length(relationship_path>0) ));");
    }
    // With the stamp or not at all: a table that is there already would never get its row.
    statements += MigrationStatements::programStamp(DataBaseVersions::name(Version_2_0_6));
    return MigrationStatements::runAsOne(database, statements,
                                         MigrationStatements::logAs("DBVersionTranstion_2_0_6 :"));
}
