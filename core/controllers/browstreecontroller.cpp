#include "core/controllers/browstreecontroller.h"

#include "app/settings/viewsettings.h"
#include "core/controllers/collection.h"
#include "core/controllers/collectionsettings.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/narrowing.h"
#include "core/controllers/nodepath.h"
#include "core/controllers/relationscontroller.h"
#include "core/controllers/tagscontroller.h"
#include "db/manager/databasemanger.h"
#include "models/counts/nodecounts.h"
#include "models/trees/brtreesortermodel.h"
#include "models/trees/tbtreemodel.h"
#include "models/trees/trmodel.h"

#include <algorithm>

namespace {
// A view moves all its open branches for each row that goes or moves, and more of them at once by a reset.
constexpr int manyRows = 50;

QString flagText(bool value)
{
    return value ? QStringLiteral("1") : QStringLiteral("0");
}
} // namespace

BrowsTreeController::BrowsTreeController(DatabaseManger *manager, const AbstractQueryConstructor *constructor,
                                         Collection *collection)
    : AbstractController(manager, constructor, collection),
      m_links(*this, manager),
      m_model(new TBtreeModel(this, this)),
      m_sorterModel(new BrTreeSorterModel(this, this)),
      m_places(*this, m_sorterModel),
      m_counts(new NodeCounts(*this, this))
{
    m_sorterModel->setSourceModel(m_model);
    // Without an interval: many nodes and relations that come in one event are followed once, behind it.
    m_followTimer.setSingleShot(true);
    connect(&m_followTimer, &QTimer::timeout, this, &BrowsTreeController::followShownNode);
    if (!manager)
        return;
    connect(&manager->nodes(), &SignalContainer::itemDeleted, this, &BrowsTreeController::nodeDeleted);
    connect(manager, &DatabaseManger::allDataReloaded, this, &BrowsTreeController::showCurrentNodeAgain);
    connect(manager, &DatabaseManger::allDataReloaded, this, &BrowsTreeController::keepTree);
    connect(manager, &DatabaseManger::browsingNodeLoaded, this, &BrowsTreeController::nodesLoaded);
    connect(manager, &DatabaseManger::addedBrowsingNodes, this, &BrowsTreeController::nodesAdded);
    connect(manager, &DatabaseManger::aboutToRemoveNodes, this, &BrowsTreeController::nodesAboutToGo);
    connect(manager, &DatabaseManger::removedNodes, this, &BrowsTreeController::nodesGone);
    connect(manager, &DatabaseManger::aboutToRenameTags, this, &BrowsTreeController::tagsAboutToBeRenamed);
    connect(manager, &DatabaseManger::tagsRenamed, m_model, &TBtreeModel::endManyChanges);
}

BrowsTreeController::~BrowsTreeController()
{
    m_places.forgetDeleted();
}

void BrowsTreeController::setPeers(MainViewController *mainView, TagsController *tags,
                                   RelationsController *relations)
{
    m_mainView = mainView;
    m_tags = tags;
    m_relations = relations;
    if (mainView)
        m_counts->setFiles(mainView->filterModel());
    followChanges();
    if (!relations)
        return;
    const auto follow = qOverload<>(&QTimer::start);
    connect(relations->model(), &QAbstractItemModel::rowsInserted, &m_followTimer, follow);
    connect(relations->model(), &QAbstractItemModel::rowsRemoved, &m_followTimer, follow);
}

/** The numbers depend on nodes, on those above them and on relationships, some of which no model shows. */
void BrowsTreeController::followChanges()
{
    const auto follow = [this](const auto *sender, auto signal) {
        connect(sender, signal, m_counts, &NodeCounts::lookAgain);
    };
    using Model = QAbstractItemModel;
    follow(m_sorterModel, &Model::dataChanged);
    follow(m_sorterModel, &Model::rowsInserted);
    follow(m_sorterModel, &Model::rowsRemoved);
    follow(m_sorterModel, &Model::layoutChanged);
    follow(m_sorterModel, &Model::modelReset);
    if (m_relations)
        follow(m_relations->model(), &Model::modelReset);
    if (!manager())
        return;
    follow(manager(), &DatabaseManger::edited);
    follow(manager(), &DatabaseManger::replayed);
    follow(manager(), &DatabaseManger::addedRelatshipsNodes);
    follow(manager(), &DatabaseManger::foreignChangesShown);
    connect(manager(), &DatabaseManger::aboutToReloadAllData, m_counts,
            [this] { m_counts->setReading(true); });
    connect(manager(), &DatabaseManger::allDataReloaded, m_counts, [this] { m_counts->setReading(false); });
}

