#pragma once

#include "db/sql/sqltext.h"

/** Long lists of ids or texts go to the database in pieces, so that no statement outgrows its limits. */
namespace Chunks {
/** Values of one IN condition: far below any limit, far above what a round trip costs. */
constexpr int idsPerStatement = 5000;

/** Calls use(piece) piece by piece until one gives false. An empty list calls nothing and gives true. */
template <class List, class Use>
bool forEach(const List &list, int size, Use use)
{
    if (list.size() <= size)
        return list.isEmpty() || use(list);
    for (int begin = 0; begin < list.size(); begin += size) {
        if (!use(List(list.mid(begin, size))))
            return false;
    }
    return true;
}
} // namespace Chunks
