// The system resources that a process holds: handles, objects of the window system, memory. For tests that look for
// leaks. Under Wine, the counts of the window system are always 0.
#pragma once

#include <windows.h>

#include <ostream>

namespace zelt::test {

struct ProcessFigures {
    DWORD handles = 0, gdiObjects = 0, userObjects = 0;
    SIZE_T privateBytes = 0;
};

// For this process or another one. All 0 if it cannot be opened.
ProcessFigures FiguresOf(DWORD processId);

std::ostream& operator<<(std::ostream& stream, const ProcessFigures& figures);

}  // namespace zelt::test
