// The lifetime of a dialog's object, whose window may be destroyed in the middle of a handler. Also tests how a dialog handles
// changes of the resolution, and commands.
#include "system/dialogs/dialog.h"

#include <gtest/gtest.h>

#include <functional>

#include "system/dialogs/message_box.h"
#include "system/dialogs/thread_dpi.h"
#include "res/resource.h"
#include "tests/unit/support/recorded_messages.h"
#include "tests/unit/support/has_display.h"

namespace zelt::test {
namespace {

using Events = std::vector<std::string>;
Events events;

// Records what happens to it; deletes itself on request.
class Watched final : public Dialog {
public:
    explicit Watched(bool deletesItself) : deletesItself(deletesItself) {}
    ~Watched() override { events.push_back("deleted"); }

    std::function<void(Watched&)> body;     // what the handler of the next command does
    std::function<void(Watched&)> atStart;  // what OnInit does

    // Runs a handler as a control's own window procedure would.
    void CallGuarded()
    {
        Guarded([this] { OnCommand(1, 0); });
    }

private:
    bool OnInit() override
    {
        if (atStart) atStart(*this);
        return true;
    }
    bool OnCommand(int id, int notification) override
    {
        // Ignores the list box's notifications about focus.
        if (notification != 0) return false;
        if (const auto now = std::exchange(body, nullptr)) now(*this);
        events.push_back("handler " + std::to_string(id) + (Window() ? " ends" : " ends without a window"));
        return true;
    }
    void OnDestroyed() override
    {
        events.push_back("destroyed");
        if (deletesItself) delete this;
    }

