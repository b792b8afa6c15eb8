#include "app/constants.h"
#include "app/messages.h"
#include "models/idlistmime.h"
#include "models/taggroupmodel.h"
#include "models/tagroles.h"
#include "models/tagsgroupproxy.h"
#include "models/tagstablemodel.h"
#include "support/localcollection.h"
#include "support/settingssandbox.h"

#include <QAbstractItemModelTester>
#include <QMimeData>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QUrl>
#include <QtTest>

using Ids = QVector<qint64>;

namespace {
class ReadOnlyTags : public TagsController
{
public:
    ReadOnlyTags() : TagsController(nullptr, nullptr, nullptr) {}
    bool isReadOnly() const override { return true; }
};

/** Tags with the ids first to last, named t and their id. */
TableData rowsOfTags(int first, int last)
{
    TableData rows;
    for (int id = first; id <= last; ++id) {
        auto *row = new TableRowData;
        row->setValue(QStringLiteral("tag_id"), id);
        row->setValue(QStringLiteral("tag_name"), QStringLiteral("t%1").arg(id));
        row->setValue(QStringLiteral("tag_description"), QString());
        row->setValue(QStringLiteral("creation_date"), 60 * id);
        rows.append(row);
    }
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
    void init();
    void cleanup();

    void cells_data();
    void cells();
    void editsGoToTheDatabase();
    void refusedEdits_data();
    void refusedEdits();
    void knownTagsChangeInPlace();
    void duplicateIdsMakeNoSecondRow();
    void removal_data();
    void removal();
    void manyScatteredRemovals();
    void mark();
    void fileCountsFollowTheFiles();
    void dragCarriesEachTagOnce();
    void hostileDrags_data();
    void hostileDrags();
    void dropOfFilesLinksThem();
    void readOnlyRefusals();
    void rowsOfTabs_data();
    void rowsOfTabs();
    void tabsFollowTheGroups();
    void reloadKeepsGroups();
    void groupList();
    void refusedGroupEdits();

private:
    TagsTableModel *model() const { return m_open->tags().tableModel(); }
    qint64 idOf(const QString &name) const { return m_ids.value(name); }

    SettingsSandbox m_settings;
    std::unique_ptr<LocalCollection> m_open;
    std::unique_ptr<QAbstractItemModelTester> m_tableTester;
    std::unique_ptr<QAbstractItemModelTester> m_groupTester;
    std::unique_ptr<QAbstractItemModelTester> m_filterTester;
    QHash<QString, qint64> m_ids;
    int m_boxes = 0;
};

/** Tags red, green, blue; groups warm (red) and all (red, green, blue), the latter made first. */
void TestTagsModel::init()
{
    SettingsSandbox::clear();
    m_boxes = 0;
    Messages::setResponder([this](const Messages::Box &) {
        ++m_boxes;
        return Messages::Answer{QMessageBox::Ok, -1};
    });
    m_open = std::make_unique<LocalCollection>();
    const auto mode = QAbstractItemModelTester::FailureReportingMode::QtTest;
    m_tableTester = std::make_unique<QAbstractItemModelTester>(model(), mode);
    m_groupTester = std::make_unique<QAbstractItemModelTester>(m_open->tags().groupProxy(), mode);
    m_filterTester = std::make_unique<QAbstractItemModelTester>(m_open->tags().filterProxy(), mode);
    m_ids.clear();
    for (const QString &name : {QStringLiteral("red"), QStringLiteral("green"), QStringLiteral("blue")})
        m_ids.insert(name, m_open->tags().addTag(name));
    m_ids.insert(QStringLiteral("all"), m_open->groups().addGroup(QStringLiteral("all")));
    m_ids.insert(QStringLiteral("warm"), m_open->groups().addGroup(QStringLiteral("warm"), false));
    m_open->groups().setGroupTags(
        idOf(QStringLiteral("all")),
        {idOf(QStringLiteral("red")), idOf(QStringLiteral("green")), idOf(QStringLiteral("blue"))});
    m_open->groups().setGroupTags(idOf(QStringLiteral("warm")), {idOf(QStringLiteral("red"))});
}

void TestTagsModel::cleanup()
{
    m_filterTester.reset();
    m_groupTester.reset();
    m_tableTester.reset();
    m_open.reset();
    Messages::setResponder({});
}

void TestTagsModel::cells_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("expected");
    QTest::newRow("name") << 0 << int(Qt::DisplayRole) << QVariant(QStringLiteral("t7"));
    QTest::newRow("name to edit") << 0 << int(Qt::EditRole) << QVariant(QStringLiteral("t7"));
    QTest::newRow("description") << 1 << int(Qt::DisplayRole) << QVariant(QString());
    QTest::newRow("date") << 2 << int(Qt::DisplayRole) << QVariant(QDateTime::fromSecsSinceEpoch(420));
    QTest::newRow("files") << 3 << int(Qt::DisplayRole) << QVariant(qlonglong(0));
    QTest::newRow("id in any column") << 3 << 257 << QVariant(qlonglong(7));
    QTest::newRow("no mark") << 0 << int(Qt::DecorationRole) << QVariant();
    QTest::newRow("tool tip") << 0 << int(Qt::ToolTipRole) << QVariant();
}

