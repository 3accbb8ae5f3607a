// A log gives the same events with the scanner as with the parser alone, and most logs need only the scanner.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <optional>

#include "command_runner.h"
#include "tests/fuzz/both_readers.h"
#include "tests/trees.h"

namespace zelt::test {
namespace {

// A long log is cut only at one byte in this many. If ZELT_EVERY_CUT is in the environment, it is cut at every byte, which
// takes a quarter of an hour.
constexpr std::size_t kCutsLeftOut = 1499;

class BothReaders : public testing::TestWithParam<std::string> {
protected:
    BothReaders() { PrepareLogReader(); }

    std::string log =
        ReadBytes(GetParam().ends_with(".zlg") ? SourceFile("tests/") + GetParam() : GoldenLog(GetParam()));
};

void ExpectEqual(const Recording& expected, const Recording& seen, std::size_t length)
{
    ASSERT_EQ(expected.result, seen.result) << length;
    ASSERT_EQ(expected.events, seen.events) << length;
    ASSERT_EQ(expected.errors, seen.errors) << length;
    ASSERT_EQ(expected.leftOpen, seen.leftOpen) << length;
}

void ExpectEqual(std::string_view log, const ScanSizes& sizes, const Wishes& wishes)
{
    const Recording expected = RecordByParser(log, sizes.block, wishes);
    ExpectEqual(expected, Record<FastBytes>(log, sizes, wishes), log.size());
    if (log.size() % 4 == 0) ExpectEqual(expected, Record<PlainBytes>(log, sizes, wishes), log.size());
}

TEST_P(BothReaders, GiveTheSameForTheWholeLog)
{
    for (const bool lines : {true, false}) {
        for (const unsigned leftOut : {0u, 3u, 8u}) {
            ExpectEqual(log, {}, {lines, leftOut, 0});
            ExpectEqual(log, {1024, 1 << 20}, {lines, leftOut, 0});
        }
    }
}

TEST_P(BothReaders, GiveTheSameForEveryCut)
{
    const bool isShort = log.size() < 10'000;
    const std::size_t step = isShort || std::getenv("ZELT_EVERY_CUT") ? 1 : kCutsLeftOut;
    for (std::size_t length = 0; length < log.size() && !HasFatalFailure(); length += step) {
        const auto leftOut = static_cast<unsigned>(length % 9);
        ExpectEqual(std::string_view(log).substr(0, length), {isShort ? 1024u : 65536u, 1 << 20}, {true, leftOut, 0});
    }
}

TEST_P(BothReaders, StopTheSame)
{
    for (std::size_t end = 1; end < 200; end += 7) ExpectEqual(log, {1024, 1 << 20}, {true, 2, end});
}

std::string TestName(const testing::TestParamInfo<std::string>& info)
{
    const std::string name = info.param.substr(info.param.rfind('/') + 1);
    return name.substr(0, name.find('.'));
}

INSTANTIATE_TEST_SUITE_P(GoldenLogs, BothReaders, testing::ValuesIn(kGoldenLogs), TestName);
INSTANTIATE_TEST_SUITE_P(ShortLogs, BothReaders,
                         testing::Values("log_commands/conversation.zlg", "golden/script_flowsheet.zlg",
                                         "golden/field_package.zlg", "golden/field_unit.zlg", "golden/vendor_unit.zlg",
                                         "fuzz/seeds/every_element.zlg"),
                         TestName);

class LogScanning : public testing::Test {
protected:
    LogScanning() { PrepareLogReader(); }

    // Returns nothing if the parser has to read the rest, from `start` on.
    std::optional<LogReadResult> Scan(const std::string& log)
    {
        Recording recording;
        Recorder recorder(recording, {});
        Blocks input(log, kReadAhead);
        LogScanner<FastBytes> scanner(input, recorder);
        const auto result = scanner.Scan();
        start = scanner.Resume();
        return result;
    }

