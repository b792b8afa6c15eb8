#include "core/providers/postgresbrowstreeprovider.h"
#include "core/providers/postgresgroupsprovider.h"
#include "core/providers/postgrestagsprovider.h"
#include "db/postgresqueryconstructor.h"
#include "db/sqlitequeryconstructor.h"
#include "tests/support/text.h"

namespace {
const SqliteQueryConstructor sqlite;
const PostgresQueryConstructor postgres;

// Each opens the texts of its provider to the table below.
template <class Base>
struct Open : Base
{
    using Base::Base;
    using Base::insertText;
    using Base::selectText;
};
template <class Base>
struct OpenNodes : Open<Base>
{
    using Open<Base>::Open;
    using Base::linkInsertText;
};
struct ServerNodes : OpenNodes<PostgresBrowsTreeProvider>
{
    using OpenNodes::OpenNodes;
    using PostgresBrowsTreeProvider::treeInsertText;
    using PostgresBrowsTreeProvider::treeUpdateText;
};
} // namespace

/** The statements that the providers put together, in both dialects side by side. */
class TestProviderTexts : public QObject
{
    Q_OBJECT

private slots:
    void texts_data()
    {
        addColumns<QStringList, QStringList>("made", "expected");
        const auto row = [](const char *name, const QString &local, const QString &server,
                            const char *localText, const char *serverText) {
            addRow(name, QStringList({local, server}),
                   QStringList({QLatin1String(localText), QLatin1String(serverText)}));
        };
        const Open<TagsProvider> tags(&sqlite), serverTags(&postgres);
        const Open<GroupsProvider> groups(&sqlite), serverGroups(&postgres);
        const OpenNodes<BrowsTreeProvider> nodes(&sqlite);
        ServerNodes serverNodes(&postgres);
        serverNodes.setCurrentTree(3);
        const QString name = "O'Neil %1"_s;
        const QRegularExpression date("'\\d{8,}'"_s);

        row("new tag", tags.insertText(name).replace(date, "now"_s),
            serverTags.insertText(name).replace(date, "now"_s),
            "INSERT INTO tags ('tag_name','tag_description','creation_date') VALUES ('O''Neil %1', '', now)",
            "INSERT INTO tags (\"tag_name\",\"tag_description\",\"creation_date\") VALUES ('O''Neil %1', '', "
            "now)");
        row("new group", groups.insertText(name), serverGroups.insertText(name),
            "INSERT INTO tag_groups ('name') VALUES ('O''Neil %1')",
            "INSERT INTO tag_groups (\"name\") VALUES ('O''Neil %1')");
        row("nodes", nodes.selectText(), serverNodes.selectText(),
            "SELECT  tb_nodes.*,tags.tag_name as node_name,tb_node_links.parent_id as node_parent_id FROM "
            "tb_nodes  LEFT JOIN tags ON tags.tag_id=tb_nodes.tag_id  LEFT JOIN tb_node_links ON "
            "tb_node_links.child_id=tb_nodes.node_id",
            "SELECT  tb_nodes.*,tags.tag_name as node_name,tb_node_links.parent_id as node_parent_id,"
            "tb_node_links.browsing_tree_id FROM tb_nodes  LEFT JOIN tags ON tags.tag_id=tb_nodes.tag_id  "
            "LEFT JOIN tb_node_links ON tb_node_links.child_id=tb_nodes.node_id");
        row("new node", nodes.insertText(7, true, false), serverNodes.insertText(7, true, false),
            "INSERT INTO tb_nodes ('tag_id','tr_options','inverted') VALUES ('7', '1', '0')",
            "INSERT INTO tb_nodes (\"tag_id\",\"tr_options\",\"inverted\") VALUES ('7', '1', '0')");
        row("link of a node", nodes.linkInsertText(1, 2), serverNodes.linkInsertText(1, 2),
            "INSERT INTO tb_node_links ('parent_id','child_id') VALUES ('1', '2')",
            "INSERT INTO tb_node_links (\"parent_id\",\"child_id\",\"browsing_tree_id\") VALUES ('1', '2', "
            "'3')");
        row("new tree and renamed one", serverNodes.treeInsertText(name),
            serverNodes.treeUpdateText(3, "tree_name"_s, name),
            "INSERT INTO browsing_trees (\"tree_name\") VALUES ('O''Neil %1') RETURNING tree_id ",
            "UPDATE browsing_trees SET \"tree_name\" = 'O''Neil %1' WHERE tree_id=3 RETURNING tree_id, "
            "tree_name");
    }

    void texts()
    {
        QFETCH(QStringList, made);
        QTEST(made, "expected");
    }
};

QTEST_GUILESS_MAIN(TestProviderTexts)
#include "tst_providertexts.moc"
