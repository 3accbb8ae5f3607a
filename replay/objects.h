// The interface pointers of a recording, and the objects that take their place.
#pragma once

#include <windows.h>
#include <unknwn.h>

#include <cstdint>

#include "guard/foreign_call.h"

namespace zelt::replay {

// Finds the objects that take the place of recorded pointers, which one side passes to the other.
class Objects {
public:
    // Returns interface `iid` of the stand-in for an object of the side that is played. `address`, not null, is the recorded
    // interface pointer of the object. The stand-in offers the interface from now on; if it cannot, its IDispatch is returned.
    // If the pointer stands for an object of the other side, that object itself may be returned. The caller owns the reference.
    virtual ForeignPtr<IUnknown> StandIn(std::uint64_t address, REFIID iid) = 0;
    // Takes note that an object of the other side has come in the place of a recorded pointer.
    virtual void Learn(std::uint64_t address, IUnknown* object) = 0;

protected:
    ~Objects() = default;
};

}  // namespace zelt::replay
