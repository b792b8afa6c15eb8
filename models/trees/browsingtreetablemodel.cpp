#include "models/trees/browsingtreetablemodel.h"

#include "app/settings/showntext.h"
#include "models/trees/browsingtreeshost.h"
#include "models/trees/treeroles.h"

#include <QTimer>

#include <algorithm>

BrowsingTreeTableModel::BrowsingTreeTableModel(BrowsingTreesHost *host, QObject *parent)
    : QAbstractTableModel(parent), m_host(host)
{
    refresh();
}

int BrowsingTreeTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_trees.size();
}

int BrowsingTreeTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

const BrowsingTreeTableModel::Tree *BrowsingTreeTableModel::treeAt(const QModelIndex &index) const
{
    return index.isValid() && index.row() < m_trees.size() ? &m_trees.at(index.row()) : nullptr;
}

QVariant BrowsingTreeTableModel::data(const QModelIndex &index, int role) const
{
    const Tree *tree = treeAt(index);
    if (!tree)
        return {};
    const bool isName = index.column() == NameColumn;
    switch (role) {
    case Qt::DisplayRole:
        return isName ? ShownText::cut(tree->name) : QVariant();
    case Qt::EditRole:
        return isName ? tree->name : QVariant();
    case Qt::AccessibleTextRole:
        return isName ? ShownText::cut(tree->name) : tr("Show %1").arg(ShownText::cut(tree->name));
    case Qt::CheckStateRole:
        if (isName)
            return {};
        return m_host && m_host->currentBrowsingTree() == tree->id ? Qt::Checked : Qt::Unchecked;
    case TreeListRole::TreeId:
        return tree->id;
    default:
        return {};
    }
}

bool BrowsingTreeTableModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const Tree *tree = treeAt(index);
    if (!tree || !m_host)
        return false;
    // A copy: the list is taken over anew on the way.
    if (index.column() == NameColumn && role == Qt::EditRole)
        return rename(Tree(*tree), value.toString().trimmed());
    if (index.column() == SelectColumn && role == Qt::CheckStateRole && value.toInt() == Qt::Checked)
        return select(Tree(*tree));
    return false;
}

bool BrowsingTreeTableModel::rename(const Tree &tree, const QString &name)
{
    if (name.isEmpty() || name == tree.name || m_host->isReadOnly())
        return false;
    const QModelIndex other = indexOfName(name);
    if (other.isValid() && m_trees.at(other.row()).id != tree.id) {
        reportLater(tr("There is already a browsing tree with this name."));
        return false;
    }
    const bool isRenamed = m_host->renameTree(tree.id, name);
    refresh();
    return isRenamed;
}

bool BrowsingTreeTableModel::select(const Tree &tree)
{
    if (tree.id == m_host->currentBrowsingTree())
        return false;
    // Others may have removed it since the list was read.
    m_host->loadTrees();
    const bool isThere = m_host->browsingTrees().contains(tree.id);
    const bool isSelected = isThere && m_host->selectTree(tree.id);
    refresh();
    if (!isThere)
        reportLater(tr("Selected browsing tree no longer exists."));
    return isSelected;
}

QVariant BrowsingTreeTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    if (section == NameColumn)
        return tr("Browsing tree name");
    return section == SelectColumn ? QVariant(tr("Select")) : QVariant();
}

Qt::ItemFlags BrowsingTreeTableModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    const Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    if (index.column() == SelectColumn)
        return flags | Qt::ItemIsUserCheckable;
    return m_host && !m_host->isReadOnly() ? flags | Qt::ItemIsEditable : flags;
}

void BrowsingTreeTableModel::load()
{
    if (!m_host)
        return;
    m_host->loadTrees();
    const QMap<qint64, QString> trees = m_host->browsingTrees();
    if (!trees.isEmpty() && !trees.contains(m_host->currentBrowsingTree())) {
        m_host->selectTree(trees.firstKey());
        reportLater(tr("Previous browsing tree does not exists anymore. \nSelected default browsing tree."));
    }
    refresh();
}

QModelIndex BrowsingTreeTableModel::addTree(const QString &name)
{
    const QModelIndex other = indexOfName(name);
    if (other.isValid()) {
        emit treeDuplicated(other);
        return {};
    }
    if (!m_host || !m_host->addTree(name))
        return {};
    refresh();
    return indexOfName(name);
}

bool BrowsingTreeTableModel::removeTree(const QModelIndex &index)
{
    const Tree *tree = treeAt(index);
    if (!tree || !m_host)
        return false;
    const bool isRemoved = m_host->removeTree(tree->id);
    refresh();
    return isRemoved;
}

QModelIndex BrowsingTreeTableModel::indexOf(qint64 treeId) const
{
    const auto tree = std::find_if(m_trees.cbegin(), m_trees.cend(),
                                   [treeId](const Tree &candidate) { return candidate.id == treeId; });
    return tree == m_trees.cend() ? QModelIndex() : index(int(tree - m_trees.cbegin()), NameColumn);
}

QModelIndex BrowsingTreeTableModel::indexOfName(const QString &name) const
{
    const auto tree = std::find_if(m_trees.cbegin(), m_trees.cend(),
                                   [&name](const Tree &candidate) { return candidate.name == name; });
    return tree == m_trees.cend() ? QModelIndex() : index(int(tree - m_trees.cbegin()), NameColumn);
}

void BrowsingTreeTableModel::refresh()
{
    QVector<Tree> trees;
    const QMap<qint64, QString> listed = m_host ? m_host->browsingTrees() : QMap<qint64, QString>();
    for (auto tree = listed.cbegin(); tree != listed.cend(); ++tree)
        trees.append({tree.key(), tree.value()});
    // A reset would close the editor of the row that has just been renamed.
    const bool isSameSet =
        std::equal(trees.cbegin(), trees.cend(), m_trees.cbegin(), m_trees.cend(),
                   [](const Tree &left, const Tree &right) { return left.id == right.id; });
    if (!isSameSet)
        beginResetModel();
    m_trees = trees;
    if (!isSameSet)
        endResetModel();
    else if (!m_trees.isEmpty())
        emit dataChanged(index(0, NameColumn), index(m_trees.size() - 1, SelectColumn));
}

void BrowsingTreeTableModel::reportLater(const QString &text)
{
    // The loop of a box would delete an editor under the view that commits it.
    QTimer::singleShot(0, this, [this, text] { emit showError(tr("Browsing tree error"), text); });
}
