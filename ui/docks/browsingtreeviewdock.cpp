#include "ui/docks/browsingtreeviewdock.h"

#include "app/messages/filedialogs.h"
#include "app/settings/showntext.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/collection.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/records/nodetype.h"
#include "core/undo/undohistory.h"
#include "models/trees/treeroles.h"
#include "ui/dialogs/autolinkdialog.h"
#include "ui/docks/nodetyping.h"
#include "ui/tagging/namesline.h"
#include "ui/views/exportmenu.h"
#include "ui/views/opennodes.h"
#include "ui/views/tbtreeview.h"
#include "ui/widgets/mainui.h"

#include <QAction>
#include <QMenu>

namespace {

enum NodeAction {
    MenuAction = 0,
    DeleteAction = 1,
    DeleteTreeAction = 2,
    RelationsAction = 3,
    InvertAction = 4,
    LinkAction = 5,
    LinkMenuAction = 6,
    ViewLinkAction = 7,
    RemoveLinkAction = 8,
    SaveAction = 9
};

constexpr int longestName = 100; // signs

} // namespace

BrowsingTreeViewDock::BrowsingTreeViewDock(QWidget *parent)
    : TreeViewDock(tr("Browsing Tree"), new TBtreeView, parent),
      m_view(findChild<TBtreeView *>()),
      m_exports(new ExportMenu([this] { return exportSelection(); }, this)),
      m_typing(new NodeTyping(m_view, this))
{
    putAboveTree(m_typing->line());
    m_exports->watch(m_view);
    connect(m_view, &QWidget::customContextMenuRequested, this, &BrowsingTreeViewDock::openContextMenu);
}

QAction *BrowsingTreeViewDock::addAction(int key, const QString &text, const QString &icon)
{
    auto *action = new QAction(text, this);
    if (!icon.isEmpty())
        action->setIcon(QIcon(icon));
    m_actions.insert(key, action);
    return action;
}

void BrowsingTreeViewDock::takePlaces(MainUi &ui)
{
    m_actions.insert(MenuAction, ui.nodeMenu->menuAction());
    QAction *remove = addAction(DeleteAction, tr("Delete"), QStringLiteral(":icons/minus.png"));
    connect(remove, &QAction::triggered, this, &BrowsingTreeViewDock::deleteSelectedNodes);
    QAction *removeTree =
        addAction(DeleteTreeAction, tr("Delete with subtree"), QStringLiteral(":icons/delete.png"));
    connect(removeTree, &QAction::triggered, this, &BrowsingTreeViewDock::deleteSelectedNodeTree);
    QAction *relations = addAction(RelationsAction, tr("Tag Relationships Enabled"));
    connect(relations, &QAction::triggered, this, &BrowsingTreeViewDock::setNodeRelationships);
    QAction *invert = addAction(InvertAction, tr("Tag Node Inverted"));
    connect(invert, &QAction::triggered, this, &BrowsingTreeViewDock::setNodeInverted);
    relations->setCheckable(true);
    invert->setCheckable(true);
    QAction *link = addAction(LinkAction, tr("Auto Link To Folder"));
    connect(link, &QAction::triggered, this, &BrowsingTreeViewDock::addAutolink);
    QAction *save = addAction(SaveAction, tr("Save as Node"));
    save->setStatusTip(tr("Make nodes of the tags that are required now"));
    connect(save, &QAction::triggered, this, [this] { m_controller->saveAsNode(); });
    m_actions.insert(LinkMenuAction, makeLinkMenu()->menuAction());
    ui.nodeMenu->addActions({remove, relations, invert, link, m_actions.value(LinkMenuAction), save});
    m_typing->addTo(*ui.nodeMenu);
    m_exports->takePlace(ui);
    updateActionsAvailability();
}

QMenu *BrowsingTreeViewDock::makeLinkMenu()
{
    auto *menu = new QMenu(tr("Auto Link To Folder"), this);
    QAction *view = addAction(ViewLinkAction, tr("View Path"));
    connect(view, &QAction::triggered, this, &BrowsingTreeViewDock::viewAutolink);
    QAction *remove = addAction(RemoveLinkAction, tr("Remove"));
    connect(remove, &QAction::triggered, this, &BrowsingTreeViewDock::removeAutolink);
    menu->addActions({view, remove});
    return menu;
}

