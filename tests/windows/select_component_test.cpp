// The dialog that selects a unit operation, in this process, on a separate thread, with classes that a test made up.
#include <gtest/gtest.h>
#include <objbase.h>

#include <algorithm>
#include <thread>

#include "system/registry.h"
#include "res/resource.h"
#include "tests/windows/program.h"
#include "tests/windows/screenshot.h"
#include "unit/select_co_object.h"
#include "unit/unit_operation.h"

namespace {

using namespace zelt;
using namespace zelt::test;

constexpr wchar_t kSelectionKey[] = L"Software\\ZELT selection tests";
constexpr wchar_t kSelectionTitle[] = L"Select Unit Operation:";

// The first three are in the order of the registry, which is not the order of their names.
constexpr wchar_t kZebra[] = L"{7E57DDDD-0000-0000-0000-000000000011}";
constexpr wchar_t kNameless[] = L"{7E57DDDD-0000-0000-0000-000000000012}";
constexpr wchar_t kApple[] = L"{7E57DDDD-0000-0000-0000-000000000013}";
constexpr wchar_t kPravik[] = L"{2FD53BB5-1013-418D-BAB6-15DF8AD606A6}";

// The dialog's result, and the chosen class.
struct Outcome {
    INT_PTR result = -1;
    std::wstring chosen;
};

// The open dialog, as the user sees it.
class OpenDialog {
public:
    explicit OpenDialog(HWND window) : window(window), list(GetDlgItem(window, kComponentList)) {}

    HWND Window() const { return window; }
    bool IsOpen() const { return IsWindow(window) && IsWindowVisible(window); }
    std::vector<std::wstring> Rows() const
    {
        std::vector<std::wstring> rows(static_cast<std::size_t>(SendMessageW(list, LB_GETCOUNT, 0, 0)));
        for (std::size_t row = 0; row < rows.size(); ++row) {
            rows[row].resize(static_cast<std::size_t>(SendMessageW(list, LB_GETTEXTLEN, row, 0)));
            SendMessageW(list, LB_GETTEXT, row, reinterpret_cast<LPARAM>(rows[row].data()));
        }
        return rows;
    }
    void Select(int row) const { SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(row), 0); }
    // Sends the command, so that the dialog has acted when this returns.
    void Press(int button) const
    {
        SendMessageW(window, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                     reinterpret_cast<LPARAM>(GetDlgItem(window, button)));
    }
    void DoubleClick() const
    {
        SendMessageW(window, WM_COMMAND, MAKEWPARAM(kComponentList, LBN_DBLCLK), reinterpret_cast<LPARAM>(list));
    }

private:
    HWND window;
    HWND list;
};

class SelectComponent : public testing::Test {
protected:
    void SetUp() override
    {
        DeleteKeyTree({}, kSelectionKey);
        ASSERT_EQ(ERROR_SUCCESS, classes.Create({}, kSelectionKey));
        RegistryKey top;
        ASSERT_EQ(ERROR_SUCCESS, top.Create({classes.Get(), 0}, L"CLSID"));
    }
    void TearDown() override { DeleteKeyTree({}, kSelectionKey); }

    void Register(const wchar_t* classId, const wchar_t* name, const wchar_t* description = nullptr)
    {
        const std::wstring path = std::wstring(L"CLSID\\") + classId;
        RegistryKey key;
        ASSERT_EQ(ERROR_SUCCESS,
                  key.Create({classes.Get(), 0}, path + L"\\Implemented Categories\\" + kUnitOperationCategory));
        if (!name) return;
        ASSERT_EQ(ERROR_SUCCESS, key.Create({classes.Get(), 0}, path + L"\\CapeDescription"));
        ASSERT_EQ(ERROR_SUCCESS, key.WriteString(L"Name", name));
        if (description) {
            ASSERT_EQ(ERROR_SUCCESS, key.WriteString(L"Description", description));
        }
    }
    void RegisterSome()
    {
        Register(kZebra, L"Zebra mixer", L"mixes");
        Register(kNameless, nullptr);
        Register(kApple, L"Apple splitter");
        Register(kPravik, L"PRAVIK Logged Unit Operation");
    }
    // Shows the dialog and lets `user` act; `user` must close it.
    template <class User>
    Outcome Show(User user)
    {
        Outcome outcome;
        std::thread dialogThread([&] {
            CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
            {
                CSelectCOObject dialog(kSelectionTitle, kUnitOperationCategory, kUnitOperationClass,
                                       {{classes.Get(), 0}, {nullptr, 0}});
                outcome.result = dialog.DoModal(nullptr);
                if (outcome.result == IDOK) {
                    wchar_t text[64];
                    const auto& component = dialog.Components()[static_cast<std::size_t>(dialog.Selection())];
                    StringFromGUID2(component.classId, text, 64);
                    outcome.chosen = text;
                }
            }
            CoUninitialize();
        });
        HWND window = nullptr;
        EXPECT_TRUE(
            WaitUntil([&] { return (window = FindWindowW(nullptr, kSelectionTitle)) && IsWindowVisible(window); }));
        if (window) user(OpenDialog(window));
        dialogThread.join();
        return outcome;
    }

