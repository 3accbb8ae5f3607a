// What every benchmark shares: a measured time beside its floor, alternating in one run, printed as a row. A row gives the
// medians, and the ratio of each pair's times as median and spread. Times are of the wall clock.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace zelt::bench {

class Stopwatch {
public:
    Stopwatch() { QueryPerformanceCounter(&start); }
    double Seconds() const
    {
        LARGE_INTEGER now, frequency;
        QueryPerformanceCounter(&now);
        QueryPerformanceFrequency(&frequency);
        return static_cast<double>(now.QuadPart - start.QuadPart) / static_cast<double>(frequency.QuadPart);
    }

private:
    LARGE_INTEGER start;
};

struct Comparison {
    double floor;            // seconds, median
    double measured;         // seconds, median
    double ratio;            // median of the pairs
    double lowest, highest;  // of the pairs
};

double Median(std::vector<double> values);

// Each function does the work once and gives its seconds. A first pair warms caches up and is not counted.
Comparison Compare(int pairs, const std::function<double()>& floor, const std::function<double()>& measured);

// `unit` is "s", "ms", "us" or "ns"; `each` divides the times, as for a call among many. A goal of 0 is none.
void PrintTitle(const std::string& title);
void PrintRow(const std::string& what, const Comparison& comparison, double goal, const std::string& unit = "s",
              double each = 1);
// A figure without a floor in time.
void PrintFigure(const std::string& what, double value, const std::string& unit, double goal = 0);

}  // namespace zelt::bench
