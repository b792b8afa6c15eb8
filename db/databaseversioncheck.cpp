#include "db/databaseversioncheck.h"

#include "app/constants.h"
#include "app/messages.h"
#include "db/connections.h"
#include "db/databaseupdater.h"
#include "db/postgresqueryconstructor.h"
#include "db/schemacheck.h"
#include "db/serverwatch.h"
#include "db/sqlitequeryconstructor.h"

#include <QDebug>
#include <QSqlDatabase>
#include <QSqlQuery>

#include <memory>

namespace {
std::unique_ptr<AbstractQueryConstructor> makeConstructor(int type)
{
    if (type == Constants::serverDatabase)
        return std::make_unique<PostgresQueryConstructor>();
    return std::make_unique<SqliteQueryConstructor>();
}

// Several statements wait for a lock in turn, and the window stands still with them.
const QString shortBusyTimeout = QStringLiteral("QSQLITE_BUSY_TIMEOUT=500");

QString busyTimeout(const DBDetails &details)
{
    return details.type() == Constants::localDatabase ? shortBusyTimeout : QString();
}

/** Writes a row that names nothing, and takes it back. */
bool isReadOnly(QSqlDatabase database)
{
    const ServerWatch::Waiting waiting(database);
    if (!database.transaction())
        return false;
    QSqlQuery query(database);
    query.prepare(QStringLiteral("INSERT INTO file_tag VALUES(0,0);"));
    query.exec();
    const bool failed = query.lastError().isValid();
    query.finish();
    database.rollback();
    return failed;
}
} // namespace

DatabaseVersionCheck::DatabaseVersionCheck(const DBDetails &details) : m_details(details) {}

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

bool DatabaseVersionCheck::askUser(const QSqlDatabase &database) const
{
    // Before the first statement that could run what stands in the file.
    if (m_details.type() == Constants::localDatabase && SchemaCheck::holdsForeignParts(database)) {
        refuse(tr("The database holds parts that Vorna did not make, such as views or triggers. It was not "
                  "opened, so that nothing in it can run."));
        return false;
    }
    const std::unique_ptr<AbstractQueryConstructor> constructor = makeConstructor(m_details.type());
    const DataBaseUpdater updater(constructor.get());
    const bool readOnly = isReadOnly(database);
    if (!updater.isVersionKnown(database)) {
        explainUnknown(database);
        return false;
    }
    return readOnly || !updater.needsUpgrade(database) || upgrade(database);
}

bool DatabaseVersionCheck::upgrade(const QSqlDatabase &database) const
{
    Messages::Box question;
    question.icon = QMessageBox::Warning;
    question.text = tr("The database was created with an earlier version of Vorna.");
    question.informativeText =
        tr("The file will be upgraded to the current version but will not be backward compatible.");
    question.buttons = QMessageBox::Ok | QMessageBox::Cancel;
    question.defaultButton = QMessageBox::Cancel;
    if (Messages::run(nullptr, question).button != QMessageBox::Ok)
        return false;

    const std::unique_ptr<AbstractQueryConstructor> constructor = makeConstructor(m_details.type());
    const bool upgraded = DataBaseUpdater(constructor.get()).update(database);
    Messages::Box answer;
    answer.text = upgraded ? tr("Database upgraded successfully.")
                           : tr("Problem occurred while upgrading database. Probably you have no permission "
                                "to perform this operation.");
    Messages::run(nullptr, answer);
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

void DatabaseVersionCheck::refuse(const QString &reason)
{
    Messages::Box box;
    box.icon = QMessageBox::Warning;
    box.title = tr("Error opening database");
    box.text = reason;
    Messages::run(nullptr, box);
}
