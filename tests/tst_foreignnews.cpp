#include "tests/support/clientrecords.h"
#include "tests/support/servertest.h"

#include <QWindow>

#include <atomic>
#include <thread>

/** What others change on a server while a collection is open: taken in, told, and never written over. */
class TestForeignNews : public ServerTest
{
    Q_OBJECT

private slots:
    void init() { openServer(); }
    void cleanup() { closeServer(); }

    void changeOfAnotherIsToldOnce_data()
    {
        QTest::addColumn<bool>("areStampsNamed");
        addRow("stamps with names", true);
        addRow("stamps without names", false);
    }

    /** On a server that keeps no journal. */
    void changeOfAnotherIsToldOnce()
    {
        QFETCH(bool, areStampsNamed);
        QVERIFY(m_server->dropJournal(areStampsNamed));
        m_collection->manager()->reloadAllData();
        m_reloads->clear();
        const qint64 tagId = m_collection->tags().addTag("mine"_s);
        foreign("INSERT INTO tags VALUES (70,'theirs','',0,NULL)");
        QCOMPARE(m_collection->tags().addTag("more"_s), qint64(0));
        m_collection->tags().renameTag(tagId, "mine too"_s); // the next step goes the same way
        QCOMPARE(m_collection->tags().tagName(tagId), "mine"_s);
        QCOMPARE(m_reloads->size(), 0); // not under the feet of who edits
        QTRY_COMPARE(m_reloads->size(), 1);
        QCOMPARE(m_collection->tags().tagName(70), "theirs"_s);
        QVERIFY(m_collection->tags().addTag("more"_s) > 0);
        QVERIFY(m_collection->tags().renameTag(tagId, "mine too"_s));
        QCOMPARE(m_collection->manager()->tags().size(), 3);
        QCOMPARE(QList<QVariantList>(*m_warnings),
                 QList<QVariantList>{(QVariantList{"Warning"_s, "Local data is updating."_s})});
    }

    void changesOfOthersAreTakenIn_data()
    {
        addColumns<QString, QString>("statements", "count"); // tags, groups, nodes, relations, trees, files
        addRow("new tag", "INSERT INTO tags VALUES (70,'theirs','',0,NULL)"_s, "1 0 0 0 0 0"_s);
        addRow("renamed tag", "UPDATE tags SET tag_name='x' WHERE tag_id=1"_s, "1 0 0 0 0 0"_s);
        addRow(
            "removed tag",
            "BEGIN; DELETE FROM tags WHERE tag_id=2; DELETE FROM file_tag WHERE tag_id=2; DELETE FROM "
            "tag_group_links WHERE tag_id=2; DELETE FROM tb_nodes WHERE node_id=2; DELETE FROM tb_node_links "
            "WHERE child_id=2; DELETE FROM tag_relationships WHERE relationship_path LIKE '%2'; COMMIT"_s,
            "1 1 1 1 0 2"_s);
        addRow("group", "INSERT INTO tag_groups VALUES (9,'g'); INSERT INTO tag_group_links VALUES (1,9)"_s,
               "0 1 0 0 0 0"_s);
        addRow("removed group", "DELETE FROM tag_groups; DELETE FROM tag_group_links"_s, "0 1 0 0 0 0"_s);
        addRow("new nodes",
               "INSERT INTO tb_node_links VALUES (71,70),(1,71); INSERT INTO tb_nodes VALUES (70,1,1,0),"
               "(71,2,0,1)"_s,
               "0 0 2 0 0 0"_s);
        addRow("node of another tree",
               "INSERT INTO tb_nodes VALUES (72,1,1,0); INSERT INTO tb_node_links VALUES (0,72,5)"_s,
               "0 0 0 0 0 0"_s);
        addRow("moved node", "UPDATE tb_node_links SET parent_id=0 WHERE child_id=2"_s, "0 0 1 0 0 0"_s);
        addRow("removed branch", "DELETE FROM tb_nodes; DELETE FROM tb_node_links"_s, "0 0 2 0 0 0"_s);
        addRow("place", "INSERT INTO tag_relationships VALUES ('2'),('2.1')"_s, "0 0 0 2 0 0"_s);
        addRow("file",
               "BEGIN; INSERT INTO files VALUES (8,'n','',1,0,0,'z',1,4,NULL,0,0); INSERT INTO file_paths "
               "VALUES "
               "(4,'/a','a'); INSERT INTO file_tag VALUES (8,1),(8,2); COMMIT"_s,
               "0 0 0 0 0 1"_s);
        addRow("path", "UPDATE file_paths SET path='/moved' WHERE path_id=3"_s, "0 0 0 0 0 1"_s);
        addRow("tags of files", "DELETE FROM file_tag; INSERT INTO file_tag VALUES (3,1)"_s, "0 0 0 0 0 3"_s);
        addRow("removed files", "DELETE FROM files WHERE file_id<3; DELETE FROM file_tag"_s, "0 0 0 0 0 2"_s);
        addRow("tree", "INSERT INTO browsing_trees VALUES (7,'theirs')"_s, "0 0 0 0 1 0"_s);
    }

