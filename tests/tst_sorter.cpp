#include "tests/support/filerecords.h"

namespace {

using Ids = QVector<qint64>;

struct Views : FileModels
{
    Views() { filter.setSpecialNode(AllFiles); }

    void fill(int count)
    {
        QRandomGenerator random(5);
        records.setNextId(1000); // later ones may be lower
        const QStringList names{"IMG_%1.jpg"_s, "note %1"_s, "z%1.TXT"_s, "\U0001F600 %1"_s, "IM%1"_s};
        for (int i = 0; i < count; ++i) {
            const QString name = names.at(random.bounded(names.size())).arg(random.bounded(count / 2));
            const QString description = random.bounded(2) ? QString() : QString::number(random.bounded(30));
            files.append(records.add({random.bounded(20) + 10, random.bounded(20) + 50}, random.bounded(3),
                                     name, random.bounded(count), description));
        }
        contents.loadFiles(FileRecords::map(files));
        if (count < 1000)
            addTester(sorter);
    }

    // As the main view does it.
    void search(const QString &text)
    {
        sorter.prepareFilterText(text);
        filter.setSpecialNode(AllFiles);
    }

    // Records by a comparison of their values, equal ones by id; without a column as they came.
    Ids expected(int column) const
    {
        QVector<File *> sorted;
        for (File *file : files) {
            if (contents.rowOf(file->id()) >= 0)
                sorted.append(file);
        }
        const auto isLess = [this, column](const File *left, const File *right) {
            return key(*left, column) < key(*right, column);
        };
        if (column >= 0)
            std::sort(sorted.begin(), sorted.end(), isLess);
        Ids ids;
        for (const File *file : sorted)
            ids.append(file->id());
        return ids;
    }

    // A number or a text to sort by, then the id.
    std::tuple<qint64, QString, qint64> key(const File &file, int column) const
    {
        switch (column) {
        case ContentsModel::ModificationDateColumn:
            return {file.modificationSeconds(), {}, file.id()};
        case ContentsModel::SizeColumn:
            return {file.size(), {}, file.id()};
        case ContentsModel::AdditionDateColumn:
            return {file.additionSeconds(), {}, file.id()};
        case ContentsModel::LoadIdColumn:
            return {file.loadId(), {}, file.id()};
        case ContentsModel::TypeColumn:
            return {0, file.type(), file.id()};
        case ContentsModel::TagsColumn:
            return {0, host.joinedTagNames(file.tags()), file.id()};
        case ContentsModel::DescriptionColumn:
            return {0, file.description(), file.id()};
        case ContentsModel::IdCodeColumn:
            return {0, file.idCode(), file.id()};
        default:
            return {0, file.name(), file.id()};
        }
    }
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
        addRow("name in another case", "REPORT.PDF"_s, Ids{1});
        addRow("letters beyond ASCII", "ÄRGER"_s, Ids{3});
        addRow("description", "holiday"_s, Ids{3});
        addRow("id code", "CODE4"_s, Ids{4});
        addRow("emoji", "\U0001F600"_s, Ids{4});
        addRow("no wildcard", "*"_s, Ids());
        addRow("quote and percent", "%1\"'"_s, Ids{4});
    }

