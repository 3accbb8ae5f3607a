// What following a log needs from outside.
#pragma once

namespace zelt::ctl {

// What follow does when it has shown all that the log has so far: it waits a moment. A test puts something else in its place; null
// restores the wait. Returns what was there before.
using FollowPause = void (*)();
FollowPause SetFollowPause(FollowPause pause);

}  // namespace zelt::ctl
