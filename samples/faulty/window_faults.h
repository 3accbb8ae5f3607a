// Access violations in code that the system calls back: window procedures, a hook, an enumeration. The fault passes through
// the system, which may swallow it before the caller sees it.
#pragma once

namespace zelt::sample {

// In the window's procedure, while the window is created, sized or painted.
void FaultInWindowCreation();
void FaultInWindowSize();
void FaultInWindowPaint();

// In a hook of this thread, when a window of the thread receives a message.
void FaultInHook();

// In the callback of EnumWindows.
void FaultInEnumeration();

}  // namespace zelt::sample
