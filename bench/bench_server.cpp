// What a database on a server costs: opening 100,000 files (or as many as the argument says), an edit with
// its look at what others changed, and taking in what they did: how long it takes from the commit on, and for
// how long the window stands still at most. The reference sends the same statements by plain libpq in the
// same process, and reads what comes into structs. Then work of all kinds over a network that delays: by a
// second argument, of milliseconds each way, nothing but that with this delay. Needs a server that
// VORNA_TEST_PG names, as scripts/with-postgres.sh gives one. Both run in turn.
#include "bench/measure.h"
#include "bench/networkcosts.h"
#include "core/controllers/collection.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/tagscontroller.h"
#include "core/records/recordtypes.h"
#include "db/manager/databasemanger.h"
#include "tests/support/serverdatabase.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QSettings>
#include <QTextStream>

#include <libpq-fe.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {
int fileCount = Measure::amount(100000);
constexpr int openRounds = 5;
constexpr int editRounds = 20;
constexpr int editsAtOnce = 20;

const char *const stampQuery = "SELECT max(last_date), max(last_date) FILTER (WHERE client IS DISTINCT FROM "
                               "current_setting('vorna.client', true)) FROM tables_modification_date;";

/** A connection of the reference: errors end the benchmark. */
class PlainConnection
{
public:
    using Result = std::unique_ptr<PGresult, decltype(&PQclear)>;

    explicit PlainConnection(const DBDetails &details)
        : m_connection(PQconnectdb(qPrintable("host=%1 port=%2 dbname=%3 user=%4"_s.arg(
              details.host(), QString::number(details.port()), details.databaseName(), details.user()))))
    {
        if (PQstatus(m_connection) != CONNECTION_OK)
            qFatal("%s", PQerrorMessage(m_connection));
    }
    ~PlainConnection() { PQfinish(m_connection); }
    PlainConnection(const PlainConnection &) = delete;
    PlainConnection &operator=(const PlainConnection &) = delete;

    Result run(const char *statement)
    {
        Result result(PQexec(m_connection, statement), PQclear);
        const ExecStatusType status = PQresultStatus(result.get());
        if (status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK)
            qFatal("%s: %s", statement, PQerrorMessage(m_connection));
        return result;
    }

private:
    PGconn *m_connection;
};

struct PlainFile
{
    qint64 id, size, addition, modification, load, storage, thumbnail, checksum, internal;
    std::string name, description, code, path, relPath;
    std::vector<qint64> tags;
};

/** One result, read value by value. */
class Rows
{
public:
    explicit Rows(PlainConnection::Result result)
        : m_result(std::move(result)), m_count(PQntuples(m_result.get()))
    {
    }
    bool next() { return ++m_row < m_count; }
    qint64 number(int column) const { return std::strtoll(value(column), nullptr, 10); }
    std::string text(int column) const { return value(column); }

private:
    const char *value(int column) const { return PQgetvalue(m_result.get(), m_row, column); }

    PlainConnection::Result m_result;
    int m_count;
    int m_row = -1;
};

std::vector<PlainFile> readFiles(PlainConnection &connection)
{
    std::vector<PlainFile> files;
    Rows links(connection.run("SELECT file_id,tag_id FROM file_tag ORDER BY file_id;"));
    Rows rows(connection.run("SELECT files.*,file_paths.* FROM files LEFT JOIN file_paths ON "
                             "files.storage_id=file_paths.path_id AND files.internal=0 ORDER BY file_id;"));
    bool hasLink = links.next();
    while (rows.next()) {
        files.push_back({rows.number(0),
                         rows.number(3),
                         rows.number(4),
                         rows.number(5),
                         rows.number(7),
                         rows.number(8),
                         rows.number(9),
                         rows.number(10),
                         rows.number(11),
                         rows.text(1),
                         rows.text(2),
                         rows.text(6),
                         rows.text(13),
                         rows.text(14),
                         {}});
        for (; hasLink && links.number(0) == files.back().id; hasLink = links.next())
            files.back().tags.push_back(links.number(1));
    }
    return files;
}

struct PlainTag
{
    qint64 id;
    std::string name;
};

/** All that an opening reads; how many files. */
int openPlain(const DBDetails &details)
{
    PlainConnection connection(details);
    connection.run(stampQuery);
    connection.run("SELECT * FROM browsing_trees;");
    const std::vector<PlainFile> files = readFiles(connection);
    std::vector<PlainTag> tags;
    for (const char *statement :
         {"SELECT tb_nodes.node_id,tags.tag_name,tb_nodes.tag_id,tb_node_links.parent_id FROM tb_nodes JOIN "
          "tags USING (tag_id) JOIN tb_node_links ON child_id=node_id WHERE browsing_tree_id=1;",
          "SELECT * FROM tags;"}) {
        Rows rows(connection.run(statement));
        while (rows.next())
            tags.push_back({rows.number(0), rows.text(1)});
    }
    connection.run("SELECT tag_groups.*,tag_id FROM tag_groups LEFT JOIN tag_group_links USING "
                   "(tag_group_id);");
    connection.run("SELECT * FROM tag_relationships;");
    return static_cast<int>(files.size());
}

