// The viewer's menu, in this process, because not every system can read a menu's state from another process.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "res/resource.h"
#include "log_reader/log_reader.h"
#include "shell/log_viewer/view_log_dialog.h"

namespace {

using namespace zelt;

TEST(ViewerMenu, RemovalIsGreyedAfterwards)
{
    const std::filesystem::path log = std::filesystem::temp_directory_path() / L"viewer menu.zlg";
    std::ofstream(log) << "<zeltlogdocument><info value=\"o: QueryInterface for X\"/></zeltlogdocument>";
    PrepareLogReader();
    {
        CViewLogDlg viewer(log.wstring(), Lock());
        ASSERT_TRUE(viewer.Open());
        const HWND window = FindWindowW(nullptr, L"Log file viewer menu.zlg:");
        ASSERT_NE(nullptr, window);
        const auto isGrey = [window](int command) {
            const UINT state = GetMenuState(GetMenu(window), static_cast<UINT>(command), MF_BYCOMMAND);
            EXPECT_NE(static_cast<UINT>(-1), state);
            return (state & (MF_GRAYED | MF_DISABLED)) != 0;
        };
        EXPECT_FALSE(isGrey(kCommandRemoveQueries));
        SendMessageW(window, WM_COMMAND, kCommandRemoveQueries, 0);
        EXPECT_TRUE(isGrey(kCommandRemoveQueries));
        EXPECT_FALSE(isGrey(kCommandExpandAll));
        const auto isChecked = [window] {
            return (GetMenuState(GetMenu(window), kCommandErrorDetails, MF_BYCOMMAND) & MF_CHECKED) != 0;
        };
        const bool before = isChecked();
        for (const bool expected : {!before, before}) {
            SendMessageW(window, WM_COMMAND, kCommandErrorDetails, 0);
            EXPECT_EQ(expected, isChecked());
        }
        DestroyWindow(window);
    }
    std::filesystem::remove(log);
}

}  // namespace
