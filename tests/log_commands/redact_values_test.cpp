// log redact keeps order, sums, balances and counts, so that readers and the rules of log check find the same in a redacted
// log as in the original.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "command_runner.h"
#include "ctl/log/log_aliases.h"
#include "log_text.h"

namespace zelt::test {
namespace {

std::string RedactedText(const std::string& log, const std::vector<std::string>& options = {})
{
    std::vector<std::string> words = {"log", "redact"};
    words.insert(words.end(), options.begin(), options.end());
    const TemporaryLog file(log);
    words.push_back(file.Path());
    return RunCommand(words).data;
}

// The values of a log, in order.
std::vector<std::string> ValuesOf(const std::string& log)
{
    const std::string opening = "<argval value=\"";
    std::vector<std::string> values;
    for (std::size_t at = log.find(opening); at != std::string::npos; at = log.find(opening, at)) {
        at += opening.size();
        values.push_back(log.substr(at, log.find('"', at) - at));
    }
    return values;
}

// The line and the rule of each finding of log check.
std::vector<std::string> FindingsIn(const std::string& log)
{
    const TemporaryLog file(log);
    std::vector<std::string> findings;
    for (const std::string& line : LinesOf(RunCommand({"log", "check", file.Path()}).data)) {
        findings.push_back(line.substr(0, line.find(": ", line.find(": ") + 2)));
    }
    return findings;
}

// A golden log with `now` in place of the first `old`.
std::string Changed(const std::string& golden, const std::string& old, const std::string& now)
{
    std::string log = ReadBytes(GoldenLog(golden));
    const std::size_t at = log.find(old);
    EXPECT_NE(std::string::npos, at) << old;
    return log.replace(at, old.size(), now);
}

TEST(LogRedactValues, KeepsWhatTheRulesForCalculationsFind)
{
    const struct {
        const char *golden, *old, *now, *rule;
    } cases[] = {
        {"sample_simulator_11", "\"0.510548\"", "\"0.489452\"", "1761: balance"},
        {"sample_simulator_11", "\"0.510548\"", "\"0.52\"", "1761: balance"},
        // Within the tolerance.
        {"sample_simulator_11", "\"0.510548\"", "\"0.511\"", ""},
        {"sample_simulator_10", "\"0.687844\"", "\"0.787844\"", "1498: balance"},
        {"sample_simulator_11", "\"18963.8\"", "\"28963.8\"", "4421: fugacity"},
        {"sample_flowsheet_unit", "\"16\"", "\"17\"", "1599: unit-balance"},
        // The value outside its bounds is no longer reset.
        {"sample_simulator_11", "object=\"Highest pressure\">\r\n</func>\r\n<func name=\"ICapeParameter::get_value\"",
         "object=\"Another\">\r\n</func>\r\n<func name=\"ICapeParameter::get_value\"", "246: bounds"},
        {"sample_simulator_11", "<argval value=\"VARIANT_FALSE\"/>", "<argval value=\"VARIANT_TRUE\"/>", "196: bounds"},
    };
    for (const auto& one : cases) {
        const std::string log = Changed(one.golden, one.old, one.now);
        const std::vector<std::string> findings = FindingsIn(log);
        const bool isFound = std::find(findings.begin(), findings.end(), one.rule) != findings.end();
        EXPECT_EQ(*one.rule != 0, isFound) << one.old;
        // Each run has another key.
        for (int run = 0; run < 10; ++run) ASSERT_EQ(findings, FindingsIn(RedactedText(log))) << one.old;
    }
}

std::string Property(const std::string& method, const std::string& property, const std::vector<std::string>& values)
{
    return Call("ICapeThermoMaterial::" + method, "out", "Feed",
                Text("property", property) + Text("phaseLabel", "Vapor") + Text("basis", "mole") +
                    Numbers(method.starts_with("Get") ? "results" : "values", values));
}

TEST(LogRedactValues, TemperaturesAndPressuresKeepTheirOrder)
{
    // Some differ only in the sixth digit.
    const std::vector<std::string> numbers = {"-300",     "-1",    "-0.00123", "0",      "1e-300", "0.00123",
                                              "0.999999", "1",     "1.00001",  "273.15", "298.15", "300",
                                              "300.001",  "353.2", "101325",   "1e+300"};
    for (const char* property : {"temperature", "pressure", "Temperature", "fugacity"}) {
        std::vector<int> kept(numbers.size());
        for (int run = 0; run < 20; ++run) {
            std::string entries;
            for (const std::string& number : numbers) entries += Property("SetSinglePhaseProp", property, {number});
            // The same numbers again, in the property's own argument if it has one.
            for (const std::string& number : numbers) {
                entries +=
                    *property == 'f'
                        ? Property("GetSinglePhaseProp", property, {number})
                        : Call("ICapeThermoMaterial::GetTPFraction", "out", "Feed",
                               Argument(*property == 'p' ? "pressure" : "temperature", "out", "double", {number}));
            }
            std::vector<double> redacted, again;
            for (const std::string& value : ValuesOf(RedactedText(InLog(entries)))) {
                if (value.find(';') != std::string::npos) continue;
                (redacted.size() < numbers.size() ? redacted : again).push_back(std::stod(value));
            }
            ASSERT_EQ(numbers.size(), redacted.size());
            EXPECT_EQ(redacted, again);
            for (std::size_t i = 1; i < redacted.size(); ++i) {
                ASSERT_LT(redacted[i - 1], redacted[i]) << property << ' ' << numbers[i];
            }
            EXPECT_EQ(0, redacted[3]);
            for (std::size_t i = 0; i < redacted.size(); ++i) kept[i] += std::stod(numbers[i]) == redacted[i];
        }
        // By chance, a key may turn a number into itself, but not twice in these few runs.
        for (std::size_t i = 0; i < kept.size(); ++i) {
            if (i != 3) {
                EXPECT_LE(kept[i], 1) << numbers[i];
            }
        }
    }
}

TEST(LogRedactValues, TheOrderOfOnePropertySaysNothingOfAnother)
{
    const ctl::LogAliases aliases, others;
    EXPECT_NE(aliases.Ordered("300", "double", "temperature"), aliases.Ordered("300", "double", "pressure"));
    EXPECT_NE(aliases.Ordered("300", "double", "temperature"), others.Ordered("300", "double", "temperature"));
    // Ratios are not kept.
    const auto number = [&](const char* text) { return std::stod(aliases.Ordered(text, "double", "temperature")); };
    EXPECT_GT(std::fabs(number("600") / number("300") - number("1200") / number("600")), 1e-6);
}

TEST(LogRedactValues, FugacitiesHaveOneOrderWhateverPropertyComesBefore)
{
    const auto set = [](const char* property) { return Property("SetSinglePhaseProp", property, {"353.2"}); };
    const std::string log = InLog(set("temperature") + set("fugacity") + set("pressure") + set("fugacity"));
    std::vector<std::string> numbers;
    for (const std::string& value : ValuesOf(RedactedText(log))) {
        if (value.find(';') == std::string::npos) numbers.push_back(value);
    }
    ASSERT_EQ(4u, numbers.size());
    EXPECT_EQ(numbers[1], numbers[3]);
    EXPECT_NE(numbers[0], numbers[1]);
    EXPECT_NE(numbers[2], numbers[3]);
}

TEST(LogRedactValues, WholeNumbersKeepTheirOrderAndStayWhole)
{
    const std::vector<std::string> numbers = {"-4294967295", "-2", "-1", "0", "1", "2", "9", "10", "4294967295"};
    for (int run = 0; run < 20; ++run) {
        const ctl::LogAliases aliases;
        long long before = 0;
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            const std::string alias = aliases.Ordered(numbers[i], "long", "of parameter N");
            ASSERT_EQ(std::string::npos, alias.find_first_not_of("-0123456789")) << alias;
            ASSERT_TRUE(i == 0 || before < std::stoll(alias)) << numbers[i];
            before = std::stoll(alias);
            EXPECT_EQ(numbers[i] == "0", alias == "0");
        }
        EXPECT_EQ("N/A", aliases.Ordered("N/A", "double", "temperature"));
        EXPECT_EQ("inf", aliases.Ordered("inf", "double", "temperature"));
        EXPECT_TRUE(aliases.Ordered("Secret", "double", "temperature").starts_with("redacted-"));
    }
}

TEST(LogRedactValues, PhaseFractionsAddUp)
{
    for (const auto& [first, second] : {std::pair("0.25", "0.75"), std::pair("0", "1"), std::pair("0.5", "0.5")}) {
        for (int run = 0; run < 20; ++run) {
            const std::string redacted = RedactedText(InLog(Property("GetSinglePhaseProp", "phaseFraction", {first}) +
                                                            Property("GetSinglePhaseProp", "PhaseFraction", {second})));
            std::vector<double> fractions;
            for (const std::string& value : ValuesOf(redacted)) {
                if (value.find(';') == std::string::npos) fractions.push_back(std::stod(value));
            }
            ASSERT_EQ(2u, fractions.size());
            EXPECT_NEAR(1, fractions[0] + fractions[1], 2e-6);
            EXPECT_EQ(std::stod(first) == 0, fractions[0] == 0);
        }
    }
}

TEST(LogRedactValues, APhaseFractionOf0Or1StaysAsItIsWritten)
{
    for (const char* fraction : {"0", "-0", "0.0", "1", "1.0"}) {
        const std::string log = InLog(Property("GetSinglePhaseProp", "phaseFraction", {fraction}));
        EXPECT_EQ(fraction, ValuesOf(RedactedText(log)).back());
    }
}

TEST(LogRedactValues, APhaseFractionIsReadAsItWasSet)
{
    const std::string entries =
        Call("ICapeThermoEquilibriumRoutine::CalcEquilibrium", "in", "P",
             Call("ICapeThermoMaterial::GetOverallProp", "out", "Feed",
                  Text("property", "fraction") + Text("basis", "mole") + Numbers("results", {"0.5", "0.5"})) +
                 Property("SetSinglePhaseProp", "phaseFraction", {"0.4"}) +
                 Property("SetSinglePhaseProp", "fraction", {"0.8", "0.2"})) +
        Property("GetSinglePhaseProp", "phaseFraction", {"0.4"});
    for (int run = 0; run < 20; ++run) {
        std::vector<std::string> numbers;
        for (const std::string& value : ValuesOf(RedactedText(InLog(entries)))) {
            if (value.find(';') == std::string::npos) numbers.push_back(value);
        }
        ASSERT_EQ(6u, numbers.size());
        EXPECT_EQ(numbers[2], numbers[5]);
        // The share of the first compound in the feed that is in this phase.
        EXPECT_NEAR(0.4 * 0.8 / 0.5, std::stod(numbers[2]) * std::stod(numbers[3]) / std::stod(numbers[0]), 1e-4);
    }
}

TEST(LogRedactValues, FlowsKeepTheirBalance)
{
    const auto material = [](const std::string& method, const std::string& name, const std::string& property,
                             const std::vector<std::string>& values) {
        return Call("ICapeThermoMaterial::" + method, "out", name,
                    Text("property", property) + Text("basis", "mole") + Numbers("values", values));
    };
    // A unit operation: one of its materials has a total flow, another the flows of the compounds.
    const std::string entries = Call("ICapeUnit::Calculate", "in", "U",
                                     material("GetOverallProp", "A", "totalFlow", {"10"}) +
                                         material("GetOverallProp", "A", "fraction", {"0.25", "0.75"}) +
                                         material("SetOverallProp", "B", "flow", {"5", "7.5"}));
    int kept = 0;
    for (int run = 0; run < 20; ++run) {
        std::vector<double> numbers;
        for (const std::string& value : ValuesOf(RedactedText(InLog(entries)))) {
            if (value.find(';') == std::string::npos) numbers.push_back(std::stod(value));
        }
        ASSERT_EQ(5u, numbers.size());
        EXPECT_NEAR(2, numbers[3] / (numbers[0] * numbers[1]), 1e-4);
        EXPECT_NEAR(1, numbers[4] / (numbers[0] * numbers[2]), 1e-4);
        kept += numbers[0] == 10;
    }
    // By chance, a key may turn the number into itself, but not twice in these few runs.
    EXPECT_LE(kept, 1);
}

TEST(LogRedactValues, CompoundsAreNumbered)
{
    const std::string list = Call("ICapeThermoCompounds::GetCompoundList", "in", "P",
                                  Argument("compIds", "out", "VT_ARRAY|VT_BSTR",
                                           {"&quot;Water&quot;", "&quot;A&amp;B&quot;", "&quot;&quot;", "<NULL>"}));
    const std::string some =
        Call("ICapeThermoCompounds::GetCompoundConstant", "in", "P",
             Argument("compIds", "in", "VT_ARRAY|VT_BSTR", {"&quot;A&amp;B&quot;", "&quot;C&quot;"}));
    std::string null = list;
    null.replace(null.find("<NULL>"), 6, "&lt;NULL&gt;");
    EXPECT_EQ((std::vector<std::string>{"&quot;Compound-1&quot;", "&quot;Compound-2&quot;", "&quot;&quot;",
                                        "&lt;NULL&gt;", "&quot;Compound-2&quot;", "&quot;Compound-3&quot;"}),
              ValuesOf(RedactedText(InLog(null + some))));
}

TEST(LogRedactValues, CountsIndicesAndStatusesStay)
{
    const struct {
        const char *name, *type, *value;
        bool isKept;
    } rows[] = {
        {"phaseStatus", "VT_ARRAY|VT_I4", "1", true},
        {"itemsCount", "long", "3", true},
        {"num", "long", "2", true},
        {"compNo", "long", "3", true},
        {"nComps", "long", "3", true},
        {"numComp", "long", "3", true},
        {"nReacs", "long", "3", true},
        {"numDimensions", "long", "1", true},
        {"Size", "VT_ARRAY|VT_I4", "2", true},
        {"dim", "VT_ARRAY|VT_R8", "-2", true},
        {"id", "VT_I4", "7", true},
        {"id", "VT_I2", "7", true},
        {"code", "long", "-2147220218", true},
        {"value", "VT_BOOL", "-1", true},
        {"id", "VT_BSTR", "&quot;Item&quot;", false},
        {"other", "long", "123456", false},
        {"num", "long", "Secret", false},
    };
    for (const auto& row : rows) {
        const std::string redacted =
            RedactedText(InLog(Call("ICollection::Item", "in", "P", Argument(row.name, "in", row.type, {row.value}))));
        EXPECT_EQ(row.isKept, ValuesOf(redacted).at(0) == row.value) << row.name << ' ' << redacted;
    }
}

TEST(LogRedactValues, WhatComponentsSayOfFailuresStaysOnRequest)
{
    const std::string log =
        InLog(Call("ICapeUnit::Calculate", "in", "Secret unit",
                   "<info value=\"Error information: &quot;Secret cause&quot; (source: Secret source)\"/>\n"
                   "<error value=\"E_FAIL: Secret text\"/>\n") +
              Call("ECapeUser::get_description", "in", "Secret unit", Text("description", "Secret text")) +
              "<warning value=\"Secret unit: QueryInterface for unsupported interface ICapeX\"/>\n"
              "<error value=\"Secret sentence\"/>\n");
    EXPECT_EQ(std::string::npos, RedactedText(log).find("Secret"));
    const std::string kept = RedactedText(log, {"--keep-errors"});
    for (const char* text : {"Error information: &quot;Secret cause&quot; (source: Secret source)\"",
                             "\"E_FAIL: Secret text\"", "\"&quot;Secret text&quot;\""}) {
        EXPECT_NE(std::string::npos, kept.find(text)) << text << " in " << kept;
    }
    for (const char* text : {"Secret unit", "Secret sentence"}) EXPECT_EQ(std::string::npos, kept.find(text)) << kept;
    EXPECT_EQ(FindingsIn(log), FindingsIn(kept));
}

}  // namespace
}  // namespace zelt::test
