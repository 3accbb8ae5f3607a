#include "log/log_location.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/unit/support/recorded_messages.h"
#include "tests/system/harness/scratch_registry.h"

namespace {

namespace fs = std::filesystem;
using zelt::LogOptions;

// A desktop in its own folder, a stopped clock, and a dialog that answers by itself.
class LogLocation : public testing::Test {
protected:
    LogLocation()
    {
        desktop = fs::temp_directory_path() / (L"ZELT log location test " + std::to_wstring(GetCurrentProcessId()));
        fs::remove_all(desktop);
        fs::create_directories(desktop);
        desktopKnown = true;
        dialogTitles.clear();
        dialogAnswer.clear();
        options.root = scratch.Root();
        zelt::SetLogSurroundings(&kSurroundings);
    }
    ~LogLocation() override
    {
        zelt::SetLogSurroundings(nullptr);
        std::error_code ignored;
        fs::remove_all(desktop, ignored);
    }

    void StoreAutomatic(bool on) { scratch.Settings().WriteDword(L"AutoLogLocation", on); }
    static void Touch(const fs::path& path) { std::ofstream(path) << "x"; }

    // The month's name is in the system's language, so the tests ask the system for it.
    static std::wstring Stem()
    {
        wchar_t month[64];
        const SYSTEMTIME time = Clock();
        GetDateFormatW(LOCALE_SYSTEM_DEFAULT, 0, &time, L"ddMMMMyyyy", month, 64);
        return std::wstring(L"log-") + month + L"-14h07";
    }
    static fs::path Folder() { return desktop / L"ZELT logs"; }

    zelt::test::ScratchKey scratch;
    LogOptions options;
    std::wstring path;
    zelt::Outcome outcome;

    // Uses the stored options; returns whether a path was chosen.
    bool Choose(const wchar_t* title = L"t")
    {
        EXPECT_TRUE(options.Load());
        std::optional<std::wstring> chosen = L"before";
        outcome = zelt::ChooseLogPath(options, title, chosen);
        path = chosen.value_or(L"");
        return chosen.has_value();
    }

    static inline fs::path desktop;
    static inline bool desktopKnown;
    static inline std::vector<std::wstring> dialogTitles;
    static inline std::wstring dialogAnswer;  // Empty for cancel.

private:
    static SYSTEMTIME Clock() { return {2012, 3, 1, 5, 14, 7, 59, 999}; }
    static bool Desktop(std::wstring& folder)
    {
        folder = desktop.wstring();
        return desktopKnown;
    }
    static bool Dialog(const std::wstring& title, std::wstring& answer)
    {
        dialogTitles.push_back(title);
        if (dialogAnswer.empty()) return false;
        answer = dialogAnswer;
        return true;
    }
    static constexpr zelt::LogSurroundings kSurroundings = {Clock, Desktop, Dialog};
};

TEST_F(LogLocation, IsAskedForWithoutAnyKey)
{
    dialogAnswer = L"C:\\somewhere\\a.zlg";
    EXPECT_TRUE(Choose(L"Create log for x:"));
    EXPECT_EQ(dialogAnswer, path);
    EXPECT_EQ(std::vector<std::wstring>{L"Create log for x:"}, dialogTitles);
    EXPECT_TRUE(options.promptOpenLog);
    EXPECT_FALSE(fs::exists(Folder()));
}

TEST_F(LogLocation, CancelIsSilent)
{
    EXPECT_FALSE(Choose());
    EXPECT_TRUE(outcome);
}

TEST_F(LogLocation, NumbersLogsOfTheSameMinute)
{
    StoreAutomatic(true);
    const wchar_t* suffixes[] = {L"", L"(1)", L"(2)", L"(3)"};
    for (const wchar_t* suffix : suffixes) {
        ASSERT_TRUE(Choose());
        EXPECT_EQ((Folder() / (Stem() + suffix + L".zlg")).wstring(), path);
        Touch(path);
    }
}

TEST_F(LogLocation, TakesTheFirstFreeNumber)
{
    StoreAutomatic(true);
    fs::create_directories(Folder());
    Touch(Folder() / (Stem() + L".zlg"));
    Touch(Folder() / (Stem() + L"(2).zlg"));
    ASSERT_TRUE(Choose());
    EXPECT_EQ((Folder() / (Stem() + L"(1).zlg")).wstring(), path);
}

TEST_F(LogLocation, IsAnotherForARecordingWithoutALog)
{
    const std::wstring stem = L"recording-" + Stem().substr(4);
    for (const wchar_t* suffix : {L"", L"(1)"}) {
        std::optional<std::wstring> recording;
        EXPECT_TRUE(zelt::ChooseRecordingPath(recording));
        ASSERT_EQ((Folder() / (stem + suffix + L".zlr")).wstring(), recording);
        Touch(*recording);
    }
}

TEST_F(LogLocation, MakesTheFolderAndNoFile)
{
    StoreAutomatic(true);
    ASSERT_TRUE(Choose());
    EXPECT_TRUE(fs::is_directory(Folder()));
    EXPECT_FALSE(fs::exists(path));
    ASSERT_TRUE(Choose());
    EXPECT_EQ((Folder() / (Stem() + L".zlg")).wstring(), path);
}

TEST_F(LogLocation, IgnoresAFolderThatCannotBeMade)
{
    StoreAutomatic(true);
    Touch(Folder());
    EXPECT_TRUE(Choose());
    EXPECT_EQ((Folder() / (Stem() + L".zlg")).wstring(), path);
}

TEST_F(LogLocation, SaysThatThereIsNoDesktop)
{
    StoreAutomatic(true);
    desktopKnown = false;
    const zelt::test::RecordedMessages messages;
    EXPECT_FALSE(Choose());
    ASSERT_FALSE(outcome);
    EXPECT_EQ(L"Failed to obtain location of Desktop folder", outcome.Failure().text);
    EXPECT_STREQ(L"Create log file:", outcome.Failure().caption);
    EXPECT_EQ(static_cast<UINT>(MB_OK | MB_ICONERROR | MB_TOPMOST), outcome.Failure().flags);
    EXPECT_TRUE(messages.All().empty());
    EXPECT_TRUE(dialogTitles.empty());
}

TEST_F(LogLocation, FindsTheUsersDesktopByDefault)
{
    zelt::SetLogSurroundings(nullptr);
    const auto* system = zelt::SetLogSurroundings(nullptr);
    std::wstring folder;
    ASSERT_TRUE(system->desktopFolder(folder));
    EXPECT_TRUE(fs::is_directory(folder));
    SYSTEMTIME before, now;
    GetLocalTime(&before);
    now = system->localTime();
    EXPECT_EQ(before.wYear, now.wYear);
}

}  // namespace
