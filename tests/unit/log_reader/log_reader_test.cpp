// Parsing logs: kinds, names and texts, cut-off and damaged files.
#include "log_reader/log_reader.h"

#include <windows.h>
#include <fcntl.h>
#include <io.h>
#include <psapi.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "log/value_writers.h"
#include "log_fixture.h"
#include "tests/fuzz/mutation.h"

namespace zelt::test {
namespace {

using enum EventKind;

struct Event {
    int depth;
    EventKind kind;
    bool inward;
    bool hasChildren;
    bool isEmpty;
    std::string name;
    std::string text;
    bool operator==(const Event&) const = default;
};

void PrintTo(const Event& event, std::ostream* out)
{
    *out << event.depth << " kind " << static_cast<int>(event.kind) << (event.inward ? " inward" : "")
         << (event.hasChildren ? " parent" : "") << (event.isEmpty ? " empty" : "") << " \""
         << event.name.substr(0, 200) << "\" \"" << event.text.substr(0, 200) << '"';
}

class Collector final : public LogSink {
public:
    void Begin(const LogEvent& event) override
    {
        events.push_back({event.depth, event.kind, event.inward, event.hasChildren, event.isEmpty,
                          std::string(event.name), std::string(event.text)});
        open.push_back(event.kind);
        EXPECT_EQ(static_cast<std::size_t>(event.depth) + 1, open.size());
    }
    // Each event ends once, with the kind with which it began.
    void End(EventKind kind, int depth) override
    {
        ASSERT_EQ(static_cast<std::size_t>(depth) + 1, open.size());
        EXPECT_EQ(open.back(), kind);
        open.pop_back();
    }
    void ParseError(int line) override { lines.push_back(line); }
    bool Continue() override { return ++ends != stopAt; }

