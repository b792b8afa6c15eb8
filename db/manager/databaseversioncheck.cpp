#include "db/manager/databaseversioncheck.h"

#include "app/settings/constants.h"
#include "core/prompts/userprompts.h"
#include "db/migrations/databaseupdater.h"
#include "db/sql/connections.h"
#include "db/sql/databaselock.h"
#include "db/sql/postgresqueryconstructor.h"
#include "db/sql/readbound.h"
#include "db/sql/schemacheck.h"
#include "db/sql/serverwatch.h"
#include "db/sql/sqlitequeryconstructor.h"

#include <QDebug>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <memory>

namespace {
std::unique_ptr<AbstractQueryConstructor> makeConstructor(int type)
{
    if (type == Constants::serverDatabase)
        return std::make_unique<PostgresQueryConstructor>();
    return std::make_unique<SqliteQueryConstructor>();
}

// The first statement that meets a lock ends the check, and the window stands still until then.
const QString shortBusyTimeout = QStringLiteral("QSQLITE_BUSY_TIMEOUT=1500");

QString busyTimeout(const DBDetails &details)
{
    return details.type() == Constants::localDatabase ? shortBusyTimeout : QString();
}

QSqlError runOn(const QSqlDatabase &database, const QString &statement)
{
    const ServerWatch::Waiting waiting(database);
    QSqlQuery query(database);
    query.exec(statement);
    return query.lastError();
}

/** Writes a row that names nothing. */
QSqlError tryToWrite(const QSqlDatabase &database)
{
    const ServerWatch::Waiting waiting(database);
    QSqlQuery query(database);
    // Rolled back in any case by the transaction around it.
    query.prepare(QStringLiteral("INSERT INTO file_tag VALUES(0,0);"));
    query.exec();
    return query.lastError();
}
} // namespace

DatabaseVersionCheck::DatabaseVersionCheck(const DBDetails &details, UserPrompts &prompts)
    : m_details(details), m_prompts(prompts)
{
}

bool DatabaseVersionCheck::run() const
{
    const QString name = Constants::temporaryConnection;
    if (!Connections::isDatabaseThere(m_details)) {
        qDebug() << "Could not open database connection " << name << "ERROR: no such file";
        return false;
    }
    const Connections::Result opened = Connections::open(name, m_details, busyTimeout(m_details));
    if (!opened.isOpen) {
        qDebug() << "Could not open database connection " << name << "ERROR:" << opened.error;
        return false;
    }
    const bool accepted = askUser(QSqlDatabase::database(name, false));
    Connections::close(name);
    return accepted;
}

bool DatabaseVersionCheck::askUser(QSqlDatabase database) const
{
    // In one transaction: what could be read first, nobody locks until its end.
    const bool isBegun = database.transaction();
    // The bound ends before anybody is asked, as a box may stand for minutes.
    const Finding finding = [&] {
        const ReadBound bound(database);
        return examine(database, isBegun);
    }();
    database.rollback();
    switch (finding) {
    case InUse:
        refuse(DatabaseLock::inUseText());
        return false;
    case Foreign:
        refuse(tr("The database holds parts that Vorna did not make, such as views or triggers. It was not "
                  "opened, so that nothing in it can run."));
        return false;
    case Unknown:
        explainUnknown(database);
        return false;
    case Old:
        return upgrade(database);
    default:
        return true;
    }
}

DatabaseVersionCheck::Finding DatabaseVersionCheck::examine(QSqlDatabase &database, bool isBegun) const
{
    const bool isLocal = m_details.type() == Constants::localDatabase;
    if (isLocal && isLock(runOn(database, QStringLiteral("SELECT count(*) FROM sqlite_master;"))))
        return InUse;
    // Before the first statement that could run what stands in the file.
    if (isLocal && SchemaCheck::holdsForeignParts(database))
        return Foreign;
    const QSqlError writeError = isBegun ? tryToWrite(database) : QSqlError();
    // A server refuses everything else in a transaction that has failed.
    if (!isLocal)
        database.rollback();
    if (isLock(writeError) || !isFreeToRead(database))
        return InUse;
    const std::unique_ptr<AbstractQueryConstructor> constructor = makeConstructor(m_details.type());
    const DataBaseUpdater updater(constructor.get());
    if (!updater.isVersionKnown(database))
        return Unknown;
    // Who may not write is not asked for an upgrade that could only fail.
    return updater.needsUpgrade(database) && !writeError.isValid() ? Old : Fit;
}

bool DatabaseVersionCheck::isFreeToRead(const QSqlDatabase &database) const
{
    return !isLock(runOn(database, QStringLiteral("SELECT version FROM scheme_version;"))) &&
           !isLock(runOn(database, QStringLiteral("SELECT version FROM vorna_version;")));
}

bool DatabaseVersionCheck::isLock(const QSqlError &error) const
{
    return DatabaseLock::isMetBy(error, Connections::driverOf(m_details.type()));
}

bool DatabaseVersionCheck::upgrade(QSqlDatabase &database) const
{
    if (!m_prompts.confirm(
            {UserPrompts::Warning, QString(),
             tr("The database was created with an earlier version of Vorna."),
             tr("The file will be upgraded to the current version but will not be backward compatible.")}))
        return false;

    const std::unique_ptr<AbstractQueryConstructor> constructor = makeConstructor(m_details.type());
    const bool upgraded = DataBaseUpdater(constructor.get()).update(database);
    if (!upgraded) {
        // Between the question and the answer somebody else may have opened it.
        const bool isInUse = database.transaction() && isLock(tryToWrite(database));
        database.rollback();
        if (isInUse) {
            refuse(DatabaseLock::inUseText());
            return false;
        }
    }
    m_prompts.tell(UserPrompts::Plain, QString(),
                   upgraded ? tr("Database upgraded successfully.")
                            : tr("Problem occurred while upgrading database. Probably you have no permission "
                                 "to perform this operation."));
    return upgraded;
}

void DatabaseVersionCheck::explainUnknown(const QSqlDatabase &database) const
{
    const QStringList tables = database.tables();
    const bool isOurs =
        tables.contains(QLatin1String("scheme_version")) || tables.contains(QLatin1String("vorna_version"));
    refuse(isOurs ? tr("The database is not supported")
                  : tr("The database could be corrupted please check it."));
}

void DatabaseVersionCheck::refuse(const QString &reason) const
{
    m_prompts.tell(UserPrompts::Warning, tr("Error opening database"), reason);
}
