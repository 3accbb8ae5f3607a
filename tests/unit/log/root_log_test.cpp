#include "log/root_log.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "log/log_location.h"
#include "log/recording/call_recorder.h"
#include "tests/system/harness/scratch_registry.h"
#include "tests/unit/support/recorded_messages.h"

namespace zelt::test {
namespace {

std::wstring chosenPath;
std::size_t boxesBefore;  // how many boxes were shown before the dialog
const RecordedMessages* boxes;

// What the user sees when a simulator makes an object with a log.
class RootLog : public testing::Test {
protected:
    RootLog()
    {
        static const LogSurroundings surroundings = {[] { return SYSTEMTIME{2012, 3, 1, 5, 14, 7, 59, 999}; },
                                                     [](std::wstring&) { return false; },
                                                     [](const std::wstring&, std::wstring& path) {
                                                         boxesBefore = boxes->All().size();
                                                         path = chosenPath;
                                                         return !path.empty();
                                                     }};
        boxes = &messages;
        boxesBefore = 99;
        chosenPath.clear();
        options.root = scratch.Root();
        SetLogSurroundings(&surroundings);
    }
    ~RootLog() override { SetLogSurroundings(nullptr); }

    DocumentHold Open() { return OpenRootLog(options, L"Title", L"Name", "kind"); }

    ScratchKey scratch;
    LogOptions options;
    const RecordedMessages messages;
};

TEST_F(RootLog, ReadsTheOptionsAgain)
{
    scratch.Settings().WriteDword(L"AutoLogLocation", 1);
    EXPECT_EQ(nullptr, Open().Get());
    EXPECT_EQ(99u, boxesBefore) << "a dialog was shown";
    ASSERT_EQ(1u, messages.All().size());
    EXPECT_EQ(L"Failed to obtain location of Desktop folder", messages.All()[0].text);
    EXPECT_EQ(L"Create log file:", messages.All()[0].caption);
    EXPECT_EQ(static_cast<UINT>(MB_OK | MB_ICONERROR | MB_TOPMOST), messages.All()[0].flags);
    scratch.Settings().WriteDword(L"AutoLogLocation", 0);
    EXPECT_EQ(nullptr, Open().Get());
    EXPECT_EQ(1u, messages.All().size());
    EXPECT_EQ(1u, boxesBefore);
}

TEST_F(RootLog, OfARegistryOutOfReachAsksForThePlaceAfterSayingSo)
{
    scratch.MakeInaccessible();
    chosenPath = L"?:\\no such place\\a.zlg";
    EXPECT_EQ(nullptr, Open().Get());
    EXPECT_EQ(1u, boxesBefore);
    ASSERT_EQ(2u, messages.All().size());
    EXPECT_EQ(L"Unable to access the registry; unable to store or load packages", messages.All()[0].text);
    EXPECT_EQ(0u, messages.All()[1].text.find(L"Failed to open log file \"" + chosenPath + L"\" for writing: "));
    EXPECT_TRUE(messages.All()[1].text.ends_with(L"\r\nLogging will not be enabled"));
    EXPECT_EQ(L"Error:", messages.All()[1].caption);
    EXPECT_EQ(static_cast<UINT>(MB_OK | MB_ICONERROR | MB_TOPMOST), messages.All()[1].flags);
}

TEST_F(RootLog, OfAPackageThatIsOnlyRecordedHasNoLog)
{
    static std::wstring folder;
    static const LogSurroundings surroundings = {[] { return SYSTEMTIME{2012, 3, 1, 5, 14, 7, 59, 999}; },
                                                 [](std::wstring& desktop) {
                                                     desktop = folder;
                                                     return true;
                                                 },
                                                 [](const std::wstring&, std::wstring&) { return false; }};
    const std::filesystem::path place = std::filesystem::temp_directory_path() / L"zelt only recorded";
    std::filesystem::create_directories(place);
    folder = place.wstring();
    SetLogSurroundings(&surroundings);
    {
        const DocumentHold document = OpenRootRecording(options, L"Name", "kind");
        ASSERT_NE(nullptr, document.Get());
        EXPECT_NE(nullptr, document.Get()->Recorder());
        document.Get()->Write(Sentence::RemedyByInitNew);
        EXPECT_EQ(0, document.Get()->Missing());
    }
    std::vector<std::filesystem::path> files;
    for (const auto& file : std::filesystem::recursive_directory_iterator(place)) {
        if (file.is_regular_file()) files.push_back(file.path().extension());
    }
    EXPECT_EQ(std::vector<std::filesystem::path>{L".zlr"}, files);
    // If the folder cannot be made, neither can the recording.
    folder = L"?:\\no such place";
    EXPECT_EQ(nullptr, OpenRootRecording(options, L"Name", "kind").Get());
    ASSERT_EQ(1u, messages.All().size());
    EXPECT_EQ(0u, messages.All()[0].text.find(L"Failed to open recording \"?:\\no such place\\ZELT logs\\recording-"));
    EXPECT_TRUE(messages.All()[0].text.ends_with(L"\r\nCalls will not be recorded"));
    std::filesystem::remove_all(place);
}

TEST_F(RootLog, DeclinedIsNoLogAndNoMessage)
{
    EXPECT_EQ(nullptr, Open().Get());
    EXPECT_EQ(0u, boxesBefore);
    EXPECT_TRUE(messages.All().empty());
}

}  // namespace
}  // namespace zelt::test
