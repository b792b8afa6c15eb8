#pragma once

#include "core/providers/tagremoval.h"
#include "core/records/map.h"

#include <QVector>

class RelationCache;
class TBnode;

/** What goes with nodes and tags that are removed, and what moves, read from the records. */
namespace RemovalPlans {
/** The nodes and all below them. */
NodeRemovalPlan subtrees(const Map<qint64, TBnode *> &nodes, const QVector<qint64> &nodeIds);

/** The nodes alone: each child goes to the nearest node above that stays, else to the top level. */
NodeRemovalPlan keepingChildren(const Map<qint64, TBnode *> &nodes, const QVector<qint64> &nodeIds);

/** Tags, the nodes that bear them, and every relationship path through them. */
TagRemovalPlan tags(const Map<qint64, TBnode *> &nodes, const RelationCache &relations,
                    const QVector<qint64> &tagIds);
} // namespace RemovalPlans
