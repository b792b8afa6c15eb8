#include "core/providers/postgresbrowstreeprovider.h"
#include "core/providers/postgresgeneralprovider.h"
#include "tests/support/serverdatabase.h"

/** What only a server's providers do: several browsing trees, stamps, a role that may only read. */
class TestServerProviders : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        if (!ServerDatabase::isAvailable())
            QSKIP("VORNA_TEST_PG names no server");
        m_database = std::make_unique<ServerDatabase>();
    }
    void cleanup() { m_database.reset(); }

    void nodesOfTheCurrentTree()
    {
        PostgresBrowsTreeProvider nodes(m_database->constructor());
        QStringList shown;
        connect(&nodes, &BrowsTreeProvider::gotAllNodesInfo, this, [&shown](bool, TableData table) {
            shown.clear();
            for (const TableRowData *row : table)
                shown.append(row->value("node_id"_s).toString() + QLatin1Char('u') +
                             row->value("node_parent_id"_s).toString());
            shown.sort();
            freeRows(table);
        });
        QVERIFY(m_database->addTags(1));
        const qint64 first = nodes.addNode(1, true, false, 0);
        nodes.setCurrentTree(2);
        const qint64 second = nodes.addNodeAbove(1, true, true, 0, nodes.addNode(1, true, false, 0));
        QVERIFY(m_database->run("INSERT INTO tb_nodes VALUES (9,1,1,0)")); // its link was not written
        nodes.loadAllNodes();
        QCOMPARE(shown, QStringList({"2u3"_s, "3u0"_s, "9u0"_s}));
        nodes.setCurrentTree(0);
        nodes.loadAllNodes();
        QCOMPARE(shown, QStringList({"1u0"_s, "9u0"_s}));
        QCOMPARE(first + second, qint64(4));
    }

    void stampsAreUtc_data()
    {
        QTest::addColumn<QString>("stamp");
        addRow("winter", "2026-01-31T23:59:59.001Z"_s);
        addRow("hour that summer time skips", "2026-03-29T02:30:00.123Z"_s);
    }

    void stampsAreUtc()
    {
        QFETCH(QString, stamp);
        qputenv("TZ", "Europe/Berlin");
        auto &owner = m_database->owner();
        QVERIFY(owner.run("UPDATE tables_modification_date SET last_date='%1'"_s.arg(stamp.chopped(1))));
        PostgresGeneralProvider general(m_database->constructor());
        QDateTime date;
        QVERIFY(general.lastChangeDate(date));
        QCOMPARE(date.toString(Qt::ISODateWithMs), stamp);
        QVERIFY(owner.run("DELETE FROM tables_modification_date"_s));
        QVERIFY(general.lastChangeDate(date));
        QVERIFY(!date.isValid());
        m_database->close();
        QVERIFY(!general.lastChangeDate(date));
    }

private:
    std::unique_ptr<ServerDatabase> m_database;
};

QTEST_GUILESS_MAIN(TestServerProviders)
#include "tst_serverproviders.moc"
