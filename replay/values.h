// Moves values between a recording and the memory that an argument points to.
#pragma once

#include <deque>
#include <stdexcept>
#include <string>
#include <vector>

#include "com/dual_interface.h"
#include "recording/record.h"
#include "replay/objects.h"

namespace zelt::replay {

// Something cannot be played; the text is the reason.
struct Unplayable : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The recorded argument of each parameter of a method; null where there is none. Recordings may name an argument differently
// from the type information, and show a few inputs as outputs, so arguments are matched by their direction and order.
std::vector<const recording::ArgumentRecord*> MatchArguments(const com::DualMethod& method,
                                                             const std::vector<recording::ArgumentRecord>& recorded);

// The value at `place`, in the form of a recording; texts are kept in `texts`. What cannot be read gives no value.
recording::Value Capture(const com::DualParameter& parameter, const void* place, std::deque<std::string>& texts);

// Puts a copy of a recorded value at `place`. The owner of the place then owns the value, and may change and clear it. Throws
// Unplayable for a value of another type, or one that cannot be made again.
void Give(const com::DualParameter& parameter, const recording::Value& value, Objects& objects, void* place);

// Frees the value that Give or a callee has put at `place`.
void Free(const com::DualParameter& parameter, void* place) noexcept;

// Makes the objects at `place` (an interface pointer, or those in a VARIANT) known by the recorded pointers that they stand
// for.
void LearnObjects(const com::DualParameter& parameter, const recording::Value& recorded, const void* place,
                  Objects& objects);

}  // namespace zelt::replay
