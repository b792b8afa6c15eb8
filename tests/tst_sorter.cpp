#include "models/contentshost.h"
#include "models/contentsmodel.h"
#include "models/filefiltermodel.h"
#include "models/sorter.h"
#include "tests/support/filerecords.h"
#include "tests/support/settingssandbox.h"
#include "tests/support/text.h"

#include <algorithm>
#include <functional>

namespace {

using Ids = QVector<qint64>;

/** Names tags by their ids; a prefix lets all of them be renamed. */
class NamingHost : public ContentsHost
{
public:
    bool isWritable() const override { return true; }
    bool mayEdit() override { return true; }
    QString joinedTagNames(const Ids &tagIds) const override
    {
        QStringList names;
        for (qint64 tagId : tagIds)
            names.append(QString::number(isReversed ? 100 - tagId : tagId));
        return names.join(QLatin1String(", "));
    }
    bool isFileMissing(qint64) const override { return false; }
    const QImage *thumbnailOf(qint64) const override { return nullptr; }
    bool renameFile(qint64, const QString &) override { return false; }
    bool describeFile(qint64, const QString &) override { return false; }
    bool linkTagsToFile(qint64, const Ids &) override { return false; }

    bool isReversed = false;
};

struct Views
{
    Views()
    {
        contents.setHost(&host);
        filter.setSourceModel(&contents);
        sorter.setSourceModel(&filter);
        filter.setSpecialNode(AllFiles);
    }

    void fill(int count)
    {
        QRandomGenerator random(5);
        const QStringList names{"IMG_%1.jpg"_s, "note %1"_s, "z%1.TXT"_s, "\U0001F600 %1"_s, "IM%1"_s};
        for (int i = 0; i < count; ++i) {
            const QString name = names.at(random.bounded(names.size())).arg(random.bounded(count / 2));
            const QString description = random.bounded(2) ? QString() : QString::number(random.bounded(30));
            files.append(records.add({random.bounded(20) + 10, random.bounded(20) + 50}, random.bounded(3),
                                     name, random.bounded(count), description));
        }
        contents.loadFiles(FileRecords::map(files));
        // The tester looks at all rows at each signal: seconds a test where rows are many.
        if (count < 1000)
            new QAbstractItemModelTester(&sorter, QAbstractItemModelTester::FailureReportingMode::QtTest,
                                         &sorter);
    }

    Ids shown() const
    {
        Ids ids;
        for (int row = 0; row < sorter.rowCount(); ++row)
            ids.append(sorter.fileAt(row)->id());
        return ids;
    }

    // Records in the order of a column by a comparison of their values, equal ones by id.
    Ids expected(int column) const
    {
        QVector<File *> sorted;
        for (File *file : files) {
            if (contents.rowOf(file->id()) >= 0)
                sorted.append(file);
        }
        std::sort(sorted.begin(), sorted.end(), [this, column](const File *left, const File *right) {
            const int order = compare(*left, *right, column);
            return order != 0 ? order < 0 : left->id() < right->id();
        });
        Ids ids;
        for (const File *file : sorted)
            ids.append(file->id());
        return ids;
    }

    int compare(const File &left, const File &right, int column) const
    {
        const auto number = [](qint64 a, qint64 b) { return a < b ? -1 : a > b ? 1 : 0; };
        switch (column) {
        case ContentsModel::ModificationDateColumn:
            return number(left.modificationSeconds(), right.modificationSeconds());
        case ContentsModel::SizeColumn:
            return number(left.size(), right.size());
        case ContentsModel::AdditionDateColumn:
            return number(left.additionSeconds(), right.additionSeconds());
        case ContentsModel::LoadIdColumn:
            return number(left.loadId(), right.loadId());
        case ContentsModel::TypeColumn:
            return left.type().compare(right.type());
        case ContentsModel::TagsColumn:
            return host.joinedTagNames(left.tags()).compare(host.joinedTagNames(right.tags()));
        case ContentsModel::DescriptionColumn:
            return left.description().compare(right.description());
        case ContentsModel::IdCodeColumn:
            return left.idCode().compare(right.idCode());
        default:
            return left.name().compare(right.name());
        }
    }

