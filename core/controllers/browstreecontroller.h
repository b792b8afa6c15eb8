#pragma once

#include "core/controllers/abstractcontroller.h"
#include "core/controllers/nodelinks.h"
#include "core/controllers/nodeplaces.h"
#include "core/records/recordtypes.h"
#include "models/contents/tagrequirements.h"
#include "models/counts/noderequirements.h"
#include "models/trees/browsingtreeshost.h"
#include "models/trees/nodeshost.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QSet>
#include <QTimer>
#include <QUrl>
#include <QVector>

class BrTreeSorterModel;
class MainViewController;
class NodeCounts;
class RelationsController;
class TBtreeModel;
class TagsController;

/** The browsing tree: making and removing nodes, and showing the files that a node selects. GUI thread. */
class BrowsTreeController : public AbstractController,
                            public NodesHost,
                            public BrowsingTreesHost,
                            private NodeRequirements
{
    Q_OBJECT

public:
    BrowsTreeController(DatabaseManger *manager, const AbstractQueryConstructor *constructor,
                        Collection *collection);

    ~BrowsTreeController() override;

    void setPeers(MainViewController *mainView, TagsController *tags, RelationsController *relations);
    void load() override;

    void changeInversion(qint64 nodeId, bool inverted);
    void changeTrOption(qint64 nodeId, bool trOption);

    /** One node for each tag below a node; an id not above 0 is the top level. */
    void addNodesBelow(const QVector<qint64> &tagIds, qint64 nodeId);
    /** The same between a node and its parent, the first tag at the top and at the node's place by hand. */
    void addNodesAbove(const QVector<qint64> &tagIds, qint64 nodeId);
    /** Whether nodes can stand for what is asked of the shown files. */
    bool canSaveAsNode() const;
    /** Makes those of them that are missing, and opens the last. */
    void saveAsNode();
    void addTagNodes(const QVector<qint64> &tagIds, qint64 nodeId, bool above);
    /** Removes nodes alone: their children rise to the nearest node above that stays. */
    void removeNodes(const QVector<qint64> &nodeIds);
    void removeNodesWithSubtree(const QVector<qint64> &nodeIds);

    /** Whether one of the nodes has children. */
    bool hasChildren(const QVector<qint64> &nodeIds) const;
    /** The id 0 is that of "All files". Null for an unknown node. */
    TBnode *nodeById(qint64 nodeId) const override;
    FileCount fileCount(const TBnode &node) const override;
    /** The numbers of files beside the nodes. */
    NodeCounts *counts() const { return m_counts; }
    /** The hidden root above "All files". */
    TBnode *rootNode() const;
    bool hasAutolinks(qint64 nodeId) const;
    /** The folders that feed nodes. */
    NodeLinks &links() { return m_links; }

    /** Shows what a node selects; the two lists are those of TBnode::collectTagRequirements. */
    void nodeActivated(NodeType type, qint64 nodeId, const QVector<qint64> &required,
                       const QVector<qint64> &excluded);
    void clearCurrentNode();
    /** The node whose files are shown; 0 for the special nodes and for none. */
    qint64 currentNodeId() const { return m_currentId; }
    /** The kind of that node, 0 for none. */
    int currentNodeType() const { return m_currentType; }
    /** The same for a node of a tag alone. */
    qint64 currentTagNodeId() const { return m_currentType == TagNode ? m_currentId : 0; }

    /** The id of the tree that is shown; 0 for the one tree of a local database. */
    qint64 currentBrowsingTree() const override;
    /** Empty where the database has only one tree. */
    QString currentTreeName() const;
    /** The trees of a server by id, the default one first; empty for a local database. */
    QMap<qint64, QString> browsingTrees() const override;
    /** Reads the list of trees anew: others make and remove them too. The tree that is shown stays. */
    void loadTrees() override;
    /** False, and nothing is done, when another tree has this name; and when the database did not take it. */
    bool addTree(const QString &name) override;
    bool renameTree(qint64 treeId, const QString &name) override;
    /** The default tree cannot be removed. In the place of the one that is shown the default tree is shown.
     */
    bool removeTree(qint64 treeId) override;
    /**
     * Shows a tree from now on, also after the next start. When another client has removed it, the default
     * tree is shown and Collection::showError says so; false then.
     */
    bool selectTree(qint64 treeId) override;
    /** Whether nodes can be put in order by hand. */
    bool allowsManualMoves() const override;
    /** Reads the way of sorting anew and applies it. */
    void reloadSorting();

    /** The order by hand, as a value of its sorter, and back. */
    QVariant manualOrder() const { return m_places.value(); }
    void setManualOrder(const QVariant &order);

    TBtreeModel *model() const { return m_model; }
    /** What a view shows: the tree in its order. */
    BrTreeSorterModel *sorterModel() const { return m_sorterModel; }

    /** Links files to the tags on the way down to a node; inverted ones are left out. */
    void addFilesToNode(qint64 nodeId, const QVector<qint64> &fileIds);
    /** Adds files, folders and hyperlinks to the database, with those tags. */
    void addUrlsToNode(qint64 nodeId, const QList<QUrl> &urls);
    /** The tags on the way down to a node; inverted ones are left out. */
    QVector<qint64> tagsOfNode(qint64 nodeId) const;

    /** The two lists with the tags that stand for others, where the option of the node says so. */
    TagRequirements requirementsOf(qint64 nodeId, const QVector<qint64> &required,
                                   const QVector<qint64> &excluded) const;

signals:
    /** The type is 0 when no node is current any more. */
    void currentNodeChanged(int type, qlonglong nodeId);
    /** The shown node stands for what was asked for by tags until now, and should be seen. */
    void nodeSaved();
    /** Around a change that takes branches out of the model and puts them in again elsewhere. */
    void aboutToMoveBranches();
    void branchesMoved();

private:
    bool findRequirements(qint64 nodeId, TagRequirements &found) const override;
    TagRequirements requirementsOf(const TBnode &node) const;
    void followChanges();
    void show(const TagRequirements &requirements);
    /** Shows the current node's files anew when an edit of nodes or relationships makes them others. */
    void followShownNode();
    void setCurrentNode(int type, qint64 nodeId);
    /** After a reload, as the tags on its way and below them may be others now. */
    void showCurrentNodeAgain();
    void keepTree();
    void nodesAboutToGo(const QVector<qint64> &nodeIds);
    void nodesGone();
    void tagsAboutToBeRenamed(const QVector<qint64> &tagIds);
    void nodeDeleted(const QVariant &nodeId);
    void nodesLoaded(const Map<qint64, TBnode *> &nodes);
    void nodesAdded(const Map<qint64, TBnode *> &nodes);
    void markCurrentNode();
    void makeTreeCurrent(qint64 treeId);
    bool hasOtherTreeNamed(const QString &name, qint64 treeId) const;

    MainViewController *m_mainView = nullptr;
    TagsController *m_tags = nullptr;
    RelationsController *m_relations = nullptr;
    NodeLinks m_links;
    TBtreeModel *m_model;
    BrTreeSorterModel *m_sorterModel;
    NodePlaces m_places;
    NodeCounts *m_counts;
    TagRequirements m_shown;
    QTimer m_followTimer; ///< gathers the changes of one edit
    int m_currentType = 0;
    qint64 m_currentId = 0;
};
