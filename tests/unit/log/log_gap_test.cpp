// Entries for which the disk has no room: the log says how many are missing, continues when there is room again, and
// ends well-formed; a log whose end is missing is reported when it is closed.
#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <limits>
#include <random>

#include "fake_unit.h"
#include "log_fixture.h"
#include "log_reader/log_reader.h"

namespace zelt::test {
namespace {

// A disk with `room` bytes left. It stores what fits, and then nothing.
class SmallDisk {
public:
    static constexpr DWORD kPlenty = std::numeric_limits<DWORD>::max();

    SmallDisk()
    {
        room = kPlenty;
        before = SetFileWriter([](HANDLE file, const void* bytes, DWORD count, DWORD* written) {
            const DWORD taken = std::min(count, room);
            if (room != kPlenty) room -= taken;
            if (taken > 0) return WriteFile(file, bytes, taken, written, nullptr);
            *written = 0;
            SetLastError(ERROR_DISK_FULL);
            return FALSE;
        });
    }
    ~SmallDisk() { SetFileWriter(before); }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    static inline DWORD room;

private:
    FileWriter before;
};

class LogGap : public LogFixture {
protected:
    LogGap()
    {
        PrepareLogReader();
        isRecordedWhole = false;
    }

    void Begin(const char* name) { document->BeginFunc(true, name, "Root"); }
    void End() { document->EndFunc(S_OK, nullptr); }
    static std::string Open(const char* name, int depth = 0)
    {
        return std::string(static_cast<std::size_t>(depth), ' ') + "<func name=\"" + name +
               "\" direc=\"in\" object=\"Root\">\n";
    }
    static std::string Gap(int count, int depth = 0)
    {
        return Warning("Entries missing here, which could not be written: " + std::to_string(count), depth);
    }
    LogReadResult Check() const
    {
        struct Sink final : LogSink {
            void Begin(const LogEvent&) override {}
        } sink;
        const int descriptor = _wopen(path.c_str(), _O_RDONLY | _O_BINARY);
        const LogReadResult result = ReadLog(descriptor, sink);
        _close(descriptor);
        return result;
    }

