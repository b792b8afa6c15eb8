#include "models/trees/trmodel.h"

#include "app/settings/constants.h"
#include "app/settings/showntext.h"
#include "core/records/childruns.h"
#include "core/records/treewalk.h"
#include "models/base/idlistmime.h"
#include "models/trees/tagnames.h"
#include "models/trees/treeroles.h"

namespace {
const QLatin1Char separator('.');
} // namespace

TRmodel::TRmodel(const TagNames *names, QObject *parent)
    : QAbstractItemModel(parent), m_names(names), m_root(0)
{
    connectNode(&m_root);
}

TRmodel::~TRmodel() = default;

QVariant TRmodel::data(const QModelIndex &index, int role) const
{
    const TRnode *node = nodeAt(index);
    if (!node)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return displayText(*node);
    case Qt::ToolTipRole: // for entries that are cut off
        return ShownText::toolTip(index.data().toString());
    case RelationRole::TagId:
        return node->id();
    case RelationRole::StoredName:
        return node->name();
    case RelationRole::Path:
        return pathOf(index);
    default:
        return {};
    }
}

QString TRmodel::displayText(const TRnode &node) const
{
    const QString name = ShownText::cut(m_names ? m_names->tagName(node.id()) : node.name());
    // More stands below than can be shown.
    return node.childrenCount() > 0 && TreeWalk::hidesChildren(node) ? name + QStringLiteral(" …") : name;
}

Qt::ItemFlags TRmodel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    return Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsDropEnabled | Qt::ItemIsDragEnabled;
}

int TRmodel::rowCount(const QModelIndex &parent) const
{
    if (parent.column() > 0)
        return 0;
    const TRnode *node = parent.isValid() ? nodeAt(parent) : &m_root;
    return TreeWalk::hidesChildren(*node) ? 0 : node->childrenCount();
}

int TRmodel::columnCount(const QModelIndex &) const
{
    return 1;
}

QModelIndex TRmodel::index(int row, int column, const QModelIndex &parent) const
{
    const TRnode *parentNode = parent.isValid() ? nodeAt(parent) : &m_root;
    const bool isShown = column == 0 && !TreeWalk::hidesChildren(*parentNode);
    TRnode *child = isShown ? parentNode->childAt(row) : nullptr;
    return child ? createIndex(row, column, child) : QModelIndex();
}

QModelIndex TRmodel::parent(const QModelIndex &index) const
{
    const TRnode *node = nodeAt(index);
    return node ? indexOf(node->parentNode()) : QModelIndex();
}

QStringList TRmodel::mimeTypes() const
{
    return {Constants::tagMimeType};
}

QMimeData *TRmodel::mimeData(const QModelIndexList &indexes) const
{
    QVector<qint64> ids;
    for (const QModelIndex &index : indexes) {
        const TRnode *node = nodeAt(index);
        if (node && !ids.contains(node->id()))
            ids.append(node->id());
    }
    if (ids.isEmpty())
        return nullptr;
    return IdListMime::pack(Constants::tagMimeType, ids);
}

TRnode *TRmodel::nodeAt(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<TRnode *>(index.internalPointer()) : nullptr;
}

QModelIndex TRmodel::indexOf(const TRnode *node) const
{
    if (!node || node == &m_root || !node->parentNode() || TreeWalk::hidesChildren(*node->parentNode()))
        return {};
    const int row = node->parentNode()->indexOf(node);
    return row < 0 ? QModelIndex() : createIndex(row, 0, const_cast<TRnode *>(node));
}

QString TRmodel::pathOf(const QModelIndex &index) const
{
    QStringList pieces;
    const TRnode *node = nodeAt(index);
    if (!node)
        return {};
    for (; node->parentNode() && node->parentNode() != &m_root; node = node->parentNode())
        pieces.prepend(QString::number(node->id()));
    pieces.prepend(topPathOf(node));
    return pieces.join(separator);
}

QString TRmodel::topPathOf(const TRnode *node) const
{
    const QString path = m_longTopPaths.value(node);
    return path.isEmpty() ? QString::number(node->id()) : path;
}

const TRnode *TRmodel::topNodeOf(const QString &path) const
{
    const TRnode *found = nullptr;
    int length = 0;
    for (const TRnode *node : m_root.children()) {
        const QString top = topPathOf(node);
        const bool isBeginning = path == top || path.startsWith(top + separator);
        // One top path may be the beginning of another, whose branch it is not.
        if (isBeginning && top.size() > length) {
            found = node;
            length = top.size();
        }
    }
    return found;
}

