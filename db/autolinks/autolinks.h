#pragma once

#include "db/autolinks/autolinksync.h"
#include "db/autolinks/folderwatch.h"
#include "db/sql/tabledata.h"

#include <QObject>

class AutoLinksHost;
class BaseDBProvider;
class BrowsTreeProvider;

/**
 * The folders that are linked to browsing nodes of a local database: their records, which are the manager's,
 * their rows, their watch, and when which of them is looked at. An edit is done when a call returns; new
 * files come later, from the worker. Owned by the manager. GUI thread.
 */
class AutoLinks : public QObject
{
    Q_OBJECT

public:
    /** Host and records must outlive this. */
    AutoLinks(AutoLinksHost &host, Map<QString, AutoLink *> &links, QObject *parent = nullptr);

    /** Borrowed; one of them leads the transactions of the other. */
    void setProviders(BrowsTreeProvider *nodes, BaseDBProvider *leader);
    /** Reads all links anew; after the nodes. */
    void load();
    /** Ends looking and watching; nothing is taken in any more. */
    void end();
    /** Watches the folders, or lets them be, as the settings say. */
    void watchFolders();

    /** Links a node to a folder, in the place of another one; the user hears of what is in the way. */
    void createAutoLink(const QString &folder, qint64 nodeId);
    /** Empty for an unknown link. */
    QString autoLinkRelativePath(const QString &linkId) const;
    QString autoLinkAbsolutePath(const QString &linkId) const;
    /** Takes a node off a link, which goes with its last one. The files stay linked. */
    void removeAutoLink(const QString &linkId, qint64 nodeId);
    /** Mends the paths of folders that were moved with the database, and drops links to none. */
    void refreshAutoLinks();
    /** Looks at all folders; when the database opens only as the settings say, unless forced to. */
    void runAllAutoLinks(bool force);
    /** A node was selected. */
    void runAutoLinkOfNode(qint64 nodeId);
    void syncAutoLink(const QString &linkId, qint64 nodeId, bool notifyDuplicates);
    void folderContentChanged(const QString &path);
    void takeOutcome(const AutoLinkOutcome &outcome) { m_sync.takeOutcome(outcome); }

private:
    void gotAllAutolinksInfo(bool ok, const TableData &rows);
    void addedNewAutolink(const QString &path, const QString &relPath, const QString &linkId);
    void addedAutolinkToNode(bool ok, const QString &linkId, qlonglong nodeId);
    void removedAutolinkFromNode(bool ok, const QString &linkId, qlonglong nodeId);
    void removedAutolink(bool ok, const QString &linkId);
    void updatedAutolink(bool ok, const QString &linkId, const QString &absPath, const QString &relPath);
    void nodeDeleted(const QVariant &nodeId);

    bool mayCreate(const QString &folder, const TBnode *node) const;
    bool change(const std::function<bool()> &change);
    bool storeAutoLink(const QString &folder, const QString &linkId);
    bool deleteAutoLinkRow(const QString &linkId);
    bool takeOff(const QString &linkId, qint64 nodeId);
    bool dropLink(const QString &linkId);
    LinkPresence presenceOf(const AutoLink &link) const;
    void dropRemoved(const AutoLink &link);
    /** Like refreshAutoLinks(), but the folders are looked for beside the window. */
    void refreshLater();
    void takePresences(const QHash<QString, LinkPresence> &presences);
    void mend(const AutoLink &link, const LinkPresence &presence);
    void updatePaths(const AutoLink &link, const QString &absPath, const QString &relPath);
    AutoLink *linkOfFolder(const QString &path) const;
    void warnOfLimit(int folders, int secondsBetweenLooks);

    AutoLinksHost &m_host;
    Map<QString, AutoLink *> &m_links;
    BrowsTreeProvider *m_nodes = nullptr;
    BaseDBProvider *m_leader = nullptr;
    QHash<QString, quint64> m_seenDevices; ///< of the folders by link, as they were seen last
    AutoLinkSync m_sync;
    FolderWatch m_watch;
    BackgroundLooks m_looks;
};
