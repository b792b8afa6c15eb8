// External files on a real disk: the check of all of them beside a loop that asks the system for each; how
// soon the check ends when something else is selected; how long the event loop stands still while a selection
// marks 100,000 files as missing; and 50,000 missing files found in a tree beside a walk that does nothing
// else.
#include "bench/measure.h"
#include "bench/plaindatabase.h"
#include "core/controllers/collection.h"
#include "core/controllers/mainviewcontroller.h"
#include "db/manager/databasemanger.h"
#include "db/sql/schema.h"
#include "fileops/tracking/filelocator.h"
#include "fileops/worker/fileoperationtypes.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <random>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int filesInFolder = 1000;

// Keeps the optimizer from leaving work out.
volatile qint64 sink = 0;

std::string pathOf(const std::string &folder, int number)
{
    return folder + "/folder " + std::to_string(number / filesInFolder) + "/a file of some name " +
           std::to_string(number) + ".txt";
}

std::vector<std::string> makeFiles(const std::string &folder, int count)
{
    std::vector<std::string> paths;
    paths.reserve(size_t(count));
    for (int number = 0; number < count; ++number) {
        paths.push_back(pathOf(folder, number));
        if (number % filesInFolder == 0)
            ::mkdir(paths.back().substr(0, paths.back().rfind('/')).c_str(), 0755);
        const int file = ::open(paths.back().c_str(), O_CREAT | O_WRONLY, 0644);
        if (file < 0)
            qFatal("cannot write %s", paths.back().c_str());
        const std::string contents = std::to_string(number);
        if (::write(file, contents.data(), contents.size()) < 0)
            qFatal("cannot write %s", paths.back().c_str());
        ::close(file);
    }
    return paths;
}

void makeDatabase(const std::string &path, const std::vector<std::string> &files)
{
    ::unlink(path.c_str());
    PlainDatabase database(path.c_str());
    database.run("PRAGMA page_size=16384; PRAGMA journal_mode=OFF; BEGIN");
    for (const QString &statement : Schema::creationStatements())
        database.run(statement.toUtf8().constData());
    const auto folder = path.substr(0, path.rfind('/') + 1);
    sqlite3_stmt *row =
        database.prepare("INSERT INTO files VALUES (?,?,'',?,0,?,printf('%07d',?1),1,?1,0,0,0)");
    sqlite3_stmt *place = database.prepare("INSERT INTO file_paths VALUES (?,?,?)");
    for (size_t i = 0; i < files.size(); ++i) {
        struct stat status = {};
        ::stat(files[i].c_str(), &status);
        const std::string name = files[i].substr(files[i].rfind('/') + 1);
        const std::string relative = files[i].substr(folder.size());
        sqlite3_bind_int64(row, 1, qint64(i) + 1);
        sqlite3_bind_text(row, 2, name.c_str(), -1, SQLITE_STATIC);
        sqlite3_bind_int64(row, 3, status.st_size);
        sqlite3_bind_int64(row, 4, status.st_mtime);
        database.step(row);
        sqlite3_bind_int64(place, 1, qint64(i) + 1);
        sqlite3_bind_text(place, 2, files[i].c_str(), -1, SQLITE_STATIC);
        sqlite3_bind_text(place, 3, relative.c_str(), -1, SQLITE_STATIC);
        database.step(place);
    }
    sqlite3_finalize(row);
    sqlite3_finalize(place);
    database.run("COMMIT");
}

void askForAll(const std::vector<std::string> &paths)
{
    struct stat status = {};
    for (const std::string &path : paths)
        sink = sink + (::stat(path.c_str(), &status) == 0 ? status.st_size : 0);
}

void walkPlainly(const std::string &folder)
{
    DIR *open = ::opendir(folder.c_str());
    while (const dirent *entry = open ? ::readdir(open) : nullptr) {
        if (entry->d_name[0] == '.')
            continue;
        const std::string path = folder + '/' + entry->d_name;
        struct stat status = {};
        if (entry->d_type == DT_DIR)
            walkPlainly(path);
        else if (::stat(path.c_str(), &status) == 0)
            sink = sink + status.st_size;
    }
    if (open)
        ::closedir(open);
}

/** How long the event loop has stood still at most since it was asked last. */
class Pulse
{
public:
    Pulse()
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            m_longest = qMax(m_longest, m_since.nsecsElapsed());
            m_since.start();
        });
        m_since.start();
        m_timer.start(0);
    }
    double takeMilliseconds()
    {
        m_longest = qMax(m_longest, m_since.nsecsElapsed());
        const double longest = double(m_longest) / 1e6;
        m_longest = 0;
        m_since.start();
        return longest;
    }

private:
    QTimer m_timer;
    QElapsedTimer m_since;
    qint64 m_longest = 0;
};

