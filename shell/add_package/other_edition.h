// The program of the other edition, which can export what this one cannot host.
#pragma once

#include <string>

namespace zelt {

// Its path: beside this program, or else as registered. Empty if there is no such file, or if this Windows cannot run it.
std::wstring OtherEditionProgram();

// Brings its main window to the front if a process shows one; otherwise starts the program. False if it cannot be started.
bool ShowOtherEdition();

}  // namespace zelt
