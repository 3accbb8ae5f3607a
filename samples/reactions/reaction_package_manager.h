// The CAPE-OPEN 1.0 reaction package manager of the sample: lists the packages and makes them by name. Keeps no
// references to the packages that it made.
#pragma once

#include "com/object.h"
#include "samples/component/component.h"

namespace zelt::sample {

class ReactionPackageManagerPart final : public CapePart<ICapeReactionsPackageManager> {
public:
    ReactionPackageManagerPart(com::Object& object, CapeErrors& errors)
        : CapePart(object, errors, L"ICapeReactionsPackageManager")
    {}
    STDMETHOD(GetListOfReactionsPackages)(VARIANT* reactionIDS) override;
    STDMETHOD(ResolveReactionsPackage)(BSTR reactionsPkg, IDispatch** reaction) override;
};

class ReactionPackageManager final : public com::Object {
protected:
    IDispatch* ScriptInterface() override { return &manager; }

private:
    CapeErrors errors{*this, L"ZeltSample.ReactionsPackageManager"};
    ReactionPackageManagerPart manager{*this, errors};
    UtilitiesPart utilities{*this, errors, {}, {}};
    IdentificationPart identification{*this, errors, L"Sample reaction package manager",
                                      L"Kinetic and equilibrium reactions with published constants"};
};

}  // namespace zelt::sample