    ResumePoint start;
};

TEST_F(LogScanning, NeedsNoParserForAWholeLog)
{
    for (const std::string& name : kGoldenLogs) {
        EXPECT_EQ(LogReadResult::Complete, Scan(ReadBytes(GoldenLog(name)))) << name;
    }
    EXPECT_EQ(LogReadResult::Complete, Scan(ReadBytes(SourceFile("tests/fuzz/seeds/every_element.zlg"))));
}

TEST_F(LogScanning, LeavesOnlyTheEndOfACutOffLogToTheParser)
{
    const std::string log = ReadBytes(GoldenLog("sample_simulator_reactions"));
    EXPECT_FALSE(Scan(log.substr(0, log.size() - 30)));
    EXPECT_GT(start.offset, 190'000);
    EXPECT_LT(start.offset, static_cast<std::int64_t>(log.size()) - 600);
    EXPECT_GT(start.line, 3000);
}

TEST_F(LogScanning, LeavesOnlyTheEndOfAShortLogToTheParser)
{
    std::string entries;
    for (int i = 0; i < 220; ++i) entries += "<info value=\"0123456789\"/>\r\n";
    const std::string log = InLog(entries);
    EXPECT_FALSE(Scan(log.substr(0, log.size() - 30)));
    EXPECT_GT(start.offset, 2600);
}

TEST_F(LogScanning, TakesOnlyWhatZeltWrites)
{
    const std::string entry = "<func name=\"I::M\" direc=\"in\" object=\"A\">\r\n</func>\r\n";
    ASSERT_EQ(LogReadResult::Complete, Scan(InLog(entry)));
    const auto replaced = [&](const std::string& what, const std::string& by) {
        std::string changed = entry;
        return changed.replace(changed.find(what), what.size(), by);
    };
    for (const std::string& changed : {replaced("\r\n", "\n"),
                                       replaced("name=\"I::M\" direc=\"in\"", "direc=\"in\" name=\"I::M\""),
                                       replaced("\"A\"", "'A'"),
                                       replaced("A", "\x80"),
                                       replaced("A", "\t"),
                                       replaced("A", "&#65;"),
                                       replaced("A", "&nbsp;"),
                                       replaced("A", "&amp"),
                                       replaced("A", "<"),
                                       replaced("A", ">"),
                                       replaced("A", "'"),
                                       replaced("\"in\"", "\"to\""),
                                       replaced("\"in\"", "\"In\""),
                                       replaced("</func>", "</func >"),
                                       replaced("</func>", "</arg>"),
                                       replaced("<func name", "<func  name"),
                                       replaced("</func>\r\n", "</func> \r\n"),
                                       replaced("</func>", "text</func>"),
                                       replaced("<func", "\t<func"),
                                       std::string("<argval value=\"1\"/>\r\n"),
                                       std::string("<arg name=\"a\" direc=\"in\" type=\"b\">\r\n</arg>\r\n"),
                                       std::string("<!---->\r\n"),
                                       std::string("\r\n")}) {
        EXPECT_FALSE(Scan(InLog(changed))) << changed;
    }
    EXPECT_FALSE(Scan("\xEF\xBB\xBF" + InLog(entry)));
    EXPECT_FALSE(Scan(InLog(entry) + "\r\n"));
    EXPECT_FALSE(Scan(""));
}

TEST_F(LogScanning, TakesLongTextsAndDeepCalls)
{
    std::string entries = "<info value=\"" + std::string(300'000, 'x') + "&lt;\"/>\r\n";
    for (int depth = 0; depth < 150; ++depth) entries += "<func name=\"I::M\" direc=\"in\" object=\"A\">\r\n";
    for (int depth = 0; depth < 150; ++depth) entries += "</func>\r\n";
    EXPECT_EQ(LogReadResult::Complete, Scan(InLog(entries)));
    ExpectEqual(InLog(entries), {}, {});
    ExpectEqual(InLog(entries + std::string(3'000'000, 'x')), {}, {});
}

// What the parser finds in damage depends on where it split the text before the damage.
TEST_F(LogScanning, LeavesDamageToTheParserAfterAnyLength)
{
    const std::string damage =
        "<a:b xmlns:a=\"urn:x\" xmlns=\"urn:y\">&<?p i?><c a:d=\"e\" f=\"\"/><!-- c "
        "--><![CDATA[<info/>]]>text<func/></a:b>";
    std::string entries;
    for (int line = 0; line < 600 && !HasFatalFailure(); ++line) {
        entries += "<info value=\"" + std::string(static_cast<std::size_t>(line) % 41, 'x') + "\"/>\r\n";
        const std::string log = InLog(entries + damage);
        ExpectEqual(log, {1024, 1 << 20}, {});
        ExpectEqual(log, {}, {});
    }
}

TEST(ByteSearch, FindsTheSameInBothWays)
{
    for (std::size_t length = 0; length < 40; ++length) {
        for (int byte = 0; byte < 256; ++byte) {
            for (const char around : {'a', ' ', '\x7F'}) {
                std::string text(length, around);
                text += static_cast<char>(byte);
                text.append(kSlack, around).append(kSlack, '\0');
                const char* const start = text.data();
                const bool isPlain = byte >= 0x20 && byte < 0x80 && !std::strchr("\"&'<>", byte);
                const std::size_t end = isPlain ? length + 1 + kSlack : length;
                EXPECT_EQ(end, static_cast<std::size_t>(PlainBytes::EndOfPlainText(start) - start)) << byte;
                EXPECT_EQ(end, static_cast<std::size_t>(FastBytes::EndOfPlainText(start) - start)) << byte;
                EXPECT_EQ(PlainBytes::EndOfBlanks(start), FastBytes::EndOfBlanks(start)) << byte;
            }
        }
    }
}

TEST(ByteSearch, CopiesTheSameInBothWays)
{
    for (std::size_t length = 0; length < 40; ++length) {
        for (int byte = 0; byte < 256; ++byte) {
            std::string text = std::string(length, 'a') + static_cast<char>(byte) + "b\"";
            const std::size_t end = byte == '&' || byte == '"' ? length : length + 2;
            text.append(kSlack, '&');
            const auto expectCopy = [&](auto copy) {
                std::string out(text.size() + kSlack, '?');
                EXPECT_EQ(end, static_cast<std::size_t>(copy(text.data(), out.data()) - text.data())) << byte;
                EXPECT_EQ(text.substr(0, end), out.substr(0, end)) << byte;
            };
            expectCopy(PlainBytes::CopyToMarkup);
            expectCopy(FastBytes::CopyToMarkup);
        }
    }
}

}  // namespace
}  // namespace zelt::test
