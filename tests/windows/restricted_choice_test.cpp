#include <gtest/gtest.h>
#include <objbase.h>

#include <thread>

#include "res/resource.h"
#include "shell/add_package/add_package_dialog.h"
#include "system/registry_view.h"
#include "tests/windows/controls.h"
#include "tests/windows/program.h"

// The dialog that exports a package, with and without a restricted choice. It runs in this process on a separate thread,
// and offers classes that a test made up.
namespace {

using namespace zelt;
using namespace zelt::test;

constexpr wchar_t kChoiceKey[] = L"Software\\ZELT window tests";

class RestrictedChoice : public testing::Test {
protected:
    void SetUp() override
    {
        DeleteKeyTree({}, kChoiceKey);
        ASSERT_EQ(ERROR_SUCCESS, classes.Create({}, kChoiceKey));
        RegistryKey top;
        ASSERT_EQ(ERROR_SUCCESS, top.Create({classes.Get(), 0}, L"CLSID"));
    }
    void TearDown() override { DeleteKeyTree({}, kChoiceKey); }

    void RegisterOneOfEachKind()
    {
        for (const PackageKindRow& row : PackageKindRows()) {
            RegistryKey key;
            const std::wstring number = std::to_wstring(static_cast<unsigned>(row.kind));
            const std::wstring path = L"CLSID\\{7E57DDDD-0000-0000-0000-00000000000" + number + L"}";
            key.Create({classes.Get(), 0}, path + L"\\Implemented Categories\\" + row.category);
            key.Create({classes.Get(), 0}, path + L"\\CapeDescription");
            key.WriteString(L"Name", L"Kind " + number);
        }
    }
    // Shows the dialog, lets `user` examine it, and presses the button that `user` returns.
    template <class User>
    ExportedPackage Show(PackageChoice choice, const wchar_t* title, User user)
    {
        ExportedPackage result;
        std::thread dialogThread([&] {
            CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
            {
                CAddPackageDlg dialog(nullptr, exported, choice, {{classes.Get(), 0}, {others.Get(), 0}});
                if (dialog.Run(nullptr) == IDOK) result = dialog.Result();
            }
            CoUninitialize();
        });
        HWND dialog = nullptr;
        EXPECT_TRUE(WaitUntil([&] { return (dialog = FindWindowW(nullptr, title)) && IsWindowVisible(dialog); }));
        if (dialog) {
            const RemoteTree tree(GetCurrentProcess(), GetDlgItem(dialog, kComponentTree));
            PostCommand(dialog, user(tree));
        }
        dialogThread.join();
        return result;
    }
    static std::vector<std::wstring> Components(const RemoteTree& tree)
    {
        std::vector<std::wstring> names;
        for (const HTREEITEM heading : tree.Children(nullptr)) {
            for (const HTREEITEM item : tree.Children(heading)) names.push_back(tree.Text(item));
        }
        return names;
    }

