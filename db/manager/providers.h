#pragma once

class BrowsTreeProvider;
class FileOperationProvider;
class GeneralProvider;
class GroupsProvider;
class MainViewProvider;
class RelationTreeProvider;
class TagsProvider;

/** The providers of one open database, borrowed from its manager. */
struct DatabaseProviders
{
    BrowsTreeProvider *browsTree = nullptr;
    TagsProvider *tags = nullptr;
    GroupsProvider *groups = nullptr;
    GeneralProvider *general = nullptr;
    MainViewProvider *mainView = nullptr;
    RelationTreeProvider *relationTree = nullptr;
    FileOperationProvider *fileOperation = nullptr;
};