void TRmodel::noteTopPath(const QString &path, const TRnode *node)
{
    // A relation whose parent is not stored stands on top, under its whole path.
    if (path.contains(separator))
        m_longTopPaths.insert(node, path);
}

QModelIndex TRmodel::indexOfPath(const QString &path) const
{
    return indexOf(nodeOfPath(path));
}

const TRnode *TRmodel::nodeOfPath(const QString &path) const
{
    const TRnode *node = topNodeOf(path);
    if (!node)
        return nullptr;
    const QString below = path.mid(topPathOf(node).size() + 1);
    const QStringList pieces = below.isEmpty() ? QStringList() : below.split(separator);
    for (const QString &piece : pieces) {
        const qint64 id = piece.toLongLong();
        const TRnode *next = nullptr;
        for (const TRnode *child : node->children()) {
            if (child->id() == id)
                next = child;
        }
        if (!next)
            return nullptr;
        node = next;
    }
    return node;
}

void TRmodel::resetNodes(const Vector<QPair<QString, TRnode *>> &nodes)
{
    beginResetModel();
    const QSignalBlocker blocker(&m_root);
    for (TRnode *child : m_root.children())
        disconnectNode(child);
    m_root.removeAllChildren();
    m_longTopPaths.clear();
    for (const auto &entry : nodes) {
        if (!entry.second->parentNode()) {
            noteTopPath(entry.first, entry.second);
            m_root.addChild(entry.second);
            connectNode(entry.second);
        }
    }
    endResetModel();
}

void TRmodel::addedNewNodes(const Vector<QPair<QString, TRnode *>> &nodes)
{
    for (const auto &entry : nodes) {
        if (entry.second->parentNode())
            continue;
        noteTopPath(entry.first, entry.second);
        m_root.addChild(entry.second);
    }
}

void TRmodel::clear()
{
    resetNodes({});
}

void TRmodel::repaintNames()
{
    for (const TRnode *node : TreeWalk::branch(&m_root)) {
        const QModelIndex parent = indexOf(node);
        const int rows = node == &m_root || parent.isValid() ? rowCount(parent) : 0;
        if (rows > 0)
            emit dataChanged(index(0, 0, parent), index(rows - 1, 0, parent));
    }
}

void TRmodel::beforeAddedChildrenNode(const QList<TRnode *> &children, TRnode *parentNode)
{
    m_isChangeShown = !TreeWalk::hidesChildren(*parentNode);
    if (!m_isChangeShown)
        return;
    const int count = parentNode->childrenCount();
    beginInsertRows(indexOf(parentNode), count, count + children.size() - 1);
}

void TRmodel::addedChildrenNode(const QList<TRnode *> &children)
{
    if (m_isChangeShown)
        endInsertRows();
    for (TRnode *child : children)
        connectNode(child);
}

void TRmodel::beforeRemoveChildrenNode(const QList<TRnode *> &children, TRnode *parentNode)
{
    m_isChangeShown = !TreeWalk::hidesChildren(*parentNode);
    if (m_isChangeShown) {
        const int first = parentNode->indexOf(children.first());
        m_isScattered = !ChildRuns::isRun(*parentNode, children, first);
        if (m_isScattered)
            beginResetModel();
        else
            beginRemoveRows(indexOf(parentNode), first, first + children.size() - 1);
    }
    for (TRnode *child : children) {
        disconnectNode(child);
        m_longTopPaths.remove(child);
    }
}

void TRmodel::removedChildrenNode(const QList<TRnode *> &)
{
    if (m_isChangeShown && m_isScattered)
        endResetModel();
    else if (m_isChangeShown)
        endRemoveRows();
}

void TRmodel::connectNode(TRnode *top)
{
    constexpr auto once = Qt::UniqueConnection;
    for (TRnode *node : TreeWalk::branch(top)) {
        connect(node, &TRnode::aboutToAddchildren, this, &TRmodel::beforeAddedChildrenNode, once);
        connect(node, &TRnode::childrenNodesAdded, this, &TRmodel::addedChildrenNode, once);
        connect(node, &TRnode::aboutToRemoveNodes, this, &TRmodel::beforeRemoveChildrenNode, once);
        connect(node, &TRnode::childrenNodesRemoved, this, &TRmodel::removedChildrenNode, once);
    }
}

void TRmodel::disconnectNode(TRnode *top)
{
    for (TRnode *node : TreeWalk::branch(top))
        disconnect(node, nullptr, this, nullptr);
}
