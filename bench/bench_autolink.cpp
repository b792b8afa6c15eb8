// A folder of 10,000 files that is linked to a node and has not changed, in a database of a million files: a
// round of the program against a plain readdir() and stat() of each file, and a look at the size of each
// record, in the same process. Prints times, their ratio, the bytes that were read, and how long the window
// stood still at most.
#include "bench/measure.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/collection.h"
#include "core/records/autolink.h"
#include "core/records/file.h"
#include "core/records/recordtypes.h"
#include "db/autolinks/autolinksync.h"
#include "db/manager/databasemanger.h"
#include "fileops/worker/fileoperationtypes.h"

#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QSettings>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>

#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>

namespace {
constexpr int rounds = 7;

qint64 bytesRead()
{
    QFile file(QStringLiteral("/proc/self/io"));
    file.open(QIODevice::ReadOnly);
    const QByteArray io = file.readAll();
    return io.mid(7, io.indexOf('\n') - 7).toLongLong();
}

void writeFiles(const QString &folder, int count)
{
    QDir().mkpath(folder);
    for (int i = 0; i < count; ++i) {
        QFile file(folder + QStringLiteral("/file number %1.txt").arg(i));
        file.open(QIODevice::WriteOnly);
        file.write("contents " + QByteArray::number(i) + QByteArray(1000, 'x'));
    }
}

/** Seconds for what nobody who looks for changes can leave out. */
double plainSeconds(const QString &folder, qint64 &sum)
{
    QElapsedTimer time;
    time.start();
    DIR *open = ::opendir(QFile::encodeName(folder).constData());
    while (const dirent *entry = ::readdir(open)) {
        struct stat status = {};
        if (entry->d_name[0] != '.' && ::fstatat(::dirfd(open), entry->d_name, &status, 0) == 0)
            sum += status.st_size + status.st_mtim.tv_sec;
    }
    ::closedir(open);
    return double(time.nsecsElapsed()) / 1e9;
}

/** Runs the event loop until a signal; the longest time between two of its turns in milliseconds. */
template <class Sender, class Signal>
double waitFor(Sender *sender, Signal signal, const std::function<bool()> &isDone)
{
    QEventLoop loop;
    QElapsedTimer turn;
    double longest = 0;
    QTimer pulse;
    QObject::connect(&pulse, &QTimer::timeout, &loop, [&] {
        longest = qMax(longest, double(turn.nsecsElapsed()) / 1e6);
        turn.start();
    });
    QObject::connect(sender, signal, &loop, [&] {
        if (isDone())
            loop.quit();
    });
    turn.start();
    pulse.start(0);
    loop.exec();
    return longest;
}

/** Seconds for the size of each record, which nobody can leave out who keeps no index of their names. */
double recordSeconds(DatabaseManger &manager, qint64 &sum)
{
    QElapsedTimer time;
    time.start();
    for (const File *file : manager.files())
        sum += file->size();
    return double(time.nsecsElapsed()) / 1e9;
}

void fillUp(int records)
{
    if (records == 0)
        return;
    QSqlQuery query;
    query.exec(
        QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 10000000 UNION ALL SELECT i+1 FROM n WHERE i<%1) "
                       "INSERT INTO files SELECT i,'Photo of the day '||i||'.jpg','',i%5000000,0,0,"
                       "'z'||i,1,i,0,i*2654435761%268435456,0 FROM n")
            .arg(10000000 + records - 1));
    query.exec(QStringLiteral("INSERT INTO file_paths SELECT storage_id,'/home/someone/pictures/'||file_name,"
                              "'pictures/'||file_name FROM files WHERE file_id>=10000000"));
}
std::unique_ptr<Collection> openCollection(const QString &path)
{
    std::unique_ptr<Collection> collection(makeCollection(1, {}, path, {}, {}, 0));
    collection->open();
    collection->load();
    return collection;
}