    void search()
    {
        QFETCH(QString, text);
        Views views;
        const qint64 now = QDateTime::currentSecsSinceEpoch();
        views.files = {views.records.add({}, 1, "Report.pdf"_s, now),
                       views.records.add({}, 1, "my report"_s, now),
                       views.records.add({}, 1, "kein ärger"_s, now, "Holiday plans"_s),
                       views.records.add({}, 1, "\U0001F600 %1\"'"_s, now)};
        views.contents.loadFiles(FileRecords::map(views.files));
        views.search(text);
        QTEST(views.shown(), "shown");

        // What comes or changes later meets the text as well.
        File *late = views.records.add({}, 1, "late"_s, now);
        views.contents.addFiles(FileRecords::map({late}));
        late->setData(Name, text + QLatin1Char('x'));
        views.contents.updateFiles({late->id()});
        QVERIFY(views.shown().contains(late->id()));

        // What no longer does goes, from the first row, too.
        views.files.append(late);
        const qint64 firstId = views.shown().first();
        for (const DataType value : {Name, Description, IdCode})
            views.files.at(int(firstId) - 1)->setData(value, "-"_s);
        views.contents.updateFiles({firstId});
        QCOMPARE(views.shown().contains(firstId), text.isEmpty());
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

    void knowsNoOrderOfOtherColumns()
    {
        Views views;
        views.fill(200);
        views.sorter.sort(ContentsModel::NameColumn);
        views.sorter.sort(ContentsModel::columnTotal, Qt::DescendingOrder);
        QCOMPARE(views.shown(), views.expected(-1));
        QVERIFY(views.sorter.hasChildren() && !views.sorter.hasChildren(views.sorter.index(0, 0)));
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
        views.search(text);
        views.sorter.sort(column, order);
        const auto expected = [&] {
            Ids ids = views.expected(column);
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
        views.records.setNextId(1);
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
        one->setData(Internal, 0);
        for (const QString &name : {"hidden"_s, "!first note"_s}) {
            one->setData(Name, name);
            views.contents.updateFiles({one->id()});
            QCOMPARE(views.shown(), expected());
        }
        views.filter.setSpecialNode(AllInternalFiles);
        one->setData(Name, "zzz last note"_s);
        views.contents.updateFiles({one->id()});
        views.filter.setSpecialNode(AllFiles);
        QCOMPARE(views.shown(), expected());

        // A few new ones, each into its place.
        const QVector<File *> few{views.records.add({}, 1, "mmm note"_s),
                                  views.records.add({}, 1, "!a note"_s)};
        views.files += few;
        views.contents.addFiles(FileRecords::map(few));
        QCOMPARE(views.shown(), expected());
    }

    void orderFollowsTagNames()
    {
        for (int count : {200, 3000}) { // by values and by ranks
            Views views;
            views.fill(count);
            QSignalSpy changes(&views.sorter, &QAbstractItemModel::dataChanged);
            for (bool isReversed : {true, false}) {
                views.host.isReversed = isReversed;
                views.sorter.refreshTagNames();
                QCOMPARE(changes.size(), 1);
                if (isReversed)
                    views.sorter.sort(ContentsModel::TagsColumn);
                QCOMPARE(views.shown(), views.expected(ContentsModel::TagsColumn));
            }
        }
    }

    /** Names that go on where others end, or have the comma that stands between two. */
    void orderByTagsIsThatOfTheirTexts_data()
    {
        QTest::addColumn<int>("furtherTags");
        QTest::newRow("few tags") << 0;
        QTest::newRow("more names than two bytes number") << 40000;
    }

    void orderByTagsIsThatOfTheirTexts()
    {
        QFETCH(int, furtherTags);
        Views views;
        const QStringList names{"a"_s,       "a, b"_s, "a b"_s, "a,"_s, "a, "_s,
                                "a, b, c"_s, "b"_s,    "c"_s,   ""_s,   "!"_s};
        for (int i = 0; i < names.size(); ++i)
            views.host.tagNames.insert(i + 1, names.at(i));
        Ids further(furtherTags);
        std::iota(further.begin(), further.end(), 1000);
        views.files.append(views.records.add(further));
        QRandomGenerator random(7);
        for (int i = 0; i < 3000; ++i) {
            Ids tags;
            for (int j = random.bounded(8); j > 0; --j) {
                const qint64 tag = 1 + random.bounded(names.size());
                if (!tags.contains(tag))
                    tags.append(tag);
            }
            views.files.append(views.records.add(tags));
        }
        views.contents.loadFiles(FileRecords::map(views.files));
        views.sorter.sort(ContentsModel::TagsColumn);
        QCOMPARE(views.shown(), views.expected(ContentsModel::TagsColumn));
    }

    void filesOfARenamedTagFindTheirPlace()
    {
        for (int count : {200, 3000}) {
            Views views;
            views.fill(count);
            // A few of the files by one, and all but a few by the other.
            for (const Ids &tags : {Ids{15}, Ids{16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29}}) {
                for (const Qt::SortOrder order : {Qt::AscendingOrder, Qt::DescendingOrder}) {
                    views.sorter.sort(ContentsModel::TagsColumn, order);
                    views.host.renamedTag = views.host.renamedTag == tags.first() ? 0 : tags.first();
                    views.sorter.renameTags(tags);
                    Ids expected = views.expected(ContentsModel::TagsColumn);
                    if (order == Qt::DescendingOrder)
                        std::reverse(expected.begin(), expected.end());
                    QCOMPARE(views.shown(), expected);
                    // What is remembered of the order knows of it too.
                    views.filter.setSpecialNode(AllInternalFiles);
                    views.filter.setSpecialNode(AllFiles);
                    QCOMPARE(views.shown(), expected);
                }
                views.host.renamedTag = 0;
                views.sorter.refreshTagNames();
            }
        }
    }

    void otherTagsFindTheirPlaces()
    {
        Views views;
        views.fill(300);
        views.sorter.sort(ContentsModel::TagsColumn);
        Ids ids;
        for (int i = 0; i < 40; ++i) {
            views.files.at(7 * i)->setTags({i % 3 + 5, i % 5 + 40});
            ids.append(views.files.at(7 * i)->id());
        }
        QSignalSpy changes(&views.contents, &QAbstractItemModel::dataChanged);
        views.contents.updateTags(ids);
        QCOMPARE(changes.size(), 0);
        // Whatever moves rows shows before it what is new.
        views.contents.removeFiles(ids.mid(3, 1));
        QCOMPARE(views.shown(), views.expected(ContentsModel::TagsColumn));
        QCOMPARE(changes.first().first().toModelIndex().column(), int(ContentsModel::TagsColumn));
    }

    void searchFindsWhatTheTextsContain()
    {
        Views views;
        const QStringList names{"Straße µ ÿ"_s,
                                "STRASSE"_s,
                                "İstanbul ıI"_s,
                                "\U00010400\U00010428 Ω"_s,
                                "ЁЛКА ёлка"_s,
                                "a\u00e9"_s,
                                "x"_s + QChar(0xd83d) + QLatin1Char('y'),
                                QString(),
                                "report.TXT"_s};
        for (const QString &name : names)
            views.files.append(views.records.add({}, 1, name, 0, name.right(3) + "Tail"_s));
        views.files.append(views.records.add({}, 1, "plain"_s));
        views.contents.loadFiles(FileRecords::map(views.files));
        QStringList texts{"ß"_s,
                          "ss"_s,
                          "Μ"_s,
                          "Ÿ"_s,
                          "İ"_s,
                          "ı"_s,
                          "\U00010428"_s,
                          "ω"_s,
                          "ёЛ"_s,
                          "É"_s,
                          QString(QChar(0xd83d)),
                          QString(QChar(0xd801)),
                          "Y"_s,
                          "CODE1"_s,
                          "eTail"_s,
                          "tTa"_s,
                          "nothing"_s,
                          "TXTtail"_s,
                          ".txtt"_s,
                          "later"_s,
                          "e"_s};
        const auto check = [&] {
            for (const QString &text : qAsConst(texts)) {
                Ids expected;
                for (const File *file : views.files) {
                    const bool isHit = file->name().contains(text, Qt::CaseInsensitive) ||
                                       file->description().contains(text, Qt::CaseInsensitive) ||
                                       file->idCode().contains(text, Qt::CaseInsensitive);
                    if (views.contents.rowOf(file->id()) >= 0 && isHit)
                        expected.append(file->id());
                }
                views.search(text);
                Ids found;
                for (int row = 0; row < views.sorter.rowCount(); ++row)
                    found.append(views.sorter.idAt(row));
                QVERIFY2(found == expected, qPrintable(text));
            }
        };
        check();
        // One that has room for its new name, one that has not, one that goes and one that comes.
        views.files.at(1)->setData(Name, "Later"_s);
        views.files.at(4)->setData(Name, "a much longer name than before, told of LATER"_s);
        views.contents.updateFiles({views.files.at(1)->id(), views.files.at(4)->id()});
        check();
        views.contents.removeFiles({views.files.at(0)->id(), views.files.at(3)->id()});
        check();
        views.files.append(views.records.add({}, 2, "come later"_s));
        views.contents.addFiles(FileRecords::map({views.files.last()}));
        check();
    }
};

QTEST_MAIN(TestSorter)
#include "tst_sorter.moc"
