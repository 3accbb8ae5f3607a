// The floor for code that reads logs: a bare scan for tags.
#pragma once

#include <filesystem>

namespace zelt::bench {

// Reads the file in pieces, finds where each tag begins and ends, and does nothing else. Returns the seconds of a WorkWatch.
double ScanForTags(const std::filesystem::path& path);

}  // namespace zelt::bench
