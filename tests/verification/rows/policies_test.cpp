// The fault guard in processes in which Windows checks exception handlers, returns and indirect calls.
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

#include "system/owners.h"
#include "tests/system/harness/text_file.h"
#include "tests/trees.h"
#include "tests/verification/rows/needs.h"

namespace zelt::test {
namespace {

// A policy for a new process, as documented for UpdateProcThreadAttribute: the first and the second 64 bits of the attribute
// PROC_THREAD_ATTRIBUTE_MITIGATION_POLICY. The policy is in force if GetProcessMitigationPolicy returns `bit` in the flags of
// `policyClass`. A policy of the class kUnknown is taken to be in force.
struct Policy {
    const char* name;
    DWORD64 first, second;
    int policyClass;
    DWORD bit;
};
constexpr int kUnknown = -1, kRandomAddresses = 1, kStrictHandles = 3, kControlFlowGuard = 7, kShadowStacks = 15;
// clang-format off
constexpr Policy kPolicies[] = {
    {"None",             0,                             0,           kUnknown,          0},
    {"Sehop",            0x4,                           0,           kUnknown,          0},
    {"HeapTerminate",    1ull << 12,                    0,           kUnknown,          0},
    {"RandomAddresses",  (1ull << 16) | (1ull << 20),   0,           kRandomAddresses,  1},
    {"StrictHandles",    1ull << 24,                    0,           kStrictHandles,    1},
    {"ControlFlowGuard", 1ull << 40,                    0,           kControlFlowGuard, 1},
    {"ShadowStacks",     0,                             1ull << 28,  kShadowStacks,     1},
};
// clang-format on

enum class Outcome { Ran, NotInForce, NotCreated };

class ProcessPolicies : public testing::TestWithParam<std::tuple<Policy, bool>> {
protected:
    static std::string Program()
    {
        const std::string program = "tests/unit/unit_tests.exe";
        return std::get<bool>(GetParam()) ? OtherBuiltFile(program) : BuiltFile(program);
    }
    static const Policy& ThePolicy()
    {
        static Policy policy;
        return policy = std::get<Policy>(GetParam());
    }

    // Runs the program's tests of guarded calls in a process with the policy. Sets `code` and `output`.
    Outcome Run()
    {
        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        std::vector<BYTE> room(size);
        const auto list = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(room.data());
        EXPECT_TRUE(InitializeProcThreadAttributeList(list, 1, 0, &size));
        DWORD64 flags[] = {ThePolicy().first, ThePolicy().second};
        const SIZE_T used = flags[1] ? sizeof flags : sizeof flags[0];
        const bool isKnown =
            UpdateProcThreadAttribute(list, 0, PROC_THREAD_ATTRIBUTE_MITIGATION_POLICY, flags, used, nullptr, nullptr);
        const Outcome outcome = isKnown ? RunWith(list) : Outcome::NotCreated;
        DeleteProcThreadAttributeList(list);
        return outcome;
    }

    DWORD code = STILL_ACTIVE;
    std::string output;

private:
    Outcome RunWith(LPPROC_THREAD_ATTRIBUTE_LIST list)
    {
        const std::string path = (std::filesystem::temp_directory_path() / "policies.txt").string();
        SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
        const UniqueHandle file(
            CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inheritable, CREATE_ALWAYS, 0, nullptr));
        STARTUPINFOEXW startup = {};
        startup.StartupInfo.cb = sizeof startup;
        startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
        startup.StartupInfo.hStdOutput = startup.StartupInfo.hStdError = file.get();
        startup.lpAttributeList = list;
        PROCESS_INFORMATION started = {};
        std::wstring line = L'"' + std::filesystem::absolute(Program()).make_preferred().wstring() +
                            L"\" --gtest_filter=FaultGuard*:GccPackages.*:MicrosoftPackages.*";
        constexpr DWORD kHow = EXTENDED_STARTUPINFO_PRESENT | CREATE_NO_WINDOW | CREATE_SUSPENDED;
        if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, kHow, nullptr, nullptr, &startup.StartupInfo,
                            &started))
            return Outcome::NotCreated;
        const UniqueHandle process(started.hProcess), thread(started.hThread);
        const bool isInForce = IsInForce(process.get());
        if (isInForce) {
            ResumeThread(thread.get());
            WaitForSingleObject(process.get(), 10 * 60 * 1000);
            GetExitCodeProcess(process.get(), &code);
        }
        TerminateProcess(process.get(), 1);
        WaitForSingleObject(process.get(), 10'000);
        output = ReadWholeFile(path);
        return isInForce ? Outcome::Ran : Outcome::NotInForce;
    }

    static bool IsInForce(HANDLE process)
    {
        if (ThePolicy().policyClass == kUnknown) return true;
        using Function = BOOL(WINAPI*)(HANDLE, int, void*, SIZE_T);
        const auto ask = reinterpret_cast<Function>(
            reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "GetProcessMitigationPolicy")));
        DWORD flags = 0;
        return ask && ask(process, ThePolicy().policyClass, &flags, sizeof flags) && (flags & ThePolicy().bit);
    }
};

TEST_P(ProcessPolicies, LeaveTheGuardWorking)
{
    NEEDS("windows");
    if (!std::filesystem::exists(Program())) GTEST_SKIP() << "this system does not run programs of that width";
    switch (Run()) {
        case Outcome::NotCreated: GTEST_SKIP() << "this version of Windows does not have " << ThePolicy().name;
        case Outcome::NotInForce: GTEST_SKIP() << "this computer does not enforce " << ThePolicy().name;
        case Outcome::Ran: break;
    }
    EXPECT_EQ(0u, code) << output;
    EXPECT_NE(std::string::npos, output.find("FaultGuard.RealFaults")) << output;
}

INSTANTIATE_TEST_SUITE_P(Each, ProcessPolicies, testing::Combine(testing::ValuesIn(kPolicies), testing::Bool()),
                         [](const auto& one) {
                             return std::string(std::get<Policy>(one.param).name) +
                                    (std::get<bool>(one.param) ? "In64Bit" : "In32Bit");
                         });

}  // namespace
}  // namespace zelt::test
