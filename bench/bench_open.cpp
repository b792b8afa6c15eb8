// Opening a database of a million files, reading all of it anew, and closing it: the program's own way, while
// an event loop goes on, against two ordered scans of files and links that plain sqlite3 merges into structs.
// Both in turn, in one process. Prints CPU times of all threads, their ratio, the clock, for how long the
// event loop stood still, and the memory that a file takes.
#include "bench/measure.h"
#include "bench/settling.h"
#include "core/controllers/collection.h"
#include "core/records/recordtypes.h"
#include "db/caches/discardedfiles.h"
#include "db/manager/databasemanger.h"
#include "db/sql/schema.h"

#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QGuiApplication>
#include <QTextStream>
#include <QThread>

#include <sqlite3.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {
constexpr int tagCount = 5000;
constexpr int rounds = 3;

void run(sqlite3 *database, const QString &statement)
{
    char *message = nullptr;
    if (sqlite3_exec(database, statement.toUtf8().constData(), nullptr, nullptr, &message) != SQLITE_OK)
        qFatal("%s: %s", qPrintable(statement), message);
}

class Statement
{
public:
    Statement(sqlite3 *database, const char *text)
    {
        if (sqlite3_prepare_v2(database, text, -1, &m_statement, nullptr) != SQLITE_OK)
            qFatal("%s: %s", text, sqlite3_errmsg(database));
    }
    ~Statement() { sqlite3_finalize(m_statement); }
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;

    Statement &bind(int place, qint64 value)
    {
        sqlite3_bind_int64(m_statement, place, value);
        return *this;
    }
    Statement &bind(int place, const QByteArray &text)
    {
        sqlite3_bind_text(m_statement, place, text.constData(), text.size(), SQLITE_TRANSIENT);
        return *this;
    }
    void step()
    {
        sqlite3_step(m_statement);
        sqlite3_reset(m_statement);
    }
    bool next() { return sqlite3_step(m_statement) == SQLITE_ROW; }
    qint64 number(int column) const { return sqlite3_column_int64(m_statement, column); }
    std::string text(int column) const
    {
        const unsigned char *found = sqlite3_column_text(m_statement, column);
        return found ? std::string(reinterpret_cast<const char *>(found)) : std::string();
    }

private:
    sqlite3_stmt *m_statement = nullptr;
};

/** Seven characters, another one for each number. */
QByteArray codeOf(qint64 number)
{
    return QByteArray::number(number + 1000000000, 36).rightJustified(7, '0', true);
}

void addFile(Statement &file, Statement &path, Statement &tagging, qint64 id)
{
    const bool isExternal = id % 5 < 3;
    const QByteArray name = "Photo of the day " + QByteArray::number(id) + (id % 3 ? ".jpg" : ".pdf");
    file.bind(1, id).bind(2, name).bind(3, id % 10 ? QByteArray() : "taken on day " + QByteArray::number(id));
    file.bind(4, 1000 + id * 7 % 9000000).bind(5, 1500000000 + id).bind(6, 1400000000 + id * 3);
    file.bind(7, codeOf(id)).bind(8, 1 + id / 1000).bind(9, id).bind(10, id % 3 ? id : 0);
    file.bind(11, id * 2654435761 % 268435456).bind(12, isExternal ? 0 : 1).step();
    if (isExternal) {
        const QByteArray folder = "albums/year " + QByteArray::number(id / 50) + "/";
        path.bind(1, id).bind(2, "/home/someone/pictures/" + folder + name).bind(3, folder + name).step();
    }
    // 0 to 10 tags, 4.8 in the middle, in the order of their ids.
    const qint64 count = id % 10 == 0 ? 0 : (id * 7 % 10 + id * 3 % 2 + 1) % 11;
    for (qint64 i = 0; i < count; ++i)
        tagging.bind(1, id).bind(2, 1 + (id * 31 + i * 467) % tagCount).step();
}

void makeDatabase(const QString &fileName, int files)
{
    sqlite3 *database = nullptr;
    sqlite3_open(QFile::encodeName(fileName).constData(), &database);
    run(database, QStringLiteral("PRAGMA page_size=16384;"));
    run(database, QStringLiteral("PRAGMA synchronous=OFF;"));
    for (const QString &statement : Schema::creationStatements())
        run(database, statement);
    run(database, QStringLiteral("BEGIN;"));
    {
        Statement tag(database, "INSERT INTO tags VALUES(?1,?2,'',0,NULL)");
        for (qint64 id = 1; id <= tagCount; ++id)
            tag.bind(1, id).bind(2, "tag " + QByteArray::number(id)).step();
        Statement file(database, "INSERT INTO files VALUES(?1,?2,?3,?4,?5,?6,?7,?8,?9,?10,?11,?12)");
        Statement path(database, "INSERT INTO file_paths VALUES(?1,?2,?3)");
        Statement tagging(database, "INSERT OR IGNORE INTO file_tag VALUES(?1,?2)");
        for (qint64 id = 1; id <= files; ++id)
            addFile(file, path, tagging, id);
    }
    run(database, QStringLiteral("COMMIT;"));
    sqlite3_close(database);
}

struct PlainFile
{
    qint64 id, size, addition, modification, load, storage, thumbnail, checksum;
    std::string name, description, code, path, relPath;
    int internal;
    std::vector<qint64> tags;
};

