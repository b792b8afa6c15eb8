#include "core/controllers/nodeplaces.h"

#include "app/settings/viewsettings.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/collection.h"
#include "core/controllers/collectionsettings.h"
#include "models/trees/brtreesortermodel.h"

#include <QTimer>

NodePlaces::NodePlaces(const BrowsTreeController &controller, BrTreeSorterModel *sorterModel)
    : m_controller(controller), m_sorterModel(sorterModel)
{
    // At once, not at the end of the program, which may be a crash.
    connect(m_sorterModel, &BrTreeSorterModel::orderChanged, this, &NodePlaces::store);
}

void NodePlaces::read()
{
    m_order.load(m_controller.collection()->settings()->nodeOrder());
    m_order.setTree(m_controller.rootNode());
    m_sorterModel->setSorting(ViewSettings::nodeSortingType(), &m_order);
}

void NodePlaces::setValue(const QVariant &value)
{
    forgetDeleted();
    m_order = value.value<ManualNodesSorter>();
    m_sorterModel->invalidate();
    store();
}

void NodePlaces::fix(qint64 parentId, qint64 nodeId)
{
    m_order.fixOrder(parentId, nodeId);
}

void NodePlaces::nodesAdded(const Map<qint64, TBnode *> &nodes)
{
    for (const TBnode *node : nodes)
        m_order.nodeAdded(node->parentNode() ? node->parentNode()->id() : 0, node->id());
}

void NodePlaces::giveToTop(const TBnode *parent, qint64 nodeId)
{
    const TBnode *top = m_controller.nodeById(nodeId);
    while (top && top->parentNode() && top->parentNode() != parent)
        top = top->parentNode();
    // Nothing has come between them when the database did not take the nodes.
    if (!top || top->parentNode() != parent || top->id() == nodeId)
        return;
    m_order.replaceNode(parent->id(), nodeId, top->id());
    m_sorterModel->invalidate();
    store();
}

void NodePlaces::keepForChildren(const QVector<qint64> &nodeIds)
{
    forgetDeleted();
    const QSet<qint64> removed(nodeIds.cbegin(), nodeIds.cend());
    QSet<const TBnode *> parents;
    for (const qint64 nodeId : nodeIds) {
        const TBnode *node = m_controller.nodeById(nodeId);
        const TBnode *parent = node ? node->parentNode() : nullptr;
        // Of a branch that goes as a whole only the topmost node leaves children to a parent that stays.
        if (parent && !removed.contains(parent->id()))
            parents.insert(parent);
    }
    for (const TBnode *parent : qAsConst(parents))
        m_order.liftChildren(*parent, removed);
}

void NodePlaces::nodeDeleted(qint64 nodeId)
{
    // A whole branch goes node by node; its places are given up together.
    if (m_deleted.isEmpty())
        QTimer::singleShot(0, this, &NodePlaces::forgetDeleted);
    m_deleted.insert(nodeId);
}

void NodePlaces::forgetDeleted()
{
    if (m_deleted.isEmpty())
        return;
    QMap<qint64, QList<qint64>> order;
    m_order.save(order);
    bool isChanged = false;
    for (auto list = order.constBegin(); list != order.constEnd(); ++list) {
        const bool isParentGone = m_deleted.contains(list.key());
        if (isParentGone)
            m_order.nodeRemoved(0, list.key());
        isChanged |= isParentGone;
        for (const qint64 id : list.value()) {
            if (!m_deleted.contains(id))
                continue;
            m_order.nodeRemoved(list.key(), id);
            isChanged = true;
        }
    }
    m_deleted.clear();
    if (isChanged)
        store();
}

void NodePlaces::store()
{
    QMap<qint64, QList<qint64>> order;
    m_order.save(order);
    m_controller.collection()->settings()->setNodeOrder(order);
}
