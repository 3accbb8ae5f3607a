// Queries for interfaces that the system itself makes: hidden and counted, shown on request, never findings.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "command_runner.h"
#include "log/vocabulary/system_interfaces.h"

namespace zelt::test {
namespace {

std::string Unsupported(const std::string& name, const std::string& object = "P")
{
    return "<warning value=\"" + object + ": QueryInterface for unsupported interface " + name + "\"/>\r\n";
}

std::string Refused(const std::string& name)
{
    return "<warning value=\"P: QueryInterface not returning supported interface " + name +
           ": object does not expose it (returning E_NOINTERFACE)\"/>\r\n";
}

std::string WithoutObject(const std::string& name)
{
    return "<warning value=\"P: QueryInterface not returning " + name +
           ": object not created (returning E_NOINTERFACE)\"/>\r\n";
}

const std::string kMarshal = "{00000003-0000-0000-C000-000000000046}";
const std::string kUse = "<func name=\"ICapeThermoPhases::GetNumPhases\" direc=\"in\" object=\"P\">\r\n";

TEST(SystemInterfaces, HaveEachANameOrAnIdentifierOnlyOnceAndAReason)
{
    std::set<std::string_view> identifiers, names;
    for (const SystemInterface& row : kSystemInterfaces) {
        EXPECT_TRUE(identifiers.insert(row.identifier).second) << row.identifier;
        EXPECT_TRUE(row.name.empty() || names.insert(row.name).second) << row.name;
        EXPECT_EQ(38u, row.identifier.size());
        EXPECT_TRUE(std::none_of(row.identifier.begin(), row.identifier.end(), [](char c) {
            return c >= 'a' && c <= 'z';
        })) << row.identifier;
        EXPECT_FALSE(row.reason.empty());
        EXPECT_TRUE(IsSystemInterface(row.identifier));
        EXPECT_EQ(!row.name.empty(), IsSystemInterface(row.name));
    }
    // Interfaces that programs ask for, and texts that name no interface of the system.
    for (const char* name : {"", "ICapeThermoMaterial", "IDispatch", "IPersist", "IPersistStream", "IPersistStreamInit",
                             "IPersistStorage", "ECapeUser", "IConnectionPointContainer", "imarshal",
                             "{0000010C-0000-0000-C000-000000000046}", "{678C09A5-7D66-11D2-A67D-00105A42887F}"}) {
        EXPECT_FALSE(IsSystemInterface(name)) << name;
    }
}

TEST(SystemQueries, AreNoFindings)
{
    const TemporaryLog one(InLog(Unsupported("IMarshal")));
    EXPECT_EQ("1 system query hidden\n", RunCommand({"log", "errors", one.Path()}).data);
    const TemporaryLog log(InLog(Unsupported(kMarshal) + Refused("IProvideClassInfo") + WithoutObject("IAgileObject")));
    for (const char* command : {"errors", "check"}) {
        const Outcome hidden = RunCommand({"log", command, log.Path()});
        EXPECT_EQ(0, hidden.code);
        EXPECT_EQ("3 system queries hidden\n", hidden.data);
        EXPECT_EQ("", hidden.messages);
        EXPECT_EQ("[]\n", RunCommand({"log", command, "--json", log.Path()}).data);
        const Outcome shown = RunCommand({"log", command, "--queries", log.Path()});
        EXPECT_EQ(0, shown.code);
        EXPECT_EQ("3: query: P: QueryInterface for unsupported interface " + kMarshal +
                      "\n"
                      "4: query: P: QueryInterface not returning supported interface IProvideClassInfo: object does "
                      "not expose it (returning E_NOINTERFACE)\n"
                      "5: query: P: QueryInterface not returning IAgileObject: object not created (returning "
                      "E_NOINTERFACE)\n",
                  shown.data);
        const std::string json = RunCommand({"log", command, "--queries", "--json", log.Path()}).data;
        EXPECT_NE(std::string::npos, json.find("\"query\"")) << json;
    }
    EXPECT_EQ("", RunCommand({"log", "errors", "--no-warnings", log.Path()}).data);
    EXPECT_EQ("", RunCommand({"log", "errors", "--no-warnings", "--queries", log.Path()}).data);
}

TEST(SystemQueries, LeaveTheQueriesOfProgramsAsFindings)
{
    const TemporaryLog log(InLog(Unsupported("ICapeThermoEquilibriumRoutine") + Unsupported("IMarshal") +
                                 Refused("ICapeElectrolyteReactionContext") + Unsupported("IPersistStreamInit")));
    const Outcome outcome = RunCommand({"log", "errors", log.Path()});
    EXPECT_EQ(1, outcome.code);
    EXPECT_EQ(
        "3: warning: P: QueryInterface for unsupported interface ICapeThermoEquilibriumRoutine\n"
        "5: warning: P: QueryInterface not returning supported interface ICapeElectrolyteReactionContext: object does "
        "not expose it (returning E_NOINTERFACE)\n"
        "6: warning: P: QueryInterface for unsupported interface IPersistStreamInit\n"
        "1 system query hidden\n",
        outcome.data);
}

TEST(SystemQueries, AreCountedAsFarAsTheFilterReaches)
{
    const TemporaryLog log(
        InLog(Unsupported("IMarshal") + kUse + Unsupported("IMarshal") + Unsupported("IMarshal2") + "</func>\r\n"));
    EXPECT_EQ("3 system queries hidden\n", RunCommand({"log", "errors", log.Path()}).data);
    EXPECT_EQ("2 system queries hidden\n", RunCommand({"log", "errors", "--object", "P", log.Path()}).data);
    EXPECT_EQ(
        "5: query in ICapeThermoPhases::GetNumPhases (P): P: QueryInterface for unsupported interface IMarshal\n"
        "6: query in ICapeThermoPhases::GetNumPhases (P): P: QueryInterface for unsupported interface IMarshal2\n",
        RunCommand({"log", "errors", "--object", "P", "--queries", log.Path()}).data);
    EXPECT_EQ("       4  > ICapeThermoPhases::GetNumPhases  P\n2 system queries hidden\n",
              RunCommand({"log", "follow", "--object", "P", log.Path()}).data);
    EXPECT_EQ(RunCommand({"log", "show", log.Path()}).data,
              RunCommand({"log", "follow", "--queries", log.Path()}).data);
    // A call whose only warnings are about such queries counts as having none.
    EXPECT_EQ("", RunCommand({"log", "show", "--result", "warning", log.Path()}).data);
}

TEST(SystemQueries, HaveAColumnOfTheirOwnInStats)
{
    const TemporaryLog log(InLog(Unsupported("IMarshal") + kUse + Unsupported("IMarshal") + "</func>\r\n"));
    EXPECT_EQ(
        "     calls  method\n"
        "         1  ICapeThermoPhases::GetNumPhases\n"
        "\n"
        "     calls  object\n"
        "         1  P\n"
        "\n"
        "     calls  all\n"
        "         1  including what is outside of calls\n"
        "\n"
        "2 system queries hidden\n",
        RunCommand({"log", "stats", log.Path()}).data);
    EXPECT_EQ(
        "     calls    queries  method\n"
        "         1          1  ICapeThermoPhases::GetNumPhases\n"
        "\n"
        "     calls    queries  object\n"
        "         1          1  P\n"
        "\n"
        "     calls    queries  all\n"
        "         1          2  including what is outside of calls\n",
        RunCommand({"log", "stats", "--queries", log.Path()}).data);
    EXPECT_EQ(
        "{\"total\":{\"calls\":1,\"failures\":0,\"warnings\":0,\"violations\":0},\"methods\":[\n"
        "{\"name\":\"ICapeThermoPhases::GetNumPhases\",\"calls\":1,\"failures\":0,\"warnings\":0,"
        "\"violations\":0}],\"objects\":[\n"
        "{\"name\":\"P\",\"calls\":1,\"failures\":0,\"warnings\":0,\"violations\":0}]}\n",
        RunCommand({"log", "stats", "--json", log.Path()}).data);
    EXPECT_NE(std::string::npos, RunCommand({"log", "stats", "--json", "--queries", log.Path()})
                                     .data.find("\"violations\":0,\"queries\":2},\"methods\""));
}

TEST(SystemQueries, AreOnThePageAndHiddenAtFirst)
{
    const TemporaryLog log(InLog(Unsupported("IMarshal") + Unsupported("ICapeUtilities")));
    const std::string page = RunCommand({"log", "export", "--html", log.Path()}).data;
    EXPECT_NE(
        std::string::npos,
        page.find("\n<main class=nk>\n<p class=k><i>3</i>P: QueryInterface for unsupported interface IMarshal</p>\n"
                  "<p class=w><i>4</i>P: QueryInterface for unsupported interface ICapeUtilities</p>\n</main>"));
    const std::string all = RunCommand({"log", "export", "--html", "--queries", log.Path()}).data;
    EXPECT_NE(std::string::npos, all.find("\n<main>\n<p class=k>"));
    const Outcome refused = RunCommand({"log", "export", "--csv", "--queries", log.Path()});
    EXPECT_EQ(2, refused.code);
    EXPECT_NE(std::string::npos,
              refused.messages.find("--queries is only for --html; the other forms always have the queries"));
}

}  // namespace
}  // namespace zelt::test
