#pragma once

#include "core/providers/foreignchanges.h"
#include "core/records/recordtypes.h"
#include "core/tagging/tagchange.h"
#include "db/undo/changeset.h"

#include <QHash>
#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>
#include <memory>

class EditNotes;
class FileOperationProvider;
struct ImportOptions;
class MainViewProvider;
class PartFile;
struct ExportRequest;

/** What FileEdits asks of the manager that owns it. GUI thread. */
class FileEditsHost
{
public:
    virtual ~FileEditsHost() = default;

    /** Whether an operation of the worker may go ahead that rests on this. */
    virtual bool mayRequest(const EditBase &base) = 0;
    /** Both are false after a word to the user. */
    virtual bool isNameGiven(const QString &name) = 0;
    virtual bool isStorable(const QString &text) = 0;
    virtual const Map<qint64, File *> &knownFiles() const = 0;
    /** Runs an edit of files, when the records that it rests on are those of the database. */
    virtual bool runFileEdit(const EditBase &base, const std::function<bool()> &edit) = 0;
    /** Within an edit: what is noted there can be taken back. */
    virtual EditNotes notes() = 0;
};

/**
 * The edits of files: changes of records, which are done when a call returns, and requests to the worker,
 * which are queued from the event loop. Owned by the manager, GUI thread. An edit that the host does not
 * allow is dropped.
 */
class FileEdits
{
public:
    /** The host must outlive this, the providers each call; one that is null takes nothing. */
    explicit FileEdits(FileEditsHost &host) : m_host(host) {}
    void setProviders(MainViewProvider *records, FileOperationProvider *worker);

    bool updateFile(qint64 fileId, const QString &column, const QString &value);
    bool updateFilePath(qint64 fileId, const QString &column, const QString &value);
    bool renameFile(qint64 fileId, const QString &name, const QString &path, const QString &relPath);
    /** All or nothing. Many pairs of file and tag are left to the worker: then true says that it has them. */
    bool changeTags(const TagChanges &changes);
    /** For the worker: writes all of it, or merges tags. */
    bool replay(const EditBase &base, const QVector<ChangeSet> &changes);
    bool mergeTags(qint64 target, const QVector<qint64> &others);
    static int mostPairsAtOnce() { return mostPairs; }
    /** For tests. */
    static void setMostPairsAtOnce(int pairs) { mostPairs = pairs; }

    /** These two: false when nothing is queued. */
    bool addFiles(const QStringList &paths, const QVector<qint64> &tagIds, bool fromSelectedNode,
                  qint64 nodeId, const QHash<QString, QString> &hyperlinkDetails);
    bool addFilesList(const QStringList &paths);
    /** Those that are in their places again may be spared. */
    void deleteFiles(const QVector<qint64> &fileIds, bool onlyMissing = false);
    void transferFiles(const QVector<qint64> &fileIds);
    void extractFiles(const QVector<qint64> &fileIds, const QStringList &targetPaths,
                      const QSet<QString> &replacedPaths, const QSet<QString> &comparedPaths);
    void extractToTemporary(qint64 fileId);
    void exportDatabase(const ExportRequest &what, const std::shared_ptr<PartFile> &target);
    void remakeThumbnails(const QVector<qint64> &fileIds);
    void importDatabase(const QString &source, bool isShell, const ImportOptions &options);
    /** File ids to their new paths. */
    void locateFiles(const QMap<qint64, QString> &paths);
    void checkExternalFiles(const QVector<qint64> &fileIds, bool givesWay, bool marksOnly);
    bool endChecks();
    QVector<qint64> endSingleChecks();

private:
    bool edit(const EditBase &base, const std::function<bool(MainViewProvider &)> &change);
    void request(const std::function<void(FileOperationProvider &)> &task);
    /** Theirs, as an id may be another file's by the time that the worker comes to it. The ids ascend. */
    QStringList idCodes(const QVector<qint64> &fileIds) const;

    static int mostPairs;

    FileEditsHost &m_host;
    MainViewProvider *m_records = nullptr;
    FileOperationProvider *m_worker = nullptr;
};
