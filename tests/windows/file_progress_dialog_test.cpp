// The window that shows how much of a log has been read.
#include <gtest/gtest.h>

#include "shell/log_viewer/file_progress_dialog.h"
#include "tests/unit/support/has_display.h"

namespace zelt::test {
namespace {

TEST(FileProgressDialog, LetsTheReadingGoOnAlthoughThereIsNoEndOfMessages)
{
    if (!HasDisplay()) GTEST_SKIP() << "needs a display";
    constexpr UINT kEndless = WM_APP + 6;
    const DWORD thread = GetCurrentThreadId();
    const ULONGLONG end = GetTickCount64() + 5000;
    CFileProgressDialog progress(nullptr, [&](const MSG& message) {
        if (message.message == kEndless && GetTickCount64() < end) PostThreadMessageW(thread, kEndless, 0, 0);
    });
    PostThreadMessageW(thread, kEndless, 0, 0);
    EXPECT_TRUE(progress.AdvanceNow(0.5));
    MSG message = {};
    EXPECT_TRUE(PeekMessageW(&message, nullptr, kEndless, kEndless, PM_REMOVE));
}

}  // namespace
}  // namespace zelt::test
