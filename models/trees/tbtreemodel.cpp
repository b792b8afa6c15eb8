#include "models/trees/tbtreemodel.h"

#include "app/settings/constants.h"
#include "app/settings/showntext.h"
#include "app/settings/specialnodes.h"
#include "core/records/childruns.h"
#include "core/records/treewalk.h"
#include "models/trees/nodeshost.h"
#include "models/trees/treeroles.h"

#include <QColor>
#include <QDataStream>
#include <QDebug>
#include <QMimeData>
#include <QPixmap>

#include <utility>

namespace {

/** Read once: the toolkit keeps pictures of files by name. */
QPixmap currentMark()
{
    return QPixmap(QStringLiteral(":/icons/current.png"), "PNG");
}

QVector<qint64> requiredTags(const TBnode &node)
{
    QVector<qint64> required;
    QVector<qint64> excluded;
    node.collectTagRequirements(required, excluded);
    return required;
}

} // namespace

TBtreeModel::TBtreeModel(NodesHost *host, QObject *parent)
    : QAbstractItemModel(parent),
      m_host(host),
      m_root(std::make_unique<TBnode>(nullptr, -1, -1, false, false, 0, QString(), NodeType(0)))
{
    makeFixedNodes();
}

TBtreeModel::~TBtreeModel() = default;

QVariant TBtreeModel::data(const QModelIndex &index, int role) const
{
    const TBnode *node = nodeAt(index);
    if (!node)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return displayText(*node);
    case Qt::ToolTipRole:
        return toolTip(*node);
    case Qt::DecorationRole:
        return node == m_currentNode ? QVariant(currentMark()) : QVariant();
    case Qt::ForegroundRole:
        return node->hasAutolinks() ? QVariant(QColor(Qt::blue)) : QVariant();
    case Qt::AccessibleTextRole:
        return fileCount(*node).spoken(displayText(*node));
    case NodeRole::FileCount:
        return QVariant::fromValue(fileCount(*node));
    case NodeRole::Type:
        return int(node->nodeType());
    case NodeRole::Id:
        return node->id();
    case NodeRole::ParentId:
        return node->parentNode() ? node->parentNode()->id() : -1;
    case NodeRole::HasAutolinks:
        return node->hasAutolinks();
    case NodeRole::FirstAutolink:
        return node->autolinks().value(0);
    case NodeRole::Inverted:
        return node->isInverted();
    case NodeRole::TrOption:
        return node->trOption();
    case NodeRole::TagId:
        return node->tagId();
    case NodeRole::TreeId:
        return node->treeId();
    case NodeRole::Required:
        return QVariant::fromValue(requiredTags(*node));
    case NodeRole::CurrentId:
        return m_currentNode ? m_currentNode->id() : 0;
    default:
        return {};
    }
}

FileCount TBtreeModel::fileCount(const TBnode &node) const
{
    return m_host && node.nodeType() > 0 ? m_host->fileCount(node) : FileCount();
}

Qt::ItemFlags TBtreeModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    const TBnode *node = nodeAt(index);
    Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    if (!node)
        return flags;
    if (node->nodeType() == TagNode || node->nodeType() == AllFiles)
        flags |= Qt::ItemIsDropEnabled;
    if (node->nodeType() == TagNode && m_host && m_host->allowsManualMoves())
        flags |= Qt::ItemIsDragEnabled;
    return flags;
}

int TBtreeModel::rowCount(const QModelIndex &parent) const
{
    if (parent.column() > 0)
        return 0;
    const TBnode *node = parent.isValid() ? nodeAt(parent) : m_root.get();
    return node && !TreeWalk::hidesChildren(*node) ? node->childrenCount() : 0;
}

int TBtreeModel::columnCount(const QModelIndex &) const
{
    return 1;
}

QModelIndex TBtreeModel::index(int row, int column, const QModelIndex &parent) const
{
    const TBnode *parentNode = parent.isValid() ? nodeAt(parent) : m_root.get();
    const bool isShown = parentNode && column == 0 && !TreeWalk::hidesChildren(*parentNode);
    TBnode *child = isShown ? parentNode->childAt(row) : nullptr;
    return child ? createIndex(row, column, child) : QModelIndex();
}

QModelIndex TBtreeModel::parent(const QModelIndex &index) const
{
    const TBnode *node = nodeAt(index);
    return node ? indexOf(node->parentNode()) : QModelIndex();
}

QStringList TBtreeModel::mimeTypes() const
{
    return {Constants::nodeMimeType};
}

