// The inputs of a call that a stand-in receives, compared with those of a recorded call.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "recording/call_tree.h"
#include "replay/values.h"

namespace zelt::replay {

// What a caller passed: `words` are the arguments as they lie on the stack.
class Inputs {
public:
    Inputs(const com::DualMethod& method, const void* words);

    // The first difference from the inputs of a recorded call of the method; nothing when there is none.
    std::optional<std::string> DifferenceFrom(const recording::KeptCall& recorded, double tolerance) const;
    // From now on, the objects that the caller passed take the place of those in the recorded call.
    void LearnObjectsOf(const recording::KeptCall& recorded, Objects& objects) const;

private:
    const com::DualMethod& method;
    const void* const words;
    std::deque<std::string> texts;
    std::vector<recording::Value> values;  // one for each parameter
};

// Puts the outputs of a recorded call where the caller wants them. E_POINTER when the caller gave no place.
HRESULT GiveOutputs(const com::DualMethod& method, const recording::KeptCall& recorded, void* words, Objects& objects);

}  // namespace zelt::replay
