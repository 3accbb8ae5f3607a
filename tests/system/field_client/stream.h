// A stream of the simulator: a material of both generations, an equilibrium server, and a set of petroleum fractions, in one
// object. It copies only from other streams of this class.
#pragma once

#include "samples/field/petro_fractions.h"
#include "samples/material/material.h"

namespace zelt::test {

// Recognises the stream to copy by its COM identity.
class OwnMaterialPart final : public sample::MaterialPart {
public:
    OwnMaterialPart(com::Object& object, sample::CapeErrors& errors, sample::MaterialStore& store,
                    const std::shared_ptr<sample::PackageLink>& link)
        : MaterialPart(object, errors, store, link), store(store)
    {}
    STDMETHOD(CopyFromMaterial)(IDispatch** source) override;

private:
    sample::MaterialStore& store;
};

// Calculates the stream that it belongs to.
class OwnServerPart final : public sample::CapePart<ICapeThermoEquilibriumServer> {
public:
    OwnServerPart(com::Object& object, sample::CapeErrors& errors, sample::MaterialObjectPart& material)
        : CapePart(object, errors, L"ICapeThermoEquilibriumServer"), material(material)
    {}
    STDMETHOD(CalcEquilibrium)(IDispatch* materialObject, BSTR flashType, VARIANT props) override;
    STDMETHOD(PropCheck)(IDispatch* materialObject, BSTR flashType, VARIANT props, VARIANT* valid) override;
    STDMETHOD(ValidityCheck)(IDispatch* materialObject, VARIANT props, VARIANT* relList) override;
    STDMETHOD(PropList)(VARIANT* flashType, VARIANT* props, VARIANT* phases, VARIANT* calcType) override;

private:
    sample::MaterialObjectPart& material;
};

class Stream final : public com::Object {
public:
    Stream(const std::shared_ptr<const sample::Slate>& slate, const std::shared_ptr<sample::PackageLink>& link,
           std::wstring name)
        : store(slate, {}),
          compounds(*this, errors, slate),
          phases(*this, errors, slate),
          material(*this, errors, store, link),
          materialObject(*this, errors, store, link),
          identification(*this, errors, std::move(name), L"Stream of the field client")
    {
        streams.push_back(this);
    }
    ~Stream() override;

    // All existing streams.
    static inline std::vector<Stream*> streams;
    const sample::MaterialState& State() const { return store.state; }

protected:
    IDispatch* ScriptInterface() override { return &material; }

private:
    sample::MaterialStore store;
    sample::CapeErrors errors{*this, L"FieldClient.Stream"};
    sample::MaterialCompoundsPart compounds;
    sample::MaterialPhasesPart phases;
    OwnMaterialPart material;
    sample::MaterialObjectPart materialObject;
    OwnServerPart server{*this, errors, materialObject};
    sample::PetroFractionsPart petroFractions{*this, errors};
    sample::IdentificationPart identification;
};

}  // namespace zelt::test
