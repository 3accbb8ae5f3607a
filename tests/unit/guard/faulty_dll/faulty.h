// The worst possible package: a DLL with one export that commits the requested deed. Built twice, with the compiler's
// runtime libraries linked in and with the shared ones. Owns nothing; independent of the guard.
#pragma once

#include <windows.h>

namespace faulty {

enum class Deed {
    Return,
    WriteNull,
    CallNull,
    JumpToData,
    MisalignedVector,
    DivideByZero,
    Breakpoint,
    SingleStep,
    Privileged,
    Illegal,
    Bounds,        // i686 only
    IntoOverflow,  // i686 only
    X87Divide,
    X87DividePending,
    X87Invalid,
    X87Overflow,
    X87Underflow,
    X87Inexact,
    X87Denormal,
    X87StackOverflow,
    SseDivide,
    SseInvalid,
    SseOverflow,
    SseUnderflow,
    SseInexact,
    SseDenormal,
    DirectionFlagFault,
    StackOverflow,
    Raise,
    HandledFault,
    ThrowText,
    ThrowMutableText,
    ThrowRuntimeError,
    ThrowInt,
    ThrowInside,
    Terminate,
    Abort,
    UniversalAbort,
    CallBack,
};

struct Order {
    Deed deed;
    DWORD code = 0;                     // Raise
    DWORD flags = 0;                    // Raise
    void (*callBack)(void*) = nullptr;  // CallBack
    void* context = nullptr;            // CallBack
};

constexpr HRESULT kDone = 0x00041234;     // Returned after a deed without a fault or an exception.
constexpr HRESULT kHandled = 0x00041235;  // Returned when the callee handled its own fault or exception.
constexpr HRESULT kMissing = E_NOTIMPL;   // The deed is impossible on this processor or system.

using Misbehave = HRESULT (*)(const Order* order);

}  // namespace faulty
