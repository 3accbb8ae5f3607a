// zeltctl recording render, and the logs that viewers get from recordings.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "log/recording/call_recorder.h"
#include "log/recording/rendered_recording.h"
#include "log/log_document.h"
#include "log/log_options.h"
#include "log/value_writers.h"
#include "tests/system/exports/windows_commands.h"
#include "tests/system/harness/text_file.h"

namespace zelt::test {
namespace {

namespace fs = std::filesystem;

class RecordingRender : public testing::Test {
protected:
    RecordingRender() { fs::create_directories(folder); }
    ~RecordingRender() override
    {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }
    // A log of one call, with its recording.
    void Write(bool isClosed)
    {
        LogFile file;
        ASSERT_EQ(0, file.Open(Path("written.zlg")));
        LogDocument log(std::move(file), "Aromatics", "kind of object", Path("written.zlg"), options);
        int error = 0;
        log.RecordTo(CallRecorder::Make(Path("written.zlr"), error), "kind of object");
        ASSERT_EQ(0, error);
        log.BeginFunc(true, "ICapeUtilities::Edit", "Aromatics");
        WriteArg(log, "temperature", true, 353.15);
        log.EndFunc(S_OK, nullptr);
        isClosed ? log.Close() : log.Abandon();
    }
    std::wstring Path(const char* name) const { return (folder / name).wstring(); }
    std::string Narrow(const char* name) const { return (folder / name).string(); }

    LogOptions options = [] {
        LogOptions quiet;
        quiet.promptOpenLog = false;
        return quiet;
    }();
    const fs::path folder = fs::temp_directory_path() / ("zelt rendering " + std::to_string(GetCurrentProcessId()));
};

TEST_F(RecordingRender, WritesTheLogAgain)
{
    Write(true);
    const CommandOutcome outcome = RunZeltctl({"recording", "render", Narrow("written.zlr"), Narrow("rendered.zlg")});
    EXPECT_EQ(0, outcome.code) << outcome.messages;
    EXPECT_EQ(ReadWholeFile(Narrow("written.zlg")), ReadWholeFile(Narrow("rendered.zlg")));
    EXPECT_NE("", ReadWholeFile(Narrow("rendered.zlg")));
}

TEST_F(RecordingRender, OfOneWithoutAnEndWritesALogWithoutAnEnd)
{
    Write(false);
    const CommandOutcome outcome = RunZeltctl({"recording", "render", Narrow("written.zlr"), Narrow("rendered.zlg")});
    EXPECT_EQ(1, outcome.code);
    EXPECT_NE(std::string::npos, outcome.messages.find("the recording has no end"));
    EXPECT_EQ(ReadWholeFile(Narrow("written.zlg")), ReadWholeFile(Narrow("rendered.zlg")));
}

TEST_F(RecordingRender, RefusesWhatIsNoRecordingAndItsOwnRecording)
{
    Write(true);
    const CommandOutcome none = RunZeltctl({"recording", "render", Narrow("written.zlg"), Narrow("rendered.zlg")});
    EXPECT_EQ(3, none.code);
    EXPECT_NE(std::string::npos, none.messages.find("this is not a recording"));
    EXPECT_FALSE(fs::exists(folder / "rendered.zlg"));
    const std::string before = ReadWholeFile(Narrow("written.zlr"));
    EXPECT_EQ(2, RunZeltctl({"recording", "render", Narrow("written.zlr"), Narrow("written.zlr")}).code);
    EXPECT_EQ(before, ReadWholeFile(Narrow("written.zlr")));
}

TEST_F(RecordingRender, GivesAViewerALogForAsLongAsItIsShown)
{
    Write(true);
    std::wstring shown;
    {
        const RenderedRecording log(Path("written.zlr"));
        shown = log.Path();
        EXPECT_EQ(L"written.zlg", fs::path(shown).filename().wstring());
        EXPECT_NE(Path("written.zlg"), shown);
        EXPECT_EQ(ReadWholeFile(Narrow("written.zlg")), ReadWholeFile(fs::path(shown).string()));
        // A second viewer gets its own log.
        EXPECT_NE(shown, RenderedRecording(Path("written.zlr")).Path());
        EXPECT_TRUE(fs::exists(shown));
    }
    EXPECT_FALSE(fs::exists(fs::path(shown).parent_path()));
}

TEST_F(RecordingRender, LeavesAViewerWhatIsNoRecording)
{
    Write(true);
    EXPECT_EQ(Path("written.zlg"), RenderedRecording(Path("written.zlg")).Path());
    EXPECT_TRUE(fs::exists(Path("written.zlg")));
    EXPECT_EQ(Path("missing.zlr"), RenderedRecording(Path("missing.zlr")).Path());
}

TEST_F(RecordingRender, TellsAViewerWhyARecordingCannotBeShown)
{
    Write(true);
    // Field 3 of the header holds the width.
    std::string bytes = ReadWholeFile(Narrow("written.zlr"));
    const std::size_t width = bytes.find(std::string("\x18") + static_cast<char>(sizeof(void*) * 8));
    ASSERT_NE(std::string::npos, width);
    bytes[width + 1] = static_cast<char>(96 - sizeof(void*) * 8);
    std::ofstream(folder / "other.zlr", std::ios::binary) << bytes;
    try {
        const RenderedRecording log(Path("other.zlr"));
        FAIL() << "it was rendered";
    } catch (const std::runtime_error& error) {
        EXPECT_EQ(0, std::string(error.what()).find("it was made by the other edition of ZELT (32 or 64 bit)"))
            << error.what();
    }
}

}  // namespace
}  // namespace zelt::test
