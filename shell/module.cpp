#include "shell/module.h"

#include <ole2.h>

#include <vector>

#include "com/server_reference.h"
#include "com/type_info.h"
#include "guard/fault_guard.h"
#include "log/log_document.h"
#include "log/open_log.h"
#include "system/dialogs/message_box.h"
#include "res/resource.h"
#include "packages/exported_package_list.h"
#include "system/library_search.h"
#include "shell/crash_dump.h"
#include "shell/log_prompt.h"
#include "shell/rights_warning.h"
#include "registration/registration.h"
#include "packages/served_classes.h"
#include "shell/user_interface.h"
#include "system/version.h"
#include "thermo/wrapping_table.h"

namespace zelt {
namespace {

CZELTModule* instance = nullptr;

// Only dialogs get dialog keys. Other windows on this thread, such as the help viewer's, keep their Tab and Return keys.
bool IsDialog(HWND window) { return GetClassLongPtrW(window, GCW_ATOM) == reinterpret_cast<ULONG_PTR>(WC_DIALOG); }

void AddReference() { CoAddRefServerProcess(); }

// A viewer's thread may still be closing its window when the module is gone. Then there is nothing left to signal.
void ReleaseReference()
{
    if (instance) instance->Unlock();
}

}  // namespace

CZELTModule::CZELTModule()
    // Packages may use the clipboard and drag objects, which need more than COM.
    : initialized(OleInitialize(nullptr)),
      mainThread(GetCurrentThreadId()),
      accelerators(LoadAcceleratorsW(com::ThisModule(), MAKEINTRESOURCEW(kAccelerators))),
      shutdownEvent(CreateEventW(nullptr, FALSE, FALSE, nullptr))
{
    instance = this;
    // If a package's disk is gone, the system would otherwise show a message box to a user who may not even know of this
    // process.
    SetErrorMode(GetErrorMode() | SEM_FAILCRITICALERRORS);
    const INITCOMMONCONTROLSEX controls = {sizeof controls,
                                           ICC_LISTVIEW_CLASSES | ICC_TREEVIEW_CLASSES | ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&controls);
    com::SetServerReferenceFunctions({AddReference, ReleaseReference});
    PrepareGuards();
    InstallWrappers();
    SetLogClosed([](const ClosedLog& log) { ShowClosedLog(log, kUserInterface.showLogViewer); });
    SetLogOpened([](const std::wstring& path) {
        if (instance) instance->logNotification.Show(path);
    });
}

CZELTModule::~CZELTModule()
{
    classObjects.Revoke();
    if (monitor) {
        // Unless the monitor itself ended the loop, it is still waiting for the event, which is about to be closed.
        SetEvent(shutdownEvent.get());
        WaitForSingleObject(monitor.get(), INFINITE);
    }
    instance = nullptr;
    com::ReleaseTypeInfo();
    if (SUCCEEDED(initialized)) OleUninitialize();
}

CZELTModule* CZELTModule::Instance() { return instance; }

int CZELTModule::Run(const std::wstring& tail)
{
    if (FAILED(initialized)) return initialized;
    versionText = FileVersionText(com::ModulePath(com::ThisModule()));
    LoadSmallImages();

    const StartPlan plan = ParseCommandLine(tail);
    // Registration leaves the user's settings alone: even reading them would create their key.
    if (plan.action != RegistrationAction::None) return RunRegistration(plan.action);
    const std::wstring logFile = AbsolutePath(plan.logFile);
    LeaveCurrentFolder();
    ShowFailure(Options().Load());
    if (Options().writeDumps) ShowFailure(WriteDumpsOfFaults());
    if (Options().queueCalls) callQueue.emplace();
    if (plan.mode == StartMode::Server || plan.mode == StartMode::Interactive) {
        TakePackageList();
    } else {
        // Simulators can use the classes of this process, too. Until one does, this process leaves the list of packages to
        // others.
        ExportedPackages().LoadLater([this] { TakePackageList(); });
    }
    if (plan.mode == StartMode::LogViewer) kUserInterface.showLogViewer(logFile);
    if (plan.mode == StartMode::Interactive) kUserInterface.showMainWindow();
    return Serve();
}

void CZELTModule::TakePackageList()
{
    listHold.emplace();
    if (listHold->IsShared()) WarnOfOtherRights();
    ShowFailure(LoadPackages());
}

void CZELTModule::LoadSmallImages()
{
    smallImages.reset(ImageList_Create(16, 16, ILC_COLOR4 | ILC_MASK, 2, 1));
    const auto bitmap = static_cast<HBITMAP>(
        LoadImageW(com::ThisModule(), MAKEINTRESOURCEW(kImages), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION));
    if (!bitmap) return;
    ImageList_AddMasked(smallImages.get(), bitmap, RGB(0xFF, 0xFF, 0xFF));
    DeleteObject(bitmap);
}

HRESULT CZELTModule::RunRegistration(RegistrationAction action)
{
    const bool named = action == RegistrationAction::RegisterPerUser || action == RegistrationAction::UnregisterPerUser;
    const Scope scope = named || PerUserRegistrationPreferred({}) ? Scope::User : Scope::Machine;
    const bool add = action == RegistrationAction::Register || action == RegistrationAction::RegisterPerUser;
    return add ? RegisterServer(scope, versionText) : UnregisterServer(scope, versionText);
}

void CZELTModule::Lock() { AddReference(); }

void CZELTModule::Unlock()
{
    if (CoReleaseServerProcess() != 0) return;
    if (delayShutdown) {
        activity = true;
        SetEvent(shutdownEvent.get());
    } else {
        PostThreadMessageW(mainThread, WM_QUIT, 0, 0);
    }
}

int CZELTModule::Serve()
{
    const HRESULT registered = classObjects.Register(ServedClasses());
    if (FAILED(registered)) return registered;
    if (registered == S_FALSE) delayShutdown = false;
    if (delayShutdown && FAILED(StartMonitor())) return E_FAIL;

    const int result = RunMessageLoop();
    classObjects.Revoke();
    ExportedPackages().LoadLater(nullptr);
    callQueue.reset();
    listHold.reset();
    // Lets other threads finish their work.
    if (delayShutdown) Sleep(pauseAfterLoop);
    return result;
}

HRESULT CZELTModule::StartMonitor()
{
    if (!shutdownEvent) return E_FAIL;
    monitor.reset(CreateThread(nullptr, 0, MonitorShutdown, this, 0, nullptr));
    return monitor ? S_OK : E_FAIL;
}

DWORD WINAPI CZELTModule::MonitorShutdown(void* parameter)
{
    const auto& module = *static_cast<const CZELTModule*>(parameter);
    WaitForSingleObject(module.shutdownEvent.get(), INFINITE);
    PostThreadMessageW(module.mainThread, WM_QUIT, 0, 0);
    return 0;
}

int CZELTModule::RunMessageLoop()
{
    MSG message = {};
    // The result is negative on an error, which ends the loop like WM_QUIT.
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        const HWND active = GetActiveWindow();
        if (active && TranslateAcceleratorW(active, accelerators, &message)) continue;
        if (active && IsDialog(active) && IsDialogMessageW(active, &message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return static_cast<int>(message.wParam);
}

}  // namespace zelt
