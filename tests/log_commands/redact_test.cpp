// log redact: removes everything that is the user's, and keeps everything else.
#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <set>

#include "command_runner.h"
#include "ctl/log/redaction/message_redaction.h"
#include "tests/trees.h"

namespace zelt::test {
namespace {

// The texts of a log that may be names: those between escaped quotes, and the names of objects.
std::set<std::string> NamesIn(const std::string& log)
{
    std::set<std::string> names;
    const std::regex pattern("object=\"([^\"]+)\"|[\" ]&quot;([^&]+)&quot;");
    for (std::sregex_iterator at(log.begin(), log.end(), pattern), end; at != end; ++at) {
        names.insert((*at)[1].matched ? (*at)[1].str() : (*at)[2].str());
    }
    return names;
}

std::string Redacted(const std::string& path) { return RunCommand({"log", "redact", path}).data; }

TEST(LogRedact, KeepsNoNameAndNoValue)
{
    // Words of the standard, and the aliases of compounds.
    const std::regex kept("[a-zA-Z]+(\\.D[a-zA-Z]+)?|Compound-[1-9][0-9]*");
    for (const std::string& log : kGoldenLogs) {
        const std::string original = ReadBytes(GoldenLog(log)), redacted = Redacted(GoldenLog(log));
        ASSERT_EQ(LinesOf(original).size(), LinesOf(redacted).size());
        int own = 0;
        for (const std::string& name : NamesIn(redacted)) {
            if (name.starts_with("redacted-"))
                ++own;
            else
                EXPECT_TRUE(std::regex_match(name, kept)) << name;
        }
        EXPECT_GT(own, 20);
        for (const char* secret : {"Aromatics", "Benzene", "Methanol", "Hydrogen", "Feed", "SampleSimulator", "71-43-2",
                                   "colour", "Temperature limits", "at DATE"}) {
            EXPECT_EQ(std::string::npos, redacted.find(secret)) << log << ' ' << secret;
        }
    }
}

// The alias of another number may happen to contain the same digits, so a number is looked for as a whole, and only in the lines
// that had it.
TEST(LogRedact, ReplacesNumbers)
{
    const auto has = [](const std::string& line, const char* number) {
        return std::regex_search(line, std::regex(std::string("(^|[^0-9.])") + number + "($|[^0-9])"));
    };
    int replaced = 0;
    for (const std::string& log : kGoldenLogs) {
        const auto original = LinesOf(ReadBytes(GoldenLog(log))), redacted = LinesOf(Redacted(GoldenLog(log)));
        ASSERT_EQ(original.size(), redacted.size());
        for (const char* number : {"353.2", "0.333333"}) {
            for (std::size_t i = 0; i < original.size(); ++i) {
                if (original[i].find(number) == std::string::npos || !has(original[i], number)) continue;
                EXPECT_FALSE(has(redacted[i], number)) << log << ", line " << i + 1;
                ++replaced;
            }
        }
    }
    EXPECT_GT(replaced, 10);
}

TEST(LogRedact, KeepsStructureAndStatistics)
{
    const std::regex names("\"name\":\"[^\"]*\"");
    for (const std::string& log : kGoldenLogs) {
        const TemporaryLog redacted(Redacted(GoldenLog(log)));
        const auto methods = [](const std::string& path) {
            std::string text = RunCommand({"log", "stats", "--sort", "name", path}).data;
            return text.substr(0, text.find("\n\n"));
        };
        EXPECT_EQ(methods(GoldenLog(log)), methods(redacted.Path()));
        const auto total = [](const std::string& path) {
            return LinesOf(RunCommand({"log", "stats", path}).data).back();
        };
        EXPECT_EQ(total(GoldenLog(log)), total(redacted.Path()));
        // Compares tags line by line; the odd indentation of messages is not preserved.
        const auto original = LinesOf(ReadBytes(GoldenLog(log))), now = LinesOf(ReadBytes(redacted.Path()));
        const std::regex values("^ *(?=<[iwe])|(value|object)=\"[^\"]*\"");
        ASSERT_EQ(original.size(), now.size());
        for (std::size_t i = 0; i < now.size(); ++i) {
            ASSERT_EQ(std::regex_replace(original[i], values, ""), std::regex_replace(now[i], values, "")) << i + 1;
        }
    }
}

TEST(LogRedact, ReplacesTheSameByTheSameAndDiffersFromRunToRun)
{
    const std::string entries =
        "<func name=\"A::B\" direc=\"in\" object=\"Secret\"><arg name=\"n\" direc=\"out\" type=\"string\">"
        "<argval value=\"&quot;Secret&quot;\"/></arg></func>\n"
        "<func name=\"A::B\" direc=\"in\" object=\"Secret\"></func>\n";
    const TemporaryLog log(InLog(entries));
    const std::string first = Redacted(log.Path()), second = Redacted(log.Path());
    EXPECT_EQ(1u, NamesIn(first).size());
    EXPECT_NE(NamesIn(first), NamesIn(second));
}

// The lines and rules that check reports, and the lines and kinds that errors reports.
std::vector<std::string> FindingsOf(const std::string& path)
{
    std::vector<std::string> findings;
    for (const std::vector<std::string>& words : {std::vector<std::string>{"log", "check", path},
                                                  {"log", "errors", "--all", path},
                                                  {"log", "errors", "--all", "--queries", path}}) {
        for (const std::string& line : LinesOf(RunCommand(words).data)) {
            const std::size_t rule = line.find(": ") + 2;
            findings.push_back(line.substr(0, line.find_first_of(": ", rule)));
        }
    }
    return findings;
}

TEST(LogRedact, LeavesTheFindings)
{
    std::vector<std::string> logs = kGoldenLogs;
    logs.insert(logs.end(), {"field_package", "field_unit", "vendor_unit"});
    for (const std::string& log : logs) {
        const TemporaryLog redacted(Redacted(GoldenLog(log)));
        EXPECT_EQ(FindingsOf(GoldenLog(log)), FindingsOf(redacted.Path())) << log;
    }
    const std::string conversation = SourceFile("tests/log_commands/conversation.zlg");
    const TemporaryLog redacted(Redacted(conversation));
    EXPECT_EQ(FindingsOf(conversation), FindingsOf(redacted.Path()));
}

struct FractionsCase {
    const char* name;
    std::vector<std::string> values;
    bool some;
    std::vector<std::string> findings;
};

std::string SetFractions(const FractionsCase& one)
{
    std::string entries =
        "<func name=\"ICapeThermoMaterialObject::SetProp\" direc=\"out\" object=\"F\">\r\n"
        "<arg name=\"property\" direc=\"in\" type=\"string\">\r\n<argval value=\"&quot;Fraction&quot;\"/>\r\n</arg>\r\n"
        "<arg name=\"compIds\" direc=\"in\" type=\"VT_ARRAY|VT_BSTR\">\r\n";
    if (one.some) entries += "<argval value=\"&quot;Benzene&quot;\"/>\r\n";
    entries += "</arg>\r\n<arg name=\"values\" direc=\"out\" type=\"VT_ARRAY|VT_R8\">\r\n";
    for (const std::string& value : one.values) entries += "<argval value=\"" + value + "\"/>\r\n";
    return InLog(entries + "</arg>\r\n</func>\r\n");
}

TEST(LogRedact, ReplacesFractionsByOthersThatAddUpToTheSame)
{
    const FractionsCase cases[] = {
        {"that add up", {"0.123457", "0.654321", "0.222222"}, false, {}},
        {"of which some are equal", {"0.25", "0.25", "0.25", "0.25"}, false, {}},
        {"with 0", {"0", "0.123457", "0.876543"}, false, {}},
        {"that add up to less", {"0.123457", "0.654321"}, false, {"9: fractions"}},
        {"that are nearly 1 each", {"0.912345", "0.998765"}, false, {"9: fractions"}},
        {"one above 1", {"1.51234", "0.123457"}, false, {"9: fractions", "9: fractions"}},
        {"in percent", {"12.3457", "87.6543"}, false, {"9: fractions", "9: fractions"}},
        {"one below 0", {"-0.512345", "0.987654", "0.524691"}, false, {"9: fractions"}},
        {"of some compounds", {"0.123457"}, true, {}},
        {"of some compounds, above 1", {"5.12345", "0.123457"}, true, {"10: fractions"}},
        {"with what is no number", {"0.123457", "Benzene", "N/A"}, false, {"12: not-a-number"}},
    };
    for (const FractionsCase& one : cases) {
        SCOPED_TRACE(one.name);
        std::map<std::string, int> kept;
        // Each run has another key.
        for (int run = 0; run < 20; ++run) {
            const TemporaryLog log(SetFractions(one));
            const std::string redacted = Redacted(log.Path());
            const TemporaryLog again(redacted);
            std::vector<std::string> findings;
            for (const std::string& line : LinesOf(RunCommand({"log", "check", again.Path()}).data)) {
                findings.push_back(line.substr(0, line.find(':', line.find(':') + 1)));
            }
            ASSERT_EQ(one.findings, findings) << redacted;
            for (const std::string& value : one.values) {
                if (redacted.find('"' + value + '"') != std::string::npos) ++kept[value];
            }
        }
        // By chance, a key may turn a number of six digits into itself, but not twice in these few runs.
        for (const auto& [value, runs] : kept) {
            if (value != "0" && value != "N/A") {
                EXPECT_LE(runs, 1) << value;
            }
        }
    }
}

TEST(LogRedact, KeepsTheInterfacesOfTheSystem)
{
    const TemporaryLog log(
        InLog("<warning value=\"P: QueryInterface for unsupported interface "
              "{00000003-0000-0000-C000-000000000046}\"/>\r\n<warning value=\"P: QueryInterface for unsupported "
              "interface {12345678-0000-0000-C000-000000000046}\"/>\r\n"));
    const std::string redacted = Redacted(log.Path());
    EXPECT_NE(std::string::npos, redacted.find("interface {00000003-0000-0000-C000-000000000046}\""));
    EXPECT_EQ(std::string::npos, redacted.find("12345678"));
}

TEST(LogRedact, ReplacesNamesWithCharactersThatNoNameOfTheStandardHas)
{
    const auto isKept = [](const std::string& method) {
        const std::string name = "name=\"ICapeX::" + method + '"';
        const TemporaryLog log(InLog("<func " + name + " direc=\"in\" object=\"P\"></func>\r\n"));
        return Redacted(log.Path()).find(name) != std::string::npos;
    };
    for (const char* kept : {"AZaz09", "get_Item", ".(:|)", "&lt;&gt;"}) EXPECT_TRUE(isKept(kept)) << kept;
    // In ASCII, most of these come just before or just after the letters or digits.
    for (const char* character : {"/", ";", "@", "[", "`", "{", "~", "-", " "}) {
        EXPECT_FALSE(isKept(std::string("Secret") + character)) << character;
    }
}

TEST(LogRedact, LeavesALogCutOffWhereItWas)
{
    const std::string whole = ReadBytes(SourceFile("tests/log_commands/conversation.zlg"));
    const auto lines = LinesOf(whole);
    std::size_t size = 0;
    for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
        size += lines[i].size() + 1;
        if (i < 3) continue;
        const TemporaryLog log(whole.substr(0, size));
        const std::string redacted = Redacted(log.Path());
        ASSERT_EQ(i + 1, LinesOf(redacted).size()) << redacted;
        const TemporaryLog again(redacted);
        const auto open = [](const std::string& path) {
            std::string rules;
            for (const std::string& line : LinesOf(RunCommand({"log", "check", path}).data)) {
                if (line.find(": open-call: ") != std::string::npos) rules += line.substr(0, line.find(' '));
            }
            return rules;
        };
        ASSERT_EQ(open(log.Path()), open(again.Path())) << i + 1;
    }
}

struct MessageCase {
    ctl::EventKind kind;
    const char *text, *pattern;
};

TEST(LogRedact, KeepsTheSentencesOfTheLogAndNotWhatTheyName)
{
    using ctl::EventKind;
    const char* const alias = "redacted-[0-9a-f]{10}";
    const MessageCase cases[] = {
        {EventKind::Info, "Creating Secret", "Creating A"},
        {EventKind::Info, "Error information: \"Sec\"ret\" (source: Hidden)",
         "Error information: \"A\" \\(source: A\\)"},
        {EventKind::Info, "Error information: \"Secret\"", "Error information: \"A\""},
        {EventKind::Info, "Description by the object's ECapeUser: \"Secret\"",
         "Description by the object's ECapeUser: \"A\""},
        {EventKind::Info, "Name by the object's ECapeRoot: \"Secret\"", "Name by the object's ECapeRoot: \"A\""},
        {EventKind::Info, "Object type: CAPE-OPEN version 1.0 Reaction Package",
         "Object type: CAPE-OPEN version 1\\.0 Reaction Package"},
        {EventKind::Error, "Invalid type for argument props: expected VT_ARRAY|VT_BSTR",
         "Invalid type for argument props: expected VT_ARRAY\\|VT_BSTR"},
        {EventKind::Error, "This object should be considered read-only", "This object should be considered read-only"},
        {EventKind::Error, "ECapeInvalidArgumentHR: Secret", "ECapeInvalidArgumentHR: A"},
        {EventKind::Error, "0x80041234: Secret: more", "0x80041234: A"},
        {EventKind::Error, "E_FAIL: ", "E_FAIL: "},
        {EventKind::Error, "Uncaught exception during function call: Secret",
         "Uncaught exception during function call: A"},
        {EventKind::Error, "Uncaught SEH exception during function call: EXCEPTION_ACCESS_VIOLATION: at 0x12",
         "Uncaught SEH exception during function call: EXCEPTION_ACCESS_VIOLATION: A"},
        {EventKind::Warning, "Secret: QueryInterface for unsupported interface ICapeX",
         "A: QueryInterface for unsupported interface ICapeX"},
        {EventKind::Warning, "Secret: QueryInterface for unsupported interface {1234}",
         "A: QueryInterface for unsupported interface A"},
        // The name of an interface of the standard has only letters and digits.
        {EventKind::Warning, "Secret: QueryInterface for unsupported interface ICapeX10az",
         "A: QueryInterface for unsupported interface ICapeX10az"},
        {EventKind::Warning, "Secret: QueryInterface for unsupported interface ICape{1234}",
         "A: QueryInterface for unsupported interface A"},
        {EventKind::Warning, "Secret: QueryInterface for unsupported interface ECape~Secret",
         "A: QueryInterface for unsupported interface A"},
        {EventKind::Warning, "Secret: QueryInterface for unsupported interface IPersist[Secret",
         "A: QueryInterface for unsupported interface A"},
        {EventKind::Warning, "Secret: QueryInterface for unsupported interface ICape_Secret",
         "A: QueryInterface for unsupported interface A"},
        {EventKind::Warning, "Secret: QueryInterface for unsupported interface ICape/Secret",
         "A: QueryInterface for unsupported interface A"},
        {EventKind::Warning, "Secret: QueryInterface for unsupported interface ICape:Secret",
         "A: QueryInterface for unsupported interface A"},
        {EventKind::Warning, "Secret: QueryInterface for unsupported interface ICape@Secret",
         "A: QueryInterface for unsupported interface A"},
        {EventKind::Warning, "Secret: QueryInterface for unsupported interface ICape`Secret",
         "A: QueryInterface for unsupported interface A"},
        {EventKind::Warning, "Secret: QueryInterface for unsupported interface IOther",
         "A: QueryInterface for unsupported interface A"},
        {EventKind::Warning,
         "Secret: QueryInterface not returning supported interface ICapeX: object does not expose it (returning "
         "E_NOINTERFACE)",
         "A: QueryInterface not returning supported interface ICapeX: object does not expose it \\(returning "
         "E_NOINTERFACE\\)"},
        {EventKind::Warning,
         "Object \"Sec\"ret\" (type: Material Object) is not released at final release of \"P\" (reference count 12)",
         "Object \"A\" \\(type: Material Object\\) is not released at final release of \"A\" \\(reference count 12\\)"},
        {EventKind::Error, "Failed to get name from object: Secret", "Failed to get name from object: A"},
        {EventKind::Error, "Secret", "A"},
        {EventKind::Warning, "E_FAIL: QueryInterface for unsupported interface ICapeX",
         "A: QueryInterface for unsupported interface ICapeX"},
        {EventKind::Error, "E_FAIL: x: QueryInterface for unsupported interface ICapeX", "E_FAIL: A"},
        {EventKind::Info, "Creating user selected unit operation: Secret", "Creating user selected unit operation: A"},
        {EventKind::Warning, "Object reports rediculously high max file size.",
         "Object reports rediculously high max file size\\."},
        {EventKind::Error, "Failed to create unit operation: E_FAIL", "Failed to create unit operation: E_FAIL"},
        // Also fits the sentence "%n creation failed: %s", so the words may be a name.
        {EventKind::Error, "Failed to create unit operation: Secret creation failed: E_FAIL",
         "Failed to create unit operation: A"},
        {EventKind::Error, "Secret words of a later version", "A"},
        {EventKind::Error, "", ""},
    };
    const ctl::LogAliases aliases;
    for (const MessageCase& one : cases) {
        const std::string redacted = ctl::RedactMessage({one.kind, false, false, 0, 1, {}, one.text}, aliases);
        std::string pattern = std::regex_replace(std::string(one.pattern), std::regex("\\bA\\b"), alias);
        EXPECT_TRUE(std::regex_match(redacted, std::regex(pattern))) << redacted << " for " << pattern;
    }
}

}  // namespace
}  // namespace zelt::test
