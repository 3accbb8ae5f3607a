// What a long task allows while it runs: messages, but no keys or clicks in its window; pressing Esc ends it.
#include "shell/log_viewer/long_task.h"
#include "tests/unit/support/has_display.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

namespace zelt::test {
namespace {

constexpr UINT kNote = WM_APP + 5;
constexpr UINT kEndless = WM_APP + 6;  // posts itself again, until `endless` is over

class RunningTask : public testing::Test {
protected:
    void SetUp() override
    {
        if (!HasDisplay()) GTEST_SKIP() << "needs a display";
        window = Make(HWND_MESSAGE, WS_POPUP);
        child = Make(window, WS_CHILD);
        other = Make(HWND_MESSAGE, WS_POPUP);
        received.clear();
    }
    void TearDown() override
    {
        for (const HWND made : {other, window}) {
            if (made) DestroyWindow(made);
        }
    }

    // Continues until everything posted has been received, or the task is cancelled.
    static void Run(LongTask& task)
    {
        MSG waiting;
        bool wanted = true;
        while (wanted && PeekMessageW(&waiting, nullptr, 0, 0, PM_NOREMOVE)) wanted = task.Continue();
    }

    HWND window = nullptr, child = nullptr, other = nullptr;
    static inline std::vector<std::pair<HWND, UINT>> received;
    static inline ULONGLONG endless = 0;

private:
    static HWND Make(HWND parent, DWORD style)
    {
        const HWND made = CreateWindowExW(0, L"STATIC", L"", style, 0, 0, 10, 10, parent, nullptr, nullptr, nullptr);
        EXPECT_TRUE(made);
        own = reinterpret_cast<WNDPROC>(SetWindowLongPtrW(made, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Procedure)));
        return made;
    }
    static LRESULT CALLBACK Procedure(HWND receiver, UINT message, WPARAM wParam, LPARAM lParam)
    {
        if (message == WM_KEYUP || message == WM_LBUTTONDOWN || message == kNote) {
            received.emplace_back(receiver, message);
        }
        if (message == kEndless && GetTickCount64() < endless) PostMessageW(receiver, message, wParam, lParam);
        return CallWindowProcW(own, receiver, message, wParam, lParam);
    }

    static inline WNDPROC own = nullptr;
};

TEST_F(RunningTask, DropsTheInputOfItsWindowAndNothingElse)
{
    LongTask task(window);
    for (const HWND receiver : {window, child, other}) {
        for (const UINT message : {static_cast<UINT>(WM_KEYUP), static_cast<UINT>(WM_LBUTTONDOWN), kNote}) {
            PostMessageW(receiver, message, 0, 0);
        }
    }
    Run(task);
    const std::vector<std::pair<HWND, UINT>> expected = {
        {window, kNote}, {child, kNote}, {other, WM_KEYUP}, {other, WM_LBUTTONDOWN}, {other, kNote}};
    EXPECT_EQ(expected, received);
    EXPECT_FALSE(task.Cancelled());
}

TEST_F(RunningTask, EndsWithEscAndWithNothingElse)
{
    LongTask task(window);
    PostMessageW(window, WM_KEYDOWN, VK_RETURN, 0);
    // Releasing Esc does not count: the key may have been pressed before the task began.
    PostMessageW(window, WM_KEYUP, VK_ESCAPE, 0);
    // The same number means something else in another message.
    PostMessageW(window, kNote, VK_ESCAPE, 0);
    Run(task);
    EXPECT_FALSE(task.Cancelled());
    PostMessageW(child, WM_KEYDOWN, VK_ESCAPE, 0);
    Run(task);
    EXPECT_TRUE(task.Cancelled());
    EXPECT_FALSE(task.Continue());
}

TEST_F(RunningTask, EndsWithItsThreadAndLetsItKnow)
{
    LongTask task(window);
    PostQuitMessage(9);
    while (task.Continue()) continue;
    MSG message = {};
    EXPECT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(static_cast<UINT>(WM_QUIT), message.message);
    EXPECT_EQ(9u, message.wParam);
}

TEST_F(RunningTask, GoesOnAlthoughThereIsNoEndOfMessages)
{
    LongTask task(window);
    endless = GetTickCount64() + 5000;
    PostMessageW(other, kEndless, 0, 0);
    Sleep(100);
    EXPECT_TRUE(task.ContinueNow());
    MSG message = {};
    EXPECT_TRUE(PeekMessageW(&message, other, kEndless, kEndless, PM_REMOVE));
}

TEST_F(RunningTask, IsKnownAsLongAsItRuns)
{
    EXPECT_EQ(nullptr, LongTask::Running());
    {
        const LongTask task(window);
        EXPECT_EQ(&task, LongTask::Running());
    }
    EXPECT_EQ(nullptr, LongTask::Running());
}

}  // namespace
}  // namespace zelt::test
