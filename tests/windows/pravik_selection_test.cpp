// From the category to the unit: PRAVIK searches the classes, shows its dialog, and creates the class that the user chose. The
// classes are registered for the machine while a test runs, because an override of HKEY_CLASSES_ROOT has no 32-bit and 64-bit
// views.
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "log/log_location.h"
#include "system/registry.h"
#include "res/resource.h"
#include "registration/key_tree.h"
#include "registration/registry_mirror.h"
#include "tests/system/harness/own_scope.h"
#include "tests/system/harness/stored_options.h"
#include "tests/unit/support/fake_unit.h"
#include "tests/windows/program.h"
#include "thermo/wrapping_table.h"

namespace zelt::test {
namespace {

constexpr wchar_t kPravikKey[] = L"Software\\ZELT PRAVIK tests";
constexpr wchar_t kCategory[] = L"{678c09a5-7d66-11d2-a67d-00105a42887f}";
constexpr wchar_t kOtherCategory[] = L"{678C09A4-7D66-11D2-A67D-00105A42887F}";
constexpr wchar_t kUnit[] = L"{7B1C9E60-53D7-4E0C-932F-11B6704C8D11}";     // the scripted unit
constexpr wchar_t kBroken[] = L"{7B1C9E60-53D7-4E0C-932F-11B6704C8D12}";   // registered, but missing
constexpr wchar_t kNotUnit[] = L"{7B1C9E60-53D7-4E0C-932F-11B6704C8D13}";  // not a unit operation
constexpr wchar_t kPravik[] = L"{2FD53BB5-1013-418D-BAB6-15DF8AD606A6}";

std::wstring logPath;

class PravikSelection : public testing::Test {
protected:
    PravikSelection()
    {
        InstallWrappers();
        unitScript = {};
        DeleteKeyTree({}, kPravikKey);
        RegisterClass(kUnit, kCategory, L"Mixer", L"mixes");
        RegisterClass(kBroken, kCategory, L"Broken");
        RegisterClass(kNotUnit, kOtherCategory, L"No unit");
        RegisterClass(kPravik, kCategory, L"PRAVIK Logged Unit Operation");
        options.Create({}, std::wstring(kPravikKey) + L"\\options");
        TheLogOptions() = {};
        TheLogOptions().root = {options.Get(), 0};
        TheLogOptions().promptOpenLog = false;
        Store(TheLogOptions());
        logPath = TemporaryPath();
        static const LogSurroundings surroundings = {[] { return SYSTEMTIME{}; }, [](std::wstring&) { return false; },
                                                     [](const std::wstring&, std::wstring& chosen) {
                                                         chosen = logPath;
                                                         return true;
                                                     }};
        SetLogSurroundings(&surroundings);
    }
    ~PravikSelection() override
    {
        SetLogSurroundings(nullptr);
        TheLogOptions() = {};
        options.Close();
        DeleteKeyTree({}, kPravikKey);
        const RegistryRoot root = ClassesHive(OwnScope(), OwnView());
        for (const auto& [path, before] : replaced) {
            DeleteKeyTree(root, path);
            if (before) WriteKeyTree(root, path, *before);
        }
        DeleteFileW(logPath.c_str());
    }

    void RegisterClass(const wchar_t* classId, const wchar_t* category, const wchar_t* name,
                       const wchar_t* description = nullptr)
    {
        const std::wstring path = ClassesPath(std::wstring(L"CLSID\\") + classId);
        const RegistryRoot root = ClassesHive(OwnScope(), OwnView());
        replaced.emplace_back(path, ReadKeyTree(root, path));
        DeleteKeyTree(root, path);
        RegistryKey key;
        ASSERT_EQ(ERROR_SUCCESS, key.Create(root, path + L"\\Implemented Categories\\" + category));
        ASSERT_EQ(ERROR_SUCCESS, key.Create(root, path + L"\\CapeDescription"));
        key.WriteString(L"Name", name);
        if (description) key.WriteString(L"Description", description);
    }

