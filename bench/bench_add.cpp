// Adding files: the whole road from the request to the last signal, beside the same rows written by plain
// sqlite3. Usage: bench_add [small|large|pictures|all] [runs] [folder]. It needs room for some 5 GB; in a
// folder that is named the input files stay for the next time.
#include "app/settings/addingsettings.h"
#include "app/settings/constants.h"
#include "bench/measure.h"
#include "bench/plaindatabase.h"
#include "db/sql/schema.h"
#include "db/sql/sqlitequeryconstructor.h"
#include "fileops/contents/blockstorage.h"
#include "fileops/files/datachecksum.h"
#include "fileops/files/idcodegenerator.h"
#include "fileops/provider/sqlitefileoperationprovider.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QImage>
#include <QLoggingCategory>
#include <QSettings>
#include <QTemporaryDir>

#include <algorithm>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <random>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace {

const int smallFiles = Measure::amount(100000);
constexpr int filesInFolder = 100;
constexpr int filesToPicture = 5;
constexpr int differentPictures = 100;
const int largeFiles = Measure::amount(40);
constexpr qint64 largeSize = 50LL * 1024 * 1024;

QByteArray randomBytes(std::mt19937 &random, int size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    std::generate(bytes.begin(), bytes.end(), [&random] { return char(random()); });
    return bytes;
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
}

/** Ten by ten by ten folders of a hundred files of 2.6 KB on average; each twenty-fifth file is a copy. */
void makeSmallTree(const QString &top)
{
    std::mt19937 random(1);
    QByteArray last;
    for (int i = 0; i < smallFiles; ++i) {
        const int folder = i / filesInFolder;
        const QString path = QStringLiteral("%1/area %2/topic %3/item %4")
                                 .arg(top)
                                 .arg(folder / 100)
                                 .arg(folder / 10 % 10)
                                 .arg(folder % 10);
        if (i % filesInFolder == 0)
            QDir().mkpath(path);
        if (i % 25 != 24)
            last = randomBytes(random, 200 + int(random() % 4800));
        writeFile(QStringLiteral("%1/document number %2.txt").arg(path).arg(i), last);
    }
}

void makeLargeFiles(const QString &top)
{
    std::mt19937 random(2);
    QDir().mkpath(top);
    QByteArray bytes = randomBytes(random, int(largeSize));
    for (int i = 0; i < largeFiles; ++i) {
        bytes[i] = char(bytes.at(i) + 1);
        writeFile(QStringLiteral("%1/film %2.bin").arg(top).arg(i), bytes);
    }
}

void removeDatabase(const QString &path)
{
    QFile::remove(path);
    QFile::remove(path + QStringLiteral("-journal"));
}

void makeSchema(PlainDatabase &database)
{
    // That of new databases, or one to compare with it.
    const QByteArray pageSize =
        qEnvironmentVariableIsSet("VORNA_BENCH_PAGE") ? qgetenv("VORNA_BENCH_PAGE") : QByteArray("16384");
    database.run(QByteArray("PRAGMA page_size=" + pageSize).constData());
    database.run("BEGIN");
    for (const QString &statement : Schema::creationStatements())
        database.run(statement.toUtf8().constData());
    database.run("COMMIT");
}

double addByProgram(const QString &databasePath, const QString &dropped, bool isLinking)
{
    removeDatabase(databasePath);
    {
        PlainDatabase database(databasePath.toUtf8().constData());
        makeSchema(database);
    }
    AddingSettings::setLinkToFiles(isLinking);
    SqliteQueryConstructor constructor;
    SqliteFileOperationProvider provider(&constructor, DBDetails::local(databasePath), nullptr);
    const double start = Measure::cpuSeconds();
    QEventLoop loop;
    QObject::connect(&provider, &FileOperationProvider::duplicatesReady, &loop, &QEventLoop::quit,
                     Qt::QueuedConnection);
    provider.addFiles({dropped}, {}, true, 0);
    loop.exec();
    return Measure::cpuSeconds() - start;
}

