// Asks a manager component for the names of its packages in a separate process. That process has the width that the manager
// needs, and a manager that crashes or ends its process takes nothing else with it. The process runs zeltctl itself, or the
// zeltctl of the other width beside it, and ends at the latest when this process ends.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "packages/package_listing.h"
#include "system/edition.h"

namespace zelt::ctl {

// Calls ListPackages in a process of the edition's width and returns its answer. Each failure is reported to `failed`; if there
// is no answer, so is the reason.
std::optional<std::vector<std::wstring>> AskManager(const Edition& edition, PackageKind kind, REFCLSID manager,
                                                    const ListingFailure& failed);

// Whether there is a program for managers of the edition's width.
bool HasTool(const Edition& edition);

// Whether `words` are the command line by which AskManager starts a process.
bool IsManagerQuestion(const std::vector<std::string>& words);
// Answers the question through the pipe that the command line names, because a manager may itself write to the standard output.
// Returns the exit code.
int AnswerManagerQuestion(const std::vector<std::string>& words);

// For tests, which run the programs of the build. Null restores the default: this program, and the zeltctl of the other
// width beside it.
using ToolPath = std::wstring (*)(const Edition& edition);
void SetToolPath(ToolPath path);

}  // namespace zelt::ctl
