// log check: small logs that break a rule, and similar ones that follow it. Other files test the rules for calculations.
#include <gtest/gtest.h>

#include "command_runner.h"
#include "log_text.h"

namespace zelt::test {
namespace {

std::string Fractions(const std::string& method, const std::vector<std::string>& values, const std::string& more = {})
{
    return Call(
        "ICapeThermoMaterial::" + method, "out", "Feed",
        Text("property", "fraction") + more + Numbers(method.starts_with("Get") ? "results" : "values", values));
}

std::string Read(const std::string& property, const std::string& object = "Feed", const std::string& phase = "Liquid")
{
    return Call("ICapeThermoMaterial::GetSinglePhaseProp", "out", object,
                Text("property", property) + Text("phaseLabel", phase) + Numbers("results", {"1"}));
}

std::string Write(const std::string& property, const std::string& object = "Feed", const std::string& phase = "Liquid")
{
    return Call("ICapeThermoMaterial::SetSinglePhaseProp", "out", object,
                Text("property", property) + Text("phaseLabel", phase) + Numbers("values", {"1"}));
}

std::string Create(const std::string& from, const std::string& name)
{
    return Call("ICapeThermoMaterial::CreateMaterial", "out", from,
                Argument("materialObject", "out", "interface",
                         {"interface to object &quot;" + name + "&quot; (address 0x00000001)"}));
}

const std::string kInitialize = Call("ICapeUtilities::Initialize", "in", "P");
const std::string kTerminate = Call("ICapeUtilities::Terminate", "in", "P");
const std::string kClear = Call("ICapeThermoMaterial::ClearAllProps", "out", "Feed");
const std::string kUse = Call("ICapeThermoCompounds::GetNumCompounds", "in", "P");
std::string Calculate(const std::string& inside)
{
    return Call("ICapeThermoPropertyRoutine::CalcSinglePhaseProp", "in", "P", inside);
}

struct CheckCase {
    const char* name;
    std::string entries;
    std::vector<std::string> findings;  // beginnings of the lines
};

const CheckCase kCases[] = {
    {"nothing", "", {}},
    {"a whole life", kInitialize + kUse + kTerminate, {}},
    {"a call after Terminate",
     kInitialize + kTerminate + kUse,
     {"7: after-terminate: ICapeThermoCompounds::GetNumCompounds"}},
    {"a name asked for after Terminate",
     kInitialize + kTerminate + Call("ICapeIdentification::get_ComponentName", "in", "P"),
     {"7: after-terminate"}},
    {"an error asked for after Terminate", kInitialize + kTerminate + Call("ECapeUser::get_code", "in", "P"), {}},
    {"another object after Terminate",
     kInitialize + kTerminate + Call("ICapeThermoCompounds::GetNumCompounds", "in", "Q"),
     {}},
    {"Terminate that failed",
     kInitialize + Call("ICapeUtilities::Terminate", "in", "P", "<error value=\"E_FAIL: no\"/>\n") + kUse + kTerminate,
     {}},
    {"a life that Terminate failed to end",
     kInitialize + Call("ICapeUtilities::Terminate", "in", "P", "<error value=\"E_FAIL: no\"/>\n"),
     {}},
    {"Terminate twice", kInitialize + kTerminate + kTerminate, {"7: after-terminate"}},
    {"a second life", kInitialize + kTerminate + kInitialize + kUse + kTerminate, {}},
    {"no Terminate", kInitialize + kUse, {"3: not-terminated: \"P\""}},
    {"Initialize twice", kInitialize + kInitialize + kTerminate, {"5: initialize: \"P\" is initialised again"}},
    {"Initialize after use", kUse + kInitialize + kTerminate, {"5: initialize: \"P\" is initialised only now"}},
    {"context and name before Initialize",
     Call("ICapeUtilities::put_simulationContext", "in", "P") +
         Call("ICapeIdentification::get_ComponentName", "in", "P") + kInitialize + kTerminate,
     {}},
    {"fractions that add up", Fractions("GetOverallProp", {"0.333333", "0.333333", "0.333333"}), {}},
    {"fractions that do not",
     Fractions("SetOverallProp", {"0.5", "0.4"}),
     {"7: fractions: the fractions in ICapeThermoMaterial::SetOverallProp (Feed) add up to 0.9"}},
    {"fractions whose sum is rounded up", Fractions("GetOverallProp", {"0.5", "0.50009"}), {}},
    {"fractions whose sum is rounded down", Fractions("GetOverallProp", {"0.5", "0.49991"}), {}},
    {"fractions that add up to a little too much",
     Fractions("SetOverallProp", {"0.5", "0.5002"}),
     {"7: fractions: the fractions in ICapeThermoMaterial::SetOverallProp (Feed) add up to 1.0002"}},
    {"fractions that add up to a little too little",
     Fractions("SetOverallProp", {"0.5", "0.4998"}),
     {"7: fractions: the fractions in ICapeThermoMaterial::SetOverallProp (Feed) add up to 0.9998"}},
    {"a fraction that is rounded below 0", Fractions("GetOverallProp", {"1.00009", "-0.00009"}), {}},
    {"a fraction a little below 0",
     Fractions("GetOverallProp", {"1.00005", "0.00015", "-0.0002"}),
     {"7: fractions: a fraction in ICapeThermoMaterial::GetOverallProp (Feed) is -0.0002"}},
    {"a fraction a little above 1",
     Fractions("GetOverallProp", {"1.0002", "-0.00009", "-0.00009"}),
     {"7: fractions: a fraction in ICapeThermoMaterial::GetOverallProp (Feed) is 1.0002"}},
    {"a fraction below 0",
     Fractions("GetOverallProp", {"1.5", "-0.5"}),
     {"7: fractions: a fraction in ICapeThermoMaterial::GetOverallProp (Feed) is -0.5"}},
    {"fractions of some compounds",
     Fractions("GetProp", {"0.5"}, Argument("compIds", "in", "VT_ARRAY|VT_BSTR", {"&quot;Water&quot;"})),
     {}},
    {"fractions of all compounds of 1.0",
     Fractions("SetProp", {"0.5"}, Argument("compIds", "in", "VT_EMPTY", {})),
     {"9: fractions"}},
    {"another property",
     Call("ICapeThermoMaterial::SetOverallProp", "out", "Feed",
          Text("property", "totalFlow") + Numbers("values", {"5"})),
     {}},
    {"GetTPFraction",
     Call("ICapeThermoMaterial::GetTPFraction", "out", "Feed",
          Argument("temperature", "out", "double", {"300"}) + Numbers("composition", {"0.5", "0.6"})),
     {"7: fractions"}},
    {"NaN as a result",
     Call("ICapeThermoMaterial::SetSinglePhaseProp", "out", "Feed",
          Text("property", "density") + Numbers("values", {"1", "N/A"})),
     {"9: not-a-number: \"values\" of the property \"density\""}},
    {"infinity as a result",
     Call("ICapeThermoPropertyRoutine::CalcAndGetLnPhi", "in", "P",
          Argument("lnPhi", "out", "VT_ARRAY|VT_R8", {"-inf"})),
     {"5: not-a-number"}},
    {"NaN as an unknown constant",
     Call("ICapeThermoCompounds::GetCompoundConstant", "in", "P",
          Argument("propVals", "out", "VT_ARRAY|VT_R8", {"N/A"})),
     {}},
    {"not released",
     "<warning value=\"Object &quot;F&quot; (type: Material Object) is not released at final release of "
     "&quot;P&quot; (reference count 1)\"/>\n",
     {"3: not-released: Object \"F\""}},
    {"a violation",
     Call("ICapeThermoMaterial::ClearAllProps", "out", "F",
          "<error value=\"This object should be considered read-only\"/>\n"),
     {"4: violation: This object should be considered read-only (in ICapeThermoMaterial::ClearAllProps of \"F\")"}},
    {"a failure is no violation",
     Call("ICapeThermoCompounds::GetNumCompounds", "in", "P", "<error value=\"0x80041234: x\"/>\n"),
     {}},
    {"an exception",
     Call("ICapeThermoCompounds::GetNumCompounds", "in", "P",
          "<error value=\"Uncaught exception during function call: x\"/>\n<error value=\"E_UNEXPECTED: y\"/>\n"),
     {"4: exception: Uncaught exception during function call: x"}},
    {"wrong version",
     Call("ICapeThermoMaterialObject::GetProp", "out", "F",
          "<error value=\"Invalid usage of version 1.0 material object interfaces (wrong thermo version)\"/>\n"),
     {"4: version-mix"}},
    {"a package of two versions",
     kUse + Call("ICapeThermoPropertyPackage::GetPhaseList", "in", "P") + kUse,
     {"5: version-mix: \"P\" is used through interfaces of CAPE-OPEN 1.0 here, and through those of 1.1 in line 3"}},
    {"the simulator's material read", Calculate(Read("temperature")), {}},
    {"read after it was cleared",
     Calculate(kClear + Read("temperature")),
     {"6: read-before-set: the property \"temperature\" of the phase \"Liquid\" of \"Feed\""}},
    {"read after it was set", Calculate(kClear + Write("Temperature") + Read("temperature")), {}},
    {"set for another phase",
     Calculate(kClear + Write("density", "Feed", "Vapor") + Read("density")),
     {"17: read-before-set"}},
    {"cleared in an earlier call", Calculate(kClear) + Calculate(Read("temperature")), {}},
    {"a new material", Calculate(Create("Feed", "New") + Read("density", "New")), {"9: read-before-set"}},
    {"a new material in a later call",
     Calculate(Create("Feed", "New")) + Calculate(Read("density", "New")),
     {"11: read-before-set"}},
    {"a new material that was set",
     Calculate(Create("Feed", "New") + Write("density", "New") + Read("density", "New")),
     {}},
    {"a new material, read by all means that there are",
     Calculate(
         Create("Feed", "New") +
         Call("ICapeThermoMaterial::GetTPFraction", "out", "New", Text("phaseLabel", "Liquid")) +
         Call("ICapeThermoMaterial::GetOverallProp", "out", "New", Text("property", "flow")) +
         Call("ICapeThermoMaterialObject::GetProp", "out", "New", Text("property", "volume") + Text("phase", "Vapor"))),
     {"9: read-before-set: the property \"temperature\" of the phase \"Liquid\" of \"New\" is read",
      "9: read-before-set: the property \"pressure\" of the phase \"Liquid\" of \"New\" is read",
      "9: read-before-set: the property \"fraction\" of the phase \"Liquid\" of \"New\" is read",
      "14: read-before-set: the property \"flow\" of \"New\" is read",
      "19: read-before-set: the property \"volume\" of the phase \"Vapor\" of \"New\" is read"}},
    {"a new material, read when all is set",
     Calculate(
         Create("Feed", "New") + Write("temperature", "New") + Write("pressure", "New") + Write("fraction", "New") +
         Call("ICapeThermoMaterial::SetOverallProp", "out", "New", Text("property", "flow")) +
         Call("ICapeThermoMaterialObject::SetProp", "out", "New", Text("property", "volume") + Text("phase", "Vapor")) +
         Call("ICapeThermoMaterial::GetTPFraction", "out", "New", Text("phaseLabel", "Liquid")) +
         Call("ICapeThermoMaterial::GetOverallProp", "out", "New", Text("property", "flow")) +
         Call("ICapeThermoMaterialObject::GetProp", "out", "New", Text("property", "volume") + Text("phase", "Vapor"))),
     {}},
    {"a new material with a used name", Calculate(Create("Feed", "Feed") + Read("density", "Feed")), {}},
    {"a copy",
     Calculate(Create("Feed", "New") + Call("ICapeThermoMaterial::CopyFromMaterial", "out", "New") +
               Read("density", "New")),
     {}},
    {"a new material that was calculated",
     Calculate(Create("Feed", "New") + Call("ICapeThermoPropertyRoutine::CalcSinglePhaseProp", "out", "New") +
               Read("density", "New")),
     {}},
    {"a value outside of an argument", Call("A::B", "in", "P", "<argval value=\"1\"/>\n"), {"4: structure: a value"}},
    {"an argument outside of a call", Argument("a", "in", "long", {"1"}), {"3: structure: an argument"}},
    {"a call in an argument", "<func><arg>\n" + Call("A::B", "in", "P") + "</arg></func>\n", {"4: structure: a call"}},
    {"a message that holds something", "<info value=\"a\"><info value=\"b\"/></info>\n", {"3: structure: something"}},
    {"another element", "<info value=\"a\"/>\n<port/>\n", {"4: structure: logs have no such element"}},
};

TEST(LogCheck, FindsWhatEachRuleIsAbout)
{
    for (const CheckCase& one : kCases) {
        SCOPED_TRACE(one.name);
        const TemporaryLog log(InLog(one.entries));
        const Outcome outcome = RunCommand({"log", "check", log.Path()});
        EXPECT_EQ(one.findings.empty() ? 0 : 1, outcome.code);
        const auto lines = LinesOf(outcome.data);
        ASSERT_EQ(one.findings.size(), lines.size()) << outcome.data;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            EXPECT_TRUE(lines[i].starts_with(one.findings[i])) << lines[i];
        }
    }
}

TEST(LogCheck, LeavesOutTheRulesThatAreIgnored)
{
    const TemporaryLog log(InLog(kInitialize + Fractions("SetOverallProp", {"0.5"})));
    EXPECT_EQ(2u, LinesOf(RunCommand({"log", "check", log.Path()}).data).size());
    EXPECT_EQ(1u, LinesOf(RunCommand({"log", "check", "--ignore", "fractions", log.Path()}).data).size());
    EXPECT_EQ(0, RunCommand({"log", "check", "--ignore", "fractions,not-terminated", log.Path()}).code);
}

// All rules, in the order of the message about an unknown rule.
const char* const kRules[] = {"damaged",     "open-call",    "structure",       "violation",      "exception",
                              "version-mix", "initialize",   "after-terminate", "not-terminated", "not-released",
                              "fractions",   "not-a-number", "read-before-set", "bounds",         "phase-not-given",
                              "balance",     "fugacity",     "unit-balance",    "derivative"};

TEST(LogCheck, KnowsTheRulesThatItsHelpAndItsRefusalList)
{
    const std::string help = RunCommand({"log", "check", "--help"}).data;
    const std::string refusal = RunCommand({"log", "check", "--ignore", "x", "log"}).messages;
    const TemporaryLog log(InLog(kUse));
    std::string list;
    for (const std::string rule : kRules) {
        EXPECT_NE(std::string::npos, help.find("\n  " + rule + ' ')) << rule;
        EXPECT_EQ(0, RunCommand({"log", "check", "--ignore", rule, log.Path()}).code) << rule;
        list += (list.empty() ? "" : ", ") + rule;
    }
    EXPECT_NE(std::string::npos, refusal.find("the rules are " + list + ';')) << refusal;
}

TEST(LogCheck, DoesNotIgnoreThatALogIsCutOff)
{
    const std::string whole = InLog(kUse);
    const TemporaryLog log(whole.substr(0, whole.size() - 10));
    const Outcome outcome = RunCommand({"log", "check", "--ignore", "damaged,open-call", log.Path()});
    EXPECT_EQ(1, outcome.code);
    EXPECT_EQ("", outcome.data);
    EXPECT_NE(std::string::npos, outcome.messages.find(log.Path())) << outcome.messages;
}

TEST(LogCheck, NamesTheCallsThatWereOpenAtTheCut)
{
    const std::string whole = InLog(kInitialize + Calculate(Read("density")));
    const auto findings = [](const std::string& text) {
        const TemporaryLog log(text);
        std::vector<std::string> begins;
        for (const std::string& line : LinesOf(RunCommand({"log", "check", log.Path()}).data)) {
            begins.push_back(line.substr(0, line.find(' ')));
        }
        return begins;
    };
    using Lines = std::vector<std::string>;
    // Each expectation cuts the log at another place: after the end of the inner call, just before it, after the first line of
    // the inner call, after that of the outer call, and after the end of the outer call. The last finding is always the cut
    // itself, in the last line that is not empty.
    const std::size_t inner = whole.find("</func>", whole.find("results")) + 8,
                      start = whole.find("GetSinglePhaseProp");
    EXPECT_EQ((Lines{"5:", "16:"}), findings(whole.substr(0, inner)));
    EXPECT_EQ((Lines{"5:", "6:", "15:"}), findings(whole.substr(0, inner - 8)));
    EXPECT_EQ((Lines{"5:", "6:", "6:"}), findings(whole.substr(0, whole.find('\n', start) + 1)));
    EXPECT_EQ((Lines{"5:", "5:"}), findings(whole.substr(0, whole.rfind("<func", start))));
    EXPECT_EQ((Lines{"17:"}), findings(whole.substr(0, whole.find("</zelt"))));
}

}  // namespace
}  // namespace zelt::test
