#include "db/migrations/databaseupdater.h"

#include "db/migrations/dbversiontransition_2_0_6.h"
#include "db/migrations/dbversiontransition_2_0_7.h"
#include "db/migrations/dbversiontransition_2_0_8.h"
#include "db/migrations/dbversiontransition_3_2_0.h"
#include "db/migrations/dbversiontransition_4_1_0.h"
#include "db/sql/databaseversion.h"
#include "db/sql/serverwatch.h"

#include <QDebug>
#include <QSqlError>
#include <QSqlQuery>

namespace {
/** The text of the one version row; false, with a line in the log, when there is none. */
bool readVersion(const QString &select, const QSqlDatabase &database, QString &text)
{
    const ServerWatch::Waiting waiting(database);
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.exec(select) || !query.next() || query.lastError().isValid()) {
        qDebug() << "Error" << query.lastError();
        return false;
    }
    text = query.value(0).toString();
    qDebug() << "VERS" << text;
    return true;
}
} // namespace

DataBaseUpdater::DataBaseUpdater(const AbstractQueryConstructor *constructor, QObject *parent)
    : QObject(parent), m_constructor(constructor)
{
}

bool DataBaseUpdater::isVersionKnown(const QSqlDatabase &database) const
{
    return versionOf(database) != UnknownVersion;
}

bool DataBaseUpdater::needsUpgrade(const QSqlDatabase &database) const
{
    return versionOf(database) < DataBaseVersions::current;
}

bool DataBaseUpdater::update(const QSqlDatabase &database) const
{
    const int version = versionOf(database);
    if (version == UnknownVersion || version >= DataBaseVersions::current)
        return false;
    return upgradeTo(DataBaseVersions::current, database);
}

int DataBaseUpdater::versionOf(const QSqlDatabase &database) const
{
    QString text;
    if (database.tables(QSql::Tables).contains(QLatin1String("scheme_version"))) {
        return readVersion(QStringLiteral("SELECT version FROM scheme_version"), database, text)
                   ? DataBaseVersions::fromSchemaText(text)
                   : int(UnknownVersion);
    }
    return readVersion(QStringLiteral("SELECT version FROM vorna_version"), database, text)
               ? DataBaseVersions::fromProgramText(text)
               : int(UnknownVersion);
}

bool DataBaseUpdater::upgradeTo(int target, const QSqlDatabase &database) const
{
    const int current = versionOf(database);
    if (target <= current)
        return target == current;
    if (target == current + 1) {
        qDebug() << "MIGRATE To " << DataBaseVersions::name(target) << " From "
                 << DataBaseVersions::name(current);
        // A step may succeed without a stamp, as 2.0.7 does on a server: going on would never end.
        return runTransition(target, database) && versionOf(database) > current;
    }
    for (int next = current + 1; next <= DataBaseVersions::current; ++next) {
        if (!upgradeTo(next, database))
            return false;
    }
    return true;
}

bool DataBaseUpdater::runTransition(int target, const QSqlDatabase &database) const
{
    switch (target) {
    case Version_0_5_3:
    case Version_2_0_3:
    case Version_2_0_6:
        return DBVersionTransition_2_0_6().run(database);
    case Version_2_0_7:
        return DBVersionTransition_2_0_7().run(database);
    case Version_2_0_8:
        return DBVersionTransition_2_0_8().run(database);
    case Version_3_2_0:
        return DBVersionTransition_3_2_0().run(database);
    case Version_4_1_0:
        return DBVersionTransition_4_1_0(m_constructor).run(database);
    default:
        return false;
    }
}
