#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

#include "log/log_location.h"
#include "tests/system/harness/scratch_registry.h"

// The real dialog, answered by a second thread. Needs a display.
namespace {

namespace fs = std::filesystem;

// Contains the process number, because another process may show a similar dialog at the same time.
const std::wstring kTitle = L"Create log for the dialog test " + std::to_wstring(GetCurrentProcessId()) + L":";
constexpr int kFileName = 0x47C;  // The file name field of the dialog's classic template.

struct Answer {
    std::wstring fileName;
    int button;
    bool found = false, topmost = false;
    std::atomic<bool> isOver = false;  // ChooseLogPath has returned, so no dialog will appear any more
    std::wstring initialName = L"none";

    void operator()()
    {
        // The window exists before its controls are filled, so wait until it is shown.
        HWND dialog = nullptr;
        while (!IsWindowVisible(dialog = FindWindowW(nullptr, kTitle.c_str()))) {
            if (isOver) return;
            Sleep(50);
        }
        found = true;
        topmost = GetWindowLongPtrW(dialog, GWL_EXSTYLE) & WS_EX_TOPMOST;
        wchar_t text[MAX_PATH] = L"";
        GetDlgItemTextW(dialog, kFileName, text, MAX_PATH);
        initialName = text;
        SetDlgItemTextW(dialog, kFileName, fileName.c_str());
        SendMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(button), 0);
    }
};

class SaveDialog : public testing::Test {
protected:
    void SetUp() override
    {
        if (std::getenv("WINEPREFIX") && !std::getenv("DISPLAY")) GTEST_SKIP() << "needs a display";
        zelt::SetLogSurroundings(nullptr);
        options.root = scratch.Root();
    }
    bool Choose(Answer& answer)
    {
        std::thread user(std::ref(answer));
        std::optional<std::wstring> chosen;
        EXPECT_TRUE(zelt::ChooseLogPath(options, kTitle, chosen));
        answer.isOver = true;
        user.join();
        path = chosen.value_or(L"");
        return chosen.has_value();
    }
    zelt::test::ScratchKey scratch;
    zelt::LogOptions options;
    std::wstring path;
};

TEST_F(SaveDialog, StandsTopmostAndAddsTheExtension)
{
    const fs::path folder = fs::current_path();
    Answer answer{(fs::temp_directory_path() / L"a new log").wstring(), IDOK};
    EXPECT_TRUE(Choose(answer));
    EXPECT_TRUE(answer.found);
    EXPECT_TRUE(answer.topmost);
    EXPECT_EQ(L"", answer.initialName);
    EXPECT_EQ(fs::temp_directory_path() / L"a new log.zlg", fs::path(path));
    EXPECT_FALSE(fs::exists(path));
    EXPECT_EQ(folder, fs::current_path());
}

TEST_F(SaveDialog, CancelGivesNoPath)
{
    Answer answer{L"ignored", IDCANCEL};
    EXPECT_FALSE(Choose(answer));
    EXPECT_TRUE(answer.found);
    EXPECT_EQ(L"", path);
}

}  // namespace
