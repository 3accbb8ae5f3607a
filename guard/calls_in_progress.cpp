#include "guard/calls_in_progress.h"

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

namespace zelt {
namespace {

EndCallFunction endCall = nullptr;

}  // namespace

EndCallFunction SetEndCall(EndCallFunction function) { return std::exchange(endCall, function); }

namespace calls_in_progress {

CallInProgress* calls = nullptr;
std::size_t room = 0;
std::size_t count = 0;

// The memory lives as long as the process: calls may be in progress until its end.
void MakeRoom() noexcept
{
    const std::size_t larger = room ? 2 * room : 64;
    CallInProgress* moved = new (std::nothrow) CallInProgress[larger];
    if (!moved) return;
    std::copy(calls, calls + room, moved);
    delete[] std::exchange(calls, moved);
    room = larger;
}

}  // namespace calls_in_progress

void EndCallsBeyond(std::size_t remaining) noexcept
{
    using namespace calls_in_progress;
    while (count > remaining) {
        --count;
        if (count >= room) continue;
        // A copy: ending a call may make other calls, which may move the array.
        const CallInProgress call = calls[count];
        endCall(call);
    }
}

}  // namespace zelt
