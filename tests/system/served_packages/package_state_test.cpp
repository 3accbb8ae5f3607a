#include <gtest/gtest.h>

#include <fstream>
#include <regex>

#include "tests/system/served_packages/served_packages.h"
#include "tests/system/served_packages/simulator.h"

// A package's state: saved through the server by one process, loaded by another before it initialises the package.
namespace zelt::test {
namespace {

namespace fs = std::filesystem;

struct Kind {
    const char* name;
    Exported exported;
    const wchar_t* zelt;    // ZELT's manager of this kind
    const wchar_t* sample;  // the manager that gives the same package in process
    const char* persistence;
};
void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.name; }

const Kind kKinds[] = {
    {"FromAManager",
     {kSampleManager, 0, L"Aromatics", L"Aromatics"},
     kManagerProgId,
     kSampleManager,
     "IPersistStreamInit"},
    {"StandAlone", {kSamplePackage, 1, L"", L"Aromatics"}, kManagerProgId, kSampleManager, "IPersistStreamInit"},
    {"FromAThermoSystem",
     {kSampleThermoSystem, 2, L"Aromatics", L"Aromatics"},
     kThisEdition[OwnClass::ThermoSystem].progId,
     kSampleThermoSystem,
     "IPersistStream"},
    {"StandAlone10",
     {kSamplePackage10, 3, L"", L"Aromatics"},
     kThisEdition[OwnClass::ThermoSystem].progId,
     kSampleThermoSystem,
     "IPersistStream"},
};

class PackageState : public ServedPackages, public testing::WithParamInterface<std::tuple<Kind, Width>> {
protected:
    void SetUp() override
    {
        ServedPackages::SetUp();
        if (!HasSimulator(width)) GTEST_SKIP() << kNoSimulator;
    }
    void TearDown() override
    {
        std::error_code ignored;
        for (const wchar_t* name : {L"zelt", L"again", L"in process"}) fs::remove(File(name), ignored);
        ServedPackages::TearDown();
    }
    static fs::path File(const wchar_t* name)
    {
        return fs::temp_directory_path() /
               (L"package state " + std::to_wstring(GetCurrentProcessId()) + L' ' + std::wstring(name));
    }
    static std::wstring Save(const wchar_t* name) { return L"--save-state \"" + File(name).wstring() + L'"'; }
    static std::wstring Load(const wchar_t* name) { return L"--load-state \"" + File(name).wstring() + L'"'; }
    static std::string Content(const wchar_t* name)
    {
        std::ifstream file(File(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    std::string ThroughZelt(Width client, const std::wstring& options) const
    {
        return Run(SimulatorCommand(client, L"Aromatics", options, kind.zelt));
    }
    std::string InProcess(const std::wstring& options) const
    {
        return Run(SimulatorCommand(kOwnWidth, L"Aromatics", options + L" --in-process", kind.sample));
    }
    static std::string Run(const std::wstring& command)
    {
        const SimulatorResult run = RunSimulator(command);
        EXPECT_EQ(0u, run.exitCode) << run.output;
        return Results(run.output);
    }

    const Kind kind = std::get<0>(GetParam());
    const Width width = std::get<1>(GetParam());
    // The width of the process that loads: the other one, if its simulator is built.
    const Width other = width == Width::Bits32 && HasSimulator(Width::Bits64) ? Width::Bits64 : Width::Bits32;
    const std::wstring settings =
        L" --set \"Highest pressure=2e6\" --set \"Check fractions=true\" --set \"Temperature limits=250;600\"";
};

INSTANTIATE_TEST_SUITE_P(ThroughZelt, PackageState,
                         testing::Combine(testing::ValuesIn(kKinds), testing::ValuesIn(kWidths)),
                         [](const auto& tested) {
                             return std::string(std::get<0>(tested.param).name) +
                                    (std::get<1>(tested.param) == Width::Bits32 ? "Bits32" : "Bits64");
                         });

TEST_P(PackageState, IsSavedAndLoadedByAnotherProcessAsWithoutZelt)
{
    Export({kind.exported});
    const std::string inProcess = InProcess(Save(L"in process") + settings);
    EXPECT_EQ(inProcess, ThroughZelt(width, Save(L"zelt") + settings));
    const std::string saved = Content(L"zelt");
    EXPECT_LT(12u, saved.size());
    EXPECT_EQ(Content(L"in process"), saved);
    const std::string name = kind.persistence;
    const std::string length = std::to_string(saved.size());
    EXPECT_TRUE(
        std::regex_search(OnlyLog(), std::regex("<func name=\"" + name +
                                                "::Save\" direc=\"in\" object=\"Aromatics\">\r\n"
                                                " <arg name=\"pstm\" direc=\"in\" type=\"interface\">\r\n"
                                                "  <argval value=\"interface pointer 0x(?:[0-9A-F]{8}){1,2}\"/>\r\n"
                                                " </arg>\r\n"
                                                " <arg name=\"fClearDirty\" direc=\"in\" type=\"BOOL\">\r\n"
                                                "  <argval value=\"TRUE\"/>\r\n"
                                                " </arg>\r\n"
                                                " <info value=\"Bytes written: " +
                                                length + "\"/>\r\n</func>\r\n")))
        << OnlyLog();

    // A process of the other width loads the state and saves it again.
    const std::string loaded = ThroughZelt(other, Load(L"zelt") + L' ' + Save(L"again"));
    EXPECT_EQ(InProcess(Load(L"in process") + L' ' + Save(L"in process")), loaded);
    EXPECT_NE(std::string::npos, loaded.find("Highest pressure: 2")) << loaded;
    EXPECT_EQ(saved, Content(L"again"));
    ASSERT_EQ(2u, Logs().size());
    std::string log = ReadLog(Logs()[0]);
    const std::string load = "<func name=\"" + name + "::Load\"";
    if (log.find(load) == std::string::npos) log = ReadLog(Logs()[1]);
    const std::size_t at = log.find(load), initialize = log.find("<func name=\"ICapeUtilities::Initialize\"");
    ASSERT_NE(std::string::npos, at) << log;
    EXPECT_LT(at, initialize);
    EXPECT_LT(log.find("<info value=\"Bytes read: " + length + "\"/>", at), initialize) << log;
    for (const std::filesystem::path& recording : Recorded()) ExpectReplayed(recording);
}

TEST_P(PackageState, IsTheSameWithoutALog)
{
    Exported unlogged = kind.exported;
    unlogged.logging = false;
    Export({unlogged});
    const std::string inProcess = InProcess(Save(L"in process") + settings);
    EXPECT_EQ(inProcess, ThroughZelt(width, Save(L"zelt") + settings));
    EXPECT_EQ(Content(L"in process"), Content(L"zelt"));
    EXPECT_EQ(InProcess(Load(L"zelt")), ThroughZelt(other, Load(L"in process")));
    EXPECT_TRUE(Logs().empty());
}

}  // namespace
}  // namespace zelt::test
