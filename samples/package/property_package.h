// A CAPE-OPEN 1.1 property package: the interfaces of the standard around one PackageModel. Holds the active
// material until UnsetMaterial, Terminate or its destruction.
#pragma once

#include "com/object.h"
#include "samples/component/component.h"
#include "samples/component/persistence.h"
#include "samples/package/classes.h"
#include "samples/package/compounds_part.h"
#include "samples/package/equilibrium_part.h"
#include "samples/package/phases_part.h"
#include "samples/package/property_part.h"

namespace zelt::sample {

class MaterialContextPart final : public CapePart<ICapeThermoMaterialContext> {
public:
    MaterialContextPart(com::Object& object, CapeErrors& errors, PackageModel& model)
        : CapePart(object, errors, L"ICapeThermoMaterialContext"), model(model)
    {}
    STDMETHOD(SetMaterial)(IDispatch* material) override
    {
        return Call(L"SetMaterial", [&] {
            model.SetMaterial(material);
            model.CheckTemplate(Generation::kCapeOpen11);
        });
    }
    STDMETHOD(UnsetMaterial)() override
    {
        return Call(L"UnsetMaterial", [&] { model.UnsetMaterial(); });
    }

private:
    PackageModel& model;
};

class PropertyPackage final : public com::Object {
public:
    explicit PropertyPackage(const PackageDefinition& definition = AllPackages().front()) : model(definition) {}

protected:
    IDispatch* ScriptInterface() override { return &compounds; }

private:
    PackageModel model;
    CapeErrors errors{*this, L"ZeltSample.PropertyPackage"};
    CompoundsPart compounds{*this, errors, model};
    PhasesPart phases{*this, errors};
    PropertyPart properties{*this, errors, model};
    EquilibriumPart equilibrium{*this, errors, model};
    UniversalConstantPart universalConstants{*this, errors};
    MaterialContextPart materialContext{*this, errors, model};
    UtilitiesPart utilities{*this, errors, {}, [this] { model.UnsetMaterial(); }, &model.Host()};
    PersistStreamInitPart persistence{*this, errors, model.Host().Parameters(), kPropertyPackageClass};
    IdentificationPart identification{*this, errors, model.Definition().name, model.Definition().description};
};

}  // namespace zelt::sample
