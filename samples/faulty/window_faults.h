// Faults in code that the system calls back: window procedures, hooks, enumeration. The fault travels back through the system,
// which may swallow it, so that no caller's guard sees it.
#pragma once

namespace zelt::sample {

// An access violation while a window is created, sized or painted.
void FaultInWindowCreation();
void FaultInWindowSize();
void FaultInWindowPaint();

// In a hook of the thread, while it receives a message.
void FaultInHook();

// In a callback for each of the system's windows.
void FaultInEnumeration();

}  // namespace zelt::sample
