// The memory that a command of zeltctl.exe takes, seen from outside its process.
#pragma once

#include <string>

namespace zelt::bench {

// Runs the program with this command line, discards its output, and returns its peak private memory in bytes.
double PeakMemory(const std::wstring& commandLine);

}  // namespace zelt::bench
