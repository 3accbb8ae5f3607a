// The trap for aborts in runtime libraries that were there before the first guarded call. What it does for packages is in the test of
// what they throw.
#include "guard/abort_trap.h"

#include <gtest/gtest.h>

#include "tests/unit/support/faulty_package.h"

namespace zelt {
namespace {

// Many of the system's libraries bring it. A test that runs alone in its process has loaded nothing since.
TEST(AbortTrap, IsInTheUniversalLibraryThatTheProcessBeganWith)
{
    const HMODULE library = GetModuleHandleW(L"ucrtbase.dll");
    if (!library) GTEST_SKIP() << "this system's libraries do without it";
    const auto end = reinterpret_cast<void (*)()>(reinterpret_cast<void*>(GetProcAddress(library, "abort")));
    ASSERT_NE(nullptr, end);
    // The second time it is the trap that the first one set again.
    for (int i = 0; i < 2; ++i) {
        const tests::Outcome outcome = tests::CallGuarded([end]() -> HRESULT {
            end();
            return S_OK;
        });
        EXPECT_EQ(tests::End::Foreign, outcome.end);
    }
}

}  // namespace
}  // namespace zelt
