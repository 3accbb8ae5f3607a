#include "samples/field/licensed_manager.h"

#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace zelt::sample {
namespace {

constexpr const wchar_t* kNames[] = {L"Licensed", L"Licensed Too"};

// Counted over all managers in this process.
int licences = 0;
int dialogs = 0;

class LicensedCompoundsPart final : public CompoundsPart {
public:
    using CompoundsPart::CompoundsPart;
    STDMETHOD(GetNumCompounds)(long* num) override
    {
        const HRESULT licensed = Call(L"GetNumCompounds", [] {
            if (licences == 0) throw CapeFailure(ECapeLicenceErrorHR, L"The manager has given its licence back");
        });
        return FAILED(licensed) ? licensed : CompoundsPart::GetNumCompounds(num);
    }
};

class LicensedIdentificationPart final : public IdentificationPart {
public:
    using IdentificationPart::IdentificationPart;
    STDMETHOD(get_ComponentDescription)(BSTR* text) override
    {
        return Call(L"get_ComponentDescription", [&] {
            Return(text, std::to_wstring(licences) + L" licences, " + std::to_wstring(dialogs) + L" dialogs");
        });
    }
};

class LicensedPackage final : public com::Object {
public:
    explicit LicensedPackage(const wchar_t* name) : identification(*this, errors, name, L"") {}

protected:
    IDispatch* ScriptInterface() override { return &compounds; }

private:
    PackageModel model{AllPackages().front()};
    CapeErrors errors{*this, L"ZeltSample.LicensedPackage"};
    LicensedCompoundsPart compounds{*this, errors, model};
    PhasesPart phases{*this, errors};
    PropertyPart properties{*this, errors, model};
    EquilibriumPart equilibrium{*this, errors, model};
    MaterialContextPart materialContext{*this, errors, model};
    UtilitiesPart utilities{*this, errors, {}, {}};
    LicensedIdentificationPart identification;
};

}  // namespace

STDMETHODIMP LicensedManagerPart::GetPropertyPackageList(VARIANT* packageNames)
{
    return Call(L"GetPropertyPackageList", [&] { Return(packageNames, MakeStrings({kNames[0], kNames[1]})); });
}

STDMETHODIMP LicensedManagerPart::GetPropertyPackage(BSTR packageName, IDispatch** package)
{
    if (!package) return E_POINTER;
    *package = nullptr;
    return Call(L"GetPropertyPackage", [&] {
        for (const wchar_t* name : kNames) {
            if (!SameName(TextOf(packageName), name)) continue;
            com::Check(com::Create<LicensedPackage>(IID_IDispatch, reinterpret_cast<void**>(package), name));
            return;
        }
        throw CapeFailure(ECapeInvalidArgumentHR, L"There is no property package " + Quoted(TextOf(packageName)));
    });
}

LicensedManager::LicensedManager()
    : utilities(
          *this, errors, [] { ++licences; }, [] { --licences; })
{}

STDMETHODIMP LicensedManager::EditedUtilities::Edit()
{
    ++dialogs;
    return S_OK;
}

}  // namespace zelt::sample
