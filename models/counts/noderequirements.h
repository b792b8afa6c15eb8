#pragma once

#include <QtGlobal>

struct TagRequirements;

/** Who tells what a node of the browsing tree asks of files. GUI thread. */
class NodeRequirements
{
public:
    virtual ~NodeRequirements() = default;

    /** What a click on the node of a tag asks for; false, and nothing is found, for a node that is gone. */
    virtual bool findRequirements(qint64 nodeId, TagRequirements &found) const = 0;
};
