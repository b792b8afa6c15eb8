// Opening a server's database of a million files, and reading all of it anew, while an event loop goes on.
// The reference is the clock of psql that copies the same rows to nowhere. Both in turn. Needs a server that
// VORNA_TEST_PG names, as scripts/with-postgres.sh gives one.
#include "bench/measure.h"
#include "bench/settling.h"
#include "core/controllers/collection.h"
#include "core/providers/mainviewprovider.h"
#include "db/manager/databasemanger.h"
#include "db/sql/postgresqueryconstructor.h"
#include "tests/support/serverdatabase.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QProcess>

#include <cstdio>
#include <memory>

namespace {
constexpr int rounds = 3;

void fill(ServerDatabase &server, int files)
{
    const QString numbers = "generate_series(1,%1) i"_s.arg(files);
    for (
        const QString &statement :
        {"INSERT INTO tags SELECT i,'tag '||i,'',0,NULL FROM generate_series(1,5000) i"_s,
         "INSERT INTO tb_nodes SELECT i,i,1,0 FROM generate_series(1,5000) i"_s,
         "INSERT INTO tb_node_links SELECT CASE WHEN i<50 THEN 0 ELSE i%50 END,i FROM generate_series(1,5000) i"_s,
         "INSERT INTO files SELECT i,'Photo of the day '||i||'.jpg',CASE WHEN i%10=0 THEN 'taken on day '||i "
         "END,1000+i*7,1500000000+i,1400000000+i,lpad(i::text,7,'0'),1+i/1000,i,i%3*i,i*13%268435456,(i%5)/3 "
         "FROM "_s +
             numbers,
         "INSERT INTO file_paths SELECT i,'/home/someone/pictures/albums/year '||i/50||'/Photo of the day "
         "'||i||"
         "'.jpg','albums/year '||i/50||'/Photo of the day '||i||'.jpg' FROM "_s +
             numbers + " WHERE i%5<3"_s,
         "INSERT INTO file_tag SELECT i,1+(i*31+k*467)%5000 FROM "_s + numbers +
             ",generate_series(1,i%11) k"_s,
         "VACUUM ANALYZE"_s}) {
        if (!server.owner().run(statement))
            qFatal("%s failed", qPrintable(statement));
    }
    server.keysTaken();
}

struct Cost
{
    double clock = 1e9;
    double cpu = 1e9;
    double freeze = 1e9;
};

/** Seconds, and how many bytes came. */
double copyPlainly(const DBDetails &details, qint64 &bytes)
{
    const PostgresQueryConstructor constructor;
    const QString statement = MainViewProvider(&constructor).copyText();
    QProcess psql;
    psql.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const QStringList arguments{
        "-X"_s, "-q"_s,         "-h"_s, details.host(),         "-p"_s, QString::number(details.port()),
        "-U"_s, details.user(), "-d"_s, details.databaseName(), "-c"_s, "SET jit=off"_s,
        "-c"_s, statement};
    // Counted once; else to nowhere, as the pipe to here would be the slower end.
    if (bytes > 0)
        psql.setStandardOutputFile(QProcess::nullDevice());
    QElapsedTimer timer;
    timer.start();
    psql.start("psql"_s, arguments);
    if (!psql.waitForFinished(-1) || psql.exitCode() != 0)
        qFatal("psql failed");
    const double seconds = double(timer.nsecsElapsed()) / 1e9;
    if (bytes == 0)
        bytes = psql.readAllStandardOutput().size();
    return seconds;
}

Cost load(Collection &collection)
{
    bool isLoaded = false;
    QObject::connect(&collection, &Collection::filesRead, &collection, [&] {
        if (collection.finishLoad() != Collection::Loaded)
            qFatal("not all could be read");
        isLoaded = true;
    });
    const Settling::Cost cost = Settling::run(
        [&collection] {
            if (collection.open().isValid() || collection.beginLoad() != Collection::Loaded)
                qFatal("it cannot be opened");
        },
        [&isLoaded] { return !isLoaded; });
    QObject::disconnect(&collection, &Collection::filesRead, &collection, nullptr);
    return {cost.wallSeconds, cost.cpuSeconds, cost.freezeSeconds};
}

Cost reload(DatabaseManger &manager)
{
    bool isLoaded = false;
    QObject::connect(&manager, &DatabaseManger::allDataReloaded, [&isLoaded] { isLoaded = true; });
    const Settling::Cost cost =
        Settling::run([&manager] { manager.reloadAllData(); }, [&isLoaded] { return !isLoaded; });
    return {cost.wallSeconds, cost.cpuSeconds, cost.freezeSeconds};
}

void keepLeast(Cost &least, const Cost &cost)
{
    least = {qMin(least.clock, cost.clock), qMin(least.cpu, cost.cpu), qMin(least.freeze, cost.freeze)};
}

void print(const char *work, const Cost &cost, double plain)
{
    std::printf("%-18s %9.2f %9.2f %9.2f %11.0f\n", work, cost.clock, cost.clock / plain, cost.cpu,
                cost.freeze * 1000);
}

/** The log of each opened tree and model would stand between the lines of the table. */
void dropLog(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", qPrintable(text));
}
} // namespace

int main(int argc, char **argv)
{
    qInstallMessageHandler(dropLog);
    QGuiApplication application(argc, argv);
    if (!ServerDatabase::isAvailable())
        qFatal("VORNA_TEST_PG names no server: run this by scripts/with-postgres.sh");
    // Fewer are read without an event loop.
    const int files = qMax(30000, application.arguments().value(1, "1000000"_s).toInt());
    ServerDatabase server;
    fill(server, files);
    const DBDetails details = server.details();
    qint64 bytesSent = 0;
    copyPlainly(details, bytesSent);
    double plain = 1e9;
    Cost opening;
    Cost reading;
    qint64 bytes = 0;
    qint64 peak = 0;
    for (int round = 0; round < rounds; ++round) {
        plain = qMin(plain, copyPlainly(details, bytesSent));
        Measure::resetPeak();
        const qint64 before = Measure::residentBytes();
        const std::unique_ptr<Collection> collection(
            makeCollection(2, details.host(), details.databaseName(), details.user(), {}, details.port()));
        keepLeast(opening, load(*collection));
        // Memory is told by the first round: later ones find room that an earlier one left.
        if (round == 0) {
            bytes = Measure::residentBytes() - before;
            peak = Measure::peakBytes() - before;
        }
        auto *manager = collection->findChild<DatabaseManger *>();
        keepLeast(reading, reload(*manager));
        if (manager->files().size() != files)
            qFatal("not all files were opened");
    }
    std::printf("%d files, %.0f MB sent\n", files, double(bytesSent) / 1e6);
    std::printf("%-18s %9s %9s %9s %11s\n", "work", "clock s", "ratio", "CPU s", "stopped ms");
    std::printf("%-18s %9.2f %9.2f\n", "psql COPY", plain, 1.0);
    print("open", opening, plain);
    print("read all anew", reading, plain);
    std::printf("bytes a file: %lld open, %lld at the peak\n", bytes / files, peak / files);
    return 0;
}
