// Importing a database into an empty one: from the request to the last signal, beside plain SQLite that
// copies the same rows. Usage: bench_import [small | large | external | all] [runs] [folder]. Large needs 7
// GB of room.
#include "bench/measure.h"
#include "bench/plaindatabase.h"
#include "db/sql/schema.h"
#include "db/sql/sqlitequeryconstructor.h"
#include "fileops/provider/sqlitefileoperationprovider.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <algorithm>

namespace {

struct Cost
{
    double cpu = 0;
    double wall = 0;
    double peak = 0; ///< megabytes that the process took on meanwhile
};

struct Library
{
    const char *name;
    const char *files;  ///< the rows of `files`
    const char *others; ///< statements for what belongs to them, each ended by ";"
};

// %1 is the number of files.
constexpr const char *numbers = "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<%1) ";
constexpr Library small = {"100,000 internal files of 2 KB",
                           "SELECT i,'file '||i,'text',2000,1,1,'S'||i,1,i,0,i,1 FROM n",
                           "INSERT INTO storage SELECT file_id,randomblob(2000) FROM files; INSERT INTO "
                           "storage_info SELECT file_id,0 FROM "
                           "files"};
constexpr Library large = {
    "20 internal files of 100 MB", "SELECT i,'file '||i,'text',100000000,1,1,'S'||i,1,i*10-9,0,i,1 FROM n",
    "INSERT INTO storage_info SELECT n.file_id*10-9+m.file_id-1,CASE m.file_id WHEN 10 THEN 0 ELSE "
    "n.file_id*10-9+m.file_id END FROM files n, files m WHERE m.file_id<=10; INSERT INTO storage SELECT "
    "storage_id,randomblob(10000000) FROM storage_info"};
constexpr Library external = {"1,000,000 external files",
                              "SELECT i,'file '||i,'',i,1,1,'S'||i,1,i,0,i,0 FROM n",
                              "INSERT INTO file_paths SELECT file_id,'/home/me/folder "
                              "'||(file_id/100)||'/file '||file_id,'x' FROM files"};

template <class Work>
Cost measured(const Work &work)
{
    Measure::resetPeak();
    const qint64 before = Measure::residentBytes();
    const double start = Measure::cpuSeconds();
    QElapsedTimer timer;
    timer.start();
    work();
    return {Measure::cpuSeconds() - start, double(timer.nsecsElapsed()) / 1e9,
            double(Measure::peakBytes() - before) / 1e6};
}

void makeTables(PlainDatabase &database)
{
    database.run("PRAGMA page_size=16384");
    for (const QString &statement : Schema::creationStatements())
        database.run(statement.toUtf8().constData());
}

void fill(const QString &path, const Library &library, int count)
{
    PlainDatabase database(path.toUtf8().constData());
    database.run("PRAGMA synchronous=OFF");
    makeTables(database);
    database.run("BEGIN");
    const QByteArray with = QString(QLatin1String(numbers)).arg(count).toUtf8();
    database.run(("INSERT INTO files " + with + library.files).constData());
    database.run(library.others);
    database.run("INSERT INTO tags SELECT file_id,'tag '||file_id,'',1,'' FROM files LIMIT 1000");
    database.run("INSERT INTO file_tag SELECT file_id,1+file_id%1000 FROM files");
    database.run("INSERT OR IGNORE INTO file_tag SELECT file_id,1+file_id%7 FROM files");
    database.run("COMMIT");
}

/** Row by row: without a condition, SQLite would copy the records of equal tables as they stand. */
void copyPlainly(const QString &from, const QString &to)
{
    PlainDatabase database(to.toUtf8().constData());
    makeTables(database);
    database.run(QStringLiteral("ATTACH '%1' AS source").arg(from).toUtf8().constData());
    database.run("BEGIN");
    for (const char *table :
         {"tags", "files", "file_paths", "storage_info", "storage", "thumbnails", "file_tag"})
        database.run(QStringLiteral("INSERT INTO main.%1 SELECT * FROM source.%1 WHERE 1")
                         .arg(QLatin1String(table))
                         .toUtf8()
                         .constData());
    database.run("COMMIT");
}

void importInto(const QString &from, const QString &to)
{
    {
        PlainDatabase database(to.toUtf8().constData());
        makeTables(database);
    }
    SqliteQueryConstructor constructor;
    SqliteFileOperationProvider provider(&constructor, DBDetails::local(to), nullptr);
    QString word;
    QObject::connect(&provider, &FileOperationProvider::exchangeDone,
                     [&word](const QString &text) { word = text; });
    QEventLoop loop;
    QObject::connect(&provider, &FileOperationProvider::filesImported, &loop, &QEventLoop::quit,
                     Qt::QueuedConnection);
    provider.importDatabase(from, false,
                            {true, true, true, true, true, true, ExchangeSettings::AppendDescriptions});
    loop.exec();
    QCoreApplication::processEvents();
    if (word.isEmpty())
        qFatal("nothing was imported");
}

void bench(const QDir &folder, const Library &library, int count, int runs)
{
    const QString source = folder.filePath(QStringLiteral("source.vrn"));
    const QString target = folder.filePath(QStringLiteral("target.vrn"));
    QFile::remove(source);
    fill(source, library, count);
    const auto best = [&](const auto &work) {
        Cost least;
        for (int i = 0; i < runs; ++i) {
            QFile::remove(target);
            const Cost cost = measured([&] { work(source, target); });
            if (i == 0 || cost.wall < least.wall)
                least = cost;
        }
        return least;
    };
    const Cost plain = best(copyPlainly);
    const Cost ours = best(importInto);
    std::printf("import %s, beside plain copies of the rows\n", library.name);
    std::printf("  CPU   %7.2f s %7.2f s %6.2f x\n", ours.cpu, plain.cpu, ours.cpu / plain.cpu);
    std::printf("  clock %7.2f s %7.2f s %6.2f x\n", ours.wall, plain.wall, ours.wall / plain.wall);
    std::printf("  peak  %7.1f MB %6.1f MB\n", ours.peak, plain.peak);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    const QStringList arguments = application.arguments();
    const QString which = arguments.value(1, QStringLiteral("all"));
    const int runs = qMax(1, arguments.value(2, QStringLiteral("3")).toInt());
    const QTemporaryDir temporary(arguments.value(3, QDir::tempPath()) +
                                  QStringLiteral("/bench_import-XXXXXX"));
    if (!temporary.isValid())
        qFatal("there is no such folder");
    const bool isAll = which == QLatin1String("all");
    if (isAll || which == QLatin1String("small"))
        bench(QDir(temporary.path()), small, Measure::amount(100000), runs);
    if (isAll || which == QLatin1String("large"))
        bench(QDir(temporary.path()), large, Measure::amount(20), runs);
    if (isAll || which == QLatin1String("external"))
        bench(QDir(temporary.path()), external, Measure::amount(1000000), runs);
    return 0;
}
