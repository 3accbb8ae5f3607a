// recording redact: removes what identifies the user's data, and keeps what a reader needs.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>

#include "ctl/recording/recorded_values.h"
#include "recording/record_reader.h"
#include "tests/log_commands/command_runner.h"
#include "tests/recordings/recorded_calls.h"
#include "tests/recordings/sample_recording.h"

namespace zelt::test {
namespace {

std::string Redact(const std::string& recording, const std::vector<std::string>& options = {})
{
    const TemporaryLog file(recording, "whole"), target("", "redacted");
    std::vector<std::string> words = {"recording", "redact", file.Path(), "-o", target.Path()};
    words.insert(words.end(), options.begin(), options.end());
    const Outcome outcome = RunCommand(words);
    EXPECT_EQ(0, outcome.code) << outcome.messages;
    return ReadBytes(target.Path());
}

// The values of all arguments as text, by "<method> <argument>", in order.
std::map<std::string, std::vector<std::string>> RecordedValues(const std::string& recording)
{
    std::size_t at = 0;
    recording::RecordReader records([&](char* out, std::size_t count) {
        count = std::min(count, recording.size() - at);
        std::memcpy(out, recording.data() + at, count);
        at += count;
        return count;
    });
    std::map<std::string, std::vector<std::string>> values;
    std::string member;
    while (const recording::Record* record = records.Next()) {
        if (const auto* call = std::get_if<recording::CallRecord>(record)) {
            member = call->member.substr(call->member.find("::") + 2);
        }
        if (const auto* argument = std::get_if<recording::ArgumentRecord>(record)) {
            auto& list = values[member + ' ' + std::string(argument->name)];
            ctl::ForEachScalar(argument->value,
                               [&](const ctl::Scalar& scalar) { list.push_back(ctl::ScalarText(*argument, scalar)); });
        }
    }
    return values;
}

double Sum(const std::vector<std::string>& numbers)
{
    double sum = 0;
    for (const std::string& number : numbers) sum += std::stod(number);
    return sum;
}

// Half of the feed boils; the two phases together have its composition.
std::string RecordedFlash()
{
    RecordedCalls calls;
    const std::uint32_t feed = calls.NewObject(0x3000);
    calls.Call("ICapeThermoCompounds::GetCompoundList", kPackage, [&] {
        calls.Texts("compIds", true, {"Secretol", "Benzene"});
        calls.Reals("molwts", true, {78.11, 0});
    });
    calls.Call("ICapeThermoEquilibriumRoutine::CalcEquilibrium", kPackage, [&] {
        calls.CallOut("ICapeThermoMaterial::GetOverallTPFraction", feed, [&] {
            calls.Real("temperature", true, 353.15);
            calls.Real("pressure", true, 101325);
            calls.Reals("composition", true, {0.5, 0.5});
        });
        for (const bool isVapour : {false, true}) {
            const char* const phase = isVapour ? "Vapor" : "Liquid";
            calls.CallOut("ICapeThermoMaterial::SetSinglePhaseProp", feed, [&] {
                calls.Text("property", false, "phaseFraction");
                calls.Text("phaseLabel", false, phase);
                calls.Text("basis", false, "mole");
                calls.Reals("values", false, {0.5});
            });
            calls.CallOut("ICapeThermoMaterial::SetSinglePhaseProp", feed, [&] {
                calls.Text("property", false, "fraction");
                calls.Text("phaseLabel", false, phase);
                calls.Text("basis", false, "mole");
                calls.Reals("values", false, {isVapour ? 0.75 : 0.25, isVapour ? 0.25 : 0.75});
            });
        }
    });
    calls.Call("ICapeThermoCompounds::GetTDependentProperty", kPackage, [&] {
        calls.Texts("compIds", false, {"Secretol"});
        calls.Real("temperature", false, 300);
    });
    calls.Call("ICapeUtilities::Edit", kPackage, {}, 0x80040501);
    return calls.Whole();
}

TEST(RecordingRedaction, LeavesSwitchesAndNoClass)
{
    RecordedCalls calls;
    calls.Call("ICapeUtilities::Edit", kPackage);
    const std::string redacted = Redact(calls.Whole());
    EXPECT_NE(std::string::npos, redacted.find("PromptOpenLog=0 RecordCalls=1"));
    EXPECT_EQ(std::string::npos, redacted.find("PRAVIKUnit"));
    EXPECT_EQ(std::string::npos, redacted.find("2FD53BB5"));
}

TEST(RecordingRedact, LeavesNothingThatIdentifies)
{
    for (const std::string& recording : {RecordedFlash(), SampleRecording()}) {
        const std::string redacted = Redact(recording);
        for (const char* secret :
             {"Aromatics", "aromatics.dll", "2.1.0.0", "0123456789abcdef", "March 05", "Object 2", "Secretol",
              "Benzene", "no answer", "did not converge", "no root", "Solver", "Pl\xC3\xB6", "rrrr", "Feed"}) {
            EXPECT_EQ(std::string::npos, redacted.find(secret)) << secret;
        }
        for (const double number : {353.15, 101325.0, 78.11, 0.25, 0.75, 1e5, 300.0}) {
            std::string bytes(sizeof number, '\0');
            std::memcpy(bytes.data(), &number, sizeof number);
            EXPECT_EQ(std::string::npos, redacted.find(bytes)) << number;
        }
    }
}

TEST(RecordingRedact, LeavesOutWhatIsLoaded)
{
    RecordedCalls calls;
    calls.Call("IPersistStreamInit::Load", kPackage, [&] { calls.Stream("the saved state"); });
    const std::string redacted = Redact(calls.Whole());
    EXPECT_EQ(std::vector<std::string>{"IPersistStreamInit::Load"}, CallsOf(redacted));
    EXPECT_EQ(std::string::npos, redacted.find("saved"));
}

TEST(RecordingRedact, KeepsWhatAReaderNeeds)
{
    auto values = RecordedValues(Redact(RecordedFlash()));
    EXPECT_EQ((std::vector<std::string>{"\"Compound-1\"", "\"Compound-2\""}), values["GetCompoundList compIds"]);
    EXPECT_EQ((std::vector<std::string>{"\"Compound-1\""}), values["GetTDependentProperty compIds"]);
    EXPECT_EQ("0", values["GetCompoundList molwts"].at(1));
    EXPECT_EQ((std::vector<std::string>{"\"phaseFraction\"", "\"fraction\"", "\"phaseFraction\"", "\"fraction\""}),
              values["SetSinglePhaseProp property"]);
    EXPECT_EQ("\"Liquid\"", values["SetSinglePhaseProp phaseLabel"].at(0));
    // The higher temperature stays the higher one.
    EXPECT_GT(std::stod(values["GetOverallTPFraction temperature"].at(0)),
              std::stod(values["GetTDependentProperty temperature"].at(0)));
}

TEST(RecordingRedact, KeepsTheBalanceOfPhases)
{
    auto values = RecordedValues(Redact(RecordedFlash()));
    const std::vector<std::string> feed = values["GetOverallTPFraction composition"],
                                   given = values["SetSinglePhaseProp values"];
    ASSERT_EQ(6u, given.size());
    EXPECT_NEAR(1, Sum(feed), 1e-5);
    EXPECT_NEAR(1, std::stod(given[0]) + std::stod(given[3]), 1e-5);
    for (const std::size_t compound : {0, 1}) {
        const double together =
            std::stod(given[0]) * std::stod(given[1 + compound]) + std::stod(given[3]) * std::stod(given[4 + compound]);
        EXPECT_NEAR(std::stod(feed[compound]), together, 1e-5);
    }
}

TEST(RecordingRedact, GivesTheSameTextTheSameAlias)
{
    RecordedCalls calls;
    for (const char* text : {"Plant", "Refinery", "Plant"}) {
        calls.Call("ICapeIdentification::put_ComponentName", kPackage, [&] { calls.Text("name", false, text); });
    }
    const std::string whole = calls.Whole();
    const auto names = RecordedValues(Redact(whole))["put_ComponentName name"];
    ASSERT_EQ(3u, names.size());
    EXPECT_EQ(names[0], names[2]);
    EXPECT_NE(names[0], names[1]);
    // Each run has another key.
    EXPECT_NE(names[0], RecordedValues(Redact(whole))["put_ComponentName name"].at(0));
}

TEST(RecordingRedact, KeepsTheIdentifiersOfTheStandardAndTheSystem)
{
    const std::string_view kept[] = {{"\x9B\x0A\x8C\x67\x00\x01\xD2\x11\xA6\x7D\x00\x10\x5A\x42\x88\x7F", 16},
                                     {"\xA1\x09\x8C\x67\x66\x7D\xD2\x11\xA6\x7D\x00\x10\x5A\x42\x88\x7F", 16},
                                     {"\x00\x04\x02\x00\x00\x00\x00\x00\xC0\x00\x00\x00\x00\x00\x00\x46", 16}};
    constexpr std::string_view kOther = "fedcba9876543210";
    RecordedCalls calls;
    for (const std::string_view id : kept) calls.Query(calls.NewObject(0x3000), true, id);
    calls.Query(calls.NewObject(0x4000), true, kOther);
    const std::string redacted = Redact(calls.Whole());
    for (const std::string_view id : kept) EXPECT_NE(std::string::npos, redacted.find(id));
    EXPECT_EQ(std::string::npos, redacted.find(kOther));
}

TEST(RecordingRedact, KeepsCallsResultsAndTimes)
{
    const std::string whole = RecordedFlash(), redacted = Redact(whole);
    EXPECT_EQ(CallsOf(whole), CallsOf(redacted));
    const TemporaryLog before(whole, "whole"), after(redacted, "redacted");
    EXPECT_EQ(RunCommand({"recording", "profile", "--slowest", "0", before.Path()}).data,
              RunCommand({"recording", "profile", "--slowest", "0", after.Path()}).data);
    const Outcome info = RunCommand({"recording", "info", after.Path()});
    EXPECT_EQ(0, info.code) << info.messages;
    EXPECT_NE(std::string::npos, info.data.find("calls      9, of which 1 failed\n")) << info.data;
}

TEST(RecordingRedact, KeepsErrorsOnRequest)
{
    EXPECT_NE(std::string::npos, Redact(SampleRecording(), {"--keep-errors"}).find("did not converge"));
    EXPECT_NE(std::string::npos, Redact(SampleRecording(), {"--keep-errors"}).find("no root"));
}

TEST(RecordingRedact, OfOneWithoutAnEndHasNone)
{
    const TemporaryLog file(SampleRecording(false), "whole"), target("", "redacted");
    EXPECT_EQ(1, RunCommand({"recording", "redact", file.Path(), "-o", target.Path()}).code);
    EXPECT_EQ(1, RunCommand({"recording", "info", target.Path()}).code);
}

TEST(RecordingRedact, OfEveryCutIsARecording)
{
    const std::string whole = RecordedFlash();
    int readable = 0;
    for (std::size_t length = 0; length < whole.size(); length += 7) {
        const TemporaryLog file(whole.substr(0, length), "whole"), target("", "redacted");
        const Outcome outcome = RunCommand({"recording", "redact", file.Path(), "-o", target.Path()});
        EXPECT_NE(0, outcome.code);
        if (outcome.code == 1) readable += RunCommand({"recording", "info", target.Path()}).code == 1;
    }
    EXPECT_LT(100, readable);
}

}  // namespace
}  // namespace zelt::test
