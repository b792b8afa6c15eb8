#include "core/controllers/collectionsettings.h"
#include "db/sql/connections.h"
#include "fileops/pictures/imageloading.h"
#include "tests/support/clientrecords.h"
#include "tests/support/localcollection.h"
#include "tests/support/serverdatabase.h"

#include <QWindow>

#include <atomic>
#include <thread>

/** What only a collection on a server does: rights, versions, others' changes, several browsing trees. */
class TestServerManager : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        if (!ServerDatabase::isAvailable())
            QSKIP("VORNA_TEST_PG names no server");
        auto database = std::make_unique<ServerDatabase>();
        m_server = database.get();
        m_collection = std::make_unique<LocalCollection>(std::move(database));
        m_warnings = std::make_unique<QSignalSpy>(m_collection->get(), &Collection::showTempWarning);
        m_reloads = std::make_unique<QSignalSpy>(m_collection->get(), &Collection::allDataReloaded);
    }

    void cleanup()
    {
        m_warnings.reset();
        m_reloads.reset();
        m_collection.reset();
    }

    void versionCheck_data()
    {
        QTest::addColumn<QString>("statements"); // of the owner, before the check
        addColumns<QString, bool, bool, QString, QString>("user", "agrees", "opens", "boxes", "version");
        const QString old = "The database was created with an earlier version of Vorna."_s;
        const QString makeOld =
            "UPDATE scheme_version SET version='3.2.0'; ALTER TABLE files DROP CONSTRAINT "
            "files_storage_id_check, ADD CONSTRAINT files_storage_id_check CHECK (storage_id>0), "
            "ADD CONSTRAINT internal_bool CHECK (internal IN (0,1))"_s;
        const QString makeEmpty =
            "DROP SCHEMA public CASCADE; CREATE SCHEMA public; GRANT USAGE ON SCHEMA public TO PUBLIC"_s;
        const QString makeStrange = "UPDATE scheme_version SET version='strange'"_s;
        const QString owner = ServerDatabase::ownerDetailsFor({}).user();
        const QString reader = ServerDatabase::reader;
        const QString writer = ServerDatabase::writer;
        const QString upgraded = "|Database upgraded successfully."_s;
        const QString refused =
            "|Problem occurred while upgrading database. Probably you have no permission to "
            "perform this operation."_s;
        const QString error = "Error opening database: The database "_s;
        addRow("current", ""_s, writer, true, true, ""_s, "4.1.0"_s);
        addRow("old, agreed by the owner", makeOld, owner, true, true, old + upgraded, "4.1.0"_s);
        addRow("old, declined", makeOld, owner, false, false, old, "3.2.0"_s);
        addRow("old, agreed by somebody else", makeOld, writer, true, false, old + refused, "3.2.0"_s);
        addRow("old, for a reader", makeOld, reader, true, true, ""_s, "3.2.0"_s);
        addRow("without tables", makeEmpty, writer, true, false,
               error + "could be corrupted please check it."_s, ""_s);
        addRow("unknown version", makeStrange, writer, true, false, error + "is not supported"_s,
               "strange"_s);
        addRow("nobody's", ""_s, "nobody"_s, true, false, ""_s, "4.1.0"_s);
    }

    void versionCheck()
    {
        QFETCH(QString, statements);
        QFETCH(QString, user);
        QFETCH(bool, agrees);
        m_collection->close();
        QVERIFY(statements.isEmpty() || m_server->owner().run(statements));
        m_collection->answerBoxesWith(agrees ? QMessageBox::Ok : QMessageBox::Cancel);
        QTEST(Collection::canOpen(ServerDatabase::detailsFor(m_server->details().databaseName(), user),
                                  m_collection->prompts()),
              "opens");
        QTEST(m_collection->takeBoxes().join(QLatin1Char('|')), "boxes");
        QTEST(m_server->owner().value("SELECT version FROM scheme_version"_s), "version");
    }

    void sessionIsAsStatementsNeedIt()
    {
        const QString name = "\uFEFF\uFEFFa\\' \\\\b'; DROP TABLE tags; --"_s;
        m_collection->close();
        const QString role = "ALTER ROLE "_s + ServerDatabase::writer;
        QVERIFY(m_server->owner().run(
            "%1 SET standard_conforming_strings=off; %1 SET search_path=elsewhere"_s.arg(role)));
        const bool isOpen = m_collection->open();
        QVERIFY(m_server->owner().run(role + " RESET ALL"_s)); // the role is that of all tests
        QVERIFY(isOpen);

        // Not by the options of the connection alone: what stands in between may drop those.
        QCOMPARE(m_collection->value("SELECT string_agg(source,' ') FROM pg_settings WHERE name IN "
                                     "('lock_timeout','search_path')"),
                 "session session"_s);
        // The window must not stand still for a row that another client keeps; the worker has the time.
        QVERIFY(Connections::open(Constants::workerConnection, m_server->details()).isOpen);
        {
            QSqlQuery query("SHOW lock_timeout"_s, QSqlDatabase::database(Constants::workerConnection));
            QVERIFY(query.next());
            QCOMPARE(m_collection->value("SHOW lock_timeout") + query.value(0).toString(), "3s0"_s);
        }
        Connections::close(Constants::workerConnection);

        const qint64 tagId = m_collection->tags().addTag(name);
        const qint64 link =
            m_collection->add(QUrl("https://example.org/\\'%1"_s, QUrl::TolerantMode), {tagId});
        const qint64 file = m_collection->addExternal(name, {tagId});
        m_collection->reopen();
        QCOMPARE(m_collection->tags().tagName(tagId), name);
        QCOMPARE(m_collection->file(file)->name(), name);
        QCOMPARE(m_collection->file(link)->tags(), QVector<qint64>{tagId});
    }

    void readerOnlyReads()
    {
        m_collection->tags().addTag("theirs"_s);
        m_collection->close();
        const DBDetails details = m_server->readerDetails();
        const std::unique_ptr<Collection> reader(
            makeCollection(2, details.host(), details.databaseName(), details.user(), {}, details.port()));
        reader->setPrompts(m_collection->prompts());
        QSignalSpy errors(reader.get(), &Collection::errorOccured);
        QVERIFY(!reader->open().isValid());
        reader->load();
        QVERIFY(reader->isReadOnly());
        QCOMPARE(reader->dbVersion(), "4.1.3"_s);
        QCOMPARE(reader->tagsController()->tagName(1), "theirs"_s);
        reader->browsTreeController()->addNodesBelow({1}, 0);
        QCOMPARE(m_collection->takeBoxes(), QStringList{"Read-only Database: This database is read-only."_s});
        QCOMPARE(errors.size(), 0);
    }

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
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
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

    void rowThatAnotherHoldsIsBusy()
    {
        const qint64 tagId = m_collection->tags().addTag("mine"_s);
        foreign("BEGIN; DELETE FROM tags");
        QVERIFY(!m_collection->tags().renameTag(tagId, "lost"_s));
        QCOMPARE(
            QList<QVariantList>(*m_warnings),
            QList<QVariantList>{(QVariantList{"Warning"_s, "The database is busy. Please try again."_s})});
        foreign("ROLLBACK");
        QVERIFY(m_collection->tags().renameTag(tagId, "mine too"_s));
    }

    void aPictureHoldsTheWindowForNoLock()
    {
        foreign("BEGIN; LOCK TABLE files");
        QElapsedTimer passed;
        passed.start();
        const std::unique_ptr<ImageLoading> loading = m_collection->manager()->loadImage(1);
        QVERIFY2(!passed.hasExpired(2000), "The window stands still");
        QCOMPARE(loading->result().state, StoredImage::Busy);
        foreign("ROLLBACK");
        QCOMPARE(m_collection->value("SHOW lock_timeout"), "3s"_s);
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

    void treesOfOneUser()
    {
        BrowsTreeController &tree = m_collection->tree();
        const qint64 tagId = m_collection->tags().addTag("tag"_s);
        const qint64 first = m_collection->addNode(tagId);
        const QString name = "it's \\ \"mine\""_s;
        QVERIFY(tree.addTree(name) && tree.renameTree(2, name)); // its own
        QVERIFY(!tree.addTree(name) && !tree.renameTree(1, name) && !tree.removeTree(1) &&
                !tree.removeTree(99));
        QSignalSpy announced(m_collection->get(), &Collection::aboutToReloadAllData);
        QVERIFY(tree.selectTree(2) && !tree.nodeById(first));
        QCOMPARE(announced.size(), 1); // docks note then what is selected and open
        QCOMPARE(tree.currentTreeName(), name);
        // A list that cannot be read leaves the one that is known.
        for (const auto &names :
             {qMakePair("browsing_trees"_s, "away"_s), qMakePair("away"_s, "browsing_trees"_s)}) {
            QVERIFY(m_server->owner().run("ALTER TABLE %1 RENAME TO %2"_s.arg(names.first, names.second)));
            m_collection->manager()->loadBrowsingTrees();
            QCOMPARE(tree.browsingTrees().size(), 2);
        }
        // Nodes of both kinds go into the tree that is shown: the window's and the worker's.
        QCOMPARE(tree.nodeById(m_collection->addNode(tagId))->treeId(), qint64(2));
        m_collection->write("folder/f.txt"_s, "f");
        tree.addUrlsToNode(0, {QUrl::fromLocalFile(m_collection->filePath("folder"_s))});
        m_collection->waitForWorker();
        QCOMPARE(Sql::value("SELECT child_id, browsing_tree_id FROM tb_node_links ORDER BY 1"),
                 "1|1\n2|2\n3|2"_s);

        m_collection->reopen();
        QSignalSpy loads(m_collection->manager(), &DatabaseManger::browsingNodeLoaded);
        m_collection->manager()->reloadAllData();
        m_collection->get()->load();
        QCOMPARE(loads.size(), 2); // once each
        QCOMPARE(m_collection->tree().currentBrowsingTree(), qint64(2));
        QCOMPARE(m_collection->manager()->nodes().keys(), (QList<qint64>{2, 3}));
        QVERIFY(m_collection->tree().removeTree(2));
        QCOMPARE(m_collection->tree().browsingTrees().keys(), QList<qint64>{1});
        QCOMPARE(m_collection->manager()->nodes().keys(), QList<qint64>{1});
        QCOMPARE(m_collection->get()->settings()->browsingTree(), qint64(1));
        QCOMPARE(Sql::value("SELECT node_id, child_id FROM tb_nodes, tb_node_links"), "1|1"_s);
        QVERIFY(m_collection->tree().addTree("other"_s) && m_collection->tree().selectTree(3));
        m_collection->tags().removeTags({tagId}); // also from trees that are not shown
        QCOMPARE(Sql::count("tb_nodes"_s), 0);
    }

    void treeThatAnotherRemoved()
    {
        BrowsTreeController &tree = m_collection->tree();
        QVERIFY(tree.addTree("gone"_s) && tree.addTree("stays"_s) && tree.selectTree(2));
        QSignalSpy errors(m_collection->get(), &Collection::showError);
        foreign("DELETE FROM browsing_trees WHERE tree_id=2");
        QTRY_COMPARE(errors.size(), 1);
        QCOMPARE(errors.first(),
                 (QVariantList{"Browsing tree error"_s, "Selected browsing tree no longer exists.\n"
                                                        "Selected default browsing tree."_s}));
        QCOMPARE(tree.currentBrowsingTree(), qint64(1));
        QCOMPARE(m_collection->get()->settings()->browsingTree(), qint64(1)); // no word at the next opening
        foreign("DELETE FROM browsing_trees WHERE tree_id IN (1,3)");
        foreign("INSERT INTO browsing_trees VALUES (8,'lowest'),(9,'other')");
        QVERIFY(!tree.selectTree(3));
        QCOMPARE(tree.currentTreeName(), "lowest"_s);
        QTRY_COMPARE(errors.size(), 2);
        m_collection->reopen();
        QCOMPARE(m_collection->tree().currentTreeName(), "lowest"_s);
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

    /** A change by another client. */
    void foreign(const char *statement) { QVERIFY(m_server->owner().run(QString::fromUtf8(statement))); }

    ServerDatabase *m_server = nullptr; // the collection's
    std::unique_ptr<LocalCollection> m_collection;
    std::unique_ptr<QSignalSpy> m_warnings;
    std::unique_ptr<QSignalSpy> m_reloads;
};

QTEST_MAIN(TestServerManager)
#include "tst_servermanager.moc"