void BrowsTreeController::load()
{
    if (!manager())
        return;
    reloadSorting();
    manager()->loadBrowsingTrees();
    // Between the two: the nodes that are loaded are those of the current tree.
    makeTreeCurrent(collection()->settings()->browsingTree());
    manager()->loadAllNodes();
}

void BrowsTreeController::changeInversion(qint64 nodeId, bool inverted)
{
    if (manager() && mayEdit())
        manager()->updateNode(nodeId, QStringLiteral("inverted"), flagText(inverted));
    // Also when it was refused, which costs one comparison; an edit that went through has changed what is
    // shown.
    followShownNode();
}

void BrowsTreeController::changeTrOption(qint64 nodeId, bool trOption)
{
    if (manager() && mayEdit())
        manager()->updateNode(nodeId, QStringLiteral("tr_options"), flagText(trOption));
    followShownNode();
}

void BrowsTreeController::addNodesBelow(const QVector<qint64> &tagIds, qint64 nodeId)
{
    if (!manager() || !mayEdit())
        return;
    const qint64 parentId = qMax<qint64>(0, nodeId);
    if (tagIds.size() == 1)
        manager()->addNodeBelow(tagIds.first(), parentId);
    else
        manager()->addNodesBelow(tagIds, parentId);
}

void BrowsTreeController::addNodesAbove(const QVector<qint64> &tagIds, qint64 nodeId)
{
    const TBnode *node = nodeById(nodeId);
    if (!manager() || !node || node->nodeType() != TagNode || !mayEdit())
        return;
    const TBnode *parent = node->parentNode();
    const bool keepsPlace = allowsManualMoves() && parent;
    if (keepsPlace)
        // A place can be kept only in an order that is stored: until now the children may have stood by their
        // ids.
        m_places.fix(parent->id(), nodeId);
    emit aboutToMoveBranches();
    if (tagIds.size() == 1)
        manager()->addNodeAbove(tagIds.first(), nodeId);
    else
        manager()->addNodesAbove(tagIds, nodeId);
    if (keepsPlace)
        m_places.giveToTop(parent, nodeId);
    emit branchesMoved();
}

bool BrowsTreeController::canSaveAsNode() const
{
    return m_mainView && !isReadOnly() && NodePath(m_mainView->narrowing()->present()).isPossible();
}

void BrowsTreeController::saveAsNode()
{
    if (!manager() || !m_mainView || !mayEdit())
        return;
    const NodePath path(m_mainView->narrowing()->present());
    if (!path.isPossible())
        return;
    int standing = 0;
    qint64 nodeId = path.standing(m_model->allFilesNode(), standing)->id();
    // The part of the path that stands already is used, so that saving twice makes nothing twice.
    const QVector<NodeStep> missing = path.steps().mid(standing);
    if (!missing.isEmpty())
        nodeId = manager()->addNodePath(missing, nodeId);
    const TBnode *node = nodeById(nodeId);
    if (nodeId <= 0 || !node)
        return;
    QVector<qint64> required;
    QVector<qint64> excluded;
    node->collectTagRequirements(required, excluded);
    nodeActivated(TagNode, nodeId, required, excluded);
    emit nodeSaved();
}

void BrowsTreeController::addTagNodes(const QVector<qint64> &tagIds, qint64 nodeId, bool above)
{
    if (above && nodeId > 0)
        addNodesAbove(tagIds, nodeId);
    else
        addNodesBelow(tagIds, nodeId);
}

void BrowsTreeController::removeNodes(const QVector<qint64> &nodeIds)
{
    if (manager() && mayEdit())
        manager()->removeNodesKeepingChildren(nodeIds);
}

void BrowsTreeController::removeNodesWithSubtree(const QVector<qint64> &nodeIds)
{
    if (manager() && mayEdit())
        manager()->removeNodes(nodeIds);
}

bool BrowsTreeController::hasChildren(const QVector<qint64> &nodeIds) const
{
    return std::any_of(nodeIds.cbegin(), nodeIds.cend(), [this](qint64 nodeId) {
        const TBnode *node = nodeById(nodeId);
        return node && node->childrenCount() > 0;
    });
}

TBnode *BrowsTreeController::nodeById(qint64 nodeId) const
{
    if (nodeId == 0)
        return m_model->allFilesNode();
    return manager() ? manager()->nodes().value(nodeId) : nullptr;
}

TBnode *BrowsTreeController::rootNode() const
{
    return m_model->rootNode();
}

FileCount BrowsTreeController::fileCount(const TBnode &node) const
{
    return m_counts->of(node.nodeType(), node.id());
}

bool BrowsTreeController::findRequirements(qint64 nodeId, TagRequirements &found) const
{
    const TBnode *node = nodeById(nodeId);
    if (node)
        found = requirementsOf(*node);
    return node;
}