    std::vector<Event> events;
    std::vector<EventKind> open;
    std::vector<int> lines;
    int ends = 0;
    int stopAt = 0;
};

// A file that each Read overwrites with a text before parsing it.
class Scratch {
public:
    Scratch() : path(TemporaryPath())
    {
        descriptor = _wopen(path.c_str(), _O_RDWR | _O_BINARY);
        PrepareLogReader();
    }
    ~Scratch()
    {
        _close(descriptor);
        DeleteFileW(path.c_str());
    }
    LogReadResult Read(const std::string& text, LogSink& sink) const
    {
        _lseek(descriptor, 0, SEEK_SET);
        EXPECT_EQ(static_cast<int>(text.size()), _write(descriptor, text.data(), static_cast<unsigned>(text.size())));
        _chsize(descriptor, static_cast<long>(text.size()));
        _lseek(descriptor, 0, SEEK_SET);
        return ReadLog(descriptor, sink);
    }

private:
    std::wstring path;
    int descriptor;
};

std::string InLog(const std::string& content)
{
    return "<?xml version=\"1.0\" standalone=\"yes\"?>\r\n<zeltlogdocument>\r\n" + content + "</zeltlogdocument>\r\n";
}

struct ElementCase {
    const char* name;
    const char* xml;
    std::vector<Event> expected;
};

const ElementCase kElements[] = {
    {"info", "<info value=\"a &lt;b&gt; &amp; &quot;c&quot;\"/>", {{0, Info, false, false, true, "", "a <b> & \"c\""}}},
    {"info without value", "<info/>", {{0, Info, false, false, true, "", "<no information>"}}},
    {"info with an empty value", "<info value=\"\"/>", {{0, Info, false, false, true, "", ""}}},
    {"error", "<error value=\"e\"/>", {{0, Error, false, false, true, "", "e"}}},
    {"error without value", "<error/>", {{0, Error, false, false, true, "", "<no information>"}}},
    {"error that is not empty", "<error value=\"e\"></error>", {{0, Error, false, false, false, "", "e"}}},
    {"error with a child",
     "<error value=\"e\"><info value=\"i\"/></error>",
     {{0, Error, false, true, false, "", "e"}, {1, Info, false, false, true, "", "i"}}},
    {"warning", "<warning value=\"w\"/>", {{0, Warning, false, false, true, "", "w"}}},
    {"warning that is not empty", "<warning value=\"w\"></warning>", {{0, Warning, false, false, false, "", "w"}}},
    {"inward call",
     "<func name=\"A::B\" direc=\"in\" object=\"o\"></func>",
     {{0, Call, true, false, false, "A::B", "o"}}},
    {"outward call",
     "<func name=\"A::B\" direc=\"out\" object=\"o\"></func>",
     {{0, Call, false, false, false, "A::B", "o"}}},
    {"call of another direction",
     "<func name=\"A\" direc=\"IN\" object=\"o\"/>",
     {{0, Call, false, false, true, "A", "o"}}},
    {"call without direction", "<func name=\"A\" object=\"o\"/>", {{0, Call, false, false, true, "A", "o"}}},
    {"call without anything", "<func/>", {{0, Call, false, false, true, "", ""}}},
    {"call with brackets in its parts",
     "<func name=\"A (b)\" direc=\"in\" object=\"c (type: d)\"/>",
     {{0, Call, true, false, true, "A (b)", "c (type: d)"}}},
    {"in argument",
     "<arg name=\"n\" direc=\"in\" type=\"VT_ARRAY|VT_R8\"><argval value=\"1\"/></arg>",
     {{0, Argument, true, true, false, "n", "VT_ARRAY|VT_R8"}, {1, Value, false, false, true, "", "1"}}},
    {"out argument", "<arg name=\"n\" direc=\"out\" type=\"t\"/>", {{0, Argument, false, false, true, "n", "t"}}},
    {"message with the attributes of a call",
     "<info name=\"n\" direc=\"in\" object=\"o\" value=\"v\"/>",
     {{0, Info, false, false, true, "", "v"}}},
    {"value without value", "<argval/>", {{0, Value, false, false, true, "", "<no information>"}}},
    {"another element",
     "<port kind=\"material\" name=\"Feed 1\"/>",
     {{0, Other, false, false, true, "", "port material Feed 1"}}},
    {"another element without attributes", "<port></port>", {{0, Other, false, false, false, "", "port"}}},
    {"a known name of another namespace",
     "<info xmlns=\"x\" value=\"v\"/>",
     {{0, Other, false, false, true, "", "info x v"}}},
    {"a root inside", "<zeltlogdocument/>", {{0, Other, false, false, true, "", "zeltlogdocument"}}},
    {"characters that are no element", "text <!-- <info/> --> <![CDATA[<info/>]]> <?info?>", {}},
    {"siblings behind a parent",
     "<func name=\"f\" direc=\"in\" object=\"o\"><info value=\"1\"/></func><info value=\"2\"/>",
     {{0, Call, true, true, false, "f", "o"},
      {1, Info, false, false, true, "", "1"},
      {0, Info, false, false, true, "", "2"}}},
};

TEST(LogReader, GivesEachElementItsKindNameAndText)
{
    const Scratch scratch;
    for (const ElementCase& element : kElements) {
        SCOPED_TRACE(element.name);
        Collector collector;
        EXPECT_EQ(LogReadResult::Complete, scratch.Read(InLog(element.xml), collector));
        EXPECT_EQ(element.expected, collector.events);
        EXPECT_TRUE(collector.open.empty());
        EXPECT_TRUE(collector.lines.empty());
    }
}

TEST(LogReader, ShowsARootOfAnotherKind)
{
    Collector collector;
    EXPECT_EQ(LogReadResult::Complete, Scratch().Read("<other a=\"b\"><info/></other>", collector));
    const std::vector<Event> expected = {{0, Other, false, true, false, "", "other b"},
                                         {1, Info, false, false, true, "", "<no information>"}};
    EXPECT_EQ(expected, collector.events);
}

TEST(LogReader, KeepsAValueOfFiveThousandBytes)
{
    const std::string value(5000, 'x');
    Collector collector;
    EXPECT_EQ(LogReadResult::Complete, Scratch().Read(InLog("<info value=\"" + value + "\"/>"), collector));
    ASSERT_EQ(1u, collector.events.size());
    EXPECT_EQ(value, collector.events[0].text);
}

TEST(LogReader, ReadsAnEmptyFileAsAnError)
{
    Collector collector;
    EXPECT_EQ(LogReadResult::Incomplete, Scratch().Read("", collector));
    EXPECT_TRUE(collector.events.empty());
}

TEST(LogReader, TellsTheLineOfAnError)
{
    Collector collector;
    EXPECT_EQ(LogReadResult::Incomplete, Scratch().Read("<zeltlogdocument>\n<info value=\"1\"/>\n<info <", collector));
    ASSERT_FALSE(collector.lines.empty());
    EXPECT_EQ(3, collector.lines.front());
    ASSERT_EQ(1u, collector.events.size());
    EXPECT_EQ("1", collector.events[0].text);
}

TEST(LogReader, StopsWhenTheSinkHasEnough)
{
    for (const char* element : {"<func name=\"f\" direc=\"in\" object=\"o\"></func>\n", "<info value=\"i\"/>\n"}) {
        std::string many;
        for (int i = 0; i < 100; ++i) many += element;
        Collector collector;
        collector.stopAt = 7;
        EXPECT_EQ(LogReadResult::Cancelled, Scratch().Read(InLog(many), collector));
        EXPECT_EQ(7u, collector.events.size());
    }
}

// A log that exceeds a limit of the parser counts as damaged, and everything before that place is kept.
TEST(LogReader, EndsAtTheParsersLimits)
{
    const Scratch scratch;
    std::string nested;
    for (int i = 0; i < 300; ++i) nested += "<func name=\"f\" direc=\"in\" object=\"o\">";
    Collector deep;
    EXPECT_EQ(LogReadResult::Incomplete, scratch.Read(InLog(nested), deep));
    EXPECT_FALSE(deep.lines.empty());
    EXPECT_GE(deep.events.size(), 254u);
    EXPECT_LE(deep.events.size(), 256u);

    Collector huge;
    EXPECT_EQ(LogReadResult::Incomplete,
              scratch.Read(InLog("<info value=\"1\"/><info value=\"" + std::string(10'000'100, 'x') + "\"/>"), huge));
    EXPECT_FALSE(huge.lines.empty());
    ASSERT_GE(huge.events.size(), 1u);
    EXPECT_EQ("1", huge.events[0].text);
}

TEST(LogReader, ExpandsNoEntityAndReadsNoOtherFile)
{
    const Scratch scratch;
    const std::string text =
        "<?xml version=\"1.0\"?><!DOCTYPE zeltlogdocument SYSTEM \"file:///C:/windows/win.ini\" ["
        "<!ENTITY own \"text\"><!ENTITY other SYSTEM \"file:///C:/windows/win.ini\">]>"
        "<zeltlogdocument><info value=\"a &own; b\"/>&other;<info value=\"2\"/></zeltlogdocument>";
    Collector collector;
    scratch.Read(text, collector);
    const std::vector<Event> expected = {{0, Info, false, false, true, "", "a &own; b"},
                                         {0, Info, false, false, true, "", "2"}};
    EXPECT_EQ(expected, collector.events);

    std::string bomb = "<?xml version=\"1.0\"?><!DOCTYPE zeltlogdocument [<!ENTITY e0 \"xxxxxxxxxx\">";
    for (int i = 1; i < 12; ++i) {
        bomb += "<!ENTITY e" + std::to_string(i) + " \"";
        for (int j = 0; j < 10; ++j) bomb += "&e" + std::to_string(i - 1) + ";";
        bomb += "\">";
    }
    bomb += "]><zeltlogdocument><info value=\"&e11;\"/></zeltlogdocument>";
    Collector bombed;
    const ULONGLONG start = GetTickCount64();
    scratch.Read(bomb, bombed);
    EXPECT_LT(GetTickCount64() - start, 10'000u);
    for (const Event& event : bombed.events) EXPECT_LT(event.text.size(), 100u);
}

// A log with every kind of entry, as the server writes it.
class WrittenLog : public LogFixture {
protected:
    std::string Write()
    {
        document->BeginFunc(true, "ICapeThermoMaterialObject::GetProp", "Root");
        WriteArg(*document, "count", true, 3L);
        WriteArg(*document, "text", true, static_cast<BSTR>(nullptr));
        document->BeginFunc(false, "ICapeUtilities::Initialize", "a \"quoted\" <name> & more");
        WriteArg(*document, "value", true, 1.5);
        document->EndFunc(E_FAIL, nullptr);
        WriteArg(*document, "old", false, -std::numeric_limits<double>::max());
        document->EndFunc(S_OK, nullptr);
        document->Write(Sentence::CreatingObject, {"Root: QueryInterface for ICapeThermoMaterialObject"});
        document->Write(Sentence::NullOutput, {"a warning with a tab\there"});
        document->Write(Sentence::ObjectNotCreated);
        for (int i = 0; i < 12; ++i) {
            document->BeginFunc(true, "ICapeIdentification::get_ComponentName", "Root");
            document->EndFunc(S_OK, nullptr);
        }
        Close();
        return ReadWhole(path);
    }
};

// Where the start tags in a well-formed log end, except the root's.
std::vector<std::size_t> StartTagEnds(const std::string& log)
{
    std::vector<std::size_t> ends;
    for (std::size_t at = log.find("<zeltlogdocument>") + 1; (at = log.find('<', at)) != std::string::npos; ++at) {
        if (log[at + 1] != '/') ends.push_back(log.find('>', at) + 1);
    }
    return ends;
}

TEST_F(WrittenLog, IsReadWhole)
{
    const Scratch scratch;
    const std::string log = Write();
    Collector whole;
    ASSERT_EQ(LogReadResult::Complete, scratch.Read(log, whole));
    EXPECT_EQ(StartTagEnds(log).size(), whole.events.size());
    EXPECT_EQ(1, std::count_if(whole.events.begin(), whole.events.end(), [](const Event& event) {
                  return event.kind == Error && event.text == "object not created";
              }));
}

TEST_F(WrittenLog, CutAtEachByteGivesWhatStandsBeforeTheCut)
{
    const Scratch scratch;
    const std::string log = Write();
    Collector whole;
    ASSERT_EQ(LogReadResult::Complete, scratch.Read(log, whole));
    const std::vector<std::size_t> ends = StartTagEnds(log);
    const std::size_t rootEnd = log.find("</zeltlogdocument>") + std::string("</zeltlogdocument>").size();
    for (std::size_t cut = 0; cut <= log.size(); ++cut) {
        Collector collector;
        const LogReadResult result = scratch.Read(log.substr(0, cut), collector);
        ASSERT_EQ(cut >= rootEnd ? LogReadResult::Complete : LogReadResult::Incomplete, result) << cut;
        ASSERT_EQ(cut < rootEnd, !collector.lines.empty()) << cut;
        const auto expected = static_cast<std::size_t>(
            std::count_if(ends.begin(), ends.end(), [&](std::size_t end) { return end <= cut; }));
        ASSERT_TRUE(collector.open.empty()) << cut;
        ASSERT_EQ(expected, collector.events.size()) << log.substr(cut > 200 ? cut - 200 : 0, 200);
        for (std::size_t i = 0; i < expected; ++i) {
            ASSERT_EQ(whole.events[i].name, collector.events[i].name) << cut;
            ASSERT_EQ(whole.events[i].text, collector.events[i].text) << cut;
            ASSERT_EQ(whole.events[i].depth, collector.events[i].depth) << cut;
            ASSERT_EQ(whole.events[i].kind, collector.events[i].kind) << cut;
            ASSERT_EQ(whole.events[i].inward, collector.events[i].inward) << cut;
        }
    }
}

std::size_t CommittedMemory()
{
    PROCESS_MEMORY_COUNTERS counters = {};
    counters.cb = sizeof counters;
    K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
}

// ZELT_MUTATED_LOGS sets the number of logs; an ordinary run has 20,000.
TEST_F(WrittenLog, MutatedNeitherCrashesNorHangsNorLeaks)
{
    const char* wanted = std::getenv("ZELT_MUTATED_LOGS");
    const int runs = wanted ? std::atoi(wanted) : 20'000;
    const Scratch scratch;
    const std::string log = Write();
    std::mt19937 random(20240229);
    std::size_t before = 0;
    int incomplete = 0;
    const ULONGLONG start = GetTickCount64();
    for (int run = 0; run < runs; ++run) {
        if (run == runs / 5) before = CommittedMemory();
        std::string mutated = log;
        Mutate(mutated, random);
        Collector collector;
        incomplete += scratch.Read(mutated, collector) == LogReadResult::Incomplete;
        int depth = -1;
        bool parent = true;
        for (const Event& event : collector.events) {
            ASSERT_EQ(parent, event.depth == depth + 1) << "run " << run;
            ASSERT_LE(event.depth, depth + 1) << "run " << run;
            depth = event.depth;
            parent = event.hasChildren;
        }
    }
    EXPECT_GT(incomplete, runs / 2);
    EXPECT_LT(CommittedMemory(), before + 4'000'000);
    EXPECT_LT(GetTickCount64() - start, 20'000u + static_cast<ULONGLONG>(runs) * 10);
}

}  // namespace
}  // namespace zelt::test
