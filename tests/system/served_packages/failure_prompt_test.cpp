#include <gtest/gtest.h>

#include <cstdlib>

#include "system/narrow.h"
#include "tests/system/harness/under_wine.h"
#include "tests/system/served_packages/served_packages.h"
#include "tests/system/served_packages/simulator.h"

// A package that cannot be created: the server asks the user whether to remove it from the list, and the simulator gets the
// error.
namespace zelt::test {
namespace {

constexpr char kNoDisplay[] = "needs a display";
constexpr wchar_t kNotRegistered[] = L"{0D3B0E0C-5A0B-4E0B-8C7B-6C5C7E0F3A11}";
constexpr DWORD kTimeToAppear = 30'000;

// The server's message box, in another process, as the user sees it.
class MessageBoxWindow {
public:
    static MessageBoxWindow WaitFor(const wchar_t* caption)
    {
        const ULONGLONG end = GetTickCount64() + kTimeToAppear;
        HWND window = nullptr;
        while (GetTickCount64() < end && !IsWindowVisible(window = FindWindowW(L"#32770", caption))) Sleep(50);
        return MessageBoxWindow(window);
    }
    bool IsThere() const { return window != nullptr; }
    bool IsTopmost() const { return (GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0; }
    bool Has(int button) const { return GetDlgItem(window, button) != nullptr; }
    DWORD ProcessId() const
    {
        DWORD id = 0;
        GetWindowThreadProcessId(window, &id);
        return id;
    }
    // The longest text of its labels; the other label holds the icon.
    std::wstring Text() const
    {
        std::wstring text;
        EnumChildWindows(window, KeepLongerLabel, reinterpret_cast<LPARAM>(&text));
        return text;
    }
    void Press(int button) const { PostMessageW(GetDlgItem(window, button), BM_CLICK, 0, 0); }

private:
    explicit MessageBoxWindow(HWND window) : window(window) {}

    static BOOL CALLBACK KeepLongerLabel(HWND child, LPARAM parameter)
    {
        wchar_t name[32] = L"", content[1024] = L"";
        GetClassNameW(child, name, 32);
        if (_wcsicmp(name, L"Static") != 0) return TRUE;
        SendMessageW(child, WM_GETTEXT, 1024, reinterpret_cast<LPARAM>(content));
        auto& longest = *reinterpret_cast<std::wstring*>(parameter);
        if (std::wcslen(content) > longest.size()) longest = content;
        return TRUE;
    }

    HWND window;
};

struct Failure {
    const char* name;
    Exported package;
    const wchar_t* description;
    const char* code;
};

// clang-format off
const Failure kFailures[] = {
    {"NoClass",          {kNotRegistered,    0, L"X",              L"Gone"}, L"Failed to create property package manager: REGDB_E_CLASSNOTREG",        "0x8004050F"},
    {"NoStandAlone",     {kNotRegistered,    1, L"",               L"Gone"}, L"Failed to create stand-alone property package: REGDB_E_CLASSNOTREG",    "0x8004050F"},
    {"NoAccess",         {kFaultyCreate,     1, L"",               L"Gone"}, L"Failed to create stand-alone property package: E_ACCESSDENIED",         "0x8004050F"},
    {"NoInitialisation", {kFaultyInitialize, 0, L"Menu",           L"Gone"}, L"property package manager failed to initialize: The faulty manager never initialises", "0x8004050F"},
    {"NoLicence",        {kFaultyManager,    0, L"Fails",          L"Gone"}, L"The faulty package has no licence today",                               "0x8004050F"},
    {"NoPackage",        {kFaultyManager,    0, L"Null",           L"Gone"}, L"NULL pointer is returned for property package",                         "0x8004050F"},
};
// clang-format on

class FailurePrompt : public ServedPackages {
protected:
    void SetUp() override
    {
        ServedPackages::SetUp();
        if (std::getenv("WINEPREFIX") && !std::getenv("DISPLAY")) GTEST_SKIP() << kNoDisplay;
    }

    // A simulator requests the package, the test answers the box, and the simulator fails with the description.
    static void AskAndAnswer(const Failure& failure, int answer)
    {
        SCOPED_TRACE(failure.name);
        Export({{kSampleManager, 0, L"Aromatics", L"Before"},
                failure.package,
                {kSampleManager, 0, L"Alcohols", L"After"}});
        const OutputFile output;
        const Process simulator = Process::Start(SimulatorCommand(Width::Bits32, L"Gone"), output.Path());
        const MessageBoxWindow box = MessageBoxWindow::WaitFor(L"ZELT:");
        ASSERT_TRUE(box.IsThere());
        EXPECT_EQ(ServerId(), box.ProcessId());
        // Wine's message box ignores MB_TOPMOST.
        EXPECT_TRUE(box.IsTopmost() || UnderWine());
        EXPECT_TRUE(box.Has(IDYES));
        EXPECT_TRUE(box.Has(IDNO));
        EXPECT_EQ(std::wstring(failure.description) + L"\r\nRemove from list of exported property packages?",
                  box.Text());
        EXPECT_FALSE(simulator.Wait(500)) << "the call returns before the answer";
        EXPECT_EQ((std::vector<std::wstring>{L"Before", L"Gone", L"After"}), StoredNames());
        box.Press(answer);
        EXPECT_EQ(1u, simulator.Wait(30'000).value_or(0));
        const std::string message =
            "SampleSimulator: GetPropertyPackage: " + Narrow(failure.description) + " (" + failure.code + ")\n";
        EXPECT_TRUE(output.Text().ends_with(message)) << output.Text();
    }
};

TEST_F(FailurePrompt, SaysWhatHasFailedAndKeepsThePackageOnNo)
{
    for (const Failure& failure : kFailures) {
        AskAndAnswer(failure, IDNO);
        EXPECT_EQ((std::vector<std::wstring>{L"Before", L"Gone", L"After"}), StoredNames());
        // The next failure needs another list of packages, which this server would not see.
        ASSERT_TRUE(WaitUntilGone(kServerFile));
    }
}

TEST_F(FailurePrompt, RemovesThePackageOnYes)
{
    AskAndAnswer(kFailures[0], IDYES);
    EXPECT_EQ((std::vector<std::wstring>{L"Before", L"After"}), StoredNames());
    const SimulatorResult next = RunSimulator(SimulatorCommand(Width::Bits32, L"Before"));
    EXPECT_EQ(0u, next.exitCode) << next.output;
    EXPECT_NE(std::string::npos, next.output.find("Packages: Before, After\n")) << next.output;
}

class UnknownPackage : public ServedPackages {};

TEST_F(UnknownPackage, FailsAtOnceWithoutAPrompt)
{
    Export({{kSampleManager, 0, L"Aromatics", L"Aromatics"}});
    for (const Width width : kWidths) {
        if (!HasSimulator(width)) continue;
        const SimulatorResult run = RunSimulator(SimulatorCommand(width, L"No such"));
        EXPECT_EQ(1u, run.exitCode);
        EXPECT_TRUE(
            run.output.ends_with("SampleSimulator: GetPropertyPackage: Package with name \"No such\" is not "
                                 "available (0x80040506)\n"))
            << run.output;
    }
    EXPECT_TRUE(Logs().empty());
}

}  // namespace
}  // namespace zelt::test