QMimeData *TBtreeModel::mimeData(const QModelIndexList &indexes) const
{
    const TBnode *node = nodeAt(indexes.value(0));
    if (!node || node->nodeType() != TagNode)
        return nullptr;
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << node->id();
    auto *mime = new QMimeData;
    mime->setData(Constants::nodeMimeType, bytes);
    return mime;
}

Qt::DropActions TBtreeModel::supportedDropActions() const
{
    return Qt::CopyAction | Qt::MoveAction;
}

TBnode *TBtreeModel::nodeAt(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<TBnode *>(index.internalPointer()) : nullptr;
}

QModelIndex TBtreeModel::indexOf(const TBnode *node) const
{
    if (!node || node == m_root.get() || !node->parentNode() || TreeWalk::hidesChildren(*node->parentNode()))
        return {};
    const int row = node->parentNode()->indexOf(node);
    return row < 0 ? QModelIndex() : createIndex(row, 0, const_cast<TBnode *>(node));
}

void TBtreeModel::setCurrentNode(NodeType type, TBnode *node)
{
    TBnode *current = type == TagNode ? node : fixedNode(type);
    TBnode *previous = m_currentNode;
    m_currentNode = current;
    if (previous && previous != current)
        repaint(previous);
    if (current)
        repaint(current);
}

void TBtreeModel::clearCurrentNode()
{
    setCurrentNode(TagNode, nullptr);
}

void TBtreeModel::initRootNode(const Map<qint64, TBnode *> &nodes)
{
    // By type and id, as the node itself belongs to records that go.
    const bool hadCurrent = m_currentNode;
    const NodeType currentType = hadCurrent ? m_currentNode->nodeType() : AllFiles;
    const qint64 currentId = hadCurrent ? m_currentNode->id() : 0;
    m_currentNode = nullptr;

    beginResetModel();
    m_left.clear();
    for (TBnode *child : m_allFilesNode->children()) {
        if (child->nodeType() == TagNode)
            disconnectNode(child);
    }
    makeFixedNodes();
    {
        // Within a reset: views must not be told of rows on top of it.
        const QSignalBlocker blocker(m_allFilesNode.get());
        attachAll(nodes.items());
    }
    for (TBnode *child : m_allFilesNode->children()) {
        if (child->nodeType() == TagNode)
            connectNode(child);
    }
    if (hadCurrent)
        m_currentNode = currentType == TagNode ? nodes.value(currentId) : fixedNode(currentType);
    endResetModel();
    qDebug("\n\tEND TBtreeModel::initRootNode");
}

void TBtreeModel::attachNodes(const Map<qint64, TBnode *> &nodes)
{
    attachAll(nodes.items());
}

void TBtreeModel::attachAll(const QMap<qint64, TBnode *> &nodes)
{
    QList<TBnode *> orphans;
    for (TBnode *node : nodes) {
        // Those with a parent come below it with the branch that they belong to.
        if (!node->parentNode())
            orphans.append(node);
    }
    if (!orphans.isEmpty())
        m_allFilesNode->addChildren(orphans);
}

void TBtreeModel::beginManyChanges()
{
    // From here on signals of nodes only gather; whoever reads in between sees the tree as it is.
    m_isResetting = true;
    beginResetModel();
}

void TBtreeModel::endManyChanges()
{
    if (!m_isResetting)
        return;
    m_isResetting = false;
    const QSet<TBnode *> gone = std::exchange(m_left, {});
    for (TBnode *node : gone)
        disconnectNode(node);
    endResetModel();
}

void TBtreeModel::beforeAddedChildrenNode(const QList<TBnode *> &children, TBnode *parentNode)
{
    m_isChangeShown = !m_isResetting && !TreeWalk::hidesChildren(*parentNode);
    if (!m_isChangeShown)
        return;
    const int count = parentNode->childrenCount();
    beginInsertRows(indexOf(parentNode), count, count + children.size() - 1);
}

void TBtreeModel::addedChildrenNode(const QList<TBnode *> &children)
{
    if (m_isChangeShown)
        endInsertRows();
    for (TBnode *child : children) {
        // One that only moved is still followed.
        if (!m_left.remove(child))
            connectNode(child);
    }
}

void TBtreeModel::beforeRemoveChildrenNode(const QList<TBnode *> &children, TBnode *parentNode)
{
    m_isChangeShown = !m_isResetting && !TreeWalk::hidesChildren(*parentNode);
    if (m_isChangeShown) {
        const int first = parentNode->indexOf(children.first());
        // Rows can be removed as one range only.
        m_isScattered = !ChildRuns::isRun(*parentNode, children, first);
        if (m_isScattered)
            beginResetModel();
        else
            beginRemoveRows(indexOf(parentNode), first, first + children.size() - 1);
    }
    for (TBnode *child : children) {
        // Whole branches may move one node after the other; each is passed once, at the end.
        if (m_isResetting)
            m_left.insert(child);
        else
            disconnectNode(child);
    }
}

