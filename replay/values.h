// Values between a recording and the memory that an argument leads to.
#pragma once

#include <deque>
#include <stdexcept>
#include <string>
#include <vector>

#include "com/dual_interface.h"
#include "recording/record.h"
#include "replay/objects.h"

namespace zelt::replay {

// What cannot be played, with the reason.
struct Unplayable : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The recorded argument of each parameter of a method; null where there is none. Rows may name an argument differently from the type
// information, and a few log what goes in as what comes out: arguments count by their direction and order.
std::vector<const recording::ArgumentRecord*> MatchArguments(const com::DualMethod& method,
                                                             const std::vector<recording::ArgumentRecord>& recorded);

// The value at `place`, in the form of a recording; texts are kept in `texts`. What cannot be read is no value.
recording::Value Capture(const com::DualParameter& parameter, const void* place, std::deque<std::string>& texts);

// Puts a recorded value where it may be changed and cleared: what `place` then holds belongs to whoever has the place. Throws
// Unplayable for a value of another type.
void Give(const com::DualParameter& parameter, const recording::Value& value, Objects& objects, void* place);

// Frees what Give has put there, or what a callee has.
void Free(const com::DualParameter& parameter, void* place) noexcept;

// An interface pointer at `place` that stands where a recorded one was, if it is one, is made known.
void LearnObjects(const com::DualParameter& parameter, const recording::Value& recorded, const void* place,
                  Objects& objects);

}  // namespace zelt::replay
