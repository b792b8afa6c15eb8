#pragma once

#include <QObject>
#include <QPointer>
#include <QVector>

class GroupsController;
class QWidget;
class TableView;
class TagGroupBar;
class TagsController;
struct ExportSelection;
class TagSelection;

/**
 * What the commands of the dock of tags do with the selected tags and the current group: asks what has to be
 * asked and calls the two controllers, which are borrowed. Each says so where it may not be edited. Owned by
 * the dock, whose parts it uses. GUI thread.
 */
class TagDockCommands : public QObject
{
    Q_OBJECT

public:
    /** Boxes and dialogs stand above the dock. */
    TagDockCommands(TagSelection *selection, TableView *table, TagGroupBar *bar, QWidget *dock);

    void setTagsController(TagsController *controller);
    void setGroupsController(GroupsController *controller);
    /** Whether one new name after the other is asked for. */
    void setEditMode(bool on) { m_isEditMode = on; }

    /** In the current group, if there is one. */
    void addTags();
    void deleteTags();
    void assignGroups();
    void mergeTags();
    void renameTag();
    /** Asks as what; only these tags go out, with the files that bear them. */
    void exportTags();
    /** The files with the selected tags, for the other ways out. */
    ExportSelection exportSelection() const;

    void addGroups();
    void removeCurrentGroup();
    void addTagsToGroup(const QVector<qint64> &tagIds, qint64 groupId);

signals:
    /** What would hide new tags is to go. */
    void aboutToAddTags();

private:
    /** False when there is no such tag afterwards; the user knows why. */
    bool addTag(const QString &name);
    bool mayDeleteUsed();

    TagSelection *m_selection;
    TableView *m_table;
    TagGroupBar *m_bar;
    QWidget *m_dock;
    QPointer<TagsController> m_tags;
    QPointer<GroupsController> m_groups;
    bool m_isEditMode = false;
};
