#include "samples/material/simulation_context.h"

#include "samples/component/text.h"
#include "samples/component/variant.h"
#include "samples/material/material.h"

namespace zelt::sample {
namespace {

// The values that a component may ask for by name. The standard requires a FORTRAN channel; nothing uses it.
const struct {
    const wchar_t* name;
    _variant_t value;
} kNamedValues[] = {
    {L"SimulatorName", _variant_t(L"SampleSimulator")},
    {L"SimulatorVersion", _variant_t(L"1.0")},
    {L"FreeFORTRANchannel", _variant_t(10L)},
};

}  // namespace

STDMETHODIMP DiagnosticPart::PopUpMessage(BSTR message)
{
    return Call(L"PopUpMessage", [&] {
        if (flowsheet->onMessage) flowsheet->onMessage(L"Pop-up", std::wstring(TextOf(message)));
    });
}

STDMETHODIMP DiagnosticPart::LogMessage(BSTR message)
{
    return Call(L"LogMessage", [&] {
        if (flowsheet->onMessage) flowsheet->onMessage(L"Message", std::wstring(TextOf(message)));
    });
}

STDMETHODIMP TemplateSystemPart::get_MaterialTemplates(VARIANT* templateNames)
{
    return Call(L"get_MaterialTemplates", [&] {
        std::vector<std::wstring> names;
        if (flowsheet->slate) names.emplace_back(kTemplateName);
        Return(templateNames, MakeStrings(names));
    });
}

STDMETHODIMP TemplateSystemPart::CreateMaterialTemplate(BSTR materialTemplateName, IDispatch** materialTemplate)
{
    if (!materialTemplate) return E_POINTER;
    *materialTemplate = nullptr;
    return Call(L"CreateMaterialTemplate", [&] {
        if (!flowsheet->slate || !SameName(TextOf(materialTemplateName), kTemplateName)) {
            throw CapeFailure(ECapeInvalidArgumentHR,
                              L"There is no material template " + Quoted(TextOf(materialTemplateName)));
        }
        com::Check(com::Create<MaterialTemplate>(IID_IDispatch, reinterpret_cast<void**>(materialTemplate), flowsheet));
    });
}

STDMETHODIMP NamedValuesPart::get_NamedValueList(VARIANT* namedValues)
{
    return Call(L"get_NamedValueList", [&] {
        std::vector<std::wstring> names;
        for (const auto& row : kNamedValues) names.emplace_back(row.name);
        Return(namedValues, MakeStrings(names));
    });
}

STDMETHODIMP NamedValuesPart::get_NamedValue(BSTR name, VARIANT* namedValue)
{
    return Call(L"get_NamedValue", [&] {
        for (const auto& row : kNamedValues) {
            if (!SameName(row.name, TextOf(name))) continue;
            Return(namedValue, row.value);
            return;
        }
        throw CapeFailure(ECapeInvalidArgumentHR, L"There is no named value " + Quoted(TextOf(name)));
    });
}

STDMETHODIMP MaterialTemplatePart::CreateMaterialObject(IDispatch** materialObject)
{
    if (!materialObject) return E_POINTER;
    *materialObject = nullptr;
    return Call(L"CreateMaterialObject", [&] {
        com::Check(com::Create<Material>(IID_IDispatch, reinterpret_cast<void**>(materialObject), flowsheet->slate,
                                         std::wstring(L"Material of a template"), ReadHook(), flowsheet->link, state));
    });
}

STDMETHODIMP MaterialTemplatePart::SetProp(BSTR property, VARIANT values)
{
    return Call(L"SetProp",
                [&] { MaterialStore(flowsheet->slate, {}).Store(state.overall, TextOf(property), L"mole", values); });
}

}  // namespace zelt::sample
