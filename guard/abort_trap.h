// Turns std::terminate, abort, calls of pure virtual functions and invalid parameters of runtime functions inside a guarded
// call into a structured exception, which the guard takes. Packages built with GCC for i686 need it: an exception that their
// own copy of the runtime library cannot unwind any further ends in std::terminate or abort. Outside guarded calls all of them
// still end the process, without a message box that nobody would answer.
#pragma once

#include <windows.h>

namespace zelt {

// Installs the trap in msvcrt and, when they are loaded, in msvcr70 to msvcr120, the universal runtime library and GCC's shared
// C++ library. It cannot reach a runtime library that is linked into a package, but GCC's calls abort in a shared one. After
// libraries have been loaded or unloaded, the next guarded call calls this function.
void TrapAborts();

// `action` runs when the process is about to end by an abort outside guarded calls. Null, the default, means no action.
void SetUnguardedAbort(void (*action)());

// True for the trap's exception; `text` is then the string that was being thrown, or null when that is not known.
bool IsAbort(const EXCEPTION_RECORD& record, const char*& text);

// The number of guarded calls that are active on the calling thread (fault_guard.cpp). Walks the stack: do not ask it for every
// call.
int GuardDepth();

}  // namespace zelt