void TestTagsModel::cells()
{
    QFETCH(int, column);
    QFETCH(int, role);
    QFETCH(QVariant, expected);
    model()->loadTags(rowsOfTags(7, 7));
    QCOMPARE(model()->rowCount(), 1);
    QCOMPARE(model()->index(0, column).data(role), expected);
    QCOMPARE(int(model()->flags(model()->index(0, column))), column < 2 ? 47 : 45);
}

void TestTagsModel::editsGoToTheDatabase()
{
    QVERIFY(model()->setData(model()->index(1, 0), QStringLiteral("  it's \"%1\"  ")));
    QVERIFY(model()->setData(model()->index(1, 1), QStringLiteral("a colour")));
    QCOMPARE(model()->index(1, 0).data().toString(), QStringLiteral("it's \"%1\""));
    QCOMPARE(m_open
                 ->rows(QStringLiteral("SELECT tag_name||'|'||tag_description FROM tags "
                                       "ORDER BY tag_id"))
                 .value(1),
             QStringLiteral("it's \"%1\"|a colour"));
}

void TestTagsModel::refusedEdits_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("value");
    QTest::newRow("same name") << 0 << QStringLiteral("red");
    QTest::newRow("name of another tag") << 0 << QStringLiteral("blue");
    QTest::newRow("blanks alone") << 0 << QStringLiteral(" \t ");
    QTest::newRow("date") << 2 << QStringLiteral("2020-01-01");
    QTest::newRow("files") << 3 << QStringLiteral("5");
}

void TestTagsModel::refusedEdits()
{
    QFETCH(int, column);
    QFETCH(QString, value);
    const QSignalSpy changes(model(), &QAbstractItemModel::dataChanged);
    QVERIFY(!model()->setData(model()->index(0, column), value));
    QCOMPARE(changes.count(), 0);
    QCOMPARE(m_open->rows(QStringLiteral("SELECT tag_name FROM tags ORDER BY tag_id")).value(0),
             QStringLiteral("red"));
}

void TestTagsModel::knownTagsChangeInPlace()
{
    const QPersistentModelIndex green = model()->index(1, 0);
    QSignalSpy changes(model(), &QAbstractItemModel::dataChanged);
    const QSignalSpy insertions(model(), &QAbstractItemModel::rowsInserted);
    QVERIFY(m_open->tags().renameTag(idOf(QStringLiteral("green")), QStringLiteral("olive")));
    QCOMPARE(green.data().toString(), QStringLiteral("olive"));
    QCOMPARE(insertions.count(), 0);
    QVERIFY(changes.count() > 0);
    for (const QList<QVariant> &change : qAsConst(changes)) {
        QCOMPARE(change.at(0).toModelIndex().row(), 1);
        QCOMPARE(change.at(1).toModelIndex().row(), 1);
    }
}

void TestTagsModel::duplicateIdsMakeNoSecondRow()
{
    TableData rows = rowsOfTags(1, 2) + rowsOfTags(2, 3);
    rows.at(2)->setValue(QStringLiteral("tag_name"), QStringLiteral("later"));
    QTest::ignoreMessage(QtWarningMsg, "TagsTableModel::addNewTag - adds duplicate where Id = 2");
    model()->loadTags(rows);
    QCOMPARE(names(*model()),
             QStringList({QStringLiteral("t1"), QStringLiteral("t2"), QStringLiteral("t3")}));
    QTest::ignoreMessage(QtWarningMsg, "TagsTableModel::addNewTag - adds duplicate where Id = 2");
    model()->addNewTag(rows.at(2));
    QCOMPARE(names(*model()).value(1), QStringLiteral("later"));
}

