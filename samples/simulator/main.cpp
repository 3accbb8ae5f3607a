// SampleSimulator.exe: uses a CAPE-OPEN 1.1 property package in the way of a flowsheet program and prints what it
// calculates. Exit codes: 0 when every step succeeded, 1 when one failed, 2 for a wrong command line.
#include <windows.h>
#include <objbase.h>
#include <shellapi.h>

#include <clocale>
#include <cstdio>
#include <exception>
#include <memory>
#include <stdexcept>

#include "samples/component/cape_failure.h"
#include "samples/component/text.h"
#include "samples/simulator/calculations.h"

namespace {

using namespace zelt::sample;

// A single-threaded apartment: calls that come back in while a call is out are served on this thread, inside it.
class Apartment {
public:
    Apartment() : result(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
    ~Apartment()
    {
        if (SUCCEEDED(result)) CoUninitialize();
    }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    const HRESULT result;
};

class Handle {
public:
    explicit Handle(HANDLE handle) : handle(handle) {}
    ~Handle()
    {
        if (handle) CloseHandle(handle);
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    HANDLE Get() const { return handle; }

private:
    HANDLE handle;
};

// Waits inside the first read of the material, so that a test finds both sides in mid-call.
ReadHook WaitOnce(const Options& options)
{
    if (!options.waitSeconds) return {};
    auto waited = std::make_shared<bool>(false);
    return [waited, seconds = *options.waitSeconds, event = options.event](const wchar_t* method) {
        if (*waited) return;
        *waited = true;
        const Handle reached(event.empty() ? nullptr : OpenEventW(EVENT_MODIFY_STATE, FALSE, event.c_str()));
        const Handle go(CreateEventW(nullptr, TRUE, FALSE, event.empty() ? nullptr : (event + L".continue").c_str()));
        std::printf("waiting in call: ICapeThermoMaterial::%ls\n", method);
        std::fflush(stdout);
        if (reached.Get()) SetEvent(reached.Get());
        WaitForSingleObject(go.Get(), seconds * 1000);
    };
}

std::wstring Joined(const std::vector<std::wstring>& names)
{
    std::wstring text;
    for (const std::wstring& name : names) text += (text.empty() ? L"" : L", ") + name;
    return text.empty() ? L"none" : text;
}

std::wstring TextFrom(ICapeIdentification* identification,
                      HRESULT (STDMETHODCALLTYPE ICapeIdentification::*getter)(BSTR*))
{
    _bstr_t text;
    CheckCall((identification->*getter)(text.GetAddress()), identification, L"ICapeIdentification");
    return std::wstring(TextOf(text.GetBSTR()));
}

void UsePackage(Microsoft::WRL::ComPtr<IDispatch> package, const Options& options, Report& report)
{
    PackageSession session(std::move(package));
    if (session.identification) {
        report.Text("Property package",
                    TextFrom(session.identification.Get(), &ICapeIdentification::get_ComponentName));
        report.Text("Description",
                    TextFrom(session.identification.Get(), &ICapeIdentification::get_ComponentDescription));
    }
    ShowLists(session, report, options);
    if (session.materialContext && session.properties) {
        session.SetMaterial(WaitOnce(options));
        if (session.equilibrium) {
            ShowEquilibria(session, report);
            ShowProperties(session, report, options);
        }
        ShowFailure(session, report);
    }
    session.Close(options.hold);
}

void Run(const Options& options)
{
    Report report(options.bits);
    if (options.standAlone) {
        UsePackage(CreateStandAlone(options), options, report);
        return;
    }
    ManagerSession manager(options);
    report.Text("Manager", manager.Name());
    report.Text("Packages", Joined(manager.Packages()));
    if (!options.list) UsePackage(manager.GetPackage(options.packageName), options, report);
}

int Fail(const char* text)
{
    std::fflush(stdout);
    std::fprintf(stderr, "SampleSimulator: %s\n", text);
    return 1;
}

int RunGuarded(const Options& options)
{
    const Apartment apartment;
    if (FAILED(apartment.result)) return Fail("COM cannot be initialised");
    try {
        Run(options);
        return 0;
    } catch (const CapeFailure& failure) {
        std::fflush(stdout);
        std::fprintf(stderr, "SampleSimulator: %ls (0x%08lX)\n", failure.description.c_str(),
                     static_cast<unsigned long>(failure.code));
        return 1;
    } catch (const std::exception& exception) {
        return Fail(exception.what());
    }
}

}  // namespace

int main()
{
    // The C runtime's own arguments are narrow; names may hold any character.
    int count = 0;
    const std::unique_ptr<wchar_t*, decltype(&LocalFree)> arguments(CommandLineToArgvW(GetCommandLineW(), &count),
                                                                    LocalFree);
    try {
        return RunGuarded(ParseOptions(count, arguments.get()));
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "SampleSimulator: %s\n\n%s", exception.what(), kUsage);
        return 2;
    }
}
