// Which logs the words of a command line mean: files, folders, names with * and ?, and - for standard input.
#pragma once

#include <string>
#include <vector>

#include "ctl/command.h"

namespace zelt::ctl {

inline constexpr std::string_view kStandardInput = "-";

// The operands with each folder replaced by the logs in it, and each pattern by the files that match it, both in alphabetical
// order. An operand for which there are no such files stays unchanged. Throws UsageError when standard input is named twice.
std::vector<std::string> LogPaths(const Arguments& arguments);

// Whether the last part of `path` has * or ?, and no file has exactly this path.
bool IsPattern(const std::string& path);

// What messages and headings call a log.
std::string NameOfLog(const std::string& path);

}  // namespace zelt::ctl
