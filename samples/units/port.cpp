#include "samples/units/port.h"

#include "com/object.h"
#include "samples/component/component.h"
#include "samples/component/text.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

bool Fits(eCapePortType type, IDispatch* object)
{
    ComPtr<IUnknown> granted;
    const IID& needed = type == CAPE_MATERIAL ? __uuidof(ICapeThermoMaterial) : __uuidof(ICapeCollection);
    return SUCCEEDED(object->QueryInterface(needed, reinterpret_cast<void**>(granted.GetAddressOf())));
}

class PortPart final : public CapePart<ICapeUnitPort> {
public:
    PortPart(com::Object& object, CapeErrors& errors, std::shared_ptr<PortState> state)
        : CapePart(object, errors, L"ICapeUnitPort"), state(std::move(state))
    {}

    STDMETHOD(get_portType)(eCapePortType* portType) override
    {
        if (!portType) return E_POINTER;
        *portType = state->definition.type;
        return S_OK;
    }
    STDMETHOD(get_direction)(eCapePortDirection* portDirection) override
    {
        if (!portDirection) return E_POINTER;
        *portDirection = state->definition.direction;
        return S_OK;
    }
    // Returns null when nothing is connected.
    STDMETHOD(get_connectedObject)(IDispatch** connectedObject) override
    {
        if (!connectedObject) return E_POINTER;
        return state->connected.CopyTo(connectedObject);
    }
    STDMETHOD(Connect)(IDispatch* objectToConnect) override
    {
        return Call(L"Connect", [&] {
            const PortDefinition& port = state->definition;
            if (!objectToConnect || !Fits(port.type, objectToConnect)) {
                throw CapeFailure(ECapeInvalidArgumentHR,
                                  L"Port " + Quoted(port.name) + L" takes " +
                                      (port.type == CAPE_MATERIAL ? L"a material object with ICapeThermoMaterial"
                                                                  : L"a collection of parameters"));
            }
            state->connected = objectToConnect;
        });
    }
    STDMETHOD(Disconnect)() override
    {
        state->connected.Reset();
        return S_OK;
    }

private:
    std::shared_ptr<PortState> state;
};

class Port final : public com::Object {
public:
    explicit Port(const std::shared_ptr<PortState>& state)
        : port(*this, errors, state),
          identification(*this, errors, state->definition.name, state->definition.description)
    {}

protected:
    IDispatch* ScriptInterface() override { return &port; }

private:
    CapeErrors errors{*this, L"ZeltSample.Port"};
    PortPart port;
    IdentificationPart identification;
};

}  // namespace

ComPtr<IDispatch> CreatePort(std::shared_ptr<PortState> state)
{
    ComPtr<IDispatch> port;
    com::Check(com::Create<Port>(IID_PPV_ARGS(&port), state));
    return port;
}

}  // namespace zelt::sample
