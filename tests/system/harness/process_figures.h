// What a process holds of the system's: handles, objects of the window system, memory. For tests that look for leaks. Under
// Wine the window system's counts are always 0.
#pragma once

#include <windows.h>

#include <ostream>

namespace zelt::test {

struct ProcessFigures {
    DWORD handles = 0, gdiObjects = 0, userObjects = 0;
    SIZE_T privateBytes = 0;
};

// Of this process, or of another one. All 0 for one that cannot be opened.
ProcessFigures FiguresOf(DWORD processId);

std::ostream& operator<<(std::ostream& stream, const ProcessFigures& figures);

}  // namespace zelt::test
