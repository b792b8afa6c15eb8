#include "app/constants.h"
#include "app/messages.h"
#include "core/collectionsettings.h"
#include "tests/support/localcollection.h"
#include "tests/support/settingssandbox.h"

#include <QSettings>
#include <QSignalSpy>
#include <QSqlDatabase>
#include <QTest>

namespace {
QStringList warnings;

void keepWarnings(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtWarningMsg || type == QtCriticalMsg)
        warnings.append(text);
}

using Edit = std::function<void(LocalCollection &)>;
} // namespace
Q_DECLARE_METATYPE(Edit)

/** One database as the window holds it: made, opened, loaded, closed, and its settings. */
class TestCollection : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { Messages::setResponder({}); }

    void factoryKnowsItsKinds_data();
    void factoryKnowsItsKinds();
    void openingFailsWithoutAFile();
    void everythingIsThereAfterReopening();
    void reloadKeepsWhatIsShown();
    void managerNewsReachTheWindow();
    void editsOfAReadOnlyDatabaseAreRefused_data();
    void editsOfAReadOnlyDatabaseAreRefused();
    void settingsComeBack();
    void settingsBelongToOneDatabase();
    void brokenSettingsReadAsDefaults();

private:
    SettingsSandbox m_settings;
};

void TestCollection::factoryKnowsItsKinds_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("isKnown");
    QTest::newRow("none") << 0 << false;
    QTest::newRow("local") << 1 << true;
    QTest::newRow("beyond") << 3 << false;
}

void TestCollection::factoryKnowsItsKinds()
{
    QFETCH(int, type);
    const std::unique_ptr<Collection> collection(
        makeCollection(type, {}, QStringLiteral("/nowhere.vrn"), {}, {}, 0));
    QTEST(collection != nullptr, "isKnown");
    if (collection) {
        QVERIFY(!collection->parent());
        QCOMPARE(collection->dbType(), type);
        QCOMPARE(collection->details(), DBDetails::local(QStringLiteral("/nowhere.vrn")));
    }
    QVERIFY(!Collection::canOpen({type, {}, 0, QStringLiteral("/nowhere.vrn"), {}, {}}));
}

void TestCollection::openingFailsWithoutAFile()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("x.vrn"));
    const std::unique_ptr<Collection> collection(makeCollection(1, {}, path, {}, {}, 0));
    QVERIFY(collection->open().isValid());
    QVERIFY(!QFile::exists(path));
}

void TestCollection::everythingIsThereAfterReopening()
{
    const QtMessageHandler before = qInstallMessageHandler(keepWarnings);
    warnings.clear();
    {
        LocalCollection collection;
        collection.addFiles(3);
        const qint64 tagId = collection.tags().addTag(QStringLiteral("tag"), {1, 2});
        const qint64 groupId = collection.groups().addGroup(QStringLiteral("group"));
        collection.groups().assignTags({tagId}, {groupId});
        collection.tree().addNodesBelow({tagId}, 0);
        const qint64 nodeId = collection.manager()->nodes().keys().first();
        collection.tree().changeInversion(nodeId, true);
        collection.relations().addChildren({}, {tagId});
        collection.close();
        QVERIFY(QSqlDatabase::connectionNames().isEmpty());

        QVERIFY(Collection::canOpen(DBDetails::local(collection.path())));
        QVERIFY(collection.open());
        DatabaseManger *manager = collection.manager();
        QCOMPARE(manager->files().size(), 3);
        QCOMPARE(manager->file(2)->tags(), QVector<qint64>{tagId});
        QCOMPARE(manager->groups()->value(groupId)->tags(), QVector<qint64>{tagId});
        QVERIFY(manager->groups()->value(groupId)->isVisible());
        QVERIFY(manager->nodes().value(nodeId)->isInverted());
        QVERIFY(manager->relationNode(QString::number(tagId)));
        QCOMPARE(collection.tree().currentNodeType(), 0);
        QVERIFY(collection.mainView().shownFileIds().isEmpty());
    }
    qInstallMessageHandler(before);
    QCOMPARE(warnings, QStringList());
    QVERIFY(QSqlDatabase::connectionNames().isEmpty());
}

