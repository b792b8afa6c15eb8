#include "bench/actiontable.h"

#include "bench/measure.h"
#include "bench/openwindow.h"

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr double longestFreeze = 0.25;

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

} // namespace

ActionTable::ActionTable(OpenWindow &window, int rounds, const QString &only)
    : m_window(window), m_rounds(rounds), m_only(only)
{
    std::printf("%-44s %9s %9s %7s %9s %10s\n", "work", "plain ms", "cpu ms", "ratio", "wall ms",
                "freeze ms");
}

void ActionTable::run(const Action &action)
{
    if (!action.name.contains(m_only))
        return;
    std::vector<double> plain, cpu, wall, freeze;
    for (int round = 0; round < m_rounds; ++round) {
        m_window.settle(action.prepare);
        const double start = Measure::cpuSeconds();
        action.reference();
        plain.push_back(Measure::cpuSeconds() - start);
        const Settling::Cost cost = m_window.measure(action.act);
        cpu.push_back(cost.cpuSeconds);
        wall.push_back(cost.wallSeconds);
        freeze.push_back(cost.freezeSeconds);
    }
    const double reference = median(plain);
    const bool freezes = median(freeze) > longestFreeze && reference <= longestFreeze;
    std::printf("%-44s %9.2f %9.1f %7.2f %9.1f %10.1f%s\n", qPrintable(action.name), reference * 1000,
                median(cpu) * 1000, median(cpu) / reference, median(wall) * 1000, median(freeze) * 1000,
                freezes ? "  FREEZES" : "");
    std::fflush(stdout);
}