std::vector<PlainFile> readPlain(const QString &fileName)
{
    sqlite3 *database = nullptr;
    sqlite3_open(QFile::encodeName(fileName).constData(), &database);
    std::vector<PlainFile> files;
    {
        Statement rows(database,
                       "SELECT files.*,file_paths.* FROM files LEFT JOIN file_paths ON "
                       "files.storage_id=file_paths.path_id AND files.internal=0 ORDER BY files.file_id;");
        Statement links(database, "SELECT file_id,tag_id FROM file_tag ORDER BY file_id;");
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
                             rows.text(1),
                             rows.text(2),
                             rows.text(6),
                             rows.text(13),
                             rows.text(14),
                             int(rows.number(11)),
                             {}});
            for (; hasLink && links.number(0) == files.back().id; hasLink = links.next())
                files.back().tags.push_back(links.number(1));
        }
    }
    sqlite3_close(database);
    return files;
}

/** The log of each opened tree and model would stand between the lines of the table. */
void dropLog(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtFatalMsg)
        QTextStream(stderr) << text << "\n";
}

struct Opened
{
    Settling::Cost opening;
    Settling::Cost reading;
    double closingSeconds = 0;
    qint64 bytes = 0;
    qint64 peakBytes = 0;
    int files = 0;
    qint64 taggings = 0;
};

/** With the event loop of the measuring, as the window opens one. */
Settling::Cost load(Collection &collection)
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
    return cost;
}

Settling::Cost reload(DatabaseManger &manager)
{
    bool isLoaded = false;
    QObject::connect(&manager, &DatabaseManger::allDataReloaded, [&isLoaded] { isLoaded = true; });
    return Settling::run([&manager] { manager.reloadAllData(); }, [&isLoaded] { return !isLoaded; });
}

Opened openOnce(const QString &fileName)
{
    Opened opened;
    Measure::resetPeak();
    const qint64 before = Measure::residentBytes();
    auto *collection = makeCollection(1, {}, fileName, {}, {}, 0);
    opened.opening = load(*collection);
    opened.bytes = Measure::residentBytes() - before;
    opened.peakBytes = Measure::peakBytes() - before;
    auto *manager = collection->findChild<DatabaseManger *>();
    opened.files = manager->files().size();
    for (const File *file : qAsConst(manager->files()))
        opened.taggings += file->tagIds().size();
    opened.reading = reload(*manager);
    if (manager->files().size() != opened.files)
        qFatal("not all files were read anew");
    QElapsedTimer timer;
    timer.start();
    delete collection;
    opened.closingSeconds = double(timer.nsecsElapsed()) / 1e9;
    // What goes on beside the window must not count to the next measurement.
    while (!DiscardedFiles::isEmpty())
        QThread::msleep(20);
    return opened;
}

void keepLeast(Settling::Cost &least, const Settling::Cost &cost)
{
    least.cpuSeconds = qMin(least.cpuSeconds, cost.cpuSeconds);
    least.wallSeconds = qMin(least.wallSeconds, cost.wallSeconds);
    least.freezeSeconds = qMin(least.freezeSeconds, cost.freezeSeconds);
}

void print(const char *work, const Settling::Cost &cost, double plain)
{
    std::printf("%-26s %8.2f %8.2f %8.2f %10.0f\n", work, cost.cpuSeconds, cost.cpuSeconds / plain,
                cost.wallSeconds, cost.freezeSeconds * 1000);
}
} // namespace

int main(int argc, char **argv)
{
    qInstallMessageHandler(dropLog);
    QGuiApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOption({QStringLiteral("dir"), QStringLiteral("Where the database is kept between runs."),
                      QStringLiteral("dir"), QDir::tempPath() + QStringLiteral("/vorna-bench")});
    parser.addOption({QStringLiteral("files"), QStringLiteral("How many files."), QStringLiteral("count"),
                      QStringLiteral("1000000")});
    parser.process(application);
    // Fewer are read without an event loop.
    const int files = qMax(30000, parser.value(QStringLiteral("files")).toInt());
    QDir().mkpath(parser.value(QStringLiteral("dir")));
    const QString fileName =
        QDir(parser.value(QStringLiteral("dir"))).filePath(QStringLiteral("open-%1.vrn").arg(files));
    if (!QFileInfo::exists(fileName)) {
        makeDatabase(fileName + QStringLiteral(".part"), files);
        QFile::rename(fileName + QStringLiteral(".part"), fileName);
    }

    // Memory is told by the first round: later ones find room that an earlier one left.
    Opened best = openOnce(fileName);
    Settling::Cost plain;
    for (int round = 0; round < rounds; ++round) {
        QElapsedTimer timer;
        timer.start();
        const double start = Measure::cpuSeconds();
        const std::size_t count = readPlain(fileName).size();
        const double seconds = Measure::cpuSeconds() - start;
        const Settling::Cost cost{seconds, double(timer.nsecsElapsed()) / 1e9, 0};
        if (round == 0)
            plain = cost;
        keepLeast(plain, cost);
        if (static_cast<int>(count) != best.files)
            qFatal("%d files were opened, %d are there", best.files, static_cast<int>(count));
        if (round + 1 == rounds)
            break;
        const Opened again = openOnce(fileName);
        keepLeast(best.opening, again.opening);
        keepLeast(best.reading, again.reading);
        best.closingSeconds = qMin(best.closingSeconds, again.closingSeconds);
    }
    std::printf("%d files, %lld taggings\n", best.files, best.taggings);
    std::printf("%-26s %8s %8s %8s %10s\n", "work", "CPU s", "ratio", "clock s", "stopped ms");
    print("plain sqlite3 to structs", plain, plain.cpuSeconds);
    print("open", best.opening, plain.cpuSeconds);
    print("read all anew", best.reading, plain.cpuSeconds);
    std::printf("%-26s %8s %8s %8.2f\n", "close", "", "", best.closingSeconds);
    std::printf("bytes a file: %lld open, %lld at the peak\n", best.bytes / best.files,
                best.peakBytes / best.files);
    return 0;
}
