// One call of a method that is known only from its type information: makes the arguments of a row of the method table,
// calls through the vtable or through IDispatch, and keeps the results.
#pragma once

#include <windows.h>
#include <oaidl.h>
#include <comutil.h>
#include <wrl/client.h>

#include <deque>
#include <string>

#include "interface_shape.h"
#include "sample_values.h"

namespace zelt::test {

// What an argument points to, or room for a result.
union Storage {
    VARIANT variant;
    BSTR string;
    double number;
    long integer;
    short small;
    IDispatch* object;
};

class MethodCall {
public:
    // Passes `object` for each interface pointer that goes in, or null with Filling::Nulls. Throws std::runtime_error if row
    // and method disagree.
    MethodCall(const MethodShape& method, const TableRow& row, Filling filling, IDispatch* object);
    ~MethodCall();
    MethodCall(const MethodCall&) = delete;
    MethodCall& operator=(const MethodCall&) = delete;

    // From now on, calls pass a null pointer for each input that is passed by reference.
    void PassNullSlots();

    HRESULT CallEarly(IUnknown* pointer);
    // Through the interface's own IDispatch.
    HRESULT CallLate(IDispatch* pointer);

    std::size_t Count() const { return arguments.size(); }
    // The value that a reference now points to, or the value passed.
    _variant_t Value(std::size_t index) const;
    // The bytes of the argument as it is passed.
    std::string Bytes(std::size_t index) const;
    // The object in the caller's slot, for an argument that goes in as a pointer to an interface pointer.
    IDispatch* SlotContent(std::size_t index) const { return arguments[index].storage.object; }

private:
    struct Argument {
        const ParameterShape* shape;
        _variant_t value;  // of an argument that goes in
        Storage storage;   // what an argument passed by reference points to
        bool isNullReference = false;
    };
    void* Reference(std::size_t index) const;
    bool OwnsStorage(const Argument& argument) const { return argument.shape->isReference && argument.shape->isOut; }

    const MethodShape& method;
    std::deque<Argument> arguments;  // must not move, because calls hold their addresses
};

}  // namespace zelt::test
