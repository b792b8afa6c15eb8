#pragma once

#include "app/settings/dbdetails.h"
#include "core/records/recordtypes.h"
#include "db/manager/editnotes.h"
#include "db/manager/editrunner.h"
#include "db/manager/errorteller.h"
#include "db/manager/fileedits.h"
#include "db/manager/newscount.h"
#include "db/manager/providers.h"
#include "db/manager/recordedits.h"
#include "db/manager/recordkeeper.h"
#include "db/manager/recordloads.h"
#include "db/manager/replays.h"
#include "db/manager/tagmerges.h"
#include "db/manager/wholereload.h"
#include "db/sql/tabledata.h"
#include "fileops/files/shellfile.h"
#include "fileops/pictures/storedimage.h"
#include "fileops/worker/deletedfilerepresentations.h"
#include "fileops/worker/presentableduplicates.h"

#include <QDateTime>
#include <QHash>
#include <QImage>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QSqlError>

#include <functional>
#include <memory>

class AbstractQueryConstructor;
class BaseDBProvider;
class ImageLoading;
class StoredPictures;
class ThumbnailCache;
class UserPrompts;
class WriteGuard;

/**
 * The one object through which everything else reaches an open database. It owns the connections, the
 * providers with their SQL, the records of all domains and the thumbnails. Operations run on the main thread
 * and have merged their result when they return, except for file operations, which a worker runs; either way
 * the news goes out as signals. One manager serves one database and is never opened on another.
 *
 * Writing operations do nothing when isDataCurrent() says no. They do not ask whether the database is
 * read-only: whoever offers an edit does.
 */
