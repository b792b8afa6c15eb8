#include "core/records/tbnode.h"

#include "core/records/childruns.h"
#include "core/records/treewalk.h"

#include <QDebug>

#include <algorithm>

TBnode::TBnode(TBnode *parentNode, qint64 tagId, qint64 id, bool inverted, bool trOption, qint64 treeId,
               const QString &name, NodeType nodeType, QObject *parent)
    : QObject(parent),
      m_id(id),
      m_tagId(tagId),
      m_inverted(inverted),
      m_trOption(trOption),
      m_treeId(treeId),
      m_name(name),
      m_nodeType(nodeType),
      m_parentNode(parentNode)
{
}

TBnode::~TBnode()
{
    qDebug() << "~~~~DELETE Node!!!!" << m_name << m_id;
}

void TBnode::setName(const QString &name)
{
    if (m_name == name)
        return;
    m_name = name;
    emit nameChanged(m_name);
}

void TBnode::setTag(qint64 tagId)
{
    if (m_tagId == tagId)
        return;
    m_tagId = tagId;
    emit tagChanged(m_tagId);
}

void TBnode::setInverted(bool inverted)
{
    if (m_inverted == inverted)
        return;
    m_inverted = inverted;
    emit isInvertedChanged(m_inverted);
}

void TBnode::setTrOption(bool trOption)
{
    if (m_trOption == trOption)
        return;
    m_trOption = trOption;
    emit trOptionChanged(m_trOption);
}

bool TBnode::addAutolink(const QString &linkId)
{
    if (m_nodeType != TagNode || m_autolinks.contains(linkId))
        return false;
    m_autolinks.append(linkId);
    emit autolinkChanged();
    return true;
}

bool TBnode::removeAutolink(const QString &linkId)
{
    if (m_autolinks.removeAll(linkId) == 0)
        return false;
    emit autolinkChanged();
    return true;
}

int TBnode::indexOf(const TBnode *child) const
{
    return m_children.indexOf(const_cast<TBnode *>(child));
}

bool TBnode::addChild(TBnode *child)
{
    // A child has this node as its parent, which spares the look through the list for one that comes new.
    if (!child || (child->m_parentNode == this && m_children.contains(child)))
        return false;
    const QList<TBnode *> added{child};
    emit aboutToAddchildren(added, this);
    child->m_parentNode = this;
    m_children.append(child);
    emit childrenNodesAdded(added);
    return true;
}

void TBnode::addChildren(const QList<TBnode *> &children)
{
    // Models turn the signals into ranges of rows, and a range of no rows is an error there.
    if (children.isEmpty())
        return;
    emit aboutToAddchildren(children, this);
    for (TBnode *child : children)
        child->m_parentNode = this;
    m_children.append(children);
    emit childrenNodesAdded(children);
}

TBnode *TBnode::takeChild(int index)
{
    TBnode *child = childAt(index);
    if (!child)
        return nullptr;
    const QList<TBnode *> taken{child};
    emit aboutToRemoveNodes(taken, this);
    // The caller gives the node another place at once, and until then it can still be found by its parent.
    child->m_parentNode = this;
    m_children.removeAt(index);
    emit childrenNodesRemoved(taken);
    return child;
}

bool TBnode::removeChild(TBnode *child)
{
    if (!m_children.contains(child))
        return false;
    const QList<TBnode *> removed{child};
    emit aboutToRemoveNodes(removed, this);
    child->m_parentNode = nullptr;
    m_children.removeAll(child);
    emit childrenNodesRemoved(removed);
    return true;
}

void TBnode::removeChildren(const QSet<TBnode *> &going)
{
    const auto runs = ChildRuns::of(m_children, going);
    for (const auto &run : runs) {
        emit aboutToRemoveNodes(run.nodes, this);
        for (TBnode *child : run.nodes)
            child->m_parentNode = nullptr;
        ChildRuns::take(m_children, run);
        emit childrenNodesRemoved(run.nodes);
    }
}

void TBnode::removeAllChildren()
{
    if (m_children.isEmpty())
        return;
    emit aboutToRemoveNodes(m_children, this);
    for (TBnode *child : qAsConst(m_children))
        child->m_parentNode = nullptr;
    m_children.clear();
    // Empty by now; whoever needs the nodes has them from the signal before.
    emit childrenNodesRemoved(m_children);
}

QVector<qint64> TBnode::descendantIds() const
{
    const QVector<const TBnode *> nodes = TreeWalk::branch(this);
    QVector<qint64> ids;
    ids.reserve(nodes.size());
    // The branch has each node before those below it, so that its reverse deletes leaves first.
    for (auto node = nodes.crbegin(); *node != this; ++node)
        ids.append((*node)->m_id);
    return ids;
}

void TBnode::collectTagRequirements(QVector<qint64> &required, QVector<qint64> &excluded) const
{
    QVector<const TBnode *> chain{this};
    for (const TBnode *above = m_parentNode; above && above->m_nodeType == TagNode;
         above = above->m_parentNode)
        chain.append(above);
    for (auto node = chain.crbegin(); node != chain.crend(); ++node) {
        // A special node selects by itself and stands for no tag.
        if ((*node)->m_nodeType == TagNode)
            ((*node)->m_inverted ? excluded : required).append((*node)->m_tagId);
    }
}
