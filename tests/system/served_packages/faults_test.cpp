#include <comutil.h>
#include <gtest/gtest.h>

#include "system/narrow.h"
#include "samples/component/variant.h"
#include "samples/material/material.h"
#include "tests/system/served_packages/served_packages.h"
#include "tests/system/served_packages/simulator.h"

// What goes wrong inside a package stays there: the client gets a status code, and the server continues.
namespace zelt::test {
namespace {

using Microsoft::WRL::ComPtr;
using sample::MakeStrings;

struct Fault {
    const char* name;
    const char* error;  // the beginning of the log's line
};

// clang-format off
constexpr Fault kFaults[] = {
    {"nullWrite",             "Uncaught SEH exception during function call: EXCEPTION_ACCESS_VIOLATION: "},
    {"nullRead",              "Uncaught SEH exception during function call: EXCEPTION_ACCESS_VIOLATION: "},
    {"nullCall",              "Uncaught SEH exception during function call: EXCEPTION_ACCESS_VIOLATION: "},
    {"integerDivision",       "Uncaught SEH exception during function call: EXCEPTION_INT_DIVIDE_BY_ZERO: "},
    {"integerOverflow",       "Uncaught SEH exception during function call: EXCEPTION_INT_"},
    {"illegalInstruction",    "Uncaught SEH exception during function call: EXCEPTION_ILLEGAL_INSTRUCTION: "},
    {"privilegedInstruction", "Uncaught SEH exception during function call: EXCEPTION_PRIV_INSTRUCTION: "},
    {"stackOverflow",         "Uncaught SEH exception during function call: EXCEPTION_STACK_OVERFLOW: "},
    {"stackOverflow",         "Uncaught SEH exception during function call: EXCEPTION_STACK_OVERFLOW: "},
    {"cppException",          "Uncaught exception during function call"},
    {"charString",            "Uncaught exception during function call"},
    {"intException",          "Uncaught exception during function call"},
    {"foreignCharString",     "Uncaught exception during function call: thrown by a foreign compiler's code"},
    {"raise:E0001234",        "Uncaught SEH exception during function call: Unknown SEH exception"},
    {"raise:C0000006",        "Uncaught SEH exception during function call: EXCEPTION_IN_PAGE_ERROR: "},
    {"abort",                 "Uncaught exception during function call"},
    {"terminate",             "Uncaught exception during function call"},
    {"callback:nullWrite",    "Uncaught SEH exception during function call: EXCEPTION_ACCESS_VIOLATION: "},
    {"callback:stackOverflow", "Uncaught SEH exception during function call: EXCEPTION_STACK_OVERFLOW: "},
};
// clang-format on

// The texts of the error lines, unescaped as far as these tests need it.
std::vector<std::string> ErrorsIn(const std::string& log)
{
    constexpr std::string_view kStart = "<error value=\"", kApostrophe = "&apos;";
    std::vector<std::string> errors;
    for (std::size_t at = log.find(kStart); at != std::string::npos; at = log.find(kStart, at + 1)) {
        std::string text = log.substr(at + kStart.size(), log.find('"', at + kStart.size()) - at - kStart.size());
        for (std::size_t found; (found = text.find(kApostrophe)) != std::string::npos;)
            text.replace(found, kApostrophe.size(), "'");
        errors.push_back(text);
    }
    return errors;
}

class Faults : public ServedPackages {
protected:
    void SetUp() override
    {
        ServedPackages::SetUp();
        Export({{kFaultyManager, 0, L"Menu", L"Menu"}});
    }

    static HRESULT Calculate(IDispatch* package, const wchar_t* property)
    {
        ComPtr<ICapeThermoPropertyRoutine> properties;
        EXPECT_EQ(S_OK, package->QueryInterface(IID_PPV_ARGS(&properties)));
        if (!properties) return E_NOINTERFACE;
        return properties->CalcSinglePhaseProp(MakeStrings({property}), sample::MakeBstr(L"Liquid").GetBSTR());
    }

