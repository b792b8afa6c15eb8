#include "core/controllers/collectionsettings.h"
#include "tests/support/localcollection.h"

using Ids = QVector<qint64>;
using Edit = void (*)(LocalCollection &);
Q_DECLARE_METATYPE(Edit)

static QStringList warnings;

/** One database as the window holds it: made, opened, loaded, closed, and its settings. */
class TestCollection : public QObject
{
    Q_OBJECT

private slots:
    void everythingIsThereAfterReopening()
    {
        warnings.clear();
        const QtMessageHandler before =
            qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &text) {
                if (type == QtWarningMsg || type == QtCriticalMsg)
                    warnings.append(text);
            });
        {
            LocalCollection collection;
            QCOMPARE(collection.value("PRAGMA page_size"), "16384"_s);
            QCOMPARE(collection.value("PRAGMA journal_mode"), "delete"_s);
            fill(collection);
            collection.tree().changeInversion(1, true);
            collection->settings()->setTagGroupOrder({1});
            collection.close();
            QVERIFY(QSqlDatabase::connectionNames().isEmpty());

            QVERIFY(Collection::canOpen(DBDetails::local(collection.path()), collection.prompts()));
            QVERIFY(collection.open());
            DatabaseManger *manager = collection.manager();
            QCOMPARE(manager->files().size(), 3);
            QCOMPARE(manager->file(2)->tags(), Ids{1});
            QCOMPARE(manager->groups()->value(1)->tags(), Ids{1});
            QVERIFY(manager->groups()->value(1)->isVisible());
            QVERIFY(manager->nodes().value(1)->isInverted());
            QVERIFY(manager->relationNode("1"_s));
            QCOMPARE(collection.tree().currentNodeType(), 0);
            QVERIFY(collection.mainView().shownFileIds().isEmpty());
        }
        qInstallMessageHandler(before);
        QCOMPARE(warnings, QStringList());
        QVERIFY(QSqlDatabase::connectionNames().isEmpty());
        LocalCollection other;
        QVERIFY(other->settings()->tagGroupOrder().isEmpty());
    }

    void whatIsToldIsABox()
    {
        QStringList boxes;
        Messages::setResponder([&boxes](const Messages::Box &box) {
            boxes << "%1 %2 %3: %4"_s.arg(box.icon).arg(box.buttons).arg(box.title, box.text);
            return Messages::Answer{QMessageBox::Ok, -1};
        });
        BoxPrompts shown;
        for (const auto kind : {UserPrompts::Plain, UserPrompts::Information, UserPrompts::Question,
                                UserPrompts::Warning, UserPrompts::Critical})
            shown.tell(kind, "title"_s, "text"_s);
        Messages::setResponder({});
        QStringList expected;
        for (const auto icon : {QMessageBox::NoIcon, QMessageBox::Information, QMessageBox::Question,
                                QMessageBox::Warning, QMessageBox::Critical})
            expected << "%1 %2 title: text"_s.arg(icon).arg(QMessageBox::Ok);
        QCOMPARE(boxes, expected);
    }

    void reloadKeepsWhatIsShown()
    {
        LocalCollection collection;
        fill(collection);
        collection.tags().showTagsSelected({1});
        QCOMPARE(collection.mainView().shownFileIds(), Ids({1, 2}));
        // Somebody else links a file to a tag and puts that tag below the selected one.
        collection.tags().addTag("below"_s);
        collection.run("INSERT INTO file_tag VALUES(3,2)");
        collection.run("INSERT INTO tag_relationships VALUES('1.2')");
        collection.manager()->reloadAllData();
        QCOMPARE(collection.mainView().shownFileIds(), Ids({1, 2, 3}));
        QCOMPARE(collection.tags().selectedTagIds(), Ids{1});

        collection.activate(1);
        collection.run("DELETE FROM tag_relationships WHERE relationship_path LIKE '%.%'");
        collection.manager()->reloadAllData();
        QCOMPARE(collection.mainView().shownFileIds(), Ids({1, 2}));
        QCOMPARE(collection.tree().currentTagNodeId(), 1);
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
        collection.run("DROP TABLE tag_relationships");
        collection.manager()->reloadAllData();
        QCOMPARE(connection.size() + failed.size(), 2);
        QCOMPARE(temporary.first().first().toString(), "title"_s);
        QCOMPARE(shown.first().first().toString(), "title"_s);
    }

    void editsOfAReadOnlyDatabaseAreRefused_data()
    {
        QTest::addColumn<Edit>("edit");
        const auto row = [](const char *name, Edit edit) { addRow(name, edit); };
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
        fill(collection);
        // A row where the write test puts its own makes that test fail.
        collection.run("INSERT INTO file_tag VALUES(0,0)");
        collection.reopen();
        QVERIFY(collection->isReadOnly());
        const QString changes = collection.value("SELECT total_changes()");
        edit(collection);
        QCOMPARE(collection.takeBoxes().join(QString()).count("This database is read-only."_s), 1);
        QCOMPARE(collection.value("SELECT total_changes()"), changes);
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
    /** Three files, the first two with a tag, which is in a group, in the tree and a relationship. */
    static void fill(LocalCollection &collection)
    {
        collection.addFiles(3);
        collection.tags().addTag("tag"_s, {1, 2});
        collection.groups().addGroup("group"_s);
        collection.groups().assignTags({1}, {1});
        collection.addNode(1);
        collection.relations().addChildren({}, {1});
    }
};

QTEST_MAIN(TestCollection)
#include "tst_collection.moc"
