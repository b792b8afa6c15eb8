#include "db/autolinks/autolinks.h"

#include "app/settings/autolinksettings.h"
#include "core/providers/browstreeprovider.h"
#include "core/records/autolink.h"
#include "core/records/tbnode.h"
#include "db/autolinks/autolinkshost.h"
#include "db/sql/transaction.h"
#include "fileops/contents/externalpaths.h"

#include <QDir>
#include <QFileInfo>
#include <QUuid>

AutoLinks::AutoLinks(AutoLinksHost &host, Map<QString, AutoLink *> &links, QObject *parent)
    : QObject(parent), m_host(host), m_links(links), m_sync(host, links, this), m_watch(this)
{
    connect(&m_sync, &AutoLinkSync::linksSeen, this, &AutoLinks::takePresences);
    connect(&m_watch, &FolderWatch::changed, this, &AutoLinks::folderContentChanged);
    connect(&m_watch, &FolderWatch::limitReached, this, &AutoLinks::warnOfLimit);
}

void AutoLinks::setProviders(BrowsTreeProvider *nodes, BaseDBProvider *leader)
{
    m_nodes = nodes;
    m_leader = leader;
    connect(nodes, &BrowsTreeProvider::gotAllAutolinksInfo, this, &AutoLinks::gotAllAutolinksInfo);
    connect(nodes, &BrowsTreeProvider::addedNewAutolink, this, &AutoLinks::addedNewAutolink);
    connect(nodes, &BrowsTreeProvider::addedAutolinkToNode, this, &AutoLinks::addedAutolinkToNode);
    connect(nodes, &BrowsTreeProvider::removedAutolinkFromNode, this, &AutoLinks::removedAutolinkFromNode);
    connect(nodes, &BrowsTreeProvider::removedAutolink, this, &AutoLinks::removedAutolink);
    connect(nodes, &BrowsTreeProvider::updatedAutolink, this, &AutoLinks::updatedAutolink);
    connect(&m_host.knownNodes(), &SignalContainer::itemDeleted, this, &AutoLinks::nodeDeleted);
}

void AutoLinks::load()
{
    if (m_nodes)
        m_nodes->loadAutolinks();
}

void AutoLinks::end()
{
    m_looks.end();
    m_sync.end();
    m_watch.end();
}

void AutoLinks::watchFolders()
{
    QStringList folders;
    if (AutoLinkSettings::autoLinkContinuously() && m_host.mayWrite()) {
        for (const AutoLink *link : m_links)
            folders.append(link->absPath());
    }
    m_watch.setFolders(folders);
}

void AutoLinks::createAutoLink(const QString &folder, qint64 nodeId)
{
    const TBnode *node = m_host.knownNodes().value(nodeId);
    const QString path = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
    if (!mayCreate(path, node) || !m_host.isDataCurrent())
        return;
    const AutoLink *known = linkOfFolder(path);
    const QString linkId = known ? known->linkId() : QUuid::createUuid().toString(QUuid::WithoutBraces);
    const QStringList before = node->autolinks();
    const bool isDone = change([&] {
        for (const QString &other : before) {
            if (!takeOff(other, nodeId))
                return false;
        }
        return (known || storeAutoLink(path, linkId)) && m_nodes->addAutolinkToNode(linkId, nodeId);
    });
    watchFolders();
    if (isDone)
        syncAutoLink(linkId, nodeId, true);
}

bool AutoLinks::mayCreate(const QString &folder, const TBnode *node) const
{
    if (!m_nodes || !node || node->nodeType() != TagNode)
        return false;
    if (!QFileInfo(folder).isDir()) {
        m_host.tellError(tr("Can't link to folder"), tr("The folder does not exist."));
        return false;
    }
    if (AutoLinkSync::holdsDatabase(folder, m_host.databasePath())) {
        m_host.tellError(tr("Can't link to folder"), tr("Folder contains current database."));
        return false;
    }
    const AutoLink *known = linkOfFolder(folder);
    if (known && node->autolinks().contains(known->linkId())) {
        m_host.tellError(tr("Error Creating Link"), tr("Node already has link to this folder."));
        return false;
    }
    return true;
}

bool AutoLinks::change(const std::function<bool()> &change)
{
    bool isDone = false;
    {
        JointTransaction transaction(*m_leader, {m_nodes});
        isDone = transaction.isActive() && change() && transaction.commit();
    }
    m_nodes->tellNews();
    return isDone;
}

bool AutoLinks::storeAutoLink(const QString &folder, const QString &linkId)
{
    return m_nodes->addAutolink(folder, Database::relativePath(folder, {true, m_host.databasePath()}),
                                linkId);
}

bool AutoLinks::deleteAutoLinkRow(const QString &linkId)
{
    return m_nodes->removeAutolink(linkId);
}

