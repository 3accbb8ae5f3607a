// Turns abort() inside a guarded call into a structured exception, which the guard takes. Packages built with GCC for
// i686 need it: an exception that their own copy of the runtime library cannot unwind further ends in std::terminate and
// abort. An abort outside a guarded call still ends the process.
#pragma once

#include <windows.h>

namespace zelt {

// Installs the trap in msvcrt and in the universal runtime library when that is loaded. Libraries that are linked into
// a package statically are out of reach.
void TrapAborts();

// True for the trap's exception; `text` is then the string that was being thrown, or null when that is not known.
bool IsAbort(const EXCEPTION_RECORD& record, const char*& text);

// True when a guarded call is active on the calling thread (fault_guard.cpp).
bool InGuardedCall();

}  // namespace zelt
