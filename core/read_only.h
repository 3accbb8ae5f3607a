// The read-only rule: a method that changes its object is an error on a read-only proxy, such as a unit's inlet material. The
// error is logged, and the call is still forwarded.
#pragma once

#include "core/descriptor_steps.h"

namespace zelt {

// Marks a method that changes its object.
struct ChangesObject : Mark, NoSteps {
    void Describe(LoggedCall& call) const;
};

}  // namespace zelt
