// Every proxied method across processes: from a client of either width to a server of the test's width, marshalled through
// the registered type libraries.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <filesystem>
#include <optional>

#include "tests/system/harness/process.h"
#include "tests/system/harness/text_file.h"

namespace zelt::test {
namespace {

namespace fs = std::filesystem;

std::wstring Quoted(const fs::path& path) { return L'"' + fs::absolute(path).make_preferred().wstring() + L'"'; }

class Marshalling : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(0u, RunProcess(Quoted(ZELT_EXECUTABLE) + L" /RegServer", {}, INFINITE));
        folder = fs::temp_directory_path() / (L"ZELT marshalling " + std::to_wstring(GetCurrentProcessId()));
        fs::create_directories(folder);
        server.emplace(Process::Start(Quoted(MARSHALLING_SERVER) + Arguments(), (folder / "server.txt").string()));
        while (!fs::exists(folder / "reference") && server->Running()) Sleep(50);
        ASSERT_TRUE(fs::exists(folder / "reference")) << ReadWholeFile((folder / "server.txt").string());
    }
    void TearDown() override
    {
        server.reset();
        std::error_code ignored;
        fs::remove_all(folder, ignored);
        EXPECT_EQ(0u, RunProcess(Quoted(ZELT_EXECUTABLE) + L" /UnregServer", {}, INFINITE));
    }
    std::wstring Arguments() const
    {
        return L' ' + Quoted(folder / "reference") + L' ' + Quoted(ZELT_SOURCE_DIR "/tests/data/proxied_methods.txt");
    }
    void CallAll(const char* client)
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

constexpr bool kIs32Bit = sizeof(void*) == 4;

TEST_F(Marshalling, EveryMethodFromA32BitClient) { CallAll(kIs32Bit ? MARSHALLING_CLIENT : MARSHALLING_OTHER_CLIENT); }
TEST_F(Marshalling, EveryMethodFromA64BitClient) { CallAll(kIs32Bit ? MARSHALLING_OTHER_CLIENT : MARSHALLING_CLIENT); }

}  // namespace
}  // namespace zelt::test
