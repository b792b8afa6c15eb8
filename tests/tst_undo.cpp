#include "core/undo/undohistory.h"
#include "tests/support/clientrecords.h"
#include "tests/support/localmanager.h"
#include "tests/support/randomeditor.h"
#include "tests/support/serverdatabase.h"

namespace {
using Ids = QVector<qint64>;

/** All tables that an edit can reach, row by row, and what the records say of them. */
QByteArray stateOf(LocalManager &manager)
{
    QCryptographicHash hash(QCryptographicHash::Md5);
    for (const char *table :
         {"tags", "tag_groups", "tag_group_links", "tb_nodes", "tb_node_links", "tb_autolinks",
          "tb_nodes_autolinks", "tag_relationships", "files", "file_paths", "file_tag"}) {
        QStringList rows = Sql::rows("SELECT * FROM "_s + QLatin1String(table));
        rows.sort();
        hash.addData(rows.join(QLatin1Char('\n')).toUtf8());
        hash.addData("|");
    }
    hash.addData(ClientRecords::shown(*manager.get()).join(QLatin1Char('\n')).toUtf8());
    return hash.result();
}

UndoHistory *historyOf(LocalManager &manager, bool mayEdit = true)
{
    return new UndoHistory(
        manager.get(), [mayEdit] { return mayEdit; }, manager.get());
}
} // namespace

