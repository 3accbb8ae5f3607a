// Which editions of ZELT a command works on: those that are installed, or the one that --width says.
#pragma once

#include <string>
#include <vector>

#include "ctl/command.h"
#include "system/edition.h"

namespace zelt::ctl {

inline constexpr Option kWidthOption = {"--width", "32|64", "only packages of that width: 32 for ZELT, 64 for ZELT64"};

// The 32-bit edition first. Throws UsageError for another width, and Refusal for one that this Windows does not run.
std::vector<const Edition*> EditionsFor(const Arguments& arguments);

// "32-bit".
std::string WidthText(const Edition& edition);

// The advice when both editions fit.
inline constexpr char kSayWidth[] = "say --width 32 or --width 64";

}  // namespace zelt::ctl
