#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>

#include "log/log_options.h"
#include "log/recording_rendering.h"
#include "system/edition.h"
#include "tests/system/harness/golden_file.h"
#include "tests/system/served_packages/served_packages.h"
#include "tests/system/served_packages/simulator.h"

// Recordings beside the logs of real packages in real simulators.
namespace zelt::test {
namespace {

namespace fs = std::filesystem;

class Recordings : public ServedPackages, public testing::WithParamInterface<Width> {
protected:
    void SetUp() override
    {
        if (!HasSimulator(GetParam())) GTEST_SKIP() << kNoSimulator;
        ServedPackages::SetUp();
        LogOptions options;
        ASSERT_TRUE(options.Load());
        options.recordCalls = true;
        ASSERT_TRUE(options.Save(LogOption::RecordCalls));
    }
    // Of the only log; the recording is beside it.
    fs::path OnlyLogFile() const
    {
        fs::path log;
        for (const fs::path& file : Logs()) {
            if (file.extension() == ".zlg") log = file;
        }
        EXPECT_EQ(2u, Logs().size());
        return log;
    }
    static std::string Rendered(const fs::path& recording)
    {
        const fs::path place = fs::path(recording).concat(".rendered");
        LogFile out;
        EXPECT_EQ(0, out.Open(place.wstring()));
        FILE* const file = _wfopen(recording.c_str(), L"rb");
        if (!file) return "<no recording>";
        recording::RecordReader records(
            [file](char* bytes, std::size_t count) { return std::fread(bytes, 1, count, file); });
        const Rendering rendering = RenderRecording(records, std::move(out));
        std::fclose(file);
        EXPECT_TRUE(rendering.isRecording);
        EXPECT_EQ(recording::ReadEnd::None, rendering.end);
        EXPECT_TRUE(rendering.isClosed);
        const std::string text = ReadLog(place);
        fs::remove(place);
        return text;
    }
    void ExpectEqualAndSmall(const std::wstring& command)
    {
        EXPECT_EQ(0u, RunSimulator(command).exitCode);
        EXPECT_TRUE(WaitUntilGone(kServerFile));
        const fs::path log = OnlyLogFile(), recording = fs::path(log).replace_extension(".zlr");
        EXPECT_EQ(ReadLog(log), Rendered(recording));
        std::printf("log %s bytes, recording %s bytes\n", std::to_string(fs::file_size(log)).c_str(),
                    std::to_string(fs::file_size(recording)).c_str());
        EXPECT_LE(fs::file_size(recording), fs::file_size(log) / 4);
    }
};

INSTANTIATE_TEST_SUITE_P(ThroughZelt, Recordings, testing::ValuesIn(kWidths),
                         [](const auto& width) { return width.param == Width::Bits32 ? "Bits32" : "Bits64"; });

TEST_P(Recordings, RenderTheLogOfAPackageOf11)
{
    Export({{kSampleManager, 0, L"Aromatics", L"Aromatics"}});
    ExpectEqualAndSmall(SimulatorCommand(GetParam(), L"Aromatics"));
}

TEST_P(Recordings, RenderTheLogOfAPackageOf10)
{
    Export({{kSampleThermoSystem, 2, L"Alcohols", L"Alcohols"}});
    ExpectEqualAndSmall(SimulatorCommand(GetParam(), L"Alcohols", {}, kThisEdition[OwnClass::ThermoSystem].progId));
}

}  // namespace
}  // namespace zelt::test
