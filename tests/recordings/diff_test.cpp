// recording diff: what a comparison ignores, and what it finds.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/log_commands/command_runner.h"
#include "tests/recordings/recorded_calls.h"
#include "tests/recordings/sample_recording.h"

namespace zelt::test {
namespace {

Outcome Diff(const std::string& a, const std::string& b, const std::vector<std::string>& options = {})
{
    const TemporaryLog first(a, "first"), second(b, "second");
    std::vector<std::string> words = {"recording", "diff", first.Path(), second.Path()};
    words.insert(words.end(), options.begin(), options.end());
    return RunCommand(words);
}

// A flash whose package asks a material; the material's address differs from run to run.
std::string RecordFlash(std::uint64_t address, const std::string& material, double temperature, double fraction)
{
    RecordedCalls calls;
    const std::uint32_t feed = calls.NewObject(address);
    calls.Call("ICapeThermoMaterialContext::SetMaterial", kPackage, [&] {
        calls.Writer().Argument("material", false, recording::ArgumentKind::NamedInterface,
                                [&](recording::ValueWriter& value) {
                                    value.Pointer(address);
                                    value.Shown(material);
                                });
    });
    calls.Call("ICapeThermoEquilibriumRoutine::CalcEquilibrium", kPackage, [&] {
        calls.CallOut("ICapeThermoMaterial::GetTPFraction", feed, [&] {
            calls.Real("temperature", true, temperature);
            calls.Reals("composition", true, {fraction, 1 - fraction});
        });
    });
    return calls.Whole();
}

TEST(RecordingDiff, OfTheSameConversationIsNone)
{
    const Outcome same = Diff(RecordFlash(0x3000, "Feed 1", 353.15, 0.25), RecordFlash(0x4000, "Feed 2", 353.15, 0.25));
    EXPECT_EQ(0, same.code) << same.data;
    EXPECT_EQ("", same.data);
    EXPECT_EQ("", same.messages);
    EXPECT_EQ(0, Diff(SampleRecording(), SampleRecording()).code);
}

TEST(RecordingDiff, LooksAtWhatIsLoaded)
{
    const auto load = [](std::string_view data) {
        RecordedCalls calls;
        calls.Call("IPersistStreamInit::Load", kPackage, [&] { calls.Stream(data); });
        return calls.Whole();
    };
    EXPECT_EQ(0, Diff(load("state"), load("state")).code);
    const Outcome other = Diff(load("state"), load("stale"));
    EXPECT_EQ(1, other.code);
    EXPECT_NE(std::string::npos, other.data.find("stream of 5 bytes with the checksum ")) << other.data;
}

TEST(RecordingDiff, IsToTheBit)
{
    const double next = std::nextafter(353.15, 400);
    const Outcome outcome = Diff(RecordFlash(0x3000, "Feed", 353.15, 0.25), RecordFlash(0x3000, "Feed", next, 0.5));
    EXPECT_EQ(1, outcome.code);
    EXPECT_EQ(
        "~ 3 3  ICapeThermoMaterial::GetTPFraction (Object 2) out temperature: 353.15000000000003 instead of 353.15\n"
        "~ 3 3  ICapeThermoMaterial::GetTPFraction (Object 2) out composition: [0]: 0.5 instead of 0.25\n"
        "Values that differ: 2; calls and messages of the first recording alone: 0, of the second alone: 0; the first "
        "difference is in call 3 of the first\n",
        outcome.data);
}

TEST(RecordingDiff, FindsAnotherTypeOfTheSameValue)
{
    using enum recording::ArgumentKind;
    const auto one = [](recording::ArgumentKind kind, std::string_view type) {
        RecordedCalls calls;
        calls.Call("ICapeUtilities::Edit", kPackage, [&] {
            calls.Writer().Argument("number", true, kind, [&](recording::ValueWriter& value) {
                value.Integer(1);
                if (!type.empty()) value.Type(type);
            });
        });
        return calls.Whole();
    };
    const std::string ports = one(Enumeration, "CapePortType");
    EXPECT_EQ(0, Diff(ports, ports).code);
    for (const Outcome& other :
         {Diff(one(Long, ""), one(Short, "")), Diff(ports, one(Enumeration, "CapePhaseStatus"))}) {
        EXPECT_EQ(1, other.code);
        EXPECT_NE(std::string::npos, other.data.find(" out number: another type of argument\n")) << other.data;
    }
}

TEST(RecordingDiff, ToleratesWhatTheUserAllows)
{
    const std::string a = RecordFlash(0x3000, "Feed", 353.15, 0.25), b = RecordFlash(0x3000, "Feed", 353.151, 0.25);
    EXPECT_EQ(1, Diff(a, b).code);
    EXPECT_EQ(1, Diff(a, b, {"--tolerance", "1e-6"}).code);
    EXPECT_EQ(0, Diff(a, b, {"--tolerance", "1e-5"}).code);
}

TEST(RecordingDiff, FindsCallsOfOneAlone)
{
    RecordedCalls a, b;
    for (RecordedCalls* calls : {&a, &b}) {
        calls->Call("ICapeUtilities::Initialize", kPackage);
        if (calls == &b) calls->Call("ICapeUtilities::Edit", kPackage);
        calls->Call("ICapeThermoCompounds::GetNumCompounds", kPackage);
        if (calls == &a) calls->Call("ICapeUtilities::Terminate", kPackage);
    }
    const Outcome outcome = Diff(a.Whole(), b.Whole());
    EXPECT_EQ(1, outcome.code);
    EXPECT_EQ(
        "+ 2  ICapeUtilities::Edit (Aromatics)\n"
        "- 3  ICapeUtilities::Terminate (Aromatics)\n"
        "Values that differ: 0; calls and messages of the first recording alone: 1, of the second alone: 1; the first "
        "difference is in call 2 of the second\n",
        outcome.data);
}

TEST(RecordingDiff, ComparesResultsMessagesAndMissingArguments)
{
    RecordedCalls a, b;
    a.Call("ICapeUtilities::Edit", kPackage, [&] {
        a.Real("first", false, 1);
        a.Text("second", true, "x");
        a.Sentence("Lower bound: %s", {"0"});
    });
    b.Call(
        "ICapeUtilities::Edit", kPackage,
        [&] {
            b.Real("zeroth", false, 2);
            b.Real("first", false, 1);
        },
        0x80040501);
    const Outcome outcome = Diff(a.Whole(), b.Whole());
    EXPECT_EQ(
        "~ 1 1  ICapeUtilities::Edit (Aromatics) in zeroth: 2 added\n"
        "~ 1 1  ICapeUtilities::Edit (Aromatics) out second: \"x\" is missing\n"
        "~ 1 1  ICapeUtilities::Edit (Aromatics) message: nothing instead of info: Lower bound: 0\n"
        "~ 1 1  ICapeUtilities::Edit (Aromatics) result: 0x80040501 ECapeUnknownHR: no answer instead of S_OK\n"
        "Values that differ: 4; calls and messages of the first recording alone: 0, of the second alone: 0; the first "
        "difference is in call 1 of the first\n",
        outcome.data);
}

TEST(RecordingDiff, IsAlsoJson)
{
    const Outcome outcome =
        Diff(RecordFlash(0x3000, "Feed", 353.15, 0.25), RecordFlash(0x3000, "Feed", 353.15, 0.5), {"--json"});
    EXPECT_EQ(
        "{\"differences\":[\n"
        "{\"kind\":\"value\",\"callA\":3,\"callB\":3,\"call\":\"ICapeThermoMaterial::GetTPFraction (Object "
        "2)\",\"value\":\"out composition\",\"difference\":\"[0]: 0.5 instead of 0.25\"}"
        "],\"values\":1,\"onlyInA\":0,\"onlyInB\":0}\n",
        outcome.data);
}

TEST(RecordingDiff, SaysThatOneIsCutOff)
{
    const std::string whole = RecordFlash(0x3000, "Feed", 353.15, 0.25);
    const Outcome outcome = Diff(whole, whole.substr(0, whole.size() - 1));
    EXPECT_EQ(1, outcome.code);
    EXPECT_NE(std::string::npos, outcome.messages.find("is cut off in the middle of a record"));
    EXPECT_EQ(3, Diff(whole, "no recording").code);
}

}  // namespace
}  // namespace zelt::test
