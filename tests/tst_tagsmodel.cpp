#include "app/constants.h"
#include "models/idlistmime.h"
#include "models/taggroupmodel.h"
#include "models/tagroles.h"
#include "models/tagsgroupproxy.h"
#include "models/tagstablemodel.h"
#include "tests/support/localcollection.h"

using Ids = QVector<qint64>;

namespace {
/** The rows made by a test, which the model only borrows. */
TableData madeRows;

/** Tags with the ids first to last, named t and their id. */
TableData rowsOfTags(int first, int last)
{
    TableData rows;
    for (int id = first; id <= last; ++id) {
        auto *row = new TableRowData;
        row->setValue("tag_id"_s, id);
        row->setValue("tag_name"_s, "t%1"_s.arg(id));
        row->setValue("tag_description"_s, QString());
        row->setValue("creation_date"_s, 60 * id);
        rows.append(row);
    }
    madeRows += rows;
    return rows;
}

QStringList names(const QAbstractItemModel &model)
{
    QStringList result;
    for (int row = 0; row < model.rowCount(); ++row)
        result.append(model.index(row, 0).data().toString());
    return result;
}
} // namespace

/** The table of tags, its tabs and the list of groups, over a real collection. */
class TestTagsModel : public QObject
{
    Q_OBJECT

private slots:
    /** Tags red, green, blue; groups warm (red) and all (red, green, blue), the latter made first. */
    void init()
    {
        m_open = std::make_unique<LocalCollection>();
        const auto mode = QAbstractItemModelTester::FailureReportingMode::QtTest;
        m_tableTester = std::make_unique<QAbstractItemModelTester>(model(), mode);
        m_groupTester = std::make_unique<QAbstractItemModelTester>(m_open->tags().groupProxy(), mode);
        m_filterTester = std::make_unique<QAbstractItemModelTester>(m_open->tags().filterProxy(), mode);
        m_ids.clear();
        for (const QString &name : {"red"_s, "green"_s, "blue"_s})
            m_ids.insert(name, m_open->tags().addTag(name));
        m_ids.insert("all"_s, m_open->groups().addGroup("all"_s));
        m_ids.insert("warm"_s, m_open->groups().addGroup("warm"_s, false));
        m_open->groups().setGroupTags(idOf("all"_s), {idOf("red"_s), idOf("green"_s), idOf("blue"_s)});
        m_open->groups().setGroupTags(idOf("warm"_s), {idOf("red"_s)});
    }

