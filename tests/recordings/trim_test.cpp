// recording trim: keeps what a call needs, and no more.
#include <gtest/gtest.h>

#include "tests/log_commands/command_runner.h"
#include "ctl/recording/trimming/member_effect.h"
#include "tests/recordings/recorded_calls.h"
#include "tests/recordings/sample_recording.h"

namespace zelt::test {
namespace {

using Calls = std::vector<std::string>;

struct Trimmed {
    Outcome outcome;
    std::string bytes;
};

Trimmed Trim(const std::string& recording, const std::vector<std::string>& options)
{
    const TemporaryLog file(recording, "whole"), target("", "trimmed");
    std::vector<std::string> words = {"recording", "trim", file.Path(), "-o", target.Path()};
    words.insert(words.end(), options.begin(), options.end());
    Outcome outcome = RunCommand(words);
    return {std::move(outcome), ReadBytes(target.Path())};
}

Calls TrimmedCalls(const std::string& recording, const std::string& calls)
{
    const Trimmed trimmed = Trim(recording, {"--calls", calls});
    EXPECT_EQ(0, trimmed.outcome.code) << trimmed.outcome.messages;
    return CallsOf(trimmed.bytes);
}

constexpr std::uint32_t kFailed = 0x80040501;

// A package that calculates twice, with another material each time.
std::string TwoCalculations()
{
    RecordedCalls calls;
    calls.Call("ICapeUtilities::Initialize", kPackage);
    calls.Call("ICapeThermoCompounds::GetNumCompounds", kPackage);
    const std::uint32_t feed = calls.NewObject(0x3000), product = calls.NewObject(0x4000);
    for (const std::uint64_t address : {0x3000, 0x4000}) {
        const std::uint32_t material = address == 0x3000 ? feed : product;
        calls.Call("ICapeThermoMaterialContext::SetMaterial", kPackage, [&] {
            calls.Pointer("material", false, address);
            calls.Query(material);
        });
        calls.Call(
            "ICapeThermoPropertyRoutine::CalcSinglePhaseProp", kPackage,
            [&] {
                calls.CallOut("ICapeThermoMaterial::GetTPFraction", material);
                calls.CallOut("ICapeThermoMaterial::SetSinglePhaseProp", material);
            },
            material == product ? kFailed : 0);
    }
    calls.Call("ICapeUtilities::Terminate", kPackage);
    return calls.Whole();
}

TEST(RecordingTrim, KeepsWhatMadeTheStateAndTheCallWhole)
{
    const Calls expected = {"ICapeUtilities::Initialize", "ICapeThermoMaterialContext::SetMaterial",
                            "ICapeThermoPropertyRoutine::CalcSinglePhaseProp", "  <ICapeThermoMaterial::GetTPFraction",
                            "  <ICapeThermoMaterial::SetSinglePhaseProp"};
    EXPECT_EQ(expected, TrimmedCalls(TwoCalculations(), "8"));
    // An inner call needs the call around it.
    EXPECT_EQ(expected, TrimmedCalls(TwoCalculations(), "9..10"));
}

TEST(RecordingTrim, SaysWhatItKept)
{
    EXPECT_EQ("5 of 11 calls kept; call 8 is call 3 now\n", Trim(TwoCalculations(), {"--calls", "8"}).outcome.data);
    EXPECT_EQ("2 of 11 calls kept; call 2 is call 2 now\n", Trim(TwoCalculations(), {"--calls", "2"}).outcome.data);
}

TEST(RecordingTrim, KeepsWhatIsBetweenTwoCalls)
{
    EXPECT_EQ((Calls{"ICapeUtilities::Initialize", "ICapeThermoCompounds::GetNumCompounds",
                     "ICapeThermoMaterialContext::SetMaterial"}),
              TrimmedCalls(TwoCalculations(), "2..3"));
}

TEST(RecordingTrim, FindsAFailure)
{
    const Trimmed trimmed = Trim(TwoCalculations(), {"--failure", "1"});
    EXPECT_EQ("5 of 11 calls kept; call 8 is call 3 now\n", trimmed.outcome.data);
    const TemporaryLog file(trimmed.bytes, "trimmed");
    const Outcome info = RunCommand({"recording", "info", file.Path()});
    EXPECT_EQ(0, info.code) << info.messages;
    EXPECT_NE(std::string::npos, info.data.find("calls      5, of which 1 failed\n")) << info.data;
    EXPECT_NE(std::string::npos, info.data.find("package \"Aromatics of the plant\"\n")) << info.data;
}

// A unit operation: its component is made within a call, and its parameters come in a collection.
std::string Flowsheet()
{
    RecordedCalls calls(false);
    calls.Call("ICapeIdentification::put_ComponentName", 1);
    calls.Call("IPersistStreamInit::InitNew", 1, [&] { calls.MakeComponent(); });
    const std::uint32_t parameters = calls.NewObject(0x5000, 0x5500);
    calls.Call("ICapeUtilities::get_parameters", 1, [&] { calls.Pointer("parameters", true, 0x5000); });
    const std::uint32_t duty = calls.NewObject(0x6000), other = calls.NewObject(0x7000);
    calls.Call("ICapeCollection::Item", parameters, [&] { calls.Pointer("item", true, 0x6000); });
    calls.Call("ICapeCollection::Item", parameters, [&] { calls.Pointer("item", true, 0x7000); });
    calls.Call("ICapeUtilities::Initialize", 1);
    for (const double value : {1.0, 2.0, 3.0}) {
        calls.Call("ICapeParameter::put_value", duty, [&] { calls.Real("value", false, value); });
        calls.Call("ICapeParameter::get_value", other);
        calls.Call("ICapeUnit::Validate", 1);
        calls.Call("ICapeUnit::Calculate", 1);
    }
    return calls.Whole();
}

TEST(RecordingTrim, FollowsTheCallsThatBroughtTheObjects)
{
    EXPECT_EQ((Calls{"IPersistStreamInit::InitNew", "ICapeUtilities::get_parameters", "ICapeCollection::Item",
                     "ICapeUtilities::Initialize", "ICapeParameter::put_value", "ICapeUnit::Validate",
                     "ICapeUnit::Calculate"}),
              TrimmedCalls(Flowsheet(), "18"));
    // A call of the other parameter needs what was set before it.
    EXPECT_EQ((Calls{"IPersistStreamInit::InitNew", "ICapeUtilities::get_parameters", "ICapeCollection::Item",
                     "ICapeCollection::Item", "ICapeUtilities::Initialize", "ICapeParameter::put_value",
                     "ICapeParameter::get_value"}),
              TrimmedCalls(Flowsheet(), "8"));
}

TEST(RecordingTrim, KeepsTheStateThatAnEarlierCalculationUsed)
{
    // A setting is left out only if another replaces it before a call can use it.
    RecordedCalls calls;
    calls.Call("IVendor::put_Mode", kPackage, [&] { calls.Real("mode", false, 1); });
    calls.Call("IVendor::Solve", kPackage);
    calls.Call("IVendor::put_Mode", kPackage, [&] { calls.Real("mode", false, 2); });
    calls.Call("IVendor::put_Mode", kPackage, [&] { calls.Real("mode", false, 3); });
    calls.Call("IVendor::get_Result", kPackage);
    EXPECT_EQ((Calls{"IVendor::put_Mode", "IVendor::Solve", "IVendor::put_Mode", "IVendor::get_Result"}),
              TrimmedCalls(calls.Whole(), "5"));
}

TEST(RecordingTrim, KeepsTheValidationThatACalculationFollowed)
{
    RecordedCalls calls;
    calls.Call("ICapeUnit::Validate", kPackage);
    calls.Call("ICapeUnit::Calculate", kPackage);
    calls.Call("ICapeUnit::Validate", kPackage);
    calls.Call("ICapeUnit::Validate", kPackage);
    calls.Call("ICapeUnit::get_ValStatus", kPackage);
    EXPECT_EQ((Calls{"ICapeUnit::Validate", "ICapeUnit::Calculate", "ICapeUnit::Validate", "ICapeUnit::get_ValStatus"}),
              TrimmedCalls(calls.Whole(), "5"));
}

TEST(RecordingTrim, DoesNotCountOnASettingThatFailed)
{
    RecordedCalls calls;
    calls.Call("IVendor::put_Mode", kPackage, [&] { calls.Real("mode", false, 1); });
    calls.Call(
        "IVendor::put_Mode", kPackage, [&] { calls.Real("mode", false, -1); }, kFailed);
    calls.Call("IVendor::get_Result", kPackage);
    EXPECT_EQ((Calls{"IVendor::put_Mode", "IVendor::put_Mode", "IVendor::get_Result"}),
              TrimmedCalls(calls.Whole(), "3"));
}

TEST(RecordingTrim, KeepsTheFirstQuestionToTheSimulator)
{
    RecordedCalls calls;
    const std::uint32_t context = calls.NewObject(0x6000), feed = calls.NewObject(0x7000);
    for (int i = 0; i < 3; ++i) {
        calls.Call("ICapeThermoPropertyRoutine::CalcSinglePhaseProp", kPackage, [&] {
            if (i < 2) calls.CallOut("ICapeMaterialTemplateSystem::get_MaterialTemplates", context);
            calls.CallOut("ICapeThermoMaterial::GetTPFraction", feed);
        });
    }
    EXPECT_EQ((Calls{"ICapeThermoPropertyRoutine::CalcSinglePhaseProp",
                     "  <ICapeMaterialTemplateSystem::get_MaterialTemplates", "  <ICapeThermoMaterial::GetTPFraction",
                     "ICapeThermoPropertyRoutine::CalcSinglePhaseProp", "  <ICapeThermoMaterial::GetTPFraction"}),
              TrimmedCalls(calls.Whole(), "7"));
}

TEST(RecordingTrim, KeepsTheLastCallThatPassedAPointer)
{
    RecordedCalls calls;
    const std::uint32_t first = calls.NewObject(0x6000);
    calls.Call("ICapeCollection::Item", kPackage, [&] { calls.Pointer("item", true, 0x6000); });
    calls.Call("ICapeIdentification::get_ComponentName", first);
    calls.Call("ICapeThermoMaterial::CreateMaterial", kPackage, [&] { calls.Pointer("material", true, 0x6000); });
    const std::uint32_t second = calls.NewObject(0x6000);
    calls.Call("ICapeIdentification::get_ComponentName", second);
    EXPECT_EQ((Calls{"ICapeThermoMaterial::CreateMaterial", "ICapeIdentification::get_ComponentName"}),
              TrimmedCalls(calls.Whole(), "4"));
}

TEST(RecordingTrim, OfARecordingWithoutAnEndHasNone)
{
    RecordedCalls calls;
    calls.Call("ICapeUtilities::Initialize", kPackage);
    calls.Writer().BeginCall("ICapeUtilities::Edit", "Aromatics", kPackage, false, 100);
    const Trimmed trimmed = Trim(calls.Open(), {"--calls", "2"});
    EXPECT_EQ(1, trimmed.outcome.code);
    EXPECT_NE(std::string::npos, trimmed.outcome.messages.find("the recording has no end"));
    EXPECT_EQ((Calls{"ICapeUtilities::Initialize", "ICapeUtilities::Edit"}), CallsOf(trimmed.bytes));
    const TemporaryLog file(trimmed.bytes, "trimmed");
    EXPECT_EQ(1, RunCommand({"recording", "info", file.Path()}).code);
}

// A fault can remove a call's stack frame before the caller has counted the call.
TEST(RecordWriting, TakesBackACallThatNobodyCounts)
{
    RecordedCalls calls;
    calls.Writer().BeginCall("ICapeUtilities::Edit", "Object 1", kPackage, false, 100);
    calls.Writer().Settle(0);
    calls.Call("ICapeUtilities::Initialize", kPackage, [&] {
        calls.Writer().BeginCall("ICapeUtilities::Terminate", "Object 1", kPackage, false, 200);
        calls.Writer().Settle(1);
    });
    EXPECT_EQ(Calls{"ICapeUtilities::Initialize"}, CallsOf(calls.Whole()));
}

TEST(RecordWriting, EndsACallThatNobodyCountsIfItIsInTheFile)
{
    RecordedCalls calls;
    calls.Writer().BeginCall("ICapeUtilities::Edit", "Object 1", kPackage, false, 100);
    calls.Writer().Flush();
    calls.Writer().Settle(0);
    calls.Call("ICapeUtilities::Initialize", kPackage);
    EXPECT_EQ((Calls{"ICapeUtilities::Edit", "ICapeUtilities::Initialize"}), CallsOf(calls.Whole()));
}

TEST(RecordingTrim, KeepsWhatIsLoaded)
{
    RecordedCalls calls;
    calls.Call("IPersistStreamInit::Load", kPackage, [&] { calls.Stream("the saved state"); });
    calls.Call("ICapeUtilities::Edit", kPackage);
    const Trimmed trimmed = Trim(calls.Whole(), {"--calls", "2"});
    EXPECT_EQ("2 of 2 calls kept; call 2 is call 2 now\n", trimmed.outcome.data);
    EXPECT_NE(std::string::npos, trimmed.bytes.find("the saved state"));
}

TEST(RecordingTrim, OfAllCallsChangesNoValue)
{
    const Trimmed once = Trim(SampleRecording(), {"--calls", "1"});
    EXPECT_EQ("2 of 2 calls kept; call 1 is call 1 now\n", once.outcome.data);
    // A copy is written with its own tables and times; trimming it again gives the same bytes.
    EXPECT_EQ(once.bytes, Trim(once.bytes, {"--failure", "1"}).bytes);
    const TemporaryLog whole(SampleRecording(), "whole"), copy(once.bytes, "copy");
    for (const char* command : {"info", "profile"}) {
        EXPECT_EQ(RunCommand({"recording", command, whole.Path()}).data,
                  RunCommand({"recording", command, copy.Path()}).data);
    }
}

TEST(RecordingTrim, RefusesWhatTheRecordingDoesNotHave)
{
    const struct {
        std::vector<std::string> options;
        int code;
        std::string message;
    } rows[] = {
        {{"--calls", "12"}, 2, "the recording has 11 calls"},
        {{"--failure", "2"}, 2, "the recording has 1 call that failed"},
        {{"--calls", "0"}, 2, "calls and failures are numbered from 1: \"0\""},
        {{"--calls", "2.."}, 2, "calls and failures are numbered from 1: \"\""},
        {{"--calls", "3..2"}, 2, "the last call comes before the first"},
        {{}, 2, "--calls or --failure is missing"},
        {{"--calls", "1", "--failure", "1"}, 2, "--calls does not go with --failure"},
    };
    for (const auto& row : rows) {
        const Trimmed trimmed = Trim(TwoCalculations(), row.options);
        EXPECT_EQ(row.code, trimmed.outcome.code) << row.message;
        EXPECT_NE(std::string::npos, trimmed.outcome.messages.find(row.message)) << trimmed.outcome.messages;
        EXPECT_EQ("", trimmed.bytes);
    }
    const TemporaryLog file(TwoCalculations(), "whole");
    const Outcome none = RunCommand({"recording", "trim", "--calls", "1", file.Path()});
    EXPECT_EQ(2, none.code);
    EXPECT_NE(std::string::npos, none.messages.find("-o is needed"));
}

TEST(RecordingTrim, OfEveryCutIsARecording)
{
    const std::string whole = TwoCalculations();
    int trimmed = 0;
    // Every third byte, because each trim writes files.
    for (std::size_t length = 0; length < whole.size(); length += 3) {
        const Trimmed cut = Trim(whole.substr(0, length), {"--calls", "1"});
        EXPECT_NE(0, cut.outcome.code);
        if (cut.bytes.empty()) continue;
        ++trimmed;
        EXPECT_EQ((Calls{"ICapeUtilities::Initialize"}), CallsOf(cut.bytes)) << length;
    }
    EXPECT_LT(50, trimmed);
}

TEST(MemberEffect, FollowsTheMember)
{
    using ctl::Effect;
    const struct {
        const char* member;
        Effect effect;
        const char* group;
    } rows[] = {
        {"ICapeUtilities::Initialize", Effect::Remembers, ""},
        {"ICapeUtilities::put_simulationContext", Effect::Sets, "ICapeUtilities::put_simulationContext"},
        {"ICapeThermoMaterialContext::UnsetMaterial", Effect::Sets, "ICapeThermoMaterialContext"},
        {"ICapeUnitPort::Disconnect", Effect::Sets, "ICapeUnitPort"},
        {"ICapeUnitPort::get_direction", Effect::None, ""},
        {"ICapeUnit::Calculate", Effect::Calculates, "ICapeUnit::Calculate"},
        {"ICapeUnit::Validate", Effect::Validates, "ICapeUnit::Validate"},
        {"ICapeUnitReport::ProduceReport", Effect::None, ""},
        {"ICapeThermoPropertyPackage::PropCheck", Effect::None, ""},
        {"ICapeCollection::Item", Effect::None, ""},
        {"ICapeRealParameterSpec::Validate", Effect::None, ""},
        {"IPersistStreamInit::Save", Effect::None, ""},
        {"IPersistStreamInit::Load", Effect::Remembers, ""},
        {"ECapeUser::code", Effect::None, ""},
        {"IVendor::CheckIn", Effect::Remembers, ""},
        {"without an interface", Effect::Remembers, ""},
    };
    for (const auto& row : rows) {
        const ctl::MemberEffect effect = ctl::EffectOf(row.member);
        EXPECT_EQ(row.effect, effect.effect) << row.member;
        EXPECT_EQ(row.group, effect.group) << row.member;
    }
}

}  // namespace
}  // namespace zelt::test
