#include "core/controllers/collectionsettings.h"
#include "db/sql/connections.h"
#include "fileops/pictures/imageloading.h"
#include "tests/support/servertest.h"

/** What only a collection on a server does: rights, versions, sessions, several browsing trees. */
class TestServerManager : public ServerTest
{
    Q_OBJECT

private slots:
    void init() { openServer(); }
    void cleanup() { closeServer(); }

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
};

QTEST_MAIN(TestServerManager)
#include "tst_servermanager.moc"