    RegistryKey classes, others;  // `others` holds the classes of the other width, if a test has any
    ExportedPackageList exported;
};

TEST_F(RestrictedChoice, AThermoSystemIsOfferedVersion10Only)
{
    RegisterOneOfEachKind();
    const auto result =
        Show(PackageChoice::PropertyPackages10, L"ZELT version 1.0 Property Package:", [](const RemoteTree& tree) {
            EXPECT_EQ(std::vector<std::wstring>({L"Kind 2", L"Kind 3"}), Components(tree));
            tree.Select(tree.Find(L"Kind 3"));
            return IDOK;
        });
    EXPECT_EQ(PackageKind::PropertyPackage10StandAlone, result.kind);
    EXPECT_EQ(L"Kind 3", result.exportedName);
}

TEST_F(RestrictedChoice, WithoutRestrictionEveryKindIsOffered)
{
    RegisterOneOfEachKind();
    const auto result = Show(PackageChoice::All, L"Export package:", [](const RemoteTree& tree) {
        EXPECT_EQ(std::vector<std::wstring>({L"Kind 0", L"Kind 1", L"Kind 2", L"Kind 3", L"Kind 4", L"Kind 5"}),
                  Components(tree));
        tree.Select(tree.Find(L"Kind 5"));
        return IDOK;
    });
    EXPECT_EQ(PackageKind::ReactionPackage10StandAlone, result.kind);
}

// The dialog's answer when the tree view draws an item, and the text colour that the dialog then sets, or CLR_NONE.
struct Drawn {
    LRESULT answer;
    COLORREF text;
};

Drawn Draw(const RemoteTree& tree, HTREEITEM item, DWORD stage, UINT state = 0)
{
    constexpr COLORREF kText = RGB(1, 2, 3);
    TVITEMW record = {};
    record.mask = TVIF_PARAM;
    record.hItem = item;
    if (item) TreeView_GetItem(tree.Window(), &record);
    NMTVCUSTOMDRAW drawing = {};
    drawing.nmcd.hdr = {tree.Window(), kComponentTree, NM_CUSTOMDRAW};
    drawing.nmcd.dwDrawStage = stage;
    drawing.nmcd.dwItemSpec = reinterpret_cast<DWORD_PTR>(item);
    drawing.nmcd.uItemState = state;
    drawing.nmcd.lItemlParam = record.lParam;
    drawing.clrText = kText;
    const LRESULT answer =
        SendMessageW(GetParent(tree.Window()), WM_NOTIFY, kComponentTree, reinterpret_cast<LPARAM>(&drawing));
    return {answer, drawing.clrText == kText ? CLR_NONE : drawing.clrText};
}

TEST_F(RestrictedChoice, DrawsGreyWhatCannotBeUsed)
{
    if (RegistryViews().size() < 2) GTEST_SKIP() << "this system has one width";
    RegisterOneOfEachKind();
    ASSERT_EQ(ERROR_SUCCESS, others.Create({classes.Get(), 0}, L"Other"));
    RegistryKey key;
    const std::wstring path = L"CLSID\\{7E57DDDD-0000-0000-0000-000000000009}";
    key.Create({others.Get(), 0}, path + L"\\Implemented Categories\\" + PackageKindRows()[1].category);
    key.Create({others.Get(), 0}, path + L"\\CapeDescription");
    key.WriteString(L"Name", L"Elsewhere");
    Show(PackageChoice::All, L"Export package:", [](const RemoteTree& tree) {
        const std::wstring reason =
            std::wstring(L" - registered for ") + (sizeof(void*) == 4 ? L"64" : L"32") + L"-bit programs only";
        const HTREEITEM usable = tree.Find(L"Kind 1"), unusable = tree.Find(L"Elsewhere" + reason);
        EXPECT_TRUE(usable && unusable);
        EXPECT_EQ(CDRF_NOTIFYITEMDRAW, Draw(tree, nullptr, CDDS_PREPAINT).answer);
        const Drawn grey = Draw(tree, unusable, CDDS_ITEMPREPAINT);
        EXPECT_EQ(CDRF_DODEFAULT, grey.answer);
        EXPECT_EQ(GetSysColor(COLOR_GRAYTEXT), grey.text);
        // The dialog does not change the colours of a selected item or of one that can be used.
        EXPECT_EQ(CLR_NONE, Draw(tree, unusable, CDDS_ITEMPREPAINT, CDIS_SELECTED).text);
        EXPECT_EQ(CLR_NONE, Draw(tree, unusable, CDDS_ITEMPOSTPAINT).text);
        EXPECT_EQ(CLR_NONE, Draw(tree, usable, CDDS_ITEMPREPAINT).text);
        EXPECT_EQ(CLR_NONE, Draw(tree, TreeView_GetRoot(tree.Window()), CDDS_ITEMPREPAINT).text);
        return IDCANCEL;
    });
}

TEST_F(RestrictedChoice, SaysThatNothingIsInstalled)
{
    Show(PackageChoice::All, L"Export package:", [](const RemoteTree& tree) {
        const auto items = tree.Children(nullptr);
        EXPECT_EQ(1u, items.size());
        EXPECT_EQ(L"No CAPE-OPEN packages are installed.", tree.Text(items.empty() ? nullptr : items[0]));
        return IDCANCEL;
    });
}

}  // namespace
