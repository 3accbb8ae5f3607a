// The logged calls in progress in the proxies' apartment, kept apart from the stack. A fault far down, a stack overflow above
// all, may be caught by a call further out: the frames in between are gone without their destructors, and what those would
// have done is done from here.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zelt {

class CapeOpenBase;
class LogDocument;

// How many calls are in progress.
std::size_t CountCallsInProgress();

// Adds a call on `proxy`, which writes to `document` (may be null).
void EnterCallInProgress(CapeOpenBase& proxy, LogDocument* document);

// Takes out the innermost call, whose frame is still there to clean up after itself.
void LeaveCallInProgress(std::size_t countBefore);

// Ends the calls beyond the first `count`, innermost first: closes their func elements and gives back what they hold. Does
// nothing when there are none, as is usual.
void EndCallsBeyond(std::size_t count) noexcept;

}  // namespace zelt