    void cleanup()
    {
        m_filterTester.reset();
        m_groupTester.reset();
        m_tableTester.reset();
        m_open.reset();
        freeRows(madeRows);
        // No event loop runs here that would delete the items of removed rows.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void editsGoToTheDatabase()
    {
        QVERIFY(model()->setData(model()->index(1, 0), "  it's \"%1\"  "_s));
        QVERIFY(model()->setData(model()->index(1, 1), "a colour"_s));
        QCOMPARE(model()->index(1, 0).data().toString(), "it's \"%1\""_s);
        QCOMPARE(m_open
                     ->rows("SELECT tag_name||'|'||tag_description FROM tags "
                            "ORDER BY tag_id"_s)
                     .value(1),
                 "it's \"%1\"|a colour"_s);
    }

    void refusedEdits_data()
    {
        addColumns<int, QString>("column", "value");
        addRow("same name", 0, "red"_s);
        addRow("name of another tag", 0, "blue"_s);
        addRow("blanks alone", 0, " \t "_s);
        addRow("date", 2, "2020-01-01"_s);
        addRow("files", 3, "5"_s);
    }

    void refusedEdits()
    {
        QFETCH(int, column);
        QFETCH(QString, value);
        const QSignalSpy changes(model(), &QAbstractItemModel::dataChanged);
        QVERIFY(!model()->setData(model()->index(0, column), value));
        QCOMPARE(changes.count(), 0);
        QCOMPARE(m_open->rows("SELECT tag_name FROM tags ORDER BY tag_id"_s).value(0), "red"_s);
    }

    void knownTagsChangeInPlace()
    {
        const QPersistentModelIndex green = model()->index(1, 0);
        QSignalSpy changes(model(), &QAbstractItemModel::dataChanged);
        const QSignalSpy insertions(model(), &QAbstractItemModel::rowsInserted);
        QVERIFY(m_open->tags().renameTag(idOf("green"_s), "olive"_s));
        QCOMPARE(green.data().toString(), "olive"_s);
        QCOMPARE(insertions.count(), 0);
        QVERIFY(changes.count() > 0);
        for (const QList<QVariant> &change : qAsConst(changes)) {
            QCOMPARE(change.at(0).toModelIndex().row(), 1);
            QCOMPARE(change.at(1).toModelIndex().row(), 1);
        }
    }

    void duplicateIdsMakeNoSecondRow()
    {
        TableData rows = rowsOfTags(1, 2) + rowsOfTags(2, 3);
        rows.at(2)->setValue("tag_name"_s, "later"_s);
        QTest::ignoreMessage(QtWarningMsg, "TagsTableModel::addNewTag - adds duplicate where Id = 2");
        model()->loadTags(rows);
        QCOMPARE(names(*model()), QStringList({"t1"_s, "t2"_s, "t3"_s}));
        QTest::ignoreMessage(QtWarningMsg, "TagsTableModel::addNewTag - adds duplicate where Id = 2");
        model()->addNewTag(rows.at(2));
        QCOMPARE(names(*model()).value(1), "later"_s);
    }

    void removal_data()
    {
        addColumns<Ids, QString, int>("removed", "left", "ranges");
        addRow("none", Ids{99}, "t1,t2,t3,t4,t5"_s, 0);
        addRow("first", Ids{1}, "t2,t3,t4,t5"_s, 1);
        addRow("neighbours", Ids{3, 2}, "t1,t4,t5"_s, 1);
        addRow("every other", Ids{1, 3, 5}, "t2,t4"_s, 3);
        addRow("all", Ids{5, 4, 3, 2, 1}, QString(), 1);
    }

    void removal()
    {
        QFETCH(Ids, removed);
        model()->loadTags(rowsOfTags(1, 5));
        const QPersistentModelIndex fourth = model()->index(3, 0);
        const QSignalSpy removals(model(), &QAbstractItemModel::rowsRemoved);
        model()->removeTags(removed);
        QTEST(names(*model()).join(QLatin1Char(',')), "left");
        QTEST(removals.count(), "ranges");
        QCOMPARE(fourth.isValid(), !removed.contains(4));
        QCOMPARE(model()->rowOf(4), fourth.isValid() ? fourth.row() : -1);
    }

    void manyScatteredRemovals()
    {
        model()->loadTags(rowsOfTags(1, 1000));
        const QPersistentModelIndex kept = m_open->tags().filterProxy()->index(999, 0);
        const QPersistentModelIndex gone = m_open->tags().filterProxy()->index(998, 0);
        Ids odd;
        for (qint64 id = 1; id <= 1000; id += 2)
            odd.append(id);
        const QSignalSpy removals(model(), &QAbstractItemModel::rowsRemoved);
        model()->removeTags(odd);
        QCOMPARE(removals.count(), 0);
        QCOMPARE(m_open->tags().filterProxy()->rowCount(), 500);
        QCOMPARE(kept.row(), 499);
        QCOMPARE(kept.data().toString(), "t1000"_s);
        QVERIFY(!gone.isValid());
        QCOMPARE(model()->rowOf(1000), 499);
        QCOMPARE(model()->rowOf(999), -1);
    }

    void mark()
    {
        QSignalSpy changes(model(), &QAbstractItemModel::dataChanged);
        const Ids marked{idOf("green"_s)};
        QVERIFY(model()->setData(model()->index(0, 0), QVariant::fromValue(marked), 258));
        QCOMPARE(changes.count(), 1);
        QCOMPARE(changes.at(0).at(0).toModelIndex(), model()->index(0, 0));
        QCOMPARE(changes.at(0).at(1).toModelIndex(), model()->index(2, 0));
        QVERIFY(!model()->index(0, 0).data(Qt::DecorationRole).isValid());
        QVERIFY(model()->index(1, 3).data(Qt::DecorationRole).isValid());
        QCOMPARE(model()->index(2, 0).data(258).value<Ids>(), marked);
        QVERIFY(!model()->setData(model()->index(2, 0), QVariant::fromValue(marked), 258));

        m_open->tags().showTagsSelected({idOf("red"_s), idOf("blue"_s)});
        QVERIFY(model()->index(2, 0).data(Qt::DecorationRole).isValid());
        m_open->tags().clearMark();
        QVERIFY(!model()->index(2, 0).data(Qt::DecorationRole).isValid());
    }

    void orderAndFilter_data()
    {
        addColumns<QString, QString, QString>("added", "filter", "shown");
        addRow("numbers", "Job 10,Job 9,job 1"_s, "job"_s, "job 1,Job 9,Job 10"_s);
        addRow("accents", "zebra,\u00e4rger,axe"_s, QString(), "\u00e4rger,axe,blue,green,red,zebra"_s);
        addRow("any letters", "a1b,a22b,ab"_s, "A?*b"_s, "a1b,a22b"_s);
        addRow("one of two", "cot,cut,cat"_s, "c[ou]t"_s, "cot,cut"_s);
        addRow("open bracket", "a[1,a2"_s, "a["_s, "a[1"_s);
    }

    void orderAndFilter()
    {
        QFETCH(QString, added);
        QFETCH(QString, filter);
        for (const QString &name : added.split(QLatin1Char(',')))
            m_open->tags().addTag(name);
        m_open->tags().setTagFilter(filter);
        m_open->tags().filterProxy()->sort(0);
        QTEST(names(*m_open->tags().filterProxy()).join(QLatin1Char(',')), "shown");
    }

    void hostileDrags_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        addRow("nothing", QByteArray());
        addRow("cut in the count", QByteArray("\0\0", 2));
        addRow("count without ids", QByteArray("\x7f\xff\xff\xff", 4));
        addRow("cut in an id", QByteArray("\0\0\0\1\0\0\0\0\0\0\0", 11));
    }

