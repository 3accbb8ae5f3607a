// The benchmarks of the viewer, in the order of their output.
#pragma once

namespace zelt::bench {

class WrittenLog;

// Loading a log of this size, and the memory its model takes. Use fewer pairs for large logs.
void BenchLoading(const WrittenLog& log, int pairs);

// The whole program, from its start with the log until its window shows.
void BenchProgram(const WrittenLog& log);

// A log that is read in pages: until its viewer answers, until all is read, a search, and the memory then.
void BenchPages(const WrittenLog& log, int pairs);

void BenchWindows();

void BenchSearch(int pairs);

}  // namespace zelt::bench
