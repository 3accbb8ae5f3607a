#include "guard/abort_trap.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <iterator>
#include <mutex>
#include <new>
#include <string>
#include <string_view>
#include <typeinfo>
#include <vector>

#include "guard/loaded_libraries.h"

namespace zelt {
namespace {

constexpr DWORD kAborted = 0xE0414254;
const char kMark = 0;  // Its address distinguishes our exception from another with the same code.

using SignalHandler = void(__cdecl*)(int);

template <class Function>
Function Export(HMODULE library, const char* name)
{
    return library ? reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name))) : nullptr;
}

[[noreturn]] void RaiseAbort(const char* text)
{
    const ULONG_PTR parameters[] = {reinterpret_cast<ULONG_PTR>(&kMark), reinterpret_cast<ULONG_PTR>(text)};
    RaiseException(kAborted, EXCEPTION_NONCONTINUABLE, 2, parameters);
    std::_Exit(3);  // Not reached: the caller has checked that a guard is active.
}

// Ends the guarded call or, outside guarded calls, the process.
void GiveUp()
{
    if (GuardDepth() != 0) RaiseAbort(nullptr);
    std::abort();
}

void __cdecl OnAbort(int);

std::atomic<void (*)()> unguardedAbort = nullptr;

using Signal = SignalHandler(__cdecl*)(int, SignalHandler);

void TrapSignal(HMODULE library)
{
    if (const auto signal = Export<Signal>(library, "signal")) signal(SIGABRT, OnAbort);
}

// The runtime libraries of Microsoft's compilers, other than msvcrt, in which our traps are set.
std::vector<HMODULE> trapped;
std::mutex trappedMutex;

void __cdecl OnAbort(int)
{
    // The runtime library resets the signal to its default action before it calls the handler. Outside a guarded call that
    // action is the one we want next.
    if (GuardDepth() == 0) {
        if (const auto action = unguardedAbort.load()) action();
        return;
    }
    std::signal(SIGABRT, OnAbort);
    // Looking for libraries takes long, so it is done only if some have come or gone, or if the system cannot tell.
    if (guard::librariesHaveChanged || !guard::StartNoticingLibraries()) {
        TrapAborts();
    } else {
        const std::lock_guard lock(trappedMutex);
        std::for_each(trapped.begin(), trapped.end(), TrapSignal);
    }
    RaiseAbort(nullptr);
}

// Our handlers of invalid parameters and of pure calls, for the libraries that accept them. The libraries' own handlers would
// show a message and end the process.
void __cdecl OnInvalidParameter(const wchar_t*, const wchar_t*, const wchar_t*, unsigned, std::uintptr_t) { GiveUp(); }

void __cdecl OnPureCall() { GiveUp(); }

// Installs a handler in a library, unless a package has already set its own there.
template <class Handler>
void SetHandler(HMODULE library, const char* name, Handler handler)
{
    const auto set = Export<Handler(__cdecl*)(Handler)>(library, name);
    if (!set) return;
    const Handler before = set(handler);
    if (before && before != handler) set(before);
}

// msvcr70.dll to msvcr120.dll. Their debug versions (msvcr120d.dll) keep their messages: those are for the package's developer.
bool IsOlderRuntime(std::wstring_view name)
{
    constexpr std::wstring_view kStem = L"msvcr";
    constexpr std::wstring_view kEnd = L".dll";
    if (name.size() <= kStem.size() + kEnd.size()) return false;
    if (_wcsnicmp(name.data(), kStem.data(), kStem.size()) != 0) return false;
    if (_wcsnicmp(name.data() + name.size() - kEnd.size(), kEnd.data(), kEnd.size()) != 0) return false;
    name = name.substr(kStem.size(), name.size() - kStem.size() - kEnd.size());
    return std::all_of(name.begin(), name.end(), [](wchar_t c) { return c >= L'0' && c <= L'9'; });
}

// Sets the traps in one shared runtime library of Microsoft's compilers, other than msvcrt.
void TrapIn(HMODULE library)
{
    constexpr unsigned kMessage = 1;  // _WRITE_ABORT_MSG; error reporting stays as it is
    if (const auto setErrorMode = Export<int(__cdecl*)(int)>(library, "_set_error_mode")) setErrorMode(_OUT_TO_STDERR);
    if (const auto setBehavior = Export<unsigned(__cdecl*)(unsigned, unsigned)>(library, "_set_abort_behavior"))
        setBehavior(0, kMessage);
    TrapSignal(library);
    SetHandler(library, "_set_invalid_parameter_handler", OnInvalidParameter);
    SetHandler(library, "_set_purecall_handler", OnPureCall);
}

