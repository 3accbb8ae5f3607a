// The program of the other edition, which can export what this one cannot host.
#pragma once

#include <string>

namespace zelt {

// The one beside this program, or else the registered one; empty when there is none.
std::wstring OtherEditionProgram();

// Starts it, to show its main window.
bool StartOtherEdition();

}  // namespace zelt
