#pragma once

#include <QList>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVector>

/**
 * One place of a tag in the relationship trees; the same tag may have several. The root has id 0. Nodes are
 * owned by the list of the manager: parent and children are borrowed. GUI thread only.
 */
class TRnode : public QObject
{
    Q_OBJECT

public:
    /** The id is that of the tag. Notes the parent node but does not enter the node among its children. */
    explicit TRnode(qint64 id, const QString &name = {}, TRnode *parentNode = nullptr,
                    QObject *parent = nullptr);

    qint64 id() const { return m_id; }
    const QString &name() const { return m_name; }
    void setName(const QString &name) { m_name = name; }

    TRnode *parentNode() const { return m_parentNode; }
    const QList<TRnode *> &children() const { return m_children; }
    int childrenCount() const { return m_children.size(); }
    /** Null outside the list. */
    TRnode *childAt(int index) const { return m_children.value(index, nullptr); }
    /** -1 for a stranger. */
    int indexOf(const TRnode *child) const;

    /** False for null and for a node that is a child already. */
    bool addChild(TRnode *child);
    /** Adds one after the other, with signals for each. */
    void addChildren(const QList<TRnode *> &children);
    /** Takes a child off the list and clears its parent; false for null and for a stranger. */
    bool removeChild(TRnode *child);
    /** Takes those of the given ones that are children off the list, in as few steps as models can follow. */
    void removeChildren(const QSet<TRnode *> &going);
    void removeAllChildren();

    /** The tags above, the topmost first, without the root. */
    QVector<qint64> ancestorIds() const;
    /** The tags below, those below a child before the child itself. */
    QVector<qint64> descendantIds() const;
    /** The names in the order of descendantIds(). */
    QStringList descendantNames() const;
    bool hasAncestorIn(const QVector<qint64> &ids) const;
    bool hasDescendantIn(const QVector<qint64> &ids) const;

signals:
    void aboutToAddchildren(QList<TRnode *> children, TRnode *parentNode);
    void childrenNodesAdded(QList<TRnode *> children);
    void aboutToRemoveNodes(QList<TRnode *> children, TRnode *parentNode);
    void childrenNodesRemoved(QList<TRnode *> children);

private:
    qint64 m_id;
    QString m_name;
    TRnode *m_parentNode;
    QList<TRnode *> m_children;
};
