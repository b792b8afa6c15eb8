// Exporting to another database: from the request to the last signal, beside plain sqlite3 that copies the
// same rows in one transaction. Usage: bench_export [small | large | all] [runs] [folder]. Large needs room
// for 6 GB.
#include "bench/exportcost.h"
#include "bench/plaindatabase.h"
#include "db/manager/exporttarget.h"
#include "db/sql/schema.h"
#include "db/sql/sqlitequeryconstructor.h"
#include "fileops/provider/sqlitefileoperationprovider.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QLoggingCategory>
#include <QSettings>
#include <QTemporaryDir>

namespace {

const int smallFiles = Measure::amount(100000);
const int largeFiles = Measure::amount(40);
constexpr int tagCount = 500;

void makeTables(PlainDatabase &database)
{
    database.run("PRAGMA page_size=16384");
    database.run("BEGIN");
    for (const QString &statement : Schema::creationStatements())
        database.run(statement.toUtf8().constData());
    database.run("COMMIT");
}

void runFilled(PlainDatabase &database, const char *statement, int count)
{
    const QString numbers =
        QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<%1) ");
    database.run((numbers.arg(count) + QLatin1String(statement)).toUtf8().constData());
}

void fillTags(PlainDatabase &database, int files)
{
    runFilled(database, "INSERT INTO tags SELECT i,'tag '||i,'',0,NULL FROM n", tagCount);
    runFilled(database, "INSERT INTO tb_nodes SELECT i,i,1,0 FROM n", tagCount);
    runFilled(database, "INSERT INTO tb_node_links SELECT i/3,i FROM n", tagCount);
    runFilled(database,
              "INSERT INTO file_tag SELECT i,1+i%500 FROM n UNION SELECT i,1+i*7%499 FROM n "
              "UNION SELECT i,1+i*13%498 FROM n",
              files);
}

/** A block of a kilobyte each. */
void fillSmall(PlainDatabase &database)
{
    runFilled(database, "INSERT INTO storage SELECT i,randomblob(1000) FROM n", smallFiles);
    runFilled(database, "INSERT INTO storage_info SELECT i,0 FROM n", smallFiles);
    runFilled(database,
              "INSERT INTO files SELECT i,'file '||i||'.txt','about '||i,1000,1,1,"
              "'C'||abs(random()%1000000)||'-'||i,1,i,NULL,i,1 FROM n",
              smallFiles);
    fillTags(database, smallFiles);
}

/** Five blocks of ten megabytes each. */
void fillLarge(PlainDatabase &database)
{
    runFilled(database, "INSERT INTO storage SELECT i,randomblob(10000000) FROM n", 5 * largeFiles);
    runFilled(database, "INSERT INTO storage_info SELECT i,iif(i%5=0,0,i+1) FROM n", 5 * largeFiles);
    runFilled(database, "INSERT INTO files SELECT i,'f'||i,'',50000000,1,1,'C'||i,1,5*i-4,NULL,i,1 FROM n",
              largeFiles);
    fillTags(database, largeFiles);
}

/** The rows of chosen files, by their ids: whole tables SQLite copies unread, which serves no selection. */
void copyPlain(const QString &from, const QString &to)
{
    QFile::remove(to);
    {
        PlainDatabase target(to.toUtf8().constData());
        makeTables(target);
    }
    PlainDatabase database(from.toUtf8().constData());
    database.run(QStringLiteral("ATTACH '%1' AS copy").arg(to).toUtf8().constData());
    database.run("CREATE TEMP TABLE ids (id INTEGER PRIMARY KEY)");
    database.run("INSERT INTO ids SELECT file_id FROM files");
    database.run("BEGIN");
    const char *const copies[] = {
        "tags SELECT * FROM tags",
        "tb_nodes SELECT * FROM tb_nodes",
        "tb_node_links SELECT * FROM tb_node_links",
        "files SELECT * FROM files WHERE file_id IN ids",
        "file_tag SELECT * FROM file_tag WHERE file_id IN ids",
        "storage_info SELECT * FROM storage_info WHERE storage_id BETWEEN 1 AND 1000000",
        "storage SELECT * FROM storage WHERE storage_id BETWEEN 1 AND 1000000",
    };
    for (const char *copy : copies)
        database.run((QByteArray("INSERT INTO copy.") + copy).constData());
    database.run("COMMIT");
}

void exportAll(const QString &from, const QString &to, int files)
{
    QFile::remove(to);
    SqliteQueryConstructor constructor;
    SqliteFileOperationProvider provider(&constructor, DBDetails::local(from), nullptr);
    QEventLoop loop;
    bool isDone = false;
    QObject::connect(&provider, &FileOperationProvider::exchangeDone, &loop, [&isDone] { isDone = true; });
    QObject::connect(&provider, &FileOperationProvider::finishedFilesOperation, &loop, &QEventLoop::quit,
                     Qt::QueuedConnection);
    ExportRequest request;
    request.path = to;
    request.addAllTagsOfFiles = true;
    for (int id = 1; id <= files; ++id)
        request.fileIds.append(id);
    provider.exportDatabase(request, ExportTarget().make(request));
    loop.exec();
    if (!isDone)
        qFatal("the export has failed");
}

void benchExport(const QDir &folder, const char *title, int files, void (*fill)(PlainDatabase &), int runs)
{
    const QString source = folder.filePath(QStringLiteral("source.vrn"));
    const QString ours = folder.filePath(QStringLiteral("ours.vrn"));
    const QString plain = folder.filePath(QStringLiteral("plain.vrn"));
    QFile::remove(source);
    {
        PlainDatabase database(source.toUtf8().constData());
        makeTables(database);
        database.run("BEGIN");
        fill(database);
        database.run("COMMIT");
    }
    compareInTurn(
        title, runs, [&] { exportAll(source, ours, files); }, [&] { copyPlain(source, plain); });
    for (const QString &file : {source, ours, plain})
        QFile::remove(file);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    const QStringList arguments = application.arguments();
    const QString which = arguments.value(1, QStringLiteral("all"));
    const int runs = qMax(1, arguments.value(2, QStringLiteral("3")).toInt());
    QTemporaryDir temporary(arguments.value(3, QDir::tempPath()) + QStringLiteral("/bench_export-XXXXXX"));
    if (!temporary.isValid())
        qFatal("there is no such folder");
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, temporary.path());
    const QDir folder(temporary.path());
    if (which != QLatin1String("large"))
        benchExport(folder, "export 100,000 small internal files", smallFiles, fillSmall, runs);
    if (which != QLatin1String("small"))
        benchExport(folder, "export 2 GB as 40 internal files", largeFiles, fillLarge, runs);
    return 0;
}
