#include "samples/component/context_view.h"

#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace zelt::sample {

using Microsoft::WRL::ComPtr;

template <class I>
ComPtr<I> ContextView::Query() const
{
    ComPtr<I> result;
    if (!context || FAILED(context.As(&result))) result.Reset();
    return result;
}

void ContextView::Log(const std::wstring& message) const
{
    if (const auto diagnostic = Query<ICapeDiagnostic>()) diagnostic->LogMessage(MakeBstr(message).GetBSTR());
}

std::optional<std::wstring> ContextView::NamedText(const wchar_t* name) const
{
    const auto utilities = Query<ICapeCOSEUtilities>();
    _variant_t names, value, text;
    if (!utilities || FAILED(utilities->get_NamedValueList(&names))) return {};
    bool listed = false;
    for (const std::wstring& candidate : ReadStrings(names, L"NamedValues")) listed |= SameName(candidate, name);
    if (!listed || FAILED(utilities->get_NamedValue(MakeBstr(name).GetBSTR(), &value)) ||
        FAILED(VariantChangeTypeEx(&text, &value, LOCALE_INVARIANT, 0, VT_BSTR))) {
        return {};
    }
    return std::wstring(TextOf(V_BSTR(&text)));
}

std::vector<std::wstring> ContextView::Templates() const
{
    const auto system = Query<ICapeMaterialTemplateSystem>();
    _variant_t names;
    if (!system || FAILED(system->get_MaterialTemplates(&names))) return {};
    return ReadStrings(names, L"TemplateNames");
}

ComPtr<IDispatch> ContextView::MaterialFrom(const std::wstring& templateName, const wchar_t* property,
                                            std::span<const double> values) const
{
    const auto system = Query<ICapeMaterialTemplateSystem>();
    ComPtr<IDispatch> object, material;
    ComPtr<ICapeThermoMaterialTemplate> source;
    if (!system || FAILED(system->CreateMaterialTemplate(MakeBstr(templateName).GetBSTR(), &object)) || !object ||
        FAILED(object.As(&source))) {
        return nullptr;
    }
    source->SetProp(MakeBstr(property).GetBSTR(), MakeDoubles(values));
    if (FAILED(source->CreateMaterialObject(&material))) material.Reset();
    return material;
}

}  // namespace zelt::sample
