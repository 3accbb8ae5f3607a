// The floor for loading a log into the viewer: the time that libxml2's own reader takes for the same file.
#pragma once

#include <string>

namespace zelt::bench {

// Reads every node of the file and ignores it. Returns the time in seconds. Throws std::runtime_error.
double ReadBare(const std::wstring& path);

}  // namespace zelt::bench
