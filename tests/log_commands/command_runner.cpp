#include "command_runner.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>

#include "ctl/command.h"
#include "ctl/log/log_commands.h"

namespace zelt::test {

Outcome RunCommand(const std::vector<std::string>& words)
{
    ctl::Output data, messages;
    ctl::Streams streams = {data, messages};
    const int code = ctl::Run(ctl::LogCommands(), words, streams);
    return {code, data.Text(), messages.Text()};
}

TemporaryLog::TemporaryLog(const std::string& bytes)
{
    static std::random_device random;
    path = (std::filesystem::temp_directory_path() / ("zeltctl-test-" + std::to_string(random()) + ".zlg")).string();
    Append(bytes);
}

TemporaryLog::~TemporaryLog()
{
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
}

void TemporaryLog::Append(const std::string& bytes) const
{
    std::ofstream(path, std::ios::binary | std::ios::app).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string InLog(const std::string& entries)
{
    return "<?xml version=\"1.0\" standalone=\"yes\"?>\r\n<zeltlogdocument>\r\n" + entries + "</zeltlogdocument>\r\n";
}

const std::vector<std::string> kGoldenLogs = {"sample_simulator_10", "sample_simulator_11", "sample_simulator_11_held",
                                              "sample_simulator_reactions"};

std::string GoldenLog(const std::string& name) { return ZELT_TESTS "/golden/" + name + ".zlg"; }

std::string ReadBytes(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> LinesOf(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

void ExpectKept(const std::string& name, const std::string& output)
{
    const std::string path = ZELT_TESTS "/log_commands/golden/" + name;
    if (std::getenv("ZELT_WRITE_GOLDEN")) {
        std::ofstream(path, std::ios::binary).write(output.data(), static_cast<std::streamsize>(output.size()));
        return;
    }
    const std::string kept = ReadBytes(path);
    ASSERT_FALSE(kept.empty()) << path;
    const auto expected = LinesOf(kept), actual = LinesOf(output);
    for (std::size_t i = 0; i < std::min(expected.size(), actual.size()); ++i) {
        ASSERT_EQ(expected[i], actual[i]) << name << ", line " << i + 1;
    }
    EXPECT_EQ(kept.size(), output.size()) << name;
}

}  // namespace zelt::test
