#include "guard/loaded_libraries.h"

#include <psapi.h>

namespace zelt::guard {
namespace {

constexpr ULONG kLoaded = 1, kUnloaded = 2;
using Callback = void(CALLBACK*)(ULONG reason, const void* data, void* context);
using Register = LONG(NTAPI*)(ULONG flags, Callback callback, void* context, void** cookie);

// The system calls this before a loaded library is initialized: too early for anything but a note.
void CALLBACK Note(ULONG reason, const void*, void*)
{
    if (reason == kLoaded || reason == kUnloaded) librariesHaveChanged = true;
}

bool Start()
{
    void* cookie = nullptr;
    const auto function = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "LdrRegisterDllNotification");
    const auto registerNotification = reinterpret_cast<Register>(reinterpret_cast<void*>(function));
    return registerNotification && registerNotification(0, Note, nullptr, &cookie) >= 0;
}

}  // namespace

constinit std::atomic<bool> librariesHaveChanged = true;

bool StartNoticingLibraries()
{
    static const bool noticing = Start();
    return noticing;
}

std::vector<HMODULE> LoadedLibraries()
{
    std::vector<HMODULE> libraries(256);
    for (;;) {
        const DWORD room = static_cast<DWORD>(libraries.size() * sizeof(HMODULE));
        DWORD needed = 0;
        if (!K32EnumProcessModules(GetCurrentProcess(), libraries.data(), room, &needed)) return {};
        libraries.resize(needed / sizeof(HMODULE));
        if (needed <= room) return libraries;
    }
}

}  // namespace zelt::guard
