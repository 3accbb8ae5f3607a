// Compares with a golden file, byte for byte. If the environment variable ZELT_UPDATE_GOLDEN is 1, a differing file is
// rewritten, and the comparison still fails, so that every update is reviewed.
#pragma once

#include <string>

namespace zelt::test {

// Empty if the two are equal; otherwise the first differing line of both, with the line before it. Shows line
// ends and other unprintable bytes as escapes.
std::string FirstDifference(const std::string& expected, const std::string& actual);

// Compares `actual` with the golden text of `path`, which may be stored as its difference from another file
// (golden_text.h). Empty if they are equal, else what is wrong. A missing file differs from everything.
std::string CompareWithGolden(const std::string& path, const std::string& actual, bool update);

// The same for tests/golden/<name>, updating as the environment variable says. For EXPECT_EQ("", MatchGolden(...)).
std::string MatchGolden(const std::string& name, const std::string& actual);

}  // namespace zelt::test
