#pragma once

#include "core/providers/foreignchanges.h"

struct NodeRemovalPlan;

/** What edits of the records rest on: a change that others make of it meanwhile drops them. */
namespace EditBases {
EditBase ofTags(const QVector<qint64> &tagIds);
EditBase ofGroups(const QVector<qint64> &groupIds, const QVector<qint64> &tagIds = {});
EditBase ofNodes(const QVector<qint64> &nodeIds, const QVector<qint64> &tagIds = {});
EditBase ofTree(qint64 treeId);
/** All nodes that go or move, and those below which some move. */
EditBase ofRemoval(const NodeRemovalPlan &plan);

/** The path of the tag relationships to a tag below another path, or at the top level. */
QString pathBelow(const QString &parentPath, qint64 tagId);
QStringList pathsBelow(const QString &parentPath, const QVector<qint64> &tagIds);
/** Tags that are put below a path: the tags on the way down to it, the path, and their own. */
EditBase ofRelations(const QString &parentPath, const QVector<qint64> &tagIds);
} // namespace EditBases
