// Asks a manager component for the names of its packages in a process of its own: one of the width that the manager needs, and
// one that a manager which crashes, or ends its process, takes with it alone. The process is zeltctl itself, or the zeltctl of the
// other width beside it, and ends with this one.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "packages/package_listing.h"
#include "system/edition.h"

namespace zelt::ctl {

// What ListPackages says in a process of the edition's width, or why there is no answer.
std::optional<std::vector<std::wstring>> AskManager(const Edition& edition, PackageKind kind, REFCLSID manager,
                                                    const ListingFailure& failed);

// Whether there is a program for managers of the edition's width.
bool HasTool(const Edition& edition);

// Whether `words` are the command line by which AskManager starts a process.
bool IsManagerQuestion(const std::vector<std::string>& words);
// Answers it through the pipe that the command line names: a manager may use the standard output itself. Returns the exit code.
int AnswerManagerQuestion(const std::vector<std::string>& words);

// Tests run the programs of the build. Null restores those beside this program.
using ToolPath = std::wstring (*)(const Edition& edition);
void SetToolPath(ToolPath path);

}  // namespace zelt::ctl