std::unique_ptr<Collection> openCollection(const DBDetails &details)
{
    std::unique_ptr<Collection> collection(
        makeCollection(2, details.host(), details.databaseName(), details.user(), {}, details.port()));
    if (collection->open().isValid())
        qFatal("the database cannot be opened");
    collection->load();
    return collection;
}

void fill(ServerDatabase &server)
{
    const QString numbers = "generate_series(1,%1) i"_s.arg(fileCount);
    for (
        const QString &statement :
        {"INSERT INTO tags SELECT i,'tag '||i,'',0,NULL FROM generate_series(1,5000) i"_s,
         "INSERT INTO tb_nodes SELECT i,i,1,0 FROM generate_series(1,5000) i"_s,
         "INSERT INTO tb_node_links SELECT CASE WHEN i<50 THEN 0 ELSE i%50 END,i FROM generate_series(1,5000) i"_s,
         "INSERT INTO files SELECT i,'Photo of the day '||i||'.jpg',CASE WHEN i%10=0 THEN 'taken on day "
         "'||i "
         "END,1000+i*7,1500000000+i,1400000000+i,lpad(i::text,7,'0'),1+i/1000,i,i%3*i,i,(i%5)/3 FROM "_s +
             numbers,
         "INSERT INTO file_paths SELECT i,'/home/someone/pictures/albums/year '||i/50||'/'||i||'.jpg',"
         "'albums/year '||i/50||'/'||i||'.jpg' FROM "_s +
             numbers + " WHERE i%5<3"_s,
         "INSERT INTO file_tag SELECT i,1+(i*31+k*467)%5000 FROM "_s + numbers +
             ",generate_series(1,i%10) k"_s,
         "SELECT setval('tb_nodes_node_id_seq',5000), setval('file_paths_path_id_seq',10000000), setval('storage_storage_id_seq',20000000)"_s,
         "ANALYZE"_s}) {
        if (!server.owner().run(statement))
            qFatal("%s failed", qPrintable(statement));
    }
    server.keysTaken();
}

struct Cost
{
    double cpu = 1e9; ///< seconds of this process
    double elapsed = 1e9;

    void keepLeast(const std::function<void()> &work)
    {
        QElapsedTimer timer;
        timer.start();
        const double start = Measure::cpuSeconds();
        work();
        cpu = std::min(cpu, Measure::cpuSeconds() - start);
        elapsed = std::min(elapsed, double(timer.nsecsElapsed()) / 1e9);
    }
};

void print(const char *work, const Cost &plain, const Cost &ours, int times)
{
    const auto number = [](double value) { return QString::number(value, 'f', 2).rightJustified(9); };
    QTextStream out(stdout);
    for (const auto &line : {std::make_pair("elapsed", &Cost::elapsed), std::make_pair("CPU", &Cost::cpu)}) {
        const double reference = plain.*line.second;
        const double measured = ours.*line.second;
        out << QString::fromLatin1(work).leftJustified(22) << QString::fromLatin1(line.first).leftJustified(8)
            << number(reference * 1000 / times) << number(measured * 1000 / times)
            << number(measured / reference) << "\n";
    }
}

void measureOpening(const DBDetails &details)
{
    Cost plain;
    Cost ours;
    for (int round = 0; round < openRounds; ++round) {
        int count = 0;
        plain.keepLeast([&] { count = openPlain(details); });
        std::unique_ptr<Collection> collection;
        ours.keepLeast([&] { collection = openCollection(details); });
        if (collection->findChild<DatabaseManger *>()->files().size() != count)
            qFatal("not all files were opened");
    }
    print("open the files", plain, ours, 1);
}

void measureEdits(const DBDetails &details)
{
    const std::unique_ptr<Collection> collection = openCollection(details);
    auto *manager = collection->findChild<DatabaseManger *>();
    QObject::connect(manager, &DatabaseManger::showTempWarning, manager,
                     [] { qFatal("an edit was refused"); });
    PlainConnection connection(details);
    // The same client, or the edits of one would have those of the other refused.
    const QString client = Sql::value("SELECT current_setting('vorna.client')");
    connection.run(qPrintable("SET vorna.client = '%1';"_s.arg(client)));
    Cost plain;
    Cost ours;
    for (int round = 0; round < editRounds; ++round) {
        plain.keepLeast([&] {
            for (int i = 1; i <= editsAtOnce; ++i) {
                connection.run(stampQuery);
                connection.run(
                    qPrintable("UPDATE tags SET \"tag_name\" = 'plain %1 %2' WHERE tag_id=%1;"_s.arg(
                        QString::number(i), QString::number(round))));
            }
        });
        ours.keepLeast([&] {
            for (int i = 1; i <= editsAtOnce; ++i)
                collection->tagsController()->renameTag(i, "ours %1 %2"_s.arg(i).arg(round));
        });
    }
    if (Sql::value("SELECT count(*) FROM tags WHERE tag_name LIKE 'ours%'").toInt() != editsAtOnce)
        qFatal("not all edits were made");
    print("guarded edit", plain, ours, editsAtOnce);
}

