#include "samples/faulty/faulty_package.h"

#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace zelt::sample {
namespace {

constexpr HRESULT kNoImpl = static_cast<HRESULT>(ECapeNoImplHR);

constexpr Character kCharacters[] = {
    {.name = L"Menu"},
    {.name = L"Empty Name", .reportedName = L""},
    {.name = L"Other Name", .reportedName = L"Quite another name"},
    {.name = L"Unrenamable", .rename = kNoImpl},
    {.name = L"No Identification", .identification = false},
    {.name = L"Compounds Only", .calculation = false},
    {.name = L"No Errors", .errors = false},
    {.name = L"Keeps Material", .keepsMaterial = true},
    {.name = L"Fault In Initialize", .initialize = L"nullWrite"},
    {.name = L"Fails In Initialize", .initialize = L"error:8004050F"},
    {.name = L"Fault In QueryInterface", .queryPhases = L"nullWrite"},
    {.name = L"Fault In Name", .getName = L"nullWrite"},
    {.name = L"Fault In Release", .finalRelease = L"nullWrite"},
    {.name = L"Edit Faults In Window Creation", .edit = L"windowCreation"},
    {.name = L"Edit Faults In Window Size", .edit = L"windowSize"},
    {.name = L"Edit Faults In Window Paint", .edit = L"windowPaint"},
    {.name = L"Edit Faults In Hook", .edit = L"hook"},
    {.name = L"Edit Faults In Enumeration", .edit = L"enumeration"},
};

constexpr const IID* kCalculation[] = {&__uuidof(ICapeThermoPropertyRoutine), &__uuidof(ICapeThermoEquilibriumRoutine),
                                       &__uuidof(ICapeThermoUniversalConstant), &__uuidof(ICapeThermoMaterialContext)};

// Every other interface counts as an error interface; IUnknown and IDispatch are never looked up here.
constexpr const IID* kNotErrors[] = {&__uuidof(ICapeThermoPropertyRoutine),
                                     &__uuidof(ICapeThermoEquilibriumRoutine),
                                     &__uuidof(ICapeThermoUniversalConstant),
                                     &__uuidof(ICapeThermoMaterialContext),
                                     &__uuidof(ICapeThermoCompounds),
                                     &__uuidof(ICapeThermoPhases),
                                     &__uuidof(ICapeUtilities),
                                     &__uuidof(ICapeIdentification)};

template <std::size_t N>
bool Contains(const IID* const (&list)[N], REFIID iid)
{
    for (const IID* entry : list) {
        if (IsEqualIID(*entry, iid)) return true;
    }
    return false;
}

std::wstring FirstOf(const VARIANT& names)
{
    const std::vector<std::wstring> list = ReadStrings(names, L"names");
    return list.empty() ? std::wstring() : list.front();
}

// Throws the error that the name requests, if it requests one, with or without a description.
void ThrowRequested(std::wstring_view name)
{
    bool silent = false;
    const HRESULT code = RequestedError(name, silent);
    if (FAILED(code))
        throw CapeFailure(code, silent ? L"" : L"The faulty package fails as asked: " + std::wstring(name));
}

}  // namespace

std::span<const Character> AllCharacters() { return kCharacters; }

// Commits the faults outside the code that turns exceptions into status codes, so that they reach the caller.
STDMETHODIMP FaultyCompoundsPart::GetCompoundConstant(VARIANT props, VARIANT compIds, VARIANT* propVals)
{
    const std::wstring id = FirstOf(compIds), property = FirstOf(props);
    CommitFault(id);
    CommitFault(property);
    const HRESULT asked = Call(L"GetCompoundConstant", [&] {
        ThrowRequested(id);
        ThrowRequested(property);
    });
    return FAILED(asked) ? asked : CompoundsPart::GetCompoundConstant(props, compIds, propVals);
}

STDMETHODIMP FaultyCompoundsPart::GetTDependentProperty(VARIANT props, double temperature, VARIANT compIds,
                                                        VARIANT* propVals)
{
    const std::wstring property = FirstOf(props);
    CommitFault(property);
    const HRESULT asked = Call(L"GetTDependentProperty", [&] { ThrowRequested(property); });
    return FAILED(asked) ? asked : CompoundsPart::GetTDependentProperty(props, temperature, compIds, propVals);
}

STDMETHODIMP FaultyPropertyPart::CalcSinglePhaseProp(VARIANT props, BSTR phaseLabel)
{
    constexpr std::wstring_view kCallback = L"callback:";
    std::wstring property = FirstOf(props);
    if (property.starts_with(kCallback)) {
        property.erase(0, kCallback.size());
        const HRESULT read = Call(L"CalcSinglePhaseProp", [&] { model.Material().PresentPhases(); });
        if (FAILED(read)) return read;
    }
    CommitFault(property);
    const HRESULT asked = Call(L"CalcSinglePhaseProp", [&] { ThrowRequested(property); });
    // After handledFault or sleep, the call succeeds without a result.
    if (FAILED(asked) || property == L"handledFault" || property.starts_with(L"sleep:")) return asked;
    return PropertyPart::CalcSinglePhaseProp(props, phaseLabel);
}

STDMETHODIMP FaultyIdentificationPart::get_ComponentName(BSTR* text)
{
    CommitFault(character.getName);
    if (!character.reportedName) return IdentificationPart::get_ComponentName(text);
    if (!text) return E_POINTER;
    *text = *character.reportedName ? SysAllocString(character.reportedName) : nullptr;
    return S_OK;
}

STDMETHODIMP FaultyIdentificationPart::put_ComponentName(BSTR text)
{
    if (FAILED(character.rename)) {
        return Call(L"put_ComponentName", [&] { throw CapeFailure(character.rename, L"The name cannot be changed"); });
    }
    return IdentificationPart::put_ComponentName(text);
}

STDMETHODIMP FaultyUtilitiesPart::Initialize()
{
    CommitFault(character.initialize);
    return Call(L"Initialize", [&] { ThrowRequested(character.initialize); });
}

STDMETHODIMP FaultyUtilitiesPart::Edit()
{
    if (!*character.edit) return UtilitiesPart::Edit();
    CommitFault(character.edit);
    return S_OK;
}

STDMETHODIMP FaultyPackage::ContextPart::SetMaterial(IDispatch* material)
{
    return Call(L"SetMaterial", [&] {
        model.SetMaterial(material);
        if (character.keepsMaterial) material->AddRef();
    });
}

STDMETHODIMP FaultyPackage::ContextPart::UnsetMaterial()
{
    return Call(L"UnsetMaterial", [&] { model.UnsetMaterial(); });
}

HRESULT FaultyPackage::BeforeQueryInterface(REFIID iid, const com::InterfaceEntry* entry)
{
    if (!entry) return S_OK;
    if (IsEqualIID(iid, __uuidof(ICapeThermoPhases))) CommitFault(character.queryPhases);
    if (!character.identification && IsEqualIID(iid, __uuidof(ICapeIdentification))) return E_NOINTERFACE;
    if (!character.calculation && Contains(kCalculation, iid)) return E_NOINTERFACE;
    if (!character.errors && !Contains(kNotErrors, iid)) return E_NOINTERFACE;
    return S_OK;
}

void FaultyPackage::FinalRelease() { CommitFault(character.finalRelease); }

}  // namespace zelt::sample
