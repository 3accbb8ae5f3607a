// The floor for code that reads logs: a bare scan for tags.
#pragma once

#include <filesystem>

namespace zelt::bench {

// Reads the file in pieces, finds where the tags in each piece begin and end, and does nothing else. Returns the seconds that
// this takes, by a WorkWatch (rows.h). Throws std::runtime_error.
double ScanForTags(const std::filesystem::path& path);

}  // namespace zelt::bench