class DatabaseManger : public QObject,
                       protected EditRunHost,
                       private FileEditsHost,
                       private RecordEditsHost,
                       private WholeReloadHost
{
    Q_OBJECT

public:
    DatabaseManger(const QString &driver, const QString &database, const QString &host, const QString &user,
                   const QString &password, int port, QObject *parent = nullptr);
    ~DatabaseManger() override;

    /**
     * Whether a database can be opened, asked on a connection of its own before any manager exists. Tells the
     * user why not, and upgrades an older schema when the user agrees. Never makes a file.
     */
    static bool checkDatabaseVersion(const QString &driver, const QString &database, const QString &host,
                                     const QString &user, const QString &password, int port,
                                     UserPrompts &prompts);
    /** The names of all tags of a database that is not open; empty when it cannot be read. */
    static QStringList tagNames(const DBDetails &details);

    /** Borrowed; before openDB(), which may have something to tell. */
    void setPrompts(UserPrompts &prompts) { m_prompts = &prompts; }
    /** An invalid error, or one of the type NoError, is success. */
    virtual QSqlError openDB();
    /** Ends file operations and waits for them, then closes the connections. Nothing can be asked after it.
     */
    virtual void closeDB();
    /** 1 for a local database, 2 for one on a server. */
    virtual int dbType() const = 0;
    /** Makes a new, empty database; only where the back-end is a file. */
    virtual bool createDatabase() = 0;

    DBDetails details() const;
    QString databaseName() const { return m_databaseName; }
    QString hostName() const { return m_hostName; }
    int port() const { return m_port; }
    QString userName() const { return m_userName; }
    QString password() const { return m_password; }
    /** True until the test at opening has found that the database can be written. */
    bool isReadOnly() const { return m_readOnly; }
    QString dbVersion() const { return m_dbVersion; }

    // The records. All pointers are borrowed.
    const TableData &tags() const { return m_records.tags().rows(); }
    QString tagName(qint64 tagId) const { return m_records.tags().name(tagId); }
    bool hasTag(qint64 tagId) const { return m_records.tags().row(tagId) != nullptr; }
    bool hasTagNamed(const QString &name) const { return m_records.tags().hasName(name); }
    Map<qint64, GroupItem *> *groups() { return &m_records.groups().map(); }
    Map<QString, AutoLink *> &autoLinks() { return m_autoLinks; }
    Map<qint64, TBnode *> &nodes() { return m_records.nodes().map(); }
    Vector<QPair<QString, TRnode *>> &relationNodes() { return m_records.relations().nodes(); }
    /** Null for an unknown path. */
    TRnode *relationNode(const QString &path) const { return m_records.relations().node(path); }
    Map<qint64, File *> &files() { return m_records.files().map(); }
    /** Null for an unknown file. */
    File *file(qint64 fileId) const { return m_records.files().map().value(fileId); }
    Map<qint64, QString> &browsingTrees() { return m_browsingTrees; }
    /** Whether the file of an external record was not there at the last look. */
    bool isMissing(qint64 fileId) const { return m_records.files().isMissing(fileId); }
    const QSet<qint64> &missingFiles() const { return m_records.files().missing(); }
    ThumbnailCache *thumbnailCache() const { return m_thumbnailCache; }
    /** Takes over what the user has just set. */
    virtual void readSettings();

    /** False for a blank name, which nothing gets; the user hears of it. All that name something ask. */
    bool isNameGiven(const QString &name) override;

    void loadAllTags() { m_loads.loadAllTags(); }
    /** Gives the id of the new tag, which is linked to the files too; 0 on failure. */
    qint64 addTag(const QString &name, const QVector<qint64> &fileIds = {})
    {
        return m_edits.addTag(name, fileIds);
    }
    /** The same with a place in a group: both or neither. */
    qint64 addTagToGroup(const QString &name, qint64 groupId) { return m_edits.addTagToGroup(name, groupId); }
    /** Makes the new ones among the tags, at least one, and links all of them; all or nothing. */
    bool tagFiles(const QVector<qint64> &fileIds, const ChosenTags &tags)
    {
        return m_edits.tagFiles(fileIds, tags);
    }
    void renameTag(qint64 tagId, const QString &name) { m_edits.renameTag(tagId, name); }
    void changeTagDescription(qint64 tagId, const QString &text)
    {
        m_edits.changeTagDescription(tagId, text);
    }
    /**
     * Makes one tag of several: the others go, with one edit that can be taken back. In a database of many
     * files it is queued for the worker, and true says that it is.
     */
    bool mergeTags(qint64 target, const QVector<qint64> &others);
    /** Whether a node has one of the tags, also one of a tree that is not shown; or it cannot be told. */
    bool areTagsOnNodes(const QVector<qint64> &tagIds);
    /** Removes the tags with all that refers to them, all or nothing; nodes below theirs move up. */
    bool removeTags(const QVector<qint64> &tagIds) { return m_edits.removeTags(tagIds); }

    void loadAllGroups() { m_loads.loadAllGroups(); }
    /** Gives the id of the new group, 0 on failure. */
    qint64 addGroup(const QString &name, bool visible) { return m_edits.addGroup(name, visible); }
    void renameGroup(qint64 groupId, const QString &name) { m_edits.renameGroup(groupId, name); }
    void removeGroups(const QVector<qint64> &groupIds) { m_edits.removeGroups(groupIds); }
    /** Makes this the whole list of the group's tags. */
    bool setGroupTags(qint64 groupId, const QVector<qint64> &tagIds)
    {
        return m_edits.setGroupTags({{groupId, tagIds}});
    }
    /** The same for several groups, by their ids, all or none. */
    bool setGroupTags(const QMap<qint64, QVector<qint64>> &tagsOfGroups)
    {
        return m_edits.setGroupTags(tagsOfGroups);
    }

    void loadAllNodes() { m_loads.loadAllNodes(); }
    /** Gives the id of the new node, 0 on failure; parent 0 is the top level. */
    qint64 addNodeBelow(qint64 tagId, qint64 parentId) { return m_edits.addNodeBelow(tagId, parentId); }
    /** The same between a node and its parent. */
    qint64 addNodeAbove(qint64 tagId, qint64 nodeId) { return m_edits.addNodeAbove(tagId, nodeId); }
    /** The same for many tags, all or none: nodes beside each other below, or a chain above. */
    bool addNodesBelow(const QVector<qint64> &tagIds, qint64 parentId)
    {
        return m_edits.addNodesBelow(tagIds, parentId) > 0;
    }
    /** The same with tags of which at least one is new. */
    bool addNodesOf(const ChosenTags &tags, qint64 parentId) { return m_edits.addNodesOf(tags, parentId); }
    /** Nodes one below the other; gives the id of the last, 0 when nothing was added. */
    qint64 addNodePath(const QVector<NodeStep> &steps, qint64 parentId)
    {
        return m_edits.addNodePath(steps, parentId);
    }
    void addNodesAbove(const QVector<qint64> &tagIds, qint64 nodeId)
    {
        m_edits.addNodesAbove(tagIds, nodeId);
    }
    /** Removes nodes with all below them. */
    bool removeNodes(const QVector<qint64> &nodeIds) { return m_edits.removeNodes(nodeIds); }
    /** Removes nodes alone: their children move up to the nearest node that stays. */
    bool removeNodesKeepingChildren(const QVector<qint64> &nodeIds)
    {
        return m_edits.removeNodesKeepingChildren(nodeIds);
    }
    void updateNode(qint64 nodeId, const QString &column, const QString &value)
    {
        m_edits.updateNode(nodeId, column, value);
    }
    virtual qint64 currentBrowsingTree() const = 0;
    virtual void setCurrentBrowsingTree(qint64 treeId) = 0;
    void loadBrowsingTrees() { m_loads.loadBrowsingTrees(); }
    /** Gives the id of the new tree, 0 on failure; several trees are a server's alone. */
    qint64 addBrowsingTree(const QString &name) { return m_edits.addBrowsingTree(name); }
    bool removeBrowsingTree(qint64 treeId) { return m_edits.removeBrowsingTree(treeId); }
    bool renameBrowsingTree(qint64 treeId, const QString &name)
    {
        return m_edits.renameBrowsingTree(treeId, name);
    }

    // Folders that feed nodes, as AutoLinks has them; a local database's alone.
    virtual void createAutoLink(const QString & /*folder*/, qint64 /*nodeId*/) {}
    virtual QString autoLinkRelativePath(const QString & /*linkId*/) const { return {}; }
    virtual QString autoLinkAbsolutePath(const QString & /*linkId*/) const { return {}; }
    virtual void removeAutoLink(const QString & /*linkId*/, qint64 /*nodeId*/) {}
    virtual void refreshAutoLinks() {}
    virtual void runAllAutoLinks(bool /*force*/) {}
    virtual void runAutoLinkOfNode(qint64 /*nodeId*/) {}
    virtual void syncAutoLink(const QString & /*linkId*/, qint64 /*nodeId*/, bool /*notifyDuplicates*/) {}

    void loadAllRelationNodes() { m_loads.loadAllRelationNodes(); }
    /** Puts tags below a path, at the top level for an empty one; places that exist are left out. */
    bool addRelations(const QString &parentPath, const QVector<qint64> &tagIds)
    {
        return m_edits.addRelations(parentPath, tagIds);
    }
    /** The same with tags of which at least one is new. */
    bool addRelationsOf(const QString &parentPath, const ChosenTags &tags)
    {
        return m_edits.addRelationsOf(parentPath, tags);
    }
    /** Removes paths with all below them. */
    void removeRelations(const QStringList &paths) { m_edits.removeRelations(paths); }

    void loadAllFiles() { m_loads.loadAllFiles(); }
    bool updateFile(qint64 fileId, const QString &column, const QString &value)
    {
        return m_fileEdits.updateFile(fileId, column, value);
    }
    bool updateFilePath(qint64 fileId, const QString &column, const QString &value)
    {
        return m_fileEdits.updateFilePath(fileId, column, value);
    }
    /** Writes name and paths of an external file, all or nothing; the file on the disk is left alone. */
    bool renameFile(qint64 fileId, const QString &name, const QString &path, const QString &relPath)
    {
        return m_fileEdits.renameFile(fileId, name, path, relPath);
    }
    /** Links and unlinks in one transaction. */
    bool changeTags(const QVector<qint64> &fileIds, const QVector<qint64> &linked,
                    const QVector<qint64> &unlinked)
    {
        return changeTags(Tagging::of(fileIds, linked, unlinked));
    }
    /**
     * The same for each tag by itself. Changes of more than FileEdits::mostPairsAtOnce() are queued for the
     * worker, and true says that they are.
     */
    bool changeTags(const TagChanges &changes) { return m_fileEdits.changeTags(changes); }
    bool linkTags(const QVector<qint64> &fileIds, const QVector<qint64> &tagIds)
    {
        return changeTags(fileIds, tagIds, {});
    }
    bool unlinkTags(const QVector<qint64> &fileIds, const QVector<qint64> &tagIds)
    {
        return changeTags(fileIds, {}, tagIds);
    }
    void reloadThumbnails(const QVector<qint64> &fileIds);
    /** The picture of a file in its whole size. */
    std::unique_ptr<ImageLoading> loadImage(qint64 fileId);
    /** Puts a turned picture in the place of what was loaded, with its thumbnail and its record. */
    StoredImage::Saving saveImage(qint64 fileId, const QImage &picture);

    // File operations: queued for the worker, from the event loop.
    /** False when the records must be read anew first, and nothing is queued. */
    bool addFiles(const QStringList &paths, const QVector<qint64> &tagIds, bool fromSelectedNode,
                  qint64 nodeId, const QHash<QString, QString> &hyperlinkDetails = {})
    {
        return m_fileEdits.addFiles(paths, tagIds, fromSelectedNode, nodeId, hyperlinkDetails);
    }
    bool addFilesList(const QStringList &paths) { return m_fileEdits.addFilesList(paths); }
    void deleteFiles(const QVector<qint64> &fileIds) { m_fileEdits.deleteFiles(fileIds); }
    /** Of external files; one that is in its place again by then stays. */
    void deleteMissingFiles(const QVector<qint64> &fileIds) { m_fileEdits.deleteFiles(fileIds, true); }
    /** Copies the contents of external files into the database. */
    void transferFiles(const QVector<qint64> &fileIds) { m_fileEdits.transferFiles(fileIds); }
    /** Copies files to a target path each, as FileOperationProvider::extractFiles() has it. */
    void extractFiles(const QVector<qint64> &fileIds, const QStringList &targetPaths,
                      const QSet<QString> &replacedPaths = {}, const QSet<QString> &comparedPaths = {})
    {
        m_fileEdits.extractFiles(fileIds, targetPaths, replacedPaths, comparedPaths);
    }
    /** Copies an internal file to where extractedTempFiles says. */
    void extractToTemporary(qint64 fileId) { m_fileEdits.extractToTemporary(fileId); }
    /** Writes a part of a local database to a file; false, after a word, when no file can be made there. */
    bool exportDatabase(const ExportRequest &request);
    /** Makes thumbnails of external files anew; without ids those of all that have one. */
    void remakeThumbnails(const QVector<qint64> &fileIds = {}) { m_fileEdits.remakeThumbnails(fileIds); }
    /** Merges another local database, or a shell, into this one; all is read anew afterwards. */
    void importDatabase(const QString &source, bool isShell, const ImportOptions &options)
    {
        m_fileEdits.importDatabase(source, isShell, options);
    }
    /** External files were found in other places: file ids to paths. */
    void locateFiles(const QMap<qint64, QString> &paths) { m_fileEdits.locateFiles(paths); }
    /** Looks, in the background, which external files are missing or changed; later ones may end it. */
    void checkExternalFiles(const QVector<qint64> &fileIds, bool givesWay = true)
    {
        m_fileEdits.checkExternalFiles(fileIds, givesWay, isReadOnly());
    }
    /** Ends those that may be ended. True when one had not come to its end. */
    virtual bool endChecks() { return m_fileEdits.endChecks(); }
    /** Ends the others as well. The files that are to be looked at once more. */
    QVector<qint64> endSingleChecks() { return m_fileEdits.endSingleChecks(); }
    /** Mends the paths of external files that have moved with the database or away from it. */
    virtual void relinkPaths(const QVector<qint64> &fileIds) { Q_UNUSED(fileIds) }
    /** The same for one file, at once. False when it is not to be found. */
    virtual bool refreshFilePaths(qint64 fileId)
    {
        Q_UNUSED(fileId)
        return true;
    }
    /** The same by the worker, for many files; replayed() tells of it. False when nothing is queued. */
    bool requestReplay(const EditStep &step, bool isUndo);
    /** What the worker has written is being taken in. */
    bool isTakingReplay() const { return m_replays.isTaking(); }
    void cancelOperations();
    bool isBusy() const;
    /** Takes back what edited() told of, or does it again; false when that was refused or failed. */
    bool replay(const EditStep &step, bool isUndo, ReplayLosses &losses)
    {
        return m_replays.run(step, isUndo, losses);
    }

    /**
     * To be called around the loads that fill all records, which then belong to one state of the database.
     * False when it cannot be read: then nothing may be loaded, and the records stay what they were.
     */
    bool beginLoad() { return m_reload.begin(); }
    /** Begins to read all files, after beginLoad(); loadAllFiles() ends it. */
    void beginFiles() override { m_loads.beginFiles(details(), sharedState()); }
    /** Whether so many are being read that the event loop should go on until filesRead(). */
    bool areFilesMany() const { return m_loads.areFilesBeingRead() && m_loads.areFilesMany(); }
    /** True when everything was read. What was not keeps all edits out until a later load brings it. */
    bool endLoad() { return m_reload.end(); }
    /** Whether the load failed, or would have, only for what another connection holds at the moment. */
    bool wasBusy() const { return m_errors.sawBusy(); }
    /** Whether the records are those of the database, so that an edit may go ahead. */
    virtual bool isDataCurrent() = 0;
    void refreshModificationDate() override = 0;

signals:
    /** Told once, whichever connection notices, until the database is opened again. */
    void connectionError();
    void errorOccured(QSqlError error);
    /** The same of an operation of files, with how far it came. */
    void operationFailed(QSqlError error, QString outcome);
    /** Title and text. */
    void error(QString title, QString text);
    void showInformation(QString title, QString text);
    /** The rows stay the manager's, as all records do. */
    void tagsLoaded(TableData tags);
    /** Tags that were not known before; a known one tells of its change by TableRowData::dataUpdated. */
    void tagsAdded(TableData tags);
    void tagsRemoved(QVector<qint64> tagIds);
    /** Before the others go: for who keeps ids of tags. */
    void tagsMerged(qlonglong target, QVector<qint64> others);
    void browsingNodeLoaded(const Map<qint64, TBnode *> &nodes);
    void addedBrowsingNodes(const Map<qint64, TBnode *> &nodes);
    /** Around the change of the records that follows a removal; children may move up in between. */
    void aboutToRemoveNodes(const QVector<qint64> &nodeIds);
    void removedNodes();
    /** While all files are read. */
    void loadingProgress(int percent);
    /** Some of all files, which filesLoaded() will tell of; an empty list when a reading begins. */
    void filesArrived(const QVector<File *> &files);
    /** All that beginFiles() began is there, or will not come. */
    void filesRead();
    void filesLoaded(const Map<qint64, File *> &files);
    void filesAdded(const Map<qint64, File *> &files);
    void filesRemoved(QVector<qint64> fileIds);
    /** Some of the files whose tags change; fileTagsSettled() tells that it is over. */
    void fileTagsChanged(const QVector<qint64> &fileIds);
    void fileTagsSettled();
    /** The worker has stored these, and nothing else that it was asked for. */
    void filesRetagged(const TagChanges &done);
    /** Nodes were made out of folders. */
    void nodesMade(const QVector<qint64> &nodeIds);
    void relatshipsNodeLoaded(const Vector<QPair<QString, TRnode *>> &nodes);
    void addedRelatshipsNodes(const Vector<QPair<QString, TRnode *>> &nodes);
    /** The image stays the thumbnail cache's; null when it is to be asked for anew. */
    void thumbnailUpdated(qlonglong fileId, QImage *image);
    /** Title and text. */
    void showTempWarning(QString title, QString text);
    /** Around the taking in of a part of what others changed: whoever shows something keeps its place. */
    void aboutToMergeForeignChanges();
    void foreignChangesShown();
    /** What others changed has been taken in. */
    void foreignChangesMerged(NewsCount count);
    /** Around an edit of the window; with what it changed, if that can be taken back, and how it is told. */
    void aboutToEdit();
    void edited(const EditStep &step);
    /** In its place, what requestReplay() came to. */
    void replayed(const ReplayLosses &losses);
    void startedAddingFiles(QString label);
    void addingFilesProgress(QString text, int percent);
    void finishedAddingFiles();
    void extractedTempFiles(QVector<QPair<qint64, QString>> files);
    void duplicatesReady(PresentableDuplicates duplicates);
    /** The addresses of one request are in the database now; false when they are not all there. */
    void additionSettled(QStringList texts, bool areStored);
    void filesModified(QVector<qint64> fileIds, DeletedFileRepresentations deletedFiles);
    /** Files that are missing now and were not, or the other way round. */
    void updateMissedFiles(QVector<qint64> fileIds);
    /** Something else ended a check; it may be asked for anew. */
    void checkBrokenOff();
    void importNotification(QList<ShellFile> files);
    void aboutToReloadAllData();
    void allDataReloaded();
    /** Pictures that are shown have to be asked for anew. */
    void remadeAllThumbnails();
    /** Known files whose tags or values a merge changed: one list, once a merge. */
    void filesChanged(QVector<qint64> fileIds);
    /** Before the nodes of known tags get their new names. */
    void aboutToRenameTags(QVector<qint64> tagIds);
    /** Known tags that have another name now. Nodes and relationships have it already. */
    void tagsRenamed(QVector<qint64> tagIds);
    /** The map of groups has been filled anew. */
    void groupsLoaded();
    /** Around the changes of several groups. */
    void aboutToUpdateGroups();
    void groupsUpdated();

public slots:
    /** Reads these rows again and merges them; when the database is busy it is tried again later. */
    void updateTags(const QVector<qint64> &tagIds) { m_loads.loadTags(tagIds); }
    void reloadNodes(const QVector<qint64> &nodeIds) override { m_loads.loadNodes(nodeIds); }
    void reloadFiles(const QVector<qint64> &fileIds) { m_loads.loadFiles(fileIds); }
    /**
     * Empties and fills everything; when the database is busy all stays as it is until a later try. With many
     * files it goes on after the return, until allDataReloaded().
     */
    void reloadAllData() { m_reload.run(); }

protected slots:
    void loadedDBVerion(bool ok, const TableData &rows);

protected:
    /** What a back-end makes in its constructor, each with the manager as its parent. */
    using Providers = DatabaseProviders;
    void setConstructor(std::unique_ptr<AbstractQueryConstructor> constructor);
    const AbstractQueryConstructor *constructor() const { return m_constructor.get(); }
    /** Takes the providers and makes all connections to them. */
    void setProviders(const Providers &providers);
    const Providers &providers() const { return m_providers; }

    /** The options of the connection on which the window's statements run. */
    virtual QString connectOptions() const { return {}; }
    /** Before all records are read anew; on a server. */
    virtual void aboutToLoad() {}
    bool beginReading() override;
    void endReading() override {}
    /** What another connection reads the same state by, while this one holds it; on a server. */
    virtual QString sharedState() const { return {}; }
    LoadState &loadState() { return m_records.loadState(); }
    const LoadState &loadState() const { return m_records.loadState(); }
    /** Whether an edit may go ahead that rests on this. */
    virtual bool mayEdit(const EditBase & /*base*/) { return isDataCurrent(); }
    /** The same for an operation of the worker, which may look itself when it begins. */
    bool mayRequest(const EditBase &base) override { return mayEdit(base); }
    bool beginEdit(const EditBase &base) override { return mayEdit(base); }
    EditEnd endEdit(bool isDone) override { return isDone ? Ended : Failed; }
    bool mayTouch(const EditBase & /*base*/) override { return true; }
    void include(BaseDBProvider *provider) override { connectErrors(provider); }
    QVector<BaseDBProvider *> editors() const { return m_runner.editors(); }
    RecordKeeper &records() { return m_records; }
    ErrorTeller &errors() { return m_errors; }
    void warnOfChanges();
    /** False, with a word where none came before, while the records are not whole. */
    bool isReadyForEdits();
    /** The database changed behind the records: the edit is dropped, and all is read anew. */
    void dropEdit();
    void reloadLater() override { m_reload.runLater(); }
    void tellBusy() { m_errors.tellBusy(); }
    /** Runs what is tried again by itself. True when it met a lock, of which nothing is told. */
    bool runInSilence(const std::function<void()> &step) { return m_errors.runInSilence(step); }
    bool isReloadDue() const { return m_reload.isDue(); }
    /** Asked before each change of the window; before setProviders(). */
    void setWriteGuard(WriteGuard *guard) { m_writeGuard = guard; }
    void connectErrors(BaseDBProvider *provider);
    /** The worker stores its changes; others made their last one at this time. */
    virtual void aboutToCommit(const QDateTime &lastChange) { Q_UNUSED(lastChange) }
    /** An own change has this stamp. */
    virtual void noteChange(const QDateTime &change) { Q_UNUSED(change) }
    /** Settles isReadOnly() at opening. */
    virtual void readReadOnlyState();
    void setReadOnly(bool readOnly) { m_readOnly = readOnly; }
    void loadDBVersion();
    QString driverName() const { return m_driverName; }
    UserPrompts &prompts() const { return *m_prompts; }

private:
    void chooseBrowsingTree() override { setCurrentBrowsingTree(currentBrowsingTree()); }
    void connectRecords();
    void connectLoads();
    void connectFileOperations();
    void connectFileNews();
    void tellReplay();
    EditResult runEdit(int reload, const EditBase &base, const std::function<EditResult()> &edit) override;
    void editBegins() override { emit aboutToEdit(); }
    void editEnded(const EditStep &step) override { emit edited(step); }
    EditNotes notes() override { return {m_runner.record(), m_records}; }
    /** False, with a warning, for a text that is longer than what is read of one. */
    bool isStorable(const QString &text) override;
    bool runFileEdit(const EditBase &base, const std::function<bool()> &edit) override;
    const Map<qint64, File *> &knownFiles() const override { return m_records.files().map(); }

    QString m_driverName;
    QString m_hostName;
    int m_port;
    QString m_databaseName;
    QString m_userName;
    QString m_password;
    bool m_readOnly = true;
    QString m_dbVersion;
    RecordKeeper m_records;
    ErrorTeller m_errors;
    RecordLoads m_loads;
    WholeReload m_reload;
    TagMerges m_tagMerges;
    Map<QString, AutoLink *> m_autoLinks;
    Map<qint64, QString> m_browsingTrees;
    Providers m_providers;
    std::unique_ptr<AbstractQueryConstructor> m_constructor;
    std::unique_ptr<StoredPictures> m_pictures;
    EditRunner m_runner;
    FileEdits m_fileEdits;
    RecordEdits m_edits;
    ThumbnailCache *m_thumbnailCache;
    Replays m_replays;
    bool m_isOpen = false;
    WriteGuard *m_writeGuard = nullptr;
    UserPrompts *m_prompts;
};
