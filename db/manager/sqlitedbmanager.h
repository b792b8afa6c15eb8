#pragma once

#include "db/autolinks/autolinks.h"
#include "db/autolinks/autolinkshost.h"
#include "db/manager/databasemanger.h"
#include "db/manager/pathrelinker.h"

class ForeignWrites;
class ReadBound;

/**
 * The manager of one local database file. Nobody else's change is expected in it; when another program has
 * made one, the next edit is dropped with a warning and everything is read anew.
 */
class SQLiteDBManager : public DatabaseManger, private AutoLinksHost, private PathRelinkerHost
{
    Q_OBJECT

public:
    SQLiteDBManager(const QString &driver, const QString &database, const QString &host, const QString &user,
                    const QString &password, int port, QObject *parent = nullptr);
    ~SQLiteDBManager() override;

    QSqlError openDB() override;
    void closeDB() override;
    int dbType() const override;
    /** Makes the file and its tables; an empty file stays behind when that fails half-way. */
    bool createDatabase() override;

    qint64 currentBrowsingTree() const override;
    void setCurrentBrowsingTree(qint64 treeId) override;
    bool isDataCurrent() override;
    void refreshModificationDate() override;
    bool endChecks() override;
    void relinkPaths(const QVector<qint64> &fileIds) override;
    bool refreshFilePaths(qint64 fileId) override;

    void readSettings() override;
    void createAutoLink(const QString &folder, qint64 nodeId) override;
    QString autoLinkRelativePath(const QString &linkId) const override;
    QString autoLinkAbsolutePath(const QString &linkId) const override;
    void removeAutoLink(const QString &linkId, qint64 nodeId) override;
    void refreshAutoLinks() override;
    void runAllAutoLinks(bool force) override;
    void runAutoLinkOfNode(qint64 nodeId) override;
    void syncAutoLink(const QString &linkId, qint64 nodeId, bool notifyDuplicates) override;

protected:
    QString connectOptions() const override;
    void readReadOnlyState() override;
    /** In a transaction, so that all records belong to one state, and nobody locks the file half-way. */
    bool beginReading() override;
    bool mayRequest(const EditBase & /*base*/) override { return isReadyForEdits(); }
    void endReading() override;
    /** One transaction around all that an edit does, so that what it changed can be read before and after. */
    bool beginEdit(const EditBase &base) override;
    EditEnd endEdit(bool isDone) override;
    void include(BaseDBProvider *provider) override;

private:
    QString databasePath() const override { return databaseName(); }
    bool mayWrite() const override { return !m_closing && !isReadOnly(); }
    const Map<qint64, TBnode *> &knownNodes() override { return nodes(); }
    const Map<qint64, File *> &filesToCompare() override { return files(); }
    void tellError(const QString &title, const QString &text) override;
    void warn(const QString &text) override;
    bool isFileMissing(qint64 fileId) const override { return isMissing(fileId); }
    bool autoLinkFiles(const QStringList &paths, const QVector<qint64> &tagIds, bool notifyDuplicates,
                       qint64 requestId) override;
    void checkExternalFiles(const QVector<qint64> &fileIds) override;
    void connectAutoLinks();
    bool makeTables(const QString &connectionName);
    const File *fileToRelink(qint64 fileId) const override { return file(fileId); }
    Writing writePaths(const PathChanges &changes) override;
    void showPaths(const PathChanges &changes) override;

    ForeignWrites *m_foreignWrites;
    std::unique_ptr<ReadBound> m_readBound; ///< while all records are read
    AutoLinks m_linkedFolders;
    PathRelinker *m_relinker;
    bool m_closing = false;
    bool m_isInEdit = false;
    bool m_isMending = false; ///< paths are being written that nobody changed
};