void TestTagsModel::removal_data()
{
    QTest::addColumn<Ids>("removed");
    QTest::addColumn<QString>("left");
    QTest::addColumn<int>("ranges");
    QTest::newRow("none") << Ids{99} << QStringLiteral("t1,t2,t3,t4,t5") << 0;
    QTest::newRow("first") << Ids{1} << QStringLiteral("t2,t3,t4,t5") << 1;
    QTest::newRow("neighbours") << Ids{3, 2} << QStringLiteral("t1,t4,t5") << 1;
    QTest::newRow("every other") << Ids{1, 3, 5} << QStringLiteral("t2,t4") << 3;
    QTest::newRow("all") << Ids{5, 4, 3, 2, 1} << QString() << 1;
}

void TestTagsModel::removal()
{
    QFETCH(Ids, removed);
    QFETCH(QString, left);
    QFETCH(int, ranges);
    model()->loadTags(rowsOfTags(1, 5));
    const QPersistentModelIndex fourth = model()->index(3, 0);
    const QSignalSpy removals(model(), &QAbstractItemModel::rowsRemoved);
    model()->removeTags(removed);
    QCOMPARE(names(*model()).join(QLatin1Char(',')), left);
    QCOMPARE(removals.count(), ranges);
    QCOMPARE(fourth.isValid(), !removed.contains(4));
    QCOMPARE(model()->rowOf(4), fourth.isValid() ? fourth.row() : -1);
}

void TestTagsModel::manyScatteredRemovals()
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
    QCOMPARE(kept.data().toString(), QStringLiteral("t1000"));
    QVERIFY(!gone.isValid());
    QCOMPARE(model()->rowOf(1000), 499);
    QCOMPARE(model()->rowOf(999), -1);
}

void TestTagsModel::mark()
{
    QSignalSpy changes(model(), &QAbstractItemModel::dataChanged);
    const Ids marked{idOf(QStringLiteral("green"))};
    QVERIFY(model()->setData(model()->index(0, 0), QVariant::fromValue(marked), 258));
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes.at(0).at(0).toModelIndex(), model()->index(0, 0));
    QCOMPARE(changes.at(0).at(1).toModelIndex(), model()->index(2, 0));
    QVERIFY(!model()->index(0, 0).data(Qt::DecorationRole).isValid());
    QVERIFY(model()->index(1, 3).data(Qt::DecorationRole).isValid());
    QCOMPARE(model()->index(2, 0).data(258).value<Ids>(), marked);
    QVERIFY(!model()->setData(model()->index(2, 0), QVariant::fromValue(marked), 258));

    m_open->tags().showTagsSelected({idOf(QStringLiteral("red")), idOf(QStringLiteral("blue"))});
    QVERIFY(model()->index(2, 0).data(Qt::DecorationRole).isValid());
    m_open->tags().clearMark();
    QVERIFY(!model()->index(2, 0).data(Qt::DecorationRole).isValid());
}

void TestTagsModel::fileCountsFollowTheFiles()
{
    m_open->addFiles(3);
    const QModelIndex red = model()->index(model()->rowOf(idOf(QStringLiteral("red"))), 3);
    QCOMPARE(red.data().toLongLong(), 0);
    QSignalSpy changes(model(), &QAbstractItemModel::dataChanged);
    m_open->tags().linkFilesToTag(idOf(QStringLiteral("red")), {1, 2});
    QCOMPARE(red.data().toLongLong(), 2);
    QVERIFY(changes.count() > 0);
    // Sorted by the numbers, the rows follow them.
    QSortFilterProxyModel *shown = m_open->tags().filterProxy();
    shown->sort(3, Qt::DescendingOrder);
    QCOMPARE(names(*shown).first(), QStringLiteral("red"));
    m_open->tags().linkFilesToTag(idOf(QStringLiteral("blue")), {1, 2, 3});
    QCOMPARE(names(*shown).first(), QStringLiteral("blue"));
    QVERIFY(m_open->tags().addTag(QStringLiteral("new"), {3}) > 0);
    QCOMPARE(model()->index(3, 3).data().toLongLong(), 1);
}

void TestTagsModel::dragCarriesEachTagOnce()
{
    const QModelIndexList dragged{model()->index(2, 0), model()->index(2, 1), model()->index(0, 3),
                                  model()->index(2, 3)};
    const std::unique_ptr<QMimeData> data(model()->mimeData(dragged));
    QCOMPARE(data->formats(), QStringList(Constants::tagMimeType));
    QDataStream stream(data->data(Constants::tagMimeType));
    int count = 0;
    qint64 first = 0;
    qint64 second = 0;
    stream >> count >> first >> second;
    QCOMPARE(count, 2);
    QCOMPARE(first, idOf(QStringLiteral("blue")));
    QCOMPARE(second, idOf(QStringLiteral("red")));
    QVERIFY(stream.atEnd());
}

