#include "bench/measure.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/records/file.h"
#include "models/contents/contentsmodel.h"
#include "models/contents/filefiltermodel.h"
#include "models/contents/sorter.h"

#include <QApplication>
#include <QDateTime>
#include <QRandomGenerator>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

// What a click on a node or a tag and a search cost at a million files. The reference of a selection is one
// pass over a vector of tag ids a file that counts all tags; that of a search is the same search over a flat
// list of texts. CPU time, medians; both run in turn, as the machine has other work at times.

namespace {

using Ids = QVector<qint64>;

constexpr int tagTotal = 5000;
constexpr int rounds = 9;

struct Texts
{
    QString name;
    QString description;
    QString code;
};

/** The files as records of the program, and once more as plain memory for the references. */
struct Library
{
    explicit Library(int count)
    {
        QRandomGenerator random(42);
        // Before all else, so that the lists of the reference lie side by side in memory.
        plainTags.reserve(static_cast<size_t>(count));
        for (int i = 1; i <= count; ++i) {
            const Ids tags = drawTags(random);
            plainTags.emplace_back(tags.begin(), tags.end());
            taggings += tags.size();
        }
        makeRecords(random, count);
    }

    void makeRecords(QRandomGenerator &random, int count)
    {
        QMap<qint64, File *> items;
        for (int i = 1; i <= count; ++i) {
            const std::vector<qint64> &tags = plainTags.at(static_cast<size_t>(i - 1));
            const Texts text{drawName(random, i), i % 3 == 0 ? drawName(random, i) : QString(),
                             QString::number(i, 36).rightJustified(7, QLatin1Char('0'))};
            texts.push_back(text);
            const qint64 age = i > count - 1000 ? 10 : 100000 + i;
            auto *file = new File(i, i, QDateTime::currentSecsSinceEpoch() - age, i, 1, text.name,
                                  text.description, text.code, QString(), QString(), 0, 0, 0, i % 3);
            file->setTags(Ids(tags.begin(), tags.end()));
            records.emplace_back(file);
            items.insert(items.constEnd(), i, file);
        }
        files = FileMap(items);
    }

    // Small ids are on many files: 1 on about a third of them, the last ones on a few hundred. Every
    // twentieth file has none.
    static Ids drawTags(QRandomGenerator &random)
    {
        Ids tags;
        const int count = random.bounded(20) == 0 ? 0 : 2 + random.bounded(7);
        while (tags.size() < count) {
            const double draw = random.generateDouble();
            const qint64 tag =
                1 + static_cast<qint64>(draw * draw * draw * tagTotal * random.generateDouble());
            if (!tags.contains(tag))
                tags.append(tag);
        }
        return tags;
    }

    static QString drawName(QRandomGenerator &random, int number)
    {
        static const QStringList words{QStringLiteral("Report"),    QStringLiteral("holiday"),
                                       QStringLiteral("IMG"),       QStringLiteral("invoice"),
                                       QStringLiteral("Notes"),     QStringLiteral("scan"),
                                       QStringLiteral("Protokoll"), QStringLiteral("letter")};
        return words.at(random.bounded(words.size())) + QLatin1Char('_') +
               words.at(random.bounded(words.size())) + QLatin1Char(' ') + QString::number(number) +
               QStringLiteral(".pdf");
    }

