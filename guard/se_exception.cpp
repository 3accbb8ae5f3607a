#include "guard/se_exception.h"

namespace zelt {
namespace {

struct Row {
    DWORD code;
    const char* text;
};

// clang-format off
constexpr Row kTexts[] = {
    {EXCEPTION_ACCESS_VIOLATION,         "EXCEPTION_ACCESS_VIOLATION: The thread tried to read from or write to a virtual address for which it does not have the appropriate access."},
    {EXCEPTION_DATATYPE_MISALIGNMENT,    "EXCEPTION_DATATYPE_MISALIGNMENT: The thread tried to read or write data that is misaligned on hardware that does not provide alignment. For example, 16-bit values must be aligned on 2-byte boundaries; 32-bit values on 4-byte boundaries, and so on."},
    {EXCEPTION_BREAKPOINT,               "EXCEPTION_BREAKPOINT: A breakpoint was encountered."},
    {EXCEPTION_SINGLE_STEP,              "EXCEPTION_SINGLE_STEP: A trace trap or other single-instruction mechanism signaled that one instruction has been executed."},
    {EXCEPTION_IN_PAGE_ERROR,            "EXCEPTION_IN_PAGE_ERROR: The thread tried to access a page that was not present, and the system was unable to load the page. For example, this exception might occur if a network connection is lost while running a program over the network."},
    {EXCEPTION_ILLEGAL_INSTRUCTION,      "EXCEPTION_ILLEGAL_INSTRUCTION: The thread tried to execute an invalid instruction."},
    {EXCEPTION_NONCONTINUABLE_EXCEPTION, "EXCEPTION_NONCONTINUABLE_EXCEPTION: The thread tried to continue execution after a noncontinuable exception occurred."},
    {EXCEPTION_INVALID_DISPOSITION,      "EXCEPTION_INVALID_DISPOSITION: An exception handler returned an invalid disposition to the exception dispatcher. Programmers using a high-level language such as C should never encounter this exception."},
    {EXCEPTION_ARRAY_BOUNDS_EXCEEDED,    "EXCEPTION_ARRAY_BOUNDS_EXCEEDED: The thread tried to access an array element that is out of bounds and the underlying hardware supports bounds checking."},
    {EXCEPTION_FLT_DENORMAL_OPERAND,     "EXCEPTION_FLT_DENORMAL_OPERAND: One of the operands in a floating-point operation is denormal. A denormal value is one that is too small to represent as a standard floating-point value."},
    {EXCEPTION_FLT_DIVIDE_BY_ZERO,       "EXCEPTION_FLT_DIVIDE_BY_ZERO: The thread tried to divide a floating-point value by a floating-point divisor of zero."},
    {EXCEPTION_FLT_INEXACT_RESULT,       "EXCEPTION_FLT_INEXACT_RESULT: The result of a floating-point operation cannot be represented exactly as a decimal fraction."},
    {EXCEPTION_FLT_INVALID_OPERATION,    "EXCEPTION_FLT_INVALID_OPERATION: This exception represents any floating-point exception not included in this list."},
    {EXCEPTION_FLT_OVERFLOW,             "EXCEPTION_FLT_OVERFLOW: The exponent of a floating-point operation is greater than the magnitude allowed by the corresponding type."},
    {EXCEPTION_FLT_STACK_CHECK,          "EXCEPTION_FLT_STACK_CHECK: The stack overflowed or underflowed as the result of a floating-point operation."},
    {EXCEPTION_FLT_UNDERFLOW,            "EXCEPTION_FLT_UNDERFLOW: The exponent of a floating-point operation is less than the magnitude allowed by the corresponding type."},
    {EXCEPTION_INT_DIVIDE_BY_ZERO,       "EXCEPTION_INT_DIVIDE_BY_ZERO: The thread tried to divide an integer value by an integer divisor of zero."},
    {EXCEPTION_INT_OVERFLOW,             "EXCEPTION_INT_OVERFLOW: The result of an integer operation caused a carry out of the most significant bit of the result."},
    {EXCEPTION_PRIV_INSTRUCTION,         "EXCEPTION_PRIV_INSTRUCTION: The thread tried to execute an instruction whose operation is not allowed in the current machine mode."},
    {EXCEPTION_STACK_OVERFLOW,           "EXCEPTION_STACK_OVERFLOW: The thread used up its stack."},
};
// clang-format on

}  // namespace

const char* SE_Exception::Text() const
{
    for (const Row& row : kTexts) {
        if (row.code == code) return row.text;
    }
    return "Unknown SEH exception";
}

}  // namespace zelt
