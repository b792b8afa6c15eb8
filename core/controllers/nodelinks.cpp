#include "core/controllers/nodelinks.h"

#include "app/settings/constants.h"
#include "core/controllers/browstreecontroller.h"
#include "core/records/tbnode.h"
#include "db/manager/databasemanger.h"

bool NodeLinks::arePossible() const
{
    return m_manager && m_manager->dbType() == Constants::localDatabase;
}

void NodeLinks::link(qint64 nodeId, const QString &folder)
{
    if (m_manager && m_controller.mayEdit())
        m_manager->createAutoLink(folder, nodeId);
}

void NodeLinks::unlink(qint64 nodeId)
{
    const TBnode *node = m_controller.nodeById(nodeId);
    if (!m_manager || !node || !m_controller.mayEdit())
        return;
    // A copy: each removal takes one off the node's own list.
    const QStringList links = node->autolinks();
    for (const QString &linkId : links)
        m_manager->removeAutoLink(linkId, nodeId);
}

QString NodeLinks::absolutePath(qint64 nodeId) const
{
    return m_manager ? m_manager->autoLinkAbsolutePath(linkOf(nodeId)) : QString();
}

QString NodeLinks::relativePath(qint64 nodeId) const
{
    return m_manager ? m_manager->autoLinkRelativePath(linkOf(nodeId)) : QString();
}

void NodeLinks::nodeSelected(qint64 nodeId)
{
    if (m_manager)
        m_manager->runAutoLinkOfNode(nodeId);
}

QString NodeLinks::linkOf(qint64 nodeId) const
{
    const TBnode *node = m_controller.nodeById(nodeId);
    return node ? node->autolinks().value(0) : QString();
}
