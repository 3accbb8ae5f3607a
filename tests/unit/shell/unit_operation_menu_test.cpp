#include <gtest/gtest.h>

#include "res/resource.h"
#include "shell/main_window/unit_operation_menu.h"

namespace {

constexpr CLSID kFlash = {1, 0, 0, {}}, kMixer = {2, 0, 0, {}}, kGone = {3, 0, 0, {}};

class UnitOperationMenu : public testing::Test {
protected:
    void SetUp() override
    {
        AppendMenuW(menu, MF_STRING, kCommandAskUser, L"&Ask user");
        AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    }
    void TearDown() override { DestroyMenu(menu); }

    // One line per item: x if checked, its command and text; "-" for a separator.
    std::wstring Text()
    {
        std::wstring text;
        for (int index = 0; index < GetMenuItemCount(menu); ++index) {
            wchar_t label[256] = L"";
            GetMenuStringW(menu, static_cast<UINT>(index), label, 256, MF_BYPOSITION);
            const UINT state = GetMenuState(menu, static_cast<UINT>(index), MF_BYPOSITION);
            if (state & MF_SEPARATOR) {
                text += L"-\n";
                continue;
            }
            text += (state & MF_CHECKED ? L"x " : L"  ") + std::to_wstring(GetMenuItemID(menu, index)) + L' ' + label +
                    L'\n';
        }
        return text;
    }

    const HMENU menu = CreatePopupMenu();
    const std::vector<zelt::ComponentInfo> installed = {{kFlash, L"Flash & mix", L""}, {kMixer, L"Mixer (two)", L""}};
};

TEST_F(UnitOperationMenu, ChecksWhatIsChosen)
{
    zelt::PrepareUnitOperationMenu(menu, installed, kMixer);
    EXPECT_EQ(L"  907 &Ask user\n-\n  212 Flash && mix\nx 213 Mixer (two)\n", Text());
    zelt::PrepareUnitOperationMenu(menu, installed, CLSID{});
    EXPECT_EQ(L"x 907 &Ask user\n-\n  212 Flash && mix\n  213 Mixer (two)\n", Text());
}

TEST_F(UnitOperationMenu, AChoiceThatIsNotInstalledIsUnknown)
{
    zelt::PrepareUnitOperationMenu(menu, installed, kGone);
    EXPECT_EQ(L"  907 &Ask user\n-\n  212 Flash && mix\n  213 Mixer (two)\nx 812 <Unknown>\n", Text());
    zelt::PrepareUnitOperationMenu(menu, {}, kFlash);
    EXPECT_EQ(L"  907 &Ask user\n-\nx 812 <Unknown>\n", Text());
    zelt::PrepareUnitOperationMenu(menu, {}, CLSID{});
    EXPECT_EQ(L"x 907 &Ask user\n-\n", Text());
}

TEST_F(UnitOperationMenu, CommandsStandForWhatIsInstalled)
{
    EXPECT_EQ(kFlash, zelt::UnitOperationOf(212, installed));
    EXPECT_EQ(kMixer, zelt::UnitOperationOf(213, installed));
    EXPECT_FALSE(zelt::UnitOperationOf(211, installed));
    EXPECT_FALSE(zelt::UnitOperationOf(214, installed));
    EXPECT_FALSE(zelt::UnitOperationOf(812, installed));
    const std::vector<zelt::ComponentInfo> many(700, {kFlash, L"Flash", L""});
    EXPECT_TRUE(zelt::UnitOperationOf(812, many));
    EXPECT_FALSE(zelt::UnitOperationOf(813, many));
    zelt::PrepareUnitOperationMenu(menu, many, kFlash);
    EXPECT_EQ(2 + 601, GetMenuItemCount(menu));
}

}  // namespace
