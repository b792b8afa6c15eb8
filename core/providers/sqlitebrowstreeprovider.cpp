#include "core/providers/sqlitebrowstreeprovider.h"

#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/sqltext.h"

namespace {
const QLatin1String foldersTable("tb_autolinks");
const QLatin1String nodeFoldersTable("tb_nodes_autolinks");

QString linkCondition(const QString &linkId)
{
    return SqlText::fill(QStringLiteral(" link_id='%1' "), {SqlText::escaped(linkId)});
}
} // namespace

SqliteBrowsTreeProvider::SqliteBrowsTreeProvider(const AbstractQueryConstructor *constructor, QObject *parent)
    : BrowsTreeProvider(constructor, parent)
{
}

void SqliteBrowsTreeProvider::loadAutolinks()
{
    const QString join = constructor()->joinQuery(
        PlainJoin, foldersTable, QStringLiteral("tb_autolinks.link_id=tb_nodes_autolinks.link_id"));
    const QStringList columns = {QStringLiteral("tb_nodes_autolinks.*"),
                                 QStringLiteral("tb_autolinks.link_abs_path"),
                                 QStringLiteral("tb_autolinks.link_rel_path")};
    request(constructor()->selectQuery(columns, nodeFoldersTable + join) + constructor()->statementEnd(),
            &BrowsTreeProvider::gotAllAutolinksInfo);
}

bool SqliteBrowsTreeProvider::addAutolink(const QString &path, const QString &relPath, const QString &linkId)
{
    const QStringList columns = {QStringLiteral("link_id"), QStringLiteral("link_abs_path"),
                                 QStringLiteral("link_rel_path")};
    const bool ok = runSync(constructor()->insertQuery(columns, foldersTable, {{linkId, path, relPath}}) +
                            constructor()->statementEnd());
    if (ok)
        announce([this, path, relPath, linkId] { emit addedNewAutolink(path, relPath, linkId); });
    return ok;
}

bool SqliteBrowsTreeProvider::addAutolinkToNode(const QString &linkId, qint64 nodeId)
{
    const bool ok =
        runSync(constructor()->insertQuery({QStringLiteral("link_id"), QStringLiteral("node_id")},
                                           nodeFoldersTable, {{linkId, QString::number(nodeId)}}) +
                constructor()->statementEnd());
    announce([this, ok, linkId, nodeId] { emit addedAutolinkToNode(ok, linkId, nodeId); });
    return ok;
}

bool SqliteBrowsTreeProvider::removeAutolinkFromNode(const QString &linkId, qint64 nodeId)
{
    const QString condition = SqlText::fill(QStringLiteral(" link_id='%1' AND node_id='%2' "),
                                            {SqlText::escaped(linkId), QString::number(nodeId)});
    const bool ok = runSync(constructor()->deleteQuery(nodeFoldersTable) +
                            constructor()->whereClause(condition) + constructor()->statementEnd());
    announce([this, ok, linkId, nodeId] { emit removedAutolinkFromNode(ok, linkId, nodeId); });
    return ok;
}

bool SqliteBrowsTreeProvider::removeAutolink(const QString &linkId)
{
    const bool ok =
        runSync(constructor()->deleteQuery(foldersTable) + constructor()->whereClause(linkCondition(linkId)) +
                constructor()->statementEnd());
    announce([this, ok, linkId] { emit removedAutolink(ok, linkId); });
    return ok;
}

bool SqliteBrowsTreeProvider::updateAutolink(const QString &linkId, const QString &absPath,
                                             const QString &relPath)
{
    const QStringList columns = {QStringLiteral("link_abs_path"), QStringLiteral("link_rel_path")};
    const bool ok =
        runSync(constructor()->updateQuery(columns, foldersTable, {absPath, relPath}) +
                constructor()->whereClause(linkCondition(linkId)) + constructor()->statementEnd());
    announce([this, ok, linkId, absPath, relPath] { emit updatedAutolink(ok, linkId, absPath, relPath); });
    return ok;
}
