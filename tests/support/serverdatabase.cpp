#include "tests/support/serverdatabase.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QProcess>
#include <QSqlError>

#include <unistd.h>
#include <utility>

const QString ServerDatabase::writer = QStringLiteral("vorna_test_writer");
const QString ServerDatabase::reader = QStringLiteral("vorna_test_reader");

namespace {
QStringList serverParts()
{
    return qEnvironmentVariable("VORNA_TEST_PG").split(QLatin1Char(';'));
}

/** The connection from which databases are made and removed. */
DBDetails maintenance()
{
    return ServerDatabase::detailsFor(serverParts().value(2), serverParts().value(3));
}

bool runOnServer(const QString &statement)
{
    ServerConnection connection(maintenance(), "maintenance"_s);
    QSqlQuery query(connection.database());
    if (query.exec(statement))
        return true;
    qWarning("%s", qPrintable(query.lastError().text()));
    return false;
}

/** Where the server has its data; found while it answers. */
QString serverFolder()
{
    static const QString folder =
        ServerConnection(maintenance(), "maintenance"_s).value("SHOW data_directory"_s);
    return folder;
}

/** Runs pg_ctl on the folder of the server, as the user to whom it belongs. */
bool controlServer(const QStringList &arguments)
{
    const QString folder = serverFolder();
    QStringList command =
        QStringList{"runuser"_s, "-u"_s, QFileInfo(folder).owner(), "--"_s} +
        QStringList{qEnvironmentVariable("VORNA_POSTGRES", "/usr/lib/postgresql/15/bin"_s) + "/pg_ctl"_s,
                    "-D"_s,
                    folder,
                    "-w"_s,
                    "-l"_s,
                    folder + "/log"_s};
    if (::geteuid() != 0)
        command = command.mid(4);
    QProcess control;
    control.setWorkingDirectory("/"_s);
    control.setStandardOutputFile(QProcess::nullDevice()); // which the server keeps open
    control.setStandardErrorFile(QProcess::nullDevice());
    control.start(command.first(), command.mid(1) + arguments);
    return control.waitForFinished() && control.exitCode() == 0;
}

/** How a database is copied: fast where the server can choose, which it can from PostgreSQL 15 on. */
QString strategy()
{
    static const int version =
        ServerConnection(maintenance(), "maintenance"_s).value("SHOW server_version_num"_s).toInt();
    return version >= 150000 ? "STRATEGY wal_log"_s : QString();
}

/** A database of this process that was used and is as new: the next test gets it. */
QString emptiedDatabase;

/** The database that the script made, of which each test gets a copy. It stays for the server's life. */
QString originalDatabase()
{
    const QByteArray script = TestFolder::read(QStringLiteral(VORNA_SERVER_SCRIPT));
    const QString name =
        "vorna_"_s + QString::fromLatin1(QCryptographicHash::hash(script, QCryptographicHash::Md5).toHex());
    if (!ServerConnection(maintenance(), "maintenance"_s)
             .value("SELECT datname FROM pg_database WHERE datname='%1'"_s.arg(name))
             .isEmpty())
        return name;
    QString output;
    if (!ServerDatabase::create(name) || ServerDatabase::runScript(name, &output) != 0) {
        ServerDatabase::remove(name);
        qFatal("no database on the server: %s", qPrintable(output));
    }
    return name;
}
} // namespace

ServerConnection::ServerConnection(const DBDetails &details, const QString &name) : m_name(name)
{
    QSqlDatabase database = QSqlDatabase::addDatabase(Constants::postgresDriver, name);
    database.setHostName(details.host());
    database.setPort(details.port());
    database.setDatabaseName(details.databaseName());
    database.setUserName(details.user());
    if (!database.open())
        qWarning("%s", qPrintable(database.lastError().text()));
}

ServerConnection::~ServerConnection()
{
    database().close();
    QSqlDatabase::removeDatabase(m_name);
}