bool AutoLinks::takeOff(const QString &linkId, qint64 nodeId)
{
    const AutoLink *link = m_links.value(linkId);
    const bool isLast = !link || link->nodes().size() < 2;
    return m_nodes->removeAutolinkFromNode(linkId, nodeId) && (!isLast || deleteAutoLinkRow(linkId));
}

QString AutoLinks::autoLinkRelativePath(const QString &linkId) const
{
    const AutoLink *link = m_links.value(linkId);
    return link ? link->relPath() : QString();
}

QString AutoLinks::autoLinkAbsolutePath(const QString &linkId) const
{
    const AutoLink *link = m_links.value(linkId);
    return link ? link->absPath() : QString();
}

void AutoLinks::removeAutoLink(const QString &linkId, qint64 nodeId)
{
    if (!m_nodes || !m_host.isDataCurrent())
        return;
    change([&] { return takeOff(linkId, nodeId); });
    watchFolders();
}

void AutoLinks::refreshAutoLinks()
{
    QHash<QString, LinkPresence> presences;
    for (const AutoLink *link : qAsConst(m_links))
        presences.insert(link->linkId(), presenceOf(*link));
    takePresences(presences);
}

void AutoLinks::refreshLater()
{
    struct Place
    {
        QString linkId;
        QString absPath;
        QString relPath;
    };
    QVector<Place> places;
    for (const AutoLink *link : qAsConst(m_links))
        places.append({link->linkId(), link->absPath(), link->relPath()});
    const auto look = [places, path = m_host.databasePath()](const BackgroundLooks::ShouldEnd &shouldEnd) {
        QHash<QString, LinkPresence> presences;
        for (const Place &place : places) {
            if (!shouldEnd())
                presences.insert(place.linkId, LinkPresence::of(place.absPath, place.relPath, path));
        }
        return presences;
    };
    m_looks.run(look, [this](const QHash<QString, LinkPresence> &presences) { takePresences(presences); });
}

LinkPresence AutoLinks::presenceOf(const AutoLink &link) const
{
    return LinkPresence::of(link.absPath(), link.relPath(), m_host.databasePath());
}

void AutoLinks::takePresences(const QHash<QString, LinkPresence> &presences)
{
    for (auto presence = presences.cbegin(); presence != presences.cend(); ++presence) {
        const AutoLink *link = m_links.value(presence.key());
        if (!link)
            continue;
        if (presence->isThere != presence->isThereByDatabase)
            mend(*link, *presence);
        else if (presence->isRemoved(m_seenDevices.value(presence.key())))
            dropRemoved(*link);
        if (presence->isThere)
            m_seenDevices.insert(presence.key(), presence->device);
    }
    watchFolders();
}

void AutoLinks::dropRemoved(const AutoLink &link)
{
    const QString linkId = link.linkId();
    // It may have come back since it was looked for.
    if (m_nodes && m_host.mayWrite() && presenceOf(link).isRemoved(m_seenDevices.value(linkId)) &&
        m_host.isDataCurrent())
        change([&] { return dropLink(linkId); });
}

bool AutoLinks::dropLink(const QString &linkId)
{
    const QVector<qint64> nodes = m_links.value(linkId)->nodes();
    for (const qint64 nodeId : nodes) {
        if (!m_nodes->removeAutolinkFromNode(linkId, nodeId))
            return false;
    }
    return deleteAutoLinkRow(linkId);
}

void AutoLinks::mend(const AutoLink &link, const LinkPresence &presence)
{
    if (presence.isThere)
        updatePaths(link, link.absPath(),
                    Database::relativePath(link.absPath(), {true, m_host.databasePath()}));
    else
        updatePaths(link, LinkPresence::folderOf(link.relPath(), m_host.databasePath()), link.relPath());
}

void AutoLinks::updatePaths(const AutoLink &link, const QString &absPath, const QString &relPath)
{
    const QString linkId = link.linkId();
    if (!m_host.mayWrite())
        updatedAutolink(true, linkId, absPath, relPath);
    else if (m_nodes && m_host.isDataCurrent())
        change([&] { return m_nodes->updateAutolink(linkId, absPath, relPath); });
}

void AutoLinks::runAllAutoLinks(bool force)
{
    // Nothing is taken in, but paths are shown.
    if (!m_host.mayWrite())
        refreshLater();
    if (!force && !AutoLinkSettings::checkAutoLinkWhenLaunched())
        return;
    for (const AutoLink *link : qAsConst(m_links)) {
        for (const qint64 nodeId : link->nodes())
            syncAutoLink(link->linkId(), nodeId, false);
    }
}