    static HRESULT CountCompounds(IDispatch* package, long& count)
    {
        ComPtr<ICapeThermoCompounds> compounds;
        EXPECT_EQ(S_OK, package->QueryInterface(IID_PPV_ARGS(&compounds)));
        return compounds ? compounds->GetNumCompounds(&count) : E_NOINTERFACE;
    }
};

TEST_F(Faults, BecomeStatusCodesAndTheServerLivesOn)
{
    const ComPtr<IDispatch> package = GetPackage(L"Menu");
    ASSERT_TRUE(package);
    const DWORD server = ServerId();

    auto slate = std::make_shared<sample::Slate>();
    slate->compounds = {{L"Benzene", L"C6H6", L"benzene", 353.2, 78.114, L"71-43-2"}};
    slate->phases = {{L"Vapor", L"Vapor", L""}, {L"Liquid", L"Liquid", L""}};
    ComPtr<IDispatch> material;
    ASSERT_EQ(S_OK, com::Create<sample::Material>(IID_PPV_ARGS(&material), slate));
    ComPtr<ICapeThermoMaterial> state;
    ASSERT_EQ(S_OK, material.As(&state));
    ASSERT_EQ(S_OK, state->SetPresentPhases(MakeStrings({L"Liquid"}), sample::MakeLongs({{CAPE_UNKNOWNPHASESTATUS}})));
    state.Reset();
    ComPtr<ICapeThermoMaterialContext> context;
    ASSERT_EQ(S_OK, package.As(&context));
    ASSERT_EQ(S_OK, context->SetMaterial(material.Get()));

    std::size_t read = OnlyLog().size();
    for (const Fault& fault : kFaults) {
        SCOPED_TRACE(fault.name);
        EXPECT_EQ(E_UNEXPECTED, Calculate(package.Get(), Widen(fault.name).c_str()));
        const std::string added = OnlyLog().substr(read);
        read += added.size();
        const std::vector<std::string> errors = ErrorsIn(added);
        ASSERT_EQ(2u, errors.size()) << added;
        EXPECT_TRUE(errors[0].starts_with(fault.error)) << errors[0];
        EXPECT_TRUE(errors[1].starts_with("E_UNEXPECTED: ")) << errors[1];
        EXPECT_NE(std::string::npos, added.find("<func name=\"ICapeThermoPropertyRoutine::CalcSinglePhaseProp\" "
                                                "direc=\"in\" object=\"Menu\">\r\n"))
            << added;
        EXPECT_TRUE(added.ends_with("\"/>\r\n</func>\r\n")) << added;

        long count = 0;
        EXPECT_EQ(S_OK, CountCompounds(package.Get(), count));
        EXPECT_EQ(3, count);
        read = OnlyLog().size();
        EXPECT_EQ(server, ServerId());
    }
    EXPECT_EQ(S_OK, context->UnsetMaterial());
    context.Reset();
    material->AddRef();
    EXPECT_EQ(1u, material->Release()) << "the faults have left references";
}

TEST_F(Faults, AreFindingsOfAReplay)
{
    ComPtr<IDispatch> package = GetPackage(L"Menu");
    ASSERT_TRUE(package);
    EXPECT_EQ(E_UNEXPECTED, Calculate(package.Get(), L"nullRead"));
    EXPECT_EQ(E_UNEXPECTED, Calculate(package.Get(), L"stackOverflow"));
    EXPECT_EQ(E_UNEXPECTED, Calculate(package.Get(), L"abort"));
    package.Reset();
    ASSERT_TRUE(WaitUntilGone(kServerFile));
    const SimulatorResult replay = RunTool(L"recording replay \"" + RecordingOf(Logs().front()).wstring() + L'"');
    EXPECT_EQ(1u, replay.exitCode);
    const std::string call = "  ICapeThermoPropertyRoutine::CalcSinglePhaseProp  (Menu): the component ";
    EXPECT_EQ(
        "call 1" + call +
            "crashed: EXCEPTION_ACCESS_VIOLATION: The thread tried to read from or write to a virtual address for "
            "which it does not have the appropriate access.\ncall 2" +
            call + "crashed: EXCEPTION_STACK_OVERFLOW: The thread used up its stack.\ncall 3" + call +
            "threw an exception: a component threw an exception or gave up\n3 calls made again, 0 questions answered: "
            "3 differences\n",
        replay.output);
}

// If a component returns a code without a meaning, as .NET components do, the log has the message from the error information,
// unless it is empty.
TEST_F(Faults, OfCodesWithoutAMeaningSpeakThroughTheLog)
{
    const ComPtr<IDispatch> package = GetPackage(L"Menu");
    ASSERT_TRUE(package);
    struct Row {
        const wchar_t* request;
        HRESULT code;
        std::string info;
    };
    const Row rows[] = {
        {L"error:80131500", static_cast<HRESULT>(0x80131500),
         "Error information: &quot;The faulty package fails as asked: error:80131500&quot; (source: "
         "ZeltSample.FaultyPackage)"},
        {L"error:80040520", static_cast<HRESULT>(0x80040520),
         "Error information: &quot;The faulty package fails as asked: error:80040520&quot; (source: "
         "ZeltSample.FaultyPackage)"},
        {L"error:8004050B", static_cast<HRESULT>(0x8004050B), ""},
        {L"silent:80131500", static_cast<HRESULT>(0x80131500), ""},
    };
    for (const Row& row : rows) {
        const std::size_t before = OnlyLog().size();
        EXPECT_EQ(row.code, Calculate(package.Get(), row.request));
        const std::string added = OnlyLog().substr(before);
        const std::size_t end = added.find("\r\n <error value=\"");
        ASSERT_NE(std::string::npos, end) << added;
        const std::string line = added.substr(0, end).substr(added.substr(0, end).rfind('\n') + 1);
        EXPECT_EQ(row.info.empty() ? " </arg>" : " <info value=\"" + row.info + "\"/>", line) << added;
        EXPECT_EQ(1u, ErrorsIn(added).size()) << added;
    }
}

TEST_F(Faults, ThatThePackageHandlesItselfStayItsOwn)
{
    const ComPtr<IDispatch> package = GetPackage(L"Menu");
    ASSERT_TRUE(package);
    EXPECT_EQ(S_OK, Calculate(package.Get(), L"handledFault"));
    EXPECT_TRUE(ErrorsIn(OnlyLog()).empty());
    EXPECT_EQ(static_cast<HRESULT>(0x8004050B), Calculate(package.Get(), L"error:8004050B"));
    EXPECT_EQ(static_cast<HRESULT>(0x8004051A), Calculate(package.Get(), L"silent:8004051A"));
    const std::vector<std::string> errors = ErrorsIn(OnlyLog());
    ASSERT_EQ(2u, errors.size());
    EXPECT_EQ("ECapeComputationHR: The faulty package fails as asked: error:8004050B", errors[0]);
    EXPECT_TRUE(errors[1].starts_with("ECapeThrmPropertyNotAvailableHR: ")) << errors[1];
}

TEST_F(Faults, ReachASimulatorOfEachWidthAsAFailure)
{
    for (const Width width : kWidths) {
        if (!HasSimulator(width)) continue;
        const SimulatorResult run = RunSimulator(SimulatorCommand(width, L"Menu", L"--calculate nullWrite"));
        EXPECT_EQ(1u, run.exitCode);
        EXPECT_NE(std::string::npos, run.output.find("SampleSimulator: CalcSinglePhaseProp: ")) << run.output;
        EXPECT_NE(std::string::npos, run.output.find("(0x8000FFFF)\n")) << run.output;
    }
}

}  // namespace
}  // namespace zelt::test
