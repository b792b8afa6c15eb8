#include "bench/tagactions.h"

#include "bench/actiontable.h"
#include "bench/flatlibrary.h"
#include "bench/openwindow.h"
#include "bench/samplelibrary.h"
#include "core/controllers/groupscontroller.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/tagscontroller.h"
#include "db/manager/databasemanger.h"
#include "models/contents/contentsmodel.h"
#include "models/tags/tagstablemodel.h"
#include "ui/docks/tagstabledock.h"
#include "ui/views/taggroupbar.h"
#include "ui/views/tbtreeview.h"
#include "ui/widgets/tableview.h"

#include <QLineEdit>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>

#include <numeric>

namespace {

constexpr qint64 rareTag = 4000;
constexpr int frequentFiles = 100000;

// Keeps the optimizer from leaving work out.
volatile qint64 sink = 0;

QVector<qint64> idsFrom(qint64 first, int count)
{
    QVector<qint64> ids(count);
    std::iota(ids.begin(), ids.end(), first);
    return ids;
}

} // namespace

TagActions::TagActions(ActionTable &table, OpenWindow &window, const FlatLibrary &flat)
    : m_table(table), m_window(window), m_flat(flat)
{
}

void TagActions::run()
{
    renameTags();
    countFiles();
    selectTags();
    filterTags();
    turnTabs();
    expandNodes();
}

void TagActions::runMany()
{
    assignGroups();
    removeTags();
    removeDeepTag("remove a tag of 10,000 nodes, 1,000 relations deep", 1);
    removeDeepTag("remove a tag of every other of 20,000 nodes", 2);
    selectManyTags();
}

void TagActions::renameTags()
{
    renameBoth("", [this] { m_window.showAll(); });
    renameBoth(", sorted by tags", [this] {
        m_window.showAll();
        m_window.sort(ContentsModel::TagsColumn);
    });
    m_window.settle([this] { m_window.unsort(); });
}

void TagActions::renameBoth(const char *suffix, const std::function<void()> &prepare)
{
    static int renaming = 0;
    const auto rename = [&](const char *name, qint64 tag) {
        m_table.run(
            {QLatin1String(name) + QLatin1String(suffix), prepare,
             [this, tag] { m_window.tags->renameTag(tag, QStringLiteral("renamed %1").arg(++renaming)); },
             [this, tag] {
                 m_window.runPlain(
                     QStringLiteral("UPDATE tags SET tag_name='renamed' WHERE tag_id=%1").arg(tag));
             }});
    };
    rename("rename a rare tag", rareTag);
    rename("rename a tag of 100,000 files", m_flat.tagOnFiles(frequentFiles));
}

/** The tags table tells the number of files of each tag while that column shows. */
void TagActions::countFiles()
{
    m_table.run({QStringLiteral("tag a file, with the column of files"),
                 [this] {
                     m_window.showAll();
                     m_window.tagTable->setColumnHidden(TagsTableModel::FilesColumn, false);
                 },
                 [this] {
                     static bool isTagged = false;
                     const QVector<qint64> tag{rareTag};
                     isTagged = !isTagged;
                     m_window.files->changeTags({1}, isTagged ? tag : QVector<qint64>(),
                                                isTagged ? QVector<qint64>() : tag);
                 },
                 [this] { m_window.runPlain(QStringLiteral("REPLACE INTO file_tag VALUES(1,4000)")); }});
}

void TagActions::selectTags()
{
    const auto all = [this] { m_window.showAll(); };
    const auto count = [this] { sink = sink + m_flat.countTags(); };
    m_table.run({QStringLiteral("select all 5,000 tags"), [this] { m_window.tagTable->clearSelection(); },
                 [this] { m_window.tagTable->selectAll(); },
                 [this] { sink = sink + m_flat.filterTagNames(QStringLiteral("9")); }});
    m_table.run({QStringLiteral("AND of all 5,000 tags"), all,
                 [this] {
                     m_window.tagTable->selectAll();
                     m_window.tagsDock->slotActivateTagsAnd();
                 },
                 count});
    m_table.run({QStringLiteral("OR of all 5,000 tags"), all,
                 [this] {
                     m_window.tagTable->selectAll();
                     m_window.tagsDock->slotActivateTagsOr();
                 },
                 count});
}

