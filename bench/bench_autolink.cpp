// A folder of 10,000 files that is linked to a node and has not changed, in a database of a million files: a
// round of the program against a plain readdir() and stat() of each file, and a look at the size of each
// record, in the same process. Prints times, their ratio, the bytes that were read, and how long the window
// stood still at most.
#include "bench/measure.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/collection.h"
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
    const auto make = [&dir] {
        return std::unique_ptr<Collection>(
            makeCollection(1, {}, dir.filePath(QStringLiteral("bench.vrn")), {}, {}, 0));
    };
    make()->createDatabase();
    std::unique_ptr<Collection> collection = make();
    collection->open();
    collection->load();
    auto *manager = collection->findChild<DatabaseManger *>();
    manager->findChild<AutoLinkSync *>()->setTimes(0, 30000);
    const qint64 nodeId = manager->addNodeBelow(manager->addTag(QStringLiteral("tag")), 0);
    QElapsedTimer adding;
    adding.start();
    manager->createAutoLink(folder, nodeId);
    waitFor(manager, &DatabaseManger::filesAdded, [&] { return manager->files().size() >= count; });
    out << count << " files taken in: " << double(adding.elapsed()) / 1000 << " s" << Qt::endl;
    fillUp(parser.value(QStringLiteral("records")).toInt());
    collection.reset();

    collection = make();
    collection->open();
    collection->load();
    manager = collection->findChild<DatabaseManger *>();
    auto *sync = manager->findChild<AutoLinkSync *>();
    const QString linkId = manager->autoLinks().keys().value(0);
    double leastPlain = 1e9;
    double leastRecords = 1e9;
    double leastRound = 1e9;
    double leastCpu = 1e9;
    double longestStop = 0;
    qint64 read = 0;
    qint64 sum = 0;
    for (int i = 0; i < rounds; ++i) {
        leastPlain = qMin(leastPlain, plainSeconds(folder, sum));
        leastRecords = qMin(leastRecords, recordSeconds(*manager, sum));
        const qint64 before = bytesRead();
        const double cpu = Measure::cpuSeconds();
        QElapsedTimer time;
        time.start();
        manager->syncAutoLink(linkId, nodeId, false);
        QEventLoop loop;
        QObject::connect(sync, &AutoLinkSync::roundDone, &loop, &QEventLoop::quit);
        loop.exec();
        leastRound = qMin(leastRound, double(time.nsecsElapsed()) / 1e9);
        leastCpu = qMin(leastCpu, Measure::cpuSeconds() - cpu);
        read = bytesRead() - before;
        manager->syncAutoLink(linkId, nodeId, false);
        longestStop = qMax(longestStop, waitFor(sync, &AutoLinkSync::roundDone, [] { return true; }));
    }
    out << manager->files().size() << " records, folder of " << count << " unchanged files\n"
        << "plain readdir and stat: " << leastPlain * 1000
        << " ms; the size of each record: " << leastRecords * 1000 << " ms\n"
        << "round: " << leastRound * 1000 << " ms, ratio " << leastRound / (leastPlain + leastRecords) << "\n"
        << "CPU of a round: " << leastCpu * 1000 << " ms, ratio " << leastCpu / (leastPlain + leastRecords)
        << "\n"
        << "bytes read by a round: " << read << "\n"
        << "longest stop of the window: " << longestStop << " ms" << Qt::endl;
    return sum == 0;
}