void AutoLinks::runAutoLinkOfNode(qint64 nodeId)
{
    const TBnode *node = m_host.knownNodes().value(nodeId);
    if (!node || !AutoLinkSettings::autoLinkWhenSelected())
        return;
    for (const QString &linkId : node->autolinks())
        syncAutoLink(linkId, nodeId, true);
}

void AutoLinks::syncAutoLink(const QString &linkId, qint64 nodeId, bool notifyDuplicates)
{
    if (m_links.contains(linkId) && m_host.mayWrite())
        m_sync.request(linkId, nodeId, notifyDuplicates);
}

void AutoLinks::folderContentChanged(const QString &path)
{
    const QString folder = QDir::fromNativeSeparators(path);
    bool isLinked = false;
    for (const AutoLink *link : qAsConst(m_links)) {
        if (link->absPath() != folder || !AutoLinkSettings::autoLinkContinuously() || !m_host.mayWrite())
            continue;
        m_sync.requestForEvent(link->linkId());
        isLinked = true;
    }
    if (!isLinked)
        watchFolders();
}

AutoLink *AutoLinks::linkOfFolder(const QString &path) const
{
    for (AutoLink *link : qAsConst(m_links)) {
        if (link->absPath() == path)
            return link;
    }
    return nullptr;
}

void AutoLinks::warnOfLimit(int folders, int secondsBetweenLooks)
{
    m_host.warn(folders == 1
                    ? tr("The system does not watch 1 linked folder, as it has no watches left "
                         "(fs.inotify.max_user_watches). The folder is looked at every %1 seconds instead.")
                          .arg(secondsBetweenLooks)
                    : tr("The system does not watch %Ln linked folders, as it has no watches left "
                         "(fs.inotify.max_user_watches). They are looked at every %1 seconds instead.",
                         nullptr, folders)
                          .arg(secondsBetweenLooks));
}

void AutoLinks::gotAllAutolinksInfo(bool ok, const TableData &rows)
{
    TableData owned = rows;
    if (!ok) {
        freeRows(owned);
        return;
    }
    const QList<AutoLink *> old = m_links.values();
    m_links.clear();
    for (const TableRowData *row : rows) {
        const QString linkId = row->value(QStringLiteral("link_id")).toString();
        TBnode *node = m_host.knownNodes().value(row->value(QStringLiteral("node_id")).toLongLong());
        if (linkId.isEmpty() || !node)
            continue;
        if (!m_links.contains(linkId))
            addedNewAutolink(row->value(QStringLiteral("link_abs_path")).toString(),
                             row->value(QStringLiteral("link_rel_path")).toString(), linkId);
        AutoLink *link = m_links.value(linkId);
        if (link->nodes().contains(node->id()))
            continue;
        const bool wasFlagged = std::any_of(old.cbegin(), old.cend(), [&](const AutoLink *known) {
            return known->linkId() == linkId && known->isFlagged(node->id());
        });
        link->addNode(node->id(), wasFlagged);
        node->addAutolink(linkId);
    }
    freeRows(owned);
    qDeleteAll(old);
    watchFolders();
}

void AutoLinks::addedNewAutolink(const QString &path, const QString &relPath, const QString &linkId)
{
    m_links.insert(linkId, new AutoLink(path, relPath, linkId));
}

void AutoLinks::addedAutolinkToNode(bool ok, const QString &linkId, qlonglong nodeId)
{
    AutoLink *link = m_links.value(linkId);
    TBnode *node = m_host.knownNodes().value(nodeId);
    if (!ok || !link || !node)
        return;
    link->addNode(nodeId, true);
    node->addAutolink(linkId);
}

void AutoLinks::removedAutolinkFromNode(bool ok, const QString &linkId, qlonglong nodeId)
{
    if (!ok)
        return;
    if (AutoLink *link = m_links.value(linkId))
        link->removeNode(nodeId);
    if (TBnode *node = m_host.knownNodes().value(nodeId))
        node->removeAutolink(linkId);
}

void AutoLinks::removedAutolink(bool ok, const QString &linkId)
{
    if (ok)
        delete m_links.take(linkId);
}

void AutoLinks::updatedAutolink(bool ok, const QString &linkId, const QString &absPath,
                                const QString &relPath)
{
    AutoLink *link = ok ? m_links.value(linkId) : nullptr;
    if (!link)
        return;
    link->setAbsPath(absPath);
    link->setRelPath(relPath);
}

void AutoLinks::nodeDeleted(const QVariant &nodeId)
{
    bool isEmpty = false;
    for (AutoLink *link : m_links.values()) {
        link->removeNode(nodeId.toLongLong());
        if (!link->nodes().isEmpty())
            continue;
        // Its rows went with those of the node.
        delete m_links.take(link->linkId());
        isEmpty = true;
    }
    if (isEmpty)
        watchFolders();
}
