#pragma once

#include "core/controllers/abstractcontroller.h"
#include "core/records/recordtypes.h"
#include "models/tags/taggroupshost.h"

#include <QList>
#include <QMap>
#include <QVector>

class TagGroupModel;

/**
 * Tag groups. Names and tags are in the database; which groups are tabs, and in which order, is in the
 * settings of this database. GUI thread.
 */
class GroupsController : public AbstractController, public TagGroupsHost
{
    Q_OBJECT

public:
    GroupsController(DatabaseManger *manager, const AbstractQueryConstructor *constructor,
                     Collection *collection);

    void load() override;

    /** Brings the list of groups up to date, after they were edited in it. */
    virtual void refresh();

    /** Gives the id of the new group, 0 when the name is taken or blank, or on failure. */
    qint64 addGroup(const QString &name, bool visible = true);
    /** False when another group has the name, when it is blank, or on failure. */
    bool renameGroup(qint64 groupId, const QString &name) override;
    void setGroupVisible(const QVector<qint64> &groupIds, bool visible) override;
    void removeGroups(const QVector<qint64> &groupIds);
    /** Adds the tags to each of the groups, to all or none. False when that failed or was refused. */
    bool assignTags(const QVector<qint64> &tagIds, const QVector<qint64> &groupIds);
    /** Makes this the whole list of the group's tags. */
    bool setGroupTags(qint64 groupId, const QVector<qint64> &tagIds);
    /** The same for several groups, by their ids, all or none. */
    bool setGroupTags(const QMap<qint64, QVector<qint64>> &tagsOfGroups);

    /** Shows those groups as tabs that are noted in the settings, and no others. */
    void restoreTabs();
    QList<int> tabOrder() const;
    void setTabOrder(const QList<int> &groupIds);
    /** The same with the tabs of groups that came back. */
    void bringTabsBack(const QList<int> &groupIds);
    int currentTab() const;
    void setCurrentTab(int index);

    /** All groups by id; null without a manager. */
    Map<qint64, GroupItem *> *groups() const;
    /** The list of groups for the dialogs; null without a manager. */
    TagGroupModel *model() const { return m_model; }

signals:
    void groupDuplicated();

private:
    bool isNameTaken(const QString &name, qint64 exceptFor) const;
    void noteTab(qint64 groupId, bool visible);

    TagGroupModel *m_model = nullptr;
};
