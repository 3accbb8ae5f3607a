#include <gtest/gtest.h>

#include <fcntl.h>
#include <io.h>

#include <thread>

#include "system/narrow.h"
#include "samples/component/variant.h"
#include "log_reader/log_reader.h"
#include "tests/system/served_packages/served_packages.h"
#include "tests/system/served_packages/simulator.h"

// However a process ends in the middle of a call, the log is complete up to the last entry, and the next start works.
namespace zelt::test {
namespace {

using Microsoft::WRL::ComPtr;
using sample::MakeStrings;

// The last lines that a call logs before the package runs.
constexpr char kLastEntry[] =
    " <arg name=\"phaseLabel\" direc=\"in\" type=\"string\">\r\n"
    "  <argval value=\"&quot;Liquid&quot;\"/>\r\n"
    " </arg>\r\n";

class LastEvent final : public LogSink {
public:
    void Begin(const LogEvent& event) override
    {
        kind = event.kind;
        text = event.text;
    }
    EventKind kind = EventKind::Other;
    std::string text;
};

class Ends : public ServedPackages {
protected:
    void SetUp() override
    {
        ServedPackages::SetUp();
        Export({{kFaultyManager, 0, L"Menu", L"Menu"}});
        PrepareLogReader();
    }

    static HRESULT Calculate(IDispatch* package, const wchar_t* property)
    {
        ComPtr<ICapeThermoPropertyRoutine> properties;
        EXPECT_EQ(S_OK, package->QueryInterface(IID_PPV_ARGS(&properties)));
        if (!properties) return E_NOINTERFACE;
        return properties->CalcSinglePhaseProp(MakeStrings({property}), sample::MakeBstr(L"Liquid").GetBSTR());
    }

    // Checks the log of the call that never returned, as text and as the viewer's reader reads it.
    void ExpectALogUpToTheCall(const std::string& property) const
    {
        ASSERT_EQ(1u, Logs().size());
        const std::string log = OnlyLog();
        EXPECT_TRUE(log.ends_with(kLastEntry)) << log;
        EXPECT_NE(std::string::npos, log.find("&quot;" + property + "&quot;"));
        LastEvent last;
        const int descriptor = _wopen(Logs().front().c_str(), _O_RDONLY | _O_BINARY);
        EXPECT_EQ(LogReadResult::Incomplete, zelt::ReadLog(descriptor, last));
        _close(descriptor);
        EXPECT_EQ(EventKind::Value, last.kind);
        EXPECT_EQ("\"Liquid\"", last.text);
    }

    void ForgetLogs() const
    {
        std::error_code ignored;
        for (const std::filesystem::path& log : Logs()) std::filesystem::remove(log, ignored);
    }

    static void ExpectTheNextStartToWork()
    {
        const ComPtr<IDispatch> package = GetPackage(L"Menu");
        ASSERT_TRUE(package);
        ComPtr<ICapeThermoCompounds> compounds;
        ASSERT_EQ(S_OK, package.As(&compounds));
        long count = 0;
        EXPECT_EQ(S_OK, compounds->GetNumCompounds(&count));
        EXPECT_EQ(3, count);
    }
};

TEST_F(Ends, OfTheServerByItsPackageLeaveAReadableLogAndTheNextStartWorks)
{
    for (const char* way : {"exitProcess", "quitProcess", "failFast", "threadFault", "threadAbort"}) {
        SCOPED_TRACE(way);
        {
            const ComPtr<IDispatch> package = GetPackage(L"Menu");
            ASSERT_TRUE(package);
            const HRESULT result = Calculate(package.Get(), Widen(way).c_str());
            EXPECT_TRUE(FAILED(result)) << std::hex << result;
            EXPECT_TRUE(WaitUntilGone(kServerFile));
            ServerHasDied();
            ExpectALogUpToTheCall(way);
        }
        ForgetLogs();
    }
    ExpectTheNextStartToWork();
}

// The thread stands for a user who ends the server in the task manager.
TEST_F(Ends, OfAServerWhosePackageLoopsComeFromOutside)
{
    {
        const ComPtr<IDispatch> package = GetPackage(L"Menu");
        ASSERT_TRUE(package);
        const DWORD server = ServerId();
        std::thread user([this, server] {
            while (ReadLog(Logs().front()).find("loopForever") == std::string::npos) Sleep(50);
            if (std::optional<Process> process = Process::Open(server)) process->Kill();
        });
        const HRESULT result = Calculate(package.Get(), L"loopForever");
        user.join();
        EXPECT_TRUE(FAILED(result)) << std::hex << result;
        EXPECT_TRUE(WaitUntilGone(kServerFile));
        ServerHasDied();
        ExpectALogUpToTheCall("loopForever");
    }
    ExpectTheNextStartToWork();
}

// When the simulator ends, the server is executing the package, not waiting for the simulator: the call ends normally.
TEST_F(Ends, OfTheSimulatorLetThePackageFinish)
{
    ServerStays();
    constexpr DWORD kReach = 60'000;
    OutputFile output;
    Process simulator =
        Process::Start(SimulatorCommand(Width::Bits32, L"Menu", L"--calculate sleep:5000"), output.Path());
    const auto isInCall = [this] {
        return Logs().size() == 1 && ReadLog(Logs().front()).find("sleep:5000") != std::string::npos;
    };
    for (DWORD waited = 0; waited < kReach && !isInCall(); waited += 50) Sleep(50);
    ASSERT_TRUE(isInCall());
    simulator.Kill();
    const std::size_t before = OnlyLog().size();
    const auto hasEnded = [&] { return OnlyLog().find("</func>\r\n", before) != std::string::npos; };
    for (DWORD waited = 0; waited < kReach && !hasEnded(); waited += 50) Sleep(50);
    EXPECT_TRUE(hasEnded()) << OnlyLog().substr(before);
    EXPECT_TRUE(OnlyLog().ends_with(">\r\n"));
    // The server continues to serve others.
    const DWORD server = ServerId();
    ExpectTheNextStartToWork();
    EXPECT_EQ(server, ServerId());
}

}  // namespace
}  // namespace zelt::test
