#include "core/tbnode.h"
#include "core/trnode.h"
#include "tests/support/text.h"

#include <QtTest>

namespace {

TBnode *makeNode(QObject *owner, qint64 id, NodeType type = TagNode, bool inverted = false)
{
    return new TBnode(nullptr, 100 + id, id, inverted, false, 0, QString::number(id), type, owner);
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
    void listsDescendantsFirst()
    {
        TBnode *root = makeNode(owner(), 1);
        TBnode *left = makeNode(owner(), 2);
        TBnode *right = makeNode(owner(), 5);
        root->addChildren({left, right});
        left->addChildren({makeNode(owner(), 3), makeNode(owner(), 4)});
        right->addChild(makeNode(owner(), 6));
        QCOMPARE(root->descendantIds(), (QVector<qint64>{3, 4, 2, 6, 5}));
    }

    void collectsRequirements_data()
    {
        using Ids = QVector<qint64>;
        // A letter a node, from the root down: t a tag, i an inverted tag, s a special node.
        addColumns<QString, Ids, Ids>("chain", "required", "excluded");
        addRow("root first", "ttt"_s, Ids{100, 101, 102}, Ids());
        addRow("inverted apart", "titi"_s, Ids{100, 102}, Ids{101, 103});
        addRow("nothing of a special node above", "stt"_s, Ids{101, 102}, Ids());
        addRow("nothing above a special node", "tsit"_s, Ids{103}, Ids{102});
        addRow("nothing for a special node itself", "s"_s, Ids(), Ids());
    }

    void collectsRequirements()
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

    void relationNodeLooksUpAndDown()
    {
        TRnode root(0, "root"_s);
        TRnode animals(1, "animals"_s);
        TRnode cats(2, "cats"_s);
        TRnode lions(3, "lions"_s);
        TRnode dogs(4, "dogs"_s);
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

private:
    QObject *owner() const { return m_owner.data(); }

    QScopedPointer<QObject> m_owner;

private slots:
    void init() { m_owner.reset(new QObject); }
    void cleanup() { m_owner.reset(); }
};

QTEST_GUILESS_MAIN(TestTreeNodes)
#include "tst_treenodes.moc"
