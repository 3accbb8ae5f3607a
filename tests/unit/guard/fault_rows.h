// Faults that a package can commit, each with the exception code that the guard reports, and codes that a package can raise.
#pragma once

#include "tests/unit/guard/faulty_dll/faulty.h"

namespace zelt::tests {

using faulty::Deed;

struct FaultRow {
    const char* name;
    Deed deed;
    DWORD code;
};

// Wine on x86_64 cannot tell a denormal operand from an underflow.
inline bool MayReport(const FaultRow& row, DWORD code)
{
    if (code == row.code) return true;
    return sizeof(void*) == 8 && row.code == EXCEPTION_FLT_DENORMAL_OPERAND && code == EXCEPTION_FLT_UNDERFLOW;
}

// clang-format off
inline constexpr FaultRow kRealFaults[] = {
    {"write to null",          Deed::WriteNull,          EXCEPTION_ACCESS_VIOLATION},
    {"call of null",           Deed::CallNull,           EXCEPTION_ACCESS_VIOLATION},
    {"jump to data",           Deed::JumpToData,         EXCEPTION_ACCESS_VIOLATION},
    {"misaligned vector",      Deed::MisalignedVector,   EXCEPTION_ACCESS_VIOLATION},
    {"divide by zero",         Deed::DivideByZero,       EXCEPTION_INT_DIVIDE_BY_ZERO},
    {"breakpoint",             Deed::Breakpoint,         EXCEPTION_BREAKPOINT},
    {"single step",            Deed::SingleStep,         EXCEPTION_SINGLE_STEP},
    {"privileged",             Deed::Privileged,         EXCEPTION_PRIV_INSTRUCTION},
    {"illegal",                Deed::Illegal,            EXCEPTION_ILLEGAL_INSTRUCTION},
    {"bounds",                 Deed::Bounds,             EXCEPTION_ARRAY_BOUNDS_EXCEEDED},
    {"overflow trap",          Deed::IntoOverflow,       EXCEPTION_INT_OVERFLOW},
    {"direction flag",         Deed::DirectionFlagFault, EXCEPTION_ILLEGAL_INSTRUCTION},
    {"x87 divide",             Deed::X87Divide,          EXCEPTION_FLT_DIVIDE_BY_ZERO},
    {"x87 divide, pending",    Deed::X87DividePending,   EXCEPTION_FLT_DIVIDE_BY_ZERO},
    {"x87 invalid",            Deed::X87Invalid,         EXCEPTION_FLT_INVALID_OPERATION},
    {"x87 overflow",           Deed::X87Overflow,        EXCEPTION_FLT_OVERFLOW},
    {"x87 underflow",          Deed::X87Underflow,       EXCEPTION_FLT_UNDERFLOW},
    {"x87 inexact",            Deed::X87Inexact,         EXCEPTION_FLT_INEXACT_RESULT},
    {"x87 denormal",           Deed::X87Denormal,        EXCEPTION_FLT_DENORMAL_OPERAND},
    {"x87 stack",              Deed::X87StackOverflow,   EXCEPTION_FLT_STACK_CHECK},
    {"sse divide",             Deed::SseDivide,          EXCEPTION_FLT_DIVIDE_BY_ZERO},
    {"sse invalid",            Deed::SseInvalid,         EXCEPTION_FLT_INVALID_OPERATION},
    {"sse denormal",           Deed::SseDenormal,        EXCEPTION_FLT_DENORMAL_OPERAND},
    {"sse overflow",           Deed::SseOverflow,        EXCEPTION_FLT_OVERFLOW},
    {"sse underflow",          Deed::SseUnderflow,       EXCEPTION_FLT_UNDERFLOW},
    {"sse inexact",            Deed::SseInexact,         EXCEPTION_FLT_INEXACT_RESULT},
};
// clang-format on

inline bool Exists(Deed deed) { return sizeof(void*) == 4 || (deed != Deed::Bounds && deed != Deed::IntoOverflow); }

// Codes that packages pass to RaiseException.
inline constexpr DWORD kRaisedCodes[] = {
    EXCEPTION_ACCESS_VIOLATION,
    EXCEPTION_DATATYPE_MISALIGNMENT,
    EXCEPTION_BREAKPOINT,
    EXCEPTION_SINGLE_STEP,
    EXCEPTION_IN_PAGE_ERROR,
    EXCEPTION_ILLEGAL_INSTRUCTION,
    EXCEPTION_INVALID_DISPOSITION,
    EXCEPTION_NONCONTINUABLE_EXCEPTION,
    EXCEPTION_ARRAY_BOUNDS_EXCEEDED,
    EXCEPTION_FLT_DENORMAL_OPERAND,
    EXCEPTION_FLT_DIVIDE_BY_ZERO,
    EXCEPTION_FLT_INEXACT_RESULT,
    EXCEPTION_FLT_INVALID_OPERATION,
    EXCEPTION_FLT_OVERFLOW,
    EXCEPTION_FLT_STACK_CHECK,
    EXCEPTION_FLT_UNDERFLOW,
    EXCEPTION_INT_DIVIDE_BY_ZERO,
    EXCEPTION_INT_OVERFLOW,
    EXCEPTION_PRIV_INSTRUCTION,
    EXCEPTION_STACK_OVERFLOW,
    EXCEPTION_GUARD_PAGE,
    0xE0001234,
    0x0EEDFADE,
    0xE0434352,
    0xE0414254,
    0x00000001,
    0xC0000027,
};

}  // namespace zelt::tests
