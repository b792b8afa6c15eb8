#include "ui/docks/taggrouptabs.h"

#include "core/controllers/collection.h"
#include "core/controllers/groupscontroller.h"
#include "ui/views/taggroupbar.h"

#include <QScopedValueRollback>

TagGroupTabs::TagGroupTabs(TagGroupBar *bar, QObject *parent) : QObject(parent), m_bar(bar)
{
    connect(m_bar, &QTabBar::tabMoved, this, &TagGroupTabs::saveOrder);
}

void TagGroupTabs::setController(GroupsController *controller)
{
    detach();
    m_groups = controller;
    if (m_groups && m_groups->groups())
        attach();
}

void TagGroupTabs::detach()
{
    if (m_groups) {
        // Before the tabs go: the bar holds the order until then.
        saveOrder();
        m_groups->setCurrentTab(m_bar->currentIndex());
        m_groups->collection()->disconnect(this);
    }
    m_groups = nullptr;
    const QScopedValueRollback<bool> arranging(m_isArranging, true);
    m_bar->removeGroupTabs();
}

void TagGroupTabs::attach()
{
    connect(m_groups->collection(), &Collection::aboutToReloadAllData, this, &TagGroupTabs::remember);
    connect(m_groups->collection(), &Collection::allDataReloaded, this, &TagGroupTabs::bringBack);

    const QScopedValueRollback<bool> arranging(m_isArranging, true);
    for (const GroupItem *group : qAsConst(*m_groups->groups())) {
        if (group->isVisible())
            m_bar->addGroupTab(group->id(), group->name());
    }
    m_bar->setOrder(m_groups->tabOrder());
    const int index = m_groups->currentTab();
    // The stored index may be that of a group that another client has removed since.
    m_bar->setCurrentIndex(index < m_bar->count() ? index : 0);
}

void TagGroupTabs::remember()
{
    saveOrder();
    m_rememberedGroup = m_bar->currentGroup();
}

void TagGroupTabs::bringBack()
{
    if (!m_groups)
        return;
    const QScopedValueRollback<bool> arranging(m_isArranging, true);
    m_bar->setOrder(m_groups->tabOrder());
    const int index = m_bar->indexOfGroup(m_rememberedGroup);
    if (index >= 0)
        m_bar->setCurrentIndex(index);
}

void TagGroupTabs::saveOrder()
{
    // While tabs are put in their places each step is signalled as a move, and would be stored as the user's
    // order.
    if (m_groups && !m_isArranging)
        m_groups->setTabOrder(m_bar->order());
}
