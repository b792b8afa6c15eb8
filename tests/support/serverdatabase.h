#pragma once

#include "db/sql/postgresqueryconstructor.h"
#include "tests/support/database.h"

/** A further connection to a server database, as another client would have it. Gone with the object. */
class ServerConnection
{
public:
    ServerConnection(const DBDetails &details, const QString &name);
    ~ServerConnection();
    ServerConnection(const ServerConnection &) = delete;
    ServerConnection &operator=(const ServerConnection &) = delete;

    QSqlDatabase database() const { return QSqlDatabase::database(m_name, false); }
    bool run(const QString &statement) { return QSqlQuery(database()).exec(statement); }
    /** The first value of a query, empty when it fails. */
    QString value(const QString &statement) const;

private:
    QString m_name;
};

/**
 * A new database on the server that VORNA_TEST_PG names ("host;port;database;user"), made by the set-up
 * script. It is removed with the object, or emptied for the next one, as making it takes half a second. The
 * default connection is that of a writer, so that a test meets the rights that people have. Not to be made
 * unless isAvailable().
 */
class ServerDatabase : public TestDatabase
{
public:
    ServerDatabase();
    ~ServerDatabase() override;

    static bool isAvailable();
    /** Makes an empty database, by its owner, and removes it; for tests of the set-up itself. */
    static bool create(const QString &name, const QString &options = QString());
    static void remove(const QString &name);
    /** Runs the set-up script by psql; its exit code and, into `output`, what it said. */
    static int runScript(const QString &name, QString *output = nullptr,
                         const QString &script = QStringLiteral(VORNA_SERVER_SCRIPT));

    static DBDetails detailsFor(const QString &name, const QString &user);
    DBDetails details() const override { return detailsFor(m_name, writer); }
    DBDetails readerDetails() const { return detailsFor(m_name, reader); }
    static DBDetails ownerDetailsFor(const QString &name);
    DBDetails ownerDetails() const { return ownerDetailsFor(m_name); }
    const PostgresQueryConstructor *constructor() const override { return &m_constructor; }
    bool openWorkerConnection() override;
    bool refuse(const QString &what, const QString &condition = "1=1"_s) override;
    bool permit(const QString &table) override;
    bool keysTaken() override;
    /** Stops the server itself, in a mode of pg_ctl: every connection to it is gone. */
    static bool stopServer(const QString &mode);
    static bool startServer();
    /** Holds all processes of the server, or lets them go on: it is there and does not answer. */
    static bool holdServer(bool isHeld);
    /**
     * A connection with all rights, to look and to change behind the clients' backs. A database of which it
     * was asked for is not used again.
     */
    ServerConnection &owner();

    /** Makes it one of a server that stamps changes of tags alone and keeps no journal. */
    bool dropJournal(bool areStampsNamed);

    static const QString writer;
    static const QString reader;

private:
    bool restore();

    QString m_name;
    bool m_isOwnerUsed = false;
    bool m_isRefusing = false;
    std::unique_ptr<ServerConnection> m_owner;
    std::unique_ptr<ServerConnection> m_default;
    std::unique_ptr<ServerConnection> m_worker;
    PostgresQueryConstructor m_constructor;
};

/** The rows of a test that runs on both back-ends, for its initTestCase_data(). */
inline void addBackEnds()
{
    QTest::addColumn<bool>("isOnServer");
    addRow("sqlite", false);
    if (ServerDatabase::isAvailable())
        addRow("postgres", true);
    else
        qWarning("VORNA_TEST_PG names no server: local databases only");
}

inline std::unique_ptr<TestDatabase> makeTestDatabase(bool isOnServer)
{
    if (isOnServer)
        return std::make_unique<ServerDatabase>();
    return std::make_unique<LocalDatabase>();
}

/** A new database for a row of addBackEnds(). */
inline std::unique_ptr<TestDatabase> makeTestDatabase()
{
    QFETCH_GLOBAL(bool, isOnServer);
    return makeTestDatabase(isOnServer);
}
