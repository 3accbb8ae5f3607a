// The value writers are given anything that a package may pass: nothing ends the process or damages the log.
#include <cstdio>
#include <cstring>

#include "guard/calls_in_progress.h"
#include "log/value_writers.h"
#include "log/variant_writer.h"
#include "hostile_values.h"
#include "log_fixture.h"
#include "same_bytes.h"
#include "log_reader/log_reader.h"

#include <fcntl.h>
#include <io.h>

namespace zelt::test {
namespace {

constexpr Shape kShapes[] = {kAnything, kStrings,  kOptionalStrings, kDoubles, kOptionalDoubles,
                             kIntegers, kBooleans, kVariants,        kObjects};

// Counts the outermost arguments of a log; a parse error fails the test.
class Counter final : public LogSink {
public:
    void Begin(const LogEvent& event) override { arguments += event.depth == 0 && event.kind == EventKind::Argument; }
    void ParseError(int line) override { ADD_FAILURE() << "line " << line; }
    int arguments = 0;
};

class FuzzValues : public testing::Test {
protected:
    // Writes `inputs` entries with `write`, in logs of limited size, and reads each log.
    template <class WriteOne>
    static void Fuzz(int inputs, WriteOne write)
    {
        constexpr int kEntriesOfALog = 5'000;
        PrepareLogReader();
        for (int done = 0; done < inputs;) {
            const std::wstring path = TemporaryPath();
            LogOptions options;
            options.promptOpenLog = false;
            LogFile file;
            ASSERT_EQ(0, file.Open(path));
            auto* document = new LogDocument(std::move(file), "Root", "kind of object", path, options);
            document->Hold();
            const int entries = std::min(kEntriesOfALog, inputs - done);
            for (int i = 0; i < entries; ++i) {
                SCOPED_TRACE(done + i);
                write(*document);
                ASSERT_EQ(0, document->Depth());
                ASSERT_EQ(0u, CountCallsInProgress());
            }
            document->LetGo();
            Counter counter;
            const int descriptor = _wopen(path.c_str(), _O_RDONLY | _O_BINARY);
            EXPECT_EQ(LogReadResult::Complete, ReadLog(descriptor, counter)) << "entries from " << done;
            _close(descriptor);
            EXPECT_EQ(entries, counter.arguments);
            if (HasFailure()) return;
            DeleteFileW(path.c_str());
            done += entries;
        }
        std::printf("%d inputs\n", inputs);
    }
};

TEST_F(FuzzValues, Variants)
{
    HostileValues values(4);
    Fuzz(10'000 * Effort(), [&](LogDocument& document) {
        const VARIANT& value = values.Next();
        const VARIANT before = value;
        WriteArg(document, "x", values.Choice().Once(2), value, values.Choice().Of(kShapes));
        ASSERT_TRUE(SameBytes(before, value)) << "the value was changed";
    });
}

TEST_F(FuzzValues, StringsAndNumbers)
{
    HostileValues values(5);
    Fuzz(10'000 * Effort(), [&](LogDocument& document) {
        Dice& dice = values.Choice();
        const auto any = static_cast<long>(dice.Any());
        switch (dice.Below(7)) {
            case 0: return WriteArg(document, "x", true, static_cast<short>(any));
            case 1: return WriteArg(document, "x", true, any);
            case 2: return WriteFlagsArg(document, "x", true, any);
            case 3: return WriteVariantBoolArg(document, "x", true, static_cast<VARIANT_BOOL>(any));
            case 4: {
                double number = 0;
                const std::uint32_t bits[2] = {dice.Any(), dice.Any()};
                std::memcpy(&number, bits, sizeof number);
                return WriteArg(document, "x", false, number);
            }
            case 5: return WriteNamedInterfaceArg(document, "x", false, reinterpret_cast<IUnknown*>(16), "n<\x01\xE9>");
            default: return WriteArg(document, "x", true, values.NextString());
        }
    });
}

}  // namespace
}  // namespace zelt::test
