// The server process: its apartment, its start, its message loop and its end. One instance, which lives in wWinMain. It owns
// the shutdown event and the shared image list; windows and COM objects only hold server-process references, and the process
// ends when the last is released.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <memory>
#include <optional>
#include <string>

#include "com/class_factory.h"
#include "log/log_options.h"
#include "shell/call_queue.h"
#include "shell/command_line.h"
#include "shell/log_notification.h"
#include "system/owners.h"
#include "packages/package_list_hold.h"
#include "shell/visit_window.h"

namespace zelt {

class CZELTModule {
public:
    CZELTModule();
    ~CZELTModule();
    CZELTModule(const CZELTModule&) = delete;
    CZELTModule& operator=(const CZELTModule&) = delete;

    // The one instance; null before it is made and after it is destroyed.
    static CZELTModule* Instance();

    // Does what `tail`, the command line after the program's name, asks for. Returns the exit code.
    int Run(const std::wstring& tail);

    const std::string& VersionText() const { return versionText; }
    HIMAGELIST SmallImages() const { return smallImages.get(); }
    HACCEL Accelerators() const { return accelerators; }
    LogOptions& Options() { return TheLogOptions(); }

    // The server-process reference that every COM object and window takes. Safe from any thread.
    void Lock();
    void Unlock();

private:
    void LoadSmallImages();
    void TakePackageList();
    [[nodiscard]] HRESULT RunRegistration(RegistrationAction action);
    int Serve();
    [[nodiscard]] HRESULT StartMonitor();
    static DWORD WINAPI MonitorShutdown(void* module);
    int RunMessageLoop();

    HRESULT initialized;
    const DWORD mainThread;
    [[maybe_unused]] const DWORD shutdownTimeout = 5000;  // Not used: the monitor waits without limit.
    const DWORD pauseAfterLoop = 1000;
    bool delayShutdown = true;
    volatile bool activity = false;
    HACCEL accelerators;
    std::string versionText;
    Owner<HIMAGELIST, ImageList_Destroy> smallImages;
    // Made with the module, because a window may close before the monitor waits.
    UniqueHandle shutdownEvent;
    UniqueHandle monitor;
    VisitWindow visitWindow;
    LogNotification logNotification;
    std::optional<CallQueue> callQueue;
    com::ClassObjects classObjects;
    // Taken before the list is loaded, and held while the process can change it.
    std::optional<PackageListHold> listHold;
};

}  // namespace zelt
