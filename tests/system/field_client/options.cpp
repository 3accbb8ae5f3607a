// Runs that show what some of ZELT's options change. A run through ZELT does the same thing without its option and with it.
#include <cape-open.h>
#include <ocidl.h>

#include "samples/component/text.h"
#include "samples/field/classes.h"
#include "tests/system/field_client/session.h"

namespace zelt::test {
namespace {

using sample::MakeBstr;

void SetOption(const wchar_t* name, bool on)
{
    const DWORD value = on;
    Step(name, HRESULT_FROM_WIN32(static_cast<unsigned long>(
                   RegSetKeyValueW(HKEY_CURRENT_USER, L"Software\\ZELT", name, REG_DWORD, &value, sizeof value))));
}

ComPtr<ICapeThermoPropertyPackageManager> CreateManager()
{
    return Required<ICapeThermoPropertyPackageManager>(CreateServed(L"ZELT.PropertyPackageManager").Get(),
                                                       L"ICapeThermoPropertyPackageManager");
}

ComPtr<IDispatch> GetPackage(ICapeThermoPropertyPackageManager* manager)
{
    ComPtr<IDispatch> package;
    Step(L"GetPropertyPackage", manager->GetPropertyPackage(MakeBstr(kLicensedName).GetBSTR(), &package), manager);
    return package;
}

void ShowDescription(const char* what, IDispatch* package)
{
    _bstr_t description;
    const auto identification = Required<ICapeIdentification>(package, L"ICapeIdentification");
    Step(L"get_ComponentDescription", identification->get_ComponentDescription(description.GetAddress()));
    Print(what, std::wstring(sample::TextOf(description.GetBSTR())));
}

void ShowCompounds(const char* what, IDispatch* package)
{
    long count = 0;
    const auto compounds = Required<ICapeThermoCompounds>(package, L"ICapeThermoCompounds");
    const HRESULT counted = compounds->GetNumCompounds(&count);
    Print(what, counted, package);
    if (SUCCEEDED(counted)) Print(what, std::to_wstring(count) + L" compounds");
}

struct OpenUnit {
    OpenUnit()
        : persistence(Required<IPersistStreamInit>(CreateServed(L"PRAVIK.UnitOperation").Get(), L"IPersistStreamInit")),
          unit(Required<IDispatch>(persistence.Get(), L"IDispatch")),
          utilities(Required<ICapeUtilities>(persistence.Get(), L"ICapeUtilities"))
    {
        Step(L"InitNew", persistence->InitNew(), unit.Get());
        Step(L"Initialize", utilities->Initialize(), unit.Get());
    }

    ComPtr<IPersistStreamInit> persistence;
    ComPtr<IDispatch> unit;
    ComPtr<ICapeUtilities> utilities;
};

// Reopens a unit as some simulators do: InitNew, Initialize, Load.
void Reopen(const char* what, IStream* saved)
{
    const OpenUnit opened;
    Step(L"Seek", saved->Seek({}, STREAM_SEEK_SET, nullptr));
    Print(what, opened.persistence->Load(saved), opened.unit.Get());
    Print(what, ParameterValue(opened.unit.Get(), L"Pressure drop"));
    Step(L"Terminate", opened.utilities->Terminate(), opened.unit.Get());
}

}  // namespace

void CopyFeed(Where where)
{
    const auto flowsheet = MakeFlowsheet();
    const ComPtr<IDispatch> package = CreateFieldPackage(where);
    UsePackageFor(*flowsheet, package.Get());
    if (where == Where::ThroughZelt) {
        SetOption(L"HandBackOriginals", false);
        CopyStreams(where, "proxies", flowsheet);
        SetOption(L"HandBackOriginals", true);
    }
    CopyStreams(where, "originals", flowsheet);
    flowsheet->link->package.Reset();
}

void ReopenUnit()
{
    // Keeps the server running, so that all calls go to the same process.
    const auto held = CreateManager();
    ComPtr<IStream> saved;
    Step(L"stream", CreateStreamOnHGlobal(nullptr, TRUE, &saved));
    {
        const OpenUnit opened;
        SetParameter(opened.unit.Get(), L"Pressure drop", _variant_t(2500.0));
        Step(L"Save", opened.persistence->Save(saved.Get(), TRUE), opened.unit.Get());
        Step(L"Terminate", opened.utilities->Terminate(), opened.unit.Get());
    }
    SetOption(L"LoadAfterInitNew", false);
    Reopen("refused", saved.Get());
    SetOption(L"LoadAfterInitNew", true);
    Reopen("loaded", saved.Get());
}

void UseLicensedPackages()
{
    SetOption(L"KeepManager", false);
    const auto manager = CreateManager();
    const ComPtr<IDispatch> alone = GetPackage(manager.Get());
    ShowCompounds("without its manager", alone.Get());
    SetOption(L"KeepManager", true);
    {
        const ComPtr<IDispatch> first = GetPackage(manager.Get());
        ShowCompounds("with its manager", first.Get());
        {
            const ComPtr<IDispatch> second = GetPackage(manager.Get());
            ShowDescription("two packages", second.Get());
        }
        ShowDescription("one package", first.Get());
    }
    ShowDescription("none", alone.Get());
}

void EditManagers()
{
    SetOption(L"ForwardManagerEdit", false);
    const auto manager = CreateManager();
    const ComPtr<IDispatch> package = GetPackage(manager.Get());
    const auto utilities = Required<ICapeUtilities>(manager.Get(), L"ICapeUtilities");
    Print("Edit", utilities->Edit(), nullptr);
    ShowDescription("not forwarded", package.Get());
    SetOption(L"ForwardManagerEdit", true);
    Print("Edit", utilities->Edit(), nullptr);
    ShowDescription("forwarded", package.Get());
}

}  // namespace zelt::test
