// bench_remote: a package used from another process through ZELT, which logs nothing, compared with the same package in the
// system's surrogate process. Each width of this program measures the edition of its own width. The script that runs the
// program has registered ZELT and the sample package, and exported the package as "Benchmark" without logging; the program
// itself sets up the surrogate and removes it again.
#include <comutil.h>
#include <windows.h>
#include <wrl/client.h>

#include <cape-open.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "bench/remote/call_counter.h"
#include "bench/remote/lives.h"
#include "bench/remote/session.h"
#include "bench/rows.h"
#include "system/edition.h"
#include "system/registry.h"
#include "samples/package/classes.h"

namespace zelt::bench {
namespace {

using Microsoft::WRL::ComPtr;

constexpr wchar_t kAppId[] = L"{5B0C3E42-6A11-4F5E-8C7D-21B9A4D06E33}";
constexpr wchar_t kAppIdKey[] = L"Software\\Classes\\AppID\\{5B0C3E42-6A11-4F5E-8C7D-21B9A4D06E33}";

constexpr int kCalls = 1000;
constexpr int kPairs = 9;
constexpr int kLives = 500;

// Hosts the class in the system's surrogate process while this object lives.
class Surrogate {
public:
    explicit Surrogate(const CLSID& hosted)
    {
        wchar_t text[40];
        StringFromGUID2(hosted, text, 40);
        classKey += text;
        Write(kAppIdKey, L"DllSurrogate", L"");
        Write(classKey, L"AppID", kAppId);
    }
    ~Surrogate()
    {
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, kAppIdKey);
        RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, classKey.c_str(), L"AppID");
    }
    Surrogate(const Surrogate&) = delete;
    Surrogate& operator=(const Surrogate&) = delete;

private:
    static void Write(const std::wstring& path, const wchar_t* name, const wchar_t* text)
    {
        RegistryKey key;
        if (key.Create({HKEY_LOCAL_MACHINE, 0}, path) != ERROR_SUCCESS ||
            key.WriteString(name, text) != ERROR_SUCCESS) {
            std::fprintf(stderr, "Cannot write %ls to the registry\n", name);
        }
    }

    std::wstring classKey = L"Software\\Classes\\CLSID\\";
};

ComPtr<ICapeThermoPropertyPackageManager> MakeManager(const CLSID& classId, const char* server)
{
    ComPtr<ICapeThermoPropertyPackageManager> manager;
    const HRESULT result = CoCreateInstance(classId, nullptr, CLSCTX_LOCAL_SERVER, IID_PPV_ARGS(&manager));
    if (FAILED(result)) std::fprintf(stderr, "%s does not answer: 0x%08lX\n", server, result);
    return manager;
}

ComPtr<IDispatch> MakePackage(ICapeThermoPropertyPackageManager& manager, const wchar_t* name)
{
    ComPtr<IDispatch> package;
    const HRESULT result = manager.GetPropertyPackage(_bstr_t(name), &package);
    if (FAILED(result)) std::fprintf(stderr, "There is no package: 0x%08lX\n", result);
    return package;
}

ComPtr<ICapeThermoCompounds> CompoundsOf(const ComPtr<IDispatch>& package)
{
    ComPtr<ICapeThermoCompounds> compounds;
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

int Run(int lives)
{
    const Surrogate registered(sample::kPropertyPackageManagerClass);
    const CLSID& zeltClass = kThisEdition[OwnClass::PropertyPackageManager].classId;
    const auto below = MakeManager(sample::kPropertyPackageManagerClass, "The surrogate");
    const auto above = MakeManager(zeltClass, "ZELT");
    if (!below || !above) return 1;
    const auto inSurrogate = [&below] { return MakePackage(*below.Get(), L"Aromatics"); };
    const auto inZelt = [&above] { return MakePackage(*above.Get(), L"Benchmark"); };
    const auto surrogate = CompoundsOf(inSurrogate());
    const auto zelt = CompoundsOf(inZelt());
    if (!surrogate || !zelt) return 1;

    CountRemoteCalls();
    char title[100];
    std::snprintf(title, sizeof title, "Call from another process, %d bit, logging off (floor: the system's surrogate)",
                  kThisEdition.width);
    PrintTitle(title);
    const struct {
        const char* name;
        double (*time)(ICapeThermoCompounds&);
    } kMethods[] = {{"one number out", TimeNumber}, {"six lists out", TimeLists}};
    for (const auto& method : kMethods) {
        TakeRemoteCalls();
        method.time(*surrogate.Get());
        const long floorCalls = TakeRemoteCalls();
        method.time(*zelt.Get());
        const long calls = TakeRemoteCalls();
        PrintRow(method.name,
                 Compare(
                     kPairs, [&] { return method.time(*surrogate.Get()); }, [&] { return method.time(*zelt.Get()); }),
                 0, "us", kCalls);
        const bool isNoneMore = calls <= floorCalls && calls > 0;
        Require(isNoneMore);
        std::printf("  remote calls in %d: surrogate %ld, ZELT %ld: %s\n", kCalls, floorCalls, calls,
                    isNoneMore ? "none more" : "MORE, or none counted");
    }
    const RemoteCalls floor = CountSession(*below.Get(), L"Aromatics");
    const RemoteCalls measured = CountSession(*above.Get(), L"Benchmark");
    const bool isNoneMore = measured.out <= floor.out && measured.in <= floor.in && measured.in > 0;
    Require(isNoneMore);
    std::printf(
        "a package's whole life, with five flashes and ten properties\n"
        "  remote calls to it: surrogate %ld, ZELT %ld; from it to the material: surrogate %ld, ZELT %ld: %s\n",
        floor.out, measured.out, floor.in, measured.in, isNoneMore ? "none more" : "MORE, or none counted");
    CompareMemoryOfLives(lives, inSurrogate, inZelt);
    return ExitCode();
}

}  // namespace
}  // namespace zelt::bench

// Takes the number of lives as an optional argument.
int main(int count, char** words)
try {
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
    const int result = zelt::bench::Run(count > 1 ? std::max(1, std::atoi(words[1])) : zelt::bench::kLives);
    CoUninitialize();
    return result;
} catch (const std::exception& failure) {
    std::printf("bench_remote: %s\n", failure.what());
    return 1;
}
