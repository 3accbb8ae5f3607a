// A face: an object's pointer for a dual interface that is described by type information alone, without a C++ declaration. All
// faces share one vtable, written in assembly (dual_thunks_*.S), with slots for 1,024 members after those of IDispatch. A slot
// hands its member's number, and the arguments as they lie on the stack, to the face's target. CallDual does the reverse: it
// calls a member by its number. No code is generated while the program runs.
#pragma once

#include <cstddef>

#include "com/dual_interface.h"
#include "com/object.h"

namespace com {

// Members that an interface may have in addition to those of IDispatch.
inline constexpr std::size_t kMostDualMembers = 1024;

// Implements the members that are called through a face.
class DualTarget {
public:
    virtual Object& Owner() = 0;
    virtual ITypeInfo* Info() = 0;
    // Carries out the method with that number; 0 is the first after those of IDispatch. `words` are the arguments after the
    // object's pointer. On x86_64, `registers` holds the three floating-point registers in which the first three arguments may
    // have arrived; on i686 it is null. `count` is 0 at first; Call sets it to the number of words.
    virtual HRESULT Call(std::size_t number, void* words, const double* registers, std::size_t& count) noexcept = 0;

protected:
    ~DualTarget() = default;
};

struct DualFace {
    const void* const* vtable;
    DualTarget* target;

    explicit DualFace(DualTarget& target);
    IUnknown* Pointer() { return reinterpret_cast<IUnknown*>(this); }
};

// Puts the floating-point arguments that arrived in registers in their places among the words.
void TakeRegisters(const DualMethod& method, void* words, const double* registers);

// Calls the method with that number through an interface pointer, with the arguments as they lie on the stack.
HRESULT CallDual(void* pointer, std::size_t number, const void* words, std::size_t count);

}  // namespace com
