#include "db/manager/editbases.h"

#include "core/providers/tagremoval.h"

namespace {
/** The tags on the way down to a place of the tag relationships. */
QVector<qint64> tagsOf(const QString &path)
{
    QVector<qint64> tagIds;
    const QVector<QStringRef> pieces = path.splitRef(QLatin1Char('.'), Qt::SkipEmptyParts);
    for (const QStringRef &piece : pieces)
        tagIds.append(piece.toLongLong());
    return tagIds;
}
} // namespace

EditBase EditBases::ofTags(const QVector<qint64> &tagIds)
{
    EditBase base;
    base.tags = tagIds;
    return base;
}

EditBase EditBases::ofGroups(const QVector<qint64> &groupIds, const QVector<qint64> &tagIds)
{
    EditBase base;
    base.groups = groupIds;
    base.tags = tagIds;
    return base;
}

EditBase EditBases::ofNodes(const QVector<qint64> &nodeIds, const QVector<qint64> &tagIds)
{
    EditBase base;
    base.nodes = nodeIds;
    base.tags = tagIds;
    return base;
}

EditBase EditBases::ofTree(qint64 treeId)
{
    EditBase base;
    base.trees = {treeId};
    return base;
}

QString EditBases::pathBelow(const QString &parentPath, qint64 tagId)
{
    return parentPath.isEmpty() ? QString::number(tagId)
                                : parentPath + QLatin1Char('.') + QString::number(tagId);
}

QStringList EditBases::pathsBelow(const QString &parentPath, const QVector<qint64> &tagIds)
{
    QStringList paths;
    for (const qint64 tagId : tagIds)
        paths.append(pathBelow(parentPath, tagId));
    return paths;
}

EditBase EditBases::ofRelations(const QString &parentPath, const QVector<qint64> &tagIds)
{
    EditBase base = ofTags(tagIds + tagsOf(parentPath));
    if (!parentPath.isEmpty())
        base.relations = QStringList{parentPath};
    base.relations += pathsBelow(parentPath, tagIds);
    return base;
}

EditBase EditBases::ofRemoval(const NodeRemovalPlan &plan)
{
    EditBase base;
    base.nodes = plan.removedNodeIds;
    for (const auto &move : plan.newParents)
        base.nodes += move.second + QVector<qint64>{move.first};
    return base;
}
