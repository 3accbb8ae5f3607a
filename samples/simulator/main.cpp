// SampleSimulator.exe: uses a property package of CAPE-OPEN 1.1 or 1.0, a reaction package or a unit operation, like a
// flowsheet program, and prints the results. Exit codes: 0 when every step succeeded, 1 when one failed, 2 for a wrong command
// line.
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
#include "samples/simulator/calculations10.h"
#include "samples/simulator/create_class.h"
#include "samples/simulator/flowsheet_run.h"
#include "samples/simulator/manager_session.h"
#include "samples/simulator/package_state.h"
#include "samples/simulator/reaction_run.h"

namespace {

using namespace zelt::sample;

// A single-threaded apartment: while this thread waits for a call to another process, it serves incoming calls.
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

// A hook that waits inside the first read of the material, so that a test finds both sides in a call; empty unless the options
// ask for it.
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

void UsePropertyPackage(Microsoft::WRL::ComPtr<IDispatch> package, const Options& options, Report& report)
{
    PackageSession session(std::move(package), MakeFlowsheet(report));
    session.ShowIdentity(report, "Property package");
    session.ShowParameters(report, options.hold);
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

void UseOlderPropertyPackage(Microsoft::WRL::ComPtr<IDispatch> package, const Options& options, Report& report)
{
    PackageSession10 session(std::move(package), MakeFlowsheet(report));
    session.ShowIdentity(report, "Property package (CAPE-OPEN 1.0)");
    session.ShowParameters(report, options.hold);
    session.MakeMaterial(WaitOnce(options));
    Show10Lists(session, report);
    Show10Equilibria(session, report);
    Show10Properties(session, report);
    Show10Failure(session, report);
    session.Close(options.hold);
}

void UseReactionPackage(Microsoft::WRL::ComPtr<IDispatch> package, const Options& options, Report& report)
{
    ReactionSession session(std::move(package), MakeFlowsheet(report));
    session.ShowIdentity(report, "Reaction package");
    session.ShowParameters(report, options.hold);
    ShowReactions(session, report);
    session.SetObjects(WaitOnce(options));
    ShowReactionProperties(session, report);
    ShowReactionFailure(session, report);
    session.Close(options.hold);
}

void UsePackage(PackageKind kind, Microsoft::WRL::ComPtr<IDispatch> package, const Options& options, Report& report)
{
    if (options.IsPackageState()) return UsePackageState(std::move(package), options, report);
    switch (kind) {
        case PackageKind::kProperty11: UsePropertyPackage(std::move(package), options, report); break;
        case PackageKind::kProperty10: UseOlderPropertyPackage(std::move(package), options, report); break;
        case PackageKind::kReaction: UseReactionPackage(std::move(package), options, report); break;
    }
}

void Run(const Options& options)
{
    Report report(options.bits);
    if (options.IsFlowsheet()) {
        RunFlowsheet(options, report);
        return;
    }
    if (options.standAlone) {
        Microsoft::WRL::ComPtr<IDispatch> package = CreateStandAlone(options);
        const PackageKind kind = KindOf(package.Get());
        UsePackage(kind, std::move(package), options, report);
        return;
    }
    const ManagerSession manager(ClassOf(options.className), options.inProcess);
    report.Text("Manager", manager.Name());
    report.Text("Packages", Joined(manager.Packages()));
    if (!options.list) UsePackage(manager.Kind(), manager.GetPackage(options.packageName), options, report);
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
    // The C runtime's arguments are narrow; names may contain any character.
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