void TestCollection::reloadKeepsWhatIsShown()
{
    LocalCollection collection;
    collection.addFiles(4);
    const qint64 tagId = collection.tags().addTag(QStringLiteral("tag"), {2, 3});
    collection.tags().showTagsSelected({tagId});
    QCOMPARE(collection.mainView().shownFileIds(), QVector<qint64>({2, 3}));
    // Somebody else links a file to a tag and puts that tag below the selected one.
    const qint64 below = collection.tags().addTag(QStringLiteral("below"));
    collection.run(QStringLiteral("INSERT INTO file_tag VALUES(4,%1)").arg(below));
    collection.run(
        QStringLiteral("INSERT INTO tag_relationships VALUES('%1'),('%1.%2')").arg(tagId).arg(below));
    collection.manager()->reloadAllData();
    QCOMPARE(collection.mainView().shownFileIds(), QVector<qint64>({2, 3, 4}));
    QCOMPARE(collection.tags().selectedTagIds(), QVector<qint64>{tagId});

    const qint64 nodeId = collection.manager()->addNodeBelow(tagId, 0);
    collection.tree().nodeActivated(TagNode, nodeId, {tagId}, {});
    collection.run(QStringLiteral("DELETE FROM tag_relationships WHERE relationship_path LIKE '%.%'"));
    collection.manager()->reloadAllData();
    QCOMPARE(collection.mainView().shownFileIds(), QVector<qint64>({2, 3}));
    QCOMPARE(collection.tree().currentTagNodeId(), nodeId);
}

void TestCollection::managerNewsReachTheWindow()
{
    LocalCollection collection;
    DatabaseManger *manager = collection.manager();
    QSignalSpy connection(collection.get(), &Collection::connectionError);
    QSignalSpy failed(collection.get(), &Collection::errorOccured);
    QSignalSpy temporary(collection.get(), &Collection::showTempWarning);
    QSignalSpy shown(collection.get(), &Collection::showError);
    QSignalSpy begin(collection.get(), &Collection::aboutToReloadAllData);
    QSignalSpy end(collection.get(), &Collection::allDataReloaded);
    emit manager->connectionError();
    emit manager->error(QStringLiteral("title"), QStringLiteral("text"));
    emit manager->showTempWarning(QStringLiteral("title"), QStringLiteral("text"));
    collection.run(QStringLiteral("DROP TABLE tag_relationships"));
    manager->reloadAllData();
    QCOMPARE(connection.size(), 1);
    QCOMPARE(failed.size(), 1);
    QCOMPARE(temporary.first().first().toString(), QStringLiteral("title"));
    QCOMPARE(shown.first().first().toString(), QStringLiteral("title"));
    QCOMPARE(begin.size(), 1);
    QCOMPARE(end.size(), 1);
}

void TestCollection::editsOfAReadOnlyDatabaseAreRefused_data()
{
    QTest::addColumn<Edit>("edit");
    const auto row = [](const char *name, const Edit &edit) { QTest::newRow(name) << edit; };
    row("new tag", [](LocalCollection &c) { c.tags().addTag(QStringLiteral("x")); });
    row("tag's name", [](LocalCollection &c) { c.tags().renameTag(1, QStringLiteral("x")); });
    row("tag's description", [](LocalCollection &c) { c.tags().changeDescription(1, QStringLiteral("x")); });
    row("removed tag", [](LocalCollection &c) { c.tags().removeTags({1}); });
    row("files on a tag", [](LocalCollection &c) { c.tags().linkFilesToTag(1, {1}); });
    row("new group", [](LocalCollection &c) { c.groups().addGroup(QStringLiteral("x")); });
    row("group's name", [](LocalCollection &c) { c.groups().renameGroup(1, QStringLiteral("x")); });
    row("removed group", [](LocalCollection &c) { c.groups().removeGroups({1}); });
    row("tags on a group", [](LocalCollection &c) { c.groups().assignTags({1}, {1}); });
    row("new node", [](LocalCollection &c) { c.tree().addTagNodes({1}, 0, false); });
    row("node above", [](LocalCollection &c) { c.tree().addTagNodes({1}, 1, true); });
    row("inverted node", [](LocalCollection &c) { c.tree().changeInversion(1, true); });
    row("node's relationships", [](LocalCollection &c) { c.tree().changeTrOption(1, false); });
    row("removed node", [](LocalCollection &c) { c.tree().removeNodes({1}); });
    row("removed subtree", [](LocalCollection &c) { c.tree().removeNodesWithSubtree({1}); });
    row("files on a node", [](LocalCollection &c) { c.tree().addFilesToNode(1, {1}); });
    row("new relationship", [](LocalCollection &c) { c.relations().addChildren({}, {2}); });
    row("removed relationship", [](LocalCollection &c) { c.relations().removeNode(QStringLiteral("1")); });
}

