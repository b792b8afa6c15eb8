#include "core/providers/mainviewprovider.h"
#include "core/providers/postgresbrowstreeprovider.h"
#include "core/providers/postgresgroupsprovider.h"
#include "core/providers/postgrestagsprovider.h"
#include "core/providers/relationtreeprovider.h"
#include "db/postgresqueryconstructor.h"
#include "db/sqlitequeryconstructor.h"
#include "tests/support/text.h"

namespace {
// Each opens the texts of its provider to the table below.
struct Tags : TagsProvider
{
    using TagsProvider::insertText;
    using TagsProvider::selectText;
    using TagsProvider::TagsProvider;
};
struct Groups : GroupsProvider
{
    using GroupsProvider::GroupsProvider;
    using GroupsProvider::insertText;
    using GroupsProvider::selectText;
};
struct Files : MainViewProvider
{
    using MainViewProvider::filesText;
    using MainViewProvider::linkText;
    using MainViewProvider::MainViewProvider;
    using MainViewProvider::tagsText;
    using MainViewProvider::unlinkText;
};
struct LocalNodes : BrowsTreeProvider
{
    using BrowsTreeProvider::BrowsTreeProvider;
    using BrowsTreeProvider::insertText;
    using BrowsTreeProvider::linkInsertText;
    using BrowsTreeProvider::selectText;
};
struct ServerNodes : PostgresBrowsTreeProvider
{
    using PostgresBrowsTreeProvider::insertText;
    using PostgresBrowsTreeProvider::linkInsertText;
    using PostgresBrowsTreeProvider::PostgresBrowsTreeProvider;
    using PostgresBrowsTreeProvider::selectText;
    using PostgresBrowsTreeProvider::treeInsertText;
    using PostgresBrowsTreeProvider::treeUpdateText;
};

const SqliteQueryConstructor sqlite;
const PostgresQueryConstructor postgres;
} // namespace

