// What the viewer shows for each element of a log: image, label, and whether it is in the list of errors.
#include "shell/log_viewer/tree_row.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "log_reader/log_reader.h"

namespace zelt::test {
namespace {

struct LabelRow {
    int depth;
    int image;
    bool hasChildren;
    bool isError;
    std::string label;
    bool operator==(const LabelRow&) const = default;
};

void PrintTo(const LabelRow& row, std::ostream* out)
{
    *out << row.depth << ' ' << row.image << (row.hasChildren ? " parent " : " ") << (row.isError ? "error " : "")
         << row.label;
}

class Collector final : public RowSink {
public:
    void Row(const TreeRow& row) override
    {
        rows.push_back({row.depth, row.image, row.hasChildren, row.isError, std::string(row.label)});
    }
    void ParseError(int line) override { lines.push_back(line); }
    bool Continue() override { return ++ends != stopAt; }

    std::vector<test::LabelRow> rows;
    std::vector<int> lines;
    int ends = 0;
    int stopAt = 0;
};

class Text final : public LogInput {
public:
    explicit Text(std::string_view text) : rest(text) {}
    int Read(char* out, int length) override
    {
        const std::size_t count = rest.copy(out, static_cast<std::size_t>(length));
        rest.remove_prefix(count);
        return static_cast<int>(count);
    }

private:
    std::string_view rest;
};

LogReadResult Read(const std::string& content, Collector& collector)
{
    PrepareLogReader();
    const std::string log = "<?xml version=\"1.0\" standalone=\"yes\"?>\r\n<zeltlogdocument>\r\n" + content;
    Text text(log);
    RowBuilder builder(collector);
    return ReadLog(text, builder);
}

struct ElementCase {
    const char* name;
    const char* xml;
    std::vector<LabelRow> expected;
};

const ElementCase kElements[] = {
    {"info", "<info value=\"a &lt;b&gt; &amp; &quot;c&quot;\"/>", {{0, 2, false, false, "a <b> & \"c\""}}},
    {"info without value", "<info/>", {{0, 2, false, false, "<no information>"}}},
    {"info with an empty value", "<info value=\"\"/>", {{0, 2, false, false, ""}}},
    {"error", "<error value=\"e\"/>", {{0, 3, false, true, "e"}}},
    {"error without value", "<error/>", {{0, 3, false, true, "<no information>"}}},
    {"error that is not empty", "<error value=\"e\"></error>", {{0, 3, false, false, "e"}}},
    {"error with a child",
     "<error value=\"e\"><info value=\"i\"/></error>",
     {{0, 3, true, false, "e"}, {1, 2, false, false, "i"}}},
    {"warning", "<warning value=\"w\"/>", {{0, 10, false, true, "w"}}},
    {"inward call", "<func name=\"A::B\" direc=\"in\" object=\"o\"></func>", {{0, 4, false, false, "A::B (o)"}}},
    {"outward call", "<func name=\"A::B\" direc=\"out\" object=\"o\"></func>", {{0, 5, false, false, "A::B (o)"}}},
    {"call of another direction", "<func name=\"A\" direc=\"IN\" object=\"o\"/>", {{0, 5, false, false, "A (o)"}}},
    {"call without direction", "<func name=\"A\" object=\"o\"/>", {{0, 5, false, false, "A (o)"}}},
    {"call without anything", "<func/>", {{0, 5, false, false, " ()"}}},
    {"in argument",
     "<arg name=\"n\" direc=\"in\" type=\"VT_ARRAY|VT_R8\"><argval value=\"1\"/></arg>",
     {{0, 6, true, false, "n (type: VT_ARRAY|VT_R8)"}, {1, 8, false, false, "1"}}},
    {"out argument", "<arg name=\"n\" direc=\"out\" type=\"t\"/>", {{0, 7, false, false, "n (type: t)"}}},
    {"value without value", "<argval/>", {{0, 8, false, false, "<no information>"}}},
    {"another element", "<port kind=\"material\" name=\"Feed 1\"/>", {{0, 8, false, false, "port material Feed 1"}}},
    {"another element without attributes", "<port></port>", {{0, 8, false, false, "port"}}},
    {"a root inside", "<zeltlogdocument/>", {{0, 8, false, false, "zeltlogdocument"}}},
    {"characters that are no element", "text <!-- <info/> --> <![CDATA[<info/>]]> <?info?>", {}},
    {"siblings behind a parent",
     "<func name=\"f\" direc=\"in\" object=\"o\"><info value=\"1\"/></func><info value=\"2\"/>",
     {{0, 4, true, false, "f (o)"}, {1, 2, false, false, "1"}, {0, 2, false, false, "2"}}},
};

TEST(TreeRow, GivesEachElementItsImageAndLabel)
{
    for (const ElementCase& element : kElements) {
        SCOPED_TRACE(element.name);
        Collector collector;
        EXPECT_EQ(LogReadResult::Complete, Read(std::string(element.xml) + "</zeltlogdocument>", collector));
        EXPECT_EQ(element.expected, collector.rows);
        EXPECT_TRUE(collector.lines.empty());
    }
}

// A batch stores its labels one after another, so a new label must not change the text before it.
TEST(TreeRow, LeavesWhatStandsBeforeALabel)
{
    std::string labels = "before";
    AppendLabel(labels, {EventKind::Call, true, false, 0, 0, "A::B", "o"});
    AppendLabel(labels, {EventKind::Argument, true, false, 1, 0, "n", "VT_R8"});
    AppendLabel(labels, {EventKind::Value, false, false, 2, 0, {}, "1"});
    EXPECT_EQ("beforeA::B (o)n (type: VT_R8)1", labels);
}

TEST(TreeRow, TakesACallsLabelApart)
{
    for (const auto& [name, object] : {std::pair("A::B", "o"), {"A::B", "one (a)"}, {"A::B", ""}, {"", ""}}) {
        std::string label;
        AppendLabel(label, {EventKind::Call, true, false, 0, 0, name, object});
        const CallLabel parts = SplitCallLabel(label);
        EXPECT_EQ(name, parts.name) << label;
        EXPECT_EQ(object, parts.object) << label;
    }
}

TEST(TreeRow, PassesOnWhereTheParserObjects)
{
    Collector collector;
    EXPECT_EQ(LogReadResult::Incomplete, Read("<info value=\"1\"/>\n<info <", collector));
    ASSERT_FALSE(collector.lines.empty());
    EXPECT_EQ(4, collector.lines.front());
    EXPECT_EQ((std::vector<LabelRow>{{0, 2, false, false, "1"}}), collector.rows);
}

TEST(TreeRow, EndsTheReadingWhenTheSinkHasEnough)
{
    std::string many;
    for (int i = 0; i < 100; ++i) many += "<info value=\"i\"/>\n";
    Collector collector;
    collector.stopAt = 7;
    EXPECT_EQ(LogReadResult::Cancelled, Read(many, collector));
    EXPECT_EQ(7u, collector.rows.size());
}

}  // namespace
}  // namespace zelt::test
