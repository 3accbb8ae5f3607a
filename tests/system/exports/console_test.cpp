// The console's code page, in a console that the test allocates.
#include "ctl/console.h"

#include <gtest/gtest.h>

namespace zelt::test {
namespace {

constexpr UINT kPage = 850;
HANDLE ended = nullptr;

// The Ctrl+C handler that is called last; it keeps the process alive.
BOOL CALLBACK Survive(DWORD)
{
    SetEvent(ended);
    return TRUE;
}

class Console : public testing::Test {
protected:
    void SetUp() override
    {
        FreeConsole();
        if (!AllocConsole() || !SetConsoleOutputCP(kPage)) GTEST_SKIP() << "no console here";
        ASSERT_EQ(kPage, GetConsoleOutputCP());
        ended = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    }
    void TearDown() override
    {
        FreeConsole();
        AttachConsole(ATTACH_PARENT_PROCESS);
        if (ended) CloseHandle(ended);
        ended = nullptr;
    }
};

TEST_F(Console, HasItsCodePageAgainAtTheEnd)
{
    {
        const ctl::Utf8Console console;
        EXPECT_EQ(static_cast<UINT>(CP_UTF8), GetConsoleOutputCP());
    }
    EXPECT_EQ(kPage, GetConsoleOutputCP());
}

TEST_F(Console, HasItsCodePageAgainAfterCtrlC)
{
    SetConsoleCtrlHandler(nullptr, FALSE);  // the parent process may have switched Ctrl+C off
    SetConsoleCtrlHandler(Survive, TRUE);
    {
        const ctl::Utf8Console console;
        ASSERT_TRUE(GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0));
        EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(ended, 20'000));
        EXPECT_EQ(kPage, GetConsoleOutputCP());
    }
    EXPECT_EQ(kPage, GetConsoleOutputCP());
    SetConsoleCtrlHandler(Survive, FALSE);
}

}  // namespace
}  // namespace zelt::test
