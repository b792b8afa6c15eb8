#pragma once

#include <QMetaType>

/** What a node of the browsing tree selects: one of the fixed selections, or the files of a tag. */
enum NodeType : int {
    AllFiles = 1,
    AllFilesWithTags = 2,
    AllFilesWithoutTags = 3,
    AllInternalFiles = 4,
    AllExternalFiles = 5,
    AllHyperlinks = 6,
    RecentlyAddedFiles = 7,
    TagNode = 8
};

Q_DECLARE_METATYPE(NodeType)
