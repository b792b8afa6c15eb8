#include "fileops/importing/sqliteimporter.h"

#include "db/sql/sqliteerrors.h"
#include "db/sql/statementbreak.h"
#include "db/sql/transaction.h"
#include "fileops/exchange/attacheddatabase.h"
#include "fileops/exchange/caughterror.h"
#include "fileops/exchange/quietstatements.h"
#include "fileops/importing/contentcomparison.h"
#include "fileops/importing/contentgroups.h"
#include "fileops/importing/fileimporter.h"
#include "fileops/importing/groupimporter.h"
#include "fileops/importing/importrun.h"
#include "fileops/importing/metadatamerger.h"
#include "fileops/importing/nodeimporter.h"
#include "fileops/importing/relationshipimporter.h"
#include "fileops/importing/sourcefiles.h"
#include "fileops/importing/tagimporter.h"
#include "fileops/worker/fileoperationworker.h"

#include <QDebug>
#include <QSignalBlocker>
#include <QSqlDatabase>

namespace {
const QString schemaName = QStringLiteral("fileSource");

/** What is a file's own affair, or that of its disk, and not that of a statement. */
bool isOfFile(const QSqlError &error)
{
    return SqliteErrors::isOneOf(error, {SQLITE_BUSY, SQLITE_LOCKED, SQLITE_NOMEM, SQLITE_READONLY,
                                         SQLITE_IOERR, SQLITE_FULL, SQLITE_CANTOPEN});
}
/** A place that cannot be read, which may be one of either file. */
bool isOfReading(const QSqlError &error)
{
    const int code = SqliteErrors::code(error);
    return code == SQLITE_IOERR_READ || code == SQLITE_IOERR_SHORT_READ;
}
} // namespace

SQLiteImporter::SQLiteImporter(FileOperationWorker &worker) : m_worker(worker) {}

bool SQLiteImporter::importSQLiteDatabase(const QString &source, const ImportOptions &options)
{
    qDebug("Importing from external database.");
    const bool isDone = import(source, options, false);
    qDebug("Finished importing.");
    return isDone;
}

bool SQLiteImporter::importShellDB(const QString &source, const ImportOptions &options)
{
    qDebug("Importing from database shell.");
    const bool isDone = import(source, options, true);
    qDebug("Finished importing shell.");
    return isDone;
}

bool SQLiteImporter::import(const QString &path, const ImportOptions &options, bool isShell)
{
    m_isShell = isShell;
    emit startProgress();
    emit m_worker.operationProgress(FileOperationType::ImportOperation, tr("Importing files..."), 0);
    const QSqlDatabase database = QSqlDatabase::database(m_worker.connectionName(), false);
    ImportSource source(path);
    if (!source.examine(database.databaseName())) {
        refuse(source.shownName(), source.whyNot());
        return false;
    }
    AttachedDatabase attached(m_worker, schemaName);
    if (!attached.attach(path, AttachedDatabase::ReadOnly)) {
        qDebug("FileAddWorker: ERROR OPENING DATABASE.");
        emit m_worker.error(tr("There was an error when opening a connection to the database for the purpose "
                               "of adding files.") +
                                QLatin1String("\n\n") +
                                (attached.isBusy() ? ImportSource::busyText() : attached.reason()),
                            tr("Error opening connection to database"));
        return false;
    }
    ImportRun run(m_worker, source, isShell);
    bool isDone = false;
    try {
        isDone = runAttached(run, options);
    } catch (const CriticalDMError &failure) {
        tellFailure(run, failure.error());
    } catch (...) {
        tellFailure(run, QSqlError(QString(), CaughtError::text()));
    }
    run.statements.forget();
    // Ends all temporary tables, too.
    m_worker.runAsync(QStringLiteral("PRAGMA temp_store=MEMORY;"));
    return isDone;
}

bool SQLiteImporter::runAttached(ImportRun &run, const ImportOptions &options)
{
    // A million files make tables that are too large to be kept in memory.
    run.statements.run(QStringLiteral("PRAGMA temp_store=FILE"));
    const bool isAdding = options.files && !m_isShell;
    const QVector<qint64> compared = versions(run);
    {
        // Without the lock, for which others would wait: it may read the contents of all files.
        const StatementBreak statementBreak = endsWithRun();
        compareFiles(run, isAdding);
    }
    QList<ShellFile> missing;
    {
        Transaction transaction = begin();
        if (!transaction.isActive()) {
            if (m_worker.lastError().isValid())
                throw CriticalDMError(m_worker.lastError());
            m_worker.report().setOutcome(tr("Nothing was imported."));
            return false;
        }
        {
            const StatementBreak statementBreak = endsWithRun();
            if (versions(run) != compared) {
                // What others wrote meanwhile counts.
                run.report = ImportReport();
                compareFiles(run, isAdding);
            }
            work(run, options, isAdding);
            if (m_isShell)
                missing = missingFiles(run);
            run.stopIfEnded();
        }
        // Rows that are still being read would keep it from its end.
        run.statements.forget();
        if (!transaction.commit()) {
            m_worker.report().setOutcome(tr("Nothing was imported."));
            return false;
        }
    }
    const QStringList lacking = m_isShell ? QStringList() : run.source.missingTables();
    if (!lacking.isEmpty())
        run.report.setNote(
            tr("It has no tables of these names, or others: %1.").arg(lacking.join(QLatin1String(", "))));
    m_outcome = run.report.text(run.source.shownName());
    if (m_isShell)
        emit importNotification(missing);
    return true;
}

