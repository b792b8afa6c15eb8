#include "ui/docks/tagdockcommands.h"

#include "app/messages/messages.h"
#include "core/controllers/collection.h"
#include "core/controllers/exportselection.h"
#include "core/controllers/groupscontroller.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/tagscontroller.h"
#include "models/tags/tagstablemodel.h"
#include "ui/dialogs/exportcommand.h"
#include "ui/dialogs/mergetagsdialog.h"
#include "ui/dialogs/nameinput.h"
#include "ui/dialogs/taggroupform.h"
#include "ui/docks/tagselection.h"
#include "ui/views/taggroupbar.h"
#include "ui/widgets/tableview.h"

TagDockCommands::TagDockCommands(TagSelection *selection, TableView *table, TagGroupBar *bar, QWidget *dock)
    : QObject(dock), m_selection(selection), m_table(table), m_bar(bar), m_dock(dock)
{
}

void TagDockCommands::setTagsController(TagsController *controller)
{
    m_tags = controller;
}

void TagDockCommands::setGroupsController(GroupsController *controller)
{
    m_groups = controller;
}

void TagDockCommands::addTags()
{
    if (!mayEdit(m_tags))
        return;
    // The filter goes first, as it might hide the very tag that is made.
    emit aboutToAddTags();
    const auto add = [this](const QString &name) { return addTag(name); };
    do {
        if (!NameInput::ask(m_dock, tr("New Tag"), tr("Tag name:"), add))
            return;
    } while (m_isEditMode);
}

bool TagDockCommands::addTag(const QString &name)
{
    // The database may have been closed behind the dialog.
    if (!m_tags)
        return true;
    const qint64 groupId = m_bar->currentGroup();
    const qint64 tagId = groupId > 0 ? m_tags->addTagToGroup(name, groupId) : m_tags->addTag(name);
    if (tagId > 0)
        m_selection->show(tagId);
    return tagId > 0;
}

void TagDockCommands::deleteTags()
{
    const QVector<qint64> tagIds = m_selection->tagIds();
    if (tagIds.isEmpty() || !mayEdit(m_tags))
        return;
    // The database may be closed behind the question.
    if (m_tags->isTagInUse(tagIds) && (!mayDeleteUsed() || !m_tags))
        return;
    m_tags->removeTags(tagIds);
}

bool TagDockCommands::mayDeleteUsed()
{
    Messages::Box box;
    box.icon = QMessageBox::Question;
    box.title = tr("Tags In Use");
    box.text = tr("Some of the tags chosen for deletion are in use by being linked to files, nodes or tag "
                  "relationships. Deletion of these tags will result in the deletion of all of these links "
                  "and all relevant nodes and tag relationships.\nWould you like to delete the tags that "
                  "are in use?");
    box.buttons = QMessageBox::Ok | QMessageBox::Cancel;
    box.defaultButton = QMessageBox::Cancel;
    return Messages::run(m_dock, box).button == QMessageBox::Ok;
}

void TagDockCommands::assignGroups()
{
    const QVector<qint64> tagIds = m_selection->tagIds();
    if (tagIds.isEmpty() || !mayEdit(m_groups))
        return;
    // Not below the dock: the table of the form would be coloured with that of the dock.
    TagGroupForm form(m_groups, tagIds, m_dock->parentWidget());
    form.exec();
}

void TagDockCommands::mergeTags()
{
    const QVector<qint64> tagIds = m_selection->tagIds();
    if (tagIds.size() < 2 || !mayEdit(m_tags))
        return;
    MergeTagsDialog dialog(m_tags, tagIds, m_dock->parentWidget());
    dialog.exec();
}

void TagDockCommands::renameTag()
{
    // The current row need not be the selected one.
    const QVector<int> rows = m_selection->rows();
    const int row = rows.size() == 1 ? rows.first() : m_table->currentIndex().row();
    if (row < 0 || !mayEdit(m_tags))
        return;
    const QModelIndex name = m_table->model()->index(row, TagsTableModel::NameColumn);
    m_table->setCurrentIndex(name);
    m_table->edit(name);
}

void TagDockCommands::exportTags()
{
    if (m_tags)
        ExportCommand(m_tags->collection()->mainViewController(), m_dock->window())
            .exportTags(m_selection->tagIds());
}

ExportSelection TagDockCommands::exportSelection() const
{
    if (!m_tags)
        return {};
    return ExportSelection::ofFilesWithTags(*m_tags->collection()->mainViewController(),
                                            m_selection->tagIds());
}

void TagDockCommands::addGroups()
{
    if (!mayEdit(m_groups))
        return;
    const auto add = [this](const QString &name) { return !m_groups || m_groups->addGroup(name, true) > 0; };
    do {
        if (!NameInput::askForGroup(m_dock, add))
            return;
    } while (m_isEditMode);
}

void TagDockCommands::removeCurrentGroup()
{
    const qint64 groupId = m_bar->currentGroup();
    if (groupId > 0 && mayEdit(m_groups))
        m_groups->removeGroups({groupId});
}

void TagDockCommands::addTagsToGroup(const QVector<qint64> &tagIds, qint64 groupId)
{
    if (mayEdit(m_groups))
        m_groups->assignTags(tagIds, {groupId});
}