    RegistryKey classes;
};

TEST_F(SelectComponent, ListsTheUnitOperationsButPravik)
{
    RegisterSome();
    const Outcome outcome = Show([](const OpenDialog& dialog) {
        EXPECT_EQ((std::vector<std::wstring>{kNameless, L"Apple splitter", L"Zebra mixer (mixes)"}), dialog.Rows());
        dialog.Select(1);
        EXPECT_TRUE(KeepScreenshot(dialog.Window(), "select unit operation"));
        dialog.Press(IDCANCEL);
    });
    EXPECT_EQ(IDCANCEL, outcome.result);
    EXPECT_EQ(L"", outcome.chosen);
}

TEST_F(SelectComponent, TheSortedListLeadsToTheRightClasses)
{
    RegisterSome();
    const wchar_t* expected[] = {kNameless, kApple, kZebra};
    for (int row = 0; row < 3; ++row) {
        const Outcome outcome = Show([row](const OpenDialog& dialog) {
            dialog.Select(row);
            dialog.Press(IDOK);
        });
        EXPECT_EQ(IDOK, outcome.result);
        EXPECT_EQ(expected[row], outcome.chosen);
    }
}

TEST_F(SelectComponent, WithoutASelectionItStaysOpen)
{
    RegisterSome();
    const Outcome outcome = Show([](const OpenDialog& dialog) {
        dialog.Press(IDOK);
        EXPECT_TRUE(dialog.IsOpen());
        dialog.DoubleClick();
        EXPECT_TRUE(dialog.IsOpen());
        dialog.Select(2);
        dialog.Press(IDOK);
    });
    EXPECT_EQ(IDOK, outcome.result);
    EXPECT_EQ(kZebra, outcome.chosen);
}

TEST_F(SelectComponent, ADoubleClickChooses)
{
    RegisterSome();
    const Outcome outcome = Show([](const OpenDialog& dialog) {
        dialog.Select(1);
        dialog.DoubleClick();
    });
    EXPECT_EQ(IDOK, outcome.result);
    EXPECT_EQ(kApple, outcome.chosen);
}

TEST_F(SelectComponent, TheCloseBoxCancels)
{
    RegisterSome();
    const Outcome outcome = Show([](const OpenDialog& dialog) {
        dialog.Select(1);
        SendMessageW(dialog.Window(), WM_CLOSE, 0, 0);
    });
    EXPECT_EQ(IDCANCEL, outcome.result);
}

TEST_F(SelectComponent, NothingIsInstalled)
{
    const Outcome outcome = Show([](const OpenDialog& dialog) {
        EXPECT_TRUE(dialog.Rows().empty());
        dialog.Press(IDOK);
        EXPECT_TRUE(dialog.IsOpen());
        dialog.Press(IDCANCEL);
    });
    EXPECT_EQ(IDCANCEL, outcome.result);
}

// Classes with equal names have a row each, in any order.
TEST_F(SelectComponent, EqualNamesAreDifferentClasses)
{
    Register(kZebra, L"Same");
    Register(kApple, L"Same");
    std::vector<std::wstring> chosen;
    chosen.reserve(2);
    for (int row = 0; row < 2; ++row) {
        chosen.push_back(Show([row](const OpenDialog& dialog) {
                             EXPECT_EQ(2u, dialog.Rows().size());
                             dialog.Select(row);
                             dialog.Press(IDOK);
                         }).chosen);
    }
    std::sort(chosen.begin(), chosen.end());
    EXPECT_EQ((std::vector<std::wstring>{kZebra, kApple}), chosen);
}

}  // namespace
