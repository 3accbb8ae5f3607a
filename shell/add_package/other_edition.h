// The program of the other edition, which can export what this one cannot host.
#pragma once

#include <string>

namespace zelt {

// The one beside this program, or else the registered one; empty when there is none, or when this Windows cannot run it.
std::wstring OtherEditionProgram();

// Shows its main window: that of a process that has one, or of a new process.
bool ShowOtherEdition();

}  // namespace zelt
