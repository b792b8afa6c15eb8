#include "core/recordtypes.h"
#include "models/contentsmodel.h"
#include "models/filefiltermodel.h"
#include "models/modelroles.h"
#include "models/sorter.h"
#include "tests/support/filerecords.h"
#include "tests/support/settingssandbox.h"
#include "tests/support/text.h"

namespace {

using Ids = QVector<qint64>;

bool holdsAny(const Ids &tags, const Ids &wanted)
{
    for (qint64 tag : wanted) {
        if (tags.contains(tag))
            return true;
    }
    return false;
}

// One file against the requirements, rule by rule and list by list.
bool meets(const Ids &tags, const TagRequirements &wanted)
{
    if (tags.isEmpty())
        return false;
    if (!wanted.eitherOr.isEmpty() && !holdsAny(tags, wanted.eitherOr) &&
        !holdsAny(tags, wanted.eitherOrWidened))
        return false;
    for (qint64 tag : wanted.required) {
        if (!tags.contains(tag) && !holdsAny(tags, wanted.requiredAlternatives.value(tag)))
            return false;
    }
    if (holdsAny(tags, wanted.excluded) || holdsAny(tags, wanted.excludedWidened))
        return false;
    return !wanted.eitherOr.isEmpty() || !wanted.required.isEmpty();
}

bool belongs(const File &file, NodeType type, const TagRequirements &wanted)
{
    switch (type) {
    case AllFiles:
        return true;
    case AllFilesWithTags:
        return !file.tags().isEmpty();
    case AllFilesWithoutTags:
        return file.tags().isEmpty();
    case AllInternalFiles:
        return file.internal() == 1;
    case AllExternalFiles:
        return file.internal() == 0;
    case AllHyperlinks:
        return file.internal() == 2;
    case RecentlyAddedFiles:
        return file.additionDate().secsTo(QDateTime::currentDateTime()) < 300;
    case TagNode:
        return meets(file.tags(), wanted);
    }
    return false;
}

// The tags that part the files, found file by file: a tag parts them once it is on one and not on another.
Ids partingTags(const QVector<const File *> &files)
{
    Ids seen;
    Ids parting;
    for (int i = 0; i < files.size(); ++i) {
        const Ids &tags = files.at(i)->tags();
        for (qint64 tag : seen) {
            if (!tags.contains(tag) && !parting.contains(tag))
                parting.append(tag);
        }
        for (qint64 tag : tags) {
            if (i > 0 && !seen.contains(tag) && !parting.contains(tag))
                parting.append(tag);
        }
        for (qint64 tag : tags) {
            if (!seen.contains(tag))
                seen.append(tag);
        }
    }
    std::sort(parting.begin(), parting.end());
    return parting;
}

Ids randomTags(QRandomGenerator &random, int most, int tagTotal)
{
    Ids tags;
    const int count = random.bounded(most + 1);
    for (int i = 0; i < count; ++i) {
        const qint64 tag = random.bounded(tagTotal) + 1;
        if (!tags.contains(tag))
            tags.append(tag);
    }
    return tags;
}

// The models as they stand in the program, over records with random tags out of few, so that most
// requirements meet some files and miss others.
struct Models
{
    explicit Models(bool isTested = true)
    {
        filter.setSourceModel(&contents);
        sorter.setSourceModel(&filter);
        if (isTested) {
            const auto mode = QAbstractItemModelTester::FailureReportingMode::QtTest;
            new QAbstractItemModelTester(&contents, mode, &contents);
            new QAbstractItemModelTester(&filter, mode, &filter);
            new QAbstractItemModelTester(&sorter, mode, &sorter);
        }
    }

    void fill(QRandomGenerator &random, int count, int tagTotal)
    {
        for (int i = 0; i < count; ++i)
            files.append(records.add(randomTags(random, 6, tagTotal), random.bounded(3)));
        contents.loadFiles(FileRecords::map(files));
    }

