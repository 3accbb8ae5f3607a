// The simulator's reaction object: stores what a reaction package calculates, one value for each property, phase, basis
// and reaction, and returns it bit for bit.
#pragma once

#include <map>
#include <string>
#include <tuple>

#include "com/object.h"
#include "samples/component/component.h"

namespace zelt::sample {

class ReactionPropertiesPart final : public CapePart<ICapeReactionProperties> {
public:
    ReactionPropertiesPart(com::Object& object, CapeErrors& errors)
        : CapePart(object, errors, L"ICapeReactionProperties")
    {}
    STDMETHOD(GetReactionProp)(BSTR property, BSTR phase, VARIANT reacIds, BSTR basis, VARIANT* propVals) override;
    STDMETHOD(SetReactionProp)(BSTR property, BSTR phase, VARIANT reacIds, BSTR basis, VARIANT propVals) override;

private:
    // Property, phase, basis and reaction, in lower case.
    using Key = std::tuple<std::wstring, std::wstring, std::wstring, std::wstring>;
    std::map<Key, double> values;
};

class ReactionObject final : public com::Object {
protected:
    IDispatch* ScriptInterface() override { return &properties; }

private:
    CapeErrors errors{*this, L"SampleSimulator.ReactionObject"};
    ReactionPropertiesPart properties{*this, errors};
    IdentificationPart identification{*this, errors, L"Reactor", L"Reaction object of the sample simulator"};
};

}  // namespace zelt::sample
