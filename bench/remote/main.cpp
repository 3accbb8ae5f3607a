// bench_remote: a package used from another process through ZELT, which logs nothing, beside the same package hosted by the
// system's surrogate process. The script that runs it has registered ZELT and the sample package, and exported the package
// as "Benchmark" without logging; the surrogate is set up, and taken away again, here.
#include <comutil.h>
#include <windows.h>
#include <wrl/client.h>

#include <cape-open.h>

#include <cstdio>

#include "bench/remote/call_counter.h"
#include "bench/rows.h"
#include "core/registry.h"

namespace zelt::bench {
namespace {

using Microsoft::WRL::ComPtr;

// The sample's stand-alone package.
constexpr wchar_t kClassKey[] = L"Software\\Classes\\CLSID\\{26100AA3-1793-4E26-BD43-EB046B57CFB0}";
constexpr CLSID kClass = {0x26100AA3, 0x1793, 0x4E26, {0xBD, 0x43, 0xEB, 0x04, 0x6B, 0x57, 0xCF, 0xB0}};
constexpr wchar_t kAppId[] = L"{5B0C3E42-6A11-4F5E-8C7D-21B9A4D06E33}";
constexpr wchar_t kAppIdKey[] = L"Software\\Classes\\AppID\\{5B0C3E42-6A11-4F5E-8C7D-21B9A4D06E33}";

constexpr int kCalls = 1000;
constexpr int kPairs = 9;

// The class in the system's surrogate process, as long as this lives.
class Surrogate {
public:
    Surrogate()
    {
        RegistryKey application, packageClass;
        const RegistryRoot machine{HKEY_LOCAL_MACHINE, 0};
        if (application.Create(machine, kAppIdKey) == ERROR_SUCCESS) application.WriteString(L"DllSurrogate", L"");
        if (packageClass.Create(machine, kClassKey) == ERROR_SUCCESS) packageClass.WriteString(L"AppID", kAppId);
    }
    ~Surrogate()
    {
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, kAppIdKey);
        RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kClassKey, L"AppID");
    }
    Surrogate(const Surrogate&) = delete;
    Surrogate& operator=(const Surrogate&) = delete;
};

ComPtr<ICapeThermoCompounds> ThroughSurrogate()
{
    ComPtr<IDispatch> package;
    ComPtr<ICapeThermoCompounds> compounds;
    const HRESULT result = CoCreateInstance(kClass, nullptr, CLSCTX_LOCAL_SERVER, IID_PPV_ARGS(&package));
    if (FAILED(result)) std::fprintf(stderr, "The surrogate does not answer: 0x%08lX\n", result);
    if (package) package.As(&compounds);
    return compounds;
}

ComPtr<ICapeThermoCompounds> ThroughZelt()
{
    CLSID manager;
    ComPtr<ICapeThermoPropertyPackageManager> packages;
    ComPtr<IDispatch> package;
    ComPtr<ICapeThermoCompounds> compounds;
    HRESULT result = CLSIDFromProgID(L"ZELT.PropertyPackageManager", &manager);
    if (SUCCEEDED(result)) result = CoCreateInstance(manager, nullptr, CLSCTX_LOCAL_SERVER, IID_PPV_ARGS(&packages));
    if (packages) result = packages->GetPropertyPackage(_bstr_t(L"Benchmark"), &package);
    if (FAILED(result)) std::fprintf(stderr, "ZELT does not answer: 0x%08lX\n", result);
    if (package) package.As(&compounds);
    return compounds;
}

double TimeNumber(ICapeThermoCompounds& compounds)
{
    const Stopwatch watch;
    long number = 0;
    for (int i = 0; i < kCalls; ++i) compounds.GetNumCompounds(&number);
    return watch.Seconds();
}

double TimeLists(ICapeThermoCompounds& compounds)
{
    const Stopwatch watch;
    for (int i = 0; i < kCalls; ++i) {
        _variant_t ids, formulae, names, boiling, weights, cas;
        compounds.GetCompoundList(&ids, &formulae, &names, &boiling, &weights, &cas);
    }
    return watch.Seconds();
}

int Run()
{
    const Surrogate registered;
    const auto surrogate = ThroughSurrogate();
    const auto zelt = ThroughZelt();
    if (!surrogate || !zelt) return 1;

    CountRemoteCalls();
    PrintTitle("Call from another process, logging off (floor: the system's surrogate)");
    const struct {
        const char* name;
        double (*time)(ICapeThermoCompounds&);
    } kMethods[] = {{"one number out", TimeNumber}, {"six lists out", TimeLists}};
    for (const auto& method : kMethods) {
        TakeRemoteCalls();
        method.time(*surrogate.Get());
        const long below = TakeRemoteCalls();
        method.time(*zelt.Get());
        const long above = TakeRemoteCalls();
        PrintRow(method.name,
                 Compare(
                     kPairs, [&] { return method.time(*surrogate.Get()); }, [&] { return method.time(*zelt.Get()); }),
                 0, "us", kCalls);
        std::printf("  remote calls in %d: surrogate %ld, ZELT %ld: %s\n", kCalls, below, above,
                    above <= below && above > 0 ? "none more" : "MORE, or none counted");
    }
    return 0;
}

}  // namespace
}  // namespace zelt::bench

int main()
{
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
    const int result = zelt::bench::Run();
    CoUninitialize();
    return result;
}