/** The statements that the providers put together, in both dialects side by side. */
class TestProviderTexts : public QObject
{
    Q_OBJECT

private slots:
    void texts_data()
    {
        addColumns<QStringList, QString, QString>("made", "sqliteText", "postgresText");
        const auto row = [](const char *name, const QString &local, const QString &server,
                            const char *localText, const char *serverText) {
            addRow(name, QStringList({local, server}), QString::fromUtf8(localText),
                   QString::fromUtf8(serverText ? serverText : localText));
        };
        const Tags tags(&sqlite);
        const Tags serverTags(&postgres);
        const Groups groups(&sqlite);
        const Groups serverGroups(&postgres);
        const Files files(&sqlite);
        const Files serverFiles(&postgres);
        const LocalNodes nodes(&sqlite);
        ServerNodes serverNodes(&postgres);
        serverNodes.setCurrentTree(3);
        const QString name = "O'Neil %1"_s;

        row("tags", tags.selectText(), serverTags.selectText(), "SELECT  * FROM tags", nullptr);
        row("groups", groups.selectText(), serverGroups.selectText(),
            "SELECT  tag_groups.*,tag_group_links.tag_id FROM tag_groups  LEFT JOIN tag_group_links ON "
            "tag_groups.tag_group_id = tag_group_links.tag_group_id",
            nullptr);
        row("new group", groups.insertText(name), serverGroups.insertText(name),
            "INSERT INTO tag_groups ('name') VALUES ('O''Neil %1')",
            "INSERT INTO tag_groups (\"name\") VALUES ('O''Neil %1')");
        row("nodes", nodes.selectText(), serverNodes.selectText(),
            "SELECT  tb_nodes.*,tags.tag_name as node_name,tb_node_links.parent_id as node_parent_id FROM "
            "tb_nodes"
            "  LEFT JOIN tags ON tags.tag_id=tb_nodes.tag_id"
            "  LEFT JOIN tb_node_links ON tb_node_links.child_id=tb_nodes.node_id",
            "SELECT  tb_nodes.*,tags.tag_name as node_name,tb_node_links.parent_id as node_parent_id,"
            "tb_node_links.browsing_tree_id FROM tb_nodes"
            "  LEFT JOIN tags ON tags.tag_id=tb_nodes.tag_id"
            "  LEFT JOIN tb_node_links ON tb_node_links.child_id=tb_nodes.node_id");
        row("new node", nodes.insertText(7, true, false), serverNodes.insertText(7, true, false),
            "INSERT INTO tb_nodes ('tag_id','tr_options','inverted') VALUES ('7', '1', '0')",
            "INSERT INTO tb_nodes (\"tag_id\",\"tr_options\",\"inverted\") VALUES ('7', '1', '0')");
        row("link of a node", nodes.linkInsertText(1, 2), serverNodes.linkInsertText(1, 2),
            "INSERT INTO tb_node_links ('parent_id','child_id') VALUES ('1', '2')",
            "INSERT INTO tb_node_links (\"parent_id\",\"child_id\",\"browsing_tree_id\") VALUES ('1', '2', "
            "'3')");
        row("new tree", QString(), serverNodes.treeInsertText(name), "",
            "INSERT INTO browsing_trees (\"tree_name\") VALUES ('O''Neil %1') RETURNING tree_id ");
        row("renamed tree", QString(), serverNodes.treeUpdateText(3, "tree_name"_s, name), "",
            "UPDATE browsing_trees SET \"tree_name\" = 'O''Neil %1' WHERE tree_id=3 RETURNING tree_id, "
            "tree_name");
        row("files", files.filesText(QString()), serverFiles.filesText(QString()),
            "SELECT  files.*,file_paths.* FROM files  LEFT JOIN file_paths ON "
            "files.storage_id=file_paths.path_id"
            " AND files.internal=0 ORDER BY files.file_id;",
            nullptr);
        row("tags of files", files.tagsText(QString()), serverFiles.tagsText(QString()),
            "SELECT  file_id,tag_id FROM file_tag ORDER BY file_id;", nullptr);
        row("linked tags", files.linkText({1, 2}, {3}), serverFiles.linkText({1, 2}, {3}),
            "INSERT INTO file_tag (file_id,tag_id) SELECT  files.file_id,tags.tag_id FROM files CROSS JOIN "
            "tags"
            " WHERE  files.file_id IN ('1', '2') AND  tags.tag_id IN ('3') AND NOT EXISTS (SELECT 1 FROM "
            "file_tag"
            " WHERE file_tag.file_id=files.file_id AND file_tag.tag_id=tags.tag_id)",
            nullptr);
        row("unlinked tags", files.unlinkText({1, 2}, {3}), serverFiles.unlinkText({1, 2}, {3}),
            "DELETE FROM file_tag  WHERE  file_id IN ('1', '2') AND  tag_id IN ('3')", nullptr);
        const QString condition = RelationTreeProvider::tagCondition({1, 12});
        row("paths of tags", condition, condition,
            " relationship_path LIKE '1'  OR relationship_path LIKE '%.1'  OR relationship_path LIKE '%.1.%' "
            "OR "
            "relationship_path LIKE '1.%' OR  relationship_path LIKE '12'  OR relationship_path LIKE '%.12'  "
            "OR "
            "relationship_path LIKE '%.12.%' OR relationship_path LIKE '12.%'",
            nullptr);
    }

    void texts()
    {
        QFETCH(QStringList, made);
        QTEST(made.at(0), "sqliteText");
        QTEST(made.at(1), "postgresText");
    }

    void newTagsCarryTheirDate()
    {
        const QRegularExpression local(
            "^INSERT INTO tags \\('tag_name','tag_description','creation_date'\\) VALUES "
            "\\('a''b', '', '\\d+'\\)$"_s);
        const QRegularExpression server(
            "^INSERT INTO tags \\(\"tag_name\",\"tag_description\",\"creation_date\"\\) VALUES "
            "\\('a''b', '', '\\d+'\\)$"_s);
        QVERIFY(local.match(Tags(&sqlite).insertText("a'b"_s)).hasMatch());
        QVERIFY(server.match(Tags(&postgres).insertText("a'b"_s)).hasMatch());
    }
};

QTEST_GUILESS_MAIN(TestProviderTexts)
#include "tst_providertexts.moc"
