// The tabs of the tags dock: a tab for each group that is shown as one, kept in step with the groups.
#include "core/controllers/collection.h"
#include "core/controllers/groupscontroller.h"
#include "models/tags/tagsgroupproxy.h"
#include "ui/dialogs/nameinput.h"
#include "ui/docks/tagactionid.h"
#include "ui/docks/tagselection.h"
#include "ui/docks/tagstabledock.h"
#include "ui/views/taggroupbar.h"
#include "ui/widgets/greenground.h"

#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QScopedValueRollback>

void TagsTableDock::setGroupsController(GroupsController *controller)
{
    if (m_groups == controller && controller)
        return;
    detachGroups();
    m_groups = controller;
    if (m_groups)
        attachGroups();
    updateActionsAvailability();
}

void TagsTableDock::detachGroups()
{
    if (m_groups) {
        saveOrder();
        m_groups->setCurrentTab(m_bar->currentIndex());
        if (const GroupMap *groups = m_groups->groups()) {
            groups->disconnect(this);
            for (const GroupItem *group : qAsConst(*groups))
                group->disconnect(this);
        }
        m_groups->collection()->disconnect(this);
    }
    m_groups = nullptr;
    const QScopedValueRollback<bool> arranging(m_isArranging, true);
    m_bar->removeGroupTabs();
}

void TagsTableDock::attachGroups()
{
    const GroupMap *groups = m_groups->groups();
    if (!groups)
        return;
    connect(groups, &SignalContainer::itemInserted, this, &TagsTableDock::slotGroupCreated);
    connect(groups, &SignalContainer::itemDeleted, this, &TagsTableDock::removeGroupTab);
    connect(m_groups->collection(), &Collection::aboutToReloadAllData, this, &TagsTableDock::rememberTabs);
    connect(m_groups->collection(), &Collection::allDataReloaded, this, &TagsTableDock::bringBackTabs);

    const QScopedValueRollback<bool> arranging(m_isArranging, true);
    for (const GroupItem *group : qAsConst(*groups))
        followGroup(group);
    m_bar->setOrder(m_groups->tabOrder());
    const int index = m_groups->currentTab();
    m_bar->setCurrentIndex(index < m_bar->count() ? index : 0);
}

void TagsTableDock::followGroup(const GroupItem *group)
{
    connect(group, &GroupItem::groupVisibilityChanged, this, &TagsTableDock::slotGroupVisibilityChanged,
            Qt::UniqueConnection);
    connect(group, &GroupItem::groupNameChanged, this, &TagsTableDock::slotGroupNameChanged,
            Qt::UniqueConnection);
    if (group->isVisible())
        m_bar->addGroupTab(group->id(), group->name());
}

void TagsTableDock::slotGroupCreated(const QVariant &groupId)
{
    const GroupItem *group = m_groups ? m_groups->groups()->value(groupId.toLongLong()) : nullptr;
    if (group)
        followGroup(group);
}

void TagsTableDock::removeGroupTab(const QVariant &groupId)
{
    m_bar->removeGroupTab(groupId.toLongLong());
}

void TagsTableDock::slotGroupVisibilityChanged(bool visible)
{
    const auto *group = qobject_cast<const GroupItem *>(sender());
    if (!group)
        return;
    if (visible)
        m_bar->addGroupTab(group->id(), group->name());
    else
        m_bar->removeGroupTab(group->id());
}

void TagsTableDock::slotGroupNameChanged(const QString &name)
{
    if (const auto *group = qobject_cast<const GroupItem *>(sender()))
        m_bar->renameGroupTab(group->id(), name);
}

void TagsTableDock::rememberTabs()
{
    saveOrder();
    m_rememberedGroup = m_bar->currentGroup();
}

void TagsTableDock::bringBackTabs()
{
    if (!m_groups)
        return;
    const QScopedValueRollback<bool> arranging(m_isArranging, true);
    m_bar->setOrder(m_groups->tabOrder());
    const int index = m_bar->indexOfGroup(m_rememberedGroup);
    if (index >= 0)
        m_bar->setCurrentIndex(index);
}

void TagsTableDock::saveOrder()
{
    if (m_groups && !m_isArranging)
        m_groups->setTabOrder(m_bar->order());
}

void TagsTableDock::switchGroup()
{
    if (m_proxy)
        m_proxy->setGroupId(m_bar->currentGroup());
    updateEmptyText();
}

void TagsTableDock::updateTabStyle()
{
    updateGround();
    if (m_filterEdit)
        m_filterEdit->clear();
}

void TagsTableDock::updateGround()
{
    const bool isDTags = m_bar->currentGroup() == TagsGroupProxy::DTagsTab;
    setStyleSheet(isDTags ? GreenGround::styleSheet(QStringLiteral("QTableView")) : QString());
}

void TagsTableDock::execTabContextMenu(const QPoint &pos)
{
    QMenu menu;
    menu.addAction(m_actions.value(AddGroupAction));
    if (m_bar->currentGroup() > 0)
        menu.addAction(m_actions.value(DeleteGroupAction));
    menu.exec(m_bar->mapToGlobal(pos));
}

void TagsTableDock::slotAddGroup()
{
    if (!mayEdit(m_groups))
        return;
    const auto add = [this](const QString &name) { return !m_groups || m_groups->addGroup(name, true) > 0; };
    do {
        if (!NameInput::askForGroup(this, add))
            return;
    } while (m_isEditMode);
}

void TagsTableDock::slotRemoveCurrentGroup()
{
    const qint64 groupId = m_bar->currentGroup();
    if (groupId > 0 && mayEdit(m_groups))
        m_groups->removeGroups({groupId});
}

void TagsTableDock::addTagsToGroup(const QVector<qint64> &tagIds, qint64 groupId)
{
    if (mayEdit(m_groups))
        m_groups->assignTags(tagIds, {groupId});
}
