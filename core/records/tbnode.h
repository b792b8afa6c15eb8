#pragma once

#include "core/records/nodetype.h"

#include <QList>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVector>

/**
 * One node of the browsing tree. Every node is owned by the node map of the manager, whatever place it has in
 * the tree: parent and children are borrowed, and the toolkit parent stays null. GUI thread only. A model
 * must not touch the nodes named by aboutToRemoveNodes after childrenNodesRemoved.
 */
class TBnode : public QObject
{
    Q_OBJECT

public:
    /** Notes the parent node but does not enter the node among its children: addChild does. */
    TBnode(TBnode *parentNode, qint64 tagId, qint64 id, bool inverted, bool trOption, qint64 treeId,
           const QString &name, NodeType nodeType, QObject *parent = nullptr);
    ~TBnode() override;

    qint64 id() const { return m_id; }
    qint64 tagId() const { return m_tagId; }
    /** Whether files with the tag are left out instead of asked for. */
    bool isInverted() const { return m_inverted; }
    /** Whether the tags below this one in the relationship trees stand for it. */
    bool trOption() const { return m_trOption; }
    qint64 treeId() const { return m_treeId; }
    const QString &name() const { return m_name; }
    NodeType nodeType() const { return m_nodeType; }
    const QStringList &autolinks() const { return m_autolinks; }
    bool hasAutolinks() const { return !m_autolinks.isEmpty(); }

    void setName(const QString &name);
    void setTag(qint64 tagId);
    void setInverted(bool inverted);
    void setTrOption(bool trOption);
    /** Only a node of a tag takes a link, and each link once; false otherwise. */
    bool addAutolink(const QString &linkId);
    bool removeAutolink(const QString &linkId);

    TBnode *parentNode() const { return m_parentNode; }
    const QList<TBnode *> &children() const { return m_children; }
    int childrenCount() const { return m_children.size(); }
    /** Null outside the list. */
    TBnode *childAt(int index) const { return m_children.value(index, nullptr); }
    /** -1 for a stranger. */
    int indexOf(const TBnode *child) const;

    /** False for null and for a node that is a child already. */
    bool addChild(TBnode *child);
    /** Adds all with one pair of signals. */
    void addChildren(const QList<TBnode *> &children);
    /** Takes a child off the list, which keeps this node as its parent. Null outside the list. */
    TBnode *takeChild(int index);
    /** Takes a child off the list and clears its parent; false for a stranger. */
    bool removeChild(TBnode *child);
    /** Takes those of the given ones that are children off the list, in as few steps as models can follow. */
    void removeChildren(const QSet<TBnode *> &going);
    void removeAllChildren();

    /** The ids of all nodes below, those below a child before the child itself. */
    QVector<qint64> descendantIds() const;

    /** Appends the tags of the chain of tag nodes that ends here, the topmost first. */
    void collectTagRequirements(QVector<qint64> &required, QVector<qint64> &excluded) const;

signals:
    void aboutToAddchildren(QList<TBnode *> children, TBnode *parentNode);
    void childrenNodesAdded(QList<TBnode *> children);
    void aboutToRemoveNodes(QList<TBnode *> children, TBnode *parentNode);
    void childrenNodesRemoved(QList<TBnode *> children);
    void tagChanged(qint64 tagId);
    void isInvertedChanged(bool inverted);
    void trOptionChanged(bool trOption);
    void autolinkChanged();
    void nameChanged(QString name);

private:
    qint64 m_id;
    qint64 m_tagId;
    bool m_inverted;
    bool m_trOption;
    qint64 m_treeId;
    QString m_name;
    NodeType m_nodeType;
    QStringList m_autolinks;
    TBnode *m_parentNode;
    QList<TBnode *> m_children;
};
