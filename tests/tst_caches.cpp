#include "core/recordtypes.h"
#include "db/caches/filecache.h"
#include "db/caches/groupcache.h"
#include "db/caches/nodecache.h"
#include "db/caches/relationcache.h"
#include "db/caches/tagcache.h"
#include "tests/support/text.h"

#include <QSignalSpy>
#include <QTest>

namespace {
using Values = QVector<QPair<const char *, QVariant>>;

TableRowData *makeRow(const Values &values)
{
    auto *row = new TableRowData;
    for (const auto &value : values)
        row->setValue(QLatin1String(value.first), value.second);
    return row;
}

TableRowData *tagRow(qint64 id, const QString &name)
{
    return makeRow({{"tag_id", id}, {"tag_name", name}, {"tag_description", QString()}});
}

TableRowData *nodeRow(qint64 id, qint64 parentId, qint64 tagId = 1)
{
    return makeRow({{"node_id", id},
                    {"tag_id", tagId},
                    {"tr_options", 1},
                    {"inverted", 0},
                    {"node_name", "node %1"_s.arg(id)},
                    {"node_parent_id", parentId}});
}

const QStringList fileColumns = {
    "file_id"_s,           "file_name"_s, "file_description"_s, "file_size"_s,  "addition_date"_s,
    "modification_date"_s, "id_code"_s,   "load_id"_s,          "storage_id"_s, "thumbnail_id"_s,
    "data_checksum"_s,     "internal"_s,  "tag_id"_s,           "path_id"_s,    "path"_s,
    "rel_path"_s};

TableRowData *fileRow(qint64 id, const QString &name, qint64 tagId, int internal = 0)
{
    auto *row = new TableRowData(fileColumns);
    row->setValues({id, name, QString(), 10, 100, 200, "abcdefg"_s, 1, 5, 0, 77, internal,
                    tagId > 0 ? QVariant(tagId) : QVariant(QVariant::LongLong), 5,
                    QString(QLatin1String("/folder/") + name), name});
    return row;
}

/** A further tag of the file in the row before: nothing but the new is in it. */
TableRowData *tagOnlyRow(qint64 id, qint64 tagId)
{
    auto *row = new TableRowData(fileColumns);
    row->setAt(0, id);
    row->setAt(12, tagId);
    return row;
}

/** A table that frees its rows. */
struct Rows : TableData
{
    Rows(std::initializer_list<TableRowData *> rows) : TableData(rows) {}
    ~Rows() { qDeleteAll(*this); }
    Rows(const Rows &) = delete;
    Rows &operator=(const Rows &) = delete;
};

QVector<qint64> childIds(const TBnode *node)
{
    QVector<qint64> ids;
    for (const TBnode *child : node->children())
        ids.append(child->id());
    std::sort(ids.begin(), ids.end());
    return ids;
}

QStringList pathsOf(const RelationCache::Nodes &nodes)
{
    QStringList paths;
    for (const auto &item : nodes)
        paths.append(item.first);
    return paths;
}

QString noName(qint64)
{
    return {};
}
} // namespace

/** How the answers of the providers become records. */
class TestCaches : public QObject
{
    Q_OBJECT

private slots:
    void knownTagKeepsItsRow()
    {
        TagCache cache;
        qDeleteAll(cache.replaceAll({tagRow(1, "a"_s), tagRow(2, "b"_s)}));
        TableRowData *row = cache.row(1);
        QSignalSpy updated(row, &TableRowData::dataUpdated);
        const TagCache::Merge merge = cache.merge({tagRow(1, "A"_s), tagRow(3, "c"_s)});
        QCOMPARE(cache.row(1), row);
        QCOMPARE(updated.size(), 1);
        QCOMPARE(updated.first().first().toString(), "tag_name"_s);
        QCOMPARE(merge.newNames, (QHash<qint64, QString>{{1, "A"_s}}));
        QCOMPARE(merge.added, TableData{cache.row(3)});
        QCOMPARE(cache.rows().size(), 3);
    }

    void updatedGroupKeepsItsTab()
    {
        GroupCache cache;
        const Rows before = {makeRow({{"tag_group_id", 1}, {"name", "x"_s}, {"tag_id", 5}})};
        cache.replaceAll(before);
        GroupItem *group = cache.map().value(1);
        group->setVisible(true);
        const Rows after = {makeRow({{"tag_group_id", 1}, {"name", "y"_s}, {"tag_id", 6}})};
        cache.merge(after);
        QCOMPARE(cache.map().value(1), group);
        QVERIFY(group->isVisible());
        QCOMPARE(group->name(), "y"_s);
        QCOMPARE(group->tags(), QVector<qint64>{6});
        cache.forgetTags({6, 7});
        QVERIFY(group->tags().isEmpty());
    }

    void damagedParentsMakeTopLevelNodes_data()
    {
        QTest::addColumn<QVector<qint64>>("parents"); // of the nodes 1, 2, 3
        QTest::addColumn<int>("topLevel");
        addRow("its own parent", QVector<qint64>{1, 1, 0}, 2);
        addRow("unknown parent", QVector<qint64>{99, 1, 2}, 1);
        addRow("two in a circle", QVector<qint64>{2, 1, 0}, 2);
        addRow("three in a circle", QVector<qint64>{2, 3, 1}, 1);
        addRow("a tail on a circle", QVector<qint64>{2, 3, 2}, 1);
    }

    void damagedParentsMakeTopLevelNodes()
    {
        QFETCH(QVector<qint64>, parents);
        NodeCache cache;
        const Rows rows = {nodeRow(1, parents.at(0)), nodeRow(2, parents.at(1)), nodeRow(3, parents.at(2))};
        cache.replaceAll(rows);
        int topLevel = 0;
        int reached = 0;
        for (const TBnode *node : qAsConst(cache.map())) {
            if (node->parentNode())
                continue;
            ++topLevel;
            reached += 1 + node->descendantIds().size();
        }
        QTEST(topLevel, "topLevel");
        QCOMPARE(reached, 3);
    }

