#pragma once

/** The keys of the window's own commands in its table of actions. */
enum ActionId {
    OpenAction = 2,
    NewDatabaseAction = 3,
    ExitAction = 11,
    DatabaseInfoAction = 12,
    ShowAllDocksAction = 13,
    EditMenuAction = 16,
    TagGroupsAction = 18,
    QuickStartAction = 20,
    ManualAction = 21,
    NameplateAction = 24,
    InternalAction = 25,
    ExternalAction = 26
};
