// A viewer whose window cannot be made: this program has the viewer's code but none of its dialogs.
#include <gtest/gtest.h>

#include "com/server_reference.h"
#include "recorded_messages.h"
#include "system/owners.h"
#include "shell/log_viewer/log_viewer.h"

namespace zelt::test {
namespace {

HANDLE shown = nullptr;
long references = 0;

TEST(LogViewerFailure, AWindowThatCannotBeMadeIsSaidAndLetsTheProcessEnd)
{
    const UniqueHandle event(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    shown = event.get();
    RecordedMessages messages;
    messages.meanwhile = [] {
        // The process lives while the box is open.
        references = com::CountServerReferences();
        SetEvent(shown);
    };
    const long before = com::CountServerReferences();
    OpenLogViewer(L"C:\\logs\\one of them.zlg");
    ASSERT_EQ(WAIT_OBJECT_0, WaitForSingleObject(shown, 20'000));
    // The viewer's thread releases its reference after the box is closed.
    for (int attempt = 0; attempt < 2000 && com::CountServerReferences() != before; ++attempt) Sleep(10);
    EXPECT_GT(references, before);
    ASSERT_EQ(before, com::CountServerReferences());
    ASSERT_EQ(1u, messages.All().size());
    EXPECT_EQ(L"Parse error in log file \"C:\\logs\\one of them.zlg\": the window cannot be made",
              messages.All()[0].text);
    EXPECT_EQ(L"Error:", messages.All()[0].caption);
    EXPECT_EQ(static_cast<UINT>(MB_OK | MB_ICONERROR), messages.All()[0].flags);
}

}  // namespace
}  // namespace zelt::test
