// The box that reports a million duplicates, from the call to its first picture, and what it keeps in memory
// beyond the report that it is handed, beside one pass over the report that counts the rows.
#include "bench/measure.h"
#include "ui/dialogs/duplicateprompt.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTabWidget>
#include <QTableView>

#include <algorithm>
#include <cstdio>
#include <numeric>

namespace {

// Keeps the optimizer from leaving work out.
volatile qint64 sink = 0;

DuplicateFileInfo file(const char *folder, int number, qint64 id)
{
    return {id,
            {},
            QStringLiteral("/home/somebody/%1/a file %2.jpg").arg(QLatin1String(folder)).arg(number),
            100000 + number,
            QDateTime::fromSecsSinceEpoch(1600000000 + number)};
}

QVector<DuplicateMatch> matches(int count)
{
    QVector<DuplicateMatch> made;
    made.reserve(count);
    for (int number = 0; number < count; ++number)
        made.append({{file("known", number, number + 1)}, {file("added", number, 0)}});
    return made;
}

qint64 countRows(const QVector<DuplicateMatch> &matches)
{
    QVector<int> first;
    first.reserve(matches.size());
    int rows = 0;
    for (const DuplicateMatch &match : matches) {
        first.append(rows);
        rows += match.addedFiles.size() + match.databaseFiles.size();
    }
    return std::accumulate(first.cbegin(), first.cend(), qint64(0));
}

void measure(const char *name, const PresentableDuplicates &duplicates)
{
    double start = Measure::cpuSeconds();
    sink = sink + countRows(duplicates.contentMatches) + countRows(duplicates.nameMatches);
    const double plain = Measure::cpuSeconds() - start;
    const qint64 before = Measure::residentBytes();
    Measure::resetPeak();
    start = Measure::cpuSeconds();
    DuplicatePrompt prompt(duplicates, nullptr);
    prompt.show();
    prompt.grab();
    const double shown = Measure::cpuSeconds() - start;
    start = Measure::cpuSeconds();
    for (QTableView *table : prompt.findChildren<QTableView *>())
        table->scrollToBottom();
    prompt.grab();
    const double scrolled = Measure::cpuSeconds() - start;
    start = Measure::cpuSeconds();
    const auto chosen = prompt.chosenPaths();
    const double answered = Measure::cpuSeconds() - start;
    qint64 rows = 0;
    for (QTableView *table : prompt.findChildren<QTableView *>())
        rows = std::max(rows, qint64(table->model() ? table->model()->rowCount() : 0));
    std::printf("%-16s %9lld %9.1f %9.1f %7.2f %9.1f %9.1f %11.1f\n", name, static_cast<long long>(rows),
                plain * 1000, shown * 1000, shown / plain, scrolled * 1000, answered * 1000,
                double(Measure::peakBytes() - before) / double(rows));
    sink = sink + chosen.size();
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "default.debug=false");
    QApplication application(argc, argv);
    QCommandLineParser options;
    const QCommandLineOption countOption(QStringLiteral("count"), QStringLiteral("Files that match."),
                                         QStringLiteral("number"), QStringLiteral("1000000"));
    options.addOption(countOption);
    options.addHelpOption();
    options.process(application);
    const int count = std::max(1, options.value(countOption).toInt());

    // Fonts and icons are read.
    const DuplicatePrompt first(PresentableDuplicates{matches(1), matches(1), {}, {}}, nullptr);
    std::printf("%-16s %9s %9s %9s %7s %9s %9s %11s\n", "matches of", "rows", "plain ms", "cpu ms", "ratio",
                "to end ms", "answer ms", "bytes a row");
    measure("content", PresentableDuplicates{matches(count), {}, {}, {}});
    measure("name", PresentableDuplicates{{}, matches(count), {}, {}});
    return 0;
}