void TestTagsModel::hostileDrags_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("cut in the count") << QByteArray("\0\0", 2);
    QTest::newRow("count without ids") << QByteArray("\x7f\xff\xff\xff", 4);
    QTest::newRow("cut in an id") << QByteArray("\0\0\0\1\0\0\0\0\0\0\0", 11);
}

void TestTagsModel::hostileDrags()
{
    QFETCH(QByteArray, bytes);
    QMimeData data;
    data.setData(Constants::fileMimeType, bytes);
    QCOMPARE(IdListMime::unpack(&data, Constants::fileMimeType), Ids());
    QVERIFY(model()->dropMimeData(&data, Qt::CopyAction, -1, -1, model()->index(0, 0)));
}

void TestTagsModel::dropOfFilesLinksThem()
{
    m_open->addFiles(3);
    const std::unique_ptr<QMimeData> data(IdListMime::pack(Constants::fileMimeType, {1, 3}));
    QVERIFY(model()->canDropMimeData(data.get(), Qt::CopyAction, -1, -1, model()->index(1, 0)));
    QVERIFY(!model()->dropMimeData(data.get(), Qt::CopyAction, 1, 0, QModelIndex()));
    QVERIFY(model()->dropMimeData(data.get(), Qt::CopyAction, -1, -1, model()->index(1, 0)));
    QCOMPARE(m_open->rows(QStringLiteral("SELECT file_id||':'||tag_id FROM file_tag ORDER BY file_id")),
             QStringList({QStringLiteral("1:%1").arg(idOf(QStringLiteral("green"))),
                          QStringLiteral("3:%1").arg(idOf(QStringLiteral("green")))}));
}

void TestTagsModel::readOnlyRefusals()
{
    ReadOnlyTags controller;
    TagsTableModel readOnly(&controller, nullptr);
    const TableData rows = rowsOfTags(1, 1);
    readOnly.loadTags(rows);
    const QModelIndex tag = readOnly.index(0, 0);
    const std::unique_ptr<QMimeData> files(IdListMime::pack(Constants::fileMimeType, {1}));
    QMimeData urls;
    urls.setUrls({QUrl::fromLocalFile(QStringLiteral("/tmp/x"))});
    QVERIFY(readOnly.canDropMimeData(files.get(), Qt::CopyAction, -1, -1, tag));
    QVERIFY(!readOnly.canDropMimeData(&urls, Qt::CopyAction, -1, -1, tag));
    QVERIFY(model()->canDropMimeData(&urls, Qt::CopyAction, -1, -1, model()->index(0, 0)));
    QVERIFY(!readOnly.setData(tag, QStringLiteral("other")));
    QCOMPARE(m_boxes, 1);
    QVERIFY(readOnly.dropMimeData(files.get(), Qt::CopyAction, -1, -1, tag));
    QCOMPARE(m_boxes, 2);
    QCOMPARE(tag.data().toString(), QStringLiteral("t1"));
    qDeleteAll(rows);
}

void TestTagsModel::rowsOfTabs_data()
{
    QTest::addColumn<QString>("tab");
    QTest::addColumn<QStringList>("dTags");
    QTest::addColumn<QString>("rows");
    const QStringList two{QStringLiteral("blue"), QStringLiteral("red")};
    QTest::newRow("all tags") << QString() << two << QStringLiteral("red,green,blue");
    QTest::newRow("no differing tags") << QStringLiteral("D") << QStringList() << QString();
    QTest::newRow("differing tags") << QStringLiteral("D") << two << QStringLiteral("red,blue");
    QTest::newRow("group") << QStringLiteral("warm") << two << QStringLiteral("red");
    QTest::newRow("group with all") << QStringLiteral("all") << QStringList()
                                    << QStringLiteral("red,green,blue");
    QTest::newRow("unknown group") << QStringLiteral("none") << two << QString();
}

