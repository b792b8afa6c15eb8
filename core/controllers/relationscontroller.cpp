#include "core/controllers/relationscontroller.h"

#include "db/manager/databasemanger.h"
#include "models/trees/trmodel.h"

#include <QSet>

#include <algorithm>

RelationsController::RelationsController(DatabaseManger *manager, const AbstractQueryConstructor *constructor,
                                         Collection *collection)
    : AbstractController(manager, constructor, collection), m_model(new TRmodel(this, this))
{
    if (!manager)
        return;
    connect(manager, &DatabaseManger::relatshipsNodeLoaded, m_model, &TRmodel::resetNodes);
    connect(manager, &DatabaseManger::addedRelatshipsNodes, m_model, &TRmodel::addedNewNodes);
    connect(manager, &DatabaseManger::tagsRenamed, m_model, &TRmodel::repaintNames);
}

void RelationsController::load()
{
    if (manager())
        manager()->loadAllRelationNodes();
}

bool RelationsController::isLegal(const QString &nodePath, const QVector<qint64> &tagIds) const
{
    const TRnode *target = manager() ? manager()->relationNode(nodePath) : nullptr;
    if (!target)
        return !nodePath.isEmpty() || !isAnyAtTop(tagIds);
    // A tag above itself would widen every question by itself without end.
    return !tagIds.contains(target->id()) && !target->hasAncestorIn(tagIds) &&
           !target->hasDescendantIn(tagIds);
}

bool RelationsController::isAnyAtTop(const QVector<qint64> &tagIds) const
{
    // A path of one piece stands at the top.
    return manager() && std::any_of(tagIds.cbegin(), tagIds.cend(), [this](qint64 tagId) {
               return manager()->relationNode(QString::number(tagId)) != nullptr;
           });
}

void RelationsController::addChildren(const QString &parentPath, const QVector<qint64> &tagIds)
{
    if (manager() && mayEdit())
        manager()->addRelations(parentPath, tagIds);
}

void RelationsController::removeNode(const QString &path)
{
    if (manager() && mayEdit())
        manager()->removeRelations({path});
}

QString RelationsController::tagName(qint64 tagId) const
{
    return manager() ? manager()->tagName(tagId) : QString();
}

template <typename Related>
QVector<qint64> RelationsController::collect(const QVector<qint64> &tagIds, Related related) const
{
    QVector<qint64> ids;
    if (!manager() || tagIds.isEmpty())
        return ids;
    // A tag may stand at several places, so that all are passed over once, whatever was asked for.
    const QSet<qint64> wanted(tagIds.cbegin(), tagIds.cend());
    for (const auto &item : qAsConst(manager()->relationNodes())) {
        if (wanted.contains(item.second->id()))
            ids += related(*item.second);
    }
    return ids;
}

QVector<qint64> RelationsController::descendantsOf(const QVector<qint64> &tagIds) const
{
    return collect(tagIds, [](const TRnode &node) { return node.descendantIds(); });
}

QHash<qint64, QVector<qint64>> RelationsController::descendantsOfEach(const QVector<qint64> &tagIds) const
{
    QHash<qint64, QVector<qint64>> descendants;
    if (!manager() || tagIds.isEmpty())
        return descendants;
    descendants.reserve(tagIds.size());
    for (const qint64 tagId : tagIds)
        // Those without any below them have an entry, too: it says that relationships count.
        descendants.insert(tagId, {});
    for (const auto &item : qAsConst(manager()->relationNodes())) {
        const auto found = descendants.find(item.second->id());
        if (found != descendants.end())
            *found += item.second->descendantIds();
    }
    return descendants;
}

QVector<qint64> RelationsController::ancestorsOf(const QVector<qint64> &tagIds) const
{
    return collect(tagIds, [](const TRnode &node) { return node.ancestorIds(); });
}
