// Faults in the persistence of a unit operation, and streams with arbitrary contents: each call returns a status code, and the
// log, if there is one, is complete. Also compares the memory stream with a string.
#include <shlwapi.h>

#include <cstdio>
#include <cstring>

#include "expected_log.h"
#include "fake_unit.h"
#include "fault_kinds.h"
#include "long_run.h"
#include "recorded_messages.h"
#include "unit/memory_stream.h"

namespace zelt::test {
namespace {

std::string Header(REFCLSID classId, std::uint32_t length)
{
    std::string bytes(20, '\0');
    std::memcpy(bytes.data(), &classId, 16);
    std::memcpy(bytes.data() + 16, &length, 4);
    return bytes;
}

ComPtr<IStream> StreamOf(const std::string& content)
{
    ComPtr<IStream> stream;
    EXPECT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, &stream));
    ULONG written = 0;
    EXPECT_EQ(S_OK, stream->Write(content.data(), static_cast<ULONG>(content.size()), &written));
    const LARGE_INTEGER start = {};
    EXPECT_EQ(S_OK, stream->Seek(start, STREAM_SEEK_SET, nullptr));
    return stream;
}

class FaultPersistence : public UnitFixture {
protected:
    static int Count(const std::string& log, std::string_view part)
    {
        int found = 0;
        for (std::size_t at = 0; (at = log.find(part, at)) != std::string::npos; ++at) ++found;
        return found;
    }
    // Whether the log closes every call that it opens.
    static bool IsBalanced(const std::string& log) { return Count(log, "<func ") == Count(log, "</func>"); }
};

TEST_F(FaultPersistence, EveryFaultInEveryMethod)
{
    struct Case {
        const char* method;
        bool isMade;  // the object exists before the call
        HRESULT (*call)(IPersistStreamInit&, IStream&);
        int faults;  // how many faults the unit causes during one call of the proxy
    };
    static const Case kCases[] = {
        {"Load", false, [](IPersistStreamInit& p, IStream& s) { return p.Load(&s); }, 1},
        {"Save", true, [](IPersistStreamInit& p, IStream& s) { return p.Save(&s, TRUE); }, 2},
        {"IsDirty", true, [](IPersistStreamInit& p, IStream&) { return p.IsDirty(); }, 1},
        {"GetSizeMax", true,
         [](IPersistStreamInit& p, IStream&) {
             ULARGE_INTEGER size = {};
             return p.GetSizeMax(&size);
         },
         1},
        {"InitNew", false, [](IPersistStreamInit& p, IStream&) { return p.InitNew(); }, 1},
    };
    int cells = 0;
    for (const Case& tested : kCases) {
        for (const FaultKind& kind : AllFaultKinds()) {
            for (const bool isLogged : {true, false}) {
                SCOPED_TRACE(std::string(tested.method) + ", " + kind.name + (isLogged ? ", logged" : ", not logged"));
                unitScript = {};
                Begin(isLogged);
                if (tested.isMade) InitNew();
                const ComPtr<IStream> stream = StreamOf(Header(kFakeUnit, 3) + "abc");
                unitScript.duringCall = [&] { kind.act.act(kind.act.what); };
                EXPECT_EQ(E_UNEXPECTED, tested.call(*persistence.Get(), *stream.Get()));
                unitScript.duringCall = {};
                EXPECT_EQ(0u, CountCallsInProgress());
                const std::string news = News();
                EXPECT_TRUE(IsBalanced(news)) << news;
                if (isLogged) {
                    EXPECT_EQ(tested.faults, Count(news, "<error value=\"" + Escaped(kind.logged) + "\"/>\n")) << news;
                    EXPECT_EQ(1, Count(news, std::string("<func name=\"IPersistStreamInit::") + tested.method + '"'))
                        << news;
                } else {
                    EXPECT_EQ("", news);
                }
                // The unit continues to work.
                if (tested.isMade || std::strcmp(tested.method, "Load") == 0) {
                    EXPECT_EQ(S_OK, persistence->IsDirty());
                    EXPECT_EQ(S_OK, persistence->Save(stream.Get(), FALSE));
                    EXPECT_TRUE(IsBalanced(News()));
                }
                // Only this test holds a reference to the stream.
                stream->AddRef();
                EXPECT_EQ(1u, stream->Release());
                persistence.Reset();
                unit.Reset();
                EXPECT_EQ(0, FakeUnit::alive);
                ++cells;
            }
        }
    }
    std::printf("%d combinations of method, fault and logging\n", cells);
}