void TestTagsModel::rowsOfTabs()
{
    QFETCH(QString, tab);
    QFETCH(QStringList, dTags);
    QFETCH(QString, rows);
    TagsGroupProxy *proxy = m_open->tags().groupProxy();
    qint64 groupId = m_ids.value(tab, 4711);
    if (tab.isEmpty() || tab == QLatin1String("D"))
        groupId = tab.isEmpty() ? 0 : -1;
    proxy->setGroupId(groupId);
    Ids ids;
    for (const QString &name : qAsConst(dTags))
        ids.append(idOf(name));
    proxy->setDTagIds(ids);
    QCOMPARE(names(*proxy).join(QLatin1Char(',')), rows);
    proxy->setGroupId(0);
    QCOMPARE(proxy->rowCount(), 3);
}

void TestTagsModel::tabsFollowTheGroups()
{
    TagsGroupProxy *proxy = m_open->tags().groupProxy();
    const qint64 warm = idOf(QStringLiteral("warm"));
    proxy->setGroupId(warm);
    QSignalSpy changes(model(), &QAbstractItemModel::dataChanged);
    m_open->groups().assignTags({idOf(QStringLiteral("blue"))}, {warm});
    QCOMPARE(names(*proxy), QStringList({QStringLiteral("red"), QStringLiteral("blue")}));
    QCOMPARE(changes.count(), 1);
    m_open->groups().setGroupTags(warm, {idOf(QStringLiteral("green"))});
    QCOMPARE(names(*proxy), QStringList(QStringLiteral("green")));
    QCOMPARE(model()->index(1, 0).data(259).value<Ids>(), Ids({idOf(QStringLiteral("all")), warm}));
    m_open->groups().removeGroups({warm});
    QCOMPARE(proxy->rowCount(), 0);
    QCOMPARE(model()->index(1, 0).data(259).value<Ids>(), Ids{idOf(QStringLiteral("all"))});
}

void TestTagsModel::reloadKeepsGroups()
{
    m_open->tags().load();
    QCOMPARE(model()->index(0, 0).data(TagRoles::Groups).value<Ids>().size(), 2);
    (*m_open)->load();
    QCOMPARE(names(*model()),
             QStringList({QStringLiteral("red"), QStringLiteral("green"), QStringLiteral("blue")}));
    QCOMPARE(model()->index(0, 0).data(TagRoles::Groups).value<Ids>().size(), 2);
}

void TestTagsModel::groupList()
{
    TagGroupModel *groups = m_open->groups().model();
    const QAbstractItemModelTester tester(groups, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(names(*groups), QStringList({QStringLiteral("all"), QStringLiteral("warm")}));
    QCOMPARE(groups->index(0, 1).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
    QCOMPARE(groups->index(1, 1).data(GroupRoles::Value).toInt(), int(Qt::Unchecked));
    QCOMPARE(groups->index(1, 1).data(GroupRoles::GroupId).toLongLong(), idOf(QStringLiteral("warm")));

    QSignalSpy changes(groups, &QAbstractItemModel::dataChanged);
    QVERIFY(groups->setData(groups->index(1, 1), Qt::Checked, Qt::CheckStateRole));
    QVERIFY(groups->setData(groups->index(1, 0), QStringLiteral("hot")));
    QCOMPARE(changes.count(), 2);
    QCOMPARE(m_open->groups().tabOrder(),
             QList<int>({int(idOf(QStringLiteral("all"))), int(idOf(QStringLiteral("warm")))}));
    QVERIFY(m_open->groups().addGroup(QStringLiteral("cold")) > 0);
    m_open->groups().removeGroups({idOf(QStringLiteral("all"))});
    QCOMPARE(names(*groups), QStringList({QStringLiteral("hot"), QStringLiteral("cold")}));
    (*m_open)->load();
    QCOMPARE(names(*groups), QStringList({QStringLiteral("hot"), QStringLiteral("cold")}));
}

void TestTagsModel::refusedGroupEdits()
{
    TagGroupModel *groups = m_open->groups().model();
    const QSignalSpy duplicates(&m_open->groups(), &GroupsController::groupDuplicated);
    QVERIFY(!groups->setData(groups->index(1, 0), QStringLiteral("all")));
    QCOMPARE(duplicates.count(), 1);
    QVERIFY(!groups->setData(groups->index(1, 0), QStringLiteral("  ")));
    QVERIFY(!groups->setData(groups->index(1, 0), QStringLiteral("warm")));
    QVERIFY(!groups->setData(groups->index(1, 1), Qt::Unchecked, Qt::CheckStateRole));
    QCOMPARE(m_open->rows(QStringLiteral("SELECT name FROM tag_groups ORDER BY tag_group_id")).value(1),
             QStringLiteral("warm"));
}

QTEST_MAIN(TestTagsModel)
#include "tst_tagsmodel.moc"