void TBtreeModel::removedChildrenNode(const QList<TBnode *> &)
{
    if (m_isChangeShown && m_isScattered)
        endResetModel();
    else if (m_isChangeShown)
        endRemoveRows();
}

void TBtreeModel::chagedNodeName(const QString &)
{
    repaint(m_changedNode);
}

void TBtreeModel::changedNodeLink()
{
    repaint(m_changedNode);
}

void TBtreeModel::makeFixedNodes()
{
    if (m_allFilesNode) {
        const QSignalBlocker blocker(m_allFilesNode.get());
        m_allFilesNode->removeAllChildren();
    } else {
        m_allFilesNode =
            std::make_unique<TBnode>(m_root.get(), 0, 0, false, false, 0, SpecialNodes::allFiles(), AllFiles);
        m_root->addChild(m_allFilesNode.get());
        connectNode(m_allFilesNode.get());
    }
    m_fixedNodes.clear();
    const QSignalBlocker blocker(m_allFilesNode.get());
    const QMap<int, QString> &texts = SpecialNodes::shortTexts();
    for (auto text = texts.constBegin(); text != texts.constEnd(); ++text) {
        m_fixedNodes.push_back(std::make_unique<TBnode>(m_allFilesNode.get(), 0, -1, false, false, 0,
                                                        text.value(), NodeType(text.key())));
        m_allFilesNode->addChild(m_fixedNodes.back().get());
    }
}

TBnode *TBtreeModel::fixedNode(NodeType type) const
{
    if (type == AllFiles)
        return m_allFilesNode.get();
    for (const std::unique_ptr<TBnode> &node : m_fixedNodes) {
        if (node->nodeType() == type)
            return node.get();
    }
    return nullptr;
}

void TBtreeModel::connectNode(TBnode *top)
{
    for (TBnode *node : TreeWalk::branch(top))
        followNode(node);
}

void TBtreeModel::followNode(TBnode *node)
{
    // Fixed nodes never change and have no children.
    if (node != m_allFilesNode.get() && node->nodeType() != TagNode)
        return;
    // A node may come back from another place of the tree.
    disconnect(node, nullptr, this, nullptr);
    connect(node, &TBnode::aboutToAddchildren, this, &TBtreeModel::beforeAddedChildrenNode);
    connect(node, &TBnode::childrenNodesAdded, this, &TBtreeModel::addedChildrenNode);
    connect(node, &TBnode::aboutToRemoveNodes, this, &TBtreeModel::beforeRemoveChildrenNode);
    connect(node, &TBnode::childrenNodesRemoved, this, &TBtreeModel::removedChildrenNode);
    // The node comes along, as sender() looks through the connections of all nodes.
    const auto changed = [this, node] {
        m_changedNode = node;
        changedNodeLink();
    };
    connect(node, &TBnode::nameChanged, this, [this, node](const QString &name) {
        m_changedNode = node;
        chagedNodeName(name);
    });
    connect(node, &TBnode::autolinkChanged, this, changed);
    connect(node, &TBnode::tagChanged, this, changed);
    connect(node, &TBnode::isInvertedChanged, this, changed);
    connect(node, &TBnode::trOptionChanged, this, changed);
}

void TBtreeModel::disconnectNode(TBnode *top)
{
    for (TBnode *node : TreeWalk::branch(top)) {
        // The node may be deleted behind this signal.
        if (node == m_currentNode)
            m_currentNode = nullptr;
        disconnect(node, nullptr, this, nullptr);
    }
}

void TBtreeModel::repaint(TBnode *node)
{
    const QModelIndex index = m_isResetting ? QModelIndex() : indexOf(node);
    if (index.isValid())
        emit dataChanged(index, index);
}

QString TBtreeModel::toolTip(const TBnode &node)
{
    const QString text = SpecialNodes::longTexts().value(node.nodeType(), displayText(node));
    return ShownText::toolTip(text);
}

QString TBtreeModel::displayText(const TBnode &node)
{
    const QString name = ShownText::cut(node.name());
    const QString text = node.isInverted() ? QStringLiteral("- ") + name : name;
    // More stands below than can be shown.
    const bool isCutOff = node.childrenCount() > 0 && TreeWalk::hidesChildren(node);
    return isCutOff ? text + QStringLiteral(" …") : text;
}
