// The methods of an interface as its type information describes them: slots, and parameters with what a caller and a
// callee need to know about their binary form. Read from the type libraries in this module's resources; kept forever.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <string>
#include <vector>

namespace zelt::test {

struct ParameterShape {
    std::string name;
    VARTYPE type = VT_EMPTY;   // of the value; an enumeration is VT_I4, an interface pointer VT_DISPATCH
    bool isReference = false;  // a pointer to the value is passed
    bool isIn = false;         // as flagged; a parameter without flags is an input
    bool isOut = false;
    bool isResult = false;  // what a late-bound call returns
    // Of an enumeration: its name, and the name of its value 1; empty where it has none.
    std::string enumeration, secondName;

    // The size in bytes of the argument itself: of the value, or of the pointer to it.
    std::size_t Size() const;
};

struct MethodShape {
    std::string name;  // as in C++: with "get_" or "put_" for a property
    unsigned slot = 0;
    DISPID id = 0;
    INVOKEKIND kind = INVOKE_FUNC;
    std::vector<ParameterShape> parameters;
};

struct InterfaceShape {
    std::string name;
    IID iid{};
    std::vector<MethodShape> methods;  // the interface's own, in the order of their slots, after those of IDispatch
};

inline constexpr unsigned kFirstOwnSlot = 7;

// Null if no library describes the interface. Throws com::Failure if its methods do not directly follow those of IDispatch,
// or if one has an argument that a shape cannot describe.
const InterfaceShape* ShapeOf(REFIID iid);

// The same by name.
const InterfaceShape* ShapeNamed(const std::string& name);

}  // namespace zelt::test
