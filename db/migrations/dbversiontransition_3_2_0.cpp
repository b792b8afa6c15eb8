#include "db/migrations/dbversiontransition_3_2_0.h"

#include "db/migrations/migrationstatements.h"
#include "db/sql/databaseversion.h"

#include <QDebug>

bool DBVersionTransition_3_2_0::run(const QSqlDatabase &database)
{
    qDebug() << "DataBase migrating to v 3_2_0";
    return MigrationStatements::runAsOne(
        database, MigrationStatements::schemaStamp(database, DataBaseVersions::name(Version_3_2_0)),
        [](const QSqlError &error, const QString &statement) {
            qDebug() << "DBVersionTranstion_3_2_0 :" << error.text() << statement;
        });
}
