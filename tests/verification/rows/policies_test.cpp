// The fault guard in processes in which Windows checks exception handlers, returns and indirect calls.
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

#include "system/owners.h"
#include "tests/trees.h"
#include "tests/verification/rows/needs.h"

namespace zelt::test {
namespace {

// A policy of process creation, as documented for UpdateProcThreadAttribute: the first or second 64 bits of the attribute
// PROC_THREAD_ATTRIBUTE_MITIGATION_POLICY. The second half is known to Windows 10, version 1703, and later.
struct Policy {
    const char* name;
    DWORD64 first, second;
};
constexpr Policy kPolicies[] = {
    {"None", 0, 0},
    {"Sehop", 0x4, 0},
    {"HeapTerminate", 1ull << 12, 0},
    {"RandomAddresses", (1ull << 16) | (1ull << 20), 0},
    {"StrictHandles", 1ull << 24, 0},
    {"ControlFlowGuard", 1ull << 40, 0},
    {"ShadowStacks", 0, 1ull << 28},
};

class ProcessPolicies : public testing::TestWithParam<Policy> {};

// The exit code of the program's tests in a process with the policy.
DWORD RunWith(const Policy& policy, const std::string& program, const std::wstring& arguments)
{
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    std::vector<BYTE> room(size);
    const auto list = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(room.data());
    EXPECT_TRUE(InitializeProcThreadAttributeList(list, 1, 0, &size));
    DWORD64 flags[] = {policy.first, policy.second};
    const SIZE_T used = policy.second ? sizeof flags : sizeof flags[0];
    EXPECT_TRUE(
        UpdateProcThreadAttribute(list, 0, PROC_THREAD_ATTRIBUTE_MITIGATION_POLICY, flags, used, nullptr, nullptr));
    STARTUPINFOEXW startup = {};
    startup.StartupInfo.cb = sizeof startup;
    startup.lpAttributeList = list;
    PROCESS_INFORMATION started = {};
    const auto path = std::filesystem::absolute(program).make_preferred().wstring();
    std::wstring line = L'"' + path + L"\" " + arguments;
    DWORD code = STILL_ACTIVE;
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, EXTENDED_STARTUPINFO_PRESENT | CREATE_NO_WINDOW,
                       nullptr, nullptr, &startup.StartupInfo, &started)) {
        const UniqueHandle process(started.hProcess), thread(started.hThread);
        WaitForSingleObject(process.get(), 10 * 60 * 1000);
        GetExitCodeProcess(process.get(), &code);
        TerminateProcess(process.get(), 1);
    } else {
        ADD_FAILURE() << "the process was not created: error " << GetLastError();
    }
    DeleteProcThreadAttributeList(list);
    return code;
}

TEST_P(ProcessPolicies, LeaveTheGuardWorking)
{
    NEEDS_WINDOWS();
    for (const std::string& program :
         {BuiltFile("tests/unit/unit_tests.exe"), OtherBuiltFile("tests/unit/unit_tests.exe")}) {
        EXPECT_EQ(0u, RunWith(GetParam(), program, L"--gtest_filter=FaultGuard*:GccPackages.*:MicrosoftPackages.*"))
            << program;
    }
}

INSTANTIATE_TEST_SUITE_P(Each, ProcessPolicies, testing::ValuesIn(kPolicies),
                         [](const auto& policy) { return std::string(policy.param.name); });

}  // namespace
}  // namespace zelt::test
