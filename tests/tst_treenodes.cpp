#include "core/tbnode.h"
#include "core/trnode.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

TBnode *makeNode(QObject *owner, qint64 id, NodeType type = TagNode, bool inverted = false)
{
    return new TBnode(nullptr, 100 + id, id, inverted, false, 0, QString::number(id), type, owner);
}

// Writes down every signal of a node about its children, with the state of the list at that moment.
template <typename Node>
QStringList *recordSignals(Node *node)
{
    auto *log = new QStringList;
    QObject::connect(node, &QObject::destroyed, [log] { delete log; });
    const auto note = [node, log](const QString &what, const QList<Node *> &nodes) {
        QStringList ids;
        for (const Node *entry : nodes)
            ids.append(QString::number(entry->id()));
        log->append(
            QStringLiteral("%1 %2 of %3").arg(what, ids.join(QLatin1Char(','))).arg(node->childrenCount()));
    };
    QObject::connect(node, &Node::aboutToAddchildren, node,
                     [note](const QList<Node *> &nodes, Node *) { note(QStringLiteral("adding"), nodes); });
    QObject::connect(node, &Node::childrenNodesAdded, node,
                     [note](const QList<Node *> &nodes) { note(QStringLiteral("added"), nodes); });
    QObject::connect(node, &Node::aboutToRemoveNodes, node,
                     [note](const QList<Node *> &nodes, Node *) { note(QStringLiteral("removing"), nodes); });
    QObject::connect(node, &Node::childrenNodesRemoved, node,
                     [note](const QList<Node *> &nodes) { note(QStringLiteral("removed"), nodes); });
    return log;
}

QStringList lines(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

class TestTreeNodes : public QObject
{
    Q_OBJECT

private slots:
    void addsOneNode();
    void addsAListWithOnePairOfSignals();
    void takesAChildThatKeepsItsParent();
    void removesAChild();
    void removesAllChildren();
    void namesItselfAsTheParentInSignals();
    void findsChildrenByIndex();
    void listsDescendantsFirst();
    void collectsRequirements_data();
    void collectsRequirements();
    void tellsOfItsOwnChanges();
    void takesLinksOnTagNodesOnly_data();
    void takesLinksOnTagNodesOnly();
    void namesItselfInTheLogWhenItGoes();

    void relationNodeRefusesBadChildren();
    void relationNodeAddsOneAfterTheOther();
    void relationNodeRemovesChildren();
    void relationNodeLooksUpAndDown();

private:
    QObject *owner() const { return m_owner.data(); }

    QScopedPointer<QObject> m_owner;

private slots:
    void init() { m_owner.reset(new QObject); }
    void cleanup() { m_owner.reset(); }
};

void TestTreeNodes::addsOneNode()
{
    TBnode *root = makeNode(owner(), 1);
    TBnode *child = makeNode(owner(), 2);
    const QStringList *log = recordSignals(root);
    QVERIFY(root->addChild(child));
    QVERIFY(!root->addChild(child));
    QVERIFY(!root->addChild(nullptr));
    QCOMPARE(*log, lines("adding 2 of 0\nadded 2 of 1"));
    QCOMPARE(child->parentNode(), root);
    QCOMPARE(root->children(), QList<TBnode *>{child});
}

void TestTreeNodes::addsAListWithOnePairOfSignals()
{
    TBnode *root = makeNode(owner(), 1);
    const QStringList *log = recordSignals(root);
    TBnode *last = makeNode(owner(), 3);
    root->addChildren({makeNode(owner(), 2), last});
    root->addChildren({});
    QCOMPARE(*log, lines("adding 2,3 of 0\nadded 2,3 of 2"));
    QCOMPARE(last->parentNode(), root);
}

void TestTreeNodes::takesAChildThatKeepsItsParent()
{
    TBnode *root = makeNode(owner(), 1);
    TBnode *second = makeNode(owner(), 3);
    root->addChildren({makeNode(owner(), 2), second});
    const QStringList *log = recordSignals(root);
    QVERIFY(!root->takeChild(2));
    QVERIFY(!root->takeChild(-1));
    QCOMPARE(root->takeChild(1), second);
    QCOMPARE(*log, lines("removing 3 of 2\nremoved 3 of 1"));
    QCOMPARE(second->parentNode(), root);
}

void TestTreeNodes::removesAChild()
{
    TBnode *root = makeNode(owner(), 1);
    TBnode *child = makeNode(owner(), 2);
    TBnode *stranger = makeNode(owner(), 9);
    root->addChildren({child, makeNode(owner(), 3), child});
    const QStringList *log = recordSignals(root);
    QVERIFY(!root->removeChild(stranger));
    QVERIFY(root->removeChild(child));
    QCOMPARE(*log, lines("removing 2 of 3\nremoved 2 of 1"));
    QVERIFY(!child->parentNode());
}

void TestTreeNodes::removesAllChildren()
{
    TBnode *root = makeNode(owner(), 1);
    TBnode *child = makeNode(owner(), 2);
    root->addChildren({child, makeNode(owner(), 3)});
    const QStringList *log = recordSignals(root);
    root->removeAllChildren();
    root->removeAllChildren();
    QCOMPARE(*log, lines("removing 2,3 of 2\nremoved  of 0"));
    QVERIFY(!child->parentNode());
}

void TestTreeNodes::namesItselfAsTheParentInSignals()
{
    TBnode *root = makeNode(owner(), 1);
    QSignalSpy adding(root, &TBnode::aboutToAddchildren);
    QSignalSpy removing(root, &TBnode::aboutToRemoveNodes);
    root->addChild(makeNode(owner(), 2));
    root->addChildren({makeNode(owner(), 3)});
    root->takeChild(0);
    root->removeAllChildren();
    QCOMPARE(adding.count(), 2);
    QCOMPARE(removing.count(), 2);
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(adding.at(i).at(1).value<TBnode *>(), root);
        QCOMPARE(removing.at(i).at(1).value<TBnode *>(), root);
    }
}

