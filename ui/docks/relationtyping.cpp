#include "ui/docks/relationtyping.h"

#include "app/settings/showntext.h"
#include "core/controllers/collection.h"
#include "core/controllers/relationscontroller.h"
#include "core/controllers/tagscontroller.h"
#include "models/trees/treeroles.h"
#include "models/trees/trmodel.h"
#include "ui/tagging/namesline.h"
#include "ui/views/trview.h"

#include <QAction>
#include <QMenu>

namespace {
constexpr int longestName = 30; // signs
}

RelationTyping::RelationTyping(TRview *view, QObject *parent)
    : QObject(parent),
      m_view(view),
      m_line(new NamesLine(tr("Add tags:"), [this](const ChosenTags &tags) { return take(tags); })),
      m_add(addAction(tr("Add Tag..."), "addRelationAction", QStringLiteral("Shift+Ins"))),
      m_addBelow(addAction(tr("Add Tag Below..."), "addRelationBelowAction", QStringLiteral("Ins")))
{
    connect(m_add, &QAction::triggered, this, [this] { openFor(false); });
    connect(m_addBelow, &QAction::triggered, this, [this] { openFor(true); });
    updateAvailability();
}

QAction *RelationTyping::addAction(const QString &text, const char *objectName, const QString &key)
{
    auto *action = new QAction(text, this);
    action->setObjectName(QLatin1String(objectName));
    action->setShortcut(QKeySequence(key));
    // Other trees have these keys, too.
    action->setShortcutContext(Qt::WidgetShortcut);
    m_view->addAction(action);
    return action;
}

void RelationTyping::setController(RelationsController *controller)
{
    m_controller = controller;
    m_line->setController(controller ? controller->collection()->tagsController() : nullptr);
    if (m_view->model())
        connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged, this,
                &RelationTyping::updateAvailability);
    updateAvailability();
}

void RelationTyping::addTo(QMenu &menu) const
{
    menu.addActions({m_add, m_addBelow});
}

void RelationTyping::updateAvailability()
{
    const bool isWritable = m_controller && !m_controller->isReadOnly();
    m_add->setEnabled(isWritable);
    m_addBelow->setEnabled(isWritable && m_view->currentIndex().isValid());
}

void RelationTyping::openFor(bool isBelow)
{
    const QModelIndex current = m_view->currentIndex();
    if (!mayEdit(m_controller))
        return;
    // The path and no index: the tree may be read anew while the names are typed.
    m_parentPath = isBelow ? current.data(RelationRole::Path).toString() : QString();
    const QString name = ShownText::cut(current.data().toString(), longestName);
    m_line->setTitle(m_parentPath.isEmpty() ? tr("Add tags:") : tr("Below %1:").arg(name));
    emit opening();
    m_line->open();
}

bool RelationTyping::take(const ChosenTags &tags)
{
    if (!m_controller || !m_controller->collection()->tagsController()->addRelationsOf(tags, m_parentPath))
        return false;
    m_view->expand(m_controller->model()->indexOfPath(m_parentPath));
    return true;
}
