// Notices that libraries have been loaded into the process, so that the guard looks for new runtime libraries only then. Looking
// for them before each call would take longer than most calls.
#pragma once

#include <windows.h>

#include <atomic>
#include <vector>

namespace zelt::guard {

// True from the start, and again after each library that is loaded. Whoever acts on it sets it to false first.
extern std::atomic<bool> librariesAreNew;

// Starts noticing; false if this system does not offer it, and librariesAreNew then changes no more.
bool NoticeLibraries();

// The libraries of the process, in no particular order. A library can be there in several versions.
std::vector<HMODULE> LoadedLibraries();

}  // namespace zelt::guard