void BrowsingTreeViewDock::setController(BrowsTreeController *controller)
{
    const QString name = QStringLiteral("open nodes");
    if (m_controller)
        // Its functions ask m_controller, which is another one from here on.
        m_controller->collection()->history()->keptState().remove(name);
    m_controller = controller;
    if (controller) {
        controller->collection()->history()->keptState().add(
            name,
            {{UndoTable::Nodes},
             [this] { return QVariant::fromValue(OpenNodes(*m_view, *m_controller->sorterModel()).ids()); },
             [this](const QVariant &ids) {
                 OpenNodes(*m_view, *m_controller->sorterModel()).open(ids.value<QVector<qint64>>());
             }});
        connect(controller->collection(), &Collection::nodesMade, m_view,
                [this, controller](const QVector<qint64> &ids) {
                    OpenNodes(*m_view, *controller->sorterModel()).openTo(ids);
                });
    }
    m_view->setController(controller);
    m_typing->setController(controller);
    m_exports->setController(controller ? controller->collection()->mainViewController() : nullptr);
    // Without a model the view still has a selection, of a model that stays empty.
    if (m_view->model()) {
        connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
                &BrowsingTreeViewDock::updateActionsAvailability);
        connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged, this,
                &BrowsingTreeViewDock::updateActionsAvailability);
        connect(m_view->model(), &QAbstractItemModel::dataChanged, this,
                &BrowsingTreeViewDock::updateActionsAvailability);
        connect(m_view->model(), &QAbstractItemModel::modelReset, this,
                &BrowsingTreeViewDock::updateActionsAvailability);
    }
    if (controller)
        connect(controller->collection()->mainViewController(), &MainViewController::tagRequirementsChanged,
                this, &BrowsingTreeViewDock::updateActionsAvailability);
    updateTitle();
    updateActionsAvailability();
}

void BrowsingTreeViewDock::followReloads(Collection *collection)
{
    connect(collection, &Collection::aboutToReloadAllData, m_view,
            qOverload<>(&TBtreeView::saveExpandedState));
    connect(collection, &Collection::allDataReloaded, m_view, qOverload<>(&TBtreeView::restoreExpandedState));
}

void BrowsingTreeViewDock::slotExpandAllFiles()
{
    m_view->slotExpandAllFiles();
}

void BrowsingTreeViewDock::updateTitle()
{
    QString name = ShownText::cut(m_controller ? m_controller->currentTreeName() : QString(), longestName);
    // On the tab of the dock a lone ampersand would underline a letter.
    name.replace(QLatin1Char('&'), QLatin1String("&&"));
    // A title takes this for a mark of its own unless it is doubled.
    name.replace(QLatin1String("[*]"), QLatin1String("[*][*]"));
    setWindowTitle(name.isEmpty() ? tr("Browsing Tree") : tr("Browsing Tree: %1").arg(name));
}

void BrowsingTreeViewDock::updateActionsAvailability()
{
    m_typing->updateAvailability();
    if (m_actions.isEmpty())
        return;
    m_exports->updateAvailability(m_controller && m_view->selectionModel() &&
                                  m_view->selectionModel()->hasSelection());
    const QModelIndex current = currentTagNode();
    const bool isTagNode = current.isValid();
    const bool isEnabled = isTagNode && !m_controller->isReadOnly();
    for (const int key : {DeleteAction, DeleteTreeAction, RelationsAction, InvertAction})
        m_actions.value(key)->setEnabled(isEnabled);
    m_actions.value(SaveAction)->setEnabled(m_controller && m_controller->canSaveAsNode());
    const bool hasLink = isTagNode && current.data(NodeRole::HasAutolinks).toBool();
    // A server's database has no folders in common with all who use it.
    for (const int key : {LinkAction, LinkMenuAction, ViewLinkAction, RemoveLinkAction})
        m_actions.value(key)->setEnabled(isEnabled && m_controller->links().arePossible());
    // One text in two guises: a command as long as the node has no folder, a menu of what to do with it then.
    m_actions.value(LinkAction)->setVisible(!hasLink);
    m_actions.value(LinkMenuAction)->setVisible(hasLink);
    m_actions.value(RelationsAction)->setChecked(isTagNode && current.data(NodeRole::TrOption).toBool());
    m_actions.value(InvertAction)->setChecked(isTagNode && current.data(NodeRole::Inverted).toBool());
}

