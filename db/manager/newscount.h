#pragma once

#include <QMetaType>

/** How many records others have changed, of each kind. */
struct NewsCount
{
    int tags = 0;
    int groups = 0;
    int nodes = 0;
    int relations = 0;
    int trees = 0;
    int files = 0;

    bool isEmpty() const { return tags + groups + nodes + relations + trees + files == 0; }
};
Q_DECLARE_METATYPE(NewsCount)
