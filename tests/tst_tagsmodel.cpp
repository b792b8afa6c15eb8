#include "app/settings/constants.h"
#include "models/base/idlistmime.h"
#include "models/tags/taggroupmodel.h"
#include "models/tags/tagsgroupproxy.h"
#include "models/tags/tagstablemodel.h"
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

QString names(const QAbstractItemModel &model)
{
    QStringList result;
    for (int row = 0; row < model.rowCount(); ++row)
        result.append(model.index(row, 0).data().toString());
    return result.join(QLatin1Char(','));
}
} // namespace

/**
 * The table of tags, its tabs and the list of groups, over a collection with the tags red (1), green (2) and
 * blue (3), and the groups all (1), which holds the three and is a tab, and warm (2), which holds red.
 */
class TestTagsModel : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_open = std::make_unique<LocalCollection>();
        QAbstractItemModel *const models[] = {table(), proxy(), filter(), m_open->groups().model()};
        for (QAbstractItemModel *model : models)
            new QAbstractItemModelTester(model, QAbstractItemModelTester::FailureReportingMode::QtTest,
                                         model);
        m_open->addTags({"red"_s, "green"_s, "blue"_s});
        m_open->groups().setGroupTags(m_open->groups().addGroup("all"_s), {1, 2, 3});
        m_open->groups().setGroupTags(m_open->groups().addGroup("warm"_s, false), {1});
    }

    void cleanup()
    {
        m_open.reset();
        freeRows(madeRows);
        // No event loop runs here that would delete the items of removed rows.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void edits_data()
    {
        addColumns<int, QString, QString>("column", "value", "stored"); // as name and description
        addRow("name", 0, "  it's \"%1\"  "_s, "it's \"%1\"|"_s);
        addRow("description", 1, " a\n colour"_s, "green| a\n colour"_s);
        addRow("name of another tag", 0, "blue"_s, "green|"_s);
        addRow("blanks alone", 0, " \t "_s, "green|"_s);
        addRow("date", 2, "2020-01-01"_s, "green|"_s);
    }

    void edits()
    {
        QFETCH(int, column);
        QFETCH(QString, value);
        QFETCH(QString, stored);
        const QPersistentModelIndex green = cell(1);
        QSignalSpy changes(table(), &QAbstractItemModel::dataChanged);
        const bool isChange = stored != QLatin1String("green|");
        QCOMPARE(table()->setData(cell(1, column), value), isChange);
        QCOMPARE(m_open->value("SELECT tag_name||'|'||tag_description FROM tags WHERE tag_id=2"), stored);
        QCOMPARE(green.data().toString() + QLatin1Char('|') + cell(1, 1).data().toString(), stored);
        QCOMPARE(changes.isEmpty(), !isChange);
        for (const QList<QVariant> &change : qAsConst(changes))
            QVERIFY(change.at(0).toModelIndex().row() == 1 && change.at(1).toModelIndex().row() == 1);
    }

    void duplicateIdsMakeNoSecondRow()
    {
        const TableData rows = rowsOfTags(1, 2) + rowsOfTags(2, 3);
        rows.at(2)->setValue("tag_name"_s, "later"_s);
        for (int i = 0; i < 2; ++i)
            QTest::ignoreMessage(QtWarningMsg, "TagsTableModel::addNewTag - adds duplicate where Id = 2");
        table()->loadTags(rows);
        QCOMPARE(names(*table()), "t1,t2,t3"_s);
        table()->addNewTag(rows.at(2));
        QCOMPARE(names(*table()), "t1,later,t3"_s);
    }

    void removal_data()
    {
        addColumns<int, Ids, int>("count", "removed", "ranges");
        addRow("none", 5, Ids{99}, 0);
        addRow("first", 5, Ids{1}, 1);
        addRow("neighbours", 5, Ids{3, 2}, 1);
        addRow("every other", 5, Ids{1, 3, 5}, 3);
        addRow("all", 5, Ids{5, 4, 3, 2, 1}, 1);
        Ids odd;
        for (qint64 id = 1; id <= 1000; id += 2)
            odd.append(id);
        addRow("so many that they go in one", 1000, odd, 0);
    }

    void removal()
    {
        QFETCH(int, count);
        QFETCH(Ids, removed);
        table()->loadTags(rowsOfTags(1, count));
        QVector<QPersistentModelIndex> seen;
        for (int row = 0; row < count; ++row)
            seen.append(filter()->index(row, 0));
        const QSignalSpy removals(table(), &QAbstractItemModel::rowsRemoved);
        table()->removeTags(removed);
        QTEST(removals.count(), "ranges");
        int left = 0;
        for (int id = 1; id <= count; ++id) {
            const bool isGone = removed.contains(id);
            QCOMPARE(table()->rowOf(id), isGone ? -1 : left++);
            QCOMPARE(seen.at(id - 1).data().toString(), isGone ? QString() : "t%1"_s.arg(id));
        }
        QCOMPARE(filter()->rowCount(), left);
    }

    void mark()
    {
        QSignalSpy changes(table(), &QAbstractItemModel::dataChanged);
        const QVariant green = QVariant::fromValue(Ids{2});
        QVERIFY(table()->setData(cell(0), green, 258));
        QVERIFY(!table()->setData(cell(2), green, 258));
        QCOMPARE(changes.count(), 1);
        QCOMPARE(changes.at(0).at(0).toModelIndex(), cell(0));
        QCOMPARE(changes.at(0).at(1).toModelIndex(), cell(2, 3));
        QCOMPARE(cell(2).data(258), green);
        QVERIFY(!isMarked(0) && isMarked(1));
        m_open->tags().showTagsSelected({1, 3});
        QVERIFY(isMarked(0) && !isMarked(1) && isMarked(2));
        m_open->tags().removeTags({3});
        QCOMPARE(cell(0).data(258).value<Ids>(), Ids{1}); // a new tag may get the id again
        m_open->tags().clearMark();
        QVERIFY(!isMarked(0));
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
        m_open->addTags(added.split(QLatin1Char(',')));
        m_open->tags().setTagFilter(filter);
        this->filter()->sort(0);
        QTEST(names(*this->filter()), "shown");
    }

    void hostileDrags()
    {
        // Nothing, cut in the count, a count without ids, cut in an id.
        for (const char *hex : {"", "0000", "7fffffff", "0000000100000000000000"}) {
            QMimeData data;
            data.setData(Constants::fileMimeType, QByteArray::fromHex(hex));
            QCOMPARE(IdListMime::unpack(&data, Constants::fileMimeType), Ids());
            QVERIFY(table()->dropMimeData(&data, Qt::CopyAction, -1, -1, cell(0)));
        }
    }

    void tabs()
    {
        proxy()->setDTagIds({3, 1});
        QCOMPARE(names(*proxy()), "red,green,blue"_s);
        proxy()->setGroupId(-1);
        QCOMPARE(names(*proxy()), "red,blue"_s);
        proxy()->setDTagIds({});
        QCOMPARE(names(*proxy()), QString());
        proxy()->setGroupId(4711);
        QCOMPARE(names(*proxy()), QString());
        proxy()->setGroupId(2);
        QCOMPARE(names(*proxy()), "red"_s);

        const QSignalSpy changes(table(), &QAbstractItemModel::dataChanged);
        m_open->groups().assignTags({3, 2}, {2});
        QCOMPARE(names(*proxy()), "red,green,blue"_s);
        QCOMPARE(changes.count(), 1);
        m_open->groups().setGroupTags(2, {2});
        (*m_open)->load();
        QCOMPARE(names(*proxy()), "green"_s);
        QCOMPARE(cell(1).data(259).value<Ids>(), Ids({1, 2}));
        m_open->groups().removeGroups({2});
        QCOMPARE(proxy()->rowCount(), 0);
        QCOMPARE(cell(1).data(259).value<Ids>(), Ids{1});
    }

    void groupList()
    {
        TagGroupModel *groups = m_open->groups().model();
        QCOMPARE(names(*groups), "all,warm"_s);
        QCOMPARE(groups->index(0, 1).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
        QCOMPARE(groups->index(1, 1).data(257).toInt(), int(Qt::Unchecked));
        QCOMPARE(groups->index(1, 1).data(258).toLongLong(), 2);

        const QSignalSpy changes(groups, &QAbstractItemModel::dataChanged);
        QVERIFY(groups->setData(groups->index(1, 1), Qt::Checked, Qt::CheckStateRole));
        QVERIFY(groups->setData(groups->index(1, 0), "hot"_s));
        QCOMPARE(changes.count(), 2);
        QCOMPARE(m_open->groups().tabOrder(), QList<int>({1, 2}));
        (*m_open)->load();
        QCOMPARE(names(*groups), "all,hot"_s);
        // Followed once, also after another load.
        QVERIFY(groups->setData(groups->index(1, 0), "cold"_s));
        QCOMPARE(changes.count(), 3);
        QCOMPARE(changes.last().first().toModelIndex().row(), 1);
    }

private:
    TagsTableModel *table() const { return m_open->tags().tableModel(); }
    TagsGroupProxy *proxy() const { return m_open->tags().groupProxy(); }
    QAbstractItemModel *filter() const { return m_open->tags().filterProxy(); }
    QModelIndex cell(int row, int column = 0) const { return table()->index(row, column); }
    bool isMarked(int row) const { return cell(row, 3).data(Qt::DecorationRole).isValid(); }

    std::unique_ptr<LocalCollection> m_open;
};

QTEST_MAIN(TestTagsModel)
#include "tst_tagsmodel.moc"
