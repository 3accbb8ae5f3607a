// The floor of what reads logs: a bare scan for tags.
#pragma once

#include <string>

namespace zelt::bench {

// Reads the file in pieces, finds where each tag begins and ends, and does nothing else. Returns seconds.
double ScanForTags(const std::string& path);

}  // namespace zelt::bench
