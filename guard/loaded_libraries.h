// Notices that libraries have been loaded into the process or unloaded from it, so that the guard looks for runtime libraries
// only then. Looking for them before each call would take longer than most calls.
#pragma once

#include <windows.h>

#include <atomic>
#include <vector>

namespace zelt::guard {

// True from the start, and again whenever a library is loaded or unloaded. Whoever acts on it sets it to false first.
extern std::atomic<bool> librariesHaveChanged;

// Starts noticing. False if this system does not offer it; librariesHaveChanged is then not set again.
bool StartNoticingLibraries();

// The libraries of the process, in no particular order. A library can be there in several versions.
std::vector<HMODULE> LoadedLibraries();

}  // namespace zelt::guard
