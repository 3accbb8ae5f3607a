// Every proxied method across processes: from a client of either width to a server of the test's width, marshalled through
// the registered type libraries.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <filesystem>
#include <optional>

#include "tests/system/harness/dead_servers.h"
#include "tests/system/harness/own_scope.h"
#include "tests/system/harness/process.h"
#include "tests/system/harness/text_file.h"
#include "tests/trees.h"

namespace zelt::test {
namespace {

namespace fs = std::filesystem;

std::wstring Quoted(const fs::path& path) { return L'"' + fs::absolute(path).make_preferred().wstring() + L'"'; }

constexpr char kServer[] = "tests/system/marshalling/marshalling_server.exe";
constexpr char kClient[] = "tests/system/marshalling/marshalling_client.exe";

class Marshalling : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(0u, RunProcess(Quoted(BuiltServer()) + L' ' + RegisterArgument(), {}, INFINITE));
        folder = fs::temp_directory_path() / (L"ZELT marshalling " + std::to_wstring(GetCurrentProcessId()));
        fs::create_directories(folder);
        server.emplace(Process::Start(Quoted(BuiltFile(kServer)) + Arguments(), (folder / "server.txt").string()));
        while (!fs::exists(folder / "reference") && server->Running()) Sleep(50);
        ASSERT_TRUE(fs::exists(folder / "reference")) << ReadWholeFile((folder / "server.txt").string());
    }
    void TearDown() override
    {
        server.reset();
        EXPECT_TRUE(DeadServersAreForgotten());
        std::error_code ignored;
        fs::remove_all(folder, ignored);
        EXPECT_EQ(0u, RunProcess(Quoted(BuiltServer()) + L' ' + UnregisterArgument(), {}, INFINITE));
    }
    std::wstring Arguments() const
    {
        return L' ' + Quoted(folder / "reference") + L' ' + Quoted(SourceFile("tests/data/proxied_methods.txt"));
    }
    void CallAll(const std::string& client)
    {
        if (!fs::exists(client)) GTEST_SKIP() << "the client of that width is not built";
        const std::string output = (folder / "client.txt").string();
        const auto exitCode = RunProcess(Quoted(client) + Arguments(), output, INFINITE);
        const std::string said = ReadWholeFile(output);
        std::printf("%s", said.c_str());
        EXPECT_EQ(0u, exitCode) << "the server said: " << ReadWholeFile((folder / "server.txt").string());
        EXPECT_NE(std::string::npos, said.find("; 0 failed")) << said;
    }

    fs::path folder;
    std::optional<Process> server;
};

TEST_F(Marshalling, EveryMethodFromA32BitClient)
{
    CallAll(kBuiltFor32Bit ? BuiltFile(kClient) : OtherBuiltFile(kClient));
}
TEST_F(Marshalling, EveryMethodFromA64BitClient)
{
    CallAll(kBuiltFor32Bit ? OtherBuiltFile(kClient) : BuiltFile(kClient));
}

}  // namespace
}  // namespace zelt::test
