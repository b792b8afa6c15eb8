#pragma once

/** What a replay could not write, as something else has been done to it since. */
struct ReplayLosses
{
    int files = 0;
    int tags = 0;
    int nodes = 0;
    int others = 0;

    bool isEmpty() const { return files + tags + nodes + others == 0; }
};