bool BrowsTreeController::hasAutolinks(qint64 nodeId) const
{
    const TBnode *node = nodeById(nodeId);
    return node && node->hasAutolinks();
}

void BrowsTreeController::nodeActivated(NodeType type, qint64 nodeId, const QVector<qint64> &required,
                                        const QVector<qint64> &excluded)
{
    if (!m_mainView)
        return;
    if (type == TagNode)
        show(requirementsOf(nodeId, required, excluded));
    else
        m_mainView->showSpecialNode(type);
    setCurrentNode(type, nodeId);
    m_links.nodeSelected(nodeId);
    if (m_tags)
        m_tags->clearMark();
}

TagRequirements BrowsTreeController::requirementsOf(const TBnode &node) const
{
    QVector<qint64> required;
    QVector<qint64> excluded;
    node.collectTagRequirements(required, excluded);
    return requirementsOf(node.id(), required, excluded);
}

TagRequirements BrowsTreeController::requirementsOf(qint64 nodeId, const QVector<qint64> &required,
                                                    const QVector<qint64> &excluded) const
{
    TagRequirements all;
    all.required = required;
    all.excluded = excluded;
    // The option of the node itself counts, whatever the nodes above it say.
    const TBnode *node = nodeById(nodeId);
    if (node && node->trOption() && m_relations) {
        // With relations the tags below a required one satisfy it, and those below an excluded one exclude,
        // too.
        all.excludedWidened = m_relations->descendantsOf(excluded);
        all.requiredAlternatives = m_relations->descendantsOfEach(required);
    }
    return all;
}

void BrowsTreeController::show(const TagRequirements &requirements)
{
    m_shown = requirements;
    m_mainView->showTagRequirements(requirements.required, {}, requirements.excluded,
                                    requirements.requiredAlternatives, {}, requirements.excludedWidened);
}

void BrowsTreeController::followShownNode()
{
    const TBnode *node = nodeById(currentTagNodeId());
    if (currentTagNodeId() <= 0 || !node || !m_mainView)
        return;
    const TagRequirements now = requirementsOf(*node);
    // Filtering a million files anew for equal requirements would take away the selection for nothing.
    if (!(now == m_shown))
        show(now);
}

void BrowsTreeController::showCurrentNodeAgain()
{
    const TBnode *node = nodeById(currentTagNodeId());
    if (currentTagNodeId() <= 0 || !node)
        return;
    QVector<qint64> required;
    QVector<qint64> excluded;
    node->collectTagRequirements(required, excluded);
    nodeActivated(TagNode, node->id(), required, excluded);
}

void BrowsTreeController::clearCurrentNode()
{
    setCurrentNode(0, 0);
}

void BrowsTreeController::setCurrentNode(int type, qint64 nodeId)
{
    const qint64 id = type == TagNode ? nodeId : 0;
    if (type == m_currentType && id == m_currentId)
        return;
    m_currentType = type;
    m_currentId = id;
    markCurrentNode();
    emit currentNodeChanged(m_currentType, m_currentId);
}

void BrowsTreeController::markCurrentNode()
{
    if (m_currentType == 0)
        m_model->clearCurrentNode();
    else
        m_model->setCurrentNode(NodeType(m_currentType), nodeById(m_currentId));
}

void BrowsTreeController::nodesLoaded(const Map<qint64, TBnode *> &nodes)
{
    // All indexes are gone with it; the mark is found again by the node's id.
    m_model->initRootNode(nodes);
    if (m_currentType == TagNode && !nodes.contains(m_currentId))
        clearCurrentNode();
    else
        markCurrentNode();
}

void BrowsTreeController::nodesAdded(const Map<qint64, TBnode *> &nodes)
{
    // The database may give the id of a removed node to a new one.
    m_places.forgetDeleted();
    m_model->attachNodes(nodes);
    m_places.nodesAdded(nodes);
    // A node that was moved has left the model for a moment, and its mark with it.
    markCurrentNode();
    m_followTimer.start();
}

void BrowsTreeController::nodesAboutToGo(const QVector<qint64> &nodeIds)
{
    emit aboutToMoveBranches();
    m_places.keepForChildren(nodeIds);
    // The children move up, which is a row that moves for each of them.
    int rows = nodeIds.size();
    for (const qint64 nodeId : nodeIds) {
        if (const TBnode *node = nodeById(nodeId))
            rows += node->childrenCount();
    }
    if (rows > manyRows)
        m_model->beginManyChanges();
}

