#include "ui/docks/nodetyping.h"

#include "app/settings/showntext.h"
#include "core/controllers/browstreecontroller.h"
#include "core/controllers/collection.h"
#include "core/controllers/tagscontroller.h"
#include "core/records/tbnode.h"
#include "models/trees/brtreesortermodel.h"
#include "models/trees/treeroles.h"
#include "ui/tagging/namesline.h"
#include "ui/views/tbtreeview.h"

#include <QAction>
#include <QMenu>

namespace {
constexpr int longestName = 30; // signs

bool isTagNode(const QModelIndex &index)
{
    return index.data(NodeRole::Type).toInt() == TagNode;
}
} // namespace

NodeTyping::NodeTyping(TBtreeView *view, QObject *parent)
    : QObject(parent),
      m_view(view),
      m_line(new NamesLine(tr("Add nodes:"), [this](const ChosenTags &tags) { return take(tags); })),
      m_add(addAction(tr("Add Node..."), "addNodeAction", QStringLiteral("Shift+Ins"))),
      m_addBelow(addAction(tr("Add Node Below..."), "addNodeBelowAction", QStringLiteral("Ins"))),
      m_moveUp(addAction(tr("Move Up"), "moveNodeUpAction", QStringLiteral("Alt+Up"))),
      m_moveDown(addAction(tr("Move Down"), "moveNodeDownAction", QStringLiteral("Alt+Down")))
{
    connect(m_add, &QAction::triggered, this, [this] { openFor(false); });
    connect(m_addBelow, &QAction::triggered, this, [this] { openFor(true); });
    connect(m_moveUp, &QAction::triggered, this, [this] { move(-1); });
    connect(m_moveDown, &QAction::triggered, this, [this] { move(1); });
    // The tree has gone back to the node whose files are shown.
    connect(m_line, &NamesLine::closed, this, [this] { makeCurrent(m_parentId); });
}

QAction *NodeTyping::addAction(const QString &text, const char *objectName, const QString &key)
{
    auto *action = new QAction(text, this);
    action->setObjectName(QLatin1String(objectName));
    action->setShortcut(QKeySequence(key));
    // Other trees have these keys, too.
    action->setShortcutContext(Qt::WidgetShortcut);
    m_view->addAction(action);
    return action;
}

void NodeTyping::setController(BrowsTreeController *controller)
{
    m_controller = controller;
    m_line->setController(controller ? controller->collection()->tagsController() : nullptr);
    updateAvailability();
}

void NodeTyping::addTo(QMenu &menu) const
{
    menu.addActions({m_add, m_addBelow, m_moveUp, m_moveDown});
}

void NodeTyping::updateAvailability()
{
    const QModelIndex current = m_view->currentIndex();
    const bool isWritable = m_controller && !m_controller->isReadOnly();
    const bool isMovable = isWritable && isTagNode(current) && m_controller->allowsManualMoves();
    m_add->setEnabled(isWritable);
    m_addBelow->setEnabled(isWritable && isTagNode(current));
    m_moveUp->setEnabled(isMovable);
    m_moveDown->setEnabled(isMovable);
}

void NodeTyping::openFor(bool isBelow)
{
    const QModelIndex current = m_view->currentIndex();
    if (!mayEdit(m_controller))
        return;
    m_parentId = isBelow && isTagNode(current) ? current.data(NodeRole::Id).toLongLong() : 0;
    const QString name = ShownText::cut(current.data().toString(), longestName);
    m_line->setTitle(m_parentId > 0 ? tr("Below %1:").arg(name) : tr("Add nodes:"));
    m_line->open();
}

bool NodeTyping::take(const ChosenTags &tags)
{
    if (!m_controller || !m_controller->collection()->tagsController()->addNodesOf(tags, m_parentId))
        return false;
    // Nodes of the first level stand below the node of all files.
    const NodeType type = m_parentId > 0 ? TagNode : AllFiles;
    m_view->expand(m_controller->sorterModel()->indexOfNode(type, m_parentId));
    return true;
}

void NodeTyping::move(int rows)
{
    const QModelIndex current = m_view->currentIndex();
    const qint64 nodeId = current.data(NodeRole::Id).toLongLong();
    if (mayEdit(m_controller) && m_controller->sorterModel()->moveNode(current, rows))
        // By its id: the index of before the move may lead to another node.
        makeCurrent(nodeId);
}

void NodeTyping::makeCurrent(qint64 nodeId)
{
    if (!m_controller || !m_view->selectionModel())
        return;
    const QModelIndex index =
        m_controller->sorterModel()->indexOfNode(nodeId > 0 ? TagNode : AllFiles, nodeId);
    m_view->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    m_view->scrollTo(index);
}
