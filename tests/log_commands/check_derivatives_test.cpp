// log check: the rule for derivatives, with logs that break it and logs that only seem to.
#include <gtest/gtest.h>

#include <cstdio>

#include "command_runner.h"
#include "log_text.h"

namespace zelt::test {
namespace {

std::string TextOf(double number)
{
    char text[40];
    std::snprintf(text, sizeof text, "%.10g", number);
    return text;
}

std::string Set(const std::string& property, const std::vector<double>& values, const std::string& more = {})
{
    std::vector<std::string> texts;
    for (const double value : values) texts.push_back(TextOf(value));
    return Call("ICapeThermoMaterial::SetSinglePhaseProp", "out", "Feed",
                Text("property", property) + Text("phaseLabel", "Vapor") + Text("basis", "mole") +
                    Numbers("values", texts) + more);
}

struct At {
    double temperature = 300, pressure = 100'000;
    std::vector<std::string> composition = {"0.5", "0.5"};
};

std::string Calculation(const At& at, const std::string& sets, const std::string& package = "P")
{
    return Call("ICapeThermoPropertyRoutine::CalcSinglePhaseProp", "in", package,
                Call("ICapeThermoMaterial::GetTPFraction", "out", "Feed",
                     Text("phaseLabel", "Vapor") + Result("temperature", "double", TextOf(at.temperature)) +
                         Result("pressure", "double", TextOf(at.pressure)) + Numbers("composition", at.composition)) +
                    sets);
}

// An enthalpy that rises by about 46 J/mol per K, and its true derivative, which Calculated multiplies by `factor`.
double Enthalpy(double temperature) { return 40 * temperature + 0.01 * temperature * temperature - 50'000; }
double Slope(double temperature) { return 40 + 0.02 * temperature; }

std::string Calculated(double temperature, double factor, double step = 0)
{
    return Calculation({temperature}, Set("enthalpy", {Enthalpy(temperature) + step}) +
                                          Set("enthalpy.Dtemperature", {Slope(temperature) * factor}));
}

std::string Check(const std::string& entries)
{
    const TemporaryLog log(InLog(entries));
    const Outcome outcome = RunCommand({"log", "check", log.Path()});
    EXPECT_EQ("", outcome.messages);
    // Only the findings of this rule.
    std::string found;
    for (const std::string& line : LinesOf(outcome.data)) {
        if (line.find(": derivative: ") != std::string::npos) found += line + '\n';
    }
    return found;
}

TEST(CheckDerivatives, FindsOneThatDisagreesWithTheProperty)
{
    const std::string found = Check(Calculated(300, 1.5) + Calculated(301, 1.5) + Calculated(302, 1.5));
    const std::size_t rule = found.find(": derivative: ");
    ASSERT_NE(std::string::npos, rule) << found;
    EXPECT_EQ("enthalpy.dtemperature is 69.03 at 301 K, but enthalpy changes by 46.02 per K between 300 and 302 K\n",
              found.substr(rule + 14));
    // With a fourth state, the derivative is still reported only once, in the line where the third state is set.
    EXPECT_EQ(found, Check(Calculated(300, 1.5) + Calculated(301, 1.5) + Calculated(302, 1.5) + Calculated(303, 1.5)));
}

TEST(CheckDerivatives, FindsAWrongSignInAnyOrderOfTheStates)
{
    EXPECT_NE("", Check(Calculated(302, -1) + Calculated(300, -1) + Calculated(301, -1)));
}

TEST(CheckDerivatives, FindsOneThatIsCalculatedApartFromItsProperty)
{
    std::string log;
    for (const double temperature : {300.0, 301.0, 302.0}) {
        log += Calculation({temperature}, Set("enthalpy", {Enthalpy(temperature)}));
        log += Calculation({temperature}, Set("enthalpy.Dtemperature", {2 * Slope(temperature)}));
    }
    EXPECT_NE("", Check(log));
}

TEST(CheckDerivatives, FindsOneByPressureAndOfOneCompound)
{
    std::string log;
    for (const double pressure : {100'000.0, 101'000.0, 101'500.0}) {
        log += Calculation({300, pressure}, Set("logFugacityCoefficient", {-1e-6 * pressure, -2e-6 * pressure}) +
                                                Set("logFugacityCoefficient.Dpressure", {-1e-6, -4e-6}));
    }
    const std::string found = Check(log);
    EXPECT_NE(std::string::npos,
              found.find("logfugacitycoefficient.dpressure is -4e-06 at 101000 Pa, but "
                         "logfugacitycoefficient changes by -2e-06 per Pa between 100000 and 101500 Pa"))
        << found;
}

TEST(CheckDerivatives, IsSilentAboutThoseThatAgree)
{
    EXPECT_EQ("", Check(Calculated(300, 1) + Calculated(301, 1) + Calculated(302, 1)));
    // Derivatives of simplified equations are nearly right.
    EXPECT_EQ("", Check(Calculated(300, 1.1) + Calculated(301, 1.1) + Calculated(302, 1.1)));
}

// In each of these logs, values disagree, but the derivative need not be wrong.
TEST(CheckDerivatives, IsSilentWhereItCannotBeSure)
{
    const std::string change =
        Call("ICapeParameter::put_value", "in", "Option", Argument("value", "in", "VT_R8", {"2"}));
    const std::string failure = "<error value=\"E_FAIL: no\"/>\n";
    const auto wrong = [](double temperature) { return Calculated(temperature, 1.5); };
    const auto at = [](const At& state) {
        return Calculation(state, Set("enthalpy", {Enthalpy(state.temperature)}) +
                                      Set("enthalpy.Dtemperature", {1.5 * Slope(state.temperature)}));
    };
    // The property is large: if it is exact to only five digits, its changes mean nothing.
    const auto inexact = [](double temperature) {
        return Calculation({temperature},
                           Set("enthalpy", {-5e7 + 80 * temperature}) + Set("enthalpy.Dtemperature", {40}));
    };
    const struct {
        const char* why;
        std::string log;
    } rows[] = {
        {"two states", wrong(300) + wrong(301)},
        {"too far apart", wrong(300) + wrong(310) + wrong(320)},
        {"too near for the digits", wrong(300) + wrong(300.01) + wrong(300.02)},
        {"a step of the property", Calculated(300, 1) + Calculated(301, 1, 3000) + Calculated(302, 1, 3000)},
        {"a bend of the derivative", Calculated(300, 1.5) + Calculated(301, 2.5) + Calculated(302, 2.5)},
        {"another pressure", wrong(300) + at({301, 100'001}) + wrong(302)},
        {"another composition", wrong(300) + at({301, 100'000, {"0.4", "0.6"}}) + wrong(302)},
        {"another package",
         wrong(300) + Calculation({301}, Set("enthalpy", {0}) + Set("enthalpy.Dtemperature", {1}), "Q") + wrong(302)},
        {"a change of the package", wrong(300) + wrong(301) + change + wrong(302)},
        {"small against its errors", inexact(300) + inexact(301) + inexact(302)},
        {"a calculation that failed",
         wrong(300) + wrong(301) +
             Calculation(
                 {302}, Set("enthalpy", {Enthalpy(302)}) + Set("enthalpy.Dtemperature", {1.5 * Slope(302)}) + failure)},
        {"values that were refused",
         wrong(300) + wrong(301) +
             Calculation({302},
                         Set("enthalpy", {Enthalpy(302)}) + Set("enthalpy.Dtemperature", {1.5 * Slope(302)}, failure))},
        {"a state that is not known",
         wrong(300) + wrong(301) +
             Call("ICapeThermoPropertyRoutine::CalcSinglePhaseProp", "in", "P",
                  Set("enthalpy", {Enthalpy(302)}) + Set("enthalpy.Dtemperature", {1.5 * Slope(302)}))},
    };
    for (const auto& row : rows) EXPECT_EQ("", Check(row.log)) << row.why;
}

TEST(CheckDerivatives, IsSilentAboutARedactedLog)
{
    const TemporaryLog log(InLog(Calculated(300, 1) + Calculated(301, 1) + Calculated(302, 1)));
    const TemporaryLog wrong(InLog(Calculated(300, 1.5) + Calculated(301, 1.5) + Calculated(302, 1.5)));
    EXPECT_EQ(1, RunCommand({"log", "check", wrong.Path()}).code);
    for (const TemporaryLog* each : {&log, &wrong}) {
        const Outcome redacted = RunCommand({"log", "redact", each->Path()});
        const TemporaryLog given(redacted.data);
        const Outcome outcome = RunCommand({"log", "check", given.Path()});
        EXPECT_EQ(std::string::npos, outcome.data.find("derivative")) << outcome.data;
    }
}

}  // namespace
}  // namespace zelt::test
