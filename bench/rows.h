// What every benchmark shares: a measured time and its floor, alternating in one run, printed as a row. A row gives the
// medians, and the ratio of each pair's times as median and spread. Times are wall-clock times.
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

struct Comparison {
    double floor;            // seconds, median
    double measured;         // seconds, median
    double ratio;            // median of the pairs
    double lowest, highest;  // of the pairs
};

double Median(std::vector<double> values);

// Each function does the work once and returns its seconds. A first pair warms up the caches and is not counted.
Comparison Compare(int pairs, const std::function<double()>& floor, const std::function<double()>& measured);

void PrintTitle(const std::string& title);
// `unit` is "s", "ms", "us" or "ns". The times are divided by `each`, for example by the number of calls, to show the time of one.
// A goal of 0 means none. A time that exceeds its floor by at most `orAdded`, in `unit`, also meets the goal.
void PrintRow(const std::string& what, const Comparison& comparison, double goal, const std::string& unit = "s",
              double each = 1, double orAdded = 0);
// A figure that has no floor.
void PrintFigure(const std::string& what, double value, const std::string& unit, double goal = 0);

}  // namespace zelt::bench
