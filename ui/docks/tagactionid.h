#pragma once

/** The keys of the commands of the tags dock in its table of actions. */
enum TagActionId {
    TagMenuAction = 0,
    AssignGroupsAction = 1,
    AddTagAction = 2,
    DeleteTagAction = 3,
    RenameTagAction = 4,
    AddGroupAction = 13,
    DeleteGroupAction = 14,
    NewTagAction = 15,
    ActivateAndAction = 16,
    ActivateOrAction = 17,
    EditModeAction = 18,
    LinkTagsAction = 19
};
