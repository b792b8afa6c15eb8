#include "core/recordtypes.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

// Declares signals as the manager does, to see the containers pass through the event loop.
class Sender : public QObject
{
    Q_OBJECT

signals:
    void filesLoaded(Map<qint64, File *> files);
    void nodesAdded(Vector<QPair<QString, TRnode *>> nodes);
    void typeChanged(NodeType type);
};

class Receiver : public QObject
{
    Q_OBJECT

public:
    QList<qint64> keys;
    QStringList paths;
    int type = 0;

public slots:
    void takeFiles(Map<qint64, File *> files) { keys = files.keys(); } // NOLINT: the signature is the matter
    void takeNodes(Vector<QPair<QString, TRnode *>> nodes)             // NOLINT
    {
        for (const auto &node : nodes)
            paths.append(node.first);
    }
    void takeType(NodeType newType) { type = newType; }
};

} // namespace

class TestContainers : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { registerRecordTypes(); }
    void mapTellsOfInsertions();
    void mapTellsOfRemovals();
    void mapKeepsKeyOrderWhateverTheOrderOfInsertion();
    void mapCopyHasContentsOfItsOwn();
    void mapSwapsAndEmptiesSilently();
    void vectorTellsOfAdditionsAndRemovals();
    void vectorCopyHasContentsOfItsOwn();
    void knowsTheTypesOfSignalsByName_data();
    void knowsTheTypesOfSignalsByName();
    void containersPassThroughQueuedConnections();
};

void TestContainers::mapTellsOfInsertions()
{
    Map<QString, int> map;
    QSignalSpy inserted(&map, &SignalContainer::itemInserted);
    map.insert(QStringLiteral("a"), 1);
    map.insert(QStringLiteral("a"), 2);
    QCOMPARE(inserted.count(), 2);
    QCOMPARE(inserted.at(1).at(0).value<QVariant>(), QVariant(QStringLiteral("a")));
    QCOMPARE(map.value(QStringLiteral("a")), 2);
    QCOMPARE(map.size(), 1);
}

void TestContainers::mapTellsOfRemovals()
{
    TextMap map(QMap<qint64, QString>{{1, QStringLiteral("one")}, {2, QStringLiteral("two")}});
    QSignalSpy deleted(&map, &SignalContainer::itemDeleted);
    QVERIFY(!map.remove(3));
    QCOMPARE(map.take(3), QString());
    QCOMPARE(deleted.count(), 0);
    QVERIFY(map.remove(map.begin().key()));
    QCOMPARE(map.take(2), QStringLiteral("two"));
    QCOMPARE(deleted.count(), 2);
    QCOMPARE(deleted.at(0).at(0).value<QVariant>().toLongLong(), 1);
    QCOMPARE(deleted.at(1).at(0).value<QVariant>().toLongLong(), 2);
    QVERIFY(map.isEmpty());
}

void TestContainers::mapKeepsKeyOrderWhateverTheOrderOfInsertion()
{
    TextMap map;
    for (const qint64 key : {5, 9, 1, 7, 9, 12, 3, 12})
        map.insert(key, QString::number(key));
    QCOMPARE(map.keys(), (QList<qint64>{1, 3, 5, 7, 9, 12}));
    for (auto item = map.begin(); item != map.end(); ++item)
        QCOMPARE(item.value(), QString::number(item.key()));
    QVERIFY(map.find(7) != map.end());
    QVERIFY(map.find(8) == map.end());
}

void TestContainers::mapCopyHasContentsOfItsOwn()
{
    TextMap map;
    map.insert(1, QStringLiteral("one"));
    QSignalSpy inserted(&map, &SignalContainer::itemInserted);
    TextMap copy(map);
    TextMap assigned;
    assigned = map;
    copy.insert(2, QStringLiteral("two"));
    assigned.insert(1, QStringLiteral("uno"));
    QCOMPARE(inserted.count(), 0);
    QCOMPARE(map.values(), QList<QString>{QStringLiteral("one")});
    QCOMPARE(copy.keys(), (QList<qint64>{1, 2}));
}

