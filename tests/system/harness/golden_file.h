// Comparison with a golden file, byte for byte. With the environment variable ZELT_UPDATE_GOLDEN set to 1 a file that
// differs is rewritten, and the comparison still fails, so that an update is always looked at and never forgotten.
#pragma once

#include <string>

namespace zelt::test {

// Empty when the two are equal; otherwise the first line that differs, as it is in both, with the line before it. Line
// ends and other unprintable bytes are shown as escapes.
std::string FirstDifference(const std::string& expected, const std::string& actual);

// Compares `actual` with the file, or with what its difference from another makes (golden_text.h). Empty when they are equal, else what is wrong. A missing file differs from everything.
std::string CompareWithGolden(const std::string& path, const std::string& actual, bool update);

// The same for tests/golden/<name>, updating as the environment variable says. For EXPECT_EQ("", MatchGolden(...)).
std::string MatchGolden(const std::string& name, const std::string& actual);

}  // namespace zelt::test
