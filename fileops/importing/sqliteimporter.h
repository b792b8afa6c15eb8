#pragma once

#include "fileops/files/shellfile.h"
#include "fileops/importing/criticaldmerror.h"
#include "fileops/worker/importoptions.h"

#include <QList>
#include <QObject>

class ContentComparison;
class FileOperationWorker;
class ImportRun;
class Transaction;

/**
 * Merges another local database, or a shell, into the open one. The source is attached to the worker's
 * connection as `fileSource`, read-only; all is done in one transaction, and nothing of it stays when it
 * fails or is cancelled. Made for one run on the worker's thread.
 */
class SQLiteImporter : public QObject
{
    Q_OBJECT

public:
    /** Ends a run at a statement that failed. */
    using CriticalDMError = ::CriticalDMError;

    explicit SQLiteImporter(FileOperationWorker &worker);

    /** False when nothing was imported; then the word about it has gone out, save for what report() tells. */
    bool importSQLiteDatabase(const QString &source, const ImportOptions &options);
    /** Takes metadata only, of the files that both sides have. */
    bool importShellDB(const QString &source, const ImportOptions &options);

    /** The word at the end of an import that was done. */
    QString outcome() const { return m_outcome; }

signals:
    void startProgress();
    void progress(float percent);
    /** The files of a shell that are not here. */
    void importNotification(QList<ShellFile> files);

private:
    bool import(const QString &path, const ImportOptions &options, bool isShell);
    bool runAttached(ImportRun &run, const ImportOptions &options);
    Transaction begin();
    static void createTables(ImportRun &run);
    void work(ImportRun &run, const ImportOptions &options);
    void importTagsAndTrees(ImportRun &run, const ImportOptions &options);
    static void importFiles(ImportRun &run, const ContentComparison &contents, bool isAdding,
                            bool takesDescriptions);
    static QList<ShellFile> missingFiles(ImportRun &run);
    QString title() const;
    void refuse(const QString &name, const QString &why);
    void tellFailure(const ImportRun &run, const QSqlError &error);

    FileOperationWorker &m_worker;
    bool m_isShell = false;
    QString m_outcome;
};
