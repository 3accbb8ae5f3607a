// A dual interface as its type information describes it. This is all that a call needs when there is no C++ declaration of the
// interface: the methods in the order of their slots, and each argument's place on the stack. The information comes from this
// module's libraries or, for other interfaces, from the library that the registry names.
// Nothing here is locked: only one thread of a process may use it.
#pragma once

#include <windows.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace com {

// The slots of IUnknown and IDispatch, which come before the interface's own.
inline constexpr unsigned kDispatchSlots = 7;

struct NamedValues {
    std::string name;  // of the enumeration
    std::vector<std::pair<long, std::string>> values;
};

struct DualParameter {
    std::string name;
    bool isIn = false;
    bool isOut = false;
    // Of the value: VT_I4 for an enumeration, VT_UNKNOWN for a pointer to a named interface or class, VT_RECORD for a structure
    // or union, VT_ARRAY with the elements' type for a safe array; otherwise as the library says.
    VARTYPE type = VT_EMPTY;
    int pointers = 0;      // from the argument to the value; an interface pointer is itself a value
    std::size_t size = 0;  // of the value, in bytes
    std::shared_ptr<const NamedValues> enumeration;
    IID iid{};              // of an interface pointer's interface; null where the library names a class
    std::size_t place = 0;  // among the words on the stack after the object's pointer

    // The address of the value, or of the pointer that leads to it, if the words begin at `words`.
    const void* Argument(const void* words) const;
    // Whether a floating-point register carries the argument on x86_64, if it is among the first three words.
    bool IsFloating() const { return pointers == 0 && (type == VT_R4 || type == VT_R8 || type == VT_DATE); }
};

struct DualMethod {
    std::string name;  // "ICapeUtilities::get_parameters"
    std::vector<DualParameter> parameters;
    std::size_t words = 0;  // on the stack after the object's pointer
};

struct DualInterface {
    IID iid{};
    Microsoft::WRL::ComPtr<ITypeInfo> info;  // the form for late binding
    std::vector<DualMethod> methods;         // the first has the slot kDispatchSlots
};

// Null for an interface that is not dual, that no library describes, or that has a method that cannot be called from its
// description alone, and when memory runs out.
std::shared_ptr<const DualInterface> DualInterfaceOf(REFIID iid);

// Forgets all interfaces that were described. Call it before COM is uninitialised.
void ReleaseDualInterfaces();

}  // namespace com
