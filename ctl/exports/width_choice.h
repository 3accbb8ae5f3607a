// Which editions of ZELT a command works on: those that are installed, or the one that --width selects.
#pragma once

#include <string>
#include <vector>

#include "ctl/command.h"
#include "system/edition.h"

namespace zelt::ctl {

inline constexpr Option kWidthOption = {"--width", "32|64", "only packages of that width: 32 for ZELT, 64 for ZELT64"};

// The 32-bit edition comes first. Throws UsageError if --width is neither 32 nor 64, and Refusal if this Windows cannot run the
// edition that it selects.
std::vector<const Edition*> EditionsFor(const Arguments& arguments);

// For example, "32-bit".
std::string WidthText(const Edition& edition);

// The advice when both editions fit.
inline constexpr char kSayWidth[] = "say --width 32 or --width 64";

}  // namespace zelt::ctl