void TestContainers::mapSwapsAndEmptiesSilently()
{
    TextMap first(QMap<qint64, QString>{{1, QString()}});
    TextMap second(QMap<qint64, QString>{{2, QString()}, {3, QString()}});
    QSignalSpy inserted(&first, &SignalContainer::itemInserted);
    QSignalSpy deleted(&first, &SignalContainer::itemDeleted);
    first.swap(second);
    QCOMPARE(first.keys(), (QList<qint64>{2, 3}));
    QCOMPARE(second.keys(), QList<qint64>{1});
    first.clear();
    QVERIFY(first.isEmpty());
    QCOMPARE(inserted.count() + deleted.count(), 0);
    first.insert(4, QString());
    QCOMPARE(inserted.count(), 1);
}

void TestContainers::vectorTellsOfAdditionsAndRemovals()
{
    TagItem sea(1, QStringLiteral("sea"), QString(), 0);
    TagItem lake(2, QStringLiteral("lake"), QString(), 0);
    TagVector vector;
    QSignalSpy added(&vector, &SignalContainer::itemAdded);
    QSignalSpy deleted(&vector, &SignalContainer::itemDeleted);
    vector.append(&sea);
    vector.append(&lake);
    QCOMPARE(added, (QList<QList<QVariant>>{{0}, {1}}));

    QVERIFY(!vector.removeAt(2));
    QVERIFY(!vector.removeAt(-1));
    QVERIFY(!vector.removeOne(nullptr));
    QCOMPARE(deleted.count(), 0);
    QVERIFY(vector.removeOne(&lake));
    QVERIFY(vector.removeAt(0));
    QCOMPARE(deleted.at(0).at(0).value<QVariant>(), QVariant(1));
    QCOMPARE(deleted.at(1).at(0).value<QVariant>(), QVariant(0));
    QVERIFY(vector.isEmpty());
}

void TestContainers::vectorCopyHasContentsOfItsOwn()
{
    Vector<int> vector(QVector<int>{1, 2});
    QSignalSpy added(&vector, &SignalContainer::itemAdded);
    Vector<int> copy(vector);
    copy.append(3);
    QCOMPARE(added.count(), 0);
    QCOMPARE(vector.items(), (QVector<int>{1, 2}));
    QCOMPARE(copy.items(), (QVector<int>{1, 2, 3}));
}

void TestContainers::knowsTheTypesOfSignalsByName_data()
{
    QTest::addColumn<int>("type");
    const auto row = [](const char *name, int type) { QTest::newRow(name) << type; };
    row("NodeType", qMetaTypeId<NodeType>());
    row("DataType", qMetaTypeId<DataType>());
    row("Map<qint64,File*>", qMetaTypeId<FileMap>());
    row("Map<qint64,TBnode*>", qMetaTypeId<TBnodeMap>());
    row("Map<qint64,GroupItem*>", qMetaTypeId<GroupMap>());
    row("Map<qint64,QString>", qMetaTypeId<TextMap>());
    row("Map<QString,AutoLink*>", qMetaTypeId<AutoLinkMap>());
    row("Vector<TagItem*>", qMetaTypeId<TagVector>());
    row("Vector<QPair<QString,TRnode*> >", qMetaTypeId<TRnodeVector>());
    row("QVector<qint64>", qMetaTypeId<QVector<qint64>>());
}

void TestContainers::knowsTheTypesOfSignalsByName()
{
    QFETCH(int, type);
    QCOMPARE(QMetaType::type(QTest::currentDataTag()), type);
}

void TestContainers::containersPassThroughQueuedConnections()
{
    Sender sender;
    Receiver receiver;
    connect(&sender, &Sender::filesLoaded, &receiver, &Receiver::takeFiles, Qt::QueuedConnection);
    connect(&sender, &Sender::nodesAdded, &receiver, &Receiver::takeNodes, Qt::QueuedConnection);
    connect(&sender, SIGNAL(typeChanged(NodeType)), &receiver, SLOT(takeType(NodeType)),
            Qt::QueuedConnection);
    {
        FileMap files;
        files.insert(3, nullptr);
        TRnodeVector nodes;
        nodes.append({QStringLiteral("1.2"), nullptr});
        emit sender.filesLoaded(files);
        emit sender.nodesAdded(nodes);
        emit sender.typeChanged(TagNode);
        files.clear();
    }
    QTRY_COMPARE(receiver.type, int(TagNode));
    QCOMPARE(receiver.keys, QList<qint64>{3});
    QCOMPARE(receiver.paths, QStringList{QStringLiteral("1.2")});
}

QTEST_GUILESS_MAIN(TestContainers)
#include "tst_containers.moc"