/** The reference for small files: one pass over the tree with nothing but system calls and sqlite3. */
class PlainAdder
{
public:
    explicit PlainAdder(PlainDatabase &database)
        : m_database(database),
          m_insertFile(database.prepare("INSERT INTO files VALUES (?,?,'',?,?,?,?,1,?,0,?,0)")),
          m_insertPath(database.prepare("INSERT INTO file_paths VALUES (?,?,?)")),
          m_insertTag(database.prepare("INSERT INTO tags VALUES (?,?,'',?,NULL)")),
          m_insertNode(database.prepare("INSERT INTO tb_nodes VALUES (?,?,1,0)")),
          m_insertNodeLink(database.prepare("INSERT INTO tb_node_links VALUES (?,?)")),
          m_bytes(1 << 20)
    {
        for (size_t count = 1; count <= 8; ++count) {
            std::string text = "INSERT INTO file_tag VALUES (?,?)";
            for (size_t i = 1; i < count; ++i)
                text += ",(?,?)";
            m_link.push_back(database.prepare(text.c_str()));
        }
    }
    ~PlainAdder()
    {
        for (sqlite3_stmt *statement :
             {m_insertFile, m_insertPath, m_insertTag, m_insertNode, m_insertNodeLink})
            sqlite3_finalize(statement);
        for (sqlite3_stmt *statement : m_link)
            sqlite3_finalize(statement);
    }

    void addFolder(const std::string &path, const std::string &relativePath, const std::string &name,
                   std::vector<qint64> tags, qint64 parentNode)
    {
        tags.push_back(tagId(name));
        std::sort(tags.begin(), tags.end());
        const qint64 node = addNode(tags.back(), parentNode);
        std::vector<std::string> folders;
        DIR *folder = opendir(path.c_str());
        while (const dirent *entry = readdir(folder)) {
            if (entry->d_name[0] == '.')
                continue;
            if (entry->d_type == DT_DIR)
                folders.emplace_back(entry->d_name);
            else
                addFile(path, relativePath, entry->d_name, tags);
        }
        closedir(folder);
        for (const std::string &below : folders) {
            const std::string tail = '/' + below;
            addFolder(path + tail, relativePath + tail, below, tags, node);
        }
    }

private:
    static void bind(sqlite3_stmt *statement, int place, const std::string &text)
    {
        sqlite3_bind_text(statement, place, text.data(), int(text.size()), SQLITE_STATIC);
    }

    qint64 tagId(const std::string &name)
    {
        qint64 &id = m_tags[name];
        if (id == 0) {
            id = qint64(m_tags.size());
            sqlite3_bind_int64(m_insertTag, 1, id);
            bind(m_insertTag, 2, name);
            sqlite3_bind_int64(m_insertTag, 3, time(nullptr));
            m_database.step(m_insertTag);
        }
        return id;
    }

    qint64 addNode(qint64 tag, qint64 parent)
    {
        const qint64 node = ++m_lastNode;
        sqlite3_bind_int64(m_insertNode, 1, node);
        sqlite3_bind_int64(m_insertNode, 2, tag);
        m_database.step(m_insertNode);
        sqlite3_bind_int64(m_insertNodeLink, 1, parent);
        sqlite3_bind_int64(m_insertNodeLink, 2, node);
        m_database.step(m_insertNodeLink);
        return node;
    }

