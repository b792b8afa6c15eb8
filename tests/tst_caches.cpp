#include "core/recordtypes.h"
#include "db/caches/filecache.h"
#include "db/caches/groupcache.h"
#include "db/caches/nodecache.h"
#include "db/caches/relationcache.h"
#include "db/caches/tagcache.h"

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
                    {"node_name", QStringLiteral("node %1").arg(id)},
                    {"node_parent_id", parentId}});
}

const QStringList fileColumns = {
    QStringLiteral("file_id"),      QStringLiteral("file_name"),     QStringLiteral("file_description"),
    QStringLiteral("file_size"),    QStringLiteral("addition_date"), QStringLiteral("modification_date"),
    QStringLiteral("id_code"),      QStringLiteral("load_id"),       QStringLiteral("storage_id"),
    QStringLiteral("thumbnail_id"), QStringLiteral("data_checksum"), QStringLiteral("internal"),
    QStringLiteral("tag_id"),       QStringLiteral("path_id"),       QStringLiteral("path"),
    QStringLiteral("rel_path")};

TableRowData *fileRow(qint64 id, const QString &name, qint64 tagId, int internal = 0)
{
    auto *row = new TableRowData(fileColumns);
    row->setValues({id, name, QString(), 10, 100, 200, QStringLiteral("abcdefg"), 1, 5, 0, 77, internal,
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
    void knownTagKeepsItsRow();
    void tagNamesFollowRenamesAndRemovals();
    void groupIsCompleteWhenItIsAnnounced();
    void updatedGroupKeepsItsTab();
    void nodesAreLinkedWhateverTheirOrder();
    void damagedParentsMakeTopLevelNodes_data();
    void damagedParentsMakeTopLevelNodes();
    void newBranchIsAnnouncedAtItsTopOnly();
    void mergedNodeMovesToItsNewParent();
    void movingANodeBelowItselfIsRefused();
    void takenNodesLeaveTheirChildrenBehind();
    void filesLoadOverTheBordersOfSlices();
    void abandonedLoadKeepsTheFiles();
    void mergeReportsChangedAndNewFiles();
    void onlyExternalFilesHavePaths();
    void forgottenTagsLeaveTheFiles();
    void removedFileIsNoLongerMissing();
    void relationPathsFindTheirParents();
    void takenPathTakesAllBelow();
    void pathsWithATagMeetWholePieces();
};

void TestCaches::knownTagKeepsItsRow()
{
    TagCache cache;
    qDeleteAll(cache.replaceAll({tagRow(1, QStringLiteral("a")), tagRow(2, QStringLiteral("b"))}));
    TableRowData *row = cache.row(1);
    QSignalSpy updated(row, &TableRowData::dataUpdated);
    const TagCache::Merge merge =
        cache.merge({tagRow(1, QStringLiteral("A")), tagRow(3, QStringLiteral("c"))});
    QCOMPARE(cache.row(1), row);
    QCOMPARE(updated.size(), 1);
    QCOMPARE(updated.first().first().toString(), QStringLiteral("tag_name"));
    QCOMPARE(merge.newNames, (QHash<qint64, QString>{{1, QStringLiteral("A")}}));
    QCOMPARE(merge.added, TableData{cache.row(3)});
    QCOMPARE(cache.rows().size(), 3);
}

void TestCaches::tagNamesFollowRenamesAndRemovals()
{
    TagCache cache;
    const QString twice = QStringLiteral("twice");
    qDeleteAll(cache.replaceAll({tagRow(1, twice), tagRow(2, twice)}));
    QVERIFY(!cache.hasName(QStringLiteral("Twice")));
    qDeleteAll(cache.take({1}));
    QVERIFY(cache.hasName(twice));
    cache.merge({tagRow(2, QStringLiteral("once"))});
    QVERIFY(!cache.hasName(twice));
    QCOMPARE(cache.name(2), QStringLiteral("once"));
    QCOMPARE(cache.name(1), QString());
}

void TestCaches::groupIsCompleteWhenItIsAnnounced()
{
    GroupCache cache;
    QVector<int> sizes;
    connect(&cache.map(), &SignalContainer::itemInserted, this,
            [&](const QVariant &id) { sizes.append(cache.map().value(id.toLongLong())->tags().size()); });
    const QString name = QStringLiteral("name");
    const Rows rows = {makeRow({{"tag_group_id", 1}, {"name", name}, {"tag_id", 5}}),
                       makeRow({{"tag_group_id", 2}, {"name", name}, {"tag_id", QVariant()}}),
                       makeRow({{"tag_group_id", 1}, {"name", name}, {"tag_id", 6}})};
    cache.replaceAll(rows);
    QCOMPARE(sizes, QVector<int>({2, 0}));
}

void TestCaches::updatedGroupKeepsItsTab()
{
    GroupCache cache;
    const Rows before = {makeRow({{"tag_group_id", 1}, {"name", QStringLiteral("x")}, {"tag_id", 5}})};
    cache.replaceAll(before);
    GroupItem *group = cache.map().value(1);
    group->setVisible(true);
    const Rows after = {makeRow({{"tag_group_id", 1}, {"name", QStringLiteral("y")}, {"tag_id", 6}})};
    cache.merge(after);
    QCOMPARE(cache.map().value(1), group);
    QVERIFY(group->isVisible());
    QCOMPARE(group->name(), QStringLiteral("y"));
    QCOMPARE(group->tags(), QVector<qint64>{6});
    cache.forgetTags({6, 7});
    QVERIFY(group->tags().isEmpty());
}

void TestCaches::nodesAreLinkedWhateverTheirOrder()
{
    NodeCache cache;
    const Rows rows = {nodeRow(4, 3), nodeRow(3, 1), nodeRow(1, 0), nodeRow(2, 1), nodeRow(0, 0)};
    cache.replaceAll(rows);
    QCOMPARE(cache.map().size(), 4);
    QCOMPARE(childIds(cache.map().value(1)), QVector<qint64>({2, 3}));
    QCOMPARE(cache.map().value(4)->parentNode(), cache.map().value(3));
    QVERIFY(!cache.map().value(1)->parentNode());
}

void TestCaches::damagedParentsMakeTopLevelNodes_data()
{
    QTest::addColumn<QVector<qint64>>("parents"); // of the nodes 1, 2, 3
    QTest::addColumn<int>("topLevel");
    QTest::newRow("its own parent") << QVector<qint64>{1, 1, 0} << 2;
    QTest::newRow("unknown parent") << QVector<qint64>{99, 1, 2} << 1;
    QTest::newRow("two in a circle") << QVector<qint64>{2, 1, 0} << 2;
    QTest::newRow("three in a circle") << QVector<qint64>{2, 3, 1} << 1;
    QTest::newRow("a tail on a circle") << QVector<qint64>{2, 3, 2} << 1;
}

void TestCaches::damagedParentsMakeTopLevelNodes()
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

void TestCaches::newBranchIsAnnouncedAtItsTopOnly()
{
    NodeCache cache;
    const Rows before = {nodeRow(1, 0)};
    cache.replaceAll(before);
    QSignalSpy added(cache.map().value(1), &TBnode::childrenNodesAdded);
    const Rows rows = {nodeRow(3, 2), nodeRow(2, 1), nodeRow(4, 1), nodeRow(5, 0)};
    const Map<qint64, TBnode *> merged = cache.merge(rows);
    QCOMPARE(added.size(), 1);
    QCOMPARE(childIds(cache.map().value(1)), QVector<qint64>({2, 4}));
    QCOMPARE(childIds(cache.map().value(2)), QVector<qint64>{3});
    QCOMPARE(merged.keys(), QList<qint64>({2, 3, 4, 5}));
}

void TestCaches::mergedNodeMovesToItsNewParent()
{
    NodeCache cache;
    const Rows before = {nodeRow(1, 0), nodeRow(2, 0), nodeRow(3, 1)};
    cache.replaceAll(before);
    const Rows rows = {makeRow({{"node_id", 3},
                                {"tag_id", 1},
                                {"tr_options", 0},
                                {"inverted", 1},
                                {"node_name", QStringLiteral("new")},
                                {"node_parent_id", 2}})};
    cache.merge(rows);
    const TBnode *node = cache.map().value(3);
    QCOMPARE(node->parentNode(), cache.map().value(2));
    QVERIFY(cache.map().value(1)->children().isEmpty());
    QVERIFY(node->isInverted());
    QVERIFY(!node->trOption());
    QCOMPARE(node->name(), QStringLiteral("new"));
}

void TestCaches::movingANodeBelowItselfIsRefused()
{
    NodeCache cache;
    const Rows rows = {nodeRow(1, 0), nodeRow(2, 1), nodeRow(3, 0)};
    cache.replaceAll(rows);
    QCOMPARE(cache.move({1, 3}, 2).keys(), QList<qint64>{3});
    QVERIFY(!cache.map().value(1)->parentNode());
    QCOMPARE(childIds(cache.map().value(2)), QVector<qint64>{3});
}

void TestCaches::takenNodesLeaveTheirChildrenBehind()
{
    NodeCache cache;
    const Rows rows = {nodeRow(1, 0), nodeRow(2, 1), nodeRow(3, 2), nodeRow(4, 2)};
    cache.replaceAll(rows);
    QSignalSpy deleted(&cache.map(), &SignalContainer::itemDeleted);
    const NodeCache::Removal removal = cache.take({2, 3, 77});
    QCOMPARE(deleted.size(), 2);
    QCOMPARE(removal.removed.size(), 2);
    QCOMPARE(removal.orphaned.keys(), QList<qint64>{4});
    QVERIFY(!cache.map().value(4)->parentNode());
    QVERIFY(cache.map().value(1)->children().isEmpty());
    qDeleteAll(removal.removed);
}

void TestCaches::filesLoadOverTheBordersOfSlices()
{
    FileCache cache;
    const Rows first = {fileRow(1, QStringLiteral("a"), 11), tagOnlyRow(1, 12),
                        fileRow(2, QStringLiteral("b"), 0), fileRow(3, QStringLiteral("c"), 11)};
    const Rows second = {tagOnlyRow(3, 13), fileRow(4, QStringLiteral("d"), 12)};
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
    QCOMPARE(cache.map().value(3)->path(), QStringLiteral("/folder/c"));
}

void TestCaches::abandonedLoadKeepsTheFiles()
{
    FileCache cache;
    const Rows rows = {fileRow(1, QStringLiteral("a"), 11)};
    cache.merge(rows);
    cache.beginLoad();
    const Rows others = {fileRow(2, QStringLiteral("b"), 12), tagOnlyRow(2, 13)};
    cache.addSlice(others);
    cache.abandonLoad();
    QCOMPARE(cache.map().keys(), QList<qint64>{1});
    cache.beginLoad();
    const QList<File *> old = cache.finishLoad();
    QCOMPARE(old.size(), 1);
    QVERIFY(cache.map().isEmpty());
    qDeleteAll(old);
}

void TestCaches::mergeReportsChangedAndNewFiles()
{
    FileCache cache;
    const Rows before = {fileRow(1, QStringLiteral("same"), 11), fileRow(2, QStringLiteral("renamed"), 0),
                         fileRow(3, QStringLiteral("tagged"), 11), tagOnlyRow(3, 12)};
    cache.merge(before);
    QSignalSpy tags(cache.map().value(3), &File::fileTagsChanged);
    const Rows after = {fileRow(1, QStringLiteral("same"), 11), fileRow(2, QStringLiteral("other.pdf"), 0),
                        fileRow(3, QStringLiteral("tagged"), 12), tagOnlyRow(3, 13),
                        fileRow(9, QStringLiteral("new"), 0)};
    const FileCache::Merge merge = cache.merge(after);
    QCOMPARE(merge.changed, QVector<qint64>({2, 3}));
    QCOMPARE(merge.added.keys(), QList<qint64>{9});
    QCOMPARE(tags.size(), 1);
    QCOMPARE(cache.map().value(3)->tags(), QVector<qint64>({12, 13}));
    QCOMPARE(cache.map().value(2)->type(), QStringLiteral(".pdf"));
}

void TestCaches::onlyExternalFilesHavePaths()
{
    FileCache cache;
    const Rows rows = {fileRow(1, QStringLiteral("a"), 0, 0), fileRow(2, QStringLiteral("b"), 0, 1),
                       fileRow(3, QStringLiteral("c"), 0, 2)};
    cache.merge(rows);
    QCOMPARE(cache.map().value(1)->path(), QStringLiteral("/folder/a"));
    QCOMPARE(cache.map().value(2)->path(), QString());
    QCOMPARE(cache.map().value(3)->relPath(), QString());
}

void TestCaches::forgottenTagsLeaveTheFiles()
{
    FileCache cache;
    const Rows rows = {fileRow(1, QStringLiteral("a"), 11), tagOnlyRow(1, 12), tagOnlyRow(1, 13),
                       fileRow(2, QStringLiteral("b"), 14)};
    cache.merge(rows);
    QCOMPARE(cache.forgetTags({11, 13, 99}), QVector<qint64>{1});
    QCOMPARE(cache.map().value(1)->tags(), QVector<qint64>{12});
}

void TestCaches::removedFileIsNoLongerMissing()
{
    FileCache cache;
    const Rows rows = {fileRow(1, QStringLiteral("a"), 0), fileRow(2, QStringLiteral("b"), 0)};
    cache.merge(rows);
    QCOMPARE(cache.setMissing({2, 1, 50}, true), QVector<qint64>({2, 1}));
    qDeleteAll(cache.take({2, 60}));
    QVERIFY(!cache.isMissing(2));
    QCOMPARE(cache.setMissing({1, 2}, false), QVector<qint64>{1});
}

void TestCaches::relationPathsFindTheirParents()
{
    RelationCache cache;
    cache.replaceAll({QStringLiteral("7.12.3"), QStringLiteral("7"), QStringLiteral("7.12"),
                      QStringLiteral("71"), QStringLiteral("5.8")},
                     [](qint64 id) { return QString::number(id * 2); });
    QCOMPARE(cache.node(QStringLiteral("7.12.3"))->ancestorIds(), QVector<qint64>({7, 12}));
    QCOMPARE(cache.node(QStringLiteral("7.12"))->name(), QStringLiteral("24"));
    // A place without its parent's row stands at the top rather than nowhere.
    QVERIFY(!cache.node(QStringLiteral("5.8"))->parentNode());
    const RelationCache::Nodes added = cache.add({QStringLiteral("7.12.3"), QStringLiteral("7.1")}, noName);
    QCOMPARE(pathsOf(added), QStringList{QStringLiteral("7.1")});
}

void TestCaches::takenPathTakesAllBelow()
{
    RelationCache cache;
    cache.replaceAll({QStringLiteral("7"), QStringLiteral("7.12"), QStringLiteral("7.12.3"),
                      QStringLiteral("7.120"), QStringLiteral("12")},
                     noName);
    QSignalSpy removed(cache.node(QStringLiteral("7")), &TRnode::childrenNodesRemoved);
    qDeleteAll(cache.take({QStringLiteral("7.12"), QStringLiteral("8")}));
    QCOMPARE(removed.size(), 1);
    QCOMPARE(pathsOf(cache.nodes()),
             QStringList({QStringLiteral("12"), QStringLiteral("7"), QStringLiteral("7.120")}));
    QVERIFY(!cache.contains(QStringLiteral("7.12.3")));
}

void TestCaches::pathsWithATagMeetWholePieces()
{
    RelationCache cache;
    const QStringList hits = {QStringLiteral("1"), QStringLiteral("1.2"), QStringLiteral("5.1"),
                              QStringLiteral("5.1.2")};
    cache.replaceAll(hits + QStringList{QStringLiteral("11"), QStringLiteral("21"), QStringLiteral("21.5"),
                                        QStringLiteral("5"), QStringLiteral("5.21")},
                     noName);
    QCOMPARE(cache.pathsWith({1}), hits);
    QCOMPARE(cache.pathsWith({99}), QStringList());
}

QTEST_GUILESS_MAIN(TestCaches)
#include "tst_caches.moc"
