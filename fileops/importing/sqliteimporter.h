#pragma once

#include "fileops/files/shellfile.h"
#include "fileops/importing/criticaldmerror.h"
#include "fileops/worker/importoptions.h"

#include <QList>
#include <QObject>
#include <QVector>

class FileOperationWorker;
class ImportRun;
class StatementBreak;
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
    static void compareFiles(ImportRun &run, bool isAdding);
    void work(ImportRun &run, const ImportOptions &options, bool isAdding);
    StatementBreak endsWithRun();
    /** Other numbers once another connection has written to one of the databases. */
    static QVector<qint64> versions(ImportRun &run);
    void importTagsAndTrees(ImportRun &run, const ImportOptions &options);
    static QList<ShellFile> missingFiles(ImportRun &run);
    QString title() const;
    void refuse(const QString &name, const QString &why);
    void tellFailure(const ImportRun &run, const QSqlError &error);

    FileOperationWorker &m_worker;
    bool m_isShell = false;
    QString m_outcome;
};