    SmallDisk disk;
};

TEST_F(LogGap, BetweenCallsIsCounted)
{
    document->Write(Sentence::CreatingObject, {"first"});
    SmallDisk::room = 0;
    document->Write(Sentence::CreatingObject, {"lost"});
    document->Write(Sentence::NullOutput, {"lost"});
    SmallDisk::room = SmallDisk::kPlenty;
    document->Write(Sentence::CreatingObject, {"last"});
    Close();
    EXPECT_EQ(Info("Creating first", 0) + Gap(2) + Info("Creating last", 0) + "</zeltlogdocument>\n", Written());
    EXPECT_EQ(LogReadResult::Complete, Check());
}

TEST_F(LogGap, CutsOffWhatTheDiskTookOfAnEntry)
{
    SmallDisk::room = 5;
    document->Write(Sentence::CreatingObject, {"lost"});
    EXPECT_EQ("", Written());
    SmallDisk::room = SmallDisk::kPlenty;
    document->Write(Sentence::CreatingObject, {"last"});
    EXPECT_EQ(Gap(1) + Info("Creating last", 0), Written());
}

TEST_F(LogGap, ACallWhoseOpeningIsMissingIsMissingWhole)
{
    Begin("I::Outer");
    SmallDisk::room = 0;
    Begin("I::Lost");
    SmallDisk::room = SmallDisk::kPlenty;
    document->Write(Sentence::CreatingObject, {"of the lost call"});
    Begin("I::AlsoLost");
    End();
    End();
    document->Write(Sentence::CreatingObject, {"of the outer call"});
    End();
    EXPECT_EQ(Open("I::Outer") + Gap(5, 1) + Info("Creating of the outer call", 1) + "</func>\n", Written());
}

TEST_F(LogGap, ClosingsThatAreMissingAreMadeUpFor)
{
    Begin("I::Outer");
    Begin("I::Middle");
    Begin("I::Inner");
    SmallDisk::room = 0;
    End();
    End();
    Begin("I::Lost");
    End();
    SmallDisk::room = SmallDisk::kPlenty;
    Begin("I::Next");
    End();
    End();
    Close();
    EXPECT_EQ(Open("I::Outer") + Open("I::Middle", 1) + Open("I::Inner", 2) + "  </func>\n </func>\n" + Gap(4, 1) +
                  Open("I::Next", 1) + " </func>\n</func>\n</zeltlogdocument>\n",
              Written());
    EXPECT_EQ(LogReadResult::Complete, Check());
}

TEST_F(LogGap, TheFooterComesWhenThereIsRoomAtTheEnd)
{
    RecordedMessages messages;
    Begin("I::Outer");
    SmallDisk::room = 0;
    document->Write(Sentence::CreatingObject, {"lost"});
    End();
    SmallDisk::room = SmallDisk::kPlenty;
    Close();
    EXPECT_EQ(Open("I::Outer") + "</func>\n" + Gap(2) + "</zeltlogdocument>\n", Written());
    EXPECT_EQ(LogReadResult::Complete, Check());
    EXPECT_TRUE(messages.All().empty());
}

TEST_F(LogGap, AMissingEndIsReportedOnce)
{
    RecordedMessages messages;
    Begin("I::Outer");
    SmallDisk::room = 0;
    document->Write(Sentence::CreatingObject, {"lost"});
    Close();
    EXPECT_EQ(Open("I::Outer"), Written());
    EXPECT_EQ(LogReadResult::Incomplete, Check());
    ASSERT_EQ(1u, messages.All().size());
    EXPECT_EQ(L"The end of log file \"" + path + L"\" is missing. Entries that could not be written: 3",
              messages.All()[0].text);
    EXPECT_EQ(L"Error:", messages.All()[0].caption);
    EXPECT_EQ(static_cast<UINT>(MB_OK | MB_ICONERROR | MB_TOPMOST), messages.All()[0].flags);
}

TEST_F(LogGap, AHeaderThatIsMissingIsMadeUpFor)
{
    SmallDisk::room = 0;
    const std::wstring place = TemporaryPath();
    LogFile file;
    ASSERT_EQ(0, file.Open(place));
    auto* late = new LogDocument(std::move(file), "Late", "kind", place, options);
    late->Hold();
    SmallDisk::room = SmallDisk::kPlenty;
    late->Write(Sentence::CreatingObject, {"first"});
    late->LetGo();
    EXPECT_EQ("<?xml version=\"1.0\" standalone=\"yes\"?>\n<zeltlogdocument>\n" + Gap(4) + Info("Creating first", 0) +
                  "</zeltlogdocument>\n",
              WithoutCarriageReturns(ReadWhole(place)));
    DeleteFileW(place.c_str());
}

// A log is well-formed if its end could be written, no matter which entries before it are missing.
TEST_F(LogGap, AtRandomMomentsLeavesAWellFormedLog)
{
    std::mt19937 random(20260);
    const auto upTo = [&random](unsigned most) { return random() % (most + 1); };
    for (int log = 0; log < 300; ++log) {
        SCOPED_TRACE(log);
        int depth = 0;
        for (int entry = 0; entry < 200; ++entry) {
            if (upTo(4) == 0) SmallDisk::room = upTo(1) ? SmallDisk::kPlenty : upTo(200);
            switch (upTo(3)) {
                case 0:
                    Begin("I::M");
                    ++depth;
                    break;
                case 1:
                    if (depth == 0) break;
                    End();
                    --depth;
                    break;
                default: document->Write(Sentence::CreatingObject, {"an entry"});
            }
        }
        SmallDisk::room = SmallDisk::kPlenty;
        Close();
        ASSERT_EQ(LogReadResult::Complete, Check());
        document = NewDocument();
        document->Hold();
    }
}

}  // namespace
}  // namespace zelt::test