    // Everything that the selection promises, against the rules applied to each record.
    void check(NodeType type, const TagRequirements &wanted)
    {
        QVector<const File *> expected;
        Ids expectedIds;
        for (int row = 0; row < contents.rowCount(); ++row) {
            const File *file = contents.fileAt(row);
            if (belongs(*file, type, wanted)) {
                expected.append(file);
                expectedIds.append(file->id());
            }
        }
        Ids shown;
        for (int row = 0; row < sorter.rowCount(); ++row)
            shown.append(sorter.index(row, 0).data(ContentsRoles::FileId).toLongLong());
        QCOMPARE(shown, expectedIds);
        QCOMPARE(filter.acceptedFiles(), expectedIds);
        QCOMPARE(filter.dTags(), type == TagNode ? partingTags(expected) : Ids());
    }

    FileRecords records;
    QVector<File *> files;
    ContentsModel contents;
    FileFilterModel filter;
    Sorter sorter;
};

} // namespace

Q_DECLARE_METATYPE(TagRequirements)

/** The selection of the main view against the rules, told once more without any index. */
class TestFileFilter : public QObject
{
    Q_OBJECT

private slots:
    void init() { SettingsSandbox::clear(); }

    void recentFilesFollowTheTimeout_data()
    {
        addColumns<QVariant, int, bool>("minutes", "age", "isShown");
        addRow("4 of 5 minutes", QVariant(), 240, true);
        addRow("5 of 5 minutes", QVariant(), 300, false);
        addRow("5 of 10 minutes", QVariant(10), 300, true);
        addRow("10 of 10 minutes", QVariant(10), 600, false);
        addRow("from the future", QVariant(), -3600, true);
        addRow("no number: 4 minutes", QVariant("soon"_s), 240, true);
        addRow("no number: 6 minutes", QVariant("soon"_s), 360, false);
    }

    void recentFilesFollowTheTimeout()
    {
        QFETCH(QVariant, minutes);
        QFETCH(int, age);
        QFETCH(bool, isShown);
        if (minutes.isValid())
            QSettings().setValue("NewFiles/timeout"_s, minutes);
        Models models;
        const qint64 added = QDateTime::currentSecsSinceEpoch() - age;
        models.contents.loadFiles(FileRecords::map({models.records.add({}, 1, "a"_s, added)}));
        models.filter.setSpecialNode(RecentlyAddedFiles);
        QCOMPARE(models.sorter.rowCount(), isShown ? 1 : 0);
    }

    void randomRequirements_data()
    {
        addColumns<int, int, int>("tagTotal", "mostRequired", "mostTagsOfAFile");
        addRow("few tags, short lists", 6, 2, 6);
        addRow("many tags, short lists", 200, 2, 6);
        addRow("long lists of required tags", 40, 25, 40);
    }

    void randomRequirements()
    {
        QFETCH(int, tagTotal);
        QFETCH(int, mostRequired);
        QFETCH(int, mostTagsOfAFile);
        QRandomGenerator random(11);
        Models models(false);
        for (int i = 0; i < 400; ++i)
            models.files.append(models.records.add(randomTags(random, mostTagsOfAFile, tagTotal)));
        models.contents.loadFiles(FileRecords::map(models.files));
        int hits = 0;
        for (int i = 0; i < 400; ++i) {
            TagRequirements wanted;
            wanted.required = randomTags(random, mostRequired, tagTotal + 2);
            wanted.eitherOr = random.bounded(2) ? Ids() : randomTags(random, 3, tagTotal + 2);
            wanted.excluded = random.bounded(2) ? Ids() : randomTags(random, 2, tagTotal + 2);
            wanted.eitherOrWidened = randomTags(random, 2, tagTotal);
            wanted.excludedWidened = random.bounded(3) ? Ids() : randomTags(random, 2, tagTotal);
            for (qint64 tag : wanted.required)
                wanted.requiredAlternatives.insert(tag, randomTags(random, tagTotal / 4 + 1, tagTotal));
            models.filter.setTagRequirements(wanted);
            models.check(TagNode, wanted);
            hits += models.sorter.rowCount() > 0 ? 1 : 0;
        }
        QVERIFY(hits > 50);
    }