    void addFile(const std::string &folder, const std::string &relativeFolder, const std::string &name,
                 const std::vector<qint64> &tags)
    {
        const std::string path = folder + '/' + name;
        const int descriptor = open(path.c_str(), O_RDONLY);
        struct stat status = {};
        fstat(descriptor, &status);
        const ssize_t size = read(descriptor, m_bytes.data(), m_bytes.size());
        close(descriptor);
        DataChecksum hash;
        hash.update(m_bytes.data(), size);
        const quint32 checksum = hash.take();
        if (!m_seen.insert((quint64(size) << 32) + checksum).second)
            return;
        const qint64 id = ++m_lastFile;
        QByteArray code;
        do {
            code = m_codes.generate().toLatin1();
        } while (!m_usedCodes.insert(std::string(code.constData(), size_t(code.size()))).second);
        sqlite3_bind_int64(m_insertFile, 1, id);
        bind(m_insertFile, 2, name);
        sqlite3_bind_int64(m_insertFile, 3, size);
        sqlite3_bind_int64(m_insertFile, 4, time(nullptr));
        sqlite3_bind_int64(m_insertFile, 5, status.st_mtim.tv_sec);
        sqlite3_bind_text(m_insertFile, 6, code.constData(), code.size(), SQLITE_STATIC);
        sqlite3_bind_int64(m_insertFile, 7, id);
        sqlite3_bind_int64(m_insertFile, 8, checksum);
        m_database.step(m_insertFile);
        const std::string relativePath = relativeFolder + '/' + name;
        sqlite3_bind_int64(m_insertPath, 1, id);
        bind(m_insertPath, 2, path);
        bind(m_insertPath, 3, relativePath);
        m_database.step(m_insertPath);
        sqlite3_stmt *link = m_link.at(tags.size() - 1);
        for (size_t i = 0; i < tags.size(); ++i) {
            sqlite3_bind_int64(link, int(2 * i + 1), id);
            sqlite3_bind_int64(link, int(2 * i + 2), tags[i]);
        }
        m_database.step(link);
    }

    PlainDatabase &m_database;
    sqlite3_stmt *m_insertFile;
    sqlite3_stmt *m_insertPath;
    sqlite3_stmt *m_insertTag;
    sqlite3_stmt *m_insertNode;
    sqlite3_stmt *m_insertNodeLink;
    std::vector<sqlite3_stmt *> m_link;
    std::vector<char> m_bytes;
    std::unordered_map<std::string, qint64> m_tags;
    std::unordered_set<quint64> m_seen;
    IdCodeGenerator m_codes;
    std::unordered_set<std::string> m_usedCodes;
    qint64 m_lastFile = 0;
    qint64 m_lastNode = 0;
};

double addSmallPlainly(const QString &databasePath, const QString &top)
{
    removeDatabase(databasePath);
    PlainDatabase database(databasePath.toUtf8().constData());
    makeSchema(database);
    const double start = Measure::cpuSeconds();
    database.run("PRAGMA cache_size=-65536");
    database.run("BEGIN IMMEDIATE");
    const std::string name = top.mid(top.lastIndexOf(QLatin1Char('/')) + 1).toStdString();
    PlainAdder(database).addFolder(top.toStdString(), name, name, {}, 0);
    database.run("COMMIT");
    return Measure::cpuSeconds() - start;
}

double addLargePlainly(const QString &databasePath, const QString &top)
{
    removeDatabase(databasePath);
    PlainDatabase database(databasePath.toUtf8().constData());
    makeSchema(database);
    std::vector<char> block(BLOCK_SIZE);
    const double start = Measure::cpuSeconds();
    database.run("BEGIN IMMEDIATE");
    sqlite3_stmt *insertBlock = database.prepare("INSERT INTO storage VALUES (?,?)");
    sqlite3_stmt *insertInfo = database.prepare("INSERT INTO storage_info VALUES (?,?)");
    sqlite3_stmt *insertFile = database.prepare("INSERT INTO files VALUES (?,'film','',?,0,0,?,1,?,0,?,1)");
    qint64 lastBlock = 0;
    for (int i = 0; i < largeFiles; ++i) {
        const QByteArray path = QStringLiteral("%1/film %2.bin").arg(top).arg(i).toUtf8();
        const int descriptor = open(path.constData(), O_RDONLY);
        DataChecksum checksum;
        const qint64 first = lastBlock + 1;
        ssize_t count = 0;
        while ((count = read(descriptor, block.data(), block.size())) > 0) {
            checksum.update(block.data(), count);
            sqlite3_bind_int64(insertBlock, 1, ++lastBlock);
            sqlite3_bind_blob(insertBlock, 2, block.data(), int(count), SQLITE_STATIC);
            database.step(insertBlock);
            sqlite3_bind_int64(insertInfo, 1, lastBlock);
            sqlite3_bind_int64(insertInfo, 2, size_t(count) == block.size() ? lastBlock + 1 : 0);
            database.step(insertInfo);
        }
        close(descriptor);
        const QByteArray code = IdCodeGenerator().generate().toLatin1();
        sqlite3_bind_int64(insertFile, 1, i + 1);
        sqlite3_bind_int64(insertFile, 2, largeSize);
        sqlite3_bind_text(insertFile, 3, code.constData(), code.size(), SQLITE_STATIC);
        sqlite3_bind_int64(insertFile, 4, first);
        sqlite3_bind_int64(insertFile, 5, checksum.take());
        database.step(insertFile);
    }
    for (sqlite3_stmt *statement : {insertBlock, insertInfo, insertFile})
        sqlite3_finalize(statement);
    database.run("COMMIT");
    return Measure::cpuSeconds() - start;
}

