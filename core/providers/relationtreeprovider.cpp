#include "core/providers/relationtreeprovider.h"

#include "core/providers/chunks.h"
#include "db/abstractqueryconstructor.h"
#include "db/transaction.h"

namespace {
const QLatin1String pathsTable("tag_relationships");
const QLatin1String pathColumn("relationship_path");
// Four terms a tag in one chain of ORs, which SQLite bounds to a depth of 1000.
constexpr int tagsPerCondition = 200;

QStringList childPaths(const QString &parentPath, const QVector<qint64> &tagIds)
{
    const QString prefix = parentPath.isEmpty() ? QString() : parentPath + QLatin1Char('.');
    QStringList paths;
    paths.reserve(tagIds.size());
    for (const qint64 tagId : tagIds)
        paths.append(prefix + QString::number(tagId));
    paths.removeDuplicates();
    return paths;
}
} // namespace

RelationTreeProvider::RelationTreeProvider(const AbstractQueryConstructor *constructor, QObject *parent)
    : BaseDBProvider(constructor, parent)
{
}

void RelationTreeProvider::loadAllNodes()
{
    request(constructor()->selectQuery({QStringLiteral("*")}, pathsTable) + constructor()->statementEnd(),
            &RelationTreeProvider::gotAllNodesInfo);
}

void RelationTreeProvider::addPaths(const QString &parentPath, const QVector<qint64> &tagIds)
{
    if (tagIds.isEmpty())
        return;
    const QStringList paths = childPaths(parentPath, tagIds);
    const bool ok = runInPieces(paths, Chunks::idsPerStatement, [this](const QStringList &part) {
        QVector<QStringList> rows;
        rows.reserve(part.size());
        for (const QString &path : part)
            rows.append({path});
        return constructor()->insertQuery({pathColumn}, pathsTable, rows);
    });
    emit nodesAdded(ok, paths);
}

void RelationTreeProvider::removeByTags(const QVector<qint64> &tagIds, const QStringList &affectedPaths)
{
    if (tagIds.isEmpty())
        return;
    const bool ok = runInPieces(tagIds, tagsPerCondition, [this](const QVector<qint64> &part) {
        return constructor()->deleteQuery(pathsTable) + constructor()->whereClause(tagCondition(part));
    });
    emit nodesRemoved(ok, affectedPaths);
}

void RelationTreeProvider::removePaths(const QStringList &paths)
{
    if (paths.isEmpty())
        return;
    const bool ok = runInPieces(paths, Chunks::idsPerStatement, [this](const QStringList &part) {
        return constructor()->deleteQuery(pathsTable) +
               constructor()->whereClause(constructor()->inClause(pathColumn, part));
    });
    emit nodesRemoved(ok, paths);
}

QString RelationTreeProvider::tagCondition(const QVector<qint64> &tagIds)
{
    const QString piece = QStringLiteral(
        " relationship_path LIKE '%1'  OR relationship_path LIKE '%.%1'  OR relationship_path LIKE '%.%1.%'"
        " OR relationship_path LIKE '%1.%'");
    QStringList pieces;
    pieces.reserve(tagIds.size());
    for (const qint64 tagId : tagIds)
        pieces.append(SqlText::fill(piece, {QString::number(tagId)}));
    return pieces.join(QLatin1String(" OR "));
}

template <class List, class Text>
bool RelationTreeProvider::runInPieces(const List &list, int size, Text text)
{
    Transaction transaction(*this);
    const auto run = [this, &text](const List &part) {
        return runSync(text(part) + constructor()->statementEnd());
    };
    return transaction.isActive() && Chunks::forEach(list, size, run) && transaction.commit();
}
