#include "core/undo/undohistory.h"
#include "db/sql/sqltext.h"
#include "models/contents/contentsmodel.h"
#include "models/contents/filefiltermodel.h"
#include "models/counts/nodecounts.h"
#include "models/counts/tagcounts.h"
#include "models/tags/tagroles.h"
#include "models/tags/tagstablemodel.h"
#include "models/trees/tbtreemodel.h"
#include "models/trees/treeroles.h"
#include "tests/support/localcollection.h"
#include "tests/support/randomeditor.h"
#include "tests/support/serverdatabase.h"

using Step = std::function<void(LocalCollection &)>;
Q_DECLARE_METATYPE(Step)

namespace {
using Ids = QVector<qint64>;

QString textOf(const QModelIndex &index, int role)
{
    const auto count = index.data(role).value<FileCount>();
    return count.isOutdated() ? "?"_s : count.text(QLocale::c());
}

/** The numbers that stand beside tags and nodes, and what the database says of them. */
class Counts
{
public:
    explicit Counts(LocalCollection &open) : m_open(open) {}

    QStringList ofTags() const
    {
        const TagsTableModel &table = *m_open.tags().tableModel();
        QStringList counts;
        for (int row = 0; row < table.rowCount(); ++row)
            counts.append(
                "%1: %2"_s.arg(table.tagAt(row)->id()).arg(textOf(table.index(row, 0), TagRoles::FileCount)));
        counts.sort();
        return counts;
    }
    QStringList storedOfTags() const
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

    /** Of the fixed nodes by their types, of those of tags by their ids. */
    QStringList ofNodes() const
    {
        QStringList counts;
        const auto add = [&counts](const QModelIndex &index) {
            const bool isOfTag = index.data(NodeRole::Type).toInt() == TagNode;
            counts.append("%1 %2: %3"_s.arg(isOfTag ? "node"_s : "type"_s)
                              .arg(index.data(isOfTag ? NodeRole::Id : NodeRole::Type).toString())
                              .arg(textOf(index, NodeRole::FileCount)));
        };
        forEachBelow(m_open.tree().model()->index(0, 0), add);
        counts.sort();
        return counts;
    }
    bool areKnown() const
    {
        const QStringList counts = ofNodes();
        return std::none_of(counts.begin(), counts.end(), [](const QString &count) {
            return count.endsWith(QLatin1Char(' ')) || count.endsWith(QLatin1Char('?'));
        });
    }
    QStringList storedOfNodes() const
    {
        const QStringList conditions{"1=1"_s,
                                     "file_id IN (SELECT file_id FROM file_tag)"_s,
                                     "file_id NOT IN (SELECT file_id FROM file_tag)"_s,
                                     "internal=1"_s,
                                     "internal=0"_s,
                                     "internal=2"_s,
                                     "1=0"_s}; // added long ago
        QStringList counts;
        for (int type = AllFiles; type <= RecentlyAddedFiles; ++type)
            counts.append("type %1: %2"_s.arg(type).arg(filesThat(conditions.at(type - 1))));
        for (const QString &node : Sql::rows("SELECT node_id FROM tb_nodes"))
            counts.append("node %1: %2"_s.arg(node, filesThat(askedBy(node))));
        counts.sort();
        return counts;
    }

private:
    static void forEachBelow(const QModelIndex &top, const std::function<void(const QModelIndex &)> &visit)
    {
        visit(top);
        for (int row = 0; row < top.model()->rowCount(top); ++row)
            forEachBelow(top.model()->index(row, 0, top), visit);
    }
    static QString value(const QString &statement) { return Sql::rows(statement).join(QString()); }
    static QString filesThat(const QString &condition)
    {
        return value("SELECT COUNT(*) FROM files f WHERE "_s + condition);
    }
    /** As the rules have it: the option of the node itself counts for all tags on the way down to it. */
    static QString askedBy(QString node)
    {
        const bool isWide = value("SELECT tr_options FROM tb_nodes WHERE node_id="_s + node) == "1"_s;
        QStringList conditions;
        bool isAnyRequired = false;
        while (!node.isEmpty() && node != "0"_s) {
            const QString tag = value("SELECT tag_id FROM tb_nodes WHERE node_id="_s + node);
            const bool isInverted = value("SELECT inverted FROM tb_nodes WHERE node_id="_s + node) == "1"_s;
            isAnyRequired = isAnyRequired || !isInverted;
            conditions.append("file_id %1 (SELECT file_id FROM file_tag WHERE tag_id IN (%2))"_s.arg(
                isInverted ? "NOT IN"_s : "IN"_s, isWide ? withThoseBelow(tag) : tag));
            node = value("SELECT parent_id FROM tb_node_links WHERE child_id="_s + node);
        }
        return isAnyRequired ? conditions.join(" AND "_s) : "1=0"_s;
    }
    static QString withThoseBelow(const QString &tag)
    {
        QStringList tags{tag};
        for (const QString &path : Sql::rows("SELECT relationship_path FROM tag_relationships")) {
            const QStringList steps = path.split(QLatin1Char('.'));
            if (steps.contains(tag))
                tags += steps.mid(steps.indexOf(tag));
        }
        return tags.join(QLatin1Char(','));
    }

