#include "tests/verification/computer.h"

#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <map>

#include "system/elevation.h"
#include "system/narrow.h"
#include "system/registry_view.h"
#include "tests/system/harness/rights.h"

namespace zelt::verification {
namespace {

constexpr wchar_t kVersionKey[] = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";
constexpr wchar_t kMemoryKey[] = L"SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Memory Management";
// The value of AllocationPreference that makes Windows hand out the highest addresses first.
constexpr DWORD kTopDown = 0x100000;
constexpr DWORD kWindows11 = 22000;  // its first build

template <class Function>
Function SystemFunction(const char* name)
{
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), name)));
}

USHORT NativeMachine()
{
    // Exists since Windows 10, version 1511.
    using IsWow64Process2Function = BOOL(WINAPI*)(HANDLE, USHORT*, USHORT*);
    const auto ask = SystemFunction<IsWow64Process2Function>("IsWow64Process2");
    USHORT process = 0, machine = IMAGE_FILE_MACHINE_I386;
    if (ask && ask(GetCurrentProcess(), &process, &machine)) return machine;
    SYSTEM_INFO system;
    GetNativeSystemInfo(&system);
    return system.wProcessorArchitecture == PROCESSOR_ARCHITECTURE_AMD64 ? IMAGE_FILE_MACHINE_AMD64
                                                                         : IMAGE_FILE_MACHINE_I386;
}

std::string Architecture()
{
    switch (NativeMachine()) {
        case IMAGE_FILE_MACHINE_ARM64: return "ARM64";
        case IMAGE_FILE_MACHINE_AMD64: return "64 bit";
        default: return "32 bit";
    }
}

std::string MachineText(const wchar_t* key, const wchar_t* value)
{
    const RegistryRoot root = {HKEY_LOCAL_MACHINE, RegistryViews().back()};
    RegistryKey opened;
    if (opened.Open(root, key) != ERROR_SUCCESS) return {};
    return Narrow(opened.ReadString(value).value_or(L""), CP_UTF8);
}

DWORD MachineNumber(const wchar_t* key, const wchar_t* value)
{
    DWORD number = 0, size = sizeof number;
    RegGetValueW(HKEY_LOCAL_MACHINE, key, value, RRF_RT_REG_DWORD | RRF_SUBKEY_WOW6464KEY, nullptr, &number, &size);
    return number;
}

DWORD Build()
{
    return static_cast<DWORD>(std::strtoul(MachineText(kVersionKey, L"CurrentBuildNumber").c_str(), nullptr, 10));
}

std::string System()
{
    std::string text = MachineText(kVersionKey, L"ProductName");
    // Windows 11 still has the name of Windows 10 there.
    if (const std::size_t ten = text.find("Windows 10"); ten != std::string::npos && Build() >= kWindows11)
        text.replace(ten, 10, "Windows 11");
    const std::string release = MachineText(kVersionKey, L"DisplayVersion");
    if (!release.empty()) text += ", version " + release;
    text += ", build " + MachineText(kVersionKey, L"CurrentBuildNumber") + '.' +
            std::to_string(MachineNumber(kVersionKey, L"UBR"));
    const auto wine = reinterpret_cast<const char*(CDECL*)()>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version")));
    if (wine) text = std::string("Wine ") + wine() + ", which says it is " + text;
    return text;
}

BOOL CALLBACK AddScreen(HMONITOR, HDC, RECT* place, LPARAM list)
{
    auto& screens = *reinterpret_cast<std::string*>(list);
    if (!screens.empty()) screens += ", ";
    screens += std::to_string(place->right - place->left) + " x " + std::to_string(place->bottom - place->top);
    return TRUE;
}

std::string Screens()
{
    std::string text;
    EnumDisplayMonitors(nullptr, nullptr, AddScreen, reinterpret_cast<LPARAM>(&text));
    const HDC screen = GetDC(nullptr);
    text += ", " + std::to_string(GetDeviceCaps(screen, LOGPIXELSX)) + " dpi";
    ReleaseDC(nullptr, screen);
    return text;
}

}  // namespace

Needs Offers()
{
    Needs offers = {test::MayRegisterForAll() ? "admin" : "plain"};
    if (!test::UnderWine()) offers.insert("windows");
    const USHORT machine = NativeMachine();
    if (machine == IMAGE_FILE_MACHINE_I386) offers.insert("32bit");
    // On ARM64, Windows 10 runs no 64-bit programs of other processors.
    if (machine == IMAGE_FILE_MACHINE_AMD64 || (machine == IMAGE_FILE_MACHINE_ARM64 && Build() >= kWindows11))
        offers.insert("64bit");
    if (machine == IMAGE_FILE_MACHINE_ARM64) offers.insert("arm64");
    if (MachineNumber(kMemoryKey, L"AllocationPreference") == kTopDown) offers.insert("topdown");
    return offers;
}

std::string Reason(const std::string& need)
{
    static const std::map<std::string, std::string> kReasons = {
        {"windows", "cannot be tested under Wine"},
        {"admin", "needs administrator's rights: run verify.cmd as administrator"},
        {"plain", "needs a user without administrator's rights: run verify.cmd as usual"},
        {"64bit", "needs 64-bit Windows"},
        {"32bit", "needs 32-bit Windows"},
        {"arm64", "needs Windows on ARM64"},
        {"topdown", "needs AllocationPreference to be set, and a restart"},
        {"long", "takes long: run verify.cmd /long"},
    };
    return kReasons.at(need);
}

std::vector<std::pair<std::string, std::string>> Facts()
{
    wchar_t locale[LOCALE_NAME_MAX_LENGTH] = L"";
    GetUserDefaultLocaleName(locale, std::size(locale));
    return {
        {"System", System()},
        {"Processor", Architecture()},
        {"Rights", IsElevated() ? "administrator" : "user"},
        {"Language", Narrow(locale, CP_UTF8) + ", code page " + std::to_string(GetACP())},
        {"Screens", Screens()},
    };
}

}  // namespace zelt::verification