QString ServerConnection::value(const QString &statement) const
{
    QSqlQuery query(database());
    return query.exec(statement) && query.next() ? query.value(0).toString() : QString();
}

ServerDatabase::ServerDatabase()
{
    static int number = 0;
    m_name = std::exchange(emptiedDatabase, QString());
    if (m_name.isEmpty()) {
        if (number == 0)
            qAddPostRoutine([] { remove(emptiedDatabase); });
        m_name = "vorna_%1_%2"_s.arg(QCoreApplication::applicationPid()).arg(++number);
        if (!runOnServer("CREATE DATABASE %1 TEMPLATE %2 %3"_s.arg(m_name, originalDatabase(), strategy())))
            qFatal("no database on the server");
    }
    m_owner = std::make_unique<ServerConnection>(ownerDetails(), "owner"_s);
    for (const QString &user : {writer, reader}) {
        const QString group = user == writer ? "vorna_writer"_s : "vorna_reader"_s;
        if (m_owner->value("SELECT rolname FROM pg_roles WHERE rolname='%1'"_s.arg(user)).isEmpty())
            m_owner->run("CREATE ROLE %1 LOGIN IN ROLE %2"_s.arg(user, group));
    }
    m_default = std::make_unique<ServerConnection>(details(), QLatin1String(QSqlDatabase::defaultConnection));
}

ServerDatabase::~ServerDatabase()
{
    m_worker.reset();
    m_default.reset();
    const bool isAsNew = !m_isOwnerUsed && emptiedDatabase.isEmpty() && restore();
    m_owner.reset();
    if (isAsNew)
        emptiedDatabase = m_name;
    else
        remove(m_name);
}

bool ServerDatabase::dropJournal(bool areStampsNamed)
{
    return owner().run(
        "SET client_min_messages=error; DO $$ DECLARE note regprocedure; BEGIN FOR note IN SELECT oid FROM "
        "pg_proc WHERE proname ~ '^(note|stamp)_' AND pronamespace='public'::regnamespace LOOP "
        "EXECUTE 'DROP FUNCTION '||note||' CASCADE'; END LOOP; END $$; "
        "DROP TABLE change_journal, change_commits; %1; "
        "CREATE FUNCTION stamp() RETURNS trigger LANGUAGE plpgsql SECURITY DEFINER AS 'BEGIN "
        "INSERT INTO public.tables_modification_date SELECT greatest(date_trunc(''milliseconds'', "
        "clock_timestamp() AT TIME ZONE ''UTC''), max(last_date) + interval ''1 millisecond'') %2 "
        "FROM public.tables_modification_date; RETURN NULL; END'; "
        "CREATE TRIGGER stamp AFTER INSERT OR UPDATE OR DELETE ON tags FOR EACH STATEMENT "
        "EXECUTE FUNCTION stamp(); UPDATE tags SET tag_id=tag_id"_s.arg(
            areStampsNamed ? "SELECT 1"_s : "ALTER TABLE tables_modification_date DROP COLUMN client"_s,
            areStampsNamed ? ", current_setting(''vorna.client'', true)"_s : QString()));
}

ServerConnection &ServerDatabase::owner()
{
    m_isOwnerUsed = true;
    return *m_owner;
}

/** Takes back what a writer can do: rows and keys. The stamps stay, as time goes on. */
bool ServerDatabase::restore()
{
    const QString kept = "('tables_modification_date','change_journal','change_commits','vorna_version',"
                         "'scheme_version')"_s;
    const QString deletions = m_owner->value(
        "SELECT string_agg('DELETE FROM '||tablename,';') FROM pg_tables WHERE schemaname='public' AND "
        "tablename NOT IN "_s +
        kept);
    return !deletions.isEmpty() && m_owner->run("SET session_replication_role=replica; "_s + deletions) &&
           m_owner->run("SELECT setval(oid::regclass,1,false) FROM pg_class WHERE relkind='S' AND "
                        "relname<>'tables_modification_date_last_date_seq'"_s) &&
           m_owner->run("INSERT INTO browsing_trees (tree_name) VALUES ('Default')"_s) &&
           (!m_isRefusing || m_owner->run("SET client_min_messages=error; DROP FUNCTION no() CASCADE"_s));
}