void TestTreeNodes::findsChildrenByIndex()
{
    TBnode *root = makeNode(owner(), 1);
    TBnode *child = makeNode(owner(), 2);
    root->addChildren({makeNode(owner(), 3), child});
    QCOMPARE(root->childAt(1), child);
    QVERIFY(!root->childAt(2));
    QVERIFY(!root->childAt(-1));
    QCOMPARE(root->indexOf(child), 1);
    QCOMPARE(root->indexOf(root), -1);
}

void TestTreeNodes::listsDescendantsFirst()
{
    TBnode *root = makeNode(owner(), 1);
    TBnode *left = makeNode(owner(), 2);
    TBnode *right = makeNode(owner(), 5);
    root->addChildren({left, right});
    left->addChildren({makeNode(owner(), 3), makeNode(owner(), 4)});
    right->addChild(makeNode(owner(), 6));
    QCOMPARE(root->descendantIds(), (QVector<qint64>{3, 4, 2, 6, 5}));
}

void TestTreeNodes::collectsRequirements_data()
{
    using Ids = QVector<qint64>;
    // A letter a node, from the root down: t a tag, i an inverted tag, s a special node.
    QTest::addColumn<QString>("chain");
    QTest::addColumn<Ids>("required");
    QTest::addColumn<Ids>("excluded");
    QTest::newRow("root first") << QStringLiteral("ttt") << Ids{100, 101, 102} << Ids();
    QTest::newRow("inverted apart") << QStringLiteral("titi") << Ids{100, 102} << Ids{101, 103};
    QTest::newRow("nothing of a special node above") << QStringLiteral("stt") << Ids{101, 102} << Ids();
    QTest::newRow("nothing above a special node") << QStringLiteral("tsit") << Ids{103} << Ids{102};
    QTest::newRow("nothing for a special node itself") << QStringLiteral("s") << Ids() << Ids();
}

void TestTreeNodes::collectsRequirements()
{
    QFETCH(QString, chain);
    TBnode *node = makeNode(owner(), -1, AllFiles);
    for (int depth = 0; depth < chain.size(); ++depth) {
        const QChar kind = chain.at(depth);
        const NodeType type = kind == QLatin1Char('s') ? AllFiles : TagNode;
        TBnode *next = makeNode(owner(), depth, type, kind == QLatin1Char('i'));
        node->addChild(next);
        node = next;
    }
    QVector<qint64> required;
    QVector<qint64> excluded;
    node->collectTagRequirements(required, excluded);
    QTEST(required, "required");
    QTEST(excluded, "excluded");
}

void TestTreeNodes::tellsOfItsOwnChanges()
{
    TBnode *node = makeNode(owner(), 1);
    QSignalSpy names(node, &TBnode::nameChanged);
    QSignalSpy inversions(node, &TBnode::isInvertedChanged);
    QSignalSpy options(node, &TBnode::trOptionChanged);
    for (int twice = 0; twice < 2; ++twice) {
        node->setName(QStringLiteral("sea"));
        node->setInverted(true);
        node->setTrOption(true);
    }
    QCOMPARE(names, QList<QList<QVariant>>{{QStringLiteral("sea")}});
    QCOMPARE(inversions, QList<QList<QVariant>>{{true}});
    QCOMPARE(options, QList<QList<QVariant>>{{true}});
}

