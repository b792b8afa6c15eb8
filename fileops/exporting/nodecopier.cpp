#include "fileops/exporting/nodecopier.h"

#include "fileops/exchange/quietstatements.h"

bool NodeCopier::prepare()
{
    cleanUp();
    return m_statements.run(QStringLiteral("CREATE TEMPORARY TABLE mem_export_gaps "
                                           "(node_id INTEGER PRIMARY KEY, parent_id INTEGER);")) &&
           m_statements.run(QStringLiteral("CREATE INDEX temp.mem_export_gaps_below ON mem_export_gaps "
                                           "(parent_id);")) &&
           m_statements.run(QStringLiteral("CREATE TEMPORARY TABLE mem_export_ancestors "
                                           "(node_id INTEGER PRIMARY KEY, ancestor_id INTEGER);"));
}

void NodeCopier::cleanUp()
{
    m_statements.run(QStringLiteral("DROP TABLE IF EXISTS temp.mem_export_gaps;"));
    m_statements.run(QStringLiteral("DROP TABLE IF EXISTS temp.mem_export_ancestors;"));
}

bool NodeCopier::run()
{
    const QString nodes = QStringLiteral(
        "INSERT INTO exportTo.tb_nodes (node_id, tag_id, tr_options, inverted) "
        "SELECT node_id, tag_id, ifnull(tr_options, 0), ifnull(inverted, 0) FROM main.tb_nodes "
        "WHERE node_id>0 AND tag_id IN (SELECT tag_id FROM exportTo.tags);");
    // A node that a database from elsewhere has below several others gets one place.
    const QString links =
        QStringLiteral("INSERT OR IGNORE INTO exportTo.tb_node_links (parent_id, child_id) "
                       "SELECT CASE node.node_id WHEN link.parent_id THEN 0 WHEN gap.ancestor_id THEN 0 ELSE "
                       "coalesce(parent.node_id, gap.ancestor_id, 0) END, node.node_id "
                       "FROM exportTo.tb_nodes AS node "
                       "LEFT JOIN main.tb_node_links AS link ON link.child_id=node.node_id "
                       "LEFT JOIN exportTo.tb_nodes AS parent ON parent.node_id=link.parent_id "
                       "LEFT JOIN temp.mem_export_ancestors AS gap ON gap.node_id=link.parent_id;");
    return m_statements.run(nodes) && findAncestors() && m_statements.run(links);
}

/** From the top down, each node that stays behind once. Nodes that lead back to themselves have no top. */
bool NodeCopier::findAncestors()
{
    const QString gaps = QStringLiteral("INSERT INTO temp.mem_export_gaps (node_id, parent_id) "
                                        "SELECT child_id, parent_id FROM main.tb_node_links "
                                        "WHERE child_id NOT IN (SELECT node_id FROM exportTo.tb_nodes);");
    const QString ancestors =
        QStringLiteral("INSERT INTO temp.mem_export_ancestors (node_id, ancestor_id) "
                       "WITH RECURSIVE gap(node_id, ancestor_id) AS ("
                       "SELECT node_id, parent_id FROM temp.mem_export_gaps "
                       "WHERE parent_id IN (SELECT node_id FROM exportTo.tb_nodes) "
                       "UNION ALL SELECT below.node_id, gap.ancestor_id FROM gap "
                       "JOIN temp.mem_export_gaps AS below ON below.parent_id=gap.node_id) "
                       "SELECT node_id, ancestor_id FROM gap;");
    return m_statements.run(gaps) && m_statements.run(ancestors);
}