    NamingHost host;
    FileRecords records;
    QVector<File *> files;
    ContentsModel contents;
    FileFilterModel filter;
    Sorter sorter;
};

} // namespace

/** Search text and order of the main view. Long tables are sorted by ranks, short ones by values. */
class TestSorter : public QObject
{
    Q_OBJECT

private slots:
    void search_data()
    {
        addColumns<QString, Ids>("text", "shown");
        addRow("empty shows all", QString(), Ids{1, 2, 3, 4});
        addRow("name", "report"_s, Ids{1, 2});
        addRow("name in another case", "REPORT.PDF"_s, Ids{1});
        addRow("letters beyond ASCII", "ÄRGER"_s, Ids{3});
        addRow("description", "holiday"_s, Ids{3});
        addRow("id code", "CODE4"_s, Ids{4});
        addRow("emoji", "\U0001F600"_s, Ids{4});
        addRow("no wildcard", "*"_s, Ids());
        addRow("blank counts", "my rep"_s, Ids{2});
        addRow("quote and percent", "%1\"'"_s, Ids{4});
    }

    void search()
    {
        QFETCH(QString, text);
        Views views;
        const qint64 now = QDateTime::currentSecsSinceEpoch();
        views.contents.loadFiles(FileRecords::map(
            {views.records.add({}, 1, "Report.pdf"_s, now), views.records.add({}, 1, "my report"_s, now),
             views.records.add({}, 1, "kein ärger"_s, now, "Holiday plans"_s),
             views.records.add({}, 1, "\U0001F600 %1\"'"_s, now)}));
        views.sorter.setFilterText(text);
        QTEST(views.shown(), "shown");

        // What comes or changes later meets the text as well.
        File *late = views.records.add({}, 1, "late"_s, now);
        views.contents.addFiles(FileRecords::map({late}));
        late->setData(Name, text + QLatin1Char('x'));
        views.contents.updateFiles({late->id()});
        QVERIFY(views.shown().contains(late->id()));
    }

    void unsortedFilesKeepTheirArrival()
    {
        Views views;
        views.records.setNextId(50);
        File *first = views.records.add({}, 1, "b"_s);
        views.records.setNextId(20);
        File *second = views.records.add({}, 1, "a"_s);
        views.contents.loadFiles(FileRecords::map({first}));
        views.contents.addFiles(FileRecords::map({second}));
        QCOMPARE(views.sorter.sortColumn(), -1);
        QCOMPARE(views.shown(), (Ids{50, 20}));
        QCOMPARE(views.contents.rowOf(20), 1);
        views.sorter.sort(ContentsModel::NameColumn);
        QCOMPARE(views.shown(), (Ids{20, 50}));
        views.sorter.sort(-1);
        QCOMPARE(views.shown(), (Ids{50, 20}));
    }

    void ordersByEachColumn_data()
    {
        addColumns<int, int>("column", "count");
        for (int column = 0; column <= ContentsModel::LoadIdColumn; ++column) {
            QTest::addRow("column %d by values", column) << column << 200;
            QTest::addRow("column %d by ranks", column) << column << 3000;
        }
    }

    void ordersByEachColumn()
    {
        QFETCH(int, column);
        QFETCH(int, count);
        Views views;
        views.fill(count);
        views.sorter.sort(column, Qt::AscendingOrder);
        Ids expected = views.expected(column);
        QCOMPARE(views.shown(), expected);
        views.sorter.sort(column, Qt::DescendingOrder);
        std::reverse(expected.begin(), expected.end());
        QCOMPARE(views.shown(), expected);
        views.filter.setSpecialNode(AllInternalFiles);
        views.filter.setSpecialNode(AllFiles);
        QCOMPARE(views.shown(), expected);
    }