    void changesOfOthersAreTakenIn()
    {
        QFETCH(QString, statements);
        makeLibrary();
        DatabaseManger *manager = m_collection->manager();
        QSignalSpy merged(manager, &DatabaseManger::foreignChangesMerged);
        QVERIFY(m_server->owner().run(statements));
        QElapsedTimer waited;
        waited.start();
        NewsCount sum;
        const bool isSilent = QLatin1String(QTest::currentDataTag()) == "node of another tree"_s;
        if (isSilent)
            foreign("UPDATE tags SET tag_id=tag_id WHERE tag_id=1");
        QTRY_VERIFY(shown() == truth() && !merged.isEmpty());
        QVERIFY(waited.elapsed() < 1500);
        QTRY_VERIFY(merged.wait(ForeignNewsWait) || true);
        for (const QVariantList &arguments : qAsConst(merged)) {
            const NewsCount count = arguments.first().value<NewsCount>();
            sum.tags += count.tags - int(isSilent);
            sum.groups = qMax(sum.groups, count.groups);
            sum.nodes = qMax(sum.nodes, count.nodes);
            sum.relations = qMax(sum.relations, count.relations);
            sum.trees += count.trees;
            sum.files = qMax(sum.files, count.files);
        }
        QTEST("%1 %2 %3 %4 %5 %6"_s.arg(sum.tags)
                  .arg(sum.groups)
                  .arg(sum.nodes)
                  .arg(sum.relations)
                  .arg(sum.trees)
                  .arg(sum.files),
              "count");
        QCOMPARE(m_reloads->size() + m_warnings->size(), 0);
    }

    void newsWaitForTheEndOfABox()
    {
        makeLibrary();
        QWindow box;
        box.setModality(Qt::ApplicationModal);
        box.show();
        QSignalSpy merged(m_collection->manager(), &DatabaseManger::foreignChangesMerged);
        foreign("INSERT INTO tags VALUES (70,'theirs','',0,NULL)");
        QVERIFY(!merged.wait(800));
        box.hide();
        QTRY_COMPARE(m_collection->tags().tagName(70), "theirs"_s);
    }

    void changeOfEverythingIsReadAnew()
    {
        makeLibrary();
        QVERIFY(m_server->owner().run("TRUNCATE tag_relationships"_s));
        QTRY_COMPARE(m_reloads->size(), 1);
        QCOMPARE(shown(), truth());
        QVERIFY(m_collection->tags().addTag("mine"_s) > 0);
    }