bool ServerDatabase::isAvailable()
{
    return serverParts().size() == 4;
}

bool ServerDatabase::create(const QString &name, const QString &options)
{
    return runOnServer("CREATE DATABASE %1 TEMPLATE template0 %2"_s.arg(name, options));
}

void ServerDatabase::remove(const QString &name)
{
    if (!name.isEmpty())
        runOnServer("DROP DATABASE IF EXISTS %1 WITH (FORCE)"_s.arg(name));
}

int ServerDatabase::runScript(const QString &name, QString *output, const QString &script)
{
    const DBDetails server = maintenance();
    QProcess psql;
    psql.setProcessChannelMode(QProcess::MergedChannels);
    psql.start("psql"_s, {"-X"_s, "-h"_s, server.host(), "-p"_s, QString::number(server.port()), "-U"_s,
                          server.user(), "-d"_s, name, "-f"_s, script});
    const bool hasEnded = psql.waitForFinished();
    if (output)
        *output = QString::fromUtf8(psql.readAll());
    return hasEnded && psql.exitStatus() == QProcess::NormalExit ? psql.exitCode() : -1;
}

bool ServerDatabase::stopServer(const QString &mode)
{
    return controlServer({"-m"_s, mode, "stop"_s});
}

bool ServerDatabase::holdServer(bool isHeld)
{
    const QByteArray process = TestFolder::read(serverFolder() + "/postmaster.pid"_s).split('\n').first();
    // A child may end of itself meanwhile.
    const QString command = "kill -%1 %2 || exit 1; for child in $(cat /proc/%2/task/%2/children); do "
                            "kill -%1 $child || ! kill -0 $child || exit 1; done"_s;
    return QProcess::execute("sh"_s, {"-c"_s, command.arg(isHeld ? "STOP"_s : "CONT"_s,
                                                          QString::fromLatin1(process))}) == 0;
}

bool ServerDatabase::startServer()
{
    return controlServer({"restart"_s}); // unlike a start it takes the options of the last one
}

DBDetails ServerDatabase::detailsFor(const QString &name, const QString &user)
{
    return DBDetails(2, serverParts().value(0), serverParts().value(1).toInt(), name, user, QString());
}

DBDetails ServerDatabase::ownerDetailsFor(const QString &name)
{
    return detailsFor(name, maintenance().user());
}

bool ServerDatabase::openWorkerConnection()
{
    m_worker.reset();
    m_worker = std::make_unique<ServerConnection>(details(), Constants::workerConnection);
    return m_worker->database().isOpen();
}

bool ServerDatabase::refuse(const QString &what, const QString &condition)
{
    m_isRefusing = true;
    return m_owner->run("CREATE OR REPLACE FUNCTION no() RETURNS trigger LANGUAGE plpgsql AS "
                        "'BEGIN RAISE EXCEPTION ''no''; END'"_s) &&
           m_owner->run("CREATE TRIGGER no BEFORE %1 FOR EACH ROW WHEN (%2) EXECUTE FUNCTION no()"_s.arg(
               what, condition));
}

bool ServerDatabase::permit(const QString &table)
{
    return m_owner->run("DROP TRIGGER no ON "_s + table);
}

bool ServerDatabase::keysTaken()
{
    return m_owner->run("SELECT setval('files_file_id_seq', max(file_id)) FROM files"_s) &&
           m_owner->run("SELECT setval('tags_tag_id_seq', max(tag_id)) FROM tags"_s) &&
           m_owner->run("SELECT setval('storage_storage_id_seq', max(storage_id)) FROM storage"_s);
}