    void followsChangesOfMany_data()
    {
        addColumns<int, int, Qt::SortOrder, QString>("count", "column", "order", "text");
        const int byName = ContentsModel::NameColumn;
        addRow("as they came", 200, -1, Qt::AscendingOrder, QString());
        addRow("sorted by values", 200, byName, Qt::AscendingOrder, QString());
        addRow("sorted by ranks", 3000, byName, Qt::AscendingOrder, QString());
        addRow("searched", 200, -1, Qt::AscendingOrder, "note"_s);
        addRow("searched and sorted", 200, byName, Qt::DescendingOrder, "note"_s);
    }

    void followsChangesOfMany()
    {
        QFETCH(int, count);
        QFETCH(int, column);
        QFETCH(Qt::SortOrder, order);
        QFETCH(QString, text);
        Views views;
        views.fill(count);
        views.sorter.setFilterText(text);
        views.sorter.sort(column, order);
        const auto expected = [&] {
            Ids ids = column < 0 ? views.contents.fileIndex().ids() : views.expected(column);
            const auto isHidden = [&](qint64 id) {
                return !views.contents.fileAt(views.contents.rowOf(id))->name().contains(text);
            };
            ids.erase(std::remove_if(ids.begin(), ids.end(), isHidden), ids.end());
            if (order == Qt::DescendingOrder)
                std::reverse(ids.begin(), ids.end());
            return ids;
        };
        const QPersistentModelIndex kept = views.sorter.index(7, 0);
        const File *keptFile = views.sorter.fileAt(7);
        const auto isOther = [keptFile](int number, const File *file) {
            return number % 3 == 0 && file != keptFile;
        };

        Ids others;
        for (int i = 0; i < views.files.size(); ++i) {
            if (!isOther(i, views.files.at(i)))
                continue;
            others.append(views.files.at(i)->id());
            views.files.at(i)->setData(Name, QString("%1 note"_s).arg(i * 7919 % 1000));
        }
        views.contents.updateFiles(others);
        QCOMPARE(views.shown(), expected());

        QVector<File *> added;
        for (int i = 0; i < 310; ++i)
            added.append(views.records.add({}, 1, QString("new note %1"_s).arg(i * 7919 % 310)));
        views.files += added;
        views.contents.addFiles(FileRecords::map(added));
        QCOMPARE(views.shown(), expected());

        views.contents.removeFiles(others.mid(0, 5));
        QCOMPARE(views.shown(), expected());
        views.contents.removeFiles(others);
        QCOMPARE(views.shown(), expected());
        QCOMPARE(views.sorter.fileAt(kept.row()), keptFile);

        // One alone, first while it is shown, then while it is not.
        File *one = added.first();
        one->setData(Name, "!first note"_s);
        one->setData(Internal, 0);
        views.contents.updateFiles({one->id()});
        QCOMPARE(views.shown(), expected());
        views.filter.setSpecialNode(AllInternalFiles);
        one->setData(Name, "zzz last note"_s);
        views.contents.updateFiles({one->id()});
        views.filter.setSpecialNode(AllFiles);
        QCOMPARE(views.shown(), expected());
    }

    void orderFollowsTagNames_data()
    {
        QTest::addColumn<int>("count");
        addRow("by values", 200);
        addRow("by ranks", 3000);
    }

    void orderFollowsTagNames()
    {
        QFETCH(int, count);
        Views views;
        views.fill(count);
        QSignalSpy changes(&views.sorter, &QAbstractItemModel::dataChanged);
        views.host.isReversed = true;
        views.sorter.refreshTagNames();
        QCOMPARE(changes.size(), 1);

        views.sorter.sort(ContentsModel::TagsColumn);
        QCOMPARE(views.shown(), views.expected(ContentsModel::TagsColumn));
        views.host.isReversed = false;
        views.sorter.refreshTagNames();
        QCOMPARE(views.shown(), views.expected(ContentsModel::TagsColumn));
    }

private:
    SettingsSandbox m_sandbox;
};

QTEST_MAIN(TestSorter)
#include "tst_sorter.moc"