    void mergedNodeMovesToItsNewParent()
    {
        NodeCache cache;
        const Rows before = {nodeRow(1, 0), nodeRow(2, 0), nodeRow(3, 1)};
        cache.replaceAll(before);
        const Rows rows = {makeRow({{"node_id", 3},
                                    {"tag_id", 1},
                                    {"tr_options", 0},
                                    {"inverted", 1},
                                    {"node_name", "new"_s},
                                    {"node_parent_id", 2}})};
        cache.merge(rows);
        const TBnode *node = cache.map().value(3);
        QCOMPARE(node->parentNode(), cache.map().value(2));
        QVERIFY(cache.map().value(1)->children().isEmpty());
        QVERIFY(node->isInverted());
        QVERIFY(!node->trOption());
        QCOMPARE(node->name(), "new"_s);
    }

    void movingANodeBelowItselfIsRefused()
    {
        NodeCache cache;
        const Rows rows = {nodeRow(1, 0), nodeRow(2, 1), nodeRow(3, 0)};
        cache.replaceAll(rows);
        QCOMPARE(cache.move({1, 3}, 2).keys(), QList<qint64>{3});
        QVERIFY(!cache.map().value(1)->parentNode());
        QCOMPARE(childIds(cache.map().value(2)), QVector<qint64>{3});
    }

    void filesLoadOverTheBordersOfSlices()
    {
        FileCache cache;
        const Rows first = {fileRow(1, "a"_s, 11), tagOnlyRow(1, 12), fileRow(2, "b"_s, 0),
                            fileRow(3, "c"_s, 11)};
        const Rows second = {tagOnlyRow(3, 13), fileRow(4, "d"_s, 12)};
        cache.beginLoad();
        cache.addSlice(first);
        cache.addSlice(second);
        QVERIFY(cache.map().isEmpty());
        QVERIFY(cache.finishLoad().isEmpty());
        QCOMPARE(cache.map().keys(), QList<qint64>({1, 2, 3, 4}));
        QCOMPARE(cache.map().value(1)->tags(), QVector<qint64>({11, 12}));
        QVERIFY(cache.map().value(2)->tags().isEmpty());
        QCOMPARE(cache.map().value(3)->tags(), QVector<qint64>({11, 13}));
        QCOMPARE(cache.map().value(4)->tags(), QVector<qint64>{12});
        QCOMPARE(cache.map().value(3)->path(), "/folder/c"_s);
    }

    void abandonedLoadKeepsTheFiles()
    {
        FileCache cache;
        const Rows rows = {fileRow(1, "a"_s, 11)};
        cache.merge(rows);
        cache.beginLoad();
        const Rows others = {fileRow(2, "b"_s, 12), tagOnlyRow(2, 13)};
        cache.addSlice(others);
        cache.abandonLoad();
        QCOMPARE(cache.map().keys(), QList<qint64>{1});
        cache.beginLoad();
        const QList<File *> old = cache.finishLoad();
        QCOMPARE(old.size(), 1);
        QVERIFY(cache.map().isEmpty());
        qDeleteAll(old);
    }

    void mergeReportsChangedAndNewFiles()
    {
        FileCache cache;
        const Rows before = {fileRow(1, "same"_s, 11), fileRow(2, "renamed"_s, 0), fileRow(3, "tagged"_s, 11),
                             tagOnlyRow(3, 12)};
        cache.merge(before);
        QSignalSpy tags(cache.map().value(3), &File::fileTagsChanged);
        const Rows after = {fileRow(1, "same"_s, 11), fileRow(2, "other.pdf"_s, 0),
                            fileRow(3, "tagged"_s, 12), tagOnlyRow(3, 13), fileRow(9, "new"_s, 0)};
        const FileCache::Merge merge = cache.merge(after);
        QCOMPARE(merge.changed, QVector<qint64>({2, 3}));
        QCOMPARE(merge.added.keys(), QList<qint64>{9});
        QCOMPARE(tags.size(), 1);
        QCOMPARE(cache.map().value(3)->tags(), QVector<qint64>({12, 13}));
        QCOMPARE(cache.map().value(2)->type(), ".pdf"_s);
    }

    void removedFileIsNoLongerMissing()
    {
        FileCache cache;
        const Rows rows = {fileRow(1, "a"_s, 0), fileRow(2, "b"_s, 0)};
        cache.merge(rows);
        QCOMPARE(cache.setMissing({2, 1, 50}, true), QVector<qint64>({2, 1}));
        qDeleteAll(cache.take({2, 60}));
        QVERIFY(!cache.isMissing(2));
        QCOMPARE(cache.setMissing({1, 2}, false), QVector<qint64>{1});
    }

    void relationPathsFindTheirParents()
    {
        RelationCache cache;
        cache.replaceAll({"7.12.3"_s, "7"_s, "7.12"_s, "71"_s, "5.8"_s},
                         [](qint64 id) { return QString::number(id * 2); });
        QCOMPARE(cache.node("7.12.3"_s)->ancestorIds(), QVector<qint64>({7, 12}));
        QCOMPARE(cache.node("7.12"_s)->name(), "24"_s);
        // A place without its parent's row stands at the top rather than nowhere.
        QVERIFY(!cache.node("5.8"_s)->parentNode());
        const RelationCache::Nodes added = cache.add({"7.12.3"_s, "7.1"_s}, noName);
        QCOMPARE(pathsOf(added), QStringList{"7.1"_s});
    }
};

QTEST_GUILESS_MAIN(TestCaches)
#include "tst_caches.moc"