void TestTreeNodes::takesLinksOnTagNodesOnly_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("taken");
    for (int type = AllFiles; type <= TagNode; ++type)
        QTest::addRow("type %d", type) << type << (type == TagNode);
}

void TestTreeNodes::takesLinksOnTagNodesOnly()
{
    QFETCH(int, type);
    QFETCH(bool, taken);
    TBnode *node = makeNode(owner(), 1, NodeType(type));
    QSignalSpy changes(node, &TBnode::autolinkChanged);
    QCOMPARE(node->addAutolink(QStringLiteral("L1")), taken);
    QVERIFY(!node->addAutolink(QStringLiteral("L1")));
    QCOMPARE(node->hasAutolinks(), taken);
    QCOMPARE(changes.count(), taken ? 1 : 0);
    QCOMPARE(node->removeAutolink(QStringLiteral("L1")), taken);
    QVERIFY(!node->hasAutolinks());
    QCOMPARE(changes.count(), taken ? 2 : 0);
}

void TestTreeNodes::namesItselfInTheLogWhenItGoes()
{
    TBnode *node = makeNode(owner(), 42);
    QTest::ignoreMessage(QtDebugMsg, "~~~~DELETE Node!!!! \"42\" 42");
    delete node;
}

void TestTreeNodes::relationNodeRefusesBadChildren()
{
    TRnode root(0);
    TRnode child(1);
    TRnode stranger(2);
    const QStringList *log = recordSignals(&root);
    QVERIFY(root.addChild(&child));
    QVERIFY(!root.addChild(&child));
    QVERIFY(!root.addChild(nullptr));
    QVERIFY(!root.removeChild(nullptr));
    QVERIFY(!root.removeChild(&stranger));
    QCOMPARE(*log, lines("adding 1 of 0\nadded 1 of 1"));
    QCOMPARE(child.parentNode(), &root);
}

void TestTreeNodes::relationNodeAddsOneAfterTheOther()
{
    TRnode root(0);
    TRnode first(1);
    TRnode second(2);
    const QStringList *log = recordSignals(&root);
    root.addChildren({&first, nullptr, &second});
    QCOMPARE(*log, lines("adding 1 of 0\nadded 1 of 1\nadding 2 of 1\nadded 2 of 2"));
}

void TestTreeNodes::relationNodeRemovesChildren()
{
    TRnode root(0);
    TRnode first(1);
    TRnode second(2);
    TRnode third(3);
    root.addChildren({&first, &second, &third});
    const QStringList *log = recordSignals(&root);
    QVERIFY(root.removeChild(&second));
    root.removeAllChildren();
    root.removeAllChildren();
    QCOMPARE(*log, lines("removing 2 of 3\nremoved 2 of 2\nremoving 1,3 of 2\nremoved 1,3 of 0"));
    QVERIFY(!first.parentNode() && !second.parentNode() && !third.parentNode());
}

void TestTreeNodes::relationNodeLooksUpAndDown()
{
    TRnode root(0, QStringLiteral("root"));
    TRnode animals(1, QStringLiteral("animals"));
    TRnode cats(2, QStringLiteral("cats"));
    TRnode lions(3, QStringLiteral("lions"));
    TRnode dogs(4, QStringLiteral("dogs"));
    root.addChild(&animals);
    animals.addChildren({&cats, &dogs});
    cats.addChild(&lions);

    QCOMPARE(lions.ancestorIds(), (QVector<qint64>{1, 2}));
    QCOMPARE(animals.ancestorIds(), QVector<qint64>());
    QCOMPARE(animals.descendantIds(), (QVector<qint64>{3, 2, 4}));
    QCOMPARE(animals.descendantNames(), lines("lions\ncats\ndogs"));
    QVERIFY(lions.hasAncestorIn({9, 1}));
    QVERIFY(!lions.hasAncestorIn({3, 4}));
    QVERIFY(animals.hasDescendantIn({9, 3}));
    QVERIFY(!cats.hasDescendantIn({1, 2, 4}));
}

QTEST_GUILESS_MAIN(TestTreeNodes)
#include "tst_treenodes.moc"
