#include "core/records/trnode.h"
#include "core/undo/undohistory.h"
#include "tests/support/clientrecords.h"
#include "tests/support/localmanager.h"
#include "tests/support/serverdatabase.h"

#include <random>

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

/** A person who edits without end, the same way for the same seed. */
class Editor
{
public:
    Editor(DatabaseManger &manager, unsigned seed) : m_manager(manager), m_random(seed) {}

    void edit()
    {
        const QString name = "name '%1' 100% ü"_s.arg(below(1000000));
        switch (below(19)) {
        case 0:
            m_manager.addTag(name, below(2) ? files() : Ids());
            break;
        case 1:
            m_manager.renameTag(tag(), name);
            break;
        case 2:
            m_manager.changeTagDescription(tag(), name);
            break;
        case 3:
            m_manager.addGroup(name, true);
            break;
        case 4:
            m_manager.renameGroup(group(), name);
            break;
        case 5:
            m_manager.setGroupTags({{group(), tags()}, {group(), tags()}});
            break;
        case 6:
            m_manager.addNodesBelow(tags(), below(4) ? node() : 0);
            break;
        case 7:
            m_manager.addNodesAbove(tags(), node());
            break;
        case 8:
            m_manager.updateNode(node(), below(2) ? "inverted"_s : "tr_options"_s, QString::number(below(2)));
            break;
        case 9:
            removeSome(name);
            break;
        case 10:
            m_manager.addRelations(below(3) ? relation() : QString(), tags());
            break;
        case 11:
            m_manager.updateFile(files().first(), below(2) ? "file_name"_s : "file_description"_s, name);
            break;
        case 12:
            m_manager.tagFiles(files(), {tags(), {name, name + "2"_s}});
            break;
        case 13:
            m_manager.addNodesOf({tags(), {name}}, below(2) ? node() : 0);
            break;
        case 14:
            m_manager.addRelationsOf(below(3) ? relation() : QString(), {tags(), {name}});
            break;
        case 15:
            m_manager.mergeTags(tag(), tags());
            break;
        default:
            m_manager.changeTags(Tagging::of(files(), tags(), tags()));
        }
    }

private:
    void removeSome(const QString &name)
    {
        switch (below(7)) {
        case 0:
            m_manager.removeTags(unusedTags());
            break;
        case 6:
            m_manager.removeNodes({node()});
            break;
        case 1:
        case 2:
            m_manager.removeNodesKeepingChildren({node(), node()});
            break;
        case 3:
            m_manager.removeGroups({group()});
            break;
        case 4:
            m_manager.removeRelations({relation()});
            break;
        default:
            m_manager.addTagToGroup(name, group());
        }
    }
    int below(int bound) { return int(m_random() % unsigned(bound)); }
    qint64 oneOf(const QList<qint64> &ids) { return ids.isEmpty() ? 0 : ids.at(below(ids.size())); }
    qint64 group() { return oneOf(m_manager.groups()->keys()); }
    qint64 node() { return oneOf(m_manager.nodes().keys()); }
    qint64 tag()
    {
        const TableData &rows = m_manager.tags();
        return rows.isEmpty() ? 0 : rows.at(below(rows.size()))->value("tag_id"_s).toLongLong();
    }
    /** One at most: what is in use is asked about, and is not taken back. */
    Ids unusedTags()
    {
        QSet<qint64> used{1}; // there is always one to choose
        for (const TBnode *node : qAsConst(m_manager.nodes()))
            used.insert(node->tagId());
        for (const auto &place : qAsConst(m_manager.relationNodes()))
            used.insert(place.second->id());
        for (const File *file : qAsConst(m_manager.files())) {
            for (const qint64 tagId : file->tags())
                used.insert(tagId);
        }
        for (const TableRowData *row : m_manager.tags()) {
            if (!used.contains(row->value("tag_id"_s).toLongLong()))
                return {row->value("tag_id"_s).toLongLong()};
        }
        return {};
    }
    QString relation()
    {
        const auto &places = m_manager.relationNodes();
        return places.isEmpty() ? QString() : places.at(below(places.size())).first;
    }
    Ids several(qint64 (Editor::*one)(), int most)
    {
        QSet<qint64> ids;
        for (int i = below(most); i >= 0; --i)
            ids.insert((this->*one)());
        return ids.values().toVector();
    }
    Ids tags() { return several(&Editor::tag, 3); }
    qint64 file() { return oneOf(m_manager.files().keys()); }
    Ids files() { return several(&Editor::file, 12); }

    DatabaseManger &m_manager;
    std::mt19937 m_random;
};

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
        Editor editor(*manager.get(), seed);
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