void TagActions::filterTags()
{
    QLineEdit *field = m_window.edit("TagFilterBar");
    if (!field)
        qFatal("no tag filter");
    const auto noFilter = [field] { field->clear(); };
    m_table.run({QStringLiteral("type a key into the tag filter"), noFilter,
                 [field] { QTest::keyClick(field, '9'); },
                 [this] { sink = sink + m_flat.filterTagNames(QStringLiteral("9")); }});
    m_table.run({QStringLiteral("empty the tag filter"), [field] { field->setText(QStringLiteral("xyz")); },
                 noFilter, [this] { sink = sink + m_flat.sortTagNames(); }});
}

void TagActions::turnTabs()
{
    const auto allTags = [this] { m_window.tagTabs->setCurrentIndex(0); };
    const auto group = [this] { m_window.tagTabs->setCurrentIndex(5); };
    m_table.run({QStringLiteral("to a group's tab"), allTags, group,
                 [this] { sink = sink + m_flat.filterTagNames(QStringLiteral("9")); }});
    m_table.run({QStringLiteral("back to the tab of all tags"), group, allTags,
                 [this] { sink = sink + m_flat.sortTagNames(); }});
}

void TagActions::expandNodes()
{
    m_table.run({QStringLiteral("expand 5,000 nodes"), [this] { m_window.nodes->collapseAll(); },
                 [this] { m_window.nodes->slotExpandAllFiles(); },
                 [this] { sink = sink + m_flat.filterTagNames(QStringLiteral("9")); }});
}

/** Inserts a row for each number i, behind the window's back, into the plain database, too. */
void TagActions::makeRows(qint64 from, int count, const char *insert)
{
    const QString statement = QStringLiteral("WITH RECURSIVE n(i) AS (SELECT %1 UNION ALL SELECT "
                                             "i+1 FROM n LIMIT %2) "
                                             "INSERT INTO %3")
                                  .arg(from)
                                  .arg(count)
                                  .arg(QLatin1String(insert));
    QSqlQuery(QSqlDatabase::database()).exec(statement);
    m_window.runPlain(statement);
}

void TagActions::assignGroups()
{
    constexpr qint64 firstGroup = 1001;
    constexpr int groups = 20;
    m_table.run(
        {QStringLiteral("assign 5,000 tags to 20 groups"),
         [this] {
             m_window.manager->removeGroups(idsFrom(firstGroup, groups));
             m_window.runPlain(QStringLiteral("DELETE FROM tag_groups WHERE tag_group_id>1000"));
             m_window.runPlain(QStringLiteral("DELETE FROM tag_group_links WHERE tag_group_id>1000"));
             makeRows(firstGroup, groups, "tag_groups SELECT i,'group '||i FROM n");
             m_window.manager->loadAllGroups();
         },
         [this] {
             m_window.groups->assignTags(idsFrom(1, SampleLibrary::tagCount), idsFrom(firstGroup, groups));
         },
         [this] {
             m_window.runPlain(QStringLiteral("REPLACE INTO tag_group_links SELECT tag_id,i FROM tags, "
                                              "(WITH RECURSIVE n(i) AS (SELECT 1001 UNION ALL SELECT i+1 "
                                              "FROM n LIMIT 20) SELECT i FROM n)"));
         }});
}

