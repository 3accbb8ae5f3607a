// What the benchmarks share. A row compares a measured time with its floor: the two are measured in turn, in pairs, and the row
// shows the median of each, and the median and spread of the pairs' ratios. A figure has no floor. Times are wall-clock times
// unless a benchmark says otherwise. Other programs may interrupt a measurement, so prefer many short pairs to few long ones:
// their median is steadier.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace zelt::bench {

class Stopwatch {
public:
    double Seconds() const { return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(); }

private:
    const std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
};

// The processor time that this process has used, which does not depend on other programs; on Windows, which counts it coarsely,
// the time of a clock. For work of one thread that waits for nothing.
double ProcessorSeconds();

class WorkWatch {
public:
    double Seconds() const { return ProcessorSeconds() - start; }

private:
    const double start = ProcessorSeconds();
};

struct Comparison {
    double floor;            // seconds, median
    double measured;         // seconds, median
    double ratio;            // median of the pairs
    double lowest, highest;  // of the pairs' ratios, without the lowest and the highest tenth
};

double Median(std::vector<double> values);

// Each function does the work once and returns its seconds. A first pair warms up the caches and is not counted.
Comparison Compare(int pairs, const std::function<double()>& floor, const std::function<double()>& measured);

void PrintTitle(const std::string& title);
// `unit` is "s", "ms", "us" or "ns". The times are divided by `each`, for example by the number of calls, to show the time of
// one. A goal of 0 means none. A time that exceeds its floor by at most `orAdded`, in `unit`, also meets the goal. False when
// the goal is missed.
bool PrintRow(const std::string& what, const Comparison& comparison, double goal, const std::string& unit = "s",
              double each = 1, double orAdded = 0);
// A figure that has no floor. False when the goal is missed.
bool PrintFigure(const std::string& what, double value, const std::string& unit, double goal = 0);

// A row's goal, and how the row is printed.
struct Goal {
    double ratio = 0;  // 0 for none
    std::string unit = "s";
    double each = 1, orAdded = 0;  // see PrintRow
};
// Measures a row and prints it. If it misses its goal, it is measured once more, and only that result counts. Returns the last
// comparison.
Comparison MeasureRow(const std::string& what, int pairs, const Goal& goal, const std::function<double()>& floor,
                      const std::function<double()>& measured);

// Notes, for ExitCode, whether a goal is met.
void Require(bool isMet);
// The exit code of a benchmark's program: not 0 when a goal was missed.
int ExitCode();

}  // namespace zelt::bench
