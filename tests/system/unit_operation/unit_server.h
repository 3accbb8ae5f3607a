// A unit operation with one port, served by the client process itself. PRAVIK finds it through COM like any other unit,
// whichever width the client has.
#pragma once

#include <ocidl.h>
#include <wrl/client.h>

#include <cape-open.h>

#include <string>

#include "com/dispatch.h"

namespace zelt::test {

// {4C3F7A52-6E0D-4B1B-9A55-8C21E0B7D301}
inline constexpr CLSID kServedUnit = {0x4C3F7A52, 0x6E0D, 0x4B1B, {0x9A, 0x55, 0x8C, 0x21, 0xE0, 0xB7, 0xD3, 0x01}};

// What this process's units calculate, save and load, and what is connected to them.
struct UnitState {
    std::string state;
    Microsoft::WRL::ComPtr<IDispatch> connected;
};
inline UnitState unitState;

struct UnitPart final : com::DualPart<ICapeUnit> {
    using DualPart::DualPart;
    STDMETHOD(get_ports)(IDispatch** ports) override;
    STDMETHOD(get_ValStatus)(eCapeValidationStatus* status) override
    {
        *status = CAPE_VALID;
        return S_OK;
    }
    // Gets the connected collection's size and keeps it.
    STDMETHOD(Calculate)() override;
    STDMETHOD(Validate)(BSTR*, VARIANT_BOOL* isValid) override
    {
        *isValid = VARIANT_TRUE;
        return S_OK;
    }
};

struct UtilitiesPart final : com::DualPart<ICapeUtilities> {
    using DualPart::DualPart;
    STDMETHOD(get_parameters)(IDispatch** parameters) override
    {
        *parameters = nullptr;
        return S_OK;
    }
    STDMETHOD(put_simulationContext)(IDispatch*) override { return S_OK; }
    STDMETHOD(Initialize)() override { return S_OK; }
    STDMETHOD(Terminate)() override { return S_OK; }
    STDMETHOD(Edit)() override { return E_NOTIMPL; }
};

struct PersistencePart final : com::Part<IPersistStreamInit> {
    using Part::Part;
    STDMETHOD(GetClassID)(CLSID* clsid) override
    {
        *clsid = kServedUnit;
        return S_OK;
    }
    STDMETHOD(IsDirty)() override { return S_FALSE; }
    STDMETHOD(Load)(IStream* stream) override;
    STDMETHOD(Save)(IStream* stream, BOOL clearDirty) override;
    STDMETHOD(GetSizeMax)(ULARGE_INTEGER* size) override
    {
        size->QuadPart = unitState.state.size();
        return S_OK;
    }
    STDMETHOD(InitNew)() override { return S_OK; }
};

class ServedUnit : public com::Object {
protected:
    IDispatch* ScriptInterface() override { return &unit; }

private:
    UnitPart unit{*this};
    UtilitiesPart utilities{*this};
    PersistencePart persistence{*this};
};

// An energy port, which the unit's collection makes.
class ServedPort final : public com::Object {
protected:
    IDispatch* ScriptInterface() override { return &port; }

private:
    struct PortPart final : com::DualPart<ICapeUnitPort> {
        using DualPart::DualPart;
        STDMETHOD(get_portType)(eCapePortType* type) override
        {
            *type = CAPE_ENERGY;
            return S_OK;
        }
        STDMETHOD(get_direction)(eCapePortDirection* direction) override
        {
            *direction = CAPE_INLET;
            return S_OK;
        }
        STDMETHOD(get_connectedObject)(IDispatch** object) override { return unitState.connected.CopyTo(object); }
        STDMETHOD(Connect)(IDispatch* object) override
        {
            unitState.connected = object;
            return S_OK;
        }
        STDMETHOD(Disconnect)() override
        {
            unitState.connected.Reset();
            return S_OK;
        }
    } port{*this};
};

// A collection with one port that it makes itself, or with only a size.
class Collection final : public com::Object {
public:
    explicit Collection(bool holdsPort, long size) : holdsPort(holdsPort), size(size) {}

protected:
    IDispatch* ScriptInterface() override { return &collection; }

private:
    struct CollectionPart final : com::DualPart<ICapeCollection> {
        explicit CollectionPart(Collection& owner) : DualPart(owner), owner(owner) {}
        STDMETHOD(Item)(VARIANT, IDispatch** item) override
        {
            *item = nullptr;
            return owner.holdsPort ? com::Create<ServedPort>(IID_IDispatch, reinterpret_cast<void**>(item)) : E_FAIL;
        }
        STDMETHOD(Count)(long* count) override
        {
            *count = owner.size;
            return S_OK;
        }
        Collection& owner;
    } collection{*this};
    bool holdsPort;
    long size;
};

}  // namespace zelt::test
