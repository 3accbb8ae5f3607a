// The benchmarks of the viewer, in the order of their output.
#pragma once

namespace zelt::bench {

class WrittenLog;

// Loading a log of this size, and the memory its model takes. Use fewer pairs for large logs.
void BenchLoading(const WrittenLog& log, int pairs);

// The whole program, from its start with the log until its window shows.
void BenchProgram(const WrittenLog& log);

void BenchWindows();

void BenchSearch(int pairs);

}  // namespace zelt::bench
