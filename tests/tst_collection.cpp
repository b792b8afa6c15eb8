#include "app/constants.h"
#include "app/messages.h"
#include "core/collectionsettings.h"
#include "tests/support/localcollection.h"

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

    void everythingIsThereAfterReopening()
    {
        const QtMessageHandler before = qInstallMessageHandler(keepWarnings);
        warnings.clear();
        {
            LocalCollection collection;
            QCOMPARE(collection.value("PRAGMA page_size"), "65536"_s);
            QCOMPARE(collection.value("PRAGMA journal_mode"), "delete"_s);
            collection.addFiles(3);
            const qint64 tagId = collection.tags().addTag("tag"_s, {1, 2});
            const qint64 groupId = collection.groups().addGroup("group"_s);
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

    void reloadKeepsWhatIsShown()
    {
        LocalCollection collection;
        collection.addFiles(4);
        const qint64 tagId = collection.tags().addTag("tag"_s, {2, 3});
        collection.tags().showTagsSelected({tagId});
        QCOMPARE(collection.mainView().shownFileIds(), QVector<qint64>({2, 3}));
        // Somebody else links a file to a tag and puts that tag below the selected one.
        const qint64 below = collection.tags().addTag("below"_s);
        collection.run("INSERT INTO file_tag VALUES(4,%1)"_s.arg(below));
        collection.run("INSERT INTO tag_relationships VALUES('%1'),('%1.%2')"_s.arg(tagId).arg(below));
        collection.manager()->reloadAllData();
        QCOMPARE(collection.mainView().shownFileIds(), QVector<qint64>({2, 3, 4}));
        QCOMPARE(collection.tags().selectedTagIds(), QVector<qint64>{tagId});

        const qint64 nodeId = collection.manager()->addNodeBelow(tagId, 0);
        collection.tree().nodeActivated(TagNode, nodeId, {tagId}, {});
        collection.run("DELETE FROM tag_relationships WHERE relationship_path LIKE '%.%'"_s);
        collection.manager()->reloadAllData();
        QCOMPARE(collection.mainView().shownFileIds(), QVector<qint64>({2, 3}));
        QCOMPARE(collection.tree().currentTagNodeId(), nodeId);
    }

    void managerNewsReachTheWindow()
    {
        LocalCollection collection;
        QSignalSpy connection(collection.get(), &Collection::connectionError);
        QSignalSpy failed(collection.get(), &Collection::errorOccured);
        QSignalSpy temporary(collection.get(), &Collection::showTempWarning);
        QSignalSpy shown(collection.get(), &Collection::showError);
        emit collection.manager()->connectionError();
        emit collection.manager()->error("title"_s, "text"_s);
        emit collection.manager()->showTempWarning("title"_s, "text"_s);
        collection.run("DROP TABLE tag_relationships"_s);
        collection.manager()->reloadAllData();
        QCOMPARE(connection.size() + failed.size(), 2);
        QCOMPARE(temporary.first().first().toString(), "title"_s);
        QCOMPARE(shown.first().first().toString(), "title"_s);
    }

    void editsOfAReadOnlyDatabaseAreRefused_data()
    {
        QTest::addColumn<Edit>("edit");
        const auto row = [](const char *name, const Edit &edit) { addRow(name, edit); };
        row("new tag", [](LocalCollection &c) { c.tags().addTag("x"_s); });
        row("tag's name", [](LocalCollection &c) { c.tags().renameTag(1, "x"_s); });
        row("tag's description", [](LocalCollection &c) { c.tags().changeDescription(1, "x"_s); });
        row("removed tag", [](LocalCollection &c) { c.tags().removeTags({1}); });
        row("files on a tag", [](LocalCollection &c) { c.tags().linkFilesToTag(1, {1}); });
        row("new group", [](LocalCollection &c) { c.groups().addGroup("x"_s); });
        row("group's name", [](LocalCollection &c) { c.groups().renameGroup(1, "x"_s); });
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
        row("removed relationship", [](LocalCollection &c) { c.relations().removeNode("1"_s); });
    }

    void editsOfAReadOnlyDatabaseAreRefused()
    {
        QFETCH(Edit, edit);
        LocalCollection collection;
        collection.addFiles(1);
        collection.tags().addTag("tag"_s);
        collection.groups().addGroup("group"_s);
        collection.tree().addNodesBelow({1}, 0);
        collection.relations().addChildren({}, {1});
        // A row where the write test puts its own makes that test fail.
        collection.run("INSERT INTO file_tag VALUES(0,0)"_s);
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
        QCOMPARE(boxes, QStringList{"This database is read-only."_s});
        QCOMPARE(collection.value("SELECT total_changes()"), changes);
    }

    void settingsBelongToOneDatabase()
    {
        LocalCollection first;
        first->settings()->setTagGroupOrder({1});
        first.close();
        LocalCollection second;
        QVERIFY(second->settings()->tagGroupOrder().isEmpty());
    }

    void brokenSettingsReadAsDefaults()
    {
        LocalCollection collection;
        const QString prefix = "'%1'/"_s.arg(collection.path());
        QSettings store;
        store.setValue(prefix + "BrowsingTreeOrder"_s, QByteArray("\x7f\xff\xff\xff no map"));
        store.setValue(prefix + "TagGroupBar/currentIndex"_s, "none"_s);
        QVERIFY(collection->settings()->nodeOrder().isEmpty());
        QCOMPARE(collection->settings()->tagGroupIndex(), 0);

        // Counts that no memory has room for.
        const QByteArray count = QByteArray::fromHex("7fffffff");
        const QByteArray order = QByteArray::fromHex("000000010000000000000007") + count;
        for (const char *type : {"QQueue<DBSpecifierLackingPassword>", "QList<int>", "ManualNodesSorter"}) {
            QByteArray bytes;
            QDataStream(&bytes, QIODevice::WriteOnly) << quint32(QMetaType::User) << qint8(0) << type;
            bytes += type[0] == 'M' ? order : count;
            QDataStream stream(bytes);
            QVariant value;
            stream >> value;
            QCOMPARE(value.typeName(), type);
        }
    }

private:
    SettingsSandbox m_settings;
};

QTEST_MAIN(TestCollection)
#include "tst_collection.moc"