/** A new database whose only node takes in the folder, and other records. */
void makeDatabase(const QString &path, const QString &folder, int files, int records, QTextStream &out)
{
    std::unique_ptr<Collection>(makeCollection(1, {}, path, {}, {}, 0))->createDatabase();
    const std::unique_ptr<Collection> collection = openCollection(path);
    auto *manager = collection->findChild<DatabaseManger *>();
    manager->findChild<AutoLinkSync *>()->setTimes(0, 30000);
    const qint64 nodeId = manager->addNodeBelow(manager->addTag(QStringLiteral("tag")), 0);
    QElapsedTimer adding;
    adding.start();
    manager->createAutoLink(folder, nodeId);
    waitFor(manager, &DatabaseManger::filesAdded, [&] { return manager->files().size() >= files; });
    out << files << " files taken in: " << double(adding.elapsed()) / 1000 << " s" << Qt::endl;
    fillUp(records);
}

/** The least of all rounds, times in seconds. */
struct Figures
{
    double plain = 1e9;
    double records = 1e9;
    double round = 1e9;
    double cpu = 1e9;
    double longestStop = 0; ///< the most, in milliseconds
    qint64 bytes = 0;
    qint64 sum = 0; ///< of what was looked at, that no look is left out
};

Figures measured(DatabaseManger &manager, const QString &folder)
{
    auto *sync = manager.findChild<AutoLinkSync *>();
    const AutoLink *link = *manager.autoLinks().begin();
    const qint64 nodeId = link->nodes().value(0);
    Figures figures;
    for (int i = 0; i < rounds; ++i) {
        figures.plain = qMin(figures.plain, plainSeconds(folder, figures.sum));
        figures.records = qMin(figures.records, recordSeconds(manager, figures.sum));
        const qint64 before = bytesRead();
        const double cpu = Measure::cpuSeconds();
        QElapsedTimer time;
        time.start();
        manager.syncAutoLink(link->linkId(), nodeId, false);
        QEventLoop loop;
        QObject::connect(sync, &AutoLinkSync::roundDone, &loop, &QEventLoop::quit);
        loop.exec();
        figures.round = qMin(figures.round, double(time.nsecsElapsed()) / 1e9);
        figures.cpu = qMin(figures.cpu, Measure::cpuSeconds() - cpu);
        figures.bytes = bytesRead() - before;
        manager.syncAutoLink(link->linkId(), nodeId, false);
        figures.longestStop =
            qMax(figures.longestStop, waitFor(sync, &AutoLinkSync::roundDone, [] { return true; }));
    }
    return figures;
}
} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOption({QStringLiteral("files"), QStringLiteral("Files in the folder."),
                      QStringLiteral("count"), QStringLiteral("10000")});
    parser.addOption({QStringLiteral("records"), QStringLiteral("Other files of the database."),
                      QStringLiteral("count"), QStringLiteral("1000000")});
    parser.process(app);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QTextStream out(stdout);
    const QTemporaryDir dir;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, dir.path());
    const int count = parser.value(QStringLiteral("files")).toInt();
    const QString folder = dir.filePath(QStringLiteral("in"));
    writeFiles(folder, count);

    registerRecordTypes();
    registerFileOperationTypes();
    const QString path = dir.filePath(QStringLiteral("bench.vrn"));
    makeDatabase(path, folder, count, parser.value(QStringLiteral("records")).toInt(), out);

    const std::unique_ptr<Collection> collection = openCollection(path);
    auto *manager = collection->findChild<DatabaseManger *>();
    const Figures figures = measured(*manager, folder);
    const double reference = figures.plain + figures.records;
    out << manager->files().size() << " records, folder of " << count << " unchanged files\n"
        << "plain readdir and stat: " << figures.plain * 1000
        << " ms; the size of each record: " << figures.records * 1000 << " ms\n"
        << "round: " << figures.round * 1000 << " ms, ratio " << figures.round / reference << "\n"
        << "CPU of a round: " << figures.cpu * 1000 << " ms, ratio " << figures.cpu / reference << "\n"
        << "bytes read by a round: " << figures.bytes << "\n"
        << "longest stop of the window: " << figures.longestStop << " ms" << Qt::endl;
    return figures.sum == 0;
}
