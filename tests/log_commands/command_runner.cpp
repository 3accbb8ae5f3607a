#include "command_runner.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>

#include "ctl/command.h"
#include "ctl/log/log_commands.h"
#include "ctl/recording/recording_commands.h"
#include "tests/system/harness/golden_text.h"
#include "tests/trees.h"

namespace zelt::test {

Outcome RunCommand(const std::vector<std::string>& words, bool coloured)
{
    ctl::Output data, messages;
    if (coloured) data.UseColours();
    ctl::Streams streams = {data, messages};
    std::vector<ctl::Command> commands;
    for (const std::span<const ctl::Command> some : {ctl::LogCommands(), ctl::RecordingCommands()}) {
        commands.insert(commands.end(), some.begin(), some.end());
    }
    const int code = ctl::Run(commands, words, streams);
    return {code, data.Text(), messages.Text()};
}

namespace {

std::filesystem::path PathOf(const std::string& utf8) { return {std::u8string(utf8.begin(), utf8.end())}; }

}  // namespace

TemporaryLog::TemporaryLog(const std::string& bytes, const std::string& name)
{
    static std::random_device random;
    const auto path8 =
        (std::filesystem::temp_directory_path() / PathOf(name + '-' + std::to_string(random()) + ".zlg")).u8string();
    path.assign(path8.begin(), path8.end());
    Append(bytes);
}

TemporaryLog::~TemporaryLog()
{
    std::error_code ignored;
    std::filesystem::remove(PathOf(path), ignored);
}

void TemporaryLog::Append(const std::string& bytes) const
{
    std::ofstream(PathOf(path), std::ios::binary | std::ios::app)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string InLog(const std::string& entries)
{
    return "<?xml version=\"1.0\" standalone=\"yes\"?>\r\n<zeltlogdocument>\r\n" + entries + "</zeltlogdocument>\r\n";
}

const std::vector<std::string> kGoldenLogs = {"sample_simulator_10",      "sample_simulator_11",
                                              "sample_simulator_11_held", "sample_simulator_reactions",
                                              "sample_flowsheet_package", "sample_flowsheet_unit"};

std::string GoldenLog(const std::string& name)
{
    const std::string folder = SourceFile("tests/golden"), path = folder + '/' + name + ".zlg";
    if (std::filesystem::exists(path)) return path;
    // The log is stored as a difference from another log. This makes the complete file, and keeps it until the program ends.
    static std::map<std::string, std::unique_ptr<TemporaryLog>> made;
    auto& log = made[name];
    if (!log) {
        const auto text = GoldenText(folder, name + ".zlg");
        EXPECT_TRUE(text) << name;
        log = std::make_unique<TemporaryLog>(text.value_or(""), name);
    }
    return log->Path();
}

std::string ReadBytes(const std::string& path)
{
    std::ifstream file(PathOf(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> LinesOf(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

void ExpectKept(const std::string& name, const std::string& output, const std::string& folder)
{
    const std::string path = SourceFile("tests/") + folder + "/golden/" + name;
    if (std::getenv("ZELT_UPDATE_GOLDEN")) {
        std::ofstream(path, std::ios::binary).write(output.data(), static_cast<std::streamsize>(output.size()));
        return;
    }
    const std::string kept = ReadBytes(path);
    ASSERT_TRUE(std::filesystem::exists(path)) << path;
    const auto expected = LinesOf(kept), actual = LinesOf(output);
    for (std::size_t i = 0; i < std::min(expected.size(), actual.size()); ++i) {
        ASSERT_EQ(expected[i], actual[i]) << name << ", line " << i + 1;
    }
    EXPECT_EQ(kept.size(), output.size()) << name;
}

int CountOf(const std::string& text, const std::string& part)
{
    int count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
}

}  // namespace zelt::test