    LocalCollection &m_open;
};

/** Shows the numbers as views do, which ask for them when they are told to paint, and not by themselves. */
class Screen : public QObject
{
public:
    explicit Screen(LocalCollection &open) : m_counts(open)
    {
        m_timer.setSingleShot(true);
        connect(&m_timer, &QTimer::timeout, this, [this] { paint(); });
        const auto paintSoon = qOverload<>(&QTimer::start);
        connect(open.tags().counts(), &TagCounts::changed, &m_timer, paintSoon);
        connect(open.tree().counts(), &NodeCounts::changed, &m_timer, paintSoon);
        using Model = QAbstractItemModel;
        for (const Model *model :
             {static_cast<Model *>(open.tags().tableModel()), static_cast<Model *>(open.tree().model())}) {
            connect(model, &Model::dataChanged, &m_timer, paintSoon);
            connect(model, &Model::rowsInserted, &m_timer, paintSoon);
            connect(model, &Model::rowsRemoved, &m_timer, paintSoon);
            connect(model, &Model::modelReset, &m_timer, paintSoon);
        }
        paint();
    }
    bool shows(const QStringList &tags, const QStringList &nodes) const
    {
        return m_tags == tags && m_nodes == nodes;
    }
    QStringList tags() const { return m_tags; }
    QStringList nodes() const { return m_nodes; }
    /** Those of tags, and of the nodes of tags. */
    QString numbers() const
    {
        QStringList numbers;
        for (const QString &line : m_tags + m_nodes.filter("node"_s))
            numbers.append(line.section(": "_s, 1));
        return numbers.join(", "_s);
    }

private:
    void paint()
    {
        m_tags = m_counts.ofTags();
        m_nodes = m_counts.ofNodes();
    }

    Counts m_counts;
    QStringList m_tags;
    QStringList m_nodes;
    QTimer m_timer;
};
} // namespace

