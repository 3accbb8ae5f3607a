// The console's code page: UTF-8 while the program runs, and afterwards what it was before, because the console belongs to the
// shell and to the programs that follow.
#pragma once

#include <windows.h>

namespace zelt::ctl {

// Restores the code page even when the user ends the program with Ctrl+C or Ctrl+Break, or closes the console. Only one
// instance may exist at a time.
class Utf8Console {
public:
    Utf8Console();
    ~Utf8Console();
    Utf8Console(const Utf8Console&) = delete;
    Utf8Console& operator=(const Utf8Console&) = delete;
};

}  // namespace zelt::ctl