void TagActions::removeTags()
{
    constexpr qint64 firstTag = 100001;
    constexpr int tags = 2500;
    m_table.run({QStringLiteral("remove 2,500 tags"),
                 [this] {
                     makeRows(firstTag, tags, "tags SELECT i,'fresh '||i,'',0,NULL FROM n");
                     makeRows(firstTag, tags, "file_tag SELECT i-100000,i FROM n");
                     makeRows(firstTag, tags, "tag_group_links SELECT i,1 FROM n");
                     makeRows(firstTag, tags, "tb_nodes SELECT i,i,1,0 FROM n");
                     makeRows(firstTag, tags, "tb_node_links SELECT 0,i FROM n");
                     makeRows(firstTag, tags, "tag_relationships SELECT i FROM n");
                     m_window.manager->reloadAllData();
                     m_window.showAll();
                 },
                 [this] { m_window.tags->removeTags(idsFrom(firstTag, tags)); },
                 [this] {
                     // No key begins with the tag: all taggings are looked at.
                     m_window.runPlain(QStringLiteral("BEGIN;"
                                                      "DELETE FROM file_tag WHERE tag_id>100000;"
                                                      "DELETE FROM tag_group_links WHERE tag_id>100000;"
                                                      "DELETE FROM tb_nodes WHERE node_id>100000;"
                                                      "DELETE FROM tb_node_links WHERE child_id>100000;"
                                                      "DELETE FROM tag_relationships WHERE "
                                                      "CAST(relationship_path AS INTEGER)>100000;"
                                                      "DELETE FROM tags WHERE tag_id>100000;"
                                                      "COMMIT"));
                 }});
}

/** A tag on nodes that all stand below each other, and on top of relations that do. */
void TagActions::removeDeepTag(const char *name, int step)
{
    constexpr qint64 tag = 300001;
    constexpr int relations = 1000;
    const int nodes = 10000 * step;
    m_table.run({QLatin1String(name),
                 [this, nodes, step] {
                     m_window.tags->removeTags({tag, tag + 1});
                     m_window.runPlain(QStringLiteral("DELETE FROM tb_nodes WHERE node_id>=300001;"
                                                      "DELETE FROM tb_node_links WHERE child_id>=300001;"
                                                      "DELETE FROM tag_relationships WHERE "
                                                      "CAST(relationship_path AS INTEGER)>=300001;"
                                                      "DELETE FROM tags WHERE tag_id>=300001"));
                     makeRows(tag, relations,
                              "tags SELECT i,'deep '||i,'',0,NULL FROM n WHERE true "
                              "ON CONFLICT DO NOTHING");
                     makeRows(tag, nodes,
                              step == 1 ? "tb_nodes SELECT i,300001,1,0 FROM n"
                                        : "tb_nodes SELECT i,300002-i%2,1,0 FROM n");
                     makeRows(tag, nodes,
                              "tb_node_links SELECT CASE i WHEN 300001 THEN 0 ELSE i-1 END,i FROM n");
                     makeRows(tag, relations,
                              "tag_relationships SELECT group_concat(i,'.') OVER "
                              "(ORDER BY i) FROM n");
                     m_window.manager->reloadAllData();
                     m_window.showAll();
                 },
                 [this] { m_window.tags->removeTags({tag}); },
                 [this] {
                     m_window.runPlain(QStringLiteral("BEGIN;"
                                                      "DELETE FROM file_tag WHERE tag_id=300001;"
                                                      "DELETE FROM tag_group_links WHERE tag_id=300001;"
                                                      "DELETE FROM tb_node_links WHERE child_id IN (SELECT "
                                                      "node_id FROM tb_nodes WHERE tag_id=300001);"
                                                      "DELETE FROM tb_nodes WHERE tag_id=300001;"
                                                      "DELETE FROM tag_relationships WHERE "
                                                      "relationship_path LIKE '300001%';"
                                                      "DELETE FROM tags WHERE tag_id=300001;"
                                                      "COMMIT"));
                 }});
}

void TagActions::selectManyTags()
{
    constexpr qint64 firstTag = 200000;
    constexpr int tags = 50000;
    const QString name = QStringLiteral("AND of 50,000 tags with as many relations");
    m_table.run({name,
                 [this] {
                     if (!m_window.manager->hasTag(firstTag)) {
                         makeRows(firstTag, tags, "tags SELECT i,'fresh '||i,'',0,NULL FROM n");
                         makeRows(firstTag, tags,
                                  "tag_relationships SELECT CASE i%50 WHEN 0 THEN '' ELSE (i-i%50)||'.' "
                                  "END||i FROM n");
                         m_window.manager->reloadAllData();
                     }
                     m_window.showAll();
                 },
                 [this] { m_window.tags->showTagsSelected(idsFrom(firstTag, tags)); },
                 [this] { sink = sink + m_flat.countTags(); }});
}