QModelIndex BrowsingTreeViewDock::currentTagNode() const
{
    const QModelIndex current = m_view->currentIndex();
    return m_controller && current.data(NodeRole::Type).toInt() == TagNode ? current : QModelIndex();
}

void BrowsingTreeViewDock::openContextMenu(const QPoint &position)
{
    const QModelIndex index = m_view->indexAt(position);
    if (!m_controller || !index.isValid())
        return;
    QMenu menu(this);
    if (index.data(NodeRole::Type).toInt() == TagNode) {
        for (const int key :
             {RelationsAction, InvertAction, LinkAction, LinkMenuAction, DeleteAction, DeleteTreeAction})
            menu.addAction(m_actions.value(key));
    }
    menu.addMenu(m_exports->menu());
    if (!m_controller->isReadOnly())
        m_typing->addTo(menu);
    // The right button has made another node current, whose files nobody has asked for.
    menu.exec(m_view->viewport()->mapToGlobal(position));
    m_view->returnToShownNode();
}

ExportSelection BrowsingTreeViewDock::exportSelection() const
{
    ExportSelection all;
    if (!m_controller || !m_view->selectionModel())
        return all;
    // Several nodes are added up: a file that two of them show is exported once.
    for (const QModelIndex &index : m_view->selectionModel()->selectedRows())
        all.add(ExportSelection::ofNode(*m_controller, NodeType(index.data(NodeRole::Type).toInt()),
                                        index.data(NodeRole::Id).toLongLong()));
    return all;
}

void BrowsingTreeViewDock::setNodeRelationships()
{
    const QModelIndex current = currentTagNode();
    if (current.isValid())
        m_controller->changeTrOption(current.data(NodeRole::Id).toLongLong(),
                                     !current.data(NodeRole::TrOption).toBool());
    // The check mark has changed with the click, the node perhaps not.
    updateActionsAvailability();
}

void BrowsingTreeViewDock::setNodeInverted()
{
    const QModelIndex current = currentTagNode();
    if (current.isValid())
        m_controller->changeInversion(current.data(NodeRole::Id).toLongLong(),
                                      !current.data(NodeRole::Inverted).toBool());
    updateActionsAvailability();
}

void BrowsingTreeViewDock::addAutolink()
{
    const QPersistentModelIndex current = currentTagNode();
    if (!current.isValid())
        return;
    // The title is known as it is.
    const QString folder = FileDialogs::existingDirectory(this, tr("Select Directoty"), QString());
    // The tree may have been read anew behind the dialog.
    if (!folder.isEmpty() && m_controller && current.isValid())
        m_controller->links().link(current.data(NodeRole::Id).toLongLong(), folder);
}

void BrowsingTreeViewDock::removeAutolink()
{
    const QModelIndex current = currentTagNode();
    if (current.isValid())
        m_controller->links().unlink(current.data(NodeRole::Id).toLongLong());
}

void BrowsingTreeViewDock::viewAutolink()
{
    const QModelIndex current = currentTagNode();
    if (!current.isValid())
        return;
    const qint64 nodeId = current.data(NodeRole::Id).toLongLong();
    AutoLinkDialog dialog(m_controller->links().absolutePath(nodeId),
                          m_controller->links().relativePath(nodeId), this);
    dialog.exec();
}

void BrowsingTreeViewDock::deleteSelectedNodes()
{
    m_view->deleteSelectedNodes();
}

void BrowsingTreeViewDock::deleteSelectedNodeTree()
{
    m_view->deleteSelectedNodeTree();
}
