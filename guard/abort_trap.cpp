#include "guard/abort_trap.h"

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <typeinfo>

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
    std::_Exit(3);  // Not reached: the caller has seen a guard.
}

void __cdecl OnAbort(int)
{
    // The runtime library resets the signal to its default action before it calls the handler. Outside a guarded call that action
    // is the one we want next.
    if (GuardDepth() == 0) return;
    TrapAborts();
    RaiseAbort(nullptr);
}

// Whether libraries have been loaded since the last question. Looking them up by name each time a package is made would take
// longer than making most packages.
class LoadedLibraries {
public:
    static bool AreNew()
    {
        static const bool watched = Watch();
        return !watched || changed.exchange(false);
    }

private:
    static constexpr ULONG kLoaded = 1;
    using Callback = void(CALLBACK*)(ULONG reason, const void* data, void* context);
    using Register = LONG(NTAPI*)(ULONG flags, Callback callback, void* context, void** cookie);

    static bool Watch()
    {
        void* cookie = nullptr;
        const auto registerNotification =
            Export<Register>(GetModuleHandleW(L"ntdll.dll"), "LdrRegisterDllNotification");
        return registerNotification && registerNotification(0, Note, nullptr, &cookie) >= 0;
    }
    static void CALLBACK Note(ULONG reason, const void*, void*)
    {
        if (reason == kLoaded) changed = true;
    }

    static inline std::atomic<bool> changed = true;
};

// GCC's shared C++ library says what it was throwing when it gave up.
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
        // With an outer guard the current exception may be one that an outer package is handling.
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
            // The pointer's one field is the thrown object; the reference goes back before the exception ends.
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

    using Signal = SignalHandler(__cdecl*)(int, SignalHandler);
    static Signal universal = nullptr;  // once loaded, this library stays
    if (LoadedLibraries::AreNew()) {
        universal = Export<Signal>(GetModuleHandleW(L"ucrtbase.dll"), "signal");
        SharedRuntime::Trap();
    }
    if (universal) universal(SIGABRT, OnAbort);
}

bool IsAbort(const EXCEPTION_RECORD& record, const char*& text)
{
    const ULONG_PTR* parameters = record.ExceptionInformation;
    if (record.ExceptionCode != kAborted || record.NumberParameters != 2) return false;
    if (parameters[0] != reinterpret_cast<ULONG_PTR>(&kMark)) return false;
    text = reinterpret_cast<const char*>(parameters[1]);
    return true;
}

}  // namespace zelt
