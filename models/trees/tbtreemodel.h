#pragma once

#include "core/records/map.h"
#include "core/records/tbnode.h"

#include <QAbstractItemModel>
#include <QSet>

#include <memory>
#include <vector>

class FileCount;
class NodesHost;

/**
 * The browsing tree with its fixed nodes on top. The hidden root and the fixed nodes belong to the model, the
 * nodes of tags to the manager; the model mirrors their signals. Owned by its controller, on the GUI thread.
 */
class TBtreeModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    /** The host is borrowed; without one nothing can be dragged. */
    explicit TBtreeModel(NodesHost *host, QObject *parent = nullptr);
    ~TBtreeModel() override;

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex &index) const override;

    QStringList mimeTypes() const override;
    /** The id of the first dragged node. */
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    Qt::DropActions supportedDropActions() const override;

    /** Null for an invalid index. */
    TBnode *nodeAt(const QModelIndex &index) const;
    QModelIndex indexOf(const TBnode *node) const;
    TBnode *rootNode() const { return m_root.get(); }
    /** "All files" or one of the nodes of a fixed selection; null for the type of tag nodes. */
    TBnode *fixedNode(NodeType type) const;
    TBnode *allFilesNode() const { return m_allFilesNode.get(); }

    /** Marks the node whose files are in the main view; the node counts for type 8 alone. Null clears it. */
    void setCurrentNode(NodeType type, TBnode *node);
    void clearCurrentNode();
    TBnode *currentNode() const { return m_currentNode; }

public slots:
    /** Rebuilds the tree from all nodes of the manager; the current node is found again by type and id. */
    void initRootNode(const Map<qint64, TBnode *> &nodes);
    /** Puts those of the nodes that have no parent under "All files". */
    void attachNodes(const Map<qint64, TBnode *> &nodes);
    /** Between the two, changes of the tree are not told row by row but by one reset. An end alone does
     * nothing.
     */
    void beginManyChanges();
    void endManyChanges();

private slots:
    void beforeAddedChildrenNode(const QList<TBnode *> &children, TBnode *parentNode);
    void addedChildrenNode(const QList<TBnode *> &children);
    void beforeRemoveChildrenNode(const QList<TBnode *> &children, TBnode *parentNode);
    void removedChildrenNode(const QList<TBnode *> &children);
    void chagedNodeName(const QString &name);
    void changedNodeLink();

private:
    void makeFixedNodes();
    void attachAll(const QMap<qint64, TBnode *> &nodes);
    void connectNode(TBnode *top);
    void followNode(TBnode *node);
    void disconnectNode(TBnode *top);
    void repaint(TBnode *node);
    FileCount fileCount(const TBnode &node) const;
    static QString toolTip(const TBnode &node);
    static QString displayText(const TBnode &node);

    NodesHost *m_host;
    std::unique_ptr<TBnode> m_root;
    std::unique_ptr<TBnode> m_allFilesNode;
    std::vector<std::unique_ptr<TBnode>> m_fixedNodes;
    TBnode *m_currentNode = nullptr;
    TBnode *m_changedNode = nullptr; // the one that the running slot is told of
    bool m_isResetting = false;
    QSet<TBnode *> m_left;        ///< followed nodes that have left their parents since the reset began
    bool m_isChangeShown = false; // whether rows come or go with the present change of a node
    bool m_isScattered = false;   // whether those that go do not stand next to each other
};
