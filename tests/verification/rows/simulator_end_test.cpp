// A simulator that is killed while it holds a manager: COM releases its references, and the server ends.
#include <gtest/gtest.h>

#include "system/owners.h"
#include "tests/system/harness/own_scope.h"
#include "tests/system/registration/processes.h"
#include "tests/verification/rows/needs.h"

namespace zelt::test {
namespace {

// COM releases the references after three missed pings, which are due every two minutes. The server then pauses before it ends.
constexpr DWORD kLongest = 12 * 60 * 1000;

TEST(LongKilledSimulator, IsForgottenByTheServer)
{
    NEEDS("windows");
    ASSERT_EQ(0u, RunToEnd(ServerPath(), RegisterArgument()));
    struct Registered {
        ~Registered() { RunToEnd(ServerPath(), UnregisterArgument()); }
    } const registered;
    const std::wstring event = L"ZELT test kills " + std::to_wstring(GetCurrentProcessId());
    const UniqueHandle held{CreateEventW(nullptr, TRUE, FALSE, event.c_str())};
    const UniqueHandle release{CreateEventW(nullptr, TRUE, FALSE, (event + L".release").c_str())};
    Process client = Start(ClientPath(), L"ZELT.PropertyPackageManager \"" + event + L'"');
    ASSERT_EQ(WAIT_OBJECT_0, WaitForSingleObject(held.get(), 60'000));
    EXPECT_EQ(1u, ProcessIds(L"ZELT.EXE").size());
    client.Kill();
    EXPECT_TRUE(WaitUntilGone(L"ZELT.EXE", kLongest));
}

}  // namespace
}  // namespace zelt::test
