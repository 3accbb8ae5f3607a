#include "bench/rows.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

namespace zelt::bench {
namespace {

bool allMet = true;

}  // namespace

double ProcessorSeconds()
{
#ifdef _WIN32
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
#else
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
#endif
}

double Median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

Comparison Compare(int pairs, const std::function<double()>& floor, const std::function<double()>& measured)
{
    floor();
    measured();
    std::vector<double> floors, measures, ratios;
    for (int pair = 0; pair < pairs; ++pair) {
        // The two take turns to go first, so that neither always inherits the other's state.
        double below, above;
        if (pair % 2) {
            above = measured();
            below = floor();
        } else {
            below = floor();
            above = measured();
        }
        floors.push_back(below);
        measures.push_back(above);
        ratios.push_back(above / below);
    }
    const double ratio = Median(ratios);
    std::sort(ratios.begin(), ratios.end());
    const std::size_t leftOut = ratios.size() / 10;
    return {Median(floors), Median(measures), ratio, ratios[leftOut], ratios[ratios.size() - 1 - leftOut]};
}

void PrintTitle(const std::string& title)
{
    std::printf("\n%s\n%-44s %12s %12s %7s  %-15s %s\n", title.c_str(), "", "floor", "measured", "ratio", "spread",
                "goal");
    std::fflush(stdout);
}

bool PrintRow(const std::string& what, const Comparison& row, double goal, const std::string& unit, double each,
              double orAdded)
{
    const double factor = (unit == "ns" ? 1e9 : unit == "us" ? 1e6 : unit == "ms" ? 1e3 : 1) / each;
    std::printf("%-44s %9.3f %-2s %9.3f %-2s %7.2f  %5.2f to %-5.2f ", what.c_str(), row.floor * factor, unit.c_str(),
                row.measured * factor, unit.c_str(), row.ratio, row.lowest, row.highest);
    const bool met = goal <= 0 || row.ratio <= goal || (row.measured - row.floor) * factor <= orAdded;
    if (goal > 0) {
        std::printf("  %.2f ", goal);
        if (orAdded > 0) std::printf("or %.0f %s ", orAdded, unit.c_str());
        std::printf("%s", met ? "met" : "MISSED");
    }
    std::printf("\n");
    std::fflush(stdout);
    return met;
}

bool PrintFigure(const std::string& what, double value, const std::string& unit, double goal)
{
    std::printf("%-44s %25.1f %s", what.c_str(), value, unit.c_str());
    const bool met = goal <= 0 || value <= goal;
    if (goal > 0) std::printf("  (goal %.1f, %s)", goal, met ? "met" : "MISSED");
    std::printf("\n");
    std::fflush(stdout);
    return met;
}

Comparison MeasureRow(const std::string& what, int pairs, const Goal& goal, const std::function<double()>& floor,
                      const std::function<double()>& measured)
{
    Comparison row = Compare(pairs, floor, measured);
    if (PrintRow(what, row, goal.ratio, goal.unit, goal.each, goal.orAdded)) return row;
    row = Compare(pairs, floor, measured);
    Require(PrintRow(what + ", again", row, goal.ratio, goal.unit, goal.each, goal.orAdded));
    return row;
}

void Require(bool isMet) { allMet &= isMet; }

int ExitCode() { return allMet ? 0 : 1; }

}  // namespace zelt::bench
