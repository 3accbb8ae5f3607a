#include "guard/fault_guard.h"

#include <excpt.h>
#include <malloc.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>

#include "guard/abort_trap.h"
#include "guard/foreign_throw.h"

#ifndef _WIN64
#include <unwind.h>
#endif

namespace zelt {

using guard::Escape;

namespace {

constexpr ULONG kOverflowReserve = 32 * 1024;  // Stack kept back for the dispatch of an overflow.
constexpr ULONG_PTR kRoomToRecover = 64 * 1024;

// A guard too close to the end of the stack could not recover, because the throw itself would overflow again: an outer guard
// must take the overflow. That happens when a package and a proxy call each other without end.
bool HasRoomToRecover(const void* frame)
{
    ULONG_PTR low = 0;
    ULONG_PTR high = 0;
    GetCurrentThreadStackLimits(&low, &high);
    const ULONG_PTR room = std::min(kRoomToRecover, (high - low) / 4);
    return reinterpret_cast<ULONG_PTR>(frame) - low >= room;
}

#ifdef _WIN64
constexpr DWORD kGccThrow = 0x20474343;

// True for a C++ exception of any copy of GCC's runtime library: our copy recognises it, so it may pass and find its handler.
// Other libraries throw with the same code. Our copy does not recognise their exceptions, and ends the process if it meets one
// while another exception is being handled.
bool PassesThrough(const EXCEPTION_RECORD& record)
{
    char producer[8] = {};  // The exception's class: vendor and language. The last character varies.
    if (record.ExceptionCode != kGccThrow || record.NumberParameters == 0) return false;
    if (!ReadForeign(reinterpret_cast<const void*>(record.ExceptionInformation[0]), producer, sizeof producer))
        return false;
    return std::memcmp(producer + 1, "++CCUNG", 7) == 0;
}
#endif

#ifndef _WIN64
// A 32-bit process learns only that an SSE instruction faulted. The processor's control and status word says which of the
// exceptions that the callee has unmasked occurred; the first in the processor's order of priority counts.
DWORD NameOfSseException(DWORD code, const CONTEXT& context)
{
    struct Flag {
        unsigned bit;
        DWORD code;
    };
    // clang-format off
    constexpr Flag kFlags[] = {
        {0, EXCEPTION_FLT_INVALID_OPERATION},
        {2, EXCEPTION_FLT_DIVIDE_BY_ZERO},
        {1, EXCEPTION_FLT_DENORMAL_OPERAND},
        {3, EXCEPTION_FLT_OVERFLOW},
        {4, EXCEPTION_FLT_UNDERFLOW},
        {5, EXCEPTION_FLT_INEXACT_RESULT},
    };
    // clang-format on
    constexpr std::size_t kOffset = 24;  // in the area that FXSAVE writes
    constexpr unsigned kMasks = 7;       // the bit of the first mask; the flags begin at bit 0
    if (code != STATUS_FLOAT_MULTIPLE_FAULTS && code != STATUS_FLOAT_MULTIPLE_TRAPS) return code;
    if ((context.ContextFlags & CONTEXT_EXTENDED_REGISTERS) != CONTEXT_EXTENDED_REGISTERS) return code;
    std::uint32_t word = 0;
    std::memcpy(&word, context.ExtendedRegisters + kOffset, sizeof word);
    const std::uint32_t raised = word & ~(word >> kMasks);
    for (const Flag& flag : kFlags) {
        if ((raised >> flag.bit & 1) != 0) return flag.code;
    }
    return code;
}
#endif

// Decides, before anything is unwound, whether the guard at `frame` takes the exception, and keeps what can be learned about
// it: the thrown object lives on the stack that is about to go.
bool Takes(const EXCEPTION_RECORD& record, const void* frame, Escape& escape)
{
    if (record.ExceptionFlags & (EXCEPTION_UNWINDING | EXCEPTION_EXIT_UNWIND)) return false;
    if (record.ExceptionCode == EXCEPTION_STACK_OVERFLOW && !HasRoomToRecover(frame)) return false;
    const char* text = nullptr;
    escape = {Escape::Kind::Fault, record.ExceptionCode, nullptr};
    if (record.ExceptionCode == kMicrosoftThrow) {
        escape.text = CopyMicrosoftText(record);
    } else if (IsAbort(record, text)) {
        escape.text = text ? CopyForeignText(text) : nullptr;
#ifdef _WIN64
    } else if (record.ExceptionCode == kGccThrow) {
        if (PassesThrough(record)) return false;
#endif
    } else {
        return true;
    }
    escape.kind = escape.text ? Escape::Kind::Text : Escape::Kind::Foreign;
    return true;
}

// Runs before main, on the main thread: guarded calls there can rely on it.
[[maybe_unused]] const bool prepared = (PrepareGuards(), true);

}  // namespace

#ifdef _WIN64

extern "C" void ZeltGuardLanding();

struct GuardFrame {
    void* home[4];
    Escape* escape;
};

extern "C" EXCEPTION_DISPOSITION ZeltGuardHandler(EXCEPTION_RECORD* record, void* frame, CONTEXT*,
                                                  DISPATCHER_CONTEXT* dispatcher)
{
    if (Takes(*record, frame, *static_cast<GuardFrame*>(frame)->escape)) {
        RtlUnwindEx(frame, reinterpret_cast<void*>(ZeltGuardLanding), record, nullptr, dispatcher->ContextRecord,
                    dispatcher->HistoryTable);
    }
    return ExceptionContinueSearch;
}

int GuardDepth()
{
    CONTEXT context;
    RtlCaptureContext(&context);
    int depth = 0;
    while (context.Rip != 0) {
        DWORD64 base = 0;
        DWORD64 establisher = 0;
        void* data = nullptr;
        PRUNTIME_FUNCTION function = RtlLookupFunctionEntry(context.Rip, &base, nullptr);
        if (!function) {  // A leaf: the return address is on top of the stack.
            if (!ReadForeign(reinterpret_cast<const void*>(context.Rsp), &context.Rip, sizeof context.Rip))
                return depth;
            context.Rsp += sizeof context.Rip;
            continue;
        }
        const PEXCEPTION_ROUTINE handler =
            RtlVirtualUnwind(UNW_FLAG_EHANDLER, base, context.Rip, function, &context, &data, &establisher, nullptr);
        if (reinterpret_cast<void*>(handler) == reinterpret_cast<void*>(ZeltGuardHandler)) ++depth;
    }
    return depth;
}

#else

struct GuardFrame {
    EXCEPTION_REGISTRATION_RECORD registration;
    Escape* escape;
};

// The thread's exception chain.
static EXCEPTION_REGISTRATION_RECORD* ChainTop()
{
    EXCEPTION_REGISTRATION_RECORD* top;
    asm volatile("movl %%fs:0, %0" : "=r"(top));
    return top;
}

static void SetChainTop(EXCEPTION_REGISTRATION_RECORD* top) { asm volatile("movl %0, %%fs:0" : : "r"(top) : "memory"); }

extern "C" [[noreturn]] void ZeltGuardUnwind(GuardFrame* frame, EXCEPTION_RECORD* record);

extern "C" EXCEPTION_DISPOSITION ZeltGuardHandler(EXCEPTION_RECORD* record, GuardFrame* frame, CONTEXT* context, void*)
{
    if (Takes(*record, frame, *frame->escape)) {
        frame->escape->code = NameOfSseException(record->ExceptionCode, *context);
        ZeltGuardUnwind(frame, record);
    }
    return ExceptionContinueSearch;
}

// Called by our own runtime library for the thunk's frame while a C++ exception passes through. Unlinks the frame's record.
extern "C" _Unwind_Reason_Code ZeltGuardPersonality(int, _Unwind_Action actions, _Unwind_Exception_Class,
                                                    _Unwind_Exception*, _Unwind_Context* context)
{
    constexpr int kEbp = 5;
    constexpr std::uintptr_t kRecordBelowEbp = 32;
    if (actions & _UA_CLEANUP_PHASE) {
        const auto frame = static_cast<std::uintptr_t>(_Unwind_GetGR(context, kEbp)) - kRecordBelowEbp;
        SetChainTop(reinterpret_cast<GuardFrame*>(frame)->registration.Next);
    }
    return _URC_CONTINUE_UNWIND;
}

int GuardDepth()
{
    int depth = 0;
    const auto end = reinterpret_cast<EXCEPTION_REGISTRATION_RECORD*>(~std::uintptr_t{0});
    for (const EXCEPTION_REGISTRATION_RECORD* record = ChainTop(); record && record != end; record = record->Next) {
        if (reinterpret_cast<void*>(record->Handler) == reinterpret_cast<void*>(ZeltGuardHandler)) ++depth;
    }
    return depth;
}

#endif

void PrepareGuards()
{
    TrapAborts();
    ULONG reserve = 0;
    if (SetThreadStackGuarantee(&reserve) && reserve >= kOverflowReserve) return;
    reserve = kOverflowReserve;
    // If the whole stack is committed, its guard page is too low for the new reserve; _resetstkoflw places it again.
    if (SetThreadStackGuarantee(&reserve)) _resetstkoflw();
}

void guard::ThrowEscape(const Escape& escape)
{
    const std::unique_ptr<char[]> text(escape.text);
    switch (escape.kind) {
        case Escape::Kind::Text: throw ThrownText(text.get());
        case Escape::Kind::Foreign: throw ForeignException();
        case Escape::Kind::Fault: break;
    }
    // The guard page was lost in the overflow; without it, the next overflow would end the process.
    if (escape.code == EXCEPTION_STACK_OVERFLOW) _resetstkoflw();
    throw SE_Exception(escape.code);
}

}  // namespace zelt
