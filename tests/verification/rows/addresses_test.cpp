// High addresses in 32-bit processes.
#include <gtest/gtest.h>
#include <windows.h>

#include "tests/verification/rows/needs.h"

namespace zelt::test {
namespace {

// When Windows hands out high addresses first, a 32-bit process that can use them gets an address above 2 GB.
TEST(Addresses, AreHandedOutFromTheTop)
{
    NEEDS("windows");
    NEEDS("topdown");
    void* const memory = VirtualAlloc(nullptr, 64 * 1024, MEM_RESERVE, PAGE_NOACCESS);
    EXPECT_GT(reinterpret_cast<ULONG_PTR>(memory), 0x80000000u);
    VirtualFree(memory, 0, MEM_RELEASE);
}

}  // namespace
}  // namespace zelt::test
