// ICapeThermoPetroFractions of a package or of a stream: stores one list of values for each property, and returns it as it
// was set. Compounds and bases are ignored.
#pragma once

#include <map>
#include <string>

#include "samples/component/cape_errors.h"

namespace zelt::sample {

class PetroFractionsPart final : public CapePart<ICapeThermoPetroFractions> {
public:
    PetroFractionsPart(com::Object& object, CapeErrors& errors) : CapePart(object, errors, L"ICapeThermoPetroFractions")
    {}

    STDMETHOD(SetPetroProp)(BSTR propertyID, VARIANT compID, BSTR basis, VARIANT values) override;
    STDMETHOD(GetPetroProp)(BSTR propertyID, VARIANT compID, BSTR basis, VARIANT* values) override;
    // Fails with "bad order of calls" while there is no boiling point.
    STDMETHOD(Characterize)() override;
    STDMETHOD(RemovePetroProp)(BSTR propertyID, VARIANT compID) override;
    // Copies the boiling points of another object.
    STDMETHOD(DefineFromPetroFractions)(IDispatch* originFractionsSet) override;

private:
    std::map<std::wstring, std::vector<double>> properties;  // by their names in lower case
};

}  // namespace zelt::sample
