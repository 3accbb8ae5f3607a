// The proxied calls in progress in the proxies' apartment, recorded outside the stack. An outer call may catch a fault, above
// all a stack overflow, of a call nested many levels deeper. The stack frames of the nested calls are then lost without running
// their destructors, and this code does the destructors' work. Every call enters and leaves here, so the functions are inline.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zelt {

// What the calls belong to; only the layer that enters calls knows more about these classes.
class CapeOpenBase;
class LogDocument;

struct CallInProgress {
    CapeOpenBase* proxy;
    LogDocument* document;  // null when nothing is logged
    std::int32_t depth;     // of the document before the call's element was opened
};

// Does what the destructors of a call's lost stack frame would have done. Installed by the layer that enters calls, before it
// enters the first.
using EndCallFunction = void (*)(const CallInProgress& call) noexcept;
EndCallFunction SetEndCall(EndCallFunction function);

namespace calls_in_progress {

// More than the main thread's stack of 2 MB holds. Calls for which there is no room, which only a thread with a larger stack can
// make, are counted but not kept.
constexpr std::size_t kRoom = 16384;

// Outermost first. The system provides the memory as it is used.
extern CallInProgress calls[kRoom];
extern std::size_t count;

}  // namespace calls_in_progress

// How many calls are in progress.
inline std::size_t CountCallsInProgress() { return calls_in_progress::count; }

// Calls no function.
[[gnu::always_inline]] inline void EnterCallInProgress(const CallInProgress& call)
{
    using namespace calls_in_progress;
    if (count < kRoom) [[likely]]
        calls[count] = call;
    ++count;
}

// Takes out the innermost call, whose frame still exists and cleans up after itself.
inline void LeaveCallInProgress(std::size_t countBefore) { calls_in_progress::count = countBefore; }

// Ends all calls but the outermost `count`, innermost first: closes their func elements and gives back what they hold. Usually
// there are no other calls, and it does nothing.
void EndCallsBeyond(std::size_t count) noexcept;

}  // namespace zelt
