// The trap for functions of Microsoft's runtime libraries that end the process. It must be set in the library that is loaded
// from the start, and in older ones that packages load. foreign_throw_test.cpp tests what the trap does for packages.
#include "guard/abort_trap.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "tests/unit/support/faulty_package.h"

namespace zelt {
namespace {

// Many of the system's libraries load ucrtbase.dll when the process starts, so the trap must not wait for a later load.
// Only a run of this test alone in its process checks that.
TEST(AbortTrap, IsInTheUniversalLibraryThatTheProcessBeganWith)
{
    const HMODULE library = GetModuleHandleW(L"ucrtbase.dll");
    if (!library) GTEST_SKIP() << "this system's libraries do not load it";
    const auto end = reinterpret_cast<void (*)()>(reinterpret_cast<void*>(GetProcAddress(library, "abort")));
    ASSERT_NE(nullptr, end);
    // The trap must still work in a second call.
    for (int i = 0; i < 2; ++i) {
        const tests::CallEnd outcome = tests::CallGuarded([end]() -> HRESULT {
            end();
            return S_OK;
        });
        EXPECT_EQ(tests::End::Foreign, outcome.end);
    }
}

template <class Function>
Function Find(HMODULE library, const char* name)
{
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

// Calls the function `name`, which would end the process, twice: the trap must still work in the second call. False if this
// system's library has no such function.
bool EndsCallsOnly(HMODULE library, const char* name)
{
    const auto end = Find<void(__cdecl*)()>(library, name);
    for (int i = 0; end && i < 2; ++i) {
        const tests::CallEnd outcome = tests::CallGuarded([end]() -> HRESULT {
            end();
            return S_OK;
        });
        EXPECT_EQ(tests::End::Foreign, outcome.end) << name << ' ' << i;
    }
    return end != nullptr;
}

class OlderRuntime : public testing::TestWithParam<const wchar_t*> {
protected:
    // Loads the library after the guards are prepared.
    void SetUp() override
    {
        PrepareGuards();
        library = LoadLibraryW(GetParam());
        if (!library) GTEST_SKIP() << "this system does not have it";
    }

    HMODULE library = nullptr;
};

TEST_P(OlderRuntime, LosesOnlyTheCallAtAnAbort)
{
    EXPECT_TRUE(EndsCallsOnly(library, "abort"));
    const auto setBehavior = Find<unsigned(__cdecl*)(unsigned, unsigned)>(library, "_set_abort_behavior");
    EXPECT_EQ(0u, setBehavior ? setBehavior(0, 0) & 1u : 0u) << "abort would show a message";
    const auto setErrorMode = Find<int(__cdecl*)(int)>(library, "_set_error_mode");
    ASSERT_NE(nullptr, setErrorMode);
    EXPECT_EQ(1, setErrorMode(3)) << "errors would show a message";  // _OUT_TO_STDERR, _REPORT_ERRMODE
}

TEST_P(OlderRuntime, LosesOnlyTheCallAtAPureCall)
{
    if (!GetProcAddress(library, "_set_purecall_handler")) GTEST_SKIP() << "the library has no handler";
    EXPECT_TRUE(EndsCallsOnly(library, "_purecall"));
}

TEST_P(OlderRuntime, LosesOnlyTheCallAtAnInvalidParameter)
{
    if (!GetProcAddress(library, "_set_invalid_parameter_handler")) GTEST_SKIP() << "the library has no handler";
    EXPECT_TRUE(EndsCallsOnly(library, "_invalid_parameter_noinfo"));
}

int reports = 0;
void __cdecl CountReport(const wchar_t*, const wchar_t*, const wchar_t*, unsigned, std::uintptr_t) { ++reports; }

TEST_P(OlderRuntime, KeepsThePackagesOwnHandler)
{
    using Handler = void(__cdecl*)(const wchar_t*, const wchar_t*, const wchar_t*, unsigned, std::uintptr_t);
    const auto set = Find<Handler(__cdecl*)(Handler)>(library, "_set_invalid_parameter_handler");
    const auto report = Find<void(__cdecl*)()>(library, "_invalid_parameter_noinfo");
    if (!set || !report) GTEST_SKIP() << "the library has no handler";
    const Handler before = set(CountReport);
    reports = 0;
    EXPECT_TRUE(EndsCallsOnly(library, "abort"));  // sets all traps again if the library is new
    const tests::CallEnd outcome = tests::CallGuarded([report]() -> HRESULT {
        report();
        return S_OK;
    });
    set(before);
    EXPECT_EQ(tests::End::Returned, outcome.end);
    EXPECT_EQ(1, reports);
}

INSTANTIATE_TEST_SUITE_P(All, OlderRuntime,
                         testing::Values(L"msvcr70.dll", L"msvcr71.dll", L"msvcr80.dll", L"msvcr90.dll",
                                         L"msvcr100.dll", L"msvcr110.dll", L"msvcr120.dll", L"ucrtbase.dll"),
                         [](const auto& row) {
                             const std::wstring name = row.param;
                             return std::string(name.begin(), name.begin() + static_cast<int>(name.find(L'.')));
                         });

}  // namespace
}  // namespace zelt
