#include "core/providers/relationtreeprovider.h"

#include "core/providers/chunks.h"
#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/transaction.h"

#include <QSet>

#include <algorithm>

namespace {
const QLatin1String pathsTable("tag_relationships");
const QLatin1String pathColumn("relationship_path");
// Four terms a tag, each tried on each path.
constexpr int tagsPerCondition = 20;

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

bool holdsOneOf(const QString &path, const QSet<qint64> &tagIds)
{
    const QVector<QStringRef> pieces = path.splitRef(QLatin1Char('.'));
    return std::any_of(pieces.cbegin(), pieces.cend(),
                       [&tagIds](const QStringRef &piece) { return tagIds.contains(piece.toLongLong()); });
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

bool RelationTreeProvider::addPaths(const QString &parentPath, const QVector<qint64> &tagIds)
{
    if (tagIds.isEmpty())
        return true;
    const QStringList paths = childPaths(parentPath, tagIds);
    const bool ok = runInPieces(paths, Chunks::idsPerStatement, [this](const QStringList &part) {
        QVector<QStringList> rows;
        rows.reserve(part.size());
        for (const QString &path : part)
            rows.append({path});
        return constructor()->insertQuery({pathColumn}, pathsTable, rows);
    });
    announce([this, ok, paths] { emit nodesAdded(ok, paths); });
    return ok;
}

bool RelationTreeProvider::readPaths(const QStringList &paths, QStringList &found)
{
    const auto collect = [&found](const TableData &slice) {
        for (const TableRowData *row : slice)
            found.append(row->at(0).toString());
    };
    return Chunks::forEach(paths, Chunks::idsPerStatement, [&](const QStringList &part) {
        return runSyncInSlices(constructor()->selectQuery({pathColumn}, pathsTable) +
                                   constructor()->whereClause(constructor()->inClause(pathColumn, part)) +
                                   constructor()->statementEnd(),
                               Chunks::idsPerStatement, collect);
    });
}

bool RelationTreeProvider::removeByTags(const QVector<qint64> &tagIds, const QStringList &affectedPaths)
{
    if (tagIds.isEmpty())
        return true;
    const auto remove = [this](const QVector<qint64> &part) {
        return constructor()->deleteQuery(pathsTable) + constructor()->whereClause(tagCondition(part));
    };
    // The condition of many tags would be tried on each path.
    const bool ok = tagIds.size() > tagsPerCondition ? removeByWalk(tagIds)
                                                     : runInPieces(tagIds, tagsPerCondition, remove);
    announce([this, ok, affectedPaths] { emit nodesRemoved(ok, affectedPaths); });
    return ok;
}

bool RelationTreeProvider::removeByWalk(const QVector<qint64> &tagIds)
{
    const QSet<qint64> wanted(tagIds.cbegin(), tagIds.cend());
    QStringList found;
    const auto collect = [&wanted, &found](const TableData &slice) {
        for (const TableRowData *row : slice) {
            const QString path = row->at(0).toString();
            if (holdsOneOf(path, wanted))
                found.append(path);
        }
    };
    return runSyncInSlices(constructor()->selectQuery({pathColumn}, pathsTable) +
                               constructor()->statementEnd(),
                           Chunks::idsPerStatement, collect) &&
           deletePaths(found);
}

bool RelationTreeProvider::removePaths(const QStringList &paths)
{
    if (paths.isEmpty())
        return true;
    const bool ok = deletePaths(paths);
    announce([this, ok, paths] { emit nodesRemoved(ok, paths); });
    return ok;
}

bool RelationTreeProvider::deletePaths(const QStringList &paths)
{
    return runInPieces(paths, Chunks::idsPerStatement, [this](const QStringList &part) {
        return constructor()->deleteQuery(pathsTable) +
               constructor()->whereClause(constructor()->inClause(pathColumn, part));
    });
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
