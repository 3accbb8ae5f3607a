#include "core/abort_trap.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <typeinfo>

namespace zelt {
namespace {

constexpr DWORD kAborted = 0xE0414254;
const char kMark = 0;  // Its address tells our exception from another of the same code.

using SignalHandler = void(__cdecl*)(int);

template <class Function>
Function Export(HMODULE library, const char* name)
{
    return library ? reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name))) : nullptr;
}

// What std::current_exception of a foreign library returns: a reference that is not given back, because the exception
// ends with the frames that are abandoned here. The destructor makes it travel in memory, as the real type does.
struct CurrentException {
    void* object;
    ~CurrentException() {}
};

// A string in flight in GCC's shared C++ library, which lets us ask. Of the static ones we know nothing.
const char* TextInFlight()
{
    const HMODULE library = GetModuleHandleW(L"libstdc++-6.dll");
    const auto currentType = Export<const std::type_info* (*)()>(library, "__cxa_current_exception_type");
    const auto currentException = Export<CurrentException (*)()>(library, "_ZSt17current_exceptionv");
    if (!currentType || !currentException) return nullptr;
    const std::type_info* type = currentType();
    if (!type || (std::strcmp(type->name(), "PKc") != 0 && std::strcmp(type->name(), "Pc") != 0)) return nullptr;
    const CurrentException exception = currentException();
    return exception.object ? *static_cast<const char* const*>(exception.object) : nullptr;
}

void __cdecl OnAbort(int)
{
    // The runtime library goes back to its default action before it calls the handler. Outside a guarded call that is
    // what shall happen next.
    if (!InGuardedCall()) return;
    TrapAborts();
    const ULONG_PTR parameters[] = {reinterpret_cast<ULONG_PTR>(&kMark), reinterpret_cast<ULONG_PTR>(TextInFlight())};
    RaiseException(kAborted, EXCEPTION_NONCONTINUABLE, 2, parameters);
}

}  // namespace

void TrapAborts()
{
    // msvcrt announces an abort in a message box before it raises the signal; a server must not wait for an answer.
    _set_error_mode(_OUT_TO_STDERR);
    std::signal(SIGABRT, OnAbort);
    using Signal = SignalHandler(__cdecl*)(int, SignalHandler);
    if (const auto signal = Export<Signal>(GetModuleHandleW(L"ucrtbase.dll"), "signal")) signal(SIGABRT, OnAbort);
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
