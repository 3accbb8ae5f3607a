#include <gtest/gtest.h>

#include "tests/system/harness/golden_file.h"
#include "tests/system/served_packages/served_packages.h"
#include "tests/system/served_packages/simulator.h"

// Logs that begin in the same minute get different names. A log is closed with its package, and two simulators have separate
// logs.
namespace zelt::test {
namespace {

class LogFiles : public ServedPackages {};

// "log-05March2012-14h07" for the current minute, after waiting until enough of the minute is left.
std::wstring BaseNameOfThisMinute()
{
    constexpr WORD kSafe = 45;
    SYSTEMTIME now;
    for (GetLocalTime(&now); now.wSecond > kSafe; GetLocalTime(&now)) Sleep(500);
    wchar_t date[64], time[64];
    GetDateFormatW(LOCALE_SYSTEM_DEFAULT, 0, &now, L"ddMMMMyyyy", date, 64);
    GetTimeFormatW(LOCALE_SYSTEM_DEFAULT, 0, &now, L"HH'h'mm", time, 64);
    return std::wstring(L"log-") + date + L'-' + time;
}

std::set<std::wstring> NamesOf(const std::vector<std::filesystem::path>& logs)
{
    std::set<std::wstring> names;
    for (const std::filesystem::path& log : logs) names.insert(log.filename().wstring());
    return names;
}

TEST_F(LogFiles, OfOneMinuteAreNumbered)
{
    Export({{kSampleManager, 0, L"Aromatics", L"Aromatics"}, {kSampleManager, 0, L"Alcohols", L"Alcohols"}});
    const std::wstring base = BaseNameOfThisMinute();
    const auto first = GetPackage(L"Aromatics");
    EXPECT_EQ((std::set<std::wstring>{base + L".zlg"}), NamesOf(Logs()));
    const auto second = GetPackage(L"Alcohols");
    // Two requests give two packages, each with its own log.
    const auto third = GetPackage(L"Aromatics");
    EXPECT_EQ((std::set<std::wstring>{base + L".zlg", base + L"(1).zlg", base + L"(2).zlg"}), NamesOf(Logs()));
    for (const std::filesystem::path& log : Logs()) {
        const bool isSecond = log.filename() == base + L"(1).zlg";
        EXPECT_NE(std::string::npos, ReadLog(log).find(isSecond ? "\"Creating Alcohols\"" : "\"Creating Aromatics\""))
            << log;
    }
}

TEST_F(LogFiles, CloseWithTheirPackage)
{
    Export({{kSampleManager, 0, L"Aromatics", L"Aromatics"}});
    auto package = GetPackage(L"Aromatics");
    EXPECT_FALSE(OnlyLog().ends_with("</zeltlogdocument>\r\n"));
    package.Reset();
    EXPECT_TRUE(OnlyLog().ends_with("</zeltlogdocument>\r\n"));
}

// One server thread serves both: the second simulator's whole session takes place inside a call of the first.
TEST_F(LogFiles, OfTwoSimulatorsAtOnceAreApart)
{
    Export({{kSampleManager, 0, L"Aromatics", L"Aromatics"}});
    const std::string direct =
        Results(RunSimulator(SimulatorCommand(kOwnWidth, L"Aromatics", L"--in-process", kSampleManager)).output);
    SimulatorInMidCall first(Width::Bits32, L"Aromatics");
    ASSERT_TRUE(first.Reached());
    const DWORD server = ServerId();
    const SimulatorResult second =
        RunSimulator(SimulatorCommand(HasSimulator(Width::Bits64) ? Width::Bits64 : Width::Bits32, L"Aromatics"));
    EXPECT_EQ(server, ServerId());
    EXPECT_EQ(0u, second.exitCode) << second.output;
    EXPECT_EQ(direct, Results(second.output));
    const SimulatorResult rest = first.Continue();
    EXPECT_EQ(0u, rest.exitCode) << rest.output;
    EXPECT_NE(std::string::npos, rest.output.find("waiting in call: ICapeThermoMaterial::"));
    EXPECT_EQ(2u, Logs().size());
    for (const std::filesystem::path& log : Logs())
        EXPECT_EQ("", MatchGolden("sample_simulator_11.zlg", Comparable(ReadLog(log)))) << log;
}

}  // namespace
}  // namespace zelt::test
