// The pause of log follow, which tests replace.
#pragma once

namespace zelt::ctl {

// What log follow does when it has shown everything that the log has so far: it waits a moment. A test can set another
// function; null restores the wait. SetFollowPause returns the previous function.
using FollowPause = void (*)();
FollowPause SetFollowPause(FollowPause pause);

}  // namespace zelt::ctl
