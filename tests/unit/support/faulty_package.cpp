#include "tests/unit/support/faulty_package.h"

#include <cstdint>

namespace zelt::tests {
namespace {

faulty::Misbehave Load(const wchar_t* name)
{
    const HMODULE library = LoadLibraryW(name);
    if (!library) return nullptr;
    PrepareGuards();
    return reinterpret_cast<faulty::Misbehave>(reinterpret_cast<void*>(GetProcAddress(library, "Misbehave")));
}

}  // namespace

faulty::Misbehave StaticPackage()
{
    static const faulty::Misbehave package = Load(L"faulty_static.dll");
    return package;
}

faulty::Misbehave SharedPackage()
{
    StaticPackage();
    static const faulty::Misbehave package = Load(L"faulty_shared.dll");
    return package;
}

[[gnu::noinline]] ProcessorState ProcessorState::Now()
{
    struct {
        std::uint16_t control, unused1, status, unused2, tags, unused3;
        std::uint32_t rest[4];
    } x87;
    std::uint32_t sse = 0;
    std::uintptr_t flags = 0;
    ProcessorState state;
    asm volatile("fnstenv %0; fldenv %0" : "+m"(x87));
    asm volatile("stmxcsr %0" : "=m"(sse));
#ifdef _WIN64
    asm volatile("pushfq; popq %0" : "=r"(flags));
#else
    asm volatile("pushfl; popl %0" : "=r"(flags));
    asm volatile("movl %%fs:0, %0" : "=r"(state.exceptionChain));
#endif
    state.x87Control = x87.control;
    state.x87Tags = x87.tags;
    state.sseControl = sse & ~0x3Fu;  // Without the sticky flags, because any calculation may set them.
    state.directionFlag = (flags & 0x400) != 0;
    state.stack = __builtin_frame_address(0);
    return state;
}

}  // namespace zelt::tests
