#include "ui/docks/tagdockactions.h"

#include "ui/widgets/mainui.h"

#include <QMenu>
#include <QToolBar>

TagDockActions::TagDockActions(QObject *parent) : QObject(parent)
{
    add(AssignGroups, tr("Assign Tag Groups"));
    add(AddTag, tr("Add"), ":icons/add.png");
    add(DeleteTag, tr("Delete"), ":icons/delete.png");
    add(RenameTag, tr("Rename"), ":icons/edit.png");
    add(MergeTags, tr("Merge Tags..."))->setObjectName(QStringLiteral("mergeTagsAction"));
    add(ExportTags, tr("Export Tags"))->setObjectName(QStringLiteral("exportTagsAction"));
    add(ExportTagsFromContext, tr("Tags"));
    add(AddGroup, tr("Add Tag Group"), ":icons/add.png");
    add(DeleteGroup, tr("Delete Current Group"), ":icons/delete.png");

    QAction *newTag = add(NewTag, tr("New Tag"), ":/icons/newTag3.png");
    newTag->setShortcut(QKeySequence::New);
    newTag->setAutoRepeat(false);
    add(ActivateAnd, tr("All of the Tags"), ":icons/amperstand.png")
        ->setToolTip(tr("Show files having all of the selected tags (Tab)"));
    add(ActivateOr, tr("Any of the Tags"), ":icons/or.png")
        ->setToolTip(tr("Show files having at least one of the selected tags (Ctrl+=)"));
}

QAction *TagDockActions::add(Key key, const QString &text, const char *icon)
{
    auto *action = new QAction(text, this);
    if (icon)
        action->setIcon(QIcon(QLatin1String(icon)));
    m_actions.insert(key, action);
    return action;
}

void TagDockActions::takePlaces(MainUi &ui)
{
    m_actions.insert(TagMenu, ui.tagMenu->menuAction());
    for (const Key key : {AssignGroups, AddTag, DeleteTag, RenameTag, ExportTags})
        ui.tagMenu->addAction(action(key));
    ui.tagMenu->addAction(action(MergeTags));
    m_actions.insert(EditMode, ui.editMode);
    ui.tagToolsBar->setToolButtonStyle(Qt::ToolButtonIconOnly);
    for (const Key key : {NewTag, ActivateAnd, ActivateOr, EditMode})
        ui.tagToolsBar->addAction(action(key));
    m_actions.insert(LinkTags, ui.linkTagsToFiles);
}

void TagDockActions::updateAvailability(const Situation &situation)
{
    const auto enable = [this](std::initializer_list<Key> keys, bool isEnabled) {
        for (const Key key : keys) {
            if (QAction *known = action(key))
                known->setEnabled(isEnabled);
        }
    };
    enable({TagMenu, AddTag, NewTag}, situation.areTagsWritable);
    enable({AssignGroups, DeleteTag, RenameTag}, situation.areTagsWritable && situation.hasSelection);
    enable({MergeTags}, situation.areTagsWritable && situation.hasSeveral);
    enable({ExportTags, ExportTagsFromContext}, situation.isLocal && situation.hasSelection);
    enable({ActivateAnd, ActivateOr}, situation.hasSelection);
    enable({AddGroup, DeleteGroup}, situation.areGroupsWritable);
}