    void hostileDrags()
    {
        QFETCH(QByteArray, bytes);
        QMimeData data;
        data.setData(Constants::fileMimeType, bytes);
        QCOMPARE(IdListMime::unpack(&data, Constants::fileMimeType), Ids());
        QVERIFY(model()->dropMimeData(&data, Qt::CopyAction, -1, -1, model()->index(0, 0)));
    }

    void rowsOfTabs_data()
    {
        addColumns<QString, QStringList, QString>("tab", "dTags", "rows");
        const QStringList two{"blue"_s, "red"_s};
        addRow("all tags", QString(), two, "red,green,blue"_s);
        addRow("no differing tags", "D"_s, QStringList(), QString());
        addRow("differing tags", "D"_s, two, "red,blue"_s);
        addRow("group", "warm"_s, two, "red"_s);
        addRow("group with all", "all"_s, QStringList(), "red,green,blue"_s);
        addRow("unknown group", "none"_s, two, QString());
    }

    void rowsOfTabs()
    {
        QFETCH(QString, tab);
        QFETCH(QStringList, dTags);
        TagsGroupProxy *proxy = m_open->tags().groupProxy();
        qint64 groupId = m_ids.value(tab, 4711);
        if (tab.isEmpty() || tab == QLatin1String("D"))
            groupId = tab.isEmpty() ? 0 : -1;
        proxy->setGroupId(groupId);
        Ids ids;
        for (const QString &name : qAsConst(dTags))
            ids.append(idOf(name));
        proxy->setDTagIds(ids);
        QTEST(names(*proxy).join(QLatin1Char(',')), "rows");
        proxy->setGroupId(0);
        QCOMPARE(proxy->rowCount(), 3);
    }

    void tabsFollowTheGroups()
    {
        TagsGroupProxy *proxy = m_open->tags().groupProxy();
        const qint64 warm = idOf("warm"_s);
        proxy->setGroupId(warm);
        QSignalSpy changes(model(), &QAbstractItemModel::dataChanged);
        m_open->groups().assignTags({idOf("blue"_s)}, {warm});
        QCOMPARE(names(*proxy), QStringList({"red"_s, "blue"_s}));
        QCOMPARE(changes.count(), 1);
        m_open->groups().setGroupTags(warm, {idOf("green"_s)});
        QCOMPARE(names(*proxy), QStringList("green"_s));
        QCOMPARE(model()->index(1, 0).data(259).value<Ids>(), Ids({idOf("all"_s), warm}));
        m_open->groups().removeGroups({warm});
        QCOMPARE(proxy->rowCount(), 0);
        QCOMPARE(model()->index(1, 0).data(259).value<Ids>(), Ids{idOf("all"_s)});
    }

    void reloadKeepsGroups()
    {
        m_open->tags().load();
        QCOMPARE(model()->index(0, 0).data(TagRoles::Groups).value<Ids>().size(), 2);
        (*m_open)->load();
        QCOMPARE(names(*model()), QStringList({"red"_s, "green"_s, "blue"_s}));
        QCOMPARE(model()->index(0, 0).data(TagRoles::Groups).value<Ids>().size(), 2);
    }

    void groupList()
    {
        TagGroupModel *groups = m_open->groups().model();
        const QAbstractItemModelTester tester(groups, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(names(*groups), QStringList({"all"_s, "warm"_s}));
        QCOMPARE(groups->index(0, 1).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
        QCOMPARE(groups->index(1, 1).data(GroupRoles::Value).toInt(), int(Qt::Unchecked));
        QCOMPARE(groups->index(1, 1).data(GroupRoles::GroupId).toLongLong(), idOf("warm"_s));

        QSignalSpy changes(groups, &QAbstractItemModel::dataChanged);
        QVERIFY(groups->setData(groups->index(1, 1), Qt::Checked, Qt::CheckStateRole));
        QVERIFY(groups->setData(groups->index(1, 0), "hot"_s));
        QCOMPARE(changes.count(), 2);
        QCOMPARE(m_open->groups().tabOrder(), QList<int>({int(idOf("all"_s)), int(idOf("warm"_s))}));
        QVERIFY(m_open->groups().addGroup("cold"_s) > 0);
        m_open->groups().removeGroups({idOf("all"_s)});
        QCOMPARE(names(*groups), QStringList({"hot"_s, "cold"_s}));
        (*m_open)->load();
        QCOMPARE(names(*groups), QStringList({"hot"_s, "cold"_s}));
    }

private:
    TagsTableModel *model() const { return m_open->tags().tableModel(); }
    qint64 idOf(const QString &name) const { return m_ids.value(name); }

    std::unique_ptr<LocalCollection> m_open;
    std::unique_ptr<QAbstractItemModelTester> m_tableTester;
    std::unique_ptr<QAbstractItemModelTester> m_groupTester;
    std::unique_ptr<QAbstractItemModelTester> m_filterTester;
    QHash<QString, qint64> m_ids;
};

QTEST_MAIN(TestTagsModel)
#include "tst_tagsmodel.moc"