/** Sleeps between the looks: CPU time counts that of all threads. With a limit processEvents() would not. */
template <class Condition>
void waitUntil(Condition isMet)
{
    QTimer waker;
    waker.setTimerType(Qt::PreciseTimer);
    waker.start(1);
    while (!isMet())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

class Tracking
{
public:
    explicit Tracking(const QString &database)
        : m_collection(makeCollection(1, QString(), database, QString(), QString(), 0))
    {
        if (m_collection->open().isValid())
            qFatal("cannot open the database");
        m_collection->load();
        m_manager = m_collection->findChild<DatabaseManger *>();
        for (auto it = m_manager->files().items().cbegin(); it != m_manager->files().items().cend(); ++it)
            m_ids.append(it.key());
        // As a view that is sorted by anything has them.
        std::shuffle(m_ids.begin(), m_ids.end(), std::mt19937(1));
    }

    void checkAll()
    {
        m_manager->checkExternalFiles(m_ids);
        waitUntil([this] { return !m_manager->isBusy(); });
    }

    /** Milliseconds from a selection of nothing to the end of the check that was running. */
    double interrupt(int afterMilliseconds)
    {
        m_manager->checkExternalFiles(m_ids);
        QElapsedTimer clock;
        clock.start();
        waitUntil([&] { return clock.hasExpired(afterMilliseconds); });
        clock.restart();
        m_manager->endChecks();
        waitUntil([this] { return !m_manager->isBusy(); });
        return double(clock.nsecsElapsed()) / 1e6;
    }

    void select() { m_collection->mainViewController()->showSpecialNode(AllFiles); }
    int missing() const { return m_manager->missingFiles().size(); }
    bool isBusy() const { return m_manager->isBusy(); }

private:
    std::unique_ptr<Collection> m_collection;
    DatabaseManger *m_manager = nullptr;
    QVector<qint64> m_ids;
};

void tell(const char *name, double work, double reference)
{
    std::printf("%-34s %9.0f ms %9.0f ms %6.2f\n", name, work * 1000, reference * 1000, work / reference);
}

void measureCheck(Tracking &tracking, const std::vector<std::string> &files, int rounds)
{
    for (int round = 0; round < rounds; ++round) {
        double start = Measure::cpuSeconds();
        askForAll(files);
        const double reference = Measure::cpuSeconds() - start;
        start = Measure::cpuSeconds();
        QElapsedTimer clock;
        clock.start();
        tracking.checkAll();
        tell("check, nothing changed", Measure::cpuSeconds() - start, reference);
        std::printf("%-34s %9.0f ms\n", "    by the clock", double(clock.elapsed()));
        double longest = 0;
        for (const int after : {0, 1, 2, 3, 5, 8, 12, 20, 50, 100, 200, 400})
            longest = qMax(longest, tracking.interrupt(after));
        std::printf("%-34s %9.1f ms\n", "    ended, at most after", longest);
    }
}

void measureMarks(Tracking &tracking, const std::vector<std::string> &files, int count)
{
    for (int i = 0; i < count; ++i)
        ::unlink(files[size_t(i) * (files.size() / size_t(count))].c_str());
    Pulse pulse;
    tracking.select();
    QCoreApplication::processEvents();
    pulse.takeMilliseconds();
    QElapsedTimer clock;
    clock.start();
    tracking.select();
    waitUntil([&] { return tracking.missing() >= count && !tracking.isBusy(); });
    std::printf("%-34s %9.0f ms by the clock, the event loop stood still for %.1f ms at most\n",
                "marks of missing files", double(clock.elapsed()), pulse.takeMilliseconds());
}

void measureLocating(const std::string &folder, const std::vector<std::string> &files, int count, int rounds)
{
    QVector<MissingFile> missing;
    for (int i = 0; i < count; ++i) {
        const std::string &path = files[size_t(i) * (files.size() / size_t(count))];
        missing.append(
            {i + 1, QStringLiteral("/elsewhere/") + QString::fromStdString(path.substr(path.rfind('/') + 1)),
             3, 1});
    }
    for (int round = 0; round < rounds; ++round) {
        double start = Measure::cpuSeconds();
        walkPlainly(folder);
        const double reference = Measure::cpuSeconds() - start;
        start = Measure::cpuSeconds();
        FileLocator locator(missing, [] { return false; });
        locator.walk({QString::fromStdString(folder)});
        const int found = locator.locate().size();
        tell("missing files found by name", Measure::cpuSeconds() - start, reference);
        if (found != count)
            qFatal("only %d of %d were found", found, count);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("vorna-bench"));
    QCommandLineParser parser;
    parser.addOptions(
        {{QStringLiteral("files"), QStringLiteral("External files."), QStringLiteral("n"),
          QStringLiteral("1000000")},
         {QStringLiteral("rounds"), QStringLiteral("Rounds."), QStringLiteral("n"), QStringLiteral("2")},
         {QStringLiteral("dir"), QStringLiteral("A folder for the files."), QStringLiteral("path"),
          QDir::tempPath()}});
    parser.process(application);
    const int count = parser.value(QStringLiteral("files")).toInt();
    const int rounds = parser.value(QStringLiteral("rounds")).toInt();
    QDir dir(parser.value(QStringLiteral("dir")) + QStringLiteral("/vorna-bench-tracking"));
    dir.removeRecursively();
    dir.mkpath(QStringLiteral("."));
    registerFileOperationTypes();
    const std::string folder = dir.path().toStdString();
    const std::vector<std::string> files = makeFiles(folder, count);
    makeDatabase(folder + "/bench.vrn", files);
    {
        Tracking tracking(dir.filePath(QStringLiteral("bench.vrn")));
        measureCheck(tracking, files, rounds);
        measureLocating(folder, files, qMin(50000, count / 10), rounds);
        measureMarks(tracking, files, count / 10);
    }
    dir.removeRecursively();
    return 0;
}
