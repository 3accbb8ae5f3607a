#include "tests/unit/guard/faulty_dll/faulty.h"

#include <cstdint>
#include <cstdlib>
#include <exception>
#include <stdexcept>

using faulty::Deed;
using faulty::kDone;
using faulty::kHandled;
using faulty::kMissing;

extern "C" HRESULT FaultyHandledFault();  // own_handler.S

namespace {

// Each of these two loads a control word with one exception unmasked. Bits: invalid 0, denormal 1, divide 2, overflow 3,
// underflow 4, inexact 5.
void UnmaskX87(unsigned bit)
{
    const std::uint16_t word = static_cast<std::uint16_t>(0x037F & ~(1u << bit));
    asm volatile("fninit; fldcw %0" : : "m"(word));
}

void UnmaskSse(unsigned bit)
{
    const std::uint32_t word = 0x1F80u & ~(1u << (bit + 7));
    asm volatile("ldmxcsr %0" : : "m"(word));
}

// The operation on these operands raises the exception that `bit` names.
struct Operands {
    unsigned bit;
    double left;
    double right;
    char operation;
};

constexpr Operands kInvalid = {0, 0.0, 0.0, '/'};
constexpr Operands kDenormal = {1, 4.9e-324, 1.0, '+'};
constexpr Operands kDivide = {2, 1.0, 0.0, '/'};
constexpr Operands kOverflow = {3, 1e308, 1e308, '*'};
constexpr Operands kUnderflow = {4, 1e-308, 1e-308, '*'};
constexpr Operands kInexact = {5, 1.0, 3.0, '/'};

void X87(const Operands& o)
{
    double result = 0.0;
    UnmaskX87(o.bit);
    // Overflow and underflow occur when the store narrows to double; fwait raises an exception that is still pending.
    if (o.operation == '/') {
        asm volatile("fldl %1; fdivl %2; fstpl %0; fwait" : "=m"(result) : "m"(o.left), "m"(o.right));
    } else if (o.operation == '*') {
        asm volatile("fldl %1; fmull %2; fstpl %0; fwait" : "=m"(result) : "m"(o.left), "m"(o.right));
    } else {
        asm volatile("fldl %1; faddl %2; fstpl %0; fwait" : "=m"(result) : "m"(o.left), "m"(o.right));
    }
}

void X87Pending()
{
    UnmaskX87(kDivide.bit);
    asm volatile("fldl %0; fdivl %1" : : "m"(kDivide.left), "m"(kDivide.right));
}

void X87StackOverflow()
{
    UnmaskX87(kInvalid.bit);
    asm volatile("fld1; fld1; fld1; fld1; fld1; fld1; fld1; fld1; fld1; fwait");
}

void Sse(const Operands& o)
{
    UnmaskSse(o.bit);
    if (o.operation == '/') {
        asm volatile("movsd %0, %%xmm0; divsd %1, %%xmm0" : : "m"(o.left), "m"(o.right) : "xmm0");
    } else if (o.operation == '*') {
        asm volatile("movsd %0, %%xmm0; mulsd %1, %%xmm0" : : "m"(o.left), "m"(o.right) : "xmm0");
    } else {
        asm volatile("movsd %0, %%xmm0; addsd %1, %%xmm0" : : "m"(o.left), "m"(o.right) : "xmm0");
    }
}

void CallData()
{
    static volatile unsigned char data[16] = {0xC3};
    reinterpret_cast<void (*)()>(reinterpret_cast<std::uintptr_t>(&data[0]))();
}

void Misaligned()
{
    alignas(16) static char data[32];
    asm volatile("movaps (%0), %%xmm0" : : "r"(data + 1) : "xmm0", "memory");
}

volatile bool endless = true;

[[gnu::noinline]] int Recurse(volatile char* above)
{
    volatile char room[500];
    room[0] = *above;
    if (!endless) return room[0];
    return Recurse(room) + room[0];
}

HRESULT Bounds()
{
#ifdef _WIN64
    return kMissing;
#else
    static const std::int32_t bounds[2] = {0, 3};
    asm volatile(".byte 0x62, 0x01" : : "a"(7), "c"(bounds) : "memory");  // bound eax, [ecx]
    return kDone;
#endif
}

HRESULT IntoOverflow()
{
#ifdef _WIN64
    return kMissing;
#else
    asm volatile("movl $0x7FFFFFFF, %%eax; addl $1, %%eax; .byte 0xCE" : : : "eax", "cc");  // into
    return kDone;
#endif
}

HRESULT ThrowInside()
{
    try {
        throw std::runtime_error("stays inside");
    } catch (const std::exception&) {
        return kHandled;
    }
}

// Calls abort of ucrtbase.dll, as a package built for the universal runtime library does.
HRESULT UniversalAbort()
{
    const HMODULE library = LoadLibraryW(L"ucrtbase.dll");
    if (!library) return kMissing;
    reinterpret_cast<void (*)()>(reinterpret_cast<void*>(GetProcAddress(library, "abort")))();
    return kDone;
}

HRESULT Do(const faulty::Order& order)
{
    char start = 0;
    static char mutableText[] = "mutable text of a package";
    switch (order.deed) {
        case Deed::Return: return kDone;
        case Deed::WriteNull: asm volatile("xor %%eax, %%eax; movl $1, (%%eax)" : : : "eax", "memory"); break;
        case Deed::CallNull: asm volatile("xor %%eax, %%eax; call *%0" : : "a"(std::uintptr_t{0}) : "memory"); break;
        case Deed::JumpToData: CallData(); break;
        case Deed::MisalignedVector: Misaligned(); break;
        case Deed::DivideByZero:
            asm volatile("xorl %%ecx, %%ecx; movl $1, %%eax; cltd; idivl %%ecx" : : : "eax", "ecx", "edx");
            break;
        case Deed::Breakpoint: asm volatile("int3"); break;
        case Deed::SingleStep:
#ifdef _WIN64
            asm volatile("pushfq; orl $0x100, (%rsp); popfq; nop; nop");
#else
            asm volatile("pushfl; orl $0x100, (%esp); popfl; nop; nop");
#endif
            break;
        case Deed::Privileged: asm volatile("hlt"); break;
        case Deed::Illegal: asm volatile("ud2"); break;
        case Deed::Bounds: return Bounds();
        case Deed::IntoOverflow: return IntoOverflow();
        case Deed::X87Divide: X87(kDivide); break;
        case Deed::X87DividePending: X87Pending(); break;
        case Deed::X87Invalid: X87(kInvalid); break;
        case Deed::X87Overflow: X87(kOverflow); break;
        case Deed::X87Underflow: X87(kUnderflow); break;
        case Deed::X87Inexact: X87(kInexact); break;
        case Deed::X87Denormal: X87(kDenormal); break;
        case Deed::X87StackOverflow: X87StackOverflow(); break;
        case Deed::SseDivide: Sse(kDivide); break;
        case Deed::SseInvalid: Sse(kInvalid); break;
        case Deed::SseOverflow: Sse(kOverflow); break;
        case Deed::SseUnderflow: Sse(kUnderflow); break;
        case Deed::SseInexact: Sse(kInexact); break;
        case Deed::SseDenormal: Sse(kDenormal); break;
        case Deed::DirectionFlagFault: asm volatile("std; ud2"); break;
        case Deed::StackOverflow: Recurse(&start); break;
        case Deed::Raise: RaiseException(order.code, order.flags, 0, nullptr); break;
        case Deed::HandledFault: return FaultyHandledFault();
        case Deed::ThrowText: throw static_cast<const char*>("text of a package");
        case Deed::ThrowMutableText: throw static_cast<char*>(mutableText);
        case Deed::ThrowRuntimeError: throw std::runtime_error("runtime error of a package");
        case Deed::ThrowInt: throw 42;
        case Deed::ThrowInside: return ThrowInside();
        case Deed::Terminate: std::terminate();
        case Deed::Abort: std::abort();
        case Deed::UniversalAbort: return UniversalAbort();
        case Deed::CallBack: order.callBack(order.context); break;
    }
    return kDone;
}

}  // namespace

extern "C" __declspec(dllexport) HRESULT Misbehave(const faulty::Order* order) { return Do(*order); }
