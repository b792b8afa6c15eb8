#pragma once

#include "app/settings/constants.h"
#include "app/settings/dbdetails.h"
#include "db/sql/basedbprovider.h"
#include "db/sql/drivertexts.h"
#include "db/sql/schema.h"
#include "db/sql/sqlitequeryconstructor.h"
#include "tests/support/text.h"

#include <QtSql>

#include <memory>

/** Statements on the default connection, for tests to look behind what is tested. */
struct Sql
{
    static bool run(const QString &statement) { return QSqlQuery().exec(statement); }
    static bool run(const char *statement) { return run(QString::fromUtf8(statement)); }
    /** The rows of a query, each with its values between bars. */
    static QStringList rows(const QString &statement)
    {
        QSqlQuery query(statement);
        QStringList result;
        while (query.next()) {
            QStringList values;
            for (int i = 0; i < query.record().count(); ++i)
                values.append(DriverTexts::read(query, i).toString());
            result.append(values.join(QLatin1Char('|')));
        }
        return result;
    }
    static QStringList rows(const char *statement) { return rows(QString::fromUtf8(statement)); }
    static QString value(const char *statement) { return rows(statement).join(QLatin1Char('\n')); }
    static int count(const QString &table)
    {
        return rows("SELECT count(*) FROM "_s + table).value(0).toInt();
    }
    /** Runs an insertion once for each i from 1 to a count, out of a table n. */
    static bool fill(const char *insert, int count)
    {
        const QString numbers = "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<%1) "_s;
        return run(numbers.arg(count) + QLatin1String(insert));
    }
};

/** A folder for the files of a test, with a database in it. */
struct TestFolder
{
    QString folder() const { return dir.path(); }
    QString path() const { return dir.filePath("test.vrn"_s); }
    /** By hand: to Qt a colon at the beginning of a name means another place. */
    QString filePath(const QString &name) const { return folder() + QLatin1Char('/') + name; }
    /** Writes a file, making its folders. Its path. */
    QString write(const QString &name, const QByteArray &bytes) const
    {
        QDir().mkpath(QFileInfo(filePath(name)).path());
        QFile file(filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(file.fileName()));
        return file.fileName();
    }
    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir dir;
};

/** A further connection to a database, as another program or a worker would have it. */
class OtherConnection
{
public:
    explicit OtherConnection(const QString &path, const QString &name = "other"_s) : m_name(name)
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(Constants::sqliteDriver, name);
        database.setDatabaseName(path);
        if (name == Constants::workerConnection)
            database.setConnectOptions("QSQLITE_OPEN_URI"_s);
        database.open();
    }
    ~OtherConnection()
    {
        QSqlDatabase::database(m_name, false).close();
        QSqlDatabase::removeDatabase(m_name);
    }
    OtherConnection(const OtherConnection &) = delete;
    OtherConnection &operator=(const OtherConnection &) = delete;

    bool run(const QString &statement) { return QSqlQuery(QSqlDatabase::database(m_name)).exec(statement); }

private:
    QString m_name;
};

/** A new database of either kind on the default connection, with builders for its rows. */
class TestDatabase : public Sql
{
public:
    virtual ~TestDatabase() = default;

    virtual DBDetails details() const = 0;
    virtual const AbstractQueryConstructor *constructor() const = 0;
    /** Opens what a worker uses, in the test's own thread. */
    virtual bool openWorkerConnection() = 0;
    void close() { QSqlDatabase::database().close(); }
    /** Makes each "DELETE ON table" or the like fail for rows of a condition, until permit(). */
    virtual bool refuse(const QString &what, const QString &condition = "1=1"_s) = 0;
    virtual bool permit(const QString &table) = 0;

    /** Files 1 to count: the odd ones internal, the even ones external, each with its id as storage id. */
    bool addFiles(int count)
    {
        return fill("INSERT INTO files SELECT i,'f'||i,'',0,0,0,'c'||i,1,i,NULL,0,i%2 FROM n", count) &&
               keysTaken();
    }
    /** Tags 1 to count. */
    bool addTags(int count)
    {
        return fill("INSERT INTO tags SELECT i,'t'||i,'',0,NULL FROM n", count) && keysTaken();
    }
    bool addFile(qint64 id, int internal, qint64 size, qint64 storageId, qint64 thumbnailId = 0)
    {
        return run("INSERT INTO files VALUES (%1, 'file%1', '', %2, 1, 1, 'C%1', 1, %3, %4, 0, %5)"_s.arg(id)
                       .arg(size)
                       .arg(storageId)
                       .arg(thumbnailId)
                       .arg(internal)) &&
               keysTaken();
    }
    bool addBlock(qint64 id, qint64 continueId, const QByteArray &data)
    {
        QSqlQuery query;
        query.prepare("INSERT INTO storage VALUES (?, ?)"_s);
        query.addBindValue(id);
        query.addBindValue(data);
        return query.exec() && run("INSERT INTO storage_info VALUES (%1, %2)"_s.arg(id).arg(continueId)) &&
               keysTaken();
    }

    /** Rows were put in with keys of their own, which the database must not give away again. */
    virtual bool keysTaken() { return true; }
};

/** A new local database on the default connection. Gone with the object. */
class LocalDatabase : public TestDatabase, public TestFolder
{
public:
    LocalDatabase() : m_connection(path(), QLatin1String(QSqlDatabase::defaultConnection))
    {
        run("PRAGMA synchronous=OFF"); // nobody pulls the plug on a test
        run("BEGIN");
        for (const QString &statement : Schema::creationStatements())
            run(statement);
        run("COMMIT");
    }

    DBDetails details() const override { return DBDetails::local(path()); }
    const SqliteQueryConstructor *constructor() const override { return &m_constructor; }
    bool refuse(const QString &what, const QString &condition = "1=1"_s) override
    {
        return run(
            "CREATE TRIGGER no BEFORE %1 WHEN %2 BEGIN SELECT raise(ABORT,'no'); END"_s.arg(what, condition));
    }
    bool permit(const QString &) override { return run("DROP TRIGGER no"); }
    bool openWorkerConnection() override
    {
        m_worker.reset();
        m_worker = std::make_unique<OtherConnection>(path(), Constants::workerConnection);
        return QSqlDatabase::database(Constants::workerConnection).isOpen();
    }

private:
    OtherConnection m_connection;
    std::unique_ptr<OtherConnection> m_worker;
    SqliteQueryConstructor m_constructor;
};

/** Counts the errors that a provider tells of. Made after the provider, gone before it. */
class ErrorCount
{
public:
    explicit ErrorCount(BaseDBProvider &provider)
    {
        QObject::connect(&provider, &BaseDBProvider::errorOccured, &provider, [this] { ++m_count; });
    }
    int count() const { return m_count; }

private:
    int m_count = 0;
};
