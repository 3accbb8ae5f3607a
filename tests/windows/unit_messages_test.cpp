// The message boxes of the logged unit operation as the system shows them, on a separate thread.
#include <gtest/gtest.h>
#include <objbase.h>

#include <thread>

#include "log/log_location.h"
#include "tests/windows/program.h"
#include "tests/windows/screenshot.h"
#include "unit/select_co_object.h"
#include "unit/unit_operation.h"

namespace {

using namespace zelt;
using namespace zelt::test;
using Microsoft::WRL::ComPtr;

// A class that nobody has registered.
constexpr CLSID kNoUnit = {0x7E57DDDD, 0, 0, {0, 0, 0, 0, 0, 0, 0, 0x77}};
constexpr wchar_t kMessagesKey[] = L"Software\\ZELT message tests";

class UnitMessages : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(ERROR_SUCCESS, settings.Create({}, kMessagesKey));
        options.root = {settings.Get(), 0};
    }
    void TearDown() override { DeleteKeyTree({}, kMessagesKey); }

    // Runs `action` with a unit on another thread, answers the box that appears, and returns its text.
    template <class Action>
    std::wstring BoxOf(const wchar_t* caption, const char* screenshot, Action action)
    {
        std::thread worker([&] {
            CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
            {
                const ComPtr<CUnitOperation> unit(new CUnitOperation(options));
                action(*unit.Get());
            }
            CoUninitialize();
        });
        HWND box = nullptr;
        EXPECT_TRUE(WaitUntil([&] { return (box = FindWindowW(L"#32770", caption)) && IsWindowVisible(box); }));
        std::wstring text;
        if (box) {
            EXPECT_EQ(nullptr, GetWindow(box, GW_OWNER));
            EXPECT_TRUE(KeepScreenshot(box, screenshot));
            text = TextOfWindow(GetDlgItem(box, 0xFFFF));
            PostMessageW(box, WM_COMMAND, IDOK, 0);
        }
        worker.join();
        return text;
    }
    static HRESULT InitNew(CUnitOperation& unit)
    {
        ComPtr<IPersistStreamInit> persistence;
        EXPECT_EQ(S_OK, unit.QueryInterface(IID_PPV_ARGS(&persistence)));
        return persistence->InitNew();
    }

    RegistryKey settings;
    LogOptions options;
};

TEST_F(UnitMessages, AClassThatCannotBeCreated)
{
    options.pravikUnit = kNoUnit;
    EXPECT_EQ(L"REGDB_E_CLASSNOTREG", BoxOf(L"Unit Operation", "unit not created",
                                            [](CUnitOperation& unit) { EXPECT_EQ(E_FAIL, InitNew(unit)); }));
}

TEST_F(UnitMessages, ACancelledSelection)
{
    const UnitSelector before =
        SetUnitSelector([](const std::wstring&, REFCLSID) -> std::optional<CLSID> { return {}; });
    EXPECT_EQ(L"Unit Operation selection has been cancelled. Unit Operation will not be functional.",
              BoxOf(L"Unit Operation", "unit selection cancelled",
                    [](CUnitOperation& unit) { EXPECT_EQ(E_FAIL, InitNew(unit)); }));
    SetUnitSelector(before);
}

TEST_F(UnitMessages, ALogThatCannotBeWritten)
{
    static const LogSurroundings surroundings = {[] { return SYSTEMTIME{}; }, [](std::wstring&) { return false; },
                                                 [](const std::wstring& title, std::wstring& path) {
                                                     EXPECT_EQ(L"Create log for unit operation:", title);
                                                     path = L"C:\\no such folder\\unit.zlg";
                                                     return true;
                                                 }};
    const LogSurroundings* before = SetLogSurroundings(&surroundings);
    const std::wstring text = BoxOf(L"Error:", "unit log not written", [](CUnitOperation& unit) { unit.OpenOwnLog(); });
    SetLogSurroundings(before);
    EXPECT_TRUE(text.starts_with(L"Failed to open log file \"C:\\no such folder\\unit.zlg\" for writing: ")) << text;
    EXPECT_TRUE(text.ends_with(L"\r\nLogging will not be enabled")) << text;
}

}  // namespace
