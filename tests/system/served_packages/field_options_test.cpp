#include <gtest/gtest.h>

#include "samples/field/classes.h"
#include "samples/units/classes.h"
#include "tests/system/served_packages/served_packages.h"
#include "tests/system/served_packages/simulator.h"

// The options for programs with special needs. Each client does the same thing without its option and with it, and switches the
// option itself.
namespace zelt::test {
namespace {

class FieldOptions : public ServedPackages {
protected:
    static int Clients() { return HasSimulator(Width::Bits64) ? 2 : 1; }
    int CountInLogs(std::string_view text) const
    {
        int count = 0;
        for (const std::filesystem::path& path : Logs()) {
            const std::string log = ReadLog(path);
            for (std::size_t at = log.find(text); at != log.npos; at = log.find(text, at + 1)) ++count;
        }
        return count;
    }
    // Runs a client of each width, each with its own server.
    static void ExpectOfBoth(const wchar_t* run, const std::string& expected)
    {
        for (const Width width : kWidths) {
            if (!HasSimulator(width)) continue;
            SCOPED_TRACE(testing::PrintToString(width));
            const SimulatorResult result = RunClient(width, run);
            EXPECT_EQ(expected, result.output);
            EXPECT_TRUE(WaitUntilGone(kServerFile));
        }
    }
    static SimulatorResult RunClient(Width width, const std::wstring& arguments)
    {
        return RunSimulator(L'"' + BuiltProgram(width, "tests/system/field_client/field_client.exe").wstring() +
                            L"\" " + arguments);
    }
};

TEST_F(FieldOptions, LetAReopenedUnitLoadAfterInitNew)
{
    Export({});
    ChooseUnit(sample::kMixerHeaterClass);
    ExpectOfBoth(L"reopen",
                 "refused: 0x80004005, ECapeUnknown\n"
                 "refused: 0\n"
                 "loaded: 0x00000000\n"
                 "loaded: 2500\n"
                 "end\n");
    EXPECT_EQ(Clients(), CountInLogs("Load is called after Load or InitNew"));
    EXPECT_EQ(Clients(), CountInLogs("Load is called after InitNew: replacing the unit operation by one that loads the "
                                     "saved data"));
}

TEST_F(FieldOptions, HandStreamsBackAsTheSimulatorKnowsThem)
{
    Export({{kFieldPackage, 3, L"", L"Field"}});
    ChooseUnit(sample::kFieldUnitClass);
    const SimulatorResult inProcess = RunClient(Width::Bits32, L"copy in-process");
    EXPECT_EQ(0u, inProcess.exitCode) << inProcess.output;
    ExpectOfBoth(L"copy",
                 "proxies: 0x80040506, CopyFromMaterial: The flowsheet has no such stream\n" + inProcess.output);
    // The log shows what the unit passed, which is a proxy each time.
    EXPECT_EQ(2 * Clients(), CountInLogs("<func name=\"ICapeThermoMaterial::CopyFromMaterial\" direc=\"out\" "
                                         "object=\"Product\">\r\n"
                                         "  <arg name=\"source\" direc=\"in\" type=\"interface\">\r\n"
                                         "   <argval value=\"interface pointer 0x"));
    EXPECT_EQ(Clients(), CountInLogs("  <error value=\"ECapeInvalidArgumentHR: The flowsheet has no such stream\"/>"));
}

TEST_F(FieldOptions, KeepTheManagerThatAPackageNeeds)
{
    Export({{kLicensedManager, 0, L"Licensed", L"Licensed"}});
    ExpectOfBoth(L"licence",
                 "without its manager: 0x80040503, The manager has given its licence back\n"
                 "with its manager: 0x00000000\n"
                 "with its manager: 3 compounds\n"
                 "two packages: 2 licences, 0 dialogs\n"
                 "one package: 1 licences, 0 dialogs\n"
                 "none: 0 licences, 0 dialogs\n"
                 "end\n");
}

TEST_F(FieldOptions, ForwardEditToTheManagersOfThePackages)
{
    Export({{kLicensedManager, 0, L"Licensed", L"Licensed"}, {kLicensedManager, 0, L"Licensed Too", L"Licensed Too"}});
    ExpectOfBoth(L"edit",
                 "Edit: 0x80004001\n"
                 "not forwarded: 0 licences, 0 dialogs\n"
                 "Edit: 0x00000000\n"
                 "forwarded: 0 licences, 1 dialogs\n"
                 "end\n");
}

}  // namespace
}  // namespace zelt::test
