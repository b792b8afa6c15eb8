#include "core/recordtypes.h"
#include "tests/support/text.h"

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

    void mapKeepsKeyOrderWhateverTheOrderOfInsertion()
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

    void mapCopyHasContentsOfItsOwn()
    {
        TextMap map;
        map.insert(1, "one"_s);
        QSignalSpy inserted(&map, &SignalContainer::itemInserted);
        TextMap copy(map);
        TextMap assigned;
        assigned = map;
        copy.insert(2, "two"_s);
        assigned.insert(1, "uno"_s);
        QCOMPARE(inserted.count(), 0);
        QCOMPARE(map.values(), QList<QString>{"one"_s});
        QCOMPARE(copy.keys(), (QList<qint64>{1, 2}));
    }

    void containersPassThroughQueuedConnections()
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
            nodes.append({"1.2"_s, nullptr});
            emit sender.filesLoaded(files);
            emit sender.nodesAdded(nodes);
            emit sender.typeChanged(TagNode);
            files.clear();
        }
        QTRY_COMPARE(receiver.type, int(TagNode));
        QCOMPARE(receiver.keys, QList<qint64>{3});
        QCOMPARE(receiver.paths, QStringList{"1.2"_s});
    }
};

QTEST_GUILESS_MAIN(TestContainers)
#include "tst_containers.moc"