    void editBesideOthers_data()
    {
        addColumns<QString, bool>("statement", "isDropped"); // by others, before tag 1 is renamed
        addRow("another tag", "UPDATE tags SET tag_name='theirs' WHERE tag_id=2"_s, false);
        addRow("files of the tag", "DELETE FROM file_tag WHERE tag_id=1"_s, false);
        addRow("the same tag", "UPDATE tags SET tag_description='theirs' WHERE tag_id=1"_s, true);
        addRow("the same tag, removed",
               "BEGIN; DELETE FROM tags WHERE tag_id=1; DELETE FROM tb_nodes; DELETE FROM tb_node_links; "
               "DELETE FROM "
               "tag_relationships; COMMIT"_s,
               true);
        addRow("all tags",
               "BEGIN; CREATE TEMP TABLE t AS SELECT * FROM tags; TRUNCATE tags; INSERT INTO tags "
               "SELECT * FROM t; COMMIT"_s,
               true);
    }

    void editBesideOthers()
    {
        QFETCH(QString, statement);
        QFETCH(bool, isDropped);
        makeLibrary();
        QVERIFY(m_server->owner().run(statement));
        QCOMPARE(m_collection->tags().renameTag(1, "mine"_s), !isDropped);
        QTRY_COMPARE(shown(), truth());
        QCOMPARE(Sql::value("SELECT count(*) FROM tags WHERE tag_name='mine'"), isDropped ? "0"_s : "1"_s);
        QCOMPARE(QList<QVariantList>(*m_warnings),
                 isDropped ? QList<QVariantList>{(QVariantList{"Warning"_s, "Local data is updating."_s})}
                           : QList<QVariantList>());
        // On what is shown now it goes on.
        QTRY_COMPARE(m_reloads->size(), int(QLatin1String(QTest::currentDataTag()) == "all tags"_s));
        QVERIFY(m_collection->tags().renameTag(2, "mine too"_s));
    }

    /** Others come in between the look and the commit: their change has a lock that the edit waits for. */
    void editThatWaitsForOthers_data()
    {
        QTest::addColumn<bool>("isDropped");
        addRow("the same tag", true);
        addRow("another tag", false);
    }

    void editThatWaitsForOthers()
    {
        QFETCH(bool, isDropped);
        makeLibrary();
        std::atomic<bool> isLocked{false};
        std::thread other([&isLocked, isDropped, details = m_server->details()] {
            ServerConnection connection(details, "other"_s);
            connection.run(
                "BEGIN; LOCK TABLE tags IN EXCLUSIVE MODE; UPDATE tags SET tag_description='theirs' "
                "WHERE tag_id="_s +
                (isDropped ? "1"_s : "2"_s));
            isLocked = true;
            const QString waiting = "SELECT count(*) FROM pg_locks WHERE NOT granted"_s;
            for (int i = 0; i < 2000 && connection.value(waiting) == "0"_s; ++i)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            connection.run("COMMIT"_s);
        });
        while (!isLocked)
            std::this_thread::yield();
        const bool isDone = m_collection->tags().renameTag(1, "mine"_s);
        other.join();
        QCOMPARE(isDone, !isDropped);
        QTRY_COMPARE(shown(), truth());
        QCOMPARE(m_warnings->size(), int(isDropped));
    }

    void ownOperationOfManyCommitsIsNoNews()
    {
        const qint64 first = m_collection->addExternal("a.txt"_s);
        const qint64 second = m_collection->addExternal("b.txt"_s);
        // The worker waits for the other's lock in the middle of its work.
        foreign("BEGIN; SELECT 1 FROM file_paths WHERE path LIKE '%b.txt' FOR UPDATE");
        m_collection->manager()->transferFiles({first, second});
        QTRY_COMPARE(Sql::count("storage"_s), 1);
        QTRY_VERIFY(!Sql::rows("SELECT 1 FROM pg_locks WHERE NOT granted").isEmpty());
        QCoreApplication::processEvents();
        const qint64 early = m_collection->tags().addTag("early"_s);
        foreign("COMMIT");
        m_collection->waitForWorker();
        QVERIFY(early > 0);
        QCOMPARE(Sql::count("storage"_s), 2);
        QVERIFY(m_collection->tags().addTag("mine"_s) > 0);
        QCOMPARE(m_warnings->size(), 0);
    }