    // Initialises a new unit operation called `name`, while `user` acts on the dialog. Returns InitNew's result.
    // LoggedInitNew then reads the log.
    template <class User>
    HRESULT MakeNew(const wchar_t* name, User user)
    {
        HRESULT result = E_PENDING;
        std::thread simulator([&] {
            CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
            {
                static const com::ClassEntry kClasses[] = {{kFakeUnit, com::CreateDefault<FakeUnit>}};
                com::ClassObjects served{CLSCTX_INPROC_SERVER};
                EXPECT_EQ(S_OK, served.Register(kClasses));
                RecordedMessages messages;
                ComPtr<IPersistStreamInit> unit;
                EXPECT_EQ(S_OK, CreateUnitOperation(IID_IPersistStreamInit, &unit));
                ComPtr<ICapeIdentification> identification;
                unit.As(&identification);
                identification->put_ComponentName(_bstr_t(name));
                identification.Reset();
                result = unit->InitNew();
                for (const auto& message : messages.All()) said.push_back(message.text);
            }
            CoUninitialize();
        });
        HWND window = nullptr;
        const std::wstring title = std::wstring(L"Select ") + name + L":";
        EXPECT_TRUE(
            WaitUntil([&] { return (window = FindWindowW(nullptr, title.c_str())) && IsWindowVisible(window); }));
        if (window) {
            user(window);
            // Nobody else would close it.
            if (IsWindow(window)) SendMessageW(window, WM_CLOSE, 0, 0);
        }
        simulator.join();
        return result;
    }
    static std::vector<std::wstring> Rows(HWND dialog)
    {
        const HWND list = GetDlgItem(dialog, kComponentList);
        std::vector<std::wstring> rows(static_cast<std::size_t>(SendMessageW(list, LB_GETCOUNT, 0, 0)));
        for (std::size_t row = 0; row < rows.size(); ++row) {
            rows[row].resize(static_cast<std::size_t>(SendMessageW(list, LB_GETTEXTLEN, row, 0)));
            SendMessageW(list, LB_GETTEXT, row, reinterpret_cast<LPARAM>(rows[row].data()));
        }
        return rows;
    }
    static void Choose(HWND dialog, const wchar_t* name)
    {
        const LRESULT row = SendDlgItemMessageW(dialog, kComponentList, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                                reinterpret_cast<LPARAM>(name));
        EXPECT_LE(0, row);
        SendDlgItemMessageW(dialog, kComponentList, LB_SETCURSEL, static_cast<WPARAM>(row), 0);
        SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED),
                     reinterpret_cast<LPARAM>(GetDlgItem(dialog, IDOK)));
    }
    // The log's whole entry for InitNew.
    static std::string LoggedInitNew()
    {
        const std::string log = WithoutCarriageReturns(ReadWhole(logPath));
        const std::size_t start = log.find("<func name=\"IPersistStreamInit::InitNew\"");
        return start == std::string::npos ? log : log.substr(start, log.find("</zeltlogdocument>") - start);
    }

    RegistryKey options;
    std::vector<std::pair<std::wstring, std::optional<KeyTree>>> replaced;
    std::vector<std::wstring> said;
};

TEST_F(PravikSelection, TheChosenClassIsCreated)
{
    EXPECT_EQ(S_OK, MakeNew(L"M1", [](HWND dialog) {
                  const std::vector<std::wstring> rows = Rows(dialog);
                  EXPECT_EQ(1, std::count(rows.begin(), rows.end(), L"Mixer (mixes)"));
                  EXPECT_EQ(1, std::count(rows.begin(), rows.end(), L"Broken"));
                  EXPECT_EQ(0, std::count(rows.begin(), rows.end(), L"No unit"));
                  EXPECT_EQ(0, std::count(rows.begin(), rows.end(), L"PRAVIK Logged Unit Operation"));
                  Choose(dialog, L"Mixer (mixes)");
              }));
    EXPECT_EQ(1, unitScript.created);
    EXPECT_EQ((std::vector<std::string>{"init.InitNew"}), unitScript.calls);
    EXPECT_TRUE(said.empty());
    EXPECT_EQ(Func("IPersistStreamInit::InitNew",
                   Info("Creating user selected unit operation: {7B1C9E60-53D7-4E0C-932F-11B6704C8D11}") +
                       Info("Created unit operation from CLSID {7B1C9E60-53D7-4E0C-932F-11B6704C8D11}"),
                   "in", "M1"),
              LoggedInitNew());
    EXPECT_EQ(0, FakeUnit::alive);
}

TEST_F(PravikSelection, AMissingChosenClassIsReported)
{
    EXPECT_EQ(E_FAIL, MakeNew(L"M2", [](HWND dialog) { Choose(dialog, L"Broken"); }));
    EXPECT_EQ(0, unitScript.created);
    EXPECT_EQ((std::vector<std::wstring>{L"REGDB_E_CLASSNOTREG"}), said);
    const std::string log = LoggedInitNew();
    EXPECT_NE(std::string::npos,
              log.find(Info("Creating user selected unit operation: {7B1C9E60-53D7-4E0C-932F-11B6704C8D12}")))
        << log;
}

TEST_F(PravikSelection, Cancelling)
{
    EXPECT_EQ(E_FAIL, MakeNew(L"M3", [](HWND dialog) { SendMessageW(dialog, WM_CLOSE, 0, 0); }));
    EXPECT_EQ(0, unitScript.created);
    EXPECT_EQ((std::vector<std::wstring>{L"M3 selection has been cancelled. M3 will not be functional."}), said);
}

}  // namespace
}  // namespace zelt::test
