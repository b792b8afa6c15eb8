// Extracting internal files: from the request to the last signal, beside a copy of the same files with fsync.
// Usage: bench_extract [megabytes] [runs] [folder]. It needs room for three times the size.
#include "app/settings/addingsettings.h"
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
#include <QRandomGenerator>
#include <QSettings>
#include <QTemporaryDir>

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int fileCount = 40;
constexpr qint64 megabyte = 1000 * 1000;

struct Cost
{
    double cpu = 0;
    double wall = 0;
    qint64 memory = 0; ///< the most that the process had meanwhile
};

template <class Work>
Cost measured(const Work &work)
{
    Measure::resetPeak();
    const double start = Measure::cpuSeconds();
    QElapsedTimer timer;
    timer.start();
    work();
    return {Measure::cpuSeconds() - start, double(timer.nsecsElapsed()) / 1e9, Measure::peakBytes()};
}

template <class Work>
Cost best(int runs, const Work &work)
{
    Cost result = measured(work);
    for (int i = 1; i < runs; ++i) {
        const Cost cost = measured(work);
        result.cpu = std::min(result.cpu, cost.cpu);
        result.wall = std::min(result.wall, cost.wall);
    }
    return result;
}

QStringList paths(const QDir &folder, const QString &name)
{
    QStringList result;
    for (int i = 0; i < fileCount; ++i)
        result.append(folder.filePath(QStringLiteral("%1 %2.bin").arg(name).arg(i)));
    return result;
}

void removeAll(const QStringList &files)
{
    for (const QString &file : files)
        QFile::remove(file);
}

void writeFiles(const QStringList &files, qint64 size)
{
    std::vector<quint32> words(size_t(size / 4));
    QRandomGenerator(1).fillRange(words.data(), qsizetype(words.size()));
    for (const QString &path : files) {
        ++words.front();
        QFile file(path);
        const qint64 bytes = qint64(words.size() * sizeof(quint32));
        if (!file.open(QIODevice::WriteOnly) ||
            file.write(reinterpret_cast<const char *>(words.data()), bytes) != bytes)
            qFatal("cannot write %s", qPrintable(path));
    }
}

void bringToDisk(const QString &path)
{
    const int descriptor = open(path.toUtf8().constData(), O_RDONLY);
    fsync(descriptor);
    close(descriptor);
}

/** As cp copies, each brought to the disk. */
void copyFile(const QString &from, const QString &to)
{
    std::vector<char> slice(std::size_t(128) * 1024);
    const int in = open(from.toUtf8().constData(), O_RDONLY);
    const int out = open(to.toUtf8().constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ssize_t count = 0;
    while ((count = read(in, slice.data(), slice.size())) > 0) {
        if (write(out, slice.data(), size_t(count)) != count)
            qFatal("cannot write %s", qPrintable(to));
    }
    close(in);
    fsync(out);
    close(out);
}

void makeDatabase(const QString &path)
{
    PlainDatabase database(path.toUtf8().constData());
    database.run("PRAGMA page_size=16384");
    database.run("BEGIN");
    for (const QString &statement : Schema::creationStatements())
        database.run(statement.toUtf8().constData());
    database.run("COMMIT");
}

void waitFor(FileOperationProvider &provider)
{
    QEventLoop loop;
    QObject::connect(&provider, &FileOperationProvider::finishedFilesOperation, &loop, &QEventLoop::quit,
                     Qt::QueuedConnection);
    loop.exec();
}

void compare(const QStringList &left, const QStringList &right)
{
    for (int i = 0; i < left.size(); ++i) {
        QFile a(left.at(i));
        QFile b(right.at(i));
        if (!a.open(QIODevice::ReadOnly) || !b.open(QIODevice::ReadOnly) || a.readAll() != b.readAll())
            qFatal("%s differs", qPrintable(right.at(i)));
    }
}

void bench(const QDir &folder, qint64 megabytes, int runs)
{
    const QStringList sources = paths(folder, QStringLiteral("source"));
    const QStringList copies = paths(folder, QStringLiteral("copy"));
    const QStringList targets = paths(folder, QStringLiteral("target"));
    const QString database = folder.filePath(QStringLiteral("bench.vrn"));
    writeFiles(sources, megabytes * megabyte / fileCount);
    makeDatabase(database);
    AddingSettings::setLinkToFiles(false);
    SqliteQueryConstructor constructor;
    SqliteFileOperationProvider provider(&constructor, DBDetails::local(database), nullptr);
    provider.addFilesList(sources);
    waitFor(provider);
    QVector<qint64> ids;
    for (int id = 1; id <= fileCount; ++id)
        ids.append(id);

    const Cost plain = best(runs, [&] {
        removeAll(copies);
        for (int i = 0; i < fileCount; ++i)
            copyFile(sources.at(i), copies.at(i));
    });
    removeAll(copies);
    const Cost ours = best(runs, [&] {
        removeAll(targets);
        provider.extractFiles(ids, targets);
        waitFor(provider);
        std::for_each(targets.begin(), targets.end(), bringToDisk);
    });
    compare(sources, targets);
    std::printf("extract %lld MB as %d files, beside cp and fsync\n", megabytes, fileCount);
    std::printf("  CPU   %7.2f s %7.2f s %6.2f x\n", ours.cpu, plain.cpu, ours.cpu / plain.cpu);
    std::printf("  clock %7.2f s %7.2f s %6.2f x\n", ours.wall, plain.wall, ours.wall / plain.wall);
    std::printf("  peak  %7.1f MB\n", double(ours.memory) / megabyte);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    const QStringList arguments = application.arguments();
    const qint64 megabytes = qMax(1LL, arguments.value(1, QStringLiteral("500")).toLongLong());
    const int runs = qMax(1, arguments.value(2, QStringLiteral("3")).toInt());
    QTemporaryDir temporary(arguments.value(3, QDir::tempPath()) + QStringLiteral("/bench_extract-XXXXXX"));
    if (!temporary.isValid())
        qFatal("there is no such folder");
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, temporary.path());
    bench(QDir(temporary.path()), megabytes, runs);
    return 0;
}
