#pragma once

#include <QString>

/** Who knows the names of tags by their ids. GUI thread. */
class TagNames
{
public:
    virtual ~TagNames() = default;

    /** Empty for an unknown tag. */
    virtual QString tagName(qint64 tagId) const = 0;
};
