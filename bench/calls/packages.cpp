#include <comutil.h>
#include <wrl/client.h>

#include <cstdio>
#include <memory>
#include <string>

#include "bench/calls/parts.h"
#include "bench/rows.h"
#include "com/type_info.h"
#include "packages/exported_package_list.h"
#include "packages/property_package_manager.h"
#include "thermo/wrapping_table.h"

#include <cape-open.h>

namespace zelt::bench {
namespace {

using Microsoft::WRL::ComPtr;

constexpr int kPackages = 100;
constexpr int kPairs = 25;

// The sample's stand-alone package, {26100AA3-1793-4E26-BD43-EB046B57CFB0}.
constexpr CLSID kClass = {0x26100AA3, 0x1793, 0x4E26, {0xBD, 0x43, 0xEB, 0x04, 0x6B, 0x57, 0xCF, 0xB0}};

// Makes the sample's class known to this process, without the registry.
bool OfferClass()
{
    const std::wstring program = com::ModulePath(nullptr);
    const std::wstring folder = program.substr(0, program.rfind(L'\\'));
    const HMODULE library = LoadLibraryW((folder + L"\\..\\samples\\SamplePackage.dll").c_str());
    if (!library) return false;
    const auto getClassObject = reinterpret_cast<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**)>(
        reinterpret_cast<void*>(GetProcAddress(library, "DllGetClassObject")));
    ComPtr<IUnknown> factory;
    DWORD cookie = 0;
    return getClassObject &&
           SUCCEEDED(getClassObject(kClass, __uuidof(IUnknown), reinterpret_cast<void**>(factory.GetAddressOf()))) &&
           SUCCEEDED(CoRegisterClassObject(kClass, factory.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie));
}

// The least that a simulator does with a package.
void Use(IDispatch* package)
{
    ComPtr<ICapeUtilities> utilities;
    ComPtr<ICapeThermoCompounds> compounds;
    if (FAILED(package->QueryInterface(IID_PPV_ARGS(&utilities))) ||
        FAILED(package->QueryInterface(IID_PPV_ARGS(&compounds)))) {
        std::fprintf(stderr, "The package lacks an interface.\n");
        return;
    }
    utilities->Initialize();
    long number = 0;
    _variant_t ids, formulae, names, boiling, weights, cas;
    if (FAILED(compounds->GetNumCompounds(&number)) ||
        FAILED(compounds->GetCompoundList(&ids, &formulae, &names, &boiling, &weights, &cas))) {
        std::fprintf(stderr, "The package does not answer.\n");
    }
    utilities->Terminate();
}

template <class Make>
double Time(Make make)
{
    const Stopwatch watch;
    for (int i = 0; i < kPackages; ++i) {
        ComPtr<IDispatch> package;
        if (FAILED(make(&package)) || !package) {
            std::fprintf(stderr, "The package cannot be made.\n");
            return 0;
        }
        Use(package.Get());
    }
    return watch.Seconds();
}

}  // namespace

void MeasurePackages()
{
    if (!OfferClass()) {
        std::fprintf(stderr, "The sample package cannot be loaded.\n");
        return;
    }
    InstallWrappers();
    auto exported = std::make_unique<ExportedPackage>();
    exported->classId = kClass;
    exported->kind = PackageKind::PropertyPackage11StandAlone;
    exported->exportedName = L"Package";
    ExportedPackages().Append(std::move(exported));

    ComPtr<ICapeThermoPropertyPackageManager> manager;
    if (FAILED(CreatePropertyPackageManager(IID_PPV_ARGS(&manager)))) {
        std::fprintf(stderr, "There is no manager.\n");
        return;
    }
    const _bstr_t name(L"Package");
    PrintTitle("Packages made, used and released in process, logging off (floor: made directly)");
    MeasureRow(
        // Making a package reads the user's options again, with a system call for each, so each package may add a millisecond.
        "100 packages", kPairs, {1.3, "ms", 1, kPackages * 1.0},
        [] {
            return Time([](ComPtr<IDispatch>* package) {
                return CoCreateInstance(kClass, nullptr, CLSCTX_INPROC_SERVER,
                                        IID_PPV_ARGS(package->ReleaseAndGetAddressOf()));
            });
        },
        [&] {
            return Time([&](ComPtr<IDispatch>* package) {
                return manager->GetPropertyPackage(name, package->ReleaseAndGetAddressOf());
            });
        });
}

}  // namespace zelt::bench
