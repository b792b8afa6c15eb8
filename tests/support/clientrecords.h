#pragma once

#include "core/records/file.h"
#include "core/records/groupitem.h"
#include "core/records/tbnode.h"
#include "db/manager/databasemanger.h"
#include "db/sql/sqltext.h"
#include "tests/support/database.h"

/** What a client shows, line by line, from its records and from the database alone. */
namespace ClientRecords {
inline QString list(QVector<qint64> ids)
{
    std::sort(ids.begin(), ids.end());
    return ids.isEmpty() ? QString() : QLatin1Char(' ') + SqlText::idList(ids);
}

inline QStringList shown(DatabaseManger &manager)
{
    QStringList lines;
    for (const TableRowData *tag : manager.tags())
        lines.append("tag %1 %2 %3"_s.arg(tag->value("tag_id"_s).toString(),
                                          tag->value("tag_name"_s).toString(),
                                          tag->value("tag_description"_s).toString()));
    for (const GroupItem *group : qAsConst(*manager.groups()))
        lines.append("group %1 %2%3"_s.arg(QString::number(group->id()), group->name(), list(group->tags())));
    for (const TBnode *node : qAsConst(manager.nodes())) {
        const TBnode *parent = node->parentNode();
        lines.append("node %1 %2 %3 %4 %5"_s.arg(
            QString::number(node->id()), node->name(),
            QString::number(parent && parent->nodeType() == TagNode ? parent->id() : 0),
            QString::number(int(node->isInverted())), QString::number(int(node->trOption()))));
    }
    for (const auto &place : qAsConst(manager.relationNodes()))
        lines.append("place "_s + place.first);
    const QMap<qint64, QString> &trees = manager.browsingTrees().items();
    for (auto tree = trees.cbegin(); tree != trees.cend(); ++tree)
        lines.append("tree %1 %2"_s.arg(QString::number(tree.key()), tree.value()));
    for (const File *file : qAsConst(manager.files()))
        lines.append("file %1 %2 %3%4"_s.arg(QString::number(file->id()), file->name(), file->path(),
                                             list(file->tags())));
    lines.sort();
    return lines;
}

/** Of the default tree, by the default connection. */
inline QStringList truth()
{
    QStringList lines = Sql::rows(
        "SELECT concat_ws(' ','tag',tag_id,tag_name,tag_description) FROM tags UNION ALL "
        "SELECT concat_ws(' ','group',tag_group_id,name,(SELECT string_agg(tag_id::text,',' ORDER BY tag_id) "
        "FROM tag_group_links l WHERE l.tag_group_id=g.tag_group_id)) FROM tag_groups g UNION ALL "
        "SELECT concat_ws(' ','node',node_id,coalesce(tag_name,''),parent_id,inverted,tr_options) FROM "
        "tb_nodes "
        "LEFT JOIN tags USING (tag_id) JOIN tb_node_links ON child_id=node_id WHERE browsing_tree_id=1 UNION "
        "ALL "
        "SELECT concat_ws(' ','place',relationship_path) FROM tag_relationships UNION ALL "
        "SELECT concat_ws(' ','tree',tree_id,tree_name) FROM browsing_trees UNION ALL "
        "SELECT concat_ws(' ','file',file_id,file_name,coalesce(path,''),(SELECT string_agg(tag_id::text,',' "
        "ORDER BY tag_id) FROM file_tag t WHERE t.file_id=f.file_id)) FROM files f LEFT JOIN file_paths ON "
        "internal=0 AND path_id=storage_id");
    lines.sort();
    return lines;
}
} // namespace ClientRecords