std::wstring FileName(HMODULE library)
{
    wchar_t path[1024] = {};
    const std::wstring_view whole(path, GetModuleFileNameW(library, path, static_cast<DWORD>(std::size(path))));
    return std::wstring(whole.substr(whole.find_last_of(L"\\/") + 1));
}

// A library can be loaded in several versions: each of them is trapped.
void TrapInAll() noexcept
try {
    const std::lock_guard lock(trappedMutex);
    trapped.clear();
    for (const HMODULE library : guard::LoadedLibraries()) {
        const std::wstring name = FileName(library);
        if (!IsOlderRuntime(name) && _wcsicmp(name.c_str(), L"ucrtbase.dll") != 0) continue;
        TrapIn(library);
        trapped.push_back(library);
    }
} catch (const std::bad_alloc&) {
    guard::librariesHaveChanged = true;  // the next call tries again
}

// GCC's shared C++ library. When it gives up, it can say what was being thrown.
class SharedRuntime {
public:
    static void Trap()
    {
        const HMODULE library = GetModuleHandleW(L"libstdc++-6.dll");
        const auto setTerminate = Export<Terminate (*)(Terminate)>(library, "_ZSt13set_terminatePFvvE");
        if (!setTerminate) return;
        const Terminate before = setTerminate(OnTerminate);
        if (before != OnTerminate) previous = before;
    }

private:
    using Terminate = void (*)();

    static void OnTerminate()
    {
        const int depth = GuardDepth();
        if (depth == 0) {
            if (previous) previous();
            std::abort();
        }
        // If there is an outer guard, the current exception may be another one, which an outer package is handling.
        RaiseAbort(depth == 1 ? TextInFlight() : nullptr);
    }

    // The string being thrown, or null. Ends the exception: the frames that could end it are about to go.
    static const char* TextInFlight()
    {
        const HMODULE library = GetModuleHandleW(L"libstdc++-6.dll");
        const auto currentType = Export<const std::type_info* (*)()>(library, "__cxa_current_exception_type");
        const auto currentException = Export<std::exception_ptr (*)()>(library, "_ZSt17current_exceptionv");
        const auto endCatch = Export<void (*)()>(library, "__cxa_end_catch");
        if (!currentType || !currentException || !endCatch) return nullptr;
        const std::type_info* type = currentType();
        if (!type) return nullptr;
        const char* text = nullptr;
        if (std::strcmp(type->name(), "PKc") == 0 || std::strcmp(type->name(), "Pc") == 0) {
            // The only field of std::exception_ptr is the address of the thrown object. `exception` gives its reference back
            // before endCatch ends the exception.
            static_assert(sizeof(std::exception_ptr) == sizeof(const char* const*));
            const std::exception_ptr exception = currentException();
            const char* const* object = nullptr;
            std::memcpy(&object, static_cast<const void*>(&exception), sizeof object);
            text = *object;
        }
        endCatch();
        return text;
    }

    static inline Terminate previous = nullptr;
};

}  // namespace

void TrapAborts()
{
    // msvcrt announces an abort in a message box before it raises the signal; a server must not wait for an answer.
    _set_error_mode(_OUT_TO_STDERR);
    std::signal(SIGABRT, OnAbort);

    if (guard::librariesHaveChanged.exchange(false) || !guard::StartNoticingLibraries()) {
        TrapInAll();
        SharedRuntime::Trap();
    }
}

void SetUnguardedAbort(void (*action)()) { unguardedAbort = action; }

bool IsAbort(const EXCEPTION_RECORD& record, const char*& text)
{
    const ULONG_PTR* parameters = record.ExceptionInformation;
    if (record.ExceptionCode != kAborted || record.NumberParameters != 2) return false;
    if (parameters[0] != reinterpret_cast<ULONG_PTR>(&kMark)) return false;
    text = reinterpret_cast<const char*>(parameters[1]);
    return true;
}

}  // namespace zelt