/** The numbers of files that stand beside tags and nodes. */
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
        const Screen screen(open);
        RandomEditor editor(*open.manager(), 17);
        for (int i = 0; i < 150; ++i) {
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
            case 4:
                open.manager()->reloadAllData();
                break;
            default:
                editor.edit();
            }
            const QStringList nodes = counts.storedOfNodes();
            // Whoever asks at once is told what is right, or that it is not known yet.
            if (i % 2 == 0) {
                QCOMPARE(counts.ofTags(), counts.storedOfTags());
                for (const QString &node : counts.ofNodes())
                    QVERIFY2(node.endsWith(QLatin1Char(' ')) || node.endsWith(QLatin1Char('?')) ||
                                 nodes.contains(node),
                             qPrintable(node));
            }
            QCoreApplication::processEvents(); // the shown files follow their node behind an edit
            const QStringList tags = counts.storedOfTags();
            if (!QTest::qWaitFor([&] { return screen.shows(tags, nodes); })) {
                QCOMPARE(screen.tags(), tags);
                QCOMPARE(screen.nodes(), nodes);
            }
        }
    }

    void numbersFollow_data()
    {
        addColumns<Step, QString>("step", "counts");
        // Of the files 1 to 9 the tag red (1) has the first six, green (2) those from 4 on, and blue (3),
        // which stands for red, the seventh; red is asked for. A node of green (2) stands below one of red
        // (1).
        addRow("nothing", Step([](LocalCollection &) {}), "6 of 6, 4 of 6, 1 of 1, 7, 4"_s);
        addRow("a tag for all files by the worker", Step([](LocalCollection &open) {
                   FileEdits::setMostPairsAtOnce(1);
                   open.mainView().linkTags({1, 2, 3, 4, 5, 6, 7, 8, 9}, {1});
                   open.waitForWorker();
               }),
               "9 of 9, 6 of 6, 1 of 1, 9, 6"_s);
        addRow("undo of tagging", Step([](LocalCollection &open) {
                   open.mainView().linkTags({8, 9}, {1});
                   open->history()->undo();
               }),
               "6 of 6, 4 of 6, 1 of 1, 7, 4"_s);
        addRow("merging", Step([](LocalCollection &open) { open.tags().mergeTags(2, {1}); }),
               "9 of 9, 1 of 1, 9, 9"_s);
        addRow("deleted files", Step([](LocalCollection &open) {
                   open.mainView().deleteFiles({5, 6, 7});
                   open.waitForWorker();
               }),
               "4 of 4, 1 of 3, 0, 4, 1"_s);
        addRow("what others have written", Step([](LocalCollection &open) {
                   open.run("DELETE FROM file_tag WHERE file_id=4");
                   open.manager()->reloadAllData();
               }),
               "5 of 5, 3 of 5, 1 of 1, 6, 3"_s);
        addRow("a search for a name",
               Step([](LocalCollection &open) { open.mainView().setFileFilterString("file 1"_s); }),
               "6, 6, 1, 7, 4"_s);
        addRow("files of a kind",
               Step([](LocalCollection &open) { open.mainView().showSpecialNode(AllInternalFiles); }),
               "0 of 6, 0 of 6, 0 of 1, 7, 4"_s);
        addRow("hyperlinks", Step([](LocalCollection &open) {
                   open.mainView().showSpecialNode(AllHyperlinks);
                   open.mainView().linkTags({9}, {1});
               }),
               "7 of 7, 6 of 6, 1 of 1, 8, 5"_s);
        addRow("a tag that stands for another",
               Step([](LocalCollection &open) { open.mainView().linkTags({8}, {3}); }),
               "6 of 6, 5 of 6, 2 of 2, 8, 5"_s);
        addRow("one that stands for an inverted one", Step([](LocalCollection &open) {
                   open.tree().changeInversion(1, true);
                   QTRY_VERIFY(Counts(open).areKnown());
                   open.mainView().linkTags({8}, {3});
               }),
               "6 of 6, 5 of 6, 2 of 2, 0, 1"_s);
        addRow("a relationship that is removed",
               Step([](LocalCollection &open) { open.relations().removeNode("1.3"_s); }),
               "6 of 6, 4 of 6, 1 of 1, 6, 3"_s);
        addRow("switched off", Step([](LocalCollection &open) { open->countFiles(false); }), ", , , , "_s);
    }
    void numbersFollow()
    {
        QFETCH(Step, step);
        QFETCH(QString, counts);
        LocalCollection open(makeTestDatabase());
        const auto restore = qScopeGuard([] { FileEdits::setMostPairsAtOnce(TagMerges::mostAtOnce); });
        open.addFiles(9);
        open.addTags({"red"_s, "green"_s, "blue"_s});
        open.relations().addChildren(QString(), {1});
        open.relations().addChildren("1"_s, {3});
        open.mainView().linkTags({1, 2, 3, 4, 5, 6}, {1});
        open.mainView().linkTags({4, 5, 6, 7, 8, 9}, {2});
        open.mainView().linkTags({7}, {3});
        open.manager()->addNodeBelow(2, open.addNode(1));
        open.tags().showTagsSelected({1});
        const Screen screen(open);
        QTRY_COMPARE(screen.numbers(), "6 of 6, 4 of 6, 1 of 1, 7, 4"_s);
        step(open);
        QTRY_COMPARE(screen.numbers(), counts);
    }

    /** Without an edit, when the time of a file is over. */
    void recentFilesAreNotRecentForLong()
    {
        LocalCollection open(makeTestDatabase());
        LocalCollection::set("NewFiles/timeout", 1);
        open.addFiles(1);
        open.run("UPDATE files SET addition_date=%1"_s.arg(QDateTime::currentSecsSinceEpoch() - 58));
        open.manager()->reloadAllData();
        const Screen screen(open);
        const QString recent = "type 7: %1"_s;
        QTRY_VERIFY(screen.nodes().contains(recent.arg(1)));
        QTRY_VERIFY(screen.nodes().contains(recent.arg(0)));
    }

    /** They go on with the name, as a screen reader tells it. */
    void rowsAreSpoken()
    {
        LocalCollection open(makeTestDatabase());
        open.addFiles(2);
        open.addTags({"Garden"_s});
        const auto spoken = [&open] {
            return open.tags().tableModel()->index(0, 0).data(Qt::AccessibleTextRole).toString();
        };
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
