#include "guard/calls_in_progress.h"

#include <utility>

namespace zelt {
namespace {

EndCallFunction endCall = nullptr;

}  // namespace

EndCallFunction SetEndCall(EndCallFunction function) { return std::exchange(endCall, function); }

namespace calls_in_progress {

CallInProgress calls[kRoom];
std::size_t count = 0;

}  // namespace calls_in_progress

void EndCallsBeyond(std::size_t remaining) noexcept
{
    using namespace calls_in_progress;
    while (count > remaining) {
        --count;
        if (count >= kRoom) continue;
        // A copy: ending a call may make other calls, which take its place.
        const CallInProgress call = calls[count];
        endCall(call);
    }
}

}  // namespace zelt
