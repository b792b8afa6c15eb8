#pragma once

#include <Qt>

/** The item data roles of the browsing tree (TBtreeModel and the proxy on it). */
namespace NodeRole {
enum : int {
    Type = 258,
    Id = 259,
    ParentId = 260,
    HasAutolinks = 261,
    FirstAutolink = 262,
    Inverted = 263,
    TrOption = 264,
    TagId = 265,
    TreeId = 266,
    Required = 267,
    CurrentId = 268,
    FileCount = 269
};
}

/** The item data roles of the list of browsing trees (BrowsingTreeTableModel). */
namespace TreeListRole {
enum : int { TreeId = 257 };
}

/** The item data roles of the tag relationship trees (TRmodel). */
namespace RelationRole {
enum : int {
    TagId = 257,
    StoredName = 258,
    /** The relationship_path of the entry: the tag ids from the top down, joined by dots. */
    Path = 259
};
}
