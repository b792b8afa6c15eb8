#include "core/records/autolink.h"

AutoLink::AutoLink(const QString &absPath, const QString &relPath, const QString &linkId, QObject *parent)
    : QObject(parent), m_linkId(linkId), m_absPath(absPath), m_relPath(relPath)
{
}

void AutoLink::addNode(qint64 nodeId, bool flagged)
{
    m_nodes.append(nodeId);
    // The order of the nodes is that of the database; flags are looked up by node.
    if (flagged)
        m_flaggedNodes.insert(nodeId, true);
}

void AutoLink::removeNode(qint64 nodeId)
{
    m_nodes.removeAll(nodeId);
    m_flaggedNodes.remove(nodeId);
}

void AutoLink::flagAll()
{
    for (const qint64 nodeId : qAsConst(m_nodes))
        m_flaggedNodes.insert(nodeId, true);
}
