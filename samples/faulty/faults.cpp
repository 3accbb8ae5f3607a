#include "samples/faulty/faults.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <exception>
#include <limits>
#include <stdexcept>
#include <string>

#include "com/type_info.h"
#include "samples/faulty/window_faults.h"

namespace zelt::sample {
namespace {

// Volatile, so that the optimiser cannot turn the undefined behaviour into something else.
volatile int zero = 0;
volatile int one = 1;
volatile int lowest = std::numeric_limits<int>::min();
int* volatile nowhere = nullptr;
void (*volatile noFunction)() = nullptr;
volatile int depthLimit = 1 << 30;

void NullWrite() { *nowhere = 1; }
void NullRead() { zero = *nowhere; }
void NullCall() { noFunction(); }
void IntegerDivision() { zero = one / zero; }
void IntegerOverflow() { zero = lowest / -one; }
void IllegalInstruction() { asm volatile("ud2"); }
void PrivilegedInstruction() { asm volatile("hlt"); }

[[gnu::noinline]] int Recurse(int depth)
{
    volatile char page[4096];
    page[depth % 4096] = static_cast<char>(depth);
    if (depth >= depthLimit) return depth;
    return Recurse(depth + 1) + page[depth % 4096];
}
void StackOverflow() { zero = Recurse(0) * zero; }

void CppException() { throw std::runtime_error("thrown by the faulty package"); }
void CharString() { throw "thrown by the faulty package"; }
void IntException() { throw 42; }
void Abort() { std::abort(); }
void Terminate() { std::terminate(); }

// The next three end the process; no guard can prevent that.
void ExitTheProcess() { TerminateProcess(GetCurrentProcess(), 3); }
void QuitTheProcess() { ExitProcess(3); }
void FailFast() { RaiseFailFastException(nullptr, nullptr, 0); }

template <void (*commit)()>
DWORD WINAPI OwnThread(void*)
{
    commit();
    return 0;
}

// Commits a fault on one of the package's own threads, and waits for that thread to end.
template <void (*commit)()>
void OnOwnThread()
{
    const HANDLE thread = CreateThread(nullptr, 0, OwnThread<commit>, nullptr, 0, nullptr);
    if (!thread) return;
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
}

// Runs until the process is ended.
void LoopForever()
{
    while (one) zero = 0;
}

// Causes a fault and handles it internally: the caller must not notice anything.
void HandledFault()
{
    if (!IsBadReadPtr(reinterpret_cast<const void*>(sizeof(int)), sizeof(int))) std::abort();
}

// A char string thrown the way code from Microsoft's compiler throws it. The descriptors of the thrown type refer to each
// other by 32-bit values: addresses in 32-bit code; in 64-bit code offsets from the image base, which is the exception's
// fourth parameter.
struct TypeDescriptor {
    const void* table;
    void* spare;
    char name[8];
};
struct CatchableType {
    std::uint32_t properties, type;
    std::int32_t thisOffset, tableOffset, tableIndex;
    std::uint32_t size, copy;
};
struct CatchableTypes {
    std::int32_t count;
    std::uint32_t types[1];
};
struct ThrowInfo {
    std::uint32_t attributes, unwind, forward, types;
};

std::uint32_t Reference(const void* pointer)
{
    const auto address = reinterpret_cast<std::uintptr_t>(pointer);
    const std::uintptr_t base = sizeof(void*) == 8 ? reinterpret_cast<std::uintptr_t>(com::ThisModule()) : 0;
    return static_cast<std::uint32_t>(address - base);
}

void ForeignCharString()
{
    static TypeDescriptor descriptor{nullptr, nullptr, ".PAD"};
    static CatchableType type{1, 0, 0, -1, 0, sizeof(char*), 0};
    static CatchableTypes types{1, {0}};
    static ThrowInfo info{0, 0, 0, 0};
    static const char* text = "thrown by a foreign compiler's code";
    type.type = Reference(&descriptor);
    types.types[0] = Reference(&type);
    info.types = Reference(&types);
    constexpr ULONG_PTR kMagic = 0x19930520;
    const ULONG_PTR parameters[] = {kMagic, reinterpret_cast<ULONG_PTR>(&text), reinterpret_cast<ULONG_PTR>(&info),
                                    reinterpret_cast<ULONG_PTR>(com::ThisModule())};
    RaiseException(0xE06D7363, EXCEPTION_NONCONTINUABLE, sizeof(void*) == 8 ? 4 : 3, parameters);
}

constexpr struct {
    const wchar_t* name;
    void (*commit)();
} kFaults[] = {
    {L"nullWrite", NullWrite},
    {L"nullRead", NullRead},
    {L"nullCall", NullCall},
    {L"integerDivision", IntegerDivision},
    {L"integerOverflow", IntegerOverflow},
    {L"illegalInstruction", IllegalInstruction},
    {L"privilegedInstruction", PrivilegedInstruction},
    {L"stackOverflow", StackOverflow},
    {L"cppException", CppException},
    {L"charString", CharString},
    {L"intException", IntException},
    {L"foreignCharString", ForeignCharString},
    {L"abort", Abort},
    {L"terminate", Terminate},
    {L"exitProcess", ExitTheProcess},
    {L"quitProcess", QuitTheProcess},
    {L"failFast", FailFast},
    {L"threadFault", OnOwnThread<NullWrite>},
    {L"threadAbort", OnOwnThread<Abort>},
    {L"loopForever", LoopForever},
    {L"handledFault", HandledFault},
    {L"windowCreation", FaultInWindowCreation},
    {L"windowSize", FaultInWindowSize},
    {L"windowPaint", FaultInWindowPaint},
    {L"hook", FaultInHook},
    {L"enumeration", FaultInEnumeration},
};

// Reads the number after a prefix; false when the name does not begin with it.
bool ValueAfter(std::wstring_view name, std::wstring_view prefix, int radix, unsigned long& value)
{
    if (!name.starts_with(prefix)) return false;
    value = std::wcstoul(std::wstring(name.substr(prefix.size())).c_str(), nullptr, radix);
    return true;
}

}  // namespace

void CommitFault(std::wstring_view name)
{
    for (const auto& fault : kFaults) {
        if (name == fault.name) fault.commit();
    }
    unsigned long value = 0;
    if (ValueAfter(name, L"raise:", 16, value)) RaiseException(value, 0, 0, nullptr);
    if (ValueAfter(name, L"sleep:", 10, value)) Sleep(value);
}

HRESULT RequestedError(std::wstring_view name, bool& silent)
{
    unsigned long value = 0;
    silent = ValueAfter(name, L"silent:", 16, value);
    if (silent || ValueAfter(name, L"error:", 16, value)) return static_cast<HRESULT>(value);
    return S_OK;
}

}  // namespace zelt::sample
