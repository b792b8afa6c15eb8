#pragma once

#include "models/counts/filecount.h"

class TBnode;

/** What the model of the browsing tree and its order ask of the controller above them. GUI thread. */
class NodesHost
{
public:
    virtual ~NodesHost() = default;

    /** The id of the tree that is shown; 0 for the one tree of a local database. */
    virtual qint64 currentBrowsingTree() const = 0;
    /** Whether nodes can be put in order by hand. */
    virtual bool allowsManualMoves() const = 0;
    /** Null for an unknown node. */
    virtual TBnode *nodeById(qint64 nodeId) const = 0;
    /** How many files a click on the node shows, as far as that is known. */
    virtual FileCount fileCount(const TBnode &node) const = 0;
};
