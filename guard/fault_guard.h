// Calls into code that is not ours, made so that everything that escapes arrives as a C++ exception. The guard is a frame
// handler around the single call, so faults that the callee handles itself never reach it. It keeps nothing after a call.
// Abandoned frames of the callee are unwound if the system knows them, which is not so for GCC's frames on i686. The guard
// cannot stop exit() or a fail-fast.
#pragma once

#include <windows.h>

#include <exception>
#include <string>
#include <type_traits>
#include <utility>

#include "guard/abort_trap.h"
#include "guard/loaded_libraries.h"
#include "guard/se_exception.h"

namespace zelt {

// A copy of a character string that the callee threw and that could not pass as an exception, because the thrower's runtime
// library is not ours.
class ThrownText final : public std::exception {
public:
    explicit ThrownText(std::string text) : text(std::move(text)) {}
    const char* Text() const { return text.c_str(); }
    const char* what() const noexcept override { return Text(); }

private:
    std::string text;
};

// Anything else that a foreign runtime library threw, or a callee that gave up (abort_trap.h) without a known text.
class ForeignException final : public std::exception {
public:
    const char* what() const noexcept override { return "a component threw an exception or gave up"; }
};

// Calls TrapAborts (abort_trap.h), and reserves stack on the calling thread; without the reserve, a stack overflow may leave no
// room to dispatch the exception. The main thread is prepared at start-up; call this first on each further thread that makes
// guarded calls. Cheap and idempotent.
void PrepareGuards();

namespace guard {

// What the frame handler saw. Filled before the stack is unwound. The handler allocates `text`, ThrowEscape frees it.
struct Escape {
    enum class Kind { Fault, Text, Foreign };

    Kind kind;
    DWORD code;
    char* text;
};

using Function = void (*)(void* context);

// The thunk (fault_guard_*.S): calls `function` and returns 0, or 1 if `escape` was filled. Guarded says which C++ exceptions
// pass.
extern "C" int ZeltGuardedCall(Function function, void* context, Escape* escape);

[[noreturn]] void ThrowEscape(const Escape& escape);

inline void Run(Function function, void* context)
{
    // A package may have loaded another runtime library in an earlier call.
    if (librariesHaveChanged.load(std::memory_order_relaxed)) [[unlikely]]
        TrapAborts();
    Escape escape;
    if (ZeltGuardedCall(function, context, &escape) != 0) [[unlikely]]
        ThrowEscape(escape);
}

}  // namespace guard

// Runs `call` and returns its result. Throws
//   SE_Exception      for a structured exception: faults, stack overflow, codes of any other origin;
//   ThrownText        for a character string from a runtime library that is not ours;
//   ForeignException  for everything else from such a library, and for a callee that gave up without a known text.
// C++ exceptions that reach this frame the normal way pass unchanged: all of our own, and on x86_64 also those of packages
// built with GCC. On i686 each copy of GCC's runtime library unwinds only its own frames and ends in abort, which arrives as
// ThrownText or ForeignException.
template <class Call>
std::invoke_result_t<Call&> Guarded(Call&& call)
{
    // A temporary callee is moved into the frame, which saves an indirection.
    using Result = std::invoke_result_t<Call&>;
    if constexpr (std::is_void_v<Result>) {
        struct Frame {
            Call call;
        } frame{std::forward<Call>(call)};
        guard::Run([](void* context) { static_cast<Frame*>(context)->call(); }, &frame);
    } else {
        static_assert(std::is_trivially_copyable_v<Result>, "a fault leaves the result's lifetime undefined");
        struct Frame {
            Call call;
            Result result;
        } frame{std::forward<Call>(call), {}};
        guard::Run(
            [](void* context) {
                auto* frame = static_cast<Frame*>(context);
                frame->result = frame->call();
            },
            &frame);
        return frame.result;
    }
}

}  // namespace zelt
