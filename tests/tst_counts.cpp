#include "core/undo/undohistory.h"
#include "db/sql/sqltext.h"
#include "models/contents/contentsmodel.h"
#include "models/contents/filefiltermodel.h"
#include "models/counts/tagcounts.h"
#include "models/tags/tagroles.h"
#include "models/tags/tagstablemodel.h"
#include "tests/support/localcollection.h"
#include "tests/support/randomeditor.h"
#include "tests/support/serverdatabase.h"

using Step = std::function<void(LocalCollection &)>;
Q_DECLARE_METATYPE(Step)

namespace {
using Ids = QVector<qint64>;

/** The numbers that stand beside tags, and what the database says of them. */
class Counts
{
public:
    explicit Counts(LocalCollection &open) : m_open(open) {}

    QStringList shown() const
    {
        const TagsTableModel &table = *m_open.tags().tableModel();
        QStringList counts;
        for (int row = 0; row < table.rowCount(); ++row)
            counts.append("%1: %2"_s.arg(table.tagAt(row)->id())
                              .arg(table.index(row, 0).data(TagRoles::FileCount).toString()));
        counts.sort();
        return counts;
    }
    QStringList stored() const
    {
        const FileFilterModel &filter = *m_open.mainView().filterModel();
        const QString all = "(SELECT COUNT(*) FROM file_tag l WHERE l.tag_id=t.tag_id)"_s;
        const QString some =
            "(SELECT COUNT(*) FROM file_tag l WHERE l.tag_id=t.tag_id AND file_id IN (%1))"_s.arg(
                SqlText::idList(filter.acceptedFiles() + Ids{0}));
        const bool isLimited = filter.nodeType() != NodeType(0) && filter.nodeType() != AllFiles;
        QStringList counts = Sql::rows(
            isLimited
                ? "SELECT tag_id||': '||CASE WHEN %1=0 THEN '0' ELSE %2||' of '||%1 END FROM tags t"_s.arg(
                      all, some)
                : "SELECT tag_id||': '||%1 FROM tags t"_s.arg(all));
        counts.sort();
        return counts;
    }

private:
    LocalCollection &m_open;
};

QString beside(LocalCollection &open, int row, int role = TagRoles::FileCount)
{
    return open.tags().tableModel()->index(row, TagsTableModel::NameColumn).data(role).toString();
}
} // namespace

/** The numbers of files that stand beside tags. */
class TestCounts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data() { addBackEnds(); }

    void numbersFollowRandomEdits()
    {
        LocalCollection open(makeTestDatabase());
        open.addFiles(60);
        open.addTags({"first"_s});
        const Counts counts(open);
        RandomEditor editor(*open.manager(), 17);
        for (int i = 0; i < 400; ++i) {
            switch (editor.below(12)) {
            case 0:
                open.tags().showTagsSelected(editor.tags());
                break;
            case 1:
                open.mainView().showSpecialNode(NodeType(editor.below(6) + AllFiles));
                break;
            case 2:
                if (const qint64 node = editor.node())
                    open.activate(node);
                break;
            case 3:
                open->history()->undo();
                break;
            default:
                editor.edit();
            }
            QCOMPARE(counts.shown(), counts.stored());
        }
    }

    void numbersFollow_data()
    {
        addColumns<Step, QString>("step", "counts");
        // Of the files 1 to 9 the tag red has the first six and green those from 4 on; red is selected.
        addRow("nothing", Step([](LocalCollection &) {}), "6 of 6, 3 of 6"_s);
        addRow("a tag for all files by the worker", Step([](LocalCollection &open) {
                   FileEdits::setMostPairsAtOnce(1);
                   open.mainView().linkTags({1, 2, 3, 4, 5, 6, 7, 8, 9}, {1});
                   open.waitForWorker();
               }),
               "9 of 9, 6 of 6"_s);
        addRow("undo of tagging", Step([](LocalCollection &open) {
                   open.mainView().linkTags({7, 8}, {1});
                   open->history()->undo();
               }),
               "6 of 6, 3 of 6"_s);
        addRow("merging", Step([](LocalCollection &open) { open.tags().mergeTags(2, {1}); }), "9 of 9"_s);
        addRow("deleted files", Step([](LocalCollection &open) {
                   open.mainView().deleteFiles({5, 6, 7});
                   open.waitForWorker();
               }),
               "4 of 4, 1 of 3"_s);
        addRow("what others have written", Step([](LocalCollection &open) {
                   open.run("DELETE FROM file_tag WHERE file_id=4");
                   open.manager()->reloadAllData();
               }),
               "5 of 5, 2 of 5"_s);
        addRow("a search for a name",
               Step([](LocalCollection &open) { open.mainView().setFileFilterString("file 1"_s); }),
               "6, 6"_s);
        addRow("files of a kind",
               Step([](LocalCollection &open) { open.mainView().showSpecialNode(AllInternalFiles); }),
               "0 of 6, 0 of 6"_s);
        addRow("hyperlinks", Step([](LocalCollection &open) {
                   open.mainView().showSpecialNode(AllHyperlinks);
                   open.mainView().linkTags({9}, {1});
               }),
               "7 of 7, 6 of 6"_s);
        addRow("switched off", Step([](LocalCollection &open) { open->countFiles(false); }), ", "_s);
    }
    void numbersFollow()
    {
        QFETCH(Step, step);
        LocalCollection open(makeTestDatabase());
        const auto restore = qScopeGuard([] { FileEdits::setMostPairsAtOnce(TagMerges::mostAtOnce); });
        open.addFiles(9);
        open.addTags({"red"_s, "green"_s});
        open.mainView().linkTags({1, 2, 3, 4, 5, 6}, {1});
        open.mainView().linkTags({4, 5, 6, 7, 8, 9}, {2});
        open.tags().showTagsSelected({1});
        const QSignalSpy changed(open.tags().counts(), &TagCounts::changed);
        step(open);
        QStringList texts;
        for (int row = 0; row < open.tags().tableModel()->rowCount(); ++row)
            texts.append(beside(open, row));
        QTEST(texts.join(QStringLiteral(", ")), "counts");
        QVERIFY(qstrcmp(QTest::currentDataTag(), "nothing") == 0 || !changed.isEmpty());
    }

    /** They go on with the name, as a screen reader tells it. */
    void rowsAreSpoken()
    {
        LocalCollection open(makeTestDatabase());
        open.addFiles(2);
        open.addTags({"Garden"_s});
        const auto spoken = [&open] { return beside(open, 0, Qt::AccessibleTextRole); };
        QCOMPARE(spoken(), "Garden, 0 files"_s);
        open.mainView().linkTags({1}, {1});
        QCOMPARE(spoken(), "Garden, 1 file"_s);
        open.mainView().linkTags({2}, {1});
        open.mainView().showSpecialNode(AllInternalFiles);
        QCOMPARE(spoken(), "Garden, 0 of 2 files"_s);
        open->countFiles(false);
        QCOMPARE(spoken(), QString());
    }
};

QTEST_MAIN(TestCounts)
#include "tst_counts.moc"
