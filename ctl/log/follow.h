// The pause of log follow, which tests replace.
#pragma once

namespace zelt::ctl {

// log follow calls this function when it has shown the whole log; by default it waits a moment. A test can set another
// function; null restores the default. SetFollowPause returns the previous function.
using FollowPause = void (*)();
FollowPause SetFollowPause(FollowPause pause);

}  // namespace zelt::ctl
