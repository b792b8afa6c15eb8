#include "core/autolink.h"
#include "core/groupitem.h"
#include "core/tagitem.h"
#include "core/textpool.h"

#include <QSignalSpy>
#include <QtTest>

#include <limits>

namespace {

QVector<qint64> listOf(const QList<QVariant> &arguments, int index = 0)
{
    return arguments.at(index).value<QVector<qint64>>();
}

} // namespace

class TestTagRecords : public QObject
{
    Q_OBJECT

private slots:
    void sharesTextsThatAreInUse();
    void forgetsTextsThatNobodyUses();
    void tagItemTellsOfChanges();
    void tagItemChangesItsGroups();
    void groupItemTellsOfChanges();
    void autoLinkFlagsItsNodes();
};

void TestTagRecords::sharesTextsThatAreInUse()
{
    TextPool pool;
    const QString first = pool.share(QStringLiteral("/data/pictures/"));
    pool.share(QStringLiteral("/data/"));
    const QString second = pool.share(QStringLiteral("/data/pictures/"));
    QCOMPARE(second, QStringLiteral("/data/pictures/"));
    QVERIFY(first.constData() == second.constData());
    QCOMPARE(pool.size(), 2);
    QVERIFY(pool.share(QString()).isNull());
}

void TestTagRecords::forgetsTextsThatNobodyUses()
{
    TextPool pool;
    const QString kept = pool.share(QStringLiteral("kept"));
    for (int i = 0; i < 20000; ++i)
        pool.share(QString::number(i));
    QVERIFY2(pool.size() <= 4096, qPrintable(QString::number(pool.size())));
    QVERIFY(pool.share(QStringLiteral("kept")).constData() == kept.constData());
}

void TestTagRecords::tagItemTellsOfChanges()
{
    TagItem tag(5, QStringLiteral("sea"), QString(), 1600000000);
    QSignalSpy names(&tag, &TagItem::tagNameChanged);
    QSignalSpy descriptions(&tag, &TagItem::tagDescriptionChanged);
    QSignalSpy counts(&tag, &TagItem::tagFilesCountChanged);
    for (int twice = 0; twice < 2; ++twice) {
        tag.setName(QStringLiteral("lake"));
        tag.setDescription(QStringLiteral("water"));
        tag.setFilesCount(Q_INT64_C(5000000000));
    }
    QCOMPARE(names.count(), 1);
    QCOMPARE(names.at(0), (QVariantList{qlonglong(5), QStringLiteral("lake")}));
    QCOMPARE(descriptions.count(), 1);
    QCOMPARE(descriptions.at(0), (QVariantList{qlonglong(5), QStringLiteral("water")}));
    QCOMPARE(counts.count(), 1);
    QCOMPARE(counts.at(0), (QVariantList{qlonglong(5), std::numeric_limits<int>::max()}));
    QCOMPARE(tag.filesCount(), Q_INT64_C(5000000000));
}

void TestTagRecords::tagItemChangesItsGroups()
{
    TagItem tag(5, QStringLiteral("sea"), QString(), 0, 0, {1, 2, 1});
    QSignalSpy changes(&tag, &TagItem::tagGroupsChanged);
    QVERIFY(!tag.addGroup(2));
    QVERIFY(!tag.removeGroup(9));
    tag.setGroups({1, 2, 1});
    QCOMPARE(changes.count(), 0);

    QVERIFY(tag.removeGroup(1));
    QVERIFY(tag.addGroup(7));
    QCOMPARE(changes.count(), 2);
    QCOMPARE(changes.at(0).at(0).toLongLong(), 5);
    QCOMPARE(listOf(changes.at(0), 1), (QVector<qint64>{2}));
    QCOMPARE(listOf(changes.at(1), 1), (QVector<qint64>{2, 7}));
}

void TestTagRecords::groupItemTellsOfChanges()
{
    GroupItem group;
    QVERIFY(!group.isVisible());
    QSignalSpy names(&group, &GroupItem::groupNameChanged);
    QSignalSpy visibilities(&group, &GroupItem::groupVisibilityChanged);
    QSignalSpy tags(&group, &GroupItem::groupTagsChanged);
    group.clearTags();
    group.setVisible(false);
    group.setName(QString());
    QCOMPARE(names.count() + visibilities.count() + tags.count(), 0);

    group.setName(QStringLiteral("places"));
    group.setVisible(true);
    QVERIFY(group.addTag(4));
    QVERIFY(!group.addTag(4));
    group.setTags({4, 6});
    QVERIFY(group.removeTag(4));
    QVERIFY(!group.removeTag(4));
    group.clearTags();
    QCOMPARE(names.count(), 1);
    QCOMPARE(visibilities.count(), 1);
    QCOMPARE(tags.count(), 4);
    QCOMPARE(listOf(tags.at(2)), (QVector<qint64>{6}));
    QCOMPARE(listOf(tags.at(3)), QVector<qint64>());
}

void TestTagRecords::autoLinkFlagsItsNodes()
{
    AutoLink link(QStringLiteral("/data/in"), QStringLiteral("in"), QStringLiteral("L1"));
    link.addNode(1, true);
    link.addNode(2, false);
    QVERIFY(link.isFlagged(1));
    QVERIFY(!link.isFlagged(2));

    link.flagAll();
    link.unflag(1);
    QCOMPARE(link.flaggedNodes().keys(), QList<qint64>{2});
    link.removeNode(2);
    QCOMPARE(link.nodes(), QVector<qint64>{1});
    QVERIFY(link.flaggedNodes().isEmpty());
}

QTEST_GUILESS_MAIN(TestTagRecords)
#include "tst_tagrecords.moc"