    const bool deletesItself;
};

// The process, and so each window of a component, is aware of one resolution only; ZELT's own windows scale themselves.
TEST(DialogResolution, IsThatOfEachScreenForOurWindowsOnly)
{
    if (!HasDisplay()) GTEST_SKIP() << "no display";
    const auto awareness = [] { return GetAwarenessFromDpiAwarenessContext(GetThreadDpiAwarenessContext()); };
    const ForeignWindowsDpi asInTheProduct;
    ASSERT_EQ(DPI_AWARENESS_SYSTEM_AWARE, awareness());
    Watched dialog(false);
    DPI_AWARENESS atStart = DPI_AWARENESS_INVALID, ofComponents = DPI_AWARENESS_INVALID;
    dialog.atStart = [&](Watched&) {
        atStart = awareness();
        const ForeignWindowsDpi dpi;
        ofComponents = awareness();
    };
    ASSERT_NE(nullptr, dialog.CreateModeless(kAboutDialog));
    const auto ofWindow = GetAwarenessFromDpiAwarenessContext(GetWindowDpiAwarenessContext(dialog.Window()));
    EXPECT_EQ(DPI_AWARENESS_PER_MONITOR_AWARE, ofWindow);
    EXPECT_EQ(DPI_AWARENESS_PER_MONITOR_AWARE, atStart);
    EXPECT_EQ(DPI_AWARENESS_SYSTEM_AWARE, ofComponents);
    EXPECT_EQ(DPI_AWARENESS_SYSTEM_AWARE, awareness());
    DestroyWindow(dialog.Window());
}

class DialogLifetime : public testing::Test {
protected:
    void SetUp() override
    {
        if (!HasDisplay()) GTEST_SKIP() << "needs a display";
        events.clear();
    }
    static Watched* Open()
    {
        auto* const dialog = new Watched(true);
        EXPECT_TRUE(dialog->CreateModeless(kSelectDialog));
        return dialog;
    }
};

TEST_F(DialogLifetime, EndsWithTheWindowWhenNoHandlerRuns)
{
    DestroyWindow(Open()->Window());
    EXPECT_EQ((Events{"destroyed", "deleted"}), events);
}

TEST_F(DialogLifetime, EndsAfterTheHandlerThatDestroysTheWindow)
{
    Watched* const dialog = Open();
    dialog->body = [](Watched& self) {
        DestroyWindow(self.Window());
        events.push_back("window destroyed");
    };
    SendMessageW(dialog->Window(), WM_COMMAND, 7, 0);
    EXPECT_EQ((Events{"window destroyed", "handler 7 ends without a window", "destroyed", "deleted"}), events);
}

TEST_F(DialogLifetime, EndsAfterTheOutermostHandler)
{
    Watched* const dialog = Open();
    dialog->body = [](Watched& outer) {
        outer.body = [](Watched& inner) { DestroyWindow(inner.Window()); };
        SendMessageW(outer.Window(), WM_COMMAND, 8, 0);
        events.push_back("between");
        SendMessageW(outer.Window(), WM_COMMAND, 9, 0);
    };
    SendMessageW(dialog->Window(), WM_COMMAND, 7, 0);
    EXPECT_EQ((Events{"handler 8 ends without a window", "between", "handler 7 ends without a window", "destroyed",
                      "deleted"}),
              events);
}

TEST_F(DialogLifetime, EndsAfterAHandlerWhoseBoxLetTheEndIn)
{
    static HWND window;
    Watched* const dialog = Open();
    window = dialog->Window();
    RecordedMessages messages;
    messages.meanwhile = [] { DestroyWindow(window); };
    dialog->body = [](Watched&) { ShowMessage(L"text", L"caption", MB_OK); };
    SendMessageW(window, WM_COMMAND, 7, 0);
    EXPECT_EQ((Events{"handler 7 ends without a window", "destroyed", "deleted"}), events);
}

TEST_F(DialogLifetime, CountsHandlersThatTheSystemCallsElsewhere)
{
    Watched* const dialog = Open();
    dialog->body = [](Watched& self) { DestroyWindow(self.Window()); };
    dialog->CallGuarded();
    EXPECT_EQ((Events{"handler 1 ends without a window", "destroyed", "deleted"}), events);
}

TEST_F(DialogLifetime, EndsAfterAHandlerThatThrows)
{
    Watched* const dialog = Open();
    dialog->body = [](Watched& self) {
        DestroyWindow(self.Window());
        throw std::runtime_error("x");
    };
    SendMessageW(dialog->Window(), WM_COMMAND, 7, 0);
    EXPECT_EQ((Events{"destroyed", "deleted"}), events);
}

TEST_F(DialogLifetime, SurvivesTheEndOfTheWindowWhileItIsMade)
{
    auto* const dialog = new Watched(true);
    dialog->atStart = [](Watched& self) {
        DestroyWindow(self.Window());
        events.push_back("start ends");
    };
    // Whether a handle is returned depends on the system.
    EXPECT_FALSE(IsWindow(dialog->CreateModeless(kSelectDialog)));
    EXPECT_EQ((Events{"start ends", "destroyed", "deleted"}), events);
}

// A dialog without its own handlers.
class Plain final : public Dialog {
public:
    // Whether the dialog handles the command.
    bool Takes(int id) { return OnCommand(id, 0); }
};

TEST_F(DialogLifetime, TakesTheCommandsOfTheTwoButtonsThatEndIt)
{
    Plain dialog;
    ASSERT_TRUE(dialog.CreateModeless(kSelectDialog));
    for (const int id : {IDOK, IDCANCEL}) EXPECT_TRUE(dialog.Takes(id)) << id;
    for (const int id : {0, 3, 7}) EXPECT_FALSE(dialog.Takes(id)) << id;
    DestroyWindow(dialog.Window());
}

// Handles messages until nothing is left in the queue.
void HandlePosted()
{
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
}

TEST_F(DialogLifetime, LeavesTheWindowsMenuToTheSystem)
{
    Watched* const dialog = Open();
    const HWND window = dialog->Window();
    SendMessageW(window, WM_SYSCOMMAND, SC_CLOSE, 0);
    HandlePosted();
    EXPECT_EQ((Events{"handler " + std::to_string(IDCANCEL) + " ends"}), events);
    DestroyWindow(window);
}

// Counts the notifications of a changed resolution.
class Scaling final : public Dialog {
public:
    int scaled = 0;

private:
    void OnScaled() override { ++scaled; }
};

TEST_F(DialogLifetime, ScalesWhenTheSystemHasScaledItsControls)
{
    Scaling dialog;
    ASSERT_TRUE(dialog.CreateModeless(kSelectDialog));
    RECT place = {};
    GetWindowRect(dialog.Window(), &place);
    SendMessageW(dialog.Window(), WM_DPICHANGED, MAKEWPARAM(96, 96), reinterpret_cast<LPARAM>(&place));
    EXPECT_EQ(0, dialog.scaled);
    HandlePosted();
    EXPECT_EQ(1, dialog.scaled);
    DestroyWindow(dialog.Window());
}

TEST_F(DialogLifetime, AWindowThatIsLeftDoesNotLookForItsObject)
{
    HWND window = nullptr;
    {
        Watched dialog(false);
        window = dialog.CreateModeless(kSelectDialog);
        ASSERT_TRUE(window);
    }
    events.clear();
    SendMessageW(window, WM_COMMAND, 7, 0);
    DestroyWindow(window);
    EXPECT_EQ(Events{}, events);
}

}  // namespace
}  // namespace zelt::test
