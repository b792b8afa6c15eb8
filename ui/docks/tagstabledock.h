#pragma once

#include "ui/docks/abstractdock.h"
#include "ui/docks/tagdockcommands.h"

#include <QPointer>
#include <QVector>

#include <memory>

class ExportMenu;
class GroupItem;
class GroupsController;
class MainUi;
class QKeyEvent;
class QLineEdit;
class QModelIndex;
class TableView;
class TagDockActions;
class TagColumns;
class TagGroupBar;
class TagGroupTabs;
class TagsController;
class TagSelection;
class TagsGroupProxy;

/**
 * The dock of the tags: their table, the bar of tag groups below it, and the commands on tags and groups. It
 * asks the two controllers, which it borrows from setting to setting, and tells which tags were activated.
 */
class TagsTableDock : public AbstractDock
{
    Q_OBJECT

public:
    explicit TagsTableDock(QWidget *parent = nullptr);
    ~TagsTableDock() override;

    /** What its tabs take that are always there, which it should not hide. */
    int tabsWidth() const;
    /** Puts the commands and the filter into the menus and bars of the window; once, when it is set up. */
    void takePlaces(MainUi &ui);
    /** Null on closing: what the user arranged is kept for the next time. */
    void setTagsController(TagsController *controller);
    void setGroupsController(GroupsController *controller);

signals:
    void editModeChanged(bool on);
    void anyOfTagsActivated(QVector<qint64> tagIds);
    void allOfTagsActivated(QVector<qint64> tagIds);

public slots:
    void updateActionsAvailability();
    void execHeaderViewContextMenu(const QPoint &pos);
    void execViewContextMenu(const QPoint &pos);
    void exportSeletedTags();
    void execTabContextMenu(const QPoint &pos);
    void slotTagOpened(const QModelIndex &index);
    void slotFilterTags(const QString &text);
    void slotKeyPressed(QKeyEvent *event);
    void slotAddNewTag() { m_commands->addTags(); }
    void slotDeleteTag() { m_commands->deleteTags(); }
    void assignTagGroups() { m_commands->assignGroups(); }
    void slotRenameTag() { m_commands->renameTag(); }
    void slotAddGroup() { m_commands->addGroups(); }
    void slotRemoveCurrentGroup() { m_commands->removeCurrentGroup(); }
    void slotActivateTagsOr();
    void slotActivateTagsAnd();
    void slotEditModeChanged(bool on);
    void updateTabStyle();
    void clearActivation();
    void slotGroupNameChanged(qint64 groupId, const QString &name);
    void slotGroupVisibilityChanged(qint64 groupId, bool visible);
    void slotGroupCreated(const QVariant &groupId);

private:
    /** Beside what is asked for now. */
    void narrowTo(const QVector<qint64> &tagIds);
    void updateGround();
    void buildForm();
    void buildTable();
    void connectActions();
    void applyEditTriggers();

    void detachTags();
    void attachTags();
    void updateEmptyText();
    void clearFilter();
    void rememberTags();
    void bringBackTags();

    void switchGroup();
    void followGroup(const GroupItem *group);

    TagDockActions *m_actions;
    ExportMenu *m_exports = nullptr;
    TableView *m_table = nullptr;
    std::unique_ptr<TagSelection> m_selection;
    std::unique_ptr<TagColumns> m_columns;
    TagGroupBar *m_bar = nullptr;
    TagGroupTabs *m_tabs = nullptr;
    TagDockCommands *m_commands = nullptr;
    QPointer<TagsController> m_tags;
    QPointer<GroupsController> m_groups;
    QPointer<TagsGroupProxy> m_proxy; // of the controller, and set with it
    bool m_isEditMode = false;
    QPointer<QLineEdit> m_filterEdit;
};
