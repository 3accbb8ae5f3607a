// The benchmarks of the viewer; main decides their order.
#pragma once

namespace zelt::bench {

class WrittenLog;

// Loading a log, and the memory its model takes.
void BenchLoading(const WrittenLog& log, int pairs);

// ZELT.EXE: time until its window shows, until all is read, and memory.
void BenchProgram(const WrittenLog& log);

// A log read in pages: the times until the viewer answers and until all is read, searches, and memory.
void BenchPages(const WrittenLog& log, int pairs);

// Opening the viewer's windows with a short log that fills them.
void BenchWindows();

// Searching a log for a text that it does not contain.
void BenchSearch(int pairs);

}  // namespace zelt::bench