/** All files after each other into one, as cp would copy them, brought to the disk. */
double copyLarge(const QString &target, const QString &top)
{
    QFile::remove(target);
    std::vector<char> slice(std::size_t(128) * 1024);
    const double start = Measure::cpuSeconds();
    const int out = open(target.toUtf8().constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    for (int i = 0; i < largeFiles; ++i) {
        const QByteArray path = QStringLiteral("%1/film %2.bin").arg(top).arg(i).toUtf8();
        const int in = open(path.constData(), O_RDONLY);
        ssize_t count = 0;
        while ((count = read(in, slice.data(), slice.size())) > 0) {
            if (write(out, slice.data(), size_t(count)) != count)
                qFatal("cannot write %s", qPrintable(target));
        }
        close(in);
    }
    fsync(out);
    close(out);
    const double seconds = Measure::cpuSeconds() - start;
    QFile::remove(target);
    return seconds;
}

/** The least that each took, one after the other in each run. */
struct Costs
{
    double ours = 1e9;
    double plain = 1e9;
};

template <class Ours, class Plain>
Costs inTurn(int runs, Ours ours, Plain plain)
{
    Costs costs;
    for (int i = 0; i < runs; ++i) {
        costs.plain = std::min(costs.plain, plain());
        costs.ours = std::min(costs.ours, ours());
    }
    return costs;
}

void printRow(const char *work, const char *reference, double seconds, double referenceSeconds)
{
    std::printf("%-40s %8.2f s   %-28s %8.2f s   %5.2f x\n", work, seconds, reference, referenceSeconds,
                seconds / referenceSeconds);
    std::fflush(stdout);
}

void benchSmall(const QDir &folder, int runs)
{
    const QString top = folder.filePath(QStringLiteral("small"));
    const QString database = folder.filePath(QStringLiteral("bench.vrn"));
    if (!QDir(top).exists())
        makeSmallTree(top);
    const Costs costs = inTurn(
        runs, [&] { return addByProgram(database, top, true); },
        [&] { return addSmallPlainly(database, top); });
    printRow("add 100,000 small external files", "plain sqlite3", costs.ours, costs.plain);
    removeDatabase(database);
}

void benchLarge(const QDir &folder, int runs)
{
    const QString top = folder.filePath(QStringLiteral("large"));
    const QString database = folder.filePath(QStringLiteral("bench.vrn"));
    if (!QDir(top).exists())
        makeLargeFiles(top);
    double copy = 1e9;
    double copyClock = 1e9;
    double ourClock = 1e9;
    const Costs costs = inTurn(
        runs,
        [&] {
            QElapsedTimer clock;
            clock.start();
            const double cpu = addByProgram(database, top, false);
            ourClock = std::min(ourClock, double(clock.nsecsElapsed()) / 1e9);
            return cpu;
        },
        [&] {
            const double cpu = addLargePlainly(database, top);
            removeDatabase(database);
            QElapsedTimer clock;
            clock.start();
            copy = std::min(copy, copyLarge(folder.filePath(QStringLiteral("copy")), top));
            copyClock = std::min(copyClock, double(clock.nsecsElapsed()) / 1e9);
            return cpu;
        });
    printRow("add 2 GB as 40 internal files", "plain sqlite3", costs.ours, costs.plain);
    printRow("", "copy and fsync", costs.ours, copy);
    printRow("by the clock", "copy and fsync", ourClock, copyClock);
    removeDatabase(database);
}

/** Each fifth file of the small ones is a picture; no two are equal. */
void makePictures(const QString &top)
{
    makeSmallTree(top);
    std::mt19937 random(3);
    QVector<QByteArray> pictures;
    for (int i = 0; i < differentPictures; ++i) {
        QImage image(300, 200, QImage::Format_RGB32);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                image.setPixel(x, y,
                               qRgb((x * (i + 3)) / 4 % 256, (y + int(random() % 24)) % 256, (x + y) / 2));
        }
        QByteArray bytes;
        QBuffer buffer(&bytes);
        if (!image.save(&buffer, "JPG", 85))
            qFatal("no picture can be saved");
        pictures.append(bytes);
    }
    for (int i = 0; i < smallFiles; i += filesToPicture) {
        const int folder = i / filesInFolder;
        const QString path = QStringLiteral("%1/area %2/topic %3/item %4/")
                                 .arg(top)
                                 .arg(folder / 100)
                                 .arg(folder / 10 % 10)
                                 .arg(folder % 10);
        QFile::remove(path + QStringLiteral("document number %1.txt").arg(i));
        writeFile(path + QStringLiteral("picture number %1.jpg").arg(i),
                  pictures.at(i / filesToPicture % differentPictures) + QByteArray::number(i));
    }
}