    std::vector<std::unique_ptr<File>> records;
    FileMap files;
    std::vector<std::vector<qint64>> plainTags;
    std::vector<Texts> texts;
    qint64 taggings = 0;
};

// Keeps the optimizer from leaving work out.
volatile qint64 sink = 0;

void countAllTags(const Library &library)
{
    std::vector<quint32> counts(tagTotal + 1);
    for (const std::vector<qint64> &tags : library.plainTags) {
        for (qint64 tag : tags)
            ++counts[static_cast<size_t>(tag)];
    }
    sink = sink + counts[1];
}

void searchTexts(const Library &library, const QString &text)
{
    int hits = 0;
    for (const Texts &texts : library.texts) {
        const bool isHit = texts.name.contains(text, Qt::CaseInsensitive) ||
                           texts.description.contains(text, Qt::CaseInsensitive) ||
                           texts.code.contains(text, Qt::CaseInsensitive);
        hits += isHit ? 1 : 0;
    }
    sink = sink + hits;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

double secondsOf(const std::function<void()> &work)
{
    const double start = Measure::cpuSeconds();
    work();
    return Measure::cpuSeconds() - start;
}

struct Row
{
    std::string name;
    std::function<void()> select;
    std::function<void()> reference;
    double limit;
};

void compare(const Row &row, MainViewController &controller)
{
    std::vector<double> own;
    std::vector<double> plain;
    for (int round = 0; round < rounds; ++round) {
        plain.push_back(secondsOf(row.reference));
        // Each round starts from another selection, as a click does.
        controller.showSpecialNode(AllFilesWithoutTags);
        sink = sink + controller.sorter()->rowCount();
        own.push_back(secondsOf([&row, &controller] {
            row.select();
            sink = sink + controller.filterModel()->rowCount() + controller.sorter()->rowCount();
        }));
    }
    const double ratio = median(own) / median(plain);
    std::printf("%-34s %8d %9.1f %9.1f %8.2f %6.1f %s\n", row.name.c_str(), controller.sorter()->rowCount(),
                median(plain) * 1000, median(own) * 1000, ratio, row.limit, ratio <= row.limit ? "" : "OVER");
}

Ids tagRange(int first, int count)
{
    Ids tags;
    for (int i = 0; i < count; ++i)
        tags.append(first + i);
    return tags;
}

std::vector<Row> selectionRows(MainViewController &controller, const Library &library)
{
    const auto count = [&library] { countAllTags(library); };
    const auto tags = [&controller](const TagRequirements &wanted) {
        return [&controller, wanted] {
            controller.showTagRequirements(wanted.required, wanted.eitherOr, wanted.excluded,
                                           wanted.requiredAlternatives, wanted.eitherOrWidened,
                                           wanted.excludedWidened);
        };
    };
    const auto special = [&controller](NodeType type) {
        return [&controller, type] { controller.showSpecialNode(type); };
    };
    const Ids below = tagRange(100, 200);
    return {
        {"node of a frequent tag", tags({{1}, {}, {}, {}, {}, {}}), count, 3},
        {"node of a rare tag", tags({{2000}, {}, {}, {}, {}, {}}), count, 3},
        {"node three levels down", tags({{1, 2, 3}, {}, {}, {}, {}, {}}), count, 3},
        {"node with inverted ones", tags({{1}, {}, {2, 3}, {}, {}, {}}), count, 3},
        {"node, widened by 200 tags", tags({{90}, {}, {91}, {{90, below}}, {}, tagRange(400, 50)}), count, 3},
        {"AND of two tags, widened", tags({{1, 90}, {}, {}, {{1, tagRange(10, 50)}, {90, below}}, {}, {}}),
         count, 3},
        {"OR of three tags, widened", tags({{}, {1, 2, 90}, {}, {}, below, {}}), count, 3},
        {"all files", special(AllFiles), count, 6},
        {"all files with tags", special(AllFilesWithTags), count, 6},
        {"all files without tags", special(AllFilesWithoutTags), count, 3},
        {"internal files", special(AllInternalFiles), count, 3},
        {"external files", special(AllExternalFiles), count, 3},
        {"hyperlinks", special(AllHyperlinks), count, 3},
        {"recently added files", special(RecentlyAddedFiles), count, 3},
    };
}

std::vector<Row> searchRows(MainViewController &controller, const Library &library)
{
    const auto search = [&controller, &library](const char *name, const char *text) {
        const QString wanted = QString::fromLatin1(text);
        return Row{std::string("search: ") + name,
                   [&controller, wanted] { controller.setFileFilterString(wanted); },
                   [&library, wanted] { searchTexts(library, wanted); }, 3};
    };
    return {search("in many names", "report"), search("in few names", "12345"),
            search("an id code", "00abc1"), search("nowhere", "nothing has this"), search("one letter", "x")};
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "default.debug=false");
    const QApplication application(argc, argv);
    const int count = argc > 1 ? std::max(1000, std::atoi(argv[1])) : 1000000;
    const Library library(count);
    MainViewController controller(nullptr, nullptr, nullptr);
    const double loading = secondsOf([&] { controller.loadedFilesDataFromDB(library.files); });
    std::printf("%d files, %lld taggings, tables filled in %.0f ms\n\n", count, library.taggings,
                loading * 1000);
    std::printf("%-34s %8s %9s %9s %8s %6s\n", "work", "shown", "plain ms", "ms", "ratio", "limit");
    for (const Row &row : selectionRows(controller, library))
        compare(row, controller);
    for (const Row &row : searchRows(controller, library))
        compare(row, controller);
    return 0;
}
