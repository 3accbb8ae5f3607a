// An object that implements every dual interface of the type libraries in this module's resources, except
// IOriginalObject. Its vtables are made from the type information, and the interfaces' own methods all lead to the same
// handler. The exact bytes of each argument are recorded before the handler runs. IUnknown and IDispatch are real, and
// references are counted. The handler must not throw exceptions or cause faults; it sets `lastAct` instead.
#pragma once

#include <windows.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "interface_shape.h"

namespace zelt::test {

using Microsoft::WRL::ComPtr;

// A running call: where each argument's value is. A VARIANT passed by value appears as a VARIANT, however the machine
// passes it.
struct IncomingCall {
    const InterfaceShape& shape;
    const MethodShape& method;
    std::vector<void*> arguments;
};

// The record of a call: each argument's own bytes.
struct RecordedCall {
    const InterfaceShape* shape;
    const MethodShape* method;
    std::vector<std::string> arguments;
};

// What an object does after its handler, instead of returning: a fault or an exception.
struct LastAct {
    HRESULT (*act)(const void* what) = nullptr;
    const void* what = nullptr;
};

class DynamicFake final : public IUnknown {
public:
    using Handler = std::function<HRESULT(const IncomingCall&)>;

    static ComPtr<DynamicFake> Make(std::wstring name);

    STDMETHOD(QueryInterface)(REFIID iid, void** result) override;
    STDMETHOD_(ULONG, AddRef)() override;
    STDMETHOD_(ULONG, Release)() override;

    // Fills the outputs and returns the result. Without a handler, a call for the component's name returns it, and any
    // other call succeeds without writing its outputs.
    Handler handler;
    // Set by the handler for the current call, and done only once.
    LastAct lastAct;
    std::wstring name;
    std::vector<RecordedCall> calls;
    std::vector<IID> refused;

    void Refuse(const IID& iid) { refused.push_back(iid); }
    ULONG References() const { return references; }
    // An interface, with a reference that the pointer owns.
    ComPtr<IDispatch> Face(const IID& iid);

    static inline long alive = 0;

    DynamicFake(const DynamicFake&) = delete;
    DynamicFake& operator=(const DynamicFake&) = delete;

private:
    struct Interface;
    struct Entrance;

    explicit DynamicFake(std::wstring name) : name(std::move(name)) { ++alive; }
    ~DynamicFake() { --alive; }
    HRESULT Take(const InterfaceShape& shape, const MethodShape& method, std::byte* arguments);
    HRESULT AnswerName(const IncomingCall& call) const;

    ULONG references = 0;
    std::vector<std::shared_ptr<Interface>> interfaces;
};

}  // namespace zelt::test