/** All pictures below the folder, one after the other in one thread: the processor's seconds. */
double decodePictures(const QString &top)
{
    const double start = Measure::cpuSeconds();
    QDirIterator pictures(top, {QStringLiteral("*.jpg")}, QDir::Files, QDirIterator::Subdirectories);
    while (pictures.hasNext()) {
        if (QImage(pictures.next()).isNull())
            qFatal("a picture cannot be read");
    }
    return Measure::cpuSeconds() - start;
}

/** Ends the processes that read pictures, to have their time counted: the last of all. */
void benchPictures(const QDir &folder, std::unique_ptr<QCoreApplication> &application)
{
    const QString top = folder.filePath(QStringLiteral("pictures"));
    const QString database = folder.filePath(QStringLiteral("bench.vrn"));
    if (!QDir(top).exists())
        makePictures(top);
    const double plain = addSmallPlainly(database, top) + decodePictures(top);
    QElapsedTimer clock;
    clock.start();
    double ours = addByProgram(database, top, true);
    const double elapsed = double(clock.nsecsElapsed()) / 1e9;
    application.reset();
    rusage used = {};
    getrusage(RUSAGE_CHILDREN, &used);
    ours += double(used.ru_utime.tv_sec + used.ru_stime.tv_sec) +
            double(used.ru_utime.tv_usec + used.ru_stime.tv_usec) / 1e6;
    printRow("add 100,000, a fifth small pictures", "plain sqlite3 and decoding", ours, plain);
    std::printf("%.2f s by the clock; %.2f ms a picture beyond its decoding and all rows\n", elapsed,
                (ours - plain) * 1000 * filesToPicture / smallFiles);
    removeDatabase(database);
}

} // namespace

int main(int argc, char **argv)
{
    auto application = std::make_unique<QCoreApplication>(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    const QStringList arguments = application->arguments();
    const QString what = arguments.value(1, QStringLiteral("all"));
    const int runs = qMax(1, arguments.value(2, QStringLiteral("3")).toInt());
    QTemporaryDir temporary;
    const QDir folder(arguments.value(3, temporary.path()));
    folder.mkpath(QStringLiteral("."));
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, temporary.path());
    const auto isWanted = [&what](QLatin1String part) {
        return what == part || what == QLatin1String("all");
    };
    if (isWanted(QLatin1String("small")))
        benchSmall(folder, runs);
    if (isWanted(QLatin1String("large")))
        benchLarge(folder, runs);
    if (isWanted(QLatin1String("pictures")))
        benchPictures(folder, application);
    return 0;
}
