// The benchmarks of the viewer, in the order in which they print.
#pragma once

namespace zelt::bench {

class WrittenLog;

// Loading a log of this size, and what the model takes for it. Fewer pairs for large logs.
void BenchLoading(const WrittenLog& log, int pairs);

// The whole program: started on the log, until its window shows.
void BenchProgram(const WrittenLog& log);

void BenchWindows();

void BenchSearch(int pairs);

}  // namespace zelt::bench