    void changeDuringAnOwnAddIsNotHidden()
    {
        const QString path = m_collection->write("a.txt"_s, "a");
        // The worker waits for the other's lock, so that the change is there before its commit.
        foreign("BEGIN; LOCK TABLE files IN EXCLUSIVE MODE");
        m_collection->mainView().addUrls({QUrl::fromLocalFile(path)});
        QTRY_VERIFY(!Sql::rows("SELECT 1 FROM pg_locks WHERE NOT granted").isEmpty());
        foreign("INSERT INTO tags VALUES (71,'theirs','',0,NULL); COMMIT");
        m_collection->waitForWorker();
        QCOMPARE(m_collection->manager()->files().size(), 1);
        QTRY_COMPARE(m_collection->tags().tagName(71), "theirs"_s);
        QVERIFY(m_collection->tags().addTag("more"_s) > 0);
    }

    void changeBesideAnOwnOneIsNotHidden_data()
    {
        QTest::addColumn<bool>("isOfWorker");
        addRow("edit", false);
        addRow("added file", true);
    }

    void changeBesideAnOwnOneIsNotHidden()
    {
        QFETCH(bool, isOfWorker);
        const qint64 tagId = isOfWorker ? m_collection->tags().addTag("mine"_s) : 0;
        const auto beside = [this] {
            foreign("INSERT INTO tags VALUES (72,'theirs','',0,NULL) ON CONFLICT DO NOTHING");
        };
        const DatabaseManger *manager = m_collection->manager();
        connect(manager, &DatabaseManger::tagsAdded, m_warnings.get(), beside);
        connect(manager, &DatabaseManger::startedAddingFiles, m_warnings.get(), [beside] {
            while (Sql::count("files"_s) < 1)
                QThread::msleep(1);
            beside();
        });
        if (isOfWorker)
            m_collection->addExternal("a.txt"_s);
        m_collection->tags().changeDescription(isOfWorker ? tagId : m_collection->tags().addTag("mine"_s),
                                               "later"_s);
        QTRY_COMPARE(m_collection->tags().tagName(72), "theirs"_s);
        QCOMPARE(m_warnings->size(), 0);
    }

    void withoutAStampNothingIsWritten()
    {
        foreign("DELETE FROM tables_modification_date");
        QCOMPARE(m_collection->tags().addTag("lost"_s), qint64(0));
        QCOMPARE(m_warnings->size() + Sql::count("tags"_s), 0);
    }

private:
    static constexpr int ForeignNewsWait = 300;

    /** Three files, two tags in a group, on nodes and in places, known to the collection. */
    void makeLibrary()
    {
        const QVector<qint64> tags = m_collection->addTags({"one"_s, "two"_s});
        m_collection->add(QUrl("https://example.org/1"_s), tags);
        m_collection->add(QUrl("https://example.org/2"_s), tags);
        m_collection->addExternal("a.txt"_s);
        QVERIFY(m_server->owner().run("UPDATE files SET storage_id=3 WHERE file_id=3; "
                                      "UPDATE file_paths SET path_id=3"_s));
        m_collection->manager()->setGroupTags(m_collection->manager()->addGroup("group"_s, true), tags);
        const qint64 node = m_collection->manager()->addNodeBelow(tags.first(), 0);
        m_collection->manager()->addNodeBelow(tags.last(), node);
        m_collection->manager()->addRelations({}, {tags.first()});
        m_collection->manager()->addRelations("1"_s, {tags.last()});
        m_collection->manager()->reloadAllData();
        m_reloads->clear();
        QCOMPARE(shown(), truth());
    }
    QStringList shown() { return ClientRecords::shown(*m_collection->manager()); }
    static QStringList truth() { return ClientRecords::truth(); }
};

QTEST_MAIN(TestForeignNews)
#include "tst_foreignnews.moc"
