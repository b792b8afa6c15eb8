#pragma once

#include "core/records/trnode.h"
#include "core/records/vector.h"

#include <QAbstractItemModel>
#include <QHash>
#include <QPair>

class TagNames;

/**
 * The tag relationship trees. The hidden root belongs to the model, the other nodes to the manager; the model
 * mirrors their signals. Owned by its controller, on the GUI thread.
 */
class TRmodel : public QAbstractItemModel
{
    Q_OBJECT

public:
    explicit TRmodel(const TagNames *names, QObject *parent = nullptr);
    ~TRmodel() override;

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex &index) const override;

    QStringList mimeTypes() const override;
    /** The tag ids of the entries, each once. */
    QMimeData *mimeData(const QModelIndexList &indexes) const override;

    TRnode *nodeAt(const QModelIndex &index) const;
    QModelIndex indexOf(const TRnode *node) const;
    /** The relationship_path of an entry; empty for an invalid index. */
    QString pathOf(const QModelIndex &index) const;
    /** The entry at a path; invalid when there is none. */
    QModelIndex indexOfPath(const QString &path) const;
    /** The same, and entries too deep to be shown; null when there is none. */
    const TRnode *nodeOfPath(const QString &path) const;

public slots:
    /** Shows all the nodes in place of those shown before. */
    void resetNodes(const Vector<QPair<QString, TRnode *>> &nodes);
    /** Puts those of the nodes that have no parent at the top. */
    void addedNewNodes(const Vector<QPair<QString, TRnode *>> &nodes);
    void clear();
    /** Names are looked up by the tag's id, so that a renamed tag only needs a repaint. */
    void repaintNames();

private slots:
    void beforeAddedChildrenNode(const QList<TRnode *> &children, TRnode *parentNode);
    void addedChildrenNode(const QList<TRnode *> &children);
    void beforeRemoveChildrenNode(const QList<TRnode *> &children, TRnode *parentNode);
    void removedChildrenNode(const QList<TRnode *> &children);

private:
    QString displayText(const TRnode &node) const;
    void connectNode(TRnode *top);
    void disconnectNode(TRnode *top);
    void noteTopPath(const QString &path, const TRnode *node);
    /** The entry at the top whose path is the longest beginning of this one; null when there is none. */
    const TRnode *topNodeOf(const QString &path) const;
    /** The path of an entry at the top. */
    QString topPathOf(const TRnode *node) const;

    const TagNames *m_names;
    TRnode m_root;
    QHash<const TRnode *, QString> m_longTopPaths; ///< of entries at the top whose parents have no rows
    bool m_isChangeShown = false; // whether rows come or go with the present change of a node
    bool m_isScattered = false;   // whether those that go do not stand next to each other
};