void BrowsTreeController::tagsAboutToBeRenamed(const QVector<qint64> &tagIds)
{
    const QSet<qint64> renamed(tagIds.cbegin(), tagIds.cend());
    const auto &nodes = manager()->nodes();
    const auto rows = std::count_if(nodes.begin(), nodes.end(), [&renamed](const TBnode *node) {
        return renamed.contains(node->tagId());
    });
    if (rows > manyRows)
        m_model->beginManyChanges();
}

void BrowsTreeController::nodeDeleted(const QVariant &nodeId)
{
    const qint64 id = nodeId.toLongLong();
    if (currentTagNodeId() > 0 && id == currentTagNodeId())
        clearCurrentNode();
    m_places.nodeDeleted(id);
}

void BrowsTreeController::nodesGone()
{
    m_model->endManyChanges();
    emit branchesMoved();
}

void BrowsTreeController::reloadSorting()
{
    m_places.read();
}

void BrowsTreeController::setManualOrder(const QVariant &value)
{
    emit aboutToMoveBranches();
    m_places.setValue(value);
    emit branchesMoved();
}

qint64 BrowsTreeController::currentBrowsingTree() const
{
    return manager() ? manager()->currentBrowsingTree() : 0;
}

QString BrowsTreeController::currentTreeName() const
{
    return manager() ? manager()->browsingTrees().value(manager()->currentBrowsingTree()) : QString();
}

QMap<qint64, QString> BrowsTreeController::browsingTrees() const
{
    return manager() ? manager()->browsingTrees().items() : QMap<qint64, QString>();
}

void BrowsTreeController::loadTrees()
{
    if (manager())
        manager()->loadBrowsingTrees();
}

bool BrowsTreeController::hasOtherTreeNamed(const QString &name, qint64 treeId) const
{
    const QList<qint64> ids = browsingTrees().keys(name);
    return std::any_of(ids.cbegin(), ids.cend(), [treeId](qint64 id) { return id != treeId; });
}

bool BrowsTreeController::addTree(const QString &name)
{
    return manager() && !hasOtherTreeNamed(name, 0) && mayEdit() && manager()->addBrowsingTree(name) > 0;
}

bool BrowsTreeController::renameTree(qint64 treeId, const QString &name)
{
    return manager() && !hasOtherTreeNamed(name, treeId) && mayEdit() &&
           manager()->renameBrowsingTree(treeId, name);
}

bool BrowsTreeController::removeTree(qint64 treeId)
{
    const QMap<qint64, QString> trees = browsingTrees();
    if (!trees.contains(treeId) || treeId == trees.firstKey() || !mayEdit())
        return false;
    // The first tree cannot be removed, so that there is always one to go to.
    if (treeId == currentBrowsingTree())
        selectTree(trees.firstKey());
    return manager()->removeBrowsingTree(treeId);
}

bool BrowsTreeController::selectTree(qint64 treeId)
{
    if (!manager())
        return false;
    // The files stay: only what the collection's listeners show of the tree is put away and brought back.
    emit collection()->aboutToReloadAllData();
    manager()->loadBrowsingTrees();
    makeTreeCurrent(treeId);
    reloadSorting();
    emit collection()->allDataReloaded();
    return currentBrowsingTree() == treeId;
}

void BrowsTreeController::makeTreeCurrent(qint64 treeId)
{
    manager()->setCurrentBrowsingTree(treeId);
    // Not always the one that was asked for: a tree that is gone is told of once.
    if (treeId != 0)
        collection()->settings()->setBrowsingTree(currentBrowsingTree());
}

void BrowsTreeController::keepTree()
{
    // A reload has told already that the stored one is gone.
    CollectionSettings *settings = collection()->settings();
    if (settings->browsingTree() != 0 && settings->browsingTree() != currentBrowsingTree())
        settings->setBrowsingTree(currentBrowsingTree());
}

bool BrowsTreeController::allowsManualMoves() const
{
    return !isReadOnly() && m_sorterModel->sortMode() == ViewSettings::ManualSorting;
}

QVector<qint64> BrowsTreeController::tagsOfNode(qint64 nodeId) const
{
    QVector<qint64> required;
    QVector<qint64> excluded;
    const TBnode *node = nodeById(nodeId);
    if (node)
        node->collectTagRequirements(required, excluded);
    return required;
}

void BrowsTreeController::addFilesToNode(qint64 nodeId, const QVector<qint64> &fileIds)
{
    const QVector<qint64> tagIds = tagsOfNode(nodeId);
    if (m_mainView && !tagIds.isEmpty() && mayEdit())
        m_mainView->linkTags(fileIds, tagIds);
}

void BrowsTreeController::addUrlsToNode(qint64 nodeId, const QList<QUrl> &urls)
{
    if (m_mainView && mayEdit())
        m_mainView->addUrls(urls, tagsOfNode(nodeId), true, qMax<qint64>(0, nodeId));
}
