// The memory that a command of zeltctl.exe takes, seen from outside its process.
#pragma once

#include <string>

namespace zelt::bench {

// Runs zeltctl.exe with these arguments and discards its output. Looks at its private memory every few milliseconds, and
// returns the most that was seen, in bytes. Throws std::runtime_error.
double PeakMemory(const std::wstring& commandLine);

}  // namespace zelt::bench
