// Golden files that differ little from others are kept as that difference: <name>.diff, whose first line names the other file
// ("base: other.zlg") and whose others are what `diff` prints for the two. Without Windows.
#pragma once

#include <optional>
#include <string>

namespace zelt::test {

// The text of <folder>/<name>, from the file itself or from its difference. Nothing when there is neither, or when a difference
// does not fit its base.
std::optional<std::string> GoldenText(const std::string& folder, const std::string& name);

// `base` changed as `difference` says, in the form of `diff` without options; nothing when they do not fit.
std::optional<std::string> Changed(const std::string& base, const std::string& difference);

}  // namespace zelt::test
