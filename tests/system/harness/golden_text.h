// Golden files that differ little from others are stored as differences: <name>.diff, whose first line names the other
// file ("base: other.zlg"), followed by the output of `diff` for the two. Does not use Windows.
#pragma once

#include <optional>
#include <string>

namespace zelt::test {

// The text of <folder>/<name>, from the file itself or from its difference. Nothing if neither exists, or if the
// difference does not fit its base.
std::optional<std::string> GoldenText(const std::string& folder, const std::string& name);

// `base` with the changes of `difference`, in the form of `diff` without options; nothing if they do not fit.
std::optional<std::string> Changed(const std::string& base, const std::string& difference);

}  // namespace zelt::test