Transaction SQLiteImporter::begin()
{
    // It takes the lock of the source, too: what is in the way of that is no error of the open database.
    const QSignalBlocker silence(m_worker);
    m_worker.forgetLastError();
    return Transaction(m_worker, m_worker.connectionName());
}

StatementBreak SQLiteImporter::endsWithRun()
{
    return StatementBreak(QSqlDatabase::database(m_worker.connectionName(), false),
                          [this] { return m_worker.shouldEnd(); });
}

QVector<qint64> SQLiteImporter::versions(ImportRun &run)
{
    return {run.statements.number(QStringLiteral("PRAGMA main.data_version")),
            run.statements.number(QStringLiteral("PRAGMA fileSource.data_version"))};
}

void SQLiteImporter::createTables(ImportRun &run)
{
    TagImporter(run).createTable();
    GroupImporter(run).createTable();
    SourceFiles(run).createTables();
    ContentGroups::createTables(run);
    ChunkRows::createTables(run);
    run.statements.number(QStringLiteral("SELECT count(*) FROM mem_external_file_group"));
}

void SQLiteImporter::compareFiles(ImportRun &run, bool isAdding)
{
    run.tell(tr("Comparing files..."), 2);
    createTables(run);
    const ContentComparison contents(run.worker, run.source.path());
    SourceFiles files(run);
    files.read();
    files.fillChecksums(contents);
    ContentGroups(run, contents, isAdding).group();
}

void SQLiteImporter::work(ImportRun &run, const ImportOptions &options, bool isAdding)
{
    const auto say = [&](const QString &text, int percent) {
        run.stopIfEnded();
        emit progress(float(percent));
        run.tell(text, percent);
    };
    say(tr("Importing tags..."), 20);
    importTagsAndTrees(run, options);
    if (isAdding) {
        qDebug("importFiles()");
        FileImporter(run, options.descriptions != ExchangeSettings::LeaveDescriptions).copyFiles();
    }
    MetadataMerger merger(run);
    say(tr("Merging descriptions..."), 95);
    // What replaces another description must not replace that of the copy that was chosen to be added.
    if (options.descriptions == ExchangeSettings::ReplaceDescriptions)
        merger.mergeDescriptions(options.descriptions);
    ContentGroups::noteAdded(run);
    if (options.descriptions == ExchangeSettings::AppendDescriptions)
        merger.mergeDescriptions(options.descriptions);
    say(tr("Linking tags..."), 97);
    if (options.fileTags)
        merger.linkTags();
}

void SQLiteImporter::importTagsAndTrees(ImportRun &run, const ImportOptions &options)
{
    if (!options.tags)
        return;
    TagImporter tags(run);
    if (m_isShell)
        tags.importTagsOfCommonFiles();
    else
        tags.importTags();
    if (options.tagGroups)
        GroupImporter(run).importGroups();
    if (options.browsingNodes)
        NodeImporter(run).importNodes();
    if (options.tagRelationships)
        RelationshipImporter(run).importRelationships();
}

QList<ShellFile> SQLiteImporter::missingFiles(ImportRun &run)
{
    QList<ShellFile> missing;
    run.statements.each(
        QStringLiteral("SELECT ex.file_name, ex.file_size, ex.modification_date, ex.id_code "
                       "FROM fileSource.files AS ex WHERE NOT EXISTS (SELECT 1 FROM "
                       "mem_external_file_group AS inf WHERE inf.file_id=ex.file_id) ORDER BY ex.file_name"),
        [&missing](const ImportStatements::Row &row) {
            ShellFile file;
            file.fileName = row.text(0);
            file.fileSize = row.number(1);
            file.lastModified = QDateTime::fromSecsSinceEpoch(row.number(2));
            file.idCode = row.text(3);
            missing.append(file);
        });
    return missing;
}

void SQLiteImporter::refuse(const QString &name, const QString &why)
{
    emit m_worker.error(tr("\"%1\" was not imported.\n\n%2").arg(name, why), title());
}

QString SQLiteImporter::title() const
{
    return m_isShell ? tr("Error importing shell database ") : tr("Error importing files ");
}

void SQLiteImporter::tellFailure(const ImportRun &run, const QSqlError &error)
{
    m_worker.report().setOutcome(tr("Nothing was imported."));
    m_worker.report().setDone(0, 1);
    if (m_worker.shouldEnd())
        return;
    qDebug("%s", m_isShell ? "importShellDB(...) has caught an unknown exception ***"
                           : "importSQLiteDatabase(...) has caught an unknown exception *******");
    if (isOfFile(error)) {
        // It does not say which of the two files it is about.
        QuietStatements source(m_worker);
        if (!source.run(QStringLiteral("SELECT count(*) FROM fileSource.sqlite_master"))) {
            refuse(run.source.shownName(), source.isBusy() ? ImportSource::busyText() : source.reason());
            return;
        }
        if (!isOfReading(error)) {
            m_worker.emitError(error);
            return;
        }
    }
    if (SqliteErrors::isOneOf(error, {SQLITE_CORRUPT})) {
        refuse(run.source.shownName(),
               tr("A part of it, or of the open database, cannot be read, as the file is damaged."));
        return;
    }
    const QString text = m_isShell ? tr("An unknown error occurred while importing shell database")
                                   : tr("An unknown error occurred while adding files");
    emit m_worker.error(text + QLatin1String("\n\n") + error.databaseText(), title());
}
