#include "core/controllers/groupscontroller.h"

#include "core/controllers/collection.h"
#include "core/controllers/collectionsettings.h"
#include "db/manager/databasemanger.h"
#include "models/tags/taggroupmodel.h"

#include <QSet>

GroupsController::GroupsController(DatabaseManger *manager, const AbstractQueryConstructor *constructor,
                                   Collection *collection)
    : AbstractController(manager, constructor, collection)
{
    if (!manager)
        return;
    // Before the model is made, which asks which groups are visible.
    connect(manager, &DatabaseManger::groupsLoaded, this, &GroupsController::restoreTabs);
    m_model = new TagGroupModel(this, manager->groups(), this);
}

void GroupsController::load()
{
    if (manager())
        manager()->loadAllGroups();
}

void GroupsController::refresh()
{
    if (m_model)
        m_model->updateModel();
}

qint64 GroupsController::addGroup(const QString &name, bool visible)
{
    if (!manager() || !mayEdit() || !manager()->isNameGiven(name))
        return 0;
    if (isNameTaken(name, 0)) {
        emit groupDuplicated();
        return 0;
    }
    const qint64 groupId = manager()->addGroup(name.simplified(), visible);
    if (groupId > 0)
        noteTab(groupId, visible);
    return groupId;
}

bool GroupsController::renameGroup(qint64 groupId, const QString &name)
{
    if (!manager() || !mayEdit() || !manager()->isNameGiven(name))
        return false;
    if (isNameTaken(name, groupId)) {
        emit groupDuplicated();
        return false;
    }
    manager()->renameGroup(groupId, name.simplified());
    const GroupItem *group = groups()->value(groupId);
    return group && group->name() == name.simplified();
}

bool GroupsController::isNameTaken(const QString &name, qint64 exceptFor) const
{
    for (const GroupItem *group : qAsConst(*groups())) {
        if (group->id() != exceptFor && group->name() == name)
            return true;
    }
    return false;
}

void GroupsController::setGroupVisible(const QVector<qint64> &groupIds, bool visible)
{
    for (const qint64 groupId : groupIds) {
        GroupItem *group = groups() ? groups()->value(groupId) : nullptr;
        if (!group)
            continue;
        group->setVisible(visible);
        noteTab(groupId, visible);
    }
}

void GroupsController::noteTab(qint64 groupId, bool visible)
{
    QList<int> order = tabOrder();
    const int id = static_cast<int>(groupId);
    // A second call must not add a second tab.
    if (order.contains(id) == visible)
        return;
    if (visible)
        order.append(id);
    else
        order.removeAll(id);
    setTabOrder(order);
}

void GroupsController::removeGroups(const QVector<qint64> &groupIds)
{
    if (!manager() || !mayEdit())
        return;
    manager()->removeGroups(groupIds);
    for (const qint64 groupId : groupIds) {
        // One that could not be removed keeps its tab.
        if (!groups()->contains(groupId))
            noteTab(groupId, false);
    }
}

bool GroupsController::assignTags(const QVector<qint64> &tagIds, const QVector<qint64> &groupIds)
{
    QMap<qint64, QVector<qint64>> tagsOfGroups;
    for (const qint64 groupId : groupIds) {
        const GroupItem *group = groups() ? groups()->value(groupId) : nullptr;
        if (!group)
            continue;
        QVector<qint64> tags = group->tags();
        // The list keeps the order of the group, the set the time of a hundred thousand tags.
        QSet<qint64> members(tags.cbegin(), tags.cend());
        for (const qint64 tagId : tagIds) {
            if (!members.contains(tagId))
                tags.append(tagId);
            members.insert(tagId);
        }
        tagsOfGroups.insert(groupId, tags);
    }
    return setGroupTags(tagsOfGroups);
}

bool GroupsController::setGroupTags(qint64 groupId, const QVector<qint64> &tagIds)
{
    return setGroupTags({{groupId, tagIds}});
}

bool GroupsController::setGroupTags(const QMap<qint64, QVector<qint64>> &tagsOfGroups)
{
    return tagsOfGroups.isEmpty() || (manager() && mayEdit() && manager()->setGroupTags(tagsOfGroups));
}

void GroupsController::restoreTabs()
{
    if (!groups())
        return;
    const QList<int> order = tabOrder();
    for (GroupItem *group : qAsConst(*groups()))
        group->setVisible(order.contains(static_cast<int>(group->id())));
}

QList<int> GroupsController::tabOrder() const
{
    return collection()->settings()->tagGroupOrder();
}

void GroupsController::setTabOrder(const QList<int> &groupIds)
{
    collection()->settings()->setTagGroupOrder(groupIds);
}

void GroupsController::bringTabsBack(const QList<int> &groupIds)
{
    setTabOrder(groupIds);
    restoreTabs();
}

int GroupsController::currentTab() const
{
    return collection()->settings()->tagGroupIndex();
}

void GroupsController::setCurrentTab(int index)
{
    collection()->settings()->setTagGroupIndex(index);
}

Map<qint64, GroupItem *> *GroupsController::groups() const
{
    return manager() ? manager()->groups() : nullptr;
}
