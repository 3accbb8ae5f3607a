#include "samples/reactions/context_parts.h"

namespace zelt::sample {

STDMETHODIMP ReactionMaterialContextPart::SetMaterial(IDispatch* material)
{
    return Call(L"SetMaterial", [&] { model.SetMaterial(material, Generation::kCapeOpen11); });
}

STDMETHODIMP ReactionMaterialContextPart::UnsetMaterial()
{
    return Call(L"UnsetMaterial", [&] { model.UnsetMaterial(); });
}

STDMETHODIMP ThermoContextPart::SetMaterial(IDispatch* materialObject)
{
    return Call(L"SetMaterial", [&] { model.SetMaterial(materialObject, Generation::kCapeOpen10); });
}

// The standard passes the reaction object by a pointer to the caller's variable, which is only read.
STDMETHODIMP KineticContextPart::SetReactionObject(IDispatch** reactionsObject)
{
    return Call(L"SetReactionObject", [&] { model.SetReactionObject(reactionsObject ? *reactionsObject : nullptr); });
}

STDMETHODIMP ElectrolyteContextPart::SetReactionObject(IDispatch** reactionsObject)
{
    return Call(L"SetReactionObject", [&] { model.SetReactionObject(reactionsObject ? *reactionsObject : nullptr); });
}

}  // namespace zelt::sample
