#pragma once

#include <QtGlobal>

/** One node on the way down a browsing tree. */
struct NodeStep
{
    qint64 tagId = 0;
    bool inverted = false;
    bool trOption = true;
};