struct ForeignEdit
{
    const char *work;
    const char *statement;
};

/** Others' changes on a connection of their own; the models are those of a window. */
void measureNews(ServerDatabase &server)
{
    const std::unique_ptr<Collection> collection = openCollection(server.details());
    auto *manager = collection->findChild<DatabaseManger *>();
    MainViewController *files = collection->mainViewController();
    files->showSpecialNode(AllFiles);
    QTextStream out(stdout);
    out << "taken in                      seconds  longest ms\n";
    for (const ForeignEdit &edit : {
             ForeignEdit{"1 file", "UPDATE files SET file_description='x' WHERE file_id=77"},
             ForeignEdit{"100 files",
                         "UPDATE files SET file_description='y' WHERE file_id%500=1 AND file_id<50000"},
             ForeignEdit{
                 "100 files, tagged",
                 "INSERT INTO file_tag SELECT file_id,7777 FROM files WHERE file_id%500=2 AND file_id<50000"},
             ForeignEdit{"10,000 files, tagged",
                         "INSERT INTO file_tag SELECT file_id,7778 FROM files WHERE file_id<=10000"},
             ForeignEdit{"100 new files",
                         "INSERT INTO files SELECT 5000000+i,'new '||i,'',1,2,3,'n'||i,1,0,NULL,0,2 FROM "
                         "generate_series(1,100) i"},
             ForeignEdit{"100 removed files", "DELETE FROM files WHERE file_id>5000000"},
             ForeignEdit{"100 renamed tags", "UPDATE tags SET tag_name='r '||tag_id WHERE tag_id<=100"},
             ForeignEdit{"5,000 renamed tags", "UPDATE tags SET tag_name='s '||tag_id"},
             ForeignEdit{"100 new nodes",
                         "WITH n AS (INSERT INTO tb_nodes SELECT 90000+i,i,1,0 FROM "
                         "generate_series(1,100) i) INSERT INTO tb_node_links SELECT 1,90000+i "
                         "FROM generate_series(1,100) i"},
         }) {
        bool isMerged = false;
        QMetaObject::Connection end = QObject::connect(manager, &DatabaseManger::foreignChangesMerged,
                                                       manager, [&isMerged] { isMerged = true; });
        if (!server.owner().run(QString::fromLatin1(edit.statement)))
            qFatal("%s failed", edit.statement);
        QElapsedTimer sinceCommit;
        sinceCommit.start();
        qint64 longest = 0;
        while (!isMerged && !sinceCommit.hasExpired(60000)) {
            QElapsedTimer turn;
            turn.start();
            QCoreApplication::processEvents();
            longest = std::max(longest, turn.nsecsElapsed());
        }
        QObject::disconnect(end);
        out << QString::fromLatin1(edit.work).leftJustified(26)
            << QString::number(double(sinceCommit.elapsed()) / 1000, 'f', 2).rightJustified(11)
            << QString::number(double(longest) / 1e6, 'f', 1).rightJustified(12) << "\n";
        out.flush();
    }
}

/** The log of each opened tree and model would stand between the lines of the table. */
void dropLog(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtFatalMsg)
        QTextStream(stderr) << text << "\n";
}
} // namespace

int main(int argc, char **argv)
{
    qInstallMessageHandler(dropLog);
    QGuiApplication application(argc, argv);
    if (!ServerDatabase::isAvailable())
        qFatal("VORNA_TEST_PG names no server: run this by scripts/with-postgres.sh");
    if (argc > 1)
        fileCount = QString::fromLocal8Bit(argv[1]).toInt();
    const QTemporaryDir settings;
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    ServerDatabase server;
    fill(server);
    const NetworkCosts::Amounts amounts{Measure::amount(2000), Measure::amount(10000),
                                        Measure::amount(500) / 100 + 1};
    if (argc > 2) {
        NetworkCosts::print(server, QString::fromLocal8Bit(argv[2]).toDouble(), amounts);
        return 0;
    }
    QTextStream(stdout) << "work                          plain ms  ours ms    ratio\n";
    if (argc < 2)
        measureOpening(server.details());
    measureEdits(server.details());
    measureNews(server);
    for (const double delay : {0.0, 1.0})
        NetworkCosts::print(server, delay, amounts);
    return 0;
}