/** Edits that are taken back and done again. */
class TestUndo : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addBackEnds(); }

    /** VORNA_UNDO_EDITS and VORNA_UNDO_SEED choose how many, and which. */
    void randomEditsAreTakenBackOneByOne()
    {
        const int edits = qEnvironmentVariableIntValue("VORNA_UNDO_EDITS") > 0
                              ? qEnvironmentVariableIntValue("VORNA_UNDO_EDITS")
                              : 120;
        const auto seed = unsigned(qEnvironmentVariableIntValue("VORNA_UNDO_SEED"));
        LocalManager manager(makeTestDatabase());
        manager.addFiles(60);
        manager->addTag("first"_s);
        UndoHistory &history = *historyOf(manager);
        history.setMostSteps(edits + 1);
        const QSignalSpy lost(&history, &UndoHistory::fellShort);
        const QSignalSpy changed(&history, &UndoHistory::changed);
        RandomEditor editor(*manager.get(), seed);
        QVector<QByteArray> states{stateOf(manager)};
        for (int i = 0; i < edits; ++i) {
            const int before = changed.size();
            editor.edit();
            // What changed nothing is no step, and nothing else is left out.
            QCOMPARE(changed.size() > before, stateOf(manager) != states.constLast());
            if (changed.size() > before)
                states.append(stateOf(manager));
        }
        QVERIFY(states.size() > edits / 2);
        for (int i = states.size() - 2; i >= 0; --i) {
            const QString name = history.undoText();
            history.undo();
            QVERIFY2(stateOf(manager) == states.at(i), qPrintable("undo %1: %2"_s.arg(i).arg(name)));
        }
        QVERIFY(!history.canUndo());
        for (int i = 1; i < states.size(); ++i) {
            const QString name = history.redoText();
            history.redo();
            QVERIFY2(stateOf(manager) == states.at(i), qPrintable("redo %1: %2"_s.arg(i).arg(name)));
        }
        QCOMPARE(lost.size(), 0);
        // The records say what the database does when all is read anew.
        manager->reloadAllData();
        QCOMPARE(stateOf(manager), states.constLast());
    }

    void mergedTagsAreOneStep_data()
    {
        QTest::addColumn<int>("pairsAtOnce");
        QTest::newRow("at once") << FileEdits::mostPairsAtOnce();
        QTest::newRow("by the worker") << 1;
    }
    void mergedTagsAreOneStep()
    {
        QFETCH(int, pairsAtOnce);
        LocalManager manager(makeTestDatabase());
        manager.addFiles(3);
        const qint64 post = manager->addTag("Post"_s);
        const qint64 mail = manager->addTag("Mail"_s);
        const qint64 desk = manager->addTag("Desk"_s);
        const qint64 old = manager->addTag("Old"_s);
        manager->changeTagDescription(mail, "by hand"_s);
        manager->linkTags({1, 2}, {post});
        manager->linkTags({2, 3}, {mail});
        const qint64 group = manager->addGroup("Paper"_s, true);
        manager->setGroupTags({{group, {mail, old}}});
        const qint64 first = manager->addNodeBelow(post, 0);
        const qint64 below = manager->addNodeBelow(old, first);
        const qint64 second = manager->addNodeBelow(mail, 0);
        const qint64 deep = manager->addNodeBelow(desk, manager->addNodeBelow(old, second));
        const qint64 alone = manager->addNodeBelow(mail, below);
        manager->addRelations(QString(), {desk});
        manager->addRelations("3"_s, {post});
        manager->addRelations("3.1"_s, {mail});
        manager->addRelations("3.1.2"_s, {old});
        QVERIFY(
            manager.run("INSERT INTO tb_nodes_autolinks (link_id,node_id) VALUES ('folder',%1)"_s.arg(second)
                            .toUtf8()
                            .constData()));
        manager->reloadAllData();
        UndoHistory &history = *historyOf(manager);
        const QByteArray before = stateOf(manager);
        FileEdits::setMostPairsAtOnce(pairsAtOnce);
        const auto restore = qScopeGuard([] { FileEdits::setMostPairsAtOnce(TagMerges::mostAtOnce); });

        QVERIFY(manager->mergeTags(post, {mail}));
        QTRY_COMPARE(history.undoText(), "Merge Mail into Post"_s);
        const QByteArray after = stateOf(manager);
        QCOMPARE(Sql::rows("SELECT file_id,tag_id FROM file_tag ORDER BY 1"),
                 (QStringList{"1|1"_s, "2|1"_s, "3|1"_s}));
        QCOMPARE(Sql::value("SELECT tag_description FROM tags WHERE tag_id=1"), "by hand"_s);
        QCOMPARE(Sql::rows("SELECT tag_id FROM tag_group_links ORDER BY 1"), (QStringList{"1"_s, "4"_s}));
        QCOMPARE(Sql::rows("SELECT relationship_path FROM tag_relationships ORDER BY 1"),
                 (QStringList{"3"_s, "3.1"_s, "3.1.4"_s}));
        // One of the twins is left, with what stood below and belonged to the other one.
        QCOMPARE(manager->nodes().keys().size(), 4);
        QCOMPARE(manager->nodes().value(deep)->parentNode()->id(), below);
        QCOMPARE(manager->nodes().value(alone)->tagId(), post);
        QCOMPARE(Sql::value("SELECT node_id FROM tb_nodes_autolinks"), QString::number(first));
        QVERIFY(!manager->hasTag(mail));
        QVERIFY(manager->file(3)->tags() == Ids{post});

        history.undo();
        QTRY_VERIFY(!history.canUndo());
        QCOMPARE(stateOf(manager), before);
        history.redo();
        QTRY_VERIFY(!history.canRedo());
        QCOMPARE(stateOf(manager), after);
        manager->reloadAllData();
        QCOMPARE(stateOf(manager), after);
    }

    void whatAnotherFileHasByNowIsLeftToIt()
    {
        LocalManager manager(makeTestDatabase());
        manager.addFiles(3);
        UndoHistory &history = *historyOf(manager);
        const QSignalSpy lost(&history, &UndoHistory::fellShort);
        const qint64 tag = manager->addTag("Letters"_s);
        QVERIFY(manager->linkTags({1, 2, 3}, {tag}));
        QVERIFY(manager.run("UPDATE files SET id_code='other' WHERE file_id=2"));
        manager->reloadAllData();
        history.undo();
        QCOMPARE(Sql::value("SELECT file_id FROM file_tag"), "2"_s);
        QCOMPARE(lost.size(), 1);
        // It is in use, so it stays.
        history.undo();
        QCOMPARE(manager->tagName(tag), "Letters"_s);
        QCOMPARE(lost.size(), 2);
    }

    void readOnlyDatabaseTakesNothingBack()
    {
        LocalManager manager(makeTestDatabase());
        UndoHistory &history = *historyOf(manager, false);
        const qint64 tag = manager->addTag("Letters"_s);
        history.undo();
        QVERIFY(manager->hasTag(tag) && history.canUndo());
    }

    void severalEditsAreOneStep()
    {
        LocalManager manager(makeTestDatabase());
        UndoHistory &history = *historyOf(manager);
        const QByteArray before = stateOf(manager);
        {
            const UndoScope scope(&history, "all of it"_s);
            const qint64 tag = manager->addTag("Letters"_s);
            manager->addNodeBelow(tag, 0);
            manager->renameTag(tag, "Post"_s);
        }
        QCOMPARE(history.undoText(), "all of it"_s);
        history.undo();
        QCOMPARE(stateOf(manager), before);
        QVERIFY(!history.canUndo());
    }
};

QTEST_GUILESS_MAIN(TestUndo)
#include "tst_undo.moc"
