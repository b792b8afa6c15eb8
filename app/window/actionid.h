#pragma once

/** The keys of the window's own commands in its table of actions. */
enum ActionId {
    ConnectAction = 0,
    DisconnectAction = 1,
    OpenAction = 2,
    NewDatabaseAction = 3,
    ImportMenuAction = 4,
    ImportDatabaseAction = 5,
    ImportShellAction = 6,
    ExportMenuAction = 7,
    ExitAction = 11,
    DatabaseInfoAction = 12,
    ShowAllDocksAction = 13,
    BrowsingTreeListAction = 14,
    RemakeThumbnailsAction = 15,
    EditMenuAction = 16,
    PreferencesAction = 17,
    TagGroupsAction = 18,
    SelectBrowsingTreeAction = 19,
    QuickStartAction = 20,
    ManualAction = 21,
    NameplateAction = 24,
    InternalAction = 25,
    ExternalAction = 26,
    SendFeedbackAction = 27
};
