// Managers that fail in ways that a caller must survive. Each makes a FaultyPackage of every Character; for three other names,
// it fails, returns null or faults. With kInitialize, Initialize fails; with kList, the list has numbers instead of the names.
#pragma once

#include "com/object.h"
#include "samples/component/component.h"

namespace zelt::sample {

enum class ManagerFault { kNone, kInitialize, kList };

class FaultyManagerPart final : public CapePart<ICapeThermoPropertyPackageManager> {
public:
    FaultyManagerPart(com::Object& object, CapeErrors& errors, ManagerFault fault)
        : CapePart(object, errors, L"ICapeThermoPropertyPackageManager"), fault(fault)
    {}
    STDMETHOD(GetPropertyPackageList)(VARIANT* packageNames) override;
    STDMETHOD(GetPropertyPackage)(BSTR packageName, IDispatch** package) override;

private:
    ManagerFault fault;
};

class FaultyManager : public com::Object {
public:
    explicit FaultyManager(ManagerFault fault = ManagerFault::kNone);

protected:
    IDispatch* ScriptInterface() override { return &manager; }

private:
    CapeErrors errors{*this, L"ZeltSample.FaultyManager"};
    FaultyManagerPart manager;
    UtilitiesPart utilities;
    IdentificationPart identification{*this, errors, L"Faulty property package manager", L"Fails on request"};
};

}  // namespace zelt::sample