TEST_F(FaultPersistence, StreamsThatHoldAnything)
{
    const int inputs = 1'000 * Effort();
    Dice dice(6);
    RecordedMessages messages;
    constexpr std::uint32_t kLengths[] = {0, 1, 5, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 0x10000};
    int loaded = 0;
    for (int i = 0; i < inputs; ++i) {
        SCOPED_TRACE(i);
        unitScript = {};
        Begin(!dice.Once(4));
        std::string content;
        for (std::uint32_t bytes = dice.Below(60); bytes > 0; --bytes) content += static_cast<char>(dice.Any());
        if (!dice.Once(4)) {
            const bool isTrue = dice.Once(2);
            const std::uint32_t length = isTrue ? static_cast<std::uint32_t>(content.size()) : dice.Of(kLengths);
            content = Header(dice.Once(5) ? kNoUnit : kFakeUnit, length) + content;
        }
        if (dice.Once(4)) content.resize(dice.Below(static_cast<std::uint32_t>(content.size()) + 1));
        // The unit reads and seeks at random, and tries to write, which the stream refuses.
        unitScript.duringLoad = [&](IStream* stream) {
            for (std::uint32_t operations = dice.Below(8); operations > 0; --operations) {
                char buffer[100];
                ULONG count = 0;
                LARGE_INTEGER move;
                move.QuadPart = static_cast<LONGLONG>(dice.Below(80)) - (dice.Once(4) ? 40 : 0);
                switch (dice.Below(3)) {
                    case 0:
                        EXPECT_EQ(S_OK, stream->Read(buffer, dice.Below(sizeof buffer), &count));
                        EXPECT_GE(content.size(), count);
                        break;
                    case 1: stream->Seek(move, dice.Below(4), nullptr); break;
                    default: EXPECT_EQ(E_FAIL, stream->Write(buffer, 10, &count)); break;
                }
            }
        };
        const HRESULT result = persistence->Load(StreamOf(content).Get());
        const bool isMade = unitScript.created > 0;
        EXPECT_EQ(isMade, SUCCEEDED(result)) << std::hex << result;
        loaded += isMade;
        if (isMade) {
            ASSERT_GE(content.size(), 20u);
            EXPECT_EQ(0, std::memcmp(&kFakeUnit, content.data(), sizeof kFakeUnit));
        }
        EXPECT_TRUE(IsBalanced(News()));
    }
    std::printf("%d streams, %d loaded\n", inputs, loaded);
    EXPECT_LT(inputs / 10, loaded);
    EXPECT_GT(inputs, loaded);
}

// Makes the same random writes and seeks in a memory stream and in a string that models it, and compares the two.
TEST_F(FaultPersistence, MemoryStreamsDoWhatAStringDoes)
{
    const int inputs = 300 * Effort();
    Dice dice(7);
    int operations = 0;
    for (int i = 0; i < inputs; ++i) {
        SCOPED_TRACE(i);
        const ComPtr<CStreamImpl> memory(new CStreamImpl(nullptr));
        const std::uint32_t capacity = dice.Below(40);
        ASSERT_TRUE(memory->Allocate(capacity));
        memory->BeginWriting(dice.Once(2));
        std::string model;
        std::size_t position = 0;
        for (std::uint32_t left = dice.Below(40); left > 0; --left, ++operations) {
            ULONG count = 0;
            if (dice.Once(2)) {
                const std::string bytes(dice.Once(10) ? dice.Below(3000) : dice.Below(20),
                                        static_cast<char>(dice.Any()));
                ASSERT_EQ(S_OK, memory->Stream()->Write(bytes.data(), static_cast<ULONG>(bytes.size()), &count));
                ASSERT_EQ(bytes.size(), count);
                model.resize(std::max(model.size(), position + bytes.size()), '\0');
                model.replace(position, bytes.size(), bytes);
                position += bytes.size();
            } else {
                LARGE_INTEGER move;
                ULARGE_INTEGER told;
                move.QuadPart = dice.Below(200);
                const bool isRelative = dice.Once(2);
                ASSERT_EQ(S_OK, memory->Stream()->Seek(move, isRelative ? STREAM_SEEK_CUR : STREAM_SEEK_SET, &told));
                position = static_cast<std::size_t>(move.QuadPart) + (isRelative ? position : 0);
                ASSERT_EQ(position, told.QuadPart);
                model.resize(std::max(model.size(), position), '\0');
            }
            ASSERT_EQ(model.size(), memory->UsedLength());
            ASSERT_EQ(0, std::memcmp(model.data(), memory->Data(), model.size()));
        }
    }
    std::printf("%d streams, %d operations\n", inputs, operations);
}

}  // namespace
}  // namespace zelt::test
