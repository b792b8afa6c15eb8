#include "tests/support/filerecords.h"

namespace {

using Ids = QVector<qint64>;

bool holdsAny(const Ids &tags, const Ids &wanted)
{
    return std::find_first_of(tags.begin(), tags.end(), wanted.begin(), wanted.end()) != tags.end();
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

// The tags that are on some of the files, but not on all.
Ids partingTags(const QVector<const File *> &files)
{
    QMap<qint64, int> counts;
    for (const File *file : files) {
        for (qint64 tag : file->tags())
            ++counts[tag];
    }
    Ids parting;
    for (auto count = counts.cbegin(); count != counts.cend(); ++count) {
        if (count.value() < files.size())
            parting.append(count.key());
    }
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

// Records with random tags out of few, so that most requirements meet some files and miss others.
struct Models : FileModels
{
    void fill(QRandomGenerator &random, int count, int mostTags, int tagTotal)
    {
        for (int i = 0; i < count; ++i)
            files.append(records.add(randomTags(random, mostTags, tagTotal), random.bounded(3)));
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
        QCOMPARE(shown(), expectedIds);
        QCOMPARE(filter.acceptedFiles(), expectedIds);
        QCOMPARE(filter.dTags(), type == TagNode ? partingTags(expected) : Ids());
    }
};

} // namespace

Q_DECLARE_METATYPE(TagRequirements)

/** The selection of the main view against the rules, told once more without any index. */
class TestFileFilter : public QObject
{
    Q_OBJECT

private slots:
    void recentFilesFollowTheTimeout_data()
    {
        addColumns<QVariant, int, bool>("minutes", "age", "isShown");
        addRow("4 of 5 minutes", QVariant(), 240, true);
        addRow("5 of 5 minutes", QVariant(), 300, false);
        addRow("5 of 10 minutes", QVariant(10), 300, true);
        addRow("from the future", QVariant(), -3600, true);
    }

    void recentFilesFollowTheTimeout()
    {
        QFETCH(QVariant, minutes);
        QFETCH(int, age);
        QFETCH(bool, isShown);
        Models models;
        if (minutes.isValid())
            QSettings().setValue("NewFiles/timeout"_s, minutes);
        const qint64 added = QDateTime::currentSecsSinceEpoch() - age;
        models.contents.loadFiles(FileRecords::map({models.records.add({}, 1, "a"_s, added)}));
        models.filter.setSpecialNode(RecentlyAddedFiles);
        QCOMPARE(models.sorter.rowCount(), isShown ? 1 : 0);
    }

    void randomRequirements_data()
    {
        addColumns<int, int, int, int>("files", "tagTotal", "mostRequired", "mostTagsOfAFile");
        addRow("few tags, short lists", 400, 6, 2, 6);
        addRow("many tags, short lists", 400, 200, 2, 6);
        addRow("long lists of required tags", 400, 40, 25, 40);
        addRow("long lists, more files than are looked at together", 9000, 40, 25, 40);
    }

    void randomRequirements()
    {
        QFETCH(int, files);
        QFETCH(int, tagTotal);
        QFETCH(int, mostRequired);
        QFETCH(int, mostTagsOfAFile);
        QRandomGenerator random(11);
        Models models;
        models.fill(random, files, mostTagsOfAFile, tagTotal);
        int hits = 0;
        const int rounds = 160000 / files;
        for (int i = 0; i < rounds; ++i) {
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
        QVERIFY(hits > rounds / 8);
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
        using Model = QAbstractItemModel;
        QRandomGenerator random(23);
        int unfinished = 0; // no tester misses the second half of a change
        Models models;
        models.fill(random, mostAtOnce * 3, 6, 6);
        for (Model *model : QList<Model *>{&models.contents, &models.filter, &models.sorter}) {
            for (auto signal : {&Model::rowsAboutToBeInserted, &Model::rowsAboutToBeRemoved})
                connect(model, signal, this, [&unfinished] { ++unfinished; });
            for (auto signal : {&Model::rowsInserted, &Model::rowsRemoved})
                connect(model, signal, this, [&unfinished] { --unfinished; });
            if (mostAtOnce < 100)
                FileModels::addTester(*model);
        }
        const TagRequirements wanted{{1}, {}, {2}, {{1, {3}}}, {}, {}};
        NodeType type = TagNode;
        models.filter.setTagRequirements(wanted);
        Ids announced = models.filter.dTags();
        QSignalSpy spy(&models.filter, &FileFilterModel::dTagsChanged);
        for (int step = 0; step < steps && !QTest::currentTestFailed(); ++step) {
            const int count = random.bounded(mostAtOnce) + 1;
            QVector<File *> touched;
            Ids ids;
            for (int i = 0; i < count && !models.files.isEmpty(); ++i) {
                touched.append(models.files.at(random.bounded(models.files.size())));
                ids.append(touched.last()->id());
            }
            const int kind = random.bounded(5);
            const bool isChosen = kind == 4;
            switch (kind) {
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
            case 3:
                for (File *file : touched)
                    file->setTags(randomTags(random, 8, 8));
                models.contents.updateTags(ids);
                models.contents.showTags();
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
            QCOMPARE(unfinished, 0);
            // They go out once a selection, and of a change only when they are others.
            QCOMPARE(spy.size(), isChosen || announced != models.filter.dTags() ? 1 : 0);
            if (!spy.isEmpty())
                announced = spy.takeFirst().first().value<Ids>();
            QCOMPARE(announced, models.filter.dTags());
        }
    }
};

QTEST_MAIN(TestFileFilter)
#include "tst_filefilter.moc"
