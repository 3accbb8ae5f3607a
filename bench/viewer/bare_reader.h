// The floor of everything that reads logs: libxml2's own reader over the same file.
#pragma once

#include <string>

namespace zelt::bench {

// Reads every node of the file and ignores it. Returns seconds.
double ReadBare(const std::wstring& path);

}  // namespace zelt::bench