void TestCollection::editsOfAReadOnlyDatabaseAreRefused()
{
    QFETCH(Edit, edit);
    LocalCollection collection;
    collection.addFiles(1);
    collection.tags().addTag(QStringLiteral("tag"));
    collection.groups().addGroup(QStringLiteral("group"));
    collection.tree().addNodesBelow({1}, 0);
    collection.relations().addChildren({}, {1});
    // A row where the write test puts its own makes that test fail.
    collection.run(QStringLiteral("INSERT INTO file_tag VALUES(0,0)"));
    collection.close();
    QVERIFY(collection.open());
    QVERIFY(collection->isReadOnly());
    QStringList boxes;
    Messages::setResponder([&boxes](const Messages::Box &box) {
        boxes.append(box.text);
        return Messages::Answer();
    });
    const QString changes = collection.value("SELECT total_changes()");
    edit(collection);
    QCOMPARE(boxes, QStringList{QStringLiteral("This database is read-only.")});
    QCOMPARE(collection.value("SELECT total_changes()"), changes);
}

void TestCollection::settingsComeBack()
{
    LocalCollection collection;
    CollectionSettings *settings = collection->settings();
    QCOMPARE(settings->tagGroupIndex(), 0);
    QCOMPARE(settings->tagGroupOrder(), QList<int>());
    QCOMPARE(settings->selectedTag(), qint64(0));
    settings->setTagGroupIndex(3);
    settings->setTagGroupOrder({5, 2, 9});
    settings->setBrowsingTree(4);
    settings->setSelectedTag(1LL << 40);
    const QHash<QString, bool> expanded = {{QStringLiteral("7"), true}, {QStringLiteral("7.12"), false}};
    settings->setRelationExpansion(expanded);
    const QMap<qint64, QList<qint64>> order = {{0, {3, 1, 2}}, {7, {}}};
    settings->setNodeOrder(order);
    QSettings().sync();
    QCOMPARE(settings->tagGroupIndex(), 3);
    QCOMPARE(settings->tagGroupOrder(), QList<int>({5, 2, 9}));
    QCOMPARE(settings->browsingTree(), qint64(4));
    QCOMPARE(settings->selectedTag(), 1LL << 40);
    QCOMPARE(settings->relationExpansion(), expanded);
    QCOMPARE(settings->nodeOrder(), order);
}

void TestCollection::settingsBelongToOneDatabase()
{
    LocalCollection first;
    first->settings()->setTagGroupOrder({1});
    first.close();
    LocalCollection second;
    QVERIFY(second->settings()->tagGroupOrder().isEmpty());
}

void TestCollection::brokenSettingsReadAsDefaults()
{
    LocalCollection collection;
    const QString prefix = QStringLiteral("'%1'/").arg(collection.path());
    QSettings store;
    store.setValue(prefix + QStringLiteral("BrowsingTreeOrder"), QByteArray("\x7f\xff\xff\xff no map"));
    store.setValue(prefix + QStringLiteral("TagGroupBar/currentIndex"), QStringLiteral("none"));
    QVERIFY(collection->settings()->nodeOrder().isEmpty());
    QCOMPARE(collection->settings()->tagGroupIndex(), 0);
}

QTEST_MAIN(TestCollection)
#include "tst_collection.moc"