    void staysExactOverChanges_data()
    {
        addColumns<int, int>("mostAtOnce", "steps");
        addRow("few rows at once", 5, 150);
        addRow("many rows at once", 700, 30);
    }

    void staysExactOverChanges()
    {
        QFETCH(int, mostAtOnce);
        QFETCH(int, steps);
        QRandomGenerator random(23);
        // The tester looks at all rows at each signal, which takes minutes where there are many of both.
        Models models(mostAtOnce < 100);
        models.fill(random, mostAtOnce * 3, 6);
        const TagRequirements wanted{{1}, {}, {2}, {{1, {3}}}, {}, {}};
        NodeType type = TagNode;
        models.filter.setTagRequirements(wanted);
        Ids announced = models.filter.dTags();
        connect(&models.filter, &FileFilterModel::dTagsChanged, this,
                [&announced](const Ids &tags) { announced = tags; });
        for (int step = 0; step < steps && !QTest::currentTestFailed(); ++step) {
            const int count = random.bounded(mostAtOnce) + 1;
            QVector<File *> touched;
            Ids ids;
            for (int i = 0; i < count && !models.files.isEmpty(); ++i) {
                touched.append(models.files.at(random.bounded(models.files.size())));
                ids.append(touched.last()->id());
            }
            switch (random.bounded(5)) {
            case 0:
                touched = touched.mid(0, 1); // what is known counts as changed
                for (int i = 0; i < count; ++i) {
                    models.files.append(models.records.add(randomTags(random, 6, 8), random.bounded(3)));
                    touched.append(models.files.last());
                }
                models.contents.addFiles(FileRecords::map(touched));
                break;
            case 1:
                for (File *file : touched)
                    models.files.removeOne(file);
                models.contents.removeFiles(ids);
                break;
            case 4:
                type = NodeType(random.bounded(int(AllFiles), int(TagNode) + 1));
                if (type == TagNode)
                    models.filter.setTagRequirements(wanted);
                else
                    models.filter.setSpecialNode(type);
                break;
            default:
                for (File *file : touched) {
                    file->setTags(randomTags(random, 8, 8));
                    file->setData(Internal, random.bounded(3));
                }
                models.contents.updateFiles(ids);
            }
            QCOMPARE(models.contents.rowCount(), models.files.size());
            for (int row = 0; row < models.files.size(); ++row)
                QCOMPARE(models.contents.rowOf(models.files.at(row)->id()), row);
            models.check(type, wanted);
            QCOMPARE(announced, models.filter.dTags());
        }
    }

    void dTagsGoOutOnceAChange()
    {
        Models models(false);
        QVector<File *> files;
        for (int i = 0; i < 1000; ++i)
            files.append(models.records.add({1, i % 9 + 2}));
        models.contents.loadFiles(FileRecords::map(files));
        QSignalSpy spy(&models.filter, &FileFilterModel::dTagsChanged);
        models.filter.setTagRequirements({{1}, {}, {}, {}, {}, {}});
        QCOMPARE(spy.size(), 1);
        QCOMPARE(spy.takeFirst().first().value<Ids>(), (Ids{2, 3, 4, 5, 6, 7, 8, 9, 10}));

        Ids everyNinth;
        for (int i = 0; i < files.size(); i += 9)
            everyNinth.append(files.at(i)->id());
        models.contents.removeFiles(everyNinth);
        QCOMPARE(spy.size(), 1);
        QCOMPARE(spy.takeFirst().first().value<Ids>(), (Ids{3, 4, 5, 6, 7, 8, 9, 10}));

        models.contents.repaintFiles({files.at(1)->id()});
        QCOMPARE(spy.size(), 0);
        models.filter.setSpecialNode(AllFiles);
        QCOMPARE(spy.size(), 1);
        QCOMPARE(spy.takeFirst().first().value<Ids>(), Ids());
    }

private:
    SettingsSandbox m_sandbox;
};

QTEST_MAIN(TestFileFilter)
#include "tst_filefilter.moc"
