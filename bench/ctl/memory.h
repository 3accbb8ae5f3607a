// What a command of zeltctl.exe takes of memory, seen from outside of its process.
#pragma once

#include <string>

namespace zelt::bench {

// Runs the program with this command line, its output thrown away, and gives the most private memory that it had, in
// bytes.
double PeakMemory(const std::wstring& commandLine);

}  // namespace zelt::bench
