// The memory that a command of zeltctl.exe takes, seen from outside its process.
#pragma once

#include <string>

namespace zelt::bench {

// Runs the program with this command line and discards its output. Looks every few milliseconds, and returns the most private
// memory that it saw, in bytes. Throws std::runtime_error.
double PeakMemory(const std::wstring& commandLine);

}  // namespace zelt::bench
